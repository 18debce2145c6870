#include "Core/CResourceReader.h"

#include <map>
#include <utility>

#include "Core/CFileStreams.h"

namespace tarv {

namespace {

using CRangeMap = std::map<CString, CResourceMap::CRange, std::less<CString>,
                           CHeapAllocator<std::pair<const CString, CResourceMap::CRange>>>;

CRangeMap& ranges() {
    static CRangeMap map;
    return map;
}

}  // namespace

void CResourceMap::addRows(const CResourceRow* rows) {
    for (; rows && rows->name; ++rows) {
        const unsigned char* data = rows->data;
        uint32_t size = data[0] | static_cast<uint32_t>(data[1]) << 8 | static_cast<uint32_t>(data[2]) << 16 |
                        static_cast<uint32_t>(data[3]) << 24;
        ranges()[rows->name] = CRange{data + 4, size};
    }
}

bool CResourceMap::find(const CString& name, CRange& range) {
    auto found = ranges().find(name);
    if (found != ranges().end()) {
        range = found->second;
    }
    return found != ranges().end();
}

void CResourceMap::clear() {
    ranges().clear();
}

CResourceReader::~CResourceReader() {
    TARV_CONSUME(close());
}

CError* CResourceReader::open(const CString& name) {
    TARV_TRY(close());
    CResourceMap::CRange range;
    if (CResourceMap::find(name, range)) {
        source_ = new CMemoryReader(range.bytes, range.size);
        return nullptr;
    }
    auto* file = new CFileReader;
    source_ = file;
    TARV_TRY(file->open(name, kShareRead));
    return nullptr;
}

CError* CResourceReader::close() {
    CPosInputStream* source = std::exchange(source_, nullptr);
    CError* error = source ? source->close() : nullptr;
    delete source;
    TARV_TRY(error);
    return nullptr;
}

CError* CResourceReader::requireOpen() const {
    if (!source_) {
        TARV_FAIL("@tarvstr_CResourceReader_requireOpen_NotOpen Resource reader is not open.");
    }
    return nullptr;
}

CError* CResourceReader::consume(int64_t count) {
    TARV_TRY(requireOpen());
    TARV_TRY(source_->consume(count));
    return nullptr;
}

CError* CResourceReader::read(void* buffer, int64_t count) {
    TARV_TRY(requireOpen());
    TARV_TRY(source_->read(buffer, count));
    return nullptr;
}

CError* CResourceReader::readStreamed(void* buffer, int64_t& count) {
    TARV_TRY(requireOpen());
    TARV_TRY(source_->readStreamed(buffer, count));
    return nullptr;
}

CError* CResourceReader::getPosition(int64_t& position) {
    TARV_TRY(requireOpen());
    TARV_TRY(source_->getPosition(position));
    return nullptr;
}

CError* CResourceReader::setPosition(int64_t position) {
    TARV_TRY(requireOpen());
    TARV_TRY(source_->setPosition(position));
    return nullptr;
}

CError* CResourceReader::getSize(int64_t& size) {
    TARV_TRY(requireOpen());
    TARV_TRY(source_->getSize(size));
    return nullptr;
}

}  // namespace tarv
