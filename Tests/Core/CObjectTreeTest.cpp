#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

TEST(ObjectTree, SameNamesGetAscendingIndexes) {
    CTestApplication application;
    auto root = application.makeRoot({{"core:object", "a"}, {"core:object", "a"}, {"core:object", "a"}});
    ASSERT_EQ(root->children().count(), 3);
    EXPECT_EQ(root->children()[0]->name(), "a");
    EXPECT_EQ(root->children()[1]->name(), "a#1");
    EXPECT_EQ(root->children()[2]->name(), "a#2");
}

TEST(ObjectTree, TemplateOfTheSharedTreeMakesAnInstanceWithItsAttributesAndChildren) {
    CTestApplication application({}, {testTemplate("plugin", "core:object", {{"x", "1"}}, {{"core:object", "inner"}})});
    auto root = application.makeRoot();
    CObject* child = nullptr;
    ASSERT_EQ(consumed(root->createChild(child, "plugin", "plugin", true)), "");
    EXPECT_EQ(child->getAttrString("x"), "1");
    EXPECT_EQ(root->findObject("plugin.inner"), child->children()[0]);
}

}  // namespace
}  // namespace tarv
