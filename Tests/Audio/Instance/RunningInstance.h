#pragma once

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Tests/Audio/Instance/WrapperTree.h"

namespace tarv {

using CSignal = std::vector<double>;

/// An instance of the small plug-in: a gain of 2 for the group of each channel. Stereo.
class CRunningInstance {
public:
    explicit CRunningInstance(const CWrapperDefinitions& definitions = {}) : application_(definitions) {
        EXPECT_EQ(messageOf(wrapper.init()), "");
        wrapper.setChannelCounts(2, 2);
    }
    /// Runs one block of a mono signal in 64 bits on the first channel; returns the first output.
    CSignal run(const CSignal& in) {
        CSignal out(in.size(), 99.0);
        const double* inputs[2] = {in.data(), nullptr};
        double* outputs[2] = {out.data(), nullptr};
        wrapper.processBlock(inputs, outputs, static_cast<int32_t>(in.size()));
        return out;
    }
    void setGain(double value, int32_t group = 0) {
        wrapper.paramCollector()->findParam("plugin.modMain.g.gain")->setValue(group, 0, value);
    }
    double param(const char* name) {
        return wrapper.paramCollector()->findParam((CString("plugin.modMain.") + name))->value(0, 0);
    }

private:
    CWrapperApplication application_;

public:
    CTestWrapper wrapper;
};

}  // namespace tarv
