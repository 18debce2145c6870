#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "Audio/Parameters/CAudioParamStorage.h"
#include "FactoryCompiler.h"
#include "Tests/TestPaths.h"

namespace tarv {

namespace {

/// One row of the table of the factory bank; gains in decibels, an empty text where a group holds nothing.
struct CBankRow {
    const char* name;
    const char* gainsA;
    const char* gainsB;
    const char* outGainA;
    const char* outGainB;
};

const CBankRow kBank[] = {
    {"TAEQ:Default", "0.00 0.00 0.00 0.00 0.00 0.00 0.00", "", "0.00", ""},
    {"TAEQ:Inverted Smiley", "-2.10 -0.40 1.29 2.09 1.29 -0.40 -2.10", "", "0.00", ""},
    {"TAEQ:More Loudness", "1.20 0.00 0.00 1.70 0.00 0.80 2.40", "", "0.00", ""},
    {"TAEQ:High Freq Roll-off", "0.00 0.00 0.00 -0.50 -1.20 -2.30 -4.10", "", "0.00", ""},
    {"TAEQ:Boom Box", "6.12 0.20 0.00 0.60 -0.30 -0.30 5.40", "-2.74 0.00 0.00 -1.13 0.00 0.00 4.51", "0.00", ""},
    {"TAEQ:Stereo Sheen", "2.00 0.70 0.00 0.00 0.00 0.70 2.00", "-7.30 -1.40 0.00 0.00 0.40 1.50 4.90", "0.00", ""},
    {"TAEQ:Strange Stereo", "-0.50 -4.80 -1.90 2.80 3.30 2.50 5.30", "9.60 4.70 0.50 -1.10 0.40 2.10 -1.80", "0.00",
     "1.70"},
};
constexpr char kBandCount[] = "7";
constexpr char kFrequencies[] = "64 150 350 1000 2000 6000 12000";

/// One row of the table of the routing presets.
struct CRoutingRow {
    const char* name;
    const char* grouping;
    const char* inRouting;
    const char* outRouting;
    const char* pairs;
    const char* groupNames;
    const char* channelNames;  ///< the first four
    bool hasSidechain;
};

const CRoutingRow kRouting[] = {
    {"TAIO:Default Stereo", "0 0 1 1 2 2 3 3", "1 2 0 0 0 0 0 0", "1 2 0 0 0 0 0 0", "0 0 0 0 0 0 0 0",
     "1 2 3 4 5 6 7 8", "L R IN3 IN4", false},
    {"TAIO:2.1 Stereo", "0 0 1 1 1 1 1 1", "1 2 3 0 0 0 0 0", "1 2 0 0 0 0 0 0", "0 0 0 0 0 0 0 0",
     "Front LFE 3 4 5 6 7 8", "L R C IN4", false},
    {"TAIO:5.1 Surround", "0 0 1 2 3 3 3 3", "1 2 3 4 5 6 0 0", "1 2 3 4 5 6 0 0", "0 0 0 0 0 0 0 0",
     "Front Cntr LFE Side 5 6 7 8", "L R C Lfe", false},
    {"TAIO:Dual Mono", "0 1 1 1 1 1 1 1", "1 2 0 0 0 0 0 0", "1 2 0 0 0 0 0 0", "0 0 0 0 0 0 0 0",
     "Left Right 3 4 5 6 7 8", "L R IN3 IN4", false},
    {"TAIO:Mid-Side Stereo", "0 1 1 1 1 1 1 1", "1 2 0 0 0 0 0 0", "1 2 0 0 0 0 0 0", "1 1 0 0 0 0 0 0",
     "Mid Side 3 4 5 6 7 8", "L R IN3 IN4", false},
    {"TAIO:Mono To Stereo", "0 0 1 1 2 2 3 3", "1 0 0 0 0 0 0 0", "1 1 0 0 0 0 0 0", "0 0 0 0 0 0 0 0",
     "1 2 3 4 5 6 7 8", "L R IN3 IN4", false},
    {"TAIO:Stereo Side-Chain", "0 0 1 1 2 2 3 3", "1 2 3 4 0 0 0 0", "1 2 0 0 0 0 0 0", "0 0 0 0 0 0 0 0",
     "1 2 3 4 5 6 7 8", "L R scL scR", true},
    {"TAIO:Mono Side-Chain", "0 0 1 1 2 2 3 3", "1 2 0 0 0 0 0 0", "1 0 0 0 0 0 0 0", "0 0 0 0 0 0 0 0",
     "1 2 3 4 5 6 7 8", "L scL IN3 IN4", true},
    {"TAIO:Force Mono", "0 0 1 1 2 2 3 3", "1 0 0 0 0 0 0 0", "1 0 0 0 0 0 0 0", "0 0 0 0 0 0 0 0", "1 2 3 4 5 6 7 8",
     "L R IN3 IN4", true},
};

/// A record as it was read back by the engine's reader.
struct CReadRecord {
    std::string definition;
    CAudioParamData data;
};

struct CReadPreset {
    std::string name;
    std::vector<std::string> keys;  ///< in the order of the stream
    std::map<std::string, CReadRecord> records;
};

bool isText(const std::string& key) {
    return key.find("names") != std::string::npos || key == "instance-name";
}

std::string readText(CInputStream& stream) {
    CString text;
    EXPECT_FALSE(stream.readString(text));
    return text.toUtf8();
}

uint32_t readValue(CInputStream& stream) {
    uint32_t value = 0;
    EXPECT_FALSE(stream.readValue(value));
    return value;
}

CReadPreset readPreset(CMemoryReader& stream) {
    CReadPreset preset;
    preset.name = readText(stream);
    const uint32_t count = readValue(stream);
    for (uint32_t i = 0; i < count && i < 100; ++i) {
        const std::string key = readText(stream);
        const uint32_t size = readValue(stream);
        int64_t begin = 0;
        int64_t end = 0;
        EXPECT_FALSE(stream.getPosition(begin));
        CAudioParamInfo info;
        info.setShape(1, isText(key), CAudioParamInfo::Storable);
        CReadRecord& record = preset.records[key];
        CString definition;
        CError* error = CAudioParamStorage::load(stream, info, record.data, &definition);
        EXPECT_FALSE(error) << key << ' ' << error->joined().toUtf8();
        delete error;
        record.definition = definition.toUtf8();
        EXPECT_FALSE(stream.getPosition(end));
        EXPECT_EQ(end - begin, size) << key;
        preset.keys.push_back(key);
    }
    return preset;
}

CFactoryStream compiledFactory(const std::string& name) {
    CFactoryStream stream;
    const auto failure = compileFactoryData(std::string(kSourceFolder) + "/Definitions/Factory/" + name, stream);
    EXPECT_FALSE(failure) << failure->message();
    return stream;
}

std::vector<std::string> words(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> result;
    for (std::string word; stream >> word;) {
        result.push_back(word);
    }
    return result;
}

void expectNumbers(const CReadPreset& preset, const std::string& key, int32_t group, const std::string& numbers,
                   bool isDecibels = false) {
    ASSERT_TRUE(preset.records.count(key)) << preset.name << ' ' << key;
    const CAudioParamData& data = preset.records.at(key).data;
    const auto expected = words(numbers);
    ASSERT_EQ(static_cast<size_t>(data.elementCount(group)), expected.size()) << preset.name << ' ' << key;
    for (size_t i = 0; i < expected.size(); ++i) {
        const double number = std::stod(expected[i]);
        const double value = isDecibels ? std::exp(number / 8.685889638065037) : number;
        EXPECT_EQ(data.value(group, static_cast<int32_t>(i)), value) << preset.name << ' ' << key << ' ' << i;
    }
}

void expectTexts(const CReadPreset& preset, const std::string& key, const std::vector<std::string>& texts) {
    ASSERT_TRUE(preset.records.count(key)) << preset.name << ' ' << key;
    const CAudioParamData& data = preset.records.at(key).data;
    ASSERT_EQ(static_cast<size_t>(data.elementCount(0)), texts.size()) << preset.name << ' ' << key;
    for (size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(data.text(0, static_cast<int32_t>(i)).toUtf8(), texts[i]) << preset.name << ' ' << key;
    }
}

/// The first names, the rest as the parameter's default has them.
std::vector<std::string> channelNames(const std::string& first) {
    auto names = words(first);
    while (names.size() < 16) {
        names.push_back("IN" + std::to_string(names.size() + 1));
    }
    return names;
}

void expectOrderAndPaths(const CReadPreset& preset) {
    EXPECT_TRUE(std::is_sorted(preset.keys.begin(), preset.keys.end())) << preset.name;
    for (const auto& [key, record] : preset.records) {
        EXPECT_TRUE(record.definition.starts_with("audio.modMain.")) << record.definition;
        const std::string name = key.substr(key.rfind('.') + 1);
        EXPECT_TRUE(record.definition.ends_with("." + name)) << record.definition;
    }
}

void expectBankPreset(const CReadPreset& preset, const CBankRow& row) {
    EXPECT_EQ(preset.name, row.name);
    expectOrderAndPaths(preset);
    expectNumbers(preset, "modBrindleXEQ.band-count", 0, kBandCount);
    expectNumbers(preset, "modBrindleXEQ.xeq-freqs", 0, kFrequencies);
    expectNumbers(preset, "modBrindleXEQ.xeq-gains", 0, row.gainsA, true);
    expectNumbers(preset, "modBrindleXEQ.xeq-gains", 1, row.gainsB, true);
    expectNumbers(preset, "modOutGain.gain", 0, row.outGainA, true);
    expectNumbers(preset, "modOutGain.gain", 1, row.outGainB, true);
    expectNumbers(preset, "io-params.oversampling", 0, "1");
    expectNumbers(preset, "io-params.grouping", 0, "0 0 1 1 2 2 3 3");
    expectNumbers(preset, "io-params.in-routing", 0, "1 2 0 0 0 0 0 0");
    expectNumbers(preset, "io-params.out-routing", 0, "1 2 0 0 0 0 0 0");
    expectNumbers(preset, "io-params.ms-pairs", 0, "0 0 0 0 0 0 0 0");
    expectTexts(preset, "io-params.in-channel-names", channelNames("L R"));
    expectTexts(preset, "instance-name", {"Unnamed instance"});
    const bool isDefault = preset.name == "TAEQ:Default";
    EXPECT_EQ(preset.records.size(), isDefault ? 12u : 11u) << preset.name;
    if (isDefault) {
        expectNumbers(preset, "modOutGain.mute", 0, "0");
    }
}

void expectRoutingPreset(const CReadPreset& preset, const CRoutingRow& row) {
    EXPECT_EQ(preset.name, row.name);
    expectOrderAndPaths(preset);
    expectNumbers(preset, "grouping", 0, row.grouping);
    expectNumbers(preset, "in-routing", 0, row.inRouting);
    expectNumbers(preset, "out-routing", 0, row.outRouting);
    expectNumbers(preset, "ms-pairs", 0, row.pairs);
    expectNumbers(preset, "oversampling", 0, "1");
    expectTexts(preset, "group-names", words(row.groupNames));
    expectTexts(preset, "in-channel-names", channelNames(row.channelNames));
    EXPECT_EQ(preset.records.count("sidechain"), row.hasSidechain ? 1u : 0u);
    EXPECT_EQ(preset.records.count("sidechain-mute"), row.hasSidechain ? 1u : 0u);
    EXPECT_EQ(preset.records.size(), row.hasSidechain ? 9u : 7u) << preset.name;
}

TEST(FactoryBank, HoldsEveryPresetWithEveryValueOfTheTable) {
    const CFactoryStream bank = compiledFactory("FactoryROM.xml");
    EXPECT_EQ(bank.id, "abnk");
    CMemoryReader reader(bank.bytes.data(), static_cast<uint32_t>(bank.bytes.size()));
    EXPECT_EQ(readText(reader), "Session Bank");
    ASSERT_EQ(readValue(reader), std::size(kBank));
    for (const CBankRow& row : kBank) {
        expectBankPreset(readPreset(reader), row);
    }
    int64_t position = 0;
    EXPECT_FALSE(reader.getPosition(position));
    EXPECT_EQ(static_cast<size_t>(position), bank.bytes.size());
}

TEST(RoutingPresets, HoldEveryPresetWithEveryValueOfTheTable) {
    const CFactoryStream list = compiledFactory("RoutingPresets.xml");
    EXPECT_EQ(list.id, "alst");
    CMemoryReader reader(list.bytes.data(), static_cast<uint32_t>(list.bytes.size()));
    EXPECT_EQ(readValue(reader), 1u);
    EXPECT_EQ(readValue(reader), 0u);
    ASSERT_EQ(readValue(reader), std::size(kRouting));
    for (const CRoutingRow& row : kRouting) {
        const CReadPreset preset = readPreset(reader);
        expectRoutingPreset(preset, row);
        if (row.hasSidechain) {
            expectNumbers(preset, "sidechain", 0, "2 3 2 3 4 5 6 7");
            expectNumbers(preset, "sidechain-mute", 0, "0 0 1 1 0 0 0 0");
        }
    }
    int64_t position = 0;
    EXPECT_FALSE(reader.getPosition(position));
    EXPECT_EQ(static_cast<size_t>(position), list.bytes.size());
}

TEST(FactoryData, IsTheSameBytesEachTime) {
    for (const char* name : {"FactoryROM.xml", "RoutingPresets.xml"}) {
        EXPECT_EQ(compiledFactory(name).bytes, compiledFactory(name).bytes) << name;
    }
}

}  // namespace

}  // namespace tarv
