#include "Audio/Kernels/CrossfadeKernels.h"

#include <algorithm>
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

CRampStart rampStart(int32_t length, double place) {
    const double d = std::numbers::pi / (length > 0 ? length : 1);
    const double p = (2.0 * place + 0.5) * std::numbers::pi;
    return {{std::sin(p) * 0.5, std::sin(p - d) * 0.5, 2.0 * std::cos(d)}};
}

void kernelXfadeInit(COperation& operation) {
    std::ranges::copy(rampStart(operation.count, operation.immediate).numbers, operation.signal(0));
}

void kernelXfade(COperation& operation) {
    CRecursion<CRamp>::run(operation);
}

void kernelXfadeBatch(COperation* const* operations, int32_t count) {
    CRecursion<CRamp>::runBatch(operations, count);
}

}  // namespace tarv
