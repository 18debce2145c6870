#include "Audio/VST/CPluginFace.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

TEST(CPluginFaceTest, TheEndOfTheFilesNameChoosesTheFace) {
    const struct {
        const char16_t* path;
        CPluginFace face;
    } rows[] = {
        {u"C:/VST/BrindleXEQ.dll", CPluginFace::kFull},
        {u"C:/VST/BrindleXEQ-Stereo.dll", CPluginFace::kStereo},
        {u"C:/VST/brindlexeq-STEREO.DLL", CPluginFace::kStereo},
        {u"BrindleXEQ-Stereo.so", CPluginFace::kStereo},
        {u"./My EQ-stereo.so", CPluginFace::kStereo},
        {u"-Stereo.so", CPluginFace::kStereo},
        {u"BrindleXEQ-Stereo", CPluginFace::kStereo},
        {u"/opt/x.vst/BrindleXEQ-Stereo", CPluginFace::kStereo},
        {u"BrindleXEQ.1.8-Stereo.dll", CPluginFace::kStereo},
        {u"BrindleXEQ-Stereo.1.dll", CPluginFace::kFull},
        {u"BrindleXEQ-Stereo2.dll", CPluginFace::kFull},
        {u"BrindleXEQStereo.dll", CPluginFace::kFull},
        {u"Stereo.dll", CPluginFace::kFull},
        {u"C:/Plug-Ins-Stereo/BrindleXEQ.dll", CPluginFace::kFull},
        {u"C:/Plug-Ins-Stereo/", CPluginFace::kFull},
        {u"", CPluginFace::kFull},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(faceOfFile(row.path), row.face) << std::string(row.path, row.path + std::u16string(row.path).size());
    }
}

TEST(CPluginFaceTest, ThisProgramIsNotTheStereoFace) {
    EXPECT_EQ(ownFace(), CPluginFace::kFull);
}

}  // namespace
}  // namespace tarv
