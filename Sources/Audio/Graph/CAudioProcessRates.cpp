// The rates inside a composite, relative to that of its inputs. Found when it is built, so that links that would join
// signals of different rates stop the build.

#include "Audio/Graph/CAudioProcess.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"

namespace tarv {

/// What is found of the rates behind the children, relative to that of the inputs.
struct CAudioProcess::CRates {
    struct CRated {
        const CAudioProcessBase* child;
        CAudioRate rate;
    };
    CArray<CRated, 8> found;
    CAudioRate ofInputs;

    /// Null: not known yet. `src` null stands for the inputs.
    const CAudioRate* behind(const CAudioProcessBase* src) const {
        if (src == nullptr) {
            return &ofInputs;
        }
        for (const CRated& rated : found) {
            if (rated.child == src) {
                return &rated.rate;
            }
        }
        return nullptr;
    }
};

void CAudioProcess::changeRate(CAudioRate& rate) const {
    rate.multiply(ownRate_);
}

CError* CAudioProcess::findRates() {
    CRates rates;
    // Children of a cycle never run and get no rate.
    for (bool hasFound = true; hasFound;) {
        hasFound = false;
        for (const CAudioProcessBase* child : children_) {
            bool isReady = rates.behind(child) == nullptr;
            for (const CLink& link : links_) {
                isReady = isReady && (link.dst != child || rates.behind(link.src) != nullptr);
            }
            if (!isReady) {
                continue;
            }
            CAudioRate rate;
            TARV_TRY(joinRates(rates, child, rate));
            child->changeRate(rate);
            rates.found.append({child, rate});
            hasFound = true;
        }
    }
    return joinRates(rates, nullptr, ownRate_);
}

/// Whether both links may be live at once.
bool CAudioProcess::mayMeet(const CLink& a, const CLink& b) {
    if (a.def == nullptr || b.def == nullptr) {
        return true;
    }
    const bool isOther = a.def->stateId() >= 0 && b.def->stateId() >= 0 && a.def->stateId() != b.def->stateId();
    const bool isFree = a.def->bypassStateIds().isEmpty() || b.def->bypassStateIds().isEmpty();
    return !isOther && isFree;
}

/// The rate at a child, or at the outputs for null. All inputs of a child run at one rate; outputs may differ.
CError* CAudioProcess::joinRates(const CRates& rates, const CAudioProcessBase* dst, CAudioRate& rate) const {
    const CLink* first = nullptr;
    for (const CLink& link : links_) {
        const CAudioRate* const here = link.dst == dst ? rates.behind(link.src) : nullptr;
        if (here == nullptr) {
            continue;
        }
        if (first == nullptr) {
            first = &link;
            rate = *here;
        }
        for (const CLink& other : links_) {
            if (&other == &link) {
                break;
            }
            const bool isJoined = other.dst == dst && (dst != nullptr || other.dstPort == link.dstPort);
            const CAudioRate* const there = isJoined ? rates.behind(other.src) : nullptr;
            if (there != nullptr && !(*there == *here) && mayMeet(link, other)) {
                TARV_FAIL(
                    "@tarvstr_CAudioProcess_init_RateJoin Links into '%1' join signals of different sample rates.",
                    dst != nullptr ? dst->name() : CString("*"));
            }
        }
    }
    return nullptr;
}

}  // namespace tarv
