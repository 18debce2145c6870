#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Benchmarks/CBlockClock.h"
#include "CVstHost.h"

namespace tarv::bench {

/// Which parameters a host sets before every block.
enum class CMoves {
    None,
    Bands,  ///< of group A
    All     ///< every one with a range: bands and output gains of both groups. The others are switches
};

/// How an instance runs.
struct CLayout {
    int32_t channels;  ///< routed, 1 to 8
    int32_t frames;    ///< of a block
    int32_t stages;    ///< of oversampling: 0 is 1x, 3 is 8x
    CMoves moves;
};

constexpr double kRate = 48000.0;
constexpr int32_t kMostChannels = 8;
/// Inputs and outputs of the plug-in, in a host that does not say how many it has.
constexpr int32_t kPorts = 16;

/// A host's chunk that routes channels, curves and the rate of a layout; any build of the plug-in reads it. Empty if
/// no instance can be made.
std::string chunkOf(const CLayout& layout);

/// Blocks of input in turn, as few as the caches of a processor hold. Every build reads the same ones.
class CInput {
public:
    /// Noise between -`level` and `level`; 0 is silence.
    explicit CInput(double level);
    /// The channels at the block of this number.
    double* const* block(int64_t round, int32_t frames);

private:
    static constexpr int32_t kLength = 2048;

    std::vector<double> samples_;
    std::vector<double*> pointers_;
};

/// An instance of one build in a host that plays. A build's library stays loaded as long.
class CPluginRun {
public:
    /// Makes and opens the effect; false if there is none, or one with other ports.
    bool open(vst::EntryProc entry);
    /// Gives it a state while it is suspended; false if it refuses it.
    bool configure(const CLayout& layout, const std::string& chunk);
    void resume() { host_.resume(); }
    /// All three.
    bool start(vst::EntryProc entry, const CLayout& layout, const std::string& chunk);
    /// Sets what the layout moves.
    void move(int64_t round);
    /// Processes one block; what it takes by the clock.
    double process(CInput& input, int64_t round, CBlockClock& clock);
    bool soundsAs(const CPluginRun& other) const { return out_ == other.out_; }

private:
    void findMoved(CMoves moves);

    host::CVstHost host_;
    int32_t frames_ = 0;
    std::vector<int32_t> moved_;
    std::vector<std::vector<double>> out_;
    std::vector<double*> outputs_;
};

}  // namespace tarv::bench
