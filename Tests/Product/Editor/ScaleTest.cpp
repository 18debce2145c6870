// The scale of the editor, at every view of every window: lengths are multiplied, parts of other lengths are not.

#include <cmath>
#include <set>

#include "Core/CApplication.h"
#include "EveryWindow.h"
#include "UI/Controls/Surface/CRuler.h"
#include "UI/Placement/CViewAxis.h"

namespace tarv {

namespace {

/// Cells are floats, and code writes lengths with four decimals.
constexpr double kSame = 1e-3;

struct CAxisRow {
    const char* length;
    const char* least;
    const char* sides;  ///< the letters of borders that lie along it
};
constexpr CAxisRow kAxes[2] = {{"width", "min-width", "LR"}, {"height", "min-height", "TB"}};

/// What a walk has found, at one scale.
struct CWalk {
    double scale = 1.0;
    std::set<std::string> windows;
    std::set<std::string> lengths;  ///< views and axes of a length in pixels
    std::set<std::string> parts;    ///< of a part of another length
    std::set<std::string> borders;  ///< views with a border
};

bool isNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos;
}

class CScaledEditor : public CEveryWindow {
public:
    explicit CScaledEditor(double scale) : CEveryWindow(scale, kWideScreen) { walk_.scale = scale; }
    void TestBody() override {}

    const CWalk& walk() {
        setEngine("host-offline", 0, 0, 1.0);
        wait(1.0);
        visitEveryWindow([&](const char* window) {
            walk_.windows.insert(window);
            look(at(window));
        });
        return walk_;
    }
    using CEveryWindow::windows;
    using CProductEditor::at;
    using CProductEditor::box;
    using CProductEditor::click;

private:
    void look(const CView& view) {
        for (int32_t axis = 0; axis < 2; ++axis) {
            lookAtLength(view, axis);
        }
        lookAtBorder(view, "outer-border", CViewCell::OuterBottom);
        lookAtBorder(view, "inner-border", CViewCell::InnerBottom);
        const CView* former = nullptr;
        for (const CObject* child : view.children()) {
            const auto* below = dynamic_cast<const CView*>(child);
            if (below) {
                look(*below);
                lookAtBase(view, *below, former);
                former = below->isShown() ? below : former;
            }
        }
    }
    double scaledNumber(const CView& view, const char* attribute) const {
        const std::string text = view.getAttrString(attribute).toUtf8();
        return isNumber(text) ? std::stod(text) * walk_.scale : 0.0;
    }
    void lookAtLength(const CView& view, int32_t axis) {
        const CViewAxis& cells = kViewAxes[axis];
        const std::string name = view.fullName().toUtf8() + ' ' + kAxes[axis].length;
        const std::string text = view.getAttrString(kAxes[axis].length).toUtf8();
        const CViewArea& area = view.area();
        const double least = scaledNumber(view, kAxes[axis].least);
        const auto* ruler = dynamic_cast<const CRuler*>(&view);
        if (ruler && ruler->isVertical() == (axis == 0)) {
            // Bars begin at a whole pixel beside it.
            EXPECT_EQ(area.value(cells.size), std::floor(scaledNumber(view, "ruler-size"))) << name;
            walk_.lengths.insert(name);
        } else if (isNumber(text)) {
            EXPECT_NEAR(area.value(cells.size), std::max(std::stod(text) * walk_.scale, least), kSame) << name;
            walk_.lengths.insert(name);
        } else if (view.isShown() && !view.isRootView() && (text == "full" || text.ends_with('%'))) {
            const double part = text == "full" ? 1.0 : std::stod(text) / 100.0;
            const double borders = area.value(cells.outerLead) + area.value(cells.outerTrail);
            EXPECT_NEAR(area.value(cells.size), std::max(part * area.value(cells.base) - borders, least), kSame)
                << name;
            walk_.parts.insert(name);
        }
    }
    /// The first docked view of a parent has all of its inner room, and none has more.
    void lookAtBase(const CView& parent, const CView& view, const CView* former) {
        const CViewPlacement placement = view.area().placement();
        if (!view.isShown() || placement < CViewPlacement::Full || placement > CViewPlacement::Right) {
            return;
        }
        for (const CViewAxis& cells : kViewAxes) {
            const CViewArea& area = parent.area();
            const double scroller = area.isScrollable() ? area.value(cells.scroller) : 0.0;
            const double room =
                area.value(cells.size) - area.value(cells.innerLead) - area.value(cells.innerTrail) - scroller;
            EXPECT_LE(view.area().value(cells.base), room + kSame) << view.fullName().toUtf8();
            if (!former) {
                EXPECT_NEAR(view.area().value(cells.base), room, kSame) << view.fullName().toUtf8();
            }
        }
    }
    /// Each number of a border is scaled and rounded; one with `*` is added, another replaces.
    void lookAtBorder(const CView& view, const char* attribute, CViewCell first) {
        const CString& text = view.getAttrString(attribute);
        if (text.isEmpty()) {
            return;
        }
        const std::string kSides = "BLRT";  // in the order of the cells
        double expected[4] = {};
        for (const CString& part : text.split(' ')) {
            const std::string item = part.toUtf8();
            const size_t number = item.find_first_of("-+0123456789.");
            const double value = std::round(std::stod(item.substr(number)) * walk_.scale);
            const std::string head = item.substr(0, number);
            const bool isAll = head.find_first_of(kSides) == std::string::npos;
            for (size_t side = 0; side < 4; ++side) {
                if (isAll || head.find(kSides[side]) != std::string::npos) {
                    expected[side] = head.starts_with('*') ? expected[side] + value : value;
                }
            }
        }
        for (int32_t side = 0; side < 4; ++side) {
            EXPECT_EQ(view.area().value(static_cast<CViewCell>(static_cast<int32_t>(first) + side)), expected[side])
                << view.fullName().toUtf8() << ' ' << attribute << ' ' << text.toUtf8();
        }
        walk_.borders.insert(view.fullName().toUtf8() + ' ' + attribute);
    }

    CWalk walk_;
};

class Scale : public testing::TestWithParam<double> {};

TEST_P(Scale, EveryLengthOfEveryViewIsMultipliedAndNoPartIs) {
    CWalk plain;
    {
        CScaledEditor editor(1.0);
        plain = editor.walk();
    }
    CScaledEditor editor(GetParam());
    const CWalk& scaled = editor.walk();
    EXPECT_EQ(scaled.lengths, plain.lengths);
    EXPECT_EQ(scaled.parts, plain.parts);
    EXPECT_EQ(scaled.borders, plain.borders);
    EXPECT_EQ(scaled.windows, std::set<std::string>(CScaledEditor::windows().begin(), CScaledEditor::windows().end()));
    for (const char* one :
         {"ui.main-window.window-title.bypass width", "ui.win-settings height",
          "ui.win-channel-label-setup.c.names.item1.name height", "ui.virtual-keyboard-digit.enter width",
          "ui.main-window.c.xeq2.cs-sliders.ruler-freqs height", "ui.main-window.c.offline-holder.frame width"}) {
        EXPECT_EQ(scaled.lengths.count(one), 1u) << one;
    }
}

TEST_P(Scale, HalvesStayHalves) {
    CScaledEditor editor(GetParam());
    const double room = editor.box("c").width;
    EXPECT_NEAR(room, 640.0 * GetParam() - 2.0 * std::round(GetParam()), kSame);
    for (const char* view : {"c.xeq1", "c.xeq2"}) {
        const CViewArea& area = editor.at(view).area();
        const double borders = area.value(CViewCell::OuterLeft) + area.value(CViewCell::OuterRight);
        EXPECT_NEAR(area.box().width + borders, room / 2.0, kSame) << view;
    }
    const CViewRect letters = editor.box("c.buttons.ab.labels");
    EXPECT_NEAR(editor.box("c.buttons.ab.labels.a").width, letters.width / 2.0, kSame);
    EXPECT_NEAR(editor.box("c.buttons.ab.labels.b").width, letters.width / 2.0, kSame);
    editor.click("c.buttons.settings");
    editor.click("ui.win-settings.c.settings.global-settings");
    const double switches = editor.box("ui.win-global-settings.c.settings.switches").width;
    for (const char* side : {"left", "right"}) {
        EXPECT_NEAR(editor.box(std::string("ui.win-global-settings.c.settings.switches.") + side).width, switches / 2.0,
                    kSame);
    }
}

INSTANTIATE_TEST_SUITE_P(Scales, Scale, testing::Values(0.8, 1.25),
                         [](const auto& row) { return std::to_string(std::lround(row.param * 100.0)); });

}  // namespace

}  // namespace tarv
