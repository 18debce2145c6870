#include "UI/Placement/CViewAreaNet.h"

#include <gtest/gtest.h>

#include <vector>

#include "Tests/Core/LogCapture.h"

namespace tarv {
namespace {

class ViewAreaNet : public testing::Test {
protected:
    CViewCellId variable(float value) {
        const CViewCellId id = net.allocCell(nullptr);
        net.setValue(id, value);
        return id;
    }
    CViewFormula formula() { return CViewFormula(net); }
    CViewCellId follow(const CViewFormula& formula) {
        const CViewCellId id = net.allocCell(nullptr);
        net.setFormula(id, formula);
        return id;
    }
    CViewAreaNet net;
};

struct CTokenCase {
    const char* name;
    std::vector<float> operands;
    CViewToken token;
    float result;
};

TEST_F(ViewAreaNet, EachTokenHasItsEffect) {
    const CTokenCase cases[] = {
        {"divide", {7, 2}, CViewToken::Divide, 3.5f},
        {"safe divide", {7, 2, 9}, CViewToken::SafeDivide, 3.5f},
        {"safe divide by nothing", {7, 0.0001f, 9}, CViewToken::SafeDivide, 9.0f},
        {"safe divide by a little more", {1, 0.0002f, 9}, CViewToken::SafeDivide, 1.0f / 0.0002f},
        {"halve", {7}, CViewToken::Halve, 3.5f},
        {"floor", {-1.5f}, CViewToken::Floor, -2.0f},
        {"max", {7, -2}, CViewToken::Max, 7.0f},
        {"max of three", {7, 9, -2, 3}, CViewToken::MaxOf, 9.0f},
        {"max of a rounded count", {-7, -9, 1.5f}, CViewToken::MaxOf, -7.0f},
        {"max of none", {0.4f}, CViewToken::MaxOf, 0.0f},
        {"subtract", {7, 2}, CViewToken::Subtract, 5.0f},
        {"multiply", {7, 2}, CViewToken::Multiply, 14.0f},
        {"add", {7, 2}, CViewToken::Add, 9.0f},
        {"round up", {2.5f}, CViewToken::Round, 3.0f},
        {"round a negative half", {-2.5f}, CViewToken::Round, -3.0f},
    };
    for (const CTokenCase& c : cases) {
        CViewAreaNet own;  // constants of other cases may be near
        CViewFormula f(own);
        for (const float operand : c.operands) {
            f.number(operand);
        }
        const CViewCellId id = own.allocCell(nullptr);
        own.setFormula(id, f.op(c.token));
        EXPECT_EQ(own.value(id), c.result) << c.name;
    }
}

TEST_F(ViewAreaNet, AProgramThatEndsWithoutOneValueLeavesTheCellAsItIs) {
    const CViewCellId id = variable(5.0f);
    net.setFormula(id, formula().number(1).number(2));
    EXPECT_EQ(net.value(id), 5.0f);
    net.setFormula(id, formula().number(1).add());
    EXPECT_EQ(net.value(id), 5.0f);
    net.setFormula(id, formula().number(1).number(2).number(3).op(CViewToken::MaxOf));
    EXPECT_EQ(net.value(id), 5.0f) << "the largest of three where there are two";
    net.setFormula(id, formula());
    EXPECT_EQ(net.value(id), 0.0f) << "an empty one gives 0";
}

TEST_F(ViewAreaNet, AChangeRunsThroughWhatDependsOnIt) {
    const CViewCellId a = variable(1);
    const CViewCellId b = follow(formula().cell(a).number(10).op(CViewToken::Multiply));
    const CViewCellId c = follow(formula().cell(a).cell(b).add());
    EXPECT_EQ(net.value(c), 11.0f);
    net.setValue(a, 2);
    EXPECT_EQ(net.value(b), 20.0f);
    EXPECT_EQ(net.value(c), 22.0f);
    net.setValue(b, 5);
    EXPECT_EQ(net.value(c), 7.0f) << "a value ends the formula";
    net.setValue(a, 3);
    EXPECT_EQ(net.value(b), 5.0f);
    EXPECT_EQ(net.value(c), 8.0f);
}

TEST_F(ViewAreaNet, AChangeWithinTheToleranceIsNone) {
    const CViewCellId a = variable(1);
    const CViewCellId b = follow(formula().cell(a).number(1000).op(CViewToken::Multiply));
    net.setValue(a, 1.00009f);
    EXPECT_EQ(net.value(a), 1.0f);
    EXPECT_EQ(net.value(b), 1000.0f);
    net.setValue(a, 1.0002f);
    EXPECT_EQ(net.value(a), 1.0002f);
    EXPECT_NEAR(net.value(b), 1000.2f, 0.01f);
}

TEST_F(ViewAreaNet, WhatIsNoNumberIsNotStored) {
    const CViewCellId a = variable(0);
    const CViewCellId b = follow(formula().number(0).cell(a).op(CViewToken::Divide));
    EXPECT_EQ(net.value(b), 0.0f);
}

TEST_F(ViewAreaNet, ConstantsThatNoFormulaNamesAreUsedAnew) {
    const CViewCellId rest = follow(CViewFormula(net).number(7.5f));
    const CViewCellId moving = net.allocCell(nullptr);
    for (int32_t i = 0; i < 70000; ++i) {
        const float value = 1000.0f + 0.25f * static_cast<float>(i);
        net.setFormula(moving, CViewFormula(net).number(value));
        ASSERT_EQ(net.value(moving), value);
        ASSERT_FALSE(net.flush());
    }
    EXPECT_LE(net.constantCount(), 64);
    // What rests keeps its own, also when it is evaluated again.
    net.dropFormula(rest);
    net.setFormula(rest, CViewFormula(net).number(7.5f));
    EXPECT_EQ(net.value(rest), 7.5f);
}

TEST_F(ViewAreaNet, ConstantsThatAreNearShareAPlace) {
    const uint16_t first = net.constantIndex(1.0f);
    EXPECT_EQ(net.constantIndex(1.00009f), first);
    EXPECT_EQ(net.constant(first), 1.0f);
    EXPECT_NE(net.constantIndex(1.0002f), first);
}

TEST_F(ViewAreaNet, ACircleEndsAndIsLogged) {
    CLogCapture log;
    const CViewCellId a = variable(1);
    const CViewCellId b = follow(formula().cell(a).number(1).add());
    net.setFormula(a, formula().cell(b).number(1).add());
    EXPECT_TRUE(log.has("Too many recursions"));
    EXPECT_GT(net.value(a), 100.0f);
    const float before = net.value(b);
    net.setValue(a, 7);
    EXPECT_EQ(net.value(b), 8.0f) << "it heals, from " << before;
}

TEST_F(ViewAreaNet, WhatACircleHasLeftBehindIsRightWhenTheCircleIsGone) {
    const CViewCellId a = variable(1);
    const CViewCellId b = follow(formula().cell(a).number(1).add());
    const CViewCellId reader = follow(formula().cell(b).number(10).op(CViewToken::Multiply));
    net.setFormula(a, formula().cell(b).number(1).add());
    const CViewCellId other = variable(3);
    net.setFormula(a, formula().cell(other));
    EXPECT_EQ(net.value(a), 3.0f);
    EXPECT_EQ(net.value(b), 4.0f);
    EXPECT_EQ(net.value(reader), 40.0f);
}

TEST_F(ViewAreaNet, ALongChainIsNoCircle) {
    CLogCapture log;
    const CViewCellId first = variable(1);
    CViewCellId last = first;
    for (int32_t i = 0; i < 3000; ++i) {
        last = follow(formula().cell(last).number(1).add());
    }
    EXPECT_EQ(net.value(last), 3001.0f);
    net.setValue(first, 2);
    EXPECT_EQ(net.value(last), 3002.0f);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(ViewAreaNet, AFreedCellLeavesTheFormulasThatNamedItAtTheirValues) {
    const CViewCellId a = variable(4);
    const CViewCellId other = variable(1);
    const CViewCellId b = follow(formula().cell(a).cell(other).add());
    net.freeCell(a);
    EXPECT_EQ(net.value(b), 5.0f);
    EXPECT_FALSE(net.hasFormula(b));
    const CViewCellId again = variable(100);
    EXPECT_EQ(again, a) << "the cell is taken again";
    net.setValue(other, 9);
    EXPECT_EQ(net.value(b), 5.0f);
}

TEST_F(ViewAreaNet, AFormulaThatNamesAFreedCellIsRefused) {
    CLogCapture log;
    const CViewCellId a = variable(4);
    const CViewCellId b = variable(6);
    net.freeCell(a);
    net.setFormula(b, formula().cell(a));
    EXPECT_EQ(net.value(b), 6.0f);
    EXPECT_TRUE(log.has("Broken placement formula"));
}

TEST_F(ViewAreaNet, AFormulaBeyondItsRoomIsRefused) {
    CLogCapture log;
    const CViewCellId a = variable(4);
    CViewFormula f = formula().cell(a);
    while (!f.isBroken()) {
        f.cell(a).add();
    }
    EXPECT_EQ(f.count(), CViewFormula::kMaxTokens);
    const CViewCellId b = variable(6);
    net.setFormula(b, f);
    EXPECT_EQ(net.value(b), 6.0f);
    EXPECT_TRUE(log.has("Broken placement formula"));
}

TEST_F(ViewAreaNet, CellsEndAtTheLastNumber) {
    std::vector<CViewCellId> ids;
    for (CViewCellId id = net.allocCell(nullptr); id != kNoViewCell; id = net.allocCell(nullptr)) {
        ids.push_back(id);
    }
    EXPECT_EQ(ids.size(), 65535u);
    const float* stable = net.valuePointer(ids[70]);
    net.setValue(ids[70], 3);
    EXPECT_EQ(*stable, 3.0f);
    net.freeCell(ids[12345]);
    EXPECT_EQ(net.allocCell(nullptr), 12345);
    EXPECT_EQ(net.allocCell(nullptr), kNoViewCell);
}

TEST_F(ViewAreaNet, ABatchEvaluatesAtItsEnd) {
    const CViewCellId a = variable(1);
    const CViewCellId b = follow(formula().cell(a));
    {
        const CViewAreaNet::CBatch outer(net);
        {
            const CViewAreaNet::CBatch inner(net);
            net.setValue(a, 5);
        }
        EXPECT_EQ(net.value(b), 1.0f);
    }
    EXPECT_EQ(net.value(b), 5.0f);
}

}  // namespace
}  // namespace tarv
