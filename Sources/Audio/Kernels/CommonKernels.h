#pragma once

#include "Audio/Context/COperation.h"

namespace tarv {

class CQPLEXContext;

/// Registers the kernels of CCommonKernel in its order and sets the context's table of them.
void registerCommonKernels(CQPLEXContext& context);

// out is operand 0, a to d are operands 1 to 4, c is the immediate. All take any count, also 0; out may be any operand.

/// out = a
void kernelCopy(COperation& operation);
/// out = a + c
void kernelAddc(COperation& operation);
/// out = out + the one number at a
void kernelAddcid(COperation& operation);
/// out = a + b
void kernelAdd2(COperation& operation);
/// out = out + a
void kernelAdd2i(COperation& operation);
/// out = a + b + c
void kernelAdd3(COperation& operation);
/// out = a + b + c + d
void kernelAdd4(COperation& operation);
/// out = a - b
void kernelSub2(COperation& operation);
/// out = greater of a, b; b when they are equal or a is not a number
void kernelMax2(COperation& operation);
/// out = greater of out, a
void kernelMax2i(COperation& operation);
/// out = greatest of a, b, c; compares them in this order
void kernelMax3(COperation& operation);
/// out = greatest of a, b, c, d; compares them in this order
void kernelMax4(COperation& operation);
/// out = lesser of a, b; b when they are equal or a is not a number
void kernelMin2(COperation& operation);
/// out = least of a, b, c; compares them in this order
void kernelMin3(COperation& operation);
/// out = least of a, b, c, d; compares them in this order
void kernelMin4(COperation& operation);
/// out = (a - b) x c + b
void kernelMix(COperation& operation);
/// out = a x k1 + b x k2, where k1 and k2 are the two numbers at operand 3
void kernelMix2(COperation& operation);
/// out = (a - b) x operand 3 + b
void kernelMixb(COperation& operation);
/// out = (a + b) x immediate
void kernelAdd2mul(COperation& operation);
/// out = (a + b + c) x immediate
void kernelAdd3mul(COperation& operation);
/// out = a x c
void kernelMulc(COperation& operation);
/// out = out x c
void kernelMulci(COperation& operation);
/// out = a x b
void kernelMul2(COperation& operation);
/// out = out x a
void kernelMul2i(COperation& operation);
/// out = a x b + out
void kernelMul2addi(COperation& operation);
/// out = magnitude of a
void kernelAbs(COperation& operation);
/// out = square root of a
void kernelSqrt(COperation& operation);
/// out = 0
void kernelFill0(COperation& operation);
/// out = c
void kernelFillc(COperation& operation);
/// out = the one number at a
void kernelFilld(COperation& operation);

}  // namespace tarv
