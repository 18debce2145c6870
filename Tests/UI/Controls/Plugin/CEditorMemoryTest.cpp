#include "UI/Controls/Plugin/CEditorMemory.h"

#include "PluginTree.h"

namespace tarv {
namespace {

struct EditorMemoryTree : CPluginTest {
    void make() {
        load("", {{"ui:param-group-selector", "sel-a", {{"group-index", "0"}}},
                  {"ui:param-group-selector", "sel-b", {{"group-index", "1"}}},
                  {"ui:editor-memory",
                   "memory",
                   {},
                   {{"ui:editor-memory-item", "item", {{"target", "ui.sel-a"}, {"attr", "group-index"}}},
                    {"ui:editor-memory-item", "item", {{"target", "ui.sel-b"}, {"attr", "group-index"}}}}}});
        system_.pump();
    }
    void reopen() {
        editor_ = makeEditor();
        make();
    }
    int32_t index(const char* selector) { return object(selector).getAttrInt("group-index"); }
};

TEST_F(EditorMemoryTree, NeedsItsClientAndItsTargets) {
    EXPECT_EQ(tryLoad("", {{"ui:editor-memory", "no", {{"interface-client", "ui.nothing"}}}}),
              "No interfacing object 'ui.nothing' found.");
    EXPECT_EQ(tryLoad("", {{"ui:editor-memory",
                            "no",
                            {},
                            {{"ui:editor-memory-item", "item", {{"target", "ui.nothing"}, {"attr", "x"}}}}}}),
              "No object 'ui.nothing' found.");
}

TEST_F(EditorMemoryTree, TheNextEditorShowsWhatTheOneBeforeDid) {
    make();
    EXPECT_EQ(index("sel-a"), 0);
    set(object("sel-a"), "group-index", "3");
    reopen();
    EXPECT_EQ(index("sel-a"), 3);
    EXPECT_EQ(index("sel-b"), 1);
    set(object("sel-b"), "group-index", "5");
    reopen();
    EXPECT_EQ(index("sel-a"), 3);
    EXPECT_EQ(index("sel-b"), 5);
    EXPECT_EQ(history(), "");
}

TEST_F(EditorMemoryTree, OpeningAndClosingKeepsNothing) {
    make();
    reopen();
    EXPECT_TRUE(client().keptBytes("editor-memory").isEmpty());
}

TEST_F(EditorMemoryTree, WhatIsDamagedLeavesTheTargetsAlone) {
    make();
    CByteBuffer bytes;
    for (int i = 0; i < 7; ++i) {
        bytes.append(uint8_t{9});
    }
    EXPECT_EQ(consumed(client().keepBytes("editor-memory", bytes)), "");
    reopen();
    EXPECT_EQ(index("sel-a"), 0);
    set(object("sel-a"), "group-index", "2");
    reopen();
    EXPECT_EQ(index("sel-a"), 2);
}

}  // namespace
}  // namespace tarv
