#include "Audio/Filters/CAudioFilterGenArray.h"

#include "Audio/Filters/CAudioFilterGenArrayItem.h"

namespace tarv {

CError* CAudioFilterGenArray::finishInit() {
    TARV_TRY(CObject::finishInit());
    generators_.clear();
    for (const CObject* child : children()) {
        const auto* item = dynamic_cast<const CAudioFilterGenArrayItem*>(child);
        if (!item || !item->generator()) {
            continue;
        }
        if (item->index() >= generators_.count()) {
            generators_.resize(item->index() + 1);
        }
        generators_[item->index()] = item->generator();
    }
    return nullptr;
}

CFirSize CAudioFilterGenArray::firSize(double sampleRate, const CDesignRange* ranges, int32_t count) const {
    CFirSize most;
    for (const CAudioFilterGen* generator : generators_) {
        if (generator != nullptr) {
            most.extend(generator->firSize(sampleRate, ranges, count));
        }
    }
    return most;
}

}  // namespace tarv
