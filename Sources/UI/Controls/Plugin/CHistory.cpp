#include "UI/Controls/Plugin/CHistory.h"

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Core/CObjectWatch.h"
#include "UI/Controls/Lists/CValueList.h"
#include "UI/Text/CPopupList.h"
#include "UI/Views/CViewReading.h"

namespace tarv {

namespace {

constexpr const char* kList = ".history-list";
constexpr const char* kUndoButton = ".button-undo";
constexpr const char* kSelectButton = ".button-select";
constexpr const char* kRedoButton = ".button-redo";

}  // namespace

CHistory::~CHistory() {
    endInput();
}

CError* CHistory::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CHistory::undo>("undo");
    descriptor.addHandler<&CHistory::redo>("redo");
    descriptor.addHandler<&CHistory::openList>("select");
    descriptor.addHandler<&CHistory::stepChosen>("popup-result");
    descriptor.addHandler<&CHistory::historyChanged>("undo-history-changed");
    descriptor.addHandler<&CHistory::engineGone>("engine-gone");
    return CView::initClass(descriptor);
}

CError* CHistory::init() {
    TARV_TRY(CView::init());
    const CString& path = getAttrString("interface-client");
    const auto* found = findObjectOf<CAudioInterfaceClient>(path);
    if (!found) {
        TARV_FAIL("@tarvstr_CHistory_init_NoInterfaceClient No interfacing object '%1' found.", path);
    }
    clientPath_ = found->fullName();
    listenObject(clientPath_, "undo-history-changed", "undo-history-changed");
    listenObject(clientPath_, "engine-state", "undo-history-changed");
    listenObject(clientPath_, "engine-gone", "engine-gone");
    return nullptr;
}

CError* CHistory::findChildren() {
    if (!list()) {
        TARV_FAIL("@tarvstr_CHistory_initChilds_NoHistoryList Unable to locate 'history list' container.");
    }
    TARV_TRY(
        bindButton(kUndoButton, "undo", "@tarvstr_CHistory_initChilds_NoUndoButton Unable to locate 'undo' button."));
    TARV_TRY(bindButton(kSelectButton, "select",
                        "@tarvstr_CHistory_initChilds_NoSelectButton Unable to locate 'select' button."));
    return bindButton(kRedoButton, "redo", "@tarvstr_CHistory_initChilds_NoRedoButton Unable to locate 'redo' button.");
}

CError* CHistory::bindButton(const char* name, const char* handler, const char* message) {
    const auto* button = findObjectOf<CViewBaseCtlEvents>(name);
    if (!button) {
        TARV_FAIL(message);
    }
    listenObject(button->fullName(), "button-released", handler);
    return nullptr;
}

CError* CHistory::finishInit() {
    TARV_TRY(CView::finishInit());
    TARV_TRY(findChildren());
    return historyChanged();
}

CValueList* CHistory::list() const {
    return findObjectOf<CValueList>(kList);
}

CAudioInterfaceClient* CHistory::client() const {
    return isGone_ ? nullptr : findObjectOf<CAudioInterfaceClient>(clientPath_);
}

CError* CHistory::undo() {
    return client() ? client()->undo() : nullptr;
}

CError* CHistory::redo() {
    return client() ? client()->redo() : nullptr;
}

CError* CHistory::openList() {
    auto* button = findObjectOf<CViewBaseCtlEvents>(kSelectButton);
    if (!button || !list() || !client()) {
        return nullptr;
    }
    CAttributeMap params;
    params["popup-text-source"] = CAttributeValue::fromString(list()->fullName());
    params["result-target"] = CAttributeValue::fromString(fullName());
    params["selected-item"] = CAttributeValue::fromInt(list()->getAttrInt("selected-item"));
    params["list-id"] = CAttributeValue::fromInt(shown_);
    return CPopupList::open(*this, *button, params);
}

CError* CHistory::stepChosen(CAttributeMap& params) {
    const int32_t index = params["index"].asInt();
    const CValueList* const steps = list();
    const bool isShown = params["list-id"].asInt() == shown_ && steps && index >= 0 && index < steps->count();
    return isShown && client() ? client()->selectStep(static_cast<int32_t>((*steps)[index].value)) : nullptr;
}

CError* CHistory::engineGone() {
    isGone_ = true;
    return historyChanged();
}

CError* CHistory::historyChanged() {
    if (state() != CObjectState::Finished || !list()) {
        return nullptr;
    }
    const CObjectWatch watch(*this);
    for (CError* (CHistory::*const step)() : {&CHistory::fillList, &CHistory::showLabels}) {
        CError* error = (this->*step)();
        if (error || !watch.isAlive()) {
            return error;
        }
    }
    CAttributeMap none;
    return sendEvent("history-change", none, false);
}

/// The first row is the newest step, the last one the start.
CError* CHistory::fillList() {
    const CInterfaceHistory history = client() ? client()->engineState().history : CInterfaceHistory();
    CArray<CValueList::CItem, 1> items;
    for (int32_t i = history.labels.count() - 1; i >= 0; --i) {
        items.append({CViewReader::withMarks(history.labels[i], ';'), static_cast<double>(i), i > history.position});
    }
    ++shown_;
    const CObjectWatch watch(*this);
    CValueList& steps = *list();
    const CObjectWatch ofList(steps);
    CError* error = steps.setItems(std::move(items));
    if (error || !ofList.isAlive() || !watch.isAlive()) {
        return error;
    }
    return steps.setAttribute("selected-item", CAttributeValue::fromInt(history.labels.count() - 1 - history.position));
}

CError* CHistory::showLabels() {
    const CInterfaceHistory history = client() ? client()->engineState().history : CInterfaceHistory();
    const int32_t position = history.position;
    const bool canUndo = position > 0 && position < history.labels.count();
    const bool canRedo = position + 1 < history.labels.count();
    const CObjectWatch watch(*this);
    const CString undo = canUndo ? getAttrString("undo-prefix") + history.labels[position] : getAttrString("undo-none");
    const CString redo =
        canRedo ? getAttrString("redo-prefix") + history.labels[position + 1] : getAttrString("redo-none");
    CError* error = setAttributePlain("undo-label", undo);
    if (!error && watch.isAlive()) {
        error = setAttributePlain("redo-label", redo);
    }
    const std::pair<const char*, bool> buttons[] = {
        {kUndoButton, canUndo}, {kSelectButton, history.labels.count() > 1}, {kRedoButton, canRedo}};
    for (const auto& [button, isEnabled] : buttons) {
        if (!error && watch.isAlive()) {
            error = enable(button, isEnabled);
        }
    }
    return error;
}

CError* CHistory::enable(const char* button, bool isEnabled) {
    auto* view = findObjectOf<CViewBaseCtlEvents>(button);
    if (!view || view->getAttrBool("is-disabled") == !isEnabled) {
        return nullptr;
    }
    return view->setAttribute("is-disabled", CAttributeValue::fromBool(!isEnabled));
}

}  // namespace tarv
