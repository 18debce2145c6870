#include "UI/Views/CViewReading.h"

#include "Tests/UI/Views/RoutedViews.h"

namespace tarv {
namespace {

struct CViewReadingTest : CRouting {
    CViewReadingTest() {
        build({view("bypass", "0 0 50 50", {{"is-focusable", "true"}, {"title", "[B]By[/B]pass"}, {"hint", "Switch."}}),
               view("copy", "50 0 50 50", {{"is-focusable", "true"}},
                    {view("label", "50 0 9 9", {{"title", "A[BR]to B"}})}),
               view("icon", "100 0 50 50",
                    {{"is-focusable", "true"},
                     {"title", "[IMG=is.button#Arrow:Action]"},
                     {"hint", "Opens [B]settings[/B]."}}),
               view("panel", "0 50 200 50", {{"hint", "Bands"}},
                    {view("bar", "0 50 20 50",
                          {{"is-focusable", "true"}, {"role", "slider"}, {"readable-name", "Band 1"}}),
                     view("plain", "20 50 20 50"), view("nameless", "40 50 20 50", {{"is-focusable", "true"}})})});
    }
    std::string name(const std::string& path) const { return CViewReader::read(at(path)).name.toUtf8(); }
};

TEST_F(CViewReadingTest, NamesComeFromTheAttributeTheTitleOrTheHint) {
    EXPECT_EQ(name("r.bypass"), "Bypass");
    EXPECT_EQ(name("r.copy"), "A to B");
    EXPECT_EQ(name("r.icon"), "Opens settings.") << "an image says nothing";
    EXPECT_EQ(name("r.panel.bar"), "Band 1");
    EXPECT_EQ(name("r.panel.nameless"), "Bands");
}

TEST_F(CViewReadingTest, RolesComeFromTheAttributeOrTheFocus) {
    EXPECT_EQ(at("r.bypass").role(), CViewRole::Button);
    EXPECT_EQ(at("r.panel.bar").role(), CViewRole::Slider);
    EXPECT_EQ(at("r.panel.plain").role(), CViewRole::None);
    EXPECT_EQ(CViewReader::roleNamed("check-box"), CViewRole::CheckBox);
    EXPECT_EQ(CViewReader::roleNamed("knob"), CViewRole::None);
}

TEST_F(CViewReadingTest, AReadingSaysWhereAViewIsAndWhetherItWorks) {
    window.router->setKeyFocus(&at("r.panel.bar"));
    CViewReading reading = CViewReader::read(at("r.panel.bar"));
    EXPECT_TRUE(reading.isFocused);
    EXPECT_FALSE(reading.isDisabled);
    EXPECT_EQ(reading.help.toUtf8(), "Bands");
    EXPECT_EQ(reading.rect.y, 50.0);
    set("r.panel", "is-disabled", "true");
    reading = CViewReader::read(at("r.panel.bar"));
    EXPECT_TRUE(reading.isDisabled);
    EXPECT_FALSE(reading.isFocused);
}

TEST_F(CViewReadingTest, EachFocusableViewIsFoundInTheOrderOfTheTabKeyAndWorked) {
    std::string names;
    for (CViewBaseCtlEvents* found : CViewReader::focusableViews(at("r"))) {
        names += found->name().toUtf8() + " ";
        heard();
        EXPECT_TRUE(window.router->work(*found));
        EXPECT_EQ(heard(), found->name().toUtf8() + ".mouse-press " + found->name().toUtf8() + ".mouse-release");
        EXPECT_FALSE(CViewReader::read(*found).name.isEmpty());
        EXPECT_NE(CViewReader::read(*found).role, CViewRole::None);
    }
    EXPECT_EQ(names, "bypass copy icon bar nameless ");
    at("r.icon").hide(true);
    EXPECT_EQ(CViewReader::focusableViews(at("r")).count(), 4);
    EXPECT_FALSE(window.router->work(at("r.icon")));
    press(10, 10);
    EXPECT_FALSE(window.router->work(at("r.copy")));
    release(10, 10);
}

TEST(CViewReader, MarksAreNotSaid) {
    for (const auto& [text, said] :
         std::vector<std::pair<const char*, const char*>>{{"[B]a[/B][C2]b[/C2][SUP]c[/SUP]", "abc"},
                                                          {"a[BR]b", "a b"},
                                                          {"[IMG=is.x#R:C]a", "a"},
                                                          {"[x] [B", "[x] [B"}}) {
        EXPECT_EQ(CViewReader::withoutMarks(text).toUtf8(), said);
    }
}

}  // namespace
}  // namespace tarv
