// The bars of the main window in windows of the system: by drag, wheel, double click and typing.

#include "Tests/Host/Editor/ProductWindow.h"

namespace tarv::host {
namespace {

constexpr int32_t kBands = 7;

struct CViewRow {
    const char* view;
    int32_t firstParameter;  ///< the host's number of the first band's gain
};
constexpr CViewRow kViews[] = {{"xeq1", 1}, {"xeq2", 9}};

std::string number(int32_t value) {
    return std::to_string(value);
}

class ProductBars : public ProductWindow {
protected:
    static std::string gesture(int32_t parameter) {
        const std::string text = number(parameter);
        return "begin " + text + ", automate " + text + ", end " + text;
    }
    static CSpot value(const char* view, int32_t band) {
        return std::string("c.") + view + ".cs-sliders.ruler-values.label" + (band > 0 ? "#" + number(band) : "");
    }
};

TEST_F(ProductBars, EachFollowsADragThatTheHostHearsAsOneGestureOfThatParameterAlone) {
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            const int32_t parameter = row.firstParameter + band;
            const float before = effect.parameter(parameter);
            drag(column(row.view, band), 0, band % 2 == 0 ? -50 : 40);
            EXPECT_TRUE(desk.until([&] { return effect.parameter(parameter) != before; })) << row.view << band;
            EXPECT_EQ(heardGestures(), gesture(parameter));
        }
    }
    expectSame("all bars dragged");
    expectSameState();
}

TEST_F(ProductBars, EachTakesTheWheelAndADoubleClick) {
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            const int32_t parameter = row.firstParameter + band;
            wheel(column(row.view, band), 3);
            EXPECT_TRUE(becomes(parameter, "1.5")) << row.view << band << ": " << shown(parameter);
        }
    }
    expectSame("the wheel turned on all bars");
    expectSameState();
    heard();
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            const int32_t parameter = row.firstParameter + band;
            doubleClick(column(row.view, band));
            EXPECT_TRUE(becomes(parameter, "0.0")) << row.view << band << ": " << shown(parameter);
        }
    }
    expectSame("all bars reset");
    expectSameState();
}

TEST_F(ProductBars, EachValueIsTyped) {
    for (const CViewRow& row : kViews) {
        for (int32_t band = 0; band < kBands; ++band) {
            const int32_t parameter = row.firstParameter + band;
            click(value(row.view, band));
            type("-" + number(band + 1) + ".5");
            strike('\r');
            EXPECT_TRUE(becomes(parameter, ("-" + number(band + 1) + ".5").c_str())) << row.view << band;
            EXPECT_EQ(heardGestures(), gesture(parameter));
        }
    }
    EXPECT_EQ(desk.heard(parent), "") << "what a field takes never comes to the host";
    expectSame("all values typed");
    expectSameState();
}

TEST_F(ProductBars, TabGoesOnToTheNextValueAndEscapeDropsWhatIsTyped) {
    click(value("xeq1", 0));
    type("1.0");
    strike('\t');
    type("2.0");
    strike('\t');
    type("3.0");
    strike('\x1b');
    EXPECT_TRUE(becomes(1, "1.0"));
    EXPECT_TRUE(becomes(2, "2.0"));
    expectSame("two values typed");
    EXPECT_EQ(shown(3), "0.0");
    EXPECT_EQ(desk.heard(parent), "");
    expectSameState();
}

TEST_F(ProductBars, TheOutputGainsAreDraggedTurnedAndReset) {
    for (const CViewRow& row : kViews) {
        const std::string surface = std::string("c.") + row.view + ".cs-gain.control-surface";
        const int32_t parameter = row.firstParameter + kBands;
        heard();
        drag(surface, 0, -30);
        EXPECT_TRUE(desk.until([&] { return shown(parameter) != "0.0"; })) << row.view;
        EXPECT_EQ(heardGestures(), gesture(parameter));
        doubleClick(surface);
        EXPECT_TRUE(becomes(parameter, "0.0")) << row.view;
        wheel(surface, -2);
        EXPECT_TRUE(becomes(parameter, "-1.0")) << row.view;
    }
    expectSame("both output gains turned");
    expectSameState();
}

}  // namespace
}  // namespace tarv::host
