#pragma once

#include <vector>

#include "Audio/Kernels/Wave/CInstructionSet.h"

namespace tarv {

/// The sets that tests run, from the narrowest: AVX-512 on every machine with AVX2, since it takes some of the loops
/// of AVX2; emulated where it is missing (Emulated/README.md).
inline std::vector<CInstructionSet> testedSets() {
    std::vector<CInstructionSet> sets = {CInstructionSet::Sse2};
    if (widestSet(readProcessorFeatures()) >= CInstructionSet::Avx2) {
        sets.push_back(CInstructionSet::Avx2);
#ifdef TARV_EMULATES_AVX512
        sets.push_back(CInstructionSet::Avx512);
#endif
    }
#ifndef TARV_EMULATES_AVX512
    if (widestSet(readProcessorFeatures()) >= CInstructionSet::Avx512) {
        sets.push_back(CInstructionSet::Avx512);
    }
#endif
    return sets;
}

}  // namespace tarv
