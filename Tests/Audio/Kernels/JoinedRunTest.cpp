// Streams of operations that are bands in series, or nearly so, recorded with a joiner and not recorded at all:
// whatever stands in them, signals and state blocks are the same to the bit, also when the run is repeated.

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/CTubeBlock.h"
#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Kernels/KernelNames.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Audio/Kernels/Wave/CWaveJoiner.h"
#include "Tests/Audio/Kernels/CRandom.h"
#include "Tests/Audio/Kernels/TestedSets.h"

namespace tarv {
namespace {

/// A context with inputs, sums of the outputs and state blocks, and a run on them. All of it follows from a seed.
class CStream {
public:
    static constexpr int32_t kMostChannels = 5;
    static constexpr int32_t kMostBands = 4;
    static constexpr int32_t kCount = 90;

    CStream(uint32_t seed, int32_t oddities) : context(makeStandardContext()), seed_(seed), oddities_(oddities) {
        registerTubeKernels(*context);
        CRandom random(seed);
        for (int32_t c = 0; c < kMostChannels; ++c) {
            inputs_[c] = keep(context->takeSignal(kCount), kCount, [&] { return random.between(-1.0, 1.0); });
            sums_[c] = keep(context->takeSignal(kCount), kCount, [] { return 0.0; });
            for (int32_t b = 0; b < kMostBands + 2; ++b) {
                makeBand(bands_[c][b], random);
            }
        }
    }

    void setJoiner(std::unique_ptr<CRunJoiner> joiner) const {
        context->setJoiner(CJoinedKernels::Bands, std::move(joiner));
    }
    /// Issues the operations of a run, the same each time.
    void issue() {
        CRandom random(seed_ + 1);
        random_ = &random;
        channels_ = 1 + random.below(kMostChannels);
        samples_ = random.isOneOf(4) ? random.below(8) : 1 + random.below(kCount);
        for (int32_t c = 0; c < channels_; ++c) {
            at_[c] = inputs_[c];
            context->addReference(at_[c]);
        }
        if (random.isOneOf(2)) {
            each([this](int32_t c) { replace(c, filtered(c, kMostBands, at_[c])); });
        }
        const int32_t bands = 1 + random.below(kMostBands);
        for (int32_t b = 0; b < bands; ++b) {
            issueBand(b);
        }
        if (random.isOneOf(2)) {
            each([this](int32_t c) { replace(c, filtered(c, kMostBands + 1, at_[c])); });
            each([this](int32_t c) { replace(c, passed(c, kMostBands + 1, at_[c])); });
            each([this](int32_t c) { replace(c, multiplied(at_[c])); });
        }
        for (int32_t c = 0; c < channels_; ++c) {
            context->issue(context->commonKernel(CCommonKernel::Add2i), samples_, 0.0, {sums_[c], at_[c]});
            context->releaseReference(at_[c]);
        }
        for (const CBufferHandle handle : later_) {
            context->issue(context->commonKernel(CCommonKernel::Add2i), samples_, 0.0, {sums_[0], handle});
            context->releaseReference(handle);
        }
        later_.clear();
    }
    std::vector<uint64_t> bits() const {
        context->flush();
        std::vector<uint64_t> all;
        for (const CKept& kept : kept_) {
            for (int32_t i = 0; i < kept.size; ++i) {
                all.push_back(std::bit_cast<uint64_t>(context->signal(kept.handle)[i]));
            }
        }
        return all;
    }

    std::unique_ptr<CQPLEXContext> context;

private:
    static constexpr int32_t kTubeNumbers = sizeof(CTubeBlock) / sizeof(double);

    struct CBand {
        CBufferHandle filter, old, ramp, highPass, tube;
    };
    struct CKept {
        CBufferHandle handle;
        int32_t size;
    };

    template <class F>
    CBufferHandle keep(CBufferHandle handle, int32_t size, F&& next) {
        std::generate_n(context->signal(handle), size, next);
        kept_.push_back({handle, size});
        return handle;
    }
    CBufferHandle keepBlock(const std::vector<double>& numbers) {
        size_t i = 0;
        const auto size = static_cast<int32_t>(numbers.size());
        return keep(context->takeBuffer(size * 8), size, [&] { return numbers[i++]; });
    }
    CBufferHandle makeFilter(CRandom& random) {
        const double radius = random.between(0.3, 0.99);
        return keepBlock({random.between(-1.0, 1.0), random.between(-0.9, 0.9),
                          2.0 * radius * std::cos(random.between(0.1, 3.0)), -radius * radius, 0.01, -0.02});
    }
    void makeBand(CBand& band, CRandom& random) {
        band.filter = makeFilter(random);
        band.old = makeFilter(random);
        band.highPass = keepBlock({random.between(1e-3, 0.1), 0.01, 0.0, 0.0, 0.0});
        band.ramp = keepBlock({0.0, 0.0, 0.0});
        start(band.ramp, random);
        CTubeBlock tube = {};
        tube.ratioA = 0.5;
        tube.ratioB = random.between(0.1, 1.0);
        tube.kneeA = tube.kneeB = 2.0;
        tube.gainI = 1.0;
        tube.gainV = 0.2;
        tube.autoGainPoint = 1.0;
        tube.feedFrequency = 50.0;
        band.tube = keepBlock(std::vector<double>(static_cast<size_t>(kTubeNumbers), 0.0));
        *static_cast<CTubeBlock*>(context->data(band.tube)) = tube;
        context->issue(context->findKernel(KernelName::kMetaTubeInit), 1, 48000.0, {band.tube});
        context->flush();
    }
    void start(CBufferHandle ramp, CRandom& random) const {
        context->issue(context->findKernel(KernelName::kXfadei), 20 + random.below(300), random.between(0.0, 0.3),
                       {ramp});
    }

    /// The stages of a band for all channels, one stage after the other or one channel after the other.
    void issueBand(int32_t b) {
        CBufferHandle feed[kMostChannels];
        bool isFaded[kMostChannels];
        for (int32_t c = 0; c < channels_; ++c) {
            feed[c] = at_[c];
            context->addReference(feed[c]);
            isFaded[c] = random_->isOneOf(3);
            if (isFaded[c] && random_->isOneOf(3)) {
                start(bands_[c][b].ramp, *random_);
            }
        }
        each([&](int32_t c) {
            const CBufferHandle fresh = filtered(c, b, at_[c]);
            replace(c, isFaded[c] ? faded(c, b, fresh, feed[c]) : fresh);
        });
        each([&](int32_t c) { replace(c, passed(c, b, at_[c])); });
        each([&](int32_t c) { replace(c, shaped(c, b, feed[c])); });
        for (int32_t c = 0; c < channels_; ++c) {
            context->releaseReference(feed[c]);
        }
    }
    template <class F>
    void each(F&& issueOne) {
        for (int32_t c = 0; c < channels_; ++c) {
            issueOne(c);
        }
        random_->isOneOf(30) ? context->flush() : context->endProcess();
    }
    bool isOdd() { return oddities_ > 0 && random_->below(1000) < oddities_; }
    /// A new signal, or now and then one that is written over.
    CBufferHandle destination(CBufferHandle in) {
        if (isOdd() && in != inputs_[0]) {
            context->addReference(in);
            return in;
        }
        return context->takeSignal(kCount);
    }
    CBufferHandle filtered(int32_t c, int32_t b, CBufferHandle in) {
        const CBufferHandle out = destination(in);
        const CBand& band = bands_[isOdd() ? 0 : c][b];
        context->issue(context->findKernel(KernelName::kBiquadCommonGain), samples_, 0.7, {out, band.filter, in});
        return out;
    }
    CBufferHandle faded(int32_t c, int32_t b, CBufferHandle fresh, CBufferHandle in) {
        const CBufferHandle old = context->takeSignal(kCount);
        const CBufferHandle out = context->takeSignal(kCount);
        const CBand& band = bands_[c][b];
        context->issue(context->findKernel(KernelName::kBiquadCommonGain), samples_, 0.4, {old, band.old, in});
        const bool isSwapped = isOdd();
        context->issue(context->findKernel(KernelName::kXfade), samples_, 0.0,
                       {out, band.ramp, isSwapped ? old : fresh, isSwapped ? fresh : old});
        context->releaseReference(fresh);
        isOdd() ? later_.push_back(old) : context->releaseReference(old);
        return out;
    }
    CBufferHandle passed(int32_t c, int32_t b, CBufferHandle in) {
        const CBufferHandle out = destination(in);
        context->issue(context->findKernel(KernelName::kHighPass1Gain), samples_, 1.0,
                       {out, bands_[c][b].highPass, in});
        return out;
    }
    CBufferHandle shaped(int32_t c, int32_t b, CBufferHandle feed) {
        const CBufferHandle out = destination(at_[c]);
        const CBufferHandle read = isOdd() ? inputs_[random_->below(kMostChannels)] : feed;
        context->issue(context->findKernel(KernelName::kMetaTube), samples_, 0.0,
                       {out, bands_[c][b].tube, at_[c], read});
        return out;
    }
    CBufferHandle multiplied(CBufferHandle in) {
        const CBufferHandle out = destination(in);
        context->issue(context->commonKernel(CCommonKernel::Mulc), samples_, 0.5, {out, in});
        return out;
    }
    /// The channel goes on with `next`. Others may read what it had, now or later, or write it.
    void replace(int32_t c, CBufferHandle next) {
        const CBufferHandle former = at_[c];
        at_[c] = next;
        if (isOdd()) {
            later_.push_back(former);
            return;
        }
        if (isOdd() && former != inputs_[c]) {
            context->issue(context->commonKernel(CCommonKernel::Mulci), samples_, 0.9, {former});
        }
        if (isOdd()) {
            context->issue(context->commonKernel(CCommonKernel::Add2i), samples_, 0.0, {sums_[c], next});
        }
        context->releaseReference(former);
    }

    uint32_t seed_;
    int32_t oddities_;  ///< of a thousand decisions
    CRandom* random_ = nullptr;
    int32_t channels_ = 0;
    int32_t samples_ = 0;
    CBufferHandle inputs_[kMostChannels] = {};
    CBufferHandle sums_[kMostChannels] = {};
    CBufferHandle at_[kMostChannels] = {};
    CBand bands_[kMostChannels][kMostBands + 2] = {};
    std::vector<CKept> kept_;
    std::vector<CBufferHandle> later_;  ///< read at the run's end
};

class JoinedRun : public testing::TestWithParam<CInstructionSet> {
protected:
    /// Returns how many calls were joined.
    static int32_t compare(uint32_t seed, int32_t oddities) {
        CStream plain(seed, oddities);
        CStream recorded(seed, oddities);
        plain.setJoiner(nullptr);
        recorded.setJoiner(std::make_unique<CWaveJoiner>(*recorded.context, GetParam()));
        recorded.context->startRecording();
        recorded.issue();
        const bool isKept = recorded.context->endRecording();
        plain.issue();
        EXPECT_TRUE(recorded.bits() == plain.bits()) << "seed " << seed;
        for (int32_t i = 0; i < 2 && isKept && recorded.context->isRecorded(); ++i) {
            recorded.context->repeat();
            plain.issue();
            EXPECT_TRUE(recorded.bits() == plain.bits()) << "seed " << seed << ", repetition " << i;
        }
        return recorded.context->recordedRun().joinedCount();
    }
};

TEST_P(JoinedRun, OfBandsInSeriesHasTheBitsOfItsKernels) {
    const uint32_t seeds = std::getenv("TARV_LONG") ? 2000 : 60;
    int32_t joined = 0;
    for (uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
        joined += compare(seed, 0) > 0 ? 1 : 0;
    }
    EXPECT_GT(joined, static_cast<int32_t>(seeds / 2));
}

TEST_P(JoinedRun, WithOdditiesHasTheBitsOfItsKernels) {
    // Signals that others read or write, fades the other way round, blocks and feeds of another channel.
    const uint32_t seeds = std::getenv("TARV_LONG") ? 6000 : 150;
    int32_t joined = 0;
    for (uint32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
        joined += compare(seed, seed % 3 == 0 ? 200 : 30) > 0 ? 1 : 0;
    }
    EXPECT_GT(joined, static_cast<int32_t>(seeds / 10));
}

INSTANTIATE_TEST_SUITE_P(Sets, JoinedRun, testing::ValuesIn(testedSets()),
                         [](const auto& info) { return nameOf(info.param); });

}  // namespace
}  // namespace tarv
