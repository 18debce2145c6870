// The stream of a list of presets: whole or not at all.

#include "Tests/Fuzz/StateFuzz.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CAudioPresetList list;
    list.append().setName("TAIO:one");
    readStream(data, size, list);
    return 0;
}
