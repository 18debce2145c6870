#include "Audio/Modules/CModMetaTube.h"

#include <cmath>

#include "Tests/Audio/Graph/GraphTree.h"

namespace tarv {
namespace {

using CSignal = std::vector<double>;

/// The stage as its formulas say, one sample at a time.
class CTubeReference {
public:
    struct CValues {
        double ratioA = 1.0 / 1.05, ratioB = 1.0 / 1.1, kneeA = 3.5, kneeB = 4.8, biasI = -1.8, biasV = 0.5,
               gainI = 1.0, gainV = 0.15, point = 1.009, frequency = 50.0;
        bool isInverted = false;
    };
    CTubeReference(const CValues& values, double rate)
        : values_(values), a_(values.ratioA, values.kneeA), b_(values.ratioB, values.kneeB) {
        rest_ = mix(values.biasI, values.biasV);
        autoGain_ =
            1.0 / (mix(values.gainI * values.point + values.biasI, values.point * values.gainV + values.biasV) - rest_);
        const double a = 2.0 - std::cos(2.0 * M_PI * values.frequency / rate);
        coefficient_ = 1.0 + std::sqrt(a * a - 1.0) - a;
        coefficient_ = values.isInverted ? -coefficient_ : coefficient_;
    }
    double next(double shaped, double feed) {
        const double x = shaped * values_.gainI + values_.biasI;
        const double v = (state_ + (feed - state_) * coefficient_) * values_.gainV + values_.biasV;
        state_ = (a_(x) - rest_) + (b_(x) - a_(x)) * v;
        return autoGain_ * state_;
    }

private:
    struct CCurve {
        CCurve(double ratio, double knee) {
            const double bend = ratio > 0.9999 ? 0.9999 - 1.0 : ratio > 0.002 ? -(1.0 - ratio) : -1.0;
            slope = bend + 1.0;
            start = knee * -0.5;
            const double u = (M_PI - std::atan(-bend)) * 0.5;
            centre = std::tan(u) * start;
            end = start - std::sin(2.0 * u) * centre;
        }
        double operator()(double x) const {
            if (!(x > start)) {
                return x;
            }
            const double d = x - start;
            return x >= end ? slope * x : std::sqrt(centre * centre - d * d) + x + centre;
        }
        double slope, start, centre, end;
    };
    double mix(double x, double v) const { return a_(x) + (b_(x) - a_(x)) * v; }

    CValues values_;
    CCurve a_;
    CCurve b_;
    double rest_ = 0.0, autoGain_ = 0.0, coefficient_ = 0.0, state_ = 0.0;
};

constexpr const char* kNames[] = {"ratio-a", "ratio-b", "knee-a",          "knee-b",    "bias-I",       "bias-V",
                                  "gain-I",  "gain-V",  "auto-gain-point", "feed-freq", "feed-freq-inv"};

/// The stage "t" with every parameter open to changes, at the product's defaults.
class CTube : public CGraphTree {
public:
    explicit CTube(bool isSmooth = false, double rate = kRate) : CGraphTree({node(isSmooth)}) {
        graph.hostRate = rate;
        EXPECT_EQ(build("t"), "");
        start();
    }
    CSignal pass(const CSignal& shaped, const CSignal& feed) {
        return run({{0, 0, shaped}}, {{0, 0, feed}})[0].samples;
    }

private:
    static CTestNode node(bool isSmooth) {
        const CTestAttributes open = {{"is-storable", "true"}};
        CTestNode tube{"audio:modMetaTube",
                       "t",
                       {{"is-smooth-update", isSmooth ? "true" : "false"}, {"xfade-length", "0.001"}},
                       {paramNode("ratio-a", "ratio", "50:1", "1:1", "1.05:1", open),
                        paramNode("ratio-b", "ratio", "50:1", "1:1", "1.1:1", open), numberNode("knee-a", "3.5"),
                        numberNode("knee-b", "4.8"), numberNode("bias-I", "-1.8"), numberNode("bias-V", "0.5"),
                        numberNode("gain-I", "1"), numberNode("gain-V", "0.15"), numberNode("auto-gain-point", "1.009"),
                        numberNode("feed-freq", "50"), numberNode("feed-freq-inv", "0")}};
        for (int32_t i = 0; i < 11; ++i) {
            tube.children.push_back(allocNode(kNames[i], i));
        }
        return tube;
    }
};

void expectNear(const CSignal& actual, const CSignal& shaped, const CSignal& feed, CTubeReference& reference) {
    ASSERT_EQ(actual.size(), shaped.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        const double expected = reference.next(shaped[i], feed[i]);
        ASSERT_NEAR(actual[i], expected, 1e-12 * (1.0 + std::fabs(expected))) << i;
    }
}

TEST(CModMetaTubeTest, TheStageFollowsItsFormulasAtEveryRate) {
    const CSignal shaped = noiseSignal(1000, 3);
    const CSignal feed = noiseSignal(1000, 4);
    for (const double rate : {44100.0, 48000.0, 352800.0}) {
        CTube tree(false, rate);
        CTubeReference reference({}, rate);
        expectNear(tree.pass(shaped, feed), shaped, feed, reference);
    }
}

TEST(CModMetaTubeTest, EverySlotIsHeard) {
    using CValues = CTubeReference::CValues;
    const struct {
        int32_t slot;
        double value;
        void (*apply)(CValues& values, double value);
    } rows[] = {
        {0, 0.5, [](CValues& v, double value) { v.ratioA = value; }},
        {1, 0.5, [](CValues& v, double value) { v.ratioB = value; }},
        {2, 2.0, [](CValues& v, double value) { v.kneeA = value; }},
        {3, 2.0, [](CValues& v, double value) { v.kneeB = value; }},
        {4, -0.3, [](CValues& v, double value) { v.biasI = value; }},
        {5, 0.2, [](CValues& v, double value) { v.biasV = value; }},
        {6, 1.5, [](CValues& v, double value) { v.gainI = value; }},
        {7, 0.9, [](CValues& v, double value) { v.gainV = value; }},
        {8, 0.6, [](CValues& v, double value) { v.point = value; }},
        {9, 5000.0, [](CValues& v, double value) { v.frequency = value; }},
        {10, 0.51, [](CValues& v, double) { v.isInverted = true; }},
        {10, 0.5, [](CValues&, double) {}},
    };
    const CSignal shaped = noiseSignal(200, 3);
    const CSignal feed = noiseSignal(200, 4);
    for (const auto& row : rows) {
        CTube tree;
        tree.pass({0.5}, {0.5});
        tree.set(std::string("plugin.t.") + kNames[row.slot], row.value);
        CValues values;
        row.apply(values, row.value);
        SCOPED_TRACE(kNames[row.slot]);
        if (row.slot == 10 && row.value == 0.5) {
            CTubeReference reference(values, 44100.0);
            reference.next(0.5, 0.5);  // nothing changed: the state goes on
            expectNear(tree.pass(shaped, feed), shaped, feed, reference);
        } else {
            CTubeReference reference(values, 44100.0);  // a new design starts with no state
            expectNear(tree.pass(shaped, feed), shaped, feed, reference);
        }
    }
}

TEST(CModMetaTubeTest, UnsetSlotsTakeTheirOwnValues) {
    CTestNode node{"audio:modMetaTube", "t"};
    for (int32_t i = 0; i < 11; ++i) {
        node.children.push_back(allocNode(kNames[i], i));
    }
    CGraphTree tree({node});
    ASSERT_EQ(tree.build("t"), "");
    CTubeReference reference({1.0, 1.0, 1.0, 1.0, 0.0, 0.0, 1.0, 1.0, 1.0, 1000.0, false}, 44100.0);
    const CSignal shaped = noiseSignal(200, 3);
    const CSignal feed = noiseSignal(200, 4);
    expectNear(tree.run({{0, 0, shaped}}, {{0, 0, feed}})[0].samples, shaped, feed, reference);
}

TEST(CModMetaTubeTest, SilenceOnBothPortsIsSilenceFromTheFirstSample) {
    // The formulas give exactly 0; in the loop's order of operations the rest output is matched but for one rounding.
    CTube tree;
    for (const double sample : tree.pass(CSignal(100, 0.0), CSignal(100, 0.0))) {
        EXPECT_LT(std::fabs(sample), 5e-16);
    }
}

TEST(CModMetaTubeTest, WithoutAFeedTheInputPassesByReference) {
    CTube tree;
    const uint64_t before = tree.graph.context->counters().operations;
    const CSignal in = noiseSignal(100);
    EXPECT_EQ(tree.run({{0, 0, in}})[0].samples, in);
    EXPECT_EQ(tree.run({{0, 0, in}}, {{0, 1, in}})[0].samples, in);  // another channel's feed
    EXPECT_EQ(tree.graph.context->counters().operations, before);
}

TEST(CModMetaTubeTest, TheFeedIsFoundByGroupAndElementElseByElement) {
    const CSignal shaped = noiseSignal(50, 3);
    const CSignal feed = noiseSignal(50, 4);
    CTube tree;
    const CTestChannels out =
        tree.run({{0, 0, shaped}, {1, 1, shaped}}, {{5, 0, shaped}, {0, 0, feed}, {2, 1, shaped}, {3, 1, feed}});
    for (const CTestChannel& channel : out) {
        CTubeReference reference({}, 44100.0);
        expectNear(channel.samples, shaped, feed, reference);
    }
}

TEST(CModMetaTubeTest, AResetClearsTheStateAndKeepsTheDesign) {
    CTube tree;
    tree.set("plugin.t.gain-V", 0.9);
    const CSignal in = noiseSignal(50);
    const CSignal fresh = tree.pass(in, in);
    EXPECT_NE(tree.pass(in, in), fresh);
    tree.process().reset();
    EXPECT_EQ(tree.pass(in, in), fresh);
}

TEST(CModMetaTubeTest, ASmoothChangeFadesToASecondStageWithoutState) {
    CTube tree(true);
    const CSignal shaped = noiseSignal(144, 3);
    const CSignal feed = noiseSignal(144, 4);
    const auto part = [](const CSignal& signal, int64_t from, int64_t to) {
        return CSignal(signal.begin() + from, signal.begin() + to);
    };
    tree.pass(part(shaped, 0, 100), part(feed, 0, 100));
    tree.set("plugin.t.bias-V", 0.9);
    const CSignal fade = tree.pass(part(shaped, 100, 144), part(feed, 100, 144));
    CTubeReference old({}, 44100.0);
    for (size_t i = 0; i < 100; ++i) {
        old.next(shaped[i], feed[i]);
    }
    CTubeReference::CValues values;
    values.biasV = 0.9;
    CTubeReference next(values, 44100.0);
    for (size_t i = 0; i < 44; ++i) {
        const double share = 0.5 - 0.5 * std::sin((0.5 + static_cast<double>(i) / 44.0) * M_PI);
        const double with = next.next(shaped[100 + i], feed[100 + i]);
        EXPECT_NEAR(fade[i], share * with + (1.0 - share) * old.next(shaped[100 + i], feed[100 + i]), 1e-12) << i;
    }
}

TEST(CModMetaTubeTest, EachGroupHasItsOwnValues) {
    CTube tree;
    tree.set("plugin.t.bias-V", 1, 0, 0.9);
    const CSignal in = noiseSignal(50);
    const CTestChannels out = tree.run({{0, 0, in}, {1, 1, in}}, {{0, 0, in}, {1, 1, in}});
    CTubeReference first({}, 44100.0);
    CTubeReference::CValues values;
    values.biasV = 0.9;
    CTubeReference second(values, 44100.0);
    expectNear(out[0].samples, in, in, first);
    expectNear(out[1].samples, in, in, second);
}

}  // namespace
}  // namespace tarv
