// Image sets: what is read is drawn without a step outside, and written with the same bytes.

#include "Tests/Fuzz/GraphicsFuzz.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    readBoth<CImageSet>(data, size, [](const CImageSet& set) {
        drawAll(set);
        for (int32_t i = 0; i < set.rangeCount(); ++i) {
            uint32_t first = 0;
            uint32_t last = 0;
            must(set.findRange(set.rangeName(i), first, last) && first <= last);
        }
    });
    return 0;
}
