#pragma once

#include <algorithm>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Product/Product.h"
#include "Tests/System/EditorTest.h"
#include "UI/Binding/CParamBridge.h"
#include "UI/Binding/CParamGesture.h"
#include "UI/Binding/CUIParam.h"

namespace tarv {

using CHeard = std::vector<std::string>;

inline CHeard heard;
inline std::function<void(int32_t opcode)> onHeard;

inline intptr_t hear(vst::AEffect*, int32_t opcode, int32_t index, intptr_t, void*, float opt) {
    char text[64] = {};
    switch (opcode) {
        case vst::kHostVersion:
            return 2400;
        case vst::kHostBeginEdit:
            snprintf(text, sizeof text, "begin %d", index);
            break;
        case vst::kHostEndEdit:
            snprintf(text, sizeof text, "end %d", index);
            break;
        case vst::kHostAutomate:
            snprintf(text, sizeof text, "automate %d %.4f", index, static_cast<double>(opt));
            break;
        default:
            return 0;
    }
    heard.push_back(text);
    if (const auto handler = onHeard) {
        handler(opcode);
    }
    return 1;
}

/// The product's effect in a host that writes down what it hears, and an editor with the gains, the output gain and the
/// bypass.
class CGestureTest : public testing::Test {
protected:
    CGestureTest() {
        ensureProductStarted();
        effect_ = CAudioWrapperVST::create(&hear);
        wrapper_.reset(static_cast<CAudioWrapperVST*>(static_cast<AudioEffectX*>(effect_->object)));
        open();
        heard.clear();
    }
    ~CGestureTest() override { onHeard = nullptr; }

    static CTestNode bridge(const char* name, const char* param) {
        return {"ui:param-bridge", name, {{"interface-client", "ui.client"}, {"param", param}}};
    }
    static CTestNode param(const char* name, const char* path, const char* selector = "") {
        return {"ui:ui-param", name, {{"bridge", path}, {"group-selector", selector}}};
    }
    std::unique_ptr<CObject> makeEditor() {
        CObject* root = nullptr;
        EXPECT_EQ(firstLine(CApplication::initRootObject(root)), "");
        delete root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(wrapper_->instanceRoot()));
        // An axis is as good a control as others.
        EXPECT_EQ(
            firstLine(loadTree(*root, {{"ui:ui-event-bridge",
                                        "ui",
                                        {},
                                        {{"audio:interface-client-connector-vst",
                                          "connector",
                                          {{"base-connector", "plugin.interface-base-connector"}}},
                                         {"audio:interface-client", "client", {{"client-connector", "ui.connector"}}},
                                         bridge("gains", engine::kGains),
                                         bridge("out", engine::kOutGain),
                                         bridge("bypass", engine::kBypass),
                                         bridge("freqs", engine::kFreqs),
                                         {"ui:param-group-selector", "sel"},
                                         {"ui:min-max",
                                          "control",
                                          {},
                                          {param("y", "ui.gains", "ui.sel"), param("out", "ui.out", "ui.sel"),
                                           param("bypass", "ui.bypass"), param("freq", "ui.freqs")}}}}})),
            "");
        pumpEvents();
        return std::unique_ptr<CObject>(root);
    }
    void open() {
        editor_ = makeEditor();
        client_ = editor_->findObjectOf<CAudioInterfaceClient>("ui.client");
    }
    template <class T>
    T& at(const char* path) {
        return *editor_->findObjectOf<T>(path);
    }
    CUIParam& y() { return at<CUIParam>("ui.control.y"); }
    CHeard take() { return std::exchange(heard, {}); }
    void press(CParamGesture& gesture, int32_t band) {
        EXPECT_EQ(firstLine(gesture.begin()), "");
        EXPECT_EQ(firstLine(gesture.touch(y(), band)), "");
    }
    int32_t stepCount() {
        pumpEvents();
        return client_->engineState().history.labels.count() - 1;
    }
    double gain(int32_t group, int32_t band) {
        return engine::decibels(wrapper_->paramCollector()->findParam(engine::kGains)->value(group, band));
    }

    vst::AEffect* effect_ = nullptr;
    std::unique_ptr<CAudioWrapperVST> wrapper_;
    std::unique_ptr<CObject> editor_;
    CAudioInterfaceClient* client_ = nullptr;
    CParamGesture gesture_;
};

}  // namespace tarv
