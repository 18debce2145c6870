// The windows of presets, with their questions, messages and files, by hand: what the engine and the files hold
// afterwards.

#include <cstdlib>
#include <filesystem>
#include <functional>

#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Stores/CAudioDefaultPreset.h"
#include "ProductEditor.h"
#include "UI/Controls/Buttons/CScrollerBar.h"

namespace tarv {

namespace {

constexpr const char* kGains = "modBrindleXEQ.xeq-gains";
constexpr const char* kManager = "ui.win-preset-manager";
constexpr const char* kRouting = "ui.win-preset-manager-routing";

class PresetWindows : public CProductEditor {
protected:
    void openManager() { click("c.buttons.preset-manager"); }
    void openRoutingManager() {
        click("c.buttons.channel-routing");
        click("ui.win-channel-routing.c.buttons.routing-presets");
    }
    static std::string part(const char* window, const std::string& rest) { return std::string(window) + ".c." + rest; }
    static std::string listOf(const char* window, const char* column) {
        return part(window, std::string(column) + ".outline.list");
    }
    std::string rows(const char* window, const char* column) {
        auto& list = at<CTextView>(listOf(window, column));
        std::string all;
        for (int32_t i = 0; i < list.paragraphCount(); ++i) {
            all += (i > 0 ? "|" : "") + list.paragraphText(i).toUtf8();
        }
        return all;
    }
    /// From the middle of what is seen of a list to that of a row.
    CSpot row(const char* window, const char* column, int32_t index) {
        auto& list = at<CTextView>(listOf(window, column));
        const CViewRect rect = list.rowRect(index);
        const CViewRect& seen = list.visibleRect();
        return {listOf(window, column), 0,
                static_cast<int32_t>(rect.y + rect.height / 2.0 - (seen.y + seen.height / 2.0))};
    }
    std::u16string file(const char16_t* name) {
        return std::filesystem::path(std::getenv("TARV_DATA_ROOT")).u16string() + u"/" + name;
    }
    void pressWithFile(const std::string& button, const std::u16string& path) {
        system_.answerFileDialog(path);
        click(button);
    }
    void confirm() {
        ASSERT_TRUE(exists("ui.win-confirmation"));
        click("ui.win-confirmation.c.buttons.ok");
    }
    std::string program() { return wrapper().paramRegistry()->programName(0).toUtf8(); }
};

TEST_F(PresetWindows, BanksAreAddedSavedDeletedAndLoaded) {
    openManager();
    ASSERT_EQ(rows(kManager, "banks"), "Session Bank|Factory ROM");
    click(part(kManager, "banks.buttons.add"));
    EXPECT_EQ(rows(kManager, "banks"), "Session Bank|Factory ROM|Bank 1");
    pressWithFile(part(kManager, "banks.buttons.save"), file(u"kept.cbf"));
    EXPECT_TRUE(std::filesystem::exists(file(u"kept.cbf")));
    click(part(kManager, "banks.buttons.delete"));
    confirm();
    EXPECT_EQ(rows(kManager, "banks"), "Session Bank|Factory ROM");
    click(row(kManager, "banks", 1));
    pressWithFile(part(kManager, "banks.buttons.load"), file(u"kept.cbf"));
    EXPECT_EQ(rows(kManager, "banks"), "Session Bank|Factory ROM|Bank 1");
}

TEST_F(PresetWindows, PresetsAreAddedReplacedActivatedSavedAndLoaded) {
    openManager();
    click(part(kManager, "banks.buttons.add"));
    click(part(kManager, "presets.buttons.add"));
    EXPECT_EQ(rows(kManager, "presets"), "Preset 1");
    setEngine(kGains, 0, 2, 2.0);
    click(part(kManager, "presets.buttons.replace"));
    confirm();
    pressWithFile(part(kManager, "presets.buttons.save"), file(u"kept.cpf"));
    EXPECT_TRUE(std::filesystem::exists(file(u"kept.cpf")));
    setEngine(kGains, 0, 2, 1.0);
    click(part(kManager, "presets.buttons.activate"));
    EXPECT_EQ(engine(kGains, 0, 2), 2.0);
    EXPECT_EQ(program(), "Preset 1");
    click(part(kManager, "presets.buttons.delete"));
    confirm();
    EXPECT_EQ(rows(kManager, "presets"), "");
    pressWithFile(part(kManager, "presets.buttons.load"), file(u"kept.cpf"));
    EXPECT_EQ(rows(kManager, "presets"), "Preset 1");
    click(part(kManager, "presets.buttons.set-default"));
    confirm();
    CString name;
    EXPECT_TRUE(CAudioDefaultPreset::readName(name));
    EXPECT_EQ(name, CString("Preset 1"));
}

TEST_F(PresetWindows, ABankIsChosenAndAPresetOfItActivatedByADoubleClick) {
    openManager();
    click(row(kManager, "banks", 1));
    const std::string first = at<CTextView>(listOf(kManager, "presets")).paragraphText(1).toUtf8();
    doubleClick(row(kManager, "presets", 1));
    EXPECT_EQ(program(), first);
}

TEST_F(PresetWindows, TheSelectedRowIsRenamedByAPress) {
    openManager();
    click(part(kManager, "banks.buttons.add"));
    click(row(kManager, "banks", 2));
    wait(1.0);
    type(u"Mine [B]");
    EXPECT_EQ(rows(kManager, "banks"), "Session Bank|Factory ROM|Mine [B]");
}

TEST_F(PresetWindows, TheRowThatWasRenamedStaysSelected) {
    openManager();
    click(row(kManager, "presets", 2));
    wait(1.0);
    click(row(kManager, "presets", 2));
    wait(1.0);
    type(u"Mine");
    wait();
    auto& presets = at<CTextView>(listOf(kManager, "presets"));
    ASSERT_EQ(presets.paragraphText(2).toUtf8(), "Mine") << "a program of the session";
    EXPECT_EQ(presets.selectedParagraph(), 2);
    EXPECT_EQ(wrapper().paramRegistry()->currentProgram(), 0);
    click(part(kManager, "banks.buttons.add"));
    click(part(kManager, "presets.buttons.add"));
    click(part(kManager, "presets.buttons.add"));
    click(row(kManager, "presets", 0));
    wait(1.0);
    tap(kKeyF2);
    type(u"Stored");
    wait();
    EXPECT_EQ(rows(kManager, "presets"), "Stored|Preset 2");
    EXPECT_EQ(presets.selectedParagraph(), 0);
    auto& banks = at<CTextView>(listOf(kManager, "banks"));
    click(row(kManager, "banks", 2));
    wait(1.0);
    type(u"Kept");
    wait();
    EXPECT_EQ(rows(kManager, "banks"), "Session Bank|Factory ROM|Kept");
    EXPECT_EQ(banks.selectedParagraph(), 2);
    EXPECT_EQ(presets.selectedParagraph(), 0);
}

TEST_F(PresetWindows, AFailureOpensAMessageThatIsClosedByItsButtons) {
    openManager();
    pressWithFile(part(kManager, "presets.buttons.load"), u"/no/such/folder/x.cpf");
    ASSERT_TRUE(exists("ui.win-message"));
    EXPECT_EQ(text("ui.win-message", "title"), "Load Preset");
    click("ui.win-message.c.buttons.ok");
    EXPECT_FALSE(exists("ui.win-message"));
    pressWithFile(part(kManager, "banks.buttons.load"), u"/no/such/folder/x.cbf");
    ASSERT_TRUE(exists("ui.win-message"));
    click("ui.win-message.window-title.close");
    EXPECT_FALSE(exists("ui.win-message"));
    EXPECT_TRUE(exists(kManager));
}

TEST_F(PresetWindows, TheMainWindowsButtonsCanBePressedWhileTheManagerIsOpen) {
    wheel(column("xeq1", 0), 1.0);
    openManager();
    ASSERT_TRUE(exists(kManager));
    EXPECT_FALSE(at("c.buttons.history.button-undo").isDisabled());
    click("c.buttons.history.button-undo");
    EXPECT_TRUE(at("c.buttons.history.button-undo").isDisabled());
    click("c.buttons.ab");
    EXPECT_TRUE(hasState("c.buttons.ab.labels.b", "live"));
    click("c.buttons.settings");
    EXPECT_TRUE(exists("ui.win-settings"));
    click("ui.win-settings.window-title.close");
    click("c.buttons.channel-routing");
    EXPECT_TRUE(exists("ui.win-channel-routing"));
    click("ui.win-channel-routing.window-title.close");
    EXPECT_TRUE(exists(kManager));
    click("c.buttons.preset-manager");
    EXPECT_FALSE(exists(kManager)) << "a second press closes it";
}

TEST_F(PresetWindows, TheirFrameIsThatOfTheOtherWindows) {
    openManager();
    click("c.buttons.settings");
    const std::function<std::string(const CObject&)> tree = [&tree](const CObject& object) {
        std::string text = object.tag().toUtf8() + " " + object.name().toUtf8() + "(";
        for (const CObject* child : object.children()) {
            text += tree(*child);
        }
        return text + ")";
    };
    for (const std::string frame : {".window-title", ".window-status"}) {
        EXPECT_EQ(tree(at(kManager + frame)), tree(at("ui.win-settings" + frame)));
    }
    for (const char* rate : {"fps", "gradient-fps", "cursor-fps", "deactivate-fps", "auto-click-fps"}) {
        EXPECT_EQ(text(kManager, rate), text("ui.win-settings", rate)) << rate;
    }
}

TEST_F(PresetWindows, APresetOfTheRoutingIsNoFileOfAnotherProduct) {
    openRoutingManager();
    click(row(kRouting, "presets", 0));
    pressWithFile(part(kRouting, "presets.buttons.save"), file(u"routing.cpf"));
    click("c.buttons.preset-manager");
    pressWithFile(part(kManager, "presets.buttons.load"), file(u"routing.cpf"));
    ASSERT_TRUE(exists("ui.win-message"));
    EXPECT_EQ(text("ui.win-message", "title"), "Wrong Kind of Preset");
    EXPECT_EQ(text("ui.win-message", "text"),
              "The file \"routing.cpf\" can't be loaded.\n"
              "The preset is one of the routing alone: load it in Routing Presets.");
}

TEST_F(PresetWindows, RoutingPresetsAreWorkedByTheSameButtons) {
    openRoutingManager();
    const std::string before = rows(kRouting, "presets");
    click(row(kRouting, "presets", 0));
    setEngine("io-params.grouping", 0, 1, 3.0);
    click(part(kRouting, "presets.buttons.replace"));
    confirm();
    setEngine("io-params.grouping", 0, 1, 0.0);
    click(part(kRouting, "presets.buttons.activate"));
    EXPECT_EQ(engine("io-params.grouping", 0, 1), 3.0);
    pressWithFile(part(kRouting, "presets.buttons.save"), file(u"routing.cpf"));
    click(part(kRouting, "presets.buttons.delete"));
    confirm();
    EXPECT_LT(rows(kRouting, "presets").size(), before.size());
    pressWithFile(part(kRouting, "presets.buttons.load"), file(u"routing.cpf"));
    EXPECT_EQ(rows(kRouting, "presets").size(), before.size());
    click(part(kRouting, "presets.buttons.add"));
    EXPECT_GT(rows(kRouting, "presets").size(), before.size());
}

TEST_F(PresetWindows, ABarScrollsAListWithHiddenRows) {
    openManager();
    const std::string bar = part(kManager, "presets.outline.scroller.bar");
    const auto& list = at<CTextView>(listOf(kManager, "presets"));
    EXPECT_TRUE(at<CScrollerBar>(bar).buttonRect().isEmpty()) << "all rows are seen";
    // Rows are higher there.
    EXPECT_FALSE(at<CObject>("ui.global-data.tablet-mode").setAttribute("tablet-mode", CString("true")));
    wait();
    const int32_t last = list.paragraphCount() - 1;
    ASSERT_GT(list.rowRect(last).bottom(), list.visibleRect().bottom() + 1.0);
    EXPECT_FALSE(at<CScrollerBar>(bar).buttonRect().isEmpty());
    drag(bar, 0, 200);
    EXPECT_LE(list.rowRect(last).bottom(), list.visibleRect().bottom() + 1.0);
    EXPECT_LT(list.rowRect(0).y, list.visibleRect().y);
}

TEST_F(PresetWindows, TheRightEndOfARowChoosesItWhereNoRowIsHidden) {
    openManager();
    CSpot end = row(kManager, "presets", 2);
    end.x = static_cast<int32_t>(at<CTextView>(listOf(kManager, "presets")).visibleRect().width / 2.0) - 4;
    click(end);
    EXPECT_EQ(at<CTextView>(listOf(kManager, "presets")).selectedParagraph(), 2);
}

TEST_F(PresetWindows, CloseByTheirButtons) {
    openManager();
    click(std::string(kManager) + ".window-title.close");
    EXPECT_FALSE(exists(kManager));
    openRoutingManager();
    click(std::string(kRouting) + ".window-title.close");
    EXPECT_FALSE(exists(kRouting));
}

}  // namespace

}  // namespace tarv
