// What the product's editor costs: a full redraw of its main window against a plain copy of the pixels that it draws,
// the tick of a dragged bar against that redraw, automation of all parameters, memory; and what an open editor costs
// the audio. Each ratio that has a limit is printed with it; one above it is printed once more.

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Benchmarks/Times.h"
#include "Benchmarks/ViewCosts.h"
#include "CPlainEditor.h"
#include "Tests/Host/ProcessMemory.h"

namespace tarv {
namespace {

constexpr int32_t kRounds = 300;
constexpr double kRate = 48000.0;
constexpr int32_t kFrames = 512;
constexpr const char* kSurface = "ui.main-window.c.xeq1.cs-sliders.control-surface";
constexpr const char* kGains = "plugin.modMain.modBrindleXEQ.xeq-gains";

void mustOpen(CPlainEditor& editor, double scale) {
    const std::string failure = editor.openProduct(scale);
    if (!failure.empty()) {
        std::fprintf(stderr, "%s\n", failure.c_str());
        std::abort();
    }
    editor.system().advance(0.1);
}

void redrawAll(CWindow& window) {
    window.sectorMap().invalidate({0.0, 0.0, 1e4, 1e4}, nullptr);
    window.tick();
}

/// Argument: the scale in percent. A tick that draws and shows all of the main window.
void redrawMainWindow(benchmark::State& state) {
    CPlainEditor editor;
    mustOpen(editor, static_cast<double>(state.range(0)) / 100.0);
    const int64_t pixels = drawnPixels(*editor.mainView());
    CPlainCopy copy(pixels);
    for (auto _ : state) {
        std::vector<double> drawn;
        std::vector<double> copied;
        for (int32_t i = 0; i < kRounds; ++i) {
            drawn.push_back(secondsOf([&] { redrawAll(*editor.window()); }));
            copied.push_back(secondsOf([&] { copy.run(); }));
        }
        state.counters["redraw_us"] = 1e6 * quietOf(drawn);
        state.counters["drawn_pixels"] = static_cast<double>(pixels);
        if (state.range(0) == 125) {
            checkLimit(state, "redraw/copy", quietOf(drawn) / quietOf(copied), 6.0);
        } else {
            state.counters["redraw/copy"] = quietOf(drawn) / quietOf(copied);
        }
    }
}
BENCHMARK(redrawMainWindow)
    ->ArgName("scale")
    ->Arg(80)
    ->Arg(100)
    ->Arg(125)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// Each tick a dragged bar has gone a few pixels: its column, its readout and its label.
void dragBar(benchmark::State& state) {
    CPlainEditor editor;
    mustOpen(editor, 1.25);
    const CView& surface = *editor.tree().findObjectOf<CView>(kSurface);
    CInputByHand& input = editor.system().input();
    const CViewRect& rect = surface.visibleRect();
    const auto x = static_cast<int32_t>(rect.x + rect.width * 3.5 / 7.0);
    const auto y = static_cast<int32_t>(rect.y + rect.height / 2.0);
    CWindow& window = *editor.window();
    const double rest = editor.instance()->paramCollector()->findParam(kGains)->value(0, 3);
    input.moveIn(window.handle(), x, y);
    input.press(CPointerButton::Left);
    for (auto _ : state) {
        std::vector<double> dragged;
        std::vector<double> redrawn;
        for (int32_t i = 0; i < kRounds; ++i) {
            dragged.push_back(secondsOf([&] {
                input.moveIn(window.handle(), x, y - 20 - 3 * (i % 8));
                editor.system().advance(1.0 / 40.0);
            }));
            redrawn.push_back(secondsOf([&] { redrawAll(window); }));
        }
        state.counters["drag_us"] = 1e6 * quietOf(dragged);
        checkLimit(state, "drag/redraw", quietOf(dragged) / quietOf(redrawn), 0.15);
    }
    input.release(CPointerButton::Left);
    editor.system().advance(0.1);
    if (editor.instance()->paramCollector()->findParam(kGains)->value(0, 3) == rest) {
        state.SkipWithError("the bar did not move");
    }
}
BENCHMARK(dragBar)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Noise through an instance, in blocks.
class CPlayed {
public:
    explicit CPlayed(CPlainInstance& instance) : instance_(instance) { instance_.start(kRate, 2, 2); }
    /// Seconds of a block; before it all parameters may be automated, as a host does.
    double block(bool isAutomated) {
        std::uniform_real_distribution<double> level(-0.5, 0.5);
        for (std::vector<double>* channel : {&left_, &right_}) {
            std::generate(channel->begin(), channel->end(), [&] { return level(random_); });
        }
        double* channels[] = {left_.data(), right_.data()};
        ++round_;
        return secondsOf([&] {
            for (int32_t i = 0; isAutomated && i < instance_.extParamList()->count(); ++i) {
                instance_.extParamList()->setParameter(i, 0.5 + 0.4 * std::sin(0.05 * (round_ + 7.0 * i)));
            }
            instance_.processBlock(channels, channels, kFrames);
        });
    }

private:
    CPlainInstance& instance_;
    std::minstd_rand random_{1};
    std::vector<double> left_ = std::vector<double>(kFrames);
    std::vector<double> right_ = std::vector<double>(kFrames);
    double round_ = 0.0;
};

/// Pixels of the surfaces with their rulers and values.
int64_t surfacePixels(CPlainEditor& editor) {
    int64_t pixels = 0;
    for (const char* view : {"xeq1.cs-sliders", "xeq1.cs-gain", "xeq2.cs-sliders", "xeq2.cs-gain"}) {
        pixels += pixelsOf(editor.tree().findObjectOf<CView>(CString("ui.main-window.c.") + view)->visibleRect());
    }
    return pixels;
}

/// Every parameter is automated in each block; a tick follows each second block, as at 40 ticks a second.
void followAutomation(benchmark::State& state) {
    CPlainEditor editor;
    mustOpen(editor, 1.25);
    CPlayed played(*editor.instance());
    CWindowByHand& shown = *editor.system().desktop().find(editor.window()->handle());
    const int64_t surfaces = surfacePixels(editor);
    for (auto _ : state) {
        std::vector<double> ticks;
        std::vector<double> redrawn;
        int64_t most = 0;
        for (int32_t i = 0; i < kRounds; ++i) {
            played.block(true);
            played.block(true);
            shown.forgetPresented();
            ticks.push_back(secondsOf([&] { editor.system().advance(1.0 / 40.0); }));
            most = std::max(most, shown.presentedPixels());
            redrawn.push_back(secondsOf([&] { redrawAll(*editor.window()); }));
        }
        state.counters["tick_us"] = 1e6 * quietOf(ticks);
        state.counters["tick/redraw"] = quietOf(ticks) / quietOf(redrawn);
        checkLimit(state, "drawn/surfaces", static_cast<double>(most) / static_cast<double>(surfaces), 1.0);
    }
}
BENCHMARK(followAutomation)->Iterations(1)->Unit(benchmark::kMillisecond);

/// Argument: whether all parameters are automated. Blocks of an instance with an open editor, whose ticks run between
/// them, against those of an instance without one, in turn.
void audioBesideEditor(benchmark::State& state) {
    const bool isAutomated = state.range(0) != 0;
    CPlainEditor editor;
    mustOpen(editor, 1.0);
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> alone(CPlainInstance::create(error));
    mustSucceed(error);
    CPlayed withEditor(*editor.instance());
    CPlayed withoutEditor(*alone);
    CWindowByHand& shown = *editor.system().desktop().find(editor.window()->handle());
    editor.system().advance(1.0);
    shown.forgetPresented();
    for (auto _ : state) {
        std::vector<double> beside;
        std::vector<double> plain;
        for (int32_t i = 0; i < 4 * kRounds; ++i) {
            // In turn first and second, and neither of them right behind a tick.
            CPlayed& first = i % 2 == 0 ? withEditor : withoutEditor;
            CPlayed& second = i % 2 == 0 ? withoutEditor : withEditor;
            first.block(isAutomated);
            (i % 2 == 0 ? plain : beside).push_back(second.block(isAutomated));
            (i % 2 == 0 ? beside : plain).push_back(first.block(isAutomated));
            editor.system().advance(1.0 / 40.0);
        }
        state.counters["beside_us"] = 1e6 * medianOf(beside);
        state.counters["beside/alone"] = medianOf(beside) / medianOf(plain);
    }
    if (!isAutomated) {
        checkLimit(state, "beside/alone", state.counters["beside/alone"], 1.02);
        checkLimit(state, "drawn_pixels", static_cast<double>(shown.presentedPixels()), 0.0);
    }
}
BENCHMARK(audioBesideEditor)->ArgName("automated")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kMillisecond);

/// What an open editor takes, with the graphics of the process loaded before.
void editorMemory(benchmark::State& state) {
    for (auto _ : state) {
        CPlainEditor kept;
        mustOpen(kept, 1.25);
        kept.close();
        const int64_t before = host::processMemory();
        CError* error = nullptr;
        std::unique_ptr<CPlainInstance> alone(CPlainInstance::create(error));
        mustSucceed(error);
        const int64_t instance = host::processMemory() - before;
        alone.reset();
        const int64_t empty = host::processMemory();
        mustOpen(kept, 1.25);
        checkLimit(state, "editor_MiB", static_cast<double>(host::processMemory() - empty - instance) / (1 << 20),
                   12.0);
    }
}
BENCHMARK(editorMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
