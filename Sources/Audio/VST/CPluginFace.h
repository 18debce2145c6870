#pragma once

#include <cstdint>
#include <string_view>

namespace tarv {

/// Which face the library shows its hosts; its file's name chooses. Ardour's flexible track and others widen to every
/// output of a plug-in, and what is meant for the right one is lost: for them there is a face of two channels.
enum class CPluginFace : uint8_t {
    kFull,    ///< all channels
    kStereo,  ///< two inputs and two outputs under an id of that face; otherwise the same
};

/// The face of a library file: stereo if its name ends in `-Stereo` before the extension, in upper or lower case.
/// Folders are separated by `/`.
CPluginFace faceOfFile(std::u16string_view path);
/// The face of the file that this code was loaded from, found at the first call. Any thread.
CPluginFace ownFace();

}  // namespace tarv
