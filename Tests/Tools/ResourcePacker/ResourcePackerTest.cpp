#include "ResourcePacker.h"

#include <gtest/gtest.h>

#include "Tests/Tools/DefinitionCompiler/SourceFolder.h"

namespace tarv {

namespace {

TEST(ResourceTable, IsReadInItsOrder) {
    CSourceFolder folder;
    folder.add("data", "abc");
    folder.add("more", "d");
    const auto table =
        folder.add("t.xml",
                   "<resources><resource name='../b' file='more'/><!-- --><resource name='a' file='data'/>"
                   "</resources>");
    std::vector<CPackedResource> resources;
    ASSERT_FALSE(readResourceTable(table, folder.path(""), resources));
    ASSERT_EQ(resources.size(), 2u);
    EXPECT_EQ(resources[0].name, "../b");
    EXPECT_EQ(resources[0].file, folder.path("more"));
    EXPECT_EQ(resources[1].name, "a");
    EXPECT_EQ(resources[1].file, folder.path("data"));
    const std::string rows = resourceRows(resources);
    EXPECT_LT(rows.find("{tarvResource0, \"../b\"}"), rows.find("{tarvResource1, \"a\"}"));
    EXPECT_LT(rows.find("{tarvResource1, \"a\"}"), rows.find("{nullptr, nullptr}"));
    EXPECT_NE(resourceAssembly(resources).find(".incbin \"" + folder.path("data") + "\""), std::string::npos);
}

struct CBadTable {
    const char* text;
    const char* message;
};

constexpr CBadTable kBadTables[] = {
    {"<table/>", "1:1: error: the outermost element is not 'resources'"},
    {"<resources><x/></resources>", "1:12: error: a resource with a plain name and a file is expected"},
    {"<resources><resource name='a'/></resources>", "1:12: error: a resource with a plain name and a file is expected"},
    {"<resources><resource name='a&quot;' file='data'/></resources>",
     "1:12: error: a resource with a plain name and a file is expected"},
    {"<resources><resource name='a' file='b'/></resources>", "1:31: error: there is no file '"},
    {"<resources><resource name='a' file='data'/><resource name='a' file='data'/></resources>",
     "1:44: error: the resource 'a' is given twice"},
};

TEST(ResourceTable, WithAFaultFailsWithItsPlace) {
    for (const CBadTable& bad : kBadTables) {
        CSourceFolder folder;
        folder.add("data", "abc");
        const auto path = folder.add("t.xml", bad.text);
        std::vector<CPackedResource> resources;
        const auto failure = readResourceTable(path, folder.path(""), resources);
        ASSERT_TRUE(failure) << bad.text;
        const std::string expected = path + ":" + bad.message;
        EXPECT_EQ(failure->message().substr(0, expected.size()), expected);
    }
}

}  // namespace

}  // namespace tarv
