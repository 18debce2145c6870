#include "Audio/Filters/CAudioFilterBypassGen.h"

namespace tarv {

void CAudioFilterBypassGen::design(CSectionList& list, double, const double*, int32_t) const {
    restart(list);
}

}  // namespace tarv
