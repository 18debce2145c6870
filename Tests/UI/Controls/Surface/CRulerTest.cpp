// Labels and ticks of rulers.

#include "UI/Controls/Surface/CRuler.h"

#include "Tests/Core/LogCapture.h"
#include "Tests/UI/Controls/Surface/RulerTree.h"
#include "UI/Controls/Surface/CRulerScale.h"
#include "UI/Text/CEditBox.h"
#include "UI/Text/CTextView.h"

namespace tarv {
namespace {

std::vector<double> multiples(double low, double high, double step) {
    CArray<double, 16> values;
    CRulerScale::multiples(low, high, step, values);
    return {values.begin(), values.end()};
}

TEST(RulerScale, BeginsAtTheLowestMultipleWithinTheRange) {
    EXPECT_EQ(multiples(-12, 12, 6), (std::vector<double>{-12, -6, 0, 6, 12}));
    EXPECT_EQ(multiples(-10, 11, 4), (std::vector<double>{-8, -4, 0, 4, 8}));
    EXPECT_EQ(multiples(0.1, 0.3, 0.1).size(), 3u) << "rounding takes none away";
    EXPECT_EQ(multiples(1, 2, 5), std::vector<double>());
}

TEST(RulerScale, StepsThatAreNoneGiveNothing) {
    EXPECT_TRUE(multiples(-12, 12, 0).empty());
    EXPECT_TRUE(multiples(-12, 12, -3).empty());
    EXPECT_TRUE(multiples(-12, 12, std::nan("")).empty());
    EXPECT_TRUE(multiples(std::nan(""), 12, 3).empty());
    EXPECT_TRUE(multiples(0, 1e9, 0.001).empty()) << "more than can be shown";
}

TEST(RulerScale, AFormatIsThatOfOneNumber) {
    EXPECT_EQ(CRulerScale::text("%.1f", 6.0), CString("6.0"));
    EXPECT_EQ(CRulerScale::text("%+.0f dB", -6.0), CString("-6 dB"));
    EXPECT_EQ(CRulerScale::text("%.0f%%", 50.0), CString("50%"));
    EXPECT_EQ(CRulerScale::text("%04.1f|", 6.0), CString("06.0|"));
    for (const char* wrong : {"", "%s", "%d", "%n", "%f %f", "%*f", "%e", "%", "6"}) {
        EXPECT_EQ(CRulerScale::text(wrong, 6.0), CString("6")) << wrong;
    }
    EXPECT_EQ(CRulerScale::text("%.1f", -0.04), CString("0.0"));
}

TEST(RulerScale, ThousandsAreShort) {
    EXPECT_EQ(CRulerScale::shortText("12500"), CString("12.5K"));
    EXPECT_EQ(CRulerScale::shortText("1000"), CString("1K"));
    EXPECT_EQ(CRulerScale::shortText("2540"), CString("2.54K"));
    EXPECT_EQ(CRulerScale::shortText("-15250"), CString("-15.3K"));
    EXPECT_EQ(CRulerScale::shortText("250000"), CString("250K"));
    EXPECT_EQ(CRulerScale::shortText("2500000"), CString("2500K")) << "no exponent";
    EXPECT_EQ(CRulerScale::shortText("999"), CString("999"));
    EXPECT_EQ(CRulerScale::shortText("OUT"), CString("OUT"));
}

class Ruler : public CRulerTest {};

TEST_F(Ruler, HasALabelAtEachMultipleOfTheMajorStep) {
    open(bands() + gainRuler());
    EXPECT_EQ(texts(), (std::vector<std::string>{"-12", "-6", "0", "6", "12"}));
    const CSurfaceLayout layout = surface().layout();
    for (int32_t i = 0; i < 5; ++i) {
        const CViewRect box = labelBox(i);
        EXPECT_EQ(box.height, 13.0);
        EXPECT_EQ(box.y + 6.0, layout.linePixel(i / 4.0)) << i;
        EXPECT_EQ(box.right(), labelBox(0).right()) << "all end at one pixel";
    }
    set("main-window.ruler", "label-format", "%.1f");
    EXPECT_EQ(texts()[3], "6.0");
}

TEST_F(Ruler, FollowsItsRangeAndKeepsItsLabels) {
    open(bands() + gainRuler());
    const CView* first = ruler().label(0);
    set("range", "min", "-10");
    set("range", "max", "13");
    advance();
    EXPECT_EQ(texts(), (std::vector<std::string>{"-6", "0", "6", "12"})) << "from the lowest multiple inside";
    EXPECT_EQ(ruler().label(0), first);
    set("main-window.ruler", "step-major", "3");
    EXPECT_EQ(ruler().labelCount(), 8);
    set("main-window.ruler", "step-major", "0");
    EXPECT_EQ(ruler().labelCount(), 0);
    set("main-window.ruler", "step-major", "6");
    set("main-window.ruler", "is-show-labels", "false");
    EXPECT_EQ(ruler().labelCount(), 0);
}

TEST_F(Ruler, WithoutARangeAndTitlesItShowsNothing) {
    open(bands() + R"(<ui:ruler name="ruler" placement="left" image-set="shared::is.ruler" color="RulerTick"
                        ruled-view="^surface"/>)");
    EXPECT_EQ(ruler().labelCount(), 0);
    const CViewRect box = ruler().area().box();
    EXPECT_EQ(box.width, 25.0);
    for (int32_t y = 0; y < 320; ++y) {
        ASSERT_EQ(pixel(16, y), pixel(0, 0)) << y;
    }
}

TEST_F(Ruler, TicksStandAtTheirValuesBesideTheRuledView) {
    open(bands() + gainRuler());
    const CSurfaceLayout layout = surface().layout();
    const auto right = static_cast<int32_t>(ruler().area().box().right()) - 1;
    const uint32_t ground = pixel(0, 0);
    for (int32_t y = layout.box().top; y < layout.box().bottom; ++y) {
        const bool isTick = (y - layout.box().top) % 25 == 0 || y == layout.box().bottom - 1;
        EXPECT_EQ(pixel(right, y) != ground, isTick) << y;
    }
    EXPECT_NE(pixel(right - 3, layout.linePixel(0.75)), ground) << "a major one is longer";
    EXPECT_EQ(pixel(right - 3, layout.linePixel(0.625)), ground);
}

TEST_F(Ruler, FollowsTheRuledViewWhereverItGoes) {
    open(bands() + gainRuler());
    set("main-window.surface", "outer-border", "L20 T80");
    set("main-window.surface", "height", "160");
    advance();
    const CSurfaceLayout layout = surface().layout();
    EXPECT_EQ(layout.box().top, 80);
    EXPECT_EQ(labelBox(4).y + 6.0, 80.0);
    EXPECT_EQ(labelBox(0).y + 6.0, 80.0 + 159.0);
    open(bands() + gainRuler("is-show-hairlines=\"false\"") +
         R"(<ui:view name="plain" placement="overlay" width="50" height="100"
            outer-border="L300 T10"/><ui:ruler name="beside" placement="right" min-max="ui.range" ruled-view="^plain"
            image-set="shared::is.ruler" color="RulerTick"/>)");
    const CViewRect box = ruler("beside").label(4)->area().box();
    EXPECT_EQ(box.y + 6.0, 10.0 + 2.0) << "of a plain view the box: 96 pixels of 100 are the range";
}

TEST_F(Ruler, AMarginIsLeftForTheLabelsAtTheEnds) {
    open(bands("is-use-margins=\"true\" ruler=\"^ruler ^second\"") + gainRuler() +
         R"(<ui:ruler name="second" placement="right" image-set="shared::is.ruler" color="RulerTick"
              min-max="ui.range" ruled-view="^surface" is-show-hairlines="false"/>)");
    EXPECT_EQ(ruler().margin(), 7);
    EXPECT_EQ(surface().layout().box().top, 30 + 7) << "once, though two rulers need it";
    EXPECT_EQ(surface().layout().box().bottom, 230 - 7);
    EXPECT_EQ(labelBox(4).y + 6.0, surface().layout().linePixel(1.0)) << "rulers follow";
    const auto isBar = [this](int32_t y) {
        return pixel(static_cast<int32_t>(surface().layout().middle(0)), y) != pixel(5, 5);
    };
    EXPECT_FALSE(isBar(33));
    EXPECT_TRUE(isBar(40));
    set("main-window.ruler", "label-size", "21");
    advance(0.1);
    EXPECT_EQ(surface().layout().box().top, 30 + 11);
    EXPECT_FALSE(isBar(38)) << "drawn anew";
    delete &ruler();
    advance(0.1);
    EXPECT_EQ(surface().layout().box().top, 30 + 7);
    set("main-window.surface", "is-use-margins", "false");
    EXPECT_EQ(surface().layout().box().top, 30);
}

TEST_F(Ruler, AReadoutLabelIsEditedWithoutARebuild) {
    open(bands("ruler=\"^ruler\"") +
         gainRuler("label-tag=\"ui:test-field\" tab-group=\"g\" accept-chars=\"0123456789\""));
    ASSERT_EQ(ruler().labelCount(), 5);
    const CView* label = ruler().label(2);
    EXPECT_EQ(label->getAttrString("accept-chars").toUtf8(), "0123456789");
    EXPECT_EQ(label->getAttrString("tab-group").toUtf8(), "g");
    EXPECT_EQ(label->getAttrInt("element"), 2);
    EXPECT_TRUE(ruler().isEditable(2));
    EXPECT_FALSE(ruler().isEditable(5));
    EXPECT_EQ(consumed(ruler().edit(2)), "");
    advance();
    input().type(u"7");
    input().tap(13);
    advance();
    EXPECT_EQ(ruler().label(2), label);
    EXPECT_EQ(label->getAttrString("title").toUtf8(), "7");
}

TEST_F(Ruler, LabelsGetTheSourceOfTheirValues) {
    open(bands() + gainRuler("bridge=\"ui.gains\" group-selector=\"ui.edit\""));
    ASSERT_EQ(ruler().labelCount(), 5);
    EXPECT_EQ(ruler().label(3)->getAttrString("bridge").toUtf8(), "ui.gains");
    EXPECT_EQ(ruler().label(3)->getAttrString("group-selector").toUtf8(), "ui.edit");
    EXPECT_EQ(texts()[3], "") << "it shows its own value";
}

TEST_F(Ruler, MayGoBeforeItsSurfaceAndTheOtherWayRound) {
    open(bands("ruler=\"^ruler\"") + gainRuler());
    moveTo(2, 0.0);
    delete &ruler();
    moveTo(3, 0.0);
    advance();
    open(bands("ruler=\"^ruler\"") + gainRuler());
    moveTo(2, 0.0);
    delete &surface();
    advance();
    set("range", "max", "18");
    advance();
    EXPECT_EQ(ruler().labelCount(), 6);
}

TEST_F(Ruler, TitlesStandInTheMiddleOfTheColumns) {
    open(bands("ruler=\"^ruler\"") + titleRuler({"A", "B", "C", "D", "E", "F", "G"}));
    EXPECT_EQ(texts(), (std::vector<std::string>{"A", "B", "C", "D", "E", "F", "G"}));
    for (int32_t band = 0; band < 7; ++band) {
        const CViewRect box = labelBox(band);
        EXPECT_EQ(box.x, surface().layout().column(band).left);
        EXPECT_EQ(box.width, 31.0);
        EXPECT_EQ(box.y, 306.0) << "in the middle of the ruler, which stands below";
    }
}

TEST_F(Ruler, TheLabelOfTheHoveredBarLightsUpAndTheOthersStayCalm) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies));
    moveTo(2, 0.0);
    for (int32_t band = 0; band < 7; ++band) {
        EXPECT_EQ(ruler().label(band)->isStateSet("hilite"), band == 2);
    }
    input().press();
    moveBy(60, 10);
    EXPECT_TRUE(ruler().label(2)->isStateSet("hilite")) << "while it is dragged";
    input().release();
    moveToPixel(390, 10);
    EXPECT_FALSE(ruler().label(2)->isStateSet("hilite"));
}

TEST_F(Ruler, ALabelThatLightsUpMayEndARulerOrTheSurface) {
    for (const char* victim : {"ruler", "surface"}) {
        open(
            bands("ruler=\"^ruler ^second\"") + titleRuler(kFrequencies) +
            R"(<ui:ruler name="second" placement="right" titles="^titles" ruled-view="^surface" label-tag="ui:test-lit"/>
                <test:destroyer name="destroyer"/>)");
        moveTo(1, 0.0);
        CSurfaceDestroyer::victim = &at<CObject>(std::string("ui.main-window.") + victim);
        ruler("second").label(2)->linkObserver(at<CObject>("ui.main-window.destroyer"), "hint", "receive");
        moveTo(2, 0.0);
        EXPECT_EQ(CSurfaceDestroyer::victim, nullptr) << victim;
        moveToPixel(150, 120);
        advance();
        EXPECT_EQ(editor.tree().findObject(CString(("ui.main-window." + std::string(victim)).c_str())), nullptr);
        editor.close();
    }
}

TEST_F(Ruler, NoLabelStaysLitWhenTheGroupGoes) {
    open(bands("ruler=\"^ruler\" is-point-number-shown=\"true\"") + titleRuler(kFrequencies));
    moveTo(2, 0.0);
    EXPECT_TRUE(ruler().label(2)->isStateSet("hilite"));
    delete &sliders();
    advance(0.1);
    EXPECT_FALSE(ruler().label(2)->isStateSet("hilite"));
    EXPECT_EQ(text("main-window.surface", "hovered-point"), "-1");
    EXPECT_EQ(surface().findChild("point-num"), nullptr);
}

TEST_F(Ruler, TitlesFollowTheirList) {
    open(bands() + titleRuler({"A", "B", "C"}));
    const CView* first = ruler().label(0);
    CAttributeMap none;
    set("main-window.titles.content", "title", "Z");
    CObject* made = nullptr;
    CAttributeMap title;
    title["title"] = CAttributeValue::fromString("D");
    EXPECT_EQ(consumed(at<CObject>("ui.main-window.titles").createChild(made, "core:object", "content", false, &title)),
              "");
    EXPECT_EQ(consumed(deliverEvent(at<CObject>("ui.main-window.titles"), "update-values", none)), "");
    EXPECT_EQ(texts(), (std::vector<std::string>{"Z", "B", "C", "D"}));
    EXPECT_EQ(ruler().label(0), first);
}

TEST_F(Ruler, LabelsThatDoNotFitAreShortThenEverySecondAndTheHoveredOneIsWhole) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies));
    EXPECT_EQ(texts()[6], "15000") << "31 pixels are enough";
    set("main-window.surface", "width", "154");
    advance();
    EXPECT_EQ(texts(), (std::vector<std::string>{"60", "150", "400", "1K", "2.5K", "6K", "15K"})) << "22 are for these";
    EXPECT_TRUE(ruler().label(1)->isShown());
    set("main-window.surface", "width", "105");
    advance();
    for (int32_t band = 0; band < 7; ++band) {
        EXPECT_EQ(ruler().label(band)->isShown(), band % 2 == 0) << band;
    }
    moveTo(3, 0.0);
    advance();
    for (int32_t band = 0; band < 7; ++band) {
        EXPECT_EQ(ruler().label(band)->isShown(), band == 0 || band == 3 || band == 6) << band;
    }
    set("main-window.surface", "width", "217");
    moveToPixel(390, 10);
    advance();
    EXPECT_EQ(texts()[6], "15000") << "long again where there is room";
    EXPECT_TRUE(ruler().label(1)->isShown());
}

TEST_F(Ruler, ReadoutsThatDoNotFitShowTheirShortTextThenEverySecond) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies, "bridge=\"ui.gains\""));
    const auto show = [&](const std::string& value) {
        for (int32_t i = 0; i < 7; ++i) {
            set("main-window.ruler." + ruler().label(i)->name().toUtf8(), "title", value);
        }
        advance();
    };
    show("-12.0");
    EXPECT_NE(ruler().label(3)->getAttrString("format-id"), CString("brief"));
    show("-12345.0");
    EXPECT_EQ(ruler().label(3)->getAttrString("format-id"), CString("brief"));
    EXPECT_FALSE(ruler().label(3)->isShown());
    show("-12");
    EXPECT_TRUE(ruler().label(3)->isShown());
    set("main-window.surface", "width", "300");
    advance();
    EXPECT_EQ(ruler().label(3)->getAttrString("format-id"), CString("normal"));
}

TEST_F(Ruler, ReadoutsAreShortWhereLessThanTheirGapIsLeft) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies, "bridge=\"ui.gains\" label-gap=\"100\""));
    advance();
    EXPECT_EQ(ruler().label(3)->getAttrString("format-id"), CString("brief"));
    EXPECT_TRUE(ruler().label(3)->isShown()) << "short ones need no such gap";
}

TEST_F(Ruler, TitlesMayStandAtTheirValues) {
    open(bands() + R"(<ui:value-list-manual name="titles"><core:object name="content" title="-12"/>
                        <core:object name="content" title="3"/></ui:value-list-manual>)" +
         gainRuler("titles=\"^titles\""));
    EXPECT_EQ(texts(), (std::vector<std::string>{"-12", "3"}));
    EXPECT_EQ(labelBox(1).y + 6.0, surface().layout().linePixel(0.625));
}

TEST_F(Ruler, TheMenuOfABarOpensTheEditOfItsReadout) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies, "label-tag=\"ui:test-field\""));
    EXPECT_TRUE(ruler().isEditable(3));
    moveTo(3, 0.0);
    CDynamicListRows rows;
    input().click(CPointerButton::Right);
    advance(0.2);
    input().tap(27);
    advance(0.2);
    EXPECT_EQ(consumed(static_cast<CDynamicList&>(surface()).generateSubList({}, rows)), "");
    ASSERT_EQ(rows.count(), 4);
    EXPECT_EQ(rows[0].text, CString("Type a value"));
    CAttributeMap chosen;
    chosen["id"] = CAttributeValue::fromString(rows[0].id);
    EXPECT_EQ(consumed(deliverEvent(surface(), "popup-result", chosen)), "");
    advance();
    EXPECT_TRUE(static_cast<CTextView*>(ruler().label(3))->editBox());
}

}  // namespace
}  // namespace tarv
