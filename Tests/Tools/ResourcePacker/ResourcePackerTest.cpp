#include "ResourcePacker.h"

#include <gtest/gtest.h>

#include "EmptyDataSets.h"
#include "Tests/Tools/DefinitionCompiler/SourceFolder.h"

namespace tarv {

namespace {

std::string bytes(std::initializer_list<int> values) {
    return {values.begin(), values.end()};
}

TEST(EmptyDataSets, CountTheBytesBehindTheirFirstWordAndHoldNothing) {
    EXPECT_EQ(emptyDataSet("imageset"), bytes({12, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(emptyDataSet("brushset"), bytes({8, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(emptyDataSet("palette"), bytes({12, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(emptyDataSet("font"),
              bytes({28, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_FALSE(emptyDataSet("picture"));
}

TEST(ResourceTable, IsReadInItsOrder) {
    CSourceFolder folder;
    folder.add("data", "abc");
    const auto table =
        folder.add("t.xml",
                   "<resources><resource name='../b' empty='palette'/><!-- --><resource name='a' file='data'/>"
                   "</resources>");
    std::vector<CPackedResource> resources;
    ASSERT_FALSE(readResourceTable(table, folder.path(""), resources));
    ASSERT_EQ(resources.size(), 2u);
    EXPECT_EQ(resources[0].name, "../b");
    EXPECT_EQ(resources[0].bytes, *emptyDataSet("palette"));
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
    {"<resources><x/></resources>",
     "1:12: error: a resource with a plain name and either 'file' or 'empty' is expected"},
    {"<resources><resource name='a'/></resources>",
     "1:12: error: a resource with a plain name and either 'file' or 'empty' is expected"},
    {"<resources><resource name='a' file='b' empty='font'/></resources>",
     "1:12: error: a resource with a plain name and either 'file' or 'empty' is expected"},
    {"<resources><resource name='a&quot;' empty='font'/></resources>",
     "1:12: error: a resource with a plain name and either 'file' or 'empty' is expected"},
    {"<resources><resource name='a' empty='b'/></resources>", "1:31: error: there is no kind of data set 'b'"},
    {"<resources><resource name='a' file='b'/></resources>", "1:31: error: there is no file '"},
    {"<resources><resource name='a' empty='font'/><resource name='a' empty='font'/></resources>",
     "1:45: error: the resource 'a' is given twice"},
};

TEST(ResourceTable, WithAFaultIsToldWithItsPlace) {
    for (const CBadTable& bad : kBadTables) {
        CSourceFolder folder;
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
