#include "Core/CGlobalSettings.h"

#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

class GlobalSettings : public testing::Test {
protected:
    std::unique_ptr<CObject> make(std::vector<std::pair<std::string, std::string>> attributes = {}) {
        return application.makeRoot({{"core:global-settings", "settings", std::move(attributes)}});
    }
    static void set(const CObject& root, const char* name, const char* value) {
        EXPECT_EQ(consumed(root.findObject("settings")->setAttribute(name, CString(value))), "");
    }

    CTestApplication application{{
        {"core:global-settings", &createObject<CGlobalSettings>, &CGlobalSettings::initClass},
    }};
};

TEST_F(GlobalSettings, HandlersStandInTheOrderOfTheSlots) {
    const CClassDescriptor& descriptor = *make()->findObject("settings")->descriptor();
    std::vector<std::string> names;
    for (int32_t i = descriptor.handlerIndex("tablet-mode"); i < descriptor.handlerCount(); ++i) {
        names.push_back(descriptor.handlerName(i).toUtf8());
    }
    EXPECT_EQ(names, (std::vector<std::string>{"tablet-mode", "show-virtual-keyboard", "show-knob-labels",
                                               "shift-key-precision", "radial-knob-mode", "oversampling-level",
                                               "mouse-wheel-precision", "drag-precision", "builtin-refresh"}));
}

TEST_F(GlobalSettings, EachAttributeReachesItsOwnValueAndNoOther) {
    auto root = make({{"tablet-mode", "false"},
                      {"show-virtual-keyboard", "true"},
                      {"show-knob-labels", "true"},
                      {"shift-key-precision", "0.5"},
                      {"radial-knob-mode", "false"},
                      {"oversampling-level", "1"},
                      {"mouse-wheel-precision", "0.5"},
                      {"drag-precision", "0.7"},
                      {"builtin-refresh", "false"}});
    const auto all = [] {
        const CGlobalSettingValues& v = globalSettings();
        return std::vector<double>{double(v.isTabletMode),      double(v.isVirtualKeyboardShown),
                                   double(v.isKnobLabelsShown), v.shiftKeyPrecision,
                                   double(v.isRadialKnobMode),  double(v.oversamplingLevel),
                                   v.mouseWheelPrecision,       v.dragPrecision,
                                   double(v.isBuiltinRefresh)};
    };
    const std::vector<double> initial = {0, 1, 1, 0.5, 0, 1, 0.5, 0.7, 0};
    EXPECT_EQ(all(), initial);
    const struct {
        const char *name, *value, *before;
        double number;
    } kChanges[] = {
        {"tablet-mode", "true", "false", 1},      {"show-virtual-keyboard", "false", "true", 0},
        {"show-knob-labels", "false", "true", 0}, {"shift-key-precision", "0.25", "0.5", 0.25},
        {"radial-knob-mode", "true", "false", 1}, {"oversampling-level", "2", "1", 2},
        {"mouse-wheel-precision", "1", "0.5", 1}, {"drag-precision", "0.95", "0.7", 0.95},
        {"builtin-refresh", "true", "false", 1},
    };
    for (size_t i = 0; i < std::size(kChanges); ++i) {
        std::vector<double> expected = initial;
        expected[i] = kChanges[i].number;
        set(*root, kChanges[i].name, kChanges[i].value);
        EXPECT_EQ(all(), expected) << kChanges[i].name;
        set(*root, kChanges[i].name, kChanges[i].before);
        EXPECT_EQ(all(), initial) << kChanges[i].name;
    }
}

TEST_F(GlobalSettings, WhatIsNoNumberOfTheRangeCountsAsTheInitialValue) {
    auto root = make();
    const struct {
        const char* name;
        const std::atomic<double>& value;
        double initial;
    } kFactors[] = {{"shift-key-precision", globalSettings().shiftKeyPrecision, 0.5},
                    {"mouse-wheel-precision", globalSettings().mouseWheelPrecision, 0.5},
                    {"drag-precision", globalSettings().dragPrecision, 0.7}};
    for (const auto& factor : kFactors) {
        for (const char* bad : {"", "fast", "0", "-1", "0.03", "7", "0.5x"}) {
            set(*root, factor.name, "0.9");
            EXPECT_EQ(factor.value, 0.9) << factor.name;
            set(*root, factor.name, bad);
            EXPECT_EQ(factor.value, factor.initial) << factor.name << " '" << bad << "'";
        }
    }
    for (const char* bad : {"", "much", "0", "4", "-1", "1.5"}) {
        set(*root, "oversampling-level", "2");
        EXPECT_EQ(globalSettings().oversamplingLevel, 2);
        set(*root, "oversampling-level", bad);
        EXPECT_EQ(globalSettings().oversamplingLevel, 1) << bad;
    }
}

}  // namespace
}  // namespace tarv
