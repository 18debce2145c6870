#include "Audio/Parameters/CAudioParamData.h"

#include "Audio/Parameters/CAudioParamChange.h"
#include "Tests/Audio/Parameters/ParamTree.h"

namespace tarv {
namespace {

std::vector<double> groupOf(const CAudioParamData& data, int32_t group) {
    std::vector<double> values;
    for (int32_t i = 0; i < data.elementCount(group); ++i)
        values.push_back(data.value(group, i));
    return values;
}

/// Stores of three parameters: "seven" (64, 150, ... of seven bands), "flat" (0) and "names" (eight texts).
class ParamData : public testing::Test {
protected:
    ParamData()
        : tree_({paramNode("seven", "freq", "20", "21000", "64,150,350,1000,2000,6000,12000"),
                 paramNode("flat", "real", "-9", "9", "0.5"),
                 paramNode("pair", "real real", "-9 -9", "9 9", "1*2,3*4", {{"element-size", "2"}}),
                 paramNode("solo", "real", "-9", "9", "0.5", {{"is-single-group", "1"}}),
                 paramNode("names", "text", "", "", "L,R,C,LS,RS,LFE,L,L", {{"data-type", "string"}})}) {
        for (const char* name : {"seven", "flat", "pair", "solo", "names"})
            data_[name].resetWithDefaults(tree_.info(name), 0);
    }

    void apply(const char* name, int32_t group, int32_t first, const std::vector<double>& values, bool resize = false,
               const CAudioParamData* pool = nullptr) {
        CAudioParamChange change;
        change.elementSize = data_[name].elementSize();
        change.isString = data_[name].isString();
        change.sourcePool = pool;
        fillChange(change, group, first, values, resize);
        data_[name].apply(change);
    }

    CParamTree tree_;
    std::map<std::string, CAudioParamData> data_;
};

TEST_F(ParamData, ANewStoreIsNotValidAndReadsZero) {
    CAudioParamData data;
    EXPECT_FALSE(data.isValid());
    EXPECT_EQ(data.value(0, 0), 0.0);
    EXPECT_EQ(data.groupCount(), 0);
}

TEST_F(ParamData, ResetKeepsShapeAndDefaultsButNoGroup) {
    CAudioParamData data;
    data.reset(tree_.info("seven"));
    EXPECT_TRUE(data.isValid());
    EXPECT_EQ(data.groupCount(), 0);
    EXPECT_EQ(data.value(0, 3), 1000.0);
    EXPECT_EQ(data.value(5, 6), 12000.0);
}

TEST_F(ParamData, ElementsBeyondTheDefaultRowRepeatItsFirst) {
    EXPECT_EQ(groupOf(data_["seven"], 0), (std::vector<double>{64, 150, 350, 1000, 2000, 6000, 12000}));
    EXPECT_EQ(data_["seven"].value(0, 7), 64.0);
    CAudioParamData data;
    data.resetWithDefaults(tree_.info("flat"), 2, 3);
    EXPECT_EQ(groupOf(data, 2), (std::vector<double>{0.5, 0.5, 0.5}));
    EXPECT_EQ(data.elementCount(0), 0);
}

TEST_F(ParamData, AGroupThatHoldsNoValuesIsAtItsDefaults) {
    apply("seven", 2, 0, {100});
    EXPECT_EQ(data_["seven"].elementCount(1), 0);
    EXPECT_EQ(data_["seven"].value(1, 1), 150.0);
    EXPECT_EQ(data_["seven"].value(2, 0), 100.0);
    EXPECT_EQ(data_["seven"].value(2, 1), 150.0);
}

TEST_F(ParamData, ASingleGroupParameterIsReadAtGroupZero) {
    apply("solo", 0, 0, {2.0});
    EXPECT_EQ(data_["solo"].value(5, 0), 2.0);
    apply("solo", 3, 0, {4.0});
    EXPECT_EQ(data_["solo"].groupCount(), 1);
    EXPECT_EQ(data_["solo"].value(3, 0), 2.0);
}

TEST_F(ParamData, AChangeToGroupFiveCreatesEmptyGroupsBeforeIt) {
    apply("flat", 5, 0, {3.0});
    EXPECT_EQ(data_["flat"].groupCount(), 6);
    for (int32_t group = 1; group < 5; ++group)
        EXPECT_EQ(data_["flat"].elementCount(group), 0);
    EXPECT_EQ(groupOf(data_["flat"], 5), (std::vector<double>{3.0}));
}

TEST_F(ParamData, AResizeShortensTheTable) {
    apply("seven", 0, 0, {1, 2, 3}, true);
    EXPECT_EQ(groupOf(data_["seven"], 0), (std::vector<double>{1, 2, 3}));
    apply("seven", 0, 1, {9}, true);
    EXPECT_EQ(groupOf(data_["seven"], 0), (std::vector<double>{1, 9}));
}

TEST_F(ParamData, AResizeReleasesTheTextsBehindTheEnd) {
    CAudioParamData pool;
    const double a = pool.addString("a");
    apply("names", 0, 0, {a, a, a}, true, &pool);
    EXPECT_EQ(data_["names"].elementCount(0), 3);
    EXPECT_EQ(data_["names"].stringCount(), 3);
    EXPECT_EQ(data_["names"].text(0, 2), "a");
}

TEST_F(ParamData, AChangeBehindTheEndFillsTheGapWithDefaults) {
    apply("seven", 0, 9, {500});
    EXPECT_EQ(groupOf(data_["seven"], 0), (std::vector<double>{64, 150, 350, 1000, 2000, 6000, 12000, 64, 64, 500}));
    CAudioParamData pool;
    apply("names", 0, 9, {static_cast<double>(pool.addString("x"))}, false, &pool);
    EXPECT_EQ(data_["names"].text(0, 8), "L");
    EXPECT_EQ(data_["names"].text(0, 9), "x");
    EXPECT_EQ(data_["names"].stringCount(), 10);  // each element owns one
}

TEST_F(ParamData, AChangeInTheMiddleLeavesTheRestAlone) {
    apply("seven", 0, 2, {1, 2});
    EXPECT_EQ(groupOf(data_["seven"], 0), (std::vector<double>{64, 150, 1, 2, 2000, 6000, 12000}));
    CAudioParamData pool;
    apply("names", 0, 6, {static_cast<double>(pool.addString("x"))}, false, &pool);
    EXPECT_EQ(data_["names"].text(0, 5), "LFE");
    EXPECT_EQ(data_["names"].text(0, 6), "x");
    EXPECT_EQ(data_["names"].text(0, 7), "L");
    EXPECT_EQ(data_["names"].stringCount(), 8);
}

TEST_F(ParamData, AChangeForAllGroupsReachesTheExistingOnes) {
    apply("flat", 2, 0, {1, 2});
    apply("flat", CAudioParamData::kAllGroups, 0, {7});
    EXPECT_EQ(groupOf(data_["flat"], 0), (std::vector<double>{7}));
    EXPECT_EQ(groupOf(data_["flat"], 1), (std::vector<double>{7}));
    EXPECT_EQ(groupOf(data_["flat"], 2), (std::vector<double>{7, 2}));
    EXPECT_EQ(data_["flat"].groupCount(), 3);
    CAudioParamData unset;
    CAudioParamChange change;
    fillChange(change, CAudioParamData::kAllGroups, 0, {1});
    unset.apply(change);
    EXPECT_EQ(unset.groupCount(), 0);
}

TEST_F(ParamData, ElementsOfTwoNumbersKeepTheirPairs) {
    EXPECT_EQ(data_["pair"].value(0, 1, 1), 4.0);
    EXPECT_EQ(data_["pair"].value(0, 2, 1), 2.0);
    apply("pair", 0, 3, {8, 9});
    EXPECT_EQ(data_["pair"].value(0, 2, 0), 1.0);
    EXPECT_EQ(data_["pair"].value(0, 3, 1), 9.0);
    EXPECT_EQ(data_["pair"].value(0, 3, 2), 0.0);
}

TEST_F(ParamData, ChangesThatDoNotFitAreIgnored) {
    apply("flat", -1, 0, {1});
    apply("flat", CAudioParamData::kGroupLimit, 0, {1});
    apply("flat", 0, -1, {1});
    apply("flat", 0, CAudioParamData::kElementLimit, {1});
    apply("names", 0, 0, {1});
    CAudioParamChange change;
    change.elementSize = 2;
    fillChange(change, 0, 0, {1, 2});
    data_["flat"].apply(change);
    EXPECT_EQ(groupOf(data_["flat"], 0), (std::vector<double>{0.5}));
    EXPECT_EQ(data_["flat"].groupCount(), 1);
    EXPECT_EQ(data_["names"].text(0, 0), "L");
}

TEST_F(ParamData, ATableOfEightNamesHoldsEightTextsEvenIfTwoAreEqual) {
    EXPECT_EQ(data_["names"].elementCount(0), 8);
    EXPECT_EQ(data_["names"].stringCount(), 8);
    EXPECT_EQ(data_["names"].text(0, 7), "L");
    EXPECT_EQ(data_["names"].text(4, 2), "C");
}

TEST_F(ParamData, CopiesAreDeep) {
    CAudioParamData copy = data_["names"];
    CAudioParamData pool;
    apply("names", 0, 0, {static_cast<double>(pool.addString("x"))}, false, &pool);
    EXPECT_EQ(copy.text(0, 0), "L");
    CAudioParamData moved = std::move(copy);
    EXPECT_EQ(moved.text(0, 1), "R");
    EXPECT_FALSE(copy.isValid());  // NOLINT: what a move leaves behind is defined
    copy = moved;
    EXPECT_EQ(copy.text(0, 7), "L");
}

TEST_F(ParamData, WithinReservedRoomChangesAndCopiesDoNotAllocate) {
    CAudioParamData& data = data_["flat"];
    data.reserve(CAudioParamData::kAllGroups, 16);
    CAudioParamData copy = data;
    copy.reserve(CAudioParamData::kAllGroups, 16);
    CAudioParamChange change;
    fillChange(change, 7, 0, std::vector<double>(16, 1.0));
    const uint64_t before = CHeap::counters().allocations;
    data.apply(change);
    copy = data;
    EXPECT_EQ(CHeap::counters().allocations, before);
    EXPECT_EQ(copy.value(7, 15), 1.0);
}

TEST_F(ParamData, TwoValuesAreTheSameWhenTheirGroupsHoldTheSameBitsOrTexts) {
    CAudioParamData other = data_["seven"];
    EXPECT_TRUE(other.isSame(data_["seven"]));
    apply("seven", 1, 0, {100});
    EXPECT_FALSE(other.isSame(data_["seven"]));
    EXPECT_FALSE(data_["seven"].isSame(other));
    apply("seven", 1, 0, {}, true);
    EXPECT_TRUE(data_["seven"].isSame(other)) << "a group that holds nothing is as one that is not there";
    apply("flat", 0, 0, {0.0});
    CAudioParamData zero = data_["flat"];
    apply("flat", 0, 0, {-0.0});
    EXPECT_FALSE(zero.isSame(data_["flat"]));
    CAudioParamData names = data_["names"];
    CAudioParamData pool;
    apply("names", 0, 0, {static_cast<double>(pool.addString("L"))}, false, &pool);
    EXPECT_TRUE(names.isSame(data_["names"])) << "of texts their ids do not count";
    apply("names", 0, 0, {static_cast<double>(pool.addString("x"))}, false, &pool);
    EXPECT_FALSE(names.isSame(data_["names"]));
}

TEST_F(ParamData, OnlyGroupCopiesThatGroupAsGroupZero) {
    apply("seven", 2, 0, {1, 2, 3}, true);
    const CAudioParamData only = data_["seven"].onlyGroup(2, tree_.info("seven"));
    EXPECT_EQ(only.groupCount(), 1);
    EXPECT_EQ(groupOf(only, 0), (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(data_["seven"].onlyGroup(5, tree_.info("seven")).elementCount(0), 0);
    const CAudioParamData names = data_["names"].onlyGroup(0, tree_.info("names"));
    EXPECT_EQ(names.text(0, 5), "LFE");
    EXPECT_EQ(names.stringCount(), 8);
}

}  // namespace
}  // namespace tarv
