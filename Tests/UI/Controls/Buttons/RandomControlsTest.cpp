// Hands at random on a window of buttons, selectors, readouts and arrays, with an engine that changes meanwhile.

#include <random>

#include "Tests/UI/Controls/ControlEditor.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Buttons/CButton.h"
#include "UI/Controls/Buttons/CControlArray.h"
#include "UI/Controls/Buttons/CReadOut.h"
#include "UI/Controls/Buttons/CSelector.h"

namespace tarv {
namespace {

class RandomControls : public CControlEditor {
protected:
    RandomControls() {
        openWindow({testTemplate("test:cell", "ui:view", {{"width", "40"}, {"height", "20"}})},
                   {{"is-inline-vertical", "true"}});
        addBridge("test-bypass", "modBypass.enable");
        addBridge("test-gain", "modOutGain.gain");
        addBridge("test-in", "io-params.in-routing");
        load("", {{"ui:param-group-selector", "sel"},
                  {"ui:value-list-manual",
                   "inputs",
                   {},
                   {{"content", "content", {{"title", "none"}}}, {"content", "content", {{"title", "A"}}}}}});
        make<CButton>("ui:button", "b",
                      {{"bridge", "ui.test-bypass"}, {"width", "60"}, {"height", "20"}, {"title", "b"}});
        load("w", {{"ui:selector-group",
                    "s",
                    {{"group-selector", "ui.sel"}, {"width", "170"}, {"height", "20"}, {"button-width", "balanced"}}},
                   {"ui:readout",
                    "r",
                    {{"bridge", "ui.test-gain"},
                     {"group-selector", "ui.sel"},
                     {"width", "60"},
                     {"height", "20"},
                     {"is-read-only", "false"}}},
                   {"ui:control-array",
                    "a",
                    {{"object-tag", "test:cell"}, {"object-value-list", "ui.inputs"}},
                    {{"ui:ui-param", "ui-param-values", {{"bridge", "ui.test-in"}}}}}});
        listen(at<CView>("b"), {"button-released"});
        CHeardEvents::onEvent = [this](const std::string&) { ++releases_; };
        turn();
    }
    int32_t any(int32_t count) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(count)); }
    void pointAtOne() {
        CView* const views[] = {&at<CView>("b"), &at<CSelector>("s").button(any(8)), &at<CView>("r"),
                                &at<CControlArray>("a").object(any(8))};
        pointAt(*views[any(4)]);
    }
    void step() {
        CInputByHand& input = system_.input();
        switch (any(9)) {
            case 0:
                pointAtOne();
                break;
            case 1:
                input.moveIn(window_->handle(), any(400), any(300));
                break;
            case 2:
                any(2) == 0 ? input.click() : input.press();
                break;
            case 3:
                input.release();
                break;
            case 4:
                input.wheel(any(5) - 2.0);
                break;
            case 5: {
                constexpr int32_t kKeys[] = {kKeyTab,  kKeySpace, kKeyEnter, kKeyEscape,
                                             kKeyLeft, kKeyRight, '3',       kKeyDelete};
                const int32_t key = kKeys[any(8)];
                input.tap(key, key == '3' ? u"3" : u"");
                break;
            }
            case 6:
                set(object("sel"), "group-index", std::to_string(any(10)).c_str());
                break;
            case 7:
                instance().paramCollector()->findParam("plugin.modMain.modBypass.enable")->setValue(0, 0, any(2));
                break;
            default:
                turn(0.01 * any(30));
                break;
        }
    }
    /// What every control shows is what the engine holds, once all has arrived.
    void expectAllAgree(int32_t at) {
        system_.input().release();
        turn(0.5);
        if (CWindow* list = editor_->findObjectOf<CWindow>("ui.window-app-popup-list.window-renderer")) {
            list->requestClose();
            turn(0.5);
        }
        const int32_t group = object("sel").getAttrInt("group-index");
        EXPECT_EQ(this->at<CButton>("b").isStateSet("active"), engineValue("modBypass.enable") != 0.0) << at;
        EXPECT_EQ(this->at<CSelector>("s").activeButton(), group < 8 ? group : -1) << at;
        EXPECT_EQ(this->at<CReadOut>("r").getAttrString("title").toUtf8(),
                  bridge("test-gain").valueText(group, 0, CAudioTextMode::Full).toUtf8())
            << at;
        EXPECT_EQ(this->at<CControlArray>("a").object(1).getAttrReal("object-value"),
                  engineValue("io-params.in-routing", 0, 1))
            << at;
    }

    std::mt19937 random_{20261122};
    int32_t releases_ = 0;
};

TEST_F(RandomControls, ShowWhatTheEngineHoldsWhateverHandsDo) {
    takeKeys();
    const int32_t rounds = getenv("TARV_LONG") ? 2000 : 30;
    for (int32_t i = 0; i < rounds; ++i) {
        for (int32_t k = 0; k < 40; ++k) {
            step();
        }
        expectAllAgree(i);
    }
    // Hands have reached each kind.
    const std::string steps = history();
    for (const char* label : {"Output gain", "In routing"}) {
        EXPECT_NE(steps.find(label), steps.npos) << label;
    }
    EXPECT_GT(releases_, rounds / 4);
}

}  // namespace
}  // namespace tarv
