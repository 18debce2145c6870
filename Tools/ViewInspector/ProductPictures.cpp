#include "ProductPictures.h"

#include <cmath>
#include <cstdio>
#include <vector>

#include "CPlainEditor.h"
#include "Platform/ByHand/CDesktopByHand.h"
#include "UI/Windows/CWindowSharedData.h"
#include "ViewPicture.h"

namespace tarv {

namespace {

constexpr double kScales[] = {0.8, 1.0, 1.25};
constexpr const char* kPalettes[] = {"Default", "Military", "Red", "Blue", "Green"};
constexpr int32_t kBands = 7;
constexpr double kCurves[2][kBands] = {{-0.5, -4.8, -1.9, 2.8, 3.3, 2.5, 5.3}, {9.6, 4.7, 0.5, -1.1, 0.4, 2.1, -1.8}};
constexpr double kOutGains[2] = {0.0, 1.7};
constexpr double kMenuSeconds = 0.3;
/// Longer than a hint needs to come, shorter than a timed state lasts.
constexpr double kHoverSeconds = 0.2;

/// What is done to an editor before its picture is taken; the first failure is kept.
class CScene {
public:
    explicit CScene(CPlainEditor& editor) : editor_(editor) {}

    const std::string& failure() const { return failure_; }
    CScene& gain(int32_t group, int32_t band, double decibels) {
        return set("modBrindleXEQ.xeq-gains", group, band, decibels);
    }
    CScene& output(int32_t group, double decibels) { return set("modOutGain.gain", group, 0, decibels); }
    /// Real units, but gains in dB.
    CScene& set(const std::string& param, int32_t group, int32_t element, double value) {
        const bool isGain = param.ends_with("gain") || param.ends_with("gains");
        const double real = isGain ? std::pow(10.0, value / 20.0) : value;
        if (!editor_.instance()->set(CString(("plugin.modMain." + param).c_str()), group, element, real)) {
            failure_ = "no parameter '" + param + "'";
        }
        return *this;
    }
    CScene& curves() {
        for (int32_t group = 0; group < 2; ++group) {
            for (int32_t band = 0; band < kBands; ++band) {
                gain(group, band, kCurves[group][band]);
            }
            output(group, kOutGains[group]);
        }
        return *this;
    }
    CScene& palette(const std::string& name) {
        return attribute("ui.local-data.ui-color-scheme", "palette-name", name);
    }
    CScene& attribute(const std::string& path, const char* name, const std::string& value) {
        CObject* object = editor_.tree().findObject(CString(path.c_str()));
        if (!object) {
            failure_ = "no object '" + path + "'";
            return *this;
        }
        if (CError* error = object->setAttribute(name, CString(value.c_str()))) {
            failure_ = error->joined().toUtf8();
            delete error;
        }
        return *this;
    }
    /// Of the main window, unless the path begins with `ui.`.
    CScene& point(const std::string& path) {
        const std::string full = path.starts_with("ui.") ? path : "ui.main-window." + path;
        const auto* view = editor_.tree().findObjectOf<CView>(full.c_str());
        if (!view || !editor_.pointAt(*view)) {
            failure_ = "nothing is seen of a view '" + full + "'";
        }
        return wait(kHoverSeconds);
    }
    CScene& click(const std::string& path, CPointerButton button = CPointerButton::Left) {
        point(path);
        editor_.system().input().click(button);
        return wait(kMenuSeconds);
    }
    CScene& press(const std::string& path) {
        point(path);
        editor_.system().input().press();
        return wait(kHoverSeconds);
    }
    CScene& wait(double seconds) {
        editor_.system().advance(seconds);
        return *this;
    }

private:
    CPlainEditor& editor_;
    std::string failure_;
};

struct CSceneRow {
    const char* name;
    void (*prepare)(CScene& scene);
};

const CSceneRow kScenes[] = {
    {"main-flat", [](CScene&) {}},
    {"main-curves", [](CScene& scene) { scene.curves(); }},
    {"main-extreme",
     [](CScene& scene) {
         for (int32_t band = 0; band < kBands; ++band) {
             scene.gain(0, band, -12.0).gain(1, band, band % 2 == 0 ? 12.0 : -12.0);
         }
         scene.output(0, -12.0).output(1, 12.0);
     }},
    {"main-hover", [](CScene& scene) { scene.curves().point("c.xeq1.cs-sliders.control-surface"); }},
    {"main-pushed", [](CScene& scene) { scene.curves().press("c.xeq1.title-frame-head.param-reset-button"); }},
    {"main-bypass", [](CScene& scene) { scene.curves().click("window-title.bypass"); }},
    {"main-offline", [](CScene& scene) { scene.curves().set("host-offline", 0, 0, 1.0).wait(1.0); }},
    {"main-no-hints",
     [](CScene& scene) { scene.curves().attribute("ui.local-data.ui-show-hints", "show-hints", "false"); }},
    {"main-ten-bands", [](CScene& scene) { scene.set("modBrindleXEQ.band-count", 0, 0, 10.0); }},
    {"menu-copy-to", [](CScene& scene) { scene.curves().click("c.xeq1.xeq-base.edit-group.param-copy-button"); }},
    {"menu-quality", [](CScene& scene) { scene.click("window-title.quality-selector"); }},
    {"menu-bars",
     [](CScene& scene) { scene.curves().click("c.xeq1.cs-sliders.control-surface", CPointerButton::Right); }},
    {"menu-presets", [](CScene& scene) { scene.click("c.buttons.preset-manager.quick-preset-list"); }},
    {"menu-routing", [](CScene& scene) { scene.click("c.buttons.channel-routing.quick-preset-list"); }},
    {"edit-name", [](CScene& scene) { scene.click("window-title.instance-name.readout"); }},
    {"window-settings", [](CScene& scene) { scene.click("c.buttons.settings"); }},
    {"window-global-settings",
     [](CScene& scene) { scene.click("c.buttons.settings").click("ui.win-settings.c.settings.global-settings"); }},
    {"window-confirmation",
     [](CScene& scene) {
         scene.click("c.buttons.settings").click("ui.win-settings.c.settings.global-settings");
         scene.click("ui.win-global-settings.c.settings.reset-defaults");
     }},
    {"window-channel-routing", [](CScene& scene) { scene.click("c.buttons.channel-routing"); }},
    {"window-preset-manager", [](CScene& scene) { scene.click("c.buttons.preset-manager"); }},
};

/// The smallest part of the screen that holds all windows of the editor.
CIntRect windowsOf(CPlainEditor& editor) {
    CIntRect all;
    for (const CWindow* window : editor.window()->sharedData().windows()) {
        all = all.unionWith(window->screenBounds());
    }
    return all;
}

/// All windows, without the host's, whose pixels nobody draws.
CPictureByHand pictureOf(CPlainEditor& editor) {
    const CIntRect all = windowsOf(editor);
    CPictureByHand picture(all.width(), all.height(), CDesktopByHand::kBackground);
    for (const CWindow* window : editor.window()->sharedData().windows()) {
        const CIntRect bounds = window->screenBounds();
        const CPictureByHand part = editor.system().desktop().picture(bounds);
        for (int32_t y = 0; y < part.height; ++y) {
            for (int32_t x = 0; x < part.width; ++x) {
                picture.at(bounds.left - all.left + x, bounds.top - all.top + y) = part.at(x, y);
            }
        }
    }
    return picture;
}

std::string draw(const CSceneRow& row, const std::string& path, double scale, const std::string& palette) {
    CPlainEditor editor;
    std::string failure = editor.openProduct(scale);
    if (failure.empty() && !editor.window()) {
        failure = "the product's tree has no main window";
    }
    if (failure.empty()) {
        CScene scene(editor);
        row.prepare(scene.palette(palette).wait(kHoverSeconds));
        scene.wait(kMenuSeconds);
        failure = scene.failure();
    }
    if (failure.empty() && !writePng(pictureOf(editor), path)) {
        failure = "cannot write '" + path + "'";
    }
    return failure.empty() ? "" : std::string(row.name) + ": " + failure;
}

std::string fileName(const std::string& folder, const std::string& name, double scale, const std::string& palette) {
    char text[16];
    std::snprintf(text, sizeof text, "%.2f", scale);
    return folder + "/" + name + "-" + text + "-" + palette + ".png";
}

}  // namespace

std::string drawProduct(const std::string& folder, const std::string& only) {
    for (const CSceneRow& row : kScenes) {
        for (const double scale : kScales) {
            for (const char* palette : kPalettes) {
                const bool isPlain = scale == 1.0 && palette == std::string(kPalettes[0]);
                const std::string path = fileName(folder, row.name, scale, palette);
                if ((!isPlain && row.name != std::string("main-curves")) || path.find(only) == std::string::npos) {
                    continue;
                }
                const std::string failure = draw(row, path, scale, palette);
                if (!failure.empty()) {
                    return failure;
                }
            }
        }
    }
    return "";
}

}  // namespace tarv
