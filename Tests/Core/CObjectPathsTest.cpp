#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

std::vector<CTestNode> tree() {
    return {
        {"core:object",
         "a",
         {{"to-b", "a.b"}, {"to-d", "$to-b"}, {"up", "^"}, {"round", "$round"}},
         {{"core:object", "b", {{"down", ".d"}}, {{"core:object", "d"}, {"core:object", "d"}}}, {"core:object", "c"}}},
        {"core:object", "a", {}, {{"core:object", "b"}}}};
}

struct CPathCase {
    const char* from;
    const char* path;
    const char* found;  ///< full name, "/" for the root, null for nothing
};

const CPathCase kPaths[] = {
    {"a", "", nullptr},
    {"a", ".", "a"},
    {"a", "..", "a"},
    {"a", "^", "/"},
    {"/", "^", nullptr},
    {"/", ".", "/"},
    {"a", "/", nullptr},
    {"a", "/.", "/"},
    {"a.b.d", "^^", "a"},
    {"a.b.d", "^^^", "/"},
    {"a.b.d", "^^^^", nullptr},
    {"a.b", "^.c", "a.c"},
    {"a.b", "^c", "a.c"},
    {"a", ".b", "a.b"},
    {"a", ".b.d", "a.b.d"},
    {"a", ".b.d#1", "a.b.d#1"},
    {"a", ".b.d#", "a.b.d#1"},
    {"a", ".b.d#-1", "a.b.d"},
    {"a.b.d", "a.b", "a.b"},
    {"a.b.d", "a#1.b", "a#1.b"},
    {"a.b.d", "b", nullptr},
    {"a.b.d", "^./a.c", "a.c"},
    {"a.b.d", "a.b.", nullptr},
    {"a.b.d", "a.x.d", nullptr},
    {"a", "$to-b", "a.b"},
    {"a", "$to-b.d", "a.b.d"},
    {"a", "$to-d", "a.b"},
    {"a", "$to-d.d#1", "a.b.d#1"},
    {"a", "$up", "/"},
    {"a", "$up.a#1", "a#1"},
    {"a.c", "^.$to-b", "a.b"},
    {"a.c", "^$to-b.d", "a.b.d"},
    {"a", ".b.$down", "a.b.d"},
    {"a", "$nothing", nullptr},
    {"a", "$nothing.b", "a.b"},
    {"a", "$round", nullptr},
    {"a", "$round.$round", nullptr},
    {"a", "shared::project", "project"},
    {"a", "shared::project.x", "project.x"},
    {"a", "shared::", nullptr},
    {"a", "shared::.", "/shared"},
    {"a", "shared::nobody", nullptr},
    {"a", "shared:project", nullptr},
};

TEST(ObjectPaths, ResolveAsTheirFormsTell) {
    CTestApplication application({}, {{"core:object", "project", {}, {{"core:object", "x"}}}});
    auto root = application.makeRoot(tree());
    for (const CPathCase& c : kPaths) {
        CObject* from = std::string(c.from) == "/" ? root.get() : root->findObject(c.from);
        ASSERT_NE(from, nullptr) << c.from;
        CObject* found = from->findObject(c.path);
        std::string name = !found                                ? "(null)"
                           : found == root.get()                 ? "/"
                           : found == CApplication::sharedRoot() ? "/shared"
                                                                 : found->fullName().toUtf8();
        EXPECT_EQ(name, c.found ? c.found : "(null)") << "from " << c.from << " by " << c.path;
    }
}

TEST(ObjectPaths, AVariableOfAPlainNameStartsAtTheRootAgain) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "a", {{"p", "a"}}, {{"core:object", "a"}}}});
    EXPECT_EQ(root->findObject("a")->findObject("$p")->fullName(), "a");
}

TEST(ObjectPaths, ASharedPathWithoutAnApplicationLeadsNowhere) {
    CObject root;
    EXPECT_EQ(root.findObject("shared::project"), nullptr);
    EXPECT_EQ(root.findObject("shared::"), nullptr);
    EXPECT_EQ(root.findObject("."), &root);
}

}  // namespace
}  // namespace tarv
