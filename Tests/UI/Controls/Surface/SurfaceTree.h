#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Engine/CAudioInterfaceBase.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "CPlainEditor.h"
#include "Core/CCreatorRegistry.h"
#include "Tests/TestPaths.h"
#include "UI/Binding/CParamGroupSelector.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Controls/Surface/CRuler.h"

namespace tarv {

/// Counts, and destroys an object of the test, when an event or an attribute comes that it follows as `receive`
/// (`test:destroyer`).
class CSurfaceDestroyer : public CObject {
public:
    static inline CObject* victim = nullptr;
    static inline int calls = 0;
    [[nodiscard]] static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CSurfaceDestroyer::receive>("receive");
        return nullptr;
    }
    /// Once for the program.
    static void registerClass() {
        static const CCreatorRow kRow{"test:destroyer", &createObject<CSurfaceDestroyer>, &initClass};
        static CError* const kFailure = CCreatorRegistry::registerRows(&kRow, 1);
        EXPECT_EQ(kFailure, nullptr);
    }

private:
    [[nodiscard]] CError* receive() {
        ++calls;
        delete victim;
        victim = nullptr;
        return nullptr;
    }
};

/// Surfaces and rulers in a window in memory, with the product's graphics and an engine. The tree has the bridges
/// `ui.gains`, `ui.count`, `ui.freqs` and `ui.out`, the selectors `ui.edit` (group 0) and `ui.under` (group 1), and the
/// range `ui.range` of -12 to 12; the views of the test stand in a window of 400 x 320 pixels.
class CSurfaceTest : public testing::Test {
protected:
    CSurfaceTest() { CSurfaceDestroyer::registerClass(); }

    static constexpr const char* kGains = "plugin.modMain.modBrindleXEQ.xeq-gains";
    static constexpr const char* kCount = "plugin.modMain.modBrindleXEQ.band-count";
    /// One render tick.
    static constexpr double kTick = 0.025;

    /// A surface of seven bands over underlays; 217 x 200 pixels from 20, 30 on.
    static std::string bands(const std::string& attributes = "", const std::string& sliders = "",
                             const std::string& more = "") {
        return R"(<ui:control-surface name="surface" placement="overlay" width="217" height="200" outer-border="L20 T30"
                     image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range" is-dynamic="true"
                     color-swatch="ui.swatch" is-focusable="true" )" +
               attributes + R"(>
                   <ui:control-surface-group name="underlays" color="1" is-editable="false" is-balanced="true"
                     is-fixed-x="true">
                     <ui:ui-param name="ui-param-count" bridge="ui.count"/>
                     <ui:ui-param name="ui-param-y" bridge="ui.gains" group-selector="ui.under"/>
                   </ui:control-surface-group>
                   <ui:control-surface-group name="sliders" is-balanced="true" is-fixed-x="true"
                     linked-group="underlays" )" +
               sliders + R"(>
                     <ui:ui-param name="ui-param-count" bridge="ui.count"/>
                     <ui:ui-param name="ui-param-y" bridge="ui.gains" group-selector="ui.edit"/>
                   </ui:control-surface-group>)" +
               more + "</ui:control-surface>";
    }

    std::string tryOpen(const std::string& views, double scale = 1.0) {
        const std::string path = testing::TempDir() + "surface-" + std::to_string(getpid()) + ".xml";
        std::ofstream(path) << definitions(views);
        const std::string failure = editor.open(path, scale, true);
        std::remove(path.c_str());
        return failure;
    }
    void open(const std::string& views, double scale = 1.0) {
        ASSERT_EQ(tryOpen(views, scale), "");
        // The engine's values come by posts, and each timer fires.
        advance(0.2);
    }
    void advance(double seconds = kTick) { editor.system().advance(seconds); }

    template <class T>
    T& at(const std::string& path) {
        T* found = editor.tree().findObjectOf<T>(path.c_str());
        EXPECT_TRUE(found) << path;
        return *found;
    }
    CControlSurface& surface(const std::string& name = "surface") {
        return at<CControlSurface>("ui.main-window." + name);
    }
    CControlSurfaceGroup& group(const std::string& name) { return at<CControlSurfaceGroup>("ui.main-window." + name); }
    CControlSurfaceGroup& sliders() { return group("surface.sliders"); }
    CRuler& ruler(const std::string& name = "ruler") { return at<CRuler>("ui.main-window." + name); }
    static std::string consumed(CError* error) {
        std::string text = error ? error->joined().toUtf8() : std::string();
        delete error;
        return text;
    }
    void set(const std::string& path, const char* name, const std::string& text) {
        EXPECT_EQ(consumed(at<CObject>("ui." + path).setAttribute(name, CString(text.c_str()))), "") << path << name;
    }
    std::string text(const std::string& path, const char* name) {
        return at<CObject>("ui." + path).getAttrString(name).toUtf8();
    }

    CInputByHand& input() { return editor.system().input(); }
    CWindowByHand& shown() { return *editor.system().desktop().find(editor.window()->handle()); }
    void moveToPixel(double x, double y) {
        input().moveIn(editor.window()->handle(), static_cast<int32_t>(std::lround(x)),
                       static_cast<int32_t>(std::lround(y)));
    }
    /// Onto the middle of a band's column, at the height of a value.
    void moveTo(int32_t band, double value) {
        const CSurfaceLayout layout = surface().layout();
        moveToPixel(layout.middle(band), layout.pixel(surface().axis(CControlSurfaceGroup::CRole::Y).position(value)));
    }
    /// Up is positive.
    void moveBy(int32_t right, int32_t up) {
        input().moveIn(editor.window()->handle(), input().x() - originX() + right, input().y() - originY() - up);
    }
    int32_t originX() { return CPlainEditor::kHostX; }
    int32_t originY() { return CPlainEditor::kHostY; }
    void keys(bool isShift, bool isCtrl, bool isAlt) { input().holdKeys(isShift, isCtrl, isAlt); }
    /// What a bar shows.
    double bar(int32_t band) { return sliders().barValue(band); }
    /// What the engine has, in dB.
    double gain(int32_t band, int32_t channelGroup = 0, const char* param = kGains) {
        return 20.0 * std::log10(engineParam(param).userData().value(channelGroup, band));
    }
    CAudioParam& engineParam(const char* name) { return *editor.instance()->paramCollector()->findParam(name); }
    /// As a host does.
    void setGain(int32_t band, double decibels, int32_t channelGroup = 0) {
        EXPECT_TRUE(editor.instance()->set(kGains, channelGroup, band, std::pow(10.0, decibels / 20.0)));
        advance();
    }
    /// Steps of the history, the oldest first.
    std::vector<std::string> steps() {
        std::vector<std::string> labels;
        for (const CString& label : editor.instance()->interfaceBase()->getStepLabels(nullptr)) {
            labels.push_back(label.toUtf8());
        }
        return labels;
    }
    uint32_t pixel(int32_t x, int32_t y) { return shown().picture().at(x, y); }

    CPlainEditor editor;
    std::string linesTemplate = "ui:control-surface-hairlines";

private:
    std::string definitions(const std::string& views) const {
        const std::string product = std::string(kSourceFolder) + "/Definitions/UserInterface/";
        const auto include = [&](const char* file) { return "<include file=\"" + product + file + "\"/>"; };
        const auto bridge = [](const char* name, const char* param) {
            return std::string("<ui:param-bridge name=\"") + name +
                   "\" interface-client=\"ui.interface-client\" param=\"plugin.modMain." + param + "\"/>";
        };
        return "<definitions>" + include("PopupList.xml") + include("EditBox.xml") + include("VirtualKeyboard.xml") +
               R"(<template name=")" + linesTemplate +
               R"("><ui:surface-hairlines placement="overlay" width="100%" height="100%" color="GraphLines"/></template>
                  <template name="ui:control-surface-point-num">
                    <ui:textview placement="overlay" alignment-h="left" alignment-v="top" text-alignment="center"
                      is-decorative="true" font-name="shared::font.micro" is-text-wrapped="false"/>
                  </template>
                  <template name="ui:control-surface-curpos">
                    <ui:textview placement="top" alignment-h="left" is-decorative="true"
                      font-name="shared::font.micro" text-color="RulerText" is-text-wrapped="false"/>
                  </template>
                  <template name="ui:ruler-label">
                    <ui:textview placement="overlay" alignment-h="left" alignment-v="top" is-decorative="true"
                      font-name="shared::font.micro" text-color="RulerText" is-text-wrapped="false">
                      <ui:view-state name="view-state-hilite" state-name="hilite" color-state="Hilite"
                        morph-duration="0.0"/>
                    </ui:textview>
                  </template>
                  <template name="ui:test-group">
                    <ui:control-surface-group point-count="7" is-balanced="true" is-fixed-x="true">
                      <ui:ui-param name="ui-param-y" bridge="ui.gains" group-selector="ui.edit"/>
                    </ui:control-surface-group>
                  </template>
                  <template name="ui:test-lit">
                    <ui:ruler-label><ui:view-state name="lit" state-name="hilite" hint="lit"/></ui:ruler-label>
                  </template>
                  <template name="ui:test-field">
                    <ui:ruler-label is-decorative="false" is-read-only="false"/>
                  </template>
                  <ui:ui-event-bridge name="ui">
                  <audio:interface-client-connector-vst name="connector" base-connector="plugin.interface-base-connector"/>
                  <audio:interface-client name="interface-client" client-connector="ui.connector"
                    group-names-param="plugin.modMain.io-params.group-names"/>)" +
               include("Settings.xml") + bridge("gains", "modBrindleXEQ.xeq-gains") +
               bridge("count", "modBrindleXEQ.band-count") + bridge("freqs", "modBrindleXEQ.xeq-freqs") +
               bridge("out", "modOutGain.gain") +
               R"(<ui:param-group-selector name="edit" group-index="0"/>
                  <ui:param-group-selector name="under" group-index="1"/>
                  <ui:min-max name="range" min="-12" max="12"/>
                  <ui:color-swatch name="swatch">
                    <core:object name="a" is-color="true" index="0" color="Custom1"/>
                    <core:object name="b" is-color="true" index="1" color="Custom2"/>
                  </ui:color-swatch>
                  <ui:window-shared-data name="window-shared-data"/>
                  <ui:view name="main-window" is-root-view="true" is-main-window="true" placement="full" width="400"
                    height="320" palette="Default" font-name="shared::font.base" fps="40">
                    <ui:window-renderer name="window-renderer" is-plugin-vst="true"/>
                    <ui:view name="ground" placement="overlay" width="100%" height="100%" color="Panel"
                      is-decorative="true"/>)" +
               views + "</ui:view></ui:ui-event-bridge></definitions>";
    }
};

}  // namespace tarv
