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
    bool isFloat = false;      ///< the host's buffers have 32 bits, otherwise 64
    bool isMoveTimed = false;  ///< setting the parameters is what is timed, instead of the block behind it
};

constexpr double kRate = 48000.0;
constexpr int32_t kMostChannels = 8;
/// Of a group.
constexpr int32_t kBands = 7;
/// Inputs and outputs of the plug-in, in a host that does not say how many it has.
constexpr int32_t kPorts = 16;

/// A host's chunk that routes channels, curves and the rate of a layout; any build of the plug-in reads it. Empty if
/// no instance can be made.
std::string chunkOf(const CLayout& layout);

/// Channels of a host, in the format T.
template <class T>
class CHostBuffers {
public:
    explicit CHostBuffers(int32_t length) : length_(length), samples_(kPorts * static_cast<size_t>(length)) {}
    std::vector<T>& samples() { return samples_; }
    const std::vector<T>& samples() const { return samples_; }
    /// The channels from frame `start` on.
    T** at(int32_t start) {
        for (int32_t c = 0; c < kPorts; ++c) {
            pointers_[c] = samples_.data() + static_cast<int64_t>(c) * length_ + start;
        }
        return pointers_;
    }

private:
    int32_t length_;
    std::vector<T> samples_;
    T* pointers_[kPorts];
};

/// Blocks of input in turn, as few as the caches of a processor hold. Every build reads the same ones.
class CInput {
public:
    /// Noise between -`level` and `level`; 0 is silence.
    explicit CInput(double level);
    /// The channels at the block of this number.
    template <class T>
    T** block(int64_t round, int32_t frames) {
        const auto start = static_cast<int32_t>(round % (kLength / frames)) * frames;
        if constexpr (sizeof(T) == sizeof(float)) {
            return floats_.at(start);
        } else {
            return doubles_.at(start);
        }
    }

private:
    static constexpr int32_t kLength = 2048;

    CHostBuffers<double> doubles_{kLength};
    CHostBuffers<float> floats_{kLength};
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
    /// Sets what the layout moves; what it takes by the clock.
    double move(int64_t round, CBlockClock& clock);
    /// Processes one block; what it takes by the clock.
    double process(CInput& input, int64_t round, CBlockClock& clock);
    bool soundsAs(const CPluginRun& other) const {
        return doubles_.samples() == other.doubles_.samples() && floats_.samples() == other.floats_.samples();
    }

private:
    host::CVstHost host_;
    int32_t frames_ = 0;
    std::vector<int32_t> moved_;
    bool isFloat_ = false;
    CHostBuffers<double> doubles_{0};
    CHostBuffers<float> floats_{0};
};

}  // namespace tarv::bench
