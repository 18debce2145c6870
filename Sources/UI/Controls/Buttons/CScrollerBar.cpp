#include "UI/Controls/Buttons/CScrollerBar.h"

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CKeptParams.h"
#include "UI/Drawing/CFramePieces.h"

namespace tarv {

namespace {

constexpr double kLeastButton = 16.0;  ///< at scale 1.0: a finger's hold
constexpr double kNotch = 0.1;         ///< of what is seen
constexpr double kTimerSeconds = 0.1;

double realOf(const CAttributeMap& params, const char* name) {
    const auto found = params.find(name);
    return found == params.end() ? 0.0 : found->second.asReal();
}

}  // namespace

CScrollerBar::~CScrollerBar() {
    endInput();
}

CError* CScrollerBar::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CScrollerBar::scroll>("scroll");
    descriptor.addHandler<&CScrollerBar::scrollBy>("scroll-by");
    descriptor.addHandler<&CScrollerBar::scrollStart>("scroll-start");
    descriptor.addHandler<&CScrollerBar::scrollStop>("scroll-stop");
    descriptor.addHandler<&CScrollerBar::scrollTimer>("scroll-timer");
    descriptor.addHandler<&CScrollerBar::changeRatioBy>("change-ratio-by");
    descriptor.addHandler<&CScrollerBar::switchSnapshot>("switch-snapshot");
    descriptor.addHandler<&CScrollerBar::updateScroller>("update-scroller");
    return CView::initClass(descriptor);
}

CError* CScrollerBar::init() {
    if (!hasAttr("image-set")) {
        TARV_TRY(setAttribute("image-set", CString("shared::is.scroller")));
    }
    if (!hasAttr("image-set-range")) {
        TARV_TRY(setAttribute("image-set-range", CString(isVertical() ? "TrackV" : "TrackH")));
    }
    return CView::init();
}

CError* CScrollerBar::finishInit() {
    TARV_TRY(CView::finishInit());
    const CView* const view = scrolled();
    if (!view) {
        TARV_FAIL("@tarvstr_CScrollerBar_finishInit_NoScrolledView Unable to locate scrolled view '%1'.",
                  getAttrString("scrolled-view"));
    }
    listenObject(view->fullName(), "update-scroller", "update-scroller");
    return nullptr;
}

CView* CScrollerBar::scrolled() const {
    const CString& path = getAttrString("scrolled-view");
    CObject* found = path.isEmpty() ? parent() : findObject(path);
    const auto scrolls = [](const CObject* object) {
        const auto* view = dynamic_cast<const CView*>(object);
        return view && view->hasArea() && view->area().isScrollable();
    };
    while (path.isEmpty() && found && !scrolls(found)) {
        found = found->parent();
    }
    return scrolls(found) ? dynamic_cast<CView*>(found) : nullptr;
}

CScrollerBar::CPlace CScrollerBar::place() const {
    const CView* const view = scrolled();
    if (!view) {
        return {};
    }
    return {view->area().value(isVertical() ? CViewCell::OffsetY : CViewCell::OffsetX),
            view->area().value(isVertical() ? CViewCell::RatioY : CViewCell::RatioX)};
}

double CScrollerBar::contentLength() const {
    const CView* const view = scrolled();
    const CViewRect content = view ? CViewScroll::contentOf(view->area()) : CViewRect();
    return isVertical() ? content.height : content.width;
}

CError* CScrollerBar::setOffset(double offset) {
    CView* const view = scrolled();
    const double held = std::clamp(offset, 0.0, std::max(1.0 - place().ratio, 0.0));
    return view ? view->setAttribute(isVertical() ? "offset-y" : "offset-x", CAttributeValue::fromReal(held)) : nullptr;
}

CError* CScrollerBar::setRatio(double ratio) {
    CView* const view = scrolled();
    return view ? view->setAttribute(isVertical() ? "ratio-y" : "ratio-x", CAttributeValue::fromReal(ratio)) : nullptr;
}

CViewRect CScrollerBar::buttonRect() const {
    const CPlace now = place();
    const CViewRect box = area().box();
    const double length = isVertical() ? box.height : box.width;
    if (now.ratio >= 1.0 || length <= 0.0) {
        return {};
    }
    const double least = getAttrBool("is-show-real-range") ? 1.0 : kLeastButton * CApplication::uiScale();
    const double size = std::min(std::round(std::max(now.ratio * length, least)), length);
    const double start = std::round(now.offset / (1.0 - now.ratio) * (length - size));
    return isVertical() ? CViewRect{box.x, box.y + start, box.width, size}
                        : CViewRect{box.x + start, box.y, size, box.height};
}

double CScrollerBar::along(const CAttributeMap& params) const {
    return realOf(params, isVertical() ? "actual-y" : "actual-x");
}

CError* CScrollerBar::scroll(CAttributeMap& params) {
    return setOffset(realOf(params, "offset"));
}

CError* CScrollerBar::scrollBy(CAttributeMap& params) {
    const double content = contentLength();
    return content > 0.0 ? setOffset(place().offset + realOf(params, "pixels") / content) : nullptr;
}

CError* CScrollerBar::scrollStart(CAttributeMap& params) {
    speed_ = realOf(params, "pixels");
    lastTime_ = -1.0;
    if (speed_ != 0.0) {
        startTimer();
    }
    return nullptr;
}

CError* CScrollerBar::scrollStop() {
    speed_ = 0.0;
    return nullptr;
}

CError* CScrollerBar::scrollTimer() {
    const double content = contentLength();
    return content > 0.0 ? setOffset(place().offset + speed_ * kTimerSeconds / content) : nullptr;
}

bool CScrollerBar::animate(double time) {
    const CObjectWatch watch(*this);
    const bool isMoving = CView::animate(time);
    const double content = contentLength();
    if (speed_ == 0.0 || content <= 0.0) {
        return isMoving;
    }
    const double seconds = lastTime_ < 0.0 ? 0.0 : time - lastTime_;
    lastTime_ = time;
    TARV_CONSUME(setOffset(place().offset + speed_ * seconds / content));
    // A bar that is gone is asked for nothing more.
    return !watch.isAlive() || isMoving || speed_ != 0.0;
}

CError* CScrollerBar::changeRatioBy(CAttributeMap& params) {
    const double factor = realOf(params, "factor");
    if (!getAttrBool("is-resizeable") || !(factor > 0.0)) {
        return nullptr;
    }
    const CPlace before = place();
    const double ratio = std::min(before.ratio * factor, 1.0);
    const CObjectWatch watch(*this);
    CError* error = setRatio(ratio);
    return error || !watch.isAlive() ? error : setOffset(before.offset + (before.ratio - ratio) / 2.0);
}

CError* CScrollerBar::switchSnapshot() {
    if (!getAttrBool("is-snapshots-enabled")) {
        return nullptr;
    }
    const CPlace now = place();
    const CPlace wanted = hasSnapshot_ ? snapshot_ : CPlace{0.0, 1.0};
    snapshot_ = now;
    hasSnapshot_ = true;
    const CObjectWatch watch(*this);
    CError* error = getAttrBool("is-resizeable") ? setRatio(wanted.ratio) : nullptr;
    return error || !watch.isAlive() ? error : setOffset(wanted.offset);
}

CError* CScrollerBar::updateScroller() {
    requestRedraw();
    return nullptr;
}

CError* CScrollerBar::setInputState(CInputState state, bool isSet) {
    isPushed_ = state == CInputState::Pushed ? isSet : isPushed_;
    requestRedraw();
    return CView::setInputState(state, isSet);
}

CError* CScrollerBar::sendOffset(const char* event) {
    CKeptParams sent(*this, sent_, 1);
    sent.params["offset"] = CAttributeValue::fromReal(place().offset);
    return inputEvent(event, sent.params);
}

CError* CScrollerBar::pageTowards(double position) {
    const CViewRect button = buttonRect();
    const double start = isVertical() ? button.y : button.x;
    const double end = isVertical() ? button.bottom() : button.right();
    if (position >= start && position < end) {
        return nullptr;
    }
    return setOffset(place().offset + (position < start ? -place().ratio : place().ratio));
}

CError* CScrollerBar::mousePress(CAttributeMap& params) {
    const auto isDouble = params.find("is-double-click");
    if (isDouble != params.end() && isDouble->second.asBool() && getAttrBool("is-snapshots-enabled")) {
        return switchSnapshot();
    }
    pressAt_ = along(params);
    pressOffset_ = place().offset;
    isDragged_ = getAttrBool("is-pan") || buttonRect().holds(realOf(params, "actual-x"), realOf(params, "actual-y"));
    isPaging_ = !isDragged_ && !buttonRect().isEmpty();
    const CObjectWatch watch(*this);
    CError* error = isPaging_ ? pageTowards(pressAt_) : isDragged_ ? sendOffset("scroll-start") : nullptr;
    return error || !watch.isAlive() ? error : CView::mousePress(params);
}

/// The position of the event counts from this view.
CError* CScrollerBar::autoClick(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = isPaging_ ? pageTowards(along(params) + (isVertical() ? wholeRect().y : wholeRect().x)) : nullptr;
    return error || !watch.isAlive() ? error : CView::autoClick(params);
}

CError* CScrollerBar::mouseMove(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    if (isDragged_) {
        const CViewRect box = area().box();
        const CViewRect button = buttonRect();
        const double room = isVertical() ? box.height - button.height : box.width - button.width;
        const double pixels = along(params) - pressAt_;
        const double content = contentLength();
        const bool isPan = getAttrBool("is-pan");
        const double share = isPan ? (content > 0.0 ? -pixels / content : 0.0)
                                   : (room > 0.0 ? pixels / room * (1.0 - place().ratio) : 0.0);
        CError* error = setOffset(pressOffset_ + share);
        if (!error && watch.isAlive()) {
            error = sendOffset("scroll");
        }
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return CView::mouseMove(params);
}

CError* CScrollerBar::endDrag() {
    const bool wasDragged = isDragged_;
    isDragged_ = false;
    isPaging_ = false;
    return wasDragged ? sendOffset("scroll-stop") : nullptr;
}

CError* CScrollerBar::mouseRelease(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = endDrag();
    return error || !watch.isAlive() ? error : CView::mouseRelease(params);
}

CError* CScrollerBar::mouseCancel(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = endDrag();
    return error || !watch.isAlive() ? error : CView::mouseCancel(params);
}

CError* CScrollerBar::mouseTakeBack(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = isDragged_ || isPaging_ ? setOffset(pressOffset_) : nullptr;
    return error || !watch.isAlive() ? error : CView::mouseTakeBack(params);
}

CError* CScrollerBar::mouseWheel(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CView::mouseWheel(params);
    if (error || !watch.isAlive() || isHandled(params) || place().ratio >= 1.0) {
        return error;
    }
    setHandled(params);
    return setOffset(place().offset - realOf(params, "delta") * kNotch * place().ratio);
}

void CScrollerBar::drawRange(const CString& name, int32_t area, int32_t colorIndex) {
    uint32_t first = 0;
    uint32_t last = 0;
    const CColor* const shown = color(colorIndex);
    if (imageSet() && shown && imageSet()->findRange(name, first, last)) {
        CFramePieces(*imageSet(), first, last).draw(*target().bitmap, areaBox(area), *shown, 1.0, target().clip, 0);
    }
}

CError* CScrollerBar::draw() {
    TARV_TRY(CView::draw());
    const CViewRect button = buttonRect();
    setAreaRect(kButtonArea, button);
    if (button.isEmpty()) {
        return nullptr;
    }
    const CString way(isVertical() ? "V" : "H");
    const int32_t colorIndex = colorSlotCount() > 0 ? 1 : 0;
    const char* const look = isPushed_ ? "Pushed" : isStateSet("hover") ? "Active" : "";
    drawRange(CString("Button") + way + look, kButtonArea, colorIndex);
    return nullptr;
}

}  // namespace tarv
