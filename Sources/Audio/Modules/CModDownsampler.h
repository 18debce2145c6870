#pragma once

#include "Audio/Modules/CModResampler.h"

namespace tarv {

/// Definition of a resampler that lowers the rate (`audio:modDownsampler`).
class CModDownsamplerDef : public CModResamplerDef {
public:
    CAudioProcessBase* createProcess() const override;
    const char* stagePath() const override { return "shared::audio.modDownsamplerDecimator"; }
    const char* filter1Path() const override { return "shared::audio.modDownsamplerFilter1"; }
    const char* filter2Path() const override { return "shared::audio.modDownsamplerFilter2"; }
    bool isDown() const override { return true; }
};

class CModDownsampler : public CModResampler {};

}  // namespace tarv
