// What the oversampling is for: images above the host's band, and products of the saturation that fold back into it.

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <fstream>
#include <map>
#include <memory>
#include <numbers>
#include <span>
#include <sstream>

#include "CPlainInstance.h"
#include "CSignalTap.h"
#include "Tests/System/EngineRun.h"
#include "Tests/System/ReferenceChain.h"
#include "Tests/System/ReferenceDesigns.h"
#include "Tests/TestPaths.h"

namespace tarv::reference {
namespace {

constexpr double kRate = 48000.0;
constexpr int kStages[] = {0, 1, 2, 3};
// Multiples of 10 Hz that share no other factor with the rate, so that nothing folds onto a harmonic.
constexpr double kTones[] = {3010.0, 7010.0, 11030.0, 15010.0, 19010.0};
// Long enough for the high-passes to forget the start, then a whole number of periods of 10 Hz.
constexpr int64_t kSettle = 48000;
constexpr int64_t kMeasured = 4800;
// The audible band. Above it the first half-band passes over from 0.45 to 0.55 of the rate, and so do products beside
// 24 kHz.
constexpr double kHighest = 20000.0;

double decibels(double factor) {
    return 20.0 * std::log10(std::max(factor, 1e-300));
}

std::unique_ptr<CPlainInstance> instanceAt(int stages) {
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> instance(CPlainInstance::create(error));
    if (!instance) {
        ADD_FAILURE() << error->joined().toUtf8();
        delete error;
        return instance;
    }
    EXPECT_TRUE(instance->set("plugin.modMain.oversampling", 0, 0, stages + 1));
    return instance;
}

/// A tone at 0 dB with every band 6 dB up: the harmonics of a loud setting.
std::vector<double> toneOf(double frequency) {
    std::vector<double> row;
    for (int64_t i = 0; i < kSettle + kMeasured; ++i) {
        row.push_back(std::sin(2.0 * std::numbers::pi * frequency * static_cast<double>(i) / kRate));
    }
    return row;
}

CSettings loudSettings() {
    CSettings settings;
    for (size_t band = 0; band < kDefaultBands; ++band) {
        settings.groups[0].gains[band] = factorOf(6.0);
    }
    return settings;
}

std::vector<double> throughProduct(int stages, const std::vector<double>& input) {
    const std::unique_ptr<CPlainInstance> instance = instanceAt(stages);
    if (!instance) {
        return input;
    }
    for (int band = 0; band < kDefaultBands; ++band) {
        EXPECT_TRUE(instance->set("plugin.modMain.modBrindleXEQ.xeq-gains", 0, band, factorOf(6.0)));
    }
    instance->start(kRate, 2, 2);
    return instance->run({input, std::vector<double>(input.size())}, 512)[0];
}

std::vector<double> throughReference(int stages, const std::vector<double>& input) {
    CLayout layout;
    layout.rate = kRate;
    layout.stages = stages;
    layout.inRouting[1] = 0;
    return render(layout, loudSettings(), {}, {input}, static_cast<int64_t>(input.size()))[0];
}

double amplitudeAt(const std::vector<double>& row, int64_t bin) {
    // One turn of the phasor a period of the measured part: the table is exact where a recurrence would drift.
    static const std::vector<std::complex<double>> phasors = [] {
        std::vector<std::complex<double>> table;
        for (int64_t i = 0; i < kMeasured; ++i) {
            table.push_back(
                std::polar(1.0, -2.0 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(kMeasured)));
        }
        return table;
    }();
    std::complex<double> sum = 0.0;
    for (int64_t i = 0; i < kMeasured; ++i) {
        sum += row[static_cast<size_t>(kSettle + i)] * phasors[static_cast<size_t>(i * bin % kMeasured)];
    }
    return 2.0 * std::abs(sum) / static_cast<double>(kMeasured);
}

/// The largest component up to kHighest that is no harmonic of the tone, in decibels below the tone.
double largestAlias(const std::vector<double>& row, double frequency) {
    const auto tone = static_cast<int64_t>(std::lround(frequency * static_cast<double>(kMeasured) / kRate));
    double largest = 0.0;
    const auto last = static_cast<int64_t>(kHighest * static_cast<double>(kMeasured) / kRate);
    for (int64_t bin = 1; bin <= last; ++bin) {
        if (bin % tone != 0) {
            largest = std::max(largest, amplitudeAt(row, bin));
        }
    }
    return decibels(largest / amplitudeAt(row, tone));
}

/// Rows "| 7010 | -50.1 | ... |" of the page on aliasing, by tone.
std::map<double, std::vector<double>> documentedAliases() {
    std::map<double, std::vector<double>> rows;
    std::ifstream page(std::string(kSourceFolder) + "/Docs/aliasing.md");
    for (std::string line; std::getline(page, line);) {
        std::istringstream cells(line);
        std::vector<double> values;
        char bar = 0;
        for (double value = 0.0; cells >> bar && bar == '|' && cells >> value;) {
            values.push_back(value);
        }
        if (values.size() == std::size(kStages) + 1) {
            rows[values[0]] = {values.begin() + 1, values.end()};
        }
    }
    return rows;
}

TEST(Aliasing, ProductsThatFoldBackAreTheReferencesAndThoseOfThePage) {
    const auto documented = documentedAliases();
    std::vector<double> worst(std::size(kStages), -300.0);
    for (double tone : std::span(kTones).first(static_cast<size_t>(engine::repeats(std::size(kTones), 1)))) {
        const std::vector<double> input = toneOf(tone);
        const auto row = documented.find(tone);
        ASSERT_NE(row, documented.end()) << "Docs/aliasing.md has no row for " << tone;
        for (int stages : kStages) {
            const auto column = static_cast<size_t>(stages);
            const double product = largestAlias(throughProduct(stages, input), tone);
            // A difference of 1e-9 between the signals may move what lies lower than -150 dB.
            EXPECT_NEAR(product, largestAlias(throughReference(stages, input), tone), 0.1)
                << tone << " Hz, " << (1 << stages) << "x";
            EXPECT_NEAR(product, row->second[column], 0.1) << tone << " Hz, " << (1 << stages) << "x";
            worst[column] = std::max(worst[column], product);
        }
    }
    for (size_t column = 1; column < worst.size(); ++column) {
        EXPECT_LT(worst[column], worst[column - 1] - 10.0) << "each doubling lowers the products";
    }
}

/// What comes out of the upsampler for a single 1 at the host's rate.
std::vector<double> impulseBehindUpsampler(int stages) {
    const std::unique_ptr<CPlainInstance> instance = instanceAt(stages);
    FILE* file = std::tmpfile();
    if (!instance || !file) {
        return {};
    }
    CSignalTap tap("plugin.modMain.modUpsampler", -1, file);
    instance->start(kRate, 2, 2);
    instance->graph().observer = &tap;
    std::vector<double> impulse(1024);
    impulse[0] = 1.0;
    instance->run({impulse, std::vector<double>(impulse.size())}, 512);
    instance->graph().observer = nullptr;
    std::vector<double> interleaved(static_cast<size_t>(tap.frames() * tap.channels()));
    std::rewind(file);
    EXPECT_EQ(std::fread(interleaved.data(), sizeof(double), interleaved.size(), file), interleaved.size());
    std::fclose(file);
    EXPECT_EQ(tap.rate(), std::ldexp(kRate, stages));
    std::vector<double> left;
    for (size_t i = 0; i < interleaved.size(); i += static_cast<size_t>(tap.channels())) {
        left.push_back(interleaved[i]);
    }
    return left;
}

double magnitude(const std::vector<double>& row, double place) {
    std::complex<double> sum = 0.0;
    for (size_t i = 0; i < row.size(); ++i) {
        sum += row[i] * std::polar(1.0, -2.0 * std::numbers::pi * place * static_cast<double>(i));
    }
    return std::abs(sum);
}

TEST(Aliasing, ImagesFrom055OfTheHostsRateLieUnderTheHalfBandsAttenuation) {
    for (int stages : {1, 2, 3}) {
        const std::vector<double> row = impulseBehindUpsampler(stages);
        ASSERT_FALSE(row.empty());
        const double factor = std::ldexp(1.0, stages);
        const double passed = magnitude(row, 0.0);
        EXPECT_NEAR(decibels(passed), decibels(factor), 1e-3) << "each doubling with zeros between doubles the sum";
        double worst = -300.0;
        for (double place = 0.55; place <= factor / 2.0; place += 0.005) {
            worst = std::max(worst, decibels(magnitude(row, place / factor) / passed));
        }
        // The steep filter's name gives its attenuation within 1 dB; the soft ones lie lower.
        EXPECT_LT(worst, -105.0) << (1 << stages) << "x";
        RecordProperty("worst-image-" + std::to_string(1 << stages) + "x", std::to_string(worst));
    }
}

}  // namespace
}  // namespace tarv::reference
