#include "Tests/Host/Editor/ProductWindow.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <utility>

#include "Platform/Keyboard.h"

namespace tarv::host {

namespace {

constexpr int kWidth = 640;
constexpr int kHeight = 400;
constexpr int32_t kStepPixels = 8;
constexpr auto kDoubleClick = std::chrono::milliseconds(550);
constexpr int32_t kDoubleClickPixels = 4;
/// Two presses so far apart on a view are none of a double click.
constexpr int32_t kApart = 7;
/// A list takes no press in its first moments, and opens by itself where the pointer rests for a quarter of a second.
constexpr double kListOpens = 0.3;

int32_t keyCode(char key) {
    switch (key) {
        case '\r':
            return kKeyEnter;
        case '\t':
            return kKeyTab;
        case '\x1b':
            return kKeyEscape;
        case CHostDesk::kF2:
            return kKeyF2;
        case CHostDesk::kUp:
            return kKeyUp;
        case CHostDesk::kDown:
            return kKeyDown;
        case CHostDesk::kLeft:
            return kKeyLeft;
        case CHostDesk::kRight:
            return kKeyRight;
        default:
            return 0;
    }
}

}  // namespace

/// Moves the folder of settings away and back. One that a crash has left away is the user's.
class ProductWindow::CSetAsideSettings {
public:
    CSetAsideSettings() : folder_(CEditorTwin::libraryFolder()), aside_(folder_.string() + "-aside") {
        std::error_code failure;
        if (!std::filesystem::exists(aside_)) {
            std::filesystem::rename(folder_, aside_, failure);
        }
        std::filesystem::remove_all(folder_, failure);
    }
    ~CSetAsideSettings() {
        std::error_code failure;
        std::filesystem::remove_all(folder_, failure);
        std::filesystem::rename(aside_, folder_, failure);
    }
    CSetAsideSettings(const CSetAsideSettings&) = delete;
    CSetAsideSettings& operator=(const CSetAsideSettings&) = delete;

private:
    const std::filesystem::path folder_;
    const std::filesystem::path aside_;
};

ProductWindow::ProductWindow() = default;

ProductWindow::~ProductWindow() {
    desk.idle = [] {};
    second_.reset();
    effect.close();
    twin.reset();
}

void ProductWindow::SetUp() {
    settings_ = std::make_unique<CSetAsideSettings>();
    std::string error;
    ASSERT_TRUE(library.load(kPluginFile, error)) << error;
    effect.answers.vendor.clear();
    effect.answers.product.clear();
    effect.answers.processLevel = vst::kLevelUser;
    ASSERT_TRUE(effect.open(library.entry()));
    desk.idle = [this] { serveIdle(); };
    parent = desk.openParent(kWidth, kHeight);
    twin = std::make_unique<CEditorTwin>(desk.screen(), desk.place(parent));
    ASSERT_TRUE(open()) << "does the product have an editor?";
    pointAt({desk.place(parent).left - 20, desk.place(parent).top - 20});
    expectSame("the editor opened");
    effect.edits.clear();
    twin->heard();
}

void ProductWindow::serveIdle() {
    for (CVstHost* host : {&effect, second_.get()}) {
        if (host && host->effect()) {
            host->dispatch(vst::kEffectEditIdle);
        }
    }
}

void ProductWindow::openSecond() {
    second_ = std::make_unique<CVstHost>(effect.answers);
    ASSERT_TRUE(second_->open(library.entry()));
    secondParent_ = desk.openParent(kWidth, kHeight);
    ASSERT_EQ(second_->dispatch(vst::kEffectEditOpen, 0, 0, secondParent_), 1);
}

void ProductWindow::closeSecond() {
    second_->dispatch(vst::kEffectEditClose);
    desk.destroyParent(secondParent_);
    second_.reset();
}

void ProductWindow::reopen() {
    close();
    twin->closeEditor();
    EXPECT_EQ(desk.childCount(parent), 0);
    twin->openEditor();
    EXPECT_TRUE(open());
    expectSame("the editor opened again");
}

void ProductWindow::restart() {
    effect.close();
    library.unload();
    std::string error;
    ASSERT_TRUE(library.load(kPluginFile, error)) << error;
    ASSERT_TRUE(effect.open(library.entry()));
    fitParent();
    twin->restart(desk.place(parent));
    EXPECT_TRUE(open());
    expectSame("the editor of a new start");
}

void ProductWindow::fitParent() {
    vst::Rect* rect = nullptr;
    ASSERT_EQ(effect.dispatch(vst::kEffectEditGetRect, 0, 0, &rect), 1);
    const int width = rect->right - rect->left;
    const int height = rect->bottom - rect->top;
    CIntRect place = desk.place(parent);
    if (width == place.width() && height == place.height()) {
        return;
    }
    desk.destroyParent(parent);
    parent = desk.openParent(width, height);
    place = desk.place(parent);
    const CIntRect screen = desk.screen();
    desk.moveParent(parent, std::min(place.left, screen.right - width), std::min(place.top, screen.bottom - height));
}

void ProductWindow::pointAt(const CScreenPoint& at) {
    pointer_ = at;
    desk.moveOnScreen(at.x, at.y);
    twin->input().move(at.x, at.y);
    twin->wait(0.05);
}

void ProductWindow::serveFor(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    desk.until([&] { return std::chrono::steady_clock::now() >= end; });
    twin->wait(seconds);
}

bool ProductWindow::wouldBeDouble(const CScreenPoint& at) const {
    return std::abs(at.x - lastPress_.x) <= kDoubleClickPixels && std::abs(at.y - lastPress_.y) <= kDoubleClickPixels &&
           std::chrono::steady_clock::now() - lastPressTime_ < kDoubleClick;
}

void ProductWindow::press(bool isRight) {
    const auto since = std::chrono::steady_clock::now() - lastPressTime_;
    if (wouldBeDouble(pointer_)) {
        serveFor(std::chrono::duration<double>(kDoubleClick - since).count());
    }
    // The twin's time is not the real one.
    twin->wait(std::chrono::duration<double>(kDoubleClick).count());
    lastPress_ = pointer_;
    lastPressTime_ = std::chrono::steady_clock::now();
    desk.press(isRight);
    twin->input().press(isRight ? CPointerButton::Right : CPointerButton::Left);
    twin->wait(0.05);
}

void ProductWindow::release(bool isRight) {
    desk.release(isRight);
    twin->input().release(isRight ? CPointerButton::Right : CPointerButton::Left);
    twin->wait(0.05);
}

void ProductWindow::click(const CSpot& spot, bool isRight) {
    CScreenPoint at = twin->where(spot);
    const bool isWide = twin->at(spot.path).visibleRect().width > 4 * kApart;
    // Beside the place of the last press, in place of a wait.
    at.x += wouldBeDouble(at) && isWide ? kApart : 0;
    pointAt(at);
    press(isRight);
    release(isRight);
}

void ProductWindow::doubleClick(const CSpot& spot) {
    click(spot);
    desk.press();
    desk.release();
    twin->input().press();
    twin->input().release();
    twin->wait(0.05);
    lastPressTime_ = std::chrono::steady_clock::now();
}

void ProductWindow::wheel(const CSpot& spot, int notches) {
    point(spot);
    desk.wheel(notches);
    twin->input().wheel(notches);
    twin->wait(0.05);
}

void ProductWindow::moveBy(int32_t x, int32_t y) {
    const CScreenPoint begin = pointer_;
    const int32_t steps = std::max(std::abs(x), std::abs(y)) / kStepPixels + 1;
    for (int32_t i = 1; i <= steps; ++i) {
        pointAt({begin.x + x * i / steps, begin.y + y * i / steps});
    }
}

void ProductWindow::drag(const CSpot& spot, int32_t x, int32_t y) {
    point(spot);
    press();
    moveBy(x, y);
    release();
}

void ProductWindow::strike(char key) {
    desk.strike(key);
    if (const int32_t code = keyCode(key)) {
        twin->input().tap(code);
    } else {
        twin->input().type(std::u16string(1, static_cast<char16_t>(key)));
    }
    twin->wait(0.05);
}

void ProductWindow::hold(bool isShift, bool isCtrl, bool isAlt) {
    static constexpr CHeldKey kKeys[] = {CHeldKey::Shift, CHeldKey::Ctrl, CHeldKey::Alt};
    const bool wanted[] = {isShift, isCtrl, isAlt};
    for (size_t i = 0; i < std::size(kKeys); ++i) {
        if (std::exchange(isHeld_[i], wanted[i]) != wanted[i]) {
            desk.hold(kKeys[i], wanted[i]);
        }
    }
    twin->input().holdKeys(isShift, isCtrl, isAlt);
}

void ProductWindow::keepStill() {
    serveFor(1.2 * std::chrono::duration<double>(kDoubleClick).count());
}

void ProductWindow::type(const std::string& text) {
    desk.type(text);
    twin->input().type(std::u16string(text.begin(), text.end()));
    twin->wait(0.05);
}

void ProductWindow::choose(int32_t row, const std::string& window) {
    rest();
    clickRow(window + ".list", row);
}

void ProductWindow::rest() {
    serveFor(kListOpens);
}

void ProductWindow::pointRow(const std::string& path, int32_t row) {
    pointAt(twin->whereRow(path, row));
}

void ProductWindow::clickRow(const std::string& path, int32_t row) {
    pointRow(path, row);
    press();
    release();
}

}  // namespace tarv::host
