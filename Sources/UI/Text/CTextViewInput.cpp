// A text view as a list: rows under the pointer, selection, keys, scrolling.

#include <algorithm>
#include <cmath>

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"
#include "Platform/Keyboard.h"
#include "UI/Text/CTextView.h"

namespace tarv {

namespace {

constexpr double kRowsANotch = 3.0;

double realOf(const CAttributeMap& params, const char* name) {
    const auto found = params.find(name);
    return found == params.end() ? 0.0 : found->second.asReal();
}

}  // namespace

int32_t CTextView::paragraphAt(double x, double y) const {
    const CViewRect box = area().box();
    if (x < box.x || x >= box.x + visibleWidth() || y < box.y || y >= box.y + visibleHeight()) {
        return -1;
    }
    return layout_.rowAt(static_cast<int32_t>(std::floor(y)) - textOrigin().y);
}

CViewRect CTextView::rowRect(int32_t index) const {
    if (index < 0 || index >= paragraphCount()) {
        return {};
    }
    const int32_t top = layout_.rowTop(index);
    return {area().box().x, static_cast<double>(textOrigin().y + top), visibleWidth(),
            static_cast<double>(layout_.rowTop(index + 1) - top)};
}

void CTextView::redrawRow(int32_t index) {
    const CViewRect rect = rowRect(index);
    if (!rect.isEmpty()) {
        requestRedraw(rect);
    }
}

void CTextView::setHovered(int32_t index) {
    if (index != hovered_) {
        redrawRow(hovered_);
        hovered_ = index;
        redrawRow(hovered_);
    }
}

void CTextView::setSelected(int32_t index) {
    if (index != selected_) {
        redrawRow(selected_);
        selected_ = index;
        redrawRow(selected_);
    }
}

void CTextView::selectParagraph(int32_t index) {
    if (!isList_ || index < -1 || index >= paragraphCount() || index == selected_) {
        return;
    }
    setSelected(index);
    scrollToParagraph(index);
}

CError* CTextView::selectByUser(int32_t index) {
    if (index == selected_) {
        return nullptr;
    }
    setSelected(index);
    const CObjectWatch watch(*this);
    CError* error = setAttribute("selected-paragraph", CAttributeValue::fromInt(index));
    if (error || !watch.isAlive() || selected_ != index) {
        return error;
    }
    return sendParagraphEvent("selected-paragraph-changed", index);
}

CError* CTextView::sendParagraphEvent(const char* name, int32_t index) {
    if (!hasCommandOn(name) && (!notifyServer() || !notifyServer()->hasListeners(fullName(), name))) {
        return nullptr;
    }
    CAttributeMap params;
    params["index"] = CAttributeValue::fromInt(index);
    params["text"] = CAttributeValue::fromPlainString(paragraphText(index));
    return inputEvent(name, params);
}

CError* CTextView::paragraphChosen(int32_t index) {
    return sendParagraphEvent("paragraph-chosen", index);
}

int32_t CTextView::rowOf(const CAttributeMap& params) const {
    return isList_ ? paragraphAt(realOf(params, "actual-x"), realOf(params, "actual-y")) : -1;
}

/// The pointer is on a row, or on none.
CError* CTextView::follow(const CAttributeMap& params) {
    endWaitingIfMoved(params);
    const int32_t row = rowOf(params);
    setHovered(row);
    return isDropDown_ && row >= 0 ? selectByUser(row) : nullptr;
}

CError* CTextView::mouseEnter(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = follow(params);
    return error || !watch.isAlive() ? error : CView::mouseEnter(params);
}

CError* CTextView::mouseMove(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = follow(params);
    return error || !watch.isAlive() ? error : CView::mouseMove(params);
}

CError* CTextView::mouseExit(CAttributeMap& params) {
    setHovered(-1);
    endWaiting();
    return CView::mouseExit(params);
}

/// Beside the rows nothing changes.
CError* CTextView::pressRow(int32_t index, bool isSelecting) {
    if (!isSelecting || index < 0) {
        return nullptr;
    }
    const bool isCancelled = index == selected_ && !isDropDown_ && getAttrBool("is-selected-paragraph-click-cancels");
    return selectByUser(isCancelled ? -1 : index);
}

CError* CTextView::mousePress(CAttributeMap& params) {
    const int32_t row = rowOf(params);
    const auto found = params.find("is-double-click");
    const bool isDouble = row >= 0 && found != params.end() && found->second.asBool();
    if (row >= 0 && row == selected_ && !isDouble) {
        waitForEdit(row, params);
    } else {
        endWaiting();
    }
    const CObjectWatch watch(*this);
    // The second press of a double click means the row that the first one selected.
    CError* error = pressRow(row, !isDouble || row != selected_);
    if (!error && watch.isAlive() && isDouble) {
        error = sendParagraphEvent("paragraph-dbl-clicked", row);
        if (!error && watch.isAlive() && !isDropDown_) {
            error = paragraphChosen(row);
        }
    }
    if (!error && watch.isAlive()) {
        error = CView::mousePress(params);
    }
    return error || !watch.isAlive() || isList_ ? error : openEdit();
}

CError* CTextView::mousePressR(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = pressRow(rowOf(params), getAttrBool("is-right-click-selects"));
    return error || !watch.isAlive() ? error : CView::mousePressR(params);
}

CError* CTextView::mouseRelease(CAttributeMap& params) {
    beginWaiting();
    const int32_t row = isDropDown_ ? rowOf(params) : -1;
    const CObjectWatch watch(*this);
    CError* error = row >= 0 ? selectByUser(row) : nullptr;
    if (!error && watch.isAlive() && row >= 0) {
        error = paragraphChosen(row);
    }
    return error || !watch.isAlive() ? error : CView::mouseRelease(params);
}

void CTextView::scrollBy(double pixels) {
    const double whole = CViewScroll::contentOf(area()).height;
    if (whole > 0.0) {
        area().setOffsetY(area().value(CViewCell::OffsetY) + pixels / whole);
    }
}

void CTextView::scrollToParagraph(int32_t index) {
    const CViewRect row = rowRect(index);
    if (row.isEmpty() || !area().isScrollable()) {
        return;
    }
    const CViewRect box = area().box();
    const CViewRect content = CViewScroll::contentOf(area());
    const double bottom = index == paragraphCount() - 1 ? content.bottom() : row.bottom();
    const double below = bottom - (box.y + visibleHeight());
    const double above = box.y - (index == 0 ? content.y : row.y);
    if (above > 0.0) {
        scrollBy(-above);
    } else if (below > 0.0) {
        scrollBy(std::min(below, -above));
    }
}

/// A notch is three lines, in a list three rows.
CError* CTextView::mouseWheel(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CView::mouseWheel(params);
    if (error || !watch.isAlive() || isHandled(params) || !area().isScrollable() ||
        area().value(CViewCell::RatioY) >= 1.0F) {
        return error;
    }
    const int32_t row = isList_ && paragraphCount() > 0 ? layout_.rowTop(1) - layout_.rowTop(0) : fonts_.lineHeight();
    scrollBy(-realOf(params, "delta") * kRowsANotch * row);
    setHandled(params);
    return follow(params);
}

/// The row that a key leads to from the selected one; -1 for another key.
int32_t CTextView::rowOfKey(int32_t key) const {
    const int32_t last = paragraphCount() - 1;
    const int32_t height = last >= 0 ? layout_.rowTop(1) - layout_.rowTop(0) : 1;
    const int32_t page = std::max(static_cast<int32_t>(visibleHeight() / std::max(height, 1)) - 1, 1);
    const auto stepped = [&](int32_t step) {
        return std::clamp(selected_ < 0 ? (step > 0 ? 0 : last) : selected_ + step, 0, last);
    };
    switch (key) {
        case kKeyUp:
            return stepped(-1);
        case kKeyDown:
            return stepped(1);
        case kKeyPageUp:
            return stepped(-page);
        case kKeyPageDown:
            return stepped(page);
        case kKeyHome:
            return 0;
        case kKeyEnd:
            return last;
        default:
            return -1;
    }
}

CError* CTextView::keyPress(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CView::keyPress(params);
    if (error || !watch.isAlive() || isHandled(params) || !isList_ || paragraphCount() == 0) {
        return error;
    }
    const auto found = params.find("keycode");
    const int32_t key = found == params.end() ? 0 : found->second.asInt();
    endWaiting();
    if (key == kKeyF2 && isEditable(selected_)) {
        setHandled(params);
        return openEdit(selected_);
    }
    if (key == kKeyEnter && selected_ >= 0) {
        setHandled(params);
        return paragraphChosen(selected_);
    }
    const int32_t row = rowOfKey(key);
    if (row < 0) {
        return nullptr;
    }
    setHandled(params);
    scrollToParagraph(row);
    return selectByUser(row);
}

}  // namespace tarv
