#include "Core/CCreatorRegistry.h"

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

class CHandled : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        EXPECT_EQ(CObject::initClass(descriptor), nullptr) << "a second time changes nothing";
        descriptor.addHandler<&CHandled::plain>("plain");
        descriptor.addHandler<&CHandled::withParams>("with-params");
        return nullptr;
    }
    CError* plain() { return nullptr; }
    CError* withParams(CAttributeMap& params) {
        seen = params.size();
        return nullptr;
    }
    size_t seen = 99;
};

CError* failingInitClass(CClassDescriptor&) {
    TARV_FAIL("@tarvstr_Test_initClass_Fails No handlers today.");
}

struct CRegistryTest : testing::Test {
    void TearDown() override { CCreatorRegistry::clear(); }
};

TEST_F(CRegistryTest, ATagThatStandsAlreadyFails) {
    const CCreatorRow rows[] = {{"a:b", &createObject<CObject>, nullptr}, {"a:b", &createObject<CObject>, nullptr}};
    std::string error = consumed(CCreatorRegistry::registerRows(rows, 2));
    EXPECT_EQ(error.find("Creator for 'a:b' has already been registered.\r\n"), 0u) << error;
}

TEST_F(CRegistryTest, AClassThatFailsToFillItsDescriptorEndsTheRegistration) {
    const CCreatorRow rows[] = {{"a:a", &createObject<CObject>, nullptr},
                                {"a:b", &createObject<CObject>, &failingInitClass},
                                {"a:c", &createObject<CObject>, nullptr}};
    EXPECT_EQ(consumed(CCreatorRegistry::registerRows(rows, 3)).find("No handlers today.\r\n"), 0u);
    std::unique_ptr<CObject> first(CCreatorRegistry::create("a:a"));
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(CCreatorRegistry::create("a:b"), nullptr);
    EXPECT_EQ(CCreatorRegistry::create("a:c"), nullptr);
}

TEST_F(CRegistryTest, AfterClearingATagIsFreeAgain) {
    const CCreatorRow row = {"a:b", &createObject<CObject>, nullptr};
    ASSERT_EQ(consumed(CCreatorRegistry::registerRows(&row, 1)), "");
    CCreatorRegistry::clear();
    EXPECT_EQ(CCreatorRegistry::create("a:b"), nullptr);
    EXPECT_EQ(consumed(CCreatorRegistry::registerRows(&row, 1)), "");
}

TEST_F(CRegistryTest, EveryClassHasTheCommonHandlerAndItsOwn) {
    const CCreatorRow rows[] = {{"a:handled", &createObject<CHandled>, &CHandled::initClass},
                                {"a:bare", &createObject<CObject>, nullptr}};
    ASSERT_EQ(consumed(CCreatorRegistry::registerRows(rows, 2)), "");
    std::unique_ptr<CObject> handled(CCreatorRegistry::create("a:handled"));
    std::unique_ptr<CObject> bare(CCreatorRegistry::create("a:bare"));
    EXPECT_EQ(handled->descriptor()->handlerCount(), 3);
    EXPECT_EQ(handled->descriptor()->handlerIndex("release-child-bridged"), 0);
    EXPECT_EQ(handled->descriptor()->handlerIndex("with-params"), 2);
    EXPECT_EQ(handled->descriptor()->handlerName(1), "plain");
    EXPECT_EQ(handled->descriptor()->handlerIndex("nothing"), -1);
    EXPECT_EQ(bare->descriptor()->handlerCount(), 1);
    CObject plain;
    EXPECT_EQ(plain.descriptor(), &CCreatorRegistry::objectDescriptor());
    EXPECT_EQ(plain.descriptor()->handlerIndex("release-child-bridged"), 0);
}

TEST_F(CRegistryTest, AHandlerIsCalledInTheFormThatItsEntryTells) {
    const CCreatorRow row = {"a:handled", &createObject<CHandled>, &CHandled::initClass};
    ASSERT_EQ(consumed(CCreatorRegistry::registerRows(&row, 1)), "");
    std::unique_ptr<CObject> object(CCreatorRegistry::create("a:handled"));
    const CClassDescriptor& descriptor = *object->descriptor();
    CAttributeMap params;
    params["a"] = CAttributeValue::fromInt(1);
    EXPECT_EQ(descriptor.handler(descriptor.handlerIndex("plain"))(*object, &params), nullptr);
    EXPECT_EQ(descriptor.handler(descriptor.handlerIndex("with-params"))(*object, &params), nullptr);
    EXPECT_EQ(dynamic_cast<CHandled&>(*object).seen, 1u);
    EXPECT_EQ(descriptor.handler(descriptor.handlerIndex("with-params"))(*object, nullptr), nullptr);
    EXPECT_EQ(dynamic_cast<CHandled&>(*object).seen, 0u);
}

}  // namespace
}  // namespace tarv
