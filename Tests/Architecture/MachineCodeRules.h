#pragma once

#include <string>
#include <vector>

#include "Tests/Architecture/CMachineCode.h"

namespace tarv {

// Each rule gives a line for each place that breaks it.

/// Matches, for CMachineCode, what only wider sets have: all instructions whose names begin with `v`, those of masks,
/// and those of bit manipulation that are encoded as they are.
extern const char* const kWideInstructions;

/// Of the functions with wide instructions, those that are not of one of the `sources`.
std::vector<std::string> wideOutside(const std::vector<CFunctionCode>& wide, const std::vector<std::string>& sources);
/// A multiplication and addition without a rounding in between.
std::vector<std::string> fusedOperations(const std::vector<CFunctionCode>& wide);
/// A register or a mask that only AVX-512 has.
std::vector<std::string> widestRegisters(const CFunctionCode& function);
/// Access to 32 or 64 bytes of the stack in a function that does not align it so, since what a compiler spills lies
/// unaligned there, and an aligned one to a place that is not known to be. A function that aligns nothing gets the
/// stack at a multiple of 16 bytes.
std::vector<std::string> unalignedStackMoves(const CFunctionCode& function);
/// A place below the stack pointer, which Windows keeps for nobody.
std::vector<std::string> placesBelowStack(const CFunctionCode& function);
/// A way out of the function with values in the upper parts of the registers, for which narrow instructions would wait.
/// Behind a jump by a table only those blocks are followed that nothing else reaches.
std::vector<std::string> dirtyReturns(const CFunctionCode& function);
/// A call or a jump to other functions than these.
std::vector<std::string> callsOutside(const std::vector<CFunctionCode>& functions);

}  // namespace tarv
