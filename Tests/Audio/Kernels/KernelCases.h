#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "Audio/Context/COperation.h"

namespace tarv {

/// What an operand of a kernel is, for the sweep that proves all kernels.
enum class COperandKind {
    Signal,         ///< as many 64-bit floats as the operation's count
    DoubledSignal,  ///< twice as many
    Block,          ///< a state, parameter or number block of fixed size
};

struct COperandRole {
    COperandKind kind;
    int32_t size = 0;                                   ///< 64-bit floats of a block
    std::function<void(double* block)> fill = nullptr;  ///< null: noise
    int32_t compared = -1;                              ///< leading values of a block that are compared; -1 all
};

/// A kernel and its plain form: one loop, one sample at a time, in the order of the formula.
struct CKernelCase {
    std::string name;  ///< without the common beginning
    std::vector<COperandRole> operands;
    std::function<void(COperation&)> reference;
    int32_t destinations = 1;  ///< operands in front that are signals to be written
    bool canOverlap = true;    ///< partial overlap of destination and source is defined
};

/// Noise from -1 to 1 with some zeros of both signs and repeated values; the same sequence in every run.
double nextNoise();

std::vector<CKernelCase> commonKernelCases();
std::vector<CKernelCase> filterKernelCases();
std::vector<CKernelCase> moduleKernelCases();
std::vector<CKernelCase> allKernelCases();

}  // namespace tarv
