// The life of an edit box: from its beginning over a text view to its end.

#include "UI/Text/CEditBox.h"
#include "UI/Text/CVirtualKeyboard.h"

#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"
#include "UI/Views/CInputTarget.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr const char* kTemplate = "ui:editbox-popup";
constexpr const char* kTimer = "editbox-timer";
constexpr const char* kError = "error";
constexpr double kErrorSeconds = 0.5;
constexpr double kBlinkSeconds = 0.5;
/// Behind the second tick the box stands at its place.
constexpr int32_t kKeyboardTicks = 2;

CString length(double pixels) {
    return CString::fromDouble(pixels / CApplication::uiScale(), 4);
}

/// Goes through the views of a tab group in their order, and finds those before and behind one of them.
class CGroupWalk {
public:
    CGroupWalk(const CTextView& from, const CString& group) : from_(from), group_(group) {}

    void visit(const CObject& object) {
        for (CObject* child : object.children()) {
            auto* view = dynamic_cast<CTextView*>(child);
            if (view == &from_) {
                isBehind_ = true;
            } else if (view && view->getAttrString("tab-group") == group_ && view->isEditable(-1) &&
                       CInputTarget::takesInput(*view)) {
                first_ = first_ ? first_ : view;
                last_ = view;
                before_ = isBehind_ ? before_ : view;
                behind_ = isBehind_ && !behind_ ? view : behind_;
            }
            visit(*child);
        }
    }
    CTextView* next() const { return behind_ ? behind_ : first_; }
    CTextView* former() const { return before_ ? before_ : last_; }

private:
    const CTextView& from_;
    const CString& group_;
    bool isBehind_ = false;
    CTextView* first_ = nullptr;
    CTextView* last_ = nullptr;
    CTextView* before_ = nullptr;
    CTextView* behind_ = nullptr;
};

}  // namespace

CEditBox::~CEditBox() {
    if (keyboard_) {
        keyboard_->leaveBox();
        keyboard_ = nullptr;
    }
    if (CTextView* owner = owner_) {
        owner_ = nullptr;
        owner->setEditBox(nullptr);
    }
    endInput();
}

CError* CEditBox::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CEditBox::blink>("blink");
    descriptor.addHandler<&CEditBox::virtualKeyPressed>("virtual-keyboard-press");
    return CView::initClass(descriptor);
}

CError* CEditBox::finishInit() {
    TARV_TRY(CView::finishInit());
    CAttributeMap attributes;
    attributes["interval"] = CAttributeValue::fromReal(kBlinkSeconds);
    CObject* timer = nullptr;
    TARV_TRY(createChild(timer, "core:timer", kTimer, false, &attributes));
    listenObject(timer->fullName(), "tick", "blink");
    return nullptr;
}

CError* CEditBox::open(CTextView& owner, int32_t paragraph) {
    CViewBase* root = owner.rootView();
    if (!root || !owner.window()) {
        return nullptr;
    }
    auto* box = dynamic_cast<CEditBox*>(root->firstChildNamed(kName));
    if (box && box->isEditing()) {
        const CObjectWatch ofOwner(owner);
        const CObjectWatch watch(*box);
        CError* error = box->leave();
        if (error || !ofOwner.isAlive()) {
            return error;
        }
        box = watch.isAlive() ? box : nullptr;
    }
    if (!box) {
        CAttributeMap attributes;
        attributes["temp-editbox-owner"] = CAttributeValue::fromString(owner.fullName());
        attributes["is-dynamic"] = CAttributeValue::fromBool(true);
        attributes["is-focusable"] = CAttributeValue::fromBool(true);
        attributes["unclip-level"] = CAttributeValue::fromInt(-1);
        if (CError* error = root->createChildOf(box, kTemplate, kName, true, &attributes)) {
            return addErrorLocation(error, __FILE__, __LINE__, owner.fullName(), CString());
        }
    }
    return box->begin(owner, paragraph);
}

CError* CEditBox::begin(CTextView& owner, int32_t paragraph) {
    const uint32_t serial = ++serial_;
    const CViewBase* focus = window()->keyFocusView();
    if (focus && focus != this) {
        formerFocus_ = focus->fullName();
    } else if (!focus) {
        formerFocus_.clear();
    }
    CTextView* former = owner_;
    owner_ = &owner;
    owner.setEditBox(this);
    if (former && former != &owner) {
        // Whoever takes the former text begins this edit.
        former->setEditBox(nullptr);
        former->editEnded();
    }
    isOffering_ = false;
    paragraph_ = paragraph;
    original_ = owner.editText(paragraph);
    edit_.setRules(owner.editRules());
    edit_.setText(original_);
    fonts_ = owner.fonts();
    alignment_ = owner.textAlignment();
    isSelecting_ = false;
    const CObjectWatch watch(*this);
    CError* error = unsetState(kError, CStateChange::AtOnce);
    if (!error && watch.isAlive()) {
        error = place();
    }
    if (error || !watch.isAlive() || serial != serial_) {
        return error;
    }
    // An empty field has nothing that is selected: only the cursor shows that it is edited.
    isCaretShown_ = true;
    layOut();
    startTimer();
    keyboardTicks_ = wantsKeyboard() ? kKeyboardTicks : 0;
    window()->setKeyFocusView(this);
    // A window that gives no focus (it waits for a popup) takes no edit.
    if (watch.isAlive() && isEditing() && serial == serial_ && window() && window()->keyFocusView() != this) {
        end(false);
    }
    return nullptr;
}

/// Where the owner's attributes put it.
CError* CEditBox::place() {
    TARV_TRY(setAttribute("temp-editbox-owner", owner_->fullName()));
    const CString& border = owner_->getAttrString("editbox-inner-border");
    if (!border.isEmpty()) {
        TARV_TRY(setAttribute("inner-border", border));
    }
    row_ = {};
    if (isOverRow()) {
        TARV_TRY(placeOverRow());
    } else {
        const CString& wanted = owner_->getAttrString(owner_->editPlacementAttribute());
        TARV_TRY(setAttribute("outer-border", CString("0")));
        TARV_TRY(setAttribute("placement-match", owner_->fullName()));
        TARV_TRY(setAttribute("placement", wanted.isEmpty() ? CString("match") : wanted));
    }
    return setAttribute("is-visible", CString("true"));
}

CError* CEditBox::placeOverRow() {
    const CViewRect row = owner_->rowRect(paragraph_);
    if (row.x == row_.x && row.y == row_.y && row.width == row_.width && row.height == row_.height) {
        return nullptr;
    }
    row_ = row;
    TARV_TRY(setAttribute("placement", CString("overlay")));
    TARV_TRY(setAttribute("alignment-h", CString("left")));
    TARV_TRY(setAttribute("alignment-v", CString("top")));
    TARV_TRY(setAttribute("outer-border", CString("L") + length(row.x) + " T" + length(row.y)));
    TARV_TRY(setAttribute("width", length(row.width)));
    return setAttribute("height", length(row.height));
}

CError* CEditBox::offer(CAnswer& answer) {
    answer = CAnswer::Gone;
    if (!isEditing() || isOffering_) {
        return nullptr;
    }
    if (edit_.text() == original_) {
        // A value that is shown rounded must not change because its text was looked at.
        answer = CAnswer::Accepted;
        return nullptr;
    }
    const CString text = edit_.text();
    const uint32_t serial = serial_;
    const CObjectWatch watch(*this);
    bool isAccepted = true;
    ++busy_;
    isOffering_ = true;
    CError* error = owner_->acceptText(paragraph_, text, isAccepted);
    if (!watch.isAlive()) {
        return error;
    }
    --busy_;
    if (serial != serial_) {
        return error;
    }
    isOffering_ = false;
    if (isEditing()) {
        answer = isAccepted && !error ? CAnswer::Accepted : CAnswer::Refused;
    }
    return error;
}

CError* CEditBox::commit() {
    CAnswer answer = CAnswer::Gone;
    CError* error = offer(answer);
    if (answer == CAnswer::Accepted) {
        end(true);
    } else if (answer == CAnswer::Refused) {
        // A handler may have taken the focus, by a message that it shows.
        if (!window() || window()->keyFocusView() != this) {
            endRefused();
            return error;
        }
        edit_.selectAll();
        cursorMoved();
        TARV_CONSUME(setStateTimed(kError, kErrorSeconds));
    }
    return error;
}

CError* CEditBox::leave() {
    CAnswer answer = CAnswer::Gone;
    CError* error = offer(answer);
    if (answer == CAnswer::Refused) {
        endRefused();
    } else if (answer == CAnswer::Accepted) {
        end(false);
    }
    return error;
}

/// The field shows that its text was refused. May destroy this object.
void CEditBox::endRefused() {
    CTextView& owner = *owner_;
    const CObjectWatch ofOwner(owner);
    end(false);
    if (ofOwner.isAlive()) {
        TARV_CONSUME(owner.setStateTimed(kError, kErrorSeconds));
    }
}

/// Commits, and begins with the next view of the group.
CError* CEditBox::goOn(bool isBackwards) {
    const CTextView* next = neighbour(isBackwards);
    if (!next) {
        return commit();
    }
    const CString path = next->fullName();
    CAnswer answer = CAnswer::Gone;
    CError* error = offer(answer);
    if (answer == CAnswer::Refused) {
        edit_.selectAll();
        cursorMoved();
        TARV_CONSUME(setStateTimed(kError, kErrorSeconds));
    }
    if (answer != CAnswer::Accepted) {
        return error;
    }
    CTextView* found = rootView()->findObjectOf<CTextView>(path);
    if (error || !found || !found->isEditable(-1) || !CInputTarget::takesInput(*found)) {
        end(true);
        return error;
    }
    const CObjectWatch watch(*this);
    const CObjectWatch ofNext(*found);
    CTextView* owner = owner_;
    owner_ = nullptr;
    owner->setEditBox(nullptr);
    owner->editEnded();
    if (!watch.isAlive() || !ofNext.isAlive() || isEditing()) {
        return nullptr;
    }
    return found->openEdit();
}

CTextView* CEditBox::neighbour(bool isBackwards) const {
    const CString& group = owner_->getAttrString("tab-group");
    if (group.isEmpty() || !rootView()) {
        return nullptr;
    }
    CGroupWalk walk(*owner_, group);
    walk.visit(*rootView());
    return isBackwards ? walk.former() : walk.next();
}

void CEditBox::drop() {
    if (isEditing()) {
        end(true);
    }
}

void CEditBox::ownerGoes() {
    owner_ = nullptr;
    close(true);
}

void CEditBox::end(bool isFocusReturned) {
    CTextView& owner = *owner_;
    const CObjectWatch ofOwner(owner);
    owner.setEditBox(nullptr);
    owner_ = nullptr;
    close(isFocusReturned);
    if (ofOwner.isAlive()) {
        owner.editEnded();
    }
}

/// Nothing of it is seen or takes input from here on; a later tick destroys it. May destroy this object.
void CEditBox::close(bool isFocusReturned) {
    const CObjectWatch watch(*this);
    const uint32_t serial = ++serial_;
    isCaretShown_ = false;
    isOffering_ = false;
    closeKeyboard();
    if (watch.isAlive() && isFocusReturned && window() && window()->keyFocusView() == this) {
        window()->setKeyFocusView(formerFocus_.isEmpty() ? nullptr : rootView()->findObjectOf<CViewBase>(formerFocus_));
    }
    if (watch.isAlive() && serial == serial_) {
        TARV_CONSUME(setAttribute("is-visible", CString("false")));
    }
    if (watch.isAlive() && serial == serial_) {
        startTimer();
    }
}

bool CEditBox::animate(double now) {
    if (!isEditing() && busy_ == 0) {
        delete this;
        return true;
    }
    (void)CView::animate(now);
    if (isEditing() && (!CInputTarget::takesInput(*owner_) || paragraph_ >= owner_->paragraphCount())) {
        drop();
    } else if (isEditing() && isOverRow()) {
        TARV_CONSUME(placeOverRow());
    }
    if (isEditing() && keyboardTicks_ > 0 && --keyboardTicks_ == 0) {
        TARV_CONSUME(openKeyboard());
    }
    return true;
}

bool CEditBox::isOverRow() const {
    return paragraph_ >= 0 && !owner_->getAttrBool("is-editbox-full");
}

}  // namespace tarv
