// What hands cost of the heap in the product's own tree, once all has happened before: nothing.

#include <vector>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "ProductEditor.h"
#include "Tests/System/AudioThreadWatch.h"
#include "UI/Binding/CParamBridge.h"

namespace tarv {

namespace {

constexpr double kTick = 0.025;
constexpr int32_t kSteps = 16;

class SteadyEditor : public CProductEditor {
protected:
    /// Blocks of both heaps that this thread takes while something happens.
    template <class Work>
    static uint64_t allocationsOf(Work&& work) {
        const engine::CAudioThreadWatch watch(nullptr);
        work();
        const engine::CWatched seen = watch.seen();
        return seen.allocations + seen.poolAllocations;
    }
    /// The same at the third time: those before make room.
    template <class Work>
    static uint64_t warmed(Work&& work) {
        work();
        work();
        return allocationsOf(work);
    }

    struct CPixel {
        CWindowHandle window;
        int32_t x;
        int32_t y;
        std::string view;
    };
    CPixel pixelOf(const std::string& path, int32_t x = 0, int32_t y = 0) {
        const auto& view = at(path);
        const CViewRect& rect = view.visibleRect();
        return {dynamic_cast<CWindow*>(view.window())->handle(), static_cast<int32_t>(rect.x + rect.width / 2.0) + x,
                static_cast<int32_t>(rect.y + rect.height / 2.0) + y, path};
    }
    void collect(CObject& below, std::vector<CPixel>& pixels) {
        const auto* view = dynamic_cast<const CView*>(&below);
        auto* window = view ? dynamic_cast<CWindow*>(view->window()) : nullptr;
        if (window && window->isOpen() && !view->visibleRect().isEmpty()) {
            pixels.push_back(pixelOf(below.fullName().toUtf8()));
        }
        for (CObject* child : below.children()) {
            collect(*child, pixels);
        }
    }
    void moveTo(const CPixel& pixel) {
        system_.input().moveIn(pixel.window, pixel.x, pixel.y);
        system_.advance(kTick);
    }
    /// From a place by so many pixels and back, in steps, with the button held.
    uint64_t costOfMoves(const CPixel& from, int32_t x, int32_t y) {
        wait(0.6);
        moveTo(from);
        system_.input().press(CPointerButton::Left);
        system_.advance(kTick);
        const uint64_t cost = warmed([&] {
            for (int32_t i = 1; i <= kSteps; ++i) {
                const int32_t step = i <= kSteps / 2 ? i : kSteps - i;
                system_.input().moveIn(from.window, from.x + x * step * 2 / kSteps, from.y + y * step * 2 / kSteps);
                system_.advance(kTick);
            }
        });
        system_.input().release(CPointerButton::Left);
        wait();
        return cost;
    }
    /// Of a change of so many values of the first group within a gesture, with the tick that shows it.
    uint64_t costOfAChange(const char* bridge, int32_t count) {
        auto& changed = at<CParamBridge>(bridge);
        std::vector<double> decibels(static_cast<size_t>(count), 0.0);
        constexpr int32_t kKey = 1 << 20;
        return warmed([&] {
            for (double& value : decibels) {
                value += 0.25;
            }
            EXPECT_EQ(changed.setValues(0, 0, decibels.data(), count, false, CParamEdit::held(kKey)), nullptr);
            system_.advance(kTick);
        });
    }
    /// Blocks that the messages of one notch take: the value goes to the engine and comes back, without a hand. A new
    /// effect is started, because each step makes the list of the history longer, which editors get.
    uint64_t costOfANotch(const char* bridge, int32_t element, double step) {
        end();
        start();
        auto& changed = at<CParamBridge>(bridge);
        double value = changed.value(0, element);
        constexpr int32_t kKey = (1 << 20) + 1;
        return warmed([&] {
            value += step;
            EXPECT_EQ(changed.setValues(0, element, &value, 1, false, CParamEdit(kKey)), nullptr);
            system_.advance(kTick);
        });
    }
    uint64_t costOfATurn(const std::string& path) {
        end();
        start();
        moveTo(pixelOf(path));
        return warmed([&] {
            system_.input().wheel(1.0);
            system_.advance(kTick);
        });
    }
    void hoverAll(const char* window) {
        std::vector<CPixel> pixels;
        collect(at<CObject>(window), pixels);
        ASSERT_GT(pixels.size(), 5u) << window;
        for (int32_t round = 0; round < 3; ++round) {
            for (const CPixel& pixel : pixels) {
                const uint64_t cost = allocationsOf([&] { moveTo(pixel); });
                EXPECT_TRUE(round < 2 || cost == 0) << cost << " at " << pixel.view;
            }
        }
    }
};

TEST_F(SteadyEditor, ThePointerGoesOverEveryViewOfTheMainWindow) {
    hoverAll("");
}

TEST_F(SteadyEditor, ThePointerGoesOverEveryViewOfTheOtherWindows) {
    click("c.buttons.channel-routing");
    hoverAll("ui.win-channel-routing");
    tap(kKeyEscape);
    click("c.buttons.preset-manager");
    hoverAll("ui.win-preset-manager");
    tap(kKeyEscape);
    click("c.buttons.settings");
    click("ui.win-settings.c.settings.global-settings");
    hoverAll("ui.win-settings");
    hoverAll("ui.win-global-settings");
}

TEST_F(SteadyEditor, AHeldButtonAWindowAndASliderAreDraggedWithoutAllocating) {
    EXPECT_EQ(costOfMoves(pixelOf("c.buttons.settings"), 0, -60), 0u);
    // The release on it has opened its window.
    EXPECT_EQ(costOfMoves(pixelOf("ui.win-settings.window-title"), 60, 60), 0u);
    EXPECT_EQ(costOfMoves(pixelOf("ui.win-settings.c.credits"), 60, 60), 0u);
}

TEST_F(SteadyEditor, ADragOfAValueTakesTheMemoryOfItsMessagesAlone) {
    // Each step of a drag sends one change; what that takes in the engine, and back, is measured without a hand.
    const uint64_t bar = costOfAChange("ui.xeq-bridge", 1);
    EXPECT_LE(costOfMoves(pixelOf("c.xeq1.cs-sliders.control-surface"), 0, -60), kSteps * bar);
    EXPECT_LE(costOfMoves(pixelOf("c.xeq1.cs-gain.control-surface"), 0, -60),
              kSteps * costOfAChange("ui.xeq-gain-bridge", 1));
    EXPECT_LE(costOfMoves(pixelOf("c.xeq1.title-frame-head.eq-invert-scale.scale"), 0, -60),
              kSteps * costOfAChange("ui.xeq-bridge", 7));
}

TEST_F(SteadyEditor, ATurnOfTheWheelTakesTheMemoryOfItsMessageAlone) {
    const struct {
        const char* view;
        const char* bridge;
        int32_t element;
        double step;
    } kTurns[] = {{"c.xeq1.cs-sliders.control-surface", "ui.xeq-bridge", 3, 0.5},
                  {"c.xeq1.cs-sliders.ruler-values.label#2", "ui.xeq-bridge", 2, 0.5},
                  {"c.xeq1.cs-sliders.ruler-freqs.label#2", "ui.xeq-freq-bridge", 2, 10.0},
                  {"c.xeq1.cs-gain.control-surface", "ui.xeq-gain-bridge", 0, 0.5},
                  {"c.xeq1.cs-gain.ruler-values.label", "ui.xeq-gain-bridge", 0, 0.5}};
    for (const auto& turn : kTurns) {
        const uint64_t message = costOfANotch(turn.bridge, turn.element, turn.step);
        EXPECT_GT(message, 0u);
        EXPECT_LE(costOfATurn(turn.view), message) << turn.view;
    }
}

TEST_F(SteadyEditor, AnEditorAtRestAndAPointerThatStaysAllocateNothing) {
    EXPECT_EQ(warmed([&] { system_.advance(2.0); }), 0u);
    for (const char* path : {"c.xeq1.cs-sliders.control-surface", "c.buttons.settings", "window-status"}) {
        moveTo(pixelOf(path));
        EXPECT_EQ(warmed([&] { system_.advance(1.0); }), 0u) << path;
    }
}

TEST_F(SteadyEditor, ArrowsWalkOverTheBarsWithoutAllocating) {
    click(column("xeq1", 2));
    EXPECT_EQ(warmed([&] {
                  for (const int32_t key : {kKeyRight, kKeyLeft, kKeyRight, kKeyLeft}) {
                      system_.input().tap(key);
                      system_.advance(kTick);
                  }
              }),
              0u);
}

TEST_F(SteadyEditor, AnotherGroupIsChosenWithTheMemoryOfItsMessageAlone) {
    // The engine keeps which groups are shown.
    click("c.xeq1.xeq-base.edit-group.selector.button#2");
    auto& client = at<CAudioInterfaceClient>("ui.interface-client");
    const CByteBuffer kept = client.keptBytes("editor-memory");
    ASSERT_FALSE(kept.isEmpty());
    const uint64_t message = warmed([&] { EXPECT_EQ(client.keepBytes("editor-memory", kept), nullptr); });
    for (const std::string selector :
         {"c.xeq1.xeq-base.edit-group.selector", "c.xeq2.xeq-base.underlay-group.selector"}) {
        const CPixel pixels[] = {pixelOf(selector + ".button"), pixelOf(selector + ".button#3")};
        EXPECT_EQ(warmed([&] {
                      for (const CPixel& pixel : pixels) {
                          moveTo(pixel);
                          system_.input().click();
                          system_.advance(kTick);
                      }
                  }),
                  2 * message)
            << selector;
    }
}

TEST_F(SteadyEditor, AListIsPointedAtScrolledAndWalkedByKeysWithoutAllocating) {
    click("c.buttons.preset-manager.quick-preset-list");
    wait(0.6);
    const auto& list = at<CTextView>("ui.window-app-popup-list.list");
    const CWindowHandle window = dynamic_cast<CWindow*>(list.window())->handle();
    ASSERT_GE(list.paragraphCount(), 2);
    // Not long enough on a row for the list below it.
    EXPECT_EQ(warmed([&] {
                  for (int32_t row = 0; row < list.paragraphCount(); ++row) {
                      const CViewRect rect = list.rowRect(row);
                      system_.input().moveIn(window, static_cast<int32_t>(rect.x) + 6,
                                             static_cast<int32_t>(rect.y) + 4);
                      system_.advance(kTick);
                  }
                  system_.input().wheel(-1.0);
                  system_.input().wheel(1.0);
                  for (const int32_t key : {kKeyDown, kKeyUp, kKeyEnd, kKeyHome}) {
                      system_.input().tap(key);
                      system_.advance(kTick);
                  }
              }),
              0u);
}

}  // namespace

}  // namespace tarv
