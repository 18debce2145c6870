#include "Benchmarks/BuildMeasures.h"

#include <sys/prctl.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>

#include "Benchmarks/InChild.h"
#include "Benchmarks/Times.h"
#include "CPluginLibrary.h"

namespace tarv::bench {

namespace {

constexpr double kNone = std::numeric_limits<double>::infinity();
/// Of at most two fades at 48 kHz, and until a run is recorded.
constexpr int64_t kWarmUp = 100;
constexpr double kNoise = 0.5;

struct CLibraries {
    host::CPluginLibrary before;
    host::CPluginLibrary after;

    bool load(const CBuilds& builds) { return load(before, builds.before) && load(after, builds.after); }
    static bool load(host::CPluginLibrary& library, const std::string& path) {
        std::string error;
        const bool isLoaded = library.load(path, error);
        if (!isLoaded) {
            std::fprintf(stderr, "%s: %s\n", path.c_str(), error.c_str());
        }
        return isLoaded;
    }
};

void useSet(const char* set) {
    setenv("TARV_INSTRUCTION_SET", set, 1);
}

std::vector<double> packed(const std::vector<CCosts>& costs) {
    std::vector<double> values;
    for (const CCosts& cost : costs) {
        values.insert(values.end(), {cost.before, cost.after, cost.isSame ? 1.0 : 0.0});
    }
    return values;
}

std::vector<CCosts> unpacked(const std::vector<double>& values) {
    std::vector<CCosts> costs;
    for (size_t i = 0; i + 2 < values.size(); i += 3) {
        costs.push_back({values[i], values[i + 1], values[i + 2] != 0.0});
    }
    return costs;
}

/// A pass of one case; both have gone first as often as the other, since the second finds the input in the cache.
bool comparePass(CLibraries& libraries, const CCase& c, CCosts& costs) {
    CBlockClock clock;
    CPluginRun before;
    CPluginRun after;
    if (!before.start(libraries.before.entry(), c.layout, c.chunk) ||
        !after.start(libraries.after.entry(), c.layout, c.chunk)) {
        return false;
    }
    CInput input(kNoise);
    CCosts least;
    for (int64_t round = 0; round < kWarmUp + c.rounds; ++round) {
        // What is set before the first block begins without a fade.
        CCosts moves;
        if (round > 0) {
            moves.before = before.move(round, clock);
            moves.after = after.move(round, clock);
        }
        CCosts now;
        if (round % 2 == 0) {
            now.before = before.process(input, round, clock);
            now.after = after.process(input, round, clock);
        } else {
            now.after = after.process(input, round, clock);
            now.before = before.process(input, round, clock);
        }
        if (c.layout.isMoveTimed) {
            now = moves;
        }
        now.isSame = after.soundsAs(before);
        if (round < kWarmUp) {
            now.before = now.after = kNone;
        }
        least.lower(now);
    }
    costs = {least.before / c.layout.frames, least.after / c.layout.frames, least.isSame};
    return true;
}

double secondsOfBlocks(CPluginRun& run, CInput& input, int64_t from, int64_t count) {
    CBlockClock clock(CBlockClock::kWall);
    double sum = 0.0;
    for (int64_t round = from; round < from + count; ++round) {
        sum += run.process(input, round, clock);
    }
    return sum * 1e-9;
}

/// What making, resuming, the first block and the next seven take.
constexpr size_t kStarts = 4;
bool startOnce(vst::EntryProc entry, const CCase& c, CInput& input, std::array<double, kStarts>& least) {
    CBlockClock clock(CBlockClock::kWall);
    CPluginRun run;
    clock.start();
    if (!run.open(entry)) {
        return false;
    }
    const double made = clock.stop() * 1e-9;
    if (!run.configure(c.layout, c.chunk)) {
        return false;
    }
    clock.start();
    run.resume();
    const double resumed = clock.stop() * 1e-9;
    const double first = secondsOfBlocks(run, input, 0, 1);
    const double further = secondsOfBlocks(run, input, 1, 7);
    const std::array<double, kStarts> now = {made, resumed, first, further};
    for (size_t i = 0; i < kStarts; ++i) {
        least[i] = std::min(least[i], now[i]);
    }
    return true;
}

/// Of one process: two libraries would take each other's place in the caches, and the second one loses by it.
std::vector<double> startsOf(const std::string& build, const CCase& c, const char* set) {
    return inChild([&]() -> std::vector<double> {
        useSet(set);
        host::CPluginLibrary library;
        CPluginRun first;
        if (!CLibraries::load(library, build) || !first.open(library.entry())) {
            return {};
        }
        CInput input(kNoise);
        std::array<double, kStarts> least;
        least.fill(kNone);
        for (int32_t round = 0; round < c.rounds; ++round) {
            if (!startOnce(library.entry(), c, input, least)) {
                return {};
            }
        }
        return {least.begin(), least.end()};
    });
}

/// Memory of this process without a file behind it, also what the system has swapped out meanwhile.
double ownBytes() {
    std::ifstream file("/proc/self/smaps_rollup");
    std::string word;
    double sum = 0.0;
    while (file >> word) {
        double kibibytes = 0.0;
        if (word == "Anonymous:" || word == "Swap:") {
            file >> kibibytes;
        }
        sum += kibibytes;
    }
    return sum * 1024.0;
}

/// Of one process; 0 if nothing can be measured.
double memoryOnce(const std::string& build, const CCase& c, const char* set) {
    constexpr size_t kInstances = 8;
    constexpr int64_t kMoved = 20;
    const std::vector<double> bytes = inChild([&]() -> std::vector<double> {
        useSet(set);
        // Huge pages would come or not, by where the memory lies.
        prctl(PR_SET_THP_DISABLE, 1, 0, 0, 0);
        host::CPluginLibrary library;
        if (!CLibraries::load(library, build)) {
            return {};
        }
        CInput input(kNoise);
        CBlockClock clock;
        std::vector<std::unique_ptr<CPluginRun>> runs;
        double first = 0.0;
        for (size_t i = 0; i <= kInstances; ++i) {
            runs.push_back(std::make_unique<CPluginRun>());
            if (!runs.back()->start(library.entry(), c.layout, c.chunk)) {
                return {};
            }
            for (int64_t round = 0; round < 2 * kMoved; ++round) {
                // Fades take memory of an instance, and so does what is recorded behind them.
                if (round > 0 && round < kMoved) {
                    runs.back()->move(round, clock);
                }
                runs.back()->process(input, round, clock);
            }
            // What all instances share comes with the first one.
            first = i == 0 ? ownBytes() : first;
        }
        const double all = ownBytes();
        runs.clear();
        return {(all - first) / kInstances};
    });
    return bytes.empty() ? 0.0 : bytes[0];
}

double memoryOf(const std::string& build, const CCase& c, const char* set) {
    return medianOf({memoryOnce(build, c, set), memoryOnce(build, c, set), memoryOnce(build, c, set)});
}

}  // namespace

void CCosts::lower(const CCosts& other) {
    before = std::min(before, other.before);
    after = std::min(after, other.after);
    isSame = isSame && other.isSame;
}

std::vector<CCosts> compareBlocks(const CBuilds& builds, const CCase& c, const char* set) {
    return unpacked(inChild([&]() -> std::vector<double> {
        useSet(set);
        CLibraries libraries;
        CCosts costs;
        if (!libraries.load(builds) || !comparePass(libraries, c, costs)) {
            return {};
        }
        return packed({costs});
    }));
}

std::vector<CCosts> compareLevels(const std::string& build, const CCase& c, const std::vector<double>& levels,
                                  const char* set) {
    return unpacked(inChild([&]() -> std::vector<double> {
        useSet(set);
        host::CPluginLibrary library;
        if (!CLibraries::load(library, build)) {
            return {};
        }
        CBlockClock clock;
        std::vector<CCosts> costs;
        CInput noise(kNoise);
        for (const double level : levels) {
            CPluginRun plain;
            CPluginRun other;
            if (!plain.start(library.entry(), c.layout, c.chunk) || !other.start(library.entry(), c.layout, c.chunk)) {
                return {};
            }
            CInput input(level);
            CCosts least;
            for (int64_t round = 0; round < kWarmUp + c.rounds; ++round) {
                const CCosts now = {plain.process(noise, round, clock), other.process(input, round, clock)};
                if (round >= kWarmUp) {
                    least.lower(now);
                }
            }
            costs.push_back({least.before / c.layout.frames, least.after / c.layout.frames});
        }
        return packed(costs);
    }));
}

std::vector<CCosts> compareStarts(const CBuilds& builds, const CCase& c, const char* set) {
    const std::vector<double> before = startsOf(builds.before, c, set);
    const std::vector<double> after = startsOf(builds.after, c, set);
    std::vector<CCosts> costs;
    for (size_t i = 0; before.size() == kStarts && after.size() == kStarts && i < kStarts; ++i) {
        costs.push_back({before[i], after[i]});
    }
    return costs;
}

std::vector<CCosts> compareMemory(const CBuilds& builds, const CCase& c, const char* set) {
    const double before = memoryOf(builds.before, c, set);
    const double after = memoryOf(builds.after, c, set);
    return before > 0.0 && after > 0.0 ? std::vector<CCosts>{{before, after}} : std::vector<CCosts>();
}

bool canLoad(const CBuilds& builds) {
    return !inChild([&]() -> std::vector<double> {
                CLibraries libraries;
                return libraries.load(builds) ? std::vector<double>{1.0} : std::vector<double>();
            }).empty();
}

bool countsCycles() {
    return CBlockClock().countsCycles();
}

}  // namespace tarv::bench
