// The record of a parameter's value: damage ends in a message and leaves the value alone; what is read whole comes back
// byte for byte after a second way through the writer.

#include "Audio/Parameters/CAudioParamStorage.h"
#include "Tests/Fuzz/FuzzTools.h"

using namespace tarv;

namespace {

CByteBuffer written(const CAudioParamInfo& info, const CAudioParamData& data) {
    CMemoryWriteBuffer stream;
    mustSucceed(CAudioParamStorage::save(stream, info, data));
    CByteBuffer bytes;
    stream.copyTo(bytes);
    return bytes;
}

void readAs(int32_t elementSize, bool isString, const uint8_t* bytes, size_t size) {
    CAudioParamInfo info;
    info.setShape(elementSize, isString, 0);
    CAudioParamData data;
    data.resetWithDefaults(info, 0, 3);
    const CByteBuffer before = written(info, data);
    CMemoryReader reader(bytes, static_cast<uint32_t>(size));
    if (isFailure(CAudioParamStorage::load(reader, info, data))) {
        must(sameBytes(written(info, data), before));
        return;
    }
    const CByteBuffer first = written(info, data);
    CMemoryReader second(first.data(), static_cast<uint32_t>(first.count()));
    mustSucceed(CAudioParamStorage::load(second, info, data));
    must(sameBytes(written(info, data), first));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    readAs(1, false, data, size);
    readAs(2, false, data, size);
    readAs(1, true, data, size);
    return 0;
}
