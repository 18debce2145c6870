#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"
#include "UI/Views/CInputRouter.h"
#include "UI/Views/CSectorMap.h"
#include "UI/Views/CViewWindow.h"

namespace tarv {

/// A view without a network: its box stands in the attribute `box` ("x y width height"). Writes down what it gets, and
/// does then what the test has asked for. `is-input` false makes it no input view.
class CRoutedView : public CViewBaseCtlEvents {
public:
    using CAction = std::function<void(CRoutedView&, CAttributeMap&)>;

    /// What all views got, such as "a.mouse-press", "a+hover", "a-hover".
    static std::vector<std::string> heard;
    /// By the same text.
    static std::map<std::string, CAction> actions;
    /// Called with each text that is written down.
    static std::function<void(CRoutedView&)> onNote;
    /// The next handler that this names fails.
    static std::string failing;

    ~CRoutedView() override;
    /// Has the handler `receive`, too, which writes down "a.received".
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);
    [[nodiscard]] CError* init() override;
    /// Enters the tiles of the window.
    void join();
    void moveTo(const CViewRect& box);
    void hide(bool isHidden);

    bool isHovered() const { return isHovered_; }
    bool isPushed() const { return isPushed_; }
    bool isFocused() const { return isFocused_; }
    /// A press without its end so far.
    bool isPressed() const { return isPressed_; }
    /// Entered and not left so far.
    bool isEntered() const { return isEntered_; }
    CAttributeMap params;  ///< of the last event

    [[nodiscard]] CError* setInputState(CInputState state, bool isSet) override;
    bool isInputView() const override { return getAttrBoolOr("is-input", true) || isFocusable(); }
    int64_t stackingNumber() const override { return getAttrInt("z-index"); }
    bool isShown() const override;
    bool isDecorative() const override { return getAttrBool("is-decorative"); }
    bool isDynamic() const override { return false; }
    const CViewRect& visibleRect() const override { return box_; }
    const CViewRect& wholeRect() const override { return box_; }
    double effectiveOpacity() const override { return 1.0; }
    [[nodiscard]] CError* drawInSector(const CSectorTarget&) override { return nullptr; }

protected:
    [[nodiscard]] CError* inputEvent(const CString& name, CAttributeMap& eventParams) override;

private:
    [[nodiscard]] CError* receive(CAttributeMap& eventParams);
    void note(const std::string& what, CAttributeMap& eventParams);
    void checkPairs(const std::string& event);

    CViewRect box_;
    bool isJoined_ = false;
    bool isHidden_ = false;
    bool isHovered_ = false;
    bool isPushed_ = false;
    bool isFocused_ = false;
    bool isPressed_ = false;
    bool isEntered_ = false;
};

/// A window of 512 x 512 pixels without a system behind it.
class CRoutedWindow : public CViewWindow, public CInputWindow {
public:
    CRoutedWindow();
    /// The root view, its size, and all views below enter the tiles.
    void show(CRoutedView& root);

    CSectorMap& sectorMap() override { return map_; }
    double now() const override { return 0.0; }
    CViewBase* keyFocusView() const override { return router->keyFocus(); }
    void setKeyFocusView(CViewBase* view) override { router->setKeyFocus(dynamic_cast<CViewBaseCtlEvents*>(view)); }
    void setHint(const CString& text) override {
        hint = text.toUtf8();
        if (onHint) {
            onHint();
        }
    }
    void setCursor(CCursorShape) override {}
    CInputListener* input() override { return router.get(); }
    void capturePointer(bool isOn) override { isCaptured = isOn; }
    void wantKeys(bool isWanted) override { areKeysWanted = isWanted; }
    void inputFailed(CError* error) override;

    std::unique_ptr<CInputRouter> router;
    std::string hint;
    std::function<void()> onHint;
    bool isCaptured = false;
    bool areKeysWanted = false;
    std::vector<std::string> failures;

private:
    CSectorMap map_;
};

/// A tree of views in a window, and input for it.
struct CRouting : testing::Test {
    CRouting();
    ~CRouting() override;
    /// Views below the root view `r`, which holds the whole window.
    void build(const std::vector<CTestNode>& views);
    static CTestNode view(const std::string& name, const std::string& box,
                          std::vector<std::pair<std::string, std::string>> attributes = {},
                          std::vector<CTestNode> children = {});
    CRoutedView& at(const std::string& path) const;
    CRoutedView* find(const std::string& path) const;

    CPointerEvent event(CPointerKind kind, CPointerButton button, int32_t x, int32_t y) const;
    void move(int32_t x, int32_t y);
    void press(int32_t x, int32_t y, CPointerButton button = CPointerButton::Left);
    void release(int32_t x, int32_t y, CPointerButton button = CPointerButton::Left);
    void leave();
    void loseCapture();
    bool wheel(int32_t x, int32_t y, double delta);
    bool key(int32_t code, bool isDown = true, bool isShift = false);
    void set(const std::string& path, const std::string& name, const std::string& value) const;
    /// What has been heard since the last call, separated by blanks.
    static std::string heard();

    CWindowSystemByHand system;
    CTestApplication application;
    std::unique_ptr<CObject> root;
    CRoutedWindow window;
    CInputModifiers held;
};

}  // namespace tarv
