#pragma once

#include <complex>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "CPlainInstance.h"
#include "Tests/Product/ParamPaths.h"

namespace tarv::engine {

/// Drives one whole instance from a test: settings before it starts, changes at frames, any cut into blocks.

inline constexpr int32_t kBands = 7;

/// One number of a parameter, in real units (gains as factors).
struct CSet {
    const char* param;
    int32_t group;
    int32_t element;
    double value;
};

/// From this frame on; a block boundary is put there.
struct CEvent {
    int64_t frame;
    CSet set;
};

struct CSetup {
    double rate = 44100.0;
    int32_t channels = 2;
    std::vector<CSet> sets;
};

/// One row of samples a channel, all of one length.
using CSignal = std::vector<std::vector<double>>;
/// Frames of the next block, 1 and up.
using CCut = std::function<int32_t()>;

double factorOf(double db);
/// Decibels below full scale; -400 for 0.
double decibels(double factor);

/// A running instance; a failure to make one ends the test program, since nothing works then.
std::unique_ptr<CPlainInstance> start(const CSetup& setup);
void apply(CPlainInstance& instance, const CSet& set);
/// Routing of the first `channels` elements straight through, all others off; 2x to 8x as stages 1 to 3.
std::vector<CSet> straight(int32_t channels, int32_t stages);
/// Channels 1 and 2 as one pair, the mid under group A and the side under group B.
std::vector<CSet> midSide();

/// Blocks of one size.
CCut cutInto(int32_t frames);
/// Sizes from 1 to `longest`, the same for the same seed.
CCut cutAtRandom(int32_t longest, uint32_t seed);
/// Runs the signal through, each event in front of the block that begins at its frame. Events in order of frames.
/// In place the host hands over the same buffers for both directions.
CSignal render(CPlainInstance& instance, const CSignal& input, const std::vector<CEvent>& events = {},
               const CCut& cut = cutInto(512), bool inPlace = false);

/// Independent white noise a channel, uniform in -level..level.
CSignal noise(int32_t channels, size_t frames, double level, uint32_t seed = 1);
/// The same sine in all channels, beginning at the phase in radians.
CSignal sine(int32_t channels, size_t frames, double hz, double rate, double level, double phase = 0.0);
/// Silence appended.
CSignal silence(int32_t channels, size_t frames);
double peak(const std::vector<double>& row, size_t from = 0);
double peak(const CSignal& signal, size_t from = 0);
/// Components of the last `count` samples of a row, each of a whole number of cycles in that stretch: no window, so no
/// leakage, only rounding stands between them. A component of amplitude a has the absolute value a.
class CBins {
public:
    CBins(const std::vector<double>& row, size_t count);
    std::complex<double> at(size_t cycles) const;
    double amplitude(size_t cycles) const { return std::abs(at(cycles)); }

private:
    std::vector<double> samples_;
    std::vector<std::complex<double>> turn_;
};
/// The same sine of `cycles` whole cycles in each `count` frames in all channels.
CSignal periodicSine(int32_t channels, size_t frames, size_t cycles, size_t count, double level);
/// Row and frame of the first difference in any bit, or -1 and -1.
struct CDifference {
    int32_t channel = -1;
    int64_t frame = -1;
    bool operator==(const CDifference&) const = default;
};
CDifference firstDifference(const CSignal& one, const CSignal& other);
std::ostream& operator<<(std::ostream& out, const CDifference& difference);

/// Long forms of tests are asked for by the environment variable TARV_LONG=1.
bool isLong();
/// How often a loop that takes the same paths each time runs: `count` in a plain build, `thin` under a sanitizer, which
/// looks at the paths and not at the figures; `count` there, too, in long forms.
int32_t repeats(int32_t count, int32_t thin);

}  // namespace tarv::engine
