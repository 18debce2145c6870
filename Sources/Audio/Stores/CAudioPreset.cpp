#include "Audio/Stores/CAudioPreset.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Audio/Stores/PackedStream.h"
#include "Core/CompressedBlock.h"
#include "Core/SystemText.h"
#include "Core/Utf8.h"

namespace tarv {

namespace {

int compareBytes(const CAudioPreset::CBytes& a, const CAudioPreset::CBytes& b) {
    const int order = std::memcmp(a.data, b.data, static_cast<size_t>(std::min(a.count, b.count)));
    return order != 0 ? order : a.count - b.count;
}

CAudioPreset::CBytes bytesOf(const std::string& text) {
    return {reinterpret_cast<const uint8_t*>(text.data()), static_cast<int32_t>(text.size())};
}

CError* writeBytes(COutputStream& stream, const CAudioPreset::CBytes& bytes) {
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(bytes.count)));
    TARV_TRY(stream.write(bytes.data, bytes.count));
    return nullptr;
}

}  // namespace

bool CAudioPreset::hasPrefix(const CString& prefix) const {
    return std::max(colon(), 0) == prefix.length() && name_.startsWith(prefix);
}

CString CAudioPreset::displayName() const {
    return name_.substring(colon() + 1);
}

void CAudioPreset::setDisplayName(const CString& displayName) {
    name_ = name_.substring(0, colon() + 1) + withinUtf8Bytes(displayName, kMaxNameBytes);
}

CAudioPreset::CBytes CAudioPreset::key(int32_t index) const {
    return keyOf(entries_[index]);
}

CAudioPreset::CBytes CAudioPreset::record(int32_t index) const {
    return {bytes_.data() + entries_[index].recordStart(), entries_[index].recordLength};
}

CString CAudioPreset::keyText(int32_t index) const {
    return CString::fromUtf8(reinterpret_cast<const char*>(key(index).data), static_cast<size_t>(key(index).count));
}

int32_t CAudioPreset::placeOf(const CBytes& wanted, bool& isThere) const {
    int32_t first = 0;
    int32_t end = entries_.count();
    // Streams are usually in order: then the place is the end.
    if (end > 0 && compareBytes(key(end - 1), wanted) < 0) {
        first = end;
    }
    while (first < end) {
        const int32_t middle = (first + end) / 2;
        if (compareBytes(key(middle), wanted) < 0) {
            first = middle + 1;
        } else {
            end = middle;
        }
    }
    isThere = first < entries_.count() && compareBytes(key(first), wanted) == 0;
    return first;
}

int32_t CAudioPreset::find(const std::string& wanted, int32_t guess) const {
    if (guess >= 0 && guess < entries_.count() && compareBytes(key(guess), bytesOf(wanted)) == 0) {
        return guess;
    }
    bool isThere = false;
    const int32_t place = placeOf(bytesOf(wanted), isThere);
    return isThere ? place : -1;
}

// The entry's key and record lie at the end of the run.
int32_t CAudioPreset::enter(const CEntry& entry) {
    bool isThere = false;
    const int32_t place = placeOf(keyOf(entry), isThere);
    if (isThere) {
        waste(entries_[place]);
        entries_[place] = entry;
    } else {
        entries_.insert(place, entry);
    }
    dropWaste();
    return place;
}

// Sorts the entries of a stream by key, and keeps the last of those with one key.
void CAudioPreset::putInOrder() {
    std::sort(entries_.begin(), entries_.end(), [this](const CEntry& a, const CEntry& b) {
        const int order = compareBytes(keyOf(a), keyOf(b));
        return order != 0 ? order < 0 : a.start < b.start;
    });
    int32_t kept = 0;
    for (int32_t i = 0; i < entries_.count(); ++i) {
        if (i + 1 < entries_.count() && compareBytes(key(i), key(i + 1)) == 0) {
            waste(entries_[i]);
        } else {
            entries_[kept++] = entries_[i];
        }
    }
    entries_.resize(kept);
    dropWaste();
}

void CAudioPreset::dropWaste() {
    if (waste_ <= bytes_.count() / 2) {
        return;
    }
    CAudioPreset compact;
    compact.copyFrom(*this);
    take(compact);
}

bool CAudioPreset::setRecord(const std::string& key, const CByteBuffer& record, int32_t& place) {
    place = find(key, place);
    if (place >= 0 && compareBytes(this->record(place), {record.data(), record.count()}) == 0) {
        return false;
    }
    const CEntry entry{bytes_.count(), static_cast<int32_t>(key.size()), record.count()};
    CBufferWriter writer(bytes_);
    TARV_CONSUME(writeBytes(writer, bytesOf(key)));
    TARV_CONSUME(writeBytes(writer, {record.data(), record.count()}));
    place = enter(entry);
    return true;
}

void CAudioPreset::removeRecord(const std::string& key) {
    const int32_t place = find(key);
    if (place >= 0) {
        waste(entries_[place]);
        entries_.removeAt(place);
    }
}

void CAudioPreset::clear() {
    bytes_.clear();
    entries_.clear();
    waste_ = 0;
}

void CAudioPreset::copyFrom(const CAudioPreset& other) {
    if (this == &other) {
        return;
    }
    name_ = other.name_;
    entries_ = other.entries_;
    waste_ = 0;
    if (other.waste_ == 0) {
        bytes_ = other.bytes_;
        return;
    }
    bytes_.clear();
    for (CEntry& entry : entries_) {
        const int32_t start = bytes_.count();
        bytes_.append(other.bytes_.data() + entry.start, entry.byteCount());
        entry.start = start;
    }
}

bool CAudioPreset::isSame(const CAudioPreset& other) const {
    bool isAlike = name_ == other.name_ && recordCount() == other.recordCount();
    if (isAlike && waste_ == 0 && other.waste_ == 0 &&
        compareBytes({bytes_.data(), bytes_.count()}, {other.bytes_.data(), other.bytes_.count()}) == 0) {
        return true;  // as copies of one stream are
    }
    for (int32_t i = 0; isAlike && i < recordCount(); ++i) {
        isAlike = compareBytes(key(i), other.key(i)) == 0 && compareBytes(record(i), other.record(i)) == 0;
    }
    return isAlike;
}

void CAudioPreset::take(CAudioPreset& other) {
    name_ = std::move(other.name_);
    bytes_ = std::move(other.bytes_);
    entries_ = std::move(other.entries_);
    waste_ = std::exchange(other.waste_, 0);
}

void CAudioPreset::swap(CAudioPreset& other) {
    CAudioPreset held;
    held.take(other);
    other.take(*this);
    take(held);
}

// Checks the bytes in place and copies them as one run.
CError* CAudioPreset::loadEntries(CMemoryReader& stream, uint32_t count) {
    if (stream.restCount() > INT32_MAX) {
        TARV_FAIL("@tarvstr_CAudioPreset_load_TooLong Preset too long (%1 bytes).",
                  CString::fromInt(stream.restCount()));
    }
    const uint8_t* first = stream.rest();
    // A damaged count must not take more memory than the stream can fill.
    const auto roomFor = static_cast<int32_t>(stream.restCount() / (2 * kLengthBytes));
    entries_.reserve(std::clamp(static_cast<int32_t>(count), 0, roomFor));
    CBytes before;
    bool isInOrder = true;
    bool hasNamelessKey = false;
    for (int32_t i = 0; i < static_cast<int32_t>(count); ++i) {
        const auto start = static_cast<int32_t>(stream.rest() - first);
        const uint8_t* keyBytes = nullptr;
        const uint8_t* recordBytes = nullptr;
        uint32_t keyLength = 0;
        uint32_t recordLength = 0;
        TARV_TRY(stream.takeString(keyBytes, keyLength));
        TARV_TRY(stream.takeValue(recordLength));
        TARV_TRY(stream.takeBytes(recordBytes, recordLength));
        const CBytes key{keyBytes, static_cast<int32_t>(keyLength)};
        isInOrder = isInOrder && (i == 0 || compareBytes(before, key) < 0);
        hasNamelessKey = hasNamelessKey || keyLength == 0;
        entries_.append({start, key.count, static_cast<int32_t>(recordLength)});
        before = key;
    }
    bytes_.append(first, static_cast<int32_t>(stream.rest() - first));
    if (hasNamelessKey) {
        clearLengthsOfNamelessKeys();
    }
    if (!isInOrder) {
        putInOrder();
    }
    return nullptr;
}

// A negative length counts as 0 and is written back as 0.
void CAudioPreset::clearLengthsOfNamelessKeys() {
    for (const CEntry& entry : entries_) {
        if (entry.keyLength == 0) {
            std::fill_n(bytes_.data() + entry.start, kLengthBytes, uint8_t{0});
        }
    }
}

CError* CAudioPreset::load(CMemoryReader& stream) {
    CAudioPreset loaded;
    TARV_TRY(loaded.loadFresh(stream));
    take(loaded);
    return nullptr;
}

// Leaves room for the prefix before the longest display name.
CError* CAudioPreset::loadName(CMemoryReader& stream) {
    constexpr uint32_t kPrefixRoom = 256;
    uint32_t length = 0;
    const uint8_t* bytes = nullptr;
    TARV_TRY(stream.takeValue(length));
    if (static_cast<int32_t>(length) < 0) {
        length = 0;
    }
    if (length > kMaxNameBytes + kPrefixRoom) {
        TARV_FAIL("@tarvstr_CAudioPreset_loadName_TooLong Preset name too long (%1 bytes).",
                  CString::fromInt(static_cast<int32_t>(length)));
    }
    TARV_TRY(stream.takeBytes(bytes, length));
    name_ = textOfUnknownEncoding(reinterpret_cast<const char*>(bytes), length);
    if (name_.length() > static_cast<int32_t>(kMaxNameBytes / kMaxUtf8Bytes)) {
        setDisplayName(displayName());
    }
    return nullptr;
}

CError* CAudioPreset::loadFresh(CMemoryReader& stream) {
    uint32_t count = 0;
    TARV_TRY(loadName(stream));
    TARV_TRY(stream.takeValue(count));
    TARV_TRY(loadEntries(stream, count));
    return nullptr;
}

CError* CAudioPreset::save(COutputStream& stream) const {
    TARV_TRY(stream.writeString(name_));
    TARV_TRY(stream.writeValue(static_cast<uint32_t>(entries_.count())));
    for (int32_t i = 0; i < entries_.count();) {
        // Writes records that lie in their order as one run.
        const int32_t start = entries_[i].start;
        int32_t end = start;
        for (; i < entries_.count() && entries_[i].start == end; ++i) {
            end += entries_[i].byteCount();
        }
        TARV_TRY(stream.write(bytes_.data() + start, end - start));
    }
    return nullptr;
}

CError* CAudioPreset::load(const CString& path) {
    TARV_TRY(loadPackedFile(path, kPresetBlockId, *this));
    return nullptr;
}

}  // namespace tarv
