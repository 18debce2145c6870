#include "UI/Controls/Buttons/CReadOut.h"

#include "Core/CGlobalSettings.h"
#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Text/CEditBox.h"

namespace tarv {
namespace {

constexpr const char* kGain = "modOutGain.gain";
constexpr const char* kName = "instance-name";
constexpr const char* kFreqs = "modBrindleXEQ.xeq-freqs";

class CReadOutTest : public CControlEditor {
protected:
    CReadOutTest() {
        openWindow({}, {{"is-inline-vertical", "true"}, {"hint", "Of the window."}});
        // The keyboard on the screen is another test's matter.
        set(object("global-data.show-virtual-keyboard"), "show-virtual-keyboard", "false");
        addBridge("test-gain", kGain);
        addBridge("test-name", kName);
        addBridge("test-freqs", kFreqs);
    }
    ~CReadOutTest() override { set(object("global-data.show-virtual-keyboard"), "show-virtual-keyboard", "true"); }
    CReadOut& add(CTexts attributes, const std::string& name = "r", std::vector<CTestNode> children = {}) {
        attributes.insert(attributes.end(),
                          {{"width", "90"}, {"height", "20"}, {"is-read-only", "false"}, {"is-focusable", "true"}});
        load("w", {{"ui:readout", name, std::move(attributes), std::move(children)}});
        turn();
        return at<CReadOut>(name);
    }
    CReadOut& gain(CTexts more = {}) {
        more.emplace_back("bridge", "ui.test-gain");
        return add(more);
    }
    static std::string shown(const CReadOut& readout) { return readout.getAttrString("title").toUtf8(); }
    /// A press, what is typed, and Enter.
    void type(CReadOut& readout, const std::u16string& text, int32_t end = kKeyEnter) {
        click(readout);
        ASSERT_TRUE(box());
        tap(kKeyDelete);
        system_.input().type(text);
        tap(end);
        turn(0.1);
    }
    CEditBox* box() { return editor_->findObjectOf<CEditBox>("ui.w.temp-editbox"); }
    double decibels() { return bridge("test-gain").value(0, 0); }
    void wheel(CReadOut& readout, double notches) {
        pointAt(readout);
        EXPECT_TRUE(system_.input().wheel(notches));
        turn();
    }
};

TEST_F(CReadOutTest, ShowsTheValueAndFollowsIt) {
    CReadOut& readout = gain();
    EXPECT_EQ(shown(readout), "0.0");
    const double value = -3.5;
    EXPECT_EQ(consumed(bridge("test-gain").setValues(0, 0, &value, 1)), "");
    turn();
    EXPECT_EQ(shown(readout), "-3.5");
}

TEST_F(CReadOutTest, ADeclaredParamGivesTheValueToo) {
    CReadOut& readout = add({}, "r", {{"ui:ui-param", "ui-param", {{"bridge", "ui.test-freqs"}, {"element", "2"}}}});
    EXPECT_EQ(shown(readout), "350");
    type(readout, u"1k");
    EXPECT_NEAR(engineValue(kFreqs, 0, 2), 1000.0, 1e-9);
    EXPECT_EQ(shown(readout), "1.00k");
}

TEST_F(CReadOutTest, TypedNumbersAreReadAsAHostsAre) {
    CReadOut& readout = gain();
    const std::pair<const char16_t*, double> cases[] = {{u"+3", 3.0},
                                                        {u"-0,5 dB", -0.5},
                                                        {u" 2.25", 2.25},
                                                        {u"4db", 4.0},
                                                        {u"-1.5", -1.5},
                                                        {u"99", 12.0},
                                                        {u"-99", -12.0},
                                                        {u"\u2212"
                                                         u"6",
                                                         -6.0}};
    for (const auto& [text, expected] : cases) {
        type(readout, text);
        EXPECT_NEAR(decibels(), expected, 1e-9) << CString(text).toUtf8();
        EXPECT_FALSE(box());
    }
    CReadOut& freq = add({{"bridge", "ui.test-freqs"}}, "f");
    type(freq, u"1 kHz");
    EXPECT_NEAR(engineValue(kFreqs), 1000.0, 1e-9);
    type(freq, u"2K");
    EXPECT_NEAR(engineValue(kFreqs), 2000.0, 1e-9);
}

TEST_F(CReadOutTest, LettersBesideTheUnitDoNotEnter) {
    CReadOut& readout = gain();
    click(readout);
    ASSERT_TRUE(box());
    tap(kKeyDelete);
    system_.input().type(u"3xyz DB");
    EXPECT_EQ(box()->edit().text().toUtf8(), "3 DB");
    tap(kKeyEscape);
    EXPECT_EQ(decibels(), 0.0);
}

TEST_F(CReadOutTest, OwnCharactersGainSignBlankAndUnit) {
    CReadOut& readout = gain({{"accept-chars", "0123456789"}});
    EXPECT_EQ(readout.editRules().acceptChars.toUtf8(), "0123456789+ dDBb");
    EXPECT_EQ(add({{"bridge", "ui.test-name"}}, "n").editRules().acceptChars.toUtf8(), "") << "a text takes all";
}

TEST_F(CReadOutTest, WhatIsNoNumberIsRefused) {
    CReadOut& readout = gain();
    click(readout);
    tap(kKeyDelete);
    system_.input().type(u"1-2");
    tap(kKeyEnter);
    ASSERT_TRUE(box());
    EXPECT_TRUE(box()->isStateSet("error"));
    EXPECT_EQ(decibels(), 0.0);
    tap(kKeyEscape);
    EXPECT_EQ(history(), "");
}

TEST_F(CReadOutTest, AnEmptiedFieldTakesTheDefaultOrKeepsItsValue) {
    CReadOut& readout = gain();
    type(readout, u"4");
    type(readout, u"  ");
    EXPECT_NEAR(decibels(), 4.0, 1e-9);
    EXPECT_EQ(shown(readout), "4.0");
    set(readout, "default-value", "-2");
    type(readout, u"");
    EXPECT_NEAR(decibels(), -2.0, 1e-9);
}

TEST_F(CReadOutTest, AClampedValueShowsAgain) {
    CReadOut& readout = gain();
    type(readout, u"12");
    type(readout, u"40");
    EXPECT_EQ(shown(readout), "12.0");
}

TEST_F(CReadOutTest, EachTypedValueIsAStepOfTheHistory) {
    CReadOut& readout = gain();
    type(readout, u"1");
    type(readout, u"2");
    EXPECT_EQ(history(), "Output gain (1) change, Output gain (1) change");
    type(readout, u"2.0");
    EXPECT_EQ(history(), "Output gain (1) change, Output gain (1) change") << "what it began with";
}

TEST_F(CReadOutTest, ATextIsTakenAsItWasTyped) {
    CReadOut& readout = add({{"bridge", "ui.test-name"}, {"default-value", "Unnamed instance"}});
    EXPECT_EQ(shown(readout), "Unnamed instance");
    type(readout, u" [B]{x} Drums; 1 ");
    EXPECT_EQ(bridge("test-name").valueText(0, 0, CAudioTextMode::Full).toUtf8(), "[B]{x} Drums; 1");
    EXPECT_EQ(shown(readout), "[B]{x} Drums; 1");
    EXPECT_EQ(readout.source().plainText(0, readout.source().count()).toUtf8(), "[B]{x} Drums; 1") << "no marks";
    click(readout);
    EXPECT_EQ(box()->edit().text().toUtf8(), "[B]{x} Drums; 1");
    tap(kKeyDelete);
    tap(kKeyEnter);
    EXPECT_EQ(bridge("test-name").valueText(0, 0, CAudioTextMode::Full).toUtf8(), "Unnamed instance");
}

TEST_F(CReadOutTest, TabGoesOnToTheNextOfItsGroup) {
    CReadOut& first = add({{"bridge", "ui.test-freqs"}, {"tab-group", "g"}}, "a");
    add({{"bridge", "ui.test-freqs"}, {"tab-group", "g"}, {"element", "1"}}, "b");
    type(first, u"100", kKeyTab);
    EXPECT_NEAR(engineValue(kFreqs), 100.0, 1e-9);
    ASSERT_TRUE(box());
    EXPECT_EQ(box()->edit().text().toUtf8(), "150");
    tap(kKeyEscape);
}

TEST_F(CReadOutTest, FormatsSayHowItShows) {
    CReadOut& readout = gain({{"format", "%.2f"}});
    EXPECT_EQ(shown(readout), "0.00");
    set(readout, "format", "");
    set(readout, "format-id", "knob-circle");
    EXPECT_EQ(shown(readout), "0");
    set(readout, "format-id", "automation-string");
    EXPECT_EQ(shown(readout), "0.0 dB");
    EXPECT_EQ(readout.editText(-1).toUtf8(), "0.0") << "the unit is not typed";
    set(readout, "format-id", "normal");
    EXPECT_EQ(shown(readout), "0.0");
}

TEST_F(CReadOutTest, ABriefFrequencyHasNoTenthsOfAWholeNumberOfThousands) {
    CReadOut& readout = add({{"bridge", "ui.test-freqs"}, {"format-id", "brief"}});
    for (const auto& [hertz, brief] :
         {std::pair<double, const char*>{1000.0, "1k"}, {1230.0, "1.2k"}, {12000.0, "12k"}, {64.0, "64"}}) {
        EXPECT_EQ(consumed(bridge("test-freqs").setValues(0, 0, &hertz, 1)), "");
        turn();
        EXPECT_EQ(shown(readout), brief);
    }
}

TEST_F(CReadOutTest, ASettingIsShownAndTyped) {
    CReadOut& readout = add({{"shared-attribute", "ui.global-data.drag-precision"}, {"format", "%.2f"}});
    EXPECT_EQ(shown(readout), "0.70");
    type(readout, u"0,55");
    EXPECT_NEAR(object("global-data.drag-precision").getAttrReal("drag-precision"), 0.55, 1e-9);
    EXPECT_EQ(shown(readout), "0.55");
    set(object("global-data.drag-precision"), "drag-precision", "0.7");
}

TEST_F(CReadOutTest, ANotchOfTheWheelIsHalfADecibelAndFinerWithShift) {
    CReadOut& readout = gain();
    ASSERT_EQ(globalSettings().mouseWheelPrecision, 0.5);
    ASSERT_EQ(globalSettings().shiftKeyPrecision, 0.5);
    wheel(readout, 1.0);
    EXPECT_NEAR(decibels(), 0.5, 1e-9);
    wheel(readout, -0.5);
    EXPECT_NEAR(decibels(), 0.25, 1e-9) << "fractions count";
    system_.input().holdKeys(true, false, false);
    wheel(readout, 1.0);
    EXPECT_NEAR(decibels(), 0.5, 1e-9);
    EXPECT_EQ(history(), "Output gain (1) change") << "notches that follow each other are one step";
    system_.input().holdKeys(false, false, false);
    turn(0.6);
    wheel(readout, 100.0);
    EXPECT_NEAR(decibels(), 12.0, 1e-9);
    EXPECT_EQ(history(), "Output gain (1) change, Output gain (1) change");
}

TEST_F(CReadOutTest, ANotchOnAFrequencyIsAPartOfASemitone) {
    CReadOut& readout = add({{"bridge", "ui.test-freqs"}, {"element", "3"}});
    wheel(readout, 2.0);
    EXPECT_NEAR(engineValue(kFreqs, 0, 3), 1000.0 * std::exp2(1.0 / 12.0), 1e-6);
}

TEST_F(CReadOutTest, ANotchOnStatesIsOneState) {
    addBridge("test-quality", "oversampling");
    CReadOut& readout = add({{"bridge", "ui.test-quality"}});
    wheel(readout, 0.5);
    EXPECT_EQ(engineValue("oversampling"), 1.0);
    wheel(readout, 0.5);
    EXPECT_EQ(engineValue("oversampling"), 2.0);
    EXPECT_EQ(shown(readout), "2x");
}

TEST_F(CReadOutTest, TextsAndFieldsThatAreEditedLeaveTheWheelAlone) {
    CReadOut& name = add({{"bridge", "ui.test-name"}}, "n");
    pointAt(name);
    EXPECT_FALSE(system_.input().wheel(1.0));
    CReadOut& readout = gain();
    click(readout);
    ASSERT_TRUE(box());
    CAttributeMap params;
    params["delta"] = CAttributeValue::fromReal(1.0);
    EXPECT_EQ(consumed(readout.mouseWheel(params)), "");
    turn();
    EXPECT_EQ(decibels(), 0.0);
}

TEST_F(CReadOutTest, TheHoverFrameShowsWhileThePointerIsThere) {
    CReadOut& readout = gain();
    load("w.r", {{"ui:frame",
                  "hover-frame",
                  {{"placement", "match"},
                   {"placement-match", "^"},
                   {"is-visible", "false"},
                   {"is-decorative", "true"},
                   {"color", "ReadOut"}}}});
    auto& frame = at<CView>("r.hover-frame");
    EXPECT_FALSE(frame.isShown());
    pointAt(readout);
    turn();
    EXPECT_TRUE(frame.isShown());
    EXPECT_EQ(frame.wholeRect().width, readout.wholeRect().width);
    pointAt(readout, 200, 0);
    turn();
    EXPECT_FALSE(frame.isShown());
}

TEST_F(CReadOutTest, WithoutItsValueItIsDisabled) {
    CReadOut& readout = gain();
    EXPECT_FALSE(readout.isDisabled());
    delete &object("test-gain");
    EXPECT_TRUE(readout.isDisabled());
    click(readout);
    EXPECT_FALSE(box());
    EXPECT_FALSE(add({{"title", "plain"}}, "p").isDisabled()) << "one without a source is a text";
}

TEST_F(CReadOutTest, ReadOnlyItTakesNothing) {
    CReadOut& readout = gain();
    set(readout, "is-read-only", "true");
    click(readout);
    EXPECT_FALSE(box());
    EXPECT_FALSE(system_.input().wheel(1.0));
}

TEST_F(CReadOutTest, KeysOpenItAndAReaderHearsItsValue) {
    CReadOut& readout = gain({{"hint", "Gain."}});
    takeKeys();
    ASSERT_TRUE(tap(kKeyTab));
    const CViewReading reading = CViewReader::read(readout);
    EXPECT_EQ(reading.role, CViewRole::Edit);
    EXPECT_EQ(reading.name.toUtf8(), "Gain.");
    EXPECT_EQ(reading.value.toUtf8(), "0.0");
    EXPECT_TRUE(tap(kKeyEnter));
    ASSERT_TRUE(box());
    tap(kKeyEscape);
}

TEST_F(CReadOutTest, ItsEventFollowsTheValue) {
    CReadOut& readout = gain();
    listen(readout, {"paragraph-text-changed"});
    type(readout, u"+3 dB");
    EXPECT_EQ(heard(), "r paragraph-text-changed");
    EXPECT_EQ(CHeardEvents::last["text"].asString().toUtf8(), "+3 dB");
    type(readout, u"1-2");
    EXPECT_EQ(heard(), "");
    CHeardEvents::onEvent = [&](const std::string&) { delete &readout; };
    tap(kKeyEscape);
    type(readout, u"5");
    EXPECT_FALSE(object("w").findChild("r"));
}

TEST_F(CReadOutTest, ValuesThatHaveBeenBeforeAllocateNothing) {
    CReadOut& readout = gain();
    auto& param = *readout.valueParam();
    const auto show = [&](const char* text) { EXPECT_EQ(consumed(readout.setAttributePlain("title", text)), ""); };
    EXPECT_EQ(allocations([&] {
                  show("-11.5");
                  turn();
                  show("3.0");
                  turn();
                  EXPECT_EQ(consumed(readout.onParamChanged(param)), "");
                  turn();
              }),
              0u);
}

}  // namespace
}  // namespace tarv
