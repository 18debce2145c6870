// Random changes of text views: dirty tiles against a full redraw, and against views that were made with the last
// attributes.

#include <random>

#include "Tests/UI/Text/TextViewTree.h"

namespace tarv {
namespace {

class RandomText : public CTextViewTest {
protected:
    static constexpr int32_t kViews = 3;

    int32_t random(int32_t low, int32_t high) { return std::uniform_int_distribution<int32_t>(low, high)(generator); }
    template <size_t N>
    std::string anyOf(const char* const (&texts)[N]) {
        return texts[random(0, static_cast<int32_t>(N) - 1)];
    }
    std::string number(int32_t low, int32_t high) { return std::to_string(random(low, high)); }
    std::string title() {
        static constexpr const char* kPieces[] = {"one ",
                                                  "two-three ",
                                                  "[B]",
                                                  "[/B]",
                                                  "[C2]",
                                                  "[/C2]",
                                                  "[SUP]",
                                                  "[/SUP]",
                                                  "[BR]",
                                                  "\n",
                                                  "wwwwwwwwww",
                                                  " ",
                                                  "-",
                                                  "[IMG=is.button#BoxActive:Action]",
                                                  "[",
                                                  "x",
                                                  "[IMG=is.button#BoxPushed]",
                                                  "\n\n"};
        std::string text;
        for (int32_t i = random(0, 25); i > 0; --i) {
            text += anyOf(kPieces);
        }
        return text;
    }
    /// An attribute and its next text.
    std::pair<std::string, std::string> change() {
        switch (random(0, 15)) {
            case 0:
                return {"width", anyOf({"compact", "40", "41", "95", "12", "0", "100%"})};
            case 1:
                return {"height", anyOf({"compact", "14", "33", "60", "9", "80"})};
            case 2:
                return {"text-alignment", anyOf({"left", "center", "right"})};
            case 3:
                return {"is-text-wrapped", anyOf({"true", "false"})};
            case 4:
                return {"paragraph-spacing", number(0, 12)};
            case 5:
                return {"font-name", anyOf({"", "shared::font.base", "shared::font.base.bold", "shared::font.lone",
                                            "shared::font.none"})};
            case 6:
                return {"text-color", anyOf({"", "Knob", "Action", "^"})};
            case 7:
                return {"is-list", anyOf({"true", "false"})};
            case 8:
                return {"inner-border", number(0, 4) + " *L" + number(0, 4)};
            case 9:
                return {"inline-alignment-v", anyOf({"top", "center", "bottom"})};
            case 10:
                return {"is-disabled", anyOf({"true", "false"})};
            case 11:
                return {"is-visible", anyOf({"true", "false", "true"})};
            case 12:
                return {"outer-border", "*L" + number(0, 150) + " *T" + number(0, 150)};
            case 13:
                return {"selected-paragraph", number(-1, 4)};
            default:
                return {"title", title()};
        }
    }
    void openAll() {
        std::vector<CTestNode> views;
        for (int32_t i = 0; i < kViews; ++i) {
            CTexts texts(attributes[i].begin(), attributes[i].end());
            views.push_back(label("v" + std::to_string(i), texts));
        }
        openTexts(views);
    }
    CTextView& viewAt(int32_t i) { return text("v" + std::to_string(i)); }
    void input(CTextView& view) {
        CAttributeMap params;
        params["actual-x"] = CAttributeValue::fromReal(view.area().box().x + random(0, 60));
        params["actual-y"] = CAttributeValue::fromReal(view.area().box().y + random(0, 60));
        params["delta"] = CAttributeValue::fromReal(random(-4, 4) * 0.5);
        params["keycode"] = CAttributeValue::fromInt(random(33, 40));
        CError* error = nullptr;
        switch (random(0, 3)) {
            case 0:
                error = view.mouseMove(params);
                break;
            case 1:
                error = view.mousePress(params);
                break;
            case 2:
                error = view.mouseWheel(params);
                break;
            default:
                error = view.keyPress(params);
        }
        EXPECT_EQ(consumed(error), "");
    }
    void step() {
        const int32_t i = random(0, kViews - 1);
        if (random(0, 3) == 0) {
            input(viewAt(i));
            return;
        }
        const auto [name, value] = change();
        attributes[i][name] = value;
        set(viewAt(i), name, value);
    }
    void expectFullRedrawIsTheSame() {
        const std::vector<CPixel> drawn = picture();
        window_.map.invalidate({0.0, 0.0, 300.0, 200.0}, nullptr);
        rootView_->requestRedraw();
        for (int32_t i = 0; i < kViews; ++i) {
            viewAt(i).requestRedraw();
        }
        tick();
        EXPECT_TRUE(drawn == picture());
    }
    /// Views that are made now, with what the present ones have, look the same.
    void expectNewViewsAreTheSame() {
        double offsets[kViews][2];
        for (int32_t i = 0; i < kViews; ++i) {
            CTextView& view = viewAt(i);
            if (!isScrollable(i)) {
                offsets[i][0] = offsets[i][1] = 0.0;
            } else {
                offsets[i][0] = view.area().value(CViewCell::OffsetX);
                offsets[i][1] = view.area().value(CViewCell::OffsetY);
            }
            if (view.isList()) {
                attributes[i]["selected-paragraph"] = std::to_string(view.selectedParagraph());
            }
            CAttributeMap none;
            EXPECT_EQ(consumed(view.mouseExit(none)), "");
        }
        tick();
        const std::vector<CPixel> drawn = picture();
        openAll();
        tick();
        for (int32_t i = 0; i < kViews; ++i) {
            viewAt(i).area().setOffsetX(offsets[i][0]);
            viewAt(i).area().setOffsetY(offsets[i][1]);
        }
        tick();
        EXPECT_TRUE(drawn == picture());
    }
    static bool isScrollable(int32_t i) { return i == 1; }

    std::mt19937 generator{5};
    std::map<std::string, std::string> attributes[kViews];
};

TEST_F(RandomText, DirtyTilesAndNewViewsLookTheSame) {
    const int32_t steps = std::getenv("TARV_LONG") ? 20000 : 1000;
    for (int32_t i = 0; i < kViews; ++i) {
        attributes[i] = {{"placement", "overlay"},
                         {"title", title()},
                         {"is-list", i == 0 ? "true" : "false"},
                         {"is-scrollable", isScrollable(i) ? "true" : "false"}};
    }
    const CLogCapture log;
    openAll();
    tick();
    for (int32_t i = 0; i < steps && !HasFailure(); ++i) {
        step();
        tick(0.025);
        SCOPED_TRACE(i);
        expectFullRedrawIsTheSame();
        if (i % 10 == 9) {
            expectNewViewsAreTheSame();
        }
    }
    EXPECT_TRUE(failures_.empty());
}

}  // namespace
}  // namespace tarv
