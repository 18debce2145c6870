#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "Audio/Kernels/TubeKernels.h"
#include "Benchmarks/PlainLoops.h"

namespace tarv::plain {

constexpr int32_t kBands = 7;

/// What the chain is set to; the product is set alike, though the cost of neither depends on it.
struct CChainSettings {
    int32_t channels = 2;
    int32_t stages = 0;  ///< of oversampling: 0 is 1x, 3 is 8x
    double rate = 44100.0;
    std::array<double, kBands> bandDb = {4.0, -3.0, 2.0, 5.0, -4.0, 3.0, 2.0};
    double outGain = 0.8;
};

/// The product's whole chain, hand-written: one plain loop for each kernel, one channel after the other, buffers that
/// are used again at once. Nothing else is in it: the cost that every figure of the plug-in is divided by.
class CPlainChain {
public:
    CPlainChain(const CChainSettings& settings, int32_t mostFrames) : settings_(settings) {
        for (int32_t c = 0; c < settings.channels; ++c) {
            channels_.emplace_back(settings, mostFrames);
        }
    }

    /// One block of `frames` samples of each channel at the host's rate.
    void process(const double* const* in, double* const* out, int32_t frames) {
        for (int32_t c = 0; c < settings_.channels; ++c) {
            channels_[static_cast<size_t>(c)].process(in[c], out[c], frames, settings_);
        }
    }

private:
    static constexpr int32_t kMostStages = 3;

    static CBiquadState peak(double hz, double db, double rate) {
        const double a = std::pow(10.0, db / 40.0);
        const double w = 2.0 * std::numbers::pi * hz / rate;
        const double alpha = std::sin(w) * std::sinh(std::numbers::ln2 * 0.75 * w / std::sin(w));
        const double b0 = 1.0 + alpha * a;
        const double a0 = 1.0 + alpha / a;
        const double middle = -2.0 * std::cos(w);
        return {middle / b0, (1.0 - alpha * a) / b0, -middle / a0, -(1.0 - alpha / a) / a0, 0.0, 0.0};
    }

    static COnePoleState highPassOf(double hz, double rate) {
        const double a = 2.0 - std::cos(2.0 * std::numbers::pi * hz / rate);
        return {(1.0 - a) + std::sqrt(a * a - 1.0), 0.0};
    }

    static CTubeBlock tubeOf(double rate) {
        CTubeBlock block = {};
        block.ratioA = 1.0 / 1.05;
        block.ratioB = 1.0 / 1.1;
        block.kneeA = 3.5;
        block.kneeB = 4.8;
        block.biasI = -1.8;
        block.biasV = 0.5;
        block.gainI = 1.0;
        block.gainV = 0.15;
        block.autoGainPoint = 1.009;
        block.feedFrequency = 50.0;
        COperation operation = {};
        operation.pointers[0] = &block;
        operation.immediate = rate;
        kernelMetaTubeInit(operation);
        return block;
    }

    struct CBand {
        CBiquadState filter;
        COnePoleState highPass;
        CTubeBlock tube;
    };

    class CChannel {
    public:
        CChannel(const CChainSettings& settings, int32_t mostFrames) {
            const double rate = settings.rate * (1 << settings.stages);
            pre_ = peak(4000.0, -20.0, rate);
            post_ = peak(4000.0, 20.0, rate);
            for (int32_t b = 0; b < kBands; ++b) {
                const auto i = static_cast<size_t>(b);
                bands_[i] = {peak(64.0 * std::pow(2.6, b), settings.bandDb[i], rate), highPassOf(6.0, rate),
                             tubeOf(rate)};
            }
            highPass_ = highPassOf(5.0, rate);
            for (int32_t way = 0; way < 2; ++way) {
                steep_[way].a[0] = 0.0358327884310621;
                steep_[way].a[1] = 0.27204014339645771;
                steep_[way].a[2] = 0.57205719723570025;
                steep_[way].a[3] = 0.82712476199732377;
                steep_[way].b[0] = 0.13409014194306693;
                steep_[way].b[1] = 0.42432487127186835;
                steep_[way].b[2] = 0.70629214213863922;
                steep_[way].b[3] = 0.94150309417375522;
                for (auto& soft : soft_[way]) {
                    soft.a[0] = 0.042454709865267684;
                    soft.a[1] = 0.39331989319032801;
                    soft.b[0] = 0.17073985049749907;
                    soft.b[1] = 0.74571358872022298;
                }
            }
            for (size_t i = 0; i < buffers_.size(); ++i) {
                // Starts 13 lines apart within the page, so that no two buffers of the loop collide in the cache.
                buffers_[i].resize(static_cast<size_t>(mostFrames << settings.stages) + 104 * (i + 1));
            }
        }

        void process(const double* in, double* out, int32_t frames, const CChainSettings& settings) {
            double* x = buffers_[0].data() + 104;
            double* y = buffers_[1].data() + 208;
            double* z = buffers_[2].data() + 312;
            denorm(x, seed_, in, frames);
            int32_t count = frames;
            for (int32_t s = 0; s < settings.stages; ++s) {
                interpolate(y, x, count);
                count *= 2;
                filterStage(x, y, 0, s, count);
            }
            biquad(y, pre_, x, 0.3, count);
            std::swap(x, y);
            for (CBand& band : bands_) {
                biquad(y, band.filter, x, 0.97, count);
                highPass(z, band.highPass, y, 1.0, count);
                tube(y, band.tube, z, x, count);
                std::swap(x, y);
            }
            biquad(y, post_, x, 3.0, count);
            highPass(x, highPass_, y, 1.0, count);
            if (settings.stages == 0) {
                mulc(out, x, settings.outGain, count);
                return;
            }
            mulc(y, x, settings.outGain, count);
            for (int32_t s = settings.stages - 1; s >= 0; --s) {
                filterStage(x, y, 1, s, count);
                count /= 2;
                decimate(s == 0 ? out : y, x, count);
            }
        }

    private:
        void filterStage(double* out, const double* in, int32_t way, int32_t stage, int32_t count) {
            if (stage == 0) {
                halfBand(out, steep_[way], in, 0.5, count);
            } else {
                halfBand(out, soft_[way][stage - 1], in, 0.5, count);
            }
        }

        CBiquadState pre_, post_;
        COnePoleState highPass_;
        std::array<CBand, kBands> bands_;
        CHalfBandState<4> steep_[2];
        CHalfBandState<2> soft_[2][kMostStages - 1];
        uint32_t seed_ = 0;
        std::array<std::vector<double>, 3> buffers_;
    };

    CChainSettings settings_;
    std::vector<CChannel> channels_;
};

}  // namespace tarv::plain
