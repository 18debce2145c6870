// The stream of a preset: whole or not at all, its keys in order.

#include <string_view>

#include "Tests/Fuzz/StateFuzz.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CAudioPreset preset("TAEQ:before");
    CByteBuffer record;
    record.append(7);
    preset.setRecord("key", record);
    readStream(data, size, preset);
    for (int32_t i = 0; i < preset.recordCount(); ++i) {
        const CAudioPreset::CBytes key = preset.key(i);
        must(i == 0 || std::string_view(reinterpret_cast<const char*>(preset.key(i - 1).data),
                                        static_cast<size_t>(preset.key(i - 1).count)) <
                           std::string_view(reinterpret_cast<const char*>(key.data), static_cast<size_t>(key.count)));
    }
    return 0;
}
