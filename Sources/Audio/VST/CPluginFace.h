#pragma once

#include <cstdint>
#include <string_view>

namespace tarv {

/// The face that the library shows its hosts, chosen by the name of its file. Ardour's flexible tracks and others widen
/// to all outputs of a plug-in, which loses the right channel of a stereo signal; the stereo face is for them.
enum class CPluginFace : uint8_t {
    kFull,    ///< all channels
    kStereo,  ///< two inputs and two outputs under a separate id; otherwise the same
};

/// The face of a library file: stereo if its name ends in `-Stereo` before the extension, in upper or lower case.
/// Folders are separated by `/`.
CPluginFace faceOfFile(std::u16string_view path);
/// The face of the file that this code was loaded from, found at the first call. Any thread.
CPluginFace ownFace();

}  // namespace tarv
