// What a block costs in two builds of the plug-in, an instance of each in turn in one run:
// `CompareBlocks BEFORE.so AFTER.so`. Prints a row for each layout: nanoseconds a frame, and their ratio.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "CPluginLibrary.h"
#include "CVstHost.h"

using namespace tarv;

namespace {

constexpr int32_t kWarmUp = 300;
constexpr int32_t kRounds = 6000;
constexpr double kRate = 44100.0;
/// As many as the plug-in has; two of them are routed.
constexpr size_t kChannels = 16;

struct CLayout {
    int32_t frames;
    float oversampling;  ///< normalised: 0.25 is 1x, 1 is 8x
    bool isAutomated;    ///< a gesture on every band: no run is steady, so that scheduling and fades count
};
constexpr CLayout kLayouts[] = {
    {32, 0.25f, false}, {512, 0.25f, false}, {512, 1.0f, false}, {32, 0.25f, true}, {512, 0.25f, true}};

class CSide {
public:
    explicit CSide(const char* path) : path_(path) {}

    bool open() {
        std::string error;
        if (!library_.load(path_, error) || !host_.open(library_.entry()) ||
            std::max(host_.effect()->numInputs, host_.effect()->numOutputs) > static_cast<int32_t>(kChannels)) {
            std::fprintf(stderr, "CompareBlocks: %s: %s\n", path_.c_str(), error.empty() ? "no effect" : error.c_str());
            return false;
        }
        return true;
    }

    void prepare(const CLayout& layout) {
        host_.suspend();
        host_.prepare(kRate, layout.frames, 1);
        host_.setParameter(host_.findParameter("Oversmp"), layout.oversampling);
        for (int32_t band = 0; band < kBands; ++band) {
            bands_[band] = host_.findParameter("EQA" + std::to_string(band));
            host_.setParameter(bands_[band], 0.3f + 0.08f * band);
        }
        out_.assign(kChannels, std::vector<double>(static_cast<size_t>(layout.frames)));
        host_.resume();
        times_.clear();
    }

    void moveBands(int32_t round) {
        for (const int32_t band : bands_) {
            host_.setParameter(band, 0.3f + 0.004f * (round % 100));
        }
    }

    void process(std::vector<std::vector<double>>& in, int32_t frames) {
        double* inputs[kChannels];
        double* outputs[kChannels];
        for (size_t c = 0; c < kChannels; ++c) {
            inputs[c] = in[c].data();
            outputs[c] = out_[c].data();
        }
        const auto start = std::chrono::steady_clock::now();
        host_.process(inputs, outputs, frames);
        times_.push_back(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
    }

    const std::vector<double>& times() const { return times_; }
    bool soundsAs(const CSide& other) const { return out_ == other.out_; }

private:
    static constexpr int32_t kBands = 7;

    std::string path_;
    host::CPluginLibrary library_;
    host::CVstHost host_;
    std::vector<std::vector<double>> out_;
    std::vector<double> times_;
    int32_t bands_[kBands] = {};
};

double medianOf(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<int64_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

void compare(CSide& before, CSide& after, const CLayout& layout) {
    before.prepare(layout);
    after.prepare(layout);
    std::mt19937 random(1);
    std::uniform_real_distribution<double> noise(-0.5, 0.5);
    std::vector<std::vector<double>> in(kChannels, std::vector<double>(static_cast<size_t>(layout.frames)));
    bool isSame = true;
    for (int32_t round = 0; round < kWarmUp + kRounds; ++round) {
        for (std::vector<double>& channel : in) {
            std::generate(channel.begin(), channel.end(), [&] { return noise(random); });
        }
        // Each goes first as often as the other: the second finds the input in the cache.
        CSide& first = round % 2 == 0 ? before : after;
        CSide& second = round % 2 == 0 ? after : before;
        // Not before the first block: what is set there begins without a fade, which older builds did not do.
        if (layout.isAutomated && round > 0) {
            first.moveBands(round);
            second.moveBands(round);
        }
        first.process(in, layout.frames);
        second.process(in, layout.frames);
        isSame = isSame && after.soundsAs(before);
    }
    const std::vector<double> a(before.times().begin() + kWarmUp, before.times().end());
    const std::vector<double> b(after.times().begin() + kWarmUp, after.times().end());
    // Over pairs of rounds, so that both have gone first once.
    std::vector<double> ratios;
    for (size_t i = 0; i + 1 < a.size(); i += 2) {
        ratios.push_back((b[i] + b[i + 1]) / (a[i] + a[i + 1]));
    }
    const double scale = 1e9 / layout.frames;
    std::printf(
        "%4d frames, %s, %s   before %7.2f   after %7.2f ns a frame   ratio of medians %.4f, of pairs %.4f   %s\n",
        layout.frames, layout.oversampling == 1.0f ? "8x" : "1x", layout.isAutomated ? "moved " : "steady",
        medianOf(a) * scale, medianOf(b) * scale, medianOf(b) / medianOf(a), medianOf(ratios),
        isSame ? "same bits" : "other bits");
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "CompareBlocks BEFORE AFTER: two files of the plug-in, built for this system\n");
        return 2;
    }
    CSide before(argv[1]);
    CSide after(argv[2]);
    if (!before.open() || !after.open()) {
        return 1;
    }
    for (const CLayout& layout : kLayouts) {
        compare(before, after, layout);
    }
    return 0;
}
