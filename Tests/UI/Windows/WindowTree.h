#pragma once

#include <functional>
#include <map>

#include "Core/CGlobalSettings.h"
#include "Core/CTimer.h"
#include "Platform/ByHand/CWindowByHand.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"
#include "UI/Views/CView.h"
#include "UI/Windows/CUIEventBridge.h"
#include "UI/Windows/CWindow.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

using CTexts = std::vector<std::pair<std::string, std::string>>;

/// Fills itself with the pixel of its attribute `fill`, a number, and writes down what it gets. Fails to draw with
/// `is-bad`.
class CFilledView : public CView {
public:
    using CAction = std::function<void(CFilledView&, CAttributeMap&)>;

    static std::vector<std::string> heard;
    /// By the same texts, such as "a.mouse-press".
    static std::map<std::string, CAction> actions;
    /// All events of all views, and their ends; empty unless a test sets them.
    static std::function<void(CFilledView&, const std::string& event)> onEvent;
    static std::function<void(const CFilledView&)> onGone;

    ~CFilledView() override;
    bool isInputView() const override { return getAttrBoolOr("is-input", true); }
    bool grabsKeys() const override { return getAttrBool("grabs-keys"); }
    CAttributeMap params;  ///< of the last event
    int32_t drawCount = 0;
    static int32_t drawnViews;  ///< of all of them

protected:
    [[nodiscard]] CError* inputEvent(const CString& event, CAttributeMap& eventParams) override;
    [[nodiscard]] CError* draw() override;
};

/// Writes down the events of other objects, as "source event".
class CEventLog : public CObject {
public:
    static std::vector<std::string> heard;
    static CAttributeMap last;  ///< parameters
    /// Called with each of them; empty unless a test sets it.
    static std::function<void(const std::string&)> onEvent;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor);

private:
    [[nodiscard]] CError* receive(CAttributeMap& params);
};

/// An editor's tree with its main window in a window of a host, and templates of popups.
struct CWindowTree : testing::Test {
    explicit CWindowTree(std::vector<CIntRect> monitors = {{0, 0, 1920, 1080}});
    ~CWindowTree() override;

    static CTestNode view(const std::string& name, CTexts attributes = {}, std::vector<CTestNode> children = {});
    /// A popup of that size; attributes of its root view.
    static CTestNode popup(const std::string& name, int32_t width, int32_t height, CTexts attributes = {},
                           std::vector<CTestNode> children = {});
    /// Builds the tree: the main window `ui.main-window` of 300 x 200 pixels with these views. Failure, or "".
    std::string tryBuild(std::vector<CTestNode> views, CTexts rootAttributes = {}, CTexts windowAttributes = {});
    /// And opens the window.
    void open(std::vector<CTestNode> views, CTexts rootAttributes = {}, CTexts windowAttributes = {});
    void close();

    CWindow& window() const { return *tree->findObjectOf<CWindow>("ui.main-window.window-renderer"); }
    CFilledView& at(const std::string& path) const;
    CFilledView* find(const std::string& path) const;
    CWindow* popupWindow(const std::string& name) const;
    /// Opens a popup for a view.
    void openPopup(const std::string& opener, const std::string& templateName, const CTexts& texts = {});
    /// What the user sees at a pixel of the main window.
    uint32_t pixel(int32_t x, int32_t y);
    void moveTo(int32_t x, int32_t y) { system.input().moveIn(window().handle(), x, y); }
    void click(int32_t x, int32_t y);
    void listen(const std::string& sender, const std::string& event);
    static std::string heard();

    static constexpr int32_t kHostX = 100;
    static constexpr int32_t kHostY = 50;

    CWindowSystemByHand system;
    std::vector<CTestNode> templates;
    /// Classes and graphics of the test's own; the latter are loaded where `hasGraphics` is true.
    std::vector<CCreatorRow> classes;
    bool hasGraphics = false;
    std::unique_ptr<CTestApplication> application;
    CWindowHandle host = 0;
    std::unique_ptr<CObject> tree;

private:
    bool isEditorOpen_ = false;
};

}  // namespace tarv
