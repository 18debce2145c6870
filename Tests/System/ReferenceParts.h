#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "Tests/System/ReferenceDesigns.h"

namespace tarv::reference {

/// Random square wave of 1e-11 that keeps recursions away from denormal numbers.
class CNoise {
public:
    /// The sample with noise upon it.
    double addTo(double x);
    double next();

private:
    double bit();
    uint32_t seed_ = 0;
};

/// Direct form II, its history kept before the section's gain.
class CBiquad {
public:
    CBiquadDesign design{};
    double next(double x);

private:
    double s1_ = 0.0;
    double s2_ = 0.0;
};

/// x minus its one-pole low-pass.
class COnePoleHighPass {
public:
    COnePoleHighPass(double frequency, double rate) : k_(onePoleCoefficient(frequency, rate)) {}
    double next(double x);

private:
    double k_;
    double v_ = 0.0;
};

/// Half the sum of two all-pass branches, the second one sample late.
class CHalfBand {
public:
    explicit CHalfBand(const CHalfBandDesign& design);
    double next(double x);

private:
    /// y = (x - y'') * c + x''
    struct CAllPass {
        double c;
        double x1 = 0.0, x2 = 0.0, y1 = 0.0, y2 = 0.0;
        double next(double x);
    };
    std::vector<CAllPass> a_;
    std::vector<CAllPass> b_;
    double lateB_ = 0.0;
};

/// Raises the rate: doubles with zeros between, filter behind each doubling, the steep one first.
class CUpsampler {
public:
    explicit CUpsampler(int stages);
    /// The 2^stages samples of one host frame.
    std::vector<double> next(double x);

private:
    std::vector<CHalfBand> filters_;
};

/// Lowers the rate: filter, then every second sample; the steep filter comes last.
class CDownsampler {
public:
    explicit CDownsampler(int stages);
    double next(std::vector<double> samples);

private:
    std::vector<CHalfBand> filters_;
};

/// The saturation behind a band: `x` is shaped, `feed` steers.
class CTube {
public:
    explicit CTube(double rate) : design_(designTube(rate)) {}
    double next(double x, double feed);

private:
    CTubeDesign design_;
    double s_ = 0.0;
};

/// Samples of a fade at a rate: 15 ms, halves away from zero.
int64_t fadeLength(double rate);

/// Raised cosine from all of the old to all of the new in `count` samples.
class CRamp {
public:
    explicit CRamp(int64_t count);
    double next(double fresh, double stale);

private:
    double r0_, r1_, r2_;
};

/// Runs a second module beside the first for 15 ms after a change of values and fades to it by a raised cosine. A
/// change during a fade waits for its end. Module: `Values`, `Module(values, rate, const Module* before)`, `next(...)`.
template <class Module>
class CFading {
public:
    using Values = typename Module::Values;

    CFading(const Values& values, double rate)
        : rate_(rate), values_(values), wanted_(values), now_(values, rate, nullptr) {}

    void want(const Values& values) { wanted_ = values; }

    template <class... Inputs>
    double next(Inputs... inputs) {
        if (left_ == 0 && !(wanted_ == values_)) {
            beginFade();
        }
        const double fresh = now_.next(inputs...);
        if (left_ == 0) {
            return fresh;
        }
        const double stale = old_->next(inputs...);
        --left_;
        return ramp_.next(fresh, stale);
    }

private:
    void beginFade() {
        values_ = wanted_;
        old_ = now_;
        now_ = Module(values_, rate_, &*old_);
        left_ = fadeLength(rate_);
        ramp_ = CRamp(left_);
    }

    double rate_;
    Values values_;
    Values wanted_;
    Module now_;
    std::optional<Module> old_;
    int64_t left_ = 0;
    CRamp ramp_{1};
};

/// A band's peak; a change keeps the history.
class CBand {
public:
    struct Values {
        double frequency;
        double gain;
        bool operator==(const Values&) const = default;
    };
    CBand(const Values& values, double rate, const CBand* before);
    double next(double x) { return biquad_.next(x); }

private:
    CBiquad biquad_;
};

/// Output gain; muted, it gives noise that restarts with each change.
class CGain {
public:
    struct Values {
        double gain;
        bool isMuted;
        bool operator==(const Values&) const = default;
    };
    CGain(const Values& values, double rate, const CGain* before) : values_(values) { (void)rate, (void)before; }
    double next(double x) { return values_.isMuted ? noise_.next() : x * values_.gain; }

private:
    Values values_;
    CNoise noise_;
};

/// Passes the processed or the dry signal, or noise that restarts with each change.
class CBypass {
public:
    enum class Values { kProcessed, kDry, kNoise };
    CBypass(Values choice, double rate, const CBypass* before) : choice_(choice) { (void)rate, (void)before; }
    double next(double x, double dry) {
        return choice_ == Values::kNoise ? noise_.next() : choice_ == Values::kDry ? dry : x;
    }

private:
    Values choice_;
    CNoise noise_;
};

}  // namespace tarv::reference
