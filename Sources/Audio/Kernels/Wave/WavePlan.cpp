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

double gainOf(const CWaveChannel& channel) {
    return channel.gainBehind ? channel.gainBehind->immediate : 1.0;
}

void planLane(CWavePlan& plan, const CWaveChannel* channels, int32_t v, int32_t l) {
    const CWaveChannel& channel = channels[l % plan.channels];
    const int32_t band = v * (plan.width / plan.channels) + l / plan.channels;
    CLaneFields fields(plan, v, l);
    CWaveStates& states = plan.states[v * plan.width + l];
    states = {nullptr, nullptr, nullptr};
    fields.set(kWaveNearerKneeEnd, kNever);
    fields.set(kWaveBand, band);
    if (band < plan.bands) {
        const CWaveChannel::CBand& o = channel.bands[band];
        auto& tube = *o.tube->operand<CTubeBlock>(1);
        fields.setFilter(*o.filter, *o.highPass);
        fields.setTube(tube);
        states = {o.filter->signal(1) + kBiquadState, o.highPass->signal(1) + kOnePoleState, &tube.feedState};
    } else if (band == plan.bands && plan.post == CWavePost::InLanes) {
        fields.setFilter(*channel.filterBehind, *channel.highPassBehind);
        fields.setPlain(gainOf(channel));
        states = {channel.filterBehind->signal(1) + kBiquadState, channel.highPassBehind->signal(1) + kOnePoleState,
                  nullptr};
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
    plan.post = !shape.filterBehind                 ? CWavePost::None
                : plan.bands % perVector == 0 ? CWavePost::Alone
                                              : CWavePost::InLanes;
    const int64_t lanes = static_cast<int64_t>(plan.vectors) * width;
    plan.lanes = memory.take<double>(lanes * kWaveFieldCount);
    plan.before = memory.take<double>(kWaveEndFieldCount * width);
    plan.behind = memory.take<double>(kWaveEndFieldCount * width);
    plan.states = memory.take<CWaveStates>(lanes);
    if (!plan.lanes || !plan.before || !plan.behind || !plan.states) {
        return false;
    }
    std::fill_n(plan.lanes, lanes * kWaveFieldCount, 0.0);
    std::fill_n(plan.before, kWaveEndFieldCount * width, 0.0);
    std::fill_n(plan.behind, kWaveEndFieldCount * width, 0.0);
    for (int32_t v = 0; v < plan.vectors; ++v) {
        for (int32_t l = 0; l < width; ++l) {
            planLane(plan, channels, v, l);
        }
    }
    planEnds(plan, channels);
    return true;
}

}  // namespace tarv
