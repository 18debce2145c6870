#pragma once

#include "Platform/Keyboard.h"
#include "Tests/UI/Text/TextViewTree.h"

namespace tarv {

constexpr CPixel kHover = 0x203040;
constexpr CPixel kSelection = 0x304050;
constexpr CPixel kSelectionText = 0xf0f1f2;
// A line of 14 pixels and the spacing of 6.
constexpr int32_t kRow = 20;

/// Trees with a list, and its input.
class TextList : public CTextViewTest {
protected:
    /// A list of rows `r0`, `r1` ... at 10, 20, 100 pixels wide.
    CTextView& openList(int32_t count, CTexts more = {}) {
        std::string title;
        for (int32_t i = 0; i < count; ++i) {
            title += (i > 0 ? "\nr" : "r") + std::to_string(i);
        }
        CTexts attributes = {{"title", title}, {"placement", "overlay"},   {"outer-border", "*L10 *T20"},
                             {"width", "100"}, {"paragraph-spacing", "6"}, {"is-list", "true"}};
        attributes.insert(attributes.end(), more.begin(), more.end());
        openTexts({label("a", attributes)});
        listen("a");
        tick();
        return text("a");
    }
    static CAttributeMap at(double x, double y, bool isDouble = false) {
        CAttributeMap params;
        params["actual-x"] = CAttributeValue::fromReal(x);
        params["actual-y"] = CAttributeValue::fromReal(y);
        params["is-double-click"] = CAttributeValue::fromBool(isDouble);
        return params;
    }
    static CAttributeMap onRow(int32_t row, bool isDouble = false) { return at(15, 20 + row * kRow + 3, isDouble); }
    static std::string failure(CError* error) { return consumed(error); }
    static void move(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mouseMove(params)), ""); }
    static void press(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mousePress(params)), ""); }
    static void pressR(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mousePressR(params)), ""); }
    static void release(CTextView& list, CAttributeMap params) { EXPECT_EQ(failure(list.mouseRelease(params)), ""); }
    /// Gives whether the key was taken.
    static bool key(CTextView& list, int32_t code) {
        CAttributeMap params;
        params["keycode"] = CAttributeValue::fromInt(code);
        EXPECT_EQ(failure(list.keyPress(params)), "");
        return CTextView::isHandled(params);
    }
    static bool wheel(CTextView& list, double notches) {
        CAttributeMap params = at(15, 25);
        params["delta"] = CAttributeValue::fromReal(notches);
        EXPECT_EQ(failure(list.mouseWheel(params)), "");
        return CTextView::isHandled(params);
    }
    static double offset(CTextView& list) { return list.area().value(CViewCell::OffsetY); }
};

}  // namespace tarv
