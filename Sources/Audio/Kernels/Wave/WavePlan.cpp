#include "Audio/Kernels/Wave/WavePlan.h"

#include <algorithm>
#include <bit>
#include <limits>

#include "Audio/Kernels/CTubeBlock.h"

namespace tarv {

namespace {

// Where the state blocks of the filters hold what they carry.
constexpr int32_t kBiquadState = 4;
constexpr int32_t kOnePoleState = 1;

constexpr double kNever = std::numeric_limits<double>::infinity();

/// The fields of one lane.
class CLaneFields {
public:
    CLaneFields(const CWavePlan& plan, int32_t vector, int32_t lane)
        : at_(plan.lanes + static_cast<int64_t>(vector) * kWaveFieldCount * plan.width + lane), width_(plan.width) {}

    void set(CWaveField field, double value) { at_[field * width_] = value; }

    void setFilter(const COperation& filter, const COperation& highPass) {
        const double* const block = filter.signal(1);
        set(kWaveC0, block[0]);
        set(kWaveC1, block[1]);
        set(kWaveC2, block[2]);
        set(kWaveC3, block[3]);
        set(kWaveFilterGain, filter.immediate);
        set(kWaveHighPassFactor, highPass.signal(1)[0]);
        set(kWaveHighPassGain, highPass.immediate);
    }
    void setTube(const CTubeBlock& tube) {
        set(kWaveGainI, tube.gainI);
        set(kWaveBiasI, tube.biasI);
        set(kWaveKneeStartA, tube.curveA.kneeStart);
        set(kWaveKneeStartB, tube.curveB.kneeStart);
        set(kWaveRadiusSquaredA, tube.curveA.radiusSquared);
        set(kWaveRadiusSquaredB, tube.curveB.radiusSquared);
        set(kWaveCentreOffsetA, tube.curveA.centreOffset);
        set(kWaveCentreOffsetB, tube.curveB.centreOffset);
        set(kWaveNearerKneeEnd, std::min(tube.curveA.kneeEnd, tube.curveB.kneeEnd));
        set(kWaveKneeEndA, tube.curveA.kneeEnd);
        set(kWaveKneeEndB, tube.curveB.kneeEnd);
        set(kWaveSlopeA, tube.curveA.slope);
        set(kWaveSlopeB, tube.curveB.slope);
        set(kWaveFeedFactor, tube.feedCoef);
        set(kWaveGainV, tube.gainV);
        set(kWaveBiasV, tube.biasV);
        set(kWaveRestOutput, tube.restOutput);
        set(kWaveAutoGain, tube.autoGain);
    }
    /// A lane that only filters: the way to the curves changes no bit, also of a negative zero, and the output is
    /// taken from there.
    void setPlain(double gain) {
        set(kWaveGainI, 1.0);
        set(kWaveBiasI, -0.0);
        set(kWaveNearerKneeEnd, kNever);
        set(kWaveAutoGain, gain);
        set(kWaveIsPost, std::bit_cast<double>(~uint64_t{0}));
    }

private:
    double* at_;
    int32_t width_;
};

/// The filter that is faded out of, and the ramp.
void planFade(CWavePlan& plan, int32_t v, int32_t l, const CWaveChannel::CBand& o, CWaveStates& states) {
    double* const fields = plan.fades + static_cast<int64_t>(v) * kWaveFadeFieldCount * plan.width + l;
    const auto set = [&](CWaveFadeField field, double value) { fields[field * plan.width] = value; };
    double* const block = o.oldFilter->signal(1);
    double* const ramp = o.fade->signal(1);
    set(kWaveOldC0, block[0]);
    set(kWaveOldC1, block[1]);
    set(kWaveOldC2, block[2]);
    set(kWaveOldC3, block[3]);
    set(kWaveOldGain, o.oldFilter->immediate);
    set(kWaveRampFactor, ramp[2]);
    set(kWaveIsFaded, std::bit_cast<double>(~uint64_t{0}));
    states.oldFilter = block + kBiquadState;
    states.ramp = ramp;
}

double gainOf(const CWaveChannel& channel) {
    return channel.gainBehind ? channel.gainBehind->immediate : 1.0;
}

void planLane(CWavePlan& plan, const CWaveChannel* channels, int32_t v, int32_t l) {
    const CWaveChannel& channel = channels[l % plan.channels];
    const int32_t band = v * (plan.width / plan.channels) + l / plan.channels;
    CLaneFields fields(plan, v, l);
    CWaveStates& states = plan.states[v * plan.width + l];
    states = {};
    fields.set(kWaveNearerKneeEnd, kNever);
    fields.set(kWaveBand, band);
    if (band < plan.bands) {
        const CWaveChannel::CBand& o = channel.bands[band];
        auto& tube = *o.tube->operand<CTubeBlock>(1);
        fields.setFilter(*o.filter, *o.highPass);
        fields.setTube(tube);
        states.filter = o.filter->signal(1) + kBiquadState;
        states.highPass = o.highPass->signal(1) + kOnePoleState;
        states.feed = &tube.feedState;
        if (o.oldFilter != nullptr) {
            planFade(plan, v, l, o, states);
        }
    } else if (band == plan.bands && plan.post == CWavePost::InLanes) {
        fields.setFilter(*channel.filterBehind, *channel.highPassBehind);
        fields.setPlain(gainOf(channel));
        states.filter = channel.filterBehind->signal(1) + kBiquadState;
        states.highPass = channel.highPassBehind->signal(1) + kOnePoleState;
    }
}

/// Clears what the lanes hand on, and all of a vector that has lanes to spare.
void clearVector(CWavePlan& plan, int32_t v) {
    const int32_t perVector = plan.width / plan.channels;
    const bool isFull = (v + 1) * perVector <= plan.bands;
    double* const fields = plan.lanes + static_cast<int64_t>(v) * kWaveFieldCount * plan.width;
    const int32_t first = isFull ? kWavePassed : 0;
    std::fill(fields + first * plan.width, fields + kWaveFieldCount * plan.width, 0.0);
    if (plan.fades != nullptr) {
        std::fill_n(plan.fades + static_cast<int64_t>(v) * kWaveFadeFieldCount * plan.width,
                    kWaveFadeFieldCount * plan.width, 0.0);
    }
}

/// Channel `c` of a filter outside the vectors.
void planEnd(double* fields, const CWavePlan& plan, int32_t c, const COperation& filter) {
    const auto set = [&](CWaveEndField field, double value) {
        fields[field * plan.width + plan.width - plan.channels + c] = value;
    };
    const double* const block = filter.signal(1);
    set(kWaveEndC0, block[0]);
    set(kWaveEndC1, block[1]);
    set(kWaveEndC2, block[2]);
    set(kWaveEndC3, block[3]);
    set(kWaveEndGain, filter.immediate);
}

void planEnds(CWavePlan& plan, const CWaveChannel* channels) {
    for (int32_t c = 0; c < plan.channels; ++c) {
        const CWaveChannel& channel = channels[c];
        plan.in[c] = channel.first().signal(kLinkOperand);
        plan.out[c] = channel.last().signal(0);
        if (channel.before) {
            planEnd(plan.before, plan, c, *channel.before);
            plan.stateBefore[c] = channel.before->signal(1) + kBiquadState;
        }
        if (plan.post == CWavePost::Alone) {
            planEnd(plan.behind, plan, c, *channel.filterBehind);
            const int32_t lane = plan.width - plan.channels + c;
            plan.behind[kWaveEndHighPassFactor * plan.width + lane] = channel.highPassBehind->signal(1)[0];
            plan.behind[kWaveEndHighPassGain * plan.width + lane] = channel.highPassBehind->immediate;
            plan.behind[kWaveEndOutGain * plan.width + lane] = gainOf(channel);
            plan.stateBehind[c] = channel.filterBehind->signal(1) + kBiquadState;
            plan.highPassBehind[c] = channel.highPassBehind->signal(1) + kOnePoleState;
        }
    }
}

}  // namespace

bool CWaveChannel::hasFade() const {
    return std::any_of(bands, bands + bandCount, [](const CBand& band) { return band.oldFilter != nullptr; });
}

const COperation& CWaveChannel::last() const {
    if (gainBehind) {
        return *gainBehind;
    }
    return highPassBehind ? *highPassBehind : *bands[bandCount - 1].tube;
}

bool planWave(const CWaveChannel* channels, int32_t count, int32_t width, CPlanMemory& memory, CWavePlan& plan) {
    const CWaveChannel& shape = channels[0];
    const int32_t perVector = width / count;
    plan = {};
    plan.width = width;
    plan.channels = count;
    plan.bands = shape.bandCount;
    plan.vectors = (plan.bands + perVector - 1) / perVector;
    plan.count = shape.first().count;
    plan.post = !shape.filterBehind           ? CWavePost::None
                : plan.bands % perVector == 0 ? CWavePost::Alone
                                              : CWavePost::InLanes;
    const int64_t lanes = static_cast<int64_t>(plan.vectors) * width;
    plan.lanes = memory.take<double>(lanes * kWaveFieldCount);
    plan.before = memory.take<double>(kWaveEndFieldCount * width);
    plan.behind = memory.take<double>(kWaveEndFieldCount * width);
    plan.states = memory.take<CWaveStates>(lanes);
    const bool hasFade = std::any_of(channels, channels + count, [](const CWaveChannel& c) { return c.hasFade(); });
    plan.fades = hasFade ? memory.take<double>(lanes * kWaveFadeFieldCount) : nullptr;
    if (!plan.lanes || !plan.before || !plan.behind || !plan.states || !plan.fades != !hasFade) {
        return false;
    }
    for (int32_t v = 0; v < plan.vectors; ++v) {
        clearVector(plan, v);
    }
    std::fill_n(plan.before, kWaveEndFieldCount * width, 0.0);
    std::fill_n(plan.behind, kWaveEndFieldCount * width, 0.0);
    for (int32_t v = 0; v < plan.vectors; ++v) {
        int32_t faded = 0;
        for (int32_t l = 0; l < width; ++l) {
            planLane(plan, channels, v, l);
            faded += plan.states[v * width + l].ramp != nullptr ? 1 : 0;
        }
        plan.fading |= static_cast<uint32_t>(faded > 0) << v;
        plan.fadingWhole |= static_cast<uint32_t>(faded == width) << v;
    }
    planEnds(plan, channels);
    return true;
}

}  // namespace tarv
