#include "UI/Text/CTextView.h"

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "UI/Text/CEditBox.h"

namespace tarv {

namespace {

constexpr double kDefaultSpacing = 10.0;

int32_t pixelAt(double position) {
    return static_cast<int32_t>(std::lround(position));
}

}  // namespace

CTextView::~CTextView() {
    if (editBox_) {
        editBox_->ownerGoes();
    }
    endInput();
}

CError* CTextView::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CTextView::textChanged>("title");
    descriptor.addHandler<&CTextView::fontChanged>("font-name");
    descriptor.addHandler<&CTextView::fontChanged>("inherited-font-name");
    for (const char* name : {"is-text-wrapped", "is-text-shortened", "text-alignment", "paragraph-spacing"}) {
        descriptor.addHandler<&CTextView::settingsChanged>(name);
    }
    for (const char* name : {"text-color", "text-color1", "text-color2", "paragraph-hover-color",
                             "paragraph-select-color", "paragraph-select-text-color"}) {
        descriptor.addHandler<&CTextView::colorsChanged>(name);
    }
    descriptor.addHandler<&CTextView::listChanged>("is-list");
    descriptor.addHandler<&CTextView::listChanged>("is-drop-down-behavior-disabled");
    descriptor.addHandler<&CTextView::selectedChanged>("selected-paragraph");
    descriptor.addHandler<&CTextView::paragraphsChanged>("update-paragraphs");
    descriptor.addHandler<&CTextView::editOnEvent>("edit-text");
    return CView::initClass(descriptor);
}

CError* CTextView::finishInit() {
    TARV_TRY(CView::finishInit());
    readList();
    readFont();
    updateText();
    classColorsChanged();
    return selectedChanged();
}

CError* CTextView::childAdded(CObject* child) {
    TARV_TRY(CView::childAdded(child));
    return paragraphsChanged();
}

void CTextView::removeChild(CObject* child) {
    CView::removeChild(child);
    isStale_ = isStale_ || child->getAttrBool("is-paragraph");
    if (isStale_ && state() == CObjectState::Finished) {
        startTimer();
    }
}

/// A child that is being added has no attributes yet: its text is read at the next render tick.
CError* CTextView::paragraphsChanged() {
    if (state() == CObjectState::Finished) {
        isStale_ = true;
        startTimer();
    }
    return nullptr;
}

void CTextView::readParagraphs() {
    readList();
    updateText();
}

bool CTextView::animate(double time) {
    if (isStale_) {
        readParagraphs();
    }
    const CObjectWatch watch(*this);
    TARV_CONSUME(editWhenDue(time));
    return !watch.isAlive() || CView::animate(time) || isWaiting();
}

CError* CTextView::fontChanged() {
    if (state() == CObjectState::Finished) {
        readFont();
        layOut();
    }
    return nullptr;
}

CError* CTextView::settingsChanged() {
    if (state() == CObjectState::Finished) {
        layOut();
    }
    return nullptr;
}

CError* CTextView::colorsChanged() {
    if (state() == CObjectState::Finished) {
        classColorsChanged();
    }
    return nullptr;
}

CError* CTextView::listChanged() {
    if (state() == CObjectState::Finished) {
        readList();
        layOut();
    }
    return nullptr;
}

CError* CTextView::selectedChanged() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    if (!isList_ && !getAttrString("selected-paragraph").isEmpty()) {
        TARV_TRY(listChanged());
    }
    selectParagraph(getAttrIntOr("selected-paragraph", -1));
    return nullptr;
}

void CTextView::readSettings() {
    const CString& alignment = getAttrString("text-alignment");
    settings_.alignment = alignment == CString("center") ? 0 : alignment == CString("right") ? 1 : -1;
    const double spacing = getAttrRealOr("paragraph-spacing", kDefaultSpacing) * CApplication::uiScale();
    settings_.paragraphSpacing = pixelAt(std::clamp(spacing, 0.0, 65535.0));
    settings_.isList = isList_;
    wantsWrap_ = getAttrBoolOr("is-text-wrapped", true);
    isShortened_ = getAttrBool("is-text-shortened");
}

void CTextView::readList() {
    isDropDown_ = !getAttrBoolOr("is-drop-down-behavior-disabled", true);
    const bool isImplied = isDropDown_ || hasParagraphChildren() || !getAttrString("selected-paragraph").isEmpty();
    const bool wasList = isList_;
    isList_ = getAttrBoolOr("is-list", isImplied);
    if (isList_ != wasList) {
        classColorsChanged();
    }
}

void CTextView::updateText() {
    isStale_ = false;
    const bool hadColors = !source_.colorNames().isEmpty();
    readSource();
    hovered_ = -1;
    layOut();
    if (selected_ >= paragraphCount()) {
        selectParagraph(-1);
    }
    // Images bring colours with them.
    if (hadColors || !source_.colorNames().isEmpty()) {
        classColorsChanged();
    }
}

bool CTextView::isWrapping() const {
    // A compact width follows the text; where a target gives the width, the text follows.
    return wantsWrap_ &&
           (area().widthMode() != CViewLengthMode::Compact || area().placement() == CViewPlacement::Match);
}

double CTextView::visibleWidth() const {
    const double bar = area().isScrollable() ? area().value(CViewCell::ScrollerWidth) : 0.0;
    return std::max(area().value(CViewCell::Width) - bar, 0.0);
}

double CTextView::visibleHeight() const {
    const double bar = area().isScrollable() ? area().value(CViewCell::ScrollerHeight) : 0.0;
    return std::max(area().value(CViewCell::Height) - bar, 0.0);
}

int32_t CTextView::innerWidth() const {
    const double borders = area().value(CViewCell::InnerLeft) + area().value(CViewCell::InnerRight);
    return std::max(pixelAt(visibleWidth() - borders), 1);
}

int32_t CTextView::innerHeight() const {
    const double borders = area().value(CViewCell::InnerTop) + area().value(CViewCell::InnerBottom);
    return std::max(pixelAt(visibleHeight() - borders), 1);
}

void CTextView::runWrapper(bool isWrapped, int32_t width) {
    settings_.isWrapped = isWrapped;
    settings_.width = width;
    CTextWrapper::layOut(source_, fonts_, settings_, layout_);
    ++layoutCount_;
}

/// Lays the text out whole: without wrapping, and wrapped if the view is there and too narrow.
void CTextView::layOut() {
    readSettings();
    runWrapper(false, std::max(settings_.width, 1));
    naturalWidth_ = layout_.width();
    if (getAttrString("compact-width").isEmpty()) {
        area().setCompactWidth(naturalWidth_);
    }
    settings_.width = 0;
    if (isPlacedOnce_) {
        fit();
    } else if (getAttrString("compact-height").isEmpty()) {
        area().setCompactHeight(layout_.height());
    }
    requestRedraw();
    layoutChanged();
}

/// Brings the lines to the width that the view has now.
void CTextView::fit() {
    const CViewRect box = area().box();
    const bool isScrollable = area().isScrollable();
    setAreaRect(kTextArea, isScrollable ? CViewRect{box.x, box.y, visibleWidth(), visibleHeight()} : wholeRect());
    const int32_t inner = innerWidth();
    const bool isWrapped = isWrapping() && naturalWidth_ > inner;
    const int32_t width = isWrapping() ? inner : std::max(inner, isScrollable ? naturalWidth_ : 0);
    if (width != settings_.width || isWrapped != settings_.isWrapped) {
        if (isWrapped || settings_.isWrapped) {
            runWrapper(isWrapped, width);
        } else {
            settings_.width = width;
            CTextWrapper::align(layout_, settings_.alignment, width);
        }
        requestRedraw();
        layoutChanged();
    }
    if (getAttrString("compact-height").isEmpty()) {
        area().setCompactHeight(layout_.height());
    }
    updateRatios();
    if (!isDrawnOnce_) {
        scrollToParagraph(selected_);
    }
}

void CTextView::updateRatios() {
    if (!area().isScrollable()) {
        return;
    }
    const double width = layout_.width() + area().value(CViewCell::InnerLeft) + area().value(CViewCell::InnerRight);
    const double height = layout_.height() + area().value(CViewCell::InnerTop) + area().value(CViewCell::InnerBottom);
    area().setRatioX(width > visibleWidth() ? visibleWidth() / width : 1.0);
    area().setRatioY(height > visibleHeight() ? visibleHeight() / height : 1.0);
}

CError* CTextView::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const CObjectWatch watch(*this);
    CError* error = CView::onAreaChanged(visibleRect, wholeRect);
    if (watch.isAlive() && state() == CObjectState::Finished && area().isEffectivelyVisible()) {
        isPlacedOnce_ = true;
        fit();
    }
    return error;
}

/// Something between the box and its text has changed, which the rectangles may not show.
CError* CTextView::innerChanged() {
    if (isPlacedOnce_) {
        fit();
        requestRedraw();
    }
    return nullptr;
}

CError* CTextView::attrInnerBorder() {
    TARV_TRY(CView::attrInnerBorder());
    return innerChanged();
}

CError* CTextView::attrScrollerWidth() {
    TARV_TRY(CView::attrScrollerWidth());
    return innerChanged();
}

CError* CTextView::attrScrollerHeight() {
    TARV_TRY(CView::attrScrollerHeight());
    return innerChanged();
}

CError* CTextView::attrWidth() {
    TARV_TRY(CView::attrWidth());
    return innerChanged();
}

CError* CTextView::attrInlineAlignmentV() {
    TARV_TRY(CView::attrInlineAlignmentV());
    requestRedraw();
    return nullptr;
}

CTextView::CPoint CTextView::textOrigin() const {
    const CViewRect content = CViewScroll::contentOf(area());
    CPoint origin{pixelAt(content.x) + pixelAt(area().value(CViewCell::InnerLeft)),
                  pixelAt(content.y) + pixelAt(area().value(CViewCell::InnerTop))};
    if (!isAtTop()) {
        const int32_t room = innerHeight() - layout_.height();
        const int32_t alignment = area().inlineAlignmentV();
        // One line that is too high keeps its middle; several keep their beginning.
        if (room > 0 || layout_.lineCount() == 1) {
            origin.y += alignment < 0 ? 0 : alignment > 0 ? room : (room >= 0 ? room / 2 : -((1 - room) / 2));
        }
    }
    return origin;
}

}  // namespace tarv
