// No listener is notified while the history's, a registry's or a parameter's lock is held.

#include <thread>

#include "Tests/Audio/Presets/PresetTree.h"

namespace tarv {
namespace {

constexpr const char* kParams[] = {"eq.gains", "preset-name", "io-params.in-routing", "io-params.group-names"};

std::string preset(const std::string& name, double gain) {
    return storedPreset("TAEQ:" + name, {{"eq.gains", realRecord({{gain}}, 1, "audio.gains")}});
}

/// Listens to all notifications of a registry, and checks from another thread whether a lock is held then.
class CLockWatch : CAudioParamListener {
public:
    explicit CLockWatch(CPresetTree& tree) : tree_(tree) {
        bridge_.connect(tree.master(), CAudioParamRegistry::kProgramUpdate);
        for (const char* name : kParams)
            tree.param(name).addListener(*this);
        tree.history().onMessage = [this] { check(nullptr); };
    }
    ~CLockWatch() {
        tree_.history().onMessage = nullptr;
        for (const char* name : kParams)
            tree_.param(name).removeListener(*this);
    }
    int32_t calls = 0;
    bool areFree = true;

private:
    static bool isFree(CLock& lock) {
        const bool isEntered = lock.tryEnter();
        if (isEntered)
            lock.leave();
        return isEntered;
    }
    void onParamChanged(CAudioParam& param, int32_t, int32_t, int32_t) override { check(&param); }
    void programChanged(CCheckedObject*) { check(nullptr); }
    void check(CAudioParam* param) {
        ++calls;
        std::thread([this, param] {
            areFree = areFree && isFree(tree_.history().lock()) && isFree(tree_.env().lock()) &&
                      (!param || isFree(param->lock()));
            if (areFree)
                tree_.master().programName(0);  // takes the bank lock: with a lock held here it waits for ever
        }).join();
    }

    CPresetTree& tree_;
    COwnedBridge<CLockWatch> bridge_{this, &CLockWatch::programChanged};
};

TEST(NotificationLocks, NoLockIsHeldWhileListenersAreNotified) {
    CPresetTree tree({preset("One", 1), preset("Two", 2), preset("Three", 3)});
    CAudioParamRegistry& master = tree.master();
    CTestHistory& history = tree.history();
    const std::function<void()> actions[] = {
        [&] { master.selectProgram(1); },
        [&] { master.addProgram(1, "x"); },
        [&] { master.renameProgram(master.currentProgram(), "y"); },
        [&] { tree.set("eq.gains", 5); },
        [&] { master.replaceProgram(0); },
        [&] { master.deleteProgram(master.currentProgram()); },
        [&] { EXPECT_EQ(firstLine(master.activateRomPreset(2)), ""); },
        [&] { EXPECT_EQ(tree.activate(master, preset("P", 9)), ""); },
        [&] {
            EXPECT_EQ(tree.activate(master, preset("P", 10), {-1, true, false}), "");
        },
        [&] {
            EXPECT_EQ(tree.activateBank(storedBank("b", {preset("A", 1), preset("B", 2)})), "");
        },
        [&] { history.undo(4); },
        [&] { history.redo(4); },
        [&] { history.selectStep(1); },
        [&] { tree.set("eq.gains", 6); },
        [&] { master.swapAB(); },
        [&] { tree.set("eq.gains", 7); },
        [&] { master.swapAB(); },
        [&] { master.masterReset(); },
        [&] {
            EXPECT_EQ(tree.activateBank(storedBank("b", {preset("C", 3)}), {-1, true, false}), "");
        },
    };
    CLockWatch watch(tree);
    int32_t index = 0;
    for (const auto& action : actions) {
        const int32_t before = watch.calls;
        action();
        EXPECT_GT(watch.calls, before) << index;
        EXPECT_TRUE(watch.areFree) << index;
        ++index;
    }
}

}  // namespace
}  // namespace tarv
