#include "UI/Binding/CUIParamController.h"

#include <cmath>

#include "Core/CGlobalSettings.h"
#include "Core/CTimer.h"
#include "Tests/UI/Binding/BindingTree.h"
#include "UI/Views/CViewBaseState.h"

namespace tarv {
namespace {

class UIParamController : public CBindingTest {
protected:
    UIParamController()
        : CBindingTest(
              {{"core:global-settings", &createObject<CGlobalSettings>, &CGlobalSettings::initClass},
               {"core:timer", &createObject<CTimer>, &CTimer::initClass},
               {"ui:ui-param-controller", &createObject<CUIParamController>, &CUIParamController::initClass}}) {}
    ~UIParamController() override {
        globalSettings().dragPrecision = 0.7;
        globalSettings().shiftKeyPrecision = 0.5;
    }

    /// A control of three gains with a controller of these further attributes before it, as in a head above bars.
    void openController(CTexts attributes = {}) {
        CTexts all = {{"ui-param", "^c.y"}, {"ui-param-count", "^c.count"}};
        all.insert(all.end(), attributes.begin(), attributes.end());
        open({{"core:global-settings", "global-settings", {{"drag-precision", "1.0"}, {"shift-key-precision", "0.25"}}},
              {"ui:ui-param-controller", "k", all},
              {"test:control",
               "c",
               {},
               {uiParam("y", {{"bridge", "ui.gains-bridge"}, {"group-selector", "ui.sel"}}),
                uiParam("count", {{"bridge", "ui.mode-bridge"}})}}});
        sendWhole("mode", {{3.0}});
        sendWhole("gains", {{1.0}, kStart});
    }
    void event(const char* name, double scale = 0.0, bool isShift = false) {
        CAttributeMap params;
        params["scale"] = CAttributeValue::fromReal(scale);
        params["is-shift"] = CAttributeValue::fromBool(isShift);
        EXPECT_EQ(consumed(deliverEvent(at<CObject>("k"), name, params)), "") << name;
    }
    void tick() { system_.advance(0.025); }
    /// Decibels of the last message.
    std::vector<double> written() {
        std::vector<double> values;
        for (const double number : engine_->sets.back().numbers) {
            values.push_back(20.0 * std::log10(number));
        }
        return values;
    }
    static void expectNear(const std::vector<double>& values, const std::vector<double>& expected) {
        ASSERT_EQ(values.size(), expected.size());
        for (size_t i = 0; i < values.size(); ++i) {
            EXPECT_NEAR(values[i], expected[i], 1e-9) << i;
        }
    }
    bool isScaling() { return at<CUIParamController>("k").isScaling(); }

    /// 2, -1 and 5 dB; none of them is exact.
    static inline const std::vector<double> kStart = {std::pow(10.0, 0.1), std::pow(10.0, -0.05), std::pow(10.0, 0.25),
                                                      std::pow(10.0, 0.3)};
};

TEST_F(UIParamController, FailsWithoutTheGlobalSettings) {
    EXPECT_EQ(tryOpen({{"ui:ui-param-controller", "k"}}), "Unable to locate global settings object.");
}

TEST_F(UIParamController, ScalesAllValuesAboutTheirMean) {
    openController();
    event("start-scale");
    event("advance-scale", 50.0);
    tick();
    // The mean of 2, -1 and 5 is 2; 50 pixels at a precision of 1 double the distance.
    expectNear(written(), {2.0, -4.0, 8.0});
    EXPECT_EQ(engine_->sets.back().group, 1);
    EXPECT_EQ(engine_->sets.back().first, 0);
    event("advance-scale", -50.0);
    tick();
    expectNear(written(), {2.0, 0.5, 3.5});
    event("finish-scale");
}

TEST_F(UIParamController, ScalesAboutZeroWhereItIsTheAxis) {
    openController({{"is-axis-zero", "true"}});
    event("start-scale");
    event("advance-scale", 50.0);
    tick();
    expectNear(written(), {4.0, -2.0, 10.0});
}

TEST_F(UIParamController, DragPrecisionIsItsSpeed) {
    openController({{"is-axis-zero", "true"}});
    set(at<CObject>("global-settings"), "drag-precision", "0.5");
    event("start-scale");
    event("advance-scale", 100.0);
    tick();
    expectNear(written(), {4.0, -2.0, 10.0});
}

TEST_F(UIParamController, ADragBackToItsStartGivesTheValuesBackToTheBit) {
    openController();
    const std::vector<double> first(kStart.begin(), kStart.begin() + 3);
    const std::vector<std::pair<double, bool>> drags[] = {
        {{13.0, false}, {-333.3, false}, {0.0, false}},
        {{13.0, true}, {-333.3, true}, {0.0, true}},
        {{13.7, false}, {13.7, true}, {500.0, true}, {13.7, true}, {13.7, false}, {0.0, false}}};
    for (const auto& drag : drags) {
        event("start-scale");
        for (const auto& [pixels, isShift] : drag) {
            event("advance-scale", pixels, isShift);
            tick();
            EXPECT_EQ(engine_->sets.back().numbers == first, pixels == 0.0) << pixels;
        }
        event("finish-scale");
    }
}

TEST_F(UIParamController, ADragThatIsTakenBackWritesNothingMore) {
    openController();
    event("start-scale");
    event("advance-scale", 50.0);
    tick();
    const size_t count = engine_->sets.size();
    event("advance-scale", 70.0);
    event("take-back-scale");
    EXPECT_FALSE(isScaling());
    event("advance-scale", 90.0);
    event("finish-scale");
    system_.advance(1.0);
    EXPECT_EQ(engine_->sets.size(), count) << "the engine has the values of the start";
    event("take-back-scale");
    EXPECT_EQ(engine_->sets.size(), count);
}

TEST_F(UIParamController, ValuesAreClampedAndComeBackFromBeyondTheRange) {
    openController();
    event("start-scale");
    event("advance-scale", 500.0);
    tick();
    expectNear(written(), {2.0, -12.0, 12.0});
    event("advance-scale", 1e300);
    tick();
    for (const double number : engine_->sets.back().numbers) {
        EXPECT_TRUE(std::isfinite(number));
    }
    event("advance-scale", 50.0);
    tick();
    expectNear(written(), {2.0, -4.0, 8.0});
}

TEST_F(UIParamController, TheShiftKeyIsFinerAndPressingItMidwayMakesNoJump) {
    openController({{"is-axis-zero", "true"}});
    event("start-scale");
    event("advance-scale", 50.0);
    event("advance-scale", 50.0, true);
    tick();
    expectNear(written(), {4.0, -2.0, 10.0});
    // Half an octave further takes 100 pixels at a quarter of the speed.
    event("advance-scale", 150.0, true);
    tick();
    expectNear(written(), {4.0 * std::sqrt(2.0), -2.0 * std::sqrt(2.0), 12.0});
    event("advance-scale", 150.0, false);
    event("advance-scale", 125.0, false);
    tick();
    expectNear(written(), {4.0, -2.0, 10.0});
}

TEST_F(UIParamController, WritesAtTheTicksOfItsTimerAndOnlyWhatIsNew) {
    openController({{"update-fps", "10"}});
    EXPECT_EQ(at<CObject>("k").firstChildNamed("update-timer"), nullptr) << "at rest no timer runs";
    event("start-scale");
    event("advance-scale", 10.0);
    event("advance-scale", 20.0);
    system_.advance(0.09);
    EXPECT_TRUE(engine_->sets.empty());
    system_.advance(0.02);
    EXPECT_EQ(engine_->sets.size(), 1u);
    system_.advance(1.0);
    EXPECT_EQ(engine_->sets.size(), 1u);
    event("advance-scale", 50.0);
    event("finish-scale");
    EXPECT_EQ(engine_->sets.size(), 2u) << "the last values";
    expectNear(written(), {2.0, -4.0, 8.0});
    EXPECT_EQ(at<CObject>("k").firstChildNamed("update-timer"), nullptr);
    event("finish-scale");
    event("advance-scale", 60.0);
    system_.advance(1.0);
    EXPECT_EQ(engine_->sets.size(), 2u);
}

TEST_F(UIParamController, ADragIsOneGestureAndAnInversionIsOne) {
    openController();
    event("start-scale");
    event("advance-scale", 10.0);
    tick();
    event("advance-scale", 20.0);
    event("finish-scale");
    event("invert-scale");
    ASSERT_EQ(engine_->sets.size(), 3u);
    EXPECT_EQ(engine_->sets[0].key, engine_->sets[1].key);
    EXPECT_NE(engine_->sets[1].key, engine_->sets[2].key);
    EXPECT_FALSE(isScaling());
}

TEST_F(UIParamController, AnInversionMirrorsAboutZero) {
    openController();
    sendPart("gains", 1, 0, {1.0}, 4);
    event("invert-scale");
    expectNear(written(), {0.0, 1.0, -5.0});
    EXPECT_EQ(engine_->sets.back().numbers[0], 1.0);
}

TEST_F(UIParamController, WithoutACountItTakesWhatTheGroupStores) {
    openController({{"ui-param-count", ""}});
    event("invert-scale");
    expectNear(written(), {-2.0, 1.0, -5.0, -6.0});
}

TEST_F(UIParamController, WithoutValuesNothingHappens) {
    openController({{"ui-param", "^nothing"}});
    event("start-scale");
    event("advance-scale", 50.0);
    event("finish-scale");
    event("invert-scale");
    EXPECT_TRUE(engine_->sets.empty());
    openController();
    sendWhole("mode", {{0.0}});
    event("start-scale");
    EXPECT_FALSE(isScaling());
    client_->engineGone();
    event("start-scale");
    event("invert-scale");
    EXPECT_FALSE(isScaling());
    EXPECT_TRUE(engine_->sets.empty());
}

TEST_F(UIParamController, AnotherGroupOrAParamThatGoesEndsTheDrag) {
    openController();
    event("start-scale");
    event("advance-scale", 50.0);
    set(at<CObject>("sel"), "group-index", "0");
    EXPECT_FALSE(isScaling());
    system_.advance(0.1);
    event("advance-scale", 60.0);
    event("finish-scale");
    EXPECT_TRUE(engine_->sets.empty()) << "the new values stand";
    event("start-scale");
    event("advance-scale", 50.0);
    delete &at<CControlRecorder>("c");
    EXPECT_FALSE(isScaling());
    system_.advance(0.1);
    event("finish-scale");
    EXPECT_TRUE(engine_->sets.empty());
}

TEST_F(UIParamController, ASettingIsScaledAndItsParamMayGoInTheDrag) {
    const auto openSetting = [this] {
        open({{"core:global-settings", "global-settings", {{"drag-precision", "1.0"}}},
              {"ui:ui-param-controller", "k", {{"ui-param", "^c.s"}, {"is-axis-zero", "true"}}},
              {"test:control", "c", {}, {uiParam("s", {{"shared-attribute", "ui.setting"}})}}});
        set(at<CObject>("setting"), "amount", "0.25");
        event("start-scale");
        event("advance-scale", 50.0);
    };
    openSetting();
    event("finish-scale");
    EXPECT_EQ(at<CObject>("setting").getAttrReal("amount"), 0.5);
    for (const char* last : {"", "advance-scale", "finish-scale", "start-scale", "invert-scale"}) {
        openSetting();
        delete &at<CControlRecorder>("c");
        if (*last) {
            event(last, 60.0);
        }
        system_.advance(0.1);
        EXPECT_FALSE(isScaling()) << last;
        EXPECT_EQ(at<CObject>("setting").getAttrReal("amount"), 0.25) << last;
    }
    set(at<CObject>("setting"), "amount", "0.7");
}

TEST_F(UIParamController, ADeclaredTimerDeliversInPlaceOfOneOfItsOwn) {
    open({{"core:global-settings", "global-settings", {{"drag-precision", "1.0"}}},
          {"ui:ui-param-controller",
           "k",
           {{"ui-param", "^c.y"}, {"update-fps", "1000"}},
           {{"core:timer", "update-timer", {{"interval", "0.5"}}}}},
          {"test:control", "c", {}, {uiParam("y", {{"bridge", "ui.gains-bridge"}})}}});
    sendWhole("gains", {kStart});
    for (int32_t drag = 0; drag < 2; ++drag) {
        const CObject* const timer = at<CObject>("k").findChild("update-timer");
        const size_t before = engine_->sets.size();
        event("start-scale");
        event("advance-scale", 50.0 + drag);
        EXPECT_EQ(at<CObject>("k").children().count(), 1);
        EXPECT_EQ(engine_->sets.size(), before);
        system_.advance(0.6);
        EXPECT_EQ(engine_->sets.size(), before + 1) << "at its tick";
        event("finish-scale");
        EXPECT_EQ(at<CObject>("k").findChild("update-timer"), timer) << "and it stays";
    }
}

TEST_F(UIParamController, TheEditorMayCloseInADragAndWhileItWrites) {
    openController();
    event("start-scale");
    event("advance-scale", 50.0);
    close();
    openController();
    engine_->onSet = [this] { tree_.reset(); };
    event("start-scale");
    event("advance-scale", 50.0);
    tick();
    EXPECT_EQ(tree_, nullptr);
    openController();
    engine_->onSet = [this] { tree_.reset(); };
    event("start-scale");
    event("advance-scale", 50.0);
    CAttributeMap params;
    EXPECT_EQ(consumed(deliverEvent(at<CObject>("k"), "finish-scale", params)), "");
    EXPECT_EQ(tree_, nullptr);
}

}  // namespace
}  // namespace tarv
