#include "Audio/Modules/CAudioProcessTerminalBase.h"

#include <algorithm>
#include <cmath>

#include "Core/Log.h"

namespace tarv {

CError* CAudioProcessTerminalBase::init() {
    TARV_TRY(CAudioProcessBase::init());
    needInput(0);
    needOutput(0);
    fadeSeconds_ = def().getAttrRealOr("xfade-length", kDefaultFade);
    if (!(fadeSeconds_ >= kShortestFade)) {
        fadeSeconds_ = kShortestFade;
    }
    return nullptr;
}

void CAudioProcessTerminalBase::regModuleParam(int32_t index, const CAudioParamSlot*& binding) const {
    binding = slot(index);
    if (binding == nullptr) {
        logLineIn(CString("regModuleParam error ") + CString::fromInt(index) + " " + def().name(), path());
    }
}

CBufferHandle CAudioProcessTerminalBase::searchBlock(int32_t port, const CAudioChannel& channel) const {
    CBufferHandle block = kNoBuffer;
    for (const CAudioChannel& candidate : input(port).channels) {
        if (candidate.element == channel.element) {
            if (candidate.group == channel.group) {
                return candidate.handle;
            }
            block = candidate.handle;
        }
    }
    return block;
}

int32_t CAudioProcessTerminalBase::samplesOf(double seconds, double rate) {
    constexpr double kMost = 1 << 30;  // hours at any rate; keeps what is left of a fade within 32 bits
    return static_cast<int32_t>(std::clamp(std::round(seconds * rate), 1.0, kMost));
}

}  // namespace tarv
