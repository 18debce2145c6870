#pragma once

// Macros, since the version resource of the Windows library is made from them too.
// NOLINTBEGIN
#define TARV_PRODUCT_VENDOR "Tarvelo"
#define TARV_PRODUCT_NAME "Brindle XEQ"
#define TARV_PRODUCT_FILE "BrindleXEQ.dll"
#define TARV_PRODUCT_DESCRIPTION "Harmonically-enhanced 7-band equalizer."
#define TARV_PRODUCT_COPYRIGHT "Copyright (c) 2026 Tarvelo"
#define TARV_PRODUCT_VERSION_MAJOR 1
#define TARV_PRODUCT_VERSION_MINOR 8
#define TARV_PRODUCT_VERSION_TEXT "1.8"
// NOLINTEND
