#include "Core/CApplicationData.h"

#include "Core/CResourceReader.h"

namespace tarv {

namespace {

constexpr const char* kMakerPath = "Tarvelo/Audio Plug-Ins/";
constexpr const char* kProductPath = "Tarvelo/Audio Plug-Ins/Brindle XEQ/";
constexpr uint32_t kTextId = 0x72747364;  // 'dstr'

}  // namespace

CApplicationData::CApplicationData(const CString& subPath, const CString& resourcePrefix)
    : subPath_(subPath), prefix_(resourcePrefix) {}

void CApplicationData::setFileAccess(bool allowed) {
    CLockScope scope(linkLock());
    fileAccess_ = allowed;
}

void CApplicationData::reset() {
    CLockScope scope(linkLock());
    foldersResolved_ = foldersFailed_ = foldersExist_ = false;
    fileAccess_ = true;
    recent_.clear();
}

void CApplicationData::read(const CString& name, CByteBuffer& buffer, uint32_t id) {
    CLockScope scope(linkLock());
    buffer.clear();
    if (!fileAccess_) {
        return;
    }
    auto recent = recent_.find(userFolder_ + name);
    if (recent != recent_.end() && recent->second.id == id) {
        buffer = recent->second.bytes;
        return;
    }
    CInputStream* stream = nullptr;
    CError* error = CResourceReader::open(prefix_ + name, stream);
    if (!error) {
        error = stream->readCompressedData(buffer, id);
        delete stream;
    }
    if (error) {
        delete error;
        buffer.clear();
    }
}

void CApplicationData::write(const CString& name, const CByteBuffer& buffer, uint32_t id) {
    CLockScope scope(linkLock());
    if (!fileAccess_) {
        return;
    }
    recent_[userFolder_ + name] = CRecent{id, buffer};
    notifyBridges(name);
}

CString CApplicationData::readText(const CString& name, const CString& fallback) {
    CByteBuffer buffer;
    read(name, buffer, kTextId);
    if (buffer.isEmpty()) {
        return fallback;
    }
    CMemoryReader reader(buffer.data(), static_cast<uint32_t>(buffer.count()));
    CString text;
    CError* error = reader.readString(text);
    TARV_CONSUME(error);
    return error ? fallback : text;
}

void CApplicationData::writeText(const CString& name, const CString& text) {
    CMemoryWriteBuffer writer;
    CByteBuffer buffer;
    CError* error = writer.writeString(text);
    if (error) {
        TARV_CONSUME(error);
        return;
    }
    writer.copyTo(buffer);
    write(name, buffer, kTextId);
}

CGlobalData::CGlobalData() : CApplicationData(kMakerPath, "AppDataGlobal_") {}

CGlobalData& CGlobalData::instance() {
    static CGlobalData data;
    return data;
}

CLocalData::CLocalData() : CApplicationData(kProductPath, "AppDataLocal_") {}

CLocalData& CLocalData::instance() {
    static CLocalData data;
    return data;
}

}  // namespace tarv
