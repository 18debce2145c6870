// When a row of a list is edited: by a second press, and with the consent of who listens.

#include "Tests/UI/Text/EditTree.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

struct CTextListEdit : CEditTree {
    void openList(const CTexts& more = {}) {
        CTexts attributes = {{"title", "one\ntwo\nthree"},
                             {"is-list", "true"},
                             {"height", "90"},
                             {"is-focusable", "true"},
                             {"selected-paragraph", "1"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        openFields({field("a", attributes)});
    }
    void moveOnto(int32_t row, int32_t shift = 0) {
        moveTo(30 + shift, static_cast<int32_t>(text("a").rowRect(row).y) + 5);
    }
    void pressOn(int32_t row) {
        moveOnto(row);
        system.input().click();
    }
};

TEST_F(CTextListEdit, ASecondPressEditsTheRowWhenTheTimeOfADoubleClickIsOver) {
    openList();
    pressOn(1);
    system.advance(0.45);
    EXPECT_FALSE(isEditing());
    system.advance(0.2);
    ASSERT_TRUE(isEditing());
    EXPECT_EQ(edited(), "two");
    EXPECT_EQ(box()->paragraph(), 1);
}

TEST_F(CTextListEdit, APressOnAnotherRowSelectsOnly) {
    openList();
    pressOn(0);
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(text("a").selectedParagraph(), 0);
}

TEST_F(CTextListEdit, ADoubleClickEditsNothing) {
    openList();
    pressOn(1);
    system.advance(0.3);
    system.input().click();
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
}

TEST_F(CTextListEdit, MovingMeanwhileEditsNothing) {
    openList();
    pressOn(1);
    system.advance(0.2);
    moveOnto(1, 3);
    system.advance(0.5);
    EXPECT_TRUE(isEditing()) << "a hand that trembles";
    system.input().tap(kKeyEscape);
    tick();
    pressOn(1);
    system.advance(0.2);
    moveOnto(1, 9);
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
}

TEST_F(CTextListEdit, AKeyAnotherSelectionAndAPressThatIsHeldEditNothing) {
    openList();
    pressOn(1);
    window().setKeyFocusView(&text("a"));
    system.desktop().find(window().handle())->takeFocus();
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_TRUE(tap(kKeyUp));
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
    pressOn(1);
    text("a").selectParagraph(2);
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
    moveOnto(2);
    system.input().press();
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
    system.input().release();
    system.advance(1.0);
    EXPECT_TRUE(isEditing());
}

TEST_F(CTextListEdit, AListThatIsReadOnlyAndOneThatDropsItsSelectionEditNothing) {
    openList({{"is-read-only", "true"}});
    pressOn(1);
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
    openList({{"is-selected-paragraph-click-cancels", "true"}});
    pressOn(1);
    system.advance(1.0);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(text("a").selectedParagraph(), -1);
}

TEST_F(CTextListEdit, AListenerMayRefuseARow) {
    static int32_t refused = -1;
    struct CKeeper : CObject {
        static CError* initClass(CClassDescriptor& descriptor) {
            descriptor.addHandler<&CKeeper::ask>("ask");
            return nullptr;
        }
        CError* ask(CAttributeMap& params) {
            CFilledView::heard.push_back(params["text"].asString().toUtf8() + "?");
            params["is-refused"] = CAttributeValue::fromBool(params["index"].asInt() == refused);
            return nullptr;
        }
    };
    classes.push_back({"test:keeper", &createObject<CKeeper>, &CKeeper::initClass});
    openList();
    CObject* keeper = nullptr;
    ASSERT_EQ(consumed(tree->findObject("ui")->createChild(keeper, "test:keeper", "keeper", false)), "");
    keeper->listenObject("ui.main-window.a", "paragraph-edit-query", "ask");
    refused = 1;
    EXPECT_EQ(consumed(text("a").openEdit(1)), "");
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(heard(), "two?");
    EXPECT_EQ(consumed(text("a").openEdit(2)), "");
    EXPECT_TRUE(isEditing());
    EXPECT_EQ(edited(), "three");
}

TEST_F(CTextListEdit, TheQueryMayDestroyTheList) {
    openList();
    CTestActor::action = [this] { delete &text("a"); };
    actor().listenObject("ui.main-window.a", "paragraph-edit-query", "act");
    pressOn(1);
    system.advance(1.0);
    EXPECT_FALSE(tree->findObject("ui.main-window.a"));
    EXPECT_FALSE(isEditing());
}

}  // namespace
}  // namespace tarv
