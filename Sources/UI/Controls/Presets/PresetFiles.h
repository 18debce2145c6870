#pragma once

#include "Audio/Stores/CAudioPresetBank.h"

namespace tarv {

/// Files of presets and banks, each one compressed block. Paths are the system's; no embedded resource is read.
/// The first line of a failure begins with a plain reason; behind it, in brackets, stands what the system or the stream
/// reports.

/// Reads a file of id 'aprs' or 'abnk'. On failure the target is as it was.
[[nodiscard]] CError* readPresetFile(const CString& path, CAudioPreset& preset);
[[nodiscard]] CError* readBankFile(const CString& path, CAudioPresetBank& bank);
/// Makes a block the content of a file, by a file beside it that takes its place: a failure leaves the old content. A
/// file that is not to be written, a read-only one, fails.
[[nodiscard]] CError* writeBlockFile(const CString& path, const CByteBuffer& block);

}  // namespace tarv
