// Long sequences of input, popups, blockers, resizes and lost captures in windows whose handlers disable, hide and
// destroy views, open and close popups, and run message loops.

#include <cstdlib>
#include <random>
#include <set>

#include "Core/CObjectWatch.h"
#include "Tests/UI/Windows/WindowTree.h"
#include "UI/Views/CViewState.h"

namespace tarv {
namespace {

class RandomWindow : public CWindowTree {
protected:
    RandomWindow() {
        const CTestNode blocker =
            testTemplate("ui:window-blocker", "test:view",
                         {{"placement", "overlay"}, {"width", "100%"}, {"height", "100%"}, {"z-index", "200000000"}});
        templates = {popup("ui:list", 80, 70, {{"is-popup-window", "true"}}, {row("row-1"), row("row-2")}),
                     popup("ui:settings", 120, 60, {{"unique-name", "settings"}}, {row("row-1"), row("row-2")}),
                     popup("ui:message", 100, 50, {{"is-modal", "true"}}, {row("row-1")}), blocker};
        CFilledView::onEvent = [this](CFilledView& view, const std::string& event) { heardEvent(view, event); };
        CFilledView::onGone = [this](const CFilledView& view) { viewGone(view); };
    }
    ~RandomWindow() override { close(); }

    static CTestNode pushed() { return {"ui:view-state", "pushed", {{"state-name", "pushed"}, {"fill", "9"}}}; }
    static CTestNode row(const std::string& name) {
        return view(name, {{"placement", "top"}, {"width", "80"}, {"height", "22"}}, {pushed()});
    }
    int32_t below(int32_t count) { return static_cast<int32_t>(random() % static_cast<uint32_t>(count)); }
    static std::string text(int32_t number) { return std::to_string(number); }
    CTexts placing() {
        return {{"placement", "overlay"},
                {"width", text(20 + below(120))},
                {"height", text(20 + below(90))},
                {"outer-border", "L" + text(below(220)) + " T" + text(below(140))}};
    }
    CTexts attributes() {
        CTexts made = placing();
        for (const char* flag : {"is-click-through", "is-focusable", "is-intercepting", "is-intercepting-allow-childs",
                                 "is-decorative", "is-dynamic"}) {
            if (below(6) == 0) {
                made.emplace_back(flag, "true");
            }
        }
        made.emplace_back("is-input", below(5) ? "true" : "false");
        return made;
    }
    std::vector<CTestNode> views(int32_t depth) {
        std::vector<CTestNode> made;
        for (int32_t i = 2 + below(3); i > 0; --i) {
            std::vector<CTestNode> children = depth > 0 ? views(depth - 1) : std::vector<CTestNode>();
            if (below(2)) {
                children.push_back(pushed());
            }
            made.push_back(view("v" + text(count++), attributes(), std::move(children)));
            names.insert(made.back().name);
        }
        return made;
    }
    static void collect(CObject& object, std::vector<CFilledView*>& all) {
        if (auto* found = dynamic_cast<CFilledView*>(&object)) {
            all.push_back(found);
        }
        for (CObject* child : object.children()) {
            collect(*child, all);
        }
    }
    std::vector<CFilledView*> all() const {
        std::vector<CFilledView*> found;
        collect(*tree, found);
        return found;
    }
    CFilledView& any() {
        const std::vector<CFilledView*> found = all();
        return *found[static_cast<size_t>(below(static_cast<int32_t>(found.size())))];
    }
    CWindow& windowOf(const CFilledView& view) const { return static_cast<CWindow&>(*view.window()); }

    void heardEvent(CFilledView& view, const std::string& event) {
        if (event == "mouse-press" || event == "mouse-press-r") {
            EXPECT_EQ(pressed[&view], 0) << view.fullName().toUtf8();
            ++pressed[&view];
            ++presses;
        } else if (event.starts_with("mouse-release") || event.starts_with("mouse-cancel")) {
            EXPECT_EQ(pressed[&view], 1) << view.fullName().toUtf8() << ' ' << event;
            --pressed[&view];
            cancels += event.starts_with("mouse-cancel") ? 1 : 0;
        }
        // Some handlers change the tree, or let a message loop run that brings more input.
        if (nesting < 3 && tree && isRunning && below(14) == 0) {
            ++nesting;
            below(3) ? change() : step();
            --nesting;
        }
    }
    void viewGone(const CFilledView& view) {
        pressed.erase(&view);
        names.erase(view.name().toUtf8());
    }
    static void set(CFilledView& view, const char* name, const std::string& value) {
        EXPECT_EQ(consumed(view.setAttribute(name, CString(value.c_str()))), "") << name;
    }
    void add() {
        CFilledView& parent = any();
        const std::string name = "v" + text(count++);
        if (all().size() >= 50) {
            return;
        }
        names.insert(name);
        CAttributeMap made;
        for (const auto& [attribute, value] : attributes()) {
            made[attribute.c_str()] = CAttributeValue::fromString(value.c_str());
        }
        CObject* child = nullptr;
        ASSERT_EQ(consumed(parent.createChild(child, "test:view", name.c_str(), false, &made)), "");
        CAttributeMap state;
        state["state-name"] = CAttributeValue::fromString("pushed");
        ASSERT_EQ(consumed(child->createChild(child, "ui:view-state", "pushed", false, &state)), "");
    }
    void openAny() {
        static const char* const kTemplates[] = {"ui:list", "ui:settings", "ui:message"};
        CAttributeMap params;
        CFilledView& opener = any();
        const CObjectWatch watch(opener);
        if (tree->findObject("ui")->children().count() < 10) {
            EXPECT_EQ(consumed(opener.openPopup(kTemplates[below(3)], params)), "");
            // A blocker that opens one goes with it.
            opened += watch.isAlive() && windowOf(opener).popups().count() > 0 ? 1 : 0;
        }
    }
    void change() {
        CFilledView& view = any();
        const bool isRoot = view.isRootView();
        CAttributeMap params;
        switch (below(12)) {
            case 0:
                set(view, "is-disabled", isRoot || below(3) ? "false" : "true");
                break;
            case 1:
                if (!isRoot) {
                    set(view, "is-visible", below(3) ? "true" : "false");
                }
                break;
            case 2:
                if (!isRoot && all().size() > 8) {
                    delete &view;
                }
                break;
            case 3:
                if (!isRoot) {
                    for (const auto& [name, value] : placing()) {
                        set(view, name.c_str(), value);
                    }
                }
                break;
            case 4:
            case 11:
                add();
                break;
            case 5:
                openAny();
                break;
            case 6:
                EXPECT_EQ(
                    consumed(windowOf(view).view().passEvent(below(2) ? "close-window" : "unblock-window", params)),
                    "");
                break;
            case 7:
                windowOf(view).setKeyFocusView(below(3) ? &view : nullptr);
                break;
            case 8:
                set(*find("main-window"), below(2) ? "width" : "height", text(100 + below(260)));
                break;
            case 9:
                set(view, "is-click-through", below(4) ? "false" : "true");
                break;
            default:
                set(view, "opacity", below(2) ? "1" : "0.5");
        }
    }
    /// Often onto a view, sometimes beside all of them.
    void moveAnywhere() {
        const CFilledView& view = any();
        if (below(4) == 0 || view.visibleRect().isEmpty() || !windowOf(view).isOpen()) {
            system.input().move(kHostX - 10 + below(360), kHostY - 10 + below(280));
            return;
        }
        const CViewRect rect = view.visibleRect();
        system.input().moveIn(windowOf(view).handle(), static_cast<int32_t>(rect.x + rect.width / 2),
                              static_cast<int32_t>(rect.y + rect.height / 2));
    }
    /// What a user does to get on.
    void unblock() {
        CAttributeMap params;
        if (window().isBlocked()) {
            EXPECT_EQ(consumed(window().view().passEvent("unblock-window", params)), "");
        }
    }
    void step() {
        const CPointerButton button = below(3) ? CPointerButton::Left : CPointerButton::Right;
        switch (below(20)) {
            case 0:
            case 1:
            case 2:
                system.input().press(button);
                break;
            case 3:
            case 4:
            case 5:
                system.input().release(button);
                break;
            case 6:
                system.desktop().takeCapture();
                break;
            case 7:
                system.desktop().activate(host);
                break;
            case 8:
                system.input().wheel(1.0);
                break;
            case 9:
                system.input().key(below(3) ? 'A' : static_cast<int32_t>(kKeyTab), below(2) == 0, u"a");
                break;
            case 10:
                system.advance(0.025 * (1 + below(3)));
                break;
            case 11:
                change();
                break;
            case 12:
                system.pump();
                break;
            case 13:
                unblock();
                break;
            default:
                moveAnywhere();
        }
    }
    /// Nothing is hovered, pushed or pressed but what the routers hold.
    void check() {
        std::map<const CFilledView*, int32_t> held;
        for (const CFilledView* view : all()) {
            CInputRouter& router = windowOf(*view).router();
            const std::string name = view->fullName().toUtf8();
            const bool isHeld = router.drag().isActive() && router.drag().view() == view;
            EXPECT_EQ(view->isStateSet("hover"), router.hovered() == view) << name;
            EXPECT_EQ(view->isStateSet("pushed"), isHeld && hasLook(*view)) << name;
            const auto found = pressed.find(view);
            EXPECT_EQ(found != pressed.end() && found->second == 1, isHeld) << name;
            if (view->isDisabled() || !view->isShown()) {
                EXPECT_FALSE(router.hovered() == view || isHeld || router.keyFocus() == view) << name;
            }
            if (windowOf(*view).isBlocked()) {
                EXPECT_FALSE(router.hovered() == view || isHeld) << name;
            }
        }
        for (const CWindow* window : window().sharedData().windows()) {
            const bool isDragging = const_cast<CWindow*>(window)->router().drag().isActive();
            EXPECT_EQ(system.desktop().capture() == window->handle(), isDragging);
        }
    }
    static bool hasLook(const CFilledView& view) {
        for (const CObject* child : view.children()) {
            if (dynamic_cast<const CViewState*>(child)) {
                return true;
            }
        }
        return false;
    }
    /// The tree holds what it began with, what was added, and nothing else.
    void checkTree() {
        std::vector<std::string> top;
        for (const CObject* child : tree->findObject("ui")->children()) {
            top.push_back(child->name().toUtf8());
        }
        EXPECT_EQ(top, (std::vector<std::string>{"global-settings", "window-shared-data", "log", "main-window"}));
        std::set<std::string> left;
        for (const CFilledView* view : all()) {
            if (!view->isRootView()) {
                left.insert(view->name().toUtf8());
            }
        }
        EXPECT_EQ(left, names);
        EXPECT_EQ(window().sharedData().windows().count(), 1);
        EXPECT_FALSE(window().isBlocked());
    }
    void closePopups() {
        for (int32_t i = 0; i < 20; ++i) {
            window().popups().close();
            system.advance(0.05);
        }
    }
    void run(uint32_t seed, int32_t steps) {
        isRunning = false;
        random.seed(seed);
        count = 0;
        names.clear();
        pressed.clear();
        open(views(1));
        ASSERT_TRUE(window().isOpen());
        isRunning = true;
        for (int32_t i = 0; i < steps && !HasFailure(); ++i) {
            step();
            check();
            CFilledView::heard.clear();
        }
        isRunning = false;
        system.input().release(CPointerButton::Left);
        system.input().release(CPointerButton::Right);
        closePopups();
        window().router().cancel();
        window().router().setKeyFocus(nullptr);
        check();
        for (const CFilledView* view : all()) {
            EXPECT_FALSE(view->isStateSet("hover") || view->isStateSet("pushed"));
        }
        for (const auto& [view, presses] : pressed) {
            EXPECT_EQ(presses, 0);
        }
        checkTree();
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
        close();
        ASSERT_TRUE(system.isClean()) << "seed " << seed;
    }

    std::mt19937 random;
    int32_t count = 0;
    int32_t nesting = 0;
    int32_t presses = 0;
    int32_t cancels = 0;
    int32_t opened = 0;
    bool isRunning = false;
    std::set<std::string> names;
    std::map<const CFilledView*, int32_t> pressed;
};

TEST_F(RandomWindow, NothingIsLeftHoveredOrPushedAndEveryPressEndsOnce) {
    const uint32_t trees = std::getenv("TARV_LONG") ? 250 : 12;
    for (uint32_t seed = 1; seed <= trees && !HasFailure(); ++seed) {
        run(seed, 400);
    }
    // That there was something to go wrong.
    EXPECT_GT(presses, static_cast<int32_t>(trees) * 4);
    EXPECT_GT(cancels, static_cast<int32_t>(trees) * 3);
    EXPECT_GT(opened, static_cast<int32_t>(trees));
}

}  // namespace
}  // namespace tarv
