#include "RawForm.h"

#include <gtest/gtest.h>

#include "CompiledTree.h"
#include "SourceFolder.h"
#include "Tests/TestPaths.h"

namespace tarv {

namespace {

/// The block in the file, written raw and compiled again.
std::string packedAgain(const CSourceFolder& folder, const std::string& block) {
    std::string raw;
    const auto failure = dumpDefinitions(folder.add("block", block), raw);
    EXPECT_FALSE(failure) << failure->message();
    std::string again;
    EXPECT_FALSE(packBlock(compiled(folder.add("raw.xml", raw)), "cxml", again));
    return again;
}

std::string packed(const std::string& bytes) {
    std::string block;
    EXPECT_FALSE(packBlock(bytes, "cxml", block));
    return block;
}

CDefinitionNode node(const std::string& tag, const std::string& name) {
    CDefinitionNode result;
    result.tag = tag;
    result.name = name;
    return result;
}

TEST(RawForm, OfTheProductsTreesGivesTheSameBytesBack) {
    CSourceFolder folder;
    for (const char* source :
         {"/Definitions/SharedData/SharedData.xml", "/Definitions/UserInterface/UserInterface.xml"}) {
        const std::string block = packed(compiled(std::string(kSourceFolder) + source));
        EXPECT_EQ(packedAgain(folder, block), block) << source;
    }
}

TEST(RawForm, KeepsRepeatedAttributesTheirOrderAndOddNames) {
    CDefinitionNode root;
    root.attributes = {{"a", "1"}, {"", ""}, {"a", "2"}, {"name", "x"}, {"b c", "&<>\"'\n\t\r"}};
    root.children.push_back(node("t:t", "a.b#3"));
    CSourceFolder folder;
    const std::string block = packed(serializeTree(root));
    EXPECT_EQ(packedAgain(folder, block), block);
}

TEST(RawForm, KeepsBytesThatXmlCannotHold) {
    CDefinitionNode root;
    root.attributes = {{std::string("\0\x01", 2), "\xff\xc0"}, {"emoji", "\xf0\x9f\x98\x80"}};
    root.children.push_back(node(std::string("\0", 1), "\x1f"));
    CSourceFolder folder;
    const std::string block = packed(serializeTree(root));
    EXPECT_EQ(packedAgain(folder, block), block);
}

TEST(RawForm, HoldsTheDeepestTreeThatCanBeDumped) {
    CDefinitionNode root;
    CDefinitionNode* last = &root;
    for (int depth = 1; depth <= 200; ++depth) {
        last = &last->children.emplace_back(node("a", "a"));
    }
    last->attributes = {{"b", "c"}};
    CSourceFolder folder;
    const std::string block = packed(serializeTree(root));
    EXPECT_EQ(packedAgain(folder, block), block);
}

TEST(RawForm, KeepsATemplateFlagOtherThanOne) {
    CDefinitionNode root;
    CDefinitionNode& definition = root.children.emplace_back();
    definition.tag = "template";
    definition.name = "t";
    definition.templateFlag = 7;
    definition.realTag = "r";
    definition.children.push_back(node("u", "named"));
    CSourceFolder folder;
    const std::string block = packed(serializeTree(root));
    EXPECT_EQ(packedAgain(folder, block), block);
}

TEST(RawForm, ExpandsNothing) {
    CSourceFolder folder;
    const std::string raw =
        "<raw><node tag='' name=''><template tag='template' name='t' flag='1' real-tag='a'>"
        "<node tag='a' name=''><attribute name='v' value='1'/></node></template>"
        "<node tag='t' name='t'/></node></raw>";
    const std::string bytes = compiled(folder.add("raw.xml", raw));
    CDefinitionNode root;
    EXPECT_FALSE(parseTree(bytes, root));
    EXPECT_EQ(root.children[1].tag, "t");
    EXPECT_TRUE(root.children[1].attributes.empty());
}

struct CBadRaw {
    const char* text;
    const char* message;
};

constexpr CBadRaw kBadRaws[] = {
    {"<raw/>", "a.xml:1:1: error: the root node is missing"},
    {"<raw><x/></raw>", "a.xml:1:6: error: 'node' or 'template' is expected, not 'x'"},
    {"<raw><node tag=''/></raw>", "a.xml:1:6: error: attribute 'name' is missing"},
    {"<raw><node tag='' name-hex='f'/></raw>", "a.xml:1:19: error: pairs of hexadecimal digits are expected"},
    {"<raw><node tag='' name-hex='fg'/></raw>", "a.xml:1:19: error: pairs of hexadecimal digits are expected"},
    {"<raw><node tag='' name=''/><node tag='' name=''/></raw>", "a.xml:1:28: error: a compiled tree has one root"},
    {"<raw><node tag='' name=''><node tag='' name=''/><attribute name='' value=''/></node></raw>",
     "a.xml:1:49: error: attributes stand before the children"},
    {"<raw><template tag='' name='' real-tag='' flag='0'/></raw>",
     "a.xml:1:6: error: a template needs a flag that is not 0"},
    {"<raw><template tag='' name='' real-tag='' flag='1'/></raw>",
     "a.xml:1:6: error: a template needs exactly one node"},
};

TEST(RawForm, WithAFaultFailsWithItsPlace) {
    for (const CBadRaw& bad : kBadRaws) {
        CSourceFolder folder;
        folder.add("a.xml", bad.text);
        EXPECT_EQ(faultOf(folder, "a.xml"), bad.message);
    }
}

TEST(Dump, OfSomethingElseSaysWhatIsWrong) {
    CSourceFolder folder;
    const std::string block = packed(serializeTree(CDefinitionNode()));
    std::string wrongId = block;
    wrongId[0] = 'x';
    std::string wrongSize = block;
    wrongSize[5] = '\x01';
    const std::pair<std::string, const char*> bad[] = {
        {"", "Premature end of memory resource"},
        {wrongId, "Invalid ID encountered when reading compressed data"},
        {wrongSize, "Invalid CRC encountered when reading compressed data"},
        {block.substr(0, block.size() - 6), "Premature end of file."},
        {packed("abc"), "the tree ends within a tag (byte 0)"},
    };
    for (const auto& [bytes, message] : bad) {
        std::string raw;
        const auto failure = dumpDefinitions(folder.add("block", bytes), raw);
        ASSERT_TRUE(failure) << message;
        EXPECT_NE(failure->text.find(message), std::string::npos) << failure->text;
        EXPECT_TRUE(raw.empty());
    }
}

}  // namespace

}  // namespace tarv
