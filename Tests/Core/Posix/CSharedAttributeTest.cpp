#include "Core/CSharedAttribute.h"

#include <signal.h>
#include <sys/resource.h>

#include "Tests/Core/Posix/SettingsTree.h"

namespace tarv {
namespace {

class SharedAttribute : public CSettingsTest {};

TEST_F(SharedAttribute, WithoutAStoredValueTakesItsDefaultAndWritesNothing) {
    auto editor = makeEditor({{"def-value", "true"}});
    EXPECT_EQ(valueOf(*editor), "true");
    EXPECT_EQ(editor->findObject("ui.follower")->getAttrString("value"), "true");
    EXPECT_FALSE(std::filesystem::exists(folder));
    EXPECT_EQ(pumpEvents(), 0);
}

TEST_F(SharedAttribute, WithoutADefaultEitherIsEmpty) {
    EXPECT_EQ(valueOf(*makeEditor({{"def-value", ""}})), "");
}

TEST_F(SharedAttribute, TakesWhatIsStored) {
    CGlobalData().writeText("tablet", "true");
    auto editor = makeEditor();
    EXPECT_EQ(valueOf(*editor), "true");
    EXPECT_EQ(editor->findObject("ui.follower")->getAttrString("value"), "true");
    EXPECT_TRUE(listener(*editor).values.empty());
}

TEST_F(SharedAttribute, WritesEachChangeAtOnce) {
    auto editor = makeEditor();
    for (const char* value : {"true", "false", "true"}) {
        change(*editor, value);
        EXPECT_EQ(CGlobalData().readText("tablet", "none").toUtf8(), value);
    }
    EXPECT_EQ(pumpEvents(), 0) << "the one that writes is not notified";
    EXPECT_TRUE(listener(*editor).values.empty());
}

TEST_F(SharedAttribute, BracesOfAUserStayAsTheyAre) {
    auto editor = makeEditor();
    ASSERT_EQ(consumed(editor->findObject("ui.tablet")->setAttributePlain("tablet-mode", "{name}")), "");
    EXPECT_EQ(CGlobalData().readText("tablet", "none"), "{name}");
    auto second = makeEditor();
    EXPECT_EQ(valueOf(*second), "{name}");
    EXPECT_EQ(second->findObject("ui.follower")->getAttrString("value"), "{name}");
}

TEST_F(SharedAttribute, ATextThatIsNoNumberOfItsRangeCountsAsTheDefault) {
    const std::vector<std::pair<std::string, std::string>> range = {
        {"def-value", "0.7"}, {"min-value", "0.1"}, {"max-value", "1.0"}};
    for (const char* bad : {"fast", "", "0", "0.09", "1.1", "7", "-0.5", "true"}) {
        CGlobalData::instance().writeText("tablet", bad);
        auto editor = makeEditor(range);
        EXPECT_EQ(valueOf(*editor), "0.7") << bad;
        EXPECT_EQ(editor->findObject("ui.follower")->getAttrString("value"), "0.7") << bad;
        EXPECT_EQ(CGlobalData::instance().readText("tablet", "none").toUtf8(), bad) << "reading writes nothing";
        change(*editor, "0.1");
        EXPECT_EQ(valueOf(*editor), "0.1");
        change(*editor, bad);
        EXPECT_EQ(valueOf(*editor), "0.7") << bad;
        EXPECT_EQ(CGlobalData::instance().readText("tablet", "none"), "0.7") << bad;
    }
    auto whole = makeEditor({{"def-value", "1"}, {"min-value", "1"}, {"max-value", "3"}, {"is-integer", "true"}});
    for (const auto& [text, value] : {std::pair{"3", "3"}, {"2.5", "1"}, {"1.0", "1.0"}}) {
        change(*whole, text);
        EXPECT_EQ(valueOf(*whole), value);
    }
}

TEST_F(SharedAttribute, ASettingThatChangesNothingIsNotWritten) {
    CGlobalData().writeText("tablet", "true");
    auto editor = makeEditor();
    std::filesystem::remove(filePath("tablet"));
    change(*editor, "true");
    EXPECT_FALSE(std::filesystem::exists(filePath("tablet")));
    change(*editor, "false");
    EXPECT_TRUE(std::filesystem::exists(filePath("tablet")));
}

TEST_F(SharedAttribute, ValuesOfEveryTypeAreStoredAsText) {
    auto editor = makeEditor();
    CObject* tablet = editor->findObject("ui.tablet");
    const struct {
        CAttributeValue value;
        const char* text;
    } kValues[] = {{CAttributeValue::fromBool(true), "true"},
                   {CAttributeValue::fromReal(0.25), "0.2500"},
                   {CAttributeValue::fromInt(-3), "-3"},
                   {CAttributeValue::fromString(""), ""}};
    for (const auto& row : kValues) {
        EXPECT_EQ(consumed(tablet->setAttribute("tablet-mode", row.value)), "");
        EXPECT_EQ(CGlobalData().readText("tablet", "none").toUtf8(), row.text);
    }
}

TEST_F(SharedAttribute, OtherAttributesAreItsOwn) {
    auto editor = makeEditor();
    EXPECT_EQ(consumed(editor->findObject("ui.tablet")->setAttribute("other", CString("1"))), "");
    EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(SharedAttribute, TheKeyIsTheDataNameOrTheName) {
    change(*makeEditor(), "one");
    change(*makeEditor({{"data-name", "another-key"}}), "two");
    EXPECT_EQ(CGlobalData().readText("tablet", "none").toUtf8(), "one");
    EXPECT_EQ(CGlobalData().readText("another-key", "none").toUtf8(), "two");
}

TEST_F(SharedAttribute, IsGlobalChoosesTheStore) {
    change(*makeEditor(), "global");
    change(*makeEditor({{"is-global", ""}}), "local");
    EXPECT_EQ(CGlobalData().readText("tablet", "none").toUtf8(), "global");
    EXPECT_EQ(CLocalData().readText("tablet", "none").toUtf8(), "local");
    EXPECT_TRUE(std::filesystem::exists(filePath("tablet", false)));
}

TEST_F(SharedAttribute, WithoutAnAttributeFails) {
    auto root = application.makeRoot();
    const std::string failure = consumed(loadTree(*root, {shared("tablet", {{"attribute", ""}})}));
    EXPECT_EQ(failure.substr(0, failure.find('\r')), "No attached attribute name specified.");
}

TEST_F(SharedAttribute, AChangeInOneInstanceReachesTheOthersByAnUpdate) {
    auto first = makeEditor(), second = makeEditor(), third = makeEditor({{"data-name", "another"}});
    change(*first, "true");
    EXPECT_EQ(valueOf(*second), "false") << "not within the call that writes";
    std::filesystem::remove(filePath("tablet"));
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_EQ(valueOf(*second), "true");
    EXPECT_EQ(second->findObject("ui.follower")->getAttrString("value"), "true");
    EXPECT_EQ(listener(*second).values, (std::vector<std::string>{"true"}));
    EXPECT_TRUE(listener(*first).values.empty());
    EXPECT_TRUE(listener(*third).values.empty());
    EXPECT_FALSE(std::filesystem::exists(filePath("tablet"))) << "what arrives is not written again";
    EXPECT_EQ(pumpEvents(), 0);
}

TEST_F(SharedAttribute, TwoOfOneKeyInOneTreeFollowEachOther) {
    auto root = application.makeRoot(
        {{"ui:ui-event-bridge", "ui", {}, {shared("tablet"), shared("twin", {{"data-name", "tablet"}})}}});
    change(*root, "true");
    pumpEvents();
    EXPECT_EQ(root->findObject("ui.twin")->getAttrString("tablet-mode"), "true");
    EXPECT_EQ(consumed(root->findObject("ui.twin")->setAttribute("tablet-mode", CString("false"))), "");
    pumpEvents();
    EXPECT_EQ(valueOf(*root), "false");
}

TEST_F(SharedAttribute, SeveralWritesArriveAsTheLast) {
    auto first = makeEditor(), second = makeEditor();
    for (const char* value : {"1", "2", "3"}) {
        change(*first, value);
    }
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_EQ(listener(*second).values, (std::vector<std::string>{"3"}));
    change(*first, "4");
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_EQ(listener(*second).values, (std::vector<std::string>{"3", "4"}));
}

TEST_F(SharedAttribute, AWriteOfItsOwnMeanwhileWins) {
    auto first = makeEditor(), second = makeEditor();
    change(*first, "theirs");
    change(*second, "mine");
    pumpEvents();
    EXPECT_EQ(valueOf(*first), "mine");
    EXPECT_EQ(valueOf(*second), "mine");
}

TEST_F(SharedAttribute, ALaterInstanceBeginsWithTheChangedValue) {
    change(*makeEditor(), "true");
    EXPECT_EQ(valueOf(*makeEditor()), "true");
    useRoot(folder);
    EXPECT_EQ(valueOf(*makeEditor()), "true") << "in another session, too";
}

TEST_F(SharedAttribute, WithoutAThreadAnchorReceivesNothing) {
    auto root = application.makeRoot({{"core:object", "ui", {}, {shared("tablet")}}});
    CGlobalData::instance().writeText("tablet", "true");
    EXPECT_EQ(pumpEvents(), 0);
    EXPECT_EQ(valueOf(*root), "false");
    change(*root, "own");
    EXPECT_EQ(CGlobalData().readText("tablet", "none").toUtf8(), "own");
}

TEST_F(SharedAttribute, ADamagedFileCountsAsNoneAndTheNextChangeReplacesIt) {
    putFile(filePath("tablet"), "rubbish");
    auto first = makeEditor(), second = makeEditor();
    EXPECT_EQ(valueOf(*first), "false");
    EXPECT_EQ(fileText(filePath("tablet")), "rubbish");
    change(*first, "true");
    pumpEvents();
    EXPECT_EQ(valueOf(*second), "true");
    useRoot(folder);
    EXPECT_EQ(valueOf(*makeEditor()), "true");
}

/// What a store that can't be written still has to do: keep the setting for this process, everywhere in it.
void expectKeptInProcess(const CObject& first, const CObject& second, const CObject& later) {
    for (const CObject* editor : {&first, &second, &later}) {
        EXPECT_EQ(editor->findObject("ui.tablet")->getAttrString("tablet-mode"), "true");
    }
}

TEST_F(SharedAttribute, AStoreThatCannotBeWrittenCostsOnlyTheMemoryOfTheSetting) {
    // Nobody makes a folder below /proc, not even who may write everywhere else.
    putFile(folder + "/blocked/user", "a file where a folder should be");
    std::filesystem::create_directories(folder + "/taken/user/Tarvelo/Audio Plug-Ins/tablet/sub");
    for (const std::string& path : {std::string("/proc"), folder + "/blocked", folder + "/taken"}) {
        useRoot(path);
        auto first = makeEditor(), second = makeEditor();
        EXPECT_EQ(valueOf(*first), "false") << path;
        change(*first, "true");
        pumpEvents();
        expectKeptInProcess(*first, *second, *makeEditor());
        useRoot(path);
        EXPECT_EQ(valueOf(*makeEditor()), "false") << path;
    }
    const std::filesystem::path taken = folder + "/taken/user/Tarvelo/Audio Plug-Ins";
    const std::filesystem::directory_iterator entries(taken);
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << "nothing half written is left";
}

/// Files end at this many bytes while it lives, as on a disk that is full.
class CFullDisk {
public:
    explicit CFullDisk(rlim_t bytes) : handler_(signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &before_);
        const rlimit limit{bytes, before_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~CFullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        signal(SIGXFSZ, handler_);
    }

private:
    rlimit before_{};
    void (*handler_)(int);
};

TEST_F(SharedAttribute, AFullDiskLeavesTheOldSettingWhole) {
    auto first = makeEditor(), second = makeEditor();
    change(*first, "old");
    const std::string stored = fileText(filePath("tablet"));
    for (const rlim_t bytes : {rlim_t{0}, rlim_t{8}, rlim_t{stored.size() - 1}}) {
        CFullDisk full(bytes);
        change(*first, "true");
        change(*first, "not written");
    }
    change(*first, "not written");
    pumpEvents();
    EXPECT_EQ(valueOf(*second), "not written");
    EXPECT_EQ(fileText(filePath("tablet")), stored);
    const std::filesystem::directory_iterator entries(std::filesystem::path(filePath("tablet")).parent_path());
    EXPECT_EQ(std::distance(begin(entries), end(entries)), 1) << "nothing half written is left";
    useRoot(folder);
    EXPECT_EQ(valueOf(*makeEditor()), "old");
}

}  // namespace
}  // namespace tarv
