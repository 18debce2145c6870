#pragma once

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "Audio/VST/Vst2.h"

namespace tarv::host {

/// An effect written straight against the interface: a gain in decibels with one decimal ("Gain", -12 to 12 dB), a
/// list of five words ("Mode") and nothing else. Notes the length of each block and what was set before it.
struct CTestPlugin {
    static inline CTestPlugin* last = nullptr;
    /// Whether a display text can be had without setting the parameter.
    static inline bool hasDisplayRequest = true;

    vst::AEffect effect{};
    vst::HostCallback host;
    float values[2] = {0.5f, 0.0f};
    int32_t sets = 0;
    std::string log;
    std::vector<int32_t> blocks;

    static constexpr double kRangeDb = 12.0;

    static vst::AEffect* entry(vst::HostCallback host) {
        if (host(nullptr, vst::kHostVersion, 0, 0, nullptr, 0.0f) < 2400) {
            return nullptr;
        }
        last = new CTestPlugin;
        last->host = host;
        vst::AEffect& e = last->effect;
        e.magic = vst::kEffectMagic;
        e.dispatcher = &dispatch;
        e.setParameter = [](vst::AEffect* effect, int32_t index, float value) {
            self(effect).values[index] = value;
            ++self(effect).sets;
        };
        e.getParameter = [](vst::AEffect* effect, int32_t index) { return self(effect).values[index]; };
        e.processReplacing = &process<float>;
        e.processDoubleReplacing = &process<double>;
        e.numParams = 2;
        e.numInputs = e.numOutputs = 4;
        e.flags = vst::kFlagCanReplacing | vst::kFlagCanDoubleReplacing;
        e.object = last;
        return &e;
    }

    static CTestPlugin& self(vst::AEffect* effect) { return *static_cast<CTestPlugin*>(effect->object); }

    static void show(int32_t index, float value, char* text) {
        constexpr const char* kWords[] = {"Auto", "1x", "2x", "4x", "8x"};
        if (index == 0) {
            std::snprintf(text, vst::kMaxParamText, "%.1f", static_cast<double>(value) * 2.0 * kRangeDb - kRangeDb);
        } else {
            std::strcpy(text, kWords[static_cast<int>(std::round(value * 4.0f))]);
        }
    }

    static intptr_t dispatch(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t value, void* ptr,
                             float opt) {
        CTestPlugin& p = self(effect);
        char* text = static_cast<char*>(ptr);
        if (opcode == vst::kEffectClose) {
            delete &p;
        } else if (opcode == vst::kEffectGetParamName) {
            std::strcpy(text, index == 0 ? "Gain" : "Oversmp");
        } else if (opcode == vst::kEffectGetParamLabel) {
            std::strcpy(text, index == 0 ? "dB" : "");
        } else if (opcode == vst::kEffectGetParamDisplay) {
            show(index, p.values[index], text);
        } else if (opcode == vst::kEffectCanDo) {
            return hasDisplayRequest && std::strcmp(text, vst::kCanCockosExtensions) == 0 ? vst::kCockosExtensionsAnswer
                                                                                          : 0;
        } else if (opcode == vst::kEffectVendorSpecific && index == vst::kCockosDisplayRequest && hasDisplayRequest) {
            show(static_cast<int32_t>(value), opt, text);
            return vst::kCockosDisplayAnswer;
        } else if (opcode == vst::kEffectSetSampleRate) {
            p.log += "rate " + std::to_string(static_cast<int>(opt)) + " ";
        } else if (opcode == vst::kEffectSetBlockSize) {
            p.log += "block " + std::to_string(value) + " ";
        } else if (opcode == vst::kEffectSetProcessPrecision) {
            p.log += "precision " + std::to_string(value) + " ";
        } else if (opcode == vst::kEffectMainsChanged) {
            p.log += value ? "resume " : "suspend ";
        }
        return 0;
    }

    template <class Sample>
    static void process(vst::AEffect* effect, Sample** inputs, Sample** outputs, int32_t frames) {
        CTestPlugin& p = self(effect);
        p.blocks.push_back(frames);
        const double db = static_cast<double>(p.values[0]) * 2.0 * kRangeDb - kRangeDb;
        const auto gain = static_cast<Sample>(std::pow(10.0, db / 20.0));
        for (int c = 0; c < 4; ++c) {
            for (int32_t i = 0; i < frames; ++i) {
                outputs[c][i] = inputs[c][i] * gain;
            }
        }
    }
};

}  // namespace tarv::host
