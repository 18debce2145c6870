#include "Tests/System/EngineRun.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <ostream>
#include <random>

#include "Core/CError.h"

namespace tarv::engine {

double factorOf(double db) {
    return std::pow(10.0, db / 20.0);
}

double decibels(double factor) {
    return factor == 0.0 ? -400.0 : 20.0 * std::log10(std::fabs(factor));
}

std::unique_ptr<CPlainInstance> start(const CSetup& setup) {
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    if (!instance) {
        showError(error);
        std::abort();
    }
    for (const CSet& set : setup.sets) {
        apply(*instance, set);
    }
    instance->start(setup.rate, setup.channels, setup.channels);
    return instance;
}

void apply(CPlainInstance& instance, const CSet& set) {
    if (!instance.set(set.param, set.group, set.element, set.value)) {
        std::abort();
    }
}

std::vector<CSet> straight(int32_t channels, int32_t stages) {
    std::vector<CSet> sets = {{kOversampling, 0, 0, stages + 1.0}};
    for (int32_t e = 0; e < 8; ++e) {
        sets.push_back({kInRouting, 0, e, e < channels ? e + 1.0 : 0.0});
        sets.push_back({kOutRouting, 0, e, e < channels ? e + 1.0 : 0.0});
    }
    return sets;
}

std::vector<CSet> midSide() {
    return {{kPairs, 0, 0, 1.0}, {kPairs, 0, 1, 1.0}, {kGrouping, 0, 0, 0.0}, {kGrouping, 0, 1, 1.0}};
}

CCut cutInto(int32_t frames) {
    return [frames] { return frames; };
}

CCut cutAtRandom(int32_t longest, uint32_t seed) {
    auto engine = std::make_shared<std::minstd_rand>(seed);
    return [engine, longest] { return 1 + static_cast<int32_t>((*engine)() % static_cast<uint32_t>(longest)); };
}

CSignal render(CPlainInstance& instance, const CSignal& input, const std::vector<CEvent>& events, const CCut& cut,
               bool inPlace) {
    const auto frames = static_cast<int64_t>(input[0].size());
    // In place the output buffers hold the input when the block begins.
    CSignal output = inPlace ? input : silence(static_cast<int32_t>(input.size()), input[0].size());
    std::vector<const double*> in(input.size());
    std::vector<double*> out(input.size());
    size_t next = 0;
    for (int64_t at = 0; at < frames;) {
        for (; next < events.size() && events[next].frame <= at; ++next) {
            apply(instance, events[next].set);
        }
        int64_t count = std::min<int64_t>(cut(), frames - at);
        if (next < events.size()) {
            count = std::min(count, events[next].frame - at);
        }
        for (size_t c = 0; c < input.size(); ++c) {
            out[c] = output[c].data() + at;
            in[c] = inPlace ? out[c] : input[c].data() + at;
        }
        instance.processBlock(in.data(), out.data(), static_cast<int32_t>(count));
        at += count;
    }
    return output;
}

CSignal noise(int32_t channels, size_t frames, double level, uint32_t seed) {
    std::mt19937 engine(seed);
    std::uniform_real_distribution<double> distribution(-level, level);
    CSignal signal = silence(channels, frames);
    for (auto& row : signal) {
        std::generate(row.begin(), row.end(), [&] { return distribution(engine); });
    }
    return signal;
}

CSignal sine(int32_t channels, size_t frames, double hz, double rate, double level, double phase) {
    std::vector<double> row(frames);
    for (size_t i = 0; i < frames; ++i) {
        row[i] = level * std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) / rate + phase);
    }
    return CSignal(static_cast<size_t>(channels), row);
}

CSignal silence(int32_t channels, size_t frames) {
    return CSignal(static_cast<size_t>(channels), std::vector<double>(frames));
}

double peak(const std::vector<double>& row, size_t from) {
    double highest = 0.0;
    for (size_t i = from; i < row.size(); ++i) {
        highest = std::max(highest, std::fabs(row[i]));
    }
    return highest;
}

double peak(const CSignal& signal, size_t from) {
    double highest = 0.0;
    for (const auto& row : signal) {
        highest = std::max(highest, peak(row, from));
    }
    return highest;
}

CBins::CBins(const std::vector<double>& row, size_t count)
    : samples_(row.end() - static_cast<int64_t>(count), row.end()), turn_(count) {
    for (size_t i = 0; i < count; ++i) {
        turn_[i] = std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(count));
    }
}

std::complex<double> CBins::at(size_t cycles) const {
    const size_t count = samples_.size();
    std::complex<double> sum = 0.0;
    for (size_t i = 0; i < count; ++i) {
        sum += samples_[i] * turn_[cycles * i % count];
    }
    return sum * (2.0 / static_cast<double>(count));
}

CSignal periodicSine(int32_t channels, size_t frames, size_t cycles, size_t count, double level) {
    std::vector<double> row(frames);
    for (size_t i = 0; i < frames; ++i) {
        const auto part = static_cast<double>(cycles * i % count) / static_cast<double>(count);
        row[i] = level * std::sin(2.0 * std::numbers::pi * part);
    }
    return CSignal(static_cast<size_t>(channels), row);
}

CDifference firstDifference(const CSignal& one, const CSignal& other) {
    for (size_t c = 0; c < one.size(); ++c) {
        for (size_t i = 0; i < one[c].size(); ++i) {
            if (std::bit_cast<uint64_t>(one[c][i]) != std::bit_cast<uint64_t>(other[c][i])) {
                return {static_cast<int32_t>(c), static_cast<int64_t>(i)};
            }
        }
    }
    return {};
}

std::ostream& operator<<(std::ostream& out, const CDifference& difference) {
    return out << "channel " << difference.channel << ", frame " << difference.frame;
}

bool isLong() {
    const char* asked = std::getenv("TARV_LONG");
    return asked != nullptr && *asked == '1';
}

int32_t repeats(int32_t count, [[maybe_unused]] int32_t thin) {
#ifdef TARV_SANITIZED
    return isLong() ? count : thin;
#else
    return count;
#endif
}

}  // namespace tarv::engine
