#include "ProductEditor.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "Audio/Parameters/CAudioParam.h"
#include "Audio/Parameters/CAudioParamCollector.h"
#include "Core/CApplication.h"
#include "Core/CApplicationData.h"
#include "Platform/ByHand/CDesktopByHand.h"
#include "Product/Product.h"
#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr int32_t kStepPixels = 3;
constexpr int32_t kBands = 7;
/// A menu takes no press in its first moments, and two presses within half a second on one place are a double click.
constexpr double kBetweenPresses = 0.6;

std::vector<std::string>& record() {
    static std::vector<std::string> events;
    return events;
}

intptr_t hostAnswer(vst::AEffect* effect, int32_t opcode, int32_t index, intptr_t, void*, float) {
    char text[48] = "";
    switch (opcode) {
        case vst::kHostVersion:
            return vst::kInterfaceVersion;
        case vst::kHostGetSampleRate:
            return 44100;
        case vst::kHostGetBlockSize:
            return 512;
        case vst::kHostAutomate:
            std::snprintf(text, sizeof text, "automate %d %.3f", index, effect->getParameter(effect, index));
            break;
        case vst::kHostBeginEdit:
            std::snprintf(text, sizeof text, "begin %d", index);
            break;
        case vst::kHostEndEdit:
            std::snprintf(text, sizeof text, "end %d", index);
            break;
        default:
            return 0;
    }
    record().emplace_back(text);
    return 1;
}

std::string consumed(CError* error) {
    const std::string text = error ? error->joined().toUtf8() : "";
    delete error;
    return text;
}

}  // namespace

void forgetStoredSettings() {
    const char* folder = std::getenv("TARV_DATA_ROOT");
    std::error_code failure;
    for (const auto& entry : std::filesystem::directory_iterator(folder ? folder : "", failure)) {
        std::filesystem::remove_all(entry.path());
    }
    CGlobalData::instance().reset();
    CLocalData::instance().reset();
}

CProductEditor::CProductEditor(double scale, const CIntRect& screen, const CIntRect& host) : system_({screen}) {
    ensureProductStarted();
    forgetStoredSettings();
    if (scale != 1.0) {
        CLocalData::instance().writeText("ui-scale", CString::fromDouble(scale, 4));
    }
    host_ = system_.desktop().openHost(host);
    start();
}

CProductEditor::~CProductEditor() {
    end();
}

void CProductEditor::start() {
    effect_ = CAudioWrapperVST::create(&hostAnswer);
    EXPECT_TRUE(effect_);
    dispatch(vst::kEffectOpen);
    dispatch(vst::kEffectSetSampleRate, 0, 0, nullptr, 44100.0F);
    dispatch(vst::kEffectSetBlockSize, 0, 512);
    dispatch(vst::kEffectMainsChanged, 0, 1);
    record().clear();
    openEditor();
}

void CProductEditor::end() {
    closeEditor();
    dispatch(vst::kEffectMainsChanged, 0, 0);
    dispatch(vst::kEffectClose);
    system_.pump();
}

void CProductEditor::openEditor() {
    ASSERT_EQ(consumed(CApplication::openEditor()), "");
    CObject* root = nullptr;
    ASSERT_EQ(consumed(CApplication::initRootObject(root)), "");
    tree_.reset(root);
    ASSERT_EQ(
        consumed(root->setAttribute("ParentWindow", CAttributeValue::fromPointer(reinterpret_cast<void*>(host_)))), "");
    ASSERT_EQ(consumed(root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(wrapper().instanceRoot()))),
              "");
    ASSERT_EQ(consumed(root->setAttribute("plugin-tech", CString("VST PlugIn Technology by Steinberg"))), "");
    ASSERT_EQ(consumed(root->loadFromResource("UserInterface.xml", true)), "");
    ASSERT_EQ(consumed(at<CWindow>("window-renderer").open()), "");
    wait();
}

void CProductEditor::renewHost(const CIntRect& bounds) {
    system_.desktop().destroy(host_);
    host_ = system_.desktop().openHost(bounds);
}

void CProductEditor::closeEditor() {
    if (tree_) {
        tree_.reset();
        CApplication::closeEditor();
    }
}

void CProductEditor::point(const CSpot& spot) {
    const auto& view = at(spot.path);
    const CViewRect& rect = view.visibleRect();
    auto* window = dynamic_cast<CWindow*>(view.window());
    ASSERT_TRUE(!rect.isEmpty() && window && window->isOpen()) << "nothing is seen of " << spot.path;
    system_.input().moveIn(window->handle(), static_cast<int32_t>(std::lround(rect.x + rect.width / 2.0)) + spot.x,
                           static_cast<int32_t>(std::lround(rect.y + rect.height / 2.0)) + spot.y);
    wait(0.05);
}

void CProductEditor::press(const CSpot& spot, CPointerButton button) {
    point(spot);
    system_.input().press(button);
    wait(0.05);
}

void CProductEditor::click(const CSpot& spot, CPointerButton button) {
    wait(kBetweenPresses);
    press(spot, button);
    release(button);
    wait(0.2);
}

void CProductEditor::doubleClick(const CSpot& spot) {
    wait(kBetweenPresses);
    point(spot);
    system_.input().click();
    system_.input().click();
    wait();
}

void CProductEditor::wheel(const CSpot& spot, double notches) {
    point(spot);
    system_.input().wheel(notches);
    wait();
}

void CProductEditor::moveBy(int32_t x, int32_t y) {
    const int32_t beginX = system_.input().x();
    const int32_t beginY = system_.input().y();
    const int32_t steps = std::max(std::abs(x), std::abs(y)) / kStepPixels + 1;
    for (int32_t i = 1; i <= steps; ++i) {
        system_.input().move(beginX + x * i / steps, beginY + y * i / steps);
        wait(0.025);
    }
}

void CProductEditor::release(CPointerButton button) {
    system_.input().release(button);
    wait();
}

void CProductEditor::drag(const CSpot& spot, int32_t x, int32_t y) {
    wait(kBetweenPresses);
    press(spot);
    moveBy(x, y);
    release();
}

CSpot CProductEditor::column(const std::string& view, int32_t band) {
    const std::string path = "c." + view + ".cs-sliders.control-surface";
    const auto pitch = static_cast<int32_t>(std::floor(box(path).width / kBands));
    return {path, (band - kBands / 2) * pitch};
}

void CProductEditor::type(const std::u16string& text) {
    system_.input().type(text);
    tap(kKeyEnter);
}

void CProductEditor::tap(int32_t key) {
    system_.input().tap(key);
    wait();
}

void CProductEditor::choose(int32_t row, const std::string& window) {
    wait(0.3);
    auto* list = tree().findObjectOf<CTextView>((window + ".list").c_str());
    ASSERT_TRUE(list) << "no list is open: " << window;
    const CViewRect rect = list->rowRect(row);
    ASSERT_FALSE(rect.isEmpty()) << row;
    system_.input().moveIn(dynamic_cast<CWindow*>(list->window())->handle(), static_cast<int32_t>(rect.x) + 6,
                           static_cast<int32_t>(rect.y + rect.height / 2.0));
    wait(0.05);
    system_.input().click();
    wait(0.2);
}

CAudioParam& CProductEditor::param(const std::string& name) {
    CAudioParam* found = wrapper().paramCollector()->findParam(CString(("plugin.modMain." + name).c_str()));
    EXPECT_TRUE(found) << name;
    return *found;
}

double CProductEditor::engine(const std::string& name, int32_t group, int32_t element) {
    return param(name).value(group, element);
}

double CProductEditor::decibels(const std::string& name, int32_t group, int32_t element) {
    return 20.0 * std::log10(engine(name, group, element));
}

std::string CProductEditor::engineText(const std::string& name, int32_t element) {
    return param(name).text(0, element).toUtf8();
}

void CProductEditor::setEngine(const std::string& name, int32_t group, int32_t element, double value) {
    param(name).setValue(group, element, value);
    wait();
}

std::string CProductEditor::heard() {
    std::string all;
    std::string last;
    for (const std::string& event : record()) {
        if (event != last) {
            all += (all.empty() ? "" : ", ") + event;
        }
        last = event;
    }
    record().clear();
    return all;
}

std::string CProductEditor::heardGestures() {
    for (std::string& event : record()) {
        if (event.starts_with("automate")) {
            event.resize(event.rfind(' '));
        }
    }
    return heard();
}

std::string CProductEditor::chunk(bool isProgram) {
    void* data = nullptr;
    const intptr_t size = dispatch(vst::kEffectGetChunk, isProgram ? 1 : 0, 0, &data);
    return data ? std::string(static_cast<const char*>(data), static_cast<size_t>(size)) : std::string();
}

CAudioWrapperVST& CProductEditor::wrapper() {
    return *dynamic_cast<CAudioWrapperVST*>(static_cast<AudioEffectX*>(effect_->object));
}

}  // namespace tarv
