#include "Audio/Parameters/CAudioParamNames.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

struct CNameCase {
    const char* owner;
    const char* name;
    const char* full;
};

constexpr CNameCase kNames[] = {
    {"plugin.modMain.modBands", "/audio.x", "audio.x"},
    {"plugin.modMain.modBands", "gain", "plugin.modMain.modBands.gain"},
    {"plugin.modMain.modBands", "^band-count", "plugin.modMain.band-count"},
    {"plugin.modMain.modBands", "^.band-count", "plugin.modMain.band-count"},
    {"plugin.modMain.modBands", "^^x", "plugin.x"},
    {"plugin.modMain.modBands", "^^^^^x", "plugin.x"},
    {"plugin", "^x", "plugin.x"},
    {"plugin.modMain.modInRouter", "^io-params.in-routing", "plugin.modMain.io-params.in-routing"},
};

TEST(ParamNames, AreResolvedFromTheOwnersPath) {
    for (const CNameCase& c : kNames)
        EXPECT_EQ(resolveParamName(c.owner, c.name).toUtf8(), c.full) << c.owner << ' ' << c.name;
}

TEST(ParamNames, AFullNameIsPathDotLocalName) {
    EXPECT_EQ(fullParamName("plugin.modMain.modOutGain", "gain"), "plugin.modMain.modOutGain.gain");
}

}  // namespace
}  // namespace tarv
