#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Writes down the calls that the tree makes on it.
class CRecorder : public CObject {
public:
    static std::vector<std::string> calls;

    ~CRecorder() override { note("end"); }
    CError* init() override {
        TARV_TRY(CObject::init());
        note("init");
        return nullptr;
    }
    CError* initChildren() override {
        TARV_TRY(CObject::initChildren());
        note("initChildren");
        return nullptr;
    }
    CError* finishInit() override {
        TARV_TRY(CObject::finishInit());
        note("finishInit");
        return nullptr;
    }
    CError* childAdded(CObject* child) override {
        note("childAdded " + child->name().toUtf8());
        if (getAttrBool("refuse")) {
            TARV_FAIL("@tarvstr_CRecorder_childAdded_Refused Refused '%1'.", child->name());
        }
        return nullptr;
    }
    void removeChild(CObject* child) override {
        note("removeChild " + child->name().toUtf8());
        CObject::removeChild(child);
    }

private:
    void note(const std::string& what) { calls.push_back(name().toUtf8() + " " + what); }
};

std::vector<std::string> CRecorder::calls;

const std::vector<CCreatorRow> kRows = {
    {"core:object", &createObject<CObject>, nullptr},
    {"test:recorder", &createObject<CRecorder>, nullptr},
};

CObject* add(CObject& parent, const char* name, const char* tag = "core:object") {
    CObject* child = nullptr;
    EXPECT_EQ(consumed(parent.addChild(child, tag, name, false)), "");
    return child;
}

TEST(ObjectTree, SameNamesGetAscendingIndexes) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    EXPECT_EQ(add(*root, "a")->name(), "a");
    EXPECT_EQ(add(*root, "a")->name(), "a#1");
    EXPECT_EQ(add(*root, "a")->name(), "a#2");
    EXPECT_EQ(root->children().count(), 3);
}

TEST(ObjectTree, ANameMayAskForAnIndexAndGetsAFreeOne) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    EXPECT_EQ(add(*root, "a#5")->name(), "a#5");
    EXPECT_EQ(add(*root, "a")->name(), "a");
    EXPECT_EQ(add(*root, "a#5")->name(), "a#6");
    EXPECT_EQ(add(*root, "a#3")->name(), "a#3");
    EXPECT_EQ(add(*root, "a")->name(), "a#7");
    EXPECT_EQ(add(*root, "b#")->name(), "b");
    EXPECT_EQ(add(*root, "b#x")->name(), "b#1") << "text that is no number counts as 0";
}

TEST(ObjectTree, IndexesAtTheEndOfTheirRangeStayUnique) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    EXPECT_EQ(add(*root, "a#2147483647")->name(), "a#2147483647");
    EXPECT_EQ(add(*root, "a#2147483647")->name(), "a#-2147483648");
}

TEST(ObjectTree, FullNamesJoinThePathFromAnUnnamedRoot) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CObject* a = add(*root, "a");
    add(*a, "b");
    CObject* second = add(*a, "b");
    EXPECT_EQ(a->fullName(), "a");
    EXPECT_EQ(second->fullName(), "a.b#1");
    EXPECT_EQ(second->getAttrString("name"), "b#1");
    EXPECT_EQ(second->getAttrString("full-name"), "a.b#1");
    EXPECT_EQ(second->tag(), "core:object");
    EXPECT_EQ(second->root(), root.get());
    EXPECT_EQ(second->parent(), a);
    EXPECT_EQ(second->notifyServer(), root->notifyServer());
    EXPECT_EQ(second->state(), CObjectState::Created);
}

TEST(ObjectTree, ChildrenAreFoundByNameAndStep) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    for (const char* name : {"abc#7", "abc#3", "abc#12", "other"}) {
        add(*root, name);
    }
    struct CCase {
        const char* asked;
        const char* found;
    };
    const CCase cases[] = {{"abc", "abc#3"},     {"abc#3", "abc#3"},   {"abc#7", "abc#7"},  {"abc#4", nullptr},
                           {"abc#+0", "abc#3"},  {"abc#+2", "abc#12"}, {"abc#+3", nullptr}, {"abc#-0", "abc#12"},
                           {"abc#-1", "abc#7"},  {"abc#-2", "abc#3"},  {"abc#-3", nullptr}, {"abc#", "abc#12"},
                           {"other#", "other"},  {"other#0", "other"}, {"nobody", nullptr}, {"nobody#", nullptr},
                           {"abc#+-1", nullptr}, {"abc#--1", nullptr}, {"", nullptr}};
    for (const CCase& c : cases) {
        CObject* found = root->findChild(c.asked);
        EXPECT_EQ(found ? found->name().toUtf8() : "(null)", c.found ? c.found : "(null)") << c.asked;
    }
}

TEST(ObjectTree, AReadOnlyParentTakesNoChild) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CObject* a = add(*root, "a");
    a->setReadOnly(true);
    CObject* child = a;
    std::string error = consumed(a->addChild(child, "core:object", "b", false));
    EXPECT_EQ(error.substr(0, error.find("\r\n")), "Error adding child to read-only object.");
    EXPECT_NE(error.find(" ) // a\r\n"), std::string::npos) << error;
    EXPECT_EQ(child, nullptr);
    EXPECT_TRUE(a->children().isEmpty());
}

TEST(ObjectTree, AnUnknownTagMakesAPlainObjectAndALogLine) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CLogCapture log;
    CObject* outer = add(*root, "outer", "no:such");
    CObject* inner = add(*outer, "inner", "nor:this");
    add(*outer, "quiet", "content");
    add(*outer, "quiet", "template");
    add(*outer, "known");
    EXPECT_EQ(inner->tag(), "nor:this");
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Creating CObject \"outer\" (tag \"no:such\")",
                                                   "Creating CObject \"inner\" (tag \"nor:this\") // outer"}));
}

TEST(ObjectTree, TheTagDecidesOnTheClass) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"test:recorder", "r"}, {"core:object", "o"}});
    EXPECT_NE(root->findObjectOf<CRecorder>("r"), nullptr);
    EXPECT_EQ(root->findObjectOf<CRecorder>("o"), nullptr);
}

TEST(ObjectTree, BuildsTopDownAndFinishesBottomUp) {
    CTestApplication application(kRows);
    CRecorder::calls.clear();
    auto root = application.makeRoot({{"test:recorder", "a", {}, {{"test:recorder", "b"}, {"test:recorder", "c"}}}});
    EXPECT_EQ(CRecorder::calls, (std::vector<std::string>{"a init", "a initChildren", "a childAdded b", "b init",
                                                          "b initChildren", "b finishInit", "a childAdded c", "c init",
                                                          "c initChildren", "c finishInit", "a finishInit"}));
    EXPECT_EQ(root->findObject("a.b")->state(), CObjectState::Finished);
}

TEST(ObjectTree, AFailureCarriesThePlacesDownTheTree) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    std::string error = consumed(loadTree(
        *root, {{"core:object", "a", {}, {{"test:recorder", "b", {{"refuse", "true"}}, {{"core:object", "c"}}}}}}));
    EXPECT_EQ(error.find("Refused 'c'.\r\n"), 0u) << error;
    size_t inner = error.find(" ) // a.b\r\n");
    size_t outer = error.find(" ) // a\r\n");
    ASSERT_NE(inner, std::string::npos) << error;
    ASSERT_NE(outer, std::string::npos) << error;
    EXPECT_LT(inner, outer);
    EXPECT_NE(error.find("Sources/Core/CObjectLoader( "), std::string::npos) << error;
}

TEST(ObjectTree, DestructionTakesTheChildrenAndLeavesTheParent) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"test:recorder", "a", {}, {{"test:recorder", "b"}, {"test:recorder", "c"}}}});
    CObject* a = root->findObject("a");
    CObject* b = root->findObject("a.b");
    CRecorder::calls.clear();
    delete b;
    EXPECT_EQ(CRecorder::calls, (std::vector<std::string>{"b end", "a removeChild b"}));
    EXPECT_FALSE(CCheckedObject::isLive(b));
    EXPECT_EQ(root->findObject("a.b"), nullptr);
    EXPECT_EQ(a->children().count(), 1);
    CObject* c = root->findObject("a.c");
    delete a;
    EXPECT_FALSE(CCheckedObject::isLive(a));
    EXPECT_FALSE(CCheckedObject::isLive(c));
    EXPECT_TRUE(root->children().isEmpty());
}

TEST(ObjectTree, AChildThatItsParentRefusesIsDestroyed) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CObject* parent = add(*root, "p", "test:recorder");
    ASSERT_EQ(consumed(parent->setAttribute("refuse", "true")), "");
    CObject* child = parent;
    EXPECT_EQ(consumed(parent->addChild(child, "core:object", "x", false)).find("Refused 'x'.\r\n"), 0u);
    EXPECT_EQ(child, nullptr);
    EXPECT_TRUE(parent->children().isEmpty());
}

TEST(ObjectTree, AChildOfADefinitionWhoseStartFailsIsDestroyed) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    const std::string text = consumed(
        loadTree(*root, {{"core:object", "a"}, {"test:recorder", "p", {{"refuse", "true"}}, {{"core:object", "x"}}}}));
    EXPECT_EQ(text.find("Refused 'x'.\r\n"), 0u) << text;
    EXPECT_NE(root->findObject("a"), nullptr);
    EXPECT_EQ(root->findObject("p"), nullptr);
}

TEST(ObjectTree, ARemovedChildBelongsToTheCaller) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "a"}, {"core:object", "a"}});
    std::unique_ptr<CObject> taken(root->findObject("a"));
    taken->removeFromParent();
    EXPECT_EQ(taken->parent(), nullptr);
    EXPECT_EQ(root->findObject("a"), root->findObject("a#1")) << "the lowest index that is left";
    EXPECT_EQ(add(*root, "a")->name(), "a") << "the index is free again";
}

TEST(ObjectTree, WithoutAnApplicationAFinishedTreeIsReadOnly) {
    CObject root;
    ASSERT_EQ(consumed(loadTree(root, {{"core:object", "a", {{"x", "1"}}}})), "");
    CObject* a = root.findObject("a");
    EXPECT_TRUE(a->isReadOnly());
    EXPECT_EQ(consumed(a->setAttribute("x", "2")), "");
    EXPECT_EQ(a->getAttrString("x"), "1");
}

}  // namespace
}  // namespace tarv
