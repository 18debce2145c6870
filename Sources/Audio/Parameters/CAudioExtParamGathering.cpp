#include "Audio/Parameters/CAudioExtParamGathering.h"

#include "Audio/Parameters/CAudioExtParam.h"

namespace tarv {

CAudioExtParamGathering::CAudioExtParamGathering(CAudioExtParamList* list) : list_(list) {
    if (list_) {
        for (int32_t i = 0; i < list_->count(); ++i) {
            before_.append(static_cast<float>(list_->param(i)->getValue()));
        }
        isNoted_.resize(list_->count());
        outer_ = list_->beginGathering(*this);
    }
}

CAudioExtParamGathering::CIndexes CAudioExtParamGathering::finish() {
    CIndexes changed;
    if (!list_) {
        return changed;
    }
    list_->endGathering(outer_);
    for (int32_t i = 0; i < isNoted_.count(); ++i) {
        if (isNoted_[i] && static_cast<float>(list_->param(i)->getValue()) != before_[i]) {
            changed.append(i);
        }
    }
    list_ = nullptr;
    return changed;
}

}  // namespace tarv
