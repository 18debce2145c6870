#include "BlockText.h"

#include <cstdio>
#include <map>
#include <memory>
#include <string_view>

#include "Audio/Stores/CAudioPresetBank.h"
#include "Audio/Stores/PackedStream.h"
#include "CompiledTree.h"
#include "Core/CompressedBlock.h"
#include "RawForm.h"

namespace tarv {

namespace {

constexpr int64_t kPrefix = 16;

std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
            out += c;
        } else if (static_cast<unsigned char>(c) < 32) {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned>(c));
            out += code;
        } else {
            out += c;
        }
    }
    return out + "\"";
}

std::string numberText(double value) {
    char text[40];
    std::snprintf(text, sizeof text, "%.17g", value);
    return text;
}

CError* readPool(CInputStream& stream, std::map<uint32_t, std::string>& pool) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t id = 0;
        uint32_t type = 0;
        CString text;
        TARV_TRY(stream.readValue(id));
        TARV_TRY(stream.readValue(type));
        TARV_TRY(stream.readString(text));
        pool[id] = text.toUtf8();
    }
    return nullptr;
}

CError* groupText(CInputStream& stream, const std::map<uint32_t, std::string>* pool, uint32_t elementSize,
                  std::string& text) {
    uint32_t count = 0;
    TARV_TRY(stream.readValue(count));
    for (uint64_t i = 0; i < uint64_t{count} * elementSize; ++i) {
        if (pool) {
            uint32_t id = 0;
            TARV_TRY(stream.readValue(id));
            const auto found = pool->find(id);
            text += " " + (found == pool->end() ? "?" + std::to_string(id) : quoted(found->second));
        } else {
            double value = 0.0;
            TARV_TRY(stream.readDouble(value));
            text += " " + numberText(value);
        }
    }
    return nullptr;
}

/// One stored parameter, by its layout alone: parameters that no build knows are printed, too.
CError* recordText(CPosInputStream& stream, std::string& text) {
    CString path;
    uint32_t words[4];
    TARV_TRY(stream.readString(path));
    for (uint32_t& word : words) {
        TARV_TRY(stream.readValue(word));
    }
    const auto [version, elementSize, dataType, groups] = words;
    if (version != 1 || dataType > 1 || elementSize == 0) {
        TARV_FAIL("@tarvstr_BlockText_recordText_Format Unknown record (version %1, element size %2, data type %3).",
                  CString::fromInt(version), CString::fromInt(elementSize), CString::fromInt(dataType));
    }
    text += path.toUtf8();
    std::map<uint32_t, std::string> pool;
    if (dataType == 1) {
        TARV_TRY(readPool(stream, pool));
    }
    for (uint32_t group = 0; group < groups; ++group) {
        text += "\n      " + std::to_string(group) + ":";
        TARV_TRY(groupText(stream, dataType == 1 ? &pool : nullptr, elementSize, text));
    }
    TARV_TRY(expectStreamEnd(stream));
    return nullptr;
}

std::string presetText(const CAudioPreset& preset) {
    std::string text = "preset " + quoted(preset.name().toUtf8()) + "\n";
    for (int32_t i = 0; i < preset.recordCount(); ++i) {
        const CAudioPreset::CBytes record = preset.record(i);
        CMemoryReader reader(record.data, static_cast<uint32_t>(record.count));
        std::string values;
        if (CError* error = recordText(reader, values)) {
            // Kept as it came by every build, and so no failure of the block.
            values = std::to_string(record.count) + " bytes: " + error->lines()[0]->toUtf8();
            delete error;
        }
        text += "  " + preset.keyText(i).toUtf8() + "  " + values + "\n";
    }
    return text;
}

template <class Bank>
CError* bankText(CInputStream& block, uint32_t id, const char* kind, std::string& text) {
    Bank bank;
    TARV_TRY(loadPacked(block, id, bank));
    text = std::string(kind) + " " + quoted(bank.name().toUtf8()) + " of " + std::to_string(bank.count()) + "\n";
    for (int32_t i = 0; i < bank.count(); ++i) {
        text += presetText(bank.preset(i));
    }
    return nullptr;
}

CError* presetBlockText(CInputStream& block, std::string& text) {
    CAudioPreset preset;
    TARV_TRY(loadPacked(block, kPresetBlockId, preset));
    text = presetText(preset);
    return nullptr;
}

CError* treeText(CInputStream& block, std::string& text) {
    CByteBuffer bytes;
    TARV_TRY(block.readCompressedData(bytes, kTreeBlockId));
    CDefinitionNode root;
    const auto* data = reinterpret_cast<const char*>(bytes.data());
    if (auto failure = parseTree(std::string_view(data, static_cast<size_t>(bytes.count())), root)) {
        TARV_FAIL("@tarvstr_BlockText_treeText_Damaged %1", CString(failure->message().c_str()));
    }
    text = writeRawForm(root);
    return nullptr;
}

CError* settingText(CInputStream& block, std::string& text) {
    CByteBuffer bytes;
    TARV_TRY(block.readCompressedData(bytes, blockId("dstr")));
    CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
    CString value;
    TARV_TRY(reader.readString(value));
    TARV_TRY(expectStreamEnd(reader));
    text = "setting " + quoted(value.toUtf8()) + "\n";
    return nullptr;
}

struct CBlockKind {
    uint32_t id;
    CError* (*read)(CInputStream& block, std::string& text);
};

constexpr CBlockKind kKinds[] = {
    {kPresetBlockId, &presetBlockText},
    {kBankBlockId,
     [](CInputStream& b, std::string& t) { return bankText<CAudioPresetBank>(b, kBankBlockId, "bank", t); }},
    {kListBlockId,
     [](CInputStream& b, std::string& t) { return bankText<CAudioPresetList>(b, kListBlockId, "list", t); }},
    {kTreeBlockId, &treeText},
    {blockId("dstr"), &settingText},
};

}  // namespace

CError* blockText(const CByteBuffer& bytes, std::string& text) {
    for (const int64_t start : {int64_t{0}, kPrefix}) {
        CMemoryReader reader(bytes.data(), static_cast<uint32_t>(bytes.count()));
        uint32_t id = 0;
        if (start + 4 > bytes.count()) {
            continue;
        }
        TARV_TRY(reader.setPosition(start));
        TARV_TRY(reader.readValue(id));
        for (const CBlockKind& kind : kKinds) {
            if (kind.id == id) {
                TARV_TRY(reader.setPosition(start));
                TARV_TRY(kind.read(reader, text));
                return nullptr;
            }
        }
    }
    TARV_FAIL("@tarvstr_BlockText_blockText_UnknownId Neither a preset, a bank, a list, a setting nor a tree.");
}

}  // namespace tarv
