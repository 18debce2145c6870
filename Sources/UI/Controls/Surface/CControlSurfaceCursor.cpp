// The readout of the hovered point: a view of a template, which shows what is exported.

#include "Core/CObjectWatch.h"
#include "UI/Binding/CUIParam.h"
#include "UI/Controls/Lists/CNumberFormat.h"
#include "UI/Controls/Surface/CControlSurface.h"

namespace tarv {

namespace {

constexpr const char* kTemplate = "ui:control-surface-curpos";
constexpr const char* kFormat = "%.1f";
constexpr const char* kBetween = "  ";

}  // namespace

/// One of the attributes of its look: it is there while it has something to show.
CError* CControlSurface::cursorChanged() {
    if (!isFinished_) {
        return nullptr;
    }
    const bool isWanted = getAttrBool("curpos-show-values") || getAttrBool("curpos-show-labels");
    if (!isWanted) {
        delete cursor_;
        return nullptr;
    }
    if (!cursor_) {
        if (!findTemplate(kTemplate)) {
            TARV_FAIL("@tarvstr_CControlSurface_cursorChanged_NoCursor Unable to create cursor readout object");
        }
        CView* made = nullptr;
        TARV_TRY(createChildOf(made, kTemplate, "curpos", true));
        cursor_ = made;
        cursorColor_ = made->getAttrString("text-color");
    }
    return showCursor();
}

CError* CControlSurface::showCursor() {
    if (!cursor_ || !cursor_->hasArea()) {
        return nullptr;
    }
    const bool isThere = editable_ && hovered_ >= 0 && hovered_ < editable_->count();
    cursor_->area().setVisible(isThere);
    if (!isThere) {
        return nullptr;
    }
    static const CString kPlacement("placement");
    static const CString kColor("text-color");
    static const CString kTitle("title");
    static const CString kBottom("bottom");
    const CString& active = getAttrString("curpos-active-color");
    const CString placement = getAttrString("curpos-alignment") == kBottom ? kBottom : CString("top");
    const CString color = isDragging() && !active.isEmpty() ? active : cursorColor_;
    const CString title = cursorText();
    const CObjectWatch watch(*this);
    for (const auto& [name, text] : {std::pair{&kPlacement, &placement}, {&kColor, &color}, {&kTitle, &title}}) {
        const bool isOther = cursor_->getAttrString(*name) != *text;
        CError* error = isOther ? cursor_->setAttributePlain(*name, *text) : nullptr;
        if (error || !watch.isAlive() || !cursor_) {
            return error;
        }
    }
    return nullptr;
}

/// Of each position that is exported its label, its value, or both.
CString CControlSurface::cursorText() const {
    struct CPosition {
        const char* flag;
        CRole role;
        const char* label;
    };
    static constexpr CPosition kPositions[] = {
        {"is-export-x", CRole::X, "X"}, {"is-export-y", CRole::Y, "Y"}, {"is-export-bw", CRole::BandWidth, "BW"}};
    const bool hasLabels = getAttrBool("curpos-show-labels");
    const bool hasValues = getAttrBool("curpos-show-values");
    const CControlSurfaceGroup::CPoint& point = editable_->point(hovered_);
    const double values[] = {point.x, point.y, point.bandWidth};
    CString whole;
    for (int32_t i = 0; i < 3; ++i) {
        const CUIParam* param = editable_->param(kPositions[i].role);
        if (!param || !getAttrBool(kPositions[i].flag)) {
            continue;
        }
        const CString& title = param->getAttrString("title");
        CString text = !hasLabels ? CString() : title.isEmpty() ? CString(kPositions[i].label) : title;
        if (hasValues) {
            const CString unit = param->unit();
            const CString value = CNumberFormat::text(kFormat, values[i]);
            text = (text.isEmpty() ? value : text + " " + value) + (unit.isEmpty() ? CString() : " " + unit);
        }
        whole = whole.isEmpty() ? text : whole + kBetween + text;
    }
    return whole;
}

}  // namespace tarv
