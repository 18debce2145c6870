#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Notes what it saw of its attribute `x`, and when.
class CMade : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CMade::xSet>("x");
        return nullptr;
    }
    CError* init() override {
        beforeInit = getAttrString("x").toUtf8();
        TARV_TRY(CObject::init());
        afterInit = getAttrString("x").toUtf8();
        if (getAttrBool("fail-init")) {
            TARV_FAIL("@tarvstr_CMade_init_Asked Asked to fail.");
        }
        return nullptr;
    }
    CError* xSet() {
        handled.push_back(getAttrString("x").toUtf8());
        childrenWhenHandled = children().count();
        return nullptr;
    }
    std::string beforeInit;
    std::string afterInit;
    std::vector<std::string> handled;
    int childrenWhenHandled = -1;
};

class COther : public CObject {};

const std::vector<CCreatorRow> kRows = {
    {"core:object", &createObject<CObject>, nullptr},
    {"test:made", &createObject<CMade>, &CMade::initClass},
    {"test:other", &createObject<COther>, nullptr},
};

CTestNode widget() {
    return testTemplate("widget", "test:made", {{"x", "from template"}, {"y", "kept"}},
                        {{"core:object", "part", {{"size", "{y}"}}}, {"core:object", "part"}});
}

TEST(ObjectTemplates, AnInstanceHasTheClassAttributesAndChildrenOfItsTemplate) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({widget()});
    CMade* made = nullptr;
    ASSERT_EQ(consumed(root->createChildOf(made, "widget", "w", true)), "");
    EXPECT_EQ(made->tag(), "widget");
    EXPECT_EQ(made->fullName(), "w");
    EXPECT_EQ(made->getAttrString("y"), "kept");
    EXPECT_EQ(made->afterInit, "from template");
    EXPECT_EQ(made->handled, (std::vector<std::string>{"from template"}));
    EXPECT_EQ(made->childrenWhenHandled, 0) << "pending handlers come before the children";
    ASSERT_EQ(made->children().count(), 2);
    EXPECT_EQ(root->findObject("w.part")->getAttrString("size"), "kept");
    EXPECT_EQ(root->findObject("w.part#1")->state(), CObjectState::Finished);
    EXPECT_EQ(made->state(), CObjectState::Finished);
    EXPECT_FALSE(made->isTemplate());
}

TEST(ObjectTemplates, InstancesAreIndependent) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({widget()});
    CObject* first = nullptr;
    CObject* second = nullptr;
    ASSERT_EQ(consumed(root->createChild(first, "widget", "w", true)), "");
    ASSERT_EQ(consumed(root->createChild(second, "widget", "w", true)), "");
    EXPECT_EQ(second->name(), "w#1");
    ASSERT_EQ(consumed(first->setAttribute("y", "changed")), "");
    EXPECT_EQ(second->getAttrString("y"), "kept");
    delete first;
    EXPECT_NE(root->findObject("w#1.part"), nullptr);
}

TEST(ObjectTemplates, InstanceAttributesOverrideTheTemplatesOwn) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({widget()});
    CAttributeMap attributes;
    attributes["x"] = CAttributeValue::fromString("<{y}>");
    CMade* made = nullptr;
    ASSERT_EQ(consumed(root->createChildOf(made, "widget", "w", true, &attributes)), "");
    EXPECT_EQ(made->handled, (std::vector<std::string>{"<kept>"})) << "one handler call, with the last value";
}

TEST(ObjectTemplates, ExtraAttributesStandBeforeInit) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({testTemplate("bare", "test:made")});
    CAttributeMap extra;
    extra["x"] = CAttributeValue::fromInt(5);
    CMade* made = nullptr;
    ASSERT_EQ(consumed(root->createChildOf(made, "bare", "w", true, nullptr, &extra)), "");
    EXPECT_EQ(made->beforeInit, "5");
    EXPECT_EQ(made->handled, (std::vector<std::string>{"5"}));
}

TEST(ObjectTemplates, TheNearestDefinitionUpTheTreeCounts) {
    CTestApplication application(kRows, {testTemplate("t", "core:object", {{"from", "shared"}})});
    auto root = application.makeRoot(
        {{"core:object", "a", {}, {testTemplate("t", "core:object", {{"from", "a"}}), {"core:object", "inner"}}},
         {"core:object", "b"}});
    CObject* child = nullptr;
    ASSERT_EQ(consumed(root->findObject("a.inner")->createChild(child, "t", "x", true)), "");
    EXPECT_EQ(child->getAttrString("from"), "a");
    ASSERT_EQ(consumed(root->findObject("b")->createChild(child, "t", "x", true)), "");
    EXPECT_EQ(child->getAttrString("from"), "shared");
}

TEST(ObjectTemplates, WithoutTemplatesATagIsOnlyItsClass) {
    CTestApplication application(kRows, {testTemplate("t", "test:made", {{"x", "1"}})});
    auto root = application.makeRoot();
    CObject* child = nullptr;
    ASSERT_EQ(consumed(root->addChild(child, "t", "x", false)), "");
    EXPECT_EQ(dynamic_cast<CMade*>(child), nullptr);
}

TEST(ObjectTemplates, ARequiredOneThatIsMissingFails) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CObject* child = root.get();
    std::string error = consumed(root->createChild(child, "nobody", "x", true));
    EXPECT_EQ(error.find("Run-time template 'nobody' does not exist.\r\n"), 0u) << error;
    EXPECT_EQ(child, nullptr);
    EXPECT_TRUE(root->children().isEmpty());
}

TEST(ObjectTemplates, WithoutRequirementTheTagMayBeAClass) {
    CTestApplication application(kRows);
    auto root = application.makeRoot();
    CMade* made = nullptr;
    EXPECT_EQ(consumed(root->createChildOf(made, "test:made", "x", false)), "");
    EXPECT_NE(made, nullptr);
}

TEST(ObjectTemplates, AnObjectOfAnotherClassIsDestroyedWithAMessage) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({testTemplate("t", "test:other")});
    CMade* made = nullptr;
    std::string error = consumed(root->createChildOf(made, "t", "x", true));
    EXPECT_EQ(error.find("Object of invalid class created (child tag 't', child name 'x').\r\n"), 0u) << error;
    EXPECT_EQ(made, nullptr);
    EXPECT_EQ(root->findObject("x"), nullptr);
}

TEST(ObjectTemplates, AFailingInitNamesItsPlace) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({testTemplate("t", "test:made", {{"fail-init", "true"}})});
    CObject* child = nullptr;
    std::string error = consumed(root->createChild(child, "t", "x", true));
    EXPECT_EQ(error.find("Asked to fail.\r\n"), 0u) << error;
    EXPECT_NE(error.find("Sources/Core/CObjectTemplates( "), std::string::npos) << error;
}

TEST(ObjectTemplates, AChildWhoseStartFailsLeavesNothingInTheTree) {
    CTestApplication application(kRows);
    auto root =
        application.makeRoot({testTemplate("t", "test:made", {{"fail-init", "true"}}),
                              testTemplate("deep", "test:other", {}, {{"test:made", "x", {{"fail-init", "1"}}}}),
                              testTemplate("good", "test:made")});
    const int32_t count = root->children().count();
    CObject* child = root.get();
    EXPECT_NE(consumed(root->createChild(child, "t", "x", true)), "");
    EXPECT_EQ(child, nullptr);
    EXPECT_NE(consumed(root->createChild(child, "deep", "x", true)), "");
    EXPECT_EQ(child, nullptr);
    EXPECT_EQ(root->children().count(), count);
    EXPECT_EQ(root->findObject("x"), nullptr);
    ASSERT_EQ(consumed(root->createChild(child, "good", "x", true)), "");
    EXPECT_EQ(child->name(), "x") << "the name is free again";
}

TEST(ObjectTemplates, ADefinitionIsStoredAndNotBuilt) {
    CTestApplication application(kRows);
    CLogCapture log;
    auto root = application.makeRoot({widget()});
    CObject* definition = root->findObject("widget");
    ASSERT_NE(definition, nullptr);
    EXPECT_TRUE(definition->isTemplate());
    EXPECT_EQ(definition->state(), CObjectState::Template);
    EXPECT_EQ(definition->tag(), "template");
    EXPECT_EQ(definition->realTag(), "test:made");
    EXPECT_TRUE(definition->children().isEmpty());
    EXPECT_EQ(root->findTemplate("widget"), definition);
    EXPECT_TRUE(log.lines.empty());
    delete definition;
    EXPECT_EQ(root->findTemplate("widget"), nullptr);
}

TEST(ObjectTemplates, ARealTagThatNoClassHasMakesAPlainObject) {
    CTestApplication application(kRows);
    auto root = application.makeRoot({testTemplate("ui:button", "ui:nothing", {{"x", "1"}})});
    CLogCapture log;
    CObject* child = nullptr;
    ASSERT_EQ(consumed(root->createChild(child, "ui:button", "b", true)), "");
    EXPECT_EQ(child->getAttrString("x"), "1");
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Creating CObject \"b\" (tag \"ui:button\")"}));
}

}  // namespace
}  // namespace tarv
