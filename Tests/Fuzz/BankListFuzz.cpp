// The stream of the banks that instances share: whole or not at all.

#include "Audio/Stores/CAudioBankList.h"
#include "Tests/Fuzz/StateFuzz.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CAudioBankList list;
    list.insert(0, CAudioPresetBank("one"));
    readStream(data, size, list);
    return 0;
}
