#include "UI/Text/CTextViewAutoScroll.h"

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"

namespace tarv {

namespace {

constexpr double kDefaultSpeed = 30.0;
constexpr double kDefaultPause = 1.5;
constexpr const char* kActive = "active";

}  // namespace

CTextViewAutoScroll::~CTextViewAutoScroll() {
    endInput();
}

CError* CTextViewAutoScroll::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CTextViewAutoScroll::start>("auto-scroll-start");
    return CTextView::initClass(descriptor);
}

CError* CTextViewAutoScroll::finishInit() {
    TARV_TRY(CTextView::finishInit());
    return start();
}

/// Pixels of the text that do not fit.
double CTextViewAutoScroll::distance() const {
    if (visibleWidth() <= 0.0) {
        return 0.0;
    }
    const double borders = area().value(CViewCell::InnerLeft) + area().value(CViewCell::InnerRight);
    return std::max(std::round(layout().width() + borders - visibleWidth()), 0.0);
}

CError* CTextViewAutoScroll::start() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    lastWidth_ = visibleWidth();
    isSliding_ = lastWidth_ > 0.0 && distance() > 0.0;
    isWaiting_ = true;
    slideTo(0.0);
    if (isSliding_) {
        startTimer();
    }
    updateArrows();
    return nullptr;
}

void CTextViewAutoScroll::layoutChanged() {
    // Arrows that come or go may change the width: they follow at the next tick.
    isWaiting_ = true;
    isSliding_ = true;
    startTimer();
}

CError* CTextViewAutoScroll::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const CObjectWatch watch(*this);
    CError* error = CTextView::onAreaChanged(visibleRect, wholeRect);
    if (watch.isAlive() && visibleWidth() != lastWidth_) {
        layoutChanged();
    }
    return error;
}

/// Where the text stands that many seconds behind its beginning; `isOver` when all rounds are through.
double CTextViewAutoScroll::positionAt(double seconds, bool& isOver) const {
    const double speed = std::max(getAttrRealOr("auto-scroll-speed", kDefaultSpeed) * CApplication::uiScale(), 1.0);
    const double pause = std::max(getAttrRealOr("auto-scroll-pause", kDefaultPause), 0.0);
    const int32_t rounds = std::max(getAttrIntOr("auto-scroll-rounds", 1), 0);
    const double way = distance() / speed;
    const double round = 2.0 * (pause + way);
    isOver = rounds > 0 && seconds >= rounds * round;
    if (isOver || !(round > 0.0)) {
        return 0.0;
    }
    const double time = std::fmod(std::max(seconds, 0.0), round);
    const double there = std::clamp(time - pause, 0.0, way);
    const double back = std::clamp(time - 2.0 * pause - way, 0.0, way);
    return std::round((there - back) * speed);
}

void CTextViewAutoScroll::slideTo(double pixels) {
    position_ = pixels;
    const double whole = CViewScroll::contentOf(area()).width;
    area().setOffsetX(whole > 0.0 ? pixels / whole : 0.0);
}

bool CTextViewAutoScroll::animate(double time) {
    const CObjectWatch watch(*this);
    const bool isMoving = CTextView::animate(time);
    if (!isSliding_) {
        return isMoving;
    }
    const bool isFirst = isWaiting_;
    if (isFirst) {
        isWaiting_ = false;
        begin_ = time;
        lastWidth_ = visibleWidth();
    }
    bool isOver = false;
    const double position = positionAt(time - begin_, isOver);
    isSliding_ = !isOver && distance() > 0.0;
    if (isFirst || !isSliding_ || position != position_) {
        slideTo(isSliding_ ? position : 0.0);
        updateArrows();
    }
    // A view that is gone is asked for nothing more.
    return !watch.isAlive() || isMoving || isSliding_;
}

void CTextViewAutoScroll::updateArrows() {
    const CObjectWatch watch(*this);
    showArrow("auto-scroll-arrow-left", position_ > 0.0);
    if (watch.isAlive()) {
        showArrow("auto-scroll-arrow-right", position_ < distance());
    }
}

void CTextViewAutoScroll::showArrow(const char* name, bool isMore) {
    CObject* found = findChild(name);
    found = found || !parent() ? found : parent()->findChild(name);
    auto* arrow = dynamic_cast<CView*>(found);
    if (!arrow) {
        return;
    }
    const bool isShown = distance() > 0.0;
    const CObjectWatch watch(*arrow);
    if (arrow->getAttrBoolOr("is-visible", true) != isShown) {
        TARV_CONSUME(arrow->setAttribute("is-visible", CAttributeValue::fromBool(isShown)));
    }
    if (watch.isAlive() && arrow->isStateSet(kActive) != (isShown && isMore)) {
        TARV_CONSUME(isShown && isMore ? arrow->setState(kActive) : arrow->unsetState(kActive));
    }
}

}  // namespace tarv
