#include "UI/Views/CTouchTarget.h"

#include <algorithm>

#include "UI/Views/CInputTarget.h"
#include "UI/Views/CSectorMap.h"
#include "UI/Views/CViewBaseCtlEvents.h"

namespace tarv {

namespace {

// A press beside a control counts so many pixels inside its edge: there, the arrow in a button is met, too.
constexpr int32_t kInside = 4;

/// Of the pixels from `first` to `last` and those around them that a finger reaches.
struct CReach {
    CReach(int32_t first, int32_t end) : first(first), last(end - 1) {}
    int32_t size() const { return last - first + 1; }
    bool holds(int32_t at) const {
        const int32_t beside = std::max(CTouchTarget::kSize - size(), 0) / 2;
        return at >= first - beside && at <= last + beside;
    }
    int32_t distance(int32_t at) const { return std::max({first - at, at - last, 0}); }
    int32_t inside(int32_t at) const {
        const int32_t inset = std::min(kInside, (size() - 1) / 2);
        return std::clamp(at, first + inset, last - inset);
    }

    int32_t first;
    int32_t last;
};

bool isSmall(const CIntRect& pixels) {
    return std::min(pixels.width(), pixels.height()) < CTouchTarget::kSize;
}

bool isBelow(const CViewBaseCtlEvents& view, const CViewBaseCtlEvents& ancestor) {
    const CViewBaseCtlEvents* up = view.parentInput();
    while (up && up != &ancestor) {
        up = up->parentInput();
    }
    return up != nullptr;
}

/// Goes through the views around a point, and keeps the nearest control.
class CNearestControl {
public:
    CNearestControl(const CSectorMap& map, int32_t x, int32_t y, CViewBaseCtlEvents* ground)
        : map_(map), x_(x), y_(y), ground_(ground), found_{ground, x, y} {}

    void visit(CSectorView& candidate) {
        auto* view = dynamic_cast<CViewBaseCtlEvents*>(&candidate);
        if (!view || view->isDecorative() || !CInputTarget::takesInput(*view) || CInputTarget::takerOf(view) != view ||
            (ground_ && !isBelow(*view, *ground_))) {
            return;
        }
        const CIntRect pixels = CSector::pixelsOf(view->visibleRect());
        const CReach across(pixels.left, pixels.right);
        const CReach down(pixels.top, pixels.bottom);
        if (pixels.isEmpty() || !isSmall(pixels) || !across.holds(x_) || !down.holds(y_)) {
            return;
        }
        const int64_t distance =
            int64_t{across.distance(x_)} * across.distance(x_) + int64_t{down.distance(y_)} * down.distance(y_);
        if (distance < least_) {
            take(*view, across.inside(x_), down.inside(y_), distance);
        }
    }
    const CTouchTarget& found() const { return found_; }

private:
    /// What covers the control there keeps it from being meant.
    void take(CViewBaseCtlEvents& view, int32_t x, int32_t y, int64_t distance) {
        CViewBaseCtlEvents* hit = CInputTarget::hit(map_, x, y, true);
        if (hit && (hit == &view || isBelow(*hit, view)) && CInputTarget::takesInput(*hit)) {
            found_.view = hit;
            found_.x = x;
            found_.y = y;
            least_ = distance;
        }
    }

    const CSectorMap& map_;
    int32_t x_;
    int32_t y_;
    CViewBaseCtlEvents* ground_;
    CTouchTarget found_;
    int64_t least_ = INT64_MAX;
};

}  // namespace

CTouchTarget CTouchTarget::at(const CSectorMap& map, int32_t x, int32_t y) {
    CTouchTarget exact;
    exact.view = CInputTarget::hit(map, x, y, true);
    exact.x = x;
    exact.y = y;
    const bool isControl = exact.view && isSmall(CSector::pixelsOf(exact.view->visibleRect()));
    if (isControl) {
        return exact;
    }
    CNearestControl nearest(map, x, y, exact.view);
    const CIntRect around{x - kSize / 2, y - kSize / 2, x + kSize / 2 + 1, y + kSize / 2 + 1};
    map.forEachView(around, [&](CSectorView& view) { nearest.visit(view); });
    return nearest.found();
}

bool CTouchTarget::reaches(const CViewBaseCtlEvents& view, int32_t x, int32_t y) {
    const CIntRect pixels = CSector::pixelsOf(view.visibleRect());
    return CReach(pixels.left, pixels.right).holds(x) && CReach(pixels.top, pixels.bottom).holds(y);
}

}  // namespace tarv
