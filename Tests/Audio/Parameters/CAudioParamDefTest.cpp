#include <cmath>

#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

TEST(ParamDef, PersistentWinsOverStorableAndStorableOverGlobal) {
    CParamTree tree({
        paramNode("a", "real", "0", "1", "0",
                  {{"is-persistent", "true"}, {"is-storable", "true"}, {"is-global", "true"}}),
        paramNode("b", "real", "0", "1", "0", {{"is-storable", "true"}, {"is-global", "true"}}),
        paramNode("c", "real", "0", "1", "0", {{"is-global", "true"}}),
        paramNode("d", "real", "0", "1", "0", {{"is-discrete", "true"}, {"is-single-group", "1"}}),
    });
    EXPECT_EQ(tree.info("a").flags(), CAudioParamInfo::Persistent);
    EXPECT_EQ(tree.info("b").flags(), CAudioParamInfo::Storable);
    EXPECT_EQ(tree.info("c").flags(), CAudioParamInfo::Global);
    EXPECT_TRUE(tree.info("d").isDiscrete() && tree.info("d").isSingleGroup());
    EXPECT_FALSE(tree.info("d").isStorable() || tree.info("d").isPersistent() || tree.info("d").isGlobal());
}

TEST(ParamDef, AnEmptyFlagReadsAsFalse) {
    CParamTree tree({paramNode("a", "real", "0", "1", "0", {{"is-global", ""}, {"is-storable", "true"}}),
                     paramNode("b", "real", "0", "1", "0", {{"is-global", ""}})});
    EXPECT_EQ(tree.info("a").flags(), CAudioParamInfo::Storable);
    EXPECT_EQ(tree.info("b").flags(), 0);
}

TEST(ParamDef, ThreeDataTypesMakeAStringParameter) {
    CParamTree tree({
        paramNode("a", "text", "", "", "x", {{"data-type", "string"}}),
        paramNode("b", "text", "", "", "x", {{"data-type", "str"}}),
        paramNode("c", "text", "", "", "x", {{"data-type", "1"}}),
        paramNode("d", "real", "0", "1", "0", {{"data-type", "float"}}),
    });
    EXPECT_TRUE(tree.info("a").isString() && tree.info("b").isString() && tree.info("c").isString());
    EXPECT_FALSE(tree.info("d").isString());
    EXPECT_EQ(tree.info("a").minimum(0), 0.0);
    EXPECT_EQ(tree.info("a").maximum(0), 8388608.0);
}

TEST(ParamDef, NamesAndPathAreKept) {
    CParamTree tree({paramNode("gain", "real", "0", "1", "0", {{"visual-name", "Gain"}, {"param-registry", "TAEQ"}})});
    EXPECT_EQ(tree.info("gain").visualName(), "Gain");
    EXPECT_EQ(tree.info("gain").displayPath(), "gain");
    EXPECT_EQ(tree.info("gain").definitionPath(), "audio.gain");
    EXPECT_EQ(tree.info("gain").registry(), "TAEQ");
}

TEST(ParamDef, DefaultsAndLimitsAreReadByTheirPositionsConverter) {
    CParamTree tree({
        paramNode("ratio-a", "ratio", "50:1", "1:1", "1.05:1"),
        paramNode("pair", "gain freq", "-12 20", "12 21000", "0*64,6*1k;-6*20", {{"element-size", "2"}}),
    });
    EXPECT_DOUBLE_EQ(tree.info("ratio-a").defaultRow(0)[0], 1.0 / 1.05);
    EXPECT_DOUBLE_EQ(tree.info("ratio-a").minimum(0), 0.02);
    EXPECT_DOUBLE_EQ(tree.info("ratio-a").maximum(0), 0.999);
    const CAudioParamInfo& pair = tree.info("pair");
    EXPECT_NEAR(pair.maximum(0), 3.9810717055349727, 1e-12 * 3.98);   // 10^(12/20)
    EXPECT_NEAR(pair.minimum(0), 0.25118864315095796, 1e-12 * 0.25);  // 10^(-12/20)
    ASSERT_EQ(pair.defaultRowCount(), 2);
    ASSERT_EQ(pair.defaultRow(0).count(), 4);
    EXPECT_EQ(pair.defaultRow(0)[0], 1.0);
    EXPECT_EQ(pair.defaultRow(0)[1], 64.0);
    EXPECT_NEAR(pair.defaultRow(0)[2], 1.9952623149688797, 1e-12 * 2.0);
    EXPECT_EQ(pair.defaultRow(0)[3], 1000.0);
    ASSERT_EQ(pair.defaultRow(1).count(), 2);
    EXPECT_EQ(pair.defaultRow(1)[1], 20.0);
}

TEST(ParamDef, TheClampHandlesBothOrdersOfTheLimits) {
    CParamTree tree({paramNode("down", "real", "5", "-5", "0"), paramNode("up", "real", "-5", "5", "9")});
    EXPECT_EQ(tree.info("down").clamp(0, 7.0), 5.0);
    EXPECT_EQ(tree.info("down").clamp(0, -7.0), -5.0);
    EXPECT_EQ(tree.info("up").clamp(0, 7.0), 5.0);
    EXPECT_EQ(tree.info("up").defaultRow(0)[0], 5.0);  // a default is clamped, too
}

TEST(ParamDef, PositionsBeyondTheElementSizeAreDropped) {
    CParamTree tree({paramNode("a", "real", "-9", "9", "1*2*3,4*5")});
    ASSERT_EQ(tree.info("a").defaultRow(0).count(), 2);
    EXPECT_EQ(tree.info("a").defaultRow(0)[0], 1.0);
    EXPECT_EQ(tree.info("a").defaultRow(0)[1], 4.0);
}

TEST(ParamDef, MoreConvertersThanPositionsAreAllowed) {
    CParamTree tree({paramNode("a", " real  freq ", "0  7", "1", "0")});
    EXPECT_EQ(tree.info("a").converterNames().count(), 2);
    EXPECT_EQ(tree.info("a").minimum(0), 0.0);
}

TEST(ParamDef, DefaultTextsGetIdsFromOne) {
    CParamTree tree({paramNode("names", "text", "", "", "L,R,L", {{"data-type", "string"}})});
    const CAudioParamInfo& info = tree.info("names");
    ASSERT_EQ(info.defaultRow(0).count(), 3);
    EXPECT_EQ(info.defaultRow(0)[0], 1.0);
    EXPECT_EQ(info.defaultRow(0)[2], 3.0);
    EXPECT_EQ(*info.stringPool().getString(3), "L");
}

struct CBadDefinition {
    const char* name;
    CTestNode node;
    const char* message;
};

TEST(ParamDef, BadDefinitionsStopTheTreeWithTheirMessage) {
    const CBadDefinition kBad[] = {
        {"element size 0", paramNode("x", "real", "0", "1", "0", {{"element-size", "0"}}),
         "Invalid element size 0 specified."},
        {"string of two", paramNode("x", "text", "", "", "a", {{"data-type", "1"}, {"element-size", "2"}}),
         "Invalid element size 2 for non-float data specified."},
        {"unknown converter", paramNode("x", "furlong", "0", "1", "0"),
         "Audio parameter converter 'furlong' not found."},
        {"converter of another class", paramNode("x", "^", "0", "1", "0"), "Audio parameter converter '^' not found."},
        {"too few converters", paramNode("x", "real", "0 0", "1 1", "0*0", {{"element-size", "2"}}),
         "Not enough converters defined 1 (should be 2)."},
        {"too few minima", paramNode("x", "real real", "0", "1 1", "0*0", {{"element-size", "2"}}),
         "Not enough minimum values defined 1 (should be 2)."},
        {"too few maxima", paramNode("x", "real real", "0 0", "1", "0*0", {{"element-size", "2"}}),
         "Not enough maximum values defined 1 (should be 2)."},
        {"no range", paramNode("x", "real", "1", "1.0", "1"),
         "Zero default min-max values difference detected in element 0."},
        {"bad default", paramNode("x", "real", "0", "1", "0,half"), "Default values parsing error."},
        {"short element", paramNode("x", "real real", "0 0", "1 1", "0*1,1;0*0", {{"element-size", "2"}}),
         "Not enough default elements at pos 5."},
        {"no defaults", paramNode("x", "real", "0", "1", ""), "No default values specified."},
        {"slot without name", {"audio:param-alloc", "x", {{"index", "0"}}}, "Invalid parameter name specified."},
        {"slot without index",
         {"audio:param-alloc", "x", {{"param-name", "gain"}}},
         "Invalid index value '' specified."},
        {"slot below 0",
         {"audio:param-alloc", "x", {{"param-name", "gain"}, {"index", "-1"}}},
         "Invalid index value '-1' specified."},
        {"remap of nothing", {"audio:param-remap", "x", {{"new", "y"}}}, "Invalid orignal parameter name specified."},
        {"remap to nothing", {"audio:param-remap", "x", {{"orig", "y"}}}, "Invalid new parameter name specified."},
    };
    for (const CBadDefinition& bad : kBad) {
        const std::string failure = loadFailure(bad.node);
        EXPECT_EQ(failure.substr(0, failure.find("\r\n")), bad.message) << bad.name;
        EXPECT_NE(failure.find(" // audio.x"), std::string::npos) << bad.name;
    }
}

TEST(ParamDef, SlotsAndRemapsKeepTheirAttributes) {
    CParamTree tree({{"audio:param-alloc", "slot", {{"param-name", "bias-I"}, {"index", "5"}}},
                     {"audio:param-remap", "remap", {{"orig", "modBandFilter.gain"}, {"new", "^.xeq-gains"}}}});
    const auto* slot = CApplication::sharedRoot()->findObjectOf<CAudioParamAllocDef>("audio.slot");
    EXPECT_EQ(slot->paramName(), "bias-I");
    EXPECT_EQ(slot->index(), 5);
    const auto* remap = CApplication::sharedRoot()->findObjectOf<CAudioParamRemapDef>("audio.remap");
    EXPECT_EQ(remap->origName(), "modBandFilter.gain");
    EXPECT_EQ(remap->newName(), "^.xeq-gains");
}

}  // namespace
}  // namespace tarv
