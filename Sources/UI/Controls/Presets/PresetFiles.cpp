#include "UI/Controls/Presets/PresetFiles.h"

#include "Audio/Stores/PackedStream.h"
#include "Core/CFileStreams.h"
#include "Core/CompressedBlock.h"
#include "Core/LittleEndian.h"

namespace tarv {

namespace {

CString reasonOf(CPlatformError error, const char* otherwise) {
    const char* text = fileErrorText(error);
    return text ? text : otherwise;
}

CPlatformError openForReading(const CString& path, CFile& file) {
    CString name(path);
    name.widen();
    return file.open(name.wideData(), CFileAccess::kRead, {true, false});
}

/// Whether a file begins as one of another kind does. Too short a file is none.
bool isOfAnotherKind(const CString& path, uint32_t id) {
    CFile file;
    uint8_t bytes[sizeof(id)];
    int64_t count = sizeof(bytes);
    return openForReading(path, file) == 0 && file.read(bytes, count) == 0 && count == sizeof(bytes) &&
           fromLittleEndian<uint32_t>(bytes) != id;
}

/// The kind of a failure, which a user can read, before what the streams say.
template <class T>
CError* readFile(const CString& path, uint32_t id, const char* kind, T& target) {
    CFile file;
    if (const CPlatformError error = openForReading(path, file)) {
        TARV_FAIL("@tarvstr_PresetFiles_readFile_OpenError %1 (error %2).", reasonOf(error, "The file can't be opened"),
                  CString::fromInt(error));
    }
    CFileReader reader;
    TARV_TRY(reader.open(path, kShareRead));
    if (CError* error = loadPacked(reader, id, target)) {
        CString detail = *error->lines()[0];
        if (!detail.isEmpty() && detail.at(detail.length() - 1) == '.') {
            detail = detail.substring(0, detail.length() - 1);
        }
        TARV_CONSUME(error);
        TARV_FAIL("@tarvstr_PresetFiles_readFile_ReadError %1 (%2).",
                  isOfAnotherKind(path, id) ? CString("The file holds no ") + kind : CString("The file is damaged"),
                  detail);
    }
    return nullptr;
}

/// A file is moved over a read-only one without a question on some systems.
CPlatformError writableError(const CString& path) {
    CFile file;
    const CPlatformError missing = file.open(path.wideData(), CFileAccess::kRead, {true, true});
    if (isFileMissing(missing)) {
        return 0;
    }
    CFile writing;
    return writing.open(path.wideData(), CFileAccess::kAppend, {true, true});
}

}  // namespace

CError* readPresetFile(const CString& path, CAudioPreset& preset) {
    return readFile(path, kPresetBlockId, "preset", preset);
}

CError* readBankFile(const CString& path, CAudioPresetBank& bank) {
    return readFile(path, kBankBlockId, "bank", bank);
}

CError* writeBlockFile(const CString& path, const CByteBuffer& block) {
    CString name(path);
    name.widen();
    CPlatformError error = writableError(name);
    error = error ? error : replaceFile(name.wideData(), block.data(), block.count());
    if (error) {
        TARV_FAIL("@tarvstr_PresetFiles_writeBlockFile_WriteError %1 (error %2).",
                  reasonOf(error, "The file can't be written"), CString::fromInt(error));
    }
    return nullptr;
}

}  // namespace tarv
