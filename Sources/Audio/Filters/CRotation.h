#pragma once

#include <cmath>

namespace tarv {

/// Turns a unit vector by the same angle at each step, which gives the sines and cosines of its multiples.
class CRotation {
public:
    explicit CRotation(double angle) : stepSine_(std::sin(angle)), stepCosine_(std::cos(angle)) {}

    double sine() const { return sine_; }
    double cosine() const { return cosine_; }
    void step() {
        const double sine = sine_ * stepCosine_ + cosine_ * stepSine_;
        cosine_ = cosine_ * stepCosine_ - sine_ * stepSine_;
        sine_ = sine;
    }

private:
    double stepSine_;
    double stepCosine_;
    double sine_ = 0.0;
    double cosine_ = 1.0;
};

}  // namespace tarv
