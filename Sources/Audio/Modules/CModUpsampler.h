#pragma once

#include "Audio/Modules/CModResampler.h"

namespace tarv {

/// Definition of a resampler that raises the rate (`audio:modUpsampler`).
class CModUpsamplerDef : public CModResamplerDef {
public:
    CAudioProcessBase* createProcess() const override;
    const char* stagePath() const override { return "shared::audio.modUpsamplerInterpolator"; }
    const char* filter1Path() const override { return "shared::audio.modUpsamplerFilter1"; }
    const char* filter2Path() const override { return "shared::audio.modUpsamplerFilter2"; }
    bool isDown() const override { return false; }
};

class CModUpsampler : public CModResampler {};

}  // namespace tarv
