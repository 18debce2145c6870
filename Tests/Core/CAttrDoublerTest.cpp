#include "Core/CAttrDoubler.h"

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Fails to take the attribute `refused`.
class CRefusing : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CRefusing::refuse>("refused");
        return nullptr;
    }
    CError* refuse() { TARV_FAIL("@tarvstr_CRefusing_refuse_Always Refused."); }
};

/// Destroys what `victim` names when its attribute `doomed` is set.
class CDestroying : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CDestroying::destroy>("doomed");
        return nullptr;
    }
    CError* destroy() {
        delete findObject(getAttrString("victim"));
        return nullptr;
    }
};

class AttrDoubler : public testing::Test {
protected:
    std::unique_ptr<CObject> make(std::vector<std::pair<std::string, std::string>> attributes) {
        auto root = application.makeRoot(nodes(std::move(attributes)));
        return root;
    }
    static std::vector<CTestNode> nodes(std::vector<std::pair<std::string, std::string>> attributes) {
        return {{"core:object", "source", {{"width", "10"}}},
                {"core:object", "a"},
                {"test:refusing", "b"},
                {"core:object", "holder", {}, {{"core:attr-doubler", "doubler", std::move(attributes)}}}};
    }
    static std::string at(const CObject& root, const char* path, const char* attr = "scroller-width") {
        return root.findObject(path)->getAttrString(attr).toUtf8();
    }
    std::string failure(std::vector<std::pair<std::string, std::string>> attributes) {
        auto root = application.makeRoot();
        const std::string text = consumed(loadTree(*root, nodes(std::move(attributes))));
        return text.substr(0, text.find('\r'));
    }

    CTestApplication application{{
        {"core:object", &createObject<CObject>, nullptr},
        {"core:attr-doubler", &createObject<CAttrDoubler>, &CAttrDoubler::initClass},
        {"test:destroying", &createObject<CDestroying>, &CDestroying::initClass},
        {"test:refusing", &createObject<CRefusing>, &CRefusing::initClass},
    }};
};

TEST_F(AttrDoubler, CopiesItsFirstValueAndEachChangeToEveryTarget) {
    auto root = make({{"value", "{*/source width}"}, {"target", "a  ^^b "}, {"attr", "scroller-width"}});
    EXPECT_EQ(at(*root, "a"), "10");
    EXPECT_EQ(at(*root, "b"), "10");
    EXPECT_EQ(consumed(root->findObject("source")->setAttribute("width", CString("20"))), "");
    EXPECT_EQ(at(*root, "a"), "20");
    EXPECT_EQ(at(*root, "b"), "20");
}

TEST_F(AttrDoubler, KeepsTheTypeOfTheValue) {
    auto root = make({{"target", "a"}, {"attr", "scroller-width"}});
    EXPECT_FALSE(root->findObject("a")->hasAttr("scroller-width")) << "without a value nothing is copied";
    EXPECT_EQ(consumed(root->findObject("holder.doubler")->setAttribute("value", CAttributeValue::fromReal(0.123456))),
              "");
    EXPECT_EQ(root->findObject("a")->getAttrReal("scroller-width"), 0.123456);
}

TEST_F(AttrDoubler, NeedsTargetsThatAreThere) {
    EXPECT_EQ(failure({{"value", "1"}, {"attr", "x"}}), "No target objects specified.");
    EXPECT_EQ(failure({{"value", "1"}, {"attr", "x"}, {"target", "  "}}), "No target objects specified.");
    EXPECT_EQ(failure({{"value", "1"}, {"attr", "x"}, {"target", "a nowhere"}}), "Target object 'nowhere' not found.");
}

TEST_F(AttrDoubler, LeavesOutATargetThatHasGone) {
    auto root = make({{"value", "1"}, {"target", "a b"}, {"attr", "scroller-width"}});
    delete root->findObject("a");
    EXPECT_EQ(consumed(root->findObject("holder.doubler")->setAttribute("value", CString("2"))), "");
    EXPECT_EQ(at(*root, "b"), "2");
}

TEST_F(AttrDoubler, MayBeItsOwnTarget) {
    auto root = make({{"value", "1"}, {"target", ". a"}, {"attr", "value"}});
    EXPECT_EQ(at(*root, "a", "value"), "1");
}

TEST_F(AttrDoubler, ATargetMayDestroyIt) {
    std::vector<CTestNode> children = nodes({{"target", "d a"}, {"attr", "doomed"}});
    children.insert(children.begin(), {"test:destroying", "d", {{"victim", "holder.doubler"}}});
    auto root = application.makeRoot(children);
    EXPECT_EQ(consumed(root->findObject("holder.doubler")->setAttribute("value", CString("1"))), "");
    EXPECT_EQ(root->findObject("holder.doubler"), nullptr);
    EXPECT_FALSE(root->findObject("a")->hasAttr("doomed"));
}

TEST_F(AttrDoubler, PassesOnTheFailureOfATarget) {
    auto root = make({{"target", "a b"}, {"attr", "refused"}});
    const std::string text = consumed(root->findObject("holder.doubler")->setAttribute("value", CString("1")));
    EXPECT_EQ(text.find("Refused.\r\n"), 0u) << text;
    EXPECT_NE(text.find("// holder.doubler\r\n"), std::string::npos) << text;
    EXPECT_EQ(at(*root, "a", "refused"), "1");
}

}  // namespace
}  // namespace tarv
