// What a host does to an editor inside a call of the editor's own windows.

#include "Audio/VST/CEditorTree.h"

#include <cstdlib>

#include "Audio/VST/CAudioWrapperVST.h"
#include "Tests/Audio/VST/Editor/EditorHost.h"

namespace tarv {
namespace {

class CEditorTreeTest : public CEditorHost {
protected:
    /// Every kind of input to "a", as long as the editor has a window.
    void useAll() {
        const std::function<void()> steps[] = {
            [&] { moveTo(20, 20); },
            [&] { system.input().press(); },
            [&] { moveTo(30, 30); },
            [&] { system.input().tap(kKeySpace, u" "); },
            [&] { system.input().release(); },
            [&] { system.input().wheel(1.0); },
            [&] { wheel(1.0f); },
            [&] { moveTo(300, 20); },
            [&] { press(300, 20); },
            [&] { system.desktop().takeCapture(); },
            [&] { system.input().release(); },
            [&] { system.advance(0.05); },
        };
        for (const auto& step : steps) {
            if (effect.effect() && !windows().empty()) {
                step();
            }
        }
    }
    static constexpr const char* kMoments[] = {"a.mouse-enter",  "a.mouse-move",  "a.mouse-press", "a.mouse-release",
                                               "a.mouse-wheel",  "a.key-press",   "a.mouse-exit",  "a.focus-lost",
                                               "b.mouse-cancel", "b.mouse-enter", "a.key-release"};
};

TEST_F(CEditorTreeTest, TheFirstPictureShowsTheValuesOfTheEngine) {
    effect.close();
    application.reset();
    std::vector<CTestNode> views = twoViews();
    // On while the oversampling is not automatic, which it is not at first.
    views[0].children = {{"ui:view-state", "s", {{"state-name", "on"}, {"fill", "99"}}},
                         {"ui:view-state-switch", "switch", {{"state-name", "on"}, {"bridge", "ui.bridge"}}}};
    std::vector<CTestNode> tree = editorTree(views);
    tree[0].children.insert(tree[0].children.begin() + 2,
                            {"ui:param-bridge",
                             "bridge",
                             {{"interface-client", "ui.interface-client"}, {"param", "plugin.modMain.oversampling"}}});
    application = std::make_unique<CEditorApplication>(tree);
    ASSERT_TRUE(effect.open(&CAudioWrapperVST::create));
    ASSERT_TRUE(open());
    EXPECT_EQ(pixel(20, 20), 99u);
    EXPECT_EQ(pixel(200, 20), 34u);
    close();
}

TEST_F(CEditorTreeTest, TheHostMayCloseItInsideEachHandler) {
    for (const char* moment : kMoments) {
        ASSERT_TRUE(open());
        bool isClosed = false;
        on(moment, [&](CFilledView& view, CAttributeMap&) {
            CFilledView::actions.clear();
            close();
            isClosed = true;
            EXPECT_TRUE(windows().empty()) << "nothing of it is seen any more";
            // The views live until the call is over: this one goes on working.
            EXPECT_EQ(view.root()->findObject("ui.main-window")->children().count(), 3) << moment;
        });
        useAll();
        EXPECT_TRUE(isClosed) << moment;
        EXPECT_TRUE(system.isClean()) << moment;
    }
}

TEST_F(CEditorTreeTest, TheHostMayCloseAndOpenItInsideEachHandler) {
    for (const char* moment : kMoments) {
        ASSERT_TRUE(open());
        CWindowHandle second = 0;
        on(moment, [&](CFilledView&, CAttributeMap&) {
            CFilledView::actions.clear();
            close();
            EXPECT_TRUE(open());
            second = window()->handle();
        });
        useAll();
        ASSERT_TRUE(window()) << moment;
        EXPECT_EQ(window()->handle(), second) << moment;
        EXPECT_EQ(pixel(0, 0), 17u);
        close();
        EXPECT_TRUE(system.isClean()) << moment;
    }
}

TEST_F(CEditorTreeTest, TheHostMayEndTheEffectInsideEachHandler) {
    for (const char* moment : kMoments) {
        ASSERT_TRUE(open());
        on(moment, [&](CFilledView& view, CAttributeMap&) {
            CFilledView::actions.clear();
            effect.close();
            EXPECT_TRUE(windows().empty());
            EXPECT_TRUE(view.root()->findObject("ui.interface-client"));
        });
        useAll();
        EXPECT_FALSE(effect.effect()) << moment;
        EXPECT_TRUE(system.isClean()) << moment;
        ASSERT_TRUE(effect.open(&CAudioWrapperVST::create));
    }
}

TEST_F(CEditorTreeTest, TheHostMayDestroyTheParentAndServeInsideAHandler) {
    for (const char* moment : kMoments) {
        ASSERT_TRUE(open());
        on(moment, [&](CFilledView&, CAttributeMap&) {
            CFilledView::actions.clear();
            idle();
            system.advance(0.1);
            system.desktop().destroy(parent);
            idle();
        });
        useAll();
        EXPECT_FALSE(window()) << moment;
        close();
        EXPECT_TRUE(system.isClean()) << moment;
        parent = system.desktop().openHost({kHostX, kHostY, kHostX + 1000, kHostY + 700});
    }
}

TEST_F(CEditorTreeTest, AHandlerOfTheEndMayCallTheHost) {
    ASSERT_TRUE(open());
    press(20, 20);
    on("a.mouse-cancel", [&](CFilledView&, CAttributeMap&) {
        CFilledView::actions.clear();
        close();
        EXPECT_TRUE(open()) << "a new one, while the former ends";
    });
    close();
    ASSERT_TRUE(window());
    close();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CEditorTreeTest, AHandlerOfTheEndMayEndTheEffect) {
    ASSERT_TRUE(open());
    press(20, 20);
    on("a.mouse-cancel", [&](CFilledView&, CAttributeMap&) { effect.close(); });
    close();
    EXPECT_FALSE(effect.effect());
    EXPECT_TRUE(system.isClean());
}

TEST_F(CEditorTreeTest, ACloseInsideTheOpeningLeavesItClosed) {
    on("main-window.update-window-bounds", [&](CFilledView&, CAttributeMap&) {
        EXPECT_FALSE(open()) << "it is being opened";
        close();
    });
    EXPECT_FALSE(open());
    CFilledView::actions.clear();
    EXPECT_TRUE(system.isClean());
    EXPECT_TRUE(open());
}

TEST_F(CEditorTreeTest, AnOpenInsideTheEndThatAnOpenBringsIsRefused) {
    ASSERT_TRUE(open());
    press(20, 20);
    const CWindowHandle other = system.desktop().openHost({0, 0, 700, 500});
    bool isOpened = true;
    on("a.mouse-cancel", [&](CFilledView&, CAttributeMap&) { isOpened = open(); });
    EXPECT_TRUE(openEditor(effect, other));
    EXPECT_FALSE(isOpened);
    ASSERT_TRUE(window());
    EXPECT_EQ(window()->container(), other);
    close();
    EXPECT_TRUE(system.isClean());
}

TEST_F(CEditorTreeTest, TheEffectMayEndInsideAnOpen) {
    ASSERT_TRUE(open());
    press(20, 20);
    const CWindowHandle other = system.desktop().openHost({0, 0, 700, 500});
    on("a.mouse-cancel", [&](CFilledView&, CAttributeMap&) { effect.close(); });
    // In the end of the former tree; the host's own call is on its way out.
    vst::AEffect* called = effect.effect();
    EXPECT_EQ(called->dispatcher(called, vst::kEffectEditOpen, 0, 0, reinterpret_cast<void*>(other), 0.0f), 0);
    EXPECT_FALSE(effect.effect());
    EXPECT_TRUE(system.isClean());
    ASSERT_TRUE(effect.open(&CAudioWrapperVST::create));
    CFilledView::actions.clear();
    on("main-window.update-window-bounds", [&](CFilledView&, CAttributeMap&) { effect.close(); });
    called = effect.effect();
    EXPECT_EQ(called->dispatcher(called, vst::kEffectEditOpen, 0, 0, reinterpret_cast<void*>(parent), 0.0f), 0);
    EXPECT_TRUE(system.isClean());
}

/// A host by a seed: every call in every order, also inside handlers.
class CHostileHostTest : public CEditorHost {
protected:
    uint32_t draw(uint32_t below) {
        seed_ = seed_ * 6364136223846793005u + 1442695040888963407u;
        return static_cast<uint32_t>(seed_ >> 33) % below;
    }

    void hostStep() {
        switch (draw(12)) {
            case 0:
            case 1:
            case 2:
                open();
                break;
            case 3:
                close();
                break;
            case 4:
                system.desktop().destroy(parent);
                parent = system.desktop().openHost({kHostX, kHostY, kHostX + 1000, kHostY + 700});
                break;
            case 5:
                effect.setParameter(static_cast<int32_t>(draw(18)), static_cast<float>(draw(100)) / 100.0f);
                break;
            case 6:
                effect.setProgram(static_cast<int32_t>(draw(4)));
                break;
            case 7:
                (void)effect.setChunk(effect.chunk(draw(2) == 0), draw(2) == 0);
                break;
            case 8:
                wheel(draw(2) == 0 ? -1.0f : 1.0f);
                break;
            default:
                idle();
        }
    }

    void userStep() {
        switch (draw(8)) {
            case 0:
                system.input().press();
                break;
            case 1:
                system.input().release();
                break;
            case 2:
                system.input().wheel(1.0);
                break;
            case 3:
                system.input().tap(kKeySpace, u" ");
                break;
            case 4:
                system.desktop().takeCapture();
                break;
            case 5:
                system.advance(0.03);
                break;
            default:
                moveTo(static_cast<int32_t>(draw(200)), static_cast<int32_t>(draw(200)));
        }
    }

    /// What the handlers of views do: the next host step, at most three deep.
    void arm() {
        for (const char* event : {"mouse-press", "mouse-move", "mouse-wheel", "mouse-cancel", "focus-lost"}) {
            on(std::string("a.") + event, [this](CFilledView&, CAttributeMap&) {
                if (depth_ < 3 && draw(3) == 0) {
                    ++depth_;
                    hostStep();
                    --depth_;
                }
            });
        }
    }

private:
    uint64_t seed_ = 4711;
    int depth_ = 0;
};

TEST_F(CHostileHostTest, LeavesNothingBehind) {
    const int steps = std::getenv("TARV_LONG") ? 100000 : 2000;
    arm();
    for (int i = 0; i < steps; ++i) {
        if (draw(3) == 0) {
            hostStep();
        } else {
            userStep();
        }
        ASSERT_LE(windows().size(), 1u);
        if (i % 100 == 99) {
            CFilledView::actions.clear();
            close();
            ASSERT_TRUE(system.isClean()) << i;
            arm();
        }
    }
    CFilledView::actions.clear();
    close();
    EXPECT_TRUE(system.isClean());
    EXPECT_TRUE(open());
    EXPECT_EQ(pixel(0, 0), 17u);
}

}  // namespace
}  // namespace tarv
