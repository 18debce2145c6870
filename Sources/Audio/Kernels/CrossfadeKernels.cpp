#include "Audio/Kernels/CrossfadeKernels.h"

#include <cmath>
#include <numbers>

#include "Audio/Kernels/CRecursion.h"

namespace tarv {

namespace {

template <class T>
struct CRamp {
    static constexpr int32_t kInputs = 2;
    T r0, r1, r2;

    template <class... Operation>
    void load(Operation&... from) {
        loadMember(r0, 0, from...);
        loadMember(r1, 1, from...);
        loadMember(r2, 2, from...);
    }
    template <class... Operation>
    void store(Operation&... to) {
        storeMember(r0, 0, to...);
        storeMember(r1, 1, to...);
    }
    T step(T to, T from) {
        const T y = (0.5 - r0) * to + (0.5 + r0) * from;
        const T next = r0 * r2 - r1;
        r1 = r0;
        r0 = next;
        return y;
    }
};

}  // namespace

void kernelXfadeInit(COperation& operation) {
    double* const ramp = operation.signal(0);
    const double d = std::numbers::pi / (operation.count > 0 ? operation.count : 1);
    const double p = (2.0 * operation.immediate + 0.5) * std::numbers::pi;
    ramp[0] = std::sin(p) * 0.5;
    ramp[1] = std::sin(p - d) * 0.5;
    ramp[2] = 2.0 * std::cos(d);
}

void kernelXfade(COperation& operation) {
    CRecursion<CRamp>::run(operation);
}

void kernelXfadeBatch(COperation* const* operations, int32_t count) {
    CRecursion<CRamp>::runBatch(operations, count);
}

}  // namespace tarv
