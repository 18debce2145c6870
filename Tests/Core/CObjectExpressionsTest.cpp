#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

struct CExpressionCase {
    const char* text;
    const char* expanded;
};

std::vector<CTestNode> tree() {
    return {{"core:object",
             "outer",
             {{"font", "base"}, {"inner", "font"}, {"title", "Outer"}, {"open", "a{font"}},
             {{"core:object", "here", {{"own", "mine"}, {"title", "Here"}, {"path-attr", "name"}}},
              {"core:object", "sister", {{"title", "Sister"}, {"n", "7"}}}}}};
}

const CExpressionCase kCases[] = {
    {"plain", "plain"},
    {"a{b", "a{b"},
    {"a}b", "a}b"},
    {"pre{nobody}post", "prepost"},
    {"{}", ""},
    {"{} *LT1 *RB-1", " *LT1 *RB-1"},
    {"{own}", "mine"},
    {"{font}", "base"},
    {"<{own}{font}>", "<minebase>"},
    {"{{inner}}", "base"},
    {"{/^ title}", "Outer"},
    {"{/. title}", "Here"},
    {"{/^.sister title}", "Sister"},
    {"{/outer.sister n}", "7"},
    {"{/^ own}", ""},
    {"{/outer.nobody title}", ""},
    {"{/^}", ""},
    {"{/ title}", ""},
    {"{/^ }", ""},
    {"{/shared::project app-name}", "Brindle XEQ"},
    {"{/shared::project {path-attr}}", "project"},
    {"{open}}", "abase"},
    {"{*sister title}", "Sister"},
    {"{*sister  title}", "Sister"},
    {"{*/^ title}", "Outer"},
    {"{*title}", ""},
    {"{*}", ""},
    {"{*nobody title}", ""},
    {"{*/outer.nobody title}", ""},
    {"{*/. title}", ""},
    {"{*here title}", ""},
    {"{*/shared::project app-name}", ""},
};

TEST(ObjectExpressions, AreReplacedByTheirTextWhenAssigned) {
    CTestApplication application({}, {{"core:object", "project", {{"app-name", "Brindle XEQ"}}}});
    auto root = application.makeRoot(tree());
    CObject* here = root->findObject("outer.here");
    for (const CExpressionCase& c : kCases) {
        ASSERT_EQ(consumed(here->setAttribute("out", c.text)), "");
        EXPECT_EQ(here->getAttrString("out").toUtf8(), c.expanded) << c.text;
    }
}

TEST(ObjectExpressions, ExpandWhileLoadingToo) {
    CTestApplication application;
    auto root = application.makeRoot(
        {{"core:object", "a", {{"w", "12"}}, {{"core:object", "b", {{"width", "{w}"}, {"half", "{width}"}}}}}});
    EXPECT_EQ(root->findObject("a.b")->getAttrInt("width"), 12);
    EXPECT_EQ(root->findObject("a.b")->getAttrString("half"), "12");
}

TEST(ObjectExpressions, AValueOfAnotherTypeStaysAsItIs) {
    CObject object;
    ASSERT_EQ(consumed(object.setAttribute("x", CAttributeValue::fromReal(0.25))), "");
    ASSERT_EQ(consumed(object.setAttribute("copy", "{x}")), "");
    EXPECT_EQ(object.getAttrString("copy"), "0.2500");
    EXPECT_EQ(object.getAttrReal("x"), 0.25);
}

TEST(ObjectExpressions, PlainTextStaysAsItIs) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "o"}});
    CObject* o = root->findObject("o");
    for (const char* text : {"{name}", "a{b", "}{", "{*/^ name}", "", "A & B"}) {
        ASSERT_EQ(consumed(o->setAttributePlain("title", text)), "");
        EXPECT_EQ(o->getAttrString("title"), text);
    }
    ASSERT_EQ(consumed(o->setAttributePlain("number", "12")), "");
    EXPECT_EQ(o->getAttrInt("number"), 12) << "other forms are read as of any text";
}

TEST(ObjectExpressions, PlainTextStaysAsItIsWhereverItIsRead) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "o"}, {"core:object", "observer", {{"title", "{*/o title}"}}}});
    CObject* o = root->findObject("o");
    CObject* observer = root->findObject("observer");
    ASSERT_EQ(consumed(o->setAttributePlain("title", "{name} } {")), "");
    EXPECT_EQ(observer->getAttrString("title"), "{name} } {") << "by the link";
    ASSERT_EQ(consumed(observer->setAttribute("read", "<{/o title}|{name}>")), "");
    EXPECT_EQ(observer->getAttrString("read"), "<{name} } {|observer>") << "by an expression, beside another one";
    ASSERT_EQ(consumed(observer->setAttribute("again", "{read}")), "");
    EXPECT_EQ(observer->getAttrString("again"), "<{name} } {|observer>") << "and from there";
    ASSERT_EQ(consumed(observer->setAttribute("late", "{*/o title}")), "");
    EXPECT_EQ(observer->getAttrString("late"), "{name} } {") << "by a link that is made now";
}

TEST(ObjectExpressions, APlainTextMayBeTheNameInAnExpression) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "o"}});
    CObject* o = root->findObject("o");
    ASSERT_EQ(consumed(o->setAttribute("a}", "found")), "");
    ASSERT_EQ(consumed(o->setAttributePlain("which", "a}")), "");
    ASSERT_EQ(consumed(o->setAttribute("x", "{{which}}")), "");
    EXPECT_EQ(o->getAttrString("x"), "found");
}

TEST(ObjectExpressions, AnInstanceWithoutTheAttributeAsksItsAncestors) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "a", {{"x", ""}}, {{"core:object", "b"}}}});
    ASSERT_EQ(consumed(root->setAttribute("x", "root")), "");
    CObject* b = root->findObject("a.b");
    ASSERT_EQ(consumed(b->setAttribute("out", "<{x}>")), "");
    EXPECT_EQ(b->getAttrString("out"), "<>") << "the nearest one counts, even if it is empty";
}

/// Counts how often its width is handled.
class CWide : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CWide::widthSet>("width");
        return nullptr;
    }
    CError* widthSet() {
        seen.push_back(getAttrInt("width"));
        return nullptr;
    }
    std::vector<int> seen;
};

const std::vector<CCreatorRow> kRows = {{"test:wide", &createObject<CWide>, &CWide::initClass}};

TEST(ObjectExpressions, ALiveLinkFollowsItsSourceAndRunsTheHandler) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object",
                                       "parent",
                                       {{"readout-width", "10"}},
                                       {{"test:wide", "w", {{"width", "{*/^ readout-width}"}}}}}});
    auto* wide = root->findObjectOf<CWide>("parent.w");
    ASSERT_EQ(consumed(root->findObject("parent")->setAttribute("readout-width", "25")), "");
    EXPECT_EQ(wide->getAttrInt("width"), 25);
    EXPECT_EQ(wide->seen, (std::vector<int>{10, 25}));
}

TEST(ObjectExpressions, WhileTheObserverIsBuiltItsHandlerWaits) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "source", {{"x", "1"}}}});
    CObject* wide = nullptr;
    ASSERT_EQ(consumed(root->addChild(wide, "test:wide", "w", false)), "");
    ASSERT_EQ(consumed(wide->addAttribute("width", "{*source x}", false)), "");
    ASSERT_EQ(consumed(root->findObject("source")->setAttribute("x", "2")), "");
    EXPECT_TRUE(dynamic_cast<CWide*>(wide)->seen.empty());
    ASSERT_EQ(consumed(wide->init()), "");
    ASSERT_EQ(consumed(wide->initChildren()), "");
    EXPECT_EQ(dynamic_cast<CWide*>(wide)->seen, (std::vector<int>{2}));
}

TEST(ObjectExpressions, OneSourceAttributeDrivesTheTargetThatAskedLast) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "s", {{"x", "1"}, {"y", "1"}}}, {"core:object", "o"}});
    CObject* o = root->findObject("o");
    ASSERT_EQ(consumed(o->setAttribute("first", "{*s x}")), "");
    ASSERT_EQ(consumed(o->setAttribute("second", "{*s x}")), "");
    ASSERT_EQ(consumed(o->setAttribute("third", "{*s y}")), "");
    ASSERT_EQ(consumed(root->findObject("s")->setAttribute("x", "2")), "");
    ASSERT_EQ(consumed(root->findObject("s")->setAttribute("y", "3")), "");
    EXPECT_EQ(o->getAttrString("first"), "1");
    EXPECT_EQ(o->getAttrString("second"), "2");
    EXPECT_EQ(o->getAttrString("third"), "3");
}

TEST(ObjectExpressions, ADeadSourceLeavesTheLastValue) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "s", {{"x", "1"}}}, {"core:object", "o", {{"v", "{*s x}"}}}});
    delete root->findObject("s");
    EXPECT_EQ(root->findObject("o")->getAttrString("v"), "1");
}

TEST(ObjectExpressions, ADeadObserverIsForgotten) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "s", {{"x", "1"}}}, {"core:object", "o", {{"v", "{*s x}"}}}});
    delete root->findObject("o");
    EXPECT_EQ(consumed(root->findObject("s")->setAttribute("x", "2")), "");
}

TEST(ObjectExpressions, AReadOnlySourceMakesNoLink) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "s", {{"x", "1"}}}, {"core:object", "o"}});
    root->findObject("s")->setReadOnly(true);
    ASSERT_EQ(consumed(root->findObject("o")->setAttribute("v", "{*s x}")), "");
    EXPECT_EQ(root->findObject("o")->getAttrString("v"), "");
}

TEST(ObjectExpressions, ANameThatNamesItselfEnds) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "{name}{name}", {{"x", "{name}"}}}});
    EXPECT_GT(root->children()[0]->getAttrString("x").length(), 0);
}

}  // namespace
}  // namespace tarv
