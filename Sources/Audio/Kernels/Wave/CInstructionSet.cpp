#include "Audio/Kernels/Wave/CInstructionSet.h"

#include <cpuid.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>

namespace tarv {

namespace {

constexpr uint32_t kSavesByState = 1u << 27;
constexpr uint32_t kAvx = 1u << 28;
constexpr uint32_t kAvx2 = 1u << 5;
constexpr uint32_t kAvx512Foundation = 1u << 16;
constexpr uint32_t kAvx512Quad = 1u << 17;
// Parts of XCR0: the low halves of the registers, the upper halves, and what AVX-512 adds (masks, upper quarters, and
// the sixteen further registers).
constexpr uint64_t kSavesAvx = 0x06;
constexpr uint64_t kSavesAvx512 = kSavesAvx | 0xe0;

constexpr const char* kNames[] = {"sse2", "avx2", "avx512"};

bool hasAll(uint64_t value, uint64_t bits) {
    return (value & bits) == bits;
}

}  // namespace

CProcessorFeatures readProcessorFeatures() {
    CProcessorFeatures features = {};
    uint32_t a = 0;
    uint32_t b = 0;
    uint32_t c = 0;
    uint32_t d = 0;
    if (__get_cpuid(1, &a, &b, &c, &d)) {
        features.basic = c;
    }
    if (__get_cpuid_count(7, 0, &a, &b, &c, &d)) {
        features.extended = b;
    }
    if (hasAll(features.basic, kSavesByState)) {
        uint32_t low = 0;
        uint32_t high = 0;
        // The compilers' own function for it is only there in files that are compiled for AVX.
        asm volatile("xgetbv" : "=a"(low), "=d"(high) : "c"(0));
        features.savedByState = uint64_t{high} << 32 | low;
    }
    return features;
}

CInstructionSet widestSet(const CProcessorFeatures& features) {
    if (!hasAll(features.basic, kSavesByState | kAvx) || !hasAll(features.savedByState, kSavesAvx) ||
        !hasAll(features.extended, kAvx2)) {
        return CInstructionSet::Sse2;
    }
    return hasAll(features.extended, kAvx512Foundation | kAvx512Quad) && hasAll(features.savedByState, kSavesAvx512)
               ? CInstructionSet::Avx512
               : CInstructionSet::Avx2;
}

CInstructionSet chosenSet(const CProcessorFeatures& features, const char* wanted) {
    const CInstructionSet widest = widestSet(features);
    for (int32_t i = 0; wanted != nullptr && i < static_cast<int32_t>(std::size(kNames)); ++i) {
        if (std::strcmp(wanted, kNames[i]) == 0) {
            return std::min(widest, static_cast<CInstructionSet>(i));
        }
    }
    return widest;
}

CInstructionSet usedSet() {
    static const CInstructionSet set = chosenSet(readProcessorFeatures(), std::getenv("TARV_INSTRUCTION_SET"));
    return set;
}

const char* nameOf(CInstructionSet set) {
    return kNames[static_cast<int32_t>(set)];
}

}  // namespace tarv
