#pragma once

#include "UI/Text/CTextEditRules.h"
#include "UI/Text/CTextWrapper.h"
#include "UI/Views/CView.h"

namespace tarv {

class CEditBox;

/// A view of text (`ui:textview`): labels, hints, and lists, whose paragraphs are rows. Thread: that of the window.
///
/// The text is `title`, with the markup of CTextMarkup and a paragraph a line feed; children with `is-paragraph`, if
/// there are any, come in its place: each is a paragraph of the `value`s of its `content` children, one with
/// `is-line-break` ending its line, or without such children of its `title`. `update-paragraphs` reads them anew. The
/// font is `font-name`, by default that of the nearest ancestor with one. Compact sizes are those of the text: the
/// width that of the widest line without wrapping. A text that was set plain, as what a user has typed is, has no
/// marks. The block of lines stands in a higher view by `inline-alignment-v`, in one that scrolls and in a list at the
/// top. A view that scrolls gets its ratios by the text. A line that is wider than the view is cut by it; with
/// `is-text-shortened` it ends in an ellipsis within it.
///
/// A list (`is-list`; by default a view with `is-paragraph` children, `selected-paragraph` or
/// `is-drop-down-behavior-disabled` false) shows the row under the pointer and the selected one, and takes input. A
/// press selects a row, or with `is-selected-paragraph-click-cancels` ends the selection of a selected one; with
/// `is-right-click-selects` a press of the right button does so too. Keys move the selection while the list has key
/// focus. Where `is-drop-down-behavior-disabled` is false, the selection follows the pointer, and a release chooses.
/// Events, with `index` and `text` of the row:
///   selected-paragraph-changed   the user selected another row; -1 for none
///   paragraph-dbl-clicked        second press of a double click on a row
///   paragraph-chosen             Enter, a double click; in a drop-down list a release on a row
///
/// A view whose `is-read-only` is false is edited in an edit box (CEditBox): a press on a text, or the event
/// `edit-text`, opens it; in a list F2 and a second press do for the selected row, and `edit-text` for that of its
/// `index`. A second press opens it when no press can make it a double click any more, unless the pointer moves
/// meanwhile. `paragraph-edit-query`, with `index` and `text`, is sent before a row is edited: a handler that sets the
/// parameter `is-refused` keeps it as it is.
/// `accept-chars`, `max-paragraph-length`, `is-accept-enter` and `is-accept-tab` are the rules of the edit;
/// `tab-group`, `editbox-placement`, `editbox-inner-border` and `is-editbox-full` (over the whole list instead of the
/// row) concern its box. Events, with `index` (0 for a whole text) and `text`:
///   editbox-text-changed     each change in the box
///   paragraph-text-changed   the edit was committed
class CTextView : public CView {
public:
    ~CTextView() override;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* finishInit() override;
    [[nodiscard]] CError* childAdded(CObject* child) override;
    void removeChild(CObject* child) override;

    /// What the text is drawn in: the view's rectangle with its `spread`, for glyphs that overhang their advance; of a
    /// view that scrolls its box without the scroll bars.
    static constexpr int32_t kTextArea = CView::kOwnAreas;
    static constexpr int32_t kOwnAreas = kTextArea + 1;

    const CTextSource& source() const { return source_; }
    /// As of the last flush. Its pixels count from textOrigin.
    const CTextLayout& layout() const { return layout_; }
    const CTextFonts& fonts() const { return fonts_; }
    /// How many items of a line are drawn; an ellipsis stands for the others.
    int32_t shownItems(const CTextLine& line) const;
    /// How often the text was laid out, for tests of what is not done.
    int32_t layoutCount() const { return layoutCount_; }

    struct CPoint {
        int32_t x = 0;
        int32_t y = 0;
    };
    /// Pixel of the window at the layout's top left corner.
    CPoint textOrigin() const;
    int32_t paragraphCount() const { return layout_.paragraphCount(); }
    /// Without looks and images; empty for an index outside.
    CString paragraphText(int32_t index) const;
    /// Row at a pixel of the window, -1 for none.
    int32_t paragraphAt(double x, double y) const;
    /// A row as wide as the view, in pixels of the window, also where it is scrolled out; empty for an index outside.
    CViewRect rowRect(int32_t index) const;

    bool isList() const { return isList_; }
    bool isDropDown() const { return isDropDown_; }
    /// -1 for none.
    int32_t selectedParagraph() const { return selected_; }
    int32_t hoveredParagraph() const { return hovered_; }
    /// Also `selected-paragraph`; sends no event. -1 ends the selection, an index outside is ignored.
    void selectParagraph(int32_t index);
    /// Scrolls as little as shows the row whole, with what is beside the rows for the first and the last one; nothing
    /// for an index outside. When a list is first drawn, the selected row is seen.
    void scrollToParagraph(int32_t index);

    /// Reads the paragraphs now and not at the next render tick: for who makes rows and then selects one.
    void readParagraphs();

    /// Opens the edit box over this view, or over a row of a list. Nothing happens if that can't be edited. May destroy
    /// this view.
    [[nodiscard]] CError* openEdit(int32_t paragraph = -1);
    /// Null while this view is not edited.
    CEditBox* editBox() const { return editBox_; }
    void setEditBox(CEditBox* box) { editBox_ = box; }
    /// A whole text with -1, otherwise a row. Here: a list has its rows edited, any other view its text, unless it is
    /// `is-read-only`.
    virtual bool isEditable(int32_t paragraph) const;
    /// What the edit begins with; here, the characters without looks.
    virtual CString editText(int32_t paragraph) const;
    virtual CTextEditRules editRules() const;
    /// The user commits another text than the edit began with. A class that can't read it sets `isAccepted` to false:
    /// it keeps its value, and the edit shows an error. Here, a whole text becomes the `title`, and
    /// `paragraph-text-changed` is sent. May destroy this view.
    [[nodiscard]] virtual CError* acceptText(int32_t paragraph, const CString& text, bool& isAccepted);
    /// Each change in the box. Here, sends `editbox-text-changed`. May destroy this view.
    [[nodiscard]] virtual CError* editTextChanged(const CString& text);
    virtual void editEnded() {}
    /// The attribute with the placement of the edit box; a class of readouts has `editbox-readout-placement`.
    virtual const char* editPlacementAttribute() const { return "editbox-placement"; }
    /// -1 left, 0 centred, 1 right.
    int32_t textAlignment() const { return settings_.alignment; }

    /// A list, a field that is edited, or a text.
    CViewRole role() const override;
    /// The text of a field is its value and not its name, and so is the selected row of a list.
    CString readableName() const override;
    CString readableValue() const override;

    bool isInputView() const override { return isList_ || isEditable(-1) || CView::isInputView(); }
    CShortened shortened() const override;
    CString wholeText(int32_t paragraph) const override { return paragraphText(paragraph); }
    [[nodiscard]] CError* mouseMove(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseEnter(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseExit(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePress(CAttributeMap& params) override;
    [[nodiscard]] CError* mousePressR(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseRelease(CAttributeMap& params) override;
    [[nodiscard]] CError* mouseWheel(CAttributeMap& params) override;
    [[nodiscard]] CError* keyPress(CAttributeMap& params) override;

    [[nodiscard]] CError* onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) override;
    [[nodiscard]] CError* attrInnerBorder() override;
    [[nodiscard]] CError* attrScrollerWidth() override;
    [[nodiscard]] CError* attrScrollerHeight() override;
    [[nodiscard]] CError* attrWidth() override;
    [[nodiscard]] CError* attrInlineAlignmentV() override;

protected:
    [[nodiscard]] CError* draw() override;
    [[nodiscard]] bool animate(double now) override;
    int32_t classColorCount() const override;
    CString classColorText(int32_t index) const override;

    /// The text is another one, or is laid out anew.
    virtual void layoutChanged() {}
    /// Whether lines end at the width of the view.
    virtual bool isWrapping() const;
    /// Whether the lines begin at the top of a view that is higher.
    virtual bool isAtTop() const { return area().isScrollable() || isList_; }
    /// A row was chosen, see `paragraph-chosen`. Here, sends that event. May destroy this view.
    [[nodiscard]] virtual CError* paragraphChosen(int32_t index);
    /// Sends an event of a row, if a command or a listener waits for it. May destroy this view.
    [[nodiscard]] CError* sendParagraphEvent(const char* name, int32_t index);
    /// The user selects a row: with the event if it is another one. May destroy this view.
    [[nodiscard]] CError* selectByUser(int32_t index);
    /// Reads the text anew and lays it out.
    void updateText();
    /// What is visible of the view without its scroll bars, and the same within the inner borders: device pixels, the
    /// latter at least 1.
    double visibleWidth() const;
    double visibleHeight() const;
    int32_t innerWidth() const;
    int32_t innerHeight() const;

private:
    enum class CListColor : uint8_t { Hover, Select, SelectText };

    [[nodiscard]] CError* textChanged();
    [[nodiscard]] CError* fontChanged();
    [[nodiscard]] CError* settingsChanged();
    [[nodiscard]] CError* colorsChanged();
    [[nodiscard]] CError* listChanged();
    [[nodiscard]] CError* selectedChanged();
    [[nodiscard]] CError* paragraphsChanged();
    [[nodiscard]] CError* innerChanged();
    [[nodiscard]] CError* editOnEvent(CAttributeMap& params);
    [[nodiscard]] CError* sendEditEvent(const char* name, int32_t paragraph, const CString& text);
    void readSettings();
    void readFont();
    void readList();
    void readSource();
    void findPictures();
    bool hasParagraphChildren() const;

    void layOut();
    void fit();
    void runWrapper(bool isWrapped, int32_t width);
    void updateRatios();

    void drawRows();
    void drawLines();
    void drawLine(const CTextLine& line, const CPoint& origin, const CIntRect& clip);
    void fillRow(int32_t index, CListColor color);
    const CColor* colorOf(int32_t number, int32_t paragraph) const;
    const CColor* listColor(CListColor color) const;

    /// A press on the selected row, which waits from its release on; what ends that without an edit.
    void waitForEdit(int32_t row, const CAttributeMap& params);
    void beginWaiting();
    bool isWaiting() const { return waiting_.row >= 0 && waiting_.due > 0.0; }
    void endWaiting() { waiting_.row = -1; }
    void endWaitingIfMoved(const CAttributeMap& params);
    [[nodiscard]] CError* editWhenDue(double time);
    [[nodiscard]] CError* mayEditRow(int32_t row, bool& isAllowed);

    void setHovered(int32_t index);
    void setSelected(int32_t index);
    void redrawRow(int32_t index);
    void scrollBy(double pixels);
    int32_t rowOf(const CAttributeMap& params) const;
    [[nodiscard]] CError* follow(const CAttributeMap& params);
    [[nodiscard]] CError* pressRow(int32_t index, bool isSelecting);
    int32_t rowOfKey(int32_t key) const;

    CAttributeValue shownTitle_;
    CTextSource source_;
    CTextFonts fonts_;
    CTextSettings settings_;
    CTextLayout layout_;
    int32_t naturalWidth_ = 0;
    int32_t layoutCount_ = 0;
    bool wantsWrap_ = true;
    bool isShortened_ = false;
    bool isPlacedOnce_ = false;
    bool isStale_ = false;
    bool isPaletteMissed_ = false;
    bool isDrawnOnce_ = false;

    bool isList_ = false;
    bool isDropDown_ = false;
    CEditBox* editBox_ = nullptr;
    int32_t selected_ = -1;
    int32_t hovered_ = -1;
    /// A second press on a row, until it opens the edit box.
    struct CWaiting {
        int32_t row = -1;
        double x = 0.0;
        double y = 0.0;
        double due = 0.0;  ///< seconds of the window's clock; 0 before the release
    };
    CWaiting waiting_;
};

}  // namespace tarv
