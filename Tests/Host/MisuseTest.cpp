// Wrong calls of a host: none may crash, hang or sound.
#include <atomic>
#include <limits>
#include <thread>

#include "HostTest.h"

namespace tarv::host {
namespace {

using MisuseTest = OpenHostTest;

TEST_F(MisuseTest, ProcessingBeforeResumeIsSilence) {
    const auto output = process(host, noise<double>(kChannels, 1000));
    for (const auto& channel : output) {
        EXPECT_EQ(peak(channel), 0.0);
    }
}

TEST_F(MisuseTest, ProcessingAfterSuspendIsSilence) {
    host.prepare(44100.0, 512, vst::kPrecision32);
    host.resume();
    process(host, noise<float>(kChannels, 1000));
    host.suspend();
    for (const auto& channel : process(host, noise<float>(kChannels, 1000))) {
        EXPECT_EQ(peak(channel), 0.0);
    }
}

TEST_F(MisuseTest, MoreFramesThanAnnouncedSoundTheSame) {
    const auto input = noise<double>(kChannels, 9000);
    CCut tooLong;
    tooLong.block = 4500;
    tooLong.announced = 64;
    EXPECT_TRUE(sameBits(render(library->entry(), input, 44100.0, tooLong), render(library->entry(), input, 44100.0)));
}

TEST_F(MisuseTest, AnEmptyOrNegativeCountOfFramesTouchesNothing) {
    host.prepare(44100.0, 512, vst::kPrecision32);
    host.resume();
    float sample = 3.0f;
    std::vector<float*> channels(kChannels, &sample);
    for (int32_t frames : {0, -1, std::numeric_limits<int32_t>::min()}) {
        host.process(channels.data(), channels.data(), frames);
        host.effect()->process(host.effect(), channels.data(), channels.data(), frames);
        EXPECT_EQ(sample, 3.0f);
    }
}

TEST_F(MisuseTest, NullChannelsAreSilenceInAndDroppedOut) {
    host.prepare(44100.0, 512, vst::kPrecision64);
    host.setParameter(kBypass, 1.0f);
    host.resume();
    std::vector<double> left(600, 0.25), right(600, 7.0);
    double* inputs[kChannels] = {left.data()};
    double* outputs[kChannels] = {nullptr, right.data()};
    host.process(inputs, outputs, 600);
    EXPECT_LT(peak(right), 1.1e-11);
    host.process(static_cast<double**>(nullptr), outputs, 600);
    EXPECT_LT(peak(right), 1.1e-11);
    host.process(inputs, static_cast<double**>(nullptr), 600);
    host.process(static_cast<float**>(nullptr), static_cast<float**>(nullptr), 600);
    host.effect()->process(host.effect(), nullptr, nullptr, 600);
}

TEST_F(MisuseTest, IndexesOutOfRangeDoNothing) {
    std::vector<float> before;
    for (int32_t i = 0; i < kParamCount; ++i) {
        before.push_back(host.parameter(i));
    }
    for (int32_t index : {-1, kParamCount, std::numeric_limits<int32_t>::min(), std::numeric_limits<int32_t>::max()}) {
        host.setParameter(index, 1.0f);
        EXPECT_EQ(host.parameter(index), 0.0f);
        for (int32_t opcode = 2; opcode < vst::kEffectOpcodeCount; ++opcode) {
            char buffer[512] = "untouched";
            // An editor in a window that there is not is an error, which is shown and waits for the user.
            if (opcode != vst::kEffectGetSpeakerArrangement && opcode != vst::kEffectProcessEvents &&
                opcode != vst::kEffectEditOpen) {
                host.dispatch(opcode, index, 0, buffer);
            }
            if (opcode == vst::kEffectGetParamDisplay || opcode == vst::kEffectGetParamName ||
                opcode == vst::kEffectGetParamLabel) {
                EXPECT_STREQ(buffer, "untouched");
            }
        }
    }
    for (int32_t i = 0; i < kParamCount; ++i) {
        EXPECT_EQ(host.parameter(i), before[i]);
    }
}

TEST_F(MisuseTest, UnknownOpcodesAnswerZero) {
    char buffer[512] = {};
    for (int32_t opcode : {-1, 9, 80, 81, 255, 1000000, std::numeric_limits<int32_t>::min()}) {
        EXPECT_EQ(host.dispatch(opcode, 0, 1, buffer, 1.0f), 0) << opcode;
    }
}

TEST_F(MisuseTest, EveryOpcodeAcceptsNullPointers) {
    for (int32_t opcode = 2; opcode < 100; ++opcode) {
        host.dispatch(opcode, 0, 0, nullptr);
        host.dispatch(opcode, 1, 1, nullptr, 1.0f);
    }
    EXPECT_EQ(host.text(vst::kEffectGetEffectName), "Brindle XEQ");
}

TEST_F(MisuseTest, ValuesAreClampedAndNaNIsIgnored) {
    host.setParameter(kEqA0, 0.25f);
    host.setParameter(kEqA0, std::numeric_limits<float>::quiet_NaN());
    EXPECT_NEAR(host.parameter(kEqA0), 0.25f, 1e-7);
    host.setParameter(kEqA0, 1.5f);
    EXPECT_NEAR(host.parameter(kEqA0), 1.0f, 1e-7);
    host.setParameter(kEqA0, -std::numeric_limits<float>::infinity());
    EXPECT_NEAR(host.parameter(kEqA0), 0.0f, 1e-7);
}

TEST_F(MisuseTest, OnlyTwoPrecisionsAreAccepted) {
    EXPECT_EQ(host.dispatch(vst::kEffectSetProcessPrecision, 0, 0), 1);
    EXPECT_EQ(host.dispatch(vst::kEffectSetProcessPrecision, 0, 1), 1);
    for (intptr_t precision : {intptr_t{2}, intptr_t{-1}, intptr_t{1} << 32 | 5}) {
        EXPECT_EQ(host.dispatch(vst::kEffectSetProcessPrecision, 0, precision), 0) << precision;
    }
}

TEST_F(MisuseTest, ASecondResumeOrSuspendDoesNothing) {
    const auto input = noise<double>(kChannels, 2000);
    host.prepare(48000.0, 512, vst::kPrecision64);
    host.suspend();
    host.resume();
    host.resume();
    const auto output = process(host, input);
    EXPECT_TRUE(sameBits(output, render(library->entry(), input, 48000.0)));
    host.suspend();
    host.suspend();
}

TEST_F(MisuseTest, InputsThatAreNotFiniteCountAsSilence) {
    auto poisoned = noise<double>(kChannels, 4000);
    auto clean = poisoned;
    const double bad[] = {NAN, INFINITY, -INFINITY};
    for (int c = 0; c < 2; ++c) {
        for (int i = 0; i < 3; ++i) {
            poisoned[c][100 + 7 * i] = bad[i];
            clean[c][100 + 7 * i] = 0.0;
        }
    }
    EXPECT_TRUE(sameBits(render(library->entry(), poisoned, 44100.0), render(library->entry(), clean, 44100.0)));
}

TEST_F(MisuseTest, AnAbsurdLevelPassesAndTheEffectRecovers) {
    host.prepare(44100.0, 512, vst::kPrecision64);
    host.resume();
    const CSignal<double> absurd(kChannels, std::vector<double>(2000, 1e300));
    for (const auto& channel : process(host, absurd)) {
        EXPECT_TRUE(std::isfinite(peak(channel)));
    }
    // Two seconds of an ordinary signal later the output is that of an effect that never got the absurd one.
    const auto input = sine<double>(kChannels, 88200, 500.0, 44100.0, 0.1);
    const auto output = process(host, input);
    const auto expected = render(library->entry(), input, 44100.0);
    for (int c = 0; c < 2; ++c) {
        for (size_t i = 66150; i < 88200; ++i) {
            ASSERT_NEAR(output[c][i], expected[c][i], 1e-6) << i;
        }
    }
}

TEST_F(MisuseTest, AbsurdLevelsIn32BitsStayFinite) {
    host.prepare(44100.0, 512, vst::kPrecision32);
    host.resume();
    const CSignal<float> absurd(kChannels, std::vector<float>(2000, 3e38f));
    for (const auto& channel : process(host, absurd)) {
        EXPECT_TRUE(std::isfinite(peak(channel)));
    }
}

TEST_F(MisuseTest, EventsAreAcceptedAndIgnored) {
    vst::MidiEvent midi{};
    midi.type = vst::kEventMidi;
    midi.byteSize = 24;
    vst::Events events{};
    events.numEvents = 1;
    events.events[0] = reinterpret_cast<vst::Event*>(&midi);
    EXPECT_EQ(host.dispatch(vst::kEffectProcessEvents, 0, 0, &events), 1);
    EXPECT_EQ(host.dispatch(vst::kEffectProcessEvents, 0, 0, nullptr), 0);
}

TEST_F(MisuseTest, ParametersMayBeSetFromAnotherThreadWhileItRuns) {
    host.prepare(44100.0, 128, vst::kPrecision64);
    host.resume();
    std::atomic<bool> isDone{false};
    std::thread other([&] {
        for (uint32_t i = 0; !isDone; ++i) {
            // All but the oversampling: every band, both gains and the bypass.
            host.setParameter(static_cast<int32_t>(i % 17), static_cast<float>(i % 11) * 0.1f);
            host.parameter(static_cast<int32_t>(i % 17));
            host.text(vst::kEffectGetParamDisplay, static_cast<int32_t>(i % 17));
        }
    });
    CCut cut;
    cut.block = 128;
    const auto output = process(host, noise<double>(kChannels, 44100, 0.1), cut);
    isDone = true;
    other.join();
    EXPECT_TRUE(std::isfinite(peak(output[0])));
    EXPECT_GT(peak(output[0]), 0.0);
}

}  // namespace
}  // namespace tarv::host
