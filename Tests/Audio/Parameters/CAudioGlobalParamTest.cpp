#include "Audio/Parameters/CAudioGlobalParam.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>

#include "Tests/Audio/Instance/WrapperTree.h"

namespace tarv {
namespace {

constexpr const char* kDenorm = "plugin.modMain.denorm-enable";
constexpr const char* kRms = "plugin.modMain.meter-rmstime";

/// The small plug-in with a folder for the user's data that only this test sees.
class CAudioGlobalParamTest : public testing::Test {
protected:
    CAudioGlobalParamTest() : folder_(testing::TempDir() + "tarv-global-param") {
        std::filesystem::remove_all(folder_);
        setenv("TARV_DATA_ROOT", folder_.c_str(), 1);
        CGlobalData::instance().setFileAccess(true);
        CLocalData::instance().setFileAccess(true);
    }
    ~CAudioGlobalParamTest() override {
        unsetenv("TARV_DATA_ROOT");
        std::filesystem::remove_all(folder_);
    }
    static CAudioParam& param(const CTestWrapper& wrapper, const char* name) {
        return *wrapper.paramCollector()->findParam(name);
    }
    static void init(CTestWrapper& wrapper) { ASSERT_EQ(messageOf(wrapper.init()), ""); }
    /// The file of a key; "" if there is none.
    std::string pathOf(const char* key) const {
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_))
            if (entry.path().filename() == key)
                return entry.path().string();
        return "";
    }
    static std::string bytesOf(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

private:
    CWrapperApplication application_;
    std::string folder_;
};

TEST_F(CAudioGlobalParamTest, WithoutAStoredValueTheDefaultIsUsedAndNothingIsStored) {
    CTestWrapper wrapper;
    init(wrapper);
    EXPECT_EQ(param(wrapper, kRms).value(0, 0), 0.002);
    EXPECT_EQ(param(wrapper, kDenorm).value(0, 0), 1.0);
    for (const char* key : {"integration-time", "release-time", "peak-level-hold-time", "denorm-enable"}) {
        EXPECT_EQ(CLocalData::instance().readText(key, "none"), "none") << key;
        EXPECT_EQ(CGlobalData::instance().readText(key, "none"), "none") << key;
    }
}

TEST_F(CAudioGlobalParamTest, EachParameterIsStoredInItsStoreUnderItsKey) {
    CTestWrapper wrapper;
    init(wrapper);
    const struct {
        const char* param;
        CApplicationData& store;
        const char* key;
    } rows[] = {{kRms, CLocalData::instance(), "integration-time"},
                {"plugin.modMain.meter-releasetime", CLocalData::instance(), "release-time"},
                {"plugin.modMain.meter-peaktime", CLocalData::instance(), "peak-level-hold-time"},
                {kDenorm, CGlobalData::instance(), "denorm-enable"}};
    for (const auto& row : rows) {
        param(wrapper, row.param).setValue(0, 0, 0.5);
        EXPECT_EQ(row.store.readText(row.key, "none").toUtf8(), "0.5000000") << row.key;
    }
    EXPECT_EQ(CGlobalData::instance().readText("integration-time", "none"), "none");
    EXPECT_EQ(CLocalData::instance().readText("denorm-enable", "none"), "none");
}

TEST_F(CAudioGlobalParamTest, AStoredValueIsTakenOver) {
    CLocalData::instance().writeText("integration-time", "0.3");
    CGlobalData::instance().writeText("denorm-enable", "0");
    CTestWrapper wrapper;
    init(wrapper);
    EXPECT_DOUBLE_EQ(param(wrapper, kRms).value(0, 0), 0.3);
    EXPECT_EQ(param(wrapper, kDenorm).value(0, 0), 0.0);
    EXPECT_EQ(CLocalData::instance().readText("integration-time", ""), "0.3");
}

TEST_F(CAudioGlobalParamTest, AStoredTextThatIsNotANumberIsIgnoredAndStays) {
    CGlobalData::instance().writeText("denorm-enable", "yes");
    CTestWrapper wrapper;
    init(wrapper);
    EXPECT_EQ(param(wrapper, kDenorm).value(0, 0), 1.0);
    EXPECT_EQ(CGlobalData::instance().readText("denorm-enable", ""), "yes");
}

TEST_F(CAudioGlobalParamTest, ADamagedStoredFileIsIgnoredAndStays) {
    CLocalData::instance().writeText("integration-time", "0.3");
    const std::string path = pathOf("integration-time");
    ASSERT_NE(path, "");
    std::string damaged = bytesOf(path);
    damaged.back() ^= 1;  // the check value
    std::ofstream(path, std::ios::binary) << damaged;
    CLocalData::instance().reset();
    CTestWrapper wrapper;
    init(wrapper);
    EXPECT_EQ(param(wrapper, kRms).value(0, 0), 0.002);
    EXPECT_EQ(bytesOf(path), damaged);
}

TEST_F(CAudioGlobalParamTest, AValueSetInOneInstanceReachesTheOthersAndTheStore) {
    CTestWrapper first;
    CTestWrapper second;
    init(first);
    init(second);
    param(first, kRms).setValue(0, 0, 0.05);
    EXPECT_DOUBLE_EQ(param(second, kRms).value(0, 0), 0.05);
    EXPECT_EQ(CLocalData::instance().readText("integration-time", ""), "0.0500000");
    param(second, kDenorm).setValue(0, 0, 0.0);
    EXPECT_EQ(param(first, kDenorm).value(0, 0), 0.0);
    EXPECT_EQ(param(first, kRms).value(0, 0), 0.05);
}

TEST_F(CAudioGlobalParamTest, AnInstanceMadeLaterHasTheValueOfTheOthers) {
    CTestWrapper first;
    init(first);
    param(first, kDenorm).setValue(0, 0, 0.0);
    CTestWrapper second;
    init(second);
    EXPECT_EQ(param(second, kDenorm).value(0, 0), 0.0);
}

TEST_F(CAudioGlobalParamTest, ADestroyedInstanceIsNotNotified) {
    CTestWrapper first;
    init(first);
    {
        CTestWrapper second;
        init(second);
    }
    param(first, kDenorm).setValue(0, 0, 0.0);
    EXPECT_EQ(CGlobalData::instance().readText("denorm-enable", ""), "0.0000000");
}

/// The small plug-in without one of the parameters, with a separate folder.
TEST(CAudioGlobalParam, WithoutADefinitionNothingIsStored) {
    const std::string folder = testing::TempDir() + "tarv-no-global-param";
    CWrapperDefinitions definitions;
    std::erase_if(definitions.processes, [](const CTestNode& node) { return node.name == "meter-rmstime"; });
    CWrapperApplication application(definitions);
    setenv("TARV_DATA_ROOT", folder.c_str(), 1);
    CLocalData::instance().setFileAccess(true);
    {
        CTestWrapper wrapper;
        ASSERT_EQ(messageOf(wrapper.init()), "");
        for (const char* name : {kRms, "plugin.modMain.meter-releasetime"})
            wrapper.paramCollector()->findParam(name)->notifyAll();
        EXPECT_EQ(CLocalData::instance().readText("integration-time", "none"), "none");
        EXPECT_EQ(CLocalData::instance().readText("release-time", "none"), "0.7500000");
    }
    unsetenv("TARV_DATA_ROOT");
    std::filesystem::remove_all(folder);
}

TEST_F(CAudioGlobalParamTest, ItReachesTheGraphOfTheOtherInstance) {
    CTestWrapper first;
    CTestWrapper second;
    init(first);
    init(second);
    second.resume();
    param(first, kDenorm).setValue(0, 0, 0.0);
    double sample = 1.0;
    double* channels[1] = {&sample};
    second.processBlock(channels, channels, 1);
    EXPECT_EQ(graphValue(second, kDenormEnable), 0.0);
}

}  // namespace
}  // namespace tarv
