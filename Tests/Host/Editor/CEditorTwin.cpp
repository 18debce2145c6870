#include "Tests/Host/Editor/CEditorTwin.h"

#include <cmath>
#include <filesystem>
#include <random>

#include "Core/CApplicationData.h"
#include "Platform/ByHand/CDesktopByHand.h"
#include "Platform/Folders.h"

namespace {

/// Empty at first; goes with the program.
class CTwinFolder {
public:
    CTwinFolder()
        : folder_(std::filesystem::temp_directory_path() / ("tarv-twin-" + std::to_string(std::random_device()()))) {
        std::filesystem::create_directories(folder_);
    }
    ~CTwinFolder() {
        std::error_code failure;
        std::filesystem::remove_all(folder_, failure);
    }
    CTwinFolder(const CTwinFolder&) = delete;
    CTwinFolder& operator=(const CTwinFolder&) = delete;
    void empty() const {
        for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
            std::filesystem::remove_all(entry.path());
        }
    }
    std::u16string path() const { return folder_.generic_u16string(); }

    static CTwinFolder& common() {
        static CTwinFolder folder;
        return folder;
    }

private:
    const std::filesystem::path folder_;
};

constexpr double kFirstTurns = 1.0;

/// With nothing stored.
double emptied(double scale) {
    CTwinFolder::common().empty();
    return scale;
}

}  // namespace

// What the linker puts in place of tarv::dataRootPath in this program; the library has its own.
extern "C" tarv::CPlatformError wrappedDataRootPath(tarv::CDataRoot root, std::u16string& path) __asm__(
    "__wrap__ZN4tarv12dataRootPathENS_9CDataRootERNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE");
extern "C" tarv::CPlatformError realDataRootPath(tarv::CDataRoot root, std::u16string& path) __asm__(
    "__real__ZN4tarv12dataRootPathENS_9CDataRootERNSt7__cxx1112basic_stringIDsSt11char_traitsIDsESaIDsEEE");

tarv::CPlatformError wrappedDataRootPath(tarv::CDataRoot root, std::u16string& path) {
    path = CTwinFolder::common().path() + (root == tarv::CDataRoot::kUser ? u"/user" : u"/common");
    return 0;
}

namespace tarv::host {

CEditorTwin::CEditorTwin(const CIntRect& screen, const CIntRect& host) : CProductEditor(emptied(1.0), screen, host) {
    wait(kFirstTurns);
}

void CEditorTwin::restart(const CIntRect& host) {
    end();
    renewHost(host);
    CGlobalData::instance().reset();
    CLocalData::instance().reset();
    start();
    wait(kFirstTurns);
}

std::string CEditorTwin::libraryFolder() {
    std::u16string path;
    EXPECT_EQ(realDataRootPath(CDataRoot::kUser, path), 0u);
    return std::filesystem::path(path + u"/Tarvelo").string();
}

std::string CEditorTwin::folder() {
    return std::filesystem::path(CTwinFolder::common().path() + u"/user/Tarvelo").string();
}

CScreenPoint CEditorTwin::where(const CSpot& spot) {
    auto* view = tree().findObjectOf<CView>(full(spot.path).c_str());
    auto* window = view ? dynamic_cast<CWindow*>(view->window()) : nullptr;
    CWindowByHand* shown = window && window->isOpen() ? system_.desktop().find(window->handle()) : nullptr;
    if (!shown || view->visibleRect().isEmpty()) {
        ADD_FAILURE() << "nothing is seen of " << spot.path;
        return {};
    }
    const CViewRect& rect = view->visibleRect();
    const CIntRect bounds = shown->screenBounds();
    return {bounds.left + static_cast<int32_t>(std::lround(rect.x + rect.width / 2.0)) + spot.x,
            bounds.top + static_cast<int32_t>(std::lround(rect.y + rect.height / 2.0)) + spot.y};
}

CScreenPoint CEditorTwin::whereRow(const std::string& path, int32_t row) {
    auto* list = tree().findObjectOf<CTextView>(full(path).c_str());
    auto* window = list ? dynamic_cast<CWindow*>(list->window()) : nullptr;
    const CViewRect rect = list ? list->rowRect(row) : CViewRect();
    CWindowByHand* shown = window ? system_.desktop().find(window->handle()) : nullptr;
    if (!shown || rect.isEmpty()) {
        ADD_FAILURE() << "no row " << row << " of " << path;
        return {};
    }
    const CIntRect bounds = shown->screenBounds();
    return {bounds.left + static_cast<int32_t>(rect.x) + 6,
            bounds.top + static_cast<int32_t>(rect.y + rect.height / 2.0)};
}

CIntRect CEditorTwin::mainWindow() {
    for (CWindowByHand* window : system_.desktop().windows()) {
        if (window->isShown() && window->isChild()) {
            return window->screenBounds();
        }
    }
    return {};
}

std::vector<CIntRect> CEditorTwin::popups() {
    std::vector<CIntRect> all;
    for (CWindowByHand* window : system_.desktop().windows()) {
        if (window->isShown() && !window->isChild()) {
            all.push_back(window->screenBounds());
        }
    }
    return all;
}

}  // namespace tarv::host
