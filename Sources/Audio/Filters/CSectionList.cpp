#include "Audio/Filters/CSectionList.h"

namespace tarv {

void CSectionList::restart() {
    for (CFilterSection& section : sections) {
        if (!section.numerators.isInline()) {
            section.numerators.clear();
            kept.append(std::move(section.numerators));
        }
    }
    sections.clear();
    isParallel = 0;
    latency = 0;
}

CArray<double, 4> CSectionList::takeKept() {
    if (lender != nullptr) {
        return lender->takeKept();
    }
    CArray<double, 4> taken;
    int32_t largest = -1;
    for (int32_t i = 0; i < kept.count(); ++i) {
        if (largest < 0 || kept[i].capacity() > kept[largest].capacity()) {
            largest = i;
        }
    }
    if (largest >= 0) {
        taken = std::move(kept[largest]);
        kept.removeAt(largest);
    }
    return taken;
}

}  // namespace tarv
