// A state that is saved comes back: the same bytes, and the same audio bit for bit, in another instance.

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>

#include "Audio/Parameters/CAudioParamCollector.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Tests/System/EngineRun.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::engine {
namespace {

using sound::CRandom;

constexpr const char* kIo = "plugin.modMain.io-params.";

std::unique_ptr<CPlainInstance> make() {
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    EXPECT_TRUE(instance) << (error ? error->joined().toUtf8() : "");
    delete error;
    return instance;
}

std::string stateOf(CPlainInstance& instance, bool isProgram = true) {
    CByteBuffer chunk;
    CError* error = instance.getState(chunk, isProgram);
    EXPECT_EQ(error, nullptr);
    delete error;
    return {reinterpret_cast<const char*>(chunk.data()), static_cast<size_t>(chunk.count())};
}

bool restore(CPlainInstance& instance, const std::string& state, bool isProgram = true) {
    CError* error = instance.setState(state.data(), static_cast<int64_t>(state.size()), isProgram, true);
    delete error;
    return error == nullptr;
}

/// A row of a parameter as a preset brings it: of any length.
void setRow(CPlainInstance& instance, const CString& param, int32_t group, const std::vector<double>& values) {
    CAudioParam* found = instance.paramCollector()->findParam(param);
    ASSERT_NE(found, nullptr);
    CAudioParamChange* change =
        instance.paramCollector()->createChange(*found, group, 0, static_cast<int32_t>(values.size()), true);
    std::copy(values.begin(), values.end(), change->values.begin());
    instance.paramCollector()->postChange(*found, change, true, 0.0);
}

void setText(CPlainInstance& instance, const CString& param, int32_t element, const char* text) {
    instance.paramCollector()->findParam(param)->setText(0, element, CString::fromUtf8(text, std::strlen(text)));
}

std::vector<double> rowOf(CRandom& random, int count, double low, double high, bool isWhole) {
    std::vector<double> row;
    for (int i = 0; i < count; ++i) {
        const double value = random.between(low, high);
        row.push_back(isWhole ? std::floor(value) : value);
    }
    return row;
}

/// Anything that a session may hold.
void randomise(CPlainInstance& instance, uint64_t seed) {
    CRandom random(seed);
    for (int32_t group = 0; group < 2; ++group) {
        setRow(instance, kGains, group, rowOf(random, random.below(12), factorOf(-12), factorOf(12), false));
        setRow(instance, kFreqs, group, rowOf(random, random.below(12), 20.0, 21000.0, false));
        setRow(instance, kOutGain, group, rowOf(random, random.below(3), factorOf(-12), factorOf(12), false));
    }
    setRow(instance, kBandCount, 0, {1.0 + random.below(10)});
    setRow(instance, kInRouting, 0, rowOf(random, random.below(9), 0, 17, true));
    setRow(instance, kOutRouting, 0, rowOf(random, random.below(9), 0, 17, true));
    setRow(instance, kGrouping, 0, rowOf(random, random.below(9), 0, 8, true));
    setRow(instance, kPairs, 0, rowOf(random, random.below(9), 0, 5, true));
    setRow(instance, kOversampling, 0, {1.0 * random.below(5)});
    setRow(instance, kMute, random.below(8), {1.0 * random.below(2)});
    const char* const texts[] = {"Vocals",  "",       "Größe \xc3\xa9\xc3\xa8",   "\xd0\x91\xd0\xb0\xd1\x81",
                                 "低音",    "ベース", "\xd7\xa7\xd7\x95\xd7\x9c", "\xce\x92\xce\xac\xcf\x83\xce\xbf",
                                 "a:b\tc\n"};
    for (const char* param : {"group-names", "in-channel-names"}) {
        for (int i = random.below(6); i > 0; --i) {
            setText(instance, CString(kIo) + param, random.below(8), texts[random.below(9)]);
        }
    }
    setText(instance, "plugin.modMain.instance-name", 0, texts[random.below(9)]);
}

TEST(State, ComesBackInAnotherInstanceWithTheSameBytesAndTheSameSound) {
    constexpr int32_t kFrames = 700;
    const CSignal input = noise(8, kFrames, 0.5);
    const uint64_t count = isLong() ? 1000 : 100;
    for (uint64_t seed = 1; seed <= count; ++seed) {
        const auto one = make();
        const auto other = make();
        ASSERT_TRUE(one && other);
        randomise(*one, seed);
        const std::string state = stateOf(*one);
        ASSERT_TRUE(restore(*other, state)) << seed;
        ASSERT_EQ(stateOf(*other), state) << seed;
        one->start(44100.0, 8, 8);
        other->start(44100.0, 8, 8);
        ASSERT_EQ(firstDifference(one->run(input, 512), other->run(input, 512)), CDifference()) << seed;
    }
}

TEST(State, ABankComesBackWithEverySlot) {
    for (uint64_t seed = 1; seed <= 20; ++seed) {
        const auto one = make();
        const auto other = make();
        CAudioParamRegistry& registry = *one->paramRegistry();
        for (int32_t i = 0; i < registry.programCount(); ++i) {
            registry.selectProgram(i);
            randomise(*one, seed * 100 + static_cast<uint64_t>(i));
            registry.renameProgram(i, CString("Slot ") + CString::fromInt(i));
        }
        registry.selectProgram(static_cast<int32_t>(seed % 7));
        const std::string state = stateOf(*one, false);
        other->paramRegistry()->selectProgram(static_cast<int32_t>(seed % 7));
        ASSERT_TRUE(restore(*other, state, false));
        ASSERT_EQ(stateOf(*other, false), state);
        for (int32_t i = 0; i < registry.programCount(); ++i) {
            registry.selectProgram(i);
            other->paramRegistry()->selectProgram(i);
            ASSERT_EQ(stateOf(*other), stateOf(*one)) << i;
        }
    }
}

TEST(State, RestoredWhileAudioRunsItSoundsAfterTheFadesAsAFreshOne) {
    const auto running = make();
    const auto fresh = make();
    const auto source = make();
    randomise(*source, 5);
    setRow(*source, kInRouting, 0, {1, 2});
    setRow(*source, kOutRouting, 0, {1, 2});
    setRow(*source, kGrouping, 0, {0, 1});
    for (int32_t group = 0; group < 2; ++group) {
        setRow(*source, kMute, group, {0.0});
    }
    const std::string state = stateOf(*source);
    const CSignal input = sine(8, 44100, 441.0, 44100.0, 0.25);
    running->start(44100.0, 8, 8);
    running->run(input, 512);
    ASSERT_TRUE(restore(*running, state));
    ASSERT_TRUE(restore(*fresh, state));
    fresh->start(44100.0, 8, 8);
    const CSignal one = running->run(input, 512);
    const CSignal other = fresh->run(input, 512);
    double difference = 0.0;
    for (size_t c = 0; c < one.size(); ++c) {
        for (size_t i = 40000; i < one[c].size(); ++i) {
            difference = std::max(difference, std::fabs(one[c][i] - other[c][i]));
        }
    }
    EXPECT_GT(peak(other, 40000), 0.01);
    EXPECT_LT(decibels(difference), -100.0);  // what is left of the filters' and the noise's other histories
}

TEST(State, AGroupThatARecordLacksSoundsAtItsDefaultsAtOnce) {
    const auto instance = make();
    const auto untouched = make();
    const std::string factory = stateOf(*untouched);
    setRow(*instance, kGrouping, 0, {1, 1});
    setRow(*instance, kGains, 1, {3.9, 0.3, 3.9});
    setRow(*untouched, kGrouping, 0, {1, 1});
    instance->start(44100.0, 2, 2);
    untouched->start(44100.0, 2, 2);
    const CSignal input = noise(2, 2000, 0.5);
    instance->run(input, 512);
    instance->suspend();
    ASSERT_TRUE(restore(*instance, factory));
    setRow(*instance, kGrouping, 0, {1, 1});
    instance->resume();
    EXPECT_EQ(firstDifference(instance->run(input, 512), untouched->run(input, 512)), CDifference());
}

}  // namespace
}  // namespace tarv::engine
