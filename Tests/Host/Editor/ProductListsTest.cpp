// Lists beside the rows of a list: the banks of the quick list of presets, in windows of the system.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr const char* kQuickList = "c.buttons.preset-manager.quick-preset-list";
constexpr const char* kBanks = "ui.window-app-popup-list.list";
constexpr int32_t kFactory = 1;

class ProductLists : public ProductWindow {
protected:
    void openBanks() {
        click(kQuickList);
        expectSame("the banks");
        expectLists(1);
    }
    /// The list beside a row, by its path.
    std::string beside() {
        std::string path;
        for (const CObject* window : twin->tree().findObject("ui")->children()) {
            const CObject* list = window->findChild("list");
            if (list && !window->getAttrString("popup-dynamic-list-parent-id").isEmpty()) {
                path = list->fullName().toUtf8();
            }
        }
        return path;
    }
    bool hasPresets(int32_t bank) {
        for (const CObject* child : twin->at<CObject>(kBanks).children()) {
            if (child->getAttrBool("is-paragraph") && bank-- == 0) {
                return child->getAttrBool("has-sub-list");
            }
        }
        return false;
    }
    void expectLists(size_t count) { EXPECT_EQ(twin->popups().size(), count); }
    void expectSelected(const std::string& path, int32_t row) {
        EXPECT_EQ(twin->at<CTextView>(path).selectedParagraph(), row);
    }
    void restOn(const std::string& path, int32_t row, const char* what) {
        pointRow(path, row);
        rest();
        expectSame(what);
    }
    void work(char key, const char* what) {
        strike(key);
        expectSame(what);
    }
};

TEST_F(ProductLists, OpenBesideTheRowThatThePointerRestsOn) {
    const std::string before = effect.chunk(true);
    openBanks();
    restOn(kBanks, kFactory, "the presets of the factory bank");
    expectLists(2);
    const std::string presets = beside();
    restOn(presets, 2, "the pointer is on one of them");
    EXPECT_EQ(beside(), presets);
    expectSelected(presets, 2);
    point("window-title.label");
    rest();
    expectSame("the pointer is on no list");
    expectLists(2);
    expectSelected(kBanks, kFactory);
    restOn(kBanks, 0, "the pointer rests on another bank");
    expectLists(hasPresets(0) ? 2 : 1);
    restOn(kBanks, kFactory, "and on the former one");
    expectLists(2);
    strike('\x1b');
    expectSame("all closed");
    expectLists(0);
    EXPECT_EQ(effect.chunk(true), before);
    EXPECT_EQ(desk.heard(parent), "");
}

TEST_F(ProductLists, AreWorkedByKeysAlone) {
    openBanks();
    point("window-title.label");
    work(CHostDesk::kDown, "the first bank");
    work(CHostDesk::kDown, "the second one");
    expectSelected(kBanks, kFactory);
    work(CHostDesk::kRight, "its presets");
    expectLists(2);
    work(CHostDesk::kDown, "the second preset");
    expectSelected(beside(), 1);
    work(CHostDesk::kUp, "the first one");
    work(CHostDesk::kLeft, "back to the banks");
    expectLists(1);
    work(CHostDesk::kRight, "the presets again");
    expectLists(2);
    work('\x1b', "Escape closes the presets alone");
    expectLists(1);
    work(CHostDesk::kRight, "once more");
    type("inv");
    expectSame("the preset that begins so");
    work('\r', "chosen");
    expectLists(0);
    EXPECT_EQ(effect.text(vst::kEffectGetProgramName), "Inverted Smiley");
    expectSameState();
    EXPECT_EQ(desk.heard(parent), "") << "no key comes to the host";
}

TEST_F(ProductLists, CloseTogetherByAPressBesideThemAndWithTheEditor) {
    const std::string before = effect.chunk(true);
    openBanks();
    restOn(kBanks, kFactory, "the presets of the factory bank");
    click("window-status.label");
    expectSame("a press beside both");
    expectLists(0);
    openBanks();
    choose(kFactory);
    expectSame("the presets by a press");
    expectLists(2);
    reopen();
    EXPECT_TRUE(desk.popups().empty());
    openBanks();
    restOn(kBanks, kFactory, "the presets in the next editor");
    strike('\x1b');
    expectSame("all closed");
    EXPECT_EQ(effect.chunk(true), before);
    EXPECT_EQ(desk.heard(parent), "");
}

}  // namespace
}  // namespace tarv::host
