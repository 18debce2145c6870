// What the views of an open editor cost, against a plain copy of as many pixels as they draw, in turn in the same run;
// and what a change of placement costs, against placing all views from scratch. Each ratio is printed with its limit;
// one above it is printed once more.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "Benchmarks/Times.h"
#include "Benchmarks/ViewCosts.h"
#include "CPlainEditor.h"

namespace tarv {
namespace {

constexpr int32_t kRounds = 300;
constexpr const char* kDemonstration = "Definitions/Demonstration/Demonstration.xml";

/// A plain copy of a rectangle of one bitmap into another, as wide as tiles of the window are.
class CRectangleCopy {
public:
    explicit CRectangleCopy(const CIntRect& rect) : rect_(rect) {
        mustSucceed(source_.resize(rect.right + kBeyond, rect.bottom));
        mustSucceed(target_.resize(rect.right + kBeyond, rect.bottom));
    }
    void run() {
        target_.copyRectFrom(source_, rect_);
        benchmark::ClobberMemory();
    }

private:
    static constexpr int32_t kBeyond = 64;

    CIntRect rect_;
    CLinearBitmap source_;
    CLinearBitmap target_;
};

void mustOpen(CPlainEditor& editor, double scale) {
    const std::string failure = editor.open(std::string(TARV_SOURCE_DIR "/") + kDemonstration, scale);
    if (!failure.empty()) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        std::abort();
    }
    editor.system().advance(0.1);
}

/// Argument: the scale in percent. A tick that draws and shows all of the demonstration.
void redrawEditor(benchmark::State& state) {
    CPlainEditor editor;
    mustOpen(editor, static_cast<double>(state.range(0)) / 100.0);
    CWindow& window = *editor.window();
    const int64_t pixels = drawnPixels(*editor.mainView());
    CPlainCopy copy(pixels);
    for (auto _ : state) {
        std::vector<double> drawn;
        std::vector<double> copied;
        for (int32_t i = 0; i < kRounds; ++i) {
            window.sectorMap().invalidate({0.0, 0.0, 1e4, 1e4}, nullptr);
            drawn.push_back(secondsOf([&] { window.tick(); }));
            copied.push_back(secondsOf([&] { copy.run(); }));
        }
        state.counters["redraw_us"] = 1e6 * quietOf(drawn);
        state.counters["drawn_pixels"] = static_cast<double>(pixels);
        checkLimit(state, "redraw/copy", quietOf(drawn) / quietOf(copied), 8.0);
    }
}
BENCHMARK(redrawEditor)->ArgName("scale")->Arg(80)->Arg(100)->Arg(125)->Iterations(1)->Unit(benchmark::kMillisecond);

/// A bar of a panel gets another height in each tick.
void moveBar(benchmark::State& state) {
    CPlainEditor editor;
    mustOpen(editor, 1.0);
    CWindow& window = *editor.window();
    auto& bar = *editor.tree().findObjectOf<CView>("ui.main-window.c.bars.surface.band-4.bar");
    CWindowByHand& shown = *editor.system().desktop().find(window.handle());
    const auto move = [&](int32_t height) {
        mustSucceed(bar.setAttribute("height", CAttributeValue::fromInt(height)));
        window.tick();
    };
    move(150);
    const int64_t pixels = pixelsOf(bar.visibleRect());
    shown.forgetPresented();
    move(151);
    const double presented = static_cast<double>(shown.presentedPixels());
    for (auto _ : state) {
        std::vector<double> moved;
        std::vector<double> copied;
        std::vector<double> copiedAtOnce;
        CRectangleCopy copy(CSector::pixelsOf(bar.visibleRect()).moved(-100, -100));
        CPlainCopy copyAtOnce(pixels);
        for (int32_t i = 0; i < 10 * kRounds; ++i) {
            moved.push_back(secondsOf([&] { move(150 + i % 2); }));
            copied.push_back(secondsOf([&] { copy.run(); }));
            copiedAtOnce.push_back(secondsOf([&] { copyAtOnce.run(); }));
        }
        state.counters["move_us"] = 1e6 * quietOf(moved);
        state.counters["copy_us"] = 1e6 * quietOf(copied);
        state.counters["bar_pixels"] = static_cast<double>(pixels);
        checkLimit(state, "drawn/own", presented / static_cast<double>(pixels), 3.0);
        checkLimit(state, "move/copy", quietOf(moved) / quietOf(copied), 10.0);
        state.counters["move/copyAtOnce"] = quietOf(moved) / quietOf(copiedAtOnce);
    }
}
BENCHMARK(moveBar)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Does nothing with its place.
class CPlacedOnly : public CViewAreaUpdateHandler {
public:
    CError* onAreaChanged(const CViewRect&, const CViewRect&) override { return nullptr; }
    CError* onAreaNotify() override { return nullptr; }
};

/// Panels of rows of buttons, about as an editor has them: 300 views in five levels.
class CPlacedTree {
public:
    static constexpr int32_t kPanels = 6;
    static constexpr int32_t kRows = 7;
    static constexpr int32_t kButtons = 6;

    CPlacedTree() {
        root_ = std::make_unique<CViewArea>(handler_, false);
        root_->setWidth({CViewLengthMode::Fixed, 900.0});
        root_->setHeight({CViewLengthMode::Fixed, 600.0});
        CViewArea& content =
            add(*root_, CViewPlacement::Full, {CViewLengthMode::Percentage, 1.0}, {CViewLengthMode::Percentage, 1.0});
        for (int32_t i = 0; i < kPanels; ++i) {
            addPanel(add(content, CViewPlacement::Left, {CViewLengthMode::Balanced, 0.0},
                         {CViewLengthMode::Percentage, 1.0}));
        }
        mustSucceed(root_->net().flush());
    }
    ~CPlacedTree() {
        while (!areas_.empty()) {
            areas_.pop_back();
        }
    }
    int32_t count() const { return static_cast<int32_t>(areas_.size()) + 1; }
    void resizeLeaf(double width) {
        areas_.back()->setWidth({CViewLengthMode::Fixed, width});
        mustSucceed(root_->net().flush());
    }
    void resizeRoot(double width) {
        root_->setWidth({CViewLengthMode::Fixed, width});
        mustSucceed(root_->net().flush());
    }

private:
    CViewArea& add(CViewArea& parent, CViewPlacement placement, CViewLength width, CViewLength height) {
        areas_.push_back(std::make_unique<CViewArea>(handler_, parent, false));
        CViewArea& area = *areas_.back();
        area.setPlacement(placement);
        area.setWidth(width);
        area.setHeight(height);
        area.setOuterBorders({2.0, 2.0, 2.0, 2.0});
        return area;
    }
    void addPanel(CViewArea& panel) {
        for (int32_t i = 0; i < kRows; ++i) {
            CViewArea& row = add(panel, CViewPlacement::Top, {CViewLengthMode::Percentage, 1.0}, {});
            for (int32_t k = 0; k < kButtons; ++k) {
                add(row, CViewPlacement::Inline, {CViewLengthMode::Fixed, 10.0 + k},
                    {CViewLengthMode::Fixed, 20.0 + k});
            }
        }
    }

    CPlacedOnly handler_;
    std::unique_ptr<CViewArea> root_;
    std::vector<std::unique_ptr<CViewArea>> areas_;
};

void placeViews(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<double> all;
        std::vector<double> leaf;
        std::vector<double> root;
        int32_t count = 0;
        for (int32_t i = 0; i < kRounds; ++i) {
            std::unique_ptr<CPlacedTree> tree;
            all.push_back(secondsOf([&] { tree = std::make_unique<CPlacedTree>(); }));
            count = tree->count();
            leaf.push_back(secondsOf([&] { tree->resizeLeaf(31.0); }));
            root.push_back(secondsOf([&] { tree->resizeRoot(950.0); }));
        }
        state.counters["views"] = count;
        state.counters["scratch_us"] = 1e6 * quietOf(all);
        checkLimit(state, "leaf/scratch", quietOf(leaf) / quietOf(all), 0.05);
        checkLimit(state, "root/scratch", quietOf(root) / quietOf(all), 1.0);
    }
}
BENCHMARK(placeViews)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
