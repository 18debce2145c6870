// The rates inside a composite, relative to that of its inputs. Found when it is built, so that links that would join
// signals of different rates stop the build.

#include "Audio/Graph/CAudioProcess.h"
#include "Audio/Graph/CAudioProcessLinkDef.h"

namespace tarv {

void CAudioProcess::changeRate(CAudioRate& rate) const {
    rate.multiply(ownRate_);
}

CError* CAudioProcess::findRates() {
    // Children of a cycle never run and get no rate.
    for (bool hasFound = true; hasFound;) {
        hasFound = false;
        for (int32_t i = 0; i < children_.count(); ++i) {
            bool isReady = rated_.indexOf(i) < 0;
            for (const CLink& link : links_) {
                isReady = isReady && (link.dst != children_[i] || isRated(link.src));
            }
            if (!isReady) {
                continue;
            }
            CAudioRate rate;
            TARV_TRY(joinRates(children_[i], rate));
            children_[i]->changeRate(rate);
            rates_.append(rate);
            rated_.append(i);
            hasFound = true;
        }
    }
    return joinRates(nullptr, ownRate_);
}

bool CAudioProcess::isRated(const CAudioProcessBase* src) const {
    return src == nullptr || rateBehind(src) != nullptr;
}

const CAudioRate* CAudioProcess::rateBehind(const CAudioProcessBase* src) const {
    for (int32_t i = 0; i < rated_.count(); ++i) {
        if (children_[rated_[i]] == src) {
            return &rates_[i];
        }
    }
    return nullptr;
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
CError* CAudioProcess::joinRates(const CAudioProcessBase* dst, CAudioRate& rate) const {
    const CAudioRate own{};
    const CLink* first = nullptr;
    for (const CLink& link : links_) {
        if (link.dst != dst || !isRated(link.src)) {
            continue;
        }
        const CAudioRate& here = link.src != nullptr ? *rateBehind(link.src) : own;
        if (first == nullptr) {
            first = &link;
            rate = here;
        }
        for (const CLink& other : links_) {
            if (&other == &link) {
                break;
            }
            const bool isJoined = other.dst == dst && (dst != nullptr || other.dstPort == link.dstPort);
            const CAudioRate* there = other.src != nullptr ? rateBehind(other.src) : &own;
            if (isJoined && there != nullptr && !(*there == here) && mayMeet(link, other)) {
                TARV_FAIL(
                    "@tarvstr_CAudioProcess_init_RateJoin Links into '%1' join signals of different sample rates.",
                    dst != nullptr ? dst->name() : CString("*"));
            }
        }
    }
    return nullptr;
}

}  // namespace tarv
