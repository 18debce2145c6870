// What comes up in an instance when each preset that the product brings is chosen.

#include <cmath>

#include "Audio/Instance/CAudioWrapper.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "FactoryTables.h"
#include "ProductTree.h"

namespace tarv {

namespace {

class CFactoryInstance : public CAudioWrapper {
public:
    int32_t hostProcessLevel() override { return 0; }
    bool hostTempo(double&) override { return false; }
    void hostIoChanged() override {}
    void hostParamChanged(int32_t, const CAudioExtParam&) override {}
};

using factory::CCurve;
using factory::CRow;

constexpr CCurve kFreqs = {64, 150, 350, 1000, 2000, 6000, 12000};
// The bank's decibels stand to two decimals.
constexpr double kHalfDigit = 0.005001;

double decibels(double factor) {
    return 20.0 * std::log10(factor);
}

class FactoryState : public CProductTree {
protected:
    FactoryState() {
        CError* error = instance_.init();
        EXPECT_FALSE(error) << (error ? error->joined().toUtf8() : "");
        delete error;
    }
    CAudioParamRegistry& master() { return *instance_.paramRegistry(); }
    CAudioParamRegistry& routing() {
        return *static_cast<CAudioParamRegistry*>(instance_.paramCollector()->getRegistry("TAIO"));
    }
    CAudioParam& param(const std::string& name) {
        return *instance_.paramCollector()->findParam(("plugin.modMain." + name).c_str());
    }
    double value(const char* name, int32_t group = 0, size_t element = 0) {
        return param(name).value(group, static_cast<int32_t>(element));
    }
    void expectRoute(const char* name, const CRow& route, const char* preset) {
        for (size_t i = 0; i < route.size(); ++i)
            EXPECT_EQ(value(name, 0, i), route[i]) << preset << ' ' << name << ' ' << i;
        EXPECT_EQ(param(name).userData().elementCount(0), 8) << preset;
    }
    void expectNames(const char* name, const char* const* texts, size_t count, const char* preset) {
        for (size_t i = 0; i < count; ++i)
            EXPECT_EQ(param(name).text(0, static_cast<int32_t>(i)), texts[i]) << preset << ' ' << i;
    }
    /// Values that no preset has, everywhere.
    void disturb() {
        for (int32_t group = 0; group < 8; ++group) {
            for (int32_t band = 0; band < 10; ++band) {
                param("modBrindleXEQ.xeq-freqs").setValue(group, band, 333.0 + band);
                param("modBrindleXEQ.xeq-gains").setValue(group, band, 0.7);
            }
            param("modBrindleXEQ.band-count").setValue(group, 0, 3);
            param("modOutGain.gain").setValue(group, 0, 0.5);
            param("modOutGain.mute").setValue(group, 0, 1);
        }
        for (int32_t i = 0; i < 8; ++i) {
            for (const char* name : {"grouping", "in-routing", "out-routing"})
                param(std::string("io-params.") + name).setValue(0, i, 7 - i % 2);
            param("io-params.ms-pairs").setValue(0, i, 3);
            param("io-params.group-names").setText(0, i, "?");
            param("io-params.in-channel-names").setText(0, i, "?");
        }
        param("oversampling").setValue(0, 0, 3);
        param("instance-name").setText(0, 0, "Mine");
    }
    std::string activate(CAudioParamRegistry& registry, const CAudioPreset& preset) {
        CByteBuffer bytes;
        CBufferWriter writer(bytes);
        CError* error = preset.save(writer);
        if (!error) {
            CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
            error = registry.activatePreset(reader);
        }
        const std::string failure = error ? error->joined().toUtf8() : "";
        delete error;
        return failure;
    }

    CFactoryInstance instance_;
};

}  // namespace

TEST_F(FactoryState, EachPresetOfTheFactoryBringsTheValuesOfItsRow) {
    const factory::CRoutingPreset& usual = factory::kRoutingPresets[0];
    ASSERT_EQ(master().romCount(), 7);
    for (int32_t index = 0; index < 7; ++index) {
        const factory::CFactoryPreset& row = factory::kFactoryPresets[index];
        EXPECT_EQ(master().romName(index), row.name);
        EXPECT_EQ(master().programName(index), row.name);
        disturb();
        CError* error = master().activateRomPreset(index);
        ASSERT_FALSE(error) << row.name;
        EXPECT_EQ(param("preset-name").text(0, 0), row.name);
        for (int32_t group = 0; group < 8; ++group) {
            EXPECT_EQ(value("modBrindleXEQ.band-count", group), 7) << row.name << group;
            EXPECT_EQ(value("modOutGain.mute", group), 0) << row.name << group;
            EXPECT_NEAR(decibels(value("modOutGain.gain", group)), group == 1 ? row.outGainB : 0.0, kHalfDigit);
            for (size_t band = 0; band < kFreqs.size(); ++band) {
                EXPECT_EQ(value("modBrindleXEQ.xeq-freqs", group, band), kFreqs[band]) << row.name << group;
                const double gain = group == 0 ? row.groupA[band] : group == 1 ? row.groupB[band] : 0.0;
                EXPECT_NEAR(decibels(value("modBrindleXEQ.xeq-gains", group, band)), gain, kHalfDigit)
                    << row.name << group << ' ' << band;
            }
        }
        expectRoute("io-params.grouping", usual.grouping, row.name);
        expectRoute("io-params.in-routing", usual.inRouting, row.name);
        expectRoute("io-params.out-routing", usual.outRouting, row.name);
        expectRoute("io-params.ms-pairs", usual.pairs, row.name);
        expectNames("io-params.in-channel-names", usual.channelNames.data(), 4, row.name);
        expectNames("io-params.group-names", usual.groupNames.data(), 8, row.name);
        EXPECT_EQ(value("oversampling"), 1) << row.name;
        EXPECT_EQ(param("instance-name").text(0, 0), "Mine") << "a preset leaves it alone";
    }
}

TEST_F(FactoryState, EachRoutingPresetBringsTheValuesOfItsRowAndNothingElse) {
    CAudioPresetList list;
    CError* error = list.load("AppDataGlobal_routing-presets");
    ASSERT_FALSE(error) << error->joined().toUtf8();
    ASSERT_EQ(list.count(), 9);
    for (int32_t index = 0; index < 9; ++index) {
        const factory::CRoutingPreset& row = factory::kRoutingPresets[index];
        const CAudioPreset& preset = list.preset(index);
        EXPECT_EQ(preset.name(), (std::string("TAIO:") + row.name).c_str());
        EXPECT_EQ(preset.recordCount(), row.hasSideChain ? 9 : 7) << row.name;
        EXPECT_EQ(preset.find("sidechain") >= 0, row.hasSideChain) << row.name;
        EXPECT_EQ(preset.find("sidechain-mute") >= 0, row.hasSideChain) << row.name;
        disturb();
        ASSERT_EQ(activate(routing(), preset), "") << row.name;
        expectRoute("io-params.grouping", row.grouping, row.name);
        expectRoute("io-params.in-routing", row.inRouting, row.name);
        expectRoute("io-params.out-routing", row.outRouting, row.name);
        expectRoute("io-params.ms-pairs", row.pairs, row.name);
        expectNames("io-params.group-names", row.groupNames.data(), 8, row.name);
        expectNames("io-params.in-channel-names", row.channelNames.data(), 4, row.name);
        EXPECT_EQ(value("oversampling"), 3) << "the routing registry has no such parameter";
        EXPECT_EQ(value("modBrindleXEQ.band-count"), 3) << row.name;
        EXPECT_EQ(value("modOutGain.mute", 1), 1) << row.name;
    }
}

TEST_F(FactoryState, WhatAnInstanceBeginsWithIsItsFirstPreset) {
    EXPECT_EQ(master().programCount(), 7);
    EXPECT_EQ(master().currentProgram(), 0);
    EXPECT_EQ(param("preset-name").text(0, 0), "Default");
    EXPECT_EQ(master().bankName(false), "Session Bank");
    EXPECT_EQ(master().bankName(true), "Factory ROM");
}

}  // namespace tarv
