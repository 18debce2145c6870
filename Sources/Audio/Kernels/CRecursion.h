#pragma once

#include "Audio/Kernels/KernelLanes.h"

namespace tarv {

/// Loop of a recursive kernel, written once for one channel and for pairs of channels. Each recursion waits for
/// its last result, so independent channels that run side by side cost little more than one.
///
/// `State<T>` has `kInputs` (1 or 2), `load` and `store` (one operation for T = double, two for CPair) and `step`,
/// which takes one sample of each input and gives the output. Operands: 0 destination, 1 state block, 2 and up sources.
template <template <class> class State>
class CRecursion {
public:
    static void run(COperation& operation) {
        State<double> state;
        state.load(operation);
        runOne(state, operation);
        state.store(operation);
    }

    static void runBatch(COperation* const* operations, int32_t count) {
        COperation* apart[kMostPairs * 2];
        int32_t n = 0;
        for (int32_t i = 0; i < count; ++i) {
            if (!isLaneable(*operations[i])) {
                run(*operations[i]);
                continue;
            }
            apart[n++] = operations[i];
            if (n == kMostPairs * 2) {
                runPairs<kMostPairs>(apart);
                n = 0;
            }
        }
        if (n >= 6) {
            runPairs<3>(apart);
        } else if (n >= 4) {
            runPairs<2>(apart);
        } else if (n >= 2) {
            runPairs<1>(apart);
        }
        if (n & 1) {
            run(*apart[n - 1]);
        }
    }

private:
    static constexpr int32_t kMostPairs = 4;
    static constexpr int32_t kInputs = State<double>::kInputs;

    static bool isLaneable(const COperation& operation) {
        for (int32_t k = 0; k < kInputs; ++k) {
            if (!isApart(operation.signal(0), operation.signal(2 + k), operation.count)) {
                return false;
            }
        }
        return true;
    }

    template <class T>
    static T step(State<T>& state, const T (&x)[kInputs]) {
        if constexpr (kInputs == 1) {
            return state.step(x[0]);
        } else {
            return state.step(x[0], x[1]);
        }
    }

    static void runOne(State<double>& state, COperation& operation) {
        double* const out = operation.signal(0);
        const double* in[kInputs];
#pragma GCC unroll 2
        for (int32_t k = 0; k < kInputs; ++k) {
            in[k] = operation.signal(2 + k);
        }
        const int32_t count = operation.count;
        for (int32_t i = 0; i < count; ++i) {
            double x[kInputs];
#pragma GCC unroll 2
            for (int32_t k = 0; k < kInputs; ++k) {
                x[k] = in[k][i];
            }
            out[i] = step(state, x);
        }
    }

    /// Two samples of two channels.
    static void runSquare(State<CPair>& state, double* const* out, const double* const (*in)[2], int32_t i) {
        CPair early[kInputs];
        CPair late[kInputs];
#pragma GCC unroll 2
        for (int32_t k = 0; k < kInputs; ++k) {
            early[k] = loadPair(in[k][0] + i);
            late[k] = loadPair(in[k][1] + i);
            transpose(early[k], late[k]);
        }
        CPair a = step(state, early);
        CPair b = step(state, late);
        transpose(a, b);
        storePair(out[0] + i, a);
        storePair(out[1] + i, b);
    }

    template <int32_t Pairs>
    static void runPairs(COperation* const* operations) {
        State<CPair> state[Pairs];
        double* out[Pairs][2];
        const double* in[Pairs][kInputs][2];
#pragma GCC unroll 4
        for (int32_t p = 0; p < Pairs; ++p) {
            state[p].load(*operations[2 * p], *operations[2 * p + 1]);
#pragma GCC unroll 2
            for (int32_t c = 0; c < 2; ++c) {
                out[p][c] = operations[2 * p + c]->signal(0);
#pragma GCC unroll 2
                for (int32_t k = 0; k < kInputs; ++k) {
                    in[p][k][c] = operations[2 * p + c]->signal(2 + k);
                }
            }
        }
        const int32_t count = operations[0]->count;
        int32_t i = 0;
        for (; i + 2 <= count; i += 2) {
#pragma GCC unroll 4
            for (int32_t p = 0; p < Pairs; ++p) {
                runSquare(state[p], out[p], in[p], i);
            }
        }
#pragma GCC unroll 4
        for (int32_t p = 0; p < Pairs; ++p) {
            if (i == count) {
                break;
            }
            CPair x[kInputs];
#pragma GCC unroll 2
            for (int32_t k = 0; k < kInputs; ++k) {
                x[k] = CPair(in[p][k][0][i], in[p][k][1][i]);
            }
            const CPair y = step(state[p], x);
            out[p][0][i] = y.first();
            out[p][1][i] = y.second();
        }
#pragma GCC unroll 4
        for (int32_t p = 0; p < Pairs; ++p) {
            state[p].store(*operations[2 * p], *operations[2 * p + 1]);
        }
    }
};

/// Member `k` of the state blocks of one operation or of two side by side.
inline void loadMember(double& value, int32_t k, const COperation& a) {
    value = a.signal(1)[k];
}
inline void loadMember(CPair& value, int32_t k, const COperation& a, const COperation& b) {
    value = CPair(a.signal(1)[k], b.signal(1)[k]);
}
inline void storeMember(double value, int32_t k, const COperation& a) {
    a.signal(1)[k] = value;
}
inline void storeMember(CPair value, int32_t k, const COperation& a, const COperation& b) {
    a.signal(1)[k] = value.first();
    b.signal(1)[k] = value.second();
}
inline void loadImmediate(double& value, const COperation& a) {
    value = a.immediate;
}
inline void loadImmediate(CPair& value, const COperation& a, const COperation& b) {
    value = CPair(a.immediate, b.immediate);
}

}  // namespace tarv
