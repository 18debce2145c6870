// Random changes of an open editor: what its ticks show equals one drawing of all, pixel by pixel.

#include <cstdlib>
#include <random>

#include "Platform/Keyboard.h"
#include "Tests/Tools/ViewInspector/DemoEditor.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

class DirtyTiles : public CDemoEditor {
protected:
    int32_t below(int32_t count) { return static_cast<int32_t>(random() % static_cast<uint32_t>(count)); }
    static void collect(CObject& object, std::vector<CView*>& all) {
        if (auto* found = dynamic_cast<CView*>(&object)) {
            all.push_back(found);
        }
        for (CObject* child : object.children()) {
            collect(*child, all);
        }
    }
    CView& any() {
        std::vector<CView*> all;
        collect(*editor.mainView(), all);
        return *all[static_cast<size_t>(below(static_cast<int32_t>(all.size())))];
    }
    void resize(CView& view) {
        set(view, below(2) ? "width" : "height",
            std::to_string(view.isRootView() ? 300 + below(500) : below(120)).c_str());
    }
    void changeState(CView& view) {
        const char* const kNames[] = {"active", "hover", "pushed"};
        EXPECT_EQ(consumed(view.toggleState(kNames[below(3)])), "");
    }
    CTextView& anyText() {
        std::vector<CView*> all;
        collect(*editor.mainView(), all);
        std::erase_if(all, [](const CView* view) { return !dynamic_cast<const CTextView*>(view); });
        return dynamic_cast<CTextView&>(*all[static_cast<size_t>(below(static_cast<int32_t>(all.size())))]);
    }
    void changeText() {
        static const char* const kTitles[] = {"", "A", "[B]Two[/B] words",
                                              "x[SUP]2[/SUP][BR][IMG=is.button#Gear:Action]",
                                              "One\nTwo\nThree [C2]rows[/C2]\nFour"};
        static const char* const kAlignments[] = {"left", "center", "right"};
        static const char* const kFonts[] = {"shared::font.micro", "shared::font.base", "shared::font.title"};
        CTextView& view = anyText();
        switch (below(6)) {
            case 0:
                set(view, "title", kTitles[below(5)]);
                break;
            case 1:
                set(view, "text-alignment", kAlignments[below(3)]);
                break;
            case 2:
                set(view, "font-name", kFonts[below(3)]);
                break;
            case 3:
                set(view, "is-text-wrapped", below(2) ? "true" : "false");
                break;
            case 4:
                set(at("c.texts.outline.list"), "selected-paragraph", std::to_string(below(12) - 1).c_str());
                break;
            default:
                set(at("c.texts.outline.list"), "offset-y", std::to_string(below(100) / 100.0).c_str());
        }
    }
    /// Opens an edit or a list where nothing is open, and otherwise types.
    void edit() {
        const bool isOpen = find("temp-editbox") || popup("window-app-popup-list");
        if (!isOpen) {
            const char* const kOpened[] = {"c.texts.fields.name", "c.texts.fields.number", "c.texts.choice.opener"};
            if (editor.pointAt(at(kOpened[below(3)]))) {
                editor.system().input().click();
            }
            return;
        }
        edits += find("temp-editbox") ? 1 : 0;
        lists += popup("window-app-popup-list") ? 1 : 0;
        const int32_t kKeys[] = {kKeyBackspace, kKeyLeft, kKeyHome, kKeyDown, kKeyUp, kKeyTab, kKeyEnter, kKeyEscape};
        if (below(2)) {
            editor.system().input().type(below(2) ? u"a1" : u"0");
        } else {
            editor.system().input().key(kKeys[below(below(4) ? 5 : 8)], true);
        }
    }
    void change() {
        CView& view = any();
        const bool isRoot = view.isRootView();
        const char* const kOpacities[] = {"1", "0.9995", "0.998", "0.5", "0"};
        const char* const kLevels[] = {"0", "1", "2", "-1"};
        switch (below(16)) {
            case 12:
            case 13:
                changeText();
                break;
            case 14:
            case 15:
                edit();
                break;
            case 0:
            case 1:
            case 2:
                changeState(view);
                break;
            case 3:
                set(view, "opacity", isRoot ? "1" : kOpacities[below(5)]);
                break;
            case 4:
                set(view, "is-dynamic", below(2) ? "true" : "false");
                break;
            case 5:
                set(view, "is-visible", isRoot || below(3) ? "true" : "false");
                break;
            case 6:
                set(view, "unclip-level", kLevels[below(4)]);
                break;
            case 7:
                resize(view);
                break;
            case 8:
                set(view, "outer-border", std::to_string(below(12)).c_str());
                break;
            case 9:
                set(at("c.side.scrolled"), "offset-y", std::to_string(below(100) / 100.0).c_str());
                break;
            case 10:
                set(view, "color", below(2) ? "Custom2" : "Panel");
                break;
            default:
                if (editor.pointAt(view)) {
                    below(2) ? editor.system().input().press() : editor.system().input().release();
                }
        }
    }
    /// One drawing of all that a window shows now.
    static CPictureByHand drawnAtOnce(CWindow& window, const CPictureByHand& shown) {
        CSectorMap& map = window.sectorMap();
        map.invalidate({0.0, 0.0, 1e4, 1e4}, nullptr);
        map.render([](int32_t, int32_t, const CIntRect&, const CSurface&, int32_t) {},
                   [](CSectorView&, CError* error) { ADD_FAILURE() << consumed(error); });
        CPictureByHand drawn(shown.width, shown.height, 0);
        map.present(drawn.bounds(), [&](int32_t column, int32_t row, const CIntRect& rect, const CSurface& surface,
                                        int32_t surfaceRow) {
            const uint32_t* pixels = const_cast<CSurface&>(surface).pixels();
            for (int32_t y = rect.top; y < rect.bottom; ++y) {
                const uint32_t* from = pixels + (surfaceRow + y) * CSector::kSize;
                std::copy(from + rect.left, from + rect.right,
                          &drawn.at(column * CSector::kSize + rect.left, row * CSector::kSize + y));
            }
        });
        return drawn;
    }
    /// First pixel that differs, or "".
    static std::string difference(const CPictureByHand& is, const CPictureByHand& should) {
        const auto found = std::mismatch(is.pixels.begin(), is.pixels.end(), should.pixels.begin()).first;
        const auto at = static_cast<int32_t>(found - is.pixels.begin());
        return found == is.pixels.end() ? "" : std::to_string(at % is.width) + "," + std::to_string(at / is.width);
    }

    /// Of all windows.
    void expectOneDrawing(int32_t round) {
        // A cursor may have blinked behind the last tick.
        editor.window()->tick();
        for (const CWindow* window : editor.window()->sharedData().windows()) {
            if (window->isOpen()) {
                const CPictureByHand is = editor.pictureOf(*window);
                ASSERT_EQ(difference(is, drawnAtOnce(const_cast<CWindow&>(*window), is)), "")
                    << "round " << round << ' ' << window->fullName().toUtf8();
            }
        }
    }

    std::mt19937 random{4711};
    int32_t edits = 0;
    int32_t lists = 0;
};

TEST_F(DirtyTiles, AThousandRandomChangesByTicksAreOneDrawingOfAll) {
    const int32_t rounds = std::getenv("TARV_LONG") ? 10000 : 400;
    int32_t changes = 0;
    open();
    for (int32_t round = 0; round < rounds && !HasFailure(); ++round) {
        for (int32_t i = 1 + below(4); i > 0; --i) {
            change();
            ++changes;
        }
        // In the middle of morphs, and at their ends.
        advance(below(8) ? kTick : 0.5);
        // Not in each round: the drawing of all would hide a cache that is out of date.
        if (below(4) == 0) {
            expectOneDrawing(round);
        }
        if (round % 100 == 99) {
            open(round % 200 == 99 ? 1.25 : 0.8);
        }
    }
    EXPECT_GE(changes, 900);
    EXPECT_GE(edits, 20);
    EXPECT_GE(lists, 10);
}

}  // namespace
}  // namespace tarv
