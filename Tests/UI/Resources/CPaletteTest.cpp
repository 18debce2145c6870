#include "UI/Resources/CPalette.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Tests/UI/Resources/DamageHelp.h"

namespace tarv {
namespace {

constexpr uint64_t kHuge = 0xffffffff;

std::vector<CPixel> rampOf(uint32_t seed) {
    std::vector<CPixel> ramp;
    for (uint32_t i = 0; i < 256; ++i) {
        ramp.push_back((i << 16 | (i ^ seed) << 8 | (255 - i)) & 0xffffff);
    }
    return ramp;
}

void add(CPalette& palette, const std::string& name, double opacity = 1.0) {
    EXPECT_GOOD(palette.addColor(name.c_str(), opacity, rampOf(static_cast<uint32_t>(palette.colorCount())).data()));
}

void fill(CPalette& palette) {
    for (const char* name : {"Text", "Alarm", "Button_Hover", "Button", "Alarm_Active", "Bypass"}) {
        add(palette, name);
    }
    add(palette, "WindowBlocker", 0.5);
    for (int32_t frame = 0; frame < 32; ++frame) {
        add(palette, "Alarm_Active|" + std::to_string(frame));
        add(palette, "Alarm|" + std::to_string(frame));
    }
    EXPECT_GOOD(palette.setFrameCount("Alarm_Active", 32));
    EXPECT_GOOD(palette.setFrameCount("Alarm", 32));
    EXPECT_GOOD(palette.setFrameCount("Bypass", 32));
}

/// Name of what a view of that colour gets; "-" for nothing.
std::string nameFor(const CPalette& palette, const char* base, const char* state, uint32_t frame = 0) {
    const CColor* color = palette.findColor(base, state, frame);
    return color ? color->name.toUtf8() : "-";
}

CFileBuilder goodPalette() {
    CFileBuilder file;
    file.mark("version").value(1).mark("colors").value(2);
    for (const char* name : {"A", "B"}) {
        file.mark(std::string("name ") + name).text(name).mark(std::string("opacity ") + name).number(0.75);
        for (int32_t channel = 0; channel < 3; ++channel) {
            for (int32_t i = 0; i < 256; ++i) {
                file.bits(static_cast<uint64_t>(i * (channel + 1) & 255), 1);
            }
        }
    }
    file.mark("frame tables").value(2).mark("frames A").text("A").mark("frame count").value(32);
    file.text("B").value(4);
    return file;
}

TEST(Palette, FindsColorsByTheirWholeName) {
    CPalette palette;
    fill(palette);
    EXPECT_EQ(palette.findColor("Button")->name.toUtf8(), "Button");
    EXPECT_EQ(palette.findColor("Butto"), nullptr);
    EXPECT_EQ(palette.findColor("button"), nullptr);
    EXPECT_EQ(palette.findColor(""), nullptr);
    EXPECT_EQ(palette.findColor("WindowBlocker")->opacity, 0.5);
    EXPECT_EQ(palette.findColor("Text")->ramp[255], rampOf(0)[255]);
    EXPECT_EQ(palette.findColor("Text")->full(), rampOf(0)[255]);
}

TEST(Palette, CountsTheFramesOfAColorAndZeroForOthers) {
    CPalette palette;
    fill(palette);
    EXPECT_EQ(palette.getFrameCount("Alarm"), 32u);
    EXPECT_EQ(palette.getFrameCount("Alarm_Active"), 32u);
    EXPECT_EQ(palette.getFrameCount("Alarm_Hover"), 0u);
    EXPECT_EQ(palette.getFrameCount("Text"), 0u);
}

TEST(Palette, LooksUpBaseStateAndFrameAndFallsBackToTheBase) {
    CPalette palette;
    fill(palette);
    EXPECT_EQ(nameFor(palette, "Button", ""), "Button");
    EXPECT_EQ(nameFor(palette, "Button", "Hover"), "Button_Hover");
    EXPECT_EQ(nameFor(palette, "Button", "Active"), "Button") << "a base need not have all states";
    EXPECT_EQ(nameFor(palette, "Button", "", 5), "Button") << "no frames";
    EXPECT_EQ(nameFor(palette, "Alarm", "", 0), "Alarm|0");
    EXPECT_EQ(nameFor(palette, "Alarm", "", 31), "Alarm|31");
    EXPECT_EQ(nameFor(palette, "Alarm", "", 32 * 5 + 8), "Alarm|8") << "frames go round";
    EXPECT_EQ(nameFor(palette, "Alarm", "Active", 8), "Alarm_Active|8");
    EXPECT_EQ(nameFor(palette, "Alarm", "Hover", 8), "Alarm") << "the base alone, without a frame";
    EXPECT_EQ(nameFor(palette, "Bypass", "", 3), "Bypass") << "the table lists frames that are not there";
    EXPECT_EQ(nameFor(palette, "Nothing", ""), "-");
    EXPECT_EQ(nameFor(palette, "Nothing", "Hover", 2), "-");
}

TEST(Palette, StoresRedThenGreenThenBlue) {
    CPalette palette;
    ASSERT_EQ(messageOf(readSet(palette, goodPalette().file())), "");
    EXPECT_EQ(palette.colorCount(), 2);
    EXPECT_EQ(palette.findColor("A")->ramp[100], static_cast<CPixel>(100 << 16 | 200 << 8 | (300 & 255)));
    EXPECT_EQ(palette.findColor("B")->opacity, 0.75);
    EXPECT_EQ(palette.getFrameCount("B"), 4u);
}

TEST(Palette, ReadsWhatItWroteAndWritesItAgain) {
    CPalette palette;
    fill(palette);
    const CBytes bytes = written(palette);
    EXPECT_EQ(palette.getSize(), static_cast<int64_t>(bytes.size()));
    CPalette again;
    ASSERT_EQ(messageOf(readSet(again, bytes)), "");
    EXPECT_EQ(written(again), bytes);
    for (int32_t i = 0; i < palette.colorCount(); ++i) {
        EXPECT_EQ(again.color(i).name, palette.color(i).name);
        EXPECT_TRUE(std::equal(again.color(i).ramp, again.color(i).ramp + 256, palette.color(i).ramp));
        if (i > 0) {
            EXPECT_LT(palette.color(i - 1).name, palette.color(i).name);
        }
    }
}

TEST(Palette, RefusesWhatItCanNotStore) {
    CPalette palette;
    fill(palette);
    const auto ramp = rampOf(1);
    EXPECT_NE(messageOf(palette.addColor("Text", 1.0, ramp.data())), "");
    EXPECT_NE(messageOf(palette.addColor("New", 1.01, ramp.data())), "");
    EXPECT_NE(messageOf(palette.addColor("New", -0.01, ramp.data())), "");
    EXPECT_NE(messageOf(palette.addColor("New", NAN, ramp.data())), "");
    EXPECT_NE(messageOf(palette.addColor(u"\x3b1", 1.0, ramp.data())), "");
    EXPECT_NE(messageOf(palette.setFrameCount("Alarm", 3)), "");
    EXPECT_NE(messageOf(palette.setFrameCount("Text", 0)), "");
    EXPECT_EQ(palette.findColor("New"), nullptr);
}

TEST(DamagedPalette, IsAnErrorWhereverItIsCut) {
    expectStrictReading<CPalette>(goodPalette());
}

TEST(DamagedPalette, NamesTheFault) {
    expectDamages<CPalette>(goodPalette(),
                            {
                                {"version", 3, 4, "Unsupported data set version 3 (before byte 8)."},
                                {"colors", kHuge, 4, "can't be held"},
                                {"colors", 3, 4, "can't be held"},
                                {"name A", kHuge, 4, "can't be held"},
                                {"name A", 'B', 1, "Name 'B' before byte 798 does not stand behind 'B'", 4},
                                {"opacity A", std::bit_cast<uint64_t>(1.5), 8, "is not in 0.00 to 1.00"},
                                {"opacity A", std::bit_cast<uint64_t>(-0.5), 8, "is not in 0.00 to 1.00"},
                                {"opacity B", std::bit_cast<uint64_t>(std::nan("")), 8, "is not in 0.00 to 1.00"},
                                {"frame tables", kHuge, 4, "can't be held"},
                                {"frame tables", 1, 4, "bytes are left"},
                                {"frames A", 'C', 1, "does not stand behind 'C'", 4},
                                {"frame count", 0, 4, "Color 'A' before byte 1587 has no frames."},
                            });
}

}  // namespace
}  // namespace tarv
