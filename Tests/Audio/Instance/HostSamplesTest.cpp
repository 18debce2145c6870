#include "Audio/Instance/HostSamples.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace tarv {
namespace {

template <class Sample>
class HostSamples : public testing::Test {
public:
    static constexpr Sample kMost = std::numeric_limits<Sample>::max();
    static constexpr Sample kLeast = std::numeric_limits<Sample>::denorm_min();
    static constexpr Sample kInfinity = std::numeric_limits<Sample>::infinity();
    static constexpr Sample kNone = std::numeric_limits<Sample>::quiet_NaN();

    static std::vector<Sample> some() {
        return {Sample(0.25), Sample(-0.0), kMost,  -kMost,    kLeast,       kInfinity, Sample(1),
                -kInfinity,   kNone,        -kNone, Sample(0), Sample(-0.1), -kLeast,   Sample(3)};
    }
};
using Formats = testing::Types<float, double>;
TYPED_TEST_SUITE(HostSamples, Formats);

TYPED_TEST(HostSamples, AreWidenedWithZeroInPlaceOfWhatIsNotFinite) {
    const std::vector<TypeParam> source = TestFixture::some();
    for (size_t first = 0; first <= source.size(); ++first) {
        const size_t count = source.size() - first;
        std::vector<double> target(count + 1, 7.0);
        widen(target.data(), source.data() + first, static_cast<int32_t>(count));
        for (size_t i = 0; i < count; ++i) {
            const auto value = static_cast<double>(source[first + i]);
            const double expected = std::isfinite(value) ? value : 0.0;
            EXPECT_EQ(std::bit_cast<uint64_t>(target[i]), std::bit_cast<uint64_t>(expected)) << first << " " << i;
        }
        EXPECT_EQ(target[count], 7.0);
    }
}

TYPED_TEST(HostSamples, AreRoundedAsOneByOne) {
    std::vector<double> source = {0.1, -0.0, 1e-320, -1e-46, 0.5 + 1e-9, 1.0 / 3.0, -2.0, 1e30, 3e-39};
    for (size_t count = 0; count <= source.size(); ++count) {
        std::vector<TypeParam> target(count + 1, TypeParam(7));
        EXPECT_TRUE(round(target.data(), source.data(), static_cast<int32_t>(count)));
        for (size_t i = 0; i < count; ++i) {
            const auto expected = static_cast<TypeParam>(source[i]);
            EXPECT_EQ(target[i], expected) << i;
            EXPECT_EQ(std::signbit(target[i]), std::signbit(expected)) << i;
        }
        EXPECT_EQ(target[count], TypeParam(7));
    }
}

TYPED_TEST(HostSamples, ThatTheFormatCannotHoldAreFoundAtEachPlace) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    std::vector<double> wrong = {kInfinity, -kInfinity, std::numeric_limits<double>::quiet_NaN()};
    if (sizeof(TypeParam) == sizeof(float)) {
        wrong.insert(wrong.end(), {1e39, -3.4028236e38});
    }
    for (const double value : wrong) {
        for (size_t count = 1; count < 9; ++count) {
            for (size_t place = 0; place < count; ++place) {
                std::vector<double> source(count, 0.5);
                source[place] = value;
                std::vector<TypeParam> target(count);
                EXPECT_FALSE(round(target.data(), source.data(), static_cast<int32_t>(count))) << value << " " << place;
                EXPECT_EQ(areFinite(source.data(), static_cast<int32_t>(count)), std::isfinite(value)) << place;
            }
        }
    }
    const double most[] = {TestFixture::kMost, -TestFixture::kMost, 0.0};
    TypeParam target[3] = {};
    EXPECT_TRUE(round(target, most, 3));
    EXPECT_TRUE(areFinite(most, 3));
    EXPECT_TRUE(areFinite(most, 0));
}

}  // namespace
}  // namespace tarv
