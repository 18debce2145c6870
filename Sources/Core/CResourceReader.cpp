#include "Core/CResourceReader.h"

#include <map>

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

CError* CResourceReader::open(const CString& name, CInputStream*& stream) {
    stream = nullptr;
    CResourceMap::CRange range;
    if (CResourceMap::find(name, range)) {
        stream = new CMemoryReader(range.bytes, range.size);
        return nullptr;
    }
    TARV_FAIL("@tarvstr_CResourceReader_open_NoFile Resource '%1' does not exist.", name);
}

}  // namespace tarv
