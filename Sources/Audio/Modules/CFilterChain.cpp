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
    if (before != nullptr && before->block != kNoBuffer) {
        context.issue(kernels.update, 1, 0.0, {block, coefficients, before->block});
    } else {
        context.issue(kernels.init, 1, 0.0, {block, coefficients});
    }
    context.releaseReference(coefficients);
    return block;
}

/// A section with room for the taps, its taps and history undefined: one that is parked, or a new one.
CFirSection* CFilterChain::takeFir(CQPLEXContext& context, int32_t taps) {
    for (int32_t i = 0; i < parked_.count(); ++i) {
        CFirSection* const fir = parked_[i];
        if (fir->room() >= taps) {
            parked_.removeAt(i);
            return fir;
        }
    }
    // Not prepared: what is too small now will hardly be used again.
    parked_.deleteAll();
    return new CFirSection(context, taps);
}

/// Parks the FIR sections that stand where the new list has another type, so that other places can take them.
void CFilterChain::parkMisplaced() {
    for (int32_t k = 0; k < states_.count(); ++k) {
        const bool isKept = k < list_.sections.count() && list_.sections[k].type == kSectionTypeFir;
        if (states_[k].fir != nullptr && !isKept) {
            parked_.append(states_[k].fir);
            states_[k].fir = nullptr;
        }
    }
}

CFirSection* CFilterChain::designFir(CQPLEXContext& context, const CFilterSection& section, CState* before,
                                     bool isInPlace) {
    const int32_t taps = section.numerators.count();
    CFirSection* const old = before != nullptr ? before->fir : nullptr;
    CFirSection* fir = old;
    if (old == nullptr || !isInPlace || old->room() < taps) {
        fir = takeFir(context, taps);
        if (old != nullptr) {
            fir->takeHistory(*old);
        } else {
            fir->clear();
        }
    } else {
        before->fir = nullptr;
    }
    fir->setTaps(section.numerators.data(), taps);
    return fir;
}

void CFilterChain::makeReady(CQPLEXContext& context, const CFirSize& room) {
    if (room_.holds(room)) {
        return;
    }
    room_.extend(room);
    for (int32_t i = parked_.count(); i-- > 0;) {
        if (parked_[i]->room() < room_.taps) {
            delete parked_[i];
            parked_.removeAt(i);
        }
    }
    while (parked_.count() < room_.sections) {
        parked_.append(new CFirSection(context, room_.taps));
    }
    list_.kept.clear();
    list_.kept.reserve(room_.sections);
    for (int32_t i = 0; i < room_.sections; ++i) {
        CArray<double, 4> taps;
        taps.reserve(room_.taps);
        list_.kept.append(std::move(taps));
    }
    if (list_.sections.capacity() < room_.sections) {
        list_.sections.reserve(room_.sections);
    }
}

void CFilterChain::releaseStates(CQPLEXContext& context) {
    for (const CState& state : states_) {
        context.releaseReference(state.block);
        if (state.fir != nullptr) {
            parked_.append(state.fir);
        }
    }
    states_.clear();
}

void CFilterChain::design(CQPLEXContext& context, const CAudioFilterGen* generator, const double* values, int32_t count,
                          double rate, CFilterChain* from) {
    generator_ = generator;
    isDesigned_ = true;
    values_.clear();
    for (int32_t i = 0; i < count; ++i) {
        values_.append(values[i]);
    }
    if (generator != nullptr) {
        generator->design(list_, rate, values, count);
    } else {
        list_.restart();
    }
    if (list_.sections.count() < 2) {
        list_.isParallel = 0;
    }
    if (from == this) {
        parkMisplaced();
    }
    CArray<CState, 4> states;
    for (int32_t k = 0; k < list_.sections.count(); ++k) {
        const CFilterSection& section = list_.sections[k];
        CState* before = from != nullptr && k < from->states_.count() ? &from->states_[k] : nullptr;
        if (before != nullptr && before->type != section.type) {
            before = nullptr;
        }
        CState state;
        state.type = section.type;
        if (section.type != kSectionTypeFir) {
            state.block = makeState(context, section, before);
        } else {
            state.fir = designFir(context, section, before, from == this);
        }
        states.append(state);
    }
    releaseStates(context);
    states_ = states;
}

void CFilterChain::release(CQPLEXContext& context) {
    releaseStates(context);
    list_.restart();
    generator_ = nullptr;
    isDesigned_ = false;
}

}  // namespace tarv
