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
    std::string shown(int32_t parameter) { return effect.text(vst::kEffectGetParamDisplay, parameter); }
    bool becomes(int32_t parameter, const char* text) {
        return desk.until([&] { return shown(parameter) == text; });
    }
    void openManager() {
        click("c.buttons.preset-manager");
        expectSame("the manager opened");
    }
    static std::string button(const char* name) { return std::string(kManager) + name; }
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

}  // namespace
}  // namespace tarv::host
