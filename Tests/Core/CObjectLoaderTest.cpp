#include <random>

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

const std::vector<CCreatorRow> kRows = {{"core:object", &createObject<CObject>, nullptr}};

TEST(ObjectLoader, ALaterAttributeOfOneNameReplacesTheEarlier) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "n", {{"a", "1"}, {"a", "2"}}}});
    EXPECT_EQ(root->findObject("n")->getAttrString("a"), "2");
}

TEST(ObjectLoader, ValuesAreUtf8OfAnyLength) {
    CTestApplication application(kRows);
    std::string longText(100000, 'x');
    auto root = application.makeRoot({{"core:object", "n", {{"long", longText}, {"wide", "\xD0\x94"}}}});
    EXPECT_EQ(root->findObject("n")->getAttrString("long").length(), 100000);
    EXPECT_EQ(root->findObject("n")->getAttrString("wide"), CString(u"\u0414"));
}

TEST(ObjectLoader, TheSmallestBodyHas31Bytes) {
    std::string body;
    appendNode(body, CTestNode{"core:object", ""});
    EXPECT_EQ(body.size(), 31u);
    CTestApplication application(kRows);
    auto root = application.makeRoot({testTemplate("t", "core:object")});
    CObject* child = nullptr;
    EXPECT_EQ(consumed(root->createChild(child, "t", "x", true)), "");
}

TEST(ObjectLoader, AnyTemplateFlagButZeroMeansADefinition) {
    std::string bytes = compiledTree({testTemplate("t", "core:object")});
    size_t flag = bytes.find("template") + 8 + 4 + 1;
    ASSERT_EQ(bytes[flag], 1);
    bytes[flag] = 0;
    bytes[flag + 2] = 7;
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    ASSERT_EQ(consumed(loadCompiled(*root, bytes)), "");
    EXPECT_EQ(root->findObject("t")->state(), CObjectState::Template);
}

TEST(ObjectLoader, TheRootTakesAttributesAndChildrenAndIsFinished) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "a"}});
    EXPECT_EQ(root->state(), CObjectState::Finished);
    EXPECT_TRUE(root->name().isEmpty());
    EXPECT_TRUE(root->fullName().isEmpty());
}

TEST(ObjectLoader, WithoutRunInitTheObjectItselfIsLeftUnfinished) {
    CTestApplication application(kRows);
    CObject* root = nullptr;
    ASSERT_EQ(consumed(CApplication::initRootObject(root)), "");
    std::unique_ptr<CObject> owner(root);
    std::string bytes = compiledTree({{"core:object", "a"}});
    const auto* data = reinterpret_cast<const uint8_t*>(bytes.data());
    CTreeCursor cursor{data, data + bytes.size()};
    ASSERT_EQ(consumed(root->createFromBinary(cursor, false, true, false, false)), "");
    EXPECT_EQ(root->state(), CObjectState::Created);
    EXPECT_EQ(root->findObject("a")->state(), CObjectState::Finished);
    EXPECT_EQ(cursor.at, cursor.end);
}

std::vector<CTestNode> sample() {
    return {testTemplate("t", "core:object", {{"x", "1"}}, {{"core:object", "inner"}}),
            {"core:object", "a", {{"k", "v"}, {"copy", "{k}"}}, {{"core:object", "b"}, {"core:object", "b"}}}};
}

TEST(ObjectLoader, ATreeThatIsCutAnywhereFailsWithAMessage) {
    CTestApplication application(kRows);
    std::string whole = compiledTree(sample());
    for (size_t size = 0; size < whole.size(); ++size) {
        CObject root;
        // A copy of its own, so that the sanitizer sees a read behind the end.
        std::vector<char> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        std::string error = consumed(loadCompiled(root, std::string(cut.data(), cut.size())));
        EXPECT_EQ(error.find("Compiled tree ends within a node.\r\n"), 0u) << size << ": " << error;
    }
}

TEST(ObjectLoader, DamagedBytesDoNoHarm) {
    CTestApplication application(kRows);
    std::string whole = compiledTree(sample());
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        std::string damaged = whole;
        for (int hits = 1 + static_cast<int>(random() % 4); hits > 0; --hits) {
            damaged[random() % damaged.size()] = static_cast<char>(random());
        }
        CObject* root = nullptr;
        ASSERT_EQ(consumed(CApplication::initRootObject(root)), "");
        std::unique_ptr<CObject> owner(root);
        consumed(loadCompiled(*root, damaged));
        CObject* child = nullptr;
        consumed(root->createChild(child, "t", "made", true));
    }
}

TEST(ObjectLoader, ATreeOfTooManyLevelsFails) {
    CTestNode node{"core:object", "x"};
    for (int level = 0; level < 1000; ++level) {
        CTestNode outer{"core:object", "x"};
        outer.children.push_back(std::move(node));
        node = std::move(outer);
    }
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    std::string error = consumed(loadTree(*root, {node}));
    EXPECT_EQ(error.find("Compiled tree is nested more than 200 levels deep.\r\n"), 0u) << error.substr(0, 200);
}

TEST(ObjectLoader, ATemplateWhoseBodyIsATemplateFailsWhenUsed) {
    CTestNode definition = testTemplate("t", "core:object");
    definition.body[0] = testTemplate("t", "core:object");
    CTestApplication application(kRows);
    auto root = application.makeRoot({definition});
    CObject* child = nullptr;
    std::string error = consumed(root->createChild(child, "t", "x", true));
    EXPECT_EQ(error.find("Body of template 't' is a template itself.\r\n"), 0u) << error;
}

TEST(ObjectLoader, AResourceThatIsMissingOrNoTreeFails) {
    CTestApplication application(kRows);
    CObject root;
    EXPECT_EQ(
        consumed(root.loadFromResource("Nothing.xml", true)).find("Unable to open file 'Nothing.xml' for reading"), 0u);
    static const unsigned char kNoTree[] = {12, 0, 0, 0, 'a', 'b', 'n', 'k', 0, 0, 0, 0, 1, 0, 0, 0};
    const CResourceRow rows[] = {{kNoTree, "NoTree.xml"}, {nullptr, nullptr}};
    CResourceMap::addRows(rows);
    std::string error = consumed(root.loadFromResource("NoTree.xml", true));
    EXPECT_EQ(error.find("Invalid ID encountered when reading compressed data (expected 1819113571, read 1802396257)."),
              0u)
        << error;
}

TEST(ObjectLoader, AWholeInstanceOfObjectsLoadsInOnePass) {
    std::vector<CTestNode> children;
    for (int i = 0; i < 2000; ++i) {
        children.push_back({"core:object", "same"});
    }
    CTestApplication application(kRows);
    auto root = application.makeRoot(children);
    EXPECT_EQ(root->findObject("same#")->name(), "same#1999");
}

}  // namespace
}  // namespace tarv
