// Draws what the builder made, by the product's own reader and blender: `GfxSheets FOLDER OUT [SCALE]`.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "Sheets.h"

using namespace tarv;

namespace {

constexpr double kScales[] = {0.8, 1.0, 1.25};
constexpr const char* kPalettes[] = {"Default", "Military", "Red", "Blue", "Green"};

std::vector<std::string> namesIn(const std::string& folder, const std::string& extension) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == extension) {
            names.push_back(entry.path().stem().string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool writeAll(CSheetResources& resources, const std::string& out) {
    char scale[16];
    std::snprintf(scale, sizeof(scale), "%.2f", resources.scale());
    const std::string end = std::string("@") + scale + ".png";
    bool isGood = writeFrameSheet(resources, out + "/frames" + end);
    for (const std::string& name : namesIn(resources.folder() + "/Imagesets", ".is")) {
        isGood = writeImageSheet(resources, name, out + "/is." + name + end) && isGood;
    }
    for (const std::string& name : namesIn(resources.folder() + "/Fonts", ".fnt")) {
        isGood = writeFontSheet(resources, name, out + "/font." + name + end) && isGood;
    }
    for (const char* palette : kPalettes) {
        isGood = writePaletteSheet(resources, palette, out + "/pal." + palette + end) && isGood;
        isGood = writeBarSheet(resources, palette, out + "/bars." + palette + end) && isGood;
    }
    return isGood;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3 || argc > 4) {
        std::fprintf(stderr, "GfxSheets FOLDER OUT [SCALE]: sheets of the graphics in FOLDER as PNG files in OUT\n");
        return 2;
    }
    std::filesystem::create_directories(argv[2]);
    for (const double scale : kScales) {
        if (argc == 4 && std::atof(argv[3]) != scale) {
            continue;
        }
        CSheetResources resources(argv[1], scale);
        if (!writeAll(resources, argv[2])) {
            std::fprintf(stderr, "GfxSheets: cannot write to %s\n", argv[2]);
            return 1;
        }
    }
    return 0;
}
