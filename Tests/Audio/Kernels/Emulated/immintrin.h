#pragma once

// What stands in place of the compiler's header where WaveAvx512.cpp is compiled for any 64-bit processor: each
// instruction as the library SIMDe writes it in plain code.

#define SIMDE_ENABLE_NATIVE_ALIASES
#include <simde/x86/avx512.h>

// What that library does not have.

using __mmask8 = simde__mmask8;

/// The low eight of the sixteen lanes of `high` behind `low`, from lane `first` (0 to 7) on.
static inline simde__m512i alignLanes(simde__m512i high, simde__m512i low, int first) {
    const simde__m512i_private a = simde__m512i_to_private(low);
    const simde__m512i_private b = simde__m512i_to_private(high);
    simde__m512i_private result;
    for (int lane = 0; lane < 8; ++lane) {
        const int from = lane + first;
        result.i64[lane] = from < 8 ? a.i64[from] : b.i64[from - 8];
    }
    return simde__m512i_from_private(result);
}
#define _mm512_alignr_epi64(high, low, first) alignLanes(high, low, first)

/// In each pair of lanes the lower or the upper one, as bit `lane` of `uppers` says.
static inline simde__m512d permuteLanes(simde__m512d a, int uppers) {
    const simde__m512d_private from = simde__m512d_to_private(a);
    simde__m512d_private result;
    for (int lane = 0; lane < 8; ++lane) {
        result.f64[lane] = from.f64[(lane & ~1) + (uppers >> lane & 1)];
    }
    return simde__m512d_from_private(result);
}
#define _mm512_permute_pd(a, uppers) permuteLanes(a, uppers)
