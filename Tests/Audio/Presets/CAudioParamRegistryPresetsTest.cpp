// Capture and activation of presets: which values are captured and applied, and what is refused.

#include <cmath>
#include <limits>
#include <random>

#include "Audio/Stores/PackedStream.h"
#include "Tests/Audio/Graph/ProcessStub.h"
#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

std::vector<std::string> keysOf(const std::string& presetBytes) {
    CAudioPreset preset;
    CMemoryReader reader(presetBytes.data(), static_cast<uint32_t>(presetBytes.size()));
    EXPECT_EQ(firstLine(preset.load(reader)), "");
    std::vector<std::string> keys;
    for (int32_t i = 0; i < preset.recordCount(); ++i)
        keys.push_back(preset.keyText(i).toUtf8());
    return keys;
}

std::string recordOf(const std::string& presetBytes, const char* key) {
    CAudioPreset preset;
    CMemoryReader reader(presetBytes.data(), static_cast<uint32_t>(presetBytes.size()));
    EXPECT_EQ(firstLine(preset.load(reader)), "");
    const int32_t index = preset.find(key);
    if (index < 0)
        return "none";
    return {reinterpret_cast<const char*>(preset.record(index).data), static_cast<size_t>(preset.record(index).count)};
}

/// A record of one number, in the path that its definition has here.
std::string one(double value, const char* path = "path") {
    return realRecord({{value}}, 1, path);
}

class RegistryPresets : public testing::Test {
protected:
    std::string activate(const CStoredRecords& records, const CPresetRequest& request = {}) {
        return tree_.activate(tree_.master(), storedPreset("TAEQ:Test", records), request);
    }
    /// Sets every parameter to a value other than its default.
    void disturb() {
        tree_.set("eq.gains", 11, 0, 1);
        tree_.set("eq.gains", 12, 1, 2);
        tree_.set("eq.pair", 4, 0, 0);
        tree_.set("out.mute", 1);
        tree_.set("out.mute", 1, 1);
        tree_.set("oversampling", 3);
        tree_.set("io-params.in-routing", 5, 0, 3);
        tree_.param("io-params.group-names").setText(0, 0, "Front");
        tree_.param("instance-name").setText(0, 0, "Mine");
        tree_.set("io-params.solo", 1);
    }

    CPresetTree tree_;
};

TEST_F(RegistryPresets, StorableAndPersistentParametersAreCapturedUnderTheirKeys) {
    EXPECT_EQ(keysOf(tree_.acquire(tree_.master())),
              (std::vector<std::string>{"eq.gains", "eq.pair", "instance-name", "io-params.group-names",
                                        "io-params.in-routing", "out.mute", "oversampling"}));
    EXPECT_EQ(keysOf(tree_.acquire(tree_.routing())), (std::vector<std::string>{"group-names", "in-routing"}));
}

TEST_F(RegistryPresets, TheCapturedBytesAreTheStoredForm) {
    tree_.set("eq.gains", 2.5, 1, 0);
    tree_.param("io-params.group-names").setText(0, 1, "Side");
    EXPECT_EQ(
        tree_.acquire(tree_.master()),
        storedPreset("TAEQ:Default", {{"eq.gains", realRecord({{0, 0, 0}, {2.5}}, 1, "audio.gains")},
                                      {"eq.pair", realRecord({{1, 2}}, 2, "audio.pair")},
                                      {"instance-name", textRecord({"Unnamed"}, "audio.instance-name")},
                                      {"io-params.group-names", textRecord({"1", "Side", "3"}, "audio.group-names")},
                                      {"io-params.in-routing", realRecord({{1, 2}}, 1, "audio.in-routing")},
                                      {"out.mute", one(0, "audio.mute")},
                                      {"oversampling", one(1, "audio.oversampling")}}));
    EXPECT_EQ(tree_.acquire(tree_.routing()),
              storedPreset("TAIO:", {{"group-names", textRecord({"1", "Side", "3"}, "audio.group-names")},
                                     {"in-routing", realRecord({{1, 2}}, 1, "audio.in-routing")}}));
}

TEST_F(RegistryPresets, ACapturedPresetRestoresEveryStoredValueInAnotherInstance) {
    disturb();
    const std::string stored = tree_.acquire(tree_.master());
    const std::string before = tree_.state();
    tree_.set("io-params.solo", 0);
    CPresetTree other;
    ASSERT_EQ(other.activate(other.master(), stored, {-1, true, false}), "");
    EXPECT_EQ(other.acquire(other.master()), stored);
    EXPECT_EQ(other.state(), tree_.state());
    EXPECT_NE(other.state(), before) << "parameters without a flag are not restored";
}

TEST_F(RegistryPresets, StoredGroupsAreTakenAndThoseThatARecordLacksAreAtTheirDefaults) {
    disturb();
    ASSERT_EQ(activate({{"eq.gains", realRecord({{7, 8}})}}), "");
    EXPECT_EQ(tree_.value("eq.gains", 0, 1), 8);
    EXPECT_EQ(tree_.value("eq.gains", 0, 2), 0);
    EXPECT_EQ(tree_.value("eq.gains", 1, 2), 0);
    EXPECT_EQ(tree_.param("eq.gains").userData().elementCount(1), 0);
    disturb();
    ASSERT_EQ(activate({{"eq.gains", realRecord({})}}), "");
    EXPECT_EQ(tree_.value("eq.gains", 0, 1), 0);
}

TEST_F(RegistryPresets, AGroupThatARecordLacksReachesProcessesAsDefaultsWithTheNextRound) {
    tree_.env().setRunning(true);
    CProcessStub process;
    process.consume(tree_.param("eq.gains"), -1, -1);
    disturb();
    tree_.collector().applyPendingChanges(0.0);
    process.take();
    ASSERT_EQ(activate({{"eq.gains", realRecord({{7, 8}})}}), "");
    tree_.collector().applyPendingChanges(0.0);
    EXPECT_EQ(process.take(), (std::vector<CTaken>{{0.0, 0, 0, {7, 8}}, {0.0, 1, 0, {}}}));
    EXPECT_EQ(process.slot.data.value(1, 2), 0);
    EXPECT_EQ(process.slot.data.value(0, 1), 8);
    tree_.collector().detachConsumers();
}

TEST_F(RegistryPresets, StorableParametersWithoutARecordAreReset) {
    disturb();
    ASSERT_EQ(activate({{"eq.gains", one(7)}}), "");
    EXPECT_EQ(tree_.value("out.mute"), 0);
    EXPECT_EQ(tree_.value("out.mute", 1), 0);
    EXPECT_EQ(tree_.value("eq.pair"), 1);
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 3), 1);
    EXPECT_EQ(tree_.text("io-params.group-names"), "1");
    EXPECT_EQ(tree_.value("io-params.solo"), 1) << "parameters without a flag stay";
}

TEST_F(RegistryPresets, PersistentParametersAreAppliedOnRequestOnly) {
    tree_.param("instance-name").setText(0, 0, "Mine");
    ASSERT_EQ(activate({{"instance-name", textRecord({"Theirs"})}}), "");
    EXPECT_EQ(tree_.text("instance-name"), "Mine");
    ASSERT_EQ(activate({{"instance-name", textRecord({"Theirs"})}}, {-1, true, true}), "");
    EXPECT_EQ(tree_.text("instance-name"), "Theirs");
    ASSERT_EQ(activate({}, {-1, true, true}), "");
    EXPECT_EQ(tree_.text("instance-name"), "Theirs") << "without a record the present value stays";
}

TEST_F(RegistryPresets, OversamplingReadsItsKeyOrTheFormerOneAndStaysWithoutEither) {
    const struct {
        const char* what;
        CStoredRecords records;
        double after;
    } kCases[] = {
        {"natural", {{"oversampling", one(2)}}, 2},
        {"former", {{"io-params.oversampling", one(4)}}, 4},
        {"both", {{"io-params.oversampling", one(4)}, {"oversampling", one(2)}}, 2},
        {"neither", {}, 3},
        {"of another format", {{"oversampling", realRecord({{1, 2}}, 2)}}, 3},
    };
    for (const auto& row : kCases) {
        tree_.set("oversampling", 3);
        ASSERT_EQ(activate(row.records), "") << row.what;
        EXPECT_EQ(tree_.value("oversampling"), row.after) << row.what;
    }
}

TEST_F(RegistryPresets, CapturingWritesTheNaturalKeyAndDropsTheFormerOne) {
    ASSERT_EQ(activate({{"io-params.oversampling", one(4)}}), "");
    const std::string captured = tree_.acquire(tree_.master());
    EXPECT_EQ(recordOf(captured, "oversampling"), one(4, "audio.oversampling"));
    EXPECT_EQ(recordOf(captured, "io-params.oversampling"), "none");
}

TEST_F(RegistryPresets, TheRoutingRegistryIgnoresOversamplingAndKeysWithoutParameter) {
    disturb();
    const std::string gains = tree_.acquire(tree_.master(), -1);
    ASSERT_EQ(tree_.activate(tree_.routing(),
                             storedPreset("TAIO:x", {{"in-routing", realRecord({{9, 8}})},
                                                     {"oversampling", one(4)},
                                                     {"sidechain", realRecord({{2, 3, 2, 3, 4, 5, 6, 7}})}})),
              "");
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 1), 8);
    EXPECT_EQ(tree_.value("oversampling"), 3);
    EXPECT_EQ(tree_.text("io-params.group-names"), "1");
    EXPECT_EQ(recordOf(tree_.acquire(tree_.master()), "eq.gains"), recordOf(gains, "eq.gains"));
    EXPECT_EQ(tree_.text("preset-name"), "Default");
}

TEST_F(RegistryPresets, RecordsOfUnknownKeysAreKept) {
    const std::string strange("\x00\x01 tomorrow", 11);
    ASSERT_EQ(activate({{"a.of-tomorrow", strange}, {"eq.gains", one(3)}}), "");
    const std::string captured = tree_.acquire(tree_.master());
    EXPECT_EQ(recordOf(captured, "a.of-tomorrow"), strange);
    EXPECT_EQ(recordOf(captured, "eq.gains"), one(3, "audio.gains")) << "known ones are captured anew";
}

TEST_F(RegistryPresets, NumbersOutOfRangeAreClampedAndNotANumberBecomesTheDefault) {
    const std::string routing = realRecord({{std::nan(""), std::nan(""), -1, 17}});
    ASSERT_EQ(activate({{"eq.gains", realRecord({{1e9, std::nan(""), -kInf}, {kInf}})},
                        {"eq.pair", realRecord({{std::nan(""), std::nan(""), 10, -10}}, 2)},
                        {"io-params.in-routing", routing}}),
              "");
    EXPECT_EQ(tree_.value("eq.gains", 0, 0), 99);
    EXPECT_EQ(tree_.value("eq.gains", 0, 1), 0);
    EXPECT_EQ(tree_.value("eq.gains", 0, 2), -99);
    EXPECT_EQ(tree_.value("eq.gains", 1, 0), 99);
    EXPECT_EQ(tree_.value("eq.pair", 0, 0, 0), 1);
    EXPECT_EQ(tree_.value("eq.pair", 0, 0, 1), 2);
    EXPECT_EQ(tree_.value("eq.pair", 0, 1, 0), 9);
    EXPECT_EQ(tree_.value("eq.pair", 0, 1, 1), -9);
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 0), 1);
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 1), 2);
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 2), 0);
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 3), 16);
}

TEST_F(RegistryPresets, ARecordOfAnotherFormatIsLeftOutAndTheRestApplies) {
    const std::string versioned = CStored().text("x").words({2, 1, 0, 0}).raw("of tomorrow").bytes();
    const std::string foreign[] = {versioned, realRecord({{1, 2}}, 2), textRecord({"text"})};
    for (const std::string& record : foreign) {
        disturb();
        ASSERT_EQ(activate({{"eq.gains", record}, {"out.mute", one(1)}}), "");
        EXPECT_EQ(tree_.value("eq.gains", 0, 1), 0);
        EXPECT_EQ(tree_.value("out.mute"), 1);
        EXPECT_EQ(tree_.value("eq.pair"), 1);
    }
}

TEST_F(RegistryPresets, DamageInOneRecordChangesNothingAtAll) {
    disturb();
    const std::string good = one(5);
    const std::string bad[] = {
        good.substr(0, good.size() - 1),
        good + "?",
        "",
        CStored().text("x").words({1, 1, 0, 1025}).bytes(),
        CStored().text("x").words({1, 1, 0, 1, 0x7fffffff}).real(1).bytes(),
    };
    const std::string before = tree_.everything();
    for (const std::string& record : bad) {
        EXPECT_NE(activate({{"eq.gains", record}, {"out.mute", one(0)}}), "");
        EXPECT_NE(activate({{"eq.gains", one(1)}, {"out.mute", record}}), "");
    }
    const std::string text = textRecord({"a"});
    EXPECT_NE(activate({{"io-params.group-names", text.substr(0, text.size() - 4) + "\x07" + std::string(3, '\0')}}),
              "");
    EXPECT_EQ(tree_.everything(), before);
    EXPECT_EQ(tree_.labels(), "*Undo history start");
}

TEST_F(RegistryPresets, CutAtAnyByteOrBehindItsEndNothingChanges) {
    disturb();
    const std::string stream = storedPreset("TAEQ:x", {{"eq.gains", one(5)}, {"instance-name", textRecord({"b"})}});
    const std::string before = tree_.everything();
    for (size_t length = 0; length < stream.size(); ++length)
        EXPECT_NE(tree_.activate(tree_.master(), stream.substr(0, length)), "") << length;
    EXPECT_EQ(tree_.activate(tree_.master(), stream + "?"), "Data go on behind their end (pos " +
                                                                std::to_string(stream.size()) + ", size " +
                                                                std::to_string(stream.size() + 1) + ").");
    EXPECT_EQ(tree_.everything(), before);
}

TEST_F(RegistryPresets, RandomBytesInAPresetEitherApplyOrChangeNothing) {
    disturb();
    const std::string good = storedPreset(
        "TAEQ:x", {{"eq.gains", realRecord({{1, 2}, {3}})}, {"io-params.group-names", textRecord({"a", "b"})}});
    std::mt19937 random(11);
    std::string before = tree_.state();
    int32_t failures = 0;
    for (int round = 0; round < 3000; ++round) {
        std::string bytes = good;
        for (int i = 0; i < 1 + round % 4; ++i)
            bytes[random() % bytes.size()] = static_cast<char>(random());
        if (tree_.activate(tree_.master(), bytes).empty()) {
            before = tree_.state();
        } else {
            ++failures;
            ASSERT_EQ(tree_.state(), before) << round;
        }
        for (int32_t element = 0; element < 3; ++element)
            ASSERT_TRUE(std::fabs(tree_.value("eq.gains", 0, element)) <= 99) << round;
    }
    EXPECT_GT(failures, 1000);
}

TEST_F(RegistryPresets, APresetOfAnotherRegistryIsIncompatible) {
    const std::string before = tree_.everything();
    for (const char* name : {"TAIO:x", "no colon", "", ":x", "taeq:x", "TAEQ2:x"})
        EXPECT_EQ(tree_.activate(tree_.master(), storedPreset(name, {{"eq.gains", one(5)}})), "Incompatible preset.")
            << name;
    EXPECT_EQ(tree_.activate(tree_.routing(), storedPreset("TAEQ:x")), "Incompatible preset.");
    EXPECT_EQ(tree_.everything(), before);
}

TEST_F(RegistryPresets, TheNameBehindTheFirstColonIsShownAndNamesTheSlot) {
    ASSERT_EQ(tree_.activate(tree_.master(), storedPreset("TAEQ:5:1 Boom")), "");
    EXPECT_EQ(tree_.text("preset-name"), "5:1 Boom");
    EXPECT_EQ(tree_.programs(), "*5:1 Boom");
}

TEST_F(RegistryPresets, ASingleGroupTakesTheRecordsGroupZeroAndLeavesTheOthers) {
    disturb();
    const std::string names = tree_.text("io-params.group-names");
    ASSERT_EQ(activate({{"eq.gains", realRecord({{1, 2, 3}, {4, 5, 6}})},
                        {"io-params.in-routing", realRecord({{9}})},
                        {"io-params.oversampling", one(4)}},
                       {1}),
              "");
    EXPECT_EQ(tree_.value("eq.gains", 0, 1), 11);
    EXPECT_EQ(tree_.value("eq.gains", 1, 0), 1);
    EXPECT_EQ(tree_.value("eq.gains", 1, 2), 3);
    EXPECT_EQ(tree_.value("out.mute", 0), 1);
    EXPECT_EQ(tree_.value("out.mute", 1), 0) << "reset in this group only";
    EXPECT_EQ(tree_.value("io-params.in-routing"), 1);
    EXPECT_EQ(tree_.value("io-params.in-routing", 0, 3), 5);
    EXPECT_EQ(tree_.value("oversampling"), 3);
    EXPECT_EQ(tree_.text("io-params.group-names"), names);
}

TEST_F(RegistryPresets, OneGroupIsWrittenAsGroupZero) {
    disturb();
    EXPECT_EQ(tree_.acquire(tree_.master(), -1, false, 1),
              storedPreset("TAEQ:Default", {{"eq.gains", realRecord({{0, 0, 12}}, 1, "audio.gains")},
                                            {"eq.pair", realRecord({}, 2, "audio.pair")},
                                            {"out.mute", one(1, "audio.mute")}}));
}

TEST_F(RegistryPresets, GroupsBeyondThoseOfTheParameterAreNoChange) {
    ASSERT_EQ(activate({{"io-params.in-routing", realRecord({{1, 2}, {7, 7}})}}), "");
    EXPECT_EQ(tree_.value("io-params.in-routing", 1, 0), 1);
    const std::string labels = tree_.labels();
    ASSERT_EQ(activate({{"io-params.in-routing", realRecord({{1, 2}, {7, 7}})}}), "");
    EXPECT_EQ(tree_.labels(), labels) << "nothing changed, so there is no step";
}

TEST_F(RegistryPresets, ThePackedFormIsABlockOfItsId) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    ASSERT_EQ(firstLine(tree_.master().acquirePreset(false, -1, -1, writer, true)), "");
    EXPECT_EQ(textOf(bytes), packed(tree_.acquire(tree_.master()), kPresetBlockId));
    CByteBuffer bank;
    CBufferWriter bankWriter(bank);
    ASSERT_EQ(firstLine(tree_.master().acquireBank(false, bankWriter, true)), "");
    EXPECT_EQ(textOf(bank), packed(tree_.acquireBank(), kBankBlockId));
}

}  // namespace
}  // namespace tarv
