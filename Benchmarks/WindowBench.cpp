// What a whole main window costs: composed once, against a plain copy of as many pixels as it draws, in turn in the
// same run; and what loading all that an editor draws with takes.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "Benchmarks/Times.h"
#include "CPlainInstance.h"
#include "CSheetCanvas.h"
#include "MainWindow.h"
#include "Product/ResourceTable.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CFont.h"

namespace tarv {
namespace {

constexpr int32_t kRounds = 300;

/// Enters the embedded resources, as an instance does.
void startProduct() {
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    mustSucceed(error);
}

/// Argument: the scale in percent.
void composeWindow(benchmark::State& state) {
    startProduct();
    CSheetResources resources("../../../Gfx", static_cast<double>(state.range(0)) / 100.0);
    CSheetCanvas canvas(resources, "Default", kMainWindowWidth, kMainWindowHeight);
    drawMainWindow(canvas);
    const int64_t pixels = canvas.drawnPixels();
    std::vector<CPixel> source(static_cast<size_t>(pixels), 0x123456);
    std::vector<CPixel> target(source.size());
    for (auto _ : state) {
        std::vector<double> composed;
        std::vector<double> copied;
        for (int32_t i = 0; i < kRounds; ++i) {
            composed.push_back(secondsOf([&] { drawMainWindow(canvas); }));
            copied.push_back(secondsOf([&] {
                std::copy(source.begin(), source.end(), target.begin());
                benchmark::DoNotOptimize(target.data());
                benchmark::ClobberMemory();
            }));
        }
        state.counters["compose/copy"] = medianOf(composed) / medianOf(copied);
        state.counters["compose_us"] = 1e6 * medianOf(composed);
        state.counters["drawn_pixels"] = static_cast<double>(pixels);
        state.counters["window_pixels"] = static_cast<double>(canvas.bitmap().width()) * canvas.bitmap().height();
    }
}
BENCHMARK(composeWindow)->ArgName("scale")->Arg(80)->Arg(100)->Arg(125)->Iterations(1)->Unit(benchmark::kMillisecond);

std::unique_ptr<CDataSet> setFor(const std::string& name) {
    const std::string extension = name.substr(name.rfind('.') + 1);
    if (extension == "is") {
        return std::make_unique<CImageSet>();
    }
    if (extension == "fnt") {
        return std::make_unique<CFont>();
    }
    if (extension == "bs") {
        return std::make_unique<CBrushSet>();
    }
    return extension == "pal" ? std::make_unique<CPalette>() : nullptr;
}

/// All image sets, fonts, brushes and palettes that the library carries, from its memory.
void loadGraphics(benchmark::State& state) {
    startProduct();
    std::vector<double> times;
    int32_t sets = 0;
    int64_t bytes = 0;
    for (auto _ : state) {
        times.push_back(secondsOf([&] {
            sets = 0;
            bytes = 0;
            std::vector<std::unique_ptr<CDataSet>> loaded;
            for (const CResourceRow* row = kResourceRows; row->name; ++row) {
                if (std::unique_ptr<CDataSet> set = setFor(row->name)) {
                    mustSucceed(loadDataSet(*set, row->name, 1.0));
                    bytes += set->getSize();
                    loaded.push_back(std::move(set));
                    ++sets;
                }
            }
        }));
    }
    state.counters["median_ms"] = 1e3 * medianOf(times);
    state.counters["sets"] = sets;
    state.counters["bytes"] = static_cast<double>(bytes);
}
BENCHMARK(loadGraphics)->Iterations(50)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tarv

BENCHMARK_MAIN();
