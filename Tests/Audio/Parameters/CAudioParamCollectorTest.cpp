#include <cmath>

#include "Tests/Audio/Graph/ProcessStub.h"

namespace tarv {
namespace {

class ParamCollector : public testing::Test {
protected:
    ParamCollector()
        : tree_({paramNode("gains", "real", "-99", "99", "0,0,0,0,0,0,0"), paramNode("other", "real", "-99", "99", "5"),
                 paramNode("solo", "real", "-99", "99", "1", {{"is-single-group", "1"}}),
                 paramNode("names", "text", "", "", "L,R", {{"data-type", "1"}})}),
          gains_(tree_.define("gains")) {
        tree_.env().setRunning(true);
    }
    CAudioParamCollector& collector() { return tree_.collector(); }
    void post(CAudioParam& param, int32_t group, int32_t first, const std::vector<double>& values, double time = 0.0,
              bool resize = false) {
        CAudioParamChange* change = collector().createChange(param, group, first, 0);
        fillChange(*change, group, first, values, resize);
        collector().postChange(param, change, true, time);
    }

    CParamTree tree_;
    CAudioParam& gains_;
};

TEST_F(ParamCollector, WithoutEnvironmentTheTreeFails) {
    CTestApplication application(paramCreators());
    auto root = application.makeRoot();
    const std::string failure = consumed(loadTree(*root, {{"audio:param-collector", "c", {{"env", "nowhere"}}}}));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "No audio environment object 'nowhere' found.");
}

TEST_F(ParamCollector, AParameterIsMadeOnFirstDemandAndFoundFromThenOn) {
    EXPECT_EQ(collector().findParam("x.y"), nullptr);
    CAudioParam* param = collector().getParam("x.y");
    EXPECT_EQ(param->fullName(), "x.y");
    EXPECT_FALSE(param->isDefined());
    EXPECT_EQ(param->value(0, 0), 0.0);
    EXPECT_EQ(collector().getParam("x.y"), param);
    EXPECT_EQ(collector().findParam("x.y"), param);
}

TEST_F(ParamCollector, AParameterIsKnownOnceDefinedUnlessItsNameIsItsDisplayPath) {
    collector().getParam("x.y");
    EXPECT_FALSE(collector().hasParam("x.y"));
    EXPECT_FALSE(collector().hasParam("nothing"));
    EXPECT_TRUE(collector().hasParam("p.gains"));
    collector().define("gains", tree_.info("gains"));
    EXPECT_FALSE(collector().hasParam("gains"));
}

TEST_F(ParamCollector, ASecondDefinitionKeepsTheFirst) {
    gains_.setValue(0, 1, 3.0);
    EXPECT_EQ(collector().define("p.gains", tree_.info("other")), &gains_);
    EXPECT_EQ(gains_.info().displayPath(), "gains");
    EXPECT_EQ(gains_.value(0, 1), 3.0);
}

TEST_F(ParamCollector, AConsumerStartsWithTheGroupItAsksFor) {
    CProcessStub process;
    process.consume(gains_, 0, 3);
    EXPECT_EQ(process.changed, 1);
    EXPECT_EQ(process.slot.param, &gains_);
    EXPECT_EQ(process.take(-1.0), (std::vector<CTaken>{{-1.0, 0, 0, {0, 0, 0, 0, 0, 0, 0}}}));
    CProcessStub second;
    second.consume(gains_, 1, 3);
    EXPECT_EQ(second.take(), std::vector<CTaken>{});
    EXPECT_TRUE(second.slot.data.isValid());  // at its defaults
}

TEST_F(ParamCollector, AConsumerOfAllGroupsStartsWithEachExistingGroup) {
    post(gains_, 2, 0, {4, 5});
    collector().applyPendingChanges(0.0);
    post(gains_, 0, 0, {1});
    collector().applyPendingChanges(0.0);  // applies the first change to the engine-side value
    CProcessStub process;
    process.consume(gains_, -1, -1);
    EXPECT_EQ(process.take(),
              (std::vector<CTaken>{{-1.0, 0, 0, {0, 0, 0, 0, 0, 0, 0}}, {-1.0, 2, 0, {4, 5}}, {0.0, 0, 0, {1}}}));
    EXPECT_EQ(process.slot.data.value(0, 0), 1.0);
    EXPECT_EQ(process.slot.data.value(2, 1), 5.0);
}

TEST_F(ParamCollector, ASlotBoundBeforeTheDefinitionGetsItsValuesWithIt) {
    CAudioParam* param = collector().getParam("p.other");
    CProcessStub process;
    process.consume(*param, 0, 0);
    EXPECT_FALSE(process.slot.data.isValid());
    EXPECT_TRUE(process.queue.isEmpty());
    tree_.define("other");
    EXPECT_EQ(process.changed, 1);
    EXPECT_EQ(process.take(), (std::vector<CTaken>{{-1.0, 0, 0, {5}}}));
    EXPECT_EQ(process.slot.data.value(0, 9), 5.0);
}

TEST_F(ParamCollector, GroupAndElementDecideWhichConsumersGetAChange) {
    const struct {
        int32_t group, element;  // the consumer's
        int32_t changeGroup, first, count;
        bool isResize, isDelivered;
    } kCases[] = {
        {0, 3, 0, 3, 1, false, true},    {0, 3, 1, 3, 1, false, false}, {0, 3, 9999, 3, 1, false, true},
        {5, 3, 9999, 0, 4, false, true}, {-1, 3, 6, 3, 1, false, true}, {-2, 3, 6, 3, 1, false, true},
        {0, -1, 0, 6, 1, false, true},   {0, 3, 0, 0, 3, false, false}, {0, 3, 0, 4, 2, false, false},
        {0, 3, 0, 0, 4, false, true},    {0, 3, 0, 0, 2, true, true},   {1, 3, 0, 0, 2, true, false},
        {-3, 3, 0, 3, 1, false, false},  {0, 9, 0, 9, 1, false, true},
    };
    for (const auto& c : kCases) {
        CProcessStub process;
        process.consume(gains_, c.group, c.element);
        process.take();
        post(gains_, c.changeGroup, c.first, std::vector<double>(static_cast<size_t>(c.count), 1.0), 0.0, c.isResize);
        collector().applyPendingChanges(0.0);
        EXPECT_EQ(process.changed, c.isDelivered ? 1 : 0)
            << c.group << ' ' << c.element << ' ' << c.changeGroup << ' ' << c.first;
        EXPECT_EQ(process.take().size(), c.isDelivered ? 1u : 0u);
        collector().removeConsumers(process.queue);
    }
}

TEST_F(ParamCollector, AParameterOfASingleGroupIsSeenByEveryGroup) {
    CAudioParam& solo = tree_.define("solo");
    CProcessStub process;
    process.consume(solo, 3, 0);
    process.take();
    EXPECT_EQ(process.slot.data.value(3, 0), 1.0);
    post(solo, 0, 0, {2});
    post(solo, 3, 0, {4});  // no such group
    collector().applyPendingChanges(0.0);
    EXPECT_EQ(process.take(), (std::vector<CTaken>{{0.0, 0, 0, {2}}}));
    EXPECT_EQ(process.slot.data.value(3, 0), 2.0);
    EXPECT_EQ(solo.value(3, 0), 2.0);
}

TEST_F(ParamCollector, ARoundAddsItsOffsetAndKeepsTheOrder) {
    CProcessStub process;
    process.consume(gains_, 0, -1);
    process.take();
    post(gains_, 0, 0, {1}, 5.0);
    post(gains_, 0, 1, {2}, 3.0);
    post(gains_, 0, 2, {3}, 5.0);
    collector().applyPendingChanges(100.0);
    EXPECT_EQ(process.queue.nextTime(0.0), 103.0);
    EXPECT_EQ(process.take(102.0), std::vector<CTaken>{});
    EXPECT_EQ(process.take(104.0), (std::vector<CTaken>{{103.0, 0, 1, {2}}}));
    EXPECT_EQ(process.queue.nextTime(0.0), 105.0);
    EXPECT_EQ(process.take(105.0), (std::vector<CTaken>{{105.0, 0, 0, {1}}, {105.0, 0, 2, {3}}}));
    EXPECT_EQ(process.queue.nextTime(7.0), 7.0);
}

TEST_F(ParamCollector, TheEnginesValueLagsOneRound) {
    post(gains_, 0, 0, {1});
    collector().applyPendingChanges(0.0);
    EXPECT_EQ(gains_.engineData().value(0, 0), 0.0);
    EXPECT_EQ(gains_.value(0, 0), 1.0);
    collector().applyPendingChanges(0.0);  // nothing posted: no round
    EXPECT_EQ(gains_.engineData().value(0, 0), 0.0);
    post(tree_.define("other"), 0, 0, {1});
    collector().applyPendingChanges(0.0);
    EXPECT_EQ(gains_.engineData().value(0, 0), 1.0);
}

TEST_F(ParamCollector, AChangeOfTheAudioSideGoesStraightToTheProcesses) {
    CProcessStub process;
    process.consume(gains_, 0, -1);
    process.take();
    gains_.setEngineValue(0, 2, 7.0);
    EXPECT_EQ(collector().pendingCount(), 0);
    EXPECT_EQ(process.take(-1.0), (std::vector<CTaken>{{-1.0, 0, 2, {7}}}));
    EXPECT_EQ(gains_.value(0, 2), 0.0);  // the user side stays
    gains_.setEngineValue(0, 2, std::nan(""));
    EXPECT_TRUE(process.queue.isEmpty());
}

TEST_F(ParamCollector, ValuesAreClampedAndNotANumberIsIgnored) {
    gains_.setValue(0, 0, 500.0);
    EXPECT_EQ(gains_.value(0, 0), 99.0);
    gains_.setValue(0, 0, std::nan(""));
    gains_.setValue(0, 0, 3.0, 1);
    gains_.setValue(0, -1, 3.0);
    gains_.setValue(-1, 0, 3.0);
    collector().getParam("undefined")->setValue(0, 0, 3.0);
    EXPECT_EQ(gains_.value(0, 0), 99.0);
    EXPECT_EQ(collector().pendingCount(), 1);
}

TEST_F(ParamCollector, TextsChangeOnThePostersThreadAndAreNeverQueued) {
    CAudioParam& names = tree_.define("names");
    CProcessStub process;
    process.consume(names, 0, -1);
    EXPECT_EQ(process.slot.data.text(0, 1), "R");
    names.setText(0, 1, "right");
    EXPECT_EQ(names.text(0, 1), "right");
    EXPECT_EQ(names.engineData().text(0, 1), "right");
    EXPECT_EQ(collector().pendingCount(), 0);
    EXPECT_TRUE(process.queue.isEmpty());
    names.setValue(0, 0, 1.0);
    gains_.setText(0, 0, "x");
    EXPECT_EQ(names.text(0, 0), "L");
    EXPECT_EQ(gains_.value(0, 0), 0.0);
}

TEST_F(ParamCollector, ListenersAreNotifiedOfEveryChangeButTheirOwn) {
    struct CListener : CAudioParamListener {
        void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override {
            received.push_back({static_cast<double>(count), group, first, {param.value(group, first)}});
        }
        std::vector<CTaken> received;
    } first, second;
    gains_.addListener(first);
    gains_.addListener(second);
    gains_.setValue(0, 2, 3.0, 0, &first);
    post(gains_, 1, 0, {4, 5});
    gains_.setEngineValue(0, 0, 1.0);
    EXPECT_EQ(first.received, (std::vector<CTaken>{{2.0, 1, 0, {4}}}));
    EXPECT_EQ(second.received, (std::vector<CTaken>{{1.0, 0, 2, {3}}, {2.0, 1, 0, {4}}}));
    gains_.removeListener(second);
    gains_.setValue(0, 2, 4.0, 0, &first);
    EXPECT_EQ(second.received.size(), 2u);
    gains_.removeListener(first);
}

TEST_F(ParamCollector, ARemovedProcessGetsNothingAndItsConsumerIsReused) {
    auto process = std::make_unique<CProcessStub>();
    process->consume(gains_, 0, -1);
    collector().removeConsumers(process->queue);
    EXPECT_TRUE(process->queue.isEmpty());
    process.reset();
    post(gains_, 0, 0, {1});
    collector().applyPendingChanges(0.0);
    const uint64_t before = CHeap::counters().allocations;
    for (int i = 0; i < 20; ++i) {
        CProcessStub again;
        again.consume(gains_, 0, -1);
        collector().removeConsumers(again.queue);
    }
    // One for the store of each stub. Without reuse there would be two or three more, for blocks of eight consumers.
    EXPECT_EQ(CHeap::counters().allocations - before, 20u);
}

TEST_F(ParamCollector, DetachedProcessesMayBeDestroyedBeforeTheCollector) {
    CProcessStub process;
    process.consume(gains_, 0, -1);
    post(gains_, 0, 0, {1});
    collector().applyPendingChanges(0.0);
    collector().detachConsumers();
    EXPECT_TRUE(process.queue.isEmpty());
    post(gains_, 0, 0, {2});
    collector().applyPendingChanges(0.0);
    EXPECT_TRUE(process.queue.isEmpty());
}

}  // namespace
}  // namespace tarv
