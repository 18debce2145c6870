// The labels of a ruler.

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "UI/Binding/CMinMax.h"
#include "UI/Controls/Surface/CRuler.h"
#include "UI/Controls/Surface/CRulerScale.h"
#include "UI/Text/CTextView.h"

namespace tarv {

namespace {

constexpr double kLabelShift = 3.0;
constexpr double kLabelSize = 13.0;
// Between two labels, at scale 1.0.
constexpr double kLabelGap = 2.0;
constexpr const char* kHilite = "hilite";

}  // namespace

CError* CRuler::readTexts() {
    texts_ = {};
    if (!getAttrBoolOr("is-show-labels", true)) {
        return nullptr;
    }
    if (!getAttrString("titles").isEmpty()) {
        auto* list = dynamic_cast<CDynamicList*>(findObject(getAttrString("titles")));
        return list ? list->generateSubList({}, texts_) : nullptr;
    }
    const CString& format = getAttrString("label-format");
    for (const double value : values_) {
        texts_.add(CRulerScale::text(format, value), {});
    }
    return nullptr;
}

void CRuler::removeChild(CObject* child) {
    CView::removeChild(child);
    for (int32_t i = labels_.count() - 1; i >= 0; --i) {
        if (labels_[i] == child) {
            labels_.removeAt(i);
        }
    }
}

bool CRuler::cutLabels(int32_t count) {
    const CObjectWatch watch(*this);
    while (watch.isAlive() && labels_.count() > count) {
        CView* last = labels_.last();
        labels_.removeLast();
        delete last;
    }
    return watch.isAlive();
}

CError* CRuler::updateLabels() {
    if (!cutLabels(texts_.count())) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    while (labels_.count() < texts_.count()) {
        CError* error = makeLabel(labels_.count());
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    isShort_ = false;
    CError* error = setTexts(false);
    if (!error && watch.isAlive()) {
        placeLabels();
        markHovered();
    }
    return error;
}

/// A label finds by full names what stands beside the ruler.
void CRuler::addPath(CAttributeMap& attributes, const char* name) const {
    const CString& path = getAttrString(name);
    const CObject* found = path.isEmpty() ? nullptr : findObject(path);
    if (!path.isEmpty()) {
        attributes[name] = CAttributeValue::fromString(found ? found->fullName() : path);
    }
}

CError* CRuler::makeLabel(int32_t index) {
    const auto textOr = [&](const char* name, const char* fallback) {
        const CString& text = getAttrString(name);
        return text.isEmpty() ? CString(fallback) : text;
    };
    CAttributeMap attributes;
    attributes["text-alignment"] = CAttributeValue::fromString(textOr("label-text-align", "center"));
    attributes["unclip-level"] = CAttributeValue::fromString(textOr("label-unclip-level", "1"));
    attributes["element"] = CAttributeValue::fromInt(index);
    addPath(attributes, "bridge");
    addPath(attributes, "group-selector");
    for (const char* name : {"tab-group", "accept-chars", "virtual-keyboard-minus-char"}) {
        if (!getAttrString(name).isEmpty()) {
            attributes[name] = CAttributeValue::fromPlainString(getAttrString(name));
        }
    }
    const CObjectWatch watch(*this);
    CView* label = nullptr;
    CError* error = createChildOf(label, textOr("label-tag", "ui:ruler-label"), "label", true, &attributes);
    if (!watch.isAlive()) {
        return error;
    }
    if (error || !label) {
        logError(error);
        TARV_FAIL("@tarvstr_CRuler_update_FailLabel Unable to create a label.");
    }
    labels_.append(label);
    return nullptr;
}

/// A readout shows the value that it is bound to, in its own form or in the short one.
CError* CRuler::setReadoutForms(bool isShort) {
    static const CString kForm("format-id");
    static const CString kShortForm("brief");
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < labels_.count(); ++i) {
        const CString form = labels_[i]->getAttrString(kForm);
        if ((form == kShortForm) == isShort) {
            continue;
        }
        readoutForm_ = isShort ? form : readoutForm_;
        CError* error = labels_[i]->setAttribute(kForm, isShort                  ? kShortForm
                                                        : readoutForm_.isEmpty() ? "normal"
                                                                                 : readoutForm_);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

CError* CRuler::setTexts(bool isShort) {
    if (hasReadouts()) {
        return setReadoutForms(isShort);
    }
    static const CString kTitle("title");
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < std::min(labels_.count(), texts_.count()); ++i) {
        const CString text = isShort ? CRulerScale::shortText(texts_[i].text) : texts_[i].text;
        CView& label = *labels_[i];
        CError* error = label.getAttrString(kTitle) == text ? nullptr
                        : texts_[i].isPlain                 ? label.setAttributePlain(kTitle, text)
                                                            : label.setAttribute(kTitle, text);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

bool CRuler::hasReadouts() const {
    return !getAttrString("bridge").isEmpty();
}

/// Texts of readouts become others without a change of the ruler: it looks at each render tick.
void CRuler::followReadouts() {
    double width = 0.0;
    for (const CView* label : labels_) {
        width = width * 2.0 + label->area().value(CViewCell::ContentWidth);
    }
    if (width != readoutWidth_) {
        readoutWidth_ = width;
        placeLabels();
    }
}

/// No label comes nearer to the one beside it; `gap` in pixels at scale 1.0.
bool CRuler::fits(int32_t pitch, double gap) const {
    for (int32_t i = 0; i + 1 < labels_.count(); ++i) {
        const double both =
            labels_[i]->area().value(CViewCell::ContentWidth) + labels_[i + 1]->area().value(CViewCell::ContentWidth);
        if (both / 2.0 + gap * CApplication::uiScale() > pitch) {
            return false;
        }
    }
    return true;
}

/// May end with this view destroyed.
CError* CRuler::chooseTexts(int32_t pitch) {
    const CObjectWatch watch(*this);
    if (isShort_ && pitch != fittedPitch_) {
        isShort_ = false;
        CError* error = setTexts(false);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    fittedPitch_ = pitch;
    if (isShort_ || fits(pitch, getAttrRealOr("label-gap", kLabelGap))) {
        return nullptr;
    }
    isShort_ = true;
    return setTexts(true);
}

void CRuler::placeLabels() {
    if (labels_.isEmpty() || !hasArea()) {
        return;
    }
    const CSurfaceLayout layout = this->layout();
    const bool isRow = isInColumns() && !isVertical() && layout.pitch() > 0;
    if (isRow) {
        const CObjectWatch watch(*this);
        TARV_CONSUME(chooseTexts(layout.pitch()));
        if (!watch.isAlive()) {
            return;
        }
    }
    showSome(isRow && !fits(layout.pitch(), kLabelGap));
    for (int32_t i = 0; i < labels_.count(); ++i) {
        placeLabel(i, layout);
    }
}

void CRuler::showSome(bool isEverySecond) {
    for (int32_t i = 0; i < labels_.count(); ++i) {
        const bool isNextToHovered = isEverySecond && hovered_ >= 0 && std::abs(i - hovered_) == 1;
        labels_[i]->area().setVisible(i == hovered_ || !isEverySecond || (i % 2 == 0 && !isNextToHovered));
    }
}

/// Against its tick, in the middle of its column or of the pixel of its value; device pixels.
void CRuler::placeLabel(int32_t index, const CSurfaceLayout& layout) {
    const CIntRect whole = box();
    const double scale = CApplication::uiScale();
    const auto height = static_cast<int32_t>(std::lround(getAttrRealOr("label-size", kLabelSize) * scale));
    const bool isColumn = isInColumns();
    const bool isAtValue = !isColumn && minMax_;
    bool isNumber = false;
    const double titled = CString::toDouble(texts_[index].text, &isNumber);
    const double value = getAttrString("titles").isEmpty() ? values_[index] : titled;
    const double middle = isAtValue ? layout.linePixel(minMax_->position(value)) + 0.5 : layout.middle(index);
    const int32_t tick = tickLength();
    const auto shift = static_cast<int32_t>(std::lround(getAttrRealOr("label-shift", kLabelShift) * scale));
    const int32_t away = tick > 0 ? tick + shift : 0;
    const auto wanted = static_cast<int32_t>(std::ceil(labels_[index]->area().value(CViewCell::ContentWidth)));
    CIntRect rect;
    if (isVertical()) {
        // What is wider than the room reaches outwards.
        const auto top = static_cast<int32_t>(std::floor(middle - height / 2.0));
        const int32_t width = std::max(whole.width() - away, wanted);
        const int32_t left = side_ == CSide::Right ? whole.left + away : whole.right - away - width;
        rect = {left, top, left + width, top + height};
    } else {
        // A label that is wider than its column, as a hovered one may be, is centred over it.
        const int32_t width = std::max(isColumn ? layout.pitch() : 0, wanted);
        const auto left = static_cast<int32_t>(std::floor(middle - width / 2.0));
        const int32_t free = whole.height() - height;
        const int32_t top = away == 0               ? whole.top + free / 2
                            : side_ == CSide::Below ? whole.top + away
                                                    : whole.bottom - away - height;
        rect = {left, top, left + width, top + height};
    }
    CViewArea& area = labels_[index]->area();
    area.setWidth({CViewLengthMode::Fixed, static_cast<double>(std::max(rect.width(), 0))});
    area.setHeight({CViewLengthMode::Fixed, static_cast<double>(rect.height())});
    area.setOuterBorders(
        {0.0, static_cast<double>(rect.left - whole.left), 0.0, static_cast<double>(rect.top - whole.top)});
}

void CRuler::markHovered() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < labels_.count(); ++i) {
        static const CString kState(kHilite);
        CView& label = *labels_[i];
        if (label.isStateSet(kState) == (isInColumns() && i == hovered_)) {
            continue;
        }
        TARV_CONSUME(i == hovered_ ? label.setState(kState) : label.unsetState(kState));
        if (!watch.isAlive()) {
            return;
        }
    }
    placeLabels();
}

bool CRuler::isEditable(int32_t index) const {
    const auto* text = index >= 0 && index < labels_.count() ? dynamic_cast<const CTextView*>(labels_[index]) : nullptr;
    return text && text->isEditable(-1);
}

CError* CRuler::edit(int32_t index) {
    return isEditable(index) ? static_cast<CTextView*>(labels_[index])->openEdit() : nullptr;
}

}  // namespace tarv
