// The window of routing, by hand: what the engine holds afterwards.

#include "ProductEditor.h"

namespace tarv {

namespace {

constexpr const char* kWindow = "ui.win-channel-routing.c.";

struct CRow {
    const char* panel;
    const char* param;
};
constexpr CRow kRows[] = {{"input-routing", "io-params.in-routing"},
                          {"ms-pairs", "io-params.ms-pairs"},
                          {"group-assignments", "io-params.grouping"},
                          {"output-routing", "io-params.out-routing"}};
constexpr int32_t kChannels = 8;

class RoutingWindow : public CProductEditor {
protected:
    RoutingWindow() { click("c.buttons.channel-routing"); }
    static std::string field(const char* panel, int32_t channel) {
        return std::string(kWindow) + panel + ".fields.object" + (channel > 0 ? "#" + std::to_string(channel) : "");
    }
};

TEST_F(RoutingWindow, EachFieldIsChosenFromItsListAsOneStep) {
    for (const CRow& row : kRows) {
        for (int32_t channel = 0; channel < kChannels; ++channel) {
            const double before = engine(row.param, 0, channel);
            const int32_t chosen = before == 1.0 ? 2 : 1;
            click(field(row.panel, channel));
            choose(chosen);
            EXPECT_EQ(engine(row.param, 0, channel), chosen) << row.panel << channel;
            click("c.buttons.history.button-undo");
            EXPECT_EQ(engine(row.param, 0, channel), before) << row.panel << channel;
            click("c.buttons.history.button-redo");
            EXPECT_EQ(engine(row.param, 0, channel), chosen) << row.panel << channel;
        }
    }
}

TEST_F(RoutingWindow, IsOneForAnEditorAndClosesByItsButton) {
    EXPECT_TRUE(exists("ui.win-channel-routing"));
    click("ui.win-channel-routing.window-title.close");
    EXPECT_FALSE(exists("ui.win-channel-routing"));
    click("c.buttons.channel-routing");
    EXPECT_TRUE(exists("ui.win-channel-routing"));
    EXPECT_FALSE(exists("ui.win-channel-routing#1"));
    for (int32_t presses = 2; presses < 5; ++presses) {
        click("c.buttons.channel-routing");
        EXPECT_EQ(exists("ui.win-channel-routing"), presses % 2 == 1) << presses;
        EXPECT_FALSE(exists("ui.win-channel-routing#1"));
    }
}

TEST_F(RoutingWindow, RoutingPresetsHaveTheirQuickListAndTheirManager) {
    click(std::string(kWindow) + "buttons.routing-presets.quick-preset-list");
    choose(3);
    EXPECT_FALSE(exists("ui.win-preset-manager-routing"));
    EXPECT_EQ(engine("io-params.grouping", 0, 1), 1.0) << "Dual Mono";
    EXPECT_EQ(text("c.buttons.history", "undo-label"), "Undo: Routing preset activate");
    click(std::string(kWindow) + "buttons.routing-presets");
    EXPECT_TRUE(exists("ui.win-preset-manager-routing"));
}

TEST_F(RoutingWindow, RoutingPresetsStayWhenItCloses) {
    click(std::string(kWindow) + "buttons.routing-presets");
    click("ui.win-channel-routing.window-title.close");
    EXPECT_FALSE(exists("ui.win-channel-routing"));
    ASSERT_TRUE(exists("ui.win-preset-manager-routing"));
    click("ui.win-preset-manager-routing.window-title.close");
    EXPECT_FALSE(exists("ui.win-preset-manager-routing"));
}

TEST_F(RoutingWindow, NamesOpenTheirDialogs) {
    click(std::string(kWindow) + "input-routing.names");
    EXPECT_TRUE(exists("ui.win-channel-label-setup"));
    tap(kKeyEscape);  // its first field is edited
    tap(kKeyEscape);
    EXPECT_FALSE(exists("ui.win-channel-label-setup"));
    click(std::string(kWindow) + "group-assignments.names");
    EXPECT_TRUE(exists("ui.win-group-name-setup"));
}

TEST_F(RoutingWindow, TheManagerOfPresetsOpensByItsButton) {
    // The manager leaves the button's left half free.
    const CSpot opener("c.buttons.preset-manager", -30);
    for (int32_t presses = 1; presses < 4; ++presses) {
        click(opener);
        EXPECT_EQ(exists("ui.win-preset-manager"), presses % 2 == 1) << presses;
        EXPECT_FALSE(exists("ui.win-preset-manager#1"));
    }
}

}  // namespace

}  // namespace tarv
