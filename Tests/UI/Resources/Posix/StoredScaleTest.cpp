// The scale that the user's settings hold, as it reaches what is drawn.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "Core/CApplicationData.h"
#include "Tests/Core/TestApplication.h"
#include "Tests/UI/Resources/DataSetHelp.h"
#include "UI/Resources/CDataSet.h"

namespace tarv {
namespace {

TEST(StoredScale, ChoosesTheVersionsAtLoading) {
    const std::string folder = testing::TempDir() + "tarv-graphics-scale";
    const char* former = std::getenv("TARV_DATA_ROOT");
    const std::string kept = former ? former : "";
    setenv("TARV_DATA_ROOT", folder.c_str(), 1);
    CImageSet images;
    images.setImage(0, makeImage(2, 1));
    const CBytes file = written(images);
    CFileBuilder builder;
    const CBytes resource = builder.value(static_cast<uint32_t>(file.size())).raw(file).bytes();
    const CResourceRow rows[] = {{resource.data(), "a.is"}, {nullptr, nullptr}};
    for (const auto& [stored, width] : std::vector<std::pair<const char*, int32_t>>{{"0.8", 16},
                                                                                    {"1.0", 20},
                                                                                    {"1.25", 25},
                                                                                    {"1,25", 25},
                                                                                    {"0.9", 16},
                                                                                    {"0.5", 16},
                                                                                    {"4", 25},
                                                                                    {"0.49", 20},
                                                                                    {"4.01", 20},
                                                                                    {"large", 20},
                                                                                    {"-7", 20},
                                                                                    {"999", 20}}) {
        std::filesystem::remove_all(folder);
        CLocalData().writeText("ui-scale", stored);
        CLocalData::instance().reset();
        ASSERT_EQ(consumed(CApplication::start({nullptr, 0, rows, nullptr, nullptr})), "");
        CImageSet read;
        EXPECT_GOOD(loadDataSet(read, "a.is"));
        EXPECT_EQ(read.getImage(0)->getWidth(), width) << stored;
        CApplication::finish();
    }
    std::filesystem::remove_all(folder);
    former ? setenv("TARV_DATA_ROOT", kept.c_str(), 1) : unsetenv("TARV_DATA_ROOT");
    CLocalData::instance().reset();
}

}  // namespace
}  // namespace tarv
