#include "UI/Controls/Buttons/CControlArray.h"

#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Text/CPopupList.h"

namespace tarv {
namespace {

class CControlArrayTest : public CControlEditor {
protected:
    CControlArrayTest() {
        openWindow({testTemplate("test:cell", "ui:view", {{"width", "30"}, {"height", "20"}, {"is-focusable", "true"}}),
                    testTemplate("test:plain", "core:object")});
        addBridge("test-in", "io-params.in-routing");
        addBridge("test-quality", "oversampling");
    }
    CControlArray& add(CTexts attributes, std::vector<CTestNode> params = {}) {
        attributes.insert(attributes.begin(), {"object-tag", "test:cell"});
        load("w", {{"ui:control-array", "a", std::move(attributes), std::move(params)}});
        turn();
        return at<CControlArray>("a");
    }
    static CTestNode param(const char* role, const char* bridge, const char* element = "0") {
        return {"ui:ui-param", role, {{"bridge", bridge}, {"element", element}}};
    }
    /// A control for each channel, which chooses among "none", "A", "B", "C".
    CControlArray& routing(CTexts more = {}) {
        std::vector<CTestNode> rows;
        for (const char* title : {"none", "A", "B", "C"}) {
            rows.push_back({"content", "content", {{"title", title}}});
        }
        load("", {{"ui:value-list-manual", "inputs", {}, rows}});
        more.emplace_back("object-value-list", "ui.inputs");
        return add(more, {param("ui-param-values", "ui.test-in")});
    }
    static std::string texts(const CControlArray& array, const char* name) {
        std::string all;
        for (int32_t i = 0; i < array.objectCount(); ++i) {
            all += (i > 0 ? "," : "") + array.object(i).getAttrString(name).toUtf8();
        }
        return all;
    }
    CPopupList* list() { return editor_->findObjectOf<CPopupList>("ui.window-app-popup-list.list"); }
    /// A press on a row of the list.
    void choose(int32_t row) {
        const CWindowHandle window =
            editor_->findObjectOf<CWindow>("ui.window-app-popup-list.window-renderer")->handle();
        const CViewRect rect = list()->rowRect(row);
        system_.advance(0.3);
        system_.input().moveIn(window, static_cast<int32_t>(rect.x + 3), static_cast<int32_t>(rect.y + 3));
        system_.input().click();
        turn();
    }
};

TEST_F(CControlArrayTest, WithoutATagItFails) {
    EXPECT_EQ(tryLoad("w", {{"ui:control-array", "x"}}), "Object tag not defined.");
}

TEST_F(CControlArrayTest, ATemplateOfNoViewFails) {
    EXPECT_EQ(tryLoad("w", {{"ui:control-array", "x", {{"object-tag", "test:plain"}, {"object-count", "1"}}}}),
              "Object is not a view.");
}

TEST_F(CControlArrayTest, HasAControlForEachElement) {
    CControlArray& array = add({}, {param("ui-param-values", "ui.test-in")});
    EXPECT_EQ(texts(array, "object-index"), "0,1,2,3,4,5,6,7");
    EXPECT_EQ(texts(array, "object-index-incr"), "1,2,3,4,5,6,7,8");
    EXPECT_EQ(texts(array, "object-value"), "1,2,0,0,0,0,0,0");
}

TEST_F(CControlArrayTest, CountsComeFromTheAttributeThenTheParamThenTheTitles) {
    addBridge("test-bands", "modBrindleXEQ.band-count");
    const CTestNode values = param("ui-param-values", "ui.test-in");
    const CTestNode count = param("ui-param-count", "ui.test-bands");
    CControlArray& array = add({{"object-title-list", "x;y;z"}, {"max-item-count", "-1"}}, {values, count});
    EXPECT_EQ(array.objectCount(), 7);
    set(array, "object-count", "2");
    EXPECT_EQ(array.objectCount(), 2);
    set(array, "object-count", "11");
    EXPECT_EQ(array.objectCount(), 11) << "-1 is no limit";
    set(array, "max-item-count", "4");
    EXPECT_EQ(array.objectCount(), 4);
    set(array, "object-count", "");
    set(array, "max-item-count", "");
    EXPECT_EQ(array.objectCount(), 7);
    delete array.findChild("ui-param-count");
    set(array, "max-item-count", "-1");
    EXPECT_EQ(array.objectCount(), 3);
    EXPECT_EQ(texts(array, "object-title"), "x,y,z");
    set(array, "object-title-list", "");
    EXPECT_EQ(array.objectCount(), 8);
    EXPECT_EQ(texts(array, "object-title"), ",,,,,,,");
}

TEST_F(CControlArrayTest, AnAbsurdCountIsHeld) {
    CControlArray& array = add({{"object-count", "100000"}});
    EXPECT_EQ(array.objectCount(), 1024);
    set(array, "object-count", "0");
    EXPECT_EQ(array.objectCount(), 0);
}

TEST_F(CControlArrayTest, ControlsFollowTheirElements) {
    CControlArray& array = routing({{"object-title-list", "L;R;C"}, {"separator-char", ";"}});
    EXPECT_EQ(texts(array, "object-value-title"), "A,B,none");
    listen(array.object(1), {"object-update"});
    const double value = 3.0;
    EXPECT_EQ(consumed(bridge("test-in").setValues(0, 1, &value, 1)), "");
    turn();
    EXPECT_EQ(texts(array, "object-value-title"), "A,C,none");
    EXPECT_EQ(heard(), "object#1 object-update");
    CAttributeMap& last = CHeardEvents::last;
    EXPECT_EQ(last["object-index"].asInt(), 1);
    EXPECT_EQ(last["object-index-incr"].asInt(), 2);
    EXPECT_EQ(last["object-title"].asString().toUtf8(), "R");
    EXPECT_EQ(last["object-value"].asReal(), 3.0);
    EXPECT_EQ(last["object-value-title"].asString().toUtf8(), "C");
    EXPECT_FALSE(last["selected-object"].asBool());
    const double same = 3.0;
    EXPECT_EQ(consumed(bridge("test-in").setValues(0, 1, &same, 1)), "");
    turn();
    EXPECT_EQ(heard(), "") << "nothing has changed";
}

TEST_F(CControlArrayTest, WithoutAListAValueShowsItsText) {
    CControlArray& array = add({}, {param("ui-param-values", "ui.test-quality")});
    ASSERT_EQ(array.objectCount(), 1);
    EXPECT_EQ(texts(array, "object-value-title"),
              bridge("test-quality").valueText(0, 0, CAudioTextMode::Full).toUtf8());
}

TEST_F(CControlArrayTest, ValuesBeginAtTheElementOfTheParam) {
    CControlArray& array = add({}, {param("ui-param-values", "ui.test-in", "6")});
    EXPECT_EQ(array.objectCount(), 2);
}

TEST_F(CControlArrayTest, AReleaseOpensTheListAndARowSetsTheValue) {
    CControlArray& array = routing();
    click(array.object(2));
    ASSERT_TRUE(list());
    EXPECT_EQ(list()->paragraphCount(), 4);
    EXPECT_EQ(list()->selectedParagraph(), 0);
    choose(3);
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 2), 3.0);
    EXPECT_EQ(texts(array, "object-value-title").substr(0, 5), "A,B,C");
    EXPECT_EQ(history(), "In routing change");
    turn(0.6);
    click(array.object(0));
    choose(1);
    EXPECT_EQ(history(), "In routing change") << "the same entry is no change";
}

TEST_F(CControlArrayTest, EachNotchOfTheWheelGoesOnByAnEntry) {
    CControlArray& array = routing();
    pointAt(array.object(0));
    EXPECT_TRUE(system_.input().wheel(-1.0));
    turn();
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 2.0);
    for (int32_t i = 0; i < 4; ++i) {
        EXPECT_TRUE(system_.input().wheel(-0.25));
        turn();
    }
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 3.0) << "fractions add up";
    EXPECT_TRUE(system_.input().wheel(-5.0));
    turn();
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 3.0) << "the end stays the end";
    EXPECT_TRUE(system_.input().wheel(9.0));
    turn();
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 0.0);
    EXPECT_EQ(history(), "In routing change") << "notches that follow each other are one step";
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 1), 2.0);
}

TEST_F(CControlArrayTest, HalfANotchStaysWithItsControl) {
    CControlArray& array = routing();
    pointAt(array.object(0));
    EXPECT_TRUE(system_.input().wheel(-0.5));
    pointAt(array.object(1));
    EXPECT_TRUE(system_.input().wheel(-0.5));
    turn();
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 1.0);
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 1), 2.0);
    EXPECT_TRUE(system_.input().wheel(-0.5));
    turn();
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 1), 3.0);
    pointAt(array.object(0));
    EXPECT_TRUE(system_.input().wheel(-0.5));
    turn();
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 1.0) << "the pointer has been elsewhere";
}

TEST_F(CControlArrayTest, WithoutAListTheWheelGoesOn) {
    CControlArray& array = add({}, {param("ui-param-values", "ui.test-in")});
    pointAt(array.object(0));
    EXPECT_FALSE(system_.input().wheel(-1.0));
    EXPECT_EQ(engineValue("io-params.in-routing", 0, 0), 1.0);
}

TEST_F(CControlArrayTest, AValueBeyondTheListIsDimmedAndNamed) {
    for (const char* name : {"in-channel-names", "grouping"}) {
        addBridge(std::string(name) + "-bridge", std::string("io-params.") + name);
    }
    instance().interfaceBase()->setIoCounts(2, 2, 0);
    load("", {{"ui:value-list", "ins", {{"mode", "audio-ins"}, {"add-empty-value", "true"}}}});
    CControlArray& array = add({{"object-value-list", "ui.ins"}}, {param("ui-param-values", "ui.test-in")});
    const double value = 9.0;
    EXPECT_EQ(consumed(bridge("test-in").setValues(0, 1, &value, 1)), "");
    turn();
    EXPECT_EQ(texts(array, "object-value-title").substr(0, 9), "L,IN9,---");
    EXPECT_TRUE(array.object(1).isStateSet("dimmed"));
    EXPECT_FALSE(array.object(0).isStateSet("dimmed"));
}

TEST_F(CControlArrayTest, TheSelectedObjectIsActiveAndAReleaseSelectsAnother) {
    CControlArray& array = add({{"object-count", "4"}}, {param("ui-param-selected-object", "ui.test-quality")});
    EXPECT_EQ(texts(array, "selected-object"), "false,true,false,false");
    EXPECT_TRUE(array.object(1).isStateSet("active"));
    click(array.object(3));
    EXPECT_EQ(engineValue("oversampling"), 3.0);
    EXPECT_TRUE(array.object(3).isStateSet("active"));
    EXPECT_FALSE(array.object(1).isStateSet("active"));
}

TEST_F(CControlArrayTest, StatesGoToTheViewOfThePath) {
    load("w", {testTemplate("ignored", "ui:view")});
    CControlArray& array = add({{"object-count", "2"}, {"object-state-path", "^"}},
                               {param("ui-param-selected-object", "ui.test-quality")});
    EXPECT_FALSE(array.object(1).isStateSet("active"));
    EXPECT_TRUE(array.isStateSet("active"));
}

TEST_F(CControlArrayTest, ColoursAreOneForAllOrOneEach) {
    CControlArray& array = add({{"object-count", "3"},
                                {"object-color", "Custom1;Custom2"},
                                {"object-text-color", "Text"},
                                {"element-width", "44"}});
    EXPECT_EQ(texts(array, "color"), "Custom1,Custom2,Custom2");
    EXPECT_EQ(texts(array, "text-color"), "Text,Text,Text");
    EXPECT_EQ(array.object(2).wholeRect().width, 44.0);
}

TEST_F(CControlArrayTest, ReserveIsHiddenWhereThatIsWanted) {
    CControlArray& array = add({{"object-title-list", "a;Reserve;c"}, {"is-hide-reserve", "true"}});
    turn();
    EXPECT_EQ(array.objectCount(), 3);
    EXPECT_TRUE(array.object(0).isShown());
    EXPECT_FALSE(array.object(1).isShown());
    set(array, "is-hide-reserve", "false");
    EXPECT_TRUE(array.object(1).isShown());
}

TEST_F(CControlArrayTest, EachAttributeIsReadAnew) {
    CControlArray& array = routing({{"object-title-list", "x;y/z"}, {"object-count", "3"}});
    EXPECT_EQ(texts(array, "object-value-title"), "A,B,none");
    load("", {{"ui:value-list-manual", "others", {}, {{"content", "content", {{"title", "0"}}}}}});
    set(array, "object-value-list", "ui.others");
    EXPECT_EQ(texts(array, "object-value-title"), "1,2,0") << "by the new list";
    CValueList::CItems items;
    items.append({"zero", 0.0});
    items.append({"one", 1.0});
    EXPECT_EQ(consumed(dynamic_cast<CValueList&>(object("others")).setItems(items)), "");
    turn();
    EXPECT_EQ(texts(array, "object-value-title"), "one,2,zero") << "which is followed";
    EXPECT_EQ(texts(array, "object-title"), "x,y/z,");
    set(array, "separator-char", "/");
    EXPECT_EQ(texts(array, "object-title"), "x;y,z,");
    load("", {{"ui:value-list-manual", "names", {}, {{"content", "content", {{"title", "n"}}}}}});
    set(array, "object-title-list", "ui.names");
    EXPECT_EQ(texts(array, "object-title"), "n,,");
    EXPECT_EQ(consumed(dynamic_cast<CValueList&>(object("names")).setItems(items)), "");
    turn();
    EXPECT_EQ(texts(array, "object-title"), "zero,one,");
    EXPECT_EQ(array.object(1).wholeRect().width, 30.0);
    set(array, "element-width", "44");
    turn();
    EXPECT_EQ(array.object(1).wholeRect().width, 44.0);
    set(array, "object-count", "4");
    turn();
    EXPECT_EQ(array.object(3).wholeRect().width, 44.0);
    EXPECT_TRUE(array.object(1).isStateSet("dimmed")) << "the list has no 2";
    set(array, "object-state-path", "^");
    EXPECT_FALSE(array.object(1).isStateSet("dimmed")) << "what had the states loses them";
}

TEST_F(CControlArrayTest, TitlesFollowTheirList) {
    load("", {{"ui:value-list-manual", "names", {}, {{"content", "content", {{"title", "one"}}}}}});
    CControlArray& array = add({{"object-title-list", "ui.names"}});
    EXPECT_EQ(texts(array, "object-title"), "one");
    CValueList::CItems items;
    items.append({"two", 0.0});
    items.append({"three", 1.0});
    EXPECT_EQ(consumed(dynamic_cast<CValueList&>(object("names")).setItems(items)), "");
    turn();
    EXPECT_EQ(texts(array, "object-title"), "two,three");
}

TEST_F(CControlArrayTest, IsDisabledWhileItsValuesAreNotThere) {
    CControlArray& array = routing();
    EXPECT_FALSE(array.isDisabled());
    delete &object("test-in");
    EXPECT_TRUE(array.isDisabled());
}

TEST_F(CControlArrayTest, AControlMayDestroyTheArray) {
    CControlArray& array = routing();
    listen(array.object(1), {"object-update"});
    CHeardEvents::onEvent = [&](const std::string&) { delete &array; };
    const double value = 3.0;
    EXPECT_EQ(consumed(bridge("test-in").setValues(0, 1, &value, 1)), "");
    turn();
    EXPECT_FALSE(object("w").findChild("a"));
}

}  // namespace
}  // namespace tarv
