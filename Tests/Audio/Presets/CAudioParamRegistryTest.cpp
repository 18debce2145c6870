#include "Audio/Presets/CAudioParamRegistry.h"

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

CTestNode registryNode(const std::string& name, const std::string& hierarchy, CTestAttributes more = {}) {
    CTestAttributes attributes = {{"param-collector", "^param-collector"}, {"hierarchy", hierarchy}, {"id", name}};
    attributes.insert(attributes.end(), more.begin(), more.end());
    return {"audio:param-registry", name, attributes};
}

std::vector<std::string> keysOf(CParamTree& tree, const char* path) {
    const auto* registry = tree.root().findObjectOf<CAudioParamRegistry>(path);
    std::vector<std::string> keys;
    for (int32_t i = 0; i < registry->paramCount(); ++i)
        keys.push_back(registry->param(i).key.toUtf8());
    return keys;
}

using CKeys = std::vector<std::string>;

TEST(ParamRegistry, EachRegistryTakesTheParametersUnderItsHierarchy) {
    CParamTree tree({}, {registryNode("TAIO", "plugin.modMain.io-params"), registryNode("TAEQ", "plugin.modMain.")});
    for (const char* name :
         {"plugin.modMain.io-params.grouping", "plugin.modMain.gain", "plugin.modMainly.x", "audio.x"})
        tree.collector().getParam(name);
    tree.collector().closeCollection();
    EXPECT_EQ(keysOf(tree, "plugin.TAIO"), (CKeys{"grouping"}));
    EXPECT_EQ(keysOf(tree, "plugin.TAEQ"), (CKeys{"gain", "io-params.grouping"}));
}

TEST(ParamRegistry, AnEnumeratedRegistryIsOfferedFirstAndTakesExclusively) {
    CParamTree tree({},
                    {registryNode("TAEQ", "plugin"), registryNode("TAIO", "plugin.io", {{"is-enumerated", "true"}})});
    tree.collector().getParam("plugin.io.x");
    tree.collector().getParam("plugin.y");
    tree.collector().closeCollection();
    EXPECT_EQ(keysOf(tree, "plugin.TAIO"), (CKeys{"x"}));
    EXPECT_EQ(keysOf(tree, "plugin.TAEQ"), (CKeys{"y"}));
}

TEST(ParamRegistry, AnAssignedParameterIsTakenByItsRegistryAlone) {
    CParamTree tree({paramNode("gain", "real", "0", "1", "0", {{"param-registry", "TAIO"}})},
                    {registryNode("TAEQ", "p"), registryNode("TAIO", "plugin.io")});
    tree.define("gain");
    tree.collector().closeCollection();
    EXPECT_EQ(keysOf(tree, "plugin.TAIO"), (CKeys{"p.gain"}));
    EXPECT_EQ(keysOf(tree, "plugin.TAEQ"), CKeys{});
}

TEST(ParamRegistry, ASecondCloseIsWithoutEffect) {
    CParamTree tree({}, {registryNode("TAEQ", "plugin")});
    tree.collector().getParam("plugin.x");
    EXPECT_FALSE(tree.collector().isClosed());
    tree.collector().closeCollection();
    tree.collector().closeCollection();
    EXPECT_TRUE(tree.collector().isClosed());
    EXPECT_EQ(keysOf(tree, "plugin.TAEQ"), (CKeys{"x"}));
}

TEST(ParamRegistry, AParameterMadeAfterTheCloseIsOfferedAtOnce) {
    CParamTree tree({}, {registryNode("TAEQ", "plugin")});
    tree.collector().closeCollection();
    tree.collector().getParam("plugin.late");
    EXPECT_EQ(keysOf(tree, "plugin.TAEQ"), (CKeys{"late"}));
}

TEST(ParamRegistry, TheFirstOfAnIdIsFound) {
    CParamTree tree(
        {}, {registryNode("TAEQ", "a",
                          {{"is-master", "true"}, {"file", "FactoryROM.cbf"}, {"preset-naming", "Master preset"}})});
    const auto* registry = static_cast<CAudioParamRegistry*>(tree.collector().getRegistry("TAEQ"));
    ASSERT_NE(registry, nullptr);
    EXPECT_TRUE(registry->isMaster());
    EXPECT_FALSE(registry->isEnumerated());
    EXPECT_EQ(registry->hierarchy(), "a.");
    EXPECT_EQ(registry->bankFile(), "FactoryROM.cbf");
    EXPECT_EQ(registry->presetNaming(), "Master preset");
    EXPECT_EQ(tree.collector().getRegistry("TAIO"), nullptr);
}

TEST(ParamRegistry, WithoutCollectorTheTreeFails) {
    CTestApplication application(paramCreators());
    auto root = application.makeRoot();
    const std::string failure =
        consumed(loadTree(*root, {{"audio:param-registry", "x", {{"param-collector", "none"}}}}));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "No parameter collector with the name 'none' defined.");
}

}  // namespace
}  // namespace tarv
