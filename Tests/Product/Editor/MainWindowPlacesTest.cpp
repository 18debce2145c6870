// Where the parts of the main window stand, in device pixels, at each scale.

#include <cmath>

#include "ProductEditor.h"
#include "UI/Controls/Surface/CRuler.h"

namespace tarv {

namespace {

struct CScaleRow {
    double scale;
    double bars;   ///< least height of the bars' range
    double pitch;  ///< of the columns of seven bands
};

void PrintTo(const CScaleRow& row, std::ostream* out) {
    *out << row.scale;
}

constexpr CScaleRow kScales[] = {{0.8, 160.0, 24.0}, {1.0, 200.0, 31.0}, {1.25, 248.0, 38.0}};
constexpr double kBands = 7.0;
constexpr double kGroups = 8.0;
constexpr double kUnitsOfRange = 8.0;  ///< 24 dB in steps of 3

class CPlaces : public CProductEditor {
public:
    explicit CPlaces(double scale) : CProductEditor(scale) {}
    void TestBody() override {}
    using CProductEditor::at;
    using CProductEditor::box;
    using CProductEditor::click;
    using CProductEditor::setEngine;
    using CProductEditor::wait;

    /// Views below one, and without views below themselves, that a rectangle covers; overlays do not count.
    std::string coveredViews(const CView& view, const CViewRect& cover) {
        std::string covered;
        bool isLeaf = true;
        for (const CObject* child : view.children()) {
            const auto* below = dynamic_cast<const CView*>(child);
            if (below && below->isShown() &&
                below->getAttrString("placement").toUtf8().find("overlay") == std::string::npos) {
                isLeaf = false;
                covered += coveredViews(*below, cover);
            }
        }
        const CViewRect box = view.area().box();
        const bool isCovered =
            box.x < cover.right() && cover.x < box.right() && box.y < cover.bottom() && cover.y < box.bottom();
        return covered + (isCovered && (isLeaf || view.isInputView()) && !view.isRootView()
                              ? view.fullName().toUtf8() + "\n"
                              : std::string());
    }

    /// Views below one that are cut, more than by the rounding of their places.
    std::string cutViews(const CView& view) {
        std::string cut;
        for (const CObject* child : view.children()) {
            const auto* below = dynamic_cast<const CView*>(child);
            // Labels of rulers stand out of them on purpose.
            if (!below || !below->isShown() || dynamic_cast<const CRuler*>(&view) || below->area().isScrollable()) {
                continue;
            }
            const CViewRect& seen = below->visibleRect();
            const CViewRect box = below->area().box();
            if (seen.width < box.width - 1.0 || seen.height < box.height - 1.0) {
                cut += below->fullName().toUtf8() + "\n";
            }
            cut += cutViews(*below);
        }
        return cut;
    }
};

class MainWindowPlaces : public testing::TestWithParam<CScaleRow> {
protected:
    MainWindowPlaces() : editor_(GetParam().scale) {}
    CViewRect box(const std::string& path) { return editor_.box(path); }
    double scaled(double length) const { return length * GetParam().scale; }

    CPlaces editor_;
};

TEST_P(MainWindowPlaces, TheWindowHasTheProjectsSize) {
    EXPECT_DOUBLE_EQ(box("").width, scaled(640.0));
    EXPECT_DOUBLE_EQ(box("").height, scaled(400.0));
}

TEST_P(MainWindowPlaces, BarsAreHighAndTheirColumnsEven) {
    for (const std::string view : {"c.xeq1.", "c.xeq2."}) {
        const CViewRect bands = box(view + "cs-sliders.control-surface");
        EXPECT_GE(kUnitsOfRange * std::floor(bands.height / kUnitsOfRange), GetParam().bars);
        EXPECT_EQ(std::floor(bands.width / kBands), GetParam().pitch);
        const CViewRect output = box(view + "cs-gain.control-surface");
        EXPECT_EQ(output.y, bands.y);
        EXPECT_EQ(output.height, bands.height);
    }
}

TEST_P(MainWindowPlaces, BarsTakeHalfOfTheWindowsHeight) {
    EXPECT_GE(box("c.xeq1.cs-sliders.control-surface").height / box("").height, 0.495);
}

TEST_P(MainWindowPlaces, RulersHaveTheirSizes) {
    for (const std::string view : {"c.xeq1.", "c.xeq2."}) {
        EXPECT_EQ(box(view + "cs-sliders.ruler-freqs").height, std::floor(scaled(14.0)));
        EXPECT_EQ(box(view + "cs-sliders.ruler-values").height, std::floor(scaled(14.0)));
        EXPECT_EQ(box(view + "cs-gain.ruler-values").height, std::floor(scaled(14.0)));
        EXPECT_EQ(box(view + "cs-sliders.ruler-gain").width, std::floor(scaled(24.0)));
        EXPECT_EQ(box(view + "cs-gain.ruler-gain").width, std::floor(scaled(24.0)));
    }
}

TEST_P(MainWindowPlaces, TheTitleStandsInTheWindowsMiddle) {
    auto& label = editor_.at<CTextView>("window-title.label");
    const CTextLine& line = label.layout().line(0);
    const double left = label.textOrigin().x + line.x;
    EXPECT_NEAR(left + line.width / 2.0, box("").width / 2.0, 1.0);
    EXPECT_GT(left, box("window-title.instance-name").right());
    EXPECT_LT(left + line.width, box("window-title.quality-selector").x);
}

TEST_P(MainWindowPlaces, RowsOfAViewHaveOneLeftAndOneRightEdge) {
    for (const std::string view : {"c.xeq1.", "c.xeq2."}) {
        const CViewRect head = box(view + "title-frame-head");
        const CViewRect base = box(view + "xeq-base");
        EXPECT_EQ(base.x, head.x);
        EXPECT_EQ(base.right(), head.right());
        EXPECT_EQ(box(view + "cs-sliders").x, head.x);
        EXPECT_NEAR(box(view + "cs-gain").right(), head.right(), 1.0);
        EXPECT_NEAR(box(view + "title-frame-head.param-reset-button").right(), head.right(), 1.0);
        EXPECT_NEAR(box(view + "xeq-base.edit-group.param-copy-button").right(), head.right(), 1.0);
    }
}

TEST_P(MainWindowPlaces, TheButtonsAboveTheViewsEndWhereTheirPanelsEnd) {
    EXPECT_EQ(box("c.buttons.preset-manager").x, box("c.xeq1").x);
    EXPECT_NEAR(box("c.buttons.settings").right(), box("c.xeq2").right(), 1.0);
    EXPECT_NEAR(box("window-title.bypass").right(), box("c.buttons.settings").right(), 1.0);
}

TEST_P(MainWindowPlaces, BothViewsAreTheSame) {
    const double shift = box("c.xeq2").x - box("c.xeq1").x;
    for (const char* part :
         {"title-frame-head.title-frame-caption", "title-frame-head.param-reset-button",
          "title-frame-head.eq-invert-scale.scale", "xeq-base.edit-group.selector", "xeq-base.underlay-group.selector",
          "cs-sliders.control-surface", "cs-gain.control-surface"}) {
        const CViewRect first = box(std::string("c.xeq1.") + part);
        const CViewRect second = box(std::string("c.xeq2.") + part);
        EXPECT_EQ(second.x - first.x, shift) << part;
        EXPECT_EQ(second.y, first.y) << part;
        EXPECT_EQ(second.width, first.width) << part;
        EXPECT_EQ(second.height, first.height) << part;
    }
}

TEST_P(MainWindowPlaces, GroupButtonsAreOfOneWidthInBothRows) {
    for (const std::string view : {"c.xeq1.", "c.xeq2."}) {
        const CViewRect edit = box(view + "xeq-base.edit-group.selector");
        const CViewRect underlay = box(view + "xeq-base.underlay-group.selector");
        EXPECT_EQ(edit.x, underlay.x);
        EXPECT_EQ(edit.width, underlay.width);
        for (const std::string row : {"edit-group", "underlay-group"}) {
            double next = -1.0;
            int32_t count = 0;
            for (const CObject* child : editor_.at(view + "xeq-base." + row + ".selector").children()) {
                const auto* button = dynamic_cast<const CView*>(child);
                if (button) {
                    EXPECT_EQ(button->area().box().width, std::floor(edit.width / kGroups));
                    EXPECT_TRUE(next < 0.0 || button->area().box().x == next) << row << count;
                    next = button->area().box().right();
                    ++count;
                }
            }
            EXPECT_EQ(count, 8) << row;
        }
    }
}

TEST_P(MainWindowPlaces, NothingIsCut) {
    EXPECT_EQ(editor_.cutViews(editor_.at("")), "");
}

TEST_P(MainWindowPlaces, TheOffLineBannerCoversNothingAndMovesNothing) {
    const CViewRect before = box("c.xeq1.cs-sliders.control-surface");
    editor_.setEngine("host-offline", 0, 0, 1.0);
    editor_.wait(1.0);
    ASSERT_TRUE(editor_.at<CView>("c.offline-holder.frame").isShown());
    for (const char* hints : {"true", "false"}) {
        EXPECT_FALSE(editor_.at<CObject>("ui.local-data.ui-show-hints").setAttribute("show-hints", CString(hints)));
        editor_.wait();
        EXPECT_EQ(editor_.coveredViews(editor_.at<CView>(""), box("c.offline-holder.frame")), "") << hints;
        EXPECT_EQ(box("c.xeq1.cs-sliders.control-surface").y, before.y);
    }
    EXPECT_FALSE(editor_.at<CObject>("ui.local-data.ui-show-hints").setAttribute("show-hints", CString("true")));
    auto& label = editor_.at<CTextView>("c.offline-holder.frame.label");
    EXPECT_LT(label.layout().line(0).width, label.area().box().width) << "its text is seen whole";
}

INSTANTIATE_TEST_SUITE_P(Scales, MainWindowPlaces, testing::ValuesIn(kScales),
                         [](const auto& row) { return std::to_string(std::lround(row.param.scale * 100.0)); });

}  // namespace

}  // namespace tarv
