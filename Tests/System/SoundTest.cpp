// What the host's parameters do not reach, through an instance without a host: routing, groups, pairs, solo, mute,
// frequencies, the count of bands, the noise.

#include <memory>

#include "CPlainInstance.h"
#include "Tests/System/SoundHelp.h"

namespace tarv::sound {
namespace {

constexpr const char* kIo = "plugin.modMain.io-params.";
constexpr const char* kNoise = "plugin.modMain.denorm-enable";
constexpr const char* kEq = "plugin.modMain.modBrindleXEQ.";

/// An instance that follows layouts and settings of the reference. The noise is a parameter of all instances: it is put
/// back where it was.
class CInside {
public:
    explicit CInside(const CLayout& layout) : layout_(layout) {
        CError* error = nullptr;
        instance_.reset(CPlainInstance::create(error));
        if (!instance_) {
            ADD_FAILURE() << error->joined().toUtf8();
            delete error;
        }
    }

    ~CInside() {
        if (instance_) {
            set(kNoise, 0, 0, 1.0);
        }
    }

    bool isGood() const { return instance_ != nullptr; }

    void start(const CSettings& first) {
        for (int e = 0; e < reference::kChannels; ++e) {
            const auto i = static_cast<size_t>(e);
            set(std::string(kIo) + "in-routing", 0, e, layout_.inRouting[i]);
            set(std::string(kIo) + "out-routing", 0, e, layout_.outRouting[i]);
            set(std::string(kIo) + "grouping", 0, e, layout_.grouping[i]);
            set(std::string(kIo) + "ms-pairs", 0, e, layout_.pairs[i]);
        }
        set("plugin.modMain.oversampling", 0, 0, layout_.stages + 1);
        set(kNoise, 0, 0, layout_.hasNoise ? 1.0 : 0.0);
        apply(first, nullptr);
        instance_->start(layout_.rate, layout_.hostChannels, layout_.hostChannels);
    }

    /// Sets what differs from the settings before, or everything.
    void apply(const CSettings& settings, const CSettings* before) {
        change(std::string(kEq) + "band-count", 0, 0, settings.bandCount, before ? &before->bandCount : nullptr);
        change("plugin.modMain.modBypass.enable", 0, 0, settings.isBypassed, before ? &before->isBypassed : nullptr);
        for (int g = 0; g < reference::kGroups; ++g) {
            const auto i = static_cast<size_t>(g);
            applyGroup(g, settings.groups[i], before ? &before->groups[i] : nullptr);
        }
    }

    CSignal run(const CSignal& input, int32_t block) { return instance_->run(input, block); }

private:
    void applyGroup(int g, const reference::CGroupSettings& group, const reference::CGroupSettings* before) {
        // A group's row holds seven bands unless more are asked for: those behind them are the defaults.
        for (int band = 0; band < reference::kMaxBands; ++band) {
            const auto b = static_cast<size_t>(band);
            const reference::CGroupSettings standard;
            const bool isStandard =
                group.frequencies[b] == standard.frequencies[b] && group.gains[b] == standard.gains[b];
            if (band >= reference::kDefaultBands && isStandard && !before) {
                continue;
            }
            change(std::string(kEq) + "xeq-freqs", g, band, group.frequencies[b],
                   before ? &before->frequencies[b] : nullptr);
            change(std::string(kEq) + "xeq-gains", g, band, group.gains[b], before ? &before->gains[b] : nullptr);
        }
        change("plugin.modMain.modOutGain.gain", g, 0, group.outGain, before ? &before->outGain : nullptr);
        change("plugin.modMain.modOutGain.mute", g, 0, group.isMuted, before ? &before->isMuted : nullptr);
        change(std::string(kIo) + "channel-group-solo", 0, g, group.isSolo, before ? &before->isSolo : nullptr);
    }

    template <class T>
    void change(const std::string& param, int group, int element, T value, const T* before) {
        if (!before || *before != value) {
            set(param, group, element, static_cast<double>(value));
        }
    }

    void set(const std::string& param, int group, int element, double value) {
        EXPECT_TRUE(instance_->set(param.c_str(), group, element, value)) << param;
    }

    CLayout layout_;
    std::unique_ptr<CPlainInstance> instance_;
};

CSignal part(const CSignal& signal, int64_t from, int64_t to) {
    CSignal rows;
    for (const std::vector<double>& row : signal) {
        rows.emplace_back(row.begin() + from, row.begin() + to);
    }
    return rows;
}

/// Runs a signal through, cut at each change and else into blocks of 512.
CSignal render(const CLayout& layout, const CSettings& first, const std::vector<reference::CChange>& changes,
               const CSignal& input) {
    CSignal output(static_cast<size_t>(layout.hostChannels));
    CInside inside(layout);
    if (!inside.isGood()) {
        return output;
    }
    inside.start(first);
    const auto frames = static_cast<int64_t>(input[0].size());
    const CSettings* settings = &first;
    auto change = changes.begin();
    for (int64_t at = 0; at < frames;) {
        for (; change != changes.end() && change->frame <= at; ++change) {
            inside.apply(change->settings, settings);
            settings = &change->settings;
        }
        const int64_t end = change == changes.end() ? frames : std::min(frames, change->frame);
        const CSignal piece = inside.run(part(input, at, end), 512);
        for (size_t c = 0; c < output.size(); ++c) {
            output[c].insert(output[c].end(), piece[c].begin(), piece[c].end());
        }
        at = end;
    }
    return output;
}

void expectSame(const std::string& name, const CLayout& layout, const CSettings& first,
                const std::vector<reference::CChange>& changes, const CSignal& input) {
    const auto frames = static_cast<int64_t>(input[0].size());
    EXPECT_TRUE(isClose(render(layout, first, changes, input), reference::render(layout, first, changes, input, frames),
                        kTolerance64))
        << name << " at " << layout.rate << " Hz, " << (1 << layout.stages) << "x";
}

/// Curves of all groups anywhere in their range.
CSettings anySettings(uint64_t seed) {
    CRandom random(seed);
    CSettings settings;
    for (reference::CGroupSettings& group : settings.groups) {
        for (size_t band = 0; band < reference::kDefaultBands; ++band) {
            group.frequencies[band] = 20.0 * std::pow(1000.0, random.next());
            group.gains[band] = reference::factorOf(random.between(-12.0, 12.0));
        }
        group.outGain = reference::factorOf(random.between(-12.0, 12.0));
    }
    return settings;
}

constexpr int64_t kFrames = 1500;

CSignal noise(const CLayout& layout, int64_t frames = kFrames) {
    return signalOf(kSignals[0], layout.hostChannels, frames, layout.rate);
}

struct CRoutingCase {
    const char* name;
    std::array<int, 8> grouping, in, out, pairs;
};

// The routing presets of the factory list.
constexpr CRoutingCase kPresets[] = {
    {"Default Stereo", {0, 0, 1, 1, 2, 2, 3, 3}, {1, 2}, {1, 2}, {}},
    {"2.1 Stereo", {0, 0, 1, 1, 1, 1, 1, 1}, {1, 2, 3}, {1, 2}, {}},
    {"5.1 Surround", {0, 0, 1, 2, 3, 3, 3, 3}, {1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5, 6}, {}},
    {"Dual Mono", {0, 1, 1, 1, 1, 1, 1, 1}, {1, 2}, {1, 2}, {}},
    {"Mid-Side Stereo", {0, 1, 1, 1, 1, 1, 1, 1}, {1, 2}, {1, 2}, {1, 1}},
    {"Mono To Stereo", {0, 0, 1, 1, 2, 2, 3, 3}, {1}, {1, 1}, {}},
    {"Stereo Side-Chain", {0, 0, 1, 1, 2, 2, 3, 3}, {1, 2, 3, 4}, {1, 2}, {}},
    {"Mono Side-Chain", {0, 0, 1, 1, 2, 2, 3, 3}, {1, 2}, {1}, {}},
    {"Force Mono", {0, 0, 1, 1, 2, 2, 3, 3}, {1}, {1}, {}},
};

// Layouts that no preset has.
constexpr CRoutingCase kOddLayouts[] = {
    {"all eight, each a group", {0, 1, 2, 3, 4, 5, 6, 7}, {1, 2, 3, 4, 5, 6, 7, 8}, {1, 2, 3, 4, 5, 6, 7, 8}, {}},
    {"four pairs",
     {0, 1, 0, 1, 2, 3, 4, 5},
     {1, 2, 3, 4, 5, 6, 7, 8},
     {1, 2, 3, 4, 5, 6, 7, 8},
     {1, 1, 2, 2, 3, 3, 4, 4}},
    {"crossed", {1, 0}, {2, 1}, {2, 1}, {2, 2}},
    {"three of a pair", {0, 1, 2}, {1, 2, 3}, {1, 2, 3}, {1, 1, 1}},
    {"a pair with a hole", {0, 0, 1}, {1, 0, 2}, {1, 0, 2}, {1, 1, 1}},
    {"half a pair", {0, 1}, {1, 2}, {1, 2}, {1, 0}},
    {"one input four times", {0, 1, 2, 3}, {1, 1, 1, 1}, {1, 2, 3, 4}, {}},
    {"two to one output", {0, 1}, {1, 2}, {3, 3}, {}},
    {"inputs beyond the host", {0, 1, 2}, {1, 16, 9}, {1, 2, 3}, {}},
    {"outputs beyond the host", {0, 1}, {1, 2}, {16, 1}, {}},
    {"nothing", {}, {}, {1, 2, 3, 4, 5, 6, 7, 8}, {}},
};

CLayout layoutOf(const CRoutingCase& routing, double rate, int stages) {
    CLayout layout;
    layout.rate = rate;
    layout.stages = stages;
    layout.hostChannels = reference::kChannels;
    layout.grouping = routing.grouping;
    layout.inRouting = routing.in;
    layout.outRouting = routing.out;
    layout.pairs = routing.pairs;
    return layout;
}

TEST(InsideSound, TheTablesOfAllRoutingPresetsSoundAsTheReference) {
    uint64_t seed = 1;
    for (const CRoutingCase& preset : kPresets) {
        for (int stages = 0; stages <= 3; ++stages) {
            const CLayout layout = layoutOf(preset, 44100.0, stages);
            expectSame(preset.name, layout, anySettings(++seed), {}, noise(layout));
        }
    }
}

TEST(InsideSound, LayoutsOfEveryOtherKindSoundAsTheReference) {
    uint64_t seed = 100;
    for (const CRoutingCase& odd : kOddLayouts) {
        for (int stages : {0, 2}) {
            const CLayout layout = layoutOf(odd, 48000.0, stages);
            expectSame(odd.name, layout, anySettings(++seed), {}, noise(layout));
        }
    }
}

TEST(InsideSound, AGroupThatHoldsNothingSoundsAtItsDefaults) {
    const CLayout layout = layoutOf(kPresets[3], 44100.0, 0);
    CSignal input = noise(layout);
    CError* error = nullptr;
    const std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    ASSERT_NE(instance, nullptr);
    ASSERT_TRUE(instance->set("plugin.modMain.io-params.grouping", 0, 1, 5));
    instance->start(layout.rate, 2, 2);
    CLayout stereo = layout;
    stereo.hostChannels = 2;
    stereo.grouping[1] = 5;
    EXPECT_TRUE(isClose(instance->run(part({input[0], input[1]}, 0, kFrames), 512),
                        reference::render(stereo, CSettings(), {}, input, kFrames), kTolerance64));
}

TEST(InsideSound, EveryCountOfBandsSoundsAsTheReference) {
    for (int bands = 1; bands <= reference::kMaxBands; ++bands) {
        const CLayout layout = layoutOf(kPresets[3], 44100.0, 1);
        CSettings settings = anySettings(static_cast<uint64_t>(bands));
        settings.bandCount = bands;
        expectSame(std::to_string(bands) + " bands", layout, settings, {}, noise(layout));
    }
}

TEST(InsideSound, BandsComeAndGoAsTheReferencesDo) {
    const CLayout layout = layoutOf(kPresets[0], 44100.0, 0);
    CSettings settings = anySettings(7);
    std::vector<reference::CChange> changes;
    int64_t frame = 0;
    for (int bands : {5, 7, 1, 10, 9, 3}) {
        settings.bandCount = bands;
        changes.push_back({frame += 333, settings});
    }
    expectSame("counts", layout, anySettings(7), changes, noise(layout, 3000));
}

TEST(InsideSound, FrequenciesOverTheWholeRangeSoundAsTheReference) {
    for (double rate : {8000.0, 22050.0, 44100.0, 192000.0, 768000.0}) {
        for (double frequency : {20.0, 63.0, 1000.0, 4000.0, 11000.0, 20000.0, 21000.0}) {
            CLayout layout = layoutOf(kPresets[0], rate, 0);
            CSettings settings;
            settings.groups[0].frequencies[2] = frequency;
            settings.groups[0].gains[2] = reference::factorOf(9.0);
            expectSame(std::to_string(frequency) + " Hz", layout, settings, {}, noise(layout));
        }
    }
}

TEST(InsideSound, SoloMuteAndBypassFadeAsTheReferencesDo) {
    for (int stages : {0, 1, 3}) {
        for (size_t preset : {size_t{2}, size_t{4}}) {
            const CLayout layout = layoutOf(kPresets[preset], 44100.0, stages);
            CSettings settings = anySettings(preset);
            const CSettings first = settings;
            std::vector<reference::CChange> changes;
            settings.groups[1].isSolo = true;
            changes.push_back({200, settings});
            settings.groups[0].isMuted = true;
            changes.push_back({400, settings});
            settings.isBypassed = true;
            changes.push_back({900, settings});
            settings.groups[1].isSolo = false;
            changes.push_back({1100, settings});
            settings.groups[0].isMuted = false;
            changes.push_back({2500, settings});
            settings.groups[0].isSolo = true;
            settings.isBypassed = false;
            changes.push_back({2600, settings});
            expectSame(kPresets[preset].name, layout, first, changes, noise(layout, 4500));
        }
    }
}

TEST(InsideSound, RandomWalksThroughAllSettingsSoundAsTheReference) {
    for (uint64_t seed = 1; seed <= 10; ++seed) {
        CRandom random(seed);
        const CLayout layout =
            layoutOf(kOddLayouts[seed % 3], seed % 2 ? 44100.0 : 88200.0, static_cast<int>(seed % 4));
        CSettings settings = anySettings(seed);
        const CSettings first = settings;
        std::vector<reference::CChange> changes;
        for (int64_t frame = 30; frame < 3500; frame += 1 + random.below(300)) {
            reference::CGroupSettings& group = settings.groups[static_cast<size_t>(random.below(reference::kGroups))];
            const auto band = static_cast<size_t>(random.below(reference::kDefaultBands));
            switch (random.below(7)) {
                case 0:
                    group.gains[band] = reference::factorOf(random.between(-12.0, 12.0));
                    break;
                case 1:
                    group.frequencies[band] = 20.0 * std::pow(1000.0, random.next());
                    break;
                case 2:
                    group.outGain = reference::factorOf(random.between(-12.0, 12.0));
                    break;
                case 3:
                    group.isMuted = !group.isMuted;
                    break;
                case 4:
                    group.isSolo = !group.isSolo;
                    break;
                case 5:
                    settings.isBypassed = !settings.isBypassed;
                    break;
                default:
                    settings.bandCount = 1 + random.below(reference::kMaxBands);
                    break;
            }
            changes.push_back({frame, settings});
        }
        expectSame("walk " + std::to_string(seed), layout, first, changes, noise(layout, 4000));
    }
}

TEST(InsideSound, WithoutTheNoiseTheSignalIsTheReferencesToo) {
    for (bool isBypassed : {false, true}) {
        CLayout layout = layoutOf(kPresets[0], 44100.0, 0);
        layout.hasNoise = false;
        CSettings settings;
        settings.isBypassed = isBypassed;
        const CSignal input = noise(layout);
        expectSame("without noise", layout, settings, {}, input);
        if (isBypassed) {
            EXPECT_EQ(render(layout, settings, {}, input)[0], input[0]) << "nothing at all happens to the signal";
        }
    }
}

}  // namespace
}  // namespace tarv::sound
