#include <gtest/gtest.h>

#include <functional>

#include "ProductTree.h"

namespace tarv {

namespace {

// Paths below "audio", each parent before its children, children in declared order.
const CObjectRow kProcesses[] = {
    {"modUpsamplerInterpolator", "audio:modInterpolator", {{"use-time-shift", "false"}}},
    {"modDownsamplerDecimator", "audio:modDecimator", {{"use-time-shift", "false"}}},
    {"modUpsamplerFilter1",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.hbf-steep5"}, {"use-time-shift", "false"}}},
    {"modUpsamplerFilter2",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.hbf-soft"}, {"use-time-shift", "false"}}},
    {"modDownsamplerFilter1",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.hbf-steep5"}, {"use-time-shift", "false"}}},
    {"modDownsamplerFilter2",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.hbf-soft"}, {"use-time-shift", "false"}}},
    {"modMute", "audio:modMute", {{"is-smooth-update", "true"}}},
    {"modOutput", "audio:modOutput", {{"use-time-shift", "false"}}},
    {"modMain", "audio:process-def", {}},
    {"modMain.io-params", "core:object", {}},
    {"modMain.modInRouter", "audio:modRouter", {{"use-time-shift", "false"}}},
    {"modMain.modDenormMod", "audio:modDenorm", {{"bypass-state-id", "11"}}},
    {"modMain.modDenorm", "audio:modNode", {}},
    {"modMain.modUpsampler", "audio:modUpsampler", {{"use-time-shift", "false"}}},
    {"modMain.modMSEncoder", "audio:modMSCoder", {{"use-time-shift", "false"}}},
    {"modMain.modBrindleXEQ", "audio:process-def", {}},
    {"modMain.modBrindleXEQ.modPreFilter",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.std"}}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands",
     "audio:process-def",
     {{"is-stacked", "true"}, {"is-whole", "true"}, {"stack-param", "^.band-count"}}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modBandFilter",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.std"}}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modDCFilter",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.hp1"}}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube", "audio:modMetaTube", {{"is-smooth-update", "true"}}},
    {"modMain.modBrindleXEQ.modPostFilter",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.std"}}},
    {"modMain.modBrindleXEQ.modDCFilter",
     "audio:modFilter",
     {{"is-smooth-update", "true"}, {"gen-array", "audio.fltarray.hp1"}}},
    {"modMain.modOutGain", "audio:modGain", {{"is-smooth-update", "true"}}},
    {"modMain.modBypass", "audio:modBypass", {{"is-smooth-update", "true"}, {"is-group0", "true"}}},
    {"modMain.modMSDecoder", "audio:modMSCoder", {{"use-time-shift", "false"}}},
    {"modMain.modDownsampler", "audio:modDownsampler", {{"use-time-shift", "false"}}},
    {"modMain.modOutRouter", "audio:modRouter", {{"use-time-shift", "false"}, {"is-output", "true"}}},
};

struct CSlotRow {
    const char* process;
    std::vector<const char*> params;  ///< by index
};

const CSlotRow kSlots[] = {
    {"modUpsamplerFilter1", {"count", "index"}},
    {"modUpsamplerFilter2", {"count", "index"}},
    {"modDownsamplerFilter1", {"count", "index"}},
    {"modDownsamplerFilter2", {"count", "index"}},
    {"modMute", {"mute"}},
    {"modMain.modInRouter", {"routing", "grouping"}},
    {"modMain.modUpsampler", {"mode", "host-mode"}},
    {"modMain.modMSEncoder", {"pairs", "mode", "bypass"}},
    {"modMain.modBrindleXEQ.modPreFilter", {"count", "index", "freq", "gain", "bw"}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modBandFilter", {"count", "index", "freq", "gain", "bw"}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modDCFilter", {"count", "index", "freq", "gain"}},
    {"modMain.modBrindleXEQ.modBrindleXEQBands.modMetaTube",
     {"ratio-a", "ratio-b", "knee-a", "knee-b", "bias-I", "bias-V", "gain-I", "gain-V", "auto-gain-point", "feed-freq",
      "feed-freq-inv"}},
    {"modMain.modBrindleXEQ.modPostFilter", {"count", "index", "freq", "gain", "bw"}},
    {"modMain.modBrindleXEQ.modDCFilter", {"count", "index", "freq", "gain"}},
    {"modMain.modOutGain", {"gain", "mute"}},
    {"modMain.modBypass", {"enable", "group-solo"}},
    {"modMain.modMSDecoder", {"pairs", "mode", "bypass"}},
    {"modMain.modDownsampler", {"mode", "host-mode"}},
    {"modMain.modOutRouter", {"routing", "grouping"}},
};

struct CRemapRow {
    const char* process;
    const char* orig;
    const char* target;
};

const CRemapRow kRemaps[] = {
    {"modMain.modInRouter", "routing", "^io-params.in-routing"},
    {"modMain.modInRouter", "grouping", "^io-params.grouping"},
    {"modMain.modUpsampler", "mode", "^oversampling"},
    {"modMain.modUpsampler", "host-mode", "^host-oversampling-mode"},
    {"modMain.modMSEncoder", "pairs", "^io-params.ms-pairs"},
    {"modMain.modBrindleXEQ.modBrindleXEQBands", "modBandFilter.freq", "^.xeq-freqs"},
    {"modMain.modBrindleXEQ.modBrindleXEQBands", "modBandFilter.gain", "^.xeq-gains"},
    {"modMain.modBypass", "group-solo", "^io-params.channel-group-solo"},
    {"modMain.modMSDecoder", "pairs", "^io-params.ms-pairs"},
    {"modMain.modDownsampler", "mode", "^oversampling"},
    {"modMain.modDownsampler", "host-mode", "^host-oversampling-mode"},
    {"modMain.modOutRouter", "routing", "^io-params.out-routing"},
};

/// Children of one tag.
std::vector<const CObject*> childrenOf(const CObject* object, const char* tag) {
    std::vector<const CObject*> found;
    for (const CObject* child : object->children()) {
        if (child->tag() == tag) {
            found.push_back(child);
        }
    }
    return found;
}

/// Counts the objects of a tag in a tree.
size_t countOf(const CObject* object, const char* tag) {
    size_t count = childrenOf(object, tag).size();
    for (const CObject* child : object->children()) {
        count += countOf(child, tag);
    }
    return count;
}

class ProcessTree : public CProductTree {};

TEST_F(ProcessTree, HoldsEveryProcessWithItsAttributesAndNoOther) {
    for (const CObjectRow& row : kProcesses) {
        const CObject* process = shared(std::string("audio.") + row.name);
        ASSERT_TRUE(process) << row.name;
        const std::string path = row.name;
        const std::string name = path.substr(path.rfind('.') + 1);
        expectObject(process, {name.c_str(), row.tag, row.attributes});
    }
}

TEST_F(ProcessTree, KeepsTheDeclaredOrder) {
    std::vector<std::string> expected;
    for (const CObjectRow& row : kProcesses) {
        expected.push_back(std::string("audio.") + row.name);
    }
    std::vector<std::string> found;
    const std::function<void(const CObject*)> walk = [&](const CObject* object) {
        for (const CObject* child : object->children()) {
            const std::string tag = child->tag().toUtf8();
            const bool isProcess = tag.starts_with("audio:mod") || tag == "audio:process-def";
            if (isProcess || child->name() == "io-params") {
                found.push_back(child->fullName().toUtf8());
                walk(child);
            }
        }
    };
    walk(shared("audio"));
    EXPECT_EQ(found, expected);
}

TEST_F(ProcessTree, HasEverySlotAtItsIndexAndNoOther) {
    size_t count = 0;
    for (const CSlotRow& row : kSlots) {
        const auto slots = childrenOf(shared(std::string("audio.") + row.process), "audio:param-alloc");
        ASSERT_EQ(slots.size(), row.params.size()) << row.process;
        for (size_t i = 0; i < slots.size(); ++i) {
            EXPECT_EQ(slots[i]->getAttrString("param-name").toUtf8(), row.params[i]) << row.process;
            EXPECT_EQ(slots[i]->getAttrString("index").toUtf8(), std::to_string(i)) << row.process;
        }
        count += slots.size();
    }
    EXPECT_EQ(countOf(shared("audio"), "audio:param-alloc"), count);
}

TEST_F(ProcessTree, HasEveryRemapAndNoOther) {
    for (const CRemapRow& row : kRemaps) {
        int found = 0;
        for (const CObject* remap : childrenOf(shared(std::string("audio.") + row.process), "audio:param-remap")) {
            if (remap->getAttrString("orig") == row.orig) {
                EXPECT_EQ(remap->getAttrString("new").toUtf8(), row.target) << row.process << ' ' << row.orig;
                ++found;
            }
        }
        EXPECT_EQ(found, 1) << row.process << ' ' << row.orig;
    }
    EXPECT_EQ(countOf(shared("audio"), "audio:param-remap"), std::size(kRemaps));
}

TEST_F(ProcessTree, HasTwoLinksForSecondInputs) {
    const auto band = childrenOf(shared("audio.modMain.modBrindleXEQ.modBrindleXEQBands"), "audio:process-link");
    ASSERT_EQ(band.size(), 1u);
    EXPECT_EQ(band[0]->getAttrString("src").toUtf8(), "*");
    EXPECT_EQ(band[0]->getAttrString("dst").toUtf8(), "modMetaTube/1");
    const auto main = childrenOf(shared("audio.modMain"), "audio:process-link");
    ASSERT_EQ(main.size(), 1u);
    EXPECT_EQ(main[0]->getAttrString("src").toUtf8(), "modMSEncoder");
    EXPECT_EQ(main[0]->getAttrString("dst").toUtf8(), "modBypass/1");
    EXPECT_EQ(countOf(shared("audio"), "audio:process-link"), 2u);
}

TEST_F(ProcessTree, HasOneBypassStateOfTheNoiseSource) {
    const auto states = childrenOf(shared("audio.modMain"), "audio:process-bypass-state");
    ASSERT_EQ(states.size(), 1u);
    expectObject(states[0],
                 {"process-bypass-state",
                  "audio:process-bypass-state",
                  {{"id", "11"}, {"param", "denorm-enable"}, {"is-inverted", "true"}, {"is-group0", "true"}}});
    EXPECT_EQ(countOf(shared("audio"), "audio:process-bypass-state"), 1u);
}

}  // namespace

}  // namespace tarv
