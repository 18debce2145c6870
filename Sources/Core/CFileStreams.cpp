#include "Core/CFileStreams.h"

namespace tarv {

namespace {

CFileSharing sharingOf(uint32_t flags) {
    return {(flags & kShareRead) != 0, (flags & kShareWrite) != 0};
}

CPlatformError openAs(CFile& file, const CString& name, CFileAccess access, uint32_t flags) {
    CString path(name);
    path.widen();
    return file.open(path.wideData(), access, sharingOf(flags));
}

/// Runs single steps until `count` bytes are done or one does nothing; gives the number done.
template <class Step>
CPlatformError repeat(int64_t& count, Step step) {
    const int64_t wanted = std::exchange(count, 0);
    while (count < wanted) {
        int64_t done = wanted - count;
        if (const CPlatformError error = step(count, done)) {
            return error;
        }
        if (done == 0) {
            break;
        }
        count += done;
    }
    return 0;
}

}  // namespace

CFileReader::~CFileReader() {
    TARV_CONSUME(close());
}

CError* CFileReader::open(const CString& name, uint32_t flags) {
    TARV_TRY(close());
    name_ = name;
    if (const CPlatformError error = openAs(file_, name, CFileAccess::kRead, flags)) {
        TARV_FAIL("@tarvstr_CFileReader_open_Failed Unable to open file '%1' for reading (error %2, flags %3).", name_,
                  CString::fromInt(error), CString::fromInt(flags));
    }
    return nullptr;
}

CError* CFileReader::close() {
    if (!file_.isOpen()) {
        return nullptr;
    }
    if (const CPlatformError error = file_.close()) {
        TARV_FAIL("@tarvstr_CFileReader_close_Failed Unable to close file '%1' after reading (error %2).", name_,
                  CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileReader::consume(int64_t count) {
    if (const CPlatformError error = file_.skip(count)) {
        TARV_FAIL("@tarvstr_CFileReader_consume_Failed Unable to set file's '%1' consume position (error %2).", name_,
                  CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileReader::read(void* buffer, int64_t count) {
    int64_t done = count;
    const CPlatformError error =
        repeat(done, [&](int64_t at, int64_t& part) { return file_.read(static_cast<uint8_t*>(buffer) + at, part); });
    if (error) {
        TARV_FAIL("@tarvstr_CFileReader_read_Failed Unable to read from file '%1' (error %2).", name_,
                  CString::fromInt(error));
    }
    if (done < count) {
        TARV_FAIL("@tarvstr_CFileReader_read_Short Unable to read from file '%1' (required %2 bytes, read %3 bytes).",
                  name_, CString::fromInt(count), CString::fromInt(done));
    }
    return nullptr;
}

CError* CFileReader::readStreamed(void* buffer, int64_t& count) {
    if (const CPlatformError error = file_.read(buffer, count)) {
        TARV_FAIL("@tarvstr_CFileReader_readStreamed_Failed Unable to read from file '%1' (error %2).", name_,
                  CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileReader::getPosition(int64_t& position) {
    if (const CPlatformError error = file_.getPosition(position)) {
        TARV_FAIL("@tarvstr_CFileReader_getPosition_Failed Unable to get file's '%1' reading position (error %2).",
                  name_, CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileReader::setPosition(int64_t position) {
    if (const CPlatformError error = file_.setPosition(position)) {
        TARV_FAIL("@tarvstr_CFileReader_setPosition_Failed Unable to set file's '%1' reading position (error %2).",
                  name_, CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileReader::getSize(int64_t& size) {
    if (const CPlatformError error = file_.getSize(size)) {
        TARV_FAIL("@tarvstr_CFileReader_getSize_Failed Unable to get file's '%1' size (error %2).", name_,
                  CString::fromInt(error));
    }
    return nullptr;
}

CFileWriter::~CFileWriter() {
    TARV_CONSUME(close());
}

CError* CFileWriter::open(const CString& name, bool append, uint32_t flags) {
    TARV_TRY(close());
    name_ = name;
    const CFileAccess access = append ? CFileAccess::kAppend : CFileAccess::kRewrite;
    if (const CPlatformError error = openAs(file_, name, access, flags)) {
        TARV_FAIL("@tarvstr_CFileWriter_open_Failed Unable to open file '%1' for %2 (error %3, flags %4).", name_,
                  append ? "appending" : "rewriting", CString::fromInt(error), CString::fromInt(flags));
    }
    return nullptr;
}

CError* CFileWriter::close() {
    if (!file_.isOpen()) {
        return nullptr;
    }
    if (const CPlatformError error = file_.close()) {
        TARV_FAIL("@tarvstr_CFileWriter_close_Failed Unable to close file '%1' after writing (error %2).", name_,
                  CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileWriter::write(const void* buffer, int64_t count) {
    int64_t done = count;
    const CPlatformError error = repeat(
        done, [&](int64_t at, int64_t& part) { return file_.write(static_cast<const uint8_t*>(buffer) + at, part); });
    if (error) {
        TARV_FAIL("@tarvstr_CFileWriter_write_Failed Unable to write to file '%1' (error %2).", name_,
                  CString::fromInt(error));
    }
    if (done < count) {
        TARV_FAIL(
            "@tarvstr_CFileWriter_write_Short Unable to write to file '%1' (required %2 bytes, written %3 bytes).",
            name_, CString::fromInt(count), CString::fromInt(done));
    }
    return nullptr;
}

CError* CFileWriter::getPosition(int64_t& position) {
    if (const CPlatformError error = file_.getPosition(position)) {
        TARV_FAIL(
            "@tarvstr_CFileWriter_getPosition_Failed Unable to get file writing position for file '%1' (error %2).",
            name_, CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileWriter::setPosition(int64_t position) {
    if (const CPlatformError error = file_.setPosition(position)) {
        TARV_FAIL(
            "@tarvstr_CFileWriter_setPosition_Failed Unable to set file writing position for file '%1' (error %2).",
            name_, CString::fromInt(error));
    }
    return nullptr;
}

CError* CFileWriter::getSize(int64_t& size) {
    if (const CPlatformError error = file_.getSize(size)) {
        TARV_FAIL("@tarvstr_CFileWriter_getSize_Failed Unable to get file size of file '%1' (error %2).", name_,
                  CString::fromInt(error));
    }
    return nullptr;
}

}  // namespace tarv
