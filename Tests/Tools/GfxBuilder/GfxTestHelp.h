#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "CRaster.h"
#include "CSvgSource.h"
#include "SvgPainting.h"

namespace tarv {

inline std::string svgText(const std::string& content) {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\">\n" + content +
           "\n</svg>";
}

/// One group with a box.
inline std::string svgImage(const std::string& attributes, const std::string& box, const std::string& shapes) {
    return "<g " + attributes + "><rect class=\"box\" " + box + "/>" + shapes + "</g>";
}

/// What is wrong with a drawing, or an empty text.
inline std::string svgFault(const std::string& content) {
    CSvgSource source;
    const auto failure = source.parse("a.svg", svgText(content));
    return failure ? failure->message() : std::string();
}

/// The first image of a drawing at a scale.
inline CRaster paintedFirst(const std::string& content, double scale) {
    CSvgSource source;
    CRaster raster;
    auto failure = source.parse("a.svg", svgText(content));
    if (!failure) {
        failure = paintImage(source, source.images()[0], scale, raster);
    }
    EXPECT_FALSE(failure) << failure->message();
    return raster;
}

/// Byte `part` of the pixel at x, y from the nominal top left; 0 outside of what was drawn.
inline int pixelByte(const CRaster& raster, int x, int y, int part) {
    const int column = x - raster.x, row = y - raster.y;
    if (column < 0 || row < 0 || column >= raster.drawnWidth || row >= raster.drawnHeight) {
        return 0;
    }
    return raster.pixels[static_cast<size_t>((row * raster.drawnWidth + column) * raster.bytesPerPixel + part)];
}

/// Cover of the pixel at x, y.
inline int coverAt(const CRaster& raster, int x, int y) {
    return pixelByte(raster, x, y, raster.bytesPerPixel - 1);
}

/// A folder that is there as long as this.
class CTestFolder {
public:
    CTestFolder() {
        const auto* test = testing::UnitTest::GetInstance()->current_test_info();
        path_ = std::filesystem::path(testing::TempDir()) / (std::string("tarv-gfx-") + test->name());
        std::filesystem::create_directories(path_);
    }
    ~CTestFolder() { std::filesystem::remove_all(path_); }
    /// Writes a file and gives its path.
    std::string file(const std::string& name, const std::string& text) const {
        const std::string path = (path_ / name).string();
        std::ofstream(path, std::ios::binary) << text;
        return path;
    }

private:
    std::filesystem::path path_;
};

/// The message without the folder in front of the file's name.
inline std::string withoutFolder(const std::string& message) {
    return message.substr(message.rfind('/', message.find(": error")) + 1);
}

}  // namespace tarv
