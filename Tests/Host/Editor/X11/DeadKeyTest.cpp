// A key that types nothing until the next one, by the layout of the X server.

#include "Tests/Host/Editor/EditorTexts.h"
#include "Tests/Platform/X11/CXDesktop.h"

namespace tarv::host {
namespace {

constexpr int kDeadAcuteKey = 21;
constexpr int kEKey = 26;

class EditorDeadKey : public EditorTexts {
protected:
    // German: the key right of the sharp s is a dead acute.
    EditorDeadKey() : layout_(runProgram({"setxkbmap", "de"})) {}
    ~EditorDeadKey() override { EXPECT_EQ(runProgram({"setxkbmap", "us"}), 0); }

    const int layout_;

private:
    // What a dead key makes of a letter is a matter of the language.
    const CScopedVariable language_{"LC_ALL", "en_US.UTF-8"};
};

TEST_F(EditorDeadKey, JoinsTheLetterThatFollows) {
    ASSERT_EQ(layout_, 0);
    const auto accented = row(kAccented);
    CXClient hands(CXServer::common().display());
    edit(kFirst);
    hands.strike(kDeadAcuteKey);
    hands.strike(kEKey);
    hands.sync();
    desk.strike(kEnter);
    EXPECT_TRUE(turnsInto(accented, kFirst));
    EXPECT_EQ(desk.heard(parent), "");
}

}  // namespace
}  // namespace tarv::host
