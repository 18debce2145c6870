#include "UI/Text/CTextView.h"

#include <cmath>

#include "Tests/UI/Text/TextViewTree.h"

namespace tarv {

std::vector<std::string> CRowLog::heard;
CObject* CRowDestroyer::victim = nullptr;

namespace {

class TextView : public CTextViewTest {
protected:
    std::string size(const std::string& path) {
        const CViewRect rect = at(path).area().box();
        return std::to_string(std::lround(rect.width)) + "x" + std::to_string(std::lround(rect.height));
    }
    std::string sizeOf(int32_t width, int32_t height) { return std::to_string(width) + "x" + std::to_string(height); }
};

TEST_F(TextView, ACompactSizeIsThatOfTheText) {
    openTexts({label("a", {{"title", "Gain"}}), label("b", {{"title", "one[BR]three"}, {"inner-border", "2 *L3"}})});
    EXPECT_EQ(size("a"), sizeOf(face.advance("Gain"), 14));
    EXPECT_EQ(size("b"), sizeOf(face.advance("three") + 7, 28 + 4));
    set(at("a"), "title", "Gains");
    flush();
    EXPECT_EQ(size("a"), sizeOf(face.advance("Gains"), 14));
}

TEST_F(TextView, ALineThatIsTooWideEndsInAnEllipsisWhereThatIsAsked) {
    const int32_t whole = face.advance("one two");
    const std::string tooNarrow = std::to_string(whole - 1);
    openTexts({label("a", {{"title", "one two"}, {"is-text-wrapped", "false"}, {"width", tooNarrow}})});
    EXPECT_EQ(text("a").shownItems(text("a").layout().line(0)), 7);
    set(at("a"), "is-text-shortened", "true");
    flush();
    const int32_t shown = text("a").shownItems(text("a").layout().line(0));
    EXPECT_LT(shown, 7);
    const CImage* dots = text("a").fonts().glyph(0x2026, CTextStyle::Regular);
    EXPECT_LE(text("a").layout().place(shown).x + (dots ? std::ceil(dots->getAdvance()) : 0.0), whole - 1);
    set(at("a"), "width", std::to_string(whole));
    flush();
    EXPECT_EQ(text("a").shownItems(text("a").layout().line(0)), 7);
    set(at("a"), "width", "1");
    flush();
    EXPECT_EQ(text("a").shownItems(text("a").layout().line(0)), 0);
}

TEST_F(TextView, ACompactWidthIsThatOfTheWidestParagraphUnwrapped) {
    openTexts({label("a", {{"title", "one two three\nfour"}})}, 40);
    EXPECT_EQ(size("a"), sizeOf(face.advance("one two three"), 14 + 10 + 14));
    EXPECT_EQ(text("a").layout().lineCount(), 2);
}

TEST_F(TextView, AGivenWidthWrapsTheTextAndGivesItsHeight) {
    const int32_t two = face.advance("one two");
    openTexts({label("a", {{"title", "one two three"}, {"width", std::to_string(two)}})});
    EXPECT_EQ(size("a"), sizeOf(two, 28));
    // Anew when the inner width changes by a pixel.
    set(at("a"), "width", std::to_string(two - 1));
    flush();
    EXPECT_EQ(size("a"), sizeOf(two - 1, 42));
    set(at("a"), "width", "1000");
    flush();
    EXPECT_EQ(size("a"), sizeOf(1000, 14));
    set(at("a"), "width", "0");
    flush();
    // Not below a pixel: a glyph a line.
    EXPECT_EQ(text("a").layout().lineCount(), 11);
}

TEST_F(TextView, InnerBordersCountForWrapping) {
    const int32_t two = face.advance("one two");
    openTexts({label("a", {{"title", "one two three"}, {"width", std::to_string(two + 8)}, {"inner-border", "4"}})});
    EXPECT_EQ(text("a").layout().lineCount(), 2);
    set(at("a"), "inner-border", "4 *R1");
    flush();
    EXPECT_EQ(text("a").layout().lineCount(), 3);
    EXPECT_EQ(size("a"), sizeOf(two + 8, 42 + 8));
}

TEST_F(TextView, WithoutWrappingTheTextIsClippedByTheRectangle) {
    openTexts({label("a", {{"title", "one two three"},
                           {"is-text-wrapped", "false"},
                           {"placement", "overlay"},
                           {"outer-border", "*L20 *T30"},
                           {"width", "25"}})});
    tick();
    EXPECT_EQ(size("a"), "25x14");
    expectBackground();
    expectText(face, "one two three", 20, 30, kText, {20, 30, 45, 44});
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextView, ASpreadGivesRoomToWhatOverhangs) {
    openTexts({label("a", {{"title", "one two three"},
                           {"is-text-wrapped", "false"},
                           {"placement", "overlay"},
                           {"outer-border", "*L20 *T30"},
                           {"width", "25"},
                           {"spread", "*LR2"}})});
    tick();
    expectBackground();
    expectText(face, "one two three", 20, 30, kText, {18, 30, 47, 44});
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextView, GlyphsStandWhereTheirAdvancesSay) {
    openTexts(
        {label("a", {{"title", "Ab[B]cd[/B] [SUP]ef[/SUP]g"}, {"placement", "overlay"}, {"outer-border", "*L7 *T9"}})});
    tick();
    expectBackground();
    int32_t x = 7;
    expectText(face, "Ab", x, 9, kText);
    x += face.advance("Ab");
    expectText(boldFace, "cd", x, 9, kText);
    x += boldFace.advance("cd") + face.advance(" ");
    expectText(smallFace, "ef", x, 9 + 3 - 1, kText);
    x += smallFace.advance("ef");
    expectText(face, "g", x, 9, kText);
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextView, LinesAndParagraphsStandBelowOneAnotherByTheirAlignment) {
    for (const char* alignment : {"left", "center", "right"}) {
        openTexts({label("a", {{"title", "one two\nx"},
                               {"placement", "overlay"},
                               {"width", std::to_string(face.advance("one") + 5)},
                               {"text-alignment", alignment},
                               {"paragraph-spacing", "6"}})});
        tick();
        expectBackground();
        const std::string kind(alignment);
        int32_t y = 0;
        for (const char* line : {"one", "two", "x"}) {
            const int32_t room = face.advance("one") + 5 - face.advance(line);
            y += line == std::string("x") ? 6 : 0;
            expectText(face, line, kind == "left" ? 0 : kind == "right" ? room : room / 2, y, kText);
            y += 14;
        }
        EXPECT_EQ(wrongPixels(), 0) << alignment;
        EXPECT_EQ(size("a"), sizeOf(face.advance("one") + 5, 48));
    }
}

TEST_F(TextView, TheBlockStandsInAHigherViewByInlineAlignment) {
    openTexts({label("a", {{"title", "x"}, {"placement", "overlay"}, {"height", "21"}, {"inner-border", "*T2"}})});
    EXPECT_EQ(text("a").textOrigin().y, 2 + (19 - 14) / 2);
    for (const auto& [alignment, y] : std::vector<std::pair<const char*, int32_t>>{{"top", 2}, {"bottom", 7}}) {
        set(at("a"), "inline-alignment-v", alignment);
        EXPECT_GT(tick(), 0);
        EXPECT_EQ(text("a").textOrigin().y, y);
        expectBackground();
        expectText(face, "x", 0, y, kText);
        EXPECT_EQ(wrongPixels(), 0) << alignment;
    }
    // A line that is too high keeps its middle, several their beginning.
    set(at("a"), "inline-alignment-v", "center");
    set(at("a"), "inner-border", "0");
    set(at("a"), "height", "9");
    flush();
    EXPECT_EQ(text("a").textOrigin().y, -3);
    set(at("a"), "title", "x[BR]y");
    flush();
    EXPECT_EQ(text("a").textOrigin().y, 0);
}

TEST_F(TextView, ColoursAreThoseOfTheTextOfC1AndC2AndOfImages) {
    openTexts({label("a", {{"title", "a[C1]b[/C1][C2]c[/C2][IMG=is.button#BoxActive:Action]"},
                           {"text-color", "Knob"},
                           {"text-color1", "Knob_Active"},
                           {"text-color2", "Knob_Hover"},
                           {"placement", "overlay"}})});
    tick();
    expectBackground();
    int32_t x = 0;
    expectText(face, "a", x, 0, kKnob);
    expectText(face, "b", x += face.advance("a"), 0, kKnobActive);
    expectText(face, "c", x += face.advance("b"), 0, kKnobHover);
    // 6 x 6 pixels in the middle of the line.
    expectRect(x + face.advance("c"), 4, 6, 6, kAction);
    EXPECT_EQ(wrongPixels(), 0);
    EXPECT_EQ(size("a"), sizeOf(x + face.advance("c") + 6, 14));
}

TEST_F(TextView, AnImageOfAnUnknownRangeHasNoWidthAndIsLogged) {
    const CLogCapture log;
    openTexts({label("a", {{"title", "a[IMG=is.button#Nothing:Action]b"}, {"placement", "overlay"}}),
               label("b", {{"title", "[IMG=is.nothing#Box]"}, {"placement", "overlay"}})});
    EXPECT_TRUE(log.has("Range not found <Nothing> // ui.w.a"));
    EXPECT_TRUE(log.has("Image set not found <is.nothing> // ui.w.b"));
    EXPECT_EQ(size("a"), sizeOf(face.advance("ab"), 14));
    EXPECT_EQ(size("b"), "0x14");
    tick();
    expectBackground();
    expectText(face, "ab", 0, 0, kText);
    EXPECT_EQ(wrongPixels(), 0);
}

TEST_F(TextView, ATextThatWasSetPlainHasNoMarks) {
    openTexts({label("a", {{"title", "[B]x[/B]"}})});
    EXPECT_EQ(size("a"), sizeOf(boldFace.advance("x"), 14));
    EXPECT_EQ(consumed(at("a").setAttributePlain("title", "[B]x[/B]")), "");
    flush();
    EXPECT_EQ(size("a"), sizeOf(face.advance("[B]x[/B]"), 14));
}

TEST_F(TextView, TheFontIsThatOfTheNearestAncestorWithOne) {
    openTexts({view("v", {}, {label("a", {{"title", "abc"}})}),
               label("b", {{"title", "abc"}, {"font-name", "shared::font.base.bold"}}),
               label("c", {{"title", "abc"}, {"font-name", "shared::font.base.italic"}}),
               label("d", {{"title", "[B]abc"}, {"font-name", "shared::font.lone"}}),
               label("e", {{"title", "abc"}, {"font-name", "base.superscript"}})});
    EXPECT_EQ(size("e"), sizeOf(smallFace.advance("abc"), 9));
    EXPECT_EQ(size("v.a"), sizeOf(face.advance("abc"), 14));
    EXPECT_EQ(size("b"), sizeOf(boldFace.advance("abc"), 14));
    // Italics are drawn upright.
    EXPECT_EQ(size("c"), sizeOf(face.advance("abc"), 14));
    EXPECT_EQ(size("d"), sizeOf(face.advance("abc"), 14));
    set(*rootView_, "font-name", "shared::font.base.superscript");
    flush();
    EXPECT_EQ(size("v.a"), sizeOf(smallFace.advance("abc"), 9));
}

TEST_F(TextView, WithoutAFontThereIsNoTextAndItIsLogged) {
    const CLogCapture log;
    openTexts({label("a", {{"title", "abc"}, {"font-name", "shared::font.none"}})});
    EXPECT_TRUE(log.has("Font not found <shared::font.none> // ui.w.a"));
    EXPECT_EQ(size("a"), "0x0");
    tick();
    EXPECT_TRUE(failures_.empty());
}

TEST_F(TextView, ATextIsLaidOutOnlyWhenSomethingOfItChanges) {
    openTexts({label("a", {{"title", "one two three"}, {"width", "40"}, {"placement", "overlay"}})});
    CTextView& a = text("a");
    const int32_t count = a.layoutCount();
    set(a, "outer-border", "*L5");
    set(a, "height", "90");
    set(a, "text-color", "Knob");
    tick();
    EXPECT_EQ(a.layoutCount(), count);
    set(a, "width", "41");
    flush();
    EXPECT_EQ(a.layoutCount(), count + 1);
    // Fractions of a pixel make no other text.
    set(a, "width", "41.2");
    flush();
    EXPECT_EQ(a.layoutCount(), count + 1);
    // What fits without wrapping is only aligned.
    set(a, "width", "200");
    flush();
    EXPECT_EQ(a.layoutCount(), count + 2);
    set(a, "width", "210");
    flush();
    EXPECT_EQ(a.layoutCount(), count + 2);
}

TEST_F(TextView, TheSameTextSetAgainIsNotLaidOutAndAnotherAllocatesNothing) {
    openTexts({label("a", {{"title", "[B]-12.5[/B] dB"}, {"placement", "overlay"}})});
    CTextView& a = text("a");
    tick();
    const int32_t count = a.layoutCount();
    set(a, "title", "[B]-12.5[/B] dB");
    EXPECT_EQ(a.layoutCount(), count);
    EXPECT_EQ(tick(), 0);
    const CAttributeValue titles[] = {CAttributeValue::fromString("[B]-3.0[/B] dB"),
                                      CAttributeValue::fromString("[B]-12.5[/B] dB")};
    const CString name("title");
    for (int32_t i = 0; i < 6; ++i) {
        const uint64_t before = CHeap::counters().allocations;
        CError* error = a.setAttribute(name, titles[i % 2]);
        const int64_t drawn = tick(0.025);
        const uint64_t made = CHeap::counters().allocations - before;
        EXPECT_FALSE(error);
        EXPECT_GT(drawn, 0);
        EXPECT_EQ(i > 1 ? made : 0, 0u) << i;
    }
}

TEST_F(TextView, AWidthThatMorphsWrapsAnewAndAllocatesNothing) {
    openTexts({label("a", {{"title", "one two three four five six"}, {"placement", "overlay"}, {"width", "150"}},
                     {{"ui:view-state", "s", {{"state-name", "narrow"}, {"width", "20"}, {"morph-duration", "1"}}}})});
    tick();
    for (int32_t round = 0; round < 4; ++round) {
        EXPECT_EQ(consumed(at("a").toggleState("narrow")), "");
        tick();
        int32_t lines = text("a").layout().lineCount();
        int32_t changes = 0;
        for (int32_t i = 0; i < 40; ++i) {
            const uint64_t before = CHeap::counters().allocations;
            tick(0.025);
            const uint64_t made = CHeap::counters().allocations - before;
            EXPECT_EQ(round > 1 ? made : 0, 0u) << round << ' ' << i;
            changes += text("a").layout().lineCount() != lines ? 1 : 0;
            lines = text("a").layout().lineCount();
        }
        EXPECT_GT(changes, 2);
    }
}

TEST_F(TextView, DrawingAllocatesNothingAndAtRestNothingIsDrawn) {
    openTexts({label("a", {{"title", "one [B]two[/B] three\nfour"},
                           {"width", "40"},
                           {"placement", "overlay"},
                           {"is-list", "true"},
                           {"selected-paragraph", "1"}})});
    tick();
    EXPECT_EQ(tick(), 0);
    for (int32_t i = 0; i < 5; ++i) {
        const uint64_t before = CHeap::counters().allocations;
        text("a").requestRedraw();
        const int64_t drawn = tick(0.025);
        EXPECT_EQ(CHeap::counters().allocations - before, 0u);
        EXPECT_GT(drawn, 0);
    }
}

TEST_F(TextView, ChildrenWithIsParagraphComeInPlaceOfTheTitle) {
    const auto content = [](const char* value, const char* isBreak) -> CTestNode {
        return {"core:object", "content", {{"value", value}, {"is-line-break", isBreak}}};
    };
    openTexts({label("a", {{"title", "not this"}},
                     {{"core:object", "p", {{"is-paragraph", "true"}}, {content("[B]one", "true"), content("two", "")}},
                      {"core:object", "q", {{"is-paragraph", "true"}, {"title", "three"}}},
                      {"core:object", "r", {{"title", "nor this"}}}})});
    CTextView& a = text("a");
    EXPECT_TRUE(a.isList());
    ASSERT_EQ(a.paragraphCount(), 2);
    EXPECT_EQ(a.paragraphText(0), CString("one two"));
    EXPECT_EQ(a.layout().paragraph(0).lineCount, 2);
    EXPECT_EQ(a.paragraphText(1), CString("three"));
    EXPECT_EQ(a.paragraphText(2), CString(""));
    EXPECT_EQ(a.paragraphText(-1), CString(""));
    // One that is added or goes counts from the next tick on.
    delete a.findChild("p");
    tick();
    ASSERT_EQ(a.paragraphCount(), 1);
    EXPECT_EQ(a.paragraphText(0), CString("three"));
    CObject* child = nullptr;
    CAttributeMap attributes;
    attributes["is-paragraph"] = CAttributeValue::fromBool(true);
    attributes["title"] = CAttributeValue::fromString("four");
    EXPECT_EQ(consumed(a.createChild(child, "core:object", "s", false, &attributes)), "");
    tick();
    EXPECT_EQ(a.paragraphCount(), 2);
    EXPECT_EQ(a.paragraphText(1), CString("four"));
}

}  // namespace
}  // namespace tarv
