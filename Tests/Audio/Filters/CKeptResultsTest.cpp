#include "Audio/Filters/CKeptResults.h"

#include <cmath>
#include <cstring>
#include <random>

#include "Tests/Audio/Filters/FilterTree.h"

namespace tarv {
namespace {

int32_t callsOfInverse = 0;

double inverse(double number) {
    ++callsOfInverse;
    return 1.0 / number;
}

double negative(double number) {
    return -number;
}

TEST(KeptResults, AFunctionIsCalledOnceForAnArgumentThatStays) {
    CKeptResults kept;
    callsOfInverse = 0;
    for (int32_t i = 0; i < 5; ++i) {
        EXPECT_EQ(kept.of(&inverse, 4.0), 0.25);
        EXPECT_EQ(kept.of(&negative, 4.0), -4.0);
    }
    EXPECT_EQ(callsOfInverse, 1);
    EXPECT_EQ(kept.of(&inverse, 2.0), 0.5);
    EXPECT_EQ(callsOfInverse, 2);
}

TEST(KeptResults, BothZerosHaveTheirResult) {
    CKeptResults kept;
    EXPECT_EQ(kept.of(&inverse, 0.0), HUGE_VAL);
    EXPECT_EQ(kept.of(&inverse, -0.0), -HUGE_VAL);
    EXPECT_EQ(kept.of(&inverse, 0.0), HUGE_VAL);
}

TEST(KeptResults, TheOldestGoesFirst) {
    CKeptResults kept;
    callsOfInverse = 0;
    for (const double number : {1.0, 2.0, 3.0, 4.0, 5.0}) {
        EXPECT_EQ(kept.of(&inverse, number), 1.0 / number);
    }
    EXPECT_EQ(kept.of(&inverse, 2.0), 0.5);
    EXPECT_EQ(callsOfInverse, 5);
    EXPECT_EQ(kept.of(&inverse, 1.0), 1.0);
    EXPECT_EQ(callsOfInverse, 6);
}

void expectSameBits(const CSectionList& a, const CSectionList& b) {
    ASSERT_EQ(a.sections.count(), b.sections.count());
    for (int32_t i = 0; i < a.sections.count(); ++i) {
        const CFilterSection& x = a.sections[i];
        const CFilterSection& y = b.sections[i];
        ASSERT_EQ(x.numerators.count(), y.numerators.count());
        ASSERT_EQ(x.denominators.count(), y.denominators.count());
        const auto bytes = [](const CArray<double, 4>& list) {
            return static_cast<size_t>(list.count()) * sizeof(double);
        };
        EXPECT_EQ(std::memcmp(&x.gain, &y.gain, sizeof(double)), 0);
        EXPECT_EQ(std::memcmp(x.numerators.data(), y.numerators.data(), bytes(x.numerators)), 0);
        EXPECT_EQ(std::memcmp(x.denominators.data(), y.denominators.data(), bytes(x.denominators)), 0);
    }
}

/// One list for all designs, in which each of the numbers stays at times, against a new list for each.
void expectDesignsOfAUsedListAreThoseOfANewOne(const char* tag, const char* types, CTexts more) {
    std::mt19937 random(7);
    const auto oneOf = [&random](std::initializer_list<double> values) {
        return values.begin()[random() % values.size()];
    };
    CSectionList used;
    for (const char* type = types; *type != '\0'; ++type) {
        const char text[] = {*type, '\0'};
        CFilterTree tree;
        CAudioFilterGen& generator = tree.generator(tag, {{"type", text}, *more.begin()});
        for (int32_t i = 0; i < 300; ++i) {
            const double rate = oneOf({44100.0, 48000.0, 96000.0});
            const double values[] = {oneOf({30.0, 1000.0, 12000.0, 23000.0}), oneOf({0.1, 0.99, 2.0, 7.0}),
                                     oneOf({0.3, 1.0, 2.5})};
            generator.design(used, rate, values, 3);
            CSectionList fresh;
            generator.design(fresh, rate, values, 3);
            expectSameBits(used, fresh);
        }
    }
}

TEST(KeptResults, DesignsOfAUsedListAreThoseOfANewOne) {
    expectDesignsOfAUsedListAreThoseOfANewOne("audio:fltgen-magnus", "012345", {{"is-q", "false"}});
    expectDesignsOfAUsedListAreThoseOfANewOne("audio:fltgen-rbj", "0123456789", {{"is-q", "true"}});
    expectDesignsOfAUsedListAreThoseOfANewOne("audio:fltgen-rbj", "0123456789", {{"is-type2", "false"}});
    expectDesignsOfAUsedListAreThoseOfANewOne("audio:fltgen-rbj", "0123456789", {{"is-type2", "true"}});
}

}  // namespace
}  // namespace tarv
