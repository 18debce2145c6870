// The windows of names, by hand: what the engine holds afterwards.

#include "Audio/Engine/CAudioInterfaceBase.h"
#include "ProductEditor.h"

namespace tarv {

namespace {

struct CRow {
    const char* window;
    const char* panel;
    const char* param;
};
constexpr CRow kRows[] = {{"ui.win-channel-label-setup", "input-routing", "io-params.in-channel-names"},
                          {"ui.win-group-name-setup", "group-assignments", "io-params.group-names"}};

class NamingWindows : public CProductEditor {
protected:
    NamingWindows() { click("c.buttons.channel-routing"); }
    void open(const CRow& row) { click(std::string("ui.win-channel-routing.c.") + row.panel + ".names"); }
    static std::string button(const CRow& row, const char* name) {
        return std::string(row.window) + ".buttons." + name;
    }
    /// The field of a name.
    std::string field(const CRow& row, int32_t index) {
        const CObject* names = &at<CObject>(std::string(row.window) + ".names");
        int32_t found = 0;
        for (const CObject* child : names->children()) {
            if (child->findChild("name") && found++ == index) {
                return child->fullName().toUtf8() + ".name";
            }
        }
        ADD_FAILURE() << "no name " << index;
        return "";
    }
    std::string shown(const CRow& row, int32_t index) {
        return at<CTextView>(field(row, index)).paragraphText(0).toUtf8();
    }
};

TEST_F(NamingWindows, NamesThatAreTypedAreSetByOk) {
    for (const CRow& row : kRows) {
        open(row);
        const std::string before = engineText(row.param, 1);
        click(field(row, 1));
        type(u"Violas");
        EXPECT_EQ(engineText(row.param, 1), before);
        click(button(row, "ok"));
        EXPECT_FALSE(exists(row.window));
        EXPECT_EQ(engineText(row.param, 1), "Violas");
        click("c.buttons.history.button-undo");
        EXPECT_EQ(engineText(row.param, 1), before) << "one step";
    }
}

TEST_F(NamingWindows, CancelLeavesTheNames) {
    for (const CRow& row : kRows) {
        open(row);
        const std::string before = engineText(row.param, 0);
        click(field(row, 0));
        type(u"Brass");
        click(button(row, "cancel"));
        EXPECT_FALSE(exists(row.window));
        EXPECT_EQ(engineText(row.param, 0), before);
    }
}

TEST_F(NamingWindows, AllNamesAreCopiedAndPasted) {
    for (const CRow& row : kRows) {
        open(row);
        const std::string second = shown(row, 1);
        click(button(row, "copy-paste.copy"));
        click(field(row, 1));
        type(u"Horns");
        EXPECT_EQ(shown(row, 1), "Horns");
        click(button(row, "copy-paste.paste"));
        EXPECT_EQ(shown(row, 1), second);
        click(button(row, "cancel"));
    }
}

TEST_F(NamingWindows, TheHostsNamesAreTakenOver) {
    const CRow& row = kRows[0];
    CTextList labels;
    labels.append("Left in");
    labels.append("Right in");
    wrapper().interfaceBase()->setChannelLabels(labels);
    open(row);
    click("ui.win-channel-label-setup.from-host.import");
    EXPECT_EQ(engineText(row.param, 0), "Left in");
    EXPECT_EQ(shown(row, 1), "Right in");
}

}  // namespace

}  // namespace tarv
