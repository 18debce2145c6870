// Hands that do anything in any order, a host that does too; and what a moved bar costs.

#include <random>

#include "Core/CHeap.h"
#include "Tests/Audio/Parameters/CountedNew.h"
#include "Tests/UI/Controls/Surface/SurfaceTree.h"

namespace tarv {
namespace {

class RandomSurface : public CSurfaceTest {
protected:
    static std::string views() {
        return bands("ruler=\"^ruler\" is-show-hairlines=\"true\"") +
               R"(<ui:ruler name="ruler" placement="left" ruler-size="18" image-set="shared::is.ruler" color="RulerTick"
                    min-max="ui.range" ruled-view="^surface"/>)";
    }
    std::string some(const std::vector<std::string>& texts) { return texts[random_() % texts.size()]; }
    void step() {
        const auto band = static_cast<int32_t>(random_() % 10);
        const double decibels = static_cast<double>(random_() % 301) / 10.0 - 15.0;
        switch (random_() % 16) {
            case 0:
            case 1:
                input().press(random_() % 5 == 0 ? CPointerButton::Right : CPointerButton::Left);
                break;
            case 2:
                input().release(random_() % 5 == 0 ? CPointerButton::Right : CPointerButton::Left);
                break;
            case 3:
                keys(random_() % 2, random_() % 2, random_() % 3 == 0);
                break;
            case 4:
                input().wheel(static_cast<double>(random_() % 9) / 2.0 - 2.0);
                break;
            case 5:
                input().tap(static_cast<int32_t>(random_() % 2 == 0 ? 27 : 37 + random_() % 4));
                break;
            case 6:
                set("edit", "group-index", some({"0", "1", "2"}));
                break;
            case 7:
                EXPECT_TRUE(editor.instance()->set(kCount, 0, 0, 1.0 + static_cast<double>(random_() % 10)));
                break;
            case 8:
                EXPECT_TRUE(editor.instance()->set(kGains, static_cast<int32_t>(random_() % 3), band,
                                                   std::pow(10.0, std::clamp(decibels, -12.0, 12.0) / 20.0)));
                break;
            case 9:
                set("main-window.surface.sliders", some({"is-editable", "is-visible", "is-vertical"}),
                    some({"true", "true", "true", "false"}));
                break;
            case 10:
                set("main-window.surface", "is-slider-mode", some({"true", "true", "true", "false"}));
                break;
            case 11:
                TARV_CONSUME(random_() % 2 ? at<CAudioInterfaceClient>("ui.interface-client").undo()
                                           : at<CAudioInterfaceClient>("ui.interface-client").redo());
                break;
            case 12:
                if (random_() % 4 == 0) {
                    editor.system().desktop().takeCapture();
                }
                break;
            default:
                moveToPixel(static_cast<double>(random_() % 260), static_cast<double>(random_() % 260));
        }
        if (random_() % 3 == 0) {
            advance(static_cast<double>(random_() % 4) * kTick);
        }
    }
    void set(const std::string& path, const std::string& name, const std::string& text) {
        CSurfaceTest::set(path, name.c_str(), text);
    }
    /// Allocations of both heaps.
    template <class Work>
    static uint64_t allocationsOf(Work&& work) {
        const uint64_t before = newCounters().news + CHeap::counters().allocations;
        work();
        return newCounters().news + CHeap::counters().allocations - before;
    }

    std::mt19937 random_{5};
};

TEST_F(RandomSurface, WhateverHandsAndHostsDoTheBarsEndAsTheEngineHasThem) {
    open(views());
    const bool isLong = std::getenv("TARV_LONG") != nullptr;
    for (int round = 0; round < (isLong ? 4000 : 12); ++round) {
        for (int i = 0; i < 60; ++i) {
            step();
        }
        input().release(CPointerButton::Left);
        input().release(CPointerButton::Right);
        input().tap(27);
        keys(false, false, false);
        moveToPixel(395, 315);
        advance(0.5);
        const int32_t shownGroup = at<CParamGroupSelector>("ui.edit").groupIndex();
        ASSERT_EQ(sliders().count(), static_cast<int32_t>(engineParam(kCount).userData().value(0, 0)));
        for (int32_t band = 0; band < sliders().count(); ++band) {
            ASSERT_NEAR(sliders().point(band).y, gain(band, shownGroup), 1e-9) << round << ' ' << band;
        }
        ASSERT_FALSE(surface().isDragging());
        ASSERT_FALSE(surface().gesture().isActive());
        ASSERT_EQ(surface().hoveredPoint(), -1);
    }
}

TEST_F(RandomSurface, MovesOfTheHandAllocateNothingOnceTheyHaveHappened) {
    open(views());
    const auto hover = [&] {
        for (int32_t band = 0; band < 7; ++band) {
            moveToPixel(35 + 31 * band, 105);
            advance();
        }
        moveToPixel(395, 315);
        advance();
    };
    hover();
    EXPECT_EQ(allocationsOf(hover), 0u);
    moveTo(3, 0.0);
    input().press();
    // Between two ticks of the timer that sends: what the engine gets and answers is a message each.
    const auto drag = [&] {
        for (int32_t i = 0; i < 20; ++i) {
            moveBy(0, i % 2 == 0 ? 9 : -9);
        }
    };
    drag();
    advance();
    EXPECT_EQ(allocationsOf(drag), 0u);
    input().release();
    advance(0.2);
    EXPECT_EQ(allocationsOf([&] { advance(1.0); }), 0u) << "at rest";
}

TEST_F(RandomSurface, AMovedBarDrawsLittleOfTheWindow) {
    open(views());
    moveTo(3, 0.0);
    input().press();
    moveBy(0, 80);
    advance();
    shown().forgetPresented();
    moveBy(0, 3);
    advance();
    EXPECT_LT(static_cast<double>(shown().presentedPixels()), 0.05 * 400 * 320);
    input().release();
}

}  // namespace
}  // namespace tarv
