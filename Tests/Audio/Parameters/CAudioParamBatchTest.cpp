#include "Audio/Parameters/CAudioParamCollector.h"

#include "Tests/Audio/Graph/ProcessStub.h"

namespace tarv {
namespace {

constexpr int32_t kAll = CAudioParamData::kAllGroups;

class ParamBatch : public testing::Test {
protected:
    ParamBatch()
        : tree_({paramNode("gains", "real", "-99", "99", "0,0,0,0,0,0,0"), paramNode("other", "real", "-99", "99", "5"),
                 paramNode("pair", "real real", "-9 -9", "9 9", "1*2", {{"element-size", "2"}})}),
          gains_(tree_.define("gains")),
          other_(tree_.define("other")) {
        tree_.env().setRunning(true);
        process_.consume(gains_, -1, -1);
        process_.take();
    }
    ~ParamBatch() override { collector().detachConsumers(); }
    CAudioParamCollector& collector() { return tree_.collector(); }
    void post(CAudioParam& param, int32_t group, int32_t first, const std::vector<double>& values, double time = 0.0,
              bool resize = false) {
        CAudioParamChange* change = collector().createChange(param, group, first, 0);
        fillChange(*change, group, first, values, resize);
        collector().postChange(param, change, true, time);
    }
    std::vector<CTaken> round() {
        collector().applyPendingChanges(0.0);
        return process_.take();
    }

    CParamTree tree_;
    CAudioParam& gains_;
    CAudioParam& other_;
    CProcessStub process_;
};

TEST_F(ParamBatch, AFastDragCostsOneRecordABlock) {
    for (int i = 0; i < 1000; ++i)
        gains_.setValue(0, 3, i * 0.01);
    EXPECT_EQ(collector().pendingCount(), 1);
    EXPECT_EQ(round(), (std::vector<CTaken>{{0.0, 0, 3, {9.99}}}));
}

TEST_F(ParamBatch, OverlappingAndTouchingRangesBecomeOne) {
    post(gains_, 0, 2, {1, 2});
    post(gains_, 0, 3, {3, 4});
    EXPECT_EQ(round(), (std::vector<CTaken>{{0.0, 0, 2, {1, 3, 4}}}));
    post(gains_, 0, 4, {5});
    post(gains_, 0, 3, {6});
    EXPECT_EQ(round(), (std::vector<CTaken>{{0.0, 0, 3, {6, 5}}}));
    post(gains_, 0, 1, {1, 2, 3, 4});
    post(gains_, 0, 2, {9});
    EXPECT_EQ(round(), (std::vector<CTaken>{{0.0, 0, 1, {1, 9, 3, 4}}}));
}

TEST_F(ParamBatch, AGapBetweenMergedRangesHoldsTheUsersValues) {
    post(gains_, 0, 1, {8, 9});
    round();
    post(gains_, 0, 0, {1});
    post(gains_, 0, 3, {4});
    EXPECT_EQ(collector().pendingCount(), 1);
    EXPECT_EQ(round(), (std::vector<CTaken>{{0.0, 0, 0, {1, 8, 9, 4}}}));
}

TEST_F(ParamBatch, GapsOfLongElementsKeepTheirNumbersTogether) {
    CAudioParam& pair = tree_.define("pair");
    CProcessStub process;
    process.consume(pair, 0, -1);
    process.take();
    post(pair, 0, 0, {3, 4});
    post(pair, 0, 2, {5, 6});
    collector().applyPendingChanges(0.0);
    EXPECT_EQ(process.take(), (std::vector<CTaken>{{0.0, 0, 0, {3, 4, 1, 2, 5, 6}}}));
    collector().detachConsumers();
}

TEST_F(ParamBatch, MergedResizesHaveTheResultOfSingleOnes) {
    const struct {
        int32_t first;
        std::vector<double> values;
        bool isResize;
    } kChanges[] = {{0, {1, 2, 3}, true}, {1, {7}, false}, {4, {8}, false},
                    {2, {9}, true},       {0, {5}, true},  {3, {6}, true}};
    for (const auto& c : kChanges) {
        post(gains_, 0, c.first, c.values, 0.0, c.isResize);
        EXPECT_EQ(collector().pendingCount(), 1);
    }
    round();
    EXPECT_EQ(process_.slot.data.elementCount(0), 4);
    for (int32_t element = 0; element < 4; ++element)
        EXPECT_EQ(process_.slot.data.value(0, element), gains_.value(0, element)) << element;
    EXPECT_EQ(gains_.value(0, 0), 5.0);
    EXPECT_EQ(gains_.value(0, 3), 6.0);
}

TEST_F(ParamBatch, OtherGroupsTimesAndParametersBetweenKeepChangesApart) {
    post(gains_, 0, 0, {1});
    post(gains_, 1, 0, {2});
    post(gains_, 0, 0, {3});
    EXPECT_EQ(collector().pendingCount(), 3);
    post(gains_, 0, 0, {4}, 1.0);
    EXPECT_EQ(collector().pendingCount(), 4);
    post(gains_, 0, 0, {5}, 1.0 + 2.220446049250313e-16);
    EXPECT_EQ(collector().pendingCount(), 4);
    post(other_, 0, 0, {6}, 1.0);
    post(gains_, 0, 0, {7}, 1.0);
    EXPECT_EQ(collector().pendingCount(), 6);
    EXPECT_EQ(round().back().values, std::vector<double>{7});
}

TEST_F(ParamBatch, AChangeForAllGroupsOfAnotherParameterIsPassedOverAndOneOfTheSameIsNot) {
    post(gains_, 0, 0, {1});
    post(other_, kAll, 0, {2});
    post(gains_, 0, 1, {3});
    EXPECT_EQ(collector().pendingCount(), 2);
    post(gains_, kAll, 0, {4});
    post(gains_, 0, 0, {5});
    EXPECT_EQ(collector().pendingCount(), 4);
    round();
    EXPECT_EQ(process_.slot.data.value(0, 0), 5.0);
    EXPECT_EQ(gains_.value(0, 0), 5.0);
}

TEST_F(ParamBatch, WhileStoppedTheMemoryStaysBoundedAndTheLastValuesArrive) {
    tree_.env().setRunning(false);
    const int32_t madeBefore = collector().pendingCount();
    for (int i = 0; i < 20000; ++i) {
        post(gains_, i % 3, i % 7, {i * 0.001}, i);
        post(other_, 0, 0, {i * 0.002});
        if (i % 5 == 0)
            post(gains_, kAll, i % 7, {-1.0 * (i % 50)});
    }
    EXPECT_EQ(madeBefore, 0);
    EXPECT_EQ(collector().pendingCount(), 4);
    for (const CTaken& taken : round())
        EXPECT_EQ(taken.time, 0.0);
    for (int32_t group = 0; group < 3; ++group)
        for (int32_t element = 0; element < 7; ++element)
            EXPECT_EQ(process_.slot.data.value(group, element), gains_.value(group, element))
                << group << ' ' << element;
}

TEST_F(ParamBatch, AHostThatTakesNoBlocksDoesNotFillTheMemory) {
    for (int i = 0; i < 20000; ++i) {
        post(gains_, i % 2, i % 7, {i * 0.001});
        post(gains_, kAll, i % 7, {i * 0.003});
        post(other_, 0, 0, {i * 0.002});
    }
    EXPECT_LT(collector().pendingCount(), 300);
    round();
    for (int32_t element = 0; element < 7; ++element)
        EXPECT_EQ(process_.slot.data.value(1, element), gains_.value(1, element)) << element;
}

}  // namespace
}  // namespace tarv
