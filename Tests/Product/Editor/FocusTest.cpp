// The focus of keys on the product's tree: the walk by Tab in every window, and the ring that shows where it is.

#include <algorithm>
#include <vector>

#include "Tests/Product/Editor/ProductEditor.h"

namespace tarv {

namespace {

struct CFocus : CProductEditor {
    explicit CFocus(double scale = 1.0) : CProductEditor(scale) {}

    CWindow& windowOf(const std::string& root) { return *dynamic_cast<CWindow*>(at(root).window()); }
    /// Below a root view, in the tree's order.
    static void focusables(CView& view, std::vector<CView*>& found) {
        if (view.isFocusable() && view.isShown() && !view.isDisabled()) {
            found.push_back(&view);
        }
        for (CObject* child : view.children()) {
            if (auto* below = dynamic_cast<CView*>(child)) {
                focusables(*below, found);
            }
        }
    }
    static bool isRingAround(CView& root, CView& view) {
        const auto* ring = dynamic_cast<const CView*>(root.findChild("focus-ring"));
        const auto* shown = dynamic_cast<CView*>(view.focusView());
        return ring && shown && ring->isShown() && ring->area().box() == shown->area().box();
    }
    bool hasRing(const std::string& root = "") {
        const auto* ring = dynamic_cast<const CView*>(at(root).findChild("focus-ring"));
        return ring && ring->isShown();
    }
    /// Where the walk goes, from no focus until it is at its first view again. The walk of a field opens its box.
    std::vector<CView*> walk(const std::string& root) {
        CView& view = at(root);
        CWindow& window = windowOf(root);
        std::vector<CView*> way;
        for (int32_t i = 0; i < 200; ++i) {
            tap(kKeyTab);
            auto* now = dynamic_cast<CView*>(window.keyFocusView());
            if (!now || (!way.empty() && now == way.front())) {
                return way;
            }
            EXPECT_TRUE(isRingAround(view, *now)) << now->fullName().toUtf8();
            way.push_back(now);
        }
        ADD_FAILURE() << "the walk never ends";
        return way;
    }
    /// Each view that may have the focus is met once, and in the order of these names, of which `*` stands for any
    /// number of views that begin with what stands before it.
    void expectWalk(const std::string& root, const std::vector<std::string>& names) {
        std::vector<CView*> all;
        focusables(at(root), all);
        const std::vector<CView*> way = walk(root);
        EXPECT_EQ(way.size(), all.size()) << root;
        for (CView* view : all) {
            EXPECT_EQ(std::count(way.begin(), way.end(), view), 1) << view->fullName().toUtf8();
        }
        std::vector<std::string> met;
        for (const CView* view : way) {
            const std::string name = view->fullName().toUtf8().substr(full(root).size() + 1);
            const std::string kind = name.substr(0, name.find('#')) + (name.find('#') == std::string::npos ? "" : "*");
            if (met.empty() || met.back() != kind) {
                met.push_back(kind);
            }
        }
        EXPECT_EQ(met, names);
    }
    void tabTo(const std::string& path) {
        for (int32_t i = 0; i < 100 && windowOf("").keyFocusView() != &at(path); ++i) {
            tap(kKeyTab);
        }
        ASSERT_EQ(windowOf("").keyFocusView(), &at(path));
    }
    void takeKeys() {
        EXPECT_EQ(tree().setAttribute("IsFocusTaken", CAttributeValue::fromBool(true)), nullptr);
        click("c.xeq1.title-frame-head.title-frame-caption");
    }
};

TEST_F(CFocus, TabWalksTheMainWindowAsItIsRead) {
    takeKeys();
    std::vector<std::string> names{"window-title.instance-name.readout",
                                   "window-title.quality-selector.object",
                                   "window-title.bypass",
                                   "c.buttons.preset-manager",
                                   "c.buttons.preset-manager.quick-preset-list",
                                   "c.buttons.ab",
                                   "c.buttons.copy",
                                   "c.buttons.reset",
                                   "c.buttons.channel-routing",
                                   "c.buttons.channel-routing.quick-preset-list",
                                   "c.buttons.settings"};
    for (const std::string view : {"c.xeq1.", "c.xeq2."}) {
        for (const char* part :
             {"title-frame-head.eq-invert-scale.scale", "title-frame-head.eq-invert-scale.invert",
              "title-frame-head.param-reset-button", "cs-sliders.ruler-freqs.label", "cs-sliders.ruler-freqs.label*",
              "cs-sliders.control-surface", "cs-sliders.ruler-values.label", "cs-sliders.ruler-values.label*",
              "cs-gain.control-surface", "cs-gain.ruler-values.label", "xeq-base.edit-group.selector",
              "xeq-base.edit-group.param-copy-button", "xeq-base.underlay-group.selector"}) {
            names.push_back(view + part);
        }
    }
    expectWalk("", names);
}

TEST_F(CFocus, TabWalksTheSettings) {
    click("c.buttons.settings");
    expectWalk("ui.win-settings", {"window-title.close", "c.settings.color-scheme.selector",
                                   "c.settings.scale.selector", "c.settings.show-hints", "c.settings.global-settings"});
    click("ui.win-settings.c.settings.global-settings");
    expectWalk("ui.win-global-settings",
               {"window-title.close", "c.settings.oversampling.selector", "c.settings.mouse-wheel-precision.slider",
                "c.settings.shift-key-precision.slider", "c.settings.drag-precision.slider",
                "c.settings.switches.left.show-knob-labels", "c.settings.switches.left.tablet-mode",
                "c.settings.switches.left.show-virtual-keyboard", "c.settings.switches.right.builtin-refresh",
                "c.settings.switches.right.radial-knob-mode", "c.settings.switches.right.denorm",
                "c.settings.reset-defaults"});
    click("ui.win-global-settings.c.settings.reset-defaults");
    expectWalk("ui.win-confirmation", {"window-title.close", "c.buttons.ok", "c.buttons.cancel"});
}

TEST_F(CFocus, TabWalksRoutingAndNames) {
    click("c.buttons.channel-routing");
    expectWalk("ui.win-channel-routing",
               {"window-title.close", "c.input-routing.fields.object", "c.input-routing.fields.object*",
                "c.input-routing.names", "c.ms-pairs.fields.object", "c.ms-pairs.fields.object*",
                "c.group-assignments.fields.object", "c.group-assignments.fields.object*", "c.group-assignments.names",
                "c.output-routing.fields.object", "c.output-routing.fields.object*", "c.buttons.routing-presets",
                "c.buttons.routing-presets.quick-preset-list"});
    click("ui.win-channel-routing.c.input-routing.names");
    std::vector<std::string> names = {"window-title.close"};
    for (int32_t i = 1; i <= 16; ++i) {
        names.push_back("c.names.item" + std::to_string(i) + ".name");
    }
    names.insert(names.end(), {"c.from-host.import", "c.buttons.copy-paste.copy", "c.buttons.copy-paste.paste",
                               "c.buttons.ok", "c.buttons.cancel"});
    // The first field is edited: without that, the walk is the one of any window.
    tap(kKeyEscape);
    expectWalk("ui.win-channel-label-setup", names);
}

TEST_F(CFocus, TabWalksPresets) {
    click("c.buttons.preset-manager");
    expectWalk("ui.win-preset-manager",
               {"window-title.close", "c.banks.outline.list", "c.banks.buttons.add", "c.banks.buttons.load",
                "c.banks.buttons.save", "c.presets.outline.list", "c.presets.buttons.add", "c.presets.buttons.delete",
                "c.presets.buttons.replace", "c.presets.buttons.load", "c.presets.buttons.save",
                "c.presets.buttons.activate", "c.presets.buttons.set-default"});
}

TEST_F(CFocus, TheRingShowsOnlyToWhoWorksByKeys) {
    takeKeys();
    click("c.xeq1.title-frame-head.eq-invert-scale.invert");
    EXPECT_TRUE(windowOf("").keyFocusView());
    EXPECT_FALSE(hasRing()) << "focused by the mouse";
    tap(kKeyTab);
    EXPECT_TRUE(hasRing());
    EXPECT_FALSE(hasState("c.xeq1.title-frame-head.param-reset-button", "hover"));
    tap(kKeyEscape);
    EXPECT_FALSE(hasRing());
    click("c.xeq1.title-frame-head.eq-invert-scale.invert");
    tap(kKeyTab);
    EXPECT_TRUE(hasRing());
    press("c.xeq1.cs-sliders.control-surface");
    EXPECT_FALSE(hasRing());
    release();
    EXPECT_FALSE(hasRing()) << "the selected bar shows where the keys go";
}

TEST_F(CFocus, TheRingOfASelectorIsAroundWhatIsChosen) {
    const std::string selector = "c.xeq1.xeq-base.underlay-group.selector";
    takeKeys();
    click("c.xeq1.xeq-base.edit-group.param-copy-button");
    tap(kKeyEscape);
    tap(kKeyTab);
    ASSERT_EQ(windowOf("").keyFocusView(), &at(selector));
    EXPECT_TRUE(isRingAround(at(""), at(selector)));
    tap(kKeyRight);
    EXPECT_TRUE(isRingAround(at(""), at(selector)));
    EXPECT_EQ(at(selector).focusView(), &at(selector + ".button#2"));
}

TEST_F(CFocus, AFieldThatIsEditedShowsItsCursorInPlaceOfTheRing) {
    takeKeys();
    click("window-title.bypass");
    tap(kKeyTab);
    EXPECT_TRUE(hasRing());
    tabTo("c.xeq1.cs-gain.ruler-values.label");
    EXPECT_TRUE(hasRing());
    tap(kKeyEnter);
    ASSERT_TRUE(exists("temp-editbox"));
    EXPECT_FALSE(hasRing());
}

TEST_F(CFocus, TheRingGoesWithItsView) {
    takeKeys();
    click("c.xeq1.title-frame-head.eq-invert-scale.invert");
    tabTo("c.xeq1.cs-sliders.ruler-values.label#6");
    EXPECT_TRUE(hasRing());
    setEngine("modBrindleXEQ.band-count", 0, 0, 5.0);
    wait(0.3);
    EXPECT_FALSE(exists("c.xeq1.cs-sliders.ruler-values.label#6"));
    EXPECT_FALSE(hasRing());
}

}  // namespace

}  // namespace tarv
