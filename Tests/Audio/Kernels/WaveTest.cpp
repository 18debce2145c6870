// Waves against the kernels that they stand for, one after the other, in their plain forms.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <deque>
#include <limits>
#include <vector>

#include "Audio/Kernels/CTubeBlock.h"
#include "Audio/Kernels/CrossfadeKernels.h"
#include "Audio/Kernels/TubeKernels.h"
#include "Audio/Kernels/Wave/CInstructionSet.h"
#include "Audio/Kernels/Wave/WavePlan.h"
#include "Audio/Kernels/Wave/WaveSets.h"
#include "Tests/Audio/Kernels/CRandom.h"
#include "Tests/Audio/Kernels/KernelCases.h"
#include "Tests/Audio/Kernels/TestedSets.h"

namespace tarv {
namespace {

/// Samples behind a block, which nobody may write.
constexpr int32_t kBehind = 8;

const CKernelCase& caseOf(const char* name) {
    static const std::vector<CKernelCase> cases = allKernelCases();
    for (const CKernelCase& c : cases) {
        if (c.name == name) {
            return c;
        }
    }
    ADD_FAILURE() << name;
    return cases[0];
}

struct CShape {
    int32_t channels;
    int32_t bands;
    bool hasBefore;
    bool hasBehind;
    bool hasGain;
    int32_t fadedOfThree;  ///< how many of three bands fade their filters, drawn for each channel: 0 to 3
};

/// One channel of a chain: its operations in order, with signals and state blocks of its own.
class CChannel {
public:
    CChannel(const CShape& shape, CRandom& random) {
        if (shape.hasBefore) {
            addFilter(random);
        }
        for (int32_t b = 0; b < shape.bands; ++b) {
            const size_t feed = signals_ - 1;
            addFilter(random);
            isFaded_[b] = random.below(3) < shape.fadedOfThree;
            if (isFaded_[b]) {
                addFade(feed, random);
            }
            addHighPass(random);
            addTube(feed, random);
        }
        if (shape.hasBehind) {
            addFilter(random);
            addHighPass(random);
            if (shape.hasGain) {
                add("mulc", random.between(-2.0, 2.0));
            }
        }
    }

    /// Runs the plain forms over a block.
    void run(const std::vector<double>& in) {
        place(in);
        for (CStep& step : steps_) {
            COperation o = operation(step);
            caseOf(step.kernel).reference(o);
        }
    }
    /// The wave's channel over the same block. What stands between is not written.
    CWaveChannel wave(const CShape& shape, const std::vector<double>& in) {
        place(in);
        operations_.clear();
        for (CStep& step : steps_) {
            operations_.push_back(operation(step));
        }
        CWaveChannel channel = {};
        size_t next = 0;
        const auto take = [&] { return &operations_[next++]; };
        channel.before = shape.hasBefore ? take() : nullptr;
        channel.bandCount = shape.bands;
        for (int32_t b = 0; b < shape.bands; ++b) {
            channel.bands[b].filter = take();
            channel.bands[b].oldFilter = isFaded_[b] ? take() : nullptr;
            channel.bands[b].fade = isFaded_[b] ? take() : nullptr;
            channel.bands[b].highPass = take();
            channel.bands[b].tube = take();
        }
        if (shape.hasBehind) {
            channel.filterBehind = take();
            channel.highPassBehind = take();
            channel.gainBehind = shape.hasGain ? take() : nullptr;
        }
        return channel;
    }
    double* output() { return memory_.back().data(); }
    /// The output, eight samples behind it, and all state blocks.
    std::vector<uint64_t> bits() const {
        std::vector<uint64_t> all;
        const auto append = [&](const std::vector<double>& values) {
            for (const double value : values) {
                all.push_back(std::bit_cast<uint64_t>(value));
            }
        };
        append(memory_.back());
        for (const CStep& step : steps_) {
            append(step.block);
        }
        return all;
    }

private:
    struct CStep {
        const char* kernel;
        double immediate;
        std::vector<double> block;
        size_t source;
        size_t second;
    };

    /// Reads what the step before gives, and a second signal.
    void add(const char* kernel, double immediate, std::vector<double> block = {}, size_t second = 0) {
        steps_.push_back({kernel, immediate, std::move(block), signals_ - 1, second});
        ++signals_;
    }
    /// The filter with the old values, which reads `feed`, and the ramp between it and the new one.
    void addFade(size_t feed, CRandom& random) {
        addFilter(random);
        steps_.back().source = feed;
        const size_t old = signals_ - 1;
        COperation init = {};
        std::vector<double> ramp(3);
        init.pointers[0] = ramp.data();
        init.count = 1 + random.below(900);
        init.immediate = random.between(0.0, 0.4);
        kernelXfadeInit(init);
        add("xfade", 0.0, std::move(ramp), old);
        steps_.back().source = old - 1;
    }
    void addFilter(CRandom& random) {
        const double radius = random.between(0.3, 0.999);
        const double angle = random.between(0.001, 3.1);
        add("fltbiqcommong", random.between(0.2, 0.8),
            {random.between(-1.9, 1.9), random.between(-0.95, 0.95), 2.0 * radius * std::cos(angle), -radius * radius,
             random.between(-0.1, 0.1), random.between(-0.1, 0.1)});
    }
    void addHighPass(CRandom& random) {
        add("flthp1ag", random.below(2) ? 1.0 : random.between(0.5, 1.5),
            {random.between(1e-4, 0.1), random.between(-0.1, 0.1), 0.0, 0.0, 0.0});
    }
    void addTube(size_t feed, CRandom& random) {
        std::vector<double> block(sizeof(CTubeBlock) / sizeof(double));
        auto& tube = *reinterpret_cast<CTubeBlock*>(block.data());
        tube.ratioA = random.between(0.05, 1.0);
        tube.ratioB = random.between(0.05, 1.0);
        tube.kneeA = random.between(0.2, 3.0);
        tube.kneeB = random.between(0.2, 3.0);
        tube.biasI = random.between(-0.3, 0.3);
        tube.biasV = random.between(0.0, 1.0);
        tube.gainI = random.between(0.2, 1.5);
        tube.gainV = random.between(0.0, 0.5);
        tube.autoGainPoint = random.between(0.5, 1.0);
        tube.feedInverted = static_cast<uint8_t>(random.below(2));
        tube.feedFrequency = random.between(100.0, 5000.0);
        COperation init = {};
        init.pointers[0] = block.data();
        init.immediate = 48000.0;
        init.count = 1;
        kernelMetaTubeInit(init);
        add("metatube", 0.0, std::move(block), feed);
    }
    void place(const std::vector<double>& in) {
        memory_.resize(signals_);
        count_ = static_cast<int32_t>(in.size());
        for (size_t i = 0; i < memory_.size(); ++i) {
            memory_[i] = in;
            memory_[i].resize(in.size() + kBehind, 0.5);
        }
    }
    COperation operation(CStep& step) {
        const auto number = static_cast<size_t>(&step - steps_.data());
        COperation o = {};
        o.count = count_;
        o.immediate = step.immediate;
        o.pointers[0] = memory_[number + 1].data();
        o.pointers[1] = step.block.empty() ? static_cast<void*>(memory_[step.source].data()) : step.block.data();
        o.pointers[2] = memory_[step.source].data();
        o.pointers[3] = memory_[step.second].data();
        return o;
    }

    std::vector<CStep> steps_;
    bool isFaded_[kMostWaveBands] = {};
    size_t signals_ = 1;
    int32_t count_ = 0;
    std::vector<std::vector<double>> memory_;
    std::deque<COperation> operations_;
};

int32_t widthOf(CInstructionSet set) {
    return 2 << static_cast<int32_t>(set);
}

void run(CInstructionSet set, const CWavePlan& plan) {
    set == CInstructionSet::Sse2   ? runWaveSse2(plan)
    : set == CInstructionSet::Avx2 ? runWaveAvx2(plan)
                                   : runWaveAvx512(plan);
}

/// Mostly noise. Above 1e200 now and then what is no number, as the processor makes it.
double sampleOf(double level, CRandom& random) {
    const int32_t kind = random.below(2048);
    return kind == 0 && level > 1e200 ? -std::numeric_limits<double>::quiet_NaN()
           : kind < 16                ? -0.0
           : kind < 32                ? 1e-310
                                      : random.between(-level, level);
}

/// A wave may write where it reads, each channel over any one of its own wave.
void overlay(CWavePlan& plan, int32_t shift) {
    for (int32_t c = 0; c < plan.channels; ++c) {
        plan.out[c] = const_cast<double*>(plan.in[(c + shift) % plan.channels]);
    }
}

/// Blocks of the lengths `counts`, one behind the other, through all sets and the plain forms.
void compare(const CShape& shape, const std::vector<int32_t>& counts, double level, CRandom& random) {
    const std::vector<CInstructionSet> all = testedSets();
    std::vector<CChannel> plain;
    for (int32_t c = 0; c < shape.channels; ++c) {
        plain.emplace_back(shape, random);
    }
    std::vector<std::vector<CChannel>> waves(all.size(), plain);
    std::vector<uint8_t> memory(1 << 17);
    for (const int32_t count : counts) {
        std::vector<std::vector<double>> in(static_cast<size_t>(shape.channels));
        for (auto& channel : in) {
            channel.resize(static_cast<size_t>(count));
            for (double& x : channel) {
                x = sampleOf(level, random);
            }
        }
        for (size_t c = 0; c < plain.size(); ++c) {
            plain[c].run(in[c]);
        }
        for (size_t s = 0; s < all.size(); ++s) {
            if (shape.channels > widthOf(all[s])) {
                continue;
            }
            std::vector<CWaveChannel> channels;
            for (size_t c = 0; c < plain.size(); ++c) {
                channels.push_back(waves[s][c].wave(shape, in[c]));
            }
            // What is not written is no number.
            std::fill(memory.begin(), memory.end(), uint8_t{0xff});
            CPlanMemory room = {memory.data(), memory.data() + memory.size()};
            CWavePlan plan;
            ASSERT_TRUE(planWave(channels.data(), shape.channels, widthOf(all[s]), room, plan));
            const int32_t place = random.below(3);
            if (place < 2) {
                overlay(plan, place);
            }
            run(all[s], plan);
            for (size_t c = 0; c < plain.size(); ++c) {
                if (place < 2) {
                    std::copy_n(plan.out[c], count + kBehind, waves[s][c].output());
                }
                ASSERT_EQ(waves[s][c].bits(), plain[c].bits())
                    << nameOf(all[s]) << " channel " << c << " of " << shape.channels << ", " << shape.bands
                    << " bands, before " << shape.hasBefore << ", behind " << shape.hasBehind << ", " << count
                    << " samples at " << level << ", " << shape.fadedOfThree << " of 3 bands faded";
            }
        }
    }
}

TEST(Wave, GivesTheBitsOfItsKernelsForEveryShape) {
    CRandom random(1);
    for (const int32_t channels : {1, 2, 4, 8}) {
        for (int32_t bands = 1; bands <= kMostWaveBands; ++bands) {
            for (int32_t ends = 0; ends < 6; ++ends) {
                compare({channels, bands, ends % 2 == 1, ends >= 2, ends >= 4, 2 * random.below(2)},
                        {0, 1, 2, 3, 7, 40, 97, 130}, 0.7, random);
            }
        }
    }
}

TEST(Wave, GivesTheBitsOfItsKernelsWhereEveryBandFades) {
    CRandom random(4);
    for (const int32_t channels : {1, 2, 4, 8}) {
        for (int32_t bands = 1; bands <= kMostWaveBands; ++bands) {
            for (int32_t ends = 0; ends < 6; ++ends) {
                // All bands have begun long before the first one ends.
                compare({channels, bands, ends % 2 == 1, ends >= 2, ends >= 4, 3}, {50, 63, 131}, 0.7, random);
            }
        }
    }
}

TEST(Wave, GivesTheBitsOfItsKernelsForEveryLength) {
    CRandom random(2);
    for (int32_t count = 0; count <= 140; ++count) {
        compare({2, 7, true, true, true, count % 2 == 0 ? 2 : 0}, {count, count}, 0.7, random);
    }
}

TEST(Wave, GivesTheBitsOfItsKernelsAtEveryLevel) {
    CRandom random(3);
    const int32_t rounds = std::getenv("TARV_LONG") ? 20000 : 150;
    for (int32_t round = 0; round < rounds; ++round) {
        const CShape shape = {1 << random.below(4), 1 + random.below(kMostWaveBands),
                              random.below(2) == 0, random.below(2) == 0,
                              random.below(2) == 0, 2 * random.below(2)};
        std::vector<int32_t> counts;
        for (int32_t i = 0; i < 3; ++i) {
            counts.push_back(random.below(random.below(4) == 0 ? 701 : 60));
        }
        // From silence over what meets the lines of the curves to what ends in infinities and in no numbers.
        const double level = random.below(8) == 0   ? 1e300
                             : random.below(8) == 0 ? 0.0
                             : random.below(8) == 0 ? 1e-310
                                                    : std::pow(10.0, random.between(-9.0, 1.7));
        compare(shape, counts, level, random);
    }
}

}  // namespace
}  // namespace tarv
