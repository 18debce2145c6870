#include "Tests/UI/Views/RoutedViews.h"

#include "Core/CObjectEventBridge.h"
#include "Core/CObjectWatch.h"

namespace tarv {

std::vector<std::string> CRoutedView::heard;
std::map<std::string, CRoutedView::CAction> CRoutedView::actions;
std::function<void(CRoutedView&)> CRoutedView::onNote;
std::string CRoutedView::failing;

namespace {

CViewRect boxOf(const CString& text) {
    const CArray<CString, 4> words = text.split(' ');
    CViewRect box;
    double* const values[] = {&box.x, &box.y, &box.width, &box.height};
    for (int32_t i = 0; i < 4 && i < words.count(); ++i) {
        *values[i] = CString::toDouble(words[i]);
    }
    return box;
}

std::vector<CCreatorRow> creators() {
    return {{"core:object", &createObject<CObject>, nullptr},
            {"test:view", &createObject<CRoutedView>, &CRoutedView::initClass},
            {"ui:ui-event-bridge", &createObject<CStdEventBridge>, nullptr}};
}

}  // namespace

CRoutedView::~CRoutedView() {
    if (isJoined_ && sectorMap()) {
        sectorMap()->removeView(*this, box_);
    }
    endInput();
}

CError* CRoutedView::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CRoutedView::receive>("receive");
    return CViewBaseCtlEvents::initClass(descriptor);
}

CError* CRoutedView::receive(CAttributeMap& eventParams) {
    params = eventParams;
    note(".received", eventParams);
    return nullptr;
}

CError* CRoutedView::init() {
    TARV_TRY(CViewBaseCtlEvents::init());
    box_ = boxOf(getAttrString("box"));
    return nullptr;
}

void CRoutedView::join() {
    sectorMap()->updateView(*this, {}, box_);
    isJoined_ = true;
    for (CObject* child : children()) {
        if (auto* below = dynamic_cast<CRoutedView*>(child)) {
            below->join();
        }
    }
}

void CRoutedView::moveTo(const CViewRect& box) {
    sectorMap()->updateView(*this, box_, box);
    box_ = box;
}

void CRoutedView::hide(bool isHidden) {
    isHidden_ = isHidden;
    if (window() && window()->input()) {
        window()->input()->viewsChanged();
    }
}

bool CRoutedView::isShown() const {
    for (const CViewBase* above = this; above; above = above->parentView()) {
        if (static_cast<const CRoutedView*>(above)->isHidden_) {
            return false;
        }
    }
    return true;
}

void CRoutedView::note(const std::string& what, CAttributeMap& eventParams) {
    const std::string text = name().toUtf8() + what;
    heard.push_back(text);
    const auto action = actions.find(text);
    if (action != actions.end()) {
        const CAction run = action->second;
        run(*this, eventParams);
    } else if (onNote) {
        onNote(*this);
    }
}

CError* CRoutedView::setInputState(CInputState state, bool isSet) {
    bool* const flags[] = {&isHovered_, &isPushed_, &isFocused_};
    constexpr const char* kNames[] = {"hover", "pushed", "focus"};
    const int32_t index = static_cast<int32_t>(state);
    EXPECT_FALSE(isSet && *flags[index]) << "set twice";
    *flags[index] = isSet;
    CAttributeMap none;
    note((isSet ? "+" : "-") + std::string(kNames[index]), none);
    return nullptr;
}

/// Presses and ends alternate.
void CRoutedView::checkPairs(const std::string& event) {
    if (event == "mouse-press" || event == "mouse-press-r") {
        EXPECT_FALSE(isPressed_) << "a second press";
        isPressed_ = true;
    } else if (event.find("release") != std::string::npos || event.find("cancel") != std::string::npos) {
        if (event.find("mouse") == 0) {
            EXPECT_TRUE(isPressed_) << event << " without a press";
            isPressed_ = false;
        }
    }
    if (event == "mouse-enter" || event == "mouse-exit") {
        EXPECT_NE(isEntered_, event == "mouse-enter") << event << " twice";
        isEntered_ = !isEntered_;
    }
}

CError* CRoutedView::inputEvent(const CString& event, CAttributeMap& eventParams) {
    params = eventParams;
    checkPairs(event.toUtf8());
    const std::string what = "." + event.toUtf8();
    if (failing == name().toUtf8() + what) {
        failing.clear();
        TARV_FAIL("@tarvstr_CRoutedView_inputEvent_Asked Asked to fail.");
    }
    const CObjectWatch watch(*this);
    note(what, eventParams);
    return watch.isAlive() ? CViewBaseCtlEvents::inputEvent(event, eventParams) : nullptr;
}

CRoutedWindow::CRoutedWindow() : router(std::make_unique<CInputRouter>(*this, *this)) {
    EXPECT_EQ(consumed(map_.resize(512.0, 512.0)), "");
}

void CRoutedWindow::show(CRoutedView& root) {
    root.setWindow(this);
    router->setRootView(&root);
    root.join();
}

void CRoutedWindow::inputFailed(CError* error) {
    failures.push_back(error->lines()[0]->toUtf8());
    delete error;
}

CRouting::CRouting() : application(creators()) {
    CRoutedView::heard.clear();
    CRoutedView::actions.clear();
    CRoutedView::failing.clear();
}

CRouting::~CRouting() {
    CRoutedView::actions.clear();
    root.reset();
}

void CRouting::build(const std::vector<CTestNode>& views) {
    CTestNode rootView = view("r", "0 0 512 512", {{"is-root-view", "true"}, {"is-input", "false"}}, views);
    root = application.makeRoot({{"ui:ui-event-bridge", "ui", {}, {rootView}}});
    window.show(at("r"));
}

CTestNode CRouting::view(const std::string& name, const std::string& box,
                         std::vector<std::pair<std::string, std::string>> attributes, std::vector<CTestNode> children) {
    attributes.emplace_back("box", box);
    return {"test:view", name, std::move(attributes), std::move(children)};
}

CRoutedView* CRouting::find(const std::string& path) const {
    return root->findObjectOf<CRoutedView>(("ui." + path).c_str());
}

CRoutedView& CRouting::at(const std::string& path) const {
    CRoutedView* found = find(path);
    EXPECT_TRUE(found) << path;
    return *found;
}

CPointerEvent CRouting::event(CPointerKind kind, CPointerButton button, int32_t x, int32_t y) const {
    CPointerEvent made;
    made.kind = kind;
    made.button = button;
    made.x = x;
    made.y = y;
    made.modifiers = held;
    return made;
}

void CRouting::move(int32_t x, int32_t y) {
    window.router->pointer(event(CPointerKind::Move, CPointerButton::None, x, y));
}

void CRouting::press(int32_t x, int32_t y, CPointerButton button) {
    (button == CPointerButton::Left ? held.isLeft : held.isRight) = true;
    window.router->pointer(event(CPointerKind::Press, button, x, y));
}

void CRouting::release(int32_t x, int32_t y, CPointerButton button) {
    (button == CPointerButton::Left ? held.isLeft : held.isRight) = false;
    window.router->pointer(event(CPointerKind::Release, button, x, y));
}

void CRouting::leave() {
    window.router->pointer(event(CPointerKind::Leave, CPointerButton::None, -1, -1));
}

void CRouting::loseCapture() {
    window.isCaptured = false;
    window.router->pointer(event(CPointerKind::CaptureLost, CPointerButton::None, 0, 0));
}

bool CRouting::wheel(int32_t x, int32_t y, double delta) {
    return window.router->wheel({x, y, delta, held});
}

bool CRouting::key(int32_t code, bool isDown, bool isShift) {
    CKeyEvent made;
    made.code = code;
    made.isDown = isDown;
    made.modifiers.isShift = isShift;
    if (isDown && code >= 'A' && code <= 'Z') {
        made.characters[0] = static_cast<char16_t>(code - 'A' + 'a');
        made.characterCount = 1;
    }
    return window.router->key(made);
}

void CRouting::set(const std::string& path, const std::string& name, const std::string& value) const {
    EXPECT_EQ(consumed(at(path).setAttribute(name.c_str(), CString(value.c_str()))), "");
}

std::string CRouting::heard() {
    std::string text;
    for (const std::string& line : CRoutedView::heard) {
        text += (text.empty() ? "" : " ") + line;
    }
    CRoutedView::heard.clear();
    return text;
}

}  // namespace tarv
