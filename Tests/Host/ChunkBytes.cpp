// Writes and reads compressed states by their layout.

#include "ChunkBytes.h"

#include <zlib.h>

#include <cstring>

namespace tarv::host {

namespace {

std::string word(uint32_t value) {
    return {static_cast<char>(value), static_cast<char>(value >> 8), static_cast<char>(value >> 16),
            static_cast<char>(value >> 24)};
}

std::string text(const std::string& value) {
    return word(static_cast<uint32_t>(value.size())) + value;
}

std::string real(double value) {
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return word(static_cast<uint32_t>(bits)) + word(static_cast<uint32_t>(bits >> 32));
}

/// Reads fields in turn; `good` is false from the first that does not fit.
struct CFields {
    const std::string& bytes;
    size_t at = 0;
    bool good = true;

    std::string take(size_t count) {
        good = good && count <= bytes.size() - at;
        if (!good) {
            return {};
        }
        at += count;
        return bytes.substr(at - count, count);
    }
    uint32_t word() {
        const std::string four = take(4);
        uint32_t value = 0;
        for (size_t i = four.size(); i-- > 0;) {
            value = value << 8 | static_cast<unsigned char>(four[i]);
        }
        return value;
    }
    double real() {
        const uint64_t low = word();
        const uint64_t bits = static_cast<uint64_t>(word()) << 32 | low;
        double value = 0.0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
    std::string text() { return take(word()); }
};

CStoredParam readRecord(const std::string& bytes, bool& good) {
    CFields fields{bytes};
    CStoredParam param;
    param.definition = fields.text();
    const bool isKnown = fields.word() == 1 && fields.word() == 1;
    const bool isText = fields.word() == 1;
    const uint32_t groups = fields.word();
    std::map<uint32_t, std::string> pool;
    for (uint32_t i = 0, count = isText ? fields.word() : 0; i < count && fields.good; ++i) {
        const uint32_t id = fields.word();
        good = good && fields.word() == 1;
        pool[id] = fields.text();
    }
    for (uint32_t group = 0; group < groups && fields.good; ++group) {
        param.groups.emplace_back();
        for (uint32_t i = 0, count = fields.word(); i < count && fields.good; ++i) {
            if (isText) {
                param.texts.push_back(pool[fields.word()]);
            } else {
                param.groups.back().push_back(fields.real());
            }
        }
    }
    if (isText) {
        param.groups.clear();
    }
    good = good && isKnown && fields.good && fields.at == bytes.size();
    return param;
}

CStoredPreset readPreset(CFields& fields) {
    CStoredPreset preset;
    preset.name = fields.text();
    for (uint32_t i = 0, count = fields.word(); i < count && fields.good; ++i) {
        const std::string key = fields.text();
        preset.params[key] = readRecord(fields.text(), fields.good);
    }
    return preset;
}

}  // namespace

std::string recordBytes(const CStoredParam& param) {
    const bool isText = !param.texts.empty();
    std::string bytes = text(param.definition) + word(1) + word(1) + word(isText ? 1 : 0) +
                        word(isText ? 1 : static_cast<uint32_t>(param.groups.size()));
    if (isText) {
        bytes += word(static_cast<uint32_t>(param.texts.size()));
        for (uint32_t i = 0; i < param.texts.size(); ++i) {
            bytes += word(i + 1) + word(1) + text(param.texts[i]);
        }
        bytes += word(static_cast<uint32_t>(param.texts.size()));
        for (uint32_t i = 0; i < param.texts.size(); ++i) {
            bytes += word(i + 1);
        }
    }
    for (const std::vector<double>& group : param.groups) {
        bytes += word(static_cast<uint32_t>(group.size()));
        for (double value : group) {
            bytes += real(value);
        }
    }
    return bytes;
}

std::string presetStream(const CStoredPreset& preset) {
    std::string bytes = text(preset.name) + word(static_cast<uint32_t>(preset.params.size()));
    for (const auto& [key, param] : preset.params) {
        bytes += text(key) + text(recordBytes(param));
    }
    return bytes;
}

std::string bankStream(const CStoredBank& bank) {
    std::string bytes = text(bank.name) + word(static_cast<uint32_t>(bank.presets.size()));
    for (const CStoredPreset& preset : bank.presets) {
        bytes += presetStream(preset);
    }
    return bytes;
}

std::string block(const std::string& id, const std::string& stream) {
    const std::string count = word(static_cast<uint32_t>(stream.size()));
    uLongf size = compressBound(static_cast<uLong>(stream.size()));
    std::string packed(size, '\0');
    compress(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(stream.data()),
             static_cast<uLong>(stream.size()));
    packed.resize(size);
    return id + count + checkOf(count) + packed;
}

std::string checkOf(const std::string& count) {
    return word(static_cast<uint32_t>(adler32(1, reinterpret_cast<const Bytef*>(count.data()), 4)));
}

bool inflate(const std::string& block, const std::string& id, std::string& stream) {
    CFields fields{block};
    const std::string foundId = fields.take(4);
    const std::string count = fields.take(4);
    const std::string check = fields.take(4);
    if (!fields.good || foundId != id || check != checkOf(count)) {
        return false;
    }
    uLongf size = CFields{count}.word();
    stream.assign(size, '\0');
    const int state =
        uncompress(reinterpret_cast<Bytef*>(stream.data()), &size, reinterpret_cast<const Bytef*>(block.data()) + 12,
                   static_cast<uLong>(block.size() - 12));
    return state == Z_OK && size == stream.size();
}

bool readPreset(const std::string& block, CStoredPreset& preset) {
    std::string stream;
    if (!inflate(block, "aprs", stream)) {
        return false;
    }
    CFields fields{stream};
    preset = readPreset(fields);
    return fields.good && fields.at == stream.size();
}

bool readBank(const std::string& block, CStoredBank& bank) {
    std::string stream;
    if (!inflate(block, "abnk", stream)) {
        return false;
    }
    CFields fields{stream};
    bank.name = fields.text();
    bank.presets.clear();
    for (uint32_t i = 0, count = fields.word(); i < count && fields.good; ++i) {
        bank.presets.push_back(readPreset(fields));
    }
    return fields.good && fields.at == stream.size();
}

}  // namespace tarv::host
