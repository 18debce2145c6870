// Another number of bands: points, values and frequencies follow it in both views, and the output gains do not.

#include "ProductEditor.h"
#include "UI/Controls/Surface/CControlSurfaceGroup.h"
#include "UI/Controls/Surface/CRuler.h"

namespace tarv {

namespace {

constexpr const char* kCount = "modBrindleXEQ.band-count";
constexpr const char* kGains = "modBrindleXEQ.xeq-gains";
constexpr const char* kViews[] = {"c.xeq1.", "c.xeq2."};

class BandCount : public CProductEditor {
protected:
    int32_t points(const std::string& group) { return at<CControlSurfaceGroup>(group).count(); }
    int32_t labels(const std::string& ruler) { return at<CRuler>(ruler).labelCount(); }
    /// Labels of a ruler as the tree holds them, each with a text.
    int32_t labelsWithText(const std::string& ruler) {
        int32_t count = 0;
        for (const CObject* child : at(ruler).children()) {
            const auto* label = dynamic_cast<const CTextView*>(child);
            count += label && !label->paragraphText(0).isEmpty() ? 1 : 0;
        }
        return count;
    }
    void expectBands(int32_t count) {
        for (const std::string view : kViews) {
            for (const char* group : {"underlays", "sliders"}) {
                EXPECT_EQ(points(view + "cs-sliders.control-surface." + group), count) << view << group;
                EXPECT_EQ(points(view + "cs-gain.control-surface." + group), 1) << view << group;
            }
            for (const char* ruler : {"ruler-freqs", "ruler-values"}) {
                EXPECT_EQ(labels(view + "cs-sliders." + ruler), count) << view << ruler;
                EXPECT_EQ(labelsWithText(view + "cs-sliders." + ruler), count) << view << ruler;
            }
            EXPECT_EQ(labels(view + "cs-gain.ruler-values"), 1) << view;
        }
    }
    /// The middle of a column of so many.
    CSpot columnOf(const std::string& view, int32_t band, int32_t count) {
        const std::string path = view + "cs-sliders.control-surface";
        const auto pitch = static_cast<int32_t>(box(path).width) / count;
        return {path, pitch * (2 * band + 1 - count) / 2};
    }
};

TEST_F(BandCount, PointsAndLabelsAreAsManyInBothViews) {
    ASSERT_EQ(engine(kCount), 7.0);
    expectBands(7);
    for (const int32_t count : {10, 1, 10, 7}) {
        SCOPED_TRACE(count);
        setEngine(kCount, 0, 0, count);
        expectBands(count);
    }
}

TEST_F(BandCount, AnEditorOpensWithAsMany) {
    for (const int32_t count : {10, 1}) {
        SCOPED_TRACE(count);
        closeEditor();
        setEngine(kCount, 0, 0, count);
        openEditor();
        expectBands(count);
    }
}

TEST_F(BandCount, TheLastBarWorksAndIsTheLastBandOfTheViewsGroup) {
    for (const int32_t count : {10, 1, 7}) {
        SCOPED_TRACE(count);
        setEngine(kCount, 0, 0, count);
        for (const int32_t group : {0, 1}) {
            const double before = decibels(kGains, group, count - 1);
            wheel(columnOf(kViews[group], count - 1, count), 2.0);
            EXPECT_NEAR(decibels(kGains, group, count - 1) - before, 1.0, 1e-9) << group;
        }
    }
}

TEST_F(BandCount, EveryFrequencyStandsAboveItsValue) {
    for (const int32_t count : {10, 1}) {
        SCOPED_TRACE(count);
        setEngine(kCount, 0, 0, count);
        for (const std::string view : kViews) {
            const auto& frequencies = at<CRuler>(view + "cs-sliders.ruler-freqs");
            const auto& gains = at<CRuler>(view + "cs-sliders.ruler-values");
            ASSERT_EQ(frequencies.labelCount(), count);
            ASSERT_EQ(gains.labelCount(), count);
            for (int32_t band = 0; band < count; ++band) {
                const CViewRect above = frequencies.label(band)->area().box();
                const CViewRect below = gains.label(band)->area().box();
                EXPECT_NEAR(above.x + above.width / 2.0, below.x + below.width / 2.0, 1.0) << band;
                EXPECT_TRUE(band == 0 || above.x > frequencies.label(band - 1)->area().box().x) << band;
            }
        }
    }
}

}  // namespace

}  // namespace tarv
