#pragma once

#include "UI/Controls/Lists/CValueList.h"
#include "UI/Views/CView.h"

namespace tarv {

class CButton;

/// A row of buttons of which at most one is active. Attributes:
///   button-tag          template of the buttons, by default `ui:button`
///   button-title-list   path of a value list, or the titles themselves with `separator-char` (by default ";") between
///   button-width        `balanced`: equal whole pixels, what is left stands at both ends, and titles have all of a
///                       button but 2 pixels at either side; otherwise a width as views have it
///   button-color        colour of the buttons
///   active-button       position of the active one, -1 for none; to set it is to choose that button
/// A dimmed item gives its button the state `dimmed`. A title that is too wide for its button shows as its number, and
/// is whole in the hint. A release on a button chooses it; with key focus the arrows, Home and End do. The event
/// `rebuild-buttons` reads the titles anew; a value list sends it by itself. Buttons have the attribute `button-index`.
/// Thread: that of the window.
class CSelector : public CView {
public:
    ~CSelector() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;
    void removeChild(CObject* child) override;

    int32_t buttonCount() const { return buttons_.count(); }
    CButton& button(int32_t index) const { return *buttons_[index]; }
    /// -1 for none.
    int32_t activeButton() const { return active_; }

    /// The row is one list to the keys and to a reader: its value is the title of the active button.
    CViewRole role() const override;
    CString readableName() const override { return nameWithoutTitle(); }
    CString readableValue() const override;
    /// The active button, or the first one.
    CViewBaseCtlEvents* focusView() override;
    [[nodiscard]] CError* keyPress(CAttributeMap& params) override;
    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;

protected:
    using CItems = CValueList::CItems;
    /// What the buttons stand for. Here, `button-title-list`, or `titles` where that is absent.
    virtual void readItems(CItems& items) const { readTitles(items, {}); }
    void readTitles(CItems& items, const CString& titles) const;
    /// Position that the source of the value has now, -1 for none.
    virtual int32_t sourceIndex() const = 0;
    /// The user, or data, choose a button. Here, the source changes; may destroy this view.
    [[nodiscard]] virtual CError* choose(int32_t index) = 0;
    /// A press of the right button on one. Here, nothing happens.
    [[nodiscard]] virtual CError* chooseByRight(int32_t) { return nullptr; }
    /// Attributes of a button that is being made.
    virtual void prepareButton(int32_t index, CAttributeMap& attributes) const { (void)index, (void)attributes; }
    /// Its hint; empty: that of the selector.
    virtual CString buttonHint(int32_t index) const { return (void)index, CString(); }

    const CItems& items() const { return items_; }
    /// The titles have changed. May destroy this view.
    [[nodiscard]] CError* rebuild();
    /// The source has another value. May destroy this view.
    [[nodiscard]] CError* follow();

private:
    [[nodiscard]] CError* listChanged();
    /// What buttons are made of has changed: others take their places.
    [[nodiscard]] CError* buttonsChanged();
    [[nodiscard]] CError* attrActiveButton();
    [[nodiscard]] CError* buttonReleased(CAttributeMap& params);
    [[nodiscard]] CError* buttonPressedR(CAttributeMap& params);
    [[nodiscard]] CError* rebuildOnce();
    [[nodiscard]] CError* makeButton(int32_t index);
    [[nodiscard]] CError* updateButton(int32_t index);
    [[nodiscard]] CError* showTitle(int32_t index, double width);
    [[nodiscard]] CError* showActive();
    [[nodiscard]] CError* layOutButtons();
    const CValueList* list() const;
    bool isBalanced() const { return getAttrString("button-width") == CString("balanced"); }
    int32_t indexOfSender(const CAttributeMap& params) const;

    CItems items_;
    CArray<CButton*, 8> buttons_;
    int32_t active_ = -1;
    bool isRebuilding_ = false;
    bool isStale_ = false;  ///< the titles are to be read once more
    bool isFollowing_ = false;
};

}  // namespace tarv
