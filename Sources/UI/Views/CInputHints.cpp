// The router's hint: of what the pointer rests on.

#include "UI/Views/CInputTarget.h"
#include "UI/Views/CRouterCall.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

bool CInputRouter::refreshHint() {
    CViewBaseCtlEvents* view = CInputTarget::hintOf(hintHit_);
    if (view != hintView_) {
        hintView_ = view;
        if (view && !sendPlain(*view, &CViewBaseCtlEvents::hintUpdate)) {
            return false;
        }
        view = hintView_;
    }
    const CString& own = view ? view->hint() : kNoHint;
    const CViewBaseCtlEvents* cut = CInputTarget::shortenedAt(hintHit_);
    hintCut_.view = cut ? hintCut_.view : nullptr;
    const bool isPlain = cut || (view && view->isHintPlain());
    if (isPlain == isHintPlain_ && (cut ? isOfHint(*cut, own) : own == hint_)) {
        return true;
    }
    hint_ = cut ? wholeHint(*cut, own) : own;
    isHintPlain_ = isPlain;
    const CCall call(*this);  // what follows the status line may do anything
    isPlain ? window_.setPlainHint(hint_) : window_.setHint(hint_);
    return call.isAlive();
}

bool CInputRouter::isOfHint(const CViewBaseCtlEvents& cut, const CString& own) const {
    const CViewBaseCtlEvents::CShortened now = cut.shortened();
    return &cut == hintCut_.view && now.paragraph == hintCut_.text.paragraph && now.serial == hintCut_.text.serial &&
           own == hintCut_.own;
}

/// What does not fit where it stands comes first, whole. It may be what a user has typed, so that the hint is plain.
CString CInputRouter::wholeHint(const CViewBaseCtlEvents& cut, const CString& own) {
    hintCut_ = {&cut, cut.shortened(), own};
    const CString whole = cut.wholeText(hintCut_.text.paragraph);
    return own.isEmpty() ? whole : whole + ". " + own;
}

void CInputRouter::hintChanged(CViewBaseCtlEvents&) {
    const CCall call(*this);
    refreshHint();
}

}  // namespace tarv
