#pragma once

namespace tarv {

/// A sum of cosines over the taps, 1 in the middle: c0 + c1 cos + c2 cos 2 + c3 cos 3 (F. J. Harris, "On the use of
/// windows for harmonic analysis with the discrete Fourier transform", Proc. IEEE 66/1, 1978).
struct CFirWindow {
    double c[4];

    /// `cosine` is that of the angle from the middle, which is pi just beyond the last tap.
    double at(double cosine) const {
        const double cosine2 = 2.0 * cosine * cosine - 1.0;
        const double cosine3 = cosine * (2.0 * cosine2 - 1.0);
        return c[0] + c[1] * cosine + c[2] * cosine2 + c[3] * cosine3;
    }
};

constexpr CFirWindow kHannWindow = {{0.5, 0.5, 0.0, 0.0}};
constexpr CFirWindow kBlackmanWindow = {{0.42, 0.5, 0.08, 0.0}};
constexpr CFirWindow kNuttallWindow = {{0.355768, 0.487396, 0.144232, 0.012604}};

}  // namespace tarv
