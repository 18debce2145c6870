#include "Audio/Visuals/CAudioVizCollector.h"

#include <thread>

#include "Tests/Audio/Parameters/CountedNew.h"
#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

constexpr double kFps = 30.0;
const CTestAttributes kGlobal = {{"is-global", "true"}};

std::vector<CCreatorRow> creators() {
    std::vector<CCreatorRow> rows = paramCreators();
    rows.push_back({"audio:viz-collector", &createObject<CAudioVizCollector>, nullptr});
    return rows;
}

/// A collector with switches for the sources "p.meter" and "p.spec"; "p.silent" has none.
class VizCollecting : public testing::Test {
protected:
    explicit VizCollecting(const char* fps = "30.0") {
        application = std::make_unique<CTestApplication>(
            creators(), std::vector<CTestNode>{
                            {"core:object",
                             "audio",
                             {},
                             {converterTree(), paramNode("param-enable-viz", "enum-enable", "0", "1", "0", kGlobal),
                              paramNode("enable", "enum-enable", "0", "1", "1", kGlobal)}}});
        root = application->makeRoot(
            {{"audio:audio-env", "env", {{"viz-fps", fps}}},
             {"audio:param-collector", "collector", {{"env", "^env"}}},
             {"audio:viz-collector", "viz", {{"env", "^env"}, {"param-collector", "^collector"}}}});
        viz = root->findObjectOf<CAudioVizCollector>("viz");
        define("p.meter-enable");
        define("p.spec-enable");
    }
    CAudioParam& define(const char* name) {
        return *params().define(name, CApplication::sharedRoot()->findObjectOf<CAudioParamDef>("audio.enable")->info());
    }
    CAudioParamCollector& params() { return *root->findObjectOf<CAudioParamCollector>("collector"); }
    void set(const char* param, double value) { params().findParam(param)->setValue(0, 0, value); }
    void begin() {
        set("audio.param-enable-viz", 1.0);
        viz->start();
    }
    /// What a meter does in one run of its process; whether it got a record.
    static bool meter(CAudioVizSource& source, double level, uint32_t channel = 0) {
        auto* record = static_cast<CAudioVizDataMeter*>(source.beginRecord());
        if (!record)
            return false;
        record->channel = channel;
        record->level = level;
        source.endRecord();
        return true;
    }
    /// A block of the host at that frame, one run of the meter in it.
    bool block(int64_t frame, CAudioVizSource& source, double level = 0.0) {
        viz->setPosition(static_cast<double>(frame) / 48000.0);
        return meter(source, level);
    }
    std::vector<double> takenLevels() {
        std::vector<double> levels;
        EXPECT_EQ(consumed(viz->takeRecords([&](const CAudioVizData& data) -> CError* {
                      levels.push_back(dynamic_cast<const CAudioVizDataMeter&>(data).level);
                      return nullptr;
                  })),
                  "");
        return levels;
    }

    std::unique_ptr<CTestApplication> application;
    std::unique_ptr<CObject> root;
    CAudioVizCollector* viz;
};

TEST_F(VizCollecting, RecordsAreMadeWhileGoingWithBothSwitchesOnAndNotOtherwise) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    int64_t frame = 0;
    for (int going = 0; going < 2; ++going)
        for (int enabled = 0; enabled < 2; ++enabled)
            for (int switched = 0; switched < 2; ++switched) {
                going ? viz->start() : viz->stop();
                set("audio.param-enable-viz", enabled);
                set("p.meter-enable", switched);
                const bool isAll = going && enabled && switched;
                EXPECT_EQ(block(frame += 48000, source), isAll) << going << enabled << switched;
                EXPECT_EQ(takenLevels().size(), isAll ? 1u : 0u) << going << enabled << switched;
            }
}

TEST_F(VizCollecting, ASourceWithoutASwitchIsNotCollected) {
    CAudioVizSource& source = *viz->addSource("p.silent", CAudioVizKind::Meter);
    begin();
    EXPECT_FALSE(block(48000, source));
}

TEST_F(VizCollecting, ASwitchThatIsDefinedLaterIsFoundAtTheNextStart) {
    CAudioVizSource& source = *viz->addSource("p.silent", CAudioVizKind::Meter);
    define("p.silent-enable");
    EXPECT_FALSE(block(48000, source));
    begin();
    EXPECT_TRUE(block(96000, source));
    set("p.silent-enable", 0.0);
    EXPECT_FALSE(block(144000, source)) << "followed from then on";
}

TEST_F(VizCollecting, RecordsCarryTheirSourceAndThePositionOfTheBlock) {
    viz->addSource("p.silent", CAudioVizKind::Info);
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    EXPECT_EQ(source.name(), "p.meter");
    EXPECT_EQ(source.kind(), CAudioVizKind::Meter);
    EXPECT_EQ(source.number(), 1u);
    EXPECT_EQ(viz->sourceName(1), "p.meter");
    EXPECT_TRUE(viz->sourceName(2).isEmpty());
    EXPECT_TRUE(viz->sourceName(0xffffffffu).isEmpty());
    begin();
    EXPECT_TRUE(block(12000, source));
    EXPECT_EQ(consumed(viz->takeRecords([](const CAudioVizData& data) -> CError* {
                  EXPECT_EQ(data.source, 1u);
                  EXPECT_EQ(data.time, 0.25);
                  return nullptr;
              })),
              "");
}

TEST_F(VizCollecting, TheFirstSourceOfANameStaysAndLimitsAreChecked) {
    CAudioVizSource* source = viz->addSource("p.meter", CAudioVizKind::Meter);
    EXPECT_EQ(viz->addSource("p.meter", CAudioVizKind::Spectrum, 2, 100), source);
    for (const auto& [perFrame, capacity] : {std::pair{0, 0}, {65, 0}, {1, -1}, {1, 65537}})
        EXPECT_EQ(viz->addSource("p.spec", CAudioVizKind::Spectrum, perFrame, capacity), nullptr);
    EXPECT_TRUE(viz->addSource("p.spec", CAudioVizKind::Spectrum, 1, 65536));
}

TEST_F(VizCollecting, RecordsOfAllSourcesAreTakenInTheOrderOfTheirMaking) {
    CAudioVizSource& first = *viz->addSource("p.meter", CAudioVizKind::Meter, 2);
    CAudioVizSource& second = *viz->addSource("p.spec", CAudioVizKind::Meter, 2);
    begin();
    std::vector<double> expected;
    for (int i = 0; i < 8; ++i) {
        viz->setPosition(i);
        for (CAudioVizSource* source : {&second, &first, &first, &second}) {
            expected.push_back(static_cast<double>(expected.size()));
            EXPECT_TRUE(meter(*source, expected.back()));
        }
    }
    EXPECT_EQ(takenLevels(), expected);
    EXPECT_TRUE(takenLevels().empty());
}

TEST_F(VizCollecting, AFrameTakesASourcesRecordsOnceHoweverOftenItRuns) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter, 2);
    begin();
    EXPECT_TRUE(block(0, source, 1.0));
    EXPECT_TRUE(meter(source, 2.0, 1));
    EXPECT_FALSE(meter(source, 3.0));
    EXPECT_FALSE(block(64, source, 4.0)) << "the next frame is not due";
    EXPECT_TRUE(block(1600, source, 5.0));
    EXPECT_EQ(takenLevels(), (std::vector<double>{1.0, 2.0, 5.0}));
}

TEST_F(VizCollecting, FramesAreNoMoreThanTheirRateAllowsAndNoFewerThanTheBlocksAllow) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    begin();
    int64_t frame = 0;
    for (const int64_t size : {1, 64, 441, 512, 1600, 4096}) {
        frame += 480000;
        double last = -1.0;
        int count = 0;
        for (const int64_t end = frame + 10 * 48000; frame < end; frame += size) {
            if (block(frame, source)) {
                const double now = static_cast<double>(frame) / 48000.0;
                // On the grid of the rate a frame is late by less than a block.
                EXPECT_GE(now - last, 1.0 / kFps - static_cast<double>(size) / 48000.0 - 1e-9) << size;
                last = now;
                ++count;
                EXPECT_EQ(takenLevels().size(), 1u);
            }
        }
        const double possible = std::min(kFps, 48000.0 / static_cast<double>(size));
        EXPECT_NEAR(count, 10.0 * possible, 1.0) << size;
    }
}

TEST_F(VizCollecting, FramesGoOnAtOnceAfterAPause) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    begin();
    EXPECT_TRUE(block(0, source));
    set("audio.param-enable-viz", 0.0);
    EXPECT_FALSE(block(480000, source));
    set("audio.param-enable-viz", 1.0);
    EXPECT_TRUE(block(480512, source));
    EXPECT_FALSE(block(481024, source)) << "without frames to make up for the pause";
}

TEST_F(VizCollecting, RecordsThatAreNotTakenStayAndNewerOnesAreDropped) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    CAudioVizSource& other = *viz->addSource("p.spec", CAudioVizKind::Meter);
    begin();
    std::vector<double> expected;
    for (int i = 0; i < 20; ++i) {
        const bool isKept = i < CAudioVizSource::kFramesKept;
        EXPECT_EQ(block(i * 48000, source, i), isKept) << i;
        if (isKept)
            expected.push_back(i);
    }
    EXPECT_EQ(source.dropped(), 20u - expected.size());
    EXPECT_TRUE(meter(other, 100.0)) << "one source doesn't fill the room of another";
    EXPECT_EQ(other.dropped(), 0u);
    expected.push_back(100.0);
    EXPECT_EQ(takenLevels(), expected);
    EXPECT_TRUE(block(20 * 48000, source, 20.0));
    EXPECT_EQ(takenLevels(), (std::vector<double>{20.0}));
}

TEST_F(VizCollecting, WhatGatheredBeforeAStopCanStillBeTaken) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    begin();
    EXPECT_TRUE(block(0, source, 1.0));
    viz->stop();
    CAudioVizSource& later = *viz->addSource("p.spec", CAudioVizKind::Meter, 64);
    viz->start();
    EXPECT_TRUE(block(48000, later, 2.0));
    EXPECT_EQ(takenLevels(), (std::vector<double>{1.0, 2.0}));
}

TEST_F(VizCollecting, AFailureEndsTheTakingAndLeavesTheRest) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    begin();
    for (int i = 0; i < 3; ++i)
        EXPECT_TRUE(block(i * 48000, source, i));
    const std::string failure = consumed(
        viz->takeRecords([](const CAudioVizData&) -> CError* { TARV_FAIL("@tarvstr_Test_take_No Not taken."); }));
    EXPECT_EQ(failure.find("Not taken.\r\n"), 0u);
    EXPECT_EQ(takenLevels(), (std::vector<double>{1.0, 2.0}));
    for (int i = 3; i < 3 + CAudioVizSource::kFramesKept; ++i)
        EXPECT_TRUE(block(i * 48000, source)) << "no record is lost";
}

TEST_F(VizCollecting, ABegunRecordStaysBegunUntilItIsHandedIn) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    source.endRecord();
    EXPECT_TRUE(takenLevels().empty());
    begin();
    viz->setPosition(1.0);
    CAudioVizData* record = source.beginRecord();
    ASSERT_TRUE(record);
    EXPECT_EQ(source.beginRecord(), record);
    EXPECT_TRUE(takenLevels().empty());
    source.endRecord();
    source.endRecord();
    EXPECT_EQ(takenLevels().size(), 1u);
}

TEST_F(VizCollecting, TheAudioSideNeitherAllocatesNorFrees) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter, 16);
    CAudioVizSource& spectra = *viz->addSource("p.spec", CAudioVizKind::Spectrum, 2, 16385);
    begin();
    for (int i = 0; i < 100; ++i) {
        const CHeapCounters heap = CHeap::counters();
        const CNewCounters news = newCounters();
        viz->setPosition(0.05 * i);
        for (uint32_t channel = 0; channel < 16; ++channel)
            meter(source, i, channel);
        while (auto* record = static_cast<CAudioVizDataSpectrum*>(spectra.beginRecord())) {
            record->bins.resize(i % 2 ? 16385 : 33);
            spectra.endRecord();
        }
        const CHeapCounters heapAfter = CHeap::counters();
        const CNewCounters newsAfter = newCounters();
        ASSERT_EQ(heapAfter.allocations, heap.allocations) << i;
        ASSERT_EQ(heapAfter.frees, heap.frees) << i;
        ASSERT_EQ(newsAfter.news, news.news) << i;
        ASSERT_EQ(newsAfter.deletes, news.deletes) << i;
        // At times they are left for so long that some are dropped.
        if (i % 30 < 15)
            EXPECT_EQ(consumed(viz->takeRecords([](const CAudioVizData&) -> CError* { return nullptr; })), "");
    }
    EXPECT_GT(source.dropped(), 0u);
    EXPECT_GT(spectra.dropped(), 0u);
}

TEST_F(VizCollecting, OneThreadHandsInWhileAnotherTakesAndAThirdSwitches) {
    constexpr int kFrames = 20000;
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Spectrum, 2, 64);
    begin();
    std::atomic<bool> isDone{false};
    std::atomic<int> handedIn{0};
    std::thread audio([&] {
        for (int i = 1; i <= kFrames; ++i) {
            viz->setPosition(i);
            while (auto* record = static_cast<CAudioVizDataSpectrum*>(source.beginRecord())) {
                const int number = ++handedIn;
                record->bins.resize(number % 65);
                for (double& bin : record->bins)
                    bin = number;
                record->sampleRate = number;
                source.endRecord();
            }
        }
        isDone = true;
    });
    std::thread user([&] {
        while (handedIn == 0)
            std::this_thread::yield();
        for (int i = 0; !isDone; ++i) {
            set(i % 2 ? "p.meter-enable" : "audio.param-enable-viz", i / 2 % 2);
            std::this_thread::yield();
        }
    });
    int taken = 0;
    const auto take = [&] {
        EXPECT_EQ(consumed(viz->takeRecords([&](const CAudioVizData& data) -> CError* {
                      const auto& spectrum = dynamic_cast<const CAudioVizDataSpectrum&>(data);
                      EXPECT_EQ(spectrum.sampleRate, ++taken) << "in order and without a gap";
                      EXPECT_EQ(spectrum.bins.count(), taken % 65);
                      for (double bin : spectrum.bins)
                          EXPECT_EQ(bin, taken);
                      return nullptr;
                  })),
                  "");
    };
    while (!isDone)
        take();
    audio.join();
    user.join();
    take();
    EXPECT_EQ(taken, handedIn);
}

struct VizWithoutFrames : VizCollecting, testing::WithParamInterface<const char*> {
    VizWithoutFrames() : VizCollecting(GetParam()) {}
};

TEST_P(VizWithoutFrames, ARateThatIsNotAboveZeroGivesNone) {
    CAudioVizSource& source = *viz->addSource("p.meter", CAudioVizKind::Meter);
    begin();
    for (int i = 0; i < 5; ++i)
        EXPECT_FALSE(block(i * 48000, source));
}
INSTANTIATE_TEST_SUITE_P(Rates, VizWithoutFrames, testing::Values("", "0", "-30", "often"));

TEST_F(VizCollecting, ASwitchThatManyThreadsTurnEndsAsItsParameterDoes) {
    CAudioVizSwitch fresh;
    EXPECT_FALSE(fresh.isOn());
    fresh.bind(*viz->enableParam());
    for (int round = 0; round < 200; ++round) {
        std::vector<std::thread> threads;
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([&, i] { set("audio.param-enable-viz", i % 2); });
        for (std::thread& thread : threads)
            thread.join();
        EXPECT_EQ(fresh.isOn(), viz->enableParam()->value(0, 0) >= 0.5);
    }
}

}  // namespace
}  // namespace tarv
