// What loading all that an editor draws with takes.

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "Benchmarks/Times.h"
#include "CPlainInstance.h"
#include "Product/ResourceTable.h"
#include "UI/Resources/CBrushSet.h"
#include "UI/Resources/CFont.h"
#include "UI/Resources/CImageSet.h"
#include "UI/Resources/CPalette.h"

namespace tarv {
namespace {

/// Enters the embedded resources, as an instance does.
void startProduct() {
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    mustSucceed(error);
}

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
