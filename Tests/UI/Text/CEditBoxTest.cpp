#include "UI/Text/CEditBox.h"

#include "Tests/UI/Text/EditTree.h"
#include "UI/Views/CInputTarget.h"

namespace tarv {
namespace {

struct CEditBoxTest : CEditTree {};

TEST_F(CEditBoxTest, APressOpensTheBoxOverTheViewWithAllSelected) {
    openTwo();
    EXPECT_FALSE(box());
    clickOn("a");
    ASSERT_TRUE(box());
    tick();
    EXPECT_EQ(box()->parent(), tree->findObject("ui.main-window"));
    EXPECT_EQ(box()->wholeRect().x, 10.0);
    EXPECT_EQ(box()->wholeRect().y, 10.0);
    EXPECT_EQ(box()->wholeRect().width, 100.0);
    EXPECT_EQ(box()->wholeRect().height, 20.0);
    EXPECT_EQ(box()->getAttrString("placement"), "match");
    EXPECT_EQ(box()->getAttrString("placement-match"), "ui.main-window.a");
    EXPECT_EQ(box()->getAttrString("temp-editbox-owner"), "ui.main-window.a");
    EXPECT_TRUE(box()->isDynamic());
    EXPECT_TRUE(box()->findChild("editbox-timer"));
    EXPECT_EQ(edited(), "one");
    EXPECT_EQ(selected(), "one");
    EXPECT_EQ(window().keyFocusView(), box());
    EXPECT_EQ(system.desktop().keyGrabber(), window().handle());
    EXPECT_EQ(CInputTarget::hit(window().sectorMap(), 50, 20, false), box());
    EXPECT_EQ(text("a").editBox(), box());
}

TEST_F(CEditBoxTest, EnterCommitsAndTheHostHasItsKeysAgain) {
    openTwo();
    listen("main-window.a", "editbox-text-changed");
    listen("main-window.a", "paragraph-text-changed");
    clickOn("a");
    EXPECT_FALSE(tap(112)) << "a key that no field edits";
    type(u"new x");
    EXPECT_TRUE(tap(kKeyEnter, "", u"\r"));
    EXPECT_EQ(title("a"), "new x");
    EXPECT_EQ(heard(),
              "a.press a.change-n a.change-ne a.change-new a.change-new  a.change-new x a.accept-new x a.edit-ended");
    EXPECT_EQ(CEventLog::heard,
              (std::vector<std::string>{"editbox-text-changed", "editbox-text-changed", "editbox-text-changed",
                                        "editbox-text-changed", "editbox-text-changed", "paragraph-text-changed"}));
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(window().keyFocusView(), nullptr);
    EXPECT_FALSE(tap(kKeySpace, "", u" "));
    EXPECT_TRUE(box()) << "until the next tick";
    EXPECT_FALSE(box()->isShown());
    tick();
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, EscapeDrops) {
    openTwo();
    clickOn("a");
    type(u"x");
    EXPECT_TRUE(tap(kKeyEscape, "", u"\x1b"));
    EXPECT_EQ(title("a"), "one");
    EXPECT_EQ(text("a").offers, 0);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(window().keyFocusView(), nullptr);
}

TEST_F(CEditBoxTest, ATextThatWasNotChangedIsNotCommitted) {
    openTwo();
    clickOn("a");
    type(u"one");
    tap(kKeyEnter);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(text("a").offers, 0);
}

TEST_F(CEditBoxTest, APressElsewhereCommitsAndThenActs) {
    openTwo();
    clickOn("a");
    type(u"x");
    moveTo(50, 180);
    heard();
    CFilledView::actions["other.mouse-press"] = [this](CFilledView&, CAttributeMap&) {
        EXPECT_EQ(title("a"), "x");
        EXPECT_TRUE(box()) << "destroyed at the next tick, not under the press";
        EXPECT_FALSE(isEditing());
    };
    system.input().click();
    EXPECT_EQ(heard(), "a.accept-x a.edit-ended other.mouse-press other.mouse-release");
    tick();
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, APressOnAnotherFieldTakesTheBoxThere) {
    openTwo();
    clickOn("a");
    type(u"x");
    const CEditBox* first = box();
    heard();
    clickOn("b");
    EXPECT_EQ(heard(), "a.accept-x a.edit-ended b.press");
    EXPECT_EQ(box(), first);
    EXPECT_EQ(edited(), "two");
    EXPECT_EQ(box()->owner(), &text("b"));
    EXPECT_EQ(window().keyFocusView(), box());
    tick();
    ASSERT_TRUE(isEditing());
    EXPECT_EQ(box()->wholeRect().y, 40.0);
    EXPECT_EQ(text("a").editBox(), nullptr);
}

TEST_F(CEditBoxTest, TabGoesToTheNextOfItsGroup) {
    const auto grouped = [](const char* name, const char* group) {
        return field(name, {{"title", name}, {"tab-group", group}});
    };
    openFields({grouped("a", "g"), grouped("b", "h"), grouped("c", "g"), grouped("d", "g")});
    clickOn("a");
    type(u"x");
    EXPECT_TRUE(tap(kKeyTab, "", u"\t"));
    EXPECT_EQ(title("a"), "x");
    EXPECT_EQ(edited(), "c");
    EXPECT_EQ(selected(), "c");
    EXPECT_TRUE(tap(kKeyTab));
    EXPECT_EQ(edited(), "d");
    EXPECT_TRUE(tap(kKeyTab));
    EXPECT_EQ(edited(), "x");
    EXPECT_TRUE(tap(kKeyTab, "s"));
    EXPECT_EQ(edited(), "d");
    EXPECT_EQ(consumed(text("c").setAttribute("is-disabled", CString("true"))), "");
    EXPECT_TRUE(tap(kKeyTab, "s"));
    EXPECT_EQ(edited(), "x");
    EXPECT_EQ(consumed(text("d").setAttribute("is-visible", CString("false"))), "");
    EXPECT_TRUE(tap(kKeyTab));
    EXPECT_FALSE(isEditing()) << "alone in its group";
    EXPECT_EQ(window().keyFocusView(), nullptr);
    clickOn("b");
    EXPECT_TRUE(tap(kKeyTab));
    EXPECT_FALSE(isEditing());
    tick();
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, TheFocusReturnsToWhereItWas) {
    openFields({field("a", {{"title", "one"}, {"is-focusable", "true"}}), field("b"),
                view("c", {{"placement", "bottom"}, {"height", "20"}, {"is-focusable", "true"}})});
    clickOn("a");
    tap(kKeyEnter);
    EXPECT_EQ(window().keyFocusView(), &text("a"));
    window().setKeyFocusView(&at("c"));
    EXPECT_EQ(consumed(text("b").openEdit()), "");
    EXPECT_EQ(window().keyFocusView(), box());
    tap(kKeyEscape);
    EXPECT_EQ(window().keyFocusView(), &at("c"));
    EXPECT_EQ(consumed(text("b").openEdit()), "");
    delete &at("c");
    tap(kKeyEscape);
    EXPECT_EQ(window().keyFocusView(), nullptr);
}

TEST_F(CEditBoxTest, TheLossOfTheWindowCommits) {
    openTwo();
    clickOn("a");
    type(u"x");
    system.desktop().activate(system.desktop().openHost({900, 500, 950, 550}));
    EXPECT_EQ(title("a"), "x");
    EXPECT_FALSE(isEditing());
    system.desktop().activate(host);
    clickOn("b");
    type(u"y");
    system.desktop().destroy(host);
    EXPECT_EQ(title("b"), "y");
    tree.reset();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CEditBoxTest, AnotherEditorThatTakesTheKeysCommits) {
    openTwo();
    clickOn("a");
    type(u"x");
    CWindowByHand* shown = system.desktop().find(window().handle());
    shown->handler()->onKeysLost();
    EXPECT_EQ(title("a"), "x");
    EXPECT_FALSE(isEditing());
}

TEST_F(CEditBoxTest, ClosingTheEditorCommits) {
    openTwo();
    clickOn("a");
    type(u"x");
    heard();
    tree.reset();
    EXPECT_EQ(heard(), "a.accept-x a.edit-ended");
    EXPECT_TRUE(system.isClean());
}

TEST_F(CEditBoxTest, ATextThatIsRefusedShowsAnErrorAndGoesBackToTheEdit) {
    openTwo({{"is-number", "true"}});
    clickOn("a");
    type(u"x");
    for (const int32_t key : {kKeyEnter, kKeyTab}) {
        EXPECT_TRUE(tap(key));
        EXPECT_TRUE(isEditing());
        EXPECT_EQ(selected(), "x");
        EXPECT_TRUE(box()->isStateSet("error"));
        system.advance(0.4);
        EXPECT_TRUE(box()->isStateSet("error"));
        system.advance(0.2);
        EXPECT_FALSE(box()->isStateSet("error"));
    }
    EXPECT_EQ(title("a"), "one");
    type(u"5");
    tap(kKeyEnter);
    EXPECT_EQ(title("a"), "5");
    EXPECT_FALSE(isEditing());
}

TEST_F(CEditBoxTest, ATextThatIsRefusedWhenTheFocusGoesLeavesTheValue) {
    openTwo({{"is-number", "true"}});
    clickOn("a");
    type(u"x");
    click(50, 180);
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(title("a"), "one");
    EXPECT_TRUE(text("a").isStateSet("error"));
    system.advance(0.6);
    EXPECT_FALSE(text("a").isStateSet("error"));
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, TheErrorDoesNotStayForTheNextEdit) {
    openTwo({{"is-number", "true"}, {"tab-group", "g"}});
    EXPECT_EQ(consumed(text("b").setAttribute("tab-group", CString("g"))), "");
    clickOn("a");
    type(u"x");
    tap(kKeyEnter);
    type(u"7");
    tap(kKeyTab);
    EXPECT_EQ(edited(), "two");
    EXPECT_FALSE(box()->isStateSet("error"));
}

TEST_F(CEditBoxTest, TheRulesOfTheViewHold) {
    openTwo({{"accept-chars", "0123456789.,-"}, {"max-paragraph-length", "4"}});
    clickOn("a");
    type(u"a-1,256");
    EXPECT_EQ(edited(), "-1.2");
    EXPECT_TRUE(system.setClipboardText(u"99.75 dB"));
    tap('A', "c");
    tap('V', "c");
    EXPECT_EQ(edited(), "99.7");
    tap('Z', "c");
    EXPECT_EQ(edited(), "-1.2");
    EXPECT_TRUE(tap(kKeySpace, "", u" ")) << "typed into the field, though it takes none";
    tap(kKeyEnter);
    EXPECT_EQ(title("a"), "-1.2");
}

TEST_F(CEditBoxTest, ReadOnlyAndDisabledViewsAreNotEdited) {
    openTwo({{"is-read-only", "true"}});
    EXPECT_FALSE(text("a").isInputView());
    clickOn("a");
    EXPECT_FALSE(box());
    EXPECT_EQ(consumed(text("a").setAttribute("is-read-only", CString(""))), "");
    clickOn("a");
    EXPECT_FALSE(box()) << "the default";
    EXPECT_EQ(consumed(text("b").setAttribute("is-disabled", CString("true"))), "");
    clickOn("b");
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, AnEditEndsWithItsOwner) {
    openTwo();
    clickOn("a");
    type(u"x");
    delete &text("a");
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(window().keyFocusView(), nullptr);
    tick();
    EXPECT_FALSE(box());
    for (const auto& [name, value] : CTexts{{"is-visible", "false"}, {"is-disabled", "true"}}) {
        clickOn("b");
        type(u"x");
        ASSERT_TRUE(isEditing());
        EXPECT_EQ(consumed(text("b").setAttribute(name.c_str(), CString(value.c_str()))), "");
        tick();
        EXPECT_FALSE(isEditing()) << name;
        EXPECT_EQ(title("b"), "two");
        EXPECT_EQ(consumed(text("b").setAttribute("is-visible", CString("true"))), "");
        tick();
    }
}

TEST_F(CEditBoxTest, WhoTakesATextMayDestroyTheField) {
    openTwo();
    clickOn("a");
    type(u"x");
    CTestField::onOffer = [](CTestField& field) { delete &field; };
    EXPECT_TRUE(tap(kKeyEnter));
    EXPECT_FALSE(isEditing());
    tick();
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, WhoTakesATextMayEditAnotherField) {
    openTwo();
    clickOn("a");
    type(u"x");
    CTestField::onOffer = [this](CTestField& field) {
        CTestField::onOffer = {};
        EXPECT_EQ(consumed(text("b").openEdit()), "");
        EXPECT_FALSE(field.editBox());
    };
    EXPECT_TRUE(tap(kKeyEnter));
    ASSERT_TRUE(isEditing());
    EXPECT_EQ(edited(), "two");
    EXPECT_EQ(title("a"), "x");
    EXPECT_EQ(text("a").editBox(), nullptr);
    EXPECT_EQ(window().keyFocusView(), box());
}

TEST_F(CEditBoxTest, WhoTakesATextMayRunAMessageLoop) {
    openTwo();
    clickOn("a");
    type(u"x");
    CTestField::onOffer = [this](CTestField&) {
        CTestField::onOffer = {};
        window().setKeyFocusView(nullptr);  // a message has the focus
        system.advance(1.0);
    };
    EXPECT_TRUE(tap(kKeyEnter));
    EXPECT_EQ(text("a").offers, 1);
    EXPECT_EQ(title("a"), "x");
    EXPECT_FALSE(isEditing());
    tick();
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, WhoTakesATextMayCloseTheWindow) {
    openTwo();
    clickOn("a");
    type(u"x");
    CTestField::onOffer = [this](CTestField&) { window().shut(); };
    EXPECT_TRUE(tap(kKeyEnter));
    EXPECT_EQ(text("a").offers, 1);
    EXPECT_FALSE(isEditing());
}

TEST_F(CEditBoxTest, AWindowThatWaitsForAPopupTakesNoEdit) {
    templates.push_back(popup("ui:message", 100, 40, {{"is-modal", "true"}}));
    openTwo();
    clickOn("a");
    type(u"x");
    openPopup("other", "ui:message");
    EXPECT_EQ(title("a"), "x") << "the popup commits";
    EXPECT_EQ(consumed(text("b").openEdit()), "");
    EXPECT_FALSE(isEditing());
    EXPECT_EQ(text("b").editBox(), nullptr);
    tick();
    EXPECT_FALSE(box());
}

TEST_F(CEditBoxTest, WithoutATemplateAnEditFailsAndWithoutAWindowNothingHappens) {
    templates.pop_back();
    openTwo();
    EXPECT_NE(consumed(text("a").openEdit()), "");
    EXPECT_FALSE(text("a").editBox());
    tree->findObjectOf<CView>("ui.main-window")->setWindow(nullptr);
    EXPECT_EQ(consumed(text("a").openEdit()), "");
    tree->findObjectOf<CView>("ui.main-window")->setWindow(&window());
}

TEST_F(CEditBoxTest, TheErrorOfARefusedTextMayDestroyTheFieldOrTheBox) {
    for (const bool isField : {true, false}) {
        openFields({field("a", {{"title", "1"}, {"is-number", "true"}, {"hint", ""}},
                          {{"ui:view-state", "error", {{"state-name", "error"}, {"hint", "wrong"}}}}),
                    field("b", {{"title", "two"}})});
        text("a").linkObserver(actor(), "hint", "act");
        CTestActor::action = [&] { delete (isField ? static_cast<CObject*>(&text("a")) : box()); };
        clickOn("a");
        type(u"x");
        clickOn("b");
        CTestActor::action = [] {};
        EXPECT_EQ(tree->findObject("ui.main-window.a") == nullptr, isField);
        tick();
        tick();
        EXPECT_EQ(edited(), "two");
        EXPECT_TRUE(tap(kKeyEscape));
        tick();
        EXPECT_FALSE(box());
    }
}

}  // namespace
}  // namespace tarv
