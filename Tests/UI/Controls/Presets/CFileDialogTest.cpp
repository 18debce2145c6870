#include "UI/Controls/Presets/CFileDialog.h"

#include "Tests/UI/Controls/Presets/PresetTree.h"

namespace tarv {
namespace {

class CFileDialogTest : public CPresetTest {
protected:
    CFileDialogTest() : editor_(openEditor({})) {}
    const CView& view() const { return editor_->at<CView>("w"); }
    std::unique_ptr<CPresetEditor> editor_;
    CString path_;
    CString message_;
};

TEST_F(CFileDialogTest, PassesWhatIsAskedForToThePlatform) {
    system_.answerFileDialog(u"/tmp/\u00e4.cpf");
    CFileDialog::CRequest request;
    request.isSave = true;
    request.title = "Save Preset";
    request.filterName = "Compressed preset files";
    request.extension = "cpf";
    request.folder = "/tmp";
    request.name = CString(u"\u00e4.cpf");
    EXPECT_TRUE(CFileDialog::ask(view(), request, path_, message_));
    EXPECT_EQ(path_, CString(u"/tmp/\u00e4.cpf"));
    EXPECT_EQ(message_, CString());
    ASSERT_EQ(system_.fileDialogs().size(), 1u);
    const CFileDialogRequest& asked = system_.fileDialogs()[0];
    EXPECT_TRUE(asked.isSave);
    EXPECT_FALSE(asked.isFolder);
    EXPECT_TRUE(asked.isAllOffered);
    EXPECT_EQ(asked.owner, editor_->at<CWindow>("w.window-renderer").handle());
    EXPECT_EQ(asked.title, u"Save Preset");
    EXPECT_EQ(asked.filterName, u"Compressed preset files");
    EXPECT_EQ(asked.extension, u"cpf");
    EXPECT_EQ(asked.folder, u"/tmp");
    EXPECT_EQ(asked.name, u"\u00e4.cpf");
}

TEST_F(CFileDialogTest, GivingUpHasNoMessageAndAMissingDialogHas) {
    system_.refuseFileDialog();
    EXPECT_FALSE(CFileDialog::ask(view(), {}, path_, message_));
    EXPECT_EQ(message_, CString());
    system_.refuseFileDialog(u"There is no file dialog.");
    EXPECT_FALSE(CFileDialog::ask(view(), {}, path_, message_));
    EXPECT_EQ(message_, CString("There is no file dialog."));
    EXPECT_EQ(path_, CString());
}

TEST_F(CFileDialogTest, TheEditorMayCloseWhileItIsOpen) {
    system_.answerFileDialog(u"/tmp/a", [this] { editor_.reset(); });
    EXPECT_TRUE(CFileDialog::ask(view(), {}, path_, message_));
    EXPECT_EQ(path_, CString("/tmp/a"));
}

TEST(FileNames, WhatFileSystemsForbidBecomesAnUnderscore) {
    EXPECT_EQ(CFileDialog::fileNameOf("a\\b/c:d*e?f\"g<h>i|j\nk\x7f"), CString("a_b_c_d_e_f_g_h_i_j_k_"));
    EXPECT_EQ(CFileDialog::fileNameOf("Boom Box 1.5"), CString("Boom Box 1.5"));
    EXPECT_EQ(CFileDialog::fileNameOf("ends. ."), CString("ends"));
    EXPECT_EQ(CFileDialog::fileNameOf(""), CString("_"));
    EXPECT_EQ(CFileDialog::fileNameOf(CString(std::string(300, 'n').c_str())).length(), CFileDialog::kMaxName);
    std::u16string pair(static_cast<size_t>(CFileDialog::kMaxName) - 1, u'n');
    pair += u"\xd83d\xde00";
    EXPECT_EQ(CFileDialog::fileNameOf(pair.c_str()).length(), CFileDialog::kMaxName - 1) << "no half of a character";
}

TEST(FileNames, PartsOfAPath) {
    EXPECT_EQ(CFileDialog::nameIn("/a/b.c"), CString("b.c"));
    EXPECT_EQ(CFileDialog::nameIn("C:\\a\\b"), CString("b"));
    EXPECT_EQ(CFileDialog::nameIn("b"), CString("b"));
    EXPECT_EQ(CFileDialog::folderIn("/a/b.c"), CString("/a"));
    EXPECT_EQ(CFileDialog::folderIn("C:\\a\\b"), CString("C:\\a"));
    EXPECT_EQ(CFileDialog::folderIn("b"), CString());
}

}  // namespace
}  // namespace tarv
