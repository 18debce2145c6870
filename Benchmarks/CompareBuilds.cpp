// What two builds of the plug-in cost, an instance of each in turn in one run: `CompareBuilds BEFORE.so AFTER.so
// [PART]`. Prints tables with a column for each set of instructions that this machine has. Ends with 1 if a ratio is
// above its limit, or if the builds do not sound alike to the bit.

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Benchmarks/BuildMeasures.h"
#include "Benchmarks/CRatioTable.h"
#include "Benchmarks/RandomSounds.h"

using namespace tarv;
using namespace tarv::bench;

namespace {

constexpr size_t kSets = 3;
const std::vector<std::string> kTitles = {"SSE2", "AVX2", "AVX-512"};

struct CPasses {
    int32_t least;
    int32_t most;  ///< while a ratio is above its limit
};
constexpr CPasses kTimed = {8, 40};
constexpr CPasses kCounted = {1, 1};

struct CBlockRow {
    const char* name;
    CLayout layout;
    int32_t rounds;
    double limits[kSets];  ///< 0 is none
};

constexpr CBlockRow kBlockRows[] = {
    {"1x, 512 frames", {2, 512, 0, CMoves::None}, 600, {0.80, 0.46, 0.29}},
    {"2x, 512", {2, 512, 1, CMoves::None}, 300, {0.74, 0.44, 0.29}},
    {"8x, 512", {2, 512, 3, CMoves::None}, 120, {0.68, 0.45, 0.27}},
    {"1x, 32 frames", {2, 32, 0, CMoves::None}, 4000, {1.00, 0.66, 0.56}},
    {"8 channels, 1x, 512", {8, 512, 0, CMoves::None}, 200, {0.84, 0.50, 0.35}},
    {"every parameter automated every block, 512", {2, 512, 0, CMoves::All}, 400, {0.75, 0.58, 0.45}},
    {"every parameter automated every block, 32", {2, 32, 0, CMoves::All}, 1600, {0.55, 0.50, 0.50}},
    {"setting 16 parameters before a block, 32", {2, 32, 0, CMoves::All, false, true}, 1600, {0.0, 0.0, 0.0}},
    {"1x, 512 frames, 32-bit host", {2, 512, 0, CMoves::None, true}, 600, {0.0, 0.0, 0.0}},
    {"1x, 32 frames, 32-bit host", {2, 32, 0, CMoves::None, true}, 4000, {0.0, 0.0, 0.0}},
    {"bands automated every block, 512", {2, 512, 0, CMoves::Bands}, 400, {0.0, 0.0, 0.0}},
    {"bands automated every block, 32", {2, 32, 0, CMoves::Bands}, 1600, {0.0, 0.0, 0.0}},
};

struct CLevelRow {
    const char* name;
    double level;
};

/// The line at the upper end of the first curve begins where a band's filter gives about 3.5.
constexpr CLevelRow kLevelRows[] = {
    {"silence", 0.0}, {"noise to 5", 5.0}, {"noise to 40", 40.0}, {"denormal numbers", 1e-310}};
constexpr double kLevelLimit = 1.25;
constexpr int32_t kLevelRounds = 600;

constexpr const char* kStartRows[] = {"made and opened", "resumed", "first block", "the seven behind it"};
constexpr int32_t kStartRounds = 10;
/// Not worse than before, and what is left of other programs' noise in the least of so many.
constexpr double kStartLimit = 1.05;

/// TARV_RANDOM_SCRIPTS says another number.
constexpr int32_t kScripts = 100;

struct CMemoryRow {
    const char* name;
    CLayout layout;
};
constexpr CMemoryRow kMemoryRows[] = {{"1x, 512 frames", {2, 512, 0, CMoves::Bands}},
                                      {"8x, 512", {2, 512, 3, CMoves::Bands}},
                                      {"8 channels, 1x, 512", {8, 512, 0, CMoves::Bands}}};
/// Not more than before, and what equal builds differ by.
constexpr double kMemoryLimit = 1.01;

struct CMeasured {
    size_t set;
    const char* name;  ///< of the set
};

/// The sets that this machine has; where TARV_INSTRUCTION_SET is set, that one alone.
std::vector<CMeasured> measuredSets() {
    const auto widest = static_cast<size_t>(widestSet(readProcessorFeatures()));
    const char* const wanted = std::getenv("TARV_INSTRUCTION_SET");
    std::vector<CMeasured> sets;
    for (size_t s = 0; s <= widest; ++s) {
        const char* const name = nameOf(static_cast<CInstructionSet>(s));
        if (wanted == nullptr || std::string(wanted) == name) {
            sets.push_back({s, name});
        }
    }
    return sets;
}

bool isAbove(const std::vector<CCosts>& costs, const std::vector<double>& limits) {
    for (size_t i = 0; i < costs.size(); ++i) {
        if (limits[i] > 0.0 && !(costs[i].ratio() <= limits[i])) {
            return true;
        }
    }
    return false;
}

/// The least of some passes, and of more while one is above its limit: what other programs take can only add to it.
/// Empty if something cannot be measured.
std::vector<CCosts> leastOf(const std::function<std::vector<CCosts>()>& measure, const std::vector<double>& limits,
                            const CPasses& passes) {
    std::vector<CCosts> least(limits.size());
    for (int32_t i = 0; i < passes.least || (i < passes.most && isAbove(least, limits)); ++i) {
        const std::vector<CCosts> now = measure();
        if (now.size() != least.size()) {
            return {};
        }
        for (size_t j = 0; j < now.size(); ++j) {
            least[j].lower(now[j]);
        }
    }
    return least;
}

/// Of each row, with each set.
using CLimits = std::vector<std::vector<double>>;

/// A table, and whether all of it could be measured, sounds alike and keeps its limits.
class CReport {
public:
    CReport(const std::string& title, const std::string& base, double scale) : table_(title, base, scale) {}

    /// Rows by name; `measure` gives their costs with a set.
    void rows(const std::vector<std::string>& names, const CLimits& limits, const CPasses& passes,
              const std::function<std::vector<CCosts>(const char* set)>& measure) {
        std::vector<CCosts> costs[kSets];
        for (const CMeasured& m : measuredSets()) {
            costs[m.set] = leastOf([&] { return measure(m.name); }, limits[m.set], passes);
            isWhole_ = isWhole_ && !costs[m.set].empty();
        }
        for (size_t i = 0; i < names.size(); ++i) {
            table_.row(names[i]);
            for (size_t s = 0; s < kSets; ++s) {
                if (costs[s].empty()) {
                    table_.missing();
                } else {
                    add(names[i], s, costs[s][i], limits[s][i]);
                }
            }
        }
    }
    bool end() const {
        table_.print(kTitles);
        return isWhole_ && table_.failures() == 0;
    }

private:
    void add(const std::string& row, size_t set, const CCosts& costs, double limit) {
        table_.cell(costs.before, costs.after, limit);
        if (!costs.isSame) {
            std::fprintf(stderr, "%s, %s: the builds give other bits\n", row.c_str(), kTitles[set].c_str());
            isWhole_ = false;
        }
    }

    CRatioTable table_;
    bool isWhole_ = true;
};

CLimits limitOf(double limit, size_t count) {
    return CLimits(kSets, std::vector<double>(count, limit));
}

/// Rows whose names hold `part`.
bool reportBlocks(const CBuilds& builds, const std::string& part) {
    const bool isCycles = countsCycles();
    CReport report(isCycles ? "stereo unless said, 48 kHz; cycles a frame" : "stereo unless said, 48 kHz; ns a frame",
                   "before", 1.0);
    for (const CBlockRow& row : kBlockRows) {
        if (std::string(row.name).find(part) == std::string::npos) {
            continue;
        }
        const CCase c = {row.layout, chunkOf(row.layout), row.rounds};
        CLimits limits;
        for (const double limit : row.limits) {
            limits.push_back({limit});
        }
        report.rows({row.name}, limits, kTimed, [&](const char* set) { return compareBlocks(builds, c, set); });
    }
    return report.end();
}

bool reportLevels(const CBuilds& builds) {
    CReport report("against noise to 0.5, 1x, 512 frames", "", 1.0);
    const CLayout layout = {2, 512, 0, CMoves::None};
    const CCase c = {layout, chunkOf(layout), kLevelRounds};
    std::vector<std::string> names;
    std::vector<double> levels;
    for (const CLevelRow& row : kLevelRows) {
        names.emplace_back(row.name);
        levels.push_back(row.level);
    }
    report.rows(names, limitOf(kLevelLimit, names.size()), kTimed,
                [&](const char* set) { return compareLevels(builds.after, c, levels, set); });
    return report.end();
}

bool reportInstances(const CBuilds& builds) {
    const CLayout layout = {2, 512, 0, CMoves::None};
    const CCase starts = {layout, chunkOf(layout), kStartRounds};
    const std::vector<std::string> names(std::begin(kStartRows), std::end(kStartRows));
    CReport times("an instance, 1x, 512 frames; us", "before", 1e6);
    times.rows(names, limitOf(kStartLimit, names.size()), kTimed,
               [&](const char* set) { return compareStarts(builds, starts, set); });
    const bool isQuick = times.end();

    CReport memory("memory of an instance; KiB", "before", 1.0 / 1024.0);
    for (const CMemoryRow& row : kMemoryRows) {
        const CCase c = {row.layout, chunkOf(row.layout), 0};
        memory.rows({row.name}, limitOf(kMemoryLimit, 1), kCounted,
                    [&](const char* set) { return compareMemory(builds, c, set); });
    }
    return memory.end() && isQuick;
}

/// Random scripts give the same bits with each set.
bool reportSounds(const CBuilds& builds) {
    bool isGood = true;
    for (const CMeasured& m : measuredSets()) {
        const char* const number = std::getenv("TARV_RANDOM_SCRIPTS");
        const int32_t count = number != nullptr ? std::atoi(number) : kScripts;
        const int32_t same = countSameSounds(builds, m.name, count);
        std::printf("%s: %d of %d random scripts give the bits of the build before.\n", kTitles[m.set].c_str(), same,
                    count);
        isGood = isGood && same == count;
    }
    return isGood;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3 && argc != 4) {
        std::fprintf(stderr,
                     "CompareBuilds BEFORE AFTER [PART]: two files of the plug-in, built for this system; with "
                     "PART the rows of blocks whose names hold it; PART \"bits\": random scripts alone\n");
        return 2;
    }
    const CBuilds builds = {argv[1], argv[2]};
    if (!canLoad(builds)) {
        return 2;
    }
    std::printf("%s; a cell is the cost with that set, its ratio to the base, and the limit of the ratio.\n",
                countsCycles() ? "Cycles of the thread in user mode"
                               : "No cycle counter here: the least time of many rounds in turn");
    for (auto s = static_cast<size_t>(widestSet(readProcessorFeatures())) + 1; s < kSets; ++s) {
        std::printf("This machine has no %s: left out.\n", kTitles[s].c_str());
    }
    if (argc == 4 && std::string(argv[3]) == "bits") {
        return reportSounds(builds) ? 0 : 1;
    }
    if (argc == 4) {
        return reportBlocks(builds, argv[3]) ? 0 : 1;
    }
    bool isGood = !measuredSets().empty();
    isGood = reportBlocks(builds, "") && isGood;
    isGood = reportLevels(builds) && isGood;
    isGood = reportInstances(builds) && isGood;
    isGood = reportSounds(builds) && isGood;
    return isGood ? 0 : 1;
}
