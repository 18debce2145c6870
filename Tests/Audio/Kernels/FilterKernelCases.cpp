#include <cmath>

#include "Tests/Audio/Kernels/KernelCases.h"

namespace tarv {

namespace {

const COperandRole kSignal = {COperandKind::Signal};

COperandRole block(int32_t size, std::function<void(double*)> fill = nullptr, int32_t compared = -1) {
    return {COperandKind::Block, size, std::move(fill), compared};
}

using CReference = std::function<void(COperation&)>;
using CSampleFormula = std::function<double(double* state, double x)>;

/// A filter loop over a formula of one sample.
CReference filterLoop(CSampleFormula f, bool hasGain) {
    return [f = std::move(f), hasGain](COperation& o) {
        for (int32_t i = 0; i < o.count; ++i) {
            const double y = f(o.signal(1), o.signal(2)[i]);
            o.signal(0)[i] = hasGain ? y * o.immediate : y;
        }
    };
}

/// Copies `coefficients` values, then zeros (init) or the old block's history (update).
CReference blockMaker(int32_t coefficients, int32_t size, bool isUpdate) {
    return [=](COperation& o) {
        for (int32_t i = 0; i < size; ++i) {
            o.signal(0)[i] = i < coefficients ? o.signal(1)[i] : isUpdate ? o.signal(2)[i] : 0.0;
        }
    };
}

void addPair(std::vector<CKernelCase>& cases, const std::string& name, const COperandRole& state,
             const CSampleFormula& formula) {
    cases.push_back({name, {kSignal, state, kSignal}, filterLoop(formula, false)});
    cases.push_back({name + "g", {kSignal, state, kSignal}, filterLoop(formula, true)});
}

void addMakers(std::vector<CKernelCase>& cases, const std::string& name, int32_t coefficients, int32_t size) {
    cases.push_back({name + "i", {block(size), block(coefficients)}, blockMaker(coefficients, size, false), 0});
    cases.push_back(
        {name + "u", {block(size), block(coefficients), block(size)}, blockMaker(coefficients, size, true), 0});
}

// Biquads

double shiftBiquad(double* s, double x) {
    const double t = s[5];
    s[5] = s[4];
    s[4] = s[4] * s[2] + s[3] * t + x;
    return t;
}

void addBiquads(std::vector<CKernelCase>& cases) {
    const COperandRole state = block(6, [](double* s) {
        for (int32_t i = 0; i < 6; ++i) {
            s[i] = 0.45 * nextNoise();
        }
    });
    addMakers(cases, "fltbiq", 4, 6);
    addPair(cases, "fltbiqcommon", state, [](double* s, double x) {
        const double t = shiftBiquad(s, x);
        return s[0] * s[5] + s[4] + s[1] * t;
    });
    addPair(cases, "fltbiqlp", state, [](double* s, double x) {
        const double t = shiftBiquad(s, x);
        return s[4] + s[5] + s[5] + t;
    });
    addPair(cases, "fltbiqhp", state, [](double* s, double x) {
        const double t = shiftBiquad(s, x);
        return s[4] - s[5] - s[5] + t;
    });
    addPair(cases, "fltbiqbp", state, [](double* s, double x) {
        const double t = shiftBiquad(s, x);
        return s[4] - t;
    });
    addPair(cases, "fltbiqnotch", state, [](double* s, double x) {
        const double t = shiftBiquad(s, x);
        return s[4] + s[0] * s[5] + t;
    });
}

// One-pole cascades

void addOnePoles(std::vector<CKernelCase>& cases) {
    addMakers(cases, "fltlphp1", 1, 5);
    for (const bool isHighPass : {false, true}) {
        for (int32_t stages = 1; stages <= 4; ++stages) {
            const COperandRole state = block(5, [](double* s) {
                for (int32_t i = 0; i < 5; ++i) {
                    s[i] = std::fabs(nextNoise());
                }
            });
            const std::string name =
                std::string(isHighPass ? "flthp1" : "fltlp1") + static_cast<char>('a' + stages - 1);
            addPair(cases, name, state, [=](double* s, double x) {
                for (int32_t k = 1; k <= stages; ++k) {
                    s[k] += (x - s[k]) * s[0];
                    x = isHighPass ? x - s[k] : s[k];
                }
                return x;
            });
        }
    }
}

// Half-band pairs: n coefficients a branch, then the held sample, the index and the circular lines

double runBranch(double* lines, const double* c, int32_t n, int32_t index, double x) {
    for (int32_t k = 0; k < n; ++k) {
        lines[k * 4 + index] = x;
        x = (x - lines[(k + 1) * 4 + ((index + 2) & 3)]) * c[k] + lines[k * 4 + ((index + 2) & 3)];
    }
    lines[n * 4 + index] = x;
    return x;
}

double halfBand(double* s, int32_t n, double x) {
    double* const held = s + 2 * n;
    double* const lines = held + 2;
    const auto index = static_cast<int32_t>(held[1]);
    const double y = runBranch(lines, s, n, index, x) + held[0];
    held[0] = runBranch(lines + (n + 1) * 4, s + n, n, index, x);
    held[1] = (index - 1) & 3;
    return y;
}

void fillHalfBand(double* s, int32_t n) {
    const int32_t size = 10 + 10 * n;
    for (int32_t i = 0; i < size; ++i) {
        s[i] = i < 2 * n ? std::fabs(nextNoise()) * 0.9 : nextNoise();
    }
    s[2 * n + 1] = std::floor(std::fabs(nextNoise()) * 3.99);
    for (int32_t i = 0; i < 4; ++i) {  // the first line of both branches is the input
        s[2 * n + 2 + 4 * (n + 1) + i] = s[2 * n + 2 + i];
    }
}

void addHalfBands(std::vector<CKernelCase>& cases) {
    for (int32_t n = 1; n <= 8; ++n) {
        const int32_t size = 10 + 10 * n;
        const std::string name = "flthbf" + std::to_string(2 * n);
        cases.push_back({name + "i",
                         {block(size), block(2 * n)},
                         [=](COperation& o) {
                             blockMaker(2 * n, size, false)(o);
                             o.signal(0)[2 * n + 1] = 3.0;
                         },
                         0});
        cases.push_back({name + "u", {block(size), block(2 * n), block(size)}, blockMaker(2 * n, size, true), 0});
        // Entries of the lines that no later sample reads need not be kept; the sweep runs on from the block instead.
        addPair(cases, name,
                block(
                    size, [n](double* s) { fillHalfBand(s, n); }, 2 * n + 2),
                [n](double* s, double x) { return halfBand(s, n, x); });
    }
}

// The level-dependent biquad

double followed(double* slowAndFast, double level, double scale, double k) {
    const double a = (level > 1e-10 ? level : 1e-10) * scale;
    const double b = 2.0 * a;
    const double h = (1.0 - 24.0 / (b * (((3.0 + b) * b + 6.0) * b + 12.0) + 24.0)) / a;
    slowAndFast[1] += (h - slowAndFast[1]) * k;
    slowAndFast[0] += (slowAndFast[1] - slowAndFast[0]) * k;
    return h;
}

void referenceHeq(COperation& o) {
    double* const s = o.signal(1);
    for (int32_t i = 0; i < o.count; ++i) {
        const double m = s[12] * s[14] * 0.25;
        const double u = s[5];
        s[5] = s[4];
        s[4] = s[4] * s[2] + s[3] * u + o.signal(2)[i] * o.immediate / m;
        const double y = (s[0] * s[5] + s[4] + s[1] * u) * m;
        o.signal(0)[i] = y;
        const double e = y * m;
        followed(s + 12, s[6] + e, s[8], s[10]);
        followed(s + 14, s[7] - e, s[9], s[11]);
    }
}

void fillHeq(double* s) {
    for (int32_t i = 0; i < 20; ++i) {
        s[i] = i < 6 ? 0.4 * nextNoise() : 0.5 + 0.3 * nextNoise();
    }
}

void setHeq(double* to, const double* coefficients) {
    constexpr int32_t kPlaces[] = {0, 1, 6, 7, 8, 9, 10, 11, 2, 3};
    for (int32_t i = 0; i < 10; ++i) {
        to[kPlaces[i]] = coefficients[i];
    }
}

void addHeq(std::vector<CKernelCase>& cases) {
    cases.push_back({"fltheqi",
                     {block(20), block(10)},
                     [](COperation& o) {
                         for (int32_t i = 0; i < 20; ++i) {
                             o.signal(0)[i] = i < 12 ? 0.0 : i < 16 ? 1.0 : i < 18 ? 1e-20 : 1.0;
                         }
                         setHeq(o.signal(0), o.signal(1));
                     },
                     0});
    cases.push_back({"flthequ",
                     {block(20), block(10), block(20)},
                     [](COperation& o) {
                         for (int32_t i = 0; i < 20; ++i) {
                             o.signal(0)[i] = o.signal(2)[i];
                         }
                         setHeq(o.signal(0), o.signal(1));
                     },
                     0});
    cases.push_back({"fltheq", {kSignal, block(20, fillHeq), kSignal}, referenceHeq});
}

void addAllpass(std::vector<CKernelCase>& cases) {
    addMakers(cases, "fltapf1_6", 6, 18);
    const COperandRole state = block(18, [](double* s) {
        for (int32_t i = 0; i < 18; ++i) {
            s[i] = 0.9 * nextNoise();
        }
    });
    addPair(cases, "fltapf1_6", state, [](double* s, double x) {
        for (int32_t k = 0; k < 6; ++k) {
            const double y = (x - s[12 + k]) * s[k] + s[6 + k];
            s[6 + k] = x;
            s[12 + k] = y;
            x = y;
        }
        return x;
    });
}

}  // namespace

std::vector<CKernelCase> filterKernelCases() {
    std::vector<CKernelCase> cases;
    addBiquads(cases);
    addOnePoles(cases);
    addHalfBands(cases);
    addHeq(cases);
    addAllpass(cases);
    return cases;
}

}  // namespace tarv
