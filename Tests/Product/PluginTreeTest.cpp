#include <gtest/gtest.h>

#include "ProductTree.h"

namespace tarv {

namespace {

const CAttributeRow kProject[] = {
    {"plugin-intchannel-count", "8"},
    {"plugin-group-count", "8"},
    {"plugin-tail", "0.5"},
    {"plugin-category-vst", "kPlugCategEffect"},
    {"plugin-autype", "kAudioUnitType_Effect"},
    {"plugin-code", "TAEQ"},
    {"plugin-code-stereo", "TAES"},
    {"app-name", "Brindle XEQ"},
    {"app-name-concat", "BrindleXEQ"},
    {"app-full-name", "Tarvelo Brindle XEQ"},
    {"app-vendor", "Tarvelo"},
    {"app-vendor-code", "Trvl"},
    {"app-version", "1.8"},
    {"app-desc", "Harmonically-enhanced 7-band equalizer."},
    {"has-editor", "true"},
    {"window-width", "640"},
    {"window-height", "400"},
};

const char* const kMakersOwn[] = {
    "app-copyright",         "app-copyright-year",        "app-vendor-url",   "app-url-base",
    "app-vendor-url-domain", "app-vendor-url-domain-inv", "app-vendor-email", "app-author"};

const CObjectRow kPlugin[] = {
    {"appdata", "core:object", {{"file", "../routing-presets|AppDataGlobal_routing-presets"}}},
    {"qplex-context", "audio:qplex-context", {}},
    {"audio-env", "audio:audio-env", {{"viz-fps", "30.0"}}},
    {"param-collector", "audio:param-collector", {{"env", "^audio-env"}}},
    {"viz-collector", "audio:viz-collector", {{"env", "^audio-env"}, {"param-collector", "^param-collector"}}},
    {"cctable", "audio:cctable", {}},
    {"interface-base-connector", "audio:interface-base-connector-vst", {}},
    {"interface-base",
     "audio:interface-base",
     {{"base-connector", "^interface-base-connector"},
      {"undo-count-max", "32"},
      {"param-collector", "^param-collector"},
      {"viz-collector", "^viz-collector"}}},
    {"param-registry-io",
     "audio:param-registry",
     {{"group-names-param", "plugin.modMain.io-params.group-names"},
      {"param-undo", "^interface-base"},
      {"param-collector", "^param-collector"},
      {"is-enumerated", "false"},
      {"hierarchy", "plugin.modMain.io-params"},
      {"id", "TAIO"},
      {"preset-naming", "Routing preset"}}},
    {"param-registry",
     "audio:param-registry",
     {{"group-names-param", "plugin.modMain.io-params.group-names"},
      {"param-undo", "^interface-base"},
      {"param-collector", "^param-collector"},
      {"is-enumerated", "false"},
      {"hierarchy", "plugin.modMain"},
      {"is-master", "true"},
      {"id", "TAEQ"},
      {"file", "FactoryROM.cbf"},
      {"preset-name-param", "plugin.modMain.preset-name"},
      {"preset-naming", "Master preset"}}},
    {"ext-param-list", "audio:ext-param-list", {}},
};

struct CExternalRow {
    const char* name;
    const char* param;
    const char* group;
    const char* element;
};

const CExternalRow kExternals[] = {
    {"Bypass", "plugin.modMain.modBypass.enable", "0", "0"},
    {"EQA0", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "0"},
    {"EQA1", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "1"},
    {"EQA2", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "2"},
    {"EQA3", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "3"},
    {"EQA4", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "4"},
    {"EQA5", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "5"},
    {"EQA6", "plugin.modMain.modBrindleXEQ.xeq-gains", "0", "6"},
    {"OGainA", "plugin.modMain.modOutGain.gain", "0", "0"},
    {"EQB0", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "0"},
    {"EQB1", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "1"},
    {"EQB2", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "2"},
    {"EQB3", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "3"},
    {"EQB4", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "4"},
    {"EQB5", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "5"},
    {"EQB6", "plugin.modMain.modBrindleXEQ.xeq-gains", "1", "6"},
    {"OGainB", "plugin.modMain.modOutGain.gain", "1", "0"},
    {"Oversmp", "plugin.modMain.oversampling", "0", "0"},
};

class PluginTree : public CProductTree {};

TEST_F(PluginTree, ProjectHoldsTheNamesOfTheProduct) {
    const CObject* project = shared("project");
    ASSERT_TRUE(project);
    for (const CAttributeRow& row : kProject) {
        EXPECT_EQ(project->getAttrString(row.name).toUtf8(), row.value) << row.name;
    }
    for (const char* name : kMakersOwn) {
        EXPECT_FALSE(project->getAttrString(name).isEmpty()) << name;
    }
}

TEST_F(PluginTree, TopLevelObjectsStandInOrder) {
    std::vector<std::string> names;
    for (const CObject* child : sharedRoot()->children()) {
        names.push_back(child->name().toUtf8());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"bs", "pal", "font", "is", "project", "plugin", "audio"}));
    EXPECT_TRUE(sharedRoot()->findChild("plugin")->isTemplate());
}

TEST_F(PluginTree, TheTemplateHoldsTheObjectsOfAnInstanceInOrder) {
    const CObject* plugin = makePlugin();
    ASSERT_TRUE(plugin);
    ASSERT_EQ(plugin->children().count(), static_cast<int32_t>(std::size(kPlugin)));
    for (int32_t i = 0; i < plugin->children().count(); ++i) {
        expectObject(plugin->children()[i], kPlugin[i]);
    }
}

TEST_F(PluginTree, EveryRelativePathInTheTemplateFindsItsObject) {
    const CObject* plugin = makePlugin();
    ASSERT_TRUE(plugin);
    int found = 0;
    for (const CObjectRow& row : kPlugin) {
        for (const CAttributeRow& attribute : row.attributes) {
            if (attribute.value[0] == '^') {
                const CObject* target = plugin->findChild(row.name)->findObject(attribute.value);
                ASSERT_TRUE(target) << row.name << ' ' << attribute.name;
                EXPECT_EQ(target->fullName().toUtf8(), std::string("plugin.") + (attribute.value + 1));
                ++found;
            }
        }
    }
    EXPECT_EQ(found, 10);
}

TEST_F(PluginTree, TheHostsParametersStandInTheOrderOfItsNumbers) {
    const CObject* list = makePlugin()->findChild("ext-param-list");
    ASSERT_EQ(list->children().count(), 18);
    for (int32_t i = 0; i < 18; ++i) {
        const CExternalRow& row = kExternals[i];
        expectObject(list->children()[i], {row.name,
                                           "audio:ext-param",
                                           {{"ext-name", row.name},
                                            {"param-collector", "plugin.param-collector"},
                                            {"param-name", row.param},
                                            {"element-index", row.element},
                                            {"group", row.group}}});
    }
}

}  // namespace

}  // namespace tarv
