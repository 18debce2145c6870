// What the disk does not take or give: files, the store of banks, the default preset.

#include "Tests/System/StoredFile.h"
#include "Tests/UI/Controls/Presets/PresetFilesTree.h"

namespace tarv {
namespace {

TEST_F(PresetFiles, AFolderAndAMissingFolderAreShownAsErrors) {
    std::filesystem::create_directory(folder_ / "folder");
    sendWith("preset-save", "folder");
    EXPECT_EQ(raised(), "error-preset-save folder: A folder has that name (error 21).");
    sendWith("bank-save", "missing/x.cbf");
    EXPECT_EQ(raised(), "error-bank-save x.cbf: There is no such file or folder (error 2).");
    EXPECT_EQ(raisedPath_, path("missing/x.cbf"));
    selectMine();
    sendWith("preset-save", "missing/x.cpf");
    EXPECT_EQ(raised(), "error-preset-save x.cpf: There is no such file or folder (error 2).");
    sendWith("bank-save", "folder");
    EXPECT_EQ(raised(), "error-bank-save folder: A folder has that name (error 21).");
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
    EXPECT_EQ(raised(),
              "error-preset-save fixed.cpf: Access is denied: the file or its folder may be read-only (error 13).");
    EXPECT_EQ(content("fixed.cpf"), "mine");
    EXPECT_EQ(files(), "fixed.cpf");
}

TEST_F(PresetFiles, AFullDiskLeavesTheOldFile) {
    write("full.cbf", "mine");
    {
        const CFullDisk full(16);
        sendWith("bank-save", "full.cbf");
    }
    EXPECT_EQ(raised(), "error-bank-save full.cbf: There is no room for the file: the disk may be full (error 27).");
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

TEST_F(PresetFiles, ADefaultPresetThatTheDiskDoesNotTakeLastsAndIsShownAsAnError) {
    const std::string failure =
        "error-preset-save default-preset: It can't be stored, and lasts until the host is closed.";
    select(presets(), 4);
    for (const bool isSet : {true, false}) {
        send("preset-set-default");
        {
            const CFullDisk full(16);
            answerBy("ok");
        }
        EXPECT_EQ(message()->getAttrString("text").toUtf8(),
                  "The default preset can't be stored.\nIt can't be stored, and lasts until the host is closed.");
        EXPECT_EQ(raised(), failure);
        EXPECT_EQ(presets().source().images().count(), isSet ? 1 : 0) << "as this process has it";
    }
    send("preset-set-default");
    answerBy("ok");
    EXPECT_EQ(raised(), "") << "there is room again";
    selectMine();
    send("preset-set-default");
    {
        const CFullDisk full(16);
        answerBy("ok");
    }
    EXPECT_EQ(raised(), failure) << "a stored preset, too";
}

TEST_F(PresetFiles, ADefaultPresetThatCannotBeOpenedStaysAndIsShownAsAnError) {
    select(presets(), 4);
    send("preset-set-default");
    answerBy("ok");
    const CStoredFile file(CAudioDefaultPreset::kDataName);
    const std::string content = file.content();
    ASSERT_FALSE(content.empty());
    std::filesystem::permissions(file.path(), std::filesystem::perms::none);
    for (const int32_t row : {2, 4}) {  // sets another one, clears it
        select(presets(), row);
        send("preset-set-default");
        EXPECT_NE(question(), "-");
        {
            const CPlainUser user;
            answerBy("ok");
        }
        EXPECT_EQ(raised(),
                  "error-preset-save default-preset: The stored 'default-preset' can't be opened (error 13).");
        CString name;
        EXPECT_TRUE(CAudioDefaultPreset::readName(name));
        EXPECT_EQ(name, CString("Boom Box"));
        EXPECT_EQ(presets().source().images().count(), 1);
    }
    std::filesystem::permissions(file.path(), std::filesystem::perms::owner_all);
    EXPECT_EQ(file.content(), content);
}

}  // namespace
}  // namespace tarv
