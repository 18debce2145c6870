#include <gtest/gtest.h>

#include "CompiledTree.h"
#include "RawForm.h"
#include "SourceFolder.h"

namespace tarv {

namespace {

/// Builds expected bytes by hand, field by field.
class CBytes {
public:
    CBytes& value(uint32_t value) {
        for (int shift = 0; shift < 32; shift += 8) {
            bytes_.push_back(static_cast<char>(value >> shift & 0xff));
        }
        return *this;
    }
    CBytes& string(const std::string& text) {
        value(static_cast<uint32_t>(text.size()));
        bytes_ += text;
        return *this;
    }
    CBytes& node(const std::string& tag, const std::string& name) { return string(tag).string(name).value(0); }
    const std::string& text() const { return bytes_; }

private:
    std::string bytes_;
};

TEST(DefinitionForm, TheRootHasEmptyTagAndNameFlagZeroAndNoAttributes) {
    CSourceFolder folder;
    EXPECT_EQ(compiled(folder.add("a.xml", definitions(""))), CBytes().node("", "").value(0).value(0).text());
}

TEST(DefinitionForm, AnElementIsATagAnAttributeNameIsTheNameAndTheOthersKeepTheirOrder) {
    CSourceFolder folder;
    const auto path = folder.add("a.xml", definitions("<audio:param b='2' name='gain' a='1'><x/></audio:param>"));
    const auto expected = CBytes().node("", "").value(0).value(1).node("audio:param", "gain").value(2);
    EXPECT_EQ(compiled(path), CBytes(expected)
                                  .string("b")
                                  .string("2")
                                  .string("a")
                                  .string("1")
                                  .value(1)
                                  .node("x", "x")
                                  .value(0)
                                  .value(0)
                                  .text());
}

TEST(DefinitionForm, AnObjectWithoutANameTakesItsTagBehindTheColon) {
    CSourceFolder folder;
    const auto path = folder.add("a.xml", definitions("<audio:param-alloc/>"));
    EXPECT_EQ(
        compiled(path),
        CBytes().node("", "").value(0).value(1).node("audio:param-alloc", "param-alloc").value(0).value(0).text());
}

TEST(DefinitionForm, ATemplateStoresItsRealTagAndItsBodyAsOneWholeNamelessNode) {
    CSourceFolder folder;
    const auto path = folder.add("a.xml", definitions("<template name='row'><core:object/></template>"));
    const auto body = CBytes().node("core:object", "").value(0).value(0);
    // The smallest body there is: a tag of 11 characters and nothing else.
    EXPECT_EQ(body.text().size(), 31u);
    const auto head = CBytes().node("", "").value(0).value(1).string("template").string("row").value(1);
    EXPECT_EQ(compiled(path), CBytes(head).string("core:object").string(body.text()).text());
}

TEST(DefinitionForm, TextIsKeptAsUtf8AndEntitiesAreResolved) {
    CSourceFolder folder;
    const auto path = folder.add("a.xml", definitions("<a v='&lt;1&gt;&amp;&#x20ac;\xc3\xa9'/>"));
    EXPECT_NE(compiled(path).find("<1>&\xe2\x82\xac\xc3\xa9"), std::string::npos);
}

TEST(DefinitionForm, TheSameSourceGivesTheSameBytes) {
    CSourceFolder folder;
    const auto path = folder.add("a.xml", definitions("<a v='1'><b/><c/></a><template name='t'><d/></template>"));
    std::string first;
    std::string second;
    EXPECT_FALSE(packBlock(compiled(path), "cxml", first));
    EXPECT_FALSE(packBlock(compiled(path), "cxml", second));
    EXPECT_EQ(first, second);
    EXPECT_EQ(first.substr(0, 4), "cxml");
}

TEST(DefinitionForm, ACompiledTreeReadsBackAsItIs) {
    CSourceFolder folder;
    const auto path =
        folder.add("a.xml", definitions("<a v='1'><b/></a><template name='t'><d><e/></d></template><t/>"));
    const std::string bytes = compiled(path);
    CDefinitionNode root;
    EXPECT_FALSE(parseTree(bytes, root));
    EXPECT_EQ(serializeTree(root), bytes);
}

TEST(DefinitionForm, ADamagedTreeIsRefusedWhereverItIsCut) {
    CSourceFolder folder;
    const auto path = folder.add("a.xml", definitions("<a v='1'><b/></a><template name='t'><d/></template>"));
    const std::string bytes = compiled(path);
    for (size_t size = 0; size < bytes.size(); ++size) {
        CDefinitionNode root;
        EXPECT_TRUE(parseTree(std::string_view(bytes).substr(0, size), root)) << size;
    }
    CDefinitionNode root;
    EXPECT_TRUE(parseTree(bytes + '\0', root));
}

TEST(DefinitionForm, AHugeCountOrLengthInADamagedTreeCostsNothing) {
    const auto hugeLength = CBytes().value(0xffffffff).value(0);
    const auto hugeCount = CBytes().node("", "").value(0xffffffff);
    const auto hugeChildren = CBytes().node("", "").value(0).value(0xffffffff);
    for (const CBytes& bytes : {hugeLength, hugeCount, hugeChildren}) {
        CDefinitionNode root;
        EXPECT_TRUE(parseTree(bytes.text(), root));
    }
}

}  // namespace

}  // namespace tarv
