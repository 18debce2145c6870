#include "UI/Views/CInputTarget.h"

#include "UI/Views/CSectorMap.h"
#include "UI/Views/CViewBaseCtlEvents.h"

namespace tarv {

namespace {

/// Whether an ancestor of `hit` takes what is aimed at it; those further up have been asked.
bool intercepts(const CViewBaseCtlEvents& ancestor, const CViewBaseCtlEvents& hit) {
    if (ancestor.isClickThrough()) {
        return false;
    }
    if (!ancestor.isInterceptingAllowChilds()) {
        return ancestor.isIntercepting();
    }
    for (const CViewBaseCtlEvents* view = &hit; view != &ancestor; view = view->parentInput()) {
        if (view->isInputView() && !view->isClickThrough()) {
            return false;
        }
    }
    return true;
}

/// Goes through the views below `root` in their order, and finds the one before or behind `from` that may have focus.
class CFocusWalk {
public:
    explicit CFocusWalk(const CViewBaseCtlEvents* from) : from_(from) {}

    void visit(CViewBaseCtlEvents& view) {
        if (&view == from_) {
            isBehind_ = true;
        } else if (view.isFocusable() && CInputTarget::takesInput(view)) {
            add(view);
        }
        for (CObject* child : view.children()) {
            if (auto* below = dynamic_cast<CViewBaseCtlEvents*>(child)) {
                visit(*below);
            }
        }
    }
    CViewBaseCtlEvents* next() const { return behind_ ? behind_ : first_; }
    CViewBaseCtlEvents* former() const { return before_ ? before_ : last_; }

private:
    void add(CViewBaseCtlEvents& view) {
        first_ = first_ ? first_ : &view;
        last_ = &view;
        if (!isBehind_) {
            before_ = &view;
        } else if (!behind_) {
            behind_ = &view;
        }
    }

    const CViewBaseCtlEvents* from_;
    bool isBehind_ = false;
    CViewBaseCtlEvents* first_ = nullptr;
    CViewBaseCtlEvents* last_ = nullptr;
    CViewBaseCtlEvents* before_ = nullptr;
    CViewBaseCtlEvents* behind_ = nullptr;
};

}  // namespace

CViewBaseCtlEvents* CInputTarget::hit(const CSectorMap& map, double x, double y, bool climbToControl) {
    CSectorView* found = map.viewAt(x, y);
    while (found) {
        auto* view = dynamic_cast<CViewBaseCtlEvents*>(found);
        if (view && !view->isClickThrough()) {
            return climbToControl ? takerOf(view) : view;
        }
        found = map.viewAt(x, y, found);
    }
    return nullptr;
}

CViewBaseCtlEvents* CInputTarget::takerOf(CViewBaseCtlEvents* hit) {
    CViewBaseCtlEvents* view = unintercepted(hit);
    if (view != hit) {
        return view;
    }
    while (view && (!view->isInputView() || view->isClickThrough())) {
        view = view->parentInput();
    }
    return view;
}

CViewBaseCtlEvents* CInputTarget::unintercepted(CViewBaseCtlEvents* hit) {
    CViewBaseCtlEvents* taker = hit;
    // From the root down, the first one takes it: from below, the last one that would.
    for (CViewBaseCtlEvents* view = hit ? hit->parentInput() : nullptr; view; view = view->parentInput()) {
        if (intercepts(*view, *hit)) {
            taker = view;
        }
    }
    return taker;
}

bool CInputTarget::takesInput(const CViewBaseCtlEvents& view) {
    return view.isShown() && !view.isDisabled();
}

CViewBaseCtlEvents* CInputTarget::hintOf(CViewBaseCtlEvents* view) {
    while (view && view->hint().isEmpty()) {
        view = view->parentInput();
    }
    return view;
}

CViewBaseCtlEvents* CInputTarget::nextFocus(CViewBaseCtlEvents& root, CViewBaseCtlEvents* from, bool isBackwards) {
    CFocusWalk walk(from);
    walk.visit(root);
    return isBackwards ? walk.former() : walk.next();
}

}  // namespace tarv
