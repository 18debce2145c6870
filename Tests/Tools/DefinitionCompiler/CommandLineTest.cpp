#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>

#include "SourceFolder.h"
#include "Tests/TestPaths.h"

namespace tarv {

namespace {

/// Runs the compiler in the test's folder; its messages go to the file "messages", its output to "out".
int run(const CSourceFolder& folder, const std::string& arguments) {
    const std::string command =
        "cd " + folder.path("") + " && " + std::string(kDefinitionCompilerFile) + " " + arguments + " >out 2>messages";
    return WEXITSTATUS(std::system(command.c_str()));
}

TEST(DefinitionCompilerProgram, LeavesNoOutputBehindABadSource) {
    CSourceFolder folder;
    folder.add("a.xml", "<definitions>\n<a></definitions>");
    folder.add("result", "of an earlier source");
    EXPECT_EQ(run(folder, "a.xml result"), 1);
    EXPECT_FALSE(std::filesystem::exists(folder.path("result")));
    EXPECT_EQ(folder.read("messages").substr(0, 19), "a.xml:2:6: error: m");
}

TEST(DefinitionCompilerProgram, DumpsWhatItCompiledAndCompilesTheDumpToTheSameBytes) {
    CSourceFolder folder;
    folder.add("a.xml", definitions("<template name='t'><a v='1'/></template><t name='b' v='2'/>"));
    ASSERT_EQ(run(folder, "a.xml first"), 0) << folder.read("messages");
    ASSERT_EQ(run(folder, "--dump first"), 0) << folder.read("messages");
    folder.add("raw.xml", folder.read("out"));
    ASSERT_EQ(run(folder, "raw.xml second"), 0) << folder.read("messages");
    EXPECT_FALSE(folder.read("first").empty());
    EXPECT_EQ(folder.read("first"), folder.read("second"));
}

TEST(DefinitionCompilerProgram, WritesWhatTheOutputDependsOn) {
    CSourceFolder folder;
    folder.add("b.xml", definitions("<b/>"));
    folder.add("a.xml", definitions("<include file='b.xml'/>"));
    ASSERT_EQ(run(folder, "a.xml result --depfile deps"), 0) << folder.read("messages");
    EXPECT_EQ(folder.read("deps"), "result: a.xml b.xml\n");
}

TEST(DefinitionCompilerProgram, GivesAttributesOtherValues) {
    CSourceFolder folder;
    folder.add("a.xml", definitions("<a><b name='c' v='1' w='2'/></a>"));
    folder.add("b.xml", definitions("<a><b name='c' v='3=4' w='2' x='5'/></a>"));
    ASSERT_EQ(run(folder, "a.xml first --set a.c.v=3=4 --set a.c.x=5"), 0) << folder.read("messages");
    ASSERT_EQ(run(folder, "b.xml second"), 0) << folder.read("messages");
    EXPECT_EQ(folder.read("first"), folder.read("second"));
    EXPECT_EQ(run(folder, "a.xml first --set a.d.v=3"), 1);
    EXPECT_EQ(folder.read("messages"), "error: no object 'd' for the setting 'a.d.v=3'\n");
    EXPECT_EQ(run(folder, "a.xml first --set a.c.v"), 1);
    EXPECT_EQ(folder.read("messages"), "error: 'a.c.v' is no setting\n");
}

TEST(DefinitionCompilerProgram, PrintsItsUseWhenCalledWrongly) {
    CSourceFolder folder;
    for (const char* arguments : {"", "a.xml", "a b c", "--dump", "--dump a b", "--unknown", "a b --depfile"}) {
        EXPECT_EQ(run(folder, arguments), 2) << arguments;
        EXPECT_TRUE(folder.read("messages").starts_with("usage: ")) << arguments;
    }
}

TEST(DefinitionCompilerProgram, DoesNotWriteOverItsSource) {
    CSourceFolder folder;
    folder.add("a.xml", "<definitions>");
    EXPECT_EQ(run(folder, "a.xml ./a.xml"), 2);
    EXPECT_EQ(folder.read("a.xml"), "<definitions>");
}

TEST(DefinitionCompilerProgram, SaysWhenTheOutputCannotBeWritten) {
    CSourceFolder folder;
    folder.add("a.xml", definitions("<a/>"));
    EXPECT_EQ(run(folder, "a.xml missing/result"), 1);
    EXPECT_EQ(folder.read("messages"), "missing/result: error: the file can't be written\n");
}

}  // namespace

}  // namespace tarv
