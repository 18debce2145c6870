#include "UI/Views/CView.h"

#include <gtest/gtest.h>

#include "Tests/UI/Views/ViewTree.h"

namespace tarv {
namespace {

/// Draws by the operation that the test names, in the area that it names, and can fail.
class CProbe : public CView {
public:
    std::string operation;
    int32_t area = kWholeArea;
    int32_t colorIndex = 0;
    bool isScaled = false;
    int32_t draws = 0;
    CIntRect lastClip;

    void place(int32_t index, const CViewRect& rect) { setAreaRect(index, rect); }
    void coords(int32_t index, int32_t& x, int32_t& y) { getAlignedImageCoords(index, *currentImage(), x, y); }

protected:
    CError* draw() override {
        ++draws;
        lastClip = target().clip;
        if (operation == "fill")
            drawFilledRect(area, colorIndex);
        else if (operation == "invert")
            drawInvertedRect(area);
        else if (operation == "image")
            drawImage(area, colorIndex);
        else if (operation == "layer")
            drawImageLayer(currentImage()->layer(0), 131, 20, area, *color(0), 1.0, isScaled);
        else if (operation == "fail")
            TARV_FAIL("@tarvstr_CProbe_draw_Failed Probe failed.");
        return nullptr;
    }
};

/// Notes the events of views.
class CAreaNote : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CAreaNote::note>("note");
        return nullptr;
    }
    std::vector<std::string> events;

private:
    CError* note(CAttributeMap& params) {
        events.push_back(params["sender"].asString().toUtf8() + " " + params["event-name"].asString().toUtf8());
        return nullptr;
    }
};

CTexts boxAt(int32_t x, int32_t y, int32_t width, int32_t height, CTexts more = {}) {
    more.insert(more.end(), {{"placement", "overlay"},
                             {"width", std::to_string(width)},
                             {"height", std::to_string(height)},
                             {"outer-border", "L" + std::to_string(x) + " T" + std::to_string(y)}});
    return more;
}

class ViewDrawing : public CViewTest {
protected:
    ViewDrawing()
        : CViewTest({{"test:probe", &createObject<CProbe>, &CView::initClass},
                     {"test:note", &createObject<CAreaNote>, &CAreaNote::initClass}}) {}

    CProbe& openProbe(const CTexts& attributes, const std::string& operation, CTexts root = {{"palette", "A"}}) {
        open(std::move(root), {{"test:probe", "p", attributes}});
        auto& probe = *tree_->findObjectOf<CProbe>("ui.w.p");
        probe.operation = operation;
        return probe;
    }
};

TEST_F(ViewDrawing, FillsItsWholeRectangleWithItsColour) {
    open({{"palette", "A"}}, {view("a", boxAt(120, 10, 20, 5, {{"color", "Knob"}}))});
    tick();
    // Across the edge of two tiles.
    for (const auto& [x, y, expected] : {std::tuple{120, 10, kKnob},
                                         {139, 14, kKnob},
                                         {127, 12, kKnob},
                                         {128, 12, kKnob},
                                         {119, 10, 0u},
                                         {140, 10, 0u},
                                         {120, 9, 0u},
                                         {120, 15, 0u}})
        EXPECT_EQ(pixel(x, y), expected) << x << ' ' << y;
}

TEST_F(ViewDrawing, AViewWithoutColourAndPictureDrawsNothing) {
    open({{"palette", "A"}}, {view("a", boxAt(0, 0, 20, 5))});
    tick();
    EXPECT_EQ(pixel(1, 1), 0u);
    EXPECT_EQ(at("a").color(0)->full(), kPanel);
}

TEST_F(ViewDrawing, APictureGoesBeforeTheColourAndIsAligned) {
    const struct {
        const char* alignment;
        int32_t x, y;
    } rows[] = {{"", 18, 9},        {"left", 10, 9},     {"right", 26, 9},        {"top", 18, 0},
                {"bottom", 18, 18}, {"top-left", 10, 0}, {"bottom-right", 26, 18}};
    for (const auto& row : rows) {
        open(
            {{"palette", "A"}},
            {view("a",
                  boxAt(10, 0, 20, 20,
                        {{"image-set", "shared::is.button"}, {"color", "Knob"}, {"image-alignment", row.alignment}}))});
        tick();
        EXPECT_EQ(pixel(row.x, row.y), kKnob) << row.alignment;
        EXPECT_EQ(pixel(row.x + 3, row.y + 1), kKnob) << row.alignment;
        EXPECT_EQ(pixel(row.x + 4, row.y), 0u) << row.alignment;
        EXPECT_EQ(pixel(row.x, row.y + 2), 0u) << row.alignment;
    }
}

TEST_F(ViewDrawing, WithoutAColourAPictureIsInThatOfThePanel) {
    open({{"palette", "A"}}, {view("a", boxAt(0, 0, 4, 2, {{"image-set", "shared::is.button"}}))});
    tick();
    EXPECT_EQ(pixel(0, 0), kPanel);
}

TEST_F(ViewDrawing, EachPictureCounts500AndItsPixels) {
    open({{"palette", "A"}}, {view("a", boxAt(126, 10, 4, 2, {{"image-set", "shared::is.button"}}))});
    tick();
    // Two tiles of 2 x 2 pixels.
    EXPECT_EQ(window_.map.load(), 2 * (500 + 4));
}

TEST_F(ViewDrawing, OperationsInTheVisibleAreaAreLogged) {
    const std::pair<const char*, const char*> rows[] = {{"fill", "drawFilledRect CLIP 0"},
                                                        {"invert", "drawInvertedRect CLIP 0"},
                                                        {"image", "drawImage CLIP 0"},
                                                        {"layer", "drawImageLayer CLIP 0"}};
    for (const auto& [operation, line] : rows) {
        CProbe& probe =
            openProbe(boxAt(128, 18, 20, 20, {{"color", "Knob"}, {"image-set", "shared::is.button"}}), operation);
        for (const int32_t area : {CView::kWholeArea, CView::kVisibleArea}) {
            probe.area = area;
            probe.requestRedraw();
            const CLogCapture log;
            tick();
            EXPECT_EQ(log.has(line), area == CView::kVisibleArea) << operation;
            // It is drawn all the same.
            EXPECT_NE(pixel(134, 20) | pixel(137, 27), 0u) << operation;
        }
        const CLogCapture log;
        int32_t x = 0;
        int32_t y = 0;
        probe.coords(CView::kVisibleArea, x, y);
        EXPECT_TRUE(log.has("getAlignedImageCoords CLIP 0"));
    }
}

TEST_F(ViewDrawing, AnAreaOfTheClassClipsWhatIsDrawnInIt) {
    CProbe& probe = openProbe(boxAt(120, 0, 40, 40, {{"color", "Knob"}}), "fill");
    probe.place(CView::kOwnAreas, {124.4, 10.0, 8.0, 4.0});
    probe.area = CView::kOwnAreas;
    tick();
    EXPECT_EQ(pixel(124, 10), kKnob);
    EXPECT_EQ(pixel(131, 13), kKnob);
    EXPECT_EQ(pixel(123, 10), 0u);
    EXPECT_EQ(pixel(132, 10), 0u);
    EXPECT_EQ(pixel(125, 14), 0u);
}

TEST_F(ViewDrawing, ALayerStandsAtItsPositionClippedByItsArea) {
    CProbe& probe = openProbe(boxAt(120, 18, 40, 3, {{"image-set", "shared::is.button"}}), "layer");
    probe.place(CView::kOwnAreas, {120.0, 0.0, 13.0, 100.0});
    tick();
    EXPECT_EQ(pixel(131, 20), kPanel);
    EXPECT_EQ(pixel(134, 20), kPanel);
    EXPECT_EQ(pixel(130, 20), 0u);
    probe.area = CView::kOwnAreas;
    probe.requestRedraw();
    tick();
    EXPECT_EQ(pixel(132, 20), kPanel);
    EXPECT_EQ(pixel(133, 20), 0u);
}

TEST_F(ViewDrawing, AnInvertedRectangleTurnsWhatIsBelow) {
    CProbe& probe = openProbe(boxAt(4, 4, 4, 4), "invert", {{"palette", "A"}, {"color", "Knob"}});
    tick();
    EXPECT_EQ(pixel(5, 5), kKnob ^ 0xffffff);
    EXPECT_EQ(pixel(3, 5), kKnob);
    EXPECT_EQ(probe.draws, 1);
}

TEST_F(ViewDrawing, AWrongColourIndexIsLoggedAndCountsAsTheOwnOne) {
    CProbe& probe = openProbe(boxAt(0, 0, 4, 4, {{"color", "Knob"}}), "fill");
    probe.colorIndex = 3;
    const CLogCapture log;
    tick();
    EXPECT_TRUE(log.has("WRONG COLOR INDEX 3"));
    EXPECT_EQ(pixel(1, 1), kKnob);
}

TEST_F(ViewDrawing, AFailingDrawIsReportedAndTheOthersAreDrawn) {
    openProbe(boxAt(0, 0, 4, 4), "fail");
    CView* other = nullptr;
    const CAttributeMap attributes = {{"placement", CAttributeValue::fromString("overlay")},
                                      {"width", CAttributeValue::fromString("9")},
                                      {"height", CAttributeValue::fromString("9")},
                                      {"color", CAttributeValue::fromString("Knob")}};
    ASSERT_EQ(consumed(rootView_->createChildOf<CView>(other, "ui:view", "o", false, &attributes)), "");
    tick();
    ASSERT_EQ(failures_.size(), 1u);
    EXPECT_EQ(failures_[0].substr(0, 13), "Probe failed.");
    EXPECT_EQ(pixel(8, 8), kKnob);
}

TEST_F(ViewDrawing, OpacityBlendsAndNearlyFullIsDrawnDirectly) {
    // Half of the panel's colour and half of the knob's: (d << 15 + (s - d) * 16384) >> 15 a channel.
    open({{"palette", "A"}, {"color", "Panel"}},
         {view("a", boxAt(0, 0, 9, 9, {{"opacity", "0.5"}}), {view("b", boxAt(0, 0, 9, 9, {{"color", "Knob"}}))}),
          view("c", boxAt(20, 0, 9, 9, {{"opacity", "0.9995"}, {"color", "Knob"}})),
          view("d", boxAt(40, 0, 9, 9, {{"opacity", "0.0005"}, {"color", "Knob"}})),
          view("e", boxAt(60, 0, 9, 9, {{"color", "Glass"}}))});
    tick();
    const auto half = [](CPixel d, CPixel s) {
        CPixel mixed = 0;
        for (const int32_t shift : {0, 8, 16}) {
            const int32_t from = static_cast<int32_t>(d >> shift & 255);
            const int32_t to = static_cast<int32_t>(s >> shift & 255);
            mixed |= static_cast<CPixel>(((from << 15) + (to - from) * 16384) >> 15) << shift;
        }
        return mixed;
    };
    EXPECT_EQ(pixel(4, 4), half(kPanel, kKnob));
    EXPECT_EQ(pixel(24, 4), kKnob);
    EXPECT_EQ(pixel(44, 4), kPanel);
    EXPECT_EQ(pixel(64, 4), half(kPanel, 0x808080));
}

TEST_F(ViewDrawing, AMovedViewLeavesNothingBehind) {
    open({{"palette", "A"}}, {view("a", boxAt(10, 10, 5, 5, {{"color", "Knob"}}))});
    tick();
    set(at("a"), "outer-border", "L30 T10");
    // The old place and the new one, in one tile.
    EXPECT_EQ(tick(), 25 * 5);
    EXPECT_EQ(pixel(12, 12), 0u);
    EXPECT_EQ(pixel(32, 12), kKnob);
    set(at("a"), "is-visible", "false");
    tick();
    EXPECT_EQ(pixel(32, 12), 0u);
    set(at("a"), "is-visible", "true");
    tick();
    EXPECT_EQ(pixel(32, 12), kKnob);
    delete &at("a");
    tick();
    EXPECT_EQ(pixel(32, 12), 0u);
}

TEST_F(ViewDrawing, AnIdleWindowDrawsNothing) {
    open({{"palette", "A"}, {"color", "Panel"}},
         {view("a", boxAt(10, 10, 5, 5, {{"color", "Knob"}, {"is-dynamic", "true"}}))});
    tick();
    for (int32_t i = 0; i < 100; ++i)
        ASSERT_EQ(tick(0.025), 0);
}

TEST_F(ViewDrawing, ARedrawIsOfThePartsOrOfTheWholeView) {
    CProbe& probe = openProbe(boxAt(10, 10, 50, 50, {{"color", "Knob"}}), "fill");
    tick();
    probe.requestRedraw({12.0, 12.0, 3.0, 4.0});
    EXPECT_EQ(tick(), 12);
    EXPECT_EQ(probe.lastClip, (CIntRect{12, 12, 15, 16}));
    probe.requestRedraw({0.0, 0.0, 12.0, 12.0});
    EXPECT_EQ(tick(), 4);
    probe.requestRedraw({12.0, 12.0, 3.0, 4.0});
    probe.requestRedraw();
    EXPECT_EQ(tick(), 2500);
    // What was asked for is done with.
    probe.requestRedraw({12.0, 12.0, 1.0, 1.0});
    EXPECT_EQ(tick(), 1);
}

TEST_F(ViewDrawing, AHiddenParentHidesWhatItDoesNotClip) {
    open({{"palette", "A"}}, {view("p", {{"is-visible", "false"}},
                                   {view("a", boxAt(0, 0, 9, 9, {{"color", "Knob"}, {"unclip-level", "-1"}}))})});
    tick();
    EXPECT_EQ(pixel(4, 4), 0u);
    set(at("p"), "is-visible", "true");
    tick();
    EXPECT_EQ(
        pixel(static_cast<int32_t>(at("p.a").visibleRect().x) + 1, static_cast<int32_t>(at("p.a").visibleRect().y) + 1),
        kKnob);
}

TEST_F(ViewDrawing, LaterViewsAreDrawnAboveEarlierOnesAndByTheirStackingNumber) {
    open({{"palette", "A"}}, {view("a", boxAt(0, 0, 9, 9, {{"color", "Knob"}, {"z-index", "9000000"}})),
                              view("b", boxAt(5, 0, 9, 9, {{"color", "Text"}}))});
    tick();
    EXPECT_EQ(pixel(6, 4), kKnob);
    EXPECT_EQ(pixel(10, 4), 0x010203u);
}

TEST_F(ViewDrawing, AViewThatBecomesDynamicIsDrawnOnTheCacheFromThenOn) {
    CProbe& probe = openProbe(boxAt(10, 10, 20, 20), "", {{"palette", "A"}, {"color", "Panel"}});
    tick();
    set(probe, "is-dynamic", "true");
    tick();
    EXPECT_EQ(pixel(15, 15), kPanel);
    EXPECT_TRUE(probe.isDynamic());
}

TEST_F(ViewDrawing, ARootOfAnotherSizeFillsTheNewTiles) {
    open(
        {{"palette", "A"}, {"color", "Panel"}},
        {view(
            "a",
            {{"placement", "full"}, {"width", "full"}, {"height", "full"}, {"outer-border", "10"}, {"color", "Knob"}})},
        100, 100, {{"test:note", "note"}});
    tick();
    auto& note = *tree_->findObjectOf<CAreaNote>("ui.note");
    note.listenObject("ui.w", "update-window-bounds", "note");
    ASSERT_EQ(consumed(window_.map.resize(300, 200)), "");
    set(*rootView_, "width", "300");
    set(*rootView_, "height", "200");
    tick();
    EXPECT_EQ(note.events, std::vector<std::string>{"ui.w update-window-bounds"});
    for (int32_t column = 0; column < window_.map.columns(); ++column)
        for (int32_t row = 0; row < window_.map.rows(); ++row)
            EXPECT_EQ(window_.map.sector(column, row).views().count(), 2) << column << ' ' << row;
    EXPECT_EQ(note.events.size(), 1u);
}

TEST_F(ViewDrawing, ScrollableViewsAndThoseWithACommandReportTheirAreas) {
    open({},
         {view("s", {{"is-scrollable", "true"}, {"width", "20"}, {"height", "20"}}),
          view("c", {{"width", "20"}, {"height", "20"}},
               {{"ui:view-command", "x", {{"on-event", "view-area-update"}, {"toggle-state", "moved"}}}}),
          view("n", {{"width", "20"}, {"height", "20"}})},
         300, 200, {{"test:note", "note"}});
    auto& note = *tree_->findObjectOf<CAreaNote>("ui.note");
    for (const char* name : {"ui.w.s", "ui.w.c", "ui.w.n"})
        for (const char* event : {"update-scroller", "view-area-update"})
            note.listenObject(name, event, "note");
    EXPECT_TRUE(at("c").isStateSet("moved"));
    for (const char* name : {"s", "c", "n"})
        set(at(name), "width", "30");
    tick();
    EXPECT_FALSE(at("c").isStateSet("moved"));
    EXPECT_EQ(note.events, (std::vector<std::string>{"ui.w.s update-scroller", "ui.w.c view-area-update"}));
}

}  // namespace
}  // namespace tarv
