#include "Audio/Kernels/FourierKernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <memory>
#include <numbers>
#include <vector>

#include "Audio/Kernels/CRealTransform.h"
#include "Audio/Kernels/StandardKernels.h"
#include "Audio/Modules/CFirSection.h"
#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {
namespace {

std::vector<double> noise(int32_t count) {
    std::vector<double> signal(static_cast<size_t>(count));
    for (double& x : signal) {
        x = nextNoise();
    }
    return signal;
}

std::complex<double> binOf(const std::vector<double>& packed, size_t k) {
    if (k == 0) {
        return packed[0];
    }
    return k == packed.size() / 2 ? packed[1] : std::complex<double>(packed[2 * k], packed[2 * k + 1]);
}

std::vector<double> convolved(const std::vector<double>& x, const std::vector<double>& h) {
    std::vector<double> y(x.size());
    for (size_t i = 0; i < x.size(); ++i) {
        for (size_t k = 0; k < h.size() && k <= i; ++k) {
            y[i] += h[k] * x[i - k];
        }
    }
    return y;
}

TEST(FourierKernels, TheForwardTransformIsTheSumOfItsDefinition) {
    for (const int32_t size : {4, 8, 16, 64, 256}) {
        CRealTransform transform;
        ASSERT_TRUE(transform.setSize(size));
        const std::vector<double> block = noise(size);
        std::vector<double> spectrum(block.size());
        transform.forward(spectrum.data(), block.data());
        for (size_t k = 0; k <= block.size() / 2; ++k) {
            std::complex<double> sum = 0.0;
            for (size_t i = 0; i < block.size(); ++i) {
                const auto turns = static_cast<double>(i * k % block.size()) / size;
                sum += block[i] * std::polar(1.0, -2.0 * std::numbers::pi * turns);
            }
            EXPECT_NEAR(std::abs(binOf(spectrum, k) - sum), 0.0, 1e-13 * size) << size << ' ' << k;
        }
    }
}

TEST(FourierKernels, TheInverseGivesTheBlockBackAlsoInPlace) {
    for (int32_t size = 4; size <= 32768; size *= 2) {
        CRealTransform transform;
        ASSERT_TRUE(transform.setSize(size));
        const std::vector<double> block = noise(size);
        std::vector<double> apart(block.size());
        transform.forward(apart.data(), block.data());
        std::vector<double> inPlace = block;
        transform.forward(inPlace.data(), inPlace.data());
        EXPECT_EQ(inPlace, apart) << size;
        transform.inverse(inPlace.data(), inPlace.data());
        for (size_t i = 0; i < block.size(); ++i) {
            ASSERT_NEAR(inPlace[i], block[i], 1e-13) << size << ' ' << i;  // log2(size) roundings of 1e-16 each way
        }
    }
}

TEST(FourierKernels, OnlyPowersOfTwoHaveATransform) {
    CRealTransform transform;
    for (const int32_t size : {-8, 0, 1, 2, 3, 6, 1000, (1 << 20) + 1, 1 << 21}) {
        EXPECT_FALSE(transform.setSize(size)) << size;
        EXPECT_EQ(transform.size(), 0);
    }
    EXPECT_TRUE(transform.setSize(16));
    EXPECT_TRUE(transform.setSize(8));
    EXPECT_EQ(transform.size(), 8);
}

class FourierOperations : public testing::Test {
protected:
    FourierOperations() : context(makeStandardContext()) { EXPECT_TRUE(transform.setSize(kSize)); }
    static constexpr int32_t kSize = 32;

    CBufferHandle taken(const std::vector<double>& values) const {
        const CBufferHandle handle = context->takeBuffer(static_cast<int32_t>(values.size()) * 8);
        std::copy(values.begin(), values.end(), context->signal(handle));
        return handle;
    }
    CBufferHandle transformPlace() const {
        const CBufferHandle handle = context->takeBuffer(8);
        *static_cast<const CRealTransform**>(context->data(handle)) = &transform;
        return handle;
    }
    std::vector<double> contents(CBufferHandle handle, int32_t count) const {
        context->flush();
        return {context->signal(handle), context->signal(handle) + count};
    }
    std::vector<double> spectrumOf(const std::vector<double>& block) const {
        std::vector<double> spectrum(block.size());
        transform.forward(spectrum.data(), block.data());
        return spectrum;
    }
    void issue(const char* name, int32_t count, std::initializer_list<CBufferHandle> operands) const {
        const std::string full = std::string("com.tarvelo.qplex.") + name;
        context->issue(context->findKernel(full.c_str()), count, 0.0, operands);
    }

    CRealTransform transform;
    std::unique_ptr<CQPLEXContext> context;
};

TEST_F(FourierOperations, TheTransformsOfTheContextAreInverses) {
    const std::vector<double> block = noise(kSize);
    const CBufferHandle signal = taken(block);
    const CBufferHandle spectrum = taken(noise(kSize));
    const CBufferHandle back = taken(noise(kSize));
    const CBufferHandle place = transformPlace();
    issue("rdftf", kSize, {spectrum, place, signal});
    issue("rdfti", kSize, {back, place, spectrum});
    EXPECT_EQ(contents(spectrum, kSize), spectrumOf(block));
    const std::vector<double> actual = contents(back, kSize);
    for (size_t i = 0; i < block.size(); ++i) {
        EXPECT_NEAR(actual[i], block[i], 1e-14);
    }
}

TEST_F(FourierOperations, ATransformOfAnotherCountDoesNothing) {
    const std::vector<double> before = noise(2 * kSize);
    for (const int32_t count : {0, 1, kSize / 2, 2 * kSize}) {
        const CBufferHandle out = taken(before);
        issue("rdftf", count, {out, transformPlace(), taken(noise(2 * kSize))});
        EXPECT_EQ(contents(out, 2 * kSize), before) << count;
    }
}

TEST_F(FourierOperations, AProductOfSpectraIsACircularConvolution) {
    const std::vector<double> a = noise(kSize);
    const std::vector<double> b = noise(kSize);
    const CBufferHandle out = taken(spectrumOf(a));
    issue("rdftm", kSize, {out, out, taken(spectrumOf(b))});  // in place
    issue("rdfti", kSize, {out, transformPlace(), out});
    const std::vector<double> actual = contents(out, kSize);
    for (size_t i = 0; i < a.size(); ++i) {
        double sum = 0.0;
        for (size_t k = 0; k < a.size(); ++k) {
            sum += a[k] * b[(i + a.size() - k) % a.size()];
        }
        EXPECT_NEAR(actual[i], sum, 1e-13) << i;
    }
}

TEST_F(FourierOperations, TheAddingProductAddsWhatThePlainOneGives) {
    for (const int32_t count : {0, 2, 4, kSize}) {
        const std::vector<double> start = noise(kSize + 1);
        const CBufferHandle a = taken(noise(kSize));
        const CBufferHandle b = taken(noise(kSize));
        const CBufferHandle product = taken(start);
        const CBufferHandle sum = taken(start);
        issue("rdftm", count, {product, a, b});
        issue("rdftma", count, {sum, a, b});
        const std::vector<double> plain = contents(product, kSize + 1);
        const std::vector<double> added = contents(sum, kSize + 1);
        for (size_t i = 0; i < start.size(); ++i) {
            const bool isInside = i < static_cast<size_t>(count);
            EXPECT_EQ(added[i], isInside ? start[i] + plain[i] : start[i]) << count << ' ' << i;
        }
    }
}

TEST_F(FourierOperations, SquaredMagnitudesAreThoseOfTheBins) {
    const std::vector<double> spectrum = spectrumOf(noise(kSize));
    const CBufferHandle out = taken(spectrum);
    issue("rdftsqr", kSize, {out, out});
    const std::vector<double> actual = contents(out, kSize);
    for (size_t k = 0; k <= kSize / 2; ++k) {
        EXPECT_NEAR(actual[k], std::norm(binOf(spectrum, k)), 1e-12) << k;
    }
}

class FirSection : public testing::Test {
protected:
    FirSection() : context(makeStandardContext()) {}

    std::vector<double> run(CFirSection& section, const std::vector<double>& signal,
                            const std::vector<int32_t>& cuts) const {
        std::vector<double> all;
        size_t done = 0;
        for (size_t block = 0; done < signal.size(); ++block) {
            const size_t cut = static_cast<size_t>(cuts[block % cuts.size()]);
            const auto count = static_cast<int32_t>(std::min(signal.size() - done, cut));
            const CBufferHandle in = context->takeBuffer(count * 8);
            std::copy_n(signal.begin() + static_cast<int64_t>(done), count, context->signal(in));
            const CBufferHandle out = section.run(in, count);
            context->releaseReference(in);
            context->flush();
            all.insert(all.end(), context->signal(out), context->signal(out) + count);
            context->releaseReference(out);
            done += static_cast<size_t>(count);
        }
        return all;
    }
    static void expectNear(const std::vector<double>& actual, const std::vector<double>& expected) {
        ASSERT_EQ(actual.size(), expected.size());
        for (size_t i = 0; i < actual.size(); ++i) {
            ASSERT_NEAR(actual[i], expected[i], 1e-11) << i;  // a sum of 1000 products, through transforms of 512
        }
    }

    std::unique_ptr<CQPLEXContext> context;
};

TEST_F(FirSection, ConvolvesWithItsTapsWithoutDelayHoweverTheBlocksAreCut) {
    const std::vector<double> signal = noise(3000);
    for (const int32_t taps : {1, 2, 255, 256, 257, 1000}) {
        const std::vector<double> h = noise(taps);
        const std::vector<double> expected = convolved(signal, h);
        for (const std::vector<int32_t>& cuts :
             std::vector<std::vector<int32_t>>{{256}, {512}, {64}, {1, 700, 3, 255}, {3000}}) {
            CFirSection section(*context, taps);
            section.setTaps(h.data(), taps);
            expectNear(run(section, signal, cuts), expected);
        }
    }
    EXPECT_EQ(context->counters().buffersInUse, 0);
}

TEST_F(FirSection, IsSilentBeforeItsFirstTapsAndAfterAClear) {
    const std::vector<double> h = noise(300);
    CFirSection section(*context, 300);
    EXPECT_EQ(run(section, noise(400), {100}), std::vector<double>(400));
    section.setTaps(h.data(), 300);
    run(section, noise(400), {100});
    section.clear();
    expectNear(run(section, std::vector<double>(600), {100}), std::vector<double>(600));
}

TEST_F(FirSection, NewTapsTakeEffectInTheNextBlockAndTheHistoryStays) {
    const std::vector<double> signal = noise(1024);
    const std::vector<double> first = noise(400);
    const std::vector<double> second = noise(300);
    CFirSection section(*context, 400);
    section.setTaps(first.data(), 400);
    const std::vector<double> early(signal.begin(), signal.begin() + 512);
    const std::vector<double> late(signal.begin() + 512, signal.end());
    run(section, early, {128});
    section.setTaps(first.data(), 400);
    section.setTaps(second.data(), 300);  // replaces the taps that no block has used
    const std::vector<double> expected = convolved(signal, second);
    expectNear(run(section, late, {128}), {expected.begin() + 512, expected.end()});
}

TEST_F(FirSection, TapsBeyondItsRoomAreRefusedAndTheFormerOnesStay) {
    const std::vector<double> h = noise(600);
    CFirSection section(*context, 200);
    ASSERT_EQ(section.room(), 256);
    EXPECT_TRUE(section.setTaps(h.data(), 256));
    EXPECT_FALSE(section.setTaps(h.data() + 300, 257));
    const std::vector<double> signal = noise(900);
    expectNear(run(section, signal, {200}), convolved(signal, {h.begin(), h.begin() + 256}));
}

}  // namespace
}  // namespace tarv
