#include "Audio/Modules/CFilterChain.h"

#include <cstring>

namespace tarv {

bool CFilterChain::isDesignedWith(const CAudioFilterGen* generator, const double* values, int32_t count) const {
    return isDesigned_ && generator == generator_ && count == values_.count() &&
           std::memcmp(values, values_.data(), static_cast<size_t>(count) * sizeof(double)) == 0;
}

CBufferHandle CFilterChain::makeState(CQPLEXContext& context, const CFilterSection& section, const CState* before) {
    const CSectionKernels& kernels = context.sectionKernels(section.type);
    constexpr auto kBytes = static_cast<int32_t>(sizeof(double));
    const CBufferHandle coefficients = context.takeBuffer(kernels.coefficientCount * kBytes);
    if (coefficients == kNoBuffer) {
        return kNoBuffer;
    }
    double* target = context.signal(coefficients);
    int32_t written = 0;
    for (const CArray<double, 4>* list : {&section.numerators, &section.denominators}) {
        for (const double value : *list) {
            if (written < kernels.coefficientCount) {
                target[written++] = value;
            }
        }
    }
    while (written < kernels.coefficientCount) {
        target[written++] = 0.0;
    }
    const CBufferHandle block = context.takeBuffer(kernels.stateSize * kBytes);
    if (before != nullptr) {
        context.issue(kernels.update, 1, 0.0, {block, coefficients, before->block});
    } else {
        context.issue(kernels.init, 1, 0.0, {block, coefficients});
    }
    context.releaseReference(coefficients);
    return block;
}

CFirSection* CFilterChain::makeFir(CQPLEXContext& context, const CFilterSection& section) {
    const int32_t taps = section.numerators.count();
    auto* const fir = new CFirSection(context, taps);
    fir->setTaps(section.numerators.data(), taps);
    return fir;
}

void CFilterChain::releaseStates(CQPLEXContext& context) {
    for (const CState& state : states_) {
        context.releaseReference(state.block);
        delete state.fir;
    }
    states_.clear();
}

void CFilterChain::design(CQPLEXContext& context, const CAudioFilterGen* generator, const double* values, int32_t count,
                          double rate, const CFilterChain* from) {
    generator_ = generator;
    isDesigned_ = true;
    values_.clear();
    for (int32_t i = 0; i < count; ++i) {
        values_.append(values[i]);
    }
    if (generator != nullptr) {
        generator->design(list_, rate, values, count);
    } else {
        list_.sections.clear();
        list_.latency = 0;
    }
    if (list_.sections.count() < 2) {
        list_.isParallel = 0;
    }
    CArray<CState, 4> states;
    for (int32_t k = 0; k < list_.sections.count(); ++k) {
        const CFilterSection& section = list_.sections[k];
        const CState* before = from != nullptr && k < from->states_.count() ? &from->states_[k] : nullptr;
        if (before != nullptr && (before->type != section.type || before->block == kNoBuffer)) {
            before = nullptr;
        }
        CState state;
        state.type = section.type;
        if (section.type != kSectionTypeFir) {
            state.block = makeState(context, section, before);
        } else {
            state.fir = makeFir(context, section);
        }
        states.append(state);
    }
    releaseStates(context);
    states_ = states;
}

void CFilterChain::release(CQPLEXContext& context) {
    releaseStates(context);
    list_.sections.clear();
    list_.isParallel = 0;
    list_.latency = 0;
    generator_ = nullptr;
    isDesigned_ = false;
}

}  // namespace tarv
