// Fonts: an image set and three measures.

#include "Tests/Fuzz/GraphicsFuzz.h"
#include "UI/Resources/CFont.h"

using namespace tarv;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    readBoth<CFont>(data, size, [](const CFont& font) {
        drawAll(font);
        must(font.getHeight() >= 0);
    });
    return 0;
}
