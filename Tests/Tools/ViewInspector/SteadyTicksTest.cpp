// What a tick of an open editor costs once everything has happened before: no memory, and at rest no pixel.

#include "Core/CHeap.h"
#include "Platform/Clock.h"
#include "Platform/Keyboard.h"
#include "Tests/Audio/Parameters/CountedNew.h"
#include "Tests/Tools/ViewInspector/DemoEditor.h"
#include "UI/Text/CEditBox.h"

namespace tarv {
namespace {

class SteadyTicks : public CDemoEditor {
protected:
    SteadyTicks() {
        open();
        // Each timer fires once.
        advance(1.0);
    }

    /// Allocations of both heaps while something happens.
    template <class Work>
    static uint64_t allocationsOf(Work&& work) {
        const uint64_t before = newCounters().news + CHeap::counters().allocations;
        work();
        return newCounters().news + CHeap::counters().allocations - before;
    }
    /// The same at the second time: the first one may make room.
    template <class Work>
    static uint64_t secondTime(Work&& work) {
        work();
        return allocationsOf(work);
    }
};

TEST_F(SteadyTicks, TheCounterCounts) {
    EXPECT_GT(allocationsOf([] { delete new std::string(100, 'x'); }), 0u);
    EXPECT_GT(allocationsOf([] { CHeap::free(CHeap::alloc(10)); }), 0u);
}

TEST_F(SteadyTicks, AtRestNothingIsDrawnSentOrAllocated) {
    // The text that slides is back at its beginning.
    advance(20.0);
    shown().forgetPresented();
    const double until = clockSeconds() + 100 * kTick;
    int32_t ticks = 0;
    int32_t delivered = 0;
    const auto rest = [&] {
        while (editor.system().timers().fireNext(until)) {
            ++ticks;
            delivered += editor.system().pump();
        }
    };
    EXPECT_EQ(allocationsOf(rest), 0u);
    // Those of the window's helpers, too.
    EXPECT_GE(ticks, 100);
    EXPECT_EQ(delivered, 0);
    EXPECT_EQ(shown().presentCount(), 0);
    EXPECT_EQ(shown().presentedPixels(), 0);
}

TEST_F(SteadyTicks, ThePointerMovesWithoutAllocating) {
    std::vector<CView*> path;
    for (const char* name : {"buttons.list", "buttons.latch", "c.bars.surface.band-2", "c.side.scrolled.rows.wide",
                             "window-status", "c.side.glass.lower"}) {
        path.push_back(&at(name));
    }
    EXPECT_EQ(secondTime([&] {
                  for (const CView* view : path) {
                      editor.pointAt(*view);
                      advance(kTick);
                  }
              }),
              0u);
}

TEST_F(SteadyTicks, APressAndItsReleaseAllocateNothing) {
    pointAt("buttons.latch");
    EXPECT_EQ(secondTime([&] {
                  for (int32_t i = 0; i < 2; ++i) {
                      editor.system().input().click();
                      advance(kTick);
                  }
              }),
              0u);
}

TEST_F(SteadyTicks, MorphsAllocateNothing) {
    const CView& morphing = at("buttons.morphing");
    const CView& band = at("c.bars.surface.band-4");
    EXPECT_EQ(secondTime([&] {
                  for (int32_t i = 0; i < 2; ++i) {
                      editor.pointAt(morphing);
                      editor.system().input().click();
                      editor.pointAt(band);
                      editor.system().input().click();
                      advance(1.0);
                  }
              }),
              0u);
}

TEST_F(SteadyTicks, AnAnimatedColourAllocatesNothing) {
    click("window-title.bypass");
    EXPECT_EQ(secondTime([&] { advance(3.0); }), 0u);
    shown().forgetPresented();
    advance(1.0);
    EXPECT_GT(shown().presentedPixels(), 0);
}

TEST_F(SteadyTicks, WhatMovesOrChangesByAttributesAllocatesNothing) {
    CView& bar = at("c.bars.surface.band-1.bar");
    CView& rows = at("c.side.scrolled");
    CView& lower = at("c.side.glass.lower");
    EXPECT_EQ(secondTime([&] {
                  for (int32_t i = 0; i < 40; ++i) {
                      EXPECT_EQ(consumed(bar.setAttribute("height", CAttributeValue::fromInt(40 + i))), "");
                      EXPECT_EQ(consumed(rows.setAttribute("offset-y", CAttributeValue::fromReal(0.01 * i))), "");
                      EXPECT_EQ(consumed(lower.setAttribute("opacity", CAttributeValue::fromReal(0.02 * i))), "");
                      advance(kTick);
                  }
              }),
              0u);
}

TEST_F(SteadyTicks, ATextThatSlidesAllocatesNothing) {
    CView& sliding = at("c.texts.sliding.text");
    EXPECT_EQ(secondTime([&] {
                  CAttributeMap none;
                  EXPECT_EQ(consumed(sliding.passEvent("auto-scroll-start", none)), "");
                  advance(3.0);
              }),
              0u);
}

TEST_F(SteadyTicks, ACursorThatBlinksAllocatesNothing) {
    click("c.texts.fields.name");
    advance(0.2);
    ASSERT_TRUE(find("temp-editbox"));
    shown().forgetPresented();
    EXPECT_EQ(secondTime([&] { advance(2.0); }), 0u);
    EXPECT_GT(shown().presentedPixels(), 0);
}

TEST_F(SteadyTicks, ATypedCharacterAllocatesNothingTheSecondTime) {
    click("c.texts.fields.name");
    advance(0.2);
    ASSERT_TRUE(find("temp-editbox"));
    EXPECT_EQ(secondTime([&] {
                  EXPECT_TRUE(editor.system().input().key('A', true, u"a"));
                  advance(kTick);
                  editor.system().input().key('A', false);
                  advance(kTick);
              }),
              0u);
    EXPECT_EQ(dynamic_cast<CEditBox&>(at("temp-editbox")).edit().text().toUtf8(), "aa");
}

TEST_F(SteadyTicks, AListIsPointedAtAndScrolledWithoutAllocating) {
    auto& list = dynamic_cast<CTextView&>(at("c.texts.outline.list"));
    const CViewRect top = list.rowRect(0);
    const auto moveTo = [&](int32_t row) {
        editor.system().input().moveIn(editor.window()->handle(), static_cast<int32_t>(top.x) + 20,
                                       static_cast<int32_t>(top.y + 20.0 * row) + 5);
        advance(kTick);
    };
    EXPECT_EQ(secondTime([&] {
                  for (int32_t row = 0; row < 4; ++row) {
                      moveTo(row);
                      editor.system().input().click();
                      advance(kTick);
                  }
                  editor.system().input().wheel(-1.0);
                  advance(kTick);
                  editor.system().input().wheel(1.0);
                  advance(kTick);
              }),
              0u);
    EXPECT_EQ(list.selectedParagraph(), 3);
}

TEST_F(SteadyTicks, APartOfTheWindowIsShownAgainWithoutAllocating) {
    EXPECT_EQ(secondTime([&] {
                  editor.system().desktop().expose(editor.window()->handle(), {100, 100, 400, 300});
                  editor.system().pump();
              }),
              0u);
}

}  // namespace
}  // namespace tarv
