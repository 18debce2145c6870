// What is compared between a real window and its twin: pixels, files, what the host was notified of.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <tuple>

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {

namespace {

/// What the twin takes to end its changes of colour behind an act.
constexpr double kChangesEnd = 1.0;
constexpr int32_t kLooksBeforeAMove = 40;
/// What it takes to open and to close windows.
constexpr double kPopupsChange = 0.3;

std::string textOf(const CIntRect& rect) {
    return std::to_string(rect.left) + "," + std::to_string(rect.top) + ".." + std::to_string(rect.right) + "," +
           std::to_string(rect.bottom);
}

/// By their paths.
std::map<std::string, std::string> filesIn(const std::filesystem::path& folder) {
    std::map<std::string, std::string> files;
    std::error_code failure;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, failure)) {
        if (entry.is_regular_file()) {
            std::ifstream file(entry.path(), std::ios::binary);
            files[std::filesystem::relative(entry.path(), folder).generic_string()] = {
                std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        }
    }
    return files;
}

}  // namespace

/// What differs between the pixels of the real screen and those of the twin's; empty for nothing.
std::string ProductWindow::differenceIn(const CIntRect& part) {
    const std::vector<uint32_t> real = desk.screenPixels(part);
    const CPictureByHand picture = twin->screen(part);
    CIntRect differing;
    int64_t count = 0;
    for (size_t i = 0; i < picture.pixels.size(); ++i) {
        if (i >= real.size() || (picture.pixels[i] & 0xffffff) != real[i]) {
            const int32_t x = static_cast<int32_t>(i) % picture.width;
            const int32_t y = static_cast<int32_t>(i) / picture.width;
            differing = differing.unionWith({x, y, x + 1, y + 1});
            ++count;
        }
    }
    return count == 0 ? std::string() : std::to_string(count) + " pixels within " + textOf(differing);
}

/// Of the places of what popped up.
std::string ProductWindow::differenceOfPopups() {
    std::vector<CIntRect> popups = twin->popups();
    std::vector<CIntRect> real = desk.popups();
    const auto isBefore = [](const CIntRect& a, const CIntRect& b) {
        return std::tie(a.left, a.top, a.right, a.bottom) < std::tie(b.left, b.top, b.right, b.bottom);
    };
    std::sort(popups.begin(), popups.end(), isBefore);
    std::sort(real.begin(), real.end(), isBefore);
    if (real != popups) {
        std::string text = "popups at";
        for (const CIntRect& each : real) {
            text += " " + textOf(each);
        }
        text += " in place of";
        for (const CIntRect& each : popups) {
            text += " " + textOf(each);
        }
        return text;
    }
    return "";
}

std::string ProductWindow::difference() {
    const std::string ofPopups = differenceOfPopups();
    if (!ofPopups.empty()) {
        return ofPopups;
    }
    const std::string inMain = differenceIn(twin->mainWindow());
    if (!inMain.empty()) {
        return "the main window, " + inMain;
    }
    for (const CIntRect& popup : twin->popups()) {
        const std::string inPopup = differenceIn(popup);
        if (!inPopup.empty()) {
            return "a popup at " + textOf(popup) + ", " + inPopup;
        }
    }
    return "";
}

void ProductWindow::expectSame(const char* what) {
    // A system sends no move where a window has changed under a pointer that rests; a hand never rests. The move comes
    // behind the change.
    twin->wait(kPopupsChange);
    desk.until([&] { return differenceOfPopups().empty(); });
    const auto nudge = [this] {
        step_ = -step_;
        pointAt({pointer_.x + step_, pointer_.y});
        twin->wait(kChangesEnd);
    };
    nudge();
    std::string last;
    int32_t looks = 0;
    EXPECT_TRUE(desk.until([&] {
        // On a busy system a window may go behind the move after all.
        if (++looks % kLooksBeforeAMove == 0) {
            nudge();
        }
        return (last = difference()).empty();
    })) << what
        << ": " << last;
}

void ProductWindow::expectSameSettings() {
    desk.serve();
    const auto files = filesIn(CEditorTwin::libraryFolder());
    EXPECT_FALSE(files.empty());
    EXPECT_TRUE(files == filesIn(CEditorTwin::folder()));
}

std::string ProductWindow::heard() {
    desk.serve();
    std::string all;
    std::string last;
    for (const std::string& edit : effect.edits) {
        if (edit != last) {
            all += (all.empty() ? "" : ", ") + edit;
        }
        last = edit;
    }
    effect.edits.clear();
    return all;
}

std::string ProductWindow::heardGestures() {
    desk.serve();
    std::erase(effect.edits, "update");
    for (std::string& edit : effect.edits) {
        if (edit.starts_with("automate")) {
            edit.resize(edit.rfind(' '));
        }
    }
    return heard();
}

}  // namespace tarv::host
