// The stream of a bank: whole or not at all.

#include "Tests/Fuzz/StateFuzz.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    CAudioPresetBank bank("before");
    bank.append().setName("TAEQ:one");
    bank.append().setName("TAEQ:two");
    bank.select(1);
    readStream(data, size, bank);
    must(bank.selectedIndex() == 0 || bank.selectedIndex() < bank.count());
    return 0;
}
