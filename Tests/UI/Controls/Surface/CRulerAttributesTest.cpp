// What a ruler reads anew, the events that it follows, and its end in its own tick.

#include <utility>

#include "Tests/UI/Controls/Surface/RulerTree.h"

namespace tarv {
namespace {

class RulerAttributes : public CRulerTest {};

TEST_F(RulerAttributes, LabelsTakeTheAttributesOfTheRulerAlsoWhenTheyChange) {
    open(bands() + gainRuler());
    const struct {
        const char *name, *ofLabel, *absent, *value;
    } kRows[] = {{"label-text-align", "text-alignment", "center", "right"},
                 {"label-unclip-level", "unclip-level", "1", "2"},
                 {"tab-group", "tab-group", "", "g"},
                 {"accept-chars", "accept-chars", "", "0123"},
                 {"virtual-keyboard-minus-char", "virtual-keyboard-minus-char", "", "K"},
                 {"group-selector", "group-selector", "", "ui.edit"},
                 {"bridge", "bridge", "", "ui.gains"}};
    const auto ofLabel = [&](const char* name) { return ruler().label(2)->getAttrString(name).toUtf8(); };
    for (const auto& row : kRows) {
        EXPECT_EQ(ofLabel(row.ofLabel), row.absent) << row.name;
        set("main-window.ruler", row.name, row.value);
        EXPECT_EQ(ofLabel(row.ofLabel), row.value) << row.name;
        EXPECT_EQ(ruler().labelCount(), 5) << row.name;
    }
    set("main-window.ruler", "bridge", "");
    EXPECT_EQ(texts()[4], "12") << "texts of the ruler again";
    EXPECT_FALSE(ruler().isEditable(2));
    set("main-window.ruler", "label-tag", "ui:test-field");
    EXPECT_TRUE(ruler().isEditable(2));
}

TEST_F(RulerAttributes, ItsSizesAreReadAnew) {
    open(bands() + gainRuler());
    const double right = labelBox(4).right();
    EXPECT_EQ(labelBox(4).height, 13.0);
    set("main-window.ruler", "label-size", "20");
    EXPECT_EQ(labelBox(4).height, 20.0);
    set("main-window.ruler", "label-shift", "5");
    EXPECT_EQ(labelBox(4).right(), right - 2.0) << "3 without it";
    set("main-window.ruler", "ruler-size", "30");
    advance();
    EXPECT_EQ(ruler().area().box().width, 30.0);
    EXPECT_EQ(labelBox(4).right(), right - 2.0 + 12.0);
}

TEST_F(RulerAttributes, ALabelGapIsReadAnew) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies));
    EXPECT_EQ(texts()[6], "15000");
    set("main-window.ruler", "label-gap", "100");
    EXPECT_EQ(texts()[6], "15K");
    set("main-window.ruler", "label-gap", "2");
    EXPECT_EQ(texts()[6], "15000");
}

TEST_F(RulerAttributes, HairlinesThatAreNotInwardCrossTheRuler) {
    open(bands() + gainRuler("is-show-labels=\"false\""));
    const int32_t line = surface().layout().linePixel(0.75);
    const uint32_t ground = pixel(0, 0);
    EXPECT_EQ(ruler().lines().values.count(), 5);
    EXPECT_EQ(pixel(1, line), ground);
    set("main-window.ruler", "is-hairline-inward", "false");
    advance();
    EXPECT_EQ(ruler().lines().values.count(), 0);
    EXPECT_NE(pixel(1, line), ground);
    EXPECT_EQ(pixel(1, surface().layout().linePixel(0.625)), ground) << "a minor one is a tick alone";
}

TEST_F(RulerAttributes, FollowsTheEventsOfItsTitlesAndOfTheRuledView) {
    open(bands() + titleRuler({"A", "B", "C"}));
    const auto send = [&](const char* path, const char* event) {
        CAttributeMap none;
        EXPECT_EQ(consumed(at<CObject>(path).sendEvent(event, none, false)), "");
    };
    for (const char* event : {"titles-update", "values-changed"}) {
        set("main-window.ruler.label", "title", "moved");
        send("ui.main-window.titles", event);
        EXPECT_EQ(texts()[0], "A") << event;
    }
    for (const char* event : {"ruled-view-update", "view-area-update"}) {
        ruler().label(0)->area().setHeight({CViewLengthMode::Fixed, 1.0});
        EXPECT_EQ(labelBox(0).height, 1.0);
        send("ui.main-window.surface", event);
        EXPECT_EQ(labelBox(0).height, 13.0) << event;
    }
}

/// Destroys an object when the attribute that it follows is set.
class CDestroyer : public CObject {
public:
    explicit CDestroyer(CObject& object) : object_(&object) {}
    CError* setAttribute(CObject*, const CString&, const CAttributeValue&) override {
        delete std::exchange(object_, nullptr);
        return nullptr;
    }

private:
    CObject* object_;
};

TEST_F(RulerAttributes, MayGoInItsOwnRenderTick) {
    open(bands("ruler=\"^ruler\"") + titleRuler(kFrequencies, "bridge=\"ui.gains\""));
    advance();
    CDestroyer destroyer(ruler());
    ruler().label(6)->linkObserver(destroyer, "format-id", "format-id");
    // Labels that don't fit take their short texts at the next tick.
    set("main-window.ruler." + ruler().label(3)->name().toUtf8(), "title", "-12345678901234567890.0");
    advance();
    EXPECT_FALSE(editor.tree().findObject("ui.main-window.ruler"));
    advance(0.2);
}

}  // namespace
}  // namespace tarv
