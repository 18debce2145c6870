// Windows in memory.

#include "Platform/ByHand/CWindowByHand.h"

#include <algorithm>

#include "Platform/ByHand/CDesktopByHand.h"

namespace tarv {

namespace {

int32_t lengthOf(int32_t from, int32_t to) {
    return std::max(to - from, 0);
}

}  // namespace

CWindowByHand::CWindowByHand(CDesktopByHand& desktop, const CWindowRequest& request, CWindowHandler* handler,
                             bool isOfThisProcess)
    : desktop_(desktop),
      handler_(handler),
      isHost_(handler == nullptr),
      isOfThisProcess_(isOfThisProcess),
      isChild_(request.isChild),
      isTaskbar_(request.isTaskbar),
      isLasting_(request.isLasting),
      isActivated_(request.isActivated),
      parent_(request.isChild ? request.parent : desktop.topOf(request.parent)),
      bounds_(request.bounds),
      title_(request.title),
      picture_(lengthOf(bounds_.left, bounds_.right), lengthOf(bounds_.top, bounds_.bottom), kUnpainted) {
    handle_ = desktop_.add(*this);
    desktop_.countWindow(isHost_ ? 0 : 1);
}

CWindowByHand::~CWindowByHand() {
    handler_ = nullptr;
    if (handle_ != 0) {
        desktop_.destroy(handle_);
    }
    desktop_.countWindow(isHost_ ? 0 : -1);
}

void CWindowByHand::loseContent() {
    std::fill(picture_.pixels.begin(), picture_.pixels.end(), kUnpainted);
    invalid_ = inner();
}

void CWindowByHand::show(bool isShown) {
    if (handle_ == 0 || isShown == isShown_) {
        return;
    }
    isShown_ = isShown;
    if (isShown) {
        loseContent();
        desktop_.shown(*this, isActivated_);
    } else {
        desktop_.hidden(*this);
    }
}

void CWindowByHand::setBounds(const CIntRect& bounds) {
    if (handle_ == 0) {
        return;
    }
    readPresented();
    const CPictureByHand before = picture_;
    bounds_ = bounds;
    picture_ = CPictureByHand(lengthOf(bounds.left, bounds.right), lengthOf(bounds.top, bounds.bottom), kUnpainted);
    const CIntRect kept = before.bounds().intersection(picture_.bounds());
    for (int32_t y = kept.top; y < kept.bottom; ++y) {
        for (int32_t x = kept.left; x < kept.right; ++x) {
            picture_.at(x, y) = before.at(x, y);
        }
    }
    invalid_ = invalid_.intersection(inner());
    if (kept.width() < picture_.width) {
        invalidate({std::max(kept.width(), 0), 0, picture_.width, picture_.height});
    }
    if (kept.height() < picture_.height) {
        invalidate({0, std::max(kept.height(), 0), picture_.width, picture_.height});
    }
}

CIntRect CWindowByHand::screenBounds() const {
    return desktop_.screenBoundsOf(*this);
}

void CWindowByHand::present(const CSurface& surface, int32_t x, int32_t y, const CIntRect& rect) {
    const CIntRect ofSurface{x, y, x + surface.width(), y + surface.height()};
    const CIntRect seen = rect.intersection(ofSurface).intersection(inner());
    ++presentCount_;
    if (handle_ == 0 || seen.isEmpty()) {
        return;
    }
    presentedPixels_ += int64_t{seen.width()} * seen.height();
    presented_.push_back({static_cast<const CSurfaceByHand*>(&surface), x, y, seen});
}

void CWindowByHand::readPresented() {
    for (const CPresented& one : presented_) {
        // Rows at once: benchmarks show their pixels here, too.
        for (int32_t y = one.rect.top; y < one.rect.bottom; ++y) {
            const uint32_t* from = one.surface->row(y - one.y) + (one.rect.left - one.x);
            std::copy_n(from, one.rect.width(), &picture_.at(one.rect.left, y));
        }
    }
    presented_.clear();
}

void CWindowByHand::finishPresenting() {
    readPresented();
}

const CPictureByHand& CWindowByHand::picture() {
    readPresented();
    return picture_;
}

void CWindowByHand::forgetPresented() {
    presentedPixels_ = 0;
    presentCount_ = 0;
}

void CWindowByHand::invalidate(const CIntRect& rect) {
    invalid_ = invalid_.unionWith(rect.intersection(inner()));
}

void CWindowByHand::setCapture() {
    if (handle_ != 0) {
        desktop_.setCapture(handle_);
    }
}

void CWindowByHand::releaseCapture() {
    if (handle_ != 0 && desktop_.capture() == handle_) {
        desktop_.dropCapture();
    }
}

void CWindowByHand::takeFocus() {
    if (handle_ != 0 && desktop_.focus() != handle_) {
        formerFocus_ = desktop_.focus();
        desktop_.setFocus(handle_);
    }
}

void CWindowByHand::giveFocusBack() {
    if (handle_ != 0 && desktop_.focus() == handle_) {
        desktop_.setFocus(desktop_.find(formerFocus_) ? formerFocus_ : desktop_.topOf(parent_));
    }
}

void CWindowByHand::grabKeys(bool isGrabbed) {
    if (handle_ != 0) {
        desktop_.grabKeys(handle_, isGrabbed);
    }
}

}  // namespace tarv
