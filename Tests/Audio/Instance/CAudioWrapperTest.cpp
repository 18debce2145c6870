#include "Audio/Instance/CAudioWrapper.h"

#include <algorithm>

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Tests/Audio/Instance/WrapperTree.h"
#include "Tests/Core/CUserFolder.h"

namespace tarv {
namespace {

CError* parse(const std::string& text, int32_t (&version)[3]) {
    return CAudioWrapper::parseVersion(text.c_str(), version);
}

TEST(CAudioWrapperInitTest, ASmallPlugInStarts) {
    CWrapperApplication application;
    CTestWrapper wrapper;
    ASSERT_EQ(messageOf(wrapper.init()), "");
    EXPECT_EQ(wrapper.pluginName(), "Small");
    EXPECT_EQ(wrapper.vendorName(), "Maker");
    EXPECT_EQ(wrapper.pluginCode(), 0x54414551u);
    EXPECT_EQ(wrapper.version()[0], 1);
    EXPECT_EQ(wrapper.version()[1], 8);
    EXPECT_EQ(wrapper.version()[2], 0);
    EXPECT_EQ(wrapper.internalChannelCount(), 8);
    EXPECT_EQ(wrapper.groupCount(), 8);
    EXPECT_EQ(wrapper.oversamplingLevel(), 1);
    EXPECT_FALSE(wrapper.isActive());
    EXPECT_EQ(wrapper.latency(), 0);
    EXPECT_EQ(wrapper.mainProcess()->path(), "plugin.modMain");
    EXPECT_TRUE(wrapper.paramCollector()->isClosed());
}

TEST(CAudioWrapperInitTest, WithoutAnApplicationItFails) {
    CTestWrapper wrapper;
    EXPECT_EQ(messageOf(wrapper.init()), "No application object created.");
}

TEST(CAudioWrapperInitTest, TheProjectsAttributesAreChecked) {
    const struct {
        const char* name;
        const char* value;
        const char* message;
    } rows[] = {
        {"app-name", "", "Plug-in name is empty."},
        {"app-vendor", "", "Vendor name is empty."},
        {"plugin-intchannel-count", "", "Invalid 'plugin-intchannel-count' attribute value."},
        {"plugin-intchannel-count", "0", "Invalid 'plugin-intchannel-count' attribute value."},
        {"plugin-intchannel-count", "1", ""},
        {"plugin-intchannel-count", "32", ""},
        {"plugin-intchannel-count", "33", "Invalid 'plugin-intchannel-count' attribute value."},
        {"plugin-group-count", "0", "Invalid 'plugin-group-count' attribute value."},
        {"plugin-group-count", "1", ""},
        {"plugin-group-count", "8", ""},
        {"plugin-group-count", "9", "Invalid 'plugin-group-count' attribute value."},
        {"plugin-code", "TAE", "Invalid plug-in code in string 'TAE'."},
        {"plugin-code", "TAEQQ", "Invalid plug-in code in string 'TAEQQ'."},
        {"plugin-code", "", "Invalid plug-in code in string ''."},
        {"app-version", "1", "Invalid version specification in string '1'."},
        {"app-version", "1.2.3", ""},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(initFailure(CWrapperDefinitions().project(row.name, row.value)), row.message)
            << row.name << ' ' << row.value;
    }
}

TEST(CAudioWrapperInitTest, WithoutTheProjectItFails) {
    std::vector<CTestNode> tree = CWrapperDefinitions().tree();
    tree.erase(tree.begin());
    CTestApplication application(wrapperCreators(), tree);
    CTestWrapper wrapper;
    EXPECT_EQ(messageOf(wrapper.init()), "Shared project root 'shared::project' object is required.");
}

TEST(CAudioWrapperInitTest, WithoutThePlugInsTemplateItFails) {
    std::vector<CTestNode> tree = CWrapperDefinitions().tree();
    tree.erase(tree.begin() + 1);
    CTestApplication application(wrapperCreators(), tree);
    CTestWrapper wrapper;
    EXPECT_NE(messageOf(wrapper.init()), "");
}

TEST(CAudioWrapperInitTest, EveryRequiredObjectMustBeThereAndOfItsClass) {
    const struct {
        const char* name;
        const char* message;
    } rows[] = {
        {"qplex-context", "No valid QPLEX context object with the name 'plugin.qplex-context' defined."},
        {"audio-env", "No valid env object with the name 'plugin.audio-env' defined."},
        {"param-collector", "No valid parameter collector object with the name 'plugin.param-collector' defined."},
        {"viz-collector", "No valid visual object collector object with the name 'plugin.viz-collector' defined."},
        {"interface-base", "No valid interface base collector object with the name 'plugin.interface-base' defined."},
        {"ext-param-list", "No valid CAudioExtParamList* object with the name 'plugin.ext-param-list' defined."},
        {"cctable", "No valid CAudioCCTable* object with the name 'plugin.cctable' defined."},
        {"param-registry", "No valid parameter registry object with the name 'plugin.param-registry' defined."},
    };
    for (const bool isOfAnotherClass : {false, true}) {
        // Objects before the missing one in the order of the look-ups exist; those behind it do not.
        std::vector<std::string> there = {"connector"};
        for (const auto& row : rows) {
            CWrapperDefinitions definitions;
            std::erase_if(definitions.pluginChildren, [&there](const CTestNode& node) {
                return std::find(there.begin(), there.end(), node.name) == there.end();
            });
            if (isOfAnotherClass) {
                definitions.pluginChildren.push_back({"core:object", row.name});
            }
            EXPECT_EQ(initFailure(definitions), row.message) << isOfAnotherClass;
            there.push_back(row.name);
        }
    }
}

TEST(CAudioWrapperInitTest, TheProcessDefinitionsMustBeThereAndOfTheirClass) {
    EXPECT_EQ(initFailure(CWrapperDefinitions().without("modOutput")),
              "No output process definition object with the name 'shared::audio.modOutput' found.");
    CWrapperDefinitions definitions;
    definitions.audioChildren.back() = {"audio:modNode", "modOutput"};
    EXPECT_EQ(initFailure(definitions),
              "Output process object 'shared::audio.modOutput' is not of required 'CModOutput' type.");
    std::vector<CTestNode> tree = CWrapperDefinitions().tree();
    tree.back().children.back() = {"core:object", "modMain"};
    CTestApplication application(wrapperCreators(), tree);
    CTestWrapper wrapper;
    EXPECT_EQ(messageOf(wrapper.init()),
              "No main process definition object with the name 'shared::audio.modMain' found.");
}

TEST(CAudioWrapperInitTest, AFailureOfTheGraphIsPassedOn) {
    CWrapperDefinitions definitions;
    definitions.processes.push_back({"audio:process-def", "bands", {{"is-multiband", "true"}}});
    EXPECT_EQ(initFailure(definitions), "No 'multiband-count-param' attribute defined.");
}

TEST(CAudioWrapperInitTest, AVersionHasTwoOrThreeNumbers) {
    const struct {
        const char* text;
        bool isGood;
        int32_t numbers[3];
    } rows[] = {
        {"1.8", true, {1, 8, 0}}, {"1.8.3", true, {1, 8, 3}},
        {"0.0", true, {0, 0, 0}}, {"12.0x10", true, {12, 16, 0}},
        {"1", false, {}},         {"", false, {}},
        {"1.2.3.4", false, {}},   {"1.", false, {}},
        {".1", false, {}},        {"1.2.", false, {}},
        {"1.-2", false, {}},      {"-1.2", false, {}},
        {"1.2b", false, {}},      {"1,8", false, {}},
        {"1..2", false, {}},
    };
    for (const auto& row : rows) {
        int32_t version[3] = {7, 7, 7};
        EXPECT_EQ(messageOf(parse(row.text, version)),
                  row.isGood ? "" : "Invalid version specification in string '" + std::string(row.text) + "'.");
        for (int32_t i = 0; i < 3; ++i) {
            EXPECT_EQ(version[i], row.isGood ? row.numbers[i] : 7) << row.text;
        }
    }
}

TEST(CAudioWrapperInitTest, ACodeIsPackedWithItsFirstCharacterHighest) {
    uint32_t code = 5;
    EXPECT_EQ(messageOf(CAudioWrapper::acquirePluginCode("Trvl", code)), "");
    EXPECT_EQ(code, 0x5472766cu);
    for (const char* text : {"", "Tar", "Tarve"}) {
        code = 5;
        EXPECT_EQ(messageOf(CAudioWrapper::acquirePluginCode(text, code)),
                  "Invalid plug-in code in string '" + std::string(text) + "'.");
        EXPECT_EQ(code, 5u);
    }
}

TEST(CAudioWrapperInitTest, TheStoredOversamplingLevelIsANumberOr1) {
    for (const auto& [text, level] : {std::pair{"", 1}, {"3", 3}, {"2", 2}, {"much", 1}}) {
        CUserFolder folder;
        CWrapperApplication application;
        CGlobalData::instance().setFileAccess(true);
        if (*text) {
            CGlobalData::instance().writeText("oversampling-level", text);
        }
        CTestWrapper wrapper;
        ASSERT_EQ(messageOf(wrapper.init()), "");
        EXPECT_EQ(wrapper.oversamplingLevel(), level) << text;
    }
}

TEST(CAudioWrapperInitTest, ChangesOfTheEngineReachTheHostByTheirIndex) {
    CWrapperApplication application;
    CTestWrapper wrapper;
    ASSERT_EQ(messageOf(wrapper.init()), "");
    wrapper.paramCollector()->findParam("plugin.modMain.g.gain")->setValue(1, 0, 0.0);
    ASSERT_EQ(wrapper.changes.size(), 1u);
    EXPECT_EQ(wrapper.changes[0].first, 1);
    // A change of the host causes no notification.
    wrapper.extParamList()->setParameter(0, 0.25);
    EXPECT_EQ(wrapper.changes.size(), 1u);
}

}  // namespace
}  // namespace tarv
