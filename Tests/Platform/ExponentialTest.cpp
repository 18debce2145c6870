#include "Platform/Exponential.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

namespace tarv {
namespace {

/// The thread's precision of the x87 while it lives: 0x300 is that of 64 bits, 0x200 that of 53.
class CPrecision {
public:
    explicit CPrecision(uint16_t bits) {
        asm volatile("fnstcw %0" : "=m"(before_));
        const auto now = static_cast<uint16_t>((before_ & ~0x300) | bits);
        asm volatile("fldcw %0" : : "m"(now));
    }
    ~CPrecision() { asm volatile("fldcw %0" : : "m"(before_)); }

private:
    uint16_t before_ = 0;
};

constexpr uint16_t k64Bits = 0x300;
constexpr uint16_t k53Bits = 0x200;

bool isSame(double a, double b) {
    return std::bit_cast<uint64_t>(a) == std::bit_cast<uint64_t>(b);
}

/// Of all sizes, most of them as parameters have them.
std::vector<double> arguments() {
    std::mt19937_64 random(11);
    std::vector<double> numbers = {0.0,   -0.0,   1.0,   -1.0,   5e-324, -5e-324, 1e-17,
                                   600.0, -600.0, 700.0, -700.0, 709.7,  -745.0};
    for (const double largest : {1e-9, 0.01, 1.0, 10.0, 10.0, 700.0}) {
        std::uniform_real_distribution<double> number(-largest, largest);
        for (int32_t i = 0; i < 100000; ++i) {
            numbers.push_back(number(random));
        }
    }
    for (int32_t i = 0; i <= 20000; ++i) {
        // Where one step of the table gives way to the next, and next to it.
        const double edge = (i - 10000 + 0.5) * std::log(2.0) / 128;
        numbers.insert(numbers.end(), {edge, std::nextafter(edge, 1e3), std::nextafter(edge, -1e3)});
    }
    return numbers;
}

TEST(Exponential, GivesTheBitsOfTheLibrary) {
    const CPrecision precision(k64Bits);
    int32_t different = 0;
    for (const double number : arguments()) {
        different += !isSame(exponential(number), std::exp(number));
    }
    EXPECT_EQ(different, 0);
}

TEST(Exponential, DoesNotDependOnThePrecisionOfTheThread) {
    int32_t different = 0;
    for (const double number : arguments()) {
        double results[2];
        for (const uint16_t bits : {k64Bits, k53Bits}) {
            const CPrecision precision(bits);
            results[bits == k53Bits] = exponential(number);
            uint16_t word = 0;
            asm volatile("fnstcw %0" : "=m"(word));
            ASSERT_EQ(word & 0x300, bits);
        }
        different += !isSame(results[0], results[1]);
    }
    EXPECT_EQ(different, 0);
}

TEST(Exponential, GoesToTheEndsOfTheNumbers) {
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(exponential(0.0), 1.0);
    EXPECT_EQ(exponential(800.0), kInfinity);
    EXPECT_EQ(exponential(kInfinity), kInfinity);
    EXPECT_EQ(exponential(-800.0), 0.0);
    EXPECT_EQ(exponential(-kInfinity), 0.0);
    EXPECT_TRUE(std::isnan(exponential(std::numeric_limits<double>::quiet_NaN())));
}

}  // namespace
}  // namespace tarv
