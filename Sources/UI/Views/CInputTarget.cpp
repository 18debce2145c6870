#include "UI/Views/CInputTarget.h"

#include <utility>

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

// More children than this cost an allocation at each tab.
constexpr int32_t kUsualChildren = 24;
using CSiblings = CArray<CViewBaseCtlEvents*, kUsualChildren>;

/// Whether a rectangle lies in a row above another one: the middle of either is outside the other.
bool isAbove(const CViewRect& a, const CViewRect& b) {
    return a.y + a.height / 2.0 < b.y && b.y + b.height / 2.0 > a.y + a.height;
}

bool isReadBefore(const CViewBaseCtlEvents& a, const CViewBaseCtlEvents& b) {
    const CViewRect& first = a.wholeRect();
    const CViewRect& second = b.wholeRect();
    if (first.isEmpty() || second.isEmpty()) {
        return false;
    }
    return isAbove(first, second) || (!isAbove(second, first) && first.x < second.x);
}

/// The children of a view, row by row, and in a row from left to right.
void inReadingOrder(const CViewBaseCtlEvents& view, CSiblings& siblings) {
    for (CObject* child : view.children()) {
        if (auto* below = dynamic_cast<CViewBaseCtlEvents*>(child)) {
            siblings.append(below);
            for (int32_t i = siblings.count() - 1; i > 0 && isReadBefore(*siblings[i], *siblings[i - 1]); --i) {
                std::swap(siblings[i], siblings[i - 1]);
            }
        }
    }
}

/// Goes through the views below `root` as they are read, and finds the one before or behind `from` that may have focus.
class CFocusWalk {
public:
    explicit CFocusWalk(const CViewBaseCtlEvents* from) : from_(from) {}

    void visit(CViewBaseCtlEvents& view) {
        if (&view == from_) {
            isBehind_ = true;
        } else if (view.isFocusable() && CInputTarget::takesInput(view)) {
            add(view);
        }
        CSiblings siblings;
        inReadingOrder(view, siblings);
        for (CViewBaseCtlEvents* below : siblings) {
            visit(*below);
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

const CViewBaseCtlEvents* CInputTarget::shortenedAt(const CViewBaseCtlEvents* view) {
    for (; view; view = view->isInputView() ? nullptr : view->parentInput()) {
        if (view->shortened().paragraph >= 0) {
            return view;
        }
        for (const CObject* child : view->children()) {
            const auto* below = view->isInputView() ? dynamic_cast<const CViewBaseCtlEvents*>(child) : nullptr;
            if (below && below->isShown() && below->shortened().paragraph >= 0) {
                return below;
            }
        }
    }
    return nullptr;
}

CViewBaseCtlEvents* CInputTarget::nextFocus(CViewBaseCtlEvents& root, CViewBaseCtlEvents* from, bool isBackwards) {
    CFocusWalk walk(from);
    walk.visit(root);
    return isBackwards ? walk.former() : walk.next();
}

}  // namespace tarv
