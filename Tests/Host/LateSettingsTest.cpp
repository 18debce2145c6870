// Hosts that set the rate, the block size or the state behind `mains on`.

#include <thread>

#include "HostTest.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::host {
namespace {

constexpr double kRates[] = {44100.0, 48000.0, 96000.0, 192000.0};
constexpr float kOversamplingPositions[] = {0.25f, 0.5f, 1.0f};
constexpr int32_t kBlock = 256;

void setRate(CVstHost& host, double rate) {
    host.answers.rate = rate;
    host.dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, static_cast<float>(rate));
}

void setBlockSize(CVstHost& host, int32_t frames) {
    host.answers.blockSize = frames;
    host.dispatch(vst::kEffectSetBlockSize, 0, frames);
}

/// Sets values that reach every part of the chain.
void setCurve(CVstHost& host, float oversampling = 0.25f) {
    for (int32_t band = 0; band < 7; ++band) {
        host.setParameter(kEqA0 + band, 0.3f + 0.1f * static_cast<float>(band));
    }
    host.setParameter(kOutGainA, 0.4f);
    host.setParameter(kOversampling, oversampling);
}

class LateSettingsTest : public HostTest {
protected:
    void openAt(CVstHost& host, double rate) {
        ASSERT_TRUE(host.open(library->entry()));
        host.prepare(rate, kBlock, vst::kPrecision64);
    }
};

TEST_F(LateSettingsTest, ARateSetWhileRunningSoundsAsAfterASuspendAndAResume) {
    const auto input = noise<double>(kChannels, 1500);
    for (double first : kRates) {
        for (double second : kRates) {
            for (float oversampling : kOversamplingPositions) {
                CVstHost running, stopped;
                for (CVstHost* host : {&running, &stopped}) {
                    openAt(*host, first);
                    setCurve(*host, oversampling);
                    host->resume();
                    process(*host, input, {kBlock});
                }
                setRate(running, second);
                if (first != second) {
                    stopped.suspend();
                    setRate(stopped, second);
                    stopped.resume();
                }
                EXPECT_TRUE(sameBits(process(running, input, {kBlock}), process(stopped, input, {kBlock})))
                    << first << " to " << second << " Hz, oversampling " << oversampling;
            }
        }
    }
}

TEST_F(LateSettingsTest, ARateSetBehindTheResumeIsTheRateOfTheFirstBlock) {
    const auto input = noise<double>(kChannels, 1500);
    CVstHost host;
    openAt(host, 44100.0);
    setCurve(host);
    host.resume();
    setRate(host, 96000.0);
    CVstHost plain;
    openAt(plain, 96000.0);
    setCurve(plain);
    plain.resume();
    EXPECT_TRUE(sameBits(process(host, input), process(plain, input)));
}

TEST_F(LateSettingsTest, A96KilohertzRateSetWhileRunningGivesTheReference) {
    CVstHost host;
    openAt(host, 44100.0);
    host.resume();
    process(host, noise<double>(kChannels, 1500));
    setRate(host, 96000.0);
    host.setParameter(kEqA0 + 6, 1.0f);  // the band at 12 kHz
    const auto input = noise<double>(kChannels, 4000, 0.1);
    reference::CLayout layout;
    layout.rate = 96000.0;
    reference::CSettings settings;
    settings.groups[0].gains[6] = reference::factorOf(12.0);
    const reference::CSignal stereo(input.begin(), input.begin() + 2);
    EXPECT_TRUE(sound::isClose(process(host, input), reference::render(layout, settings, {}, stereo, 4000),
                               sound::kTolerance64));
}

TEST_F(LateSettingsTest, ABlockSizeSetWhileRunningSoundsAsAfterASuspendAndAResume) {
    const auto input = noise<double>(kChannels, 1500);
    CVstHost running, stopped;
    for (CVstHost* host : {&running, &stopped}) {
        openAt(*host, 48000.0);
        setCurve(*host);
        host->resume();
        process(*host, input, {kBlock});
    }
    setBlockSize(running, 4096);
    stopped.suspend();
    setBlockSize(stopped, 4096);
    stopped.resume();
    EXPECT_TRUE(sameBits(process(running, input, {4096}), process(stopped, input, {4096})));
}

TEST_F(LateSettingsTest, SettingTheSameRateAndBlockSizeChangesNothing) {
    const auto input = noise<double>(kChannels, 3000);
    CVstHost repeating, plain;
    CSignal<double> outputs[2];
    for (CVstHost* host : {&repeating, &plain}) {
        openAt(*host, 48000.0);
        host->resume();
        process(*host, input, {kBlock});
        host->setParameter(kEqA0 + 2, 0.9f);
        process(*host, noise<double>(kChannels, 100));  // a fade runs
        if (host == &repeating) {
            setRate(*host, 96000.0);
            setRate(*host, 48000.0);
            setBlockSize(*host, kBlock);
            host->resume();
        }
        outputs[host == &plain] = process(*host, input, {kBlock});
    }
    EXPECT_TRUE(sameBits(outputs[0], outputs[1]));
}

TEST_F(LateSettingsTest, AnotherThreadMaySetRatesWhileBlocksRun) {
    const auto input = noise<double>(kChannels, 2000);
    CVstHost host;
    openAt(host, 44100.0);
    setCurve(host);
    host.resume();
    std::thread user([&] {
        for (int32_t round = 0; round < 200; ++round) {
            const float rate = round % 2 ? 44100.0f : 96000.0f;
            host.dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, rate);
            host.dispatch(vst::kEffectSetBlockSize, 0, 64 + round);
            host.setParameter(kEqA0 + round % 7, 0.5f);
        }
        host.dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, 48000.0f);
        setCurve(host);
    });
    for (int32_t round = 0; round < 20; ++round) {
        const auto output = process(host, input, {kBlock, true});
        // The curve lifts and cuts by less than 12 dB; a block at a wrong or torn rate would still be bounded by it.
        EXPECT_LT(peak(output[0]), 20.0);
    }
    user.join();
    process(host, input);
    host.suspend();
    host.resume();
    CVstHost plain;
    openAt(plain, 48000.0);
    setCurve(plain);
    plain.resume();
    EXPECT_TRUE(sameBits(process(host, input), process(plain, input)));
}

TEST_F(LateSettingsTest, ARateSetByAnotherThreadDuringTheResumeIsNotLost) {
    const auto input = noise<double>(kChannels, 600);
    CVstHost plain;
    openAt(plain, 96000.0);
    plain.resume();
    const auto expected = process(plain, input);
    CVstHost host;
    openAt(host, 44100.0);
    for (int32_t round = 0; round < 50; ++round) {
        host.suspend();
        setRate(host, 44100.0);
        std::thread user([&] { host.dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, 96000.0f); });
        host.resume();
        user.join();
        ASSERT_TRUE(sameBits(process(host, input), expected)) << round;
    }
}

/// A setting that a host makes between `mains on` and the first block.
struct CLateSetting {
    const char* name;
    void (*set)(CVstHost& host, const std::string& program, const std::string& bank);
};

constexpr CLateSetting kLateSettings[] = {
    {"nothing", [](CVstHost&, const std::string&, const std::string&) {}},
    {"parameters", [](CVstHost& host, const std::string&, const std::string&) { setCurve(host); }},
    {"oversampling", [](CVstHost& host, const std::string&, const std::string&) { setCurve(host, 1.0f); }},
    {"bypass", [](CVstHost& host, const std::string&, const std::string&) { host.setParameter(kBypass, 1.0f); }},
    {"a program", [](CVstHost& host, const std::string&, const std::string&) { host.setProgram(5); }},
    {"a preset's chunk",
     [](CVstHost& host, const std::string& program, const std::string&) { EXPECT_TRUE(host.setChunk(program, true)); }},
    {"a bank's chunk",
     [](CVstHost& host, const std::string&, const std::string& bank) { EXPECT_TRUE(host.setChunk(bank, false)); }},
    {"all of it",
     [](CVstHost& host, const std::string& program, const std::string& bank) {
         EXPECT_TRUE(host.setChunk(bank, false));
         host.setProgram(6);
         EXPECT_TRUE(host.setChunk(program, true));
         host.setParameter(kEqA0, 0.9f);
         setRate(host, 96000.0);
     }},
};

class FirstBlockTest : public LateSettingsTest {
protected:
    void SetUp() override {
        LateSettingsTest::SetUp();
        CVstHost source;
        openAt(source, 44100.0);
        // Not the oversampling: at another oversampling the effect would start anew anyway.
        source.setProgram(4);
        setCurve(source);
        program_ = source.chunk(true);
        source.setProgram(0);
        setCurve(source);
        source.setParameter(kEqA0 + 3, 0.9f);
        bank_ = source.chunk(false);
    }
    /// The first blocks of a host that makes a setting before or behind the resume.
    CSignal<double> firstBlocks(const CLateSetting& setting, bool isLate, bool isOtherThread, int32_t level) {
        CVstHost host;
        openAt(host, 44100.0);
        host.answers.processLevel = level;
        // Blocks have run before: this resume is not the first.
        host.resume();
        process(host, noise<double>(kChannels, 700));
        host.suspend();
        if (isLate) {
            host.resume();
        }
        if (isOtherThread) {
            std::thread([&] { setting.set(host, program_, bank_); }).join();
        } else {
            setting.set(host, program_, bank_);
        }
        if (!isLate) {
            host.resume();
        }
        // A change behind the first block still fades.
        return process(host, noise<double>(kChannels, 2000), {kBlock}, {{700, kEqA0 + 1, 0.8f}});
    }

    std::string program_;
    std::string bank_;
};

TEST_F(FirstBlockTest, SettingsBehindTheResumeSoundFromTheFirstSample) {
    for (const CLateSetting& setting : kLateSettings) {
        for (int32_t level : {vst::kLevelRealtime, vst::kLevelOffline}) {
            EXPECT_TRUE(sameBits(firstBlocks(setting, true, false, level), firstBlocks(setting, false, false, level)))
                << setting.name << " at level " << level;
        }
    }
}

TEST_F(FirstBlockTest, SettingsOfAnotherThreadBehindTheResumeSoundFromTheFirstSample) {
    for (const CLateSetting& setting : kLateSettings) {
        EXPECT_TRUE(sameBits(firstBlocks(setting, true, true, vst::kLevelRealtime),
                             firstBlocks(setting, false, false, vst::kLevelRealtime)))
            << setting.name;
    }
}

TEST_F(FirstBlockTest, ABlockWithoutFramesIsNotTheFirstBlock) {
    const auto input = noise<double>(kChannels, 1000);
    CVstHost late, plain;
    for (CVstHost* host : {&late, &plain}) {
        openAt(*host, 44100.0);
        if (host == &plain) {
            setCurve(*host);
        }
        host->resume();
        host->process(static_cast<double**>(nullptr), static_cast<double**>(nullptr), 0);
        if (host == &late) {
            setCurve(*host);
        }
    }
    EXPECT_TRUE(sameBits(process(late, input), process(plain, input)));
}

TEST_F(FirstBlockTest, AnOffLineLevelBetweenResumeAndFirstBlockSoundsAtOnce) {
    const auto input = noise<double>(kChannels, 1000);
    CVstHost late, plain;
    for (CVstHost* host : {&late, &plain}) {
        openAt(*host, 44100.0);
        setCurve(*host, 0.0f);  // "Auto" depends on the level
        host->answers.processLevel = host == &plain ? vst::kLevelOffline : vst::kLevelRealtime;
        host->resume();
        host->answers.processLevel = vst::kLevelOffline;
    }
    EXPECT_TRUE(sameBits(process(late, input), process(plain, input)));
}

}  // namespace
}  // namespace tarv::host
