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
///   popup-template          template of the lists below this one, by default that of open
///   width                   set by the window where the opener says how wide it is: this view fills it
///   popup-height-limit      set by the window where the monitor is too low: this view fills it, and scrolls
/// The list below a row opens beside it by a press on the row, and where the pointer rests on it for kHoverSeconds. It
/// closes where the pointer rests on another row that long, so that a way across other rows into it leaves it open, and
/// where this list is scrolled or another row is selected by keys. A further press on its row leaves it open.
/// A row of a dynamic list that is checked, and one that a list is below, have a picture behind their text. Lists are
/// nested kMaxDepth deep at most.
/// The first of nested lists has the activation and the key focus; it hands the keys on to the list that was opened by
/// a press or a key, or whose rows the pointer was on last. Keys beside those of lists: Space chooses, characters typed
/// within kTypingSeconds go to the next row that begins with them, one character again and again to one after the
/// other; Right opens the list below a row, or goes into it; Left and Escape close that list and no other.
class CPopupList : public CTextView {
public:
    static constexpr int32_t kMaxDepth = 16;
    static constexpr double kHoverSeconds = 0.25;
    static constexpr double kTypingSeconds = 1.0;

    ~CPopupList() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    /// Opens the list of a control at one of its views, by the template that the control's attribute `popup-template`
    /// names, by default `ui:window-app-popup-list`, with the parameters above. Handlers may destroy both.
    [[nodiscard]] static CError* open(const CObject& control, CViewBaseCtlEvents& opener, CAttributeMap& params);
    [[nodiscard]] CError* finishInit() override;
    bool grabsKeys() const override { return true; }
    /// The selected row shows it.
    CViewBaseCtlEvents* focusView() override { return nullptr; }
    [[nodiscard]] CError* keyPress(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseWheel(CAttributeMap& params) override;

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
    [[nodiscard]] CError* openBelow(int32_t index, const CString& id, bool isByHover);
    [[nodiscard]] CError* enterBelow();
    [[nodiscard]] CError* closeBelow();
    [[nodiscard]] CError* answer(CAttributeMap& params);
    [[nodiscard]] CError* findTarget(CObject*& target) const;
    [[nodiscard]] CError* closeAll();
    [[nodiscard]] CError* close();
    const CObject* row(int32_t index) const;
    bool hasSubList(int32_t index) const;
    CString rowText(int32_t index) const;
    int32_t depth() const;
    [[nodiscard]] CError* workKey(CAttributeMap& params);
    [[nodiscard]] CError* typeAhead(const CString& character);
    int32_t rowBeginningWith(const CString& text, int32_t first) const;
    CPopupList* above() const;
    CPopupList* below() const;
    void takeKeys();
    CObject* opener() const;
    CObject* originalOpener() const;
    const CString& param(const char* name) const;

    [[nodiscard]] CError* noteHover();
    bool isHovering() const { return hoverRow_ >= 0; }
    [[nodiscard]] CError* workHovered(double now);

    static constexpr int32_t kOpeningTicks = 3;
    int32_t openingTicks_ = kOpeningTicks;
    int32_t hoverRow_ = -1;  ///< where the pointer has to rest, -1 for none
    int32_t lastHover_ = -1;
    double hoverSince_ = 0.0;
    int32_t openRow_ = -1;       ///< the row that a list is open below, -1 for none
    int32_t belowCount_ = 0;     ///< lists that this one has opened and that are not gone yet
    bool areKeysBelow_ = false;  ///< the keys go to that list
    bool isKeyed_ = false;       ///< a key works
    CString typed_;
    double typedAt_ = 0.0;
};

}  // namespace tarv
