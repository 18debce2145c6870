#include "UI/Controls/Buttons/CSelector.h"

#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Controls/Buttons/CButton.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

class CSelectorTest : public CControlEditor {
protected:
    CSelectorTest() { openWindow({}, {{"is-inline-vertical", "true"}, {"hint", "Of the window."}}); }

    CSelector& add(const std::string& tag, CTexts attributes = {}) {
        attributes.insert(attributes.end(), {{"height", "20"}});
        const bool hasWidth = std::any_of(attributes.begin(), attributes.end(),
                                          [](const auto& attribute) { return attribute.first == "width"; });
        if (!hasWidth) {
            attributes.emplace_back("width", "120");
        }
        load("w", {{tag, "s", std::move(attributes)}});
        turn();
        return at<CSelector>("s");
    }
    CSelector& groups(CTexts more = {}) {
        load("", {{"ui:param-group-selector", "sel"}, {"ui:param-group-selector", "opposite"}});
        more.insert(more.end(), {{"group-selector", "ui.sel"}, {"group-selector-opposite", "ui.opposite"}});
        return add("ui:selector-group", more);
    }
    int32_t groupOf(const char* name) { return dynamic_cast<CParamGroupSelector&>(object(name)).groupIndex(); }
    /// Titles, the active one in brackets.
    static std::string shown(const CSelector& selector) {
        std::string all;
        for (int32_t i = 0; i < selector.buttonCount(); ++i) {
            const CButton& button = selector.button(i);
            const std::string title = button.getAttrString("title").toUtf8();
            all += (i > 0 ? " " : "") + (button.isStateSet("active") ? "[" + title + "]" : title);
        }
        return all;
    }
    std::string setting(const char* path, const char* name) { return object(path).getAttrString(name).toUtf8(); }
};

TEST_F(CSelectorTest, AGroupIsChosenByItsButton) {
    CSelector& selector = groups();
    EXPECT_EQ(shown(selector), "[1] 2 3 4 5 6 7 8");
    click(selector.button(2));
    EXPECT_EQ(groupOf("sel"), 2);
    EXPECT_EQ(groupOf("opposite"), 0);
    EXPECT_EQ(shown(selector), "1 2 [3] 4 5 6 7 8");
    EXPECT_EQ(selector.getAttrInt("active-button"), 2);
}

TEST_F(CSelectorTest, AGroupThatIsChosenElsewhereIsShown) {
    CSelector& selector = groups();
    set(object("sel"), "group-index", "7");
    EXPECT_EQ(shown(selector), "1 2 3 4 5 6 7 [8]");
}

TEST_F(CSelectorTest, AHandlerMayRebuildTheButtonsWhileTheyAreRebuilt) {
    CSelector& selector = groups({{"button-title-list", "a;b;c"}, {"button-width", "balanced"}});
    for (const char* attribute : {"hint", "title"}) {
        for (int32_t button = 0; button < 3; ++button) {
            for (const char* titles : {"x", "x;y", "v;w;x;y;z"}) {
                set(selector, "button-title-list", "a;b;c");
                delete &object("heard");
                load("", {{"test:heard", "heard"}});
                selector.button(button).linkObserver(object("heard"), attribute, "change");
                CHeardEvents::onChange = [&] {
                    CHeardEvents::onChange = {};
                    set(selector, "button-title-list", titles);
                };
                set(selector, "button-title-list", "Much too wide for it;Much too wide for it;f;g");
                EXPECT_EQ(CHeardEvents::onChange, nullptr);
                const std::string rest = std::string(titles).substr(1);
                std::string expected = std::string("[") + titles[0] + "]" + rest;
                std::replace(expected.begin(), expected.end(), ';', ' ');
                EXPECT_EQ(shown(selector), expected) << attribute << button;
            }
        }
    }
}

TEST_F(CSelectorTest, AValueWithoutAButtonActivatesNone) {
    CSelector& selector = groups();
    set(object("sel"), "group-index", "11");
    EXPECT_EQ(shown(selector), "1 2 3 4 5 6 7 8");
    EXPECT_EQ(selector.getAttrInt("active-button"), -1);
    EXPECT_EQ(selector.readableValue().toUtf8(), "");
    click(selector.button(4));
    EXPECT_EQ(shown(selector), "1 2 3 4 [5] 6 7 8");
}

TEST_F(CSelectorTest, ARightPressChoosesInTheOppositeSelectorTooWhereThatIsAllowed) {
    CSelector& selector = groups({{"is-right-click-allowed", "true"}});
    click(selector.button(3), CPointerButton::Right);
    EXPECT_EQ(groupOf("sel"), 3);
    EXPECT_EQ(groupOf("opposite"), 3);
    set(selector, "is-right-click-allowed", "false");
    click(selector.button(1), CPointerButton::Right);
    EXPECT_EQ(groupOf("sel"), 3);
    EXPECT_EQ(groupOf("opposite"), 3);
}

TEST_F(CSelectorTest, DataChooseAButtonByItsAttribute) {
    CSelector& selector = groups();
    set(selector, "active-button", "5");
    EXPECT_EQ(groupOf("sel"), 5);
    EXPECT_EQ(shown(selector), "1 2 3 4 5 [6] 7 8");
    set(selector, "active-button", "40");
    EXPECT_EQ(groupOf("sel"), 5);
    EXPECT_EQ(selector.getAttrInt("active-button"), 5) << "what the source has counts";
}

TEST_F(CSelectorTest, ArrowsMoveTheChoiceBehindATab) {
    CSelector& selector = groups();
    takeKeys();
    ASSERT_TRUE(tap(kKeyTab));
    EXPECT_EQ(window_->keyFocusView(), &selector);
    EXPECT_EQ(selector.focusView(), &selector.button(0)) << "the active button shows it";
    EXPECT_TRUE(tap(kKeyRight));
    EXPECT_TRUE(tap(kKeyDown));
    EXPECT_EQ(groupOf("sel"), 2);
    EXPECT_EQ(selector.focusView(), &selector.button(2));
    EXPECT_TRUE(tap(kKeyLeft));
    EXPECT_EQ(groupOf("sel"), 1);
    EXPECT_TRUE(tap(kKeyEnd));
    EXPECT_TRUE(tap(kKeyRight));
    EXPECT_EQ(groupOf("sel"), 7) << "the end stays the end";
    EXPECT_TRUE(tap(kKeyHome));
    EXPECT_TRUE(tap(kKeyUp));
    EXPECT_EQ(groupOf("sel"), 0);
    EXPECT_FALSE(tap(kKeyTab)) << "the row is one stop";
    EXPECT_FALSE(tap('X')) << "other keys go on to the host";
}

TEST_F(CSelectorTest, AReaderHearsAListAndItsChoice) {
    CSelector& selector = groups({{"hint", "The [B]group[/B]."}});
    set(object("sel"), "group-index", "3");
    const CViewReading reading = CViewReader::read(selector);
    EXPECT_EQ(reading.name.toUtf8(), "The group.");
    EXPECT_EQ(reading.role, CViewRole::List);
    EXPECT_EQ(reading.value.toUtf8(), "4");
}

TEST_F(CSelectorTest, BalancedButtonsHaveWholePixelsAndTheRestStandsAtBothEnds) {
    CSelector& selector = groups({{"button-width", "balanced"}, {"width", "175"}});
    const double left = selector.wholeRect().x;
    for (int32_t i = 0; i < 8; ++i) {
        EXPECT_EQ(selector.button(i).wholeRect().width, 21.0) << i;
        EXPECT_EQ(selector.button(i).wholeRect().x, left + 3 + 21 * i) << "175 - 8 x 21 is 7";
        EXPECT_EQ(selector.button(i).wholeRect().height, 20.0);
    }
    set(selector, "width", "240");
    turn();
    EXPECT_EQ(selector.button(7).wholeRect().right(), selector.wholeRect().right());
    EXPECT_EQ(selector.button(3).wholeRect().width, 30.0);
}

TEST_F(CSelectorTest, AWidthOfItsOwnIsThatOfEachButton) {
    CSelector& selector = groups({{"button-width", "25"}, {"button-color", "Action"}, {"width", "compact"}});
    EXPECT_EQ(selector.button(3).wholeRect().width, 25.0);
    EXPECT_EQ(selector.wholeRect().width, 200.0);
    EXPECT_EQ(selector.button(3).getAttrString("color").toUtf8(), "Action");
}

TEST_F(CSelectorTest, EachAttributeIsReadAnew) {
    CSelector& selector = groups({{"button-title-list", "a;b/c"}, {"button-width", "balanced"}, {"width", "175"}});
    EXPECT_EQ(shown(selector), "[a] b/c");
    set(selector, "separator-char", "/");
    EXPECT_EQ(shown(selector), "[a;b] c");
    set(selector, "button-width", "25");
    turn();
    EXPECT_EQ(selector.button(1).wholeRect().width, 25.0);
    EXPECT_EQ(selector.button(0).wholeRect().x, selector.wholeRect().x) << "nothing is left at the ends";
    EXPECT_EQ(shown(selector), "[a;b] c");
    set(selector, "button-color", "Action");
    EXPECT_EQ(selector.button(1).getAttrString("color").toUtf8(), "Action");
    EXPECT_NE(selector.button(0).tag(), CString("ui:button-groupsel"));
    set(selector, "button-tag", "ui:button-groupsel");
    EXPECT_EQ(selector.button(0).tag(), CString("ui:button-groupsel"));
    turn();
    click(selector.button(1));
    EXPECT_EQ(groupOf("sel"), 1);
    load("", {{"ui:value-list-manual", "names", {}, {{"content", "content", {{"title", "n"}}}}}});
    set(selector, "button-title-list", "ui.names");
    EXPECT_EQ(shown(selector), "n");
    CValueList::CItems items;
    items.append({"x", 0.0});
    items.append({"y", 1.0});
    EXPECT_EQ(consumed(dynamic_cast<CValueList&>(object("names")).setItems(items)), "");
    turn();
    EXPECT_EQ(shown(selector), "x [y]") << "the new list is followed";
}

TEST_F(CSelectorTest, ThereIsAButtonForEachGroupThatTheEngineHas) {
    CSelector& selector = groups();
    instance().interfaceBase()->setGroupCount(3);
    turn();
    EXPECT_EQ(shown(selector), "[1] 2 3");
    instance().interfaceBase()->setGroupCount(8);
    turn();
    EXPECT_EQ(selector.buttonCount(), 8);
}

TEST_F(CSelectorTest, AListGivesTitlesAndDimsWhatHasNoChannel) {
    for (const char* name : {"group-names", "grouping", "in-routing"}) {
        addBridge(std::string("test-") + name, std::string("io-params.") + name);
    }
    load("", {{"ui:value-list", "names", {{"mode", "audio-groups"}}}});
    CSelector& selector =
        groups({{"button-title-list", "ui.names"}, {"button-tag", "ui:button-groupsel"}, {"hint", "The group."}});
    ASSERT_EQ(selector.buttonCount(), 8);
    EXPECT_EQ(selector.button(0).getAttrString("title").toUtf8(), "1");
    const bool isDimmed = dynamic_cast<CValueList&>(object("names"))[5].isDimmed;
    EXPECT_EQ(selector.button(5).isStateSet("dimmed"), isDimmed);
    EXPECT_FALSE(selector.button(5).isDisabled());
    click(selector.button(5));
    EXPECT_EQ(groupOf("sel"), 5) << "a host may automate it, and so may be seen";
    CValueList::CItems items;
    items.append({"A", 0.0});
    items.append({"B", 1.0, true});
    EXPECT_EQ(consumed(dynamic_cast<CValueList&>(object("names")).setItems(items)), "");
    turn();
    EXPECT_EQ(shown(selector), "A B") << "group 6 has no button now";
    EXPECT_EQ(selector.button(0).hint().toUtf8(), "[B]A[/B]: The group.");
    EXPECT_EQ(selector.button(1).hint().toUtf8(), "[B]B[/B]: no channel is in this group, see Routing.");
    EXPECT_TRUE(selector.button(1).isStateSet("dimmed"));
    EXPECT_EQ(selector.button(1).opacity(), 0.5);
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(shown(selector), "A [B]");
}

TEST_F(CSelectorTest, ATitleThatIsTooWideShowsItsNumber) {
    CSelector& selector =
        add("ui:selector-scale", {{"button-width", "balanced"}, {"button-title-list", "80%;Hundred percent and more"}});
    EXPECT_EQ(shown(selector), "80% [2]");
    EXPECT_EQ(selector.button(1).hint().toUtf8(), "Hundred percent and more");
    EXPECT_EQ(selector.readableValue().toUtf8(), "Hundred percent and more");
    set(selector, "width", "390");
    turn();
    EXPECT_EQ(shown(selector), "80% [Hundred percent and more]");
}

TEST_F(CSelectorTest, TheChosenGroupHasItsColour) {
    load("", {{"ui:color-swatch",
               "swatch",
               {},
               {{"core:object", "a", {{"is-color", "true"}, {"index", "0"}, {"color", "Custom1"}}},
                {"core:object", "b", {{"is-color", "true"}, {"index", "1"}, {"color", "Custom2"}}}}}});
    CSelector& selector = groups({{"button-tag", "ui:button-groupsel"}, {"color-swatch", "ui.swatch"}});
    EXPECT_EQ(selector.button(0).getAttrString("color").toUtf8(), "Custom1");
    EXPECT_EQ(selector.button(0).getAttrString("label-color").toUtf8(), "Custom1Text");
    EXPECT_EQ(selector.button(0).colorStates().count(), 0) << "the colour itself";
    EXPECT_EQ(selector.button(1).getAttrString("color").toUtf8(), "Button");
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(selector.button(0).getAttrString("color").toUtf8(), "Button");
    EXPECT_EQ(selector.button(1).getAttrString("color").toUtf8(), "Custom2");
}

TEST_F(CSelectorTest, AnOutlinedSelectorKeepsTheGroupsColourForItsOutline) {
    CSelector& selector = groups({{"button-tag", "ui:button-groupsel"}, {"is-outlined", "true"}});
    EXPECT_EQ(selector.button(0).getAttrString("image-set-range").toUtf8(), "Outline");
    EXPECT_EQ(selector.button(0).getAttrString("label-color").toUtf8(), "FieldText");
    EXPECT_EQ(selector.button(0).imageRange().toUtf8(), "OutlineActive");
    EXPECT_EQ(selector.button(1).imageRange().toUtf8(), "Outline");
}

TEST_F(CSelectorTest, OversamplingIsStoredAsStages) {
    CSelector& selector = add("ui:selector-oversampling");
    EXPECT_EQ(shown(selector), "[2X] 4X 8X");
    click(selector.button(2));
    EXPECT_EQ(setting("global-data.oversampling-level", "oversampling-level"), "3");
    EXPECT_EQ(shown(selector), "2X 4X [8X]");
    for (const char* stored : {"0", "4", "all"}) {
        set(object("global-data.oversampling-level"), "oversampling-level", stored);
        EXPECT_EQ(shown(selector), "[2X] 4X 8X") << stored;
    }
    set(object("global-data.oversampling-level"), "oversampling-level", "1");
}

TEST_F(CSelectorTest, AScaleIsStoredAsItsNumber) {
    CSelector& selector = add("ui:selector-scale", {{"width", "126"}, {"button-width", "balanced"}});
    EXPECT_EQ(shown(selector), "80% [100%] 125%") << "the titles have room";
    click(selector.button(2));
    EXPECT_EQ(setting("local-data.ui-scale", "scale"), "1.25");
    EXPECT_EQ(shown(selector), "80% 100% [125%]");
    set(object("local-data.ui-scale"), "scale", "large");
    EXPECT_EQ(shown(selector), "80% [100%] 125%") << "no number is 1.0";
    set(object("local-data.ui-scale"), "scale", "1.5");
    EXPECT_EQ(shown(selector), "80% 100% 125%");
    set(selector, "scale", "0.8;1.0;1.5");
    set(object("local-data.ui-scale"), "scale", "1.50");
    EXPECT_EQ(shown(selector), "80% 100% [125%]");
    set(object("local-data.ui-scale"), "scale", "1.0");
}

TEST_F(CSelectorTest, EachPaletteHasAnIconInItsOwnColours) {
    CSelector& selector = add("ui:selector-palette", {{"button-width", "22"}});
    EXPECT_EQ(shown(selector), "Blue [Default] Green Military Red");
    const auto& red = selector.button(4);
    EXPECT_EQ(red.findChild("inner")->getAttrString("color").toUtf8(), "PalIconRedInner");
    EXPECT_EQ(red.findChild("outer")->getAttrString("color").toUtf8(), "PalIconRedOuter");
    EXPECT_EQ(red.hint().toUtf8(), "[B]Red[/B]");
    click(red);
    EXPECT_EQ(setting("local-data.ui-color-scheme", "palette-name"), "Red");
    EXPECT_EQ(shown(selector), "Blue Default Green Military [Red]");
    EXPECT_TRUE(dynamic_cast<CView&>(*red.findChild("ring")).isShown());
    EXPECT_FALSE(dynamic_cast<CView&>(*selector.button(0).findChild("ring")).isShown());
    set(object("local-data.ui-color-scheme"), "palette-name", "Sepia");
    EXPECT_EQ(shown(selector), "Blue [Default] Green Military Red") << "no palette has that name";
    set(object("local-data.ui-color-scheme"), "palette-name", "Default");
}

TEST_F(CSelectorTest, UnknownSourcesFail) {
    EXPECT_EQ(tryLoad("w", {{"ui:selector-group", "x", {{"group-selector", "ui.no"}}}}),
              "Unable to locate group selector: ui.no");
    EXPECT_EQ(tryLoad("w", {{"ui:selector-scale", "x", {{"shared-attribute", "ui.no"}}}}),
              "Invalid selector shared attribute 'ui.no'.");
}

TEST_F(CSelectorTest, RebuildingKeepsTheButtonsThatStay) {
    CSelector& selector = add("ui:selector-scale", {{"separator-char", "|"}, {"button-title-list", "a|b|c"}});
    const CButton* first = &selector.button(0);
    set(selector, "button-title-list", "x|y");
    EXPECT_EQ(shown(selector), "x [y]");
    EXPECT_EQ(&selector.button(0), first);
    set(selector, "button-title-list", "x|y|z|u");
    CAttributeMap none;
    EXPECT_EQ(consumed(deliverEvent(selector, "rebuild-buttons", none)), "");
    EXPECT_EQ(shown(selector), "x [y] z u");
    delete &selector.button(2);
    EXPECT_EQ(shown(selector), "x [y] u");
}

TEST_F(CSelectorTest, AHandlerMayDestroyTheSelector) {
    CSelector& selector = groups();
    listen(object("sel"), {"group-change"});
    CHeardEvents::onEvent = [&](const std::string&) { delete &selector; };
    click(selector.button(2));
    EXPECT_FALSE(object("w").findChild("s"));
}

TEST_F(CSelectorTest, KeysThatChangeNothingAllocateNothing) {
    CSelector& selector = groups({{"button-tag", "ui:button-groupsel"}});
    takeKeys();
    tap(kKeyTab);
    EXPECT_EQ(allocations([&] {
                  tap(kKeyHome);
                  pointAt(selector.button(3));
                  turn();
              }),
              0u);
}

}  // namespace
}  // namespace tarv
