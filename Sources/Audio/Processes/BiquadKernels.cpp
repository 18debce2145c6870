#include "Audio/Processes/BiquadKernels.h"

#include "Audio/Processes/CQPLEXContext.h"
#include "Audio/Processes/KernelRecursion.h"

namespace tarv {

namespace {

enum class CForm { Common, LowPass, HighPass, BandPass, Notch };

constexpr int32_t kCoefficients = 4;
constexpr int32_t kStateSize = 6;

template <class T, CForm Form, bool HasGain>
struct CBiquad {
    static constexpr int32_t kInputs = 1;
    T c0, c1, c2, c3, s1, s2, gain;

    template <class... Operation>
    void load(Operation&... from) {
        loadMember(c0, 0, from...);
        loadMember(c1, 1, from...);
        loadMember(c2, 2, from...);
        loadMember(c3, 3, from...);
        loadMember(s1, 4, from...);
        loadMember(s2, 5, from...);
        loadImmediate(gain, from...);
    }
    template <class... Operation>
    void store(Operation&... to) {
        storeMember(s1, 4, to...);
        storeMember(s2, 5, to...);
    }
    T step(T x) {
        const T t = s2;
        s2 = s1;
        s1 = s1 * c2 + c3 * t + x;
        if constexpr (HasGain) {
            return output(t) * gain;
        } else {
            return output(t);
        }
    }
    T output(T t) const {
        if constexpr (Form == CForm::Common) {
            return c0 * s2 + s1 + c1 * t;
        } else if constexpr (Form == CForm::LowPass) {
            return s1 + s2 + s2 + t;
        } else if constexpr (Form == CForm::HighPass) {
            return s1 - s2 - s2 + t;
        } else if constexpr (Form == CForm::BandPass) {
            return s1 - t;
        } else {
            return s1 + c0 * s2 + t;
        }
    }
};

template <CForm Form, bool HasGain>
struct CBiquadOf {
    template <class T>
    using State = CBiquad<T, Form, HasGain>;
    using Loop = CRecursion<State>;
};

template <CForm Form, bool HasGain>
int32_t registerLoop(CQPLEXContext& context, const char* name) {
    using Loop = typename CBiquadOf<Form, HasGain>::Loop;
    return context.registerKernel(name, &Loop::run, 3, 3, 0, &Loop::runBatch);
}

template <CForm Form>
void registerForm(CQPLEXContext& context, CSectionKernels& row, const char* name, const char* gainName) {
    row.run = registerLoop<Form, false>(context, name);
    row.runGain = registerLoop<Form, true>(context, gainName);
}

void initBiquad(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    for (int32_t i = 0; i < kStateSize; ++i) {
        block[i] = i < kCoefficients ? coefficients[i] : 0.0;
    }
}

void updateBiquad(COperation& operation) {
    double* const block = operation.signal(0);
    const double* const coefficients = operation.signal(1);
    const double* const old = operation.signal(2);
    for (int32_t i = 0; i < kStateSize; ++i) {
        block[i] = i < kCoefficients ? coefficients[i] : old[i];
    }
}

}  // namespace

CSectionKernels* registerBiquadKernels(CQPLEXContext& context, CSectionKernels* rows) {
    const int32_t init = context.registerKernel("com.tarvelo.qplex.fltbiqi", initBiquad, 2, 1);
    const int32_t update = context.registerKernel("com.tarvelo.qplex.fltbiqu", updateBiquad, 3, 1);
    for (int32_t type = 0; type < 5; ++type) {
        rows[type] = {init, update, -1, -1, kStateSize, kCoefficients};
    }
    registerForm<CForm::Common>(context, rows[0], "com.tarvelo.qplex.fltbiqcommon", "com.tarvelo.qplex.fltbiqcommong");
    registerForm<CForm::LowPass>(context, rows[1], "com.tarvelo.qplex.fltbiqlp", "com.tarvelo.qplex.fltbiqlpg");
    registerForm<CForm::HighPass>(context, rows[2], "com.tarvelo.qplex.fltbiqhp", "com.tarvelo.qplex.fltbiqhpg");
    registerForm<CForm::BandPass>(context, rows[3], "com.tarvelo.qplex.fltbiqbp", "com.tarvelo.qplex.fltbiqbpg");
    registerForm<CForm::Notch>(context, rows[4], "com.tarvelo.qplex.fltbiqnotch", "com.tarvelo.qplex.fltbiqnotchg");
    return rows + 5;
}

}  // namespace tarv
