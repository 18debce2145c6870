// Presets and banks that a preset manager loads from files and saves to them.

#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

#include "Core/CFileStreams.h"
#include "Tests/UI/Controls/Presets/ManagerTree.h"
#include "UI/Controls/Presets/PresetFiles.h"

namespace tarv {
namespace {

/// Permissions count for this scope, also where the tests run as the system's administrator.
class CPlainUser {
public:
    CPlainUser() { (void)!seteuid(65534); }
    ~CPlainUser() { (void)!seteuid(getuid()); }
};

/// No file may grow beyond that many bytes in this scope, as on a disk that is full.
class CFullDisk {
public:
    explicit CFullDisk(rlim_t bytes) : signal_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        std::signal(SIGXFSZ, signal_);
    }

private:
    void (*signal_)(int);
    rlimit before_{};
};

class PresetFiles : public CManagerTest {
protected:
    void choose(const char* name) { system_.answerFileDialog(std::filesystem::path(path(name)).u16string()); }
    void sendWith(const char* event, const char* file) {
        choose(file);
        send(event);
    }
    std::string content(const char* name) const {
        std::ifstream stream(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    void write(const char* name, const std::string& bytes) const {
        std::ofstream(path(name), std::ios::binary) << bytes;
    }
    void writeBank(const char* name, const CAudioPresetBank& bank) const {
        CByteBuffer block;
        EXPECT_EQ(firstLine(packBank(bank, block)), "");
        EXPECT_EQ(firstLine(writeBlockFile(CString(path(name).c_str()), block)), "");
    }
    void writePreset(const char* name, const char* preset) const {
        CByteBuffer block;
        EXPECT_EQ(firstLine(packPreset(CAudioPreset(preset), block)), "");
        EXPECT_EQ(firstLine(writeBlockFile(CString(path(name).c_str()), block)), "");
    }
    std::string files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            names.push_back(entry.path().filename().string());
        }
        std::sort(names.begin(), names.end());
        std::string text;
        for (const std::string& name : names) {
            text += (text.empty() ? "" : " ") + name;
        }
        return text;
    }
    /// A stored bank that is selected, with its first preset.
    void selectMine() {
        EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a", "b"}))), "");
        tick();
        select(banks(), 2);
        select(presets(), 0);
    }
    std::string bankIn(const char* name) const {
        CAudioPresetBank bank;
        const std::string failure = firstLine(readBankFile(CString(path(name).c_str()), bank));
        CAudioBankList banks;
        banks.insert(0, bank);
        return failure.empty() ? listed(banks) : failure;
    }
    std::string presetIn(const char* name) const {
        CAudioPreset preset;
        const std::string failure = firstLine(readPresetFile(CString(path(name).c_str()), preset));
        return failure.empty() ? preset.name().toUtf8() : failure;
    }
};

TEST_F(PresetFiles, APresetIsOfferedUnderThePrefixAndItsName) {
    select(presets(), 4);
    registry().renameProgram(4, "Boom: Box?");
    tick();
    select(presets(), 4);
    sendWith("preset-save", "x.cpf");
    ASSERT_EQ(system_.fileDialogs().size(), 1u);
    const CFileDialogRequest& asked = system_.fileDialogs()[0];
    EXPECT_TRUE(asked.isSave);
    EXPECT_EQ(asked.title, u"Save Preset");
    EXPECT_EQ(asked.name, u"BrindleXEQ_Boom_ Box_.cpf");
    EXPECT_EQ(asked.filterName, u"Compressed preset files");
    EXPECT_EQ(asked.extension, u"cpf");
    EXPECT_EQ(asked.folder, u"");
    EXPECT_EQ(presetIn("x.cpf"), "TAEQ:Boom: Box?");
    sendWith("bank-save", "y.cbf");
    ASSERT_EQ(system_.fileDialogs().size(), 2u);
    EXPECT_EQ(system_.fileDialogs()[1].title, u"Save Bank");
    EXPECT_EQ(system_.fileDialogs()[1].name, u"BrindleXEQ_Session Bank.cbf");
    EXPECT_EQ(system_.fileDialogs()[1].filterName, u"Compressed bank files");
    EXPECT_EQ(system_.fileDialogs()[1].extension, u"cbf");
    EXPECT_EQ(system_.fileDialogs()[1].folder, folder_.u16string()) << "where the last file was";
    EXPECT_EQ(raised(), "");
}

TEST_F(PresetFiles, PresetsOfAllBanksAreSavedWithTheirValues) {
    param(kOutGain).setValue(0, 0, 0.5);
    sendWith("preset-save", "session.cpf");
    select(banks(), 1);
    select(presets(), 4);
    sendWith("preset-save", "rom.cpf");
    EXPECT_EQ(presetIn("session.cpf"), "TAEQ:Default");
    EXPECT_EQ(presetIn("rom.cpf"), "TAEQ:Boom Box");
    selectMine();
    sendWith("preset-save", "stored.cpf");
    EXPECT_EQ(presetIn("stored.cpf"), "TAEQ:a");
    param(kOutGain).setValue(0, 0, 1.0);
    sendWith("preset-load", "session.cpf");
    EXPECT_EQ(shown(presets()), "a|[Default]|b");
    send("preset-activate");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5) << "the current state, not what its slot held";
    EXPECT_EQ(raised(), "");
}

TEST_F(PresetFiles, BanksOfAllKindsAreSaved) {
    sendWith("bank-save", "session.cbf");
    select(banks(), 1);
    sendWith("bank-save", "rom.cbf");
    selectMine();
    sendWith("bank-save", "stored.cbf");
    const std::string factory =
        "(Default Inverted Smiley More Loudness High Freq Roll-off Boom Box Stereo Sheen Strange Stereo)";
    EXPECT_EQ(bankIn("session.cbf"), "Session Bank" + factory);
    EXPECT_EQ(bankIn("rom.cbf"), "Factory ROM" + factory);
    EXPECT_EQ(bankIn("stored.cbf"), "Mine(a b)");
    EXPECT_EQ(files(), "rom.cbf session.cbf stored.cbf") << "nothing is left beside them";
}

TEST_F(PresetFiles, ALoadedPresetBecomesTheCurrentProgramInOneStep) {
    writePreset("new.cpf", "TAEQ:New: one");
    sendWith("preset-load", "new.cpf");
    EXPECT_EQ(registry().programName(0), CString("New: one"));
    EXPECT_EQ(lastStep(), "1 Master preset activate");
    EXPECT_EQ(programs().size(), 7u);
    select(banks(), 1);
    system_.answerFileDialog(u"/none");
    send("preset-load");
    EXPECT_EQ(system_.fileDialogs().size(), 1u) << "the ROM takes none";
}

TEST_F(PresetFiles, ALoadedPresetComesBehindTheSelectedOne) {
    selectMine();
    writePreset("new.cpf", "TAEQ:new");
    sendWith("preset-load", "new.cpf");
    EXPECT_EQ(shown(presets()), "a|[new]|b");
    EXPECT_EQ(presets().selectedParagraph(), 1);
    openRoutingManager();
    writePreset("routing.cpf", "TAIO:Mine");
    sendWith("preset-load", "routing.cpf");
    EXPECT_EQ(presets().paragraphCount(), 10);
    EXPECT_EQ(presets().paragraphText(9), CString("Mine"));
    sendWith("preset-load", "new.cpf");
    EXPECT_EQ(raised(), "error-preset-type new.cpf: The preset is for another product.");
}

TEST_F(PresetFiles, ALoadedBankIsStoredBehindTheSelectedOne) {
    selectMine();
    writeBank("b.cbf", CBank("Other", {"x"}));
    sendWith("bank-load", "b.cbf");
    EXPECT_EQ(stored(), "Mine(a b)Other(x)");
    EXPECT_EQ(shown(banks()), "Session Bank|Factory ROM|Mine|[Other]");
    select(banks(), 1);
    writeBank("BrindleXEQ_My take.cbf", CBank("Session Bank", {"y"}));
    sendWith("bank-load", "BrindleXEQ_My take.cbf");
    EXPECT_EQ(stored(), "My take(y)Mine(a b)Other(x)") << "named after its file";
    writeBank("nameless.cbf", CBank("", {}));
    sendWith("bank-load", "nameless.cbf");
    EXPECT_EQ(stored(), "My take(y)nameless()Mine(a b)Other(x)");
    EXPECT_EQ(programs().size(), 7u);
}

TEST_F(PresetFiles, ALoadedBankReplacesTheSessionBehindAQuestionInOneStep) {
    writeBank("b.cbf", CBank("Other", {"x", "y"}));
    sendWith("bank-load", "b.cbf");
    EXPECT_EQ(question(), "Replace all presets of the session bank by those of \"b.cbf\"?");
    answerBy("cancel");
    EXPECT_EQ(programs().size(), 7u);
    sendWith("bank-load", "b.cbf");
    answerBy("ok");
    EXPECT_EQ(programs(), (std::vector<std::string>{"x", "y"}));
    EXPECT_EQ(lastStep(), "1 Master preset activate");
    EXPECT_EQ(shown(presets()), "[x]|y");
    EXPECT_EQ(stored(), "");
}

TEST_F(PresetFiles, FilesOfAnotherProductChangeNothing) {
    writePreset("preset.cpf", "TAXX:x");
    writePreset("none.cpf", "x");
    sendWith("preset-load", "preset.cpf");
    EXPECT_EQ(raised(), "error-preset-type preset.cpf: The preset is for another product.");
    EXPECT_EQ(raisedPath_, path("preset.cpf"));
    sendWith("preset-load", "none.cpf");
    EXPECT_EQ(raised(), "error-preset-type none.cpf: The preset is for another product.");
    CBank mixed("Mixed", {"a"});
    mixed.append().setName("TAIO:b");
    writeBank("bank.cbf", mixed);
    sendWith("bank-load", "bank.cbf");
    EXPECT_EQ(raised(), "error-preset-type bank.cbf: The bank is for another product.");
    selectMine();
    sendWith("bank-load", "bank.cbf");
    EXPECT_EQ(raised(), "error-preset-type bank.cbf: The bank is for another product.");
    sendWith("preset-load", "preset.cpf");
    EXPECT_EQ(raised(), "error-preset-type preset.cpf: The preset is for another product.");
    EXPECT_EQ(stored(), "Mine(a b)");
    EXPECT_EQ(lastStep().substr(0, 2), "0 ");
}

TEST_F(PresetFiles, WhatCannotBeReadChangesNothing) {
    selectMine();
    writePreset("preset.cpf", "TAEQ:x");
    writeBank("bank.cbf", CBank("B", {"x", "y"}));
    std::string damaged = content("preset.cpf");
    damaged[damaged.size() - 1] = static_cast<char>(~damaged[damaged.size() - 1]);
    write("damaged.cpf", damaged);
    write("cut.cbf", content("bank.cbf").substr(0, 20));
    write("empty.cpf", "");
    sendWith("preset-load", "damaged.cpf");
    EXPECT_EQ(raised(), "error-preset-load damaged.cpf: zlib inflate error -3 (incorrect data check).");
    EXPECT_EQ(raisedPath_, path("damaged.cpf"));
    sendWith("preset-load", "empty.cpf");
    EXPECT_EQ(raised(), "error-preset-load empty.cpf: Unable to read from file '" + path("empty.cpf") +
                            "' (required 4 bytes, read 0 bytes).");
    sendWith("preset-load", "missing.cpf");
    EXPECT_EQ(raised().substr(0, 32), "error-preset-load missing.cpf: U");
    sendWith("preset-load", "bank.cbf");
    EXPECT_EQ(raised().substr(0, 60), "error-preset-load bank.cbf: Invalid ID encountered when read");
    sendWith("bank-load", "cut.cbf");
    EXPECT_EQ(raised(), "error-bank-load cut.cbf: Premature end of file.");
    sendWith("bank-load", "preset.cpf");
    EXPECT_EQ(raised().substr(0, 60), "error-bank-load preset.cpf: Invalid ID encountered when read");
    EXPECT_EQ(stored(), "Mine(a b)");
    select(banks(), 0);
    sendWith("bank-load", "cut.cbf");
    EXPECT_EQ(raised(), "error-bank-load cut.cbf: Premature end of file.");
    writeBank("none.cbf", CBank("None", {}));
    sendWith("bank-load", "none.cbf");
    EXPECT_EQ(raised(), "error-bank-load none.cbf: The bank holds no presets.");
    EXPECT_FALSE(confirmation());
    EXPECT_EQ(lastStep().substr(0, 2), "0 ");
}

TEST_F(PresetFiles, AFileThatIsDamagedBehindTheQuestionChangesNothing) {
    writeBank("b.cbf", CBank("Other", {"x", "y"}));
    sendWith("bank-load", "b.cbf");
    write("b.cbf", content("b.cbf").substr(0, 20));
    answerBy("ok");
    EXPECT_EQ(raised(), "error-bank-load b.cbf: Premature end of file.");
    EXPECT_EQ(programs().size(), 7u);
}

TEST_F(PresetFiles, AFolderAndAMissingFolderAreShownAsErrors) {
    std::filesystem::create_directory(folder_ / "folder");
    sendWith("preset-save", "folder");
    EXPECT_EQ(raised().substr(0, 57), "error-preset-save folder: The file can't be written (erro");
    sendWith("bank-save", "missing/x.cbf");
    EXPECT_EQ(raised().substr(0, 55), "error-bank-save x.cbf: The file can't be written (error");
    EXPECT_EQ(raisedPath_, path("missing/x.cbf"));
    selectMine();
    sendWith("preset-save", "missing/x.cpf");
    EXPECT_EQ(raised().substr(0, 57), "error-preset-save x.cpf: The file can't be written (error");
    sendWith("bank-save", "folder");
    EXPECT_EQ(raised().substr(0, 55), "error-bank-save folder: The file can't be written (erro");
    EXPECT_EQ(files(), "folder");
}

TEST_F(PresetFiles, AReadOnlyFileKeepsItsContent) {
    write("fixed.cpf", "mine");
    std::filesystem::permissions(folder_, std::filesystem::perms::all);
    std::filesystem::permissions(path("fixed.cpf"),
                                 std::filesystem::perms::owner_read | std::filesystem::perms::others_read);
    {
        const CPlainUser user;
        sendWith("preset-save", "fixed.cpf");
    }
    EXPECT_EQ(raised(), "error-preset-save fixed.cpf: The file can't be written (error 13).");
    EXPECT_EQ(content("fixed.cpf"), "mine");
    EXPECT_EQ(files(), "fixed.cpf");
}

TEST_F(PresetFiles, AFullDiskLeavesTheOldFile) {
    write("full.cbf", "mine");
    {
        const CFullDisk full(16);
        sendWith("bank-save", "full.cbf");
    }
    EXPECT_EQ(raised(), "error-bank-save full.cbf: The file can't be written (error 27).");
    EXPECT_EQ(content("full.cbf"), "mine");
    EXPECT_EQ(files(), "full.cbf");
}

TEST_F(PresetFiles, AStoreThatTheDiskDoesNotTakeLastsAndIsShownAsAnError) {
    EXPECT_EQ(firstLine(editor_->store().insertBank(0, CBank("Mine", {"a"}))), "");
    tick();
    {
        const CFullDisk full(16);
        send("bank-add");
    }
    EXPECT_EQ(raised(), "error-bank-save shared-banks: It can't be stored, and lasts until the host is closed.");
    EXPECT_EQ(stored(), "Mine(a)Bank 1()");
    send("bank-add");
    EXPECT_EQ(raised(), "") << "there is room again";
    EXPECT_EQ(stored(), "Mine(a)Bank 1()Bank 2()");
}

TEST_F(PresetFiles, WithoutADialogTheReasonIsShown) {
    for (const char* event : {"preset-save", "preset-load", "bank-save", "bank-load"}) {
        system_.refuseFileDialog(u"There is no file dialog.");
        send(event);
        const std::string error = raised();
        EXPECT_EQ(error.substr(0, 6 + std::string(event).size()), "error-" + std::string(event));
        EXPECT_EQ(error.substr(error.size() - 26), ": There is no file dialog.");
        system_.refuseFileDialog();
        send(event);
        EXPECT_EQ(raised(), "") << "giving up is no error";
    }
}

TEST_F(PresetFiles, TheEditorMayCloseWhileADialogIsOpen) {
    system_.answerFileDialog(std::filesystem::path(path("x.cpf")).u16string(), [this] { editor_.reset(); });
    CAttributeMap none;
    EXPECT_EQ(firstLine(deliverEvent(manager(), "preset-save", none)), "");
    EXPECT_EQ(files(), "");
}

TEST_F(PresetFiles, WhatWasSelectedWhenTheDialogOpenedIsSaved) {
    selectMine();
    system_.answerFileDialog(std::filesystem::path(path("x.cpf")).u16string(), [this] {
        EXPECT_EQ(firstLine(editor_->store().insertPreset(0, 0, CAudioPreset("TAEQ:new"))), "");
        presets().selectParagraph(1);
    });
    send("preset-save");
    EXPECT_EQ(presetIn("x.cpf"), "TAEQ:a");
}

TEST_F(PresetFiles, WorkWithoutADialogTakesThePathOfItsEvent) {
    selectMine();
    send("perform-preset-save", {{"path", path("p.cpf")}});
    EXPECT_EQ(presetIn("p.cpf"), "TAEQ:a");
    send("perform-bank-save", {{"path", path("b.cbf")}});
    EXPECT_EQ(bankIn("b.cbf"), "Mine(a b)");
    send("perform-preset-load", {{"path", path("p.cpf")}});
    EXPECT_EQ(stored(), "Mine(a a b)");
    send("perform-bank-load", {{"path", path("b.cbf")}});
    EXPECT_EQ(stored(), "Mine(a a b)Mine(a b)");
    for (const char* event : {"perform-preset-save", "perform-bank-save", "perform-preset-load", "perform-bank-load",
                              "perform-bank-replace"}) {
        send(event);
    }
    EXPECT_EQ(stored(), "Mine(a a b)Mine(a b)");
    EXPECT_EQ(raised(), "");
}

}  // namespace
}  // namespace tarv
