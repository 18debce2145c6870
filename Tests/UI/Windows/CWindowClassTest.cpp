#include "UI/Windows/CWindowClass.h"

#include "Tests/UI/Windows/WindowTree.h"

namespace tarv {
namespace {

class CWindowClassTest : public CWindowTree {};

TEST_F(CWindowClassTest, AClassThatIsRefusedFailsTheTreeInItsWords) {
    system.failClass(CWindowKind::Seen, 1410);
    EXPECT_NE(tryBuild({}).find("Unable to register window class (error 1410)."), std::string::npos);
    close();
    EXPECT_TRUE(system.isClean());
    system.failClass(CWindowKind::Posts, 8);
    EXPECT_NE(tryBuild({}).find("Unable to register bridge window class (error 8)."), std::string::npos);
    close();
    EXPECT_TRUE(system.isClean()) << "the first one is released";
    EXPECT_EQ(tryBuild({}), "");
}

TEST_F(CWindowClassTest, TheTreeHoldsItsClassesUntilItGoes) {
    ASSERT_EQ(tryBuild({}), "");
    EXPECT_FALSE(system.isClean());
    close();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CWindowClassTest, OneThatNeverHeldAnythingReleasesNothing) {
    { CWindowClass unused; }
    EXPECT_TRUE(system.isClean());
}

}  // namespace
}  // namespace tarv
