#pragma once

#include <kissfft/kissfft.hh>

#include <complex>
#include <cstdint>
#include <ostream>
#include <span>
#include <vector>

namespace tarv {

/// Measures a stream of audio while it passes: peak and RMS of each channel, and the long-term spectrum.
///
/// The spectrum is the mean of the channels' power spectra over Hann windows of kWindow frames that overlap by half
/// (P. Welch, "The use of fast Fourier transform for the estimation of power spectra", 1967), averaged over bands of a
/// twelfth of an octave from 20 Hz. 0 dB is the power in one bin of a sine of full scale, so white noise lies flat.
/// What is shorter than a window is measured with zeros behind it.
class CSignalMeter {
public:
    static constexpr int kWindow = 16384;

    /// One band of the spectrum: its centre in hertz and its mean level in decibels.
    struct CBand {
        double hz;
        double db;
    };

    /// `channels` from 1 up, `rate` in hertz above 0.
    CSignalMeter(int channels, double rate);

    /// Takes whole frames of interleaved samples, any number of them.
    void add(std::span<const double> samples);

    [[nodiscard]] std::int64_t frames() const { return frames_; }
    /// In decibels to full scale; -inf for silence.
    [[nodiscard]] double peakDb(int channel) const;
    [[nodiscard]] double rmsDb(int channel) const;
    /// Measures what is left in the last window, then gives the bands. Call it once, after the last add.
    [[nodiscard]] std::vector<CBand> finishSpectrum();

private:
    void transformWindow();

    int channels_;
    double rate_;
    std::int64_t frames_ = 0;
    std::int64_t windows_ = 0;
    int filled_ = 0;
    std::vector<double> peak_, squares_;
    std::vector<double> window_, scratch_, power_;
    std::vector<std::vector<double>> history_;
    std::vector<std::complex<double>> bins_;
    kissfft<double> transform_;
};

/// Writes a report that a plot program reads: the levels as lines that begin with `#`, then a line for each band.
void writeReport(CSignalMeter& meter, int channels, std::ostream& out);

}  // namespace tarv
