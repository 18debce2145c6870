#pragma once

#include "UI/Text/CDynamicList.h"
#include "UI/Text/CTextView.h"

namespace tarv {

/// The list in a popup window (`ui:popup-list`): a drop-down list, of one paragraph a row, that takes the keys while
/// its window is active. A row that is chosen closes the window, and goes to the receiver as `popup-result` with
/// `index`, `text`, `id` (of a dynamic list), `list-id` and `original-opener`. Thread: that of the window.
///
/// Attributes of the popup's root view, from the parameters of openPopup:
///   popup-text-source       path, from the opener, of what has the rows; by default the opener's child `value-list`: a
///                           CDynamicList, an object with `is-paragraph` children or with `content` children (a row
///                           each, by `value`), or one whose `title` has a row a line
///   popup-dynamic-list-parent-id   id of the row that this list is below, in a dynamic list
///   selected-item           row that is selected at first; one outside is ignored
///   popup-inner-border      inner border of this view
///   list-id                 given back
///   original-opener         full name of the view that opened the first of nested lists; by default the opener
///   result-target           path, from the original opener, of the receiver; by default what `popup-result-target`
///   says result-target-redirect-attr   attribute of the receiver with the path of another one, and so on
///   result-target-index-attr      attribute of the receiver that is set to the index before it gets the event
///   width                   set by the window where the opener says how wide it is: this view fills it
///   popup-height-limit      set by the window where the monitor is too low: this view fills it, and scrolls
/// The list below a row opens by a press on it, and where the pointer rests on it for kHoverSeconds.
/// A row of a dynamic list that is checked, and one that a list is below, have a picture behind their text. Lists are
/// nested kMaxDepth deep at most.
/// Keys beside those of lists: Space chooses, a letter goes to the next row that begins with it, Right opens the list
/// below a row, Left closes that list.
class CPopupList : public CTextView {
public:
    static constexpr int32_t kMaxDepth = 16;
    static constexpr double kHoverSeconds = 0.25;

    ~CPopupList() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* finishInit() override;
    bool grabsKeys() const override { return true; }
    /// The selected row shows it.
    CViewBaseCtlEvents* focusView() override { return nullptr; }
    [[nodiscard]] CError* keyPress(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;

protected:
    [[nodiscard]] bool animate(double now) override;
    [[nodiscard]] CError* paragraphChosen(int32_t index) override;
    [[nodiscard]] CError* inputEvent(const CString& name, CAttributeMap& params) override;

private:
    [[nodiscard]] CError* fillRows();
    [[nodiscard]] CError* addRow(const CDynamicListRows::CRow& row);
    [[nodiscard]] CError* addMarks(CObject& made, const CDynamicListRows::CRow& row);
    [[nodiscard]] CError* addRowsOf(const CObject& source);
    [[nodiscard]] CError* addDynamicRows(CDynamicList& source);
    [[nodiscard]] CError* limitWidth();
    [[nodiscard]] CError* limitHeight();
    [[nodiscard]] CError* openSubList(int32_t index, const CString& id);
    [[nodiscard]] CError* answer(CAttributeMap& params);
    [[nodiscard]] CError* findTarget(CObject*& target) const;
    [[nodiscard]] CError* closeAll();
    [[nodiscard]] CError* close();
    const CObject* row(int32_t index) const;
    int32_t depth() const;
    int32_t rowBeginningWith(uint16_t unit) const;
    CObject* opener() const;
    CObject* originalOpener() const;
    const CString& param(const char* name) const;

    void noteHover();
    bool isHovering() const { return hoverRow_ >= 0; }
    [[nodiscard]] CError* openHovered(double now);

    static constexpr int32_t kOpeningTicks = 3;
    int32_t openingTicks_ = kOpeningTicks;
    int32_t hoverRow_ = -1;  ///< whose list is to open, -1 for none
    int32_t lastHover_ = -1;
    double hoverSince_ = 0.0;
};

}  // namespace tarv
