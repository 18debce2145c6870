// Presets of the product on the system's desktop: stored, renamed, activated, taken as default and deleted; and what
// the next start of the host finds.

#include <filesystem>
#include <fstream>
#include <iterator>

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr const char* kManager = "ui.win-preset-manager.c.";
constexpr const char* kConfirm = "ui.win-confirmation.c.buttons.ok";

class ProductPresets : public ProductWindow {
protected:
    void openManager() {
        click("c.buttons.preset-manager");
        expectSame("the manager opened");
    }
    static std::string button(const char* name) { return std::string(kManager) + name; }
    std::string row(const char* column, int32_t index) {
        return twin->at<CTextView>(std::string(kManager) + column + ".outline.list").paragraphText(index).toUtf8();
    }
    int32_t rows(const char* column) {
        return twin->at<CTextView>(std::string(kManager) + column + ".outline.list").paragraphCount();
    }
};

TEST_F(ProductPresets, AreStoredReplacedActivatedAndDeleted) {
    openManager();
    click(button("banks.buttons.add"));
    expectSame("a bank added");
    click(button("presets.buttons.add"));
    expectSame("a preset added");
    EXPECT_EQ(rows("banks"), 3);
    EXPECT_EQ(rows("presets"), 1);
    // The window stands over the bars.
    click("ui.win-preset-manager.window-title.close");
    wheel(column("xeq1", 3), 5);
    EXPECT_TRUE(becomes(4, "2.5"));
    openManager();
    clickRow(std::string(kManager) + "banks.outline.list", 2);
    expectSame("the bank selected");
    click(button("presets.buttons.add"));
    expectSame("another preset added");
    EXPECT_EQ(rows("presets"), 2);
    clickRow(std::string(kManager) + "presets.outline.list", 0);
    click(button("presets.buttons.activate"));
    EXPECT_TRUE(becomes(4, "0.0"));
    expectSame("the first preset activated");
    expectSameState();
    clickRow(std::string(kManager) + "presets.outline.list", 1);
    click(button("presets.buttons.activate"));
    EXPECT_TRUE(becomes(4, "2.5"));
    click(button("presets.buttons.delete"));
    expectSame("a question");
    EXPECT_EQ(twin->at("ui.win-confirmation").getAttrString("text"), CString("Delete the preset \"Preset 2\"?"));
    click(kConfirm);
    expectSame("a preset deleted");
    EXPECT_EQ(rows("presets"), 1);
    expectSameState();
    click("ui.win-preset-manager.window-title.close");
    expectSame("the manager closed");
}

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST_F(ProductPresets, AreExportedAndImportedByTheSystemsDialog) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / "tarv-preset-files";
    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder / "real");
    std::filesystem::create_directories(folder / "twin");
    std::filesystem::path real = folder / "real" / "Own.cpf";
    const std::filesystem::path other = folder / "twin" / "Own.cpf";
    wheel(column("xeq1", 3), 5);
    EXPECT_TRUE(becomes(4, "2.5"));
    openManager();
    click(button("banks.buttons.add"));
    click(button("presets.buttons.add"));
    expectSame("a preset of the state");
    for (const char* act : {"save", "load"}) {
        const CFileAnswer answer(real.make_preferred().string());
        twin->system_.answerFileDialog(other.generic_u16string());
        click(button("presets.buttons.") + act);
        expectSame(act);
    }
    EXPECT_FALSE(bytesOf(real).empty());
    EXPECT_TRUE(bytesOf(real) == bytesOf(other));
    EXPECT_EQ(rows("presets"), 2);
    click("ui.win-preset-manager.window-title.close");
    doubleClick(column("xeq1", 3));
    EXPECT_TRUE(becomes(4, "0.0"));
    openManager();
    clickRow(std::string(kManager) + "banks.outline.list", 2);
    clickRow(std::string(kManager) + "presets.outline.list", 1);
    click(button("presets.buttons.activate"));
    EXPECT_TRUE(becomes(4, "2.5"));
    expectSame("the imported preset activated");
    std::filesystem::remove_all(folder);
}

TEST_F(ProductPresets, AreThereWhenTheHostStartsAgain) {
    openManager();
    click(button("banks.buttons.add"));
    click(button("presets.buttons.add"));
    expectSame("a preset added");
    restart();
    openManager();
    EXPECT_EQ(rows("banks"), 3);
    clickRow(std::string(kManager) + "banks.outline.list", 2);
    expectSame("the bank of the last time");
    EXPECT_EQ(rows("presets"), 1);
}

TEST_F(ProductPresets, AreRenamedByASecondPressAndByF2) {
    openManager();
    click(button("banks.buttons.add"));
    click(button("presets.buttons.add"));
    expectSame("a preset added");
    const std::string list = std::string(kManager) + "presets.outline.list";
    // What was added is selected.
    clickRow(list, 0);
    keepStill();
    expectSame("the name is edited");
    type("Drums 1");
    strike('\r');
    expectSame("renamed");
    EXPECT_EQ(row("presets", 0), "Drums 1");
    strike(CHostDesk::kF2);
    type("Bass");
    strike('\x1b');
    expectSame("dropped");
    EXPECT_EQ(row("presets", 0), "Drums 1");
    clickRow(list, 0);
    strike(CHostDesk::kF2);
    type("Horns");
    strike('\r');
    expectSame("renamed by its key");
    EXPECT_EQ(row("presets", 0), "Horns");
    clickRow(std::string(kManager) + "banks.outline.list", 2);
    strike(CHostDesk::kF2);
    type("Mine");
    strike('\r');
    expectSame("the bank renamed");
    EXPECT_EQ(row("banks", 2), "Mine");
    EXPECT_EQ(desk.heard(parent), "");
    restart();
    openManager();
    EXPECT_EQ(row("banks", 2), "Mine");
    clickRow(std::string(kManager) + "banks.outline.list", 2);
    expectSame("the names of the last time");
    EXPECT_EQ(row("presets", 0), "Horns");
}

TEST_F(ProductPresets, TheDefaultIsWhatANewInstanceStartsWithUntilItIsCleared) {
    wheel(column("xeq1", 3), 5);
    EXPECT_TRUE(becomes(4, "2.5"));
    openManager();
    click(button("banks.buttons.add"));
    click(button("presets.buttons.add"));
    click(button("presets.buttons.set-default"));
    expectSame("a question");
    click(kConfirm);
    expectSame("the default is marked");
    restart();
    EXPECT_EQ(shown(4), "2.5");
    expectSameState();
    openManager();
    clickRow(std::string(kManager) + "banks.outline.list", 2);
    clickRow(std::string(kManager) + "presets.outline.list", 0);
    expectSame("marked again");
    click(button("presets.buttons.set-default"));
    expectSame("a question whether to clear");
    click(kConfirm);
    expectSame("no default");
    restart();
    EXPECT_EQ(shown(4), "0.0");
    expectSameState();
}

TEST_F(ProductPresets, OfRoutingAreAddedActivatedRenamedAndDeletedInTheirManager) {
    const std::string window = "ui.win-preset-manager-routing.c.presets.";
    const std::string list = window + "outline.list";
    const auto name = [&](int32_t index) { return twin->at<CTextView>(list).paragraphText(index).toUtf8(); };
    click("c.buttons.channel-routing");
    point("window-title.label");
    click("ui.win-channel-routing.c.buttons.routing-presets");
    expectSame("the manager opened");
    const int32_t former = twin->at<CTextView>(list).paragraphCount();
    ASSERT_GT(former, 1);
    for (int32_t i = 0; i < former; ++i) {
        clickRow(list, i);
        click(window + "buttons.activate");
        expectSame("a routing activated");
        expectSameState();
    }
    click(window + "buttons.add");
    expectSame("a routing added");
    EXPECT_EQ(twin->at<CTextView>(list).paragraphCount(), former + 1);
    clickRow(list, former);
    strike(CHostDesk::kF2);
    type("Mine");
    strike('\r');
    expectSame("renamed");
    EXPECT_EQ(name(former), "Mine");
    expectSameSettings();
    click(window + "buttons.delete");
    expectSame("a question");
    click(kConfirm);
    expectSame("deleted");
    EXPECT_EQ(twin->at<CTextView>(list).paragraphCount(), former);
    expectSameSettings();
    expectSameState();
    strike('\x1b');
    expectSame("the manager closed");
}

}  // namespace
}  // namespace tarv::host
