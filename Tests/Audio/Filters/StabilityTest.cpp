#include <cmath>

#include "Core/CHeap.h"
#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

/// A generator that a host's parameters reach, by its attributes.
struct CGenerator {
    const char* name;
    const char* tag;
    const char* type;
};

constexpr CGenerator kGenerators[] = {
    {"peak_magnusB", "audio:fltgen-magnus", "1"}, {"ls_rbj", "audio:fltgen-rbj", "7"},
    {"hs_rbj", "audio:fltgen-rbj", "8"},          {"lp2_rbj", "audio:fltgen-rbj", "0"},
    {"hp2_rbj", "audio:fltgen-rbj", "1"},         {"hp1", "audio:fltgen-lphp1", "4"},
    {"hp1b", "audio:fltgen-lphp1", "5"},          {"hp1c", "audio:fltgen-lphp1", "6"},
    {"hp1d", "audio:fltgen-lphp1", "7"},
};

// Hosts run at 8 kHz to 768 kHz, odd rates included, and the graph at one, two, four and eight times that.
constexpr double kRates[] = {8000.0,   8333.0,    8334.0,    11025.0,   16000.0,   22050.0,  32000.0,  44100.0,
                             48000.0,  88200.0,   96000.0,   176400.0,  192000.0,  352800.0, 384000.0, 705600.0,
                             768000.0, 1411200.0, 1536000.0, 3072000.0, 6144000.0, 47999.37};

constexpr double kWidths[] = {0.01, 0.1, 1.5, 2.0, 7.0};  // octaves, the ends and the values in use

TEST(Stability, EveryGeneratorOfTheProductIsFiniteAndStableEverywhere) {
    for (const CGenerator& g : kGenerators) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(g.tag, {{"type", g.type}});
        CSectionList list;
        int failures = 0;
        for (double rate : kRates) {
            for (double octaves : kWidths) {
                for (double db = -48.0; db <= 48.0; db += 4.0) {
                    for (double hz = 20.0; hz < 21001.0; hz = hz < 20000.0 ? hz * 1.05 : hz + 500.0) {
                        const double values[3] = {hz, fromDb(db), octaves};
                        generator.design(list, rate, values, 3);
                        if (!isStable(list) && ++failures < 5) {
                            ADD_FAILURE() << g.name << " at " << hz << " Hz, " << db << " dB, " << octaves
                                          << " octaves, rate " << rate;
                        }
                    }
                }
            }
        }
        EXPECT_EQ(failures, 0) << g.name;
    }
}

TEST(Stability, ThePeakIsFiniteAndStableWhereverTheRatePutsItsSingularPoint) {
    CFilterTree tree;
    const CAudioFilterGen& generator = tree.generator("audio:fltgen-magnus", {{"type", "1"}});
    CSectionList list;
    for (double rate : kRates) {
        for (double db = -48.0; db <= 48.0; db += 1.5) {
            for (int step = -2000; step <= 2000; ++step) {
                // The whole stretch that the step around the point takes, and both its ends.
                const double values[3] = {rate * (0.25 + 3e-6 * step), fromDb(db), 1.5};
                generator.design(list, rate, values, 3);
                ASSERT_TRUE(isStable(list)) << rate << ' ' << db << ' ' << step;
            }
        }
    }
}

TEST(Stability, TheFiltersThatRemoveDcAreStableDownToOneHertz) {
    for (const CGenerator& g : kGenerators) {
        if (std::string(g.tag) != "audio:fltgen-lphp1") {
            continue;
        }
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(g.tag, {{"type", g.type}});
        for (double rate : kRates) {
            for (double hz = 1.0; hz < 21000.0; hz *= 1.1) {
                EXPECT_TRUE(isStable(designed(generator, rate, {hz, 1.0}))) << g.name << ' ' << rate << ' ' << hz;
            }
        }
    }
}

TEST(Stability, ADesignIntoAUsedListTakesNoMemory) {
    for (const CGenerator& g : kGenerators) {
        CFilterTree tree;
        const CAudioFilterGen& generator = tree.generator(g.tag, {{"type", g.type}});
        CSectionList list;
        const uint64_t before = CHeap::counters().allocations;
        for (double hz = 20.0; hz < 21000.0; hz *= 1.1) {
            const double values[3] = {hz, 2.0, 1.5};
            generator.design(list, 44100.0, values, 3);
        }
        EXPECT_EQ(CHeap::counters().allocations, before) << g.name;
    }
}

TEST(Stability, ASetOfThreeSectionsTakesNoMemory) {
    CFilterTree tree;
    tree.generator("audio:fltgen-rbj", "hp2", {{"type", "1"}, {"is-q", "true"}});
    const CAudioFilterGen& set = tree.serial("set", {{"hp2", "1.0,1.0,0.7"}, {"hp2", ""}, {"hp2", "1.0,1.0,2.7"}});
    CSectionList list;
    const uint64_t before = CHeap::counters().allocations;
    const double values[3] = {5.0, 1.0, 0.7};
    set.design(list, 44100.0, values, 3);
    EXPECT_EQ(list.sections.count(), 3);
    EXPECT_EQ(CHeap::counters().allocations, before);
}

}  // namespace
}  // namespace tarv
