// Banks and preset lists that all editors of a user share: edits, other programs' edits, notifications, damage.

#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "Audio/Client/CAudioPresetStore.h"
#include "Core/CompressedBlock.h"
#include "Tests/Audio/Stores/TestBanks.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/System/EditorTest.h"
#include "Tests/System/StoredFile.h"

namespace tarv {
namespace {

constexpr const char* kBanks = "shared-banks";
constexpr const char* kRouting = "routing-presets";

class PresetStores : public CEditorTest {
protected:
    ~PresetStores() override {
        editor_.reset();
        CLocalData::instance().write(kBanks, {}, blockId(CAudioBankList::kBlockId));
        CGlobalData::instance().write(kRouting, {}, kListBlockId);
    }
    CAudioPresetStore& store(const char* name = kBanks) {
        CAudioPresetStore* found = nullptr;
        EXPECT_EQ(firstLine(client_->findPresetStore(name, found)), "");
        return *found;
    }
    /// What another program stores: the file changes, and no editor of this one is notified.
    static void storeElsewhere(const CAudioBankList& banks) {
        CByteBuffer bytes;
        CBufferWriter writer(bytes);
        EXPECT_EQ(firstLine(banks.save(writer)), "");
        CApplicationData other("Tarvelo/Audio Plug-Ins/Brindle XEQ/", "none");
        other.write(kBanks, bytes, blockId(CAudioBankList::kBlockId));
    }
    static std::unique_ptr<CAudioBankList> readElsewhere() {
        CApplicationData other("Tarvelo/Audio Plug-Ins/Brindle XEQ/", "none");
        CByteBuffer bytes;
        other.read(kBanks, bytes, blockId(CAudioBankList::kBlockId));
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
        auto banks = std::make_unique<CAudioBankList>();
        EXPECT_EQ(firstLine(banks->load(reader)), "");
        return banks;
    }
};

TEST_F(PresetStores, BeginEmptyAndTakeEachEdit) {
    CAudioPresetStore& banks = store();
    EXPECT_EQ(listed(banks.banks()), "");
    EXPECT_EQ(firstLine(banks.insertBank(0, CBank("One", {"a", "b"}))), "");
    EXPECT_EQ(firstLine(banks.insertBank(0, CBank("Two", {}))), "");
    EXPECT_EQ(firstLine(banks.insertPreset(0, 0, CAudioPreset("TAEQ:c"))), "");
    EXPECT_EQ(firstLine(banks.renameBank(1, "First")), "");
    EXPECT_EQ(firstLine(banks.renamePreset(1, 1, "d: e")), "");
    EXPECT_EQ(listed(banks.banks()), "Two(c)First(a d: e)");
    CAudioPreset other("TAEQ:other");
    CByteBuffer record;
    record.append(7);
    other.setRecord("key", record);
    EXPECT_EQ(firstLine(banks.replacePreset(1, 0, other)), "");
    EXPECT_EQ(banks.banks().bank(1).preset(0).displayName(), CString("a"));
    EXPECT_EQ(banks.banks().bank(1).preset(0).recordCount(), 1);
    EXPECT_EQ(firstLine(banks.deletePreset(1, 1)), "");
    EXPECT_EQ(firstLine(banks.deleteBank(0)), "");
    EXPECT_EQ(listed(banks.banks()), "First(a)");
    EXPECT_EQ(listed(*readElsewhere()), "First(a)");
}

TEST_F(PresetStores, IndexesOutOfRangeAreRefused) {
    CAudioPresetStore& banks = store();
    EXPECT_EQ(firstLine(banks.insertBank(0, CBank("One", {"a"}))), "");
    const std::string failure = "Invalid preset index ";
    EXPECT_EQ(firstLine(banks.insertBank(2, CBank("x", {}))), failure + "2 specified.");
    EXPECT_EQ(firstLine(banks.deleteBank(1)), failure + "1 specified.");
    EXPECT_EQ(firstLine(banks.renameBank(-1, "x")), failure + "-1 specified.");
    EXPECT_EQ(firstLine(banks.insertPreset(0, 2, CAudioPreset("x"))), failure + "2 specified.");
    EXPECT_EQ(firstLine(banks.deletePreset(0, 1)), failure + "1 specified.");
    EXPECT_EQ(firstLine(banks.renamePreset(1, 0, "x")), failure + "1 specified.");
    EXPECT_EQ(firstLine(banks.replacePreset(0, -1, CAudioPreset("x"))), failure + "-1 specified.");
    CAudioPresetStore* none = nullptr;
    EXPECT_EQ(firstLine(client_->findPresetStore("elsewhere", none)), "No preset store 'elsewhere' found.");
    EXPECT_EQ(listed(banks.banks()), "One(a)");
}

TEST_F(PresetStores, EditorsOfOneProcessAreNotified) {
    auto second = makeRoot();
    ASSERT_EQ(firstLine(loadTree(*second, nodes())), "");
    auto* other = second->findObjectOf<CAudioInterfaceClient>("ui.client");
    CAudioPresetStore* seen = nullptr;
    EXPECT_EQ(firstLine(other->findPresetStore(kBanks, seen)), "");
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("One", {"a"}))), "");
    EXPECT_EQ(listed(seen->banks()), "") << "by a post";
    pumpEvents();
    EXPECT_EQ(listed(seen->banks()), "One(a)");
}

TEST_F(PresetStores, WhatAnotherProgramWroteStaysAndIsSeenAtTheNextOpening) {
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("One", {"a", "b"}))), "");
    CAudioBankList theirs;
    theirs.insert(0, CBank("Theirs", {"x"}));
    theirs.insert(1, CBank("One", {"a", "new", "b"}));
    storeElsewhere(theirs);
    EXPECT_EQ(listed(store().banks()), "One(a b)");
    // Both the bank and the preset have moved.
    EXPECT_EQ(firstLine(store().renamePreset(0, 1, "c")), "");
    EXPECT_EQ(listed(*readElsewhere()), "Theirs(x)One(a new c)");
    EXPECT_EQ(listed(store().banks()), "Theirs(x)One(a new c)");
    theirs.remove(0);
    storeElsewhere(theirs);
    editor_.reset();
    open();
    EXPECT_EQ(listed(store().banks()), "One(a new b)");
}

TEST_F(PresetStores, AnEditOfWhatAnotherProgramChangedFailsAndLosesNothing) {
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("One", {"a"}))), "");
    CAudioBankList theirs;
    theirs.insert(0, CBank("One", {"a2"}));
    storeElsewhere(theirs);
    EXPECT_EQ(firstLine(store().deletePreset(0, 0)), "The preset 'a' was changed by another program.");
    EXPECT_EQ(listed(store().banks()), "One(a2)");
    theirs.bank(0).append().setName("TAEQ:more");
    storeElsewhere(theirs);
    EXPECT_EQ(firstLine(store().deleteBank(0)), "The bank 'One' was changed by another program.");
    EXPECT_EQ(listed(*readElsewhere()), "One(a2 more)");
    theirs.remove(0);
    storeElsewhere(theirs);
    EXPECT_EQ(firstLine(store().renameBank(0, "x")), "The bank 'One' was changed by another program.");
    EXPECT_EQ(listed(store().banks()), "");
}

TEST_F(PresetStores, ConcurrentThreadsLoseNoEdit) {
    constexpr int32_t kEdits = 40;
    const auto run = [](int32_t part) {
        CAudioPresetStore own(
            *CAudioPresetStore::findForm(kBanks), [](void*) {}, nullptr);
        for (int32_t i = 0; i < kEdits; ++i) {
            EXPECT_EQ(firstLine(own.insertBank(0, CBank(std::to_string(part * kEdits + i).c_str(), {}))), "");
        }
    };
    std::thread other(run, 1);
    run(0);
    other.join();
    EXPECT_EQ(readElsewhere()->count(), 2 * kEdits);
}

TEST_F(PresetStores, TwoProgramsThatWriteAtOnceLoseNoEdit) {
    constexpr int32_t kEdits = 40;
    const auto run = [](const char* name) {
        CAudioPresetStore own(
            *CAudioPresetStore::findForm(kBanks), [](void*) {}, nullptr);
        bool isGood = true;
        for (int32_t i = 0; i < kEdits; ++i) {
            isGood = firstLine(own.insertBank(0, CBank(name, {"a"}))).empty() && isGood;
        }
        return isGood;
    };
    const pid_t other = fork();
    ASSERT_GE(other, 0);
    if (other == 0) {
        _exit(run("theirs") ? 0 : 1);
    }
    EXPECT_TRUE(run("mine"));
    int status = -1;
    EXPECT_EQ(waitpid(other, &status, 0), other);
    EXPECT_EQ(status, 0);
    const auto stored = readElsewhere();
    int32_t mine = 0;
    for (int32_t i = 0; i < stored->count(); ++i) {
        mine += stored->bank(i).name() == CString("mine") ? 1 : 0;
    }
    EXPECT_EQ(mine, kEdits);
    EXPECT_EQ(stored->count(), 2 * kEdits);
}

TEST_F(PresetStores, RoutingPresetsBeginWithTheEmbeddedListAndEndThere) {
    CAudioPresetStore& routing = store(kRouting);
    ASSERT_EQ(routing.banks().count(), 1);
    const int32_t count = routing.banks().bank(0).count();
    EXPECT_EQ(count, 9);
    EXPECT_EQ(firstLine(routing.insertBank(0, CBank("x", {}))), "The preset store 'routing-presets' has no banks.");
    EXPECT_EQ(firstLine(routing.insertPreset(0, 0, CAudioPreset("TAIO:Mine"))), "");
    EXPECT_EQ(routing.banks().bank(0).count(), count + 1);
    EXPECT_EQ(routing.banks().bank(0).preset(0).displayName(), CString("Mine"));
    for (int32_t i = 0; i <= count; ++i) {
        EXPECT_EQ(firstLine(routing.deletePreset(0, 0)), "");
    }
    EXPECT_EQ(routing.banks().bank(0).count(), count) << "an empty list leaves the embedded one";
    CByteBuffer damaged;
    damaged.resize(10);
    CGlobalData::instance().write(kRouting, damaged, kListBlockId);
    routing.refresh();
    EXPECT_EQ(routing.banks().bank(0).count(), count);
}

TEST_F(PresetStores, ADamagedFileIsKeptAsideBeforeTheNextEditReplacesIt) {
    const CStoredFile file(kBanks);
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("One", {"a", "b"}))), "");
    const std::string damaged = file.damage();
    editor_.reset();
    open();
    CLogCapture log;
    EXPECT_EQ(listed(store().banks()), "");
    EXPECT_TRUE(log.has("zlib inflate error -3 (incorrect data check).")) << testing::PrintToString(log.lines);
    EXPECT_EQ(file.content(), damaged) << "reading replaces nothing";
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("Two", {}))), "");
    EXPECT_EQ(file.kept(), damaged);
    EXPECT_TRUE(log.has("The damaged 'shared-banks' is kept as 'shared-banks-damaged'."));
    EXPECT_EQ(listed(*readElsewhere()), "Two()");
}

TEST_F(PresetStores, AnEarlierKeptCopyStaysAndTheSameDamageIsKeptOnce) {
    const CStoredFile file(kBanks);
    const auto damageAndEdit = [&](size_t fromEnd) {
        const std::string damaged = file.damage(fromEnd);
        EXPECT_EQ(firstLine(store().insertBank(0, CBank("Two", {}))), "");
        return damaged;
    };
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("One", {"a", "b"}))), "");
    const std::string first = damageAndEdit(1);
    const std::string second = damageAndEdit(2);
    ASSERT_NE(first, second);
    EXPECT_EQ(damageAndEdit(2), second);
    EXPECT_EQ(file.kept(1), first);
    EXPECT_EQ(file.kept(2), second);
    EXPECT_EQ(file.kept(3), "");
}

TEST_F(PresetStores, ADamagedListInAnIntactBlockIsKeptAside) {
    const CStoredFile file(kRouting, true);
    CAudioPresetStore& routing = store(kRouting);
    const int32_t count = routing.banks().bank(0).count();
    EXPECT_EQ(firstLine(routing.insertPreset(0, 0, CAudioPreset("TAIO:Mine"))), "");
    CByteBuffer bytes;
    CGlobalData::instance().read(kRouting, bytes, kListBlockId);
    bytes.resize(bytes.count() - 1);
    CGlobalData::instance().write(kRouting, bytes, kListBlockId);
    const std::string damaged = file.content();
    EXPECT_EQ(firstLine(routing.insertPreset(0, 0, CAudioPreset("TAIO:Other"))), "");
    EXPECT_EQ(file.kept(), damaged);
    EXPECT_EQ(routing.banks().bank(0).count(), count + 1) << "the embedded list and the new one";
}

TEST_F(PresetStores, AListOfAnotherVersionIsNotOverwritten) {
    const CStoredFile file(kRouting, true);
    CAudioPresetStore& routing = store(kRouting);
    EXPECT_EQ(firstLine(routing.insertPreset(0, 0, CAudioPreset("TAIO:Mine"))), "");
    CByteBuffer bytes;
    CGlobalData::instance().read(kRouting, bytes, kListBlockId);
    bytes[0] = 2;
    CGlobalData::instance().write(kRouting, bytes, kListBlockId);
    const std::string theirs = file.content();
    EXPECT_EQ(firstLine(routing.deletePreset(0, 0)), "Unsupported preset list version 2.");
    EXPECT_EQ(file.content(), theirs);
    EXPECT_EQ(file.kept(), "");
}

TEST_F(PresetStores, AFileThatCannotBeOpenedIsNotReplaced) {
    const CStoredFile file(kBanks);
    EXPECT_EQ(firstLine(store().insertBank(0, CBank("One", {"a"}))), "");
    const std::string content = file.content();
    CFile held;
    const std::u16string path = std::filesystem::path(file.path()).u16string();
    ASSERT_EQ(held.open(path.c_str(), CFileAccess::kRead, {false, false}), 0u);
    const std::string failure = firstLine(store().insertBank(0, CBank("Two", {})));
    EXPECT_EQ(failure.substr(0, failure.find(" (")), "The stored 'shared-banks' can't be opened");
    EXPECT_EQ(held.close(), 0u);
    EXPECT_EQ(file.content(), content);
}

TEST_F(PresetStores, BanksOfAnotherVersionAreLoggedAndNotOverwritten) {
    CByteBuffer other;
    other.resize(10);
    CLocalData::instance().write(kBanks, other, blockId(CAudioBankList::kBlockId));
    CLogCapture log;
    CAudioPresetStore& banks = store();
    EXPECT_FALSE(log.lines.empty());
    EXPECT_EQ(listed(banks.banks()), "");
    EXPECT_EQ(firstLine(banks.insertBank(0, CBank("One", {}))), "Unsupported bank list version 0.");
    CByteBuffer still;
    CLocalData::instance().read(kBanks, still, blockId(CAudioBankList::kBlockId));
    EXPECT_EQ(still.count(), 10);
}

}  // namespace
}  // namespace tarv
