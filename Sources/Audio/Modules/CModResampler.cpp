#include "Audio/Modules/CModResampler.h"

#include <cmath>

namespace tarv {

CError* CModResampler::init() {
    const CModResamplerDef& own = resamplerDef();
    stageDef_ = own.findObjectOf<CAudioProcessDefBase>(own.stagePath());
    if (stageDef_ == nullptr) {
        TARV_FAIL("@tarvstr_CModResampler_init_NoInterpMod No module definition object with the name '%1' found.",
                  own.stagePath());
    }
    filter1Def_ = own.findObjectOf<CAudioProcessDefBase>(own.filter1Path());
    if (filter1Def_ == nullptr) {
        TARV_FAIL(
            "@tarvstr_CModResampler_init_NoFilter1Mod No filter 1 module definition object with the name '%1' found.",
            own.filter1Path());
    }
    filter2Def_ = own.findObjectOf<CAudioProcessDefBase>(own.filter2Path());
    if (filter2Def_ == nullptr) {
        TARV_FAIL(
            "@tarvstr_CModResampler_init_NoFilter2Mod No filter 2 module definition object with the name '%1' found.",
            own.filter2Path());
    }
    TARV_TRY(CModProcessSeq::init());
    for (int32_t pair = 0; pair < kMaxStages; ++pair) {
        TARV_TRY(addPair(pair == (own.isDown() ? kMaxStages - 1 : 0)));
    }
    return nullptr;
}

void CModResampler::slotChanged(CAudioParamSlot&) {
    isCountDirty_ = true;
}

int32_t CModResampler::wantedStages() const {
    const double mode = std::round(slotValue(slot(0), 0, 0, 1.0));
    const double hostMode = std::round(slotValue(slot(1), 0, 0, 0.0));
    const double stages = mode != 0.0 ? mode - 1.0 : hostMode;
    return static_cast<int32_t>(stages < 0.0 ? 0.0 : stages > kMaxStages ? kMaxStages : stages);
}

void CModResampler::changeRate(CAudioRate& rate) const {
    const int32_t direction = resamplerDef().isDown() ? -1 : 1;
    CString factor;
    bool isFixed = true;
    for (int32_t i = 0; i < 2; ++i) {
        const CAudioParamSlot* choice = slot(i);
        const bool isShared = choice != nullptr && choice->param != nullptr;
        factor = factor + (isShared ? choice->param->fullName() : CString::fromInt(slotNumber(choice, 0))) + "|";
        isFixed = isFixed && !isShared;
    }
    if (isFixed) {
        rate.shift(direction * wantedStages());
    } else {
        rate.scale(factor, direction);
    }
}

CError* CModResampler::addPair(bool isLowest) {
    const CAudioProcessDefBase& filter = isLowest ? *filter1Def_ : *filter2Def_;
    const CString stageName("modInterpDecim");
    const CString filterName("modFilter");
    if (resamplerDef().isDown()) {
        TARV_TRY(appendChild(filter, filterName));
        TARV_TRY(appendChild(*stageDef_, stageName));
    } else {
        TARV_TRY(appendChild(*stageDef_, stageName));
        TARV_TRY(appendChild(filter, filterName));
    }
    return nullptr;
}

void CModResampler::updateSequence() {
    if (!isCountDirty_) {
        return;
    }
    isCountDirty_ = false;
    graph().invalidateRun();
    const int32_t wanted = wantedStages();
    if (wanted == stageCount()) {
        return;
    }
    // The pair at the lowest rate is the first of the upsampler and the last of the downsampler.
    if (resamplerDef().isDown()) {
        setSequence(allCount() - 2 * wanted, allCount());
    } else {
        setSequence(0, 2 * wanted);
    }
    placeDelay(inputDelay());
}

}  // namespace tarv
