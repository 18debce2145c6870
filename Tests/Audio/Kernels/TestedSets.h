#pragma once

#include <vector>

#include "Audio/Kernels/Wave/CInstructionSet.h"

namespace tarv {

/// The sets that tests run, from the narrowest: AVX-512 on every machine, since it is emulated where it is missing
/// (Emulated/README.md).
inline std::vector<CInstructionSet> testedSets() {
    std::vector<CInstructionSet> sets = {CInstructionSet::Sse2};
    if (widestSet(readProcessorFeatures()) >= CInstructionSet::Avx2) {
        sets.push_back(CInstructionSet::Avx2);
    }
    sets.push_back(CInstructionSet::Avx512);
    return sets;
}

}  // namespace tarv
