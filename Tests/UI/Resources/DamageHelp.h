#pragma once

#include <gtest/gtest.h>

#include <functional>

#include "Core/CHeap.h"
#include "Tests/UI/Resources/DataSetHelp.h"

namespace tarv {

/// A field of a good file that gets another value, and words of the error that has to come of it.
struct CDamage {
    const char* mark;
    uint64_t value;
    int32_t bytes;
    const char* words;
    size_t skip = 0;  ///< bytes behind the mark
};

inline CBytes damaged(const CFileBuilder& good, const CDamage& damage) {
    CBytes file = good.file();
    for (int32_t i = 0; i < damage.bytes; ++i) {
        file[good.offsetOf(damage.mark) + damage.skip + static_cast<size_t>(i)] =
            static_cast<uint8_t>(damage.value >> (8 * i));
    }
    return file;
}

inline void setSizeField(CBytes& file) {
    const auto size = static_cast<uint32_t>(file.size() - sizeof(uint32_t));
    toLittleEndian(size, file.data());
}

/// Reads into a set that held something: an error leaves it empty, as a new one, and takes no memory beyond what the
/// file has. What is read is written with the same bytes.
template <class T>
std::string readDamaged(const CBytes& file, const CBytes& good) {
    T set;
    EXPECT_GOOD(readSet(set, good));
    CHeap::resetPeak();
    const uint64_t before = CHeap::counters().peakPlatformBytes;
    const std::string message = messageOf(readSet(set, file));
    // What the pool takes at a time, and the few bytes that stand for an entry, are held against what is there.
    constexpr uint64_t kRoom = 1 << 18;
    EXPECT_LE(CHeap::counters().peakPlatformBytes, before + kRoom + 64 * file.size());
    if (!message.empty()) {
        EXPECT_EQ(written(set), written(T())) << message;
    } else {
        EXPECT_EQ(written(set), file);
        EXPECT_EQ(set.getSize(), static_cast<int64_t>(file.size()));
    }
    return message;
}

template <class T>
void expectDamages(const CFileBuilder& good, const std::vector<CDamage>& damages) {
    for (const CDamage& damage : damages) {
        EXPECT_NE(readDamaged<T>(damaged(good, damage), good.file()).find(damage.words), std::string::npos)
            << damage.mark << " = " << damage.value << ": " << readDamaged<T>(damaged(good, damage), good.file());
    }
}

/// What holds for damage of any kind, whatever the format.
template <class T>
void expectStrictReading(const CFileBuilder& good) {
    const CBytes file = good.file();
    ASSERT_EQ(readDamaged<T>(file, file), "");
    for (size_t length = 0; length < file.size(); ++length) {
        CBytes cut(file.begin(), file.begin() + static_cast<int64_t>(length));
        EXPECT_NE(readDamaged<T>(cut, file), "") << "cut at " << length;
        if (length >= sizeof(uint32_t)) {
            setSizeField(cut);
            EXPECT_NE(readDamaged<T>(cut, file), "") << "ends at " << length;
        }
    }
    CBytes longer = file;
    longer.push_back(0);
    setSizeField(longer);
    EXPECT_NE(readDamaged<T>(longer, file).find("bytes are left"), std::string::npos);
    // Size and version: no bit may differ. Elsewhere a bit may make another good file, which is kept as it is.
    for (size_t bit = 0; bit < file.size() * 8; ++bit) {
        CBytes flipped = file;
        flipped[bit / 8] = static_cast<uint8_t>(flipped[bit / 8] ^ 1 << bit % 8);
        const std::string message = readDamaged<T>(flipped, file);
        EXPECT_TRUE(bit >= 64 || !message.empty()) << "bit " << bit;
    }
}

/// Each failure names its place: the text of an error and all its location lines.
template <class T>
std::string wholeError(const CBytes& file) {
    T set;
    CError* error = readSet(set, file);
    const std::string text = error ? error->joined().toUtf8() : std::string();
    delete error;
    return text;
}

}  // namespace tarv
