// Any text as a source of definitions: an error with its place, or a tree that comes back from its compiled form and
// from its raw form unchanged.

#include "Tests/Fuzz/FuzzTools.h"
#include "Tools/DefinitionCompiler/CDefinitionReader.h"
#include "Tools/DefinitionCompiler/CTemplateExpander.h"
#include "Tools/DefinitionCompiler/CXmlSource.h"
#include "Tools/DefinitionCompiler/CompiledTree.h"
#include "Tools/DefinitionCompiler/RawForm.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    // An include would read whatever file the fuzzer thinks of.
    if (text.find("include") != std::string::npos)
        return 0;
    CXmlSource source;
    CDefinitionNode root;
    if (source.parse("fuzz.xml", text))
        return 0;
    if (isRawForm(source)) {
        if (readRawForm(source, root))
            return 0;
    } else {
        CDefinitionReader reader;
        if (reader.read(source, root) || CTemplateExpander().expand(root))
            return 0;
    }
    const std::string bytes = serializeTree(root);
    CDefinitionNode again, raw;
    must(!parseTree(bytes, again));
    must(serializeTree(again) == bytes);
    CXmlSource rawSource;
    must(!rawSource.parse("raw.xml", writeRawForm(again)));
    must(!readRawForm(rawSource, raw));
    must(serializeTree(raw) == bytes);
    return 0;
}
