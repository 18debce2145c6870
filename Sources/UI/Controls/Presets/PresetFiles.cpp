#include "UI/Controls/Presets/PresetFiles.h"

#include "Audio/Stores/PackedStream.h"
#include "Core/CFileStreams.h"
#include "Core/CompressedBlock.h"

namespace tarv {

namespace {

template <class T>
CError* readFile(const CString& path, uint32_t id, T& target) {
    CFileReader reader;
    TARV_TRY(reader.open(path, kShareRead));
    TARV_TRY(loadPacked(reader, id, target));
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
    return readFile(path, kPresetBlockId, preset);
}

CError* readBankFile(const CString& path, CAudioPresetBank& bank) {
    return readFile(path, kBankBlockId, bank);
}

CError* writeBlockFile(const CString& path, const CByteBuffer& block) {
    CString name(path);
    name.widen();
    CPlatformError error = writableError(name);
    error = error ? error : replaceFile(name.wideData(), block.data(), block.count());
    if (error) {
        TARV_FAIL("@tarvstr_PresetFiles_writeBlockFile_WriteError The file can't be written (error %1).",
                  CString::fromInt(error));
    }
    return nullptr;
}

}  // namespace tarv
