// The demonstration shows what it is for.

#include <typeinfo>

#include "Platform/Keyboard.h"
#include "Tests/Tools/ViewInspector/DemoEditor.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

class Demonstration : public CDemoEditor {
protected:
    Demonstration() { open(); }

    static void expectClasses(const CObject& object) {
        for (const CObject* child : object.children()) {
            const bool isPlain = child->tag() == "core:object" || child->tag() == "template";
            EXPECT_EQ(typeid(*child) == typeid(CObject), isPlain) << child->fullName().toUtf8();
            expectClasses(*child);
        }
    }
    CPixel pixelIn(const std::string& path) {
        const CViewRect rect = at(path).visibleRect();
        return picture().at(static_cast<int32_t>(rect.x + rect.width / 2),
                            static_cast<int32_t>(rect.y + rect.height / 2));
    }
};

TEST_F(Demonstration, HasNoTagWithoutAClass) {
    expectClasses(editor.tree());
}

TEST_F(Demonstration, ABarGrowsAtAPressAndGoesBackAtTheNext) {
    const double before = at("c.bars.surface.band-2.bar").area().box().height;
    click("c.bars.surface.band-2");
    advance(0.15);
    const double between = at("c.bars.surface.band-2.bar").area().box().height;
    EXPECT_GT(between, before);
    advance(0.5);
    EXPECT_EQ(at("c.bars.surface.band-2.bar").area().box().height, 2.0 * before);
    EXPECT_LT(between, 2.0 * before);
    click("c.bars.surface.band-2");
    advance(0.5);
    EXPECT_EQ(at("c.bars.surface.band-2.bar").area().box().height, before);
}

TEST_F(Demonstration, AButtonShowsHoverPushAndItsOwnState) {
    advance(0.1);
    const CPixel plain = pixelIn("buttons.latch");
    pointAt("buttons.latch");
    advance(0.05);
    const CPixel hovered = pixelIn("buttons.latch");
    EXPECT_NE(hovered, plain);
    editor.system().input().press();
    advance(0.05);
    EXPECT_TRUE(at("buttons.latch").isStateSet("pushed"));
    editor.system().input().release();
    advance(0.05);
    EXPECT_NE(pixelIn("buttons.latch"), hovered);
    EXPECT_TRUE(at("buttons.latch").isStateSet("active"));
}

TEST_F(Demonstration, TheListOpensBelowItsButtonAndClosesByAPressBeside) {
    click("buttons.list");
    ASSERT_TRUE(popup("list"));
    const CIntRect bounds = popup("list")->screenBounds();
    const CViewRect opener = at("buttons.list").area().box();
    EXPECT_EQ(bounds.left, CPlainEditor::kHostX + static_cast<int32_t>(opener.x));
    EXPECT_EQ(bounds.top, CPlainEditor::kHostY + static_cast<int32_t>(opener.bottom()));
    EXPECT_TRUE(find("window-blocker"));
    editor.system().input().moveIn(editor.window()->handle(), 600, 300);
    editor.system().input().click();
    advance(0.1);
    EXPECT_FALSE(popup("list"));
    EXPECT_FALSE(find("window-blocker"));
}

TEST_F(Demonstration, ARowOfTheListClosesIt) {
    click("buttons.list");
    ASSERT_TRUE(popup("list"));
    editor.pointAt(*editor.tree().findObjectOf<CView>("ui.list.row-3"));
    editor.system().input().click();
    advance(0.1);
    EXPECT_FALSE(popup("list"));
}

TEST_F(Demonstration, TheDialogStaysUntilItIsClosed) {
    click("buttons.settings");
    ASSERT_TRUE(popup("dialog"));
    EXPECT_TRUE(editor.window()->isBlocked());
    editor.system().input().moveIn(editor.window()->handle(), 10, 390);
    editor.system().input().click();
    advance(0.2);
    ASSERT_TRUE(popup("dialog"));
    editor.pointAt(*editor.tree().findObjectOf<CView>("ui.dialog.close"));
    editor.system().input().click();
    advance(0.1);
    EXPECT_FALSE(popup("dialog"));
    EXPECT_FALSE(editor.window()->isBlocked());
}

TEST_F(Demonstration, TheContentScrolls) {
    const double before = at("c.side.scrolled.rows.tall").area().box().y;
    set(at("c.side.scrolled"), "offset-y", "0.5");
    advance(0.05);
    EXPECT_LT(at("c.side.scrolled.rows.tall").area().box().y, before);
    EXPECT_EQ(at("c.side.scrolled.scroller-v").area().box().height, at("c.side.scrolled").area().box().height);
}

TEST_F(Demonstration, AnAnimatedColourMovesWhileItsSwitchIsOn) {
    click("window-title.bypass");
    editor.system().input().moveIn(editor.window()->handle(), 300, 390);
    advance(0.2);
    const CPixel first = pixelIn("window-title.bypass");
    advance(0.4);
    EXPECT_NE(pixelIn("window-title.bypass"), first);
}

TEST_F(Demonstration, AFieldIsEditedAndTabGoesToTheNext) {
    click("c.texts.fields.name");
    advance(0.1);
    ASSERT_TRUE(find("temp-editbox"));
    ASSERT_TRUE(popup("virtual-keyboard-alphadigit"));
    editor.system().input().type(u"New name");
    editor.system().input().key(kKeyTab, true);
    advance(0.1);
    EXPECT_EQ(at("c.texts.fields.name").getAttrString("title").toUtf8(), "New name");
    EXPECT_FALSE(popup("virtual-keyboard-alphadigit"));
    ASSERT_TRUE(popup("virtual-keyboard-digit"));
    editor.system().input().type(u"3x");
    editor.system().input().key(kKeyEnter, true);
    advance(0.1);
    EXPECT_EQ(at("c.texts.fields.number").getAttrString("title").toUtf8(), "3");
    EXPECT_FALSE(find("temp-editbox"));
    EXPECT_FALSE(popup("virtual-keyboard-digit"));
}

TEST_F(Demonstration, AChoiceIsShownByItsOpener) {
    click("c.texts.choice.opener");
    advance(0.1);
    ASSERT_TRUE(popup("window-app-popup-list"));
    auto& list = *editor.tree().findObjectOf<CTextView>("ui.window-app-popup-list.list");
    EXPECT_EQ(list.selectedParagraph(), 1);
    const CViewRect row = list.rowRect(2);
    editor.system().input().moveIn(popup("window-app-popup-list")->handle(), 20, static_cast<int32_t>(row.y + 3));
    editor.system().input().click();
    advance(0.1);
    EXPECT_FALSE(popup("window-app-popup-list"));
    EXPECT_EQ(picture().bounds().width(), 880);
}

TEST_F(Demonstration, TheSelectedRowOfTheListFollowsThePress) {
    auto& list = dynamic_cast<CTextView&>(at("c.texts.outline.list"));
    EXPECT_EQ(list.selectedParagraph(), 2);
    advance(0.1);
    const CViewRect row = list.rowRect(1);
    editor.system().input().moveIn(editor.window()->handle(), static_cast<int32_t>(row.x + 20),
                                   static_cast<int32_t>(row.y + 5));
    editor.system().input().click();
    EXPECT_EQ(list.selectedParagraph(), 1);
    EXPECT_FALSE(list.rowRect(1).y == 0.0);
    const double before = row.y;
    editor.system().input().wheel(-1.0);
    advance(0.1);
    EXPECT_LT(list.rowRect(1).y, before);
}

TEST_F(Demonstration, OpensAtEveryScaleAndAsOftenAsWanted) {
    for (const double scale : {0.8, 1.0, 1.25, 1.0}) {
        open(scale);
        EXPECT_EQ(picture().width, std::lround(880 * scale));
        EXPECT_EQ(picture().height, std::lround(400 * scale));
        editor.close();
        EXPECT_TRUE(editor.system().isClean());
    }
}

}  // namespace
}  // namespace tarv
