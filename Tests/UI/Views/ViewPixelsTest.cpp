// The pixels that tiles gather from changes are those of one drawing of everything, and what rests costs nothing.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

constexpr int32_t kWidth = 300;
constexpr int32_t kHeight = 200;

class ViewPixels : public CViewTest {
protected:
    static std::string numberText(double value) { return CString::fromDouble(value, 3).toUtf8(); }
    int32_t roll(int32_t count) { return static_cast<int32_t>(random_() % static_cast<uint32_t>(count)); }
    static CTestNode state(const char* name, CTexts attributes) {
        attributes.insert(attributes.begin(), {"state-name", name});
        return {"ui:view-state", name, std::move(attributes)};
    }
    std::string border() { return "L" + numberText(roll(2200) / 8.0) + " T" + numberText(roll(1400) / 8.0); }
    CTestNode randomView(int32_t depth) {
        static const char* const kColors[] = {"Knob", "Text", "Glass", "Panel", ""};
        CTestNode node = view(
            "v", {{"placement", "overlay"},
                  {"width", numberText(20 + roll(900) / 8.0)},
                  {"height", numberText(20 + roll(700) / 8.0)},
                  {"outer-border", depth ? "L" + std::to_string(roll(40)) + " T" + std::to_string(roll(40)) : border()},
                  {"color", kColors[roll(5)]},
                  {"is-dynamic", roll(4) ? "false" : "true"}});
        if (roll(3) == 0)
            node.attributes.push_back({"image-set", "shared::is.button"});
        node.children = {
            state("active", {{"color-state", "Active"}, {"image-set-range", "BoxActive"}, {"morph-duration", "0.3"}}),
            state("wide", {{"width", "70"}, {"opacity", "0.4"}, {"morph-duration", "0.2"}})};
        for (int32_t i = depth ? 0 : roll(4); i > 0; --i)
            node.children.push_back(randomView(depth + 1));
        return node;
    }
    void collect(CView& from, std::vector<CView*>& all) {
        all.push_back(&from);
        for (CObject* child : from.children())
            if (auto* below = dynamic_cast<CView*>(child))
                collect(*below, all);
    }
    void change(CView& target) {
        switch (roll(9)) {
            case 0:
                return set(target, "outer-border", border());
            case 1:
                return set(target, "width", numberText(roll(1200) / 8.0));
            case 2:
                return set(target, "opacity", numberText(roll(9) / 8.0));
            case 3:
                return set(target, "is-visible", roll(3) ? "true" : "false");
            case 4:
                return set(target, "is-dynamic", roll(2) ? "true" : "false");
            case 5:
                return set(target, "unclip-level", std::to_string(roll(3) - 1));
            case 6:
                return set(target, "spread", std::to_string(roll(6)));
            case 7:
                EXPECT_EQ(consumed(target.toggleState("active")), "");
                return;
            default:
                EXPECT_EQ(consumed(target.toggleState("wide")), "");
        }
    }
    /// All views from the lowest up, on one bitmap.
    void drawAll(CLinearBitmap& bitmap, CLinearBitmap& scratch) {
        std::vector<CView*> views;
        collect(*rootView_, views);
        std::stable_sort(views.begin(), views.end(),
                         [](const CView* a, const CView* b) { return a->stackingNumber() < b->stackingNumber(); });
        bitmap.clear();
        for (CView* drawn : views) {
            const CViewRect& visible = drawn->visibleRect();
            const auto whole = [](double value) { return static_cast<int32_t>(std::lround(value)); };
            const CIntRect clip =
                CIntRect{whole(visible.x), whole(visible.y), whole(visible.right()), whole(visible.bottom())}
                    .intersection(bitmap.bounds());
            const double opacity = drawn->effectiveOpacity();
            if (!drawn->isShown() || visible.isEmpty() || drawn->wholeRect().width <= 0.1 ||
                drawn->wholeRect().height <= 0.1 || opacity < 0.001)
                continue;
            CLinearBitmap& target = opacity < 0.999 ? scratch : bitmap;
            if (opacity < 0.999)
                scratch.copyFrom(bitmap);
            EXPECT_EQ(consumed(drawn->drawInSector({&target, 0, 0, clip})), "");
            if (opacity < 0.999)
                bitmap.blendFrom(scratch, opacity, clip);
        }
    }
    int64_t wrongPixels(const CLinearBitmap& bitmap) const {
        int64_t wrong = 0;
        for (int32_t y = 0; y < kHeight; ++y)
            for (int32_t x = 0; x < kWidth; ++x)
                wrong += pixel(x, y) != bitmap.row(y)[x];
        return wrong;
    }

    std::mt19937 random_{20};
};

TEST_F(ViewPixels, AThousandChangesByTilesAreOneDrawingOfAll) {
    CLinearBitmap bitmap;
    CLinearBitmap scratch;
    ASSERT_EQ(consumed(bitmap.resize(kWidth, kHeight)), "");
    ASSERT_EQ(consumed(scratch.resize(kWidth, kHeight)), "");
    for (int32_t tree = 0; tree < 20; ++tree) {
        std::vector<CTestNode> children;
        for (int32_t i = 0; i < 6; ++i)
            children.push_back(randomView(0));
        open({{"palette", "A"}, {"color", "Panel"}}, children, kWidth, kHeight);
        std::vector<CView*> views;
        collect(*rootView_, views);
        for (int32_t step = 0; step < 50; ++step) {
            change(*views[static_cast<size_t>(1 + roll(static_cast<int32_t>(views.size()) - 1))]);
            tick(roll(3) * 0.05);
            drawAll(bitmap, scratch);
            ASSERT_EQ(wrongPixels(bitmap), 0) << "tree " << tree << ", step " << step;
        }
    }
}

TEST_F(ViewPixels, WhatMovesMorphsOrRestsAllocatesNothing) {
    open({{"palette", "A"}, {"color", "Panel"}},
         {view("a",
               {{"placement", "overlay"},
                {"width", "60"},
                {"height", "40"},
                {"opacity", "0.5"},
                {"color", "Knob"},
                {"is-dynamic", "true"}},
               {state("active", {{"color-state", "Active"}, {"morph-duration", "0.3"}}),
                state("wide", {{"width", "90"}, {"morph-duration", "0.3"}})}),
          view("b", {{"placement", "overlay"}, {"width", "90"}, {"height", "40"}, {"image-set", "shared::is.button"}})},
         kWidth, kHeight);
    const CString names[] = {"L10 T10", "L100 T100"};
    const auto round = [&](int32_t i) {
        EXPECT_EQ(consumed(at("a").setAttribute("outer-border", names[i % 2])), "");
        at("b").requestRedraw({1.0, 1.0, 5.0, 5.0});
        tick(0.025);
    };
    // What grows has grown, and the last morph runs.
    for (int32_t morph = 0; morph < 16; ++morph) {
        EXPECT_EQ(consumed(at("a").toggleState("active wide")), "");
        for (int32_t i = 0; i < (morph == 15 ? 1 : 14); ++i)
            round(i);
    }
    CView& a = at("a");
    CView& b = at("b");
    for (int32_t i = 0; i < 10; ++i) {
        const CAttributeValue moved = CAttributeValue::fromString(names[i % 2]);
        const CString name("outer-border");
        const uint64_t before = CHeap::counters().allocations;
        CError* const error = a.setAttribute(name, moved);
        b.requestRedraw({1.0, 1.0, 5.0, 5.0});
        const int64_t drawn = tick(0.025);
        EXPECT_EQ(CHeap::counters().allocations - before, 0u) << i;
        EXPECT_FALSE(error);
        EXPECT_GT(drawn, 0);
    }
    EXPECT_EQ(a.area().value(CViewCell::OuterLeft), 100.0f);
}

}  // namespace
}  // namespace tarv
