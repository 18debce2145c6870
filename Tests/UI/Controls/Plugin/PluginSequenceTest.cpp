// Random sequences of all that changes states as a whole, by seed: what the editor's objects show is what the engine
// holds.

#include <cstdlib>
#include <random>

#include "PluginTree.h"
#include "UI/Controls/Lists/CValueListAudio.h"

namespace tarv {
namespace {

struct PluginSequences : CPluginTest {
    static constexpr int32_t kGroups = 8;

    void build() {
        addBridge("grouping-bridge", "io-params.grouping");
        addBridge("in-routing-bridge", "io-params.in-routing");
        load("",
             {{"ui:plugin-control", "pc", {{"interface-client", "ui.interface-client"}, {"param-registry", kMaster}}},
              {"ui:param-group-selector", "sel", {{"group-index", "0"}}},
              {"ui:param-group-controller",
               "ctl",
               {{"interface-client", "ui.interface-client"}, {"group-selector", "ui.sel"}},
               {{"core:object", "item", {{"bridge", "ui.xeq-bridge"}}},
                {"core:object", "item", {{"bridge", "ui.gain-bridge"}}},
                {"core:object", "item", {{"bridge", "ui.freq-bridge"}, {"is-reset-disabled", "true"}}}}},
              {"ui:value-list", "groups", {{"mode", "audio-groups"}}}});
        const auto button = [](const char* name) { return CTestNode{"ui:button-base", name}; };
        openWindow({{"ui:history",
                     "h",
                     {{"interface-client", "ui.interface-client"}},
                     {{"ui:value-list-manual", "history-list"},
                      button("button-undo"),
                      button("button-select"),
                      button("button-redo")}}});
    }
    int32_t upTo(int32_t end) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(end)); }
    double level() { return upTo(49) / 2.0 - 12.0; }

    std::string step() {
        switch (upTo(11)) {
            case 0:
            case 1:
                setGain(level(), upTo(3));
                return "gain";
            case 2:
            case 3:
                setCurve(upTo(3), {level(), level(), level()});
                return "curve";
            case 4:
                deliver("pc", "on-ab");
                return "A/B";
            case 5:
                deliver("pc", "on-copy");
                return "copy to the other state";
            case 6:
                undo(1 + upTo(3));
                return "undo";
            case 7:
                EXPECT_EQ(consumed(client().selectStep(upTo(12))), "");
                return "jump";
            case 8:
                set(object("sel"), "group-index", std::to_string(upTo(kGroups)).c_str());
                deliver("ctl", "copy-group", index(upTo(kGroups)));
                return "copy of a group";
            case 9:
                upTo(4) == 0 ? deliver("pc", "on-reset") : deliver("ctl", "reset-group");
                return "reset";
            default:
                EXPECT_EQ(consumed(upTo(2) == 0 ? client().setProgram(kMaster, upTo(registry().programCount()))
                                                : client().activateRomPreset(kMaster, upTo(7))),
                          "");
                return "preset";
        }
    }
    void check() {
        system_.pump();
        for (int32_t group = 0; group < kGroups; ++group) {
            const double shown = bridge("gain-bridge").value(group, 0);
            EXPECT_NEAR(std::pow(10.0, shown / 20.0), engineValue(kOutGain, group), 1e-9) << "group " << group;
            for (int32_t band = 0; band < 7; ++band) {
                EXPECT_NEAR(std::pow(10.0, bridge("xeq-bridge").value(group, band) / 20.0),
                            engineValue("modBrindleXEQ.xeq-gains", group, band), 1e-9)
                    << "group " << group << ", band " << band;
                EXPECT_EQ(bridge("freq-bridge").value(group, band),
                          engineValue("modBrindleXEQ.xeq-freqs", group, band));
            }
        }
        EXPECT_EQ(object("pc").getAttrBool("is-alternate"), registry().isAlternate());
        EXPECT_EQ(object("pc").getAttrString("program-name"), registry().programName(registry().currentProgram()));
        checkHistory();
        EXPECT_EQ(dynamic_cast<CValueList&>(object("groups")).count(), kGroups);
    }
    void checkHistory() {
        int32_t position = 0;
        const auto labels = instance().interfaceBase()->getStepLabels(&position);
        const auto& list = dynamic_cast<CValueList&>(object("w.h.history-list"));
        ASSERT_EQ(list.count(), labels.count());
        for (int32_t i = 0; i < labels.count(); ++i) {
            const CValueList::CItem& row = list[labels.count() - 1 - i];
            EXPECT_EQ(row.title, labels[i]);
            EXPECT_EQ(row.isDimmed, i > position);
        }
        EXPECT_EQ(list.getAttrInt("selected-item"), labels.count() - 1 - position);
        EXPECT_EQ(at<CViewBaseCtlEvents>("h.button-undo").isDisabled(), position == 0);
        EXPECT_EQ(at<CViewBaseCtlEvents>("h.button-redo").isDisabled(), position + 1 == labels.count());
    }

    std::mt19937 random_;
};

TEST_F(PluginSequences, WhatIsShownIsWhatTheEngineHolds) {
    build();
    const char* const isLong = std::getenv("TARV_LONG");
    const int32_t steps = isLong && *isLong == '1' ? 20000 : 300;
    for (int32_t i = 0; i < steps && !HasFailure(); ++i) {
        const std::string what = step();
        SCOPED_TRACE("step " + std::to_string(i) + ": " + what);
        check();
    }
}

}  // namespace
}  // namespace tarv
