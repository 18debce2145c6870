#include <gtest/gtest.h>

#include "CFactoryReader.h"

namespace tarv {

namespace {

std::string faultIn(const std::string& text) {
    CXmlSource xml;
    EXPECT_FALSE(xml.parse("a.xml", text));
    CFactorySource source;
    const auto failure = readFactorySource(xml, source);
    return failure ? failure->message() : std::string();
}

std::string record(const std::string& attributes) {
    return "<list><record " + attributes + "/></list>";
}

struct CBadFactory {
    std::string text;
    const char* message;
};

const CBadFactory kBadFactories[] = {
    {"<presets/>", "a.xml:1:1: error: the outermost element is 'bank' or 'list'"},
    {"<list><x/></list>", "a.xml:1:7: error: 'record' or 'preset' is expected, not 'x'"},
    {"<list><preset name='t:a'><x/></preset></list>", "a.xml:1:26: error: 'record' is expected, not 'x'"},
    {"<list><preset name='a'/></list>",
     "a.xml:1:7: error: a preset's name begins with the id of its registry and a colon"},
    {record("key='k' group0='1'"), "a.xml:1:7: error: a record needs 'key' and 'definition'"},
    {record("definition='d' group0='1'"), "a.xml:1:7: error: a record needs 'key' and 'definition'"},
    {record("key='k' definition='d'"), "a.xml:1:7: error: the record 'k' holds no value"},
    {record("key='k' definition='d' group0='1 x'"), "a.xml:1:38: error: 'x' is no number"},
    {record("key='k' definition='d' group0='inf'"), "a.xml:1:38: error: 'inf' is no number"},
    {record("key='k' definition='d' group0='1e999'"), "a.xml:1:38: error: '1e999' is no number"},
    {record("key='k' definition='d' group0='1  2'"), "a.xml:1:38: error: '' is no number"},
    {record("key='k' definition='d' unit='Hz' group0='1'"), "a.xml:1:38: error: the only unit is 'dB'"},
    {record("key='k' definition='d' group0='1' group2='1'"),
     "a.xml:1:49: error: attribute 'group2' has no meaning here"},
    {record("key='k' definition='d' texts='a' group0='1'"),
     "a.xml:1:48: error: attribute 'group0' has no meaning here"},
    {"<list><record key='k' definition='d' group0='1'/><record key='k' definition='d' group0='1'/></list>",
     "a.xml:1:50: error: the key 'k' is given twice"},
};

TEST(FactorySource, WithAFaultFailsWithItsPlace) {
    for (const CBadFactory& bad : kBadFactories) {
        EXPECT_EQ(faultIn(bad.text), bad.message);
    }
}

TEST(FactorySource, ARecordOfThePresetCountsBeforeTheCommonOne) {
    CXmlSource xml;
    ASSERT_FALSE(
        xml.parse("a.xml",
                  "<bank name='b'><record key='k' definition='d' group0='1'/><preset name='t:a'/>"
                  "<preset name='t:b'><record key='k' definition='d' group0='2' group1='3 4'/></preset></bank>"));
    CFactorySource source;
    ASSERT_FALSE(readFactorySource(xml, source));
    EXPECT_TRUE(source.isBank);
    EXPECT_EQ(source.name, "b");
    ASSERT_EQ(source.presets.size(), 2u);
    EXPECT_EQ(source.presets[0].records.at("k").groups, (std::vector<std::vector<double>>{{1.0}}));
    EXPECT_EQ(source.presets[1].records.at("k").groups, (std::vector<std::vector<double>>{{2.0}, {3.0, 4.0}}));
}

}  // namespace

}  // namespace tarv
