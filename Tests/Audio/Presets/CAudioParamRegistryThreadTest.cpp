// State from several threads at once: locks are taken in order, and listeners notified while none is held.

#include <atomic>
#include <thread>

#include "Audio/Presets/CAudioParamRegistryNameBridge.h"
#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

std::string preset(const std::string& name, double gain) {
    return storedPreset("TAEQ:" + name, {{"eq.gains", realRecord({{gain, gain, gain}}, 1, "audio.gains")}});
}

constexpr int32_t kRounds = 300;

/// An editor's end: reads what changed, as an editor would.
struct CEditor {
    explicit CEditor(CPresetTree& watched) : tree(watched), bridge(watched.master(), &CEditor::received, this) {}
    static void received(void* user) {
        auto& editor = *static_cast<CEditor*>(user);
        editor.letters += editor.bridge.read().length();
        editor.letters += editor.tree.master().programCount();
        editor.letters += editor.tree.history().getStepLabels().count();
        ++editor.times;
    }
    CPresetTree& tree;
    std::atomic<int32_t> letters{0};
    std::atomic<int32_t> times{0};
    CAudioParamRegistryNameBridge bridge;
};

TEST(RegistryThreads, SettingActivatingSavingUndoingAndTheAudioThreadRunTogether) {
    CPresetTree tree({preset("One", 1), preset("Two", 2), preset("Three", 3)});
    tree.env().setRunning(true);
    CEditor editor(tree);
    std::atomic<bool> isEnough{false};
    std::thread audio([&] {
        while (!isEnough.load())
            tree.collector().applyPendingChanges(0.0);
    });
    std::thread host([&] {
        for (int32_t i = 0; i < kRounds; ++i) {
            tree.set("eq.gains", i % 50, i % 2, i % 3);
            tree.param("preset-name").setText(0, 0, i % 2 ? "Typed" : "Typed again");
            EXPECT_NE(tree.acquireBank(), "");
            EXPECT_NE(tree.acquire(tree.master()), "");
            EXPECT_EQ(tree.activate(tree.master(), preset("Host", i % 40), {-1, true, false}), "");
        }
    });
    std::thread user([&] {
        for (int32_t i = 0; i < kRounds; ++i) {
            tree.master().selectProgram(i % 3);
            EXPECT_EQ(firstLine(tree.master().activateRomPreset(i % 3)), "");
            EXPECT_EQ(tree.activateBank(storedBank("b", {preset("A", 4), preset("B", 5), preset("C", 6)})), "");
            editor.bridge.write(i % 2 ? "Bridge" : "Other");
            tree.master().swapAB();
            tree.master().addProgram(0, "Added");
            tree.master().deleteProgram(0);
            EXPECT_EQ(tree.activate(tree.routing(), storedPreset("TAIO:x")), "");
        }
    });
    std::thread historian([&] {
        for (int32_t i = 0; i < kRounds; ++i) {
            tree.history().undo(1 + i % 3);
            tree.history().redo(1 + i % 2);
            tree.history().selectStep(i % 33);
            tree.master().masterReset();
        }
    });
    host.join();
    user.join();
    historian.join();
    isEnough = true;
    audio.join();
    EXPECT_GT(editor.times, 0);
    EXPECT_GT(editor.letters, 0);
    EXPECT_GE(tree.master().programCount(), 1);
    // The result is a whole state: its chunk restores the same.
    const std::string stored = tree.acquireBank();
    CPresetTree other;
    ASSERT_EQ(other.activateBank(stored, {-1, true, false}), "");
    EXPECT_EQ(other.master().programCount(), tree.master().programCount());
    EXPECT_EQ(tree.text("preset-name"), tree.master().programName(tree.master().currentProgram()).toUtf8());
}

TEST(RegistryThreads, ListenersAndBridgesAreNotifiedWithEveryLockFree) {
    CPresetTree tree({preset("One", 1), preset("Two", 2)});
    struct CStranger : CAudioParamListener {
        explicit CStranger(CPresetTree& watched) : tree(watched) {}
        // Another thread can take every lock while this one is notified.
        void look() {
            std::thread([this] {
                tree.master().programCount();
                tree.history().getStepLabels();
                EXPECT_NE(tree.acquireBank(), "");
                tree.set("eq.gains", 9);
            }).join();
            ++times;
        }
        void onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) override { look(); }
        void received(CCheckedObject*) { look(); }
        CPresetTree& tree;
        int32_t times = 0;
    } stranger(tree);
    tree.param("out.mute").addListener(stranger);
    tree.history().onMessage = [&] { stranger.look(); };
    COwnedBridge<CStranger> bridge(&stranger, &CStranger::received);
    bridge.connect(tree.master(), CAudioParamRegistry::kProgramUpdate);
    tree.set("out.mute", 1);
    tree.master().selectProgram(1);
    tree.history().undo(1);
    tree.history().redo(1);
    tree.master().swapAB();
    tree.master().renameProgram(0, "x");
    tree.master().masterReset();
    EXPECT_EQ(tree.activate(tree.master(), preset("y", 3)), "");
    tree.param("out.mute").removeListener(stranger);
    EXPECT_GT(stranger.times, 10);
}

}  // namespace
}  // namespace tarv
