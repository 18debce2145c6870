#include "Audio/Filters/CAudioFilterSerialGen.h"

#include <algorithm>

#include "Audio/Filters/CAudioFilterSerialGenItem.h"

namespace tarv {

CError* CAudioFilterSerialGen::init() {
    TARV_TRY(CAudioFilterGen::init());
    isParallel_ = getAttrBool("is-parallel");
    return nullptr;
}

CError* CAudioFilterSerialGen::childAdded(CObject* child) {
    TARV_TRY(CAudioFilterGen::childAdded(child));
    if (const auto* item = dynamic_cast<const CAudioFilterSerialGenItem*>(child)) {
        items_.append(item);
    }
    return nullptr;
}

void CAudioFilterSerialGen::removeChild(CObject* child) {
    // A child that is being destroyed has lost its class, so its address alone is compared.
    for (int32_t i = items_.count(); i-- > 0;) {
        if (static_cast<const CObject*>(items_[i]) == child) {
            items_.removeAt(i);
        }
    }
    CAudioFilterGen::removeChild(child);
}

void CAudioFilterSerialGen::design(CSectionList& list, double sampleRate, const double* values, int32_t count) const {
    restart(list);
    CArray<double, 16> scaled;
    scaled.resize(std::max(count, 0));
    for (const CAudioFilterSerialGenItem* item : items_) {
        if (!item->generator()) {
            continue;
        }
        for (int32_t i = 0; i < count; ++i) {
            scaled[i] = values[i] * item->factor(i);
        }
        CSectionList part;
        part.lender = &list;
        item->generator()->design(part, sampleRate, scaled.data(), count);
        for (CFilterSection& section : part.sections) {
            list.sections.resize(list.sections.count() + 1);
            list.sections.last() = std::move(section);
        }
        if (!isParallel_) {
            list.latency += part.latency;
        }
    }
    list.isParallel = isParallel_ && list.sections.count() > 1;
}

CFirSize CAudioFilterSerialGen::firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const {
    CFirSize size;
    CArray<CDesignRange, 16> scaled;
    scaled.resize(std::max(count, 0));
    for (const CAudioFilterSerialGenItem* item : items_) {
        if (!item->generator()) {
            continue;
        }
        for (int32_t i = 0; i < count; ++i) {
            const double first = ranges[i].low * item->factor(i);
            const double second = ranges[i].high * item->factor(i);
            scaled[i] = {std::min(first, second), std::max(first, second)};
        }
        const CFirSize part = item->generator()->firSize(sampleRate, scaled.data(), count);
        size = {size.sections + part.sections, std::max(size.taps, part.taps)};
    }
    return size;
}

bool CAudioFilterSerialGen::uses(const CAudioFilterGen& other) const {
    const auto leads = [&other](const CAudioFilterSerialGenItem* item) {
        return item->generator() && item->generator()->uses(other);
    };
    return this == &other || std::any_of(items_.begin(), items_.end(), leads);
}

}  // namespace tarv
