#include "Audio/Kernels/NoiseKernels.h"

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Kernels/HostPairs.h"
#include "Audio/Kernels/KernelLanes.h"
#include "Audio/Kernels/KernelNames.h"

namespace tarv {

namespace {

constexpr uint32_t kFactor = 30013;
constexpr uint32_t kAddend = 30011;
constexpr double kLevel = 1e-11;

uint32_t nextSeed(uint32_t seed) {
    return seed * kFactor + kAddend;
}

/// Four steps in one: seed x kFactor4 + kAddend4, so that four neighbouring samples do not wait for each other.
constexpr uint32_t kFactor4 = kFactor * kFactor * kFactor * kFactor;
constexpr uint32_t kAddend4 = kAddend * (kFactor * kFactor * kFactor + kFactor * kFactor + kFactor + 1);

double noiseOf(uint32_t seed) {
    return static_cast<double>((seed >> 23) & 1u) * (2.0 * kLevel);
}

/// The seeds of four neighbouring samples.
class CSeeds {
public:
    explicit CSeeds(uint32_t seed) {
        const uint32_t second = nextSeed(seed);
        const uint32_t third = nextSeed(second);
        seeds_ = _mm_set_epi32(static_cast<int32_t>(nextSeed(third)), static_cast<int32_t>(third),
                               static_cast<int32_t>(second), static_cast<int32_t>(seed));
    }
    /// b x 2e-11 of the first two samples, and of the others.
    void noise(CPair& early, CPair& late) const {
        const __m128i bits = _mm_srai_epi32(_mm_slli_epi32(seeds_, 8), 31);
        const __m128d level = _mm_set1_pd(2.0 * kLevel);
        early.v = _mm_and_pd(_mm_castsi128_pd(_mm_unpacklo_epi32(bits, bits)), level);
        late.v = _mm_and_pd(_mm_castsi128_pd(_mm_unpackhi_epi32(bits, bits)), level);
    }
    void step() {
        const __m128i factor = _mm_set1_epi32(static_cast<int32_t>(kFactor4));
        const __m128i even = _mm_mul_epu32(seeds_, factor);
        const __m128i odd = _mm_mul_epu32(_mm_srli_epi64(seeds_, 32), factor);
        const __m128i product = _mm_unpacklo_epi32(_mm_shuffle_epi32(even, _MM_SHUFFLE(3, 1, 2, 0)),
                                                   _mm_shuffle_epi32(odd, _MM_SHUFFLE(3, 1, 2, 0)));
        seeds_ = _mm_add_epi32(product, _mm_set1_epi32(static_cast<int32_t>(kAddend4)));
    }
    uint32_t first() const { return static_cast<uint32_t>(_mm_cvtsi128_si32(seeds_)); }

private:
    __m128i seeds_;
};

/// A signal as source.
struct CSignalSource {
    const double* samples;

    CPair pair(int32_t i) const { return loadPair(samples + i); }
    double one(int32_t i) const { return samples[i]; }
    bool isApartFrom(const double* out, int32_t count) const { return isApart(out, samples, count); }
};

/// A host's buffer as source: it never touches a signal.
template <class Sample>
struct CHostSource {
    const Sample* samples;

    CPair pair(int32_t i) const { return finiteOf(loadHostPair(samples + i)); }
    double one(int32_t i) const { return finiteOf(static_cast<double>(samples[i])); }
    bool isApartFrom(const double*, int32_t) const { return true; }
};

/// out i = f(in i, b i x 2e-11).
template <class Source, class F>
void addNoise(COperation& operation, Source in, F f) {
    double* const out = operation.signal(0);
    uint32_t seed = *operation.operand<uint32_t>(1);
    const int32_t count = operation.count;
    int32_t i = 0;
    if (in.isApartFrom(out, count) && count >= 4) {
        CSeeds seeds(seed);
        for (; i + 4 <= count; i += 4) {
            CPair early;
            CPair late;
            seeds.noise(early, late);
            const CPair y0 = f(in.pair(i), early);
            const CPair y1 = f(in.pair(i + 2), late);
            storePair(out + i, y0);
            storePair(out + i + 2, y1);
            seeds.step();
        }
        seed = seeds.first();
    }
    for (; i < count; ++i) {
        out[i] = f(in.one(i), noiseOf(seed));
        seed = nextSeed(seed);
    }
    *operation.operand<uint32_t>(1) = seed;
}

constexpr auto kAddDenorm = [](auto x, auto noise) { return x - kLevel + noise; };

}  // namespace

void registerNoiseKernels(CQPLEXContext& context) {
    const int32_t denorm = context.registerKernel(KernelName::kDenorm, kernelDenorm, 3, 3);
    context.addEndKernel(denorm,
                         {.ofFloats = kernelDenormHost<float>, .ofDoubles = kernelDenormHost<double>, .source = 2});
    context.registerKernel(KernelName::kDenormN, kernelDenormN, 2, 3);
}

void kernelDenorm(COperation& operation) {
    addNoise(operation, CSignalSource{operation.signal(2)}, kAddDenorm);
}

template <class Sample>
void kernelDenormHost(COperation& operation) {
    addNoise(operation, CHostSource<Sample>{operation.operand<const Sample>(2)}, kAddDenorm);
}
template void kernelDenormHost<float>(COperation& operation);
template void kernelDenormHost<double>(COperation& operation);

void kernelDenormN(COperation& operation) {
    // The destination stands in for the source, whose value the result does not use.
    addNoise(operation, CSignalSource{operation.signal(0)}, [](auto, auto noise) { return noise - kLevel; });
}

}  // namespace tarv
