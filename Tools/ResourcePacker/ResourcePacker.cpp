#include "ResourcePacker.h"

#include <cstdint>
#include <filesystem>
#include <set>

#include "CXmlSource.h"

namespace tarv {

namespace {

// Names go into string literals of C++ and paths into those of the assembler; these need no escape in either.
bool isPlain(const std::string& text) {
    for (char c : text) {
        if (c < ' ' || c > '~' || c == '"' || c == '\\') {
            return false;
        }
    }
    return !text.empty();
}

CDefinitionFailure readRow(const CXmlSource& source, pugi::xml_node element, const std::string& fileRoot,
                           CPackedResource& resource) {
    const pugi::xml_attribute file = element.attribute("file");
    resource.name = element.attribute("name").value();
    if (std::string(element.name()) != "resource" || !isPlain(resource.name) || !file) {
        return source.errorAt(element, "a resource with a plain name and a file is expected");
    }
    resource.file = (std::filesystem::path(fileRoot) / file.value()).lexically_normal().string();
    std::error_code failed;
    const uintmax_t size = std::filesystem::file_size(resource.file, failed);
    if (failed || !isPlain(resource.file)) {
        return source.errorAt(file, "there is no file '" + resource.file + "'");
    }
    if (size > INT32_MAX) {
        return source.errorAt(file, "the file '" + resource.file + "' is too large");
    }
    return std::nullopt;
}

}  // namespace

CDefinitionFailure readResourceTable(const std::string& path, const std::string& fileRoot,
                                     std::vector<CPackedResource>& resources) {
    CXmlSource source;
    if (auto failure = source.load(path)) {
        return failure;
    }
    if (std::string(source.root().name()) != "resources") {
        return source.errorAt(source.root(), "the outermost element is not 'resources'");
    }
    std::set<std::string> names;
    for (pugi::xml_node element : source.root().children()) {
        if (element.type() != pugi::node_element) {
            continue;
        }
        CPackedResource resource;
        if (auto failure = readRow(source, element, fileRoot, resource)) {
            return failure;
        }
        if (!names.insert(resource.name).second) {
            return source.errorAt(element, "the resource '" + resource.name + "' is given twice");
        }
        resources.push_back(std::move(resource));
    }
    return std::nullopt;
}

std::string resourceAssembly(const std::vector<CPackedResource>& resources) {
    // The two object formats name their read-only section differently.
    std::string text =
        "#ifdef _WIN32\n    .section .rdata,\"dr\"\n#else\n    .section .note.GNU-stack,\"\",@progbits\n"
        "    .section .rodata\n#endif\n";
    for (size_t i = 0; i < resources.size(); ++i) {
        const std::string label = "tarvResource" + std::to_string(i);
        text += "\n    .balign 4\n    .globl " + label + "\n#ifndef _WIN32\n    .hidden " + label + "\n#endif\n" +
                label + ":\n    .long 2f - 1f\n1:\n    .incbin \"" + resources[i].file + "\"\n2:\n";
    }
    return text;
}

std::string resourceRows(const std::vector<CPackedResource>& resources) {
    std::string declarations;
    std::string rows;
    for (size_t i = 0; i < resources.size(); ++i) {
        const std::string label = "tarvResource" + std::to_string(i);
        declarations += "extern const unsigned char " + label + "[];\n";
        rows += "    {" + label + ", \"" + resources[i].name + "\"},\n";
    }
    return "#include \"Product/ResourceTable.h\"\n\nextern \"C\" {\n" + declarations +
           "}\n\nnamespace tarv {\n\nconst CResourceRow kResourceRows[] = {\n" + rows +
           "    {nullptr, nullptr},\n};\n\n}  // namespace tarv\n";
}

}  // namespace tarv
