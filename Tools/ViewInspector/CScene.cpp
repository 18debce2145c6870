#include "CScene.h"

#include <cmath>

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "UI/Text/CTextView.h"

namespace tarv {

namespace {

constexpr int32_t kBands = 7;
constexpr int32_t kChannels = 8;
constexpr double kCurves[2][kBands] = {{-0.5, -4.8, -1.9, 2.8, 3.3, 2.5, 5.3}, {9.6, 4.7, 0.5, -1.1, 0.4, 2.1, -1.8}};
constexpr double kOutGains[2] = {0.0, 1.7};
constexpr double kSampleRate = 44100.0;
constexpr double kMenuSeconds = 0.3;
/// Longer than a hint needs to come, shorter than a timed state lasts.
constexpr double kHoverSeconds = 0.2;
/// Two presses within half a second on one place are a double click.
constexpr double kBetweenPresses = 0.6;

CString fullName(const std::string& param) {
    return CString(("plugin.modMain." + param).c_str());
}

}  // namespace

void CScene::fail(const std::string& failure) {
    failure_ = failure_.empty() ? failure : failure_;
}

CScene& CScene::wait(double seconds) {
    editor_.system().advance(seconds);
    return *this;
}

CScene& CScene::set(const std::string& param, int32_t group, int32_t element, double value) {
    const bool isGain = param.ends_with("gain") || param.ends_with("gains");
    const double real = isGain ? std::pow(10.0, value / 20.0) : value;
    if (!editor_.instance()->set(fullName(param), group, element, real)) {
        fail("no parameter '" + param + "'");
    }
    return *this;
}

CScene& CScene::name(const std::string& param, int32_t element, const std::string& text) {
    CAudioParam* found = editor_.instance()->paramCollector()->findParam(fullName(param));
    if (found) {
        found->setText(0, element, CString(text.c_str()));
    } else {
        fail("no parameter '" + param + "'");
    }
    return *this;
}

CScene& CScene::gain(int32_t group, int32_t band, double decibels) {
    return set("modBrindleXEQ.xeq-gains", group, band, decibels);
}

CScene& CScene::curves() {
    for (int32_t group = 0; group < 2; ++group) {
        for (int32_t band = 0; band < kBands; ++band) {
            gain(group, band, kCurves[group][band]);
        }
        output(group, kOutGains[group]);
    }
    return *this;
}

CScene& CScene::extreme() {
    for (int32_t band = 0; band < kBands; ++band) {
        gain(0, band, -12.0).gain(1, band, band % 2 == 0 ? 12.0 : -12.0);
    }
    return output(0, -12.0).output(1, 12.0);
}

CScene& CScene::eightGroups() {
    editor_.instance()->start(kSampleRate, kChannels, kChannels);
    for (int32_t i = 0; i < kChannels; ++i) {
        set("io-params.in-routing", 0, i, i + 1.0).set("io-params.out-routing", 0, i, i + 1.0);
        set("io-params.grouping", 0, i, i);
        for (int32_t band = 0; band < kBands; ++band) {
            gain(i, band, kCurves[i % 2][(band + i) % kBands] + (i - 3.5) / 2.0);
        }
    }
    return *this;
}

CScene& CScene::longNames() {
    name("instance-name", 0, "Wide strings, upper balcony, spot microphones 17");
    for (int32_t i = 0; i < kChannels; ++i) {
        name("io-params.in-channel-names", i, "WWWWMMW" + std::to_string(i));
        name("io-params.group-names", i, "Wide Group M" + std::to_string(i));
    }
    return *this;
}

CScene& CScene::endEngine() {
    editor_.endEngine();
    return *this;
}

CScene& CScene::palette(const std::string& name) {
    return attribute("ui.local-data.ui-color-scheme", "palette-name", name);
}

CScene& CScene::tabletMode() {
    return attribute("ui.global-data.tablet-mode", "tablet-mode", "true");
}

CScene& CScene::attribute(const std::string& path, const char* name, const std::string& value) {
    CObject* object = editor_.tree().findObject(CString(path.c_str()));
    if (!object) {
        fail("no object '" + path + "'");
        return *this;
    }
    if (CError* error = object->setAttribute(name, CString(value.c_str()))) {
        fail(error->joined().toUtf8());
        delete error;
    }
    return *this;
}

CScene& CScene::raise(const std::string& path, const char* event, const std::string& text) {
    auto* view = editor_.tree().findObjectOf<CView>(path.c_str());
    if (!view) {
        fail("no view '" + path + "'");
        return *this;
    }
    CAttributeMap params;
    params["text"] = CAttributeValue::fromPlainString(CString(text.c_str()));
    if (CError* error = deliverEvent(*view, event, params)) {
        fail(error->joined().toUtf8());
        delete error;
    }
    return wait(kMenuSeconds);
}

CScene& CScene::groups(int32_t first, int32_t behindFirst, int32_t second, int32_t behindSecond) {
    attribute("ui.groupsel-eq-a", "group-index", std::to_string(first));
    attribute("ui.groupsel-eq-au", "group-index", std::to_string(behindFirst));
    attribute("ui.groupsel-eq-b", "group-index", std::to_string(second));
    return attribute("ui.groupsel-eq-bu", "group-index", std::to_string(behindSecond));
}

CScene& CScene::point(const std::string& path) {
    const std::string full = path.starts_with("ui.") ? path : "ui.main-window." + path;
    const auto* view = editor_.tree().findObjectOf<CView>(full.c_str());
    if (!view || !editor_.pointAt(*view)) {
        fail("nothing is seen of a view '" + full + "'");
    }
    return wait(kHoverSeconds);
}

CScene& CScene::press(const std::string& path) {
    wait(kBetweenPresses).point(path);
    editor_.system().input().press();
    return wait(kHoverSeconds);
}

CScene& CScene::click(const std::string& path, CPointerButton button) {
    wait(kBetweenPresses).point(path);
    editor_.system().input().click(button);
    return wait(kMenuSeconds);
}

CScene& CScene::pointAtRow(int32_t row) {
    const auto* list = editor_.tree().findObjectOf<CTextView>("ui.window-app-popup-list.list");
    const auto* window = list ? dynamic_cast<const CWindow*>(list->window()) : nullptr;
    if (!window) {
        fail("no list is open");
        return *this;
    }
    const CViewRect rect = list->rowRect(row);
    editor_.system().input().moveIn(window->handle(), static_cast<int32_t>(rect.x) + 6,
                                    static_cast<int32_t>(rect.y + rect.height / 2.0));
    return wait(kMenuSeconds);
}

CScene& CScene::type(const std::u16string& text) {
    editor_.system().input().type(text);
    return wait(kHoverSeconds);
}

CScene& CScene::tap(int32_t key, int32_t times) {
    for (int32_t i = 0; i < times; ++i) {
        editor_.system().input().tap(key);
        wait(kHoverSeconds);
    }
    return *this;
}

}  // namespace tarv
