#include <gtest/gtest.h>

#include "SourceFolder.h"

namespace tarv {

namespace {

struct CBadSource {
    const char* what;
    std::string text;
    const char* message;
};

const CBadSource kBadSources[] = {
    {"nothing", "", "a.xml:1:1: error: the file holds no element"},
    {"a comment alone", "<!-- -->", "a.xml:1:1: error: the file holds no element"},
    {"a tag that does not end", "<definitions>\n  <a", "a.xml:2:4: error: malformed XML: "},
    {"tags that do not match", "<definitions>\n<a></b>\n</definitions>", "a.xml:2:6: error: malformed XML: "},
    {"an attribute without a value", "<definitions>\n <a b/></definitions>", "a.xml:2:7: error: malformed XML: "},
    {"another outermost element", "<tree/>", "a.xml:1:1: error: the outermost element is 'tree', not 'definitions'"},
    {"attributes of the outermost element", "<definitions a='1'/>",
     "a.xml:1:14: error: 'definitions' has no attributes"},
    {"two outermost elements", "<definitions/>\n<more/>",
     "a.xml:2:1: error: a second element 'more' stands behind the first"},
    {"text", "<definitions>\n<a>text</a></definitions>", "a.xml:2:4: error: only elements may stand in 'a', no text"},
    {"a document type", "<!DOCTYPE x><definitions/>", "a.xml:1:11: error: only one element may stand here"},
    {"an attribute twice", "<definitions>\n <a b='1' c='2'\n  b='3'/></definitions>",
     "a.xml:3:3: error: attribute 'b' is given twice"},
    {"an empty name", "<definitions><a name=''/></definitions>", "a.xml:1:17: error: the name is empty"},
    {"a name with a dot", "<definitions><a name='b.c'/></definitions>",
     "a.xml:1:17: error: the name 'b.c' holds '.', which has a meaning in paths"},
    {"a name with a caret", "<definitions><a name='^b'/></definitions>",
     "a.xml:1:17: error: the name '^b' holds '^', which has a meaning in paths"},
    {"a full name", "<definitions><a full-name='x'/></definitions>",
     "a.xml:1:17: error: the attribute 'full-name' is set by the program"},
    {"a tag that is a prefix alone", "<definitions><ui:/></definitions>",
     "a.xml:1:14: error: nothing stands behind the colon of the tag 'ui:'"},
    {"definitions within definitions", "<definitions><definitions/></definitions>",
     "a.xml:1:14: error: 'definitions' can only be the outermost element"},
    {"a template without a name", "<definitions><template><a/></template></definitions>",
     "a.xml:1:14: error: 'template' needs the attribute 'name'"},
    {"a template with attributes", "<definitions><template name='t' a='1'><a/></template></definitions>",
     "a.xml:1:33: error: attribute 'a' has no meaning in 'template'"},
    {"a template without a body", "<definitions><template name='t'/></definitions>",
     "a.xml:1:14: error: the template 't' needs exactly one object as its body"},
    {"a template with two bodies", "<definitions><template name='t'><a/><b/></template></definitions>",
     "a.xml:1:14: error: the template 't' needs exactly one object as its body"},
    {"a body with a name", "<definitions><template name='t'><a name='b'/></template></definitions>",
     "a.xml:1:36: error: the body of a template takes its name from the instance"},
    {"a template twice",
     "<definitions><template name='t'><a/></template>\n<template name='t'><a/></template></definitions>",
     "a.xml:2:1: error: the template 't' is defined already (a.xml:1)"},
    {"a template within itself", "<definitions><template name='t'><a><t/></a></template></definitions>",
     "a.xml:1:14: error: the template 't' contains itself"},
    {"two templates made of each other",
     "<definitions><template name='t'><u/></template><template name='u'><t/></template></definitions>",
     "a.xml:1:14: error: the template 't' contains itself"},
    {"an include without a file", "<definitions><include/></definitions>",
     "a.xml:1:14: error: 'include' needs the attribute 'file'"},
    {"an include of nothing", "<definitions>\n <include file='b.xml'/></definitions>",
     "a.xml:2:11: error: there is no file 'b.xml'"},
    {"an include with content", "<definitions><include file='a.xml'><a/></include></definitions>",
     "a.xml:1:14: error: an include holds nothing"},
    {"an include of a folder", "<definitions><include file='../' /></definitions>",
     "a.xml:1:23: error: there is no file"},
    {"a file that includes itself", "<definitions><include file='./a.xml'/></definitions>",
     "a.xml:1:23: error: the file 'a.xml' includes itself"},
    {"bytes that are no UTF-8", "<definitions>\n<a b='\xff'/></definitions>",
     "a.xml:2:7: error: these bytes are not UTF-8"},
    {"an overlong sequence", "<definitions b='\xc0\xaf'/>", "a.xml:1:17: error: these bytes are not UTF-8"},
    {"a surrogate", "<definitions b='\xed\xa0\x80'/>", "a.xml:1:17: error: these bytes are not UTF-8"},
    {"a sequence that is cut", "<definitions/>\xe2\x82", "a.xml:1:15: error: these bytes are not UTF-8"},
    {"a NUL", std::string("<definitions>\n\0</definitions>", 29),
     "a.xml:2:1: error: the character U+0000 has no place in a definition"},
    {"a reference to a NUL", "<definitions><a b='&#0;'/></definitions>",
     "a.xml:1:20: error: the character U+0000 has no place in a definition"},
    {"a control character", "<definitions>\x01</definitions>",
     "a.xml:1:14: error: the character U+0001 has no place in a definition"},
    {"a character that strings lose", "<definitions><a b='\xf0\x9f\x98\x80'/></definitions>",
     "a.xml:1:20: error: the character U+1F600 lies beyond U+FFFF and can't be kept"},
    {"a reference to such a character", "<definitions><a b='&#x1f600;'/></definitions>",
     "a.xml:1:20: error: the character U+1F600 lies beyond U+FFFF and can't be kept"},
    {"an unknown entity", "<definitions><a b='&nbsp;'/></definitions>", "a.xml:1:20: error: unknown entity '&nbsp;'"},
    {"a bare ampersand", "<definitions><a b='1 & 2'/></definitions>",
     "a.xml:1:22: error: '&' begins no entity; write '&amp;'"},
    {"columns count characters, not bytes", "<definitions><a b='\xc3\xa9\xc3\xa9' b='2'/></definitions>",
     "a.xml:1:24: error: attribute 'b' is given twice"},
};

TEST(BadSources, FailWithFileLineColumnAndFault) {
    for (const CBadSource& bad : kBadSources) {
        CSourceFolder folder;
        folder.add("a.xml", bad.text);
        EXPECT_EQ(faultOf(folder, "a.xml").substr(0, std::string(bad.message).size()), bad.message) << bad.what;
    }
}

TEST(BadSources, NestedBeyondAllReasonAreRefused) {
    CSourceFolder folder;
    std::string text;
    for (int i = 0; i < 200; ++i) {
        text += "<a>";
    }
    for (int i = 0; i < 200; ++i) {
        text += "</a>";
    }
    folder.add("a.xml", definitions(text));
    EXPECT_NE(faultOf(folder, "a.xml").find("the elements are nested too deeply"), std::string::npos);
}

TEST(BadSources, TemplatesThatNestBeyondWhatTheProgramLoadsFailAtTheirPlace) {
    const auto nested = [](int count, const std::string& inner) {
        std::string text = inner;
        for (int i = 0; i < count; ++i) {
            text = "<a>" + text + "</a>";
        }
        return text;
    };
    CSourceFolder folder;
    const std::string inner = "<template name='t'>" + nested(100, "") + "</template>";
    // The root, then one object a level: the last of them is the 199th.
    folder.add("a.xml", definitions(inner + "\n" + nested(99, "<t/>")));
    EXPECT_EQ(faultOf(folder, "a.xml"), "");
    folder.add("a.xml", definitions(inner + "\n" + nested(100, "<t/>")));
    EXPECT_EQ(faultOf(folder, "a.xml"), "a.xml:1:330: error: the elements are nested too deeply");
}

TEST(BadSources, AFileThatIsNotThereFails) {
    CSourceFolder folder;
    EXPECT_EQ(faultOf(folder, "b.xml"), "b.xml: error: the file can't be opened");
}

TEST(Includes, StandInPlaceOfTheElementAndCountFromTheirOwnFolder) {
    CSourceFolder folder;
    folder.add("sub/b.xml", definitions("<b/><include file='c.xml'/>"));
    folder.add("sub/c.xml", definitions("<c/>"));
    const auto source = folder.add("a.xml", definitions("<a/><o><include file='sub/b.xml'/></o><d/>"));
    const auto plain = folder.add("plain.xml", definitions("<a/><o><b/><c/></o><d/>"));
    EXPECT_EQ(compiled(source), compiled(plain));
}

TEST(Includes, KeepThePlacesOfErrorsRight) {
    CSourceFolder folder;
    folder.add("a.xml", definitions("\n<include file='sub/b.xml'/>"));
    folder.add("sub/b.xml", "<definitions>\n\n  <b name='x.y'/></definitions>");
    EXPECT_EQ(faultOf(folder, "a.xml"), "sub/b.xml:3:6: error: the name 'x.y' holds '.', which has a meaning in paths");
}

TEST(Includes, InACircleFailWhereTheCircleCloses) {
    CSourceFolder folder;
    folder.add("a.xml", definitions("<include file='b.xml'/>"));
    folder.add("b.xml", definitions("<include file='a.xml'/>"));
    EXPECT_EQ(faultOf(folder, "a.xml"), "b.xml:1:23: error: the file 'a.xml' includes itself");
}

TEST(Includes, OfOneFileTwiceAreNoCircle) {
    CSourceFolder folder;
    folder.add("b.xml", definitions("<b/>"));
    const auto source = folder.add("a.xml", definitions("<include file='b.xml'/><include file='b.xml'/>"));
    EXPECT_EQ(compiled(source), compiled(folder.add("plain.xml", definitions("<b/><b/>"))));
}

TEST(Includes, AreAllNamedAsFilesThatTheOutputDependsOn) {
    CSourceFolder folder;
    const auto b = folder.add("b.xml", definitions(""));
    const auto a = folder.add("a.xml", definitions("<include file='b.xml'/>"));
    const auto shared = folder.add("s.xml", definitions(""));
    std::string bytes;
    std::vector<std::string> files;
    EXPECT_FALSE(compileDefinitions(a, shared, bytes, files));
    EXPECT_EQ(files, (std::vector<std::string>{shared, a, b}));
}

}  // namespace

}  // namespace tarv
