#include "Audio/Parameters/CAudioParamConsumer.h"

namespace tarv {

bool CAudioParamConsumer::wants(const CAudioParamChange& change) const {
    const bool isForGroup =
        change.group == CAudioParamData::kAllGroups || change.group == group || group == -1 || group == -2;
    const bool isForElement =
        change.resize != 0 || element == -1 || (element >= change.first && element < change.first + change.count);
    return isForGroup && isForElement;
}

}  // namespace tarv
