#include "CRenderOptions.h"

#include <gtest/gtest.h>

namespace tarv::host {
namespace {

bool parse(std::vector<const char*> words, CRenderOptions& options, std::string& error) {
    words.insert(words.begin(), "Renderer");
    return parseOptions(static_cast<int>(words.size()), words.data(), options, error);
}

TEST(CRenderOptions, AllOptionsAreRead) {
    CRenderOptions o;
    std::string error;
    ASSERT_TRUE(parse({"--plugin",    "x.so", "--channels", "6",        "--rate", "44100.5",    "--block",        "7",
                       "--precision", "32",   "--set",      "A=+3dB",   "--at",   "1.5:B=0.5",  "--oversampling", "4x",
                       "--tail",      "2",    "--progress", "--expect", "9.5",    "--realtime", "--list"},
                      o, error))
        << error;
    EXPECT_EQ(o.plugin, "x.so");
    EXPECT_EQ(o.channels, 6);
    EXPECT_EQ(o.rate, 44100.5);
    EXPECT_EQ(o.block, 7);
    EXPECT_EQ(o.precision, 32);
    ASSERT_EQ(o.settings.size(), 2u);
    EXPECT_EQ(o.settings[0].name + "|" + o.settings[0].value, "A|+3dB");
    EXPECT_EQ(o.settings[1].name + "|" + o.settings[1].value, "Oversmp|4x");
    ASSERT_EQ(o.changes.size(), 1u);
    EXPECT_EQ(o.changes[0].seconds, 1.5);
    EXPECT_EQ(o.changes[0].name + "|" + o.changes[0].value, "B|0.5");
    EXPECT_EQ(o.tail, 2.0);
    EXPECT_EQ(o.expected, 9.5);
    EXPECT_TRUE(o.isProgress && o.isRealtime && o.isList && !o.isRandom);
}

TEST(CRenderOptions, StatesAreNamed) {
    CRenderOptions o;
    std::string error;
    ASSERT_TRUE(parse({"x.so", "--load", "a.cbf", "--preset", "Boom Box", "--save", "b", "--save-bank", "c",
                       "--no-audio", "--list-presets"},
                      o, error))
        << error;
    EXPECT_EQ(o.load + "|" + o.preset + "|" + o.save + "|" + o.saveBank, "a.cbf|Boom Box|b|c");
    EXPECT_TRUE(o.isSilent && o.isPresetList && !o.isList);
}

TEST(CRenderOptions, ThePluginMayStandWithoutItsOption) {
    CRenderOptions o;
    std::string error;
    ASSERT_TRUE(parse({"x.so", "--block", "random:12"}, o, error)) << error;
    EXPECT_EQ(o.plugin, "x.so");
    EXPECT_TRUE(o.isRandom);
    EXPECT_EQ(o.seed, 12u);
    EXPECT_EQ(o.block, 4096);
}

TEST(CRenderOptions, WhatIsWrongIsNamed) {
    const struct {
        std::vector<const char*> words;
        const char* error;
    } cases[] = {
        {{}, "which plug-in?"},
        {{"x", "y"}, "unknown option 'y'"},
        {{"x", "--loud"}, "unknown option '--loud'"},
        {{"x", "--rate"}, "--rate needs a rate from 1000 to 1e7 Hz"},
        {{"x", "--rate", "44k"}, "--rate needs a rate from 1000 to 1e7 Hz, not '44k'"},
        {{"x", "--rate", "nan"}, "--rate needs a rate from 1000 to 1e7 Hz, not 'nan'"},
        {{"x", "--channels", "0"}, "--channels needs a number from 1 to 32, not '0'"},
        {{"x", "--channels", "1.5"}, "--channels needs a number from 1 to 32, not '1.5'"},
        {{"x", "--block", "0"}, "--block needs a number of frames from 1 to 1048576, or random:SEED, not '0'"},
        {{"x", "--block", "random:"},
         "--block needs a number of frames from 1 to 1048576, or random:SEED, not 'random:'"},
        {{"x", "--precision", "48"}, "--precision needs 32 or 64, not '48'"},
        {{"x", "--set", "A"}, "--set needs NAME=VALUE, not 'A'"},
        {{"x", "--set", "=1"}, "--set needs NAME=VALUE, not '=1'"},
        {{"x", "--set", "A="}, "--set needs NAME=VALUE, not 'A='"},
        {{"x", "--at", "A=1"}, "--at needs SECONDS:NAME=VALUE, not 'A=1'"},
        {{"x", "--at", "-1:A=1"}, "--at needs SECONDS:NAME=VALUE, not '-1:A=1'"},
        {{"x", "--oversampling", "3x"}, "--oversampling needs Auto, 1x, 2x, 4x or 8x, not '3x'"},
        {{"x", "--tail", "-1"}, "--tail needs seconds, not '-1'"},
    };
    for (const auto& c : cases) {
        CRenderOptions options;
        std::string error;
        EXPECT_FALSE(parse(c.words, options, error)) << c.error;
        EXPECT_EQ(error, c.error);
    }
}

TEST(CRenderOptions, HelpNeedsNoPluginAndNamesEveryOption) {
    CRenderOptions options;
    std::string error;
    ASSERT_TRUE(parse({"--help"}, options, error));
    EXPECT_TRUE(options.isHelp);
    const std::string help = renderHelp();
    for (const char* name : {"--plugin", "--channels", "--rate", "--block", "--precision", "--set", "--at",
                             "--oversampling", "--tail", "--expect", "--realtime", "--progress", "--list"}) {
        EXPECT_NE(help.find(name), std::string::npos) << name;
    }
}

}  // namespace
}  // namespace tarv::host
