#include "Core/CApplicationData.h"

#include <algorithm>

#include "Core/CFileStreams.h"
#include "Core/CResourceReader.h"
#include "Core/CompressedBlock.h"
#include "Core/Log.h"
#include "Platform/Folders.h"

namespace tarv {

namespace {

constexpr const char* kMakerPath = "Tarvelo/Audio Plug-Ins/";
constexpr const char* kProductPath = "Tarvelo/Audio Plug-Ins/Brindle XEQ/";
constexpr int32_t kPatienceMs = 2000;
constexpr uint32_t kTextId = blockId("dstr");
constexpr int32_t kKeptLimit = 99;

CString wideCopy(const CString& path) {
    CString copy(path);
    copy.widen();
    return copy;
}

/// All bytes of a file, none if there is no such file. Fails if one is there and can't be read.
CError* readWholeFile(const CString& path, CByteBuffer& bytes) {
    bytes.clear();
    {
        CFile file;
        if (isFileMissing(file.open(wideCopy(path).wideData(), CFileAccess::kRead, {true, false}))) {
            return nullptr;
        }
    }
    CFileReader reader;
    TARV_TRY(reader.open(path, kShareRead));
    uint8_t piece[4096];
    for (int64_t count = sizeof(piece); count > 0;) {
        count = sizeof(piece);
        TARV_TRY(reader.readStreamed(piece, count));
        bytes.append(piece, static_cast<int32_t>(count));
    }
    return nullptr;
}

bool isSame(const CByteBuffer& one, const CByteBuffer& other) {
    return one.count() == other.count() && std::equal(one.begin(), one.end(), other.begin());
}

CString keptName(const CString& name, int32_t number) {
    return name + "-damaged" + (number == 1 ? CString() : "-" + CString::fromInt(number));
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

CError* CApplicationData::readForUpdate(const CString& name, CByteBuffer& buffer, uint32_t id) {
    resolveFolders();
    CFile held;  // open while the block is read, so that a file which can be opened here can be read
    if (fileAccess_ && !foldersFailed_) {
        const CPlatformError error =
            held.open(wideCopy(userFolder_ + name).wideData(), CFileAccess::kRead, {true, false});
        if (error && !isFileMissing(error)) {
            TARV_FAIL("@tarvstr_CApplicationData_readForUpdate_Unreadable The stored '%1' can't be opened (error %2).",
                      name, CString::fromInt(error));
        }
    }
    readStored(name, buffer, id);
    return nullptr;
}

bool CApplicationData::isOnDisk(const CString& name) const {
    CLockScope scope(linkLock());
    const auto recent = recent_.find(userFolder_ + name);
    return recent == recent_.end() || recent->second.isStored;
}

CError* CApplicationData::keepDamaged(const CString& name) {
    CLockScope scope(linkLock());
    resolveFolders();
    if (!fileAccess_ || foldersFailed_) {
        return nullptr;
    }
    CByteBuffer damaged;
    TARV_TRY(readWholeFile(userFolder_ + name, damaged));
    for (int32_t number = 1; number <= kKeptLimit; ++number) {
        const CString kept = keptName(name, number);
        CByteBuffer earlier;
        TARV_TRY(readWholeFile(userFolder_ + kept, earlier));
        if (isSame(earlier, damaged)) {
            return nullptr;  // nothing in it, or kept already
        }
        if (earlier.isEmpty()) {
            if (const CPlatformError error =
                    replaceFile(wideCopy(userFolder_ + kept).wideData(), damaged.data(), damaged.count())) {
                TARV_FAIL("@tarvstr_CApplicationData_keepDamaged_Failed The damaged '%1' can't be kept (error %2).",
                          name, CString::fromInt(error));
            }
            logErrorLine("The damaged '" + name + "' is kept as '" + kept + "'.");
            return nullptr;
        }
    }
    TARV_FAIL("@tarvstr_CApplicationData_keepDamaged_TooMany Too many damaged copies of '%1' are kept.", name);
}

CError* CApplicationData::keepIfDamaged(const CString& name, uint32_t id) {
    CFileReader reader;
    if (CError* error = reader.open(userFolder_ + name, kShareRead)) {
        delete error;
        return nullptr;
    }
    CByteBuffer bytes;
    if (CError* error = reader.readCompressedData(bytes, id)) {
        TARV_CONSUME(error);
        TARV_TRY(reader.close());
        TARV_TRY(keepDamaged(name));
    }
    return nullptr;
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

bool CApplicationData::store(const CString& name, const CByteBuffer& buffer, uint32_t id) {
    if (foldersFailed_) {
        return false;
    }
    // What this process wrote is not looked at again: a drag writes many times a second.
    const auto recent = recent_.find(userFolder_ + name);
    if (recent == recent_.end() || !recent->second.isStored) {
        if (CError* error = keepIfDamaged(name, id)) {
            TARV_CONSUME(error);
            return false;
        }
    }
    return writeFile(userFolder_ + name, buffer, id);
}

void CApplicationData::write(const CString& name, const CByteBuffer& buffer, uint32_t id) {
    CLockScope scope(linkLock());
    if (!fileAccess_) {
        return;
    }
    resolveFolders();
    const bool isStored = store(name, buffer, id);
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
