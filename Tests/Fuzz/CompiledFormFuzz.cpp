// Any bytes to the compiler's own reader of compiled trees: refused, or the same bytes come out again.

#include "Tests/Fuzz/FuzzTools.h"
#include "Tools/DefinitionCompiler/CompiledTree.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    CDefinitionNode root;
    if (!parseTree(bytes, root)) {
        CDefinitionNode again;
        const std::string written = serializeTree(root);
        must(!parseTree(written, again));
        must(serializeTree(again) == written);
    }
    return 0;
}
