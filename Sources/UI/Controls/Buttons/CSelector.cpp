#include "UI/Controls/Buttons/CSelector.h"

#include <algorithm>
#include <cmath>

#include "Core/CObjectWatch.h"
#include "Platform/Keyboard.h"
#include "UI/Controls/Buttons/CButton.h"
#include "UI/Text/CTextView.h"

namespace tarv {

namespace {

constexpr const char* kActive = "active";
constexpr const char* kDimmed = "dimmed";
constexpr int32_t kMaxRounds = 16;

CError* setOrUnset(CViewBaseState& view, const char* state, bool isSet) {
    return isSet ? view.setState(state) : view.unsetState(state);
}

/// Position that a key leads to; -1 for another key.
int32_t indexOfKey(int32_t key, int32_t current, int32_t count) {
    switch (key) {
        case kKeyLeft:
        case kKeyUp:
            return std::max(current - 1, 0);
        case kKeyRight:
        case kKeyDown:
            return std::min(current + 1, count - 1);
        case kKeyHome:
            return 0;
        case kKeyEnd:
            return count - 1;
        default:
            return -1;
    }
}

}  // namespace

CSelector::~CSelector() {
    endInput();
}

CError* CSelector::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CSelector::listChanged>("rebuild-buttons");
    descriptor.addHandler<&CSelector::listChanged>("button-title-list");
    descriptor.addHandler<&CSelector::listChanged>("separator-char");
    for (const char* name : {"button-color", "button-tag", "button-width"}) {
        descriptor.addHandler<&CSelector::buttonsChanged>(name);
    }
    descriptor.addHandler<&CSelector::attrActiveButton>("active-button");
    descriptor.addHandler<&CSelector::buttonReleased>("button-released");
    descriptor.addHandler<&CSelector::buttonPressedR>("button-pressed-r");
    return CView::initClass(descriptor);
}

CError* CSelector::init() {
    TARV_TRY(CView::init());
    if (!hasAttr("is-focusable")) {
        TARV_TRY(setAttribute("is-focusable", CAttributeValue::fromBool(true)));
    }
    return nullptr;
}

CError* CSelector::finishInit() {
    TARV_TRY(CView::finishInit());
    return rebuild();
}

void CSelector::removeChild(CObject* child) {
    for (int32_t i = buttons_.count() - 1; i >= 0; --i) {
        if (static_cast<CObject*>(buttons_[i]) == child) {
            buttons_.removeAt(i);
        }
    }
    CView::removeChild(child);
}

const CValueList* CSelector::list() const {
    const CString& path = getAttrString("button-title-list");
    return path.isEmpty() ? nullptr : findObjectOf<CValueList>(path);
}

void CSelector::readTitles(CItems& items, const CString& titles) const {
    if (const CValueList* source = list()) {
        for (int32_t i = 0; i < source->count(); ++i) {
            items.append((*source)[i]);
        }
        return;
    }
    const CString& own = getAttrString("button-title-list");
    const CString& given = getAttrString("separator-char");
    for (const CString& title : (own.isEmpty() ? titles : own).split(given.isEmpty() ? uint16_t{';'} : given.at(0))) {
        items.append({title, static_cast<double>(items.count())});
    }
}

CError* CSelector::listChanged() {
    return state() == CObjectState::Finished ? rebuild() : nullptr;
}

CError* CSelector::buttonsChanged() {
    if (state() != CObjectState::Finished) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    while (!buttons_.isEmpty()) {
        delete buttons_.last();
        if (!watch.isAlive()) {
            return nullptr;
        }
    }
    // Balanced buttons leave some of the room at the ends.
    TARV_TRY(attrInnerBorder());
    return rebuild();
}

CError* CSelector::rebuild() {
    isStale_ = true;
    if (isRebuilding_) {
        // A handler of a button: the call that runs begins anew.
        return nullptr;
    }
    const CObjectWatch watch(*this);
    isRebuilding_ = true;
    CError* error = nullptr;
    for (int32_t i = 0; i < kMaxRounds && isStale_ && !error; ++i) {
        isStale_ = false;
        error = rebuildOnce();
        if (!watch.isAlive()) {
            return error;
        }
    }
    isRebuilding_ = false;
    return error ? error : follow();
}

CError* CSelector::rebuildOnce() {
    if (const CValueList* source = list()) {
        listenObject(source->fullName(), CValueList::kChangedEvent, "rebuild-buttons");
    }
    CItems read;
    readItems(read);
    items_ = std::move(read);
    const CObjectWatch watch(*this);
    while (watch.isAlive() && buttons_.count() > items_.count()) {
        delete buttons_.last();
    }
    CError* error = nullptr;
    for (int32_t i = 0; !error && watch.isAlive() && i < items_.count(); ++i) {
        error = i < buttons_.count() ? nullptr : makeButton(i);
        if (!error && watch.isAlive() && i < buttons_.count()) {
            error = updateButton(i);
        }
    }
    return error || !watch.isAlive() ? error : layOutButtons();
}

CError* CSelector::makeButton(int32_t index) {
    CAttributeMap attributes;
    attributes["placement"] = CAttributeValue::fromString("left");
    attributes["height"] = CAttributeValue::fromString("100%");
    attributes["is-focusable"] = CAttributeValue::fromBool(false);
    attributes["button-index"] = CAttributeValue::fromInt(index);
    if (isBalanced()) {
        // Narrow buttons give their pixels to the titles.
        attributes["inner-border"] = CAttributeValue::fromString("*LR2");
    } else if (!getAttrString("button-width").isEmpty()) {
        attributes["width"] = CAttributeValue::fromString(getAttrString("button-width"));
    }
    if (!getAttrString("button-color").isEmpty()) {
        attributes["color"] = CAttributeValue::fromString(getAttrString("button-color"));
    }
    prepareButton(index, attributes);
    const CString& tag = getAttrString("button-tag");
    CButton* made = nullptr;
    TARV_TRY(createChildOf(made, tag.isEmpty() ? CString("ui:button") : tag, "button", true, &attributes));
    buttons_.append(made);
    listenObject(made->fullName(), "button-released", "button-released");
    listenObject(made->fullName(), "button-pressed-r", "button-pressed-r");
    return nullptr;
}

CError* CSelector::updateButton(int32_t index) {
    CButton& made = *buttons_[index];
    const CObjectWatch watch(made);
    CError* error = made.setAttribute("hint", buttonHint(index));
    if (!error && watch.isAlive()) {
        error = setOrUnset(made, kDimmed, items_[index].isDimmed);
    }
    return error || !watch.isAlive() ? error : showTitle(index, 0.0);
}

/// The title, or its number where a button of that width (0: any) has no room for it.
CError* CSelector::showTitle(int32_t index, double width) {
    CButton& made = *buttons_[index];
    const CObjectWatch watch(made);
    if (made.getAttrString("title") != items_[index].title) {
        CError* error = made.setAttribute("title", items_[index].title);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    const auto* label = dynamic_cast<const CTextView*>(made.findChild("label"));
    if (!label || width <= 0.0) {
        return nullptr;
    }
    const double room = width - made.area().value(CViewCell::InnerLeft) - made.area().value(CViewCell::InnerRight) -
                        label->area().value(CViewCell::OuterLeft) - label->area().value(CViewCell::OuterRight);
    if (label->layout().width() <= std::max(room, 1.0)) {
        return nullptr;
    }
    CError* error = buttonHint(index).isEmpty() ? made.setAttribute("hint", items_[index].title) : nullptr;
    return error || !watch.isAlive() ? error : made.setAttribute("title", CString::fromInt(index + 1));
}

/// Whole pixels for each; what is left stands at both ends.
CError* CSelector::layOutButtons() {
    if (!isBalanced() || buttons_.isEmpty()) {
        return nullptr;
    }
    const int32_t count = buttons_.count();
    const auto whole = static_cast<int32_t>(std::lround(area().value(CViewCell::Width)));
    const int32_t each = whole / count;
    const int32_t left = whole - each * count;
    area().setInnerBorders({0.0, static_cast<double>(left / 2), static_cast<double>(left - left / 2), 0.0});
    const CObjectWatch watch(*this);
    for (int32_t i = 0; watch.isAlive() && i < buttons_.count(); ++i) {
        const CViewArea& place = buttons_[i]->area();
        const double width = each - place.value(CViewCell::OuterLeft) - place.value(CViewCell::OuterRight);
        buttons_[i]->area().setWidth({CViewLengthMode::Fixed, std::max(width, 0.0)});
        TARV_TRY(showTitle(i, width));
    }
    return nullptr;
}

CError* CSelector::onAreaChanged(const CViewRect& visibleRect, const CViewRect& wholeRect) {
    const CObjectWatch watch(*this);
    const double before = areaRect(kBoxArea).width;
    CError* error = CView::onAreaChanged(visibleRect, wholeRect);
    const bool isOther = !error && watch.isAlive() && areaRect(kBoxArea).width != before;
    return isOther && state() == CObjectState::Finished ? rebuild() : error;
}

CError* CSelector::follow() {
    const int32_t index = sourceIndex();
    isFollowing_ = true;
    const CObjectWatch watch(*this);
    CError* error =
        setAttribute("active-button", CAttributeValue::fromInt(index >= 0 && index < buttons_.count() ? index : -1));
    if (watch.isAlive()) {
        isFollowing_ = false;
    }
    return error;
}

CError* CSelector::attrActiveButton() {
    if (state() != CObjectState::Finished && !isFollowing_) {
        return nullptr;
    }
    const int32_t index = getAttrIntOr("active-button", -1);
    if (!isFollowing_) {
        const bool isChosen = index >= 0 && index < buttons_.count() && index != sourceIndex();
        return isChosen ? choose(index) : follow();
    }
    active_ = index;
    return showActive();
}

CError* CSelector::showActive() {
    const CObjectWatch watch(*this);
    for (int32_t i = 0; i < buttons_.count(); ++i) {
        CButton& shown = *buttons_[i];
        CError* error = setOrUnset(shown, kActive, i == active_);
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    return nullptr;
}

int32_t CSelector::indexOfSender(const CAttributeMap& params) const {
    const auto sender = params.find("sender");
    for (int32_t i = 0; sender != params.end() && i < buttons_.count(); ++i) {
        if (buttons_[i]->fullName() == sender->second.asString()) {
            return i;
        }
    }
    return -1;
}

CError* CSelector::buttonReleased(CAttributeMap& params) {
    const int32_t index = indexOfSender(params);
    return index >= 0 && index != sourceIndex() ? choose(index) : nullptr;
}

CError* CSelector::buttonPressedR(CAttributeMap& params) {
    const int32_t index = indexOfSender(params);
    return index >= 0 ? chooseByRight(index) : nullptr;
}

CError* CSelector::keyPress(CAttributeMap& params) {
    const CObjectWatch watch(*this);
    CError* error = CView::keyPress(params);
    if (error || !watch.isAlive() || isHandled(params)) {
        return error;
    }
    const int32_t index = indexOfKey(params["keycode"].asInt(), active_, buttons_.count());
    if (index < 0 || index >= buttons_.count()) {
        return nullptr;
    }
    setHandled(params);
    return index == sourceIndex() ? nullptr : choose(index);
}

/// The active button shows the focus of the row.
CViewBaseCtlEvents* CSelector::focusView() {
    return buttons_.isEmpty() ? CView::focusView() : buttons_[std::max(active_, 0)];
}

CViewRole CSelector::role() const {
    const CViewRole named = CViewReader::roleNamed(getAttrString("role"));
    return named == CViewRole::None ? CViewRole::List : named;
}

CString CSelector::readableValue() const {
    const bool isShown = active_ >= 0 && active_ < items_.count();
    return isShown ? CViewReader::withoutMarks(items_[active_].title) : CString();
}

}  // namespace tarv
