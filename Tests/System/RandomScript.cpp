#include "Tests/System/RandomScript.h"

#include <memory>

namespace tarv::engine {

namespace {

/// A parameter of the sound with the range from which it is set.
struct CRange {
    const char* param;
    int32_t elements;
    double low;
    double high;
};
constexpr CRange kSound[] = {
    {kGains, 10, 0.25, 4.0}, {kFreqs, 10, 20.0, 21000.0}, {kOutGain, 1, 0.25, 4.0},
    {kMute, 1, 0.0, 1.0},    {kBypass, 1, 0.0, 1.0},      {kSolo, 1, 0.0, 1.0},
};

}  // namespace

CScript CScriptMaker::make(int64_t frames) {
    CScript script;
    script.setup.channels = channels_ = 1 + random_.below(8);
    // As much work in every script: many channels at low rates, few at high ones.
    mostStages_ = channels_ > 4 ? 1 : channels_ > 2 ? 2 : 3;
    script.setup.rate = random_.of({44100.0, 48000.0, 96000.0});
    script.setup.sets = straight(channels_, random_.below(mostStages_ + 1));
    script.setup.sets.push_back({kBandCount, 0, 0, 1.0 + random_.below(10)});
    for (int32_t i = random_.below(6); i > 0; --i) {
        script.setup.sets.push_back(layoutChange());
    }
    for (int32_t i = random_.below(40); i > 0; --i) {
        script.setup.sets.push_back(soundChange());
    }
    script.input = noise(channels_, static_cast<size_t>(frames), random_.of({0.5, 0.5, 2.0, 40.0}), 7);
    // Changes at any frame, or at each block's begin as a host's automation does.
    beat_ = random_.below(3) == 0 ? random_.of({16, 32, 64, 500}) : 0;
    for (int64_t at = random_.below(900); at<frames; at += beat_> 0 ? beat_ : pause()) {
        if (random_.below(beat_ > 0 ? 40 : 6) == 0) {
            script.events.push_back({at, layoutChange()});
        }
        for (int32_t i = 1 + random_.below(5); i > 0; --i) {
            script.events.push_back({at, soundChange()});
        }
    }
    return script;
}

/// A fade takes 662 frames and more: some end undisturbed, some are interrupted or have others beside them.
int32_t CScriptMaker::pause() {
    const int32_t longest = random_.of({3, 100, 800, 2500});
    return 1 + random_.below(longest);
}

CSet CScriptMaker::soundChange() {
    const CRange& range = random_.of(kSound);
    const double value = random_.between(range.low, range.high);
    const bool isSwitch = range.low == 0.0;
    const double number = isSwitch ? (random_.below(4) == 0 ? 1.0 : 0.0) : value;
    return {range.param, random_.below(channels_), random_.below(range.elements), number};
}

CSet CScriptMaker::layoutChange() {
    const double channel = random_.below(channels_ + 1);
    const int32_t element = random_.below(8);
    switch (random_.below(6)) {
        case 0:
            return {kInRouting, 0, element, channel};
        case 1:
            return {kOutRouting, 0, element, channel};
        case 2:
            return {kGrouping, 0, element, static_cast<double>(random_.below(8))};
        case 3:
            return {kPairs, 0, element, static_cast<double>(random_.below(5))};
        case 4:
            return {kBandCount, 0, 0, 1.0 + random_.below(10)};
        default:
            return {kOversampling, 0, 0, 1.0 + random_.below(mostStages_ + 1)};
    }
}

CCut cutIntoStretches(uint32_t seed) {
    struct CStretch {
        CRandom random;
        int32_t left = 0;
        int32_t frames = 0;
    };
    auto stretch = std::make_shared<CStretch>(CStretch{CRandom(seed)});
    return [stretch] {
        CRandom& random = stretch->random;
        if (stretch->left-- == 0) {
            stretch->frames = 1 + random.below(random.of({8, 64, 200, 700}));
            stretch->left = random.below(1 + 1500 / stretch->frames);
        }
        return stretch->frames;
    };
}

}  // namespace tarv::engine
