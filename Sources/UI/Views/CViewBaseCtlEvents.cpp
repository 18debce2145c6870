#include "UI/Views/CViewBaseCtlEvents.h"

#include "Core/CNotifyServer.h"
#include "UI/Views/CInputListener.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

namespace {

constexpr const char* kHandled = "is-handled";

}  // namespace

CViewBaseCtlEvents::~CViewBaseCtlEvents() {
    endInput();
}

CError* CViewBaseCtlEvents::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CViewBaseCtlEvents::readClickThrough>("is-click-through");
    descriptor.addHandler<&CViewBaseCtlEvents::readChildClickThrough>("is-child-click-through");
    descriptor.addHandler<&CViewBaseCtlEvents::readFocusable>("is-focusable");
    descriptor.addHandler<&CViewBaseCtlEvents::readIntercepting>("is-intercepting");
    descriptor.addHandler<&CViewBaseCtlEvents::readInterceptingAllowChilds>("is-intercepting-allow-childs");
    descriptor.addHandler<&CViewBaseCtlEvents::readDisabled>("is-disabled");
    descriptor.addHandler<&CViewBaseCtlEvents::readHint>("hint");
    descriptor.addHandler<&CViewBaseCtlEvents::popupToggle>("popup-toggle");
    return nullptr;
}

CError* CViewBaseCtlEvents::init() {
    TARV_TRY(CViewBase::init());
    parentInput_ = dynamic_cast<CViewBaseCtlEvents*>(parentView());
    TARV_TRY(readClickThrough());
    TARV_TRY(readChildClickThrough());
    TARV_TRY(readFocusable());
    TARV_TRY(readIntercepting());
    TARV_TRY(readInterceptingAllowChilds());
    TARV_TRY(readDisabled());
    return nullptr;
}

CError* CViewBaseCtlEvents::mouseEnter(CAttributeMap& params) {
    return inputEvent("mouse-enter", params);
}

CError* CViewBaseCtlEvents::mouseExit(CAttributeMap& params) {
    return inputEvent("mouse-exit", params);
}

CError* CViewBaseCtlEvents::mouseMove(CAttributeMap& params) {
    return inputEvent("mouse-move", params);
}

CError* CViewBaseCtlEvents::mousePress(CAttributeMap& params) {
    return inputEvent("mouse-press", params);
}

CError* CViewBaseCtlEvents::mousePressR(CAttributeMap& params) {
    return inputEvent("mouse-press-r", params);
}

CError* CViewBaseCtlEvents::mouseRelease(CAttributeMap& params) {
    return inputEvent("mouse-release", params);
}

CError* CViewBaseCtlEvents::mouseReleaseR(CAttributeMap& params) {
    return inputEvent("mouse-release-r", params);
}

CError* CViewBaseCtlEvents::mouseCancel(CAttributeMap& params) {
    return inputEvent("mouse-cancel", params);
}

CError* CViewBaseCtlEvents::mouseCancelR(CAttributeMap& params) {
    return inputEvent("mouse-cancel-r", params);
}

CError* CViewBaseCtlEvents::mouseTakeBack(CAttributeMap& params) {
    return inputEvent("mouse-take-back", params);
}

CError* CViewBaseCtlEvents::mouseWheel(CAttributeMap& params) {
    return inputEvent("mouse-wheel", params);
}

CError* CViewBaseCtlEvents::keyPress(CAttributeMap& params) {
    return inputEvent("key-press", params);
}

CError* CViewBaseCtlEvents::keyRelease(CAttributeMap& params) {
    return inputEvent("key-release", params);
}

CError* CViewBaseCtlEvents::focusLost(CAttributeMap& params) {
    return inputEvent("focus-lost", params);
}

CError* CViewBaseCtlEvents::hintUpdate(CAttributeMap& params) {
    return inputEvent("hint-update", params);
}

CError* CViewBaseCtlEvents::autoClick(CAttributeMap& params) {
    return inputEvent("auto-click", params);
}

CError* CViewBaseCtlEvents::setInputState(CInputState, bool) {
    return nullptr;
}

CError* CViewBaseCtlEvents::inputEvent(const CString& name, CAttributeMap& params) {
    // Asked first, since most events have no listener and the parameters of a send take memory.
    if (!notifyServer() || !notifyServer()->hasListeners(fullName(), name)) {
        return nullptr;
    }
    return sendEvent(name, params, false);
}

void CViewBaseCtlEvents::setHandled(CAttributeMap& params) {
    params[kHandled] = CAttributeValue::fromBool(true);
}

bool CViewBaseCtlEvents::isHandled(const CAttributeMap& params) {
    const auto found = params.find(kHandled);
    return found != params.end() && found->second.asBool();
}

CError* CViewBaseCtlEvents::openPopup(const CString& templateName, CAttributeMap& params) {
    CViewWindow* own = window();
    return own ? own->openPopup(*this, templateName, params) : nullptr;
}

CError* CViewBaseCtlEvents::popupToggle(CAttributeMap& params) {
    constexpr const char* kTemplate = "popup-template";
    CAttributeMap passed = params;
    passed.erase(kTemplate);
    const auto named = params.find(kTemplate);
    const CString name(named == params.end() ? getAttrString(kTemplate) : named->second.asString());
    return name.isEmpty() ? nullptr : openPopup(name, passed);
}

bool CViewBaseCtlEvents::isClickThrough() const {
    if (clickThrough_ != CInherited::None) {
        return clickThrough_ == CInherited::Yes;
    }
    return parentInput_ && parentInput_->childrenAreClickThrough();
}

bool CViewBaseCtlEvents::childrenAreClickThrough() const {
    const CViewBaseCtlEvents* view = this;
    while (view && view->childClickThrough_ == CInherited::None) {
        view = view->parentInput_;
    }
    return view && view->childClickThrough_ == CInherited::Yes;
}

bool CViewBaseCtlEvents::isHintPlain() const {
    const auto found = attributes().find("hint");
    return found != attributes().end() && found->second.isPlain();
}

bool CViewBaseCtlEvents::isDisabled() const {
    const CViewBaseCtlEvents* view = this;
    while (view && !view->isDisabled_ && !view->isInactive_) {
        view = view->parentInput_;
    }
    return view != nullptr;
}

CViewRole CViewBaseCtlEvents::role() const {
    const CViewRole named = CViewReader::roleNamed(getAttrString("role"));
    return named == CViewRole::None && isFocusable_ ? CViewRole::Button : named;
}

CString CViewBaseCtlEvents::nameWithoutTitle() const {
    const CString& own = getAttrString("readable-name");
    if (!own.isEmpty()) {
        return CViewReader::withoutMarks(own);
    }
    const CViewBaseCtlEvents* view = this;
    while (view && view->hint().isEmpty()) {
        view = view->parentInput();
    }
    return view ? CViewReader::withoutMarks(view->hint()) : CString();
}

CString CViewBaseCtlEvents::readableName() const {
    const CObject* label = findChild("label");
    for (const CString& text :
         {getAttrString("readable-name"), getAttrString("title"), label ? label->getAttrString("title") : CString()}) {
        const CString name = CViewReader::withoutMarks(text);
        if (!name.isEmpty()) {
            return name;
        }
    }
    return nameWithoutTitle();
}

void CViewBaseCtlEvents::endInput() {
    CInputListener* listener = window() ? window()->input() : nullptr;
    if (listener && isRootView()) {
        listener->rootViewGoes();
    }
    destroyChildren();
    // The window may stand below this view, and then it has gone.
    listener = window() ? window()->input() : nullptr;
    if (listener) {
        listener->viewGoes(*this);
    }
}

CViewBaseCtlEvents::CInherited CViewBaseCtlEvents::inherited(const char* attribute) const {
    if (getAttrString(attribute).isEmpty()) {
        return CInherited::None;
    }
    return getAttrBool(attribute) ? CInherited::Yes : CInherited::No;
}

CError* CViewBaseCtlEvents::readClickThrough() {
    clickThrough_ = inherited("is-click-through");
    return nullptr;
}

CError* CViewBaseCtlEvents::readChildClickThrough() {
    childClickThrough_ = inherited("is-child-click-through");
    return nullptr;
}

CError* CViewBaseCtlEvents::readFocusable() {
    isFocusable_ = getAttrBool("is-focusable");
    return nullptr;
}

CError* CViewBaseCtlEvents::readIntercepting() {
    isIntercepting_ = getAttrBool("is-intercepting");
    return nullptr;
}

CError* CViewBaseCtlEvents::readInterceptingAllowChilds() {
    isInterceptingAllowChilds_ = getAttrBool("is-intercepting-allow-childs");
    return nullptr;
}

CError* CViewBaseCtlEvents::readDisabled() {
    setDisabledFlag(isDisabled_, getAttrBool("is-disabled"));
    return nullptr;
}

void CViewBaseCtlEvents::setInactive(bool isInactive) {
    setDisabledFlag(isInactive_, isInactive);
}

/// One of the two flags that disable this view.
void CViewBaseCtlEvents::setDisabledFlag(bool& flag, bool isSet) {
    const bool wasDisabled = isDisabled_ || isInactive_;
    flag = isSet;
    const bool isNow = isDisabled_ || isInactive_;
    if (isNow && !wasDisabled && window() && window()->input()) {
        window()->input()->viewsChanged();
    }
    if (isNow != wasDisabled) {
        disabledChanged();
    }
}

void CViewBaseCtlEvents::disabledChanged() {
    for (CObject* child : children()) {
        auto* view = dynamic_cast<CViewBaseCtlEvents*>(child);
        if (view && view->parentInput_ == this) {
            view->disabledChanged();
        }
    }
}

CError* CViewBaseCtlEvents::readHint() {
    if (window() && window()->input()) {
        window()->input()->hintChanged(*this);
    }
    return nullptr;
}

}  // namespace tarv
