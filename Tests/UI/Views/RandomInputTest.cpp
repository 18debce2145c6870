// Long sequences of input with handlers that change the tree under it.

#include <cstdlib>
#include <random>

#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

struct RandomInput : CRouting {
    using CRandom = std::mt19937;

    int32_t below(int32_t count) { return static_cast<int32_t>(random() % static_cast<uint32_t>(count)); }
    std::string box() {
        return std::to_string(below(400)) + " " + std::to_string(below(400)) + " " + std::to_string(20 + below(200)) +
               " " + std::to_string(20 + below(200));
    }
    std::vector<std::pair<std::string, std::string>> attributes() {
        static const char* const kFlags[] = {"is-click-through", "is-child-click-through",       "is-focusable",
                                             "is-intercepting",  "is-intercepting-allow-childs", "is-decorative"};
        std::vector<std::pair<std::string, std::string>> made{{"z-index", std::to_string(below(5))},
                                                              {"is-input", below(4) ? "true" : "false"}};
        if (below(3) == 0)
            made.emplace_back("hint", "h" + std::to_string(below(3)));
        for (const char* flag : kFlags)
            if (below(8) == 0)
                made.emplace_back(flag, "true");
        return made;
    }
    std::vector<CTestNode> views(int32_t depth) {
        std::vector<CTestNode> made;
        for (int32_t i = 2 + below(3); i > 0; --i)
            made.push_back(view("v" + std::to_string(count++), box(), attributes(),
                                depth > 0 ? views(depth - 1) : std::vector<CTestNode>()));
        return made;
    }
    void collect(CObject& object, std::vector<CRoutedView*>& all) const {
        if (auto* found = dynamic_cast<CRoutedView*>(&object))
            all.push_back(found);
        for (CObject* child : object.children())
            collect(*child, all);
    }
    std::vector<CRoutedView*> all() const {
        std::vector<CRoutedView*> found;
        collect(*root, found);
        return found;
    }
    CRoutedView& any() {
        const std::vector<CRoutedView*> found = all();
        return *found[static_cast<size_t>(below(static_cast<int32_t>(found.size())))];
    }
    void add() {
        CObject* made = nullptr;
        CRoutedView& parent = any();
        ASSERT_EQ(consumed(loadTree(parent, {view("n" + std::to_string(count++), box(), attributes())})), "");
        made = parent.children()[parent.children().count() - 1];
        static_cast<CRoutedView*>(made)->join();
    }
    /// What a handler, or something between two events, does to the tree.
    void change() {
        CRoutedView& view = any();
        const bool isRoot = view.isRootView();
        switch (below(9)) {
            case 0:
                EXPECT_EQ(consumed(view.setAttribute("is-disabled", CString(below(2) ? "true" : "false"))), "");
                break;
            case 1:
                view.hide(below(3) == 0);
                break;
            case 2:
                if (!isRoot)
                    delete &view;
                break;
            case 3:
                if (!isRoot)
                    view.moveTo({static_cast<double>(below(400)), static_cast<double>(below(400)), 100.0, 60.0});
                break;
            case 4:
            case 5:
                if (all().size() < 60)
                    add();
                break;
            case 6:
                window.router->setKeyFocus(below(3) ? &view : nullptr);
                break;
            case 7:
                EXPECT_EQ(consumed(view.setAttribute("is-click-through", CString(below(4) ? "false" : "true"))), "");
                break;
            default:
                EXPECT_EQ(consumed(view.setAttribute("hint", CString(below(2) ? "x" : ""))), "");
        }
    }
    void step() {
        const int32_t x = below(560) - 20;
        const int32_t y = below(560) - 20;
        const CPointerButton button = below(3) ? CPointerButton::Left : CPointerButton::Right;
        switch (below(16)) {
            case 0:
            case 1:
            case 2:
                press(x, y, button);
                break;
            case 3:
            case 4:
            case 5:
                release(x, y, button);
                break;
            case 6:
                if (window.isCaptured)
                    loseCapture();
                break;
            case 7:
                leave();
                break;
            case 8:
                wheel(x, y, 1.0);
                break;
            case 9:
                key(below(3) ? 'A' : static_cast<int32_t>(kKeyTab), below(2) == 0, below(2) == 0);
                break;
            case 10:
                window.router->update();
                break;
            case 11:
                window.router->autoClick(0.0);
                break;
            case 12:
                change();
                break;
            default:
                move(x, y);
        }
    }
    /// Nothing is hovered, pushed or pressed but what the router holds.
    void check() const {
        int32_t pressed = 0;
        for (const CRoutedView* view : all()) {
            EXPECT_EQ(view->isHovered(), view == window.router->hovered());
            EXPECT_EQ(view->isEntered(), view == window.router->hovered());
            EXPECT_EQ(view->isPushed(), view == window.router->drag().view());
            EXPECT_EQ(view->isPressed(), view == window.router->drag().view());
            pressed += view->isPressed();
            if (view->isDisabled() || !view->isShown()) {
                EXPECT_FALSE(view->isHovered() || view->isPressed() || view == window.router->keyFocus());
            }
        }
        EXPECT_LE(pressed, 1);
        EXPECT_EQ(window.areKeysWanted, window.router->keyFocus() != nullptr);
        EXPECT_EQ(window.isCaptured, window.router->drag().isActive());
    }
    void run(uint32_t seed, int32_t steps) {
        random.seed(seed);
        count = 0;
        build(views(2));
        CRoutedView::onNote = [this](CRoutedView&) {
            // Some handlers change the tree, or let a message loop run that brings more input.
            if (nesting < 3 && below(12) == 0) {
                ++nesting;
                below(3) ? change() : step();
                --nesting;
            }
        };
        for (int32_t i = 0; i < steps && !HasFailure(); ++i) {
            step();
            check();
            CRoutedView::heard.clear();
        }
        CRoutedView::onNote = {};
        ASSERT_FALSE(HasFailure()) << "seed " << seed;
        window.router->cancel();
        window.router->setKeyFocus(nullptr);
        for (const CRoutedView* view : all())
            EXPECT_FALSE(view->isHovered() || view->isPushed() || view->isPressed());
        root.reset();
        held = {};
        ASSERT_TRUE(window.failures.empty());
    }

    CRandom random;
    int32_t count = 0;
    int32_t nesting = 0;
};

TEST_F(RandomInput, NothingIsLeftHoveredOrPushedAndEveryPressEnds) {
    const uint32_t trees = std::getenv("TARV_LONG") ? 2500 : 250;
    for (uint32_t seed = 1; seed <= trees && !HasFailure(); ++seed)
        run(seed, 400);
}

}  // namespace
}  // namespace tarv
