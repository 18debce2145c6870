#include "UI/Controls/Plugin/CNameSetup.h"

#include "PluginTree.h"
#include "UI/Text/CEditBox.h"

namespace tarv {
namespace {

struct NameSetup : CPluginTest {
    NameSetup() {
        addBridge("group-names-bridge", "io-params.group-names");
        addBridge("in-names-bridge", "io-params.in-channel-names");
        openWindow({{"ui:view", "rows", {{"placement", "top"}, {"width", "200"}, {"height", "100"}}}});
    }
    /// A window's names; the rows are views with a text.
    using CPluginTest::make;
    CNameSetup& make(const char* bridge, const CTexts& more = {}) {
        CTexts attributes = {{"bridge", bridge}, {"rows", "ui.w.rows"}, {"item-tag", "ui:win-group-name-item"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        load("w", {{"ui:name-setup", "setup", attributes}});
        return dynamic_cast<CNameSetup&>(object("w.setup"));
    }
    CObject& field(int32_t number) { return object("w.rows.item" + std::to_string(number) + ".name"); }
    void type(int32_t number, const char* text) {
        EXPECT_EQ(consumed(field(number).setAttributePlain("title", text)), "");
    }
    std::string shown(int32_t number) { return field(number).getAttrString("title").toUtf8(); }
    std::string engineText(const char* param, int32_t element) {
        return instance()
            .paramCollector()
            ->findParam((std::string("plugin.modMain.") + param).c_str())
            ->text(0, element)
            .toUtf8();
    }
    void paste(const std::u16string& text) {
        ASSERT_TRUE(system_.setClipboardText(text));
        deliver("w.setup", "paste-names");
    }
};

constexpr const char* kGroups = "io-params.group-names";
constexpr const char* kInputs = "io-params.in-channel-names";

TEST_F(NameSetup, NeedsItsBridgeItsRowsAndTheirFields) {
    const auto failure = [this](const char* bridge, const char* rows, const char* tag) {
        return tryLoad("w", {{"ui:name-setup", "no", {{"bridge", bridge}, {"rows", rows}, {"item-tag", tag}}}});
    };
    EXPECT_EQ(failure("ui.nothing", "ui.w.rows", "ui:win-group-name-item"),
              "Invalid parameter bridge object 'ui.nothing'.");
    EXPECT_EQ(failure("ui.group-names-bridge", "ui.nothing", "ui:win-group-name-item"),
              "No view 'ui.nothing' for the names found.");
    EXPECT_EQ(failure("ui.group-names-bridge", "ui.w.rows", "ui:button"),
              "No field 'name' in 'ui.w.rows.item1' found.");
}

TEST_F(NameSetup, HasARowForEachName) {
    const CNameSetup& setup = make("ui.in-names-bridge", {{"max-length", "8"}});
    EXPECT_EQ(setup.nameCount(), 16);
    EXPECT_EQ(shown(1), "L");
    EXPECT_EQ(shown(16), "IN16");
    EXPECT_EQ(object("w.rows.item3").getAttrInt("number"), 3);
    EXPECT_EQ(object("w.rows.item3").getAttrInt("max-length"), 8);
}

TEST_F(NameSetup, OkIsOneStepAndBeforeItNothingIsSet) {
    make("ui.group-names-bridge");
    type(1, "Front");
    type(3, "{/ui x} [B]");
    EXPECT_EQ(engineText(kGroups, 0), "1");
    EXPECT_EQ(history(), "");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Front");
    EXPECT_EQ(engineText(kGroups, 1), "2");
    EXPECT_EQ(engineText(kGroups, 2), "{/ui x} [B]");
    EXPECT_EQ(history(), "Group names change");
    undo();
    EXPECT_EQ(engineText(kGroups, 0), "1");
    EXPECT_EQ(shown(1), "1");
    EXPECT_EQ(shown(3), "3");
}

TEST_F(NameSetup, OkWithoutAChangeIsNoStep) {
    make("ui.group-names-bridge");
    type(2, "  2  ");
    deliver("w.setup", "accept");
    EXPECT_EQ(history(), "");
}

TEST_F(NameSetup, CancelIsNothing) {
    make("ui.group-names-bridge");
    type(1, "Front");
    delete &object("w.setup");
    system_.pump();
    EXPECT_EQ(engineText(kGroups, 0), "1");
    EXPECT_EQ(history(), "");
}

TEST_F(NameSetup, NamesHaveNoBlanksAroundAndALength) {
    make("ui.group-names-bridge", {{"max-length", "5"}});
    type(1, "  abcdefgh");
    type(2, "abcd efg");
    type(3, "\ta\nb\t");
    type(4, "   ");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "abcde");
    EXPECT_EQ(engineText(kGroups, 1), "abcd") << "no blank at the end of what is cut";
    EXPECT_EQ(engineText(kGroups, 2), "a b");
    EXPECT_EQ(engineText(kGroups, 3), "");
}

TEST_F(NameSetup, CopiesAndPastesANameALine) {
    make("ui.in-names-bridge", {{"max-length", "8"}, {"name-count", "4"}});
    deliver("w.setup", "copy-names");
    std::u16string text;
    ASSERT_TRUE(system_.clipboardText(text));
    EXPECT_EQ(text, u"L\r\nR\r\nIN3\r\nIN4");
    paste(u"Left\r\nRight\n\n123456789 beyond\nfive\nsix");
    EXPECT_EQ(shown(1) + "|" + shown(2) + "|" + shown(3) + "|" + shown(4), "Left|Right||12345678");
    EXPECT_EQ(engineText(kInputs, 0), "L") << "until OK";
    paste(u"\u0416\n");
    EXPECT_EQ(shown(1), "\xd0\x96");
    EXPECT_EQ(shown(2), "Right") << "the end of the last line is no name";
    deliver("w.setup", "accept");
    EXPECT_EQ(history(), "In channel names change");
    EXPECT_EQ(engineText(kInputs, 0), "\xd0\x96");
}

TEST_F(NameSetup, ItsButtonsCopyAndPaste) {
    make("ui.group-names-bridge", {{"name-count", "2"}});
    make<CView>("ui:label-copy-paste", "cp", {{"name-setup", "ui.w.setup"}});
    turn();
    click(at("cp.copy"));
    std::u16string text;
    ASSERT_TRUE(system_.clipboardText(text));
    EXPECT_EQ(text, u"1\r\n2");
    ASSERT_TRUE(system_.setClipboardText(u"Front\nBack"));
    click(at("cp.paste"));
    EXPECT_EQ(shown(1) + " " + shown(2), "Front Back");
}

TEST_F(NameSetup, ANameIsTypedIntoItsField) {
    make("ui.group-names-bridge", {{"max-length", "12"}, {"name-count", "2"}});
    turn();
    click(dynamic_cast<CView&>(field(1)));
    system_.input().type(u"Front");
    EXPECT_EQ(engineText(kGroups, 0), "1");
    tap(kKeyEnter);
    EXPECT_EQ(shown(1), "Front");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Front");
}

TEST_F(NameSetup, FromTheHostComesWhatItCallsItsChannels) {
    make("ui.in-names-bridge", {{"max-length", "8"}});
    CTextList labels;
    labels.append("Left surround");
    labels.append("");
    labels.append("Sub");
    instance().interfaceBase()->setChannelLabels(labels);
    system_.pump();
    type(2, "Mine");
    deliver("w.setup", "import-names");
    EXPECT_EQ(shown(1), "Left sur") << "cut to the length of a name";
    EXPECT_EQ(shown(2), "Mine") << "the host has no name for it";
    EXPECT_EQ(shown(3), "Sub");
    EXPECT_EQ(engineText(kInputs, 0), "L") << "until OK";
    EXPECT_EQ(history(), "");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kInputs, 0), "Left sur");
    EXPECT_EQ(engineText(kInputs, 1), "Mine");
    EXPECT_EQ(engineText(kInputs, 2), "Sub");
    EXPECT_EQ(history(), "In channel names change");
    undo();
    EXPECT_EQ(engineText(kInputs, 0), "L");
    EXPECT_EQ(engineText(kInputs, 2), "IN3");
}

TEST_F(NameSetup, NamesThatAllComeFromTheHostAreTheStepOfAnImport) {
    make("ui.in-names-bridge", {{"max-length", "8"}});
    CTextList labels;
    labels.append("Left");
    labels.append("Right");
    instance().interfaceBase()->setChannelLabels(labels);
    system_.pump();
    deliver("w.setup", "import-names");
    deliver("w.setup", "accept");
    EXPECT_EQ(history(), "Channel label import");
    type(1, "");
    deliver("w.setup", "accept");
    EXPECT_EQ(history(), "Channel label import, In channel names change");
}

TEST_F(NameSetup, ANameThatNobodyChangesStaysAsItIs) {
    CTextList texts;
    texts.append(" longer than five ");
    EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, texts)), "");
    system_.pump();
    make("ui.group-names-bridge", {{"max-length", "5"}});
    type(2, "Back");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), " longer than five ");
    EXPECT_EQ(engineText(kGroups, 1), "Back");
    deliver("w.setup", "copy-names");
    std::u16string text;
    ASSERT_TRUE(system_.clipboardText(text));
    EXPECT_TRUE(text.starts_with(u"longer than five\r\nBack\r\n3"));
}

TEST_F(NameSetup, WhatIsPastedHasLinesOfAllKindsAndOnlyWhatAFieldTakes) {
    make("ui.group-names-bridge", {{"max-length", "4"}, {"name-count", "6"}});
    paste(u"a\rb\r\nc\u2028\u00e9\u0436\u4e2d\u00fc\u00f6\n\xd83d\xde00 x\n\t y\x01z");
    EXPECT_EQ(shown(1) + shown(2) + shown(3), "abc");
    EXPECT_EQ(shown(4), "\xc3\xa9\xd0\xb6\xe4\xb8\xad\xc3\xbc") << "four characters, whatever bytes they take";
    EXPECT_EQ(shown(5), "x") << "neither half of a character beyond 16 bits";
    EXPECT_EQ(shown(6), "yz");
}

TEST_F(NameSetup, AnothersChangesShowWhereNothingWasTyped) {
    make("ui.group-names-bridge");
    type(1, "Mine");
    CTextList texts;
    for (const char* name : {"Theirs", "Second", "Third"}) {
        texts.append(name);
    }
    EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, texts)), "");
    system_.pump();
    EXPECT_EQ(shown(1), "Mine");
    EXPECT_EQ(shown(2), "Second");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Mine");
    EXPECT_EQ(engineText(kGroups, 1), "Second");
    EXPECT_EQ(engineText(kGroups, 2), "Third");
    EXPECT_EQ(history(), "Group names change, Group names change");
}

TEST_F(NameSetup, ATextThatAnotherHadByChanceIsStillTheUsers) {
    make("ui.group-names-bridge");
    type(1, "Front");
    const auto set = [&](const char* name) {
        CTextList texts;
        texts.append(name);
        EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, texts)), "");
        system_.pump();
    };
    set("Front");
    set("Back");
    EXPECT_EQ(shown(1), "Front");
    type(1, "1");
    set("Side");
    EXPECT_EQ(shown(1), "1") << "also the name of before";
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "1");
}

TEST_F(NameSetup, AnUndoMeanwhileLeavesWhatWasTyped) {
    setGain(3.0);
    CTextList texts;
    texts.append("First");
    texts.append("Second");
    EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, texts)), "");
    system_.pump();
    make("ui.group-names-bridge");
    type(1, "Mine");
    undo();
    EXPECT_EQ(shown(1), "Mine");
    EXPECT_EQ(shown(2), "2");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Mine");
    EXPECT_EQ(engineText(kGroups, 1), "2");
    undo();
    EXPECT_EQ(engineText(kGroups, 0), "1");
}

TEST_F(NameSetup, AFieldThatIsOpenBeginsAnewUnlessSomethingWasTyped) {
    make("ui.group-names-bridge", {{"name-count", "2"}});
    turn();
    auto& text = dynamic_cast<CTextView&>(field(1));
    const auto set = [&](const char* name) {
        CTextList texts;
        texts.append(name);
        EXPECT_EQ(consumed(client().setTexts("plugin.modMain.io-params.group-names", 0, 0, texts)), "");
        turn();
    };
    click(text);
    set("Theirs");
    ASSERT_TRUE(text.editBox());
    EXPECT_EQ(text.editBox()->edit().text(), CString("Theirs"));
    EXPECT_EQ(text.editBox()->edit().selectedText(), CString("Theirs"));
    system_.input().type(u"Mi");
    set("Others");
    ASSERT_TRUE(text.editBox());
    EXPECT_EQ(text.editBox()->edit().text(), CString("Mi"));
    tap(kKeyEnter);
    EXPECT_EQ(shown(1), "Mi");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Mi");
}

TEST_F(NameSetup, TwoWindowsKeepWhatWasTypedInEach) {
    make("ui.group-names-bridge");
    load("w", {{"ui:view", "rows2", {{"placement", "top"}, {"width", "200"}, {"height", "100"}}}});
    load("w",
         {{"ui:name-setup",
           "setup2",
           {{"bridge", "ui.group-names-bridge"}, {"rows", "ui.w.rows2"}, {"item-tag", "ui:win-group-name-item"}}}});
    CObject& other = object("w.rows2.item1.name");
    type(1, "Mine");
    EXPECT_EQ(consumed(other.setAttributePlain("title", "Theirs")), "");
    EXPECT_EQ(consumed(object("w.rows2.item2.name").setAttributePlain("title", "Second")), "");
    deliver("w.setup2", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Theirs");
    EXPECT_EQ(shown(1), "Mine");
    EXPECT_EQ(shown(2), "Second");
    deliver("w.setup", "accept");
    EXPECT_EQ(engineText(kGroups, 0), "Mine");
    EXPECT_EQ(engineText(kGroups, 1), "Second");
    EXPECT_EQ(other.getAttrString("title"), CString("Mine")) << "accepted, it is no draft any more";
}

}  // namespace
}  // namespace tarv
