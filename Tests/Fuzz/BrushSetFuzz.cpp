// Brush sets: each stamp of the version in effect lies in its table.

#include "Tests/Fuzz/GraphicsFuzz.h"
#include "UI/Resources/CBrushSet.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    readBoth<CBrushSet>(data, size, [](const CBrushSet& set) {
        for (int32_t i = 0; i < set.brushCount(); ++i) {
            const CBrush& brush = *set.getBrush(i);
            const int32_t last = brush.stampSide() * brush.stampSide() - 1;
            uint32_t sum = 0;
            for (int32_t step = 0; step < CBrush::kStamps; ++step) {
                const uint8_t* stamp = brush.stamp(step % CBrush::kSubpixels, step / CBrush::kSubpixels);
                sum += stamp[0] + stamp[last];
            }
            must(sum <= 2u * 255 * CBrush::kStamps);
        }
    });
    return 0;
}
