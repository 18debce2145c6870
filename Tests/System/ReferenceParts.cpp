#include "Tests/System/ReferenceParts.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace tarv::reference {

double CNoise::bit() {
    const double b = (seed_ >> 23) & 1;
    seed_ = seed_ * 30013 + 30011;
    return b;
}

double CNoise::addTo(double x) {
    return x - 1e-11 + bit() * 2e-11;
}

double CNoise::next() {
    return bit() * 2e-11 - 1e-11;
}

double CBiquad::next(double x) {
    const double t = s2_;
    s2_ = s1_;
    s1_ = s1_ * design.a1 + design.a2 * t + x;
    return (design.b1 * s2_ + s1_ + design.b2 * t) * design.gain;
}

double COnePoleHighPass::next(double x) {
    v_ += (x - v_) * k_;
    return x - v_;
}

double CHalfBand::CAllPass::next(double x) {
    const double y = (x - y2) * c + x2;
    x2 = std::exchange(x1, x);
    y2 = std::exchange(y1, y);
    return y;
}

CHalfBand::CHalfBand(const CHalfBandDesign& design) {
    for (double c : design.a) {
        a_.push_back({c});
    }
    for (double c : design.b) {
        b_.push_back({c});
    }
}

double CHalfBand::next(double x) {
    double ya = x;
    for (CAllPass& section : a_) {
        ya = section.next(ya);
    }
    double yb = x;
    for (CAllPass& section : b_) {
        yb = section.next(yb);
    }
    return (ya + std::exchange(lateB_, yb)) * 0.5;
}

namespace {

/// One filter a doubling, in order of rising rate.
std::vector<CHalfBand> filtersOf(int stages) {
    std::vector<CHalfBand> filters;
    for (int stage = 0; stage < stages; ++stage) {
        filters.emplace_back(stage == 0 ? steepHalfBand() : softHalfBand());
    }
    return filters;
}

}  // namespace

CUpsampler::CUpsampler(int stages) : filters_(filtersOf(stages)) {}

std::vector<double> CUpsampler::next(double x) {
    std::vector<double> samples = {x};
    for (CHalfBand& filter : filters_) {
        std::vector<double> raised;
        for (double sample : samples) {
            raised.push_back(filter.next(2.0 * sample));
            raised.push_back(filter.next(0.0));
        }
        samples = std::move(raised);
    }
    return samples;
}

CDownsampler::CDownsampler(int stages) : filters_(filtersOf(stages)) {}

double CDownsampler::next(std::vector<double> samples) {
    for (auto filter = filters_.rbegin(); filter != filters_.rend(); ++filter) {
        std::vector<double> lowered;
        for (size_t i = 0; i < samples.size(); i += 2) {
            lowered.push_back(filter->next(samples[i]));
            filter->next(samples[i + 1]);
        }
        samples = std::move(lowered);
    }
    return samples[0];
}

double CTube::next(double x, double feed) {
    const double shaped = x * design_.gainI + design_.biasI;
    const double a = design_.curveA.at(shaped);
    const double b = design_.curveB.at(shaped);
    const double mix = (s_ + (feed - s_) * design_.feedCoefficient) * design_.gainV + design_.biasV;
    s_ = (a - design_.restOutput) + (b - a) * mix;
    return design_.autoGain * s_;
}

int64_t fadeLength(double rate) {
    return std::llround(0.015 * rate);
}

CRamp::CRamp(int64_t count) {
    const double p = 0.5 * std::numbers::pi;
    const double d = std::numbers::pi / static_cast<double>(count);
    r0_ = std::sin(p) * 0.5;
    r1_ = std::sin(p - d) * 0.5;
    r2_ = 2.0 * std::cos(d);
}

double CRamp::next(double fresh, double stale) {
    const double y = (0.5 - r0_) * fresh + (0.5 + r0_) * stale;
    r1_ = std::exchange(r0_, r0_ * r2_ - r1_);
    return y;
}

CBand::CBand(const Values& values, double rate, const CBand* before) {
    if (before) {
        biquad_ = before->biquad_;
    }
    biquad_.design = designPeak(values.frequency, values.gain, 1.5, rate);
}

}  // namespace tarv::reference
