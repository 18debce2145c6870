#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Notes the handlers that run, with the value that they see.
class CHandling : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CHandling::first>("first");
        descriptor.addHandler<&CHandling::second>("second");
        descriptor.addHandler<&CHandling::failing>("failing");
        return nullptr;
    }
    CError* first() { return note("first"); }
    CError* second(CAttributeMap& params) {
        paramCount = static_cast<int>(params.size());
        return note("second");
    }
    CError* failing() { TARV_FAIL("@tarvstr_CHandling_failing_Always It fails."); }

    std::vector<std::string> calls;
    int paramCount = -1;

private:
    CError* note(const char* handler) {
        calls.push_back(std::string(handler) + "=" + getAttrString(handler).toUtf8());
        return nullptr;
    }
};

const std::vector<CCreatorRow> kRows = {{"test:handling", &createObject<CHandling>, &CHandling::initClass}};

CHandling* addHandling(CObject& parent) {
    CObject* child = nullptr;
    EXPECT_EQ(consumed(parent.addChild(child, "test:handling", "h", false)), "");
    return dynamic_cast<CHandling*>(child);
}

TEST(ObjectAttributes, AbsentOnesReadAsDefaults) {
    CObject object;
    EXPECT_TRUE(object.getAttrString("x").isEmpty());
    EXPECT_FALSE(object.getAttrBool("x"));
    EXPECT_EQ(object.getAttrReal("x"), 0.0);
    EXPECT_EQ(object.getAttrInt("x"), 0);
    EXPECT_EQ(object.getAttrPointer("x"), nullptr);
    EXPECT_FALSE(object.hasAttr("x"));
}

TEST(ObjectAttributes, AFallbackStandsForAbsentAndEmptyOnes) {
    CObject object;
    ASSERT_EQ(consumed(object.setAttribute("empty", "")), "");
    ASSERT_EQ(consumed(object.setAttribute("off", "false")), "");
    ASSERT_EQ(consumed(object.setAttribute("nought", "0")), "");
    ASSERT_EQ(consumed(object.setAttribute("word", "abc")), "");
    EXPECT_TRUE(object.getAttrBoolOr("absent", true));
    EXPECT_TRUE(object.getAttrBoolOr("empty", true));
    EXPECT_FALSE(object.getAttrBoolOr("off", true));
    EXPECT_EQ(object.getAttrRealOr("empty", 1.5), 1.5);
    EXPECT_EQ(object.getAttrRealOr("nought", 1.5), 0.0);
    EXPECT_EQ(object.getAttrIntOr("absent", 4), 4);
    EXPECT_EQ(object.getAttrIntOr("word", 4), 0) << "there, but no number";
}

TEST(ObjectAttributes, TypedValuesReadInEveryForm) {
    CObject object;
    ASSERT_EQ(consumed(object.setAttribute("r", CAttributeValue::fromReal(2.5))), "");
    EXPECT_EQ(object.getAttrInt("r"), 3);
    EXPECT_EQ(object.getAttrString("r"), "2.5000");
    EXPECT_FALSE(object.getAttrBool("r"));
    ASSERT_EQ(consumed(object.setAttribute("p", CAttributeValue::fromPointer(&object))), "");
    EXPECT_EQ(object.getAttrPointer("p"), &object);
}

TEST(ObjectAttributes, AReadOnlyObjectAndAnEmptyNameChangeNothingWithSuccess) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CHandling* object = addHandling(*root);
    EXPECT_EQ(consumed(object->setAttribute("", "1")), "");
    EXPECT_FALSE(object->hasAttr(""));
    object->setReadOnly(true);
    EXPECT_EQ(consumed(object->setAttribute("first", "1")), "");
    EXPECT_EQ(consumed(object->runPendingHandlers()), "");
    EXPECT_FALSE(object->hasAttr("first"));
    EXPECT_TRUE(object->calls.empty());
}

TEST(ObjectAttributes, FromCodeTheHandlerRunsAtOnce) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CHandling* object = addHandling(*root);
    ASSERT_EQ(consumed(object->setAttribute("second", "2")), "");
    ASSERT_EQ(consumed(object->setAttribute("other", "2")), "");
    EXPECT_EQ(object->calls, (std::vector<std::string>{"second=2"}));
    EXPECT_EQ(object->paramCount, 0);
    std::string error = consumed(object->setAttribute("failing", "x"));
    EXPECT_EQ(error.find("It fails.\r\n"), 0u);
    EXPECT_NE(error.find("Sources/Core/CObjectAttributes( "), std::string::npos) << error;
    EXPECT_EQ(object->getAttrString("failing"), "x");
}

TEST(ObjectAttributes, WhileLoadingHandlersWaitAndRunInTheOrderOfTheClass) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"test:handling", "h", {{"second", "2"}, {"first", "1"}, {"first", "3"}}}});
    auto* object = root->findObjectOf<CHandling>("h");
    EXPECT_EQ(object->calls, (std::vector<std::string>{"first=3", "second=2"}));
}

TEST(ObjectAttributes, AMapIsSetWholeBeforeItsHandlersRun) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CHandling* object = addHandling(*root);
    CAttributeMap map;
    map["second"] = CAttributeValue::fromInt(2);
    map["first"] = CAttributeValue::fromInt(1);
    ASSERT_EQ(consumed(object->setAttributes(map, false)), "");
    EXPECT_TRUE(object->calls.empty());
    ASSERT_EQ(consumed(object->setAttributes(map, true)), "");
    EXPECT_EQ(object->calls, (std::vector<std::string>{"first=1", "second=2"}));
    ASSERT_EQ(consumed(object->runPendingHandlers()), "");
    EXPECT_EQ(object->calls.size(), 2u) << "each pending handler runs once";
}

TEST(ObjectAttributes, AnObserverOfEverythingReceivesEachNameUntilItDies) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "source"}, {"test:handling", "h"}});
    CObject* source = root->findObject("source");
    auto* observer = root->findObjectOf<CHandling>("h");
    source->addObserver(*observer);
    source->addObserver(*observer);
    ASSERT_EQ(consumed(source->setAttribute("first", "1")), "");
    ASSERT_EQ(consumed(source->setAttribute("plain", "x")), "");
    EXPECT_EQ(observer->calls, (std::vector<std::string>{"first=1"}));
    EXPECT_EQ(observer->getAttrString("plain"), "x");
    std::string error = consumed(source->setAttribute("failing", "x"));
    EXPECT_EQ(error.find("It fails.\r\n"), 0u) << "a failure of the observer reaches the one who sets";
    delete observer;
    EXPECT_EQ(consumed(source->setAttribute("first", "2")), "");
}

TEST(ObjectAttributes, AnObserverIsLeftAloneOnceItsSourceHasDied) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "source"}, {"core:object", "observer"}});
    root->findObject("source")->linkObserver(*root->findObject("observer"), "a", "b");
    delete root->findObject("source");
    EXPECT_EQ(consumed(root->findObject("observer")->setAttribute("b", "1")), "");
}

TEST(ObjectAttributes, TwoThatFollowEachOtherComeToRest) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({{"core:object", "a"}, {"core:object", "b"}});
    CObject* a = root->findObject("a");
    CObject* b = root->findObject("b");
    a->linkObserver(*b, "x", "y");
    b->linkObserver(*a, "y", "x");
    ASSERT_EQ(consumed(a->setAttribute("x", "1")), "");
    EXPECT_EQ(b->getAttrString("y"), "1");
    ASSERT_EQ(consumed(b->setAttribute("y", "2")), "");
    EXPECT_EQ(a->getAttrString("x"), "2");
}

}  // namespace
}  // namespace tarv
