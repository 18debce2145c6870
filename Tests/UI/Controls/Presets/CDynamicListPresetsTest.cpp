#include "UI/Controls/Presets/CDynamicListPresets.h"

#include "Tests/UI/Controls/Presets/PresetTree.h"

namespace tarv {
namespace {

class CDynamicListPresetsTest : public CPresetTest {
protected:
    /// A menu below the view `opener`.
    static CTestNode menu(const CTexts& more) {
        CTexts attributes = {{"interface-client", "ui.client"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        return {"ui:view",
                "opener",
                {{"placement", "top"}, {"width", "120"}, {"height", "20"}},
                {{"ui:dynamic-list-presets", "presets", attributes}}};
    }
    static CTestNode bankMenu(const CTexts& more = {}) {
        CTexts attributes = {{"param-registry", kRegistry}, {"store-name", kBanks}, {"is-show-banks", "true"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        return menu(attributes);
    }
    static CTestNode routingMenu() {
        return menu({{"param-registry", kRoutingRegistry}, {"store-name", kRouting}, {"is-global-data", "true"}});
    }
    static CDynamicListPresets& presets(CPresetEditor& editor) {
        return editor.at<CDynamicListPresets>("w.opener.presets");
    }
    /// "name>" has a list below it, "*name" is checked; a failure as it reads.
    static std::string rows(CPresetEditor& editor, const CString& parent = "") {
        CDynamicListRows made;
        if (CError* error = presets(editor).generateSubList(parent, made)) {
            return firstLine(error);
        }
        std::string text;
        for (int32_t i = 0; i < made.count(); ++i) {
            EXPECT_TRUE(made[i].isPlain);
            text += (i > 0 ? "|" : "") + std::string(made[i].isChecked ? "*" : "") + made[i].text.toUtf8() +
                    (made[i].hasSubList ? ">" : "");
        }
        return text;
    }
    static CString idOf(CPresetEditor& editor, int32_t row, const CString& parent = "") {
        CDynamicListRows made;
        EXPECT_EQ(firstLine(presets(editor).generateSubList(parent, made)), "");
        return made[row].id;
    }
    void choose(CPresetEditor& editor, const CString& id) {
        CAttributeMap params;
        params["id"] = CAttributeValue::fromPlainString(id);
        EXPECT_EQ(firstLine(deliverEvent(presets(editor), "popup-result", params)), "");
        tick();
    }
    static CPopupList* list(CPresetEditor& editor, const char* name = "window-app-popup-list") {
        return editor.find<CPopupList>(std::string(name) + ".list");
    }
    void chooseRow(CPresetEditor& editor, CPopupList& of, int32_t row) {
        editor.clickIn(*of.parent(), of.rowRect(row));
        tick();
    }
    static void openMenu(CPresetEditor& editor) {
        editor.openPopup("opener", "ui:window-app-popup-list",
                         {{"popup-text-source", ".presets"}, {"result-target", ".presets"}});
    }
};

constexpr const char* kFactory =
    "Default|Inverted Smiley|More Loudness|High Freq Roll-off|Boom Box|Stereo Sheen|Strange Stereo";

TEST_F(CDynamicListPresetsTest, FixedBanksStandFirstAndStoredOnesFollow) {
    auto editor = openEditor({bankMenu()});
    EXPECT_EQ(rows(*editor), "Session Bank>|Factory ROM>");
    EXPECT_EQ(firstLine(editor->store().insertBank(0, CBank("Mine", {"a"}))), "");
    EXPECT_EQ(firstLine(editor->store().insertBank(1, CBank("Empty", {}))), "");
    EXPECT_EQ(rows(*editor), "Session Bank>|Factory ROM>|Mine>|Empty");
}

TEST_F(CDynamicListPresetsTest, PresetsHaveNoPrefixAndTheCurrentProgramIsChecked) {
    auto editor = openEditor({bankMenu()});
    registry().selectProgram(4);
    tick();
    EXPECT_EQ(rows(*editor, idOf(*editor, 0)),
              "Default|Inverted Smiley|More Loudness|High Freq Roll-off|*Boom Box|Stereo Sheen|Strange Stereo");
    EXPECT_EQ(rows(*editor, idOf(*editor, 1)), kFactory);
    EXPECT_EQ(firstLine(editor->store().insertBank(0, CBank("Mine", {"a", "b: c"}))), "");
    EXPECT_EQ(rows(*editor, idOf(*editor, 2)), "a|b: c");
}

TEST_F(CDynamicListPresetsTest, WithoutBanksTheSessionsPresetsStandAtTheTop) {
    auto editor = openEditor({bankMenu({{"is-show-banks", "false"}})});
    EXPECT_EQ(rows(*editor), std::string("*") + kFactory);
}

TEST_F(CDynamicListPresetsTest, AStoreWithoutBanksIsOneListOfPresets) {
    auto editor = openEditor({routingMenu()});
    EXPECT_EQ(rows(*editor),
              "Default Stereo|2.1 Stereo|5.1 Surround|Dual Mono|Mid-Side Stereo|Mono To Stereo|Stereo Side-Chain|Mono "
              "Side-Chain|Force Mono");
    EXPECT_EQ(param(kInRouting).value(0, 1), 2.0);
    choose(*editor, idOf(*editor, 5));
    EXPECT_EQ(param(kInRouting).value(0, 0), 1.0);
    EXPECT_EQ(param(kInRouting).value(0, 1), 0.0);
    EXPECT_EQ(lastStep(), "1 Routing preset activate");
}

TEST_F(CDynamicListPresetsTest, AChosenProgramIsSelectedInOneStep) {
    auto editor = openEditor({bankMenu()});
    choose(*editor, idOf(*editor, 2, idOf(*editor, 0)));
    EXPECT_EQ(registry().currentProgram(), 2);
    EXPECT_EQ(lastStep(), "1 Master preset activate");
    EXPECT_EQ(rows(*editor, idOf(*editor, 0)).find("*More Loudness"), std::string("Default|Inverted Smiley|").size());
}

TEST_F(CDynamicListPresetsTest, APresetOfTheRomIsCopiedToTheCurrentProgram) {
    auto editor = openEditor({bankMenu()});
    choose(*editor, idOf(*editor, 4, idOf(*editor, 1)));
    EXPECT_EQ(registry().currentProgram(), 0);
    EXPECT_EQ(registry().programName(0), CString("Boom Box"));
    EXPECT_EQ(lastStep(), "1 ROM preset activate");
}

TEST_F(CDynamicListPresetsTest, AStoredPresetBecomesTheCurrentState) {
    auto editor = openEditor({bankMenu()});
    param(kOutGain).setValue(0, 0, 0.5);
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    EXPECT_EQ(firstLine(registry().acquirePreset(false, -1, -1, writer, false)), "");
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CBank bank("Mine", {"first", "quiet"});
    EXPECT_EQ(firstLine(bank.preset(1).load(reader)), "");
    bank.preset(1).setName("TAEQ:quiet");
    EXPECT_EQ(firstLine(editor->store().insertBank(0, bank)), "");
    param(kOutGain).setValue(0, 0, 1.0);
    choose(*editor, idOf(*editor, 1, idOf(*editor, 2)));
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_EQ(registry().programName(0), CString("quiet"));
    EXPECT_EQ(lastStep(), "1 Master preset activate");
}

TEST_F(CDynamicListPresetsTest, WhatMovedWhileTheListWasOpenIsFoundByItsName) {
    auto editor = openEditor({bankMenu()});
    EXPECT_EQ(firstLine(editor->store().insertBank(0, CBank("Mine", {"a", "b"}))), "");
    const CString bank = idOf(*editor, 2);
    const CString preset = idOf(*editor, 1, bank);
    EXPECT_EQ(firstLine(editor->store().insertBank(0, CBank("Other", {"x", "y"}))), "");
    EXPECT_EQ(firstLine(editor->store().insertPreset(1, 0, CAudioPreset("TAEQ:new"))), "");
    EXPECT_EQ(rows(*editor, bank), "new|a|b");
    choose(*editor, preset);
    EXPECT_EQ(registry().programName(0), CString("b"));
    EXPECT_EQ(firstLine(editor->store().deletePreset(1, 2)), "");
    choose(*editor, preset);
    EXPECT_EQ(lastStep(), "1 Master preset activate") << "a preset that is gone is ignored";
    EXPECT_EQ(firstLine(editor->store().deleteBank(1)), "");
    EXPECT_EQ(rows(*editor, bank), "");
}

TEST_F(CDynamicListPresetsTest, WhatAnotherProgramHasStoredIsListed) {
    auto editor = openEditor({bankMenu()});
    CAudioBankList theirs;
    theirs.insert(0, CBank("Theirs", {"x"}));
    storeElsewhere(theirs);
    EXPECT_EQ(rows(*editor), "Session Bank>|Factory ROM>|Theirs>");
}

TEST_F(CDynamicListPresetsTest, AnIdThatItDidNotGiveIsRefused) {
    auto editor = openEditor({bankMenu()});
    EXPECT_EQ(rows(*editor, "7"), "Invalid list identifier 7.");
    const CString preset = idOf(*editor, 0, idOf(*editor, 0));
    EXPECT_EQ(rows(*editor, preset), "Invalid list identifier " + preset.toUtf8() + ".");
    choose(*editor, "7");
    choose(*editor, idOf(*editor, 0));
    EXPECT_EQ(lastStep().substr(0, 2), "0 ");
}

TEST_F(CDynamicListPresetsTest, WhatIsMissingFails) {
    EXPECT_EQ(openEditor({menu({{"interface-client", "ui.none"}})})->failure(),
              "No interfacing object 'ui.none' found.");
    EXPECT_EQ(openEditor({menu({{"param-registry", "plugin.none"}})})->failure(),
              "No param registry object 'plugin.none' found.");
    EXPECT_EQ(openEditor({menu({{"param-registry", kRegistry}, {"store-name", "none"}})})->failure(),
              "No preset store 'none' found.");
    EXPECT_EQ(openEditor({menu({{"param-registry", kRegistry}, {"store-name", kRouting}})})->failure(),
              "The preset store 'routing-presets' is of the other kind.");
}

TEST_F(CDynamicListPresetsTest, TheHintOfAViewBeginsWithTheCurrentName) {
    auto editor = openEditor({bankMenu({{"hint-target", "^"}, {"hint-text", "Presets and banks."}})});
    const CView& opener = editor->at<CView>("w.opener");
    EXPECT_EQ(opener.hint(), CString("Default. Presets and banks."));
    registry().renameProgram(0, "{name} [B]x");
    tick();
    EXPECT_EQ(opener.hint(), CString("{name} [B]x. Presets and banks."));
    EXPECT_EQ(presets(*editor).getAttrString("preset-name"), CString("{name} [B]x"));
    registry().selectProgram(1);
    tick();
    EXPECT_EQ(opener.hint(), CString("Inverted Smiley. Presets and banks."));
    registry().renameProgram(1, "");
    tick();
    EXPECT_EQ(opener.hint(), CString("---. Presets and banks.")) << "as in the lists";
    auto later = openEditor({bankMenu({{"hint-target", "^"}, {"hint-text", "Presets and banks."}})});
    EXPECT_EQ(later->at<CView>("w.opener").hint(), CString("---. Presets and banks."));
}

TEST_F(CDynamicListPresetsTest, AMenuShowsTheListsAndActivatesARow) {
    auto editor = openEditor({bankMenu()});
    registry().renameProgram(1, "[B]{x}");
    tick();
    openMenu(*editor);
    ASSERT_TRUE(list(*editor));
    EXPECT_EQ(list(*editor)->paragraphCount(), 2);
    chooseRow(*editor, *list(*editor), 0);
    CPopupList* below = list(*editor, "window-app-popup-list#1");
    ASSERT_TRUE(below);
    EXPECT_EQ(below->paragraphCount(), 7);
    EXPECT_EQ(below->paragraphText(1), CString("[B]{x}")) << "names are plain text";
    EXPECT_EQ(below->source().images().count(), 1) << "the check mark";
    chooseRow(*editor, *below, 1);
    EXPECT_EQ(registry().currentProgram(), 1);
    EXPECT_FALSE(list(*editor));
}

TEST_F(CDynamicListPresetsTest, AnEngineThatGoesBeforeItsEditorLeavesAMenuThatDoesNothing) {
    auto editor = openEditor({bankMenu()});
    const CString id = idOf(*editor, 1, idOf(*editor, 0));
    instance_.reset();
    tick();
    CAttributeMap params;
    params["id"] = CAttributeValue::fromPlainString(id);
    EXPECT_NE(firstLine(deliverEvent(presets(*editor), "popup-result", params)), "");
    instance_ = makeInstance();
}

}  // namespace
}  // namespace tarv
