#include "FactoryCompiler.h"

#include "Audio/Parameters/CAudioParamChange.h"
#include "Audio/Parameters/CAudioParamStorage.h"
#include "CFactoryReader.h"

namespace tarv {

namespace {

constexpr uint32_t kListVersion = 1;
constexpr char kBankId[] = "abnk";
constexpr char kListId[] = "alst";

CString textOf(const std::string& text) {
    return CString::fromUtf8(text.data(), text.size());
}

/// Puts the values of one group into `data` the way the engine does, by a change.
void applyGroup(CAudioParamData& data, const CAudioParamData& texts, int32_t group, const std::vector<double>& values) {
    CAudioParamChange change;
    change.group = group;
    change.count = static_cast<int32_t>(values.size());
    change.resize = 1;
    change.isString = data.isString() ? 1 : 0;
    change.sourcePool = &texts;
    for (double value : values) {
        change.values.append(value);
    }
    data.apply(change);
}

CError* writeRecord(const CFactoryRecord& record, COutputStream& stream) {
    CAudioParamInfo info;
    info.setShape(1, record.isString, CAudioParamInfo::Storable);
    info.setNames(CString(), CString(), textOf(record.definition));
    CAudioParamData data;
    data.reset(info);
    CAudioParamData texts;
    texts.reset(info);
    if (record.isString) {
        std::vector<double> ids;
        for (const std::string& text : record.texts) {
            ids.push_back(texts.addString(textOf(text)));
        }
        applyGroup(data, texts, 0, ids);
    }
    for (size_t group = 0; group < record.groups.size(); ++group) {
        applyGroup(data, texts, static_cast<int32_t>(group), record.groups[group]);
    }
    return CAudioParamStorage::save(stream, info, data);
}

CError* writePreset(const CFactoryPreset& preset, COutputStream& stream) {
    TARV_TRY(stream.writeString(textOf(preset.name)));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(preset.records.size())));
    for (const auto& [key, record] : preset.records) {
        CMemoryWriteBuffer buffer;
        TARV_TRY(writeRecord(record, buffer));
        CByteBuffer bytes;
        buffer.copyTo(bytes);
        TARV_TRY(stream.writeString(textOf(key)));
        TARV_TRY(stream.writeValue(static_cast<uint32_t>(bytes.count())));
        TARV_TRY(stream.write(bytes.data(), bytes.count()));
    }
    return nullptr;
}

CError* writeSource(const CFactorySource& source, COutputStream& stream) {
    if (source.isBank) {
        TARV_TRY(stream.writeString(textOf(source.name)));
    } else {
        TARV_TRY(stream.writeValue(kListVersion));
        TARV_TRY(stream.writeValue(0));
    }
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(source.presets.size())));
    for (const CFactoryPreset& preset : source.presets) {
        TARV_TRY(writePreset(preset, stream));
    }
    return nullptr;
}

}  // namespace

CDefinitionFailure compileFactoryData(const std::string& path, CFactoryStream& stream) {
    CXmlSource xml;
    if (auto failure = xml.load(path)) {
        return failure;
    }
    CFactorySource source;
    if (auto failure = readFactorySource(xml, source)) {
        return failure;
    }
    CMemoryWriteBuffer buffer;
    if (CError* error = writeSource(source, buffer)) {
        const std::string text = error->lines()[0]->toUtf8();
        delete error;
        return CDefinitionError{{path}, text};
    }
    CByteBuffer bytes;
    buffer.copyTo(bytes);
    stream.id = source.isBank ? kBankId : kListId;
    stream.bytes.assign(reinterpret_cast<const char*>(bytes.data()), static_cast<size_t>(bytes.count()));
    return std::nullopt;
}

}  // namespace tarv
