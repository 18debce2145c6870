#include "BrushBuilder.h"

#include <algorithm>
#include <cmath>

namespace tarv {

namespace {

constexpr double kWidthMax = 64.0;
constexpr int kSlices = 128;  // slices of a pixel; the chord of each is exact

/// Part of a pixel, 0 to 1, that a disc around the origin covers: by slices across one direction.
double sliced(double radius, double from, double low) {
    double area = 0;
    for (int i = 0; i < kSlices; ++i) {
        const double at = from + (i + 0.5) / kSlices;
        const double half = std::sqrt(std::max(0.0, radius * radius - at * at));
        area += std::max(0.0, std::min(low + 1, half) - std::max(low, -half));
    }
    return area / kSlices;
}

/// Slices both ways, so that a stamp mirrored in its diagonal is the stamp of the mirrored place.
double coverOf(double radius, double left, double top) {
    return (sliced(radius, left, top) + sliced(radius, top, left)) / 2;
}

}  // namespace

double dotWidthOf(double width, double scale) {
    return (1 + width * scale) / 2;
}

CStampTable stampsOf(double dotWidth) {
    constexpr int kSteps = 1 << kSubpixelBits;
    const double radius = dotWidth / 2;
    const int middle = static_cast<int>(std::ceil(radius));
    CStampTable table{2 * middle + 1, dotWidth, {}};
    for (int stamp = 0; stamp < kSteps * kSteps; ++stamp) {
        const double x = middle + static_cast<double>(stamp % kSteps) / kSteps;
        const double y = middle + static_cast<double>(stamp / kSteps) / kSteps;
        for (int row = 0; row < table.size; ++row) {
            for (int column = 0; column < table.size; ++column) {
                table.cover.push_back(static_cast<uint8_t>(std::lround(255 * coverOf(radius, column - x, row - y))));
            }
        }
    }
    return table;
}

CDefinitionFailure readBrushWidths(const std::string& path, std::vector<double>& widths) {
    CTextSource source;
    if (auto failure = source.load(path)) {
        return failure;
    }
    CKeySource keys;
    if (auto failure = keys.take(source, {"widths"})) {
        return failure;
    }
    std::string text;
    if (auto failure = keys.getText("widths", text)) {
        return failure;
    }
    const CTextLine& line = *keys.find("widths");
    for (size_t i = 2; i < line.words.size(); ++i) {
        double width = 0;
        if (!parseNumber(line.words[i], width) || width < 0 || width > kWidthMax ||
            (!widths.empty() && width <= widths.back())) {
            return CDefinitionError{line.place, "a width is a number from 0 to 64 above the one in front of it, not '" +
                                                    line.words[i] + "'"};
        }
        widths.push_back(width);
    }
    return std::nullopt;
}

}  // namespace tarv
