#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Tests/Host/Editor/HostEditorTest.h"

namespace tarv::host {

/// The editor's column of texts is 200 pixels wide, its rows are 24 high.
class EditorTexts : public HostEditorTest {
protected:
    static constexpr int kLeft = 100;
    static constexpr int kWidth = 200;
    static constexpr int kFirst = 24;
    static constexpr int kSecond = 48;
    static constexpr int kTyped = 72;
    static constexpr int kOpener = 96;
    /// The middle of a list's first row.
    static constexpr int kRows = 133;
    static constexpr int kRowHeight = 18;
    static constexpr int kAccented = 183;
    static constexpr const char* kText = "Ab9 z";
    static constexpr char kEnter = '\r';
    static constexpr char kEscape = '\x1b';

    /// The maker of a host that keeps the focus when its user presses a button in the editor.
    static constexpr const char* kFocusKeeper = "Steinberg";

    void SetUp() override {
        HostEditorTest::SetUp();
        ASSERT_TRUE(open());
        close();
        closed = CHostDesk::held().windows;
        ASSERT_TRUE(open());
        opened = CHostDesk::held().windows;
        typed = row(kTyped);
        desk.heard(parent);
    }
    void openInHostOf(const std::string& maker) {
        effect.close();
        effect.answers.vendor = maker;
        ASSERT_TRUE(effect.open(library->entry()));
        ASSERT_TRUE(open());
    }

    std::vector<uint32_t> row(int y) const { return desk.pixels(parent, kLeft, y, kWidth, 24); }
    bool turnsInto(const std::vector<uint32_t>& picture, int y) {
        return desk.until([&] { return row(y) == picture; });
    }
    bool changes(const std::vector<uint32_t>& picture, int y) {
        return desk.until([&] { return row(y) != picture; });
    }
    /// Each popup is a separate window.
    bool hasWindows(int64_t count) {
        return desk.until([&] { return CHostDesk::held().windows == count; });
    }
    void click(int x, int y) {
        desk.moveTo(parent, x, y);
        desk.press();
        desk.release();
    }
    /// The box shows the text selected.
    void edit(int y) {
        const auto rest = row(y);
        click(kLeft + 10, y + 12);
        EXPECT_TRUE(changes(rest, y)) << "an edit opens";
    }

    int64_t closed = 0;
    int64_t opened = 0;
    std::vector<uint32_t> typed;
};

}  // namespace tarv::host
