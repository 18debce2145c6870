// What a drag costs of the heap once it goes on.

#include <functional>

#include "Core/CGlobalSettings.h"
#include "Core/CTimer.h"
#include "Tests/UI/Binding/BindingTree.h"
#include "UI/Binding/CColorSwatch.h"
#include "UI/Binding/CMinMax.h"
#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CUIParamController.h"
#include "UI/Views/CViewBaseState.h"

namespace tarv {
namespace {

/// Takes a value without keeping it.
class CQuietControl final : public CObject, public CUIParamUpdateHandler {
public:
    CError* onParamChanged(CUIParam& param) override {
        last = param.getValue();
        return nullptr;
    }
    double last = 0.0;
};

class SteadyBinding : public CBindingTest {
protected:
    SteadyBinding()
        : CBindingTest(
              {{"core:global-settings", &createObject<CGlobalSettings>, &CGlobalSettings::initClass},
               {"core:timer", &createObject<CTimer>, &CTimer::initClass},
               {"test:quiet", &createObject<CQuietControl>, nullptr},
               {"ui:color-swatch", &createObject<CColorSwatch>, nullptr},
               {"ui:min-max", &createObject<CMinMax>, &CMinMax::initClass},
               {"ui:ui-param-controller", &createObject<CUIParamController>, &CUIParamController::initClass}}) {
        open({{"core:global-settings", "global-settings"},
              {"ui:min-max", "axis", {{"min", "-12"}, {"max", "12"}}},
              {"ui:color-swatch",
               "swatch",
               {},
               {{"core:object", "c", {{"is-color", "true"}, {"index", "0"}, {"color", "Custom1"}}}}},
              {"test:quiet", "c", {}, {uiParam("y", {{"bridge", "ui.gains-bridge"}})}},
              {"ui:ui-param-controller", "k", {{"ui-param", "^c.y"}}}});
        sendWhole("gains", {{2.0, 2.0, 2.0}});
    }
    static uint64_t cost(const std::function<void()>& work) {
        work();
        work();
        const uint64_t before = CHeap::counters().allocations;
        for (int i = 0; i < 10; ++i) {
            work();
        }
        return CHeap::counters().allocations - before;
    }
};

TEST_F(SteadyBinding, LookingAtValuesAxesAndColorsTakesNoMemory) {
    CParamGesture gesture;
    EXPECT_EQ(consumed(gesture.begin()), "");
    EXPECT_EQ(consumed(gesture.write(param("c.y"), 3.0, 1)), "");
    const auto& axis = at<CMinMax>("axis");
    const auto& swatch = at<CColorSwatch>("swatch");
    const CUIParam& y = param("c.y");
    double sum = 0.0;
    EXPECT_EQ(cost([&] {
                  for (int32_t i = 0; i < 3; ++i) {
                      sum += axis.position(gesture.value(y, i)) + axis.value(0.25) + swatch.color(0)->length();
                  }
              }),
              0u);
    EXPECT_GT(sum, 0.0);
}

TEST_F(SteadyBinding, AMoveOfAScaleDragAndATickWithoutOneTakeNoMemory) {
    CAttributeMap params;
    auto& controller = at<CUIParamController>("k");
    EXPECT_EQ(consumed(deliverEvent(controller, "start-scale", params)), "");
    params["scale"] = CAttributeValue::fromReal(0.0);
    params["is-shift"] = CAttributeValue::fromBool(false);
    const CString advance("advance-scale");
    double pixels = 0.0;
    EXPECT_EQ(cost([&] {
                  params["scale"] = CAttributeValue::fromReal(++pixels);
                  EXPECT_EQ(deliverEvent(controller, advance, params), nullptr);
              }),
              0u);
    system_.advance(0.1);
    EXPECT_EQ(engine_->sets.size(), 1u);
    EXPECT_EQ(cost([&] { system_.advance(0.025); }), 0u);
}

TEST_F(SteadyBinding, AWriteTakesTheMemoryOfItsMessageAlone) {
    // The same message without a gesture, by the client itself.
    const auto message = [this] {
        const double number = 2.0;
        EXPECT_EQ(consumed(client_->setNumbers("p.gains", 0, 1, &number, 1, 1, {true, "Gains (1) change", 5, true})),
                  "");
    };
    engine_->isDeaf = true;
    const uint64_t plain = cost(message);
    CParamGesture gesture;
    EXPECT_EQ(consumed(gesture.begin()), "");
    double decibels = 0.0;
    EXPECT_LE(cost([&] { EXPECT_EQ(gesture.write(param("c.y"), decibels += 0.1, 1), nullptr); }), plain);
}

TEST_F(SteadyBinding, AnEchoReachesTheControlWithoutMemory) {
    // The client has read it.
    auto& bridge = at<CParamBridgeAudio>("gains-bridge");
    const CAudioParamData& data = *client_->paramData(bridge);
    EXPECT_EQ(cost([&] { bridge.onParamChanged(data, 0, 0, 3, false); }), 0u);
    EXPECT_NEAR(at<CQuietControl>("c").last, 6.0206, 1e-4);
}

}  // namespace
}  // namespace tarv
