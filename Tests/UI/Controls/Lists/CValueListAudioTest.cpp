#include "UI/Controls/Lists/CValueListAudio.h"

#include "ValueListTree.h"

namespace tarv {
namespace {

class ValueListAudio : public CValueListTest {
protected:
    ValueListAudio() { addBridges(); }
};

TEST_F(ValueListAudio, APathWithoutItsObjectIsRefused) {
    EXPECT_EQ(failure({{"mode", "audio-groups"}, {"group-selector", "ui.nothing"}}),
              "Unable to locate group selector: ui.nothing");
    EXPECT_EQ(failure({{"mode", "audio-curgroup"}}), "Unable to locate group selector: ");
    EXPECT_EQ(failure({{"routing-label-mode", "some"}}), "Invalid routing label mode specified: some");
    EXPECT_EQ(failure({{"mode", "audio-enum-value"}, {"bridge", "ui.nothing"}}),
              "Invalid parameter bridge object 'ui.nothing'.");
}

TEST_F(ValueListAudio, GroupsHaveTheirNamesAndThoseWithoutAChannelAreDimmed) {
    CValueList& list = this->list({{"mode", "audio-groups"}});
    EXPECT_EQ(titles(list, true), "1=0|(2)=1|(3)=2|(4)=3|(5)=4|(6)=5|(7)=6|(8)=7");
    listen(list, {"values-changed"});
    setTexts("io-params.group-names", {"Front", "", "[B]{x};"});
    EXPECT_EQ(list[0].title, CString("Front"));
    EXPECT_EQ(list[1].title, CString("2")) << "without a name, the number";
    EXPECT_EQ(CViewReader::withoutMarks(list[2].title), CString("[B]{x};"));
    EXPECT_EQ(list.getAttrString("titles").split(';').count(), 8) << "a name has no separator";
    EXPECT_NE(heard(), "");
    setNumbers("in-routing-bridge", 0, {1, 2, 1});
    EXPECT_EQ(text(list[1]), "2") << "channel 3 belongs to it";
    EXPECT_EQ(text(list.itemOf(9.0)), "(10)");
}

TEST_F(ValueListAudio, ThereAreAsManyGroupsAsTheEngineHas) {
    CValueList& list = this->list({{"mode", "audio-groups"}});
    listen(list, {"values-changed"});
    for (const int32_t count : {3, 8}) {
        instance().interfaceBase()->setGroupCount(count);
        system_.pump();
        EXPECT_EQ(list.count(), count);
        EXPECT_EQ(heard(), "list values-changed");
    }
}

TEST_F(ValueListAudio, EachPathAndTheLabelModeAreReadAnew) {
    const auto failure = [](CValueList& list, const char* name, const char* text) {
        const std::string lines = consumed(list.setAttribute(name, CString(text)));
        return lines.substr(0, lines.find_first_of("\r\n"));
    };
    addBridge("count-bridge", "modBrindleXEQ.band-count");
    addBridge("gains-bridge", "modBrindleXEQ.xeq-gains");
    CValueList& numbers = this->list({{"mode", "audio-min-max"}, {"bridge", "ui.count-bridge"}});
    EXPECT_EQ(numbers.count(), 10);
    set(numbers, "bridge", "ui.gains-bridge");
    EXPECT_EQ(numbers.count(), 25) << "-12 to 12";
    EXPECT_EQ(numbers.children().count(), 1);
    EXPECT_EQ(failure(numbers, "bridge", "ui.nothing"), "Invalid parameter bridge object 'ui.nothing'.");
    set(numbers, "bridge", "");
    EXPECT_EQ(numbers.count(), 0);

    load("", {{"ui:param-group-selector", "sel", {{"group-index", "0"}}},
              {"ui:param-group-selector", "other", {{"group-index", "2"}}}});
    setHostChannels(2, 2);
    CValueList& groups = this->list({{"mode", "audio-curgroup"}, {"group-selector", "ui.sel"}});
    set(groups, "group-selector", "ui.other");
    EXPECT_EQ(titles(groups), "3");
    set(object("other"), "group-index", "4");
    EXPECT_EQ(titles(groups), "5") << "the new one is followed";
    EXPECT_EQ(failure(groups, "group-selector", "ui.nothing"), "Unable to locate group selector: ui.nothing");

    setNumbers("in-routing-bridge", 0, {1, 2, 3, 0, 0, 0, 0, 0});
    CValueList& labels = this->list({{"mode", "audio-routing-labels"}, {"value-count", "2"}});
    EXPECT_EQ(titles(labels), "L R|IN3");
    set(labels, "routing-label-mode", "active-groups");
    EXPECT_EQ(titles(labels), "L R");
    EXPECT_EQ(failure(labels, "routing-label-mode", "some"), "Invalid routing label mode specified: some");
}

TEST_F(ValueListAudio, TheGroupOfASelectorIsDimmedAmongTheGroupsAndNoOther) {
    load("", {{"ui:param-group-selector", "sel", {{"group-index", "0"}}}});
    setNumbers("in-routing-bridge", 0, {1, 2, 1});
    const CValueList& list = this->list({{"mode", "audio-groups"}, {"group-selector", "ui.sel"}, {"value-count", "3"}});
    EXPECT_EQ(titles(list), "(1)|2|3");
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(titles(list), "1|(2)|3");
}

TEST_F(ValueListAudio, TheCurrentGroupFollowsItsSelectorAndItsName) {
    load("", {{"ui:param-group-selector", "sel", {{"group-index", "0"}}}});
    CValueList& list = this->list({{"mode", "audio-curgroup"}, {"group-selector", "ui.sel"}});
    EXPECT_EQ(titles(list, true), "1=0");
    listen(list, {"values-changed"});
    set(object("sel"), "group-index", "2");
    EXPECT_EQ(titles(list, true), "3=2");
    setTexts("io-params.group-names", {"a", "b", "c"});
    EXPECT_EQ(titles(list, true), "c=2");
    EXPECT_EQ(heard(), "list values-changed, list values-changed");
}

TEST_F(ValueListAudio, AnInternalChannelShowsItsNumberAndItsInput) {
    const CValueList& list = this->list({{"mode", "audio-channels"}, {"max-capacity", "3"}});
    EXPECT_EQ(titles(list, true), "1 L=0|2 R=1|(3)=2");
    setNumbers("in-routing-bridge", 0, {2, 0, 9});
    EXPECT_EQ(titles(list, true), "1 R=0|(2)=1|3 IN9=2");
    instance().interfaceBase()->setInternalChannelCount(2);
    system_.pump();
    EXPECT_EQ(titles(list), "1 R|(2)");
}

TEST_F(ValueListAudio, TheHostsInputsAreThoseThatExist) {
    setHostChannels(2, 2);
    CValueList& list = this->list({{"mode", "audio-ins"}, {"add-empty-value", "true"}});
    EXPECT_EQ(titles(list, true), "---=0|L=1|R=2");
    EXPECT_EQ(text(list.itemOf(0.0)), "---");
    EXPECT_EQ(text(list.itemOf(6.0)), "(IN6)") << "stored, but not there at present";
    listen(list, {"values-changed"});
    setHostChannels(6, 2);
    EXPECT_EQ(titles(list), "---|L|R|IN3|IN4|IN5|IN6");
    EXPECT_EQ(heard(), "list values-changed");
    EXPECT_EQ(text(list.itemOf(6.0)), "IN6");
    setTexts("io-params.in-channel-names", {"Left", ""});
    EXPECT_EQ(titles(list), "---|Left|IN2|IN3|IN4|IN5|IN6");
    EXPECT_EQ(text(this->list({{"mode", "audio-ins"}}).itemOf(0.0)), "---");
}

TEST_F(ValueListAudio, TheHostsOutputsHaveNumbers) {
    setHostChannels(2, 3);
    const CValueList& list = this->list({{"mode", "audio-outs"}, {"add-empty-value", "true"}});
    EXPECT_EQ(titles(list, true), "---=0|OUT1=1|OUT2=2|OUT3=3");
    EXPECT_EQ(text(list.itemOf(8.0)), "(OUT8)");
    setHostChannels(2, 1);
    EXPECT_EQ(titles(list), "---|OUT1");
}

TEST_F(ValueListAudio, TheHostsOutputsHaveTheHostsLabels) {
    setHostChannels(2, 3);
    const CValueList& list = this->list({{"mode", "audio-outs"}});
    CTextList labels;
    for (const char* label : {"Left [B]", "2", ""}) {
        labels.append(label);
    }
    instance().interfaceBase()->setOutputLabels(labels);
    system_.pump();
    EXPECT_EQ(titles(list), "Left [U+5B]B]|OUT2|OUT3") << "a number is no name";
    EXPECT_EQ(titles(this->list({{"mode", "audio-outs"}})), titles(list));
}

TEST_F(ValueListAudio, ARoutingLabelFollowsEverythingThatItNames) {
    load("", {{"ui:param-group-selector", "sel", {{"group-index", "0"}}}});
    setHostChannels(2, 2);
    const CValueList& list = this->list({{"mode", "audio-routing-labels"}, {"group-selector", "ui.sel"}});
    EXPECT_EQ(titles(list, true), "L R=0");
    setNumbers("ms-pairs-bridge", 0, {1, 1});
    EXPECT_EQ(titles(list), "M[SUP]LR[/SUP] S[SUP]LR[/SUP]");
    setNumbers("grouping-bridge", 0, {0, 1});
    EXPECT_EQ(titles(list), "M[SUP]LR[/SUP]");
    set(object("sel"), "group-index", "1");
    EXPECT_EQ(titles(list), "S[SUP]LR[/SUP]");
    setTexts("io-params.in-channel-names", {"a[", "b"});
    EXPECT_EQ(titles(list), "S[SUP]a[U+5B]b[/SUP]");
    set(object("sel"), "group-index", "5");
    EXPECT_EQ(titles(list), "(no channels)");
}

TEST_F(ValueListAudio, LabelModesChooseChannelsAndGroups) {
    setHostChannels(2, 2);
    setNumbers("in-routing-bridge", 0, {1, 2, 3, 0, 0, 0, 0, 0});
    const auto labels = [this](const char* mode) {
        return titles(
            this->list({{"mode", "audio-routing-labels"}, {"routing-label-mode", mode}, {"value-count", "3"}}), true);
    };
    EXPECT_EQ(labels("full"), "L R=0|IN3=1|(no channels)=2");
    EXPECT_EQ(labels("active-channels"), "L R=0|(no channels)=1|(no channels)=2");
    EXPECT_EQ(labels("active-groups"), "L R=0");
}

TEST_F(ValueListAudio, AMutedChannelIsNotActive) {
    // Any parameter of a number for each channel serves.
    const CValueList& list =
        this->list({{"mode", "audio-routing-labels"}, {"routing-label-mode", "active-channels"}, {"value-count", "1"}},
                   {{"ui:ui-param", "ui-param-channel-mute", {{"bridge", "ui.ms-pairs-bridge"}}}});
    setHostChannels(2, 2);
    EXPECT_EQ(titles(list), "L R");
    setNumbers("ms-pairs-bridge", 0, {1, 0});
    EXPECT_EQ(titles(list), "R");
}

TEST_F(ValueListAudio, StatesHaveTheirTitles) {
    addBridge("quality-bridge", "oversampling");
    const CValueList& list = this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.quality-bridge"}});
    EXPECT_EQ(titles(list, true), "Auto=0|1x=1|2x=2|4x=3|8x=4");
    EXPECT_EQ(titles(this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.ms-pairs-bridge"}}), true),
              "---=0|MS1=1|MS2=2|MS3=3|MS4=4");
    // A state without a name is hidden on request.
    EXPECT_EQ(this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.grouping-bridge"}}).count(), 8);
    EXPECT_EQ(titles(this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.grouping-bridge"}})).substr(0, 15),
              "Reserve|Reserve");
    EXPECT_EQ(this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.grouping-bridge"}, {"is-hide-reserve", "true"}})
                  .count(),
              0);
}

TEST_F(ValueListAudio, TheSelectedItemIsThatOfTheValue) {
    addBridge("quality-bridge", "oversampling");
    const CValueList& list = this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.quality-bridge"}},
                                        {{"ui:ui-param", "ui-param-value", {{"bridge", "ui.quality-bridge"}}}});
    EXPECT_EQ(list.getAttrInt("selected-item"), static_cast<int32_t>(engineValue("oversampling")));
    setNumbers("quality-bridge", 0, {3});
    EXPECT_EQ(list.getAttrInt("selected-item"), 3);
    EXPECT_EQ(engineValue("oversampling"), 3.0);
}

TEST_F(ValueListAudio, ElementsAreATextEach) {
    addBridge("freqs-bridge", "modBrindleXEQ.xeq-freqs");
    addBridge("gains-bridge", "modBrindleXEQ.xeq-gains");
    EXPECT_EQ(titles(this->list({{"mode", "audio-param-values"}, {"bridge", "ui.freqs-bridge"}}), true),
              "64.0=64|150=150|350=350|1.00k=1000|2.00k=2000|6.00k=6000|12.0k=12000");
    load("", {{"ui:param-group-selector", "sel", {{"group-index", "1"}}}});
    const CValueList& gains =
        this->list({{"mode", "audio-param-values"}, {"bridge", "ui.gains-bridge"}, {"group-selector", "ui.sel"}});
    EXPECT_EQ(titles(gains), "0.0|0.0|0.0|0.0|0.0|0.0|0.0") << "what nobody stored is what the engine uses";
    setNumbers("gains-bridge", 1, {3.0, -1.5});
    EXPECT_EQ(gains.itemOf(-1.5).title, CString("-1.5"));
    set(object("sel"), "group-index", "0");
    EXPECT_EQ(titles(gains), "0.0|0.0|0.0|0.0|0.0|0.0|0.0");
    EXPECT_EQ(
        titles(this->list(
                   {{"mode", "audio-param-values"}, {"bridge", "ui.in-channel-names-bridge"}, {"value-count", "3"}}),
               true),
        "L=0|R=1|IN3=2");
    EXPECT_EQ(titles(this->list({{"mode", "audio-param-values"},
                                 {"bridge", "ui.freqs-bridge"},
                                 {"format", "%.1f Hz"},
                                 {"value-count", "2"}})),
              "64.0 Hz|150.0 Hz");
}

TEST_F(ValueListAudio, NumbersGoOverTheRange) {
    addBridge("count-bridge", "modBrindleXEQ.band-count");
    addBridge("gains-bridge", "modBrindleXEQ.xeq-gains");
    EXPECT_EQ(titles(this->list({{"mode", "audio-min-max"}, {"bridge", "ui.count-bridge"}}), true),
              "1=1|2=2|3=3|4=4|5=5|6=6|7=7|8=8|9=9|10=10");
    EXPECT_EQ(titles(this->list({{"mode", "audio-min-max"}, {"bridge", "ui.count-bridge"}, {"value-count", "3"}})),
              "1|2|3");
    EXPECT_EQ(
        titles(this->list(
            {{"mode", "audio-min-max"}, {"bridge", "ui.gains-bridge"}, {"value-count", "5"}, {"format", "%+.1f"}})),
        "-12.0|-6.0|0.0|+6.0|+12.0");
    EXPECT_EQ(titles(this->list({{"mode", "audio-min-max"},
                                 {"min-value", "0"},
                                 {"max-value", "1"},
                                 {"value-count", "3"},
                                 {"format", "%.1f"}})),
              "0.0|0.5|1.0");
    EXPECT_EQ(titles(this->list({{"mode", "audio-min-max"}, {"min-value", "2"}, {"max-value", "4"}})), "2|3|4");
    EXPECT_EQ(titles(this->list({{"mode", "audio-min-max"}, {"bridge", "ui.count-bridge"}, {"min-value", "9"}})),
              "9|10");
    EXPECT_EQ(titles(this->list({{"mode", "audio-min-max"}})), "") << "without a range";
}

TEST_F(ValueListAudio, ACountSpreadsOverTheCurveFromOrToAGivenEnd) {
    addBridge("freqs-bridge", "modBrindleXEQ.xeq-freqs");
    const auto list = [this](const CTexts& ends, const char* count) -> CValueList& {
        CTexts all = {{"mode", "audio-min-max"}, {"bridge", "ui.freqs-bridge"}, {"value-count", count}};
        all.insert(all.end(), ends.begin(), ends.end());
        return this->list(all);
    };
    // The curve of a frequency is logarithmic: the middle is the geometric mean of the ends.
    const CValueList& from = list({{"min-value", "210"}}, "3");
    ASSERT_EQ(from.count(), 3);
    EXPECT_EQ(from[0].value, 210.0);
    EXPECT_NEAR(from[1].value, 2100.0, 1e-6);
    EXPECT_EQ(from[2].value, 21000.0);
    const CValueList& to = list({{"max-value", "2000"}}, "5");
    ASSERT_EQ(to.count(), 5);
    EXPECT_EQ(to[0].value, 20.0);
    EXPECT_NEAR(to[2].value, 200.0, 1e-6);
    EXPECT_EQ(to[4].value, 2000.0);
    EXPECT_EQ(titles(list({{"max-value", "2000"}}, "1")), "20");
}

TEST_F(ValueListAudio, AValueOfTheParameterRebuildsOnlyAListOfValues) {
    addBridge("gains-bridge", "modBrindleXEQ.xeq-gains");
    for (const auto& [mode, isRebuilt] :
         {std::pair{"audio-min-max", false}, {"audio-enum-value", false}, {"audio-param-values", true}}) {
        CValueList& list = this->list({{"mode", mode}, {"bridge", "ui.gains-bridge"}});
        CValueList::CItems mark;
        mark.append({"mark", 0.0});
        EXPECT_EQ(consumed(list.setItems(mark)), "");
        setNumbers("gains-bridge", 0, {isRebuilt ? 3.0 : 6.0});
        EXPECT_EQ(titles(list) != "mark", isRebuilt) << mode;
    }
}

TEST_F(ValueListAudio, NumbersHaveTheFormOfTheirId) {
    addBridge("freqs-bridge", "modBrindleXEQ.xeq-freqs");
    const auto form = [this](const char* id) {
        return titles(this->list(
            {{"mode", "audio-min-max"}, {"bridge", "ui.freqs-bridge"}, {"value-count", "2"}, {"format-id", id}}));
    };
    EXPECT_EQ(form("normal"), "20.0|21.0k");
    EXPECT_EQ(form("automation-string"), "20.0 Hz|21.0k Hz");
    EXPECT_EQ(form("knob-circle"), "20|21k");
    EXPECT_EQ(form("none"), "20|21000");
}

TEST_F(ValueListAudio, ACountOfAConverterFollowsTheBandCount) {
    addBridge("freqs-bridge", "modBrindleXEQ.xeq-freqs");
    addBridge("count-bridge", "modBrindleXEQ.band-count");
    CValueList& list = this->list({{"mode", "audio-min-max"}, {"bridge", "ui.freqs-bridge"}},
                                  {{"ui:ui-param-converter",
                                    "converter",
                                    {{"target", "^"}, {"attr", "value-count"}, {"is-integer", "true"}},
                                    {{"ui:ui-param", "ui-param", {{"bridge", "ui.count-bridge"}}}}}});
    listen(list, {"values-changed"});
    EXPECT_EQ(list.count(), 7);
    for (const int32_t count : {10, 1, 7}) {
        setNumbers("count-bridge", 0, {static_cast<double>(count)});
        EXPECT_EQ(list.count(), count);
        EXPECT_EQ(heard(), "list values-changed");
    }
}

TEST_F(ValueListAudio, TheItemsComeWithTheEnginesValues) {
    load("", {{"ui:param-bridge",
               "late-bridge",
               {{"interface-client", "ui.interface-client"}, {"param", "plugin.modMain.oversampling"}}}});
    CValueList& list = this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.late-bridge"}});
    EXPECT_EQ(list.count(), 0);
    listen(list, {"values-changed"});
    system_.pump();
    EXPECT_EQ(list.count(), 5);
    EXPECT_EQ(heard(), "list values-changed");
}

TEST_F(ValueListAudio, WhatAListNeedsIsNotMadeForOthers) {
    CValueList& states = this->list({{"mode", "audio-enum-value"}, {"bridge", "ui.ms-pairs-bridge"}});
    EXPECT_EQ(states.children().count(), 1);
    setHostChannels(2, 2);
    CValueList& ins = this->list({{"mode", "audio-ins"}},
                                 {{"ui:ui-param", "ui-param-in-channel-names", {{"bridge", "ui.group-names-bridge"}}}});
    EXPECT_EQ(ins[0].title, CString("1")) << "what is declared counts";
}

struct ValueListWithoutClient : CValueListTest {};

TEST_F(ValueListWithoutClient, AModeOfTheHostNeedsIt) {
    CObject* root = nullptr;
    ASSERT_EQ(consumed(CApplication::initRootObject(root)), "");
    const std::unique_ptr<CObject> tree(root);
    const auto failure = [&tree](const char* mode) {
        const std::string text = consumed(
            loadTree(*tree, {{"ui:ui-event-bridge", "ui", {}, {{"ui:value-list", "list", {{"mode", mode}}}}}}));
        return text.substr(0, text.find_first_of("\r\n"));
    };
    EXPECT_EQ(failure("audio-groups"), "Unable to locate interface client.");
    EXPECT_EQ(failure("audio-outs"), "Unable to locate interface client.");
    EXPECT_EQ(failure("audio-min-max"), "");
    EXPECT_EQ(failure(""), "");
}

}  // namespace
}  // namespace tarv
