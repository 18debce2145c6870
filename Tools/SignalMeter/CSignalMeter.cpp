#include "Tools/SignalMeter/CSignalMeter.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace tarv {

namespace {

// Below this there is nothing: 32-bit files end at -150 dB, the plug-in's own noise at -215 dB.
constexpr double kFloorPower = 1e-30;

double powerDb(double power) {
    return 10.0 * std::log10(std::max(power, kFloorPower));
}

}  // namespace

CSignalMeter::CSignalMeter(int channels, double rate)
    : channels_(channels),
      rate_(rate),
      peak_(channels),
      squares_(channels),
      window_(kWindow),
      scratch_(kWindow),
      power_(kWindow / 2 + 1),
      history_(channels, std::vector<double>(kWindow)),
      bins_(kWindow / 2 + 1),
      transform_(kWindow / 2, false) {
    for (int i = 0; i < kWindow; ++i)
        window_[i] = 0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * i / kWindow);
}

void CSignalMeter::add(std::span<const double> samples) {
    for (size_t at = 0; at + channels_ <= samples.size(); at += channels_) {
        for (int channel = 0; channel < channels_; ++channel) {
            const double value = samples[at + channel];
            peak_[channel] = std::max(peak_[channel], std::abs(value));
            squares_[channel] += value * value;
            history_[channel][filled_] = value;
        }
        ++frames_;
        if (++filled_ == kWindow) {
            transformWindow();
            for (std::vector<double>& history : history_)
                std::copy(history.begin() + kWindow / 2, history.end(), history.begin());
            filled_ = kWindow / 2;
        }
    }
}

void CSignalMeter::transformWindow() {
    // A sine of full scale gives a bin of 1: the window's mean is a half, and a real signal has half its level there.
    constexpr double kScale = 4.0 / kWindow;
    for (const std::vector<double>& history : history_) {
        std::transform(history.begin(), history.end(), window_.begin(), scratch_.begin(), std::multiplies<>());
        transform_.transform_real(scratch_.data(), bins_.data());
        // The real transform packs the last bin beside the first one; neither lies in a band.
        for (int bin = 1; bin < kWindow / 2; ++bin)
            power_[bin] += std::norm(bins_[bin] * kScale);
    }
    ++windows_;
}

double CSignalMeter::peakDb(int channel) const {
    return 20.0 * std::log10(peak_[channel]);
}

double CSignalMeter::rmsDb(int channel) const {
    return 10.0 * std::log10(squares_[channel] / static_cast<double>(std::max<std::int64_t>(frames_, 1)));
}

std::vector<CSignalMeter::CBand> CSignalMeter::finishSpectrum() {
    const bool isSeen = windows_ > 0 && filled_ == kWindow / 2;
    if (!isSeen && filled_ > 0) {
        for (std::vector<double>& history : history_)
            std::fill(history.begin() + filled_, history.end(), 0.0);
        transformWindow();
    }
    std::vector<CBand> bands;
    const double width = std::pow(2.0, 1.0 / 24.0);
    const double count = static_cast<double>(std::max<std::int64_t>(windows_, 1) * channels_);
    for (double hz = 20.0; hz * width < rate_ / 2; hz *= width * width) {
        const int first = static_cast<int>(std::lround(hz / width * kWindow / rate_));
        const int last = std::max(static_cast<int>(std::lround(hz * width * kWindow / rate_)), first + 1);
        double sum = 0.0;
        for (int bin = first; bin < last; ++bin)
            sum += power_[bin];
        bands.push_back({hz, powerDb(sum / (last - first) / count)});
    }
    return bands;
}

void writeReport(CSignalMeter& meter, int channels, std::ostream& out) {
    char line[96];
    out << "# frames " << meter.frames() << '\n';
    for (int channel = 0; channel < channels; ++channel) {
        std::snprintf(line, sizeof line, "# channel %d peak %.2f rms %.2f\n", channel + 1, meter.peakDb(channel),
                      meter.rmsDb(channel));
        out << line;
    }
    for (const CSignalMeter::CBand& band : meter.finishSpectrum()) {
        std::snprintf(line, sizeof line, "%.3f %.3f\n", band.hz, band.db);
        out << line;
    }
}

}  // namespace tarv
