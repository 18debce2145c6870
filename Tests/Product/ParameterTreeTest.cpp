#include <gtest/gtest.h>

#include <cstring>

#include "ProductTree.h"

namespace tarv {

namespace {

/// Flags: g is-global, s is-storable, p is-persistent, 1 is-single-group, t data-type string.
struct CParamRow {
    const char* owner;  ///< below "audio"
    const char* name;
    const char* converter;
    const char* minimum;
    const char* maximum;
    const char* defaults;
    const char* flags;
    const char* visualName;
};

const CParamRow kParams[] = {
    {"", "param-enable-viz", "enum-enable", "0", "1", "0", "g", ""},
    {"modUpsamplerFilter1", "index", "enum-filters-hbf-steep5", "0", "6", "4", "", ""},
    {"modUpsamplerFilter2", "index", "enum-filters-hbf-soft", "0", "2", "2", "", ""},
    {"modDownsamplerFilter1", "index", "enum-filters-hbf-steep5", "0", "6", "4", "", ""},
    {"modDownsamplerFilter2", "index", "enum-filters-hbf-soft", "0", "2", "2", "", ""},
    {"modMute", "mute", "enum-enable", "0", "1", "0", "", "Mute"},
    {"modMain.io-params", "in-channel-names", "text", "", "",
     "L,R,IN3,IN4,IN5,IN6,IN7,IN8,IN9,IN10,IN11,IN12,IN13,IN14,IN15,IN16", "s1t", "In channel names"},
    {"modMain.io-params", "group-names", "text", "", "", "1,2,3,4,5,6,7,8", "s1t", "Group names"},
    {"modMain.io-params", "in-routing", "enum", "0", "16", "1,2,0,0,0,0,0,0", "s1", "In routing"},
    {"modMain.io-params", "grouping", "enum", "0", "7", "0,0,1,1,2,2,3,3", "s1", "Group assign"},
    {"modMain.io-params", "channel-group-solo", "enum-enable", "0", "1", "0", "g1", "Channel group solo"},
    {"modMain.io-params", "out-routing", "enum", "0", "16", "1,2,0,0,0,0,0,0", "s1", "Out routing"},
    {"modMain.io-params", "ms-pairs", "enum-mspairs", "0", "4", "0,0,0,0,0,0,0,0", "s1", "M/S pairs"},
    {"modMain.modInRouter", "routing", "enum", "0", "16", "0", "", ""},
    {"modMain.modInRouter", "grouping", "enum", "0", "7", "0", "", ""},
    {"modMain", "oversampling", "enum-oversampling", "0", "4", "1", "s1", "Oversampling"},
    {"modMain.modUpsampler", "mode", "enum-oversampling", "0", "4", "1", "", ""},
    {"modMain.modMSEncoder", "pairs", "enum-mspairs", "0", "4", "0", "", ""},
    {"modMain.modMSEncoder", "mode", "enum-mscoder", "0", "1", "0", "", ""},
    {"modMain.modMSEncoder", "bypass", "enum-enable", "0", "1", "0", "", ""},
    {"modMain.modBrindleXEQ", "xeq-freqs", "freq", "20.0", "21000.0", "64,150,350,1000,2000,6000,12000", "s",
     "Frequency"},
    {"modMain.modBrindleXEQ", "xeq-gains", "gain", "-12.0", "12.0", "0,0,0,0,0,0,0", "s", "EQ"},
    {"modMain.modBrindleXEQ", "band-count", "enum", "1", "10", "7", "s", ""},
    {"modMain.modBrindleXEQ.modPreFilter", "index", "enum-filters-std", "0", "5", "3", "", ""},
    {"modMain.modBrindleXEQ.modPreFilter", "freq", "freq", "20.0", "21000.0", "4000.0", "", ""},
    {"modMain.modBrindleXEQ.modPreFilter", "gain", "gain", "-48.0", "48.0", "-20.00", "", ""},
    {"modMain.modBrindleXEQ.modPreFilter", "bw", "bw", "0.01", "7.0", "2.00", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modBandFilter", "index", "enum-filters-std", "0", "5", "1", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modBandFilter", "freq", "freq", "20.0", "21000.0", "1000.0", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modBandFilter", "gain", "gain", "-48.0", "48.0", "0.00", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modBandFilter", "bw", "bw", "0.01", "7.0", "1.5", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modDCFilter", "index", "enum-filters-hp1", "0", "3", "1", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modDCFilter", "freq", "freq", "1.0", "21000.0", "6.0", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modDCFilter", "gain", "gain", "-48.0", "48.0", "0.0", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "ratio-a", "ratio", "50:1", "1:1", "1.05:1", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "ratio-b", "ratio", "50:1", "1:1", "1.1:1", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "knee-a", "real", "0", "40", "3.50", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "knee-b", "real", "0", "40", "4.80", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "bias-I", "real", "-5", "5", "-1.80", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "bias-V", "real", "0", "1", "0.5", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "gain-I", "real", "0", "2", "1.0", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "gain-V", "real", "0", "2", "0.15", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "auto-gain-point", "real", "-2", "2", "1.009", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "feed-freq", "freq", "1.0", "20000.0", "50.0", "", ""},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "feed-freq-inv", "enum-enable", "0", "1", "0", "", ""},
    {"modMain.modBrindleXEQ.modPostFilter", "index", "enum-filters-std", "0", "5", "3", "", ""},
    {"modMain.modBrindleXEQ.modPostFilter", "freq", "freq", "20.0", "21000.0", "4000.0", "", ""},
    {"modMain.modBrindleXEQ.modPostFilter", "gain", "gain", "-48.0", "48.0", "20.00", "", ""},
    {"modMain.modBrindleXEQ.modPostFilter", "bw", "bw", "0.01", "7.0", "2.00", "", ""},
    {"modMain.modBrindleXEQ.modDCFilter", "index", "enum-filters-hp1", "0", "3", "1", "", ""},
    {"modMain.modBrindleXEQ.modDCFilter", "freq", "freq", "1.0", "21000.0", "5.0", "", ""},
    {"modMain.modBrindleXEQ.modDCFilter", "gain", "gain", "-48.0", "48.0", "0.0", "", ""},
    {"modMain.modOutGain", "gain", "gain", "-12", "12", "0", "s", "Output gain"},
    {"modMain.modOutGain", "mute", "enum-enable", "0", "1", "0", "s", "Output gain"},
    {"modMain.modBypass", "enable", "enum-enable", "0", "1", "0", "g", ""},
    {"modMain.modBypass", "group-solo", "enum-enable", "0", "1", "0", "g", ""},
    {"modMain.modMSDecoder", "pairs", "enum-mspairs", "0", "4", "0", "", ""},
    {"modMain.modMSDecoder", "mode", "enum-mscoder", "0", "1", "1", "", ""},
    {"modMain.modMSDecoder", "bypass", "enum-enable", "0", "1", "0", "", ""},
    {"modMain.modDownsampler", "mode", "enum-oversampling", "0", "4", "1", "", ""},
    {"modMain.modOutRouter", "routing", "enum", "0", "16", "0", "", ""},
    {"modMain.modOutRouter", "grouping", "enum", "0", "7", "0", "", ""},
    {"modMain", "instance-name", "text", "", "", "Unnamed instance", "p1t", "Instance name"},
    {"modMain", "preset-name", "text", "", "", "Default", "g1t", "Preset name"},
    {"modMain", "host-oversampling-mode", "enum", "0", "3", "0", "g1", ""},
    {"modMain", "host-offline", "enum-enable", "0", "1", "0", "g1", ""},
    {"modMain", "host-latency-change", "enum-enable", "0", "1", "0", "g1", ""},
    {"modMain", "host-bpm", "real", "1", "1000", "140", "g1", ""},
    {"modMain", "meter-rmstime", "time", "1", "1000", "2", "g1", "Meter integration time"},
    {"modMain", "meter-releasetime", "time", "0", "5000", "750", "g1", "Meter release time"},
    {"modMain", "meter-peaktime", "time", "100", "10000", "1000", "g1", "Meter peak time"},
    {"modMain", "denorm-enable", "real", "0", "1", "1", "g1", "Anti-denormal noise enable"},
};

struct CFlagRow {
    char flag;
    CAttributeRow attribute;
};

constexpr CFlagRow kFlags[] = {
    {'g', {"is-global", "true"}},       {'s', {"is-storable", "true"}}, {'p', {"is-persistent", "true"}},
    {'1', {"is-single-group", "true"}}, {'t', {"data-type", "string"}},
};

std::vector<CAttributeRow> attributesOf(const CParamRow& row) {
    std::vector<CAttributeRow> attributes = {{"converter", row.converter}, {"def-values", row.defaults}};
    if (row.minimum[0]) {
        attributes.push_back({"min-values", row.minimum});
        attributes.push_back({"max-values", row.maximum});
    }
    for (const CFlagRow& flag : kFlags) {
        if (std::strchr(row.flags, flag.flag)) {
            attributes.push_back(flag.attribute);
        }
    }
    if (row.visualName[0]) {
        attributes.push_back({"visual-name", row.visualName});
    }
    return attributes;
}

size_t countParams(const CObject* object) {
    size_t count = object->tag() == "audio:param" ? 1 : 0;
    for (const CObject* child : object->children()) {
        count += countParams(child);
    }
    return count;
}

class ParameterTree : public CProductTree {};

TEST_F(ParameterTree, HoldsEveryParameterWithItsAttributesAndNoOther) {
    for (const CParamRow& row : kParams) {
        const std::string owner = row.owner[0] ? std::string("audio.") + row.owner : "audio";
        const CObject* param = shared(owner + "." + row.name);
        ASSERT_TRUE(param) << row.owner << ' ' << row.name;
        expectObject(param, {row.name, "audio:param", attributesOf(row)});
    }
    EXPECT_EQ(countParams(shared("audio")), std::size(kParams));
}

}  // namespace

}  // namespace tarv
