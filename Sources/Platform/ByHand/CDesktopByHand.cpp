// The screen by hand: stacking, activation, capture, and the order in which windows die.

#include "Platform/ByHand/CDesktopByHand.h"

#include <algorithm>
#include <utility>

#include "Platform/ByHand/CWindowByHand.h"

namespace tarv {

namespace {

bool holds(const CIntRect& rect, int32_t x, int32_t y) {
    return x >= rect.left && x < rect.right && y >= rect.top && y < rect.bottom;
}

/// Pixels from a point to a rectangle, in the larger of both directions.
int32_t distanceTo(const CIntRect& rect, int32_t x, int32_t y) {
    return std::max({rect.left - x, x - rect.right + 1, rect.top - y, y - rect.bottom + 1, 0});
}

}  // namespace

CDesktopByHand::CDesktopByHand(std::vector<CIntRect> monitors) : monitors_(std::move(monitors)) {}

CDesktopByHand::~CDesktopByHand() {
    for (CWindowByHand* window : stack_) {
        window->handle_ = 0;
    }
}

CWindowHandle CDesktopByHand::openHost(const CIntRect& bounds, bool isOfThisProcess) {
    CWindowRequest request;
    request.bounds = bounds;
    hosts_.push_back(std::make_unique<CWindowByHand>(*this, request, nullptr, isOfThisProcess));
    hosts_.back()->isShown_ = true;
    return hosts_.back()->handle();
}

CWindowHandle CDesktopByHand::add(CWindowByHand& window) {
    stack_.push_back(&window);
    lastHandle_ += 4;
    return lastHandle_;
}

CWindowByHand* CDesktopByHand::find(CWindowHandle window) const {
    const auto found =
        std::find_if(stack_.begin(), stack_.end(), [&](const CWindowByHand* w) { return w->handle_ == window; });
    return window == 0 || found == stack_.end() ? nullptr : *found;
}

std::vector<CWindowByHand*> CDesktopByHand::windows() const {
    std::vector<CWindowByHand*> own;
    std::copy_if(stack_.begin(), stack_.end(), std::back_inserter(own), [](auto* w) { return !w->isHost(); });
    return own;
}

CWindowHandle CDesktopByHand::topOf(CWindowHandle window) const {
    const CWindowByHand* found = find(window);
    while (found && found->isChild()) {
        found = find(found->container());
    }
    return found ? found->handle_ : 0;
}

/// The windows of now, for loops whose handlers change them; of two on top of each other the upper one is the last. Its
/// memory is used again, so that a product that allocates nothing can be seen to do so.
class CDesktopByHand::CHandles {
public:
    explicit CHandles(CDesktopByHand& desktop) : desktop_(desktop) {
        if (!desktop.spareHandles_.empty()) {
            all_ = std::move(desktop.spareHandles_.back());
            desktop.spareHandles_.pop_back();
        }
        for (const CWindowByHand* window : desktop.stack_) {
            all_.push_back(window->handle_);
        }
    }
    ~CHandles() {
        all_.clear();
        desktop_.spareHandles_.push_back(std::move(all_));
    }
    CHandles(const CHandles&) = delete;
    CHandles& operator=(const CHandles&) = delete;
    auto begin() const { return all_.begin(); }
    auto end() const { return all_.end(); }

private:
    CDesktopByHand& desktop_;
    std::vector<CWindowHandle> all_;
};

/// The topmost of those that go with a window; 0 for none.
CWindowHandle CDesktopByHand::dependantOf(CWindowHandle window) const {
    const auto found =
        std::find_if(stack_.rbegin(), stack_.rend(), [&](const CWindowByHand* w) { return w->parent_ == window; });
    return found == stack_.rend() ? 0 : (*found)->handle_;
}

/// No role is left to a window that goes.
void CDesktopByHand::forget(CWindowHandle window) {
    std::erase_if(stack_, [&](const CWindowByHand* w) { return w->handle_ == window; });
    for (CWindowHandle* role : {&focus_, &capture_, &grabber_}) {
        *role = *role == window ? 0 : *role;
    }
}

void CDesktopByHand::destroy(CWindowHandle window) {
    // One by one, since their handlers may destroy others of them.
    while (const CWindowHandle next = dependantOf(window)) {
        destroy(next);
    }
    CWindowByHand* found = find(window);
    if (!found) {
        return;
    }
    const CWindowHandle owner = found->owner();
    forget(window);
    found->handle_ = 0;
    found->isShown_ = false;
    found->presented_.clear();
    if (found->handler_) {
        // May delete the window's object.
        found->handler_->onGone();
    } else if (found->isHost_) {
        std::erase_if(hosts_, [&](const auto& host) { return host.get() == found; });
    }
    if (active_ == window) {
        activate(owner);
    }
}

/// Whether the active window is this one or belongs to it.
bool CDesktopByHand::isActiveGroup(const CWindowByHand& window) const {
    const CWindowByHand* active = find(active_);
    while (active && active != &window) {
        active = find(active->owner());
    }
    return active != nullptr;
}

void CDesktopByHand::activate(CWindowHandle window) {
    const CWindowHandle top = topOf(window);
    raise(top);
    if (top != active_) {
        active_ = top;
        focus_ = top;
        tellActivation();
    }
}

/// Calls those whose state is another than they know, first those that lose the activation. A handler may move it on.
void CDesktopByHand::tellActivation() {
    for (const bool isActive : {false, true}) {
        for (const CWindowHandle handle : CHandles(*this)) {
            CWindowByHand* window = find(handle);
            if (!window || window->isChild() || !window->handler_ || window->isToldActive_ == isActive ||
                isActiveGroup(*window) != isActive) {
                continue;
            }
            const CWindowByHand* active = find(active_);
            window->isToldActive_ = isActive;
            window->handler_->onActivation(isActive, active && active->isOfThisProcess_ ? active_ : 0);
        }
    }
    const CWindowByHand* top = find(topOf(grabber_));
    if (top && !isActiveGroup(*top)) {
        loseKeys();
    }
}

/// The window that has grabbed the keys has them no longer.
void CDesktopByHand::loseKeys() {
    const CWindowByHand* window = find(grabber_);
    grabber_ = 0;
    if (window && window->handler_) {
        window->handler_->onKeysLost();
    }
}

/// On top of all, and what it owns on top of it.
void CDesktopByHand::raise(CWindowHandle top) {
    CWindowByHand* window = find(top);
    if (!window) {
        return;
    }
    std::erase(stack_, window);
    stack_.push_back(window);
    for (const CWindowHandle handle : CHandles(*this)) {
        const CWindowByHand* other = find(handle);
        if (other->owner() == top) {
            raise(handle);
        }
    }
}

void CDesktopByHand::shown(CWindowByHand& window, bool isActivated) {
    if (window.isChild()) {
        return;
    }
    raise(window.handle_);
    if (isActivated) {
        activate(window.handle_);
    }
}

void CDesktopByHand::hidden(CWindowByHand& window) {
    if (active_ == window.handle_) {
        activate(window.owner());
    }
}

void CDesktopByHand::setCapture(CWindowHandle window) {
    const CWindowHandle former = capture_;
    capture_ = window;
    CWindowByHand* loser = former == window ? nullptr : find(former);
    if (loser && loser->handler_) {
        CPointerEvent event;
        event.kind = CPointerKind::CaptureLost;
        loser->handler_->onPointer(event);
    }
}

void CDesktopByHand::takeCapture() {
    setCapture(0);
}

void CDesktopByHand::grabKeys(CWindowHandle window, bool isGrabbed) {
    if (isGrabbed) {
        if (grabber_ != window) {
            loseKeys();
        }
        grabber_ = window;
    } else if (grabber_ == window) {
        grabber_ = 0;
    }
}

void CDesktopByHand::requestClose(CWindowHandle window) {
    CWindowByHand* found = find(window);
    if (found && found->handler_) {
        found->handler_->onCloseRequest();
    }
}

void CDesktopByHand::expose(CWindowHandle window, const CIntRect& rect) {
    CWindowByHand* found = find(window);
    if (!found) {
        return;
    }
    found->readPresented();
    const CIntRect lost = rect.intersection(found->inner());
    for (int32_t y = lost.top; y < lost.bottom; ++y) {
        for (int32_t x = lost.left; x < lost.right; ++x) {
            found->picture_.at(x, y) = CWindowByHand::kUnpainted;
        }
    }
    found->invalidate(rect);
}

int32_t CDesktopByHand::paint() {
    int32_t painted = 0;
    for (const CWindowHandle handle : CHandles(*this)) {
        CWindowByHand* window = find(handle);
        if (window && window->handler_ && window->isShown_ && !window->invalid_.isEmpty()) {
            const CIntRect dirty = std::exchange(window->invalid_, CIntRect());
            window->handler_->onPaint(dirty);
            ++painted;
        }
    }
    return painted;
}

void CDesktopByHand::readSurface(const CSurfaceByHand& surface) {
    for (CWindowByHand* window : stack_) {
        const auto& waiting = window->presented_;
        if (std::any_of(waiting.begin(), waiting.end(), [&](const auto& one) { return one.surface == &surface; })) {
            window->readPresented();
        }
    }
}

CIntRect CDesktopByHand::screenBoundsOf(const CWindowByHand& window) const {
    CIntRect bounds = window.bounds_;
    for (const CWindowByHand* in = find(window.container()); in; in = find(in->container())) {
        bounds = bounds.moved(in->bounds_.left, in->bounds_.top);
    }
    return bounds;
}

CWindowByHand* CDesktopByHand::hitIn(CWindowHandle container, int32_t x, int32_t y) const {
    for (auto i = stack_.rbegin(); i != stack_.rend(); ++i) {
        CWindowByHand* window = *i;
        if (window->container() == container && window->isShown_ && holds(screenBoundsOf(*window), x, y)) {
            CWindowByHand* inner = hitIn(window->handle_, x, y);
            return inner ? inner : window;
        }
    }
    return nullptr;
}

CWindowByHand* CDesktopByHand::windowAt(int32_t x, int32_t y) const {
    return hitIn(0, x, y);
}

CIntRect CDesktopByHand::monitorAt(int32_t x, int32_t y) const {
    const auto nearest = std::min_element(monitors_.begin(), monitors_.end(), [&](const auto& a, const auto& b) {
        return distanceTo(a, x, y) < distanceTo(b, x, y);
    });
    return nearest == monitors_.end() ? CIntRect() : *nearest;
}

CIntRect CDesktopByHand::screen() const {
    CIntRect all;
    for (const CIntRect& monitor : monitors_) {
        all = all.unionWith(monitor);
    }
    return all;
}

/// Draws the windows that stand in another one, from the bottom up. `rect` is the part of the screen in the picture.
void CDesktopByHand::drawIn(CWindowHandle container, const CIntRect& clip, const CIntRect& rect,
                            CPictureByHand& picture) {
    for (CWindowByHand* window : stack_) {
        if (window->container() != container || !window->isShown_) {
            continue;
        }
        const CIntRect bounds = screenBoundsOf(*window);
        const CIntRect seen = bounds.intersection(clip);
        const CPictureByHand& own = window->picture();
        for (int32_t y = seen.top; y < seen.bottom; ++y) {
            for (int32_t x = seen.left; x < seen.right; ++x) {
                picture.at(x - rect.left, y - rect.top) = own.at(x - bounds.left, y - bounds.top);
            }
        }
        drawIn(window->handle_, seen, rect, picture);
    }
}

CPictureByHand CDesktopByHand::picture(const CIntRect& rect) {
    CPictureByHand picture(std::max(rect.width(), 0), std::max(rect.height(), 0), kBackground);
    if (!rect.isEmpty()) {
        drawIn(0, rect, rect, picture);
    }
    return picture;
}

}  // namespace tarv
