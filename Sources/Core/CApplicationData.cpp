#include "Core/CApplicationData.h"

#include "Core/CFileStreams.h"
#include "Core/CResourceReader.h"
#include "Core/CompressedBlock.h"
#include "Platform/Folders.h"

namespace tarv {

namespace {

constexpr const char* kMakerPath = "Tarvelo/Audio Plug-Ins/";
constexpr const char* kProductPath = "Tarvelo/Audio Plug-Ins/Brindle XEQ/";
constexpr int32_t kPatienceMs = 2000;
constexpr uint32_t kTextId = blockId("dstr");

CString wideCopy(const CString& path) {
    CString copy(path);
    copy.widen();
    return copy;
}

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
    userFolder_.clear();
    commonFolder_.clear();
    fileAccess_ = true;
    recent_.clear();
}

void CApplicationData::resolveFolders() {
    if (foldersResolved_) {
        return;
    }
    foldersResolved_ = true;
    std::u16string root;
    foldersFailed_ = dataRootPath(CDataRoot::kUser, root) != 0;
    if (foldersFailed_) {
        return;
    }
    userFolder_ = CString(root.c_str()) + "/" + subPath_;
    foldersExist_ = folderExists(wideCopy(userFolder_).wideData());
    if (dataRootPath(CDataRoot::kCommon, root) == 0) {
        commonFolder_ = CString(root.c_str()) + "/" + subPath_;
    }
}

bool CApplicationData::readFile(const CString& path, CByteBuffer& buffer, uint32_t id) {
    CFileReader reader;
    if (CError* error = reader.open(path, kShareRead)) {
        delete error;
        return false;
    }
    if (CError* error = reader.readCompressedData(buffer, id)) {
        TARV_CONSUME(error);
        buffer.clear();
    }
    return true;
}

bool CApplicationData::readFiles(const CString& name, CByteBuffer& buffer, uint32_t id) {
    if (foldersFailed_) {
        return false;
    }
    // The last one lets a file replace the embedded copy under the copy's own name.
    return readFile(userFolder_ + name, buffer, id) ||
           (!commonFolder_.isEmpty() && readFile(commonFolder_ + name, buffer, id)) ||
           readFile(userFolder_ + prefix_ + name, buffer, id);
}

void CApplicationData::read(const CString& name, CByteBuffer& buffer, uint32_t id) {
    CLockScope scope(linkLock());
    buffer.clear();
    if (!fileAccess_) {
        return;
    }
    resolveFolders();
    auto recent = recent_.find(userFolder_ + name);
    if (recent != recent_.end() && recent->second.id == id) {
        buffer = recent->second.bytes;
        return;
    }
    if (!readFiles(name, buffer, id)) {
        readEmbedded(name, buffer, id);
    }
}

void CApplicationData::readStored(const CString& name, CByteBuffer& buffer, uint32_t id) {
    CLockScope scope(linkLock());
    resolveFolders();
    const auto recent = recent_.find(userFolder_ + name);
    if (recent != recent_.end() && recent->second.isStored) {
        recent_.erase(recent);
    }
    read(name, buffer, id);
}

void CApplicationData::readEmbedded(const CString& name, CByteBuffer& buffer, uint32_t id) {
    buffer.clear();
    CResourceMap::CRange range;
    if (CResourceMap::find(prefix_ + name, range)) {
        CMemoryReader reader(range.bytes, range.size);
        if (CError* error = reader.readCompressedData(buffer, id)) {
            TARV_CONSUME(error);
            buffer.clear();
        }
    }
}

bool CApplicationData::makeUserFolder() {
    foldersExist_ = foldersExist_ || makeFolders(wideCopy(userFolder_).wideData()) == 0;
    return foldersExist_;
}

CError* CApplicationData::lockName(const CString& name, CFileLock& lock) {
    CString path;
    {
        CLockScope scope(linkLock());
        resolveFolders();
        if (!fileAccess_ || foldersFailed_ || !makeUserFolder()) {
            return nullptr;  // the block stands for this process alone
        }
        path = wideCopy(userFolder_ + name + ".lock");
    }
    // Any other failure shows in the writing.
    if (isFileBusy(lock.acquire(path.wideData(), kPatienceMs))) {
        TARV_FAIL("@tarvstr_CApplicationData_lockName_Busy The stored '%1' is in use by another program.", name);
    }
    return nullptr;
}

bool CApplicationData::writeFile(const CString& path, const CByteBuffer& buffer, uint32_t id) {
    makeUserFolder();
    CMemoryWriteBuffer block;
    if (CError* error = block.writeCompressedData(buffer, id)) {
        delete error;
        return false;
    }
    CByteBuffer bytes;
    block.copyTo(bytes);
    return replaceFile(wideCopy(path).wideData(), bytes.data(), bytes.count()) == 0;
}

void CApplicationData::write(const CString& name, const CByteBuffer& buffer, uint32_t id) {
    CLockScope scope(linkLock());
    if (!fileAccess_) {
        return;
    }
    resolveFolders();
    const bool isStored = !foldersFailed_ && writeFile(userFolder_ + name, buffer, id);
    recent_[userFolder_ + name] = CRecent{id, buffer, isStored};
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
    if (CError* error = reader.readString(text)) {
        TARV_CONSUME(error);
        return fallback;
    }
    return text;
}

void CApplicationData::writeText(const CString& name, const CString& text) {
    CMemoryWriteBuffer writer;
    CByteBuffer buffer;
    if (CError* error = writer.writeString(text)) {
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
