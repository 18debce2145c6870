// What a host does inside a message that it gets while a call of the editor's window runs.

#include <functional>
#include <string>

#include "Tests/Host/Editor/HostEditorTest.h"

namespace tarv::host {
namespace {

class EditorInsideCall : public HostEditorTest {
protected:
    /// Does what leads to each kind of message.
    void lead(const std::string& kind) {
        if (kind == "wheel") {
            desk.moveTo(parent, 10, kWheelY);
            desk.wheel(1);
            return;
        }
        desk.moveTo(parent, 10, kKeysY);
        desk.press();
        desk.release();
        desk.strikeSpace();
    }
    /// Opens the editor and calls this once inside a message of each kind.
    void inEach(const std::function<void()>& action, const std::function<void()>& check) {
        for (const char* kind : {"focus", "wheel", "key"}) {
            int calls = 0;
            ASSERT_TRUE(open()) << kind;
            desk.insideCall = [&](const std::string& heard) {
                if (heard == kind && calls++ == 0) {
                    action();
                }
            };
            lead(kind);
            desk.insideCall = [](auto&&) {};
            EXPECT_GE(calls, 1) << kind;
            check();
            close();
            desk.destroyParent(parent);
            parent = desk.openParent();
        }
    }
};

TEST_F(EditorInsideCall, TheHostMayCloseIt) {
    inEach([this] { close(); }, [this] { EXPECT_EQ(desk.childCount(parent), 0); });
}

TEST_F(EditorInsideCall, TheHostMayCloseAndOpenIt) {
    inEach(
        [this] {
            close();
            EXPECT_TRUE(open());
        },
        [this] { EXPECT_EQ(desk.childCount(parent), 1); });
}

TEST_F(EditorInsideCall, TheHostMayServeItsLoop) {
    inEach([this] { desk.serve(); }, [this] { EXPECT_EQ(desk.childCount(parent), 1); });
}

TEST_F(EditorInsideCall, TheHostMayEndTheEffect) {
    for (const char* kind : {"focus", "wheel", "key"}) {
        ASSERT_TRUE(open()) << kind;
        desk.insideCall = [&](const std::string& heard) {
            if (heard == kind && effect.effect()) {
                effect.close();
            }
        };
        lead(kind);
        desk.insideCall = [](auto&&) {};
        EXPECT_FALSE(effect.effect()) << kind;
        EXPECT_EQ(desk.childCount(parent), 0) << kind;
        desk.destroyParent(parent);
        parent = desk.openParent();
        ASSERT_TRUE(effect.open(library->entry()));
    }
}

}  // namespace
}  // namespace tarv::host
