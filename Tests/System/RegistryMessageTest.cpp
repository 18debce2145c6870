// Registries through messages: programs, presets and banks as data, A/B, resets.

#include "Core/CompressedBlock.h"
#include "Tests/System/MessageTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

class RegistryMessages : public CMessageTest {
protected:
    CByteBuffer acquire(uint32_t type, bool fromRom = false) {
        const CString path(kRegistry);
        EXPECT_EQ(type == kAcquirePreset ? client_.send(type, path, client_.id(9), fromRom, int32_t{-1}, int32_t{-1})
                                         : client_.send(type, path, client_.id(9), fromRom),
                  "");
        const CReceivedMessage received = client_.takeLast(kData);
        EXPECT_EQ(received.kind, static_cast<uint32_t>(CDataKind::Answer));
        EXPECT_EQ(received.id, client_.id(9));
        return received.bytes;
    }
    static uint32_t blockIdOf(const CByteBuffer& bytes) {
        return bytes.count() < 4 ? 0
                                 : static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
                                       static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
    }

    CMessageClient client_{*connector_};
    const CString path_{kRegistry};
};

TEST_F(RegistryMessages, ASubscriptionIsAnsweredByWhatTheRegistryHolds) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    const CReceivedMessage received = client_.takeLast(kRegistryChanged);
    EXPECT_EQ(received.id, client_.id(1));
    EXPECT_EQ(received.registry.path, path_);
    EXPECT_EQ(received.registry.id, CString("TAEQ"));
    EXPECT_TRUE(received.registry.isMaster);
    EXPECT_FALSE(received.registry.isAlternate);
    EXPECT_EQ(received.registry.presetNaming, CString("Master preset"));
    EXPECT_EQ(received.registry.bankName, CString("Session Bank"));
    EXPECT_EQ(received.registry.romName, CString("Factory ROM"));
    ASSERT_EQ(received.registry.programs.count(), registry().programCount());
    ASSERT_EQ(received.registry.romPresets.count(), registry().romCount());
    EXPECT_GE(received.registry.romPresets.count(), 2);
    for (int32_t i = 0; i < received.registry.romPresets.count(); ++i) {
        EXPECT_EQ(received.registry.romPresets[i], registry().romName(i));
    }
}

TEST_F(RegistryMessages, SettingAProgramNotifiesTheSubscribersAndIsAStep) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    EXPECT_EQ(client_.send(kSetProgram, path_, int32_t{1}), "");
    EXPECT_EQ(registry().currentProgram(), 1);
    EXPECT_EQ(client_.takeLast(kRegistryChanged).registry.currentProgram, 1);
    EXPECT_EQ(labels().back(), "Master preset activate");
    EXPECT_EQ(client_.undo(), "");
    EXPECT_EQ(client_.takeLast(kRegistryChanged).registry.currentProgram, 0);
}

TEST_F(RegistryMessages, RenamingAProgramSendsItsNewName) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    EXPECT_EQ(client_.send(kRenameProgram, path_, int32_t{1}, CString("Mine")), "");
    EXPECT_EQ(client_.takeLast(kRegistryChanged).registry.programs[1], CString("Mine"));
    EXPECT_EQ(labels().back(), "Program name change");
}

TEST_F(RegistryMessages, ARomPresetIsOneStep) {
    EXPECT_EQ(client_.send(kActivateRomPreset, path_, int32_t{1}), "");
    EXPECT_EQ(labels(), (std::vector<std::string>{"Undo history start", "ROM preset activate"}));
    EXPECT_EQ(registry().programName(0), registry().romName(1));
}

TEST_F(RegistryMessages, APresetThatWasAcquiredComesBackByItsData) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    const CByteBuffer preset = acquire(kAcquirePreset);
    EXPECT_EQ(blockIdOf(preset), kPresetBlockId);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.75}), "");
    EXPECT_EQ(client_.send(kActivateData, path_, int32_t{-1}, preset), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_EQ(labels().back(), "Master preset activate");
}

TEST_F(RegistryMessages, APresetForOneGroupTakesThatGroupAlone) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    const CByteBuffer preset = acquire(kAcquirePreset);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.75}), "");
    EXPECT_EQ(client_.send(kActivateData, path_, int32_t{1}, preset), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.75);
    EXPECT_EQ(param(kOutGain).value(1, 0), 0.5);
    EXPECT_EQ(labels().back(), "Master preset (2) activate");
    EXPECT_EQ(client_.send(kActivateData, path_, int32_t{8}, preset), "Invalid group 8 specified.");
    EXPECT_EQ(client_.send(kActivateData, path_, int32_t{-2}, preset), "Invalid group -2 specified.");
}

TEST_F(RegistryMessages, ABankThatWasAcquiredComesBackByItsData) {
    EXPECT_EQ(client_.send(kRenameProgram, path_, int32_t{2}, CString("Kept")), "");
    const CByteBuffer bank = acquire(kAcquireBank);
    EXPECT_EQ(blockIdOf(bank), kBankBlockId);
    EXPECT_EQ(client_.send(kRenameProgram, path_, int32_t{2}, CString("Lost")), "");
    EXPECT_EQ(client_.send(kActivateData, path_, int32_t{-1}, bank), "");
    EXPECT_EQ(registry().programName(2), CString("Kept"));
    EXPECT_EQ(blockIdOf(acquire(kAcquireBank, true)), kBankBlockId);
}

TEST_F(RegistryMessages, ABAndItsCopy) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    EXPECT_EQ(client_.send(kSwapAB, path_), "");
    EXPECT_TRUE(client_.takeLast(kRegistryChanged).registry.isAlternate);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.send(kCopyToAlternate, path_), "");
    EXPECT_EQ(client_.send(kSwapAB, path_), "");
    EXPECT_FALSE(client_.takeLast(kRegistryChanged).registry.isAlternate);
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
}

TEST_F(RegistryMessages, ResetsBringTheDefaultsBackInOneStep) {
    for (const uint32_t type : {kMasterReset, kResetState}) {
        EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
        EXPECT_EQ(client_.set(kOutGain, 1, 0, {0.5}), "");
        const size_t steps = labels().size();
        EXPECT_EQ(client_.send(type, path_), "");
        EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
        EXPECT_EQ(param(kOutGain).value(1, 0), 1.0);
        EXPECT_EQ(labels().size(), steps + 1);
        if (type == kMasterReset)
            EXPECT_EQ(labels().back(), "Master reset");
        EXPECT_EQ(client_.undo(), "");
        EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
        EXPECT_EQ(client_.undo(32), "");
    }
}

TEST_F(RegistryMessages, TheRoutingRegistryResetsWhatLiesUnderItAlone) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.set(engine::kGrouping, 0, 1, {3.0}), "");
    EXPECT_EQ(client_.send(kResetState, CString(kRoutingRegistry)), "");
    EXPECT_EQ(param(engine::kGrouping).value(0, 1), 0.0);
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
}

TEST_F(RegistryMessages, AProgramIsAddedAtItsPlaceWithTheCurrentState) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    const int32_t count = registry().programCount();
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.send(kAddProgram, path_, int32_t{1}, CString("Mine")), "");
    EXPECT_EQ(labels().back(), "Program add");
    EXPECT_EQ(client_.send(kAddProgram, path_, count + 1, CString("Last")), "");
    const CInterfaceRegistryState state = client_.takeLast(kRegistryChanged).registry;
    ASSERT_EQ(state.programs.count(), count + 2);
    EXPECT_EQ(state.programs[1], CString("Mine"));
    EXPECT_EQ(state.programs[count + 1], CString("Last"));
    EXPECT_EQ(state.currentProgram, 0);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.75}), "");
    EXPECT_EQ(client_.send(kSetProgram, path_, int32_t{1}), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
}

TEST_F(RegistryMessages, AReplacedProgramKeepsItsName) {
    const CString name = registry().programName(2);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    EXPECT_EQ(client_.send(kReplaceProgram, path_, int32_t{2}), "");
    EXPECT_EQ(labels().back(), "Program replace");
    EXPECT_EQ(registry().programName(2), name);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.75}), "");
    EXPECT_EQ(client_.send(kSetProgram, path_, int32_t{2}), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
}

TEST_F(RegistryMessages, ProgramsAreDeletedButForTheLast) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    const CString second = registry().programName(1);
    EXPECT_EQ(client_.send(kDeleteProgram, path_, int32_t{0}), "");
    EXPECT_EQ(labels().back(), "Program delete");
    EXPECT_EQ(client_.takeLast(kRegistryChanged).registry.programs[0], second);
    while (registry().programCount() > 1) {
        EXPECT_EQ(client_.send(kDeleteProgram, path_, int32_t{0}), "");
    }
    EXPECT_EQ(client_.send(kDeleteProgram, path_, int32_t{0}), "The last program can't be deleted.");
    EXPECT_EQ(registry().programCount(), 1);
}

TEST_F(RegistryMessages, AnUnsubscribedRegistryIsSilent) {
    EXPECT_EQ(client_.send(kSubscribeRegistry, path_, client_.id(1)), "");
    EXPECT_EQ(client_.send(kUnsubscribeRegistry, client_.id(1)), "");
    client_.take();
    EXPECT_EQ(client_.send(kSetProgram, path_, int32_t{1}), "");
    EXPECT_TRUE(client_.take(kRegistryChanged).empty());
    EXPECT_EQ(client_.send(kUnsubscribeRegistry, client_.id(1)),
              "No registry listener " + std::to_string(client_.id(1)) + " found.");
}

TEST_F(RegistryMessages, EachMessageNeedsARegistry) {
    const std::string failure = "No param registry object 'plugin.audio-env' found.";
    const CString other("plugin.audio-env");
    CByteBuffer none;
    none.resize(4);
    EXPECT_EQ(client_.send(kSubscribeRegistry, other, client_.id(1)), failure);
    EXPECT_EQ(client_.send(kSetProgram, other, int32_t{0}), failure);
    EXPECT_EQ(client_.send(kRenameProgram, other, int32_t{0}, CString("x")), failure);
    EXPECT_EQ(client_.send(kActivateRomPreset, other, int32_t{0}), failure);
    EXPECT_EQ(client_.send(kAddProgram, other, int32_t{0}, CString("x")), failure);
    EXPECT_EQ(client_.send(kDeleteProgram, other, int32_t{0}), failure);
    EXPECT_EQ(client_.send(kReplaceProgram, other, int32_t{0}), failure);
    EXPECT_EQ(client_.send(kSetDefaultPreset, other, none), failure);
    EXPECT_EQ(client_.send(kActivateData, other, int32_t{-1}, none), failure);
    EXPECT_EQ(client_.send(kAcquirePreset, other, client_.id(1), false, int32_t{-1}, int32_t{-1}), failure);
    EXPECT_EQ(client_.send(kAcquireBank, other, client_.id(1), false), failure);
    for (const uint32_t type : {kSwapAB, kMasterReset, kResetState, kCopyToAlternate}) {
        EXPECT_EQ(client_.send(type, other), failure);
    }
}

TEST_F(RegistryMessages, IndexesOutOfRangeAreRefused) {
    const int32_t count = registry().programCount();
    for (const int32_t index : {-1, count, 0x7fffffff}) {
        const std::string failure = "Invalid preset index " + std::to_string(index) + " specified.";
        EXPECT_EQ(client_.send(kSetProgram, path_, index), failure);
        EXPECT_EQ(client_.send(kRenameProgram, path_, index, CString("x")), failure);
        EXPECT_EQ(client_.send(kActivateRomPreset, path_, index), failure);
        EXPECT_EQ(client_.send(kDeleteProgram, path_, index), failure);
        EXPECT_EQ(client_.send(kReplaceProgram, path_, index), failure);
    }
    for (const int32_t index : {-1, count + 1, 0x7fffffff}) {
        EXPECT_EQ(client_.send(kAddProgram, path_, index, CString("x")),
                  "Invalid preset index " + std::to_string(index) + " specified.");
    }
    EXPECT_EQ(client_.send(kAddProgram, CString(kRoutingRegistry), int32_t{0}, CString("x")),
              "Invalid preset index 0 specified.");
    EXPECT_EQ(client_.send(kAcquirePreset, path_, client_.id(1), true, registry().romCount(), int32_t{-1}),
              "Invalid preset index " + std::to_string(registry().romCount()) + " specified.");
    EXPECT_EQ(client_.send(kAcquireBank, CString(kRoutingRegistry), client_.id(1), false),
              "Acquiring bank in a non-master registry is an error.");
    EXPECT_EQ(labels().size(), 1u);
}

TEST_F(RegistryMessages, DamagedDataChangeNothing) {
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.5}), "");
    CByteBuffer preset = acquire(kAcquirePreset);
    EXPECT_EQ(client_.set(kOutGain, 0, 0, {0.75}), "");
    CByteBuffer short_ = preset;
    short_.resize(preset.count() - 1);
    EXPECT_NE(client_.send(kActivateData, path_, int32_t{-1}, short_), "");
    CByteBuffer none;
    EXPECT_NE(client_.send(kActivateData, path_, int32_t{-1}, none), "");
    preset[0] ^= 1;
    EXPECT_NE(client_.send(kActivateData, path_, int32_t{-1}, preset).find("Invalid ID encountered"),
              std::string::npos);
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.75);
    EXPECT_EQ(labels().size(), 3u);
}

}  // namespace
}  // namespace tarv
