#include "Audio/Parameters/CAudioParamChangeList.h"

namespace tarv {

void CAudioParamChangeList::append(CAudioParamChange* change) {
    change->next_ = nullptr;
    change->previous_ = tail_;
    (tail_ ? tail_->next_ : head_) = change;
    tail_ = change;
    ++count_;
}

CAudioParamChange* CAudioParamChangeList::takeFirst() {
    CAudioParamChange* first = head_;
    if (first) {
        head_ = first->next_;
        (head_ ? head_->previous_ : tail_) = nullptr;
        --count_;
    }
    return first;
}

CAudioParamChangeList CAudioParamChangeList::takeAll() {
    CAudioParamChangeList all = *this;
    *this = CAudioParamChangeList();
    return all;
}

void CAudioParamChangeList::replace(CAudioParamChange& entry, CAudioParamChange* change) {
    change->next_ = entry.next_;
    change->previous_ = entry.previous_;
    (change->next_ ? change->next_->previous_ : tail_) = change;
    (change->previous_ ? change->previous_->next_ : head_) = change;
}

CAudioParamChange* CAudioParamChangeList::previous(const CAudioParamChange& change) const {
    return change.previous_;
}

}  // namespace tarv
