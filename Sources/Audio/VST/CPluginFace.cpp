// Finds the face of the plug-in from the name of its file.

#include "Audio/VST/CPluginFace.h"

#include "Platform/OwnFile.h"

namespace tarv {

namespace {

constexpr std::u16string_view kStereoEnding = u"-stereo";

char16_t lowered(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

}  // namespace

CPluginFace faceOfFile(std::u16string_view path) {
    const std::u16string_view name = path.substr(path.rfind(u'/') + 1);
    const std::u16string_view stem = name.substr(0, name.rfind(u'.'));
    if (stem.size() < kStereoEnding.size()) {
        return CPluginFace::kFull;
    }
    const std::u16string_view ending = stem.substr(stem.size() - kStereoEnding.size());
    for (size_t i = 0; i < ending.size(); ++i) {
        if (lowered(ending[i]) != kStereoEnding[i]) {
            return CPluginFace::kFull;
        }
    }
    return CPluginFace::kStereo;
}

CPluginFace ownFace() {
    static const CPluginFace face = [] {
        std::u16string path;
        return ownFilePath(path) == 0 ? faceOfFile(path) : CPluginFace::kFull;
    }();
    return face;
}

}  // namespace tarv
