// Objects that handlers and observers destroy while an attribute is set.

#include "Core/CObjectWatch.h"

#include <functional>

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Runs what the test gives it, and notes the values of `level` that it gets.
class CActing : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CActing::act>("act");
        descriptor.addHandler<&CActing::act>("act-too");
        descriptor.addHandler<&CActing::level>("level");
        return nullptr;
    }
    CError* act() { return run(action); }
    CError* level() {
        levels.push_back(getAttrInt("level"));
        return run(onLevel);
    }

    std::function<CError*()> action;
    std::function<CError*()> onLevel;
    std::vector<int32_t> levels;

private:
    static CError* run(const std::function<CError*()>& given) {
        // A copy, since the object that holds it may go meanwhile.
        const std::function<CError*()> copy = given;
        return copy ? copy() : nullptr;
    }
};

class ObjectWatch : public testing::Test {
protected:
    CActing& at(const char* path) { return *root->findObjectOf<CActing>(path); }
    static CError* fail() { TARV_FAIL("@tarvstr_ObjectWatch_fail_Always It fails."); }
    CError* set(const char* path, int32_t level) {
        return at(path).setAttribute("level", CAttributeValue::fromInt(level), true);
    }

    CTestApplication application{{{"core:object", &createObject<CObject>, nullptr},
                                  {"test:acting", &createObject<CActing>, &CActing::initClass}}};
    std::unique_ptr<CObject> root =
        application.makeRoot({{"test:acting", "a"}, {"test:acting", "b"}, {"test:acting", "c"}, {"test:acting", "d"}});
};

TEST_F(ObjectWatch, SeesTheEndOfItsObjectInEachScope) {
    const CObjectWatch outer(at("a"));
    {
        const CObjectWatch inner(at("a"));
        EXPECT_TRUE(inner.isAlive());
    }
    EXPECT_TRUE(outer.isAlive());
    const CObjectWatch second(at("a"));
    delete &at("a");
    EXPECT_FALSE(outer.isAlive());
    EXPECT_FALSE(second.isAlive());
}

TEST_F(ObjectWatch, AHandlerMayDestroyItsOwnObject) {
    CActing* a = &at("a");
    a->linkObserver(at("b"), "act", "level");
    a->action = [a] {
        delete a;
        return nullptr;
    };
    EXPECT_EQ(consumed(a->setAttribute("act", "1")), "");
    EXPECT_EQ(root->findObject("a"), nullptr);
    EXPECT_TRUE(at("b").levels.empty()) << "nothing is left that it could observe";
}

TEST_F(ObjectWatch, TheFailureOfAHandlerThatDestroyedItsObjectIsPassedOn) {
    CActing* a = &at("a");
    a->action = [a] {
        delete a;
        return fail();
    };
    EXPECT_EQ(consumed(a->setAttribute("act", "1")).find("It fails.\r\n"), 0u);
}

TEST_F(ObjectWatch, OfAMapThatIsSetTheRestIsLeftOut) {
    CActing* a = &at("a");
    a->action = [a] {
        delete a;
        return nullptr;
    };
    CAttributeMap map;
    map["act"] = CAttributeValue::fromInt(1);
    map["act-too"] = CAttributeValue::fromInt(1);
    EXPECT_EQ(consumed(a->setAttributes(map, true)), "");
    EXPECT_EQ(root->findObject("a"), nullptr);
}

TEST_F(ObjectWatch, AnObserverMayDestroyItsSource) {
    CActing* a = &at("a");
    a->linkObserver(at("b"), "level", "level");
    a->linkObserver(at("c"), "level", "level");
    for (const bool fails : {false, true}) {
        a = &at("a");
        at("b").onLevel = [a, fails] {
            delete a;
            return fails ? fail() : nullptr;
        };
        const std::string text = consumed(set("a", 1));
        EXPECT_EQ(text.find("It fails.\r\n"), fails ? 0u : std::string::npos) << text;
        EXPECT_EQ(root->findObject("a"), nullptr);
        CObject* next = nullptr;
        ASSERT_EQ(consumed(root->createChild(next, "test:acting", "a", false)), "");
        next->linkObserver(at("b"), "level", "level");
    }
    EXPECT_EQ(at("b").levels.size(), 2u);
    EXPECT_TRUE(at("c").levels.empty());
}

TEST_F(ObjectWatch, AnObserverOfAMapMayDestroyItsSource) {
    CActing* a = &at("a");
    a->linkObserver(at("b"), "level", "level");
    at("b").onLevel = [a] {
        delete a;
        return nullptr;
    };
    CAttributeMap map;
    map["level"] = CAttributeValue::fromInt(1);
    map["zone"] = CAttributeValue::fromInt(1);
    EXPECT_EQ(consumed(a->setAttributes(map, true)), "");
    EXPECT_EQ(root->findObject("a"), nullptr);
}

TEST_F(ObjectWatch, AnObserverMayDestroyItself) {
    CActing* b = &at("b");
    at("a").linkObserver(*b, "level", "level");
    at("a").linkObserver(at("c"), "level", "level");
    b->onLevel = [b] {
        delete b;
        return nullptr;
    };
    EXPECT_EQ(consumed(set("a", 1)), "");
    EXPECT_EQ(root->findObject("b"), nullptr);
    EXPECT_EQ(at("c").levels, (std::vector<int32_t>{1}));
}

TEST_F(ObjectWatch, AnObserverGetsWhatTheHandlerMadeOfTheValue) {
    CActing& a = at("a");
    a.linkObserver(at("b"), "level", "level");
    a.onLevel = [&] { return a.getAttrInt("level") > 10 ? set("a", 10) : nullptr; };
    EXPECT_EQ(consumed(set("a", 99)), "");
    EXPECT_EQ(a.getAttrInt("level"), 10);
    EXPECT_EQ(at("b").levels, (std::vector<int32_t>{10}));
}

TEST_F(ObjectWatch, EachObserverGetsTheLastValueWhereOneOfThemSetsItAgain) {
    for (const char* observer : {"b", "c", "d"}) {
        at("a").linkObserver(at(observer), "level", "level");
    }
    at("c").onLevel = [&] { return at("a").getAttrInt("level") > 10 ? set("a", 10) : nullptr; };
    EXPECT_EQ(consumed(set("a", 99)), "");
    EXPECT_EQ(at("b").levels, (std::vector<int32_t>{99, 10}));
    EXPECT_EQ(at("c").levels, (std::vector<int32_t>{99, 10}));
    EXPECT_EQ(at("d").levels, (std::vector<int32_t>{10}));
}

TEST_F(ObjectWatch, AnObserverThatSetsAnotherHandlersValueSeesWhatItMadeOfIt) {
    CActing& a = at("a");
    a.linkObserver(at("b"), "level", "level");
    a.linkObserver(at("c"), "level", "level");
    a.onLevel = [&] { return a.getAttrInt("level") > 10 ? set("a", 10) : nullptr; };
    at("b").onLevel = [&] { return at("b").levels.size() == 1 ? set("a", 50) : nullptr; };
    EXPECT_EQ(consumed(set("a", 1)), "");
    EXPECT_EQ(at("b").levels, (std::vector<int32_t>{1, 10}));
    EXPECT_EQ(at("c").levels, (std::vector<int32_t>{10}));
}

TEST_F(ObjectWatch, ACircleThatNeverComesToRestEnds) {
    at("a").linkObserver(at("b"), "level", "level");
    at("a").linkObserver(at("c"), "level", "level");
    at("b").onLevel = [&] { return set("a", at("b").levels.back() + 1); };
    EXPECT_EQ(consumed(set("a", 0)), "");
    EXPECT_EQ(at("b").levels.size(), 16u);
    EXPECT_EQ(at("c").levels.back(), at("a").getAttrInt("level"));
}

}  // namespace
}  // namespace tarv
