#include "DefinitionCompiler.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "CDefinitionReader.h"
#include "CTemplateExpander.h"
#include "CXmlSource.h"
#include "CompiledTree.h"
#include "Core/CStreams.h"
#include "Core/CTreeCursor.h"
#include "RawForm.h"

namespace tarv {

namespace {

constexpr char kTreeId[] = "cxml";

uint32_t packedId(const char* id) {
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i) {
        value = value << 8 | static_cast<uint8_t>(id[i]);
    }
    return value;
}

/// Turns an error of the program's own streams into one with a file.
CDefinitionFailure failureOf(CError* error, const std::string& path) {
    if (!error) {
        return std::nullopt;
    }
    const std::string text = error->lines().count() > 0 ? error->lines()[0]->toUtf8() : "unknown failure";
    delete error;
    return CDefinitionError{{path}, text};
}

/// Refuses what the program would refuse when it loads the tree: templates may nest deeper than any file does.
CDefinitionFailure checkDepth(const CDefinitionNode& node, int depth) {
    if (depth >= CTreeCursor::kMaxDepth) {
        return CDefinitionError{node.place, "the elements are nested too deeply"};
    }
    for (const CDefinitionNode& child : node.children) {
        if (auto failure = checkDepth(child, depth + 1)) {
            return failure;
        }
    }
    return std::nullopt;
}

CDefinitionFailure readExpanded(const std::string& path, CDefinitionNode* shared, CDefinitionNode& root,
                                std::vector<std::string>& files) {
    CXmlSource source;
    files.push_back(path);
    if (auto failure = source.load(path)) {
        return failure;
    }
    if (isRawForm(source)) {
        return readRawForm(source, root);
    }
    CDefinitionReader reader;
    auto failure = reader.read(source, root);
    files.insert(files.end(), reader.files().begin(), reader.files().end());
    if (!failure) {
        failure = CTemplateExpander(shared).expand(root);
    }
    return failure ? failure : checkDepth(root, 0);
}

}  // namespace

CDefinitionFailure compileDefinitions(const std::string& path, const std::string& sharedPath, std::string& bytes,
                                      std::vector<std::string>& files) {
    CDefinitionNode shared;
    if (!sharedPath.empty()) {
        if (auto failure = readExpanded(sharedPath, nullptr, shared, files)) {
            return failure;
        }
    }
    CDefinitionNode root;
    if (auto failure = readExpanded(path, &shared, root, files)) {
        return failure;
    }
    bytes = serializeTree(root);
    return std::nullopt;
}

CDefinitionFailure setInTree(std::string& bytes, const std::string& setting) {
    const size_t equals = setting.find('=');
    CDefinitionNode root;
    if (equals == std::string::npos) {
        return CDefinitionError{{}, "'" + setting + "' is no setting"};
    }
    if (auto failure = parseTree(bytes, root)) {
        return failure;
    }
    CDefinitionNode* node = &root;
    std::string name;
    std::stringstream path(setting.substr(0, equals));
    while (std::getline(path, name, '.') && !path.eof()) {
        const auto child = std::find_if(node->children.begin(), node->children.end(),
                                        [&](const CDefinitionNode& c) { return !c.isTemplate() && c.name == name; });
        if (child == node->children.end()) {
            return CDefinitionError{{}, "no object '" + name + "' for the setting '" + setting + "'"};
        }
        node = &*child;
    }
    const std::string value = setting.substr(equals + 1);
    for (CDefinitionAttribute& attribute : node->attributes) {
        if (attribute.name == name) {
            attribute.value = value;
            bytes = serializeTree(root);
            return std::nullopt;
        }
    }
    node->attributes.push_back({name, value});
    bytes = serializeTree(root);
    return std::nullopt;
}

CDefinitionFailure dumpDefinitions(const std::string& path, std::string& raw) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return CDefinitionError{{path}, "the file can't be opened"};
    }
    const std::string block{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    CMemoryReader reader(block.data(), static_cast<uint32_t>(block.size()));
    CByteBuffer buffer;
    if (auto failure = failureOf(reader.readCompressedData(buffer, packedId(kTreeId)), path)) {
        return failure;
    }
    CDefinitionNode root;
    const std::string_view bytes(reinterpret_cast<const char*>(buffer.data()), static_cast<size_t>(buffer.count()));
    if (auto failure = parseTree(bytes, root)) {
        failure->place.file = path;
        return failure;
    }
    raw = writeRawForm(root);
    return std::nullopt;
}

CDefinitionFailure packBlock(const std::string& bytes, const char* id, std::string& block) {
    CByteBuffer buffer;
    buffer.resize(static_cast<int32_t>(bytes.size()));
    std::copy(bytes.begin(), bytes.end(), buffer.data());
    CMemoryWriteBuffer writer;
    if (auto failure = failureOf(writer.writeCompressedData(buffer, packedId(id)), {})) {
        return failure;
    }
    CByteBuffer packed;
    writer.copyTo(packed);
    block.assign(reinterpret_cast<const char*>(packed.data()), static_cast<size_t>(packed.count()));
    return std::nullopt;
}

CDefinitionFailure writeFile(const std::string& path, const std::string& bytes) {
    const std::string draft = path + ".tmp";
    std::ofstream file(draft, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    std::error_code failed;
    if (file) {
        std::filesystem::rename(draft, path, failed);
    }
    if (!file || failed) {
        std::remove(draft.c_str());
        return CDefinitionError{{path}, "the file can't be written"};
    }
    return std::nullopt;
}

}  // namespace tarv
