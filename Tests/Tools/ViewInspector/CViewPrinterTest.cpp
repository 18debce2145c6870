#include "CViewPrinter.h"

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Tests/Tools/ViewInspector/DemoEditor.h"
#include "ViewPicture.h"

namespace tarv {
namespace {

/// A tree in a separate file.
class ViewPrinter : public CDemoEditor {
protected:
    void openTree(const std::string& views, const std::string& rootAttributes = "", double scale = 1.0) {
        const std::string path = testing::TempDir() + "views.xml";
        std::ofstream(path) << "<definitions><ui:ui-event-bridge name='ui'>"
                               "<core:global-settings name='global-settings'/>"
                               "<ui:window-shared-data name='window-shared-data'/>"
                               "<ui:view name='main-window' is-root-view='true' is-main-window='true' width='200' "
                               "height='100' palette='Default' "
                            << rootAttributes << "><ui:window-renderer name='window-renderer' is-plugin-vst='true'/>"
                            << views << "</ui:view></ui:ui-event-bridge></definitions>";
        ASSERT_EQ(editor.open(path, scale), "");
    }
    std::string line(const std::string& path) { return CViewPrinter::lineOf(at(path)); }
    std::string printed(bool hasFormulas) {
        const std::string path = testing::TempDir() + "views.txt";
        FILE* file = std::fopen(path.c_str(), "w");
        CViewPrinter(file).print(*editor.mainView(), hasFormulas);
        std::fclose(file);
        std::ifstream read(path);
        return {std::istreambuf_iterator<char>(read), std::istreambuf_iterator<char>()};
    }
};

TEST_F(ViewPrinter, ALineSaysWhereAViewStandsAndHowItIsDrawn) {
    openTree(
        "<ui:view name='a' placement='overlay' width='50' height='20' outer-border='L10 T5' color='Panel'/>"
        "<ui:view name='b' placement='overlay' width='300' height='20' is-dynamic='true' opacity='0.5'/>"
        "<ui:view name='c' placement='overlay' width='5' height='5' is-visible='false' is-decorative='true'/>"
        "<ui:view name='d' placement='overlay' width='5' height='5' outer-border='L500' is-disabled='true'/>");
    EXPECT_EQ(line("a"), "a <ui:view> 10,5 50x20 z101001 placement=overlay color=Panel");
    EXPECT_EQ(line("b"), "b <ui:view> 0,0 300x20 z201502 seen 0,0 200x20 dynamic opacity 0.5 placement=overlay");
    EXPECT_EQ(line("c"), "c <ui:view> 0,0 5x5 z301003 hidden decorative placement=overlay");
    EXPECT_EQ(line("d"), "d <ui:view> 500,0 5x5 z401004 unseen disabled placement=overlay");
    ASSERT_EQ(editor.setState("ui.main-window.a", "active hover"), "");
    EXPECT_EQ(line("a"), "a <ui:view> 10,5 50x20 z101001 [active hover] placement=overlay color=Panel");
    EXPECT_EQ(editor.setState("ui.main-window.x", "active"), "no view 'ui.main-window.x'");
}

TEST_F(ViewPrinter, TheTreeIsIndented) {
    openTree("<ui:view name='a' width='50' height='20'><ui:view name='b' width='5' height='5'/></ui:view>");
    EXPECT_EQ(printed(false),
              "main-window <ui:view> 0,0 200x100 z0\n"
              "  a <ui:view> 75,40 50x20 z101001\n"
              "    b <ui:view> 98,48 5x5 z102002\n");
}

TEST_F(ViewPrinter, FormulasAreTextsWithTheNamesOfCells) {
    openTree(
        "<ui:view name='a' placement='left' width='50%' height='full' inner-border='3'>"
        "<ui:view name='b' placement='top' width='compact' height='20'/></ui:view>");
    const CFormulaText formulas(*editor.mainView());
    const auto text = [&](const std::string& path, CViewCell cell) {
        return formulas.textOf(at(path).area().cell(cell), at(path));
    };
    EXPECT_EQ(text("a", CViewCell::Width), "max(base-width * 0.5 - outer-left - outer-right, min-width)");
    EXPECT_EQ(text("a", CViewCell::BaseWidth), "root:width - root:inner-left - root:inner-right");
    EXPECT_EQ(text("a.b", CViewCell::Width), "max(content-width + inner-left + inner-right, min-width)");
    EXPECT_EQ(text("a.b", CViewCell::RegionX), "a:x + a:inner-left");
    EXPECT_EQ(text("a.b", CViewCell::OuterLeft), "");
    EXPECT_NE(printed(true).find("    | width = 100 = max(base-width * 0.5"), std::string::npos);
}

TEST_F(ViewPrinter, AFormulaGivesTheValueOfItsCell) {
    // Sums over many go through cells without a name, which are written in their place.
    openTree(
        "<ui:view name='a' placement='top' width='full' height='compact'>"
        "<ui:view name='b' width='11' height='5'/><ui:view name='c' width='12' height='7'/></ui:view>");
    const CFormulaText formulas(*editor.mainView());
    const std::string text = formulas.textOf(at("a").area().cell(CViewCell::ContentHeight), at("a"));
    EXPECT_NE(text.find("row1-thickness"), std::string::npos) << text;
    EXPECT_EQ(text.find('?'), std::string::npos) << text;
    EXPECT_EQ(at("a").area().value(CViewCell::ContentHeight), 7.0f);
}

TEST_F(ViewPrinter, BoxesAreOutlinedOverThePicture) {
    openTree(
        "<ui:view name='a' placement='overlay' width='50' height='20' outer-border='L10 T5' color='Panel'/>"
        "<ui:view name='b' placement='overlay' width='9' height='9' is-visible='false' outer-border='L100'/>"
        "<ui:view name='c' placement='overlay' width='9' height='9' is-dynamic='true' outer-border='L120'/>");
    const CPictureByHand plain = picture();
    CPictureByHand outlined = plain;
    drawBoxes(outlined, *editor.mainView());
    EXPECT_NE(outlined.at(10, 5), plain.at(10, 5));
    EXPECT_NE(outlined.at(59, 24), plain.at(59, 24));
    EXPECT_EQ(outlined.at(11, 6), plain.at(11, 6));
    EXPECT_EQ(outlined.at(60, 24), plain.at(60, 24));
    EXPECT_EQ(outlined.at(104, 8), plain.at(104, 8));
    EXPECT_NE(outlined.at(120, 0) & 0xff0000, plain.at(120, 0) & 0xff0000);
}

TEST_F(ViewPrinter, TheEdgesOfTilesAreDotted) {
    CPictureByHand drawn(300, 200, 1);
    drawTiles(drawn);
    EXPECT_NE(drawn.at(128, 4), 1u);
    EXPECT_EQ(drawn.at(128, 6), 1u);
    EXPECT_NE(drawn.at(4, 128), 1u);
    EXPECT_NE(drawn.at(256, 100), 1u);
    EXPECT_EQ(drawn.at(60, 60), 1u);
}

TEST_F(ViewPrinter, PicturesAreWrittenEnlargedWhereThatIsWanted) {
    openTree("");
    const std::string path = testing::TempDir() + "views.png";
    ASSERT_TRUE(writePng(picture(), path, 2));
    std::ifstream file(path, std::ios::binary);
    std::string head(24, ' ');
    file.read(head.data(), 24);
    EXPECT_EQ(head.substr(1, 3), "PNG");
    EXPECT_EQ(head.substr(16), std::string("\0\0\1\x90\0\0\0\xc8", 8));  // 400 x 200
    EXPECT_FALSE(writePng(picture(), "/nowhere/views.png"));
}

TEST_F(ViewPrinter, BadFilesAreFailures) {
    EXPECT_EQ(editor.open("/nowhere.xml"), "cannot read '/nowhere.xml'");
    EXPECT_EQ(editor.window(), nullptr);
    const std::string path = testing::TempDir() + "bad.xml";
    std::ofstream(path) << "<definitions><ui:view name='a'></definitions>";
    EXPECT_NE(editor.open(path).find("bad.xml:1:"), std::string::npos);
    std::ofstream(path) << "cxml and no block behind it";
    EXPECT_NE(editor.open(path), "");
    std::ofstream(path) << "<definitions><ui:view name='a'/></definitions>";
    EXPECT_NE(editor.open(path).find("Unable to locate parent view."), std::string::npos);
}

TEST_F(ViewPrinter, ACompiledTreeIsReadToo) {
    const std::string compiled = std::string(kSourceFolder) + "/build/native/resources/Demonstration.xml";
    if (!std::filesystem::exists(compiled)) {
        GTEST_SKIP() << "not built";
    }
    ASSERT_EQ(editor.open(compiled), "");
    EXPECT_TRUE(find("c.bars.surface.band-7.bar"));
}

TEST_F(ViewPrinter, TheScaleIsThatOfTheEditor) {
    openTree("<ui:view name='a' placement='overlay' width='50' height='20'/>", "", 1.25);
    EXPECT_EQ(picture().width, 250);
    EXPECT_EQ(line("a"), "a <ui:view> 0,0 62.5x25 z101001 placement=overlay");
}

TEST_F(ViewPrinter, TheProductsTreeOpensWithItsEngine) {
    EXPECT_EQ(editor.openProduct(), "");
    EXPECT_TRUE(editor.tree().findObject("ui.interface-client"));
}

TEST_F(ViewPrinter, NothingOfTheUserIsReadOrLeft) {
    const auto folders = [] {
        int32_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::temp_directory_path())) {
            count += entry.path().filename().string().starts_with("tarv-editor-") ? 1 : 0;
        }
        return count;
    };
    const std::string data = std::getenv("TARV_DATA_ROOT");
    EXPECT_TRUE(data.find("tarv-editor-") != std::string::npos);
    EXPECT_TRUE(std::filesystem::exists(data));
    EXPECT_GT(folders(), 0);
}

}  // namespace
}  // namespace tarv
