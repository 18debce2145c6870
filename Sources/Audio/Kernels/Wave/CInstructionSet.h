#pragma once

#include <cstdint>

namespace tarv {

/// The sets of vector instructions that waves are built for, from the narrowest.
enum class CInstructionSet : int32_t {
    Sse2,  ///< every 64-bit processor has it
    Avx2,
    Avx512,  ///< its parts F and DQ
};

/// What a processor says of itself and what the system saves when it switches threads.
struct CProcessorFeatures {
    uint32_t basic;         ///< CPUID leaf 1, register C
    uint32_t extended;      ///< CPUID leaf 7, register B; 0 on a processor without that leaf
    uint64_t savedByState;  ///< XCR0; 0 where the system does not use it
};

CProcessorFeatures readProcessorFeatures();
/// The widest set that a processor has and whose registers the system saves.
CInstructionSet widestSet(const CProcessorFeatures& features);
/// The widest set, or the narrower one that `wanted` names: "sse2", "avx2" or "avx512". Null and any other text stand
/// for no wish.
CInstructionSet chosenSet(const CProcessorFeatures& features, const char* wanted);
/// The set of this process, chosen at the first call by the wish in the environment variable TARV_INSTRUCTION_SET,
/// which is for tests and benchmarks. Any thread.
CInstructionSet usedSet();
/// "sse2", "avx2", "avx512".
const char* nameOf(CInstructionSet set);

}  // namespace tarv
