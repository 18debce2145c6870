#pragma once

#include <cstdint>

namespace tarv {

/// The kernels that modules find by number, without a search by name.
enum class CCommonKernel : int32_t {
    Copy,
    Addc,
    Addcid,
    Add2,
    Add2i,
    Add3,
    Add4,
    Sub2,
    Max2,
    Max2i,
    Max3,
    Max4,
    Min2,
    Min3,
    Min4,
    Mix,
    Mix2,
    Mixb,
    Add2mul,
    Add3mul,
    Mulc,
    Mulci,
    Mul2,
    Mul2i,
    Mul2addi,
    Abs,
    Sqrt,
    Fill0,
    Fillc,
    Filld,
    Xfadei,
    Xfade,
    Count
};

}  // namespace tarv
