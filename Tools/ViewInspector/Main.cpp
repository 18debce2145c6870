// Shows the views of an editor: prints their tree, and draws their windows.

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "CPlainEditor.h"
#include "CViewPrinter.h"
#include "ProductPictures.h"
#include "UI/Windows/CWindowSharedData.h"
#include "ViewPicture.h"

namespace {

constexpr const char* kUsage =
    "ViewInspector --pictures FOLDER [NAME]   draws the product's windows, states and palettes, those with NAME in "
    "theirs\n"
    "ViewInspector FILE [options]   an editor's tree, as XML or compiled; `product` for the product's\n"
    "  --png OUT.png      draws its main window; further windows are OUT-1.png and so on\n"
    "  --boxes            with the outlines of the boxes\n"
    "  --tiles            with the edges of the tiles\n"
    "  --zoom N           each pixel as N x N, default 1\n"
    "  --formulas         prints the formulas of all cells\n"
    "  --scale S          scale of the editor, default 1.0\n"
    "  --engine           with an instance of the plug-in behind FILE, as `product` has one\n"
    "  --state PATH=NAMES sets states of a view before\n"
    "  --point PATH       puts the pointer on a view\n"
    "  --press PATH       presses it there and keeps it pressed\n"
    "  --click PATH       presses and releases it\n"
    "  --wait SECONDS     lets time pass\n"
    "  --help             this text\n"
    "What is done to views happens in the order of the options; PATH begins at the root, as in "
    "ui.main-window.buttons.\n";

struct CStep {
    std::string option;
    std::string argument;
};

struct COptions {
    std::string file;
    std::string png;
    double scale = 1.0;
    int32_t zoom = 1;
    bool hasBoxes = false;
    bool hasTiles = false;
    bool hasFormulas = false;
    bool hasEngine = false;
    bool isHelp = false;
    std::vector<CStep> steps;
};

bool isStep(const std::string& name) {
    return name == "--state" || name == "--point" || name == "--press" || name == "--click" || name == "--wait";
}

bool parse(int argc, char** argv, COptions& options) {
    for (int i = 1; i < argc; ++i) {
        const std::string name = argv[i];
        const bool hasMore = i + 1 < argc;
        if (name == "--help") {
            options.isHelp = true;
        } else if (name == "--boxes") {
            options.hasBoxes = true;
        } else if (name == "--tiles") {
            options.hasTiles = true;
        } else if (name == "--formulas") {
            options.hasFormulas = true;
        } else if (name == "--engine") {
            options.hasEngine = true;
        } else if (name == "--png" && hasMore) {
            options.png = argv[++i];
        } else if (name == "--scale" && hasMore) {
            options.scale = std::atof(argv[++i]);
        } else if (name == "--zoom" && hasMore) {
            options.zoom = std::atoi(argv[++i]);
        } else if (isStep(name) && hasMore) {
            options.steps.push_back({name, argv[++i]});
        } else if (name.starts_with("--") || !options.file.empty()) {
            return false;
        } else {
            options.file = name;
        }
    }
    return options.isHelp || (!options.file.empty() && options.scale > 0.0 && options.zoom > 0);
}

/// Failure, or "".
std::string run(tarv::CPlainEditor& editor, const CStep& step) {
    if (step.option == "--wait") {
        editor.system().advance(std::atof(step.argument.c_str()));
        return "";
    }
    if (step.option == "--state") {
        const size_t equals = step.argument.find('=');
        return equals == std::string::npos
                   ? "--state PATH=NAMES"
                   : editor.setState(step.argument.substr(0, equals), step.argument.substr(equals + 1));
    }
    const auto* view = editor.tree().findObjectOf<tarv::CView>(step.argument.c_str());
    if (!view || !editor.pointAt(*view)) {
        return "nothing is seen of a view '" + step.argument + "'";
    }
    if (step.option == "--press") {
        editor.system().input().press();
    } else if (step.option == "--click") {
        editor.system().input().click();
    }
    editor.system().pump();
    return "";
}

bool draw(tarv::CPlainEditor& editor, const COptions& options) {
    int32_t index = 0;
    for (const tarv::CWindow* window : editor.window()->sharedData().windows()) {
        tarv::CPictureByHand picture = editor.pictureOf(*window);
        const auto* root = dynamic_cast<const tarv::CView*>(&window->view());
        if (options.hasBoxes && root) {
            tarv::drawBoxes(picture, *root);
        }
        if (options.hasTiles) {
            tarv::drawTiles(picture);
        }
        std::string path = options.png;
        if (index > 0) {
            path.insert(path.ends_with(".png") ? path.size() - 4 : path.size(), "-" + std::to_string(index));
        }
        if (!tarv::writePng(picture, path, options.zoom)) {
            std::fprintf(stderr, "ViewInspector: cannot write '%s'\n", path.c_str());
            return false;
        }
        ++index;
    }
    return true;
}

int show(tarv::CPlainEditor& editor, const COptions& options) {
    for (const CStep& step : options.steps) {
        const std::string failure = run(editor, step);
        if (!failure.empty()) {
            std::fprintf(stderr, "ViewInspector: %s\n", failure.c_str());
            return 2;
        }
    }
    editor.system().advance(0.05);
    for (const tarv::CWindow* window : editor.window()->sharedData().windows()) {
        if (const auto* root = dynamic_cast<const tarv::CView*>(&window->view())) {
            tarv::CViewPrinter(stdout).print(*root, options.hasFormulas);
        }
    }
    return options.png.empty() || draw(editor, options) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    if ((argc == 3 || argc == 4) && std::string(argv[1]) == "--pictures") {
        const std::string failure = tarv::drawAllOfProduct(argv[2], argc == 4 ? argv[3] : "");
        if (!failure.empty()) {
            std::fprintf(stderr, "ViewInspector: %s\n", failure.c_str());
        }
        return failure.empty() ? 0 : 1;
    }
    COptions options;
    if (!parse(argc, argv, options)) {
        std::fputs(kUsage, stderr);
        return 2;
    }
    if (options.isHelp) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    tarv::CPlainEditor editor;
    const std::string failure = options.file == "product" ? editor.openProduct(options.scale)
                                                          : editor.open(options.file, options.scale, options.hasEngine);
    if (!failure.empty()) {
        std::fprintf(stderr, "ViewInspector: %s\n", failure.c_str());
        return 1;
    }
    if (!editor.window()) {
        std::fputs("no ui.main-window.window-renderer: the tree has no views\n", stdout);
        return 0;
    }
    return show(editor, options);
}
