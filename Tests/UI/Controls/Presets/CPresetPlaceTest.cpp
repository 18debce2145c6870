#include "UI/Controls/Presets/CPresetPlace.h"

#include <gtest/gtest.h>

namespace tarv {
namespace {

TEST(CPresetPlace, ComesBackFromItsId) {
    const CPresetPlace places[] = {
        {CPresetBankKind::Session, 0, "Session Bank", -1, ""},
        {CPresetBankKind::Rom, 0, "Factory ROM", 6, "Boom Box"},
        {CPresetBankKind::Stored, 12, "", 0, ""},
        {CPresetBankKind::Stored, 3, "1.2.3.", 4, "a: {b} [B]c[/B] 0.0"},
        {CPresetBankKind::Stored, 0, CString(u"\u00e9\u4e2d"), 1, CString(u"\u4e2d.\u00e9")},
    };
    for (const CPresetPlace& place : places) {
        CPresetPlace read;
        ASSERT_TRUE(CPresetPlace::fromId(place.toId(), read)) << place.toId().toUtf8();
        EXPECT_EQ(read, place) << place.toId().toUtf8();
    }
}

TEST(CPresetPlace, OtherTextsAreNoIds) {
    for (const char* text : {"", "x", "0", "0.0.0", "0.0.0.0", "3.0.0.0.", "-1.0.0.0.", "0.-1.0.0.", "0.0.-2.0.",
                             "0.0.0.-1.", "0.0.0.1.", "0.0.x.0.", "0..0.0.", "a.0.0.0.name"}) {
        CPresetPlace place;
        EXPECT_FALSE(CPresetPlace::fromId(text, place)) << text;
    }
}

}  // namespace
}  // namespace tarv
