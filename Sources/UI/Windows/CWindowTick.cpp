// The render tick, and what shows the pictures of the tiles.

#include "Core/CGlobalSettings.h"
#include "Platform/Clock.h"
#include "UI/Windows/CWindow.h"

namespace tarv {

namespace {

constexpr double kLogPeriod = 1.0;
// Half the time since the last one, below 1.
constexpr double kStaticUpdateHalf = 0.5;
/// Ticks that are missed before another call draws one.
constexpr double kOverdueTicks = 2.0;
/// A host that has called idle within this time, in seconds, goes on to do so.
constexpr double kIdleSeconds = 0.25;

}  // namespace

CError* CWindow::renderTick() {
    if (!isDrawnByIdle()) {
        tick();
    }
    return nullptr;
}

/// The timer draws where the host has stopped to call, so that the setting can be taken back in any host.
bool CWindow::isDrawnByIdle() const {
    return globalSettings().isBuiltinRefresh && clockSeconds() - lastIdle_ < kIdleSeconds;
}

void CWindow::tick() {
    if (isClosing_ || !isOpen()) {
        popups_.release();
        return;
    }
    const CBusy busy(*this);
    if (!sendDue() || !sendHere("render")) {
        return;
    }
    now_ = clockSeconds();
    lastTick_ = now_;
    exportLoad();
    if (!busy.isAlive() || map_.isEmpty()) {
        return;
    }
    if ((now_ - lastStaticUpdate_) / 2.0 >= kStaticUpdateHalf) {
        lastStaticUpdate_ = now_;
        if (!sendHere("static-view-update")) {
            return;
        }
    }
    if (!advance(busy)) {
        return;
    }
    draw();
    popups_.release();
    // Of a popup that went inside a destructor.
    if (busy.isAlive()) {
        returnFocus();
    }
}

/// Everything that a tick does to the views before it draws them. False if this window is gone.
bool CWindow::advance(const CBusy& busy) {
    const auto isOver = [&](CError* error) {
        if (!busy.isAlive()) {
            logError(error);
            return true;
        }
        report(nullptr, error);
        return false;
    };
    if (isOver(root_->advanceViews())) {
        return false;
    }
    if (!isBlocked()) {
        router_.update();
    }
    if (busy.isAlive()) {
        CViewBaseCtlEvents* focus = router_.isKeyMode() ? router_.keyFocus() : nullptr;
        focusRing_.follow(*root_, focus ? focus->focusView() : nullptr);
    }
    // What the pointer changes there is drawn as a whole in this tick: other views may draw parts of it.
    return busy.isAlive() && !isOver(root_->placeViews());
}

bool CWindow::isTickOverdue() const {
    const double ticks = isDrawnByIdle() ? 1.0 : kOverdueTicks;
    return clockSeconds() - lastTick_ >= ticks / number("fps", kDefaultFps);
}

void CWindow::idle() {
    lastIdle_ = clockSeconds();
    if (isOpen() && isTickOverdue()) {
        tick();
    }
}

void CWindow::exportLoad() {
    if (flag("is-export-draw-load")) {
        load_.add(map_.load());
        const CString load = CString::fromDouble(load_.value(), 4);
        if (!(load == getAttrString("draw-load"))) {
            TARV_CONSUME(setAttribute("draw-load", load));
        }
    }
}

/// A view, or the placement with null, has failed: logged once a second at most.
void CWindow::report(const CSectorView* view, CError* error) {
    if (!error) {
        return;
    }
    CFailedView* free = nullptr;
    for (CFailedView& failed : failedViews_) {
        const bool isOver = now_ - failed.loggedAt >= kLogPeriod;
        if (failed.view == view && !isOver) {
            delete error;
            return;
        }
        free = isOver ? &failed : free;
    }
    if (free) {
        *free = {view, now_};
    } else {
        failedViews_.append({view, now_});
    }
    logError(addErrorLocation(error, __FILE__, __LINE__, fullName(), CString()));
}

void CWindow::draw() {
    map_.resetLoad();
    if (!map_.isDirty()) {
        return;
    }
    // The system may still read what it was shown last.
    endPresenting();
    map_.render([this](int32_t column, int32_t row, const CIntRect& rect, const CSurface& surface,
                       int32_t surfaceRow) { show(column, row, rect, surface, surfaceRow); },
                [this](const CSectorView& view, CError* error) { report(&view, error); });
}

void CWindow::show(int32_t column, int32_t row, const CIntRect& rect, const CSurface& surface, int32_t surfaceRow) {
    if (!isOpen()) {
        return;
    }
    const int32_t x = column * CSector::kSize;
    const int32_t y = row * CSector::kSize;
    window_->present(surface, x, y - surfaceRow, {rect.left + x, rect.top + y, rect.right + x, rect.bottom + y});
    isPresented_ = true;
}

/// What is drawn already.
void CWindow::showAgain(const CIntRect& rect) {
    map_.present(rect, [this](int32_t column, int32_t row, const CIntRect& part, const CSurface& surface,
                              int32_t surfaceRow) { show(column, row, part, surface, surfaceRow); });
}

void CWindow::endPresenting() {
    if (isPresented_ && window_) {
        window_->finishPresenting();
    }
    isPresented_ = false;
}

void CWindow::onPaint(const CIntRect& dirty) {
    if (dirty.isEmpty()) {
        return;
    }
    showAgain(dirty);
    if (isListened("paint")) {
        CAttributeMap params;
        params["width"] = CAttributeValue::fromInt(dirty.width());
        params["height"] = CAttributeValue::fromInt(dirty.height());
        sendHere("paint", params);
    }
}

}  // namespace tarv
