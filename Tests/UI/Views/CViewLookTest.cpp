#include <gtest/gtest.h>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

CTestNode state(const std::string& name, CTexts attributes) {
    attributes.insert(attributes.begin(), {"state-name", name});
    return {"ui:view-state", "view-state-" + name, attributes};
}

CTestNode slot(CTexts attributes) {
    return {"ui:view-color-slot", "slot", std::move(attributes)};
}

/// Each channel and the opacity on a straight line, in 64 steps.
CPixel mixed(CPixel from, CPixel to, int32_t step) {
    CPixel result = 0;
    for (const int32_t shift : {0, 8, 16}) {
        const auto channel = [shift](CPixel pixel) { return static_cast<double>(pixel >> shift & 255); };
        result |= static_cast<CPixel>(std::floor(channel(from) + (channel(to) - channel(from)) * step / 64.0 + 0.5))
                  << shift;
    }
    return result;
}

class ViewLook : public CViewTest {
protected:
    static CTestNode active(const char* morph = "0.0") {
        return state("active", {{"color-state", "Active"}, {"morph-duration", morph}});
    }
    static CTestNode hover(const char* morph = "0.0") {
        return state("hover", {{"color-state", "Hover"}, {"morph-duration", morph}});
    }
    CView& openView(const CTexts& attributes, std::vector<CTestNode> children = {}) {
        open({{"palette", "A"}}, {view("a", attributes, std::move(children))});
        return at("a");
    }
    static void setState(CView& view, const char* names) { EXPECT_EQ(consumed(view.setState(names)), ""); }
    static void unsetState(CView& view, const char* names) { EXPECT_EQ(consumed(view.unsetState(names)), ""); }
    std::string failureOf(const CTexts& attributes) {
        const std::string text = tryOpen({}, {view("a", attributes)});
        return text.substr(0, text.find("\r\n"));
    }
};

TEST_F(ViewLook, AColourFollowsTheStatesOfTheView) {
    CView& a = openView({{"color", "Knob"}}, {active(), hover()});
    EXPECT_EQ(a.color(0)->full(), kKnob);
    setState(a, "active");
    EXPECT_EQ(a.color(0)->full(), kKnobActive);
    unsetState(a, "active");
    setState(a, "hover");
    EXPECT_EQ(a.color(0)->full(), kKnobHover);
    set(a, "color", "Panel");
    EXPECT_EQ(a.color(0)->full(), kPanel);
}

TEST_F(ViewLook, AMissingColourLosesItsLastStateUntilOneIsFound) {
    CView& a = openView({{"color", "Knob"}}, {active(), hover()});
    setState(a, "active hover");
    // No Knob_ActiveHover: Knob_Active.
    EXPECT_EQ(a.color(0)->full(), kKnobActive);
    set(a, "color", "Text");
    EXPECT_EQ(a.color(0)->full(), 0x111213u);
    unsetState(a, "hover");
    // No Text_Active: Text.
    EXPECT_EQ(a.color(0)->full(), 0x010203u);
}

TEST_F(ViewLook, AColourThatThePaletteLacksIsLoggedAndDrawsNothing) {
    const CLogCapture log;
    CView& a = openView({{"color", "Nobody"}, {"placement", "overlay"}, {"width", "9"}, {"height", "9"}});
    EXPECT_EQ(a.color(0), nullptr);
    EXPECT_TRUE(log.has("Color not found <Nobody> // ui.w.a"));
    tick();
    EXPECT_EQ(pixel(4, 4), 0u);
}

TEST_F(ViewLook, SlotsAreNumberedFromOneInTheOrderOfTheChildren) {
    CView& a =
        openView({{"color", "Knob"}}, {slot({{"color", "Text"}}), slot({{"color", "Knob"}, {"color-state", "Active"}}),
                                       hover(), slot({{"color", "Knob"}, {"color-state", "/Active"}})});
    EXPECT_EQ(a.colorSlotCount(), 3);
    EXPECT_EQ(text(a, "color-slots"), "3");
    EXPECT_EQ(a.color(1)->full(), 0x010203u);
    EXPECT_EQ(a.color(2)->full(), kKnobActive);
    setState(a, "hover");
    // Text has ActiveHover and no Hover; the slot's own state comes first, and with a slash it is the only one.
    set(*a.findChild("slot#1"), "color", "Text");
    EXPECT_EQ(a.color(2)->full(), 0x111213u);
    EXPECT_EQ(a.color(3)->full(), kKnobActive);
    const CLogCapture log;
    EXPECT_EQ(a.color(4), a.color(0));
    EXPECT_EQ(a.color(-1), a.color(0));
    EXPECT_TRUE(log.has("WRONG COLOR INDEX 4"));
    EXPECT_TRUE(log.has("WRONG COLOR INDEX -1"));
}

TEST_F(ViewLook, ASlotThatGoesIsForgotten) {
    CView& a = openView({{"color", "Knob"}}, {slot({{"color", "Text"}}), slot({{"color", "Panel"}})});
    delete a.findChild("slot");
    EXPECT_EQ(a.colorSlotCount(), 1);
    EXPECT_EQ(a.color(1)->full(), kPanel);
}

TEST_F(ViewLook, ASharedColourIsNamedWithASlash) {
    open({{"palette", "A"}},
         {{"core:object", "shared-color", {}, {{"ui:view-color-slot", "Main", {{"color", "Knob"}}}}},
          view("a", {{"color", "/Main"}}),
          view("b", {{"color", "/Text"}})});
    EXPECT_EQ(at("a").color(0)->full(), kKnob);
    // What is not among the shared ones is a colour of the palette.
    EXPECT_EQ(at("b").color(0)->full(), 0x010203u);
    open({{"palette", "A"}}, {view("b", {{"color", "/Text"}})});
    EXPECT_EQ(at("b").color(0)->full(), 0x010203u);
}

TEST_F(ViewLook, TheParentsColourIsTakenAsItIsShown) {
    CTexts label = {{"color", "^"}, {"placement", "overlay"}, {"width", "9"}, {"height", "9"}};
    CView& a =
        openView({{"color", "Knob"}, {"placement", "overlay"}, {"width", "30"}, {"height", "30"}, {"opacity", "1"}},
                 {active("0.4"), view("label", label)});
    CView& label0 = at("a.label");
    EXPECT_EQ(label0.color(0), a.color(0));
    tick();
    setState(a, "active");
    tick(0.2);
    EXPECT_EQ(label0.color(0)->full(), mixed(kKnob, kKnobActive, 32));
    EXPECT_EQ(pixel(4, 4), mixed(kKnob, kKnobActive, 32));
}

TEST_F(ViewLook, ASlotOfTheParentIsTakenAsItIsShown) {
    CView& a = openView({{"color", "Panel"}}, {slot({{"color", "Knob"}}), active(),
                                               view("b", {{"color", "^1"}, {"width", "9"}, {"height", "9"}})});
    CView& b = at("a.b");
    EXPECT_EQ(b.color(0)->full(), kKnob);
    tick();
    setState(a, "active");
    EXPECT_EQ(b.color(0)->full(), kKnobActive);
    EXPECT_GT(tick(), 0);
    set(b, "color", "^");
    EXPECT_EQ(b.color(0)->full(), kPanel);
    const CLogCapture log;
    set(b, "color", "^2");
    EXPECT_EQ(b.color(0)->full(), kPanel);
    EXPECT_TRUE(log.has("WRONG COLOR INDEX 2"));
}

TEST_F(ViewLook, ADisabledViewAndThoseBelowItAreDimmed) {
    CView& a = openView({{"color", "Panel"}, {"width", "9"}, {"height", "9"}},
                        {slot({{"color", "Knob"}}), view("b", {{"color", "Knob"}})});
    tick();
    set(a, "is-disabled", "true");
    EXPECT_EQ(a.color(0)->full(), kDisabledPanel);
    EXPECT_EQ(at("a.b").color(0)->full(), kDisabledPanel);
    // Slots keep their colours.
    EXPECT_EQ(a.color(1)->full(), kKnob);
    EXPECT_GT(tick(), 0);
    set(at("a.b"), "is-disabled", "true");
    set(a, "is-disabled", "false");
    EXPECT_EQ(a.color(0)->full(), kPanel);
    EXPECT_EQ(at("a.b").color(0)->full(), kDisabledPanel);
}

TEST_F(ViewLook, ColoursMorphOnAStraightLineAndRestOnTheNewOne) {
    CView& a =
        openView({{"color", "Knob"}, {"placement", "overlay"}, {"width", "9"}, {"height", "9"}}, {active("0.4")});
    tick();
    setState(a, "active");
    EXPECT_EQ(a.color(0)->full(), kKnob);
    for (const int32_t step : {16, 32, 48}) {
        EXPECT_EQ(tick(0.1), 81);
        EXPECT_EQ(pixel(4, 4), mixed(kKnob, kKnobActive, step)) << step;
    }
    tick(0.11);
    EXPECT_EQ(pixel(4, 4), kKnobActive);
    EXPECT_EQ(a.color(0), a.palette()->findColor("Knob_Active"));
    EXPECT_EQ(tick(0.1), 0);
}

TEST_F(ViewLook, AMorphThatIsTurnedStartsFromTheMix) {
    CView& a = openView({{"color", "Knob"}}, {active("0.4"), hover("0.2")});
    setState(a, "active");
    tick(0.2);
    const CPixel half = mixed(kKnob, kKnobActive, 32);
    ASSERT_EQ(a.color(0)->full(), half);
    unsetState(a, "active");
    setState(a, "hover");
    EXPECT_EQ(a.color(0)->full(), half);
    tick(0.1);
    EXPECT_EQ(a.color(0)->full(), mixed(half, kKnobHover, 32));
    tick(0.11);
    EXPECT_EQ(a.color(0)->full(), kKnobHover);
}

TEST_F(ViewLook, ViewsOfOneEditorShareTheirMixes) {
    CColorMixes mixes;
    window_.mixes = &mixes;
    open({{"palette", "A"}}, {view("a", {{"color", "Knob"}}, {active("0.4"), hover("0.4")}),
                              view("b", {{"color", "Knob"}}, {active("0.4")})});
    setState(at("a"), "active");
    setState(at("b"), "active");
    tick(0.1);
    EXPECT_EQ(at("a").color(0)->full(), mixed(kKnob, kKnobActive, 16));
    EXPECT_EQ(at("a").color(0), at("b").color(0));
    EXPECT_EQ(mixes.count(), 1);
    tick(0.1);
    EXPECT_EQ(mixes.count(), 2);
    // A mix that is the start of another is the view's own, and stays as it is.
    const CPixel half = mixed(kKnob, kKnobActive, 32);
    setState(at("a"), "hover");
    EXPECT_EQ(at("a").color(0)->full(), half);
    mixes.clear();
    EXPECT_EQ(at("a").color(0)->full(), half);
    unsetState(at("a"), "active");
    tick(0.1);
    EXPECT_EQ(at("a").color(0)->full(), mixed(half, kKnobHover, 16));
    EXPECT_EQ(at("b").color(0)->full(), mixed(kKnob, kKnobActive, 48));
    EXPECT_EQ(mixes.count(), 1);
    window_.mixes = nullptr;
}

TEST_F(ViewLook, OpacityOfColoursMorphsToo) {
    CView& a = openView({{"color", "Glass"}}, {state("solid", {{"color", "Knob"}}), active("0.4")});
    EXPECT_EQ(a.color(0)->opacity, 0.5);
    CViewColor color;
    CPalette palette;
    addRamp(palette, "X", 0, 0.25);
    addRamp(palette, "X_On", 0, 0.75);
    const CString on("On");
    ASSERT_TRUE(color.find(palette, "X", nullptr, 0, 0));
    color.beginMorph();
    ASSERT_TRUE(color.find(palette, "X", &on, 1, 0));
    color.mix(0.5, nullptr);
    EXPECT_EQ(color.shown()->opacity, 0.5);
    color.endMorph();
    EXPECT_EQ(color.shown()->opacity, 0.75);
}

TEST_F(ViewLook, AMorphOfNoLengthIsThereAtOnce) {
    CView& a = openView({{"color", "Knob"}, {"morph-duration", "0"}}, {state("on", {{"color-state", "Active"}})});
    setState(a, "on");
    EXPECT_EQ(a.color(0)->full(), kKnobActive);
}

TEST_F(ViewLook, AnAnimatedColourStepsThroughItsFramesByTheClock) {
    CView& a = openView({{"color", "Alarm"},
                         {"is-gradient-animated", "true"},
                         {"gradient-fps", "10"},
                         {"placement", "overlay"},
                         {"width", "9"},
                         {"height", "9"}});
    tick();
    EXPECT_EQ(pixel(4, 4), 0x210000u);
    EXPECT_EQ(tick(0.05), 0);
    EXPECT_EQ(tick(0.06), 81);
    EXPECT_EQ(pixel(4, 4), 0x220000u);
    // Two frames late, and round.
    tick(0.2);
    EXPECT_EQ(pixel(4, 4), 0x210000u);
    CAttributeMap params;
    EXPECT_EQ(consumed(deliverEvent(a, "gradient-timer", params)), "");
    tick();
    EXPECT_EQ(pixel(4, 4), 0x220000u);
    set(a, "is-gradient-animated", "false");
    EXPECT_EQ(tick(1.0), 0);
}

TEST_F(ViewLook, TheRateOfFramesIsThatOfAViewAbove) {
    open({{"palette", "A"}, {"gradient-fps", "2"}}, {view("a", {{"color", "Alarm"}, {"is-gradient-animated", "true"}}),
                                                     view("b", {{"color", "Knob"}, {"is-gradient-animated", "true"}})});
    tick();
    tick(0.4);
    EXPECT_EQ(at("a").color(0)->full(), 0x210000u);
    tick(0.2);
    EXPECT_EQ(at("a").color(0)->full(), 0x220000u);
}

TEST_F(ViewLook, AStandingColourWithFramesShowsItsFirst) {
    CView& a = openView({{"color", "Alarm"}});
    tick(10.0);
    EXPECT_EQ(a.color(0)->full(), 0x210000u);
}

TEST_F(ViewLook, APictureFollowsTheStates) {
    CView& a = openView({{"image-set", "shared::is.button"}, {"image-set-range", "Box"}},
                        {state("active", {{"image-set-range", "{image-set-range}Active"}}),
                         state("error", {{"image-set-range", "{image-set-range}Error"}}),
                         state("pushed", {{"image-set-range", "{image-set-range}Pushed"}})});
    const auto width = [&] { return a.currentImage() ? a.currentImage()->getWidth() : 0; };
    EXPECT_EQ(width(), 4);
    setState(a, "active");
    EXPECT_EQ(width(), 6);
    setState(a, "pushed");
    EXPECT_EQ(width(), 8);
    unsetState(a, "pushed active");
    const CLogCapture log;
    // The set has no BoxError: the plain range stands, without a word.
    setState(a, "error");
    EXPECT_EQ(width(), 4);
    EXPECT_TRUE(log.lines.empty());
}

TEST_F(ViewLook, ARangeThatTheSetLacksIsLoggedAndDrawsNothing) {
    const CLogCapture log;
    CView& a = openView({{"image-set", "shared::is.button"},
                         {"image-set-range", "Knob"},
                         {"color", "Knob"},
                         {"placement", "overlay"},
                         {"width", "9"},
                         {"height", "9"}});
    EXPECT_TRUE(log.has("Range not found <Knob> // ui.w.a"));
    EXPECT_EQ(a.currentImage(), nullptr);
    tick();
    EXPECT_EQ(pixel(4, 4), 0u);
    set(a, "image-set-range", "");
    EXPECT_NE(a.currentImage(), nullptr);
}

TEST_F(ViewLook, MissingGraphicsFailInTheirWords) {
    EXPECT_EQ(failureOf({{"image-set", "shared::is.nobody"}}), "Image set 'shared::is.nobody' not found.");
    EXPECT_EQ(failureOf({{"image-set", "shared::pal.A"}}), "Image set 'shared::pal.A' not found.");
    EXPECT_EQ(failureOf({{"brush-set", "nobody"}}), "Brush set 'nobody' not found.");
    EXPECT_EQ(failureOf({{"palette", "C"}}), "Unable to find palette object 'pal.C'.");
    EXPECT_EQ(failureOf({{"brush-set", "shared::bs.brushes"}, {"image-set", ""}, {"palette", ""}}), "");
    ASSERT_TRUE(at("a").brushSet());
    EXPECT_EQ(at("a").brushSet()->getBrush(0)->width(), 1.48);
    const std::string text = tryOpen({{"palette", "X"}}, {}, 300, 200, {});
    EXPECT_EQ(text.substr(0, text.find("\r\n")), "Unable to find palette object 'pal.X'.");
}

TEST_F(ViewLook, AnObjectThatIsNoPaletteFails) {
    CObject* root = nullptr;
    ASSERT_EQ(consumed(CApplication::initRootObject(root)), "");
    const std::unique_ptr<CObject> tree(root);
    const std::string text = consumed(loadTree(*root, {{"core:object", "pal", {}, {{"core:object", "A"}}},
                                                       view("w", {{"is-root-view", "true"}, {"palette", "A"}})}));
    EXPECT_EQ(text.substr(0, text.find("\r\n")), "Unable to find palette in palette object 'pal.A'.");
}

TEST_F(ViewLook, AnotherPaletteReachesAllViewsWithoutOneOfTheirOwn) {
    open({{"palette", "A"}, {"color", "Knob"}},
         {view("p", {}, {view("a", {{"color", "Knob"}})}), view("own", {{"palette", "A"}, {"color", "Knob"}})});
    set(*rootView_, "palette", "B");
    EXPECT_EQ(at("p.a").color(0)->full(), kKnob + 1);
    EXPECT_EQ(at("own").color(0)->full(), kKnob);
    set(at("own"), "palette", "");
    EXPECT_EQ(at("own").color(0)->full(), kKnob + 1);
    // One that comes later has it from the beginning.
    CView* late = nullptr;
    ASSERT_EQ(consumed(at("p").createChildOf<CView>(late, "ui:view", "late", false)), "");
    EXPECT_EQ(late->color(0)->full(), kPanel + 1);
    tick();
    EXPECT_EQ(pixel(1, 1), kKnob + 1);
}

TEST_F(ViewLook, WithoutAPaletteNothingIsDrawnAndNothingFails) {
    open({{"color", "Knob"}}, {});
    tick();
    EXPECT_EQ(pixel(1, 1), 0u);
    EXPECT_EQ(rootView_->color(0), nullptr);
}

}  // namespace
}  // namespace tarv
