#pragma once

#include "Audio/Presets/CAudioParamRegistry.h"
#include "Tests/UI/Controls/ControlEditor.h"

namespace tarv {

/// An editor's objects beside the registry of an instance.
struct CPluginTest : CControlEditor {
    static constexpr const char* kMaster = "plugin.param-registry";
    static constexpr const char* kOutGain = "modOutGain.gain";

    CPluginTest() {
        addBridge("gain-bridge", kOutGain);
        addBridge("xeq-bridge", "modBrindleXEQ.xeq-gains");
        addBridge("freq-bridge", "modBrindleXEQ.xeq-freqs");
    }
    CAudioInterfaceClient& client() { return dynamic_cast<CAudioInterfaceClient&>(object("interface-client")); }
    CAudioParamRegistry& registry() { return *instance().paramRegistry(); }
    /// What a person sets: in decibels, one step.
    void setGain(double value, int32_t group = 0) {
        EXPECT_EQ(consumed(bridge("gain-bridge").setValues(group, 0, &value, 1)), "");
        system_.pump();
    }
    void setCurve(int32_t group, std::vector<double> values) {
        EXPECT_EQ(
            consumed(bridge("xeq-bridge").setValues(group, 0, values.data(), static_cast<int32_t>(values.size()))), "");
        system_.pump();
    }
    /// In decibels, to a tenth: as the editor shows it.
    double shownGain(int32_t group = 0) { return std::round(bridge("gain-bridge").value(group, 0) * 10.0) / 10.0; }
    double shownBand(int32_t group, int32_t band) {
        return std::round(bridge("xeq-bridge").value(group, band) * 10.0) / 10.0;
    }
    /// An event as a command delivers it.
    void deliver(const std::string& path, const char* event, CAttributeMap params = {}) {
        EXPECT_EQ(consumed(deliverEvent(object(path), event, params)), "");
        system_.pump();
    }
    static CAttributeMap index(int32_t number) {
        CAttributeMap params;
        params["index"] = CAttributeValue::fromInt(number);
        return params;
    }
    void undo(int32_t count = 1) {
        EXPECT_EQ(consumed(client().undo(count)), "");
        system_.pump();
    }
};

}  // namespace tarv
