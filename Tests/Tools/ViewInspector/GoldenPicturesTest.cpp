// The editor looks as it did, pixel by pixel: few pictures that hold each window, palette and scale. Drawing is in
// whole numbers, so that there is no tolerance.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "ProductPictures.h"
#include "Tests/TestPaths.h"
#include "ViewPicture.h"

namespace tarv {

namespace {

namespace fs = std::filesystem;

constexpr uint32_t kDifferent = 0xff00ff;

constexpr CProductPicture kPictures[] = {
    {"main-flat", 1.0, "Default"},
    {"main-extreme", 1.25, "Default"},
    {"main-curves", 0.8, "Military"},
    {"main-bypass", 0.8, "Red"},
    {"main-no-engine", 1.0, "Default"},
    {"main-ten-bands", 0.8, "Blue"},
    {"main-hover", 0.8, "Green"},
    {"main-eight-groups", 0.8, "Default"},
    {"main-long-names", 1.0, "Default"},
    {"menu-presets", 1.0, "Default", true},
    {"menu-copy-to-names", 1.25, "Green", true},
    {"edit-name", 0.8, "Default", true},
    {"edit-value", 1.0, "Red", true},
    {"window-settings", 1.25, "Default", true},
    {"window-settings-focus", 1.0, "Blue", true},
    {"window-global-settings", 1.0, "Military", true},
    {"window-confirmation", 1.0, "Red", true},
    {"window-message", 1.0, "Blue", true},
    {"window-channel-routing-eight", 1.0, "Default", true},
    {"window-channel-names", 0.8, "Green", true},
    {"window-group-names", 1.0, "Default", true},
    {"window-preset-manager", 1.0, "Default", true},
    {"window-routing-presets", 0.8, "Blue", true},
    {"tablet-menu-copy-to", 1.0, "Default", true},
    {"tablet-window-preset-manager", 0.8, "Green", true},
};

fs::path goldenFolder() {
    return fs::path(kSourceFolder) / "Tests/GoldenPictures";
}

bool isRenewing() {
    return std::getenv("TARV_RENEW_PICTURES") != nullptr;
}

/// The new picture in half its light, and what differs at full.
CPictureByHand differenceOf(const CPictureByHand& golden, const CPictureByHand& drawn, int32_t& count) {
    CPictureByHand difference = drawn;
    count = 0;
    for (int32_t y = 0; y < drawn.height; ++y) {
        for (int32_t x = 0; x < drawn.width; ++x) {
            const bool isSame = x < golden.width && y < golden.height && golden.at(x, y) == (drawn.at(x, y) & 0xffffff);
            difference.at(x, y) = isSame ? drawn.at(x, y) >> 1 & 0x7f7f7f : kDifferent;
            count += isSame ? 0 : 1;
        }
    }
    return difference;
}

void expectAsKept(const CProductPicture& what, const CPictureByHand& drawn) {
    const fs::path kept = goldenFolder() / what.fileName();
    CPictureByHand golden;
    ASSERT_TRUE(readPng(kept.string(), golden)) << kept << " is missing";
    int32_t count = 0;
    const CPictureByHand difference = differenceOf(golden, drawn, count);
    if (count > 0 || golden.width != drawn.width || golden.height != drawn.height) {
        const fs::path folder = fs::path(kSourceFolder) / "build/golden-pictures";
        fs::create_directories(folder);
        const std::string now = (folder / what.fileName()).string();
        EXPECT_TRUE(writePng(drawn, now));
        EXPECT_TRUE(writePng(difference, now + ".difference.png"));
        ADD_FAILURE() << count << " pixels of " << what.fileName() << " differ: see " << now;
    }
}

TEST(GoldenPictures, TheEditorLooksAsItDid) {
    for (const CProductPicture& what : kPictures) {
        CPictureByHand drawn;
        ASSERT_EQ(drawProduct(what, drawn), "");
        if (isRenewing()) {
            ASSERT_TRUE(writePng(drawn, (goldenFolder() / what.fileName()).string()));
        } else {
            expectAsKept(what, drawn);
        }
    }
}

TEST(GoldenPictures, NoneIsLeftOver) {
    size_t files = 0;
    for (const auto& entry : fs::directory_iterator(goldenFolder())) {
        files += entry.path().extension() == ".png" ? 1 : 0;
    }
    EXPECT_EQ(files, std::size(kPictures));
}

TEST(GoldenPictures, ADifferenceIsFoundInASinglePixel) {
    const CPictureByHand golden(3, 2, 0x102030);
    CPictureByHand drawn = golden;
    int32_t count = -1;
    (void)differenceOf(golden, drawn, count);
    EXPECT_EQ(count, 0);
    drawn.at(2, 1) ^= 1;
    const CPictureByHand difference = differenceOf(golden, drawn, count);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(difference.at(2, 1), kDifferent);
    EXPECT_EQ(difference.at(0, 0), 0x081018u);
}

TEST(GoldenPictures, AFileGivesThePixelsThatItWasWrittenFrom) {
    CPictureByHand picture(5, 3, 0);
    for (int32_t i = 0; i < 15; ++i) {
        picture.pixels[static_cast<size_t>(i)] = 0x010203u * static_cast<uint32_t>(i * 5);
    }
    const std::string path = (fs::temp_directory_path() / "tarv-picture.png").string();
    ASSERT_TRUE(writePng(picture, path));
    CPictureByHand read;
    ASSERT_TRUE(readPng(path, read));
    EXPECT_EQ(read, picture);
    fs::remove(path);
    EXPECT_FALSE(readPng(path, read));
    EXPECT_FALSE(writePng(picture, "/no/such/folder/picture.png"));
}

}  // namespace

}  // namespace tarv
