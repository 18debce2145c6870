// Presets and banks that a preset manager loads from files and saves to them.

#include "Tests/UI/Controls/Presets/PresetFilesTree.h"

namespace tarv {
namespace {

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
    EXPECT_EQ(raised(), "error-preset-type new.cpf: The preset is one of the whole plug-in: load it in Presets.");
}

TEST_F(PresetFiles, APresetOfTheOtherManagerIsShownAsOne) {
    selectMine();
    writePreset("routing.cpf", "TAIO:Mine");
    CBank bank("Routing", {});
    bank.append().setName("TAIO:b");
    writeBank("routing.cbf", bank);
    sendWith("preset-load", "routing.cpf");
    EXPECT_EQ(raised(),
              "error-preset-type routing.cpf: The preset is one of the routing alone: load it in Routing Presets.");
    sendWith("bank-load", "routing.cbf");
    EXPECT_EQ(raised(),
              "error-preset-type routing.cbf: The bank is one of the routing alone: load it in Routing Presets.");
    EXPECT_EQ(stored(), "Mine(a b)");
}

TEST_F(PresetFiles, LongNamesOfFilesAreCut) {
    const std::string longest(CPresetManager::kMaxName, 'n');
    selectMine();
    writePreset("long.cpf", ("TAEQ:" + longest + "x").c_str());
    sendWith("preset-load", "long.cpf");
    EXPECT_EQ(shown(presets()), "a|[" + longest + "]|b");
    CBank bank((longest + "y").c_str(), {(longest + "z").c_str()});
    writeBank("long.cbf", bank);
    sendWith("bank-load", "long.cbf");
    EXPECT_EQ(stored(), "Mine(a " + longest + " b)" + longest + "(" + longest + ")");
    select(banks(), 0);
    sendWith("bank-load", "long.cbf");
    answerBy("ok");
    EXPECT_EQ(programs(), std::vector<std::string>{longest});
    sendWith("preset-load", "long.cpf");
    EXPECT_EQ(programs(), std::vector<std::string>{longest});
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
    mixed.append().setName("TAXX:b");
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
    EXPECT_EQ(raised(),
              "error-preset-load damaged.cpf: The file is damaged (zlib inflate error -3 (incorrect data check)).");
    EXPECT_EQ(raisedPath_, path("damaged.cpf"));
    sendWith("preset-load", "empty.cpf");
    EXPECT_EQ(raised(), "error-preset-load empty.cpf: The file is damaged (Unable to read from file '" +
                            path("empty.cpf") + "' (required 4 bytes, read 0 bytes)).");
    sendWith("preset-load", "missing.cpf");
    EXPECT_EQ(raised(), "error-preset-load missing.cpf: There is no such file or folder (error 2).");
    sendWith("preset-load", "bank.cbf");
    EXPECT_EQ(raised().substr(0, 64), "error-preset-load bank.cbf: The file holds no preset (Invalid ID");
    sendWith("bank-load", "cut.cbf");
    EXPECT_EQ(raised(), "error-bank-load cut.cbf: The file is damaged (Premature end of file).");
    sendWith("bank-load", "preset.cpf");
    EXPECT_EQ(raised().substr(0, 62), "error-bank-load preset.cpf: The file holds no bank (Invalid ID");
    EXPECT_EQ(stored(), "Mine(a b)");
    select(banks(), 0);
    sendWith("bank-load", "cut.cbf");
    EXPECT_EQ(raised(), "error-bank-load cut.cbf: The file is damaged (Premature end of file).");
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
    EXPECT_EQ(raised(), "error-bank-load b.cbf: The file is damaged (Premature end of file).");
    EXPECT_EQ(programs().size(), 7u);
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
