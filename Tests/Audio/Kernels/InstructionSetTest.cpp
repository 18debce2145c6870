// The choice of a set of instructions, by what processors and systems may answer.

#include <gtest/gtest.h>

#include <cstdlib>

#include "Audio/Kernels/Wave/CInstructionSet.h"

namespace tarv {
namespace {

// Of CPUID leaf 1: the system switches registers by XCR0, and AVX; FMA is bit 12.
constexpr uint32_t kBySystem = 0x08000000;
constexpr uint32_t kAvx = 0x10000000;
constexpr uint32_t kFma = 0x00001000;
constexpr uint32_t kBasic = kBySystem | kAvx;
// Of CPUID leaf 7.
constexpr uint32_t kAvx2 = 0x20;
constexpr uint32_t kAvx512F = 0x10000;
constexpr uint32_t kAvx512Dq = 0x20000;
constexpr uint32_t kAvx512 = kAvx2 | kAvx512F | kAvx512Dq;
// Of XCR0: the x87 and SSE parts, the upper halves; masks, upper quarters and the sixteen further registers.
constexpr uint64_t kSavesSse = 0x3;
constexpr uint64_t kSavesAvx = 0x7;
constexpr uint64_t kSavesAvx512 = 0xe7;

TEST(InstructionSet, IsTheWidestThatProcessorAndSystemOffer) {
    const struct {
        const char* machine;
        CProcessorFeatures features;
        CInstructionSet expected;
    } rows[] = {
        {"nothing at all", {0, 0, 0}, CInstructionSet::Sse2},
        {"no AVX", {kBySystem, 0, kSavesSse}, CInstructionSet::Sse2},
        {"no AVX, but what stands on it", {kBySystem, kAvx512, kSavesAvx512}, CInstructionSet::Sse2},
        {"AVX, a system that knows nothing of it", {kAvx, kAvx512, kSavesAvx512}, CInstructionSet::Sse2},
        {"AVX, a system that does not save it", {kBasic, kAvx512, kSavesSse}, CInstructionSet::Sse2},
        {"upper halves without the lower ones", {kBasic, kAvx512, 0x5}, CInstructionSet::Sse2},
        {"AVX and FMA without AVX2", {kBasic | kFma, 0, kSavesAvx}, CInstructionSet::Sse2},
        {"AVX2", {kBasic | kFma, kAvx2, kSavesAvx}, CInstructionSet::Avx2},
        {"AVX2 without FMA", {kBasic, kAvx2, kSavesAvx}, CInstructionSet::Avx2},
        {"AVX-512", {kBasic | kFma, kAvx512, kSavesAvx512}, CInstructionSet::Avx512},
        {"AVX-512, a system that saves AVX only", {kBasic, kAvx512, kSavesAvx}, CInstructionSet::Avx2},
        {"no masks saved", {kBasic, kAvx512, 0xc7}, CInstructionSet::Avx2},
        {"no upper quarters saved", {kBasic, kAvx512, 0xa7}, CInstructionSet::Avx2},
        {"no further registers saved", {kBasic, kAvx512, 0x67}, CInstructionSet::Avx2},
        {"AVX-512 F without DQ", {kBasic, kAvx2 | kAvx512F, kSavesAvx512}, CInstructionSet::Avx2},
        {"AVX-512 DQ without F", {kBasic, kAvx2 | kAvx512Dq, kSavesAvx512}, CInstructionSet::Avx2},
        {"AVX-512 without AVX2", {kBasic, kAvx512F | kAvx512Dq, kSavesAvx512}, CInstructionSet::Sse2},
    };
    for (const auto& row : rows) {
        EXPECT_STREQ(nameOf(widestSet(row.features)), nameOf(row.expected)) << row.machine;
    }
}

TEST(InstructionSet, IsTheOneThatIsWantedIfTheMachineHasIt) {
    const CProcessorFeatures plain = {0, 0, 0};
    const CProcessorFeatures wide = {kBasic, kAvx2, kSavesAvx};
    const CProcessorFeatures widest = {kBasic, kAvx512, kSavesAvx512};
    for (const char* wanted : {"sse2", "avx2", "avx512"}) {
        EXPECT_STREQ(nameOf(chosenSet(widest, wanted)), wanted);
        EXPECT_STREQ(nameOf(chosenSet(plain, wanted)), "sse2") << wanted;
    }
    EXPECT_STREQ(nameOf(chosenSet(wide, "sse2")), "sse2");
    EXPECT_STREQ(nameOf(chosenSet(wide, "avx2")), "avx2");
    EXPECT_STREQ(nameOf(chosenSet(wide, "avx512")), "avx2");
    for (const char* noWish : {static_cast<const char*>(nullptr), "", "avx", "AVX2", "sse2 "}) {
        EXPECT_STREQ(nameOf(chosenSet(widest, noWish)), "avx512") << (noWish ? noWish : "null");
    }
}

TEST(InstructionSet, OfThisProcessIsChosenByItsEnvironment) {
    const char* const wanted = std::getenv("TARV_INSTRUCTION_SET");
    EXPECT_STREQ(nameOf(usedSet()), nameOf(chosenSet(readProcessorFeatures(), wanted)));
    // The compiler asks the processor and the system by itself.
    EXPECT_EQ(widestSet(readProcessorFeatures()) >= CInstructionSet::Avx2, __builtin_cpu_supports("avx2") != 0);
    EXPECT_EQ(widestSet(readProcessorFeatures()) == CInstructionSet::Avx512,
              __builtin_cpu_supports("avx512f") != 0 && __builtin_cpu_supports("avx512dq") != 0);
}

}  // namespace
}  // namespace tarv
