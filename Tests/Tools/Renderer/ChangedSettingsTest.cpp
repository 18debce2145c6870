#include "ChangedSettings.h"

#include <gtest/gtest.h>

#include "CParameterText.h"
#include "CTestPlugin.h"

namespace tarv::host {
namespace {

class ChangedSettingsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(host.open(&CTestPlugin::entry));
        before = settingsOf(host);
    }
    /// Sets what an option says, as the renderer does.
    void set(const std::string& option) {
        const size_t name = option.find("--set ") + 6;
        const size_t sign = option.find('=');
        const int32_t index = host.findParameter(option.substr(name, sign - name));
        CParameterText texts(host);
        float value = -1.0f;
        std::string error;
        ASSERT_TRUE(texts.find(index, option.substr(sign + 1), value, error)) << option << ": " << error;
        host.setParameter(index, value);
    }
    CVstHost host;
    std::vector<float> before;
};

TEST_F(ChangedSettingsTest, NothingIsSaidOfWhatStayed) {
    EXPECT_EQ(changedSettings(host, before), "");
}

TEST_F(ChangedSettingsTest, ATextThatGivesTheValueBackIsSaidAsItIsShown) {
    host.setParameter(1, 1.0f);
    EXPECT_EQ(changedSettings(host, before), "--set Oversmp=8x");
    EXPECT_EQ(host.parameter(1), 1.0f);
}

TEST_F(ChangedSettingsTest, ATextThatGivesANeighbourIsSaidAsANumber) {
    host.setParameter(1, 0.52f);
    EXPECT_EQ(changedSettings(host, before), "--set Oversmp=0.519999981");
}

TEST_F(ChangedSettingsTest, WhatIsSaidSetsTheSameValueAgain) {
    for (const float value : {0.0f, 1.0f, 0.1f, 0.333333343f, 0.7f, 0.5000001f}) {
        host.setParameter(0, value);
        const std::string options = changedSettings(host, before);
        host.setParameter(0, 0.25f);
        set(options);
        EXPECT_EQ(host.parameter(0), value) << options;
    }
}

TEST_F(ChangedSettingsTest, EachChangedParameterHasAnOption) {
    host.setParameter(0, 0.3f);
    host.setParameter(1, 1.0f);
    EXPECT_EQ(changedSettings(host, before), "--set Gain=-4.8dB --set Oversmp=8x");
}

}  // namespace
}  // namespace tarv::host
