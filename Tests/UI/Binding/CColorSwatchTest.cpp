#include "UI/Binding/CColorSwatch.h"

#include "Tests/UI/Binding/BindingTree.h"

namespace tarv {
namespace {

class ColorSwatch : public CBindingTest {
protected:
    ColorSwatch() : CBindingTest({{"ui:color-swatch", &createObject<CColorSwatch>, nullptr}}) {}

    static CTestNode item(const char* index, const char* color, const char* isColor = "true") {
        return {"core:object", "item", {{"is-color", isColor}, {"index", index}, {"color", color}}};
    }
    CColorSwatch& openSwatch(std::vector<CTestNode> items) {
        EXPECT_EQ(tryOpen({{"ui:color-swatch", "swatch", {}, std::move(items)}}), "");
        return at<CColorSwatch>("swatch");
    }
    std::string color(int32_t index) {
        const CString* name = at<CColorSwatch>("swatch").color(index);
        return name ? name->toUtf8() : "none";
    }
};

TEST_F(ColorSwatch, GivesAColorByItsIndexWhereverItStands) {
    openSwatch({item("1", "Custom2"), item("0", "Custom1"), item("5", "Custom6")});
    EXPECT_EQ(color(0), "Custom1");
    EXPECT_EQ(color(1), "Custom2");
    EXPECT_EQ(color(5), "Custom6");
}

TEST_F(ColorSwatch, HasNoneForOtherIndexes) {
    openSwatch({item("0", "Custom1"), item("1", "Custom2", "false")});
    EXPECT_EQ(color(1), "none") << "no colour";
    EXPECT_EQ(color(2), "none");
    EXPECT_EQ(color(-1), "none");
}

TEST_F(ColorSwatch, OfTwoWithOneIndexTheFirstCounts) {
    openSwatch({item("0", "Custom1"), item("0", "Custom2")});
    EXPECT_EQ(color(0), "Custom1");
}

TEST_F(ColorSwatch, AChangedColorIsGivenFromThenOn) {
    CColorSwatch& swatch = openSwatch({item("0", "Custom1")});
    set(*swatch.children()[0], "color", "Custom7");
    EXPECT_EQ(color(0), "Custom7");
}

}  // namespace
}  // namespace tarv
