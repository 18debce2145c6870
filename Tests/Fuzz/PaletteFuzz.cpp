// Palettes: each colour is found by its name, and with any state and frame there is at least the base.

#include "Tests/Fuzz/GraphicsFuzz.h"
#include "UI/Resources/CPalette.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    readBoth<CPalette>(data, size, [](const CPalette& palette) {
        for (int32_t i = 0; i < palette.colorCount(); ++i) {
            const CColor& color = palette.color(i);
            must(palette.findColor(color.name) == &color);
            must(palette.findColor(color.name, "Hover", static_cast<uint32_t>(i)) != nullptr);
            must(color.opacity >= 0.0 && color.opacity <= 1.0);
        }
        for (int32_t i = 0; i < palette.frameTableCount(); ++i) {
            must(palette.getFrameCount(palette.frameTableName(i)) > 0);
        }
    });
    return 0;
}
