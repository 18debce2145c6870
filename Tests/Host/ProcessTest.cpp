// Blocks of audio through the library: precisions, cuts, rates.
#include "HostTest.h"

namespace tarv::host {
namespace {

using ProcessTest = HostTest;

constexpr float kOversamplingPositions[] = {0.25f, 0.5f, 0.75f, 1.0f};

/// Amplitude of the sine of this frequency in the last `count` samples, which hold whole periods.
double amplitude(const std::vector<double>& samples, double hz, double rate, size_t count) {
    double re = 0.0;
    double im = 0.0;
    for (size_t i = samples.size() - count; i < samples.size(); ++i) {
        const double phase = 2.0 * 3.14159265358979323846 * hz * static_cast<double>(i) / rate;
        re += samples[i] * std::cos(phase);
        im += samples[i] * std::sin(phase);
    }
    return 2.0 * std::sqrt(re * re + im * im) / static_cast<double>(count);
}

TEST_F(ProcessTest, ABypassedEffectPassesTheSignal) {
    const auto input = noise<double>(kChannels, 3000);
    const auto output = render(library->entry(), input, 44100.0, {}, {{-1, kBypass, 1.0f}});
    ASSERT_EQ(output.size(), input.size());
    for (int c = 0; c < 2; ++c) {
        for (size_t i = 0; i < input[c].size(); ++i) {
            ASSERT_NEAR(output[c][i], input[c][i], 1.1e-11) << "the anti-denormal noise is 1e-11";
        }
    }
    for (int c = 2; c < kChannels; ++c) {
        EXPECT_EQ(peak(output[c]), 0.0) << "channels beyond the routing are silent";
    }
}

TEST_F(ProcessTest, ABandLiftsItsFrequencyAndNoneFarAway) {
    const double rate = 48000.0;
    const struct {
        int32_t index;
        float value;
        double hz;
        double least, most;  // dB
    } rows[] = {
        // Quiet, so that the saturation is nearly linear; its small-signal gain and the slopes stay within 2 dB.
        {kEqA0 + 3, 1.0f, 1000.0, 10.0, 14.0}, {kEqA0 + 3, 0.0f, 1000.0, -14.0, -10.0},
        {kEqA0 + 3, 0.5f, 1000.0, -2.0, 2.0},  {kEqA0 + 6, 1.0f, 100.0, -2.0, 2.0},
        {kOutGainA, 1.0f, 400.0, 10.0, 14.0},  {kEqB0 + 3, 1.0f, 1000.0, -2.0, 2.0},
    };
    for (const auto& row : rows) {
        const auto input = sine<double>(kChannels, 24000, row.hz, rate, 1e-3);
        const auto output = render(library->entry(), input, rate, {}, {{-1, row.index, row.value}});
        ASSERT_EQ(output.size(), input.size());
        for (int c = 0; c < 2; ++c) {
            const double db = 20.0 * std::log10(amplitude(output[c], row.hz, rate, 4800) / 1e-3);
            EXPECT_GE(db, row.least) << row.index << ' ' << row.value;
            EXPECT_LE(db, row.most) << row.index << ' ' << row.value;
        }
    }
}

TEST_F(ProcessTest, BothPrecisionsSoundTheSame) {
    const auto narrow = noise<float>(kChannels, 6000);
    CSignal<double> wide;
    for (const auto& channel : narrow) {
        wide.emplace_back(channel.begin(), channel.end());
    }
    const std::vector<CChange> changes = {{-1, kEqA0 + 2, 0.8f}, {1000, kEqA0 + 5, 0.2f}};
    const auto outNarrow = render(library->entry(), narrow, 44100.0, {}, changes);
    const auto outWide = render(library->entry(), wide, 44100.0, {}, changes);
    for (int c = 0; c < 2; ++c) {
        ASSERT_GT(peak(outNarrow[c]), 0.1);
        for (size_t i = 0; i < outWide[c].size(); ++i) {
            // Both run in 64 bits inside: only the last rounding differs.
            ASSERT_EQ(outNarrow[c][i], static_cast<float>(outWide[c][i])) << i;
        }
    }
}

TEST_F(ProcessTest, OutputDoesNotDependOnHowTheSignalIsCut) {
    const auto input = noise<double>(kChannels, 6000);
    for (float oversampling : kOversamplingPositions) {
        const std::vector<CChange> changes = {
            {-1, kOversampling, oversampling}, {-1, kEqA0, 0.9f},     {700, kEqA0 + 3, 1.0f}, {1000, kEqA0 + 3, 0.1f},
            {2049, kOutGainA, 0.3f},           {3000, kBypass, 1.0f}, {4500, kBypass, 0.0f},  {4501, kEqA0 + 6, 0.7f}};
        const auto expected = render(library->entry(), input, 44100.0, {}, changes);
        ASSERT_EQ(expected.size(), input.size());
        ASSERT_GT(peak(expected[0]), 0.1);
        for (int32_t block : {1, 7, 64, 511, 513, 4096}) {
            CCut cut;
            cut.block = block;
            EXPECT_TRUE(sameBits(render(library->entry(), input, 44100.0, cut, changes), expected))
                << block << " at " << oversampling;
        }
        CCut cut;
        cut.block = 1500;
        cut.isRandom = true;
        EXPECT_TRUE(sameBits(render(library->entry(), input, 44100.0, cut, changes), expected)) << oversampling;
        cut.isInPlace = true;
        EXPECT_TRUE(sameBits(render(library->entry(), input, 44100.0, cut, changes), expected)) << oversampling;
    }
}

TEST_F(ProcessTest, TheOlderCallAddsTheSameSamples) {
    const auto input = noise<float>(kChannels, 2000);
    const auto expected = render(library->entry(), input, 44100.0);
    CVstHost host;
    ASSERT_TRUE(host.open(library->entry()));
    host.prepare(44100.0, 512, vst::kPrecision32);
    host.resume();
    auto in = input;
    CSignal<float> out(kChannels, std::vector<float>(2000, 1.0f));
    std::vector<float*> from, into;
    for (int c = 0; c < kChannels; ++c) {
        from.push_back(in[c].data());
        into.push_back(out[c].data());
    }
    host.effect()->process(host.effect(), from.data(), into.data(), 2000);
    for (int c = 0; c < kChannels; ++c) {
        for (int i = 0; i < 2000; ++i) {
            ASSERT_EQ(out[c][i], 1.0f + expected[c][i]);
        }
    }
}

TEST_F(ProcessTest, EveryRateRuns) {
    for (double rate : {8000.0, 11025.0, 22050.5, 44100.0, 44056.0, 47999.75, 88200.0, 176400.0, 352800.5, 768000.0}) {
        for (float oversampling : {0.25f, 1.0f}) {
            const auto output = render(library->entry(), noise<double>(kChannels, 2000), rate, {},
                                       {{-1, kOversampling, oversampling}, {-1, kEqA0 + 6, 1.0f}, {100, kEqA0, 0.0f}});
            ASSERT_FALSE(output.empty());
            // The bands together lift noise of 0.5 by no more than their 12 dB each where they meet, and some ringing.
            EXPECT_LT(peak(output[0]), 20.0) << rate << ' ' << oversampling;
            EXPECT_GT(peak(output[0]), 0.05) << rate << ' ' << oversampling;
        }
    }
}

TEST_F(ProcessTest, RateAndBlockSizeMayChangeBetweenSuspendAndResume) {
    CVstHost host;
    ASSERT_TRUE(host.open(library->entry()));
    const auto input = noise<double>(kChannels, 1500);
    const std::vector<CChange> changes = {{-1, kEqA0 + 1, 0.9f}};
    host.setParameter(kEqA0 + 1, 0.9f);
    for (double rate : {44100.0, 192000.0, 8000.0, 48000.0, 44100.0}) {
        for (int32_t block : {32, 4096}) {
            host.prepare(rate, block, vst::kPrecision64);
            host.resume();
            CCut cut;
            cut.block = block;
            const auto output = process(host, input, cut);
            host.suspend();
            // The output is that of an effect that ran at no other rate: no state is left over.
            EXPECT_TRUE(sameBits(output, render(library->entry(), input, rate, cut, changes))) << rate << ' ' << block;
        }
    }
}

TEST_F(ProcessTest, SilenceInGivesSilenceOut) {
    const double rate = 44100.0;
    for (float gain : {0.5f, 1.0f}) {
        auto input = noise<double>(kChannels, 3 * 44100);
        for (auto& channel : input) {
            std::fill(channel.begin() + 44100, channel.end(), 0.0);
        }
        std::vector<CChange> changes;
        for (int32_t band = 0; band < 7; ++band) {
            changes.push_back({-1, kEqA0 + band, gain});
        }
        const auto output = render(library->entry(), input, rate, {}, changes);
        // Two seconds behind the end: below -215 dB when flat, below -180 dB at any setting.
        EXPECT_LT(peak(output[0], 3 * 44100 - 2000), gain == 0.5f ? 1.78e-11 : 1e-9);
    }
}

}  // namespace
}  // namespace tarv::host
