#include "UI/Resources/CImageVersion.h"

#include <gtest/gtest.h>

#include "Tests/UI/Resources/DataSetHelp.h"

namespace tarv {
namespace {

/// The block of a version as it stands in the file.
CBytes blockOf(const CImageVersion& version) {
    CByteBuffer buffer;
    CBufferWriter writer(buffer);
    EXPECT_GOOD(version.write(writer));
    constexpr int32_t kFields = 36;
    return CBytes(buffer.begin() + kFields, buffer.end());
}

CImageVersion& encoded(CImageVersion& version, const CBytes& pixels, int32_t width, int32_t height,
                       int32_t bytesPerPixel, int32_t x = 0, int32_t y = 0) {
    EXPECT_GOOD(version.encode(pixels.data(), width, height, bytesPerPixel, x, y));
    return version;
}

TEST(ImageVersion, CodesEachRunByItsKindWithAShortOrALongHeader) {
    CImageVersion version;
    // Alpha alone: 2 transparent between an opaque and a half one, then 40 opaque.
    CBytes pixels = {255, 0, 0, 100};
    pixels.insert(pixels.end(), 40, 255);
    encoded(version, pixels, 44, 1, 1);
    const CBytes expected = {1,      0, 6, 0, 0, 0, 1 << 3 | 2, 2 << 3 | 0, 1 << 3 | 1, 100, (40 << 3 | 2 | 4) & 255,
                             40 >> 5};
    EXPECT_EQ(blockOf(version), expected);
}

TEST(ImageVersion, LeavesOutTheAlphaOfOpaquePixels) {
    CImageVersion version;
    EXPECT_EQ(blockOf(encoded(version, {7, 255, 8, 255, 9, 3}, 3, 1, 2)),
              (CBytes{1, 0, 6, 0, 0, 0, 2 << 3 | 2, 7, 8, 1 << 3 | 1, 9, 3}));
    EXPECT_EQ(blockOf(encoded(version, {1, 2, 3, 255, 4, 5, 6, 7}, 2, 1, 4)),
              (CBytes{1, 0, 6, 0, 0, 0, 1 << 3 | 2, 1, 2, 3, 1 << 3 | 1, 4, 5, 6, 7}));
}

TEST(ImageVersion, StoresAGapBetweenAlphasWithThemWhenThatTakesNoMoreBytes) {
    CImageVersion version;
    // One and two transparent pixels are, three are not; beside an opaque one they are not either.
    EXPECT_EQ(
        blockOf(encoded(version, {5, 0, 6, 0, 0, 7, 0, 0, 0, 8, 0, 255}, 12, 1, 1)),
        (CBytes{1, 0, 6, 0, 0, 0, 6 << 3 | 1, 5, 0, 6, 0, 0, 7, 3 << 3 | 0, 1 << 3 | 1, 8, 1 << 3 | 0, 1 << 3 | 2}));
    // With two bytes a pixel one is.
    EXPECT_EQ(blockOf(encoded(version, {1, 5, 2, 0, 3, 6, 0, 0, 0, 0, 4, 7}, 6, 1, 2)),
              (CBytes{1, 0, 6, 0, 0, 0, 3 << 3 | 1, 1, 5, 2, 0, 3, 6, 2 << 3 | 0, 1 << 3 | 1, 4, 7}));
}

TEST(ImageVersion, SplitsARunThatIsTooLongForOneHeader) {
    CImageVersion version;
    encoded(version, CBytes(8191 + 31 + 8192, 255), 8191 + 31 + 8192, 1, 1);
    const CBytes block = blockOf(version);
    EXPECT_EQ(block, (CBytes{1, 0, 6, 0, 0, 0, 0xfe, 0xff, 0xfe, 0xff, (32 << 3 | 6) & 255, 1}));
}

TEST(ImageVersion, CutsOffWhatIsTransparentAndKeepsTheNominalSize) {
    CImageVersion version;
    version.setSize(4, 3);
    CBytes pixels(6 * 5, 0);
    pixels[1 * 6 + 2] = 9;
    pixels[3 * 6 + 4] = 9;
    encoded(version, pixels, 6, 5, 1, -3, -2);
    EXPECT_EQ(version.width(), 4);
    EXPECT_EQ(version.height(), 3);
    EXPECT_EQ(version.x(), -1);
    EXPECT_EQ(version.y(), -1);
    EXPECT_EQ(version.storedWidth(), 3);
    EXPECT_EQ(version.storedHeight(), 3);
    EXPECT_NE(version.row(0), nullptr);
    EXPECT_EQ(version.row(1), nullptr);
    EXPECT_EQ(decoded(version, 1), (CBytes{9, 0, 0, 0, 0, 0, 0, 0, 9}));
}

TEST(ImageVersion, OfNothingStoresNoRow) {
    CImageVersion version;
    encoded(version, CBytes(12, 0), 4, 3, 1);
    EXPECT_EQ(version.storedWidth(), 0);
    EXPECT_EQ(version.storedHeight(), 0);
    EXPECT_EQ(blockOf(version), (CBytes{0, 0}));
}

TEST(ImageVersion, StoresRowsThatAreAlikeOnce) {
    CImageVersion version;
    encoded(version, {5, 6, 7, 8, 5, 6, 5, 6}, 2, 4, 1);
    EXPECT_EQ(version.row(0), version.row(2));
    EXPECT_EQ(version.row(0), version.row(3));
    EXPECT_NE(version.row(0), version.row(1));
    EXPECT_EQ(decoded(version, 1), (CBytes{5, 6, 7, 8, 5, 6, 5, 6}));
}

TEST(ImageVersion, DecodesToWhatWasCoded) {
    for (const int32_t bytesPerPixel : {1, 2, 4}) {
        for (uint32_t seed = 0; seed < 40; ++seed) {
            const int32_t width = 1 + static_cast<int32_t>(seed * 7 % 90);
            CBytes pixels = randomPixels(width, 9, bytesPerPixel, seed);
            // Corners that are seen, so that nothing is cut off.
            pixels[static_cast<size_t>(bytesPerPixel) - 1] = 255;
            pixels.back() = 255;
            CImageVersion version;
            encoded(version, pixels, width, 9, bytesPerPixel);
            EXPECT_EQ(decoded(version, bytesPerPixel), pixels) << bytesPerPixel << ' ' << seed;
        }
    }
}

TEST(ImageVersion, RefusesPicturesThatCanNotBeStored) {
    CImageVersion version;
    const CBytes pixels(16, 255);
    for (const auto& [width, height, bytes, x, y] : std::vector<std::array<int32_t, 5>>{{-1, 1, 1, 0, 0},
                                                                                        {1, -1, 1, 0, 0},
                                                                                        {65536, 0, 1, 0, 0},
                                                                                        {0, 65536, 1, 0, 0},
                                                                                        {1, 1, 3, 0, 0},
                                                                                        {1, 1, 0, 0, 0},
                                                                                        {1, 1, 1, 65536, 0},
                                                                                        {1, 1, 1, 0, -65536}}) {
        EXPECT_NE(messageOf(version.encode(pixels.data(), width, height, bytes, x, y)).find("not stored"),
                  std::string::npos);
    }
}

}  // namespace
}  // namespace tarv
