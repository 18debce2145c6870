// A host's buffers may be one for both directions, crossed, one for several outputs, at odd addresses. While nothing
// changes an instance works in them itself. What stands in a host's memory afterwards is what one gives that computes
// all outputs of a block before it writes the first.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <limits>

#include "Audio/Context/CQPLEXContext.h"
#include "Audio/Context/CSignalPlaces.h"
#include "Audio/Graph/CAudioGraphObserver.h"
#include "Tests/System/RandomScript.h"

namespace tarv::engine {
namespace {

/// While the graph has an observer nothing is recorded.
class CWatcher : public CAudioGraphObserver {
public:
    void processed(CAudioProcessBase&) override {}
};

/// Where the buffers of a block lie in a stretch of memory, in samples; -1: the host gives none.
struct CPlacement {
    std::vector<int32_t> inputs;
    std::vector<int32_t> outputs;
    bool areOutputsApart = true;
};

CPlacement placeBuffers(CRandom& random, int32_t channels, int32_t frames) {
    CPlacement placement;
    const int32_t kind = random.below(6);
    placement.areOutputsApart = kind < 2 || kind > 3;
    for (int32_t c = 0; c < channels; ++c) {
        placement.inputs.push_back(c * frames);
        switch (kind) {
            case 0:  // in place
                placement.outputs.push_back(c * frames);
                break;
            case 1:  // each in the place of another one
                placement.outputs.push_back((c + 1) % channels * frames);
                break;
            case 2:  // one for all
                placement.outputs.push_back(channels * frames);
                break;
            case 3:  // one for some
                placement.outputs.push_back((channels + random.below(channels)) * frames);
                break;
            case 4:  // some missing
                placement.outputs.push_back(random.below(3) == 0 ? -1 : (channels + c) * frames);
                placement.inputs.back() = random.below(8) == 0 ? -1 : placement.inputs.back();
                break;
            default:
                placement.outputs.push_back((channels + c) * (frames + 3) + random.below(3));
        }
    }
    return placement;
}

/// What a host's memory holds around the buffers of a block.
template <class Sample>
class CHostMemory {
public:
    /// In front of blocks of `frames` frames of `channels` channels.
    void resize(int32_t channels, int32_t frames) {
        samples_.resize(static_cast<size_t>(2 * channels) * static_cast<size_t>(frames + 3) + 64);
    }
    /// Noise, and now and then what no sample should be.
    void fill(CRandom& random, double level, bool areWrong) {
        constexpr Sample kWrong[] = {std::numeric_limits<Sample>::infinity(), -std::numeric_limits<Sample>::infinity(),
                                     std::numeric_limits<Sample>::quiet_NaN(), std::numeric_limits<Sample>::max(),
                                     std::numeric_limits<Sample>::denorm_min()};
        for (Sample& sample : samples_) {
            sample = static_cast<Sample>(random.between(-level, level));
        }
        for (int32_t i = areWrong ? 5 : 0; i > 0; --i) {
            samples_[static_cast<size_t>(random.below(static_cast<int32_t>(samples_.size())))] = random.of(kWrong);
        }
    }
    Sample* at(int32_t place) { return place == -1 ? nullptr : samples_.data() + place; }
    const std::vector<Sample>& samples() const { return samples_; }

    /// What it must hold when `instance` has worked on a block.
    std::vector<Sample> expected(CPlainInstance& instance, const CPlacement& placement, int32_t frames) {
        std::vector<std::vector<Sample>> rows;
        std::vector<const Sample*> in;
        std::vector<std::vector<Sample>> results(placement.outputs.size(), std::vector<Sample>(frames));
        std::vector<Sample*> out;
        for (const int32_t place : placement.inputs) {
            rows.emplace_back(place == -1 ? samples_.begin() : samples_.begin() + place,
                              place == -1 ? samples_.begin() : samples_.begin() + place + frames);
        }
        for (size_t c = 0; c < rows.size(); ++c) {
            in.push_back(placement.inputs[c] == -1 ? nullptr : rows[c].data());
            out.push_back(placement.outputs[c] == -1 ? nullptr : results[c].data());
        }
        instance.processBlock(in.data(), out.data(), frames);
        std::vector<Sample> expected = samples_;
        for (size_t c = 0; c < rows.size(); ++c) {
            if (placement.outputs[c] != -1) {
                std::copy(results[c].begin(), results[c].end(), expected.begin() + placement.outputs[c]);
            }
        }
        return expected;
    }
    void run(CPlainInstance& instance, const CPlacement& placement, int32_t frames) {
        std::vector<const Sample*> in;
        std::vector<Sample*> out;
        for (size_t c = 0; c < placement.inputs.size(); ++c) {
            in.push_back(at(placement.inputs[c]));
            out.push_back(at(placement.outputs[c]));
        }
        instance.processBlock(in.data(), out.data(), frames);
    }

private:
    std::vector<Sample> samples_;
};

/// Two instances with one script: one works in a host's memory, the other one beside it.
class CHostPair {
public:
    explicit CHostPair(uint32_t seed) : random_(seed), script_(CScriptMaker(seed).make(kFrames)) {
        beside_->graph().observer = &watcher_;
    }
    ~CHostPair() { beside_->graph().observer = nullptr; }

    /// Blocks of one length and placement, as a host gives them for some time, in one format or the other.
    void run() {
        const CCut cut = cutIntoStretches(random_.below(1000));
        int32_t frames = 0;
        CPlacement placement;
        bool areFloats = false;
        for (int64_t at = 0; at < kFrames && !testing::Test::HasFailure(); at += frames) {
            const int32_t next = cut();
            if (next != frames || random_.below(40) == 0) {
                placement = placeBuffers(random_, script_.setup.channels, next);
                areFloats = random_.below(3) == 0;
            }
            frames = next;
            for (; event_ < script_.events.size() && script_.events[event_].frame <= at; ++event_) {
                apply(*within_, script_.events[event_].set);
                apply(*beside_, script_.events[event_].set);
            }
            // What is too loud ends a block early in all outputs: then their order tells nothing.
            const bool isWrong = placement.areOutputsApart && random_.below(20) == 0;
            const double level = isWrong && random_.below(3) == 0 ? 1e300 : 0.5;
            if (areFloats) {
                compare(floats_, placement, std::min(level, 1e30), isWrong, frames);
            } else {
                compare(doubles_, placement, level, isWrong, frames);
            }
        }
    }
    uint64_t repeats() const { return within_->context()->counters().repeats; }

private:
    static constexpr int64_t kFrames = 6000;

    template <class Sample>
    void compare(CHostMemory<Sample>& memory, const CPlacement& placement, double level, bool isWrong, int32_t frames) {
        memory.resize(script_.setup.channels, frames);
        memory.fill(random_, level, isWrong);
        const std::vector<Sample> expected = memory.expected(*beside_, placement, frames);
        memory.run(*within_, placement, frames);
        const std::vector<Sample>& got = memory.samples();
        if (std::memcmp(got.data(), expected.data(), got.size() * sizeof(Sample)) == 0) {
            return;
        }
        for (size_t i = 0; i < got.size(); ++i) {
            ASSERT_EQ(std::memcmp(&got[i], &expected[i], sizeof(Sample)), 0)
                << "sample " << i << " in blocks of " << frames << ": " << got[i] << ", not " << expected[i];
        }
    }

    CRandom random_;
    CScript script_;
    CWatcher watcher_;
    std::unique_ptr<CPlainInstance> within_ = start(script_.setup);
    std::unique_ptr<CPlainInstance> beside_ = start(script_.setup);
    CHostMemory<float> floats_;
    CHostMemory<double> doubles_;
    size_t event_ = 0;
};

TEST(HostBuffers, HoldTheSameWhereverTheyLie) {
    const int32_t seeds = isLong() ? 1000 : repeats(12, 3);
    uint64_t repeats = 0;
    for (int32_t seed = 1; seed <= seeds && !HasFailure(); ++seed) {
        SCOPED_TRACE(seed);
        CHostPair pair(static_cast<uint32_t>(seed));
        pair.run();
        repeats += pair.repeats();
    }
    EXPECT_GT(repeats, static_cast<uint64_t>(seeds)) << "hardly a run was repeated";
}

/// Runs blocks of 512 frames until they are repeated, and tells what the repeated run does with the host's buffers.
struct CEnds {
    int32_t read = 0;    ///< inputs that the run reads itself
    int32_t filled = 0;  ///< outputs that it fills itself

    template <class Sample>
    static CEnds of(const CSetup& setup, bool isInPlace) {
        const auto instance = start(setup);
        constexpr int32_t kFrames = 512;
        std::vector<std::vector<Sample>> inputs(setup.channels, std::vector<Sample>(kFrames, Sample(0.25)));
        std::vector<std::vector<Sample>> outputs = inputs;
        std::vector<const Sample*> in;
        std::vector<Sample*> out;
        for (size_t c = 0; c < inputs.size(); ++c) {
            out.push_back(outputs[c].data());
            in.push_back(isInPlace ? out[c] : inputs[c].data());
        }
        for (int32_t i = 0; i < 6; ++i) {
            instance->processBlock(in.data(), out.data(), kFrames);
        }
        CQPLEXContext& context = *instance->context();
        CEnds ends;
        for (size_t c = 0; c < inputs.size(); ++c) {
            ends.read += names(context, in[c], true);
            ends.filled += names(context, out[c], false);
        }
        return ends;
    }
    bool operator==(const CEnds& other) const = default;
    friend std::ostream& operator<<(std::ostream& stream, const CEnds& ends) {
        return stream << ends.read << " read, " << ends.filled << " filled";
    }

private:
    static bool names(CQPLEXContext& context, const void* samples, bool isRead) {
        CSignalPlaces places(static_cast<const double*>(samples), 512);
        context.recordedRun().findPlaces(places, context.endKernels());
        return isRead ? places.isRead() : places.isFilled();
    }
};

TEST(HostBuffers, AreWhereASteadyRunWorks) {
    for (const int32_t channels : {1, 2, 5, 8}) {
        for (int32_t stages = 0; stages < 4; ++stages) {
            const CSetup setup{48000.0, channels, straight(channels, stages)};
            EXPECT_EQ(CEnds::of<double>(setup, false), (CEnds{channels, channels})) << channels << " " << stages;
            EXPECT_EQ(CEnds::of<double>(setup, true).filled, channels) << channels << " " << stages;
            EXPECT_EQ(CEnds::of<float>(setup, false), (CEnds{channels, 0})) << channels << " " << stages;
        }
    }
}

TEST(HostBuffers, AreWhereASteadyRunInMidAndSideWorks) {
    EXPECT_EQ(CEnds::of<double>({48000.0, 2, midSide()}, false), (CEnds{2, 2}));
}

}  // namespace
}  // namespace tarv::engine
