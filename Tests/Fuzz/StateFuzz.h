#pragma once

#include "Audio/Stores/CAudioPresetBank.h"
#include "Tests/Fuzz/FuzzTools.h"

namespace tarv {

template <class T>
CByteBuffer writtenStream(const T& stored) {
    CByteBuffer bytes;
    CBufferWriter writer(bytes);
    mustSucceed(stored.save(writer));
    return bytes;
}

/// Reads the bytes as a stream of that kind: on failure `before` is as it was, and what is read whole comes back byte
/// for byte after a second way through the writer.
template <class T>
void readStream(const uint8_t* data, size_t size, T& before) {
    const CByteBuffer former = writtenStream(before);
    CMemoryReader reader(data, static_cast<uint32_t>(size));
    if (isFailure(before.load(reader))) {
        must(sameBytes(writtenStream(before), former));
        return;
    }
    const CByteBuffer first = writtenStream(before);
    T again;
    CMemoryReader second(first.data(), static_cast<uint32_t>(first.count()));
    mustSucceed(again.load(second));
    must(sameBytes(writtenStream(again), first));
}

}  // namespace tarv
