#include "ProductPictures.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <vector>

#include "CPlainEditor.h"
#include "CScene.h"
#include "Platform/ByHand/CDesktopByHand.h"
#include "UI/Windows/CWindowSharedData.h"
#include "ViewPicture.h"

namespace tarv {

namespace {

constexpr double kScales[] = {0.8, 1.0, 1.25};
constexpr const char* kPalettes[] = {"Default", "Military", "Red", "Blue", "Green"};
constexpr const char* kInEachLook = "main-curves";
constexpr double kBeforeSeconds = 0.2;
constexpr double kBehindSeconds = 0.2;
constexpr uint32_t kDesk = 0x505458;

/// The part of the screen that holds all windows of the editor; between them a quiet grey.
CPictureByHand pictureOf(CPlainEditor& editor, bool isTopAlone) {
    std::vector<CIntRect> windows;
    CIntRect all;
    const auto& open = editor.window()->sharedData().windows();
    if (isTopAlone) {
        return editor.pictureOf(*open[open.count() - 1]);
    }
    for (const CWindow* window : open) {
        windows.push_back(window->screenBounds());
        all = all.unionWith(windows.back());
    }
    CPictureByHand picture = editor.system().desktop().picture(all);
    for (int32_t y = 0; y < picture.height; ++y) {
        for (int32_t x = 0; x < picture.width; ++x) {
            const CIntRect pixel{all.left + x, all.top + y, all.left + x + 1, all.top + y + 1};
            if (std::none_of(windows.begin(), windows.end(),
                             [&](const CIntRect& window) { return !window.intersection(pixel).isEmpty(); })) {
                picture.at(x, y) = kDesk;
            }
        }
    }
    return picture;
}

const CSceneRow* findScene(const std::string& name) {
    const CSceneRow* row = kScenes;
    while (row->name && name != row->name) {
        ++row;
    }
    return row->name ? row : nullptr;
}

}  // namespace

std::string CProductPicture::fileName() const {
    char text[16];
    std::snprintf(text, sizeof text, "%.2f", scale);
    return std::string(scene) + "-" + text + "-" + palette + ".png";
}

std::string drawProduct(const CProductPicture& what, CPictureByHand& picture) {
    const CSceneRow* row = findScene(what.scene);
    if (!row) {
        return std::string("no scene '") + what.scene + "'";
    }
    CPlainEditor editor;
    std::string failure = editor.openProduct(what.scale);
    if (failure.empty() && !editor.window()) {
        failure = "the product's tree has no main window";
    }
    if (failure.empty()) {
        CScene scene(editor);
        row->prepare(scene.palette(what.palette).wait(kBeforeSeconds));
        scene.wait(kBehindSeconds);
        failure = scene.failure();
        picture = pictureOf(editor, what.isTopAlone);
    }
    return failure.empty() ? "" : std::string(what.scene) + ": " + failure;
}

std::string drawAllOfProduct(const std::string& folder, const std::string& only) {
    for (const CSceneRow* row = kScenes; row->name; ++row) {
        for (const double scale : kScales) {
            for (const char* palette : kPalettes) {
                const CProductPicture what{row->name, scale, palette};
                const std::string path = folder + "/" + what.fileName();
                const bool isPlain = scale == 1.0 && palette == std::string(kPalettes[0]);
                if ((!isPlain && row->name != std::string(kInEachLook) && only.empty()) ||
                    path.find(only) == std::string::npos) {
                    continue;
                }
                CPictureByHand picture;
                const std::string failure = drawProduct(what, picture);
                if (!failure.empty()) {
                    return failure;
                }
                if (!writePng(picture, path)) {
                    return "cannot write '" + path + "'";
                }
            }
        }
    }
    return "";
}

}  // namespace tarv
