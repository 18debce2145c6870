#include <gtest/gtest.h>

#include "SourceFolder.h"

namespace tarv {

namespace {

struct CTemplateCase {
    const char* fact;
    const char* source;
    const char* resolved;  ///< the same tree written out, in the raw form
};

constexpr char kRow[] =
    "<template tag='template' name='row' flag='1' real-tag='ui:view'><node tag='ui:view' name=''>"
    "<attribute name='w' value='1'/><node tag='x' name='x'/></node></template>";

const CTemplateCase kCases[] = {
    {"attributes of the template come first, so that those of the instance win; children of both follow in that order",
     "<template name='row'><ui:view w='1'><x/></ui:view></template><row name='r' w='2' h='3'><y/></row>",
     "ROW<node tag='ui:view' name='r'><attribute name='w' value='1'/><attribute name='w' value='2'/>"
     "<attribute name='h' value='3'/><node tag='x' name='x'/><node tag='y' name='y'/></node>"},
    {"the order of definition and use does not matter",
     "<row name='r'/><template name='row'><ui:view w='1'><x/></ui:view></template>",
     "<node tag='ui:view' name='r'><attribute name='w' value='1'/><node tag='x' name='x'/></node>ROW"},
    {"a template is found from any depth below the object that defines it",
     "<template name='row'><ui:view w='1'><x/></ui:view></template><a><b><row name='r'/></b></a>",
     "ROW<node tag='a' name='a'><node tag='b' name='b'><node tag='ui:view' name='r'>"
     "<attribute name='w' value='1'/><node tag='x' name='x'/></node></node></node>"},
    {"outside the object that defines it a template does not exist",
     "<a><template name='row'><ui:view w='1'><x/></ui:view></template></a><row name='r'/>",
     "<node tag='a' name='a'>ROW</node><node tag='row' name='r'/>"},
    {"a template made of another has the class of that one's body",
     "<template name='row'><ui:view w='1'><x/></ui:view></template><template name='wide'><row w='9'/></template>"
     "<wide name='r'/>",
     "ROW<template tag='template' name='wide' flag='1' real-tag='ui:view'><node tag='ui:view' name=''>"
     "<attribute name='w' value='1'/><attribute name='w' value='9'/><node tag='x' name='x'/></node></template>"
     "<node tag='ui:view' name='r'><attribute name='w' value='1'/><attribute name='w' value='9'/>"
     "<node tag='x' name='x'/></node>"},
    {"a template may have the name of its own class",
     "<template name='ui:view'><ui:view w='1'/></template><ui:view name='r'/>",
     "<template tag='template' name='ui:view' flag='1' real-tag='ui:view'><node tag='ui:view' name=''>"
     "<attribute name='w' value='1'/></node></template>"
     "<node tag='ui:view' name='r'><attribute name='w' value='1'/></node>"},
    {"the nearest of two templates of one name counts",
     "<template name='t'><a/></template><o><template name='t'><b/></template><t name='r'/></o>",
     "<template tag='template' name='t' flag='1' real-tag='a'><node tag='a' name=''/></template>"
     "<node tag='o' name='o'><template tag='template' name='t' flag='1' real-tag='b'><node tag='b' name=''/>"
     "</template><node tag='b' name='r'/></node>"},
    {"a template defined inside a template's body is known to the children of its instance",
     "<template name='list'><a><template name='item'><b/></template></a></template><list name='r'><item/></list>",
     "<template tag='template' name='list' flag='1' real-tag='a'><node tag='a' name=''>"
     "<template tag='template' name='item' flag='1' real-tag='b'><node tag='b' name=''/></template></node></template>"
     "<node tag='a' name='r'><template tag='template' name='item' flag='1' real-tag='b'><node tag='b' name=''/>"
     "</template><node tag='b' name='item'/></node>"},
};

TEST(Templates, AreResolvedAsWrittenOut) {
    for (const CTemplateCase& c : kCases) {
        CSourceFolder folder;
        std::string resolved = c.resolved;
        for (size_t at = resolved.find("ROW"); at != std::string::npos; at = resolved.find("ROW")) {
            resolved.replace(at, 3, kRow);
        }
        const auto source = folder.add("source.xml", definitions(c.source));
        const auto raw = folder.add("raw.xml", "<raw><node tag='' name=''>" + resolved + "</node></raw>");
        EXPECT_EQ(compiled(source), compiled(raw)) << c.fact;
    }
}

TEST(Templates, OfTheSharedSourceApplyButAreNotCopied) {
    CSourceFolder folder;
    const auto shared = folder.add("shared.xml", definitions("<template name='row'><ui:view w='1'/></template>"));
    const auto source = folder.add("source.xml", definitions("<row name='r'/>"));
    const auto raw = folder.add("raw.xml",
                                "<raw><node tag='' name=''><node tag='ui:view' name='r'>"
                                "<attribute name='w' value='1'/></node></node></raw>");
    EXPECT_EQ(compiled(source, shared), compiled(raw));
}

}  // namespace

}  // namespace tarv
