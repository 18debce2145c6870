// The lists and the menu of a right press, and what is exported of the hovered point.

#include "Tests/UI/Controls/Surface/SurfaceTree.h"
#include "UI/Text/CPopupList.h"

namespace tarv {
namespace {

constexpr double kRounding = 1e-9;

class SurfaceMenu : public CSurfaceTest {
protected:
    CPopupList* list() {
        for (CObject* child : editor.tree().findObject("ui")->children()) {
            if (auto* found = dynamic_cast<CPopupList*>(child->findChild("list"))) {
                return found;
            }
        }
        return nullptr;
    }
    std::vector<std::string> rows() {
        std::vector<std::string> all;
        for (int32_t i = 0; list() && i < list()->paragraphCount(); ++i) {
            all.push_back(list()->paragraphText(i).toUtf8());
        }
        return all;
    }
    /// Opens the popup at the pointer.
    void openMenu() {
        input().click(CPointerButton::Right);
        advance(0.2);
    }
    void choose(int32_t row) {
        ASSERT_TRUE(list());
        const CViewRect rect = list()->rowRect(row);
        auto* window = dynamic_cast<CWindow*>(list()->window());
        input().moveIn(window->handle(), static_cast<int32_t>(rect.x + 5), static_cast<int32_t>(rect.y + 5));
        input().click();
        advance(0.2);
    }
};

TEST_F(SurfaceMenu, ARightPressOpensAShortMenu) {
    open(bands());
    setGain(2, 4.0);
    setGain(4, 4.0);
    moveTo(2, 1.0);
    openMenu();
    EXPECT_EQ(rows(), (std::vector<std::string>{"Reset", "Reset all", "Copy to group 2"}));
    choose(0);
    EXPECT_EQ(gain(2), 0.0);
    EXPECT_NEAR(gain(4), 4.0, kRounding);
    moveTo(0, 1.0);
    openMenu();
    choose(2);
    EXPECT_NEAR(gain(4, 1), 4.0, kRounding);
    const size_t before = steps().size();
    openMenu();
    choose(1);
    EXPECT_EQ(gain(4), 0.0);
    EXPECT_NEAR(gain(4, 1), 4.0, kRounding);
    EXPECT_EQ(steps().size(), before + 1);
    set("under", "group-index", "0");
    openMenu();
    EXPECT_EQ(rows(), (std::vector<std::string>{"Reset", "Reset all"})) << "the same group is behind";
}

TEST_F(SurfaceMenu, TheMenuHasTheNameOfTheGroupThatItCopiesTo) {
    open(bands());
    CTextList names;
    names.append("");
    names.append("Dr[B]ms;");
    EXPECT_EQ(consumed(at<CAudioInterfaceClient>("ui.interface-client")
                           .setTexts("plugin.modMain.io-params.group-names", 0, 0, names)),
              "");
    advance(0.2);
    moveTo(2, 1.0);
    openMenu();
    EXPECT_EQ(rows().back(), "Copy to group Dr[B]ms;") << "as it was typed";
}

TEST_F(SurfaceMenu, ARightPressOpensTheValueListAndTheRowIsWritten) {
    open(bands("", "", "") + R"(<ui:control-surface name="list" placement="overlay" width="60" height="200"
              outer-border="L300 T30" image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range">
              <ui:control-surface-group name="g" point-count="1">
                <ui:ui-param name="ui-param-y" bridge="ui.out"/>
                <ui:ui-param name="ui-param-popup" bridge="ui.gains" element="5"/>
                <core:object name="value-list">
                  <core:object name="paragraph" is-paragraph="true" title="Zero"/>
                  <core:object name="paragraph" is-paragraph="true" title="One"/>
                  <core:object name="paragraph" is-paragraph="true" title="Two"/>
                </core:object>
              </ui:control-surface-group>
            </ui:control-surface>)");
    setGain(5, 1.0);
    moveToPixel(330, 100);
    openMenu();
    EXPECT_EQ(rows(), (std::vector<std::string>{"Zero", "One", "Two"}));
    ASSERT_TRUE(list());
    EXPECT_EQ(list()->selectedParagraph(), 1) << "the value";
    choose(2);
    EXPECT_NEAR(gain(5), 2.0, kRounding);
}

TEST_F(SurfaceMenu, ARightPressWritesTheValueOfTheItem) {
    open(R"(<ui:control-surface name="list" placement="overlay" width="60" height="200"
              outer-border="L300 T30" image-set="shared::is.csurface" is-slider-mode="true" min-max="ui.range">
              <ui:control-surface-group name="g" point-count="1">
                <ui:ui-param name="ui-param-y" bridge="ui.out"/>
                <ui:ui-param name="ui-param-popup" bridge="ui.gains" element="5"/>
                <ui:value-list-manual name="value-list">
                  <core:object name="content" title="Less" value="-4.5"/>
                  <core:object name="content" title="More" value="3"/>
                </ui:value-list-manual>
              </ui:control-surface-group>
            </ui:control-surface>)");
    setGain(5, 3.0);
    moveToPixel(330, 100);
    openMenu();
    EXPECT_EQ(rows(), (std::vector<std::string>{"Less", "More"}));
    ASSERT_TRUE(list());
    EXPECT_EQ(list()->selectedParagraph(), 1);
    choose(0);
    EXPECT_NEAR(gain(5), -4.5, kRounding);
    openMenu();
    ASSERT_TRUE(list());
    EXPECT_EQ(list()->selectedParagraph(), 0);
}

TEST_F(SurfaceMenu, TheHoveredPointIsExported) {
    open(R"(<ui:min-max name="alt" min="0" max="100"/>)" +
         bands(R"(is-export-x="true" is-export-y="true" is-export-bw="true" min-max-y-alt="^alt")"));
    setGain(3, 6.0);
    moveTo(3, 0.0);
    EXPECT_NEAR(surface().getAttrReal("curpos-y"), 6.0, kRounding);
    EXPECT_NEAR(surface().getAttrReal("curpos-y-alt"), 75.0, kRounding);
    EXPECT_TRUE(surface().hasAttr("curpos-x"));
    EXPECT_TRUE(surface().hasAttr("curpos-bw"));
    input().press();
    EXPECT_EQ(surface().getAttrReal("curpos-band-sel"), 3.0);
    moveBy(0, 25);
    EXPECT_NEAR(surface().getAttrReal("curpos-y"), 9.0, kRounding);
    input().release();
    advance();
    const auto expectExported = [this](double value) {
        advance(0.05);
        EXPECT_NEAR(surface().getAttrReal("curpos-y"), value, kRounding);
        EXPECT_NEAR(surface().getAttrReal("curpos-y-alt"), 50.0 + value / 0.24, kRounding);
    };
    setGain(3, -6.0);
    expectExported(-6.0);
    EXPECT_EQ(consumed(at<CAudioInterfaceClient>("ui.interface-client").undo()), "");
    advance();
    expectExported(bar(3));
    openMenu();
    choose(0);
    moveTo(3, 0.0);
    EXPECT_EQ(bar(3), 0.0);
    expectExported(0.0);
}

TEST_F(SurfaceMenu, AReadoutShowsWhatIsExported) {
    open(bands(
        R"(is-export-y="true" curpos-show-values="true" curpos-show-labels="true" curpos-active-color="GraphZero")"));
    const auto readout = [this]() -> CView& { return at<CView>("ui.main-window.surface.curpos"); };
    EXPECT_FALSE(readout().isShown()) << "nothing is hovered";
    setGain(3, 6.0);
    moveTo(3, 0.0);
    advance(0.05);
    EXPECT_TRUE(readout().isShown());
    EXPECT_EQ(text("main-window.surface.curpos", "title"), "Y 6.0 dB");
    EXPECT_EQ(readout().area().box().y, 30.0) << "at the top";
    set("main-window.surface", "curpos-alignment", "bottom");
    advance();
    EXPECT_EQ(readout().area().box().bottom(), 230.0);
    input().press();
    moveBy(0, 25);
    advance(0.05);
    EXPECT_EQ(text("main-window.surface.curpos", "title"), "Y 9.0 dB");
    EXPECT_EQ(text("main-window.surface.curpos", "text-color"), "GraphZero");
    input().release();
    advance(0.05);
    EXPECT_EQ(text("main-window.surface.curpos", "text-color"), "RulerText");
    set("main-window.surface", "curpos-show-labels", "false");
    EXPECT_EQ(text("main-window.surface.curpos", "title"), "9.0 dB");
    set("main-window.surface.sliders.ui-param-y", "title", "Gain");
    set("main-window.surface", "curpos-show-labels", "true");
    set("main-window.surface", "curpos-show-values", "false");
    EXPECT_EQ(text("main-window.surface.curpos", "title"), "Gain");
    moveToPixel(390, 310);
    advance(0.05);
    EXPECT_FALSE(readout().isShown());
    set("main-window.surface", "curpos-show-labels", "false");
    EXPECT_EQ(surface().findChild("curpos"), nullptr);
    moveTo(3, 0.0);
}

}  // namespace
}  // namespace tarv
