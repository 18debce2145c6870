#include "Core/CTimer.h"

#include <functional>

#include "Core/CObjectEventBridge.h"
#include "Platform/ByHand/CWindowSystemByHand.h"
#include "Platform/Clock.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Notes the times of the ticks that it receives, and does what the test wants.
class CTickListener : public CObject {
public:
    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CTickListener::receive>("receive");
        return nullptr;
    }
    CError* receive(CAttributeMap& params) {
        ++count;
        last = clockSeconds() - CWindowSystemByHand::kFirstSecond;
        sender = params["sender"].asString();
        if (onTick) {
            // A copy, since the listener may be destroyed by it.
            const auto call = onTick;
            call(params);
            return nullptr;
        }
        if (isFailing) {
            TARV_FAIL("@tarvstr_CTickListener_receive_Always Refused.");
        }
        return nullptr;
    }
    int count = 0;
    double last = 0.0;
    CString sender;
    bool isFailing = false;
    std::function<void(CAttributeMap&)> onTick;
};

class Timer : public testing::Test {
protected:
    std::vector<CTestNode> nodes(const std::string& interval) const {
        return {{"ui:ui-event-bridge",
                 "ui",
                 {},
                 {{"core:timer", "render-timer", {{"interval", interval}}}, {"test:listener", "listener"}}}};
    }
    void make(const std::string& interval) {
        root = application.makeRoot(nodes(interval));
        listener().listenObject("ui.render-timer", "tick", "receive");
    }
    CTickListener& listener() { return *root->findObjectOf<CTickListener>("ui.listener"); }
    CObject& timer() { return *root->findObject("ui.render-timer"); }
    std::string setInterval(const std::string& text) {
        const std::string lines = consumed(timer().setAttribute("interval", CString(text.c_str())));
        return lines.substr(0, lines.find('\r'));
    }
    /// First line of the failure of a timer's start.
    std::string failure() {
        auto empty = application.makeRoot();
        const std::string text = consumed(loadTree(*empty, nodes("0.025")));
        return text.substr(0, text.find('\r'));
    }

    CWindowSystemByHand system;
    CTestApplication application{{
        {"core:object", &createObject<CObject>, nullptr},
        {"core:timer", &createObject<CTimer>, &CTimer::initClass},
        {"test:listener", &createObject<CTickListener>, &CTickListener::initClass},
        {"ui:ui-event-bridge", &createObject<CStdEventBridge>, nullptr},
    }};
    std::unique_ptr<CObject> root;
};

TEST_F(Timer, SendsTickAtEachIntervalUntilItsDestruction) {
    make("0.025");
    EXPECT_EQ(listener().count, 0);
    system.advance(1.0);
    EXPECT_EQ(listener().count, 40) << "40 frames a second";
    EXPECT_EQ(listener().sender, "ui.render-timer");
    EXPECT_NEAR(listener().last, 1.0, 1e-9);
    delete &timer();
    system.advance(1.0);
    EXPECT_EQ(listener().count, 40);
    EXPECT_EQ(system.timers().count(), 0);
    EXPECT_EQ(system.timers().hiddenWindowCount(), 0);
}

TEST_F(Timer, RoundsItsIntervalToMilliseconds) {
    const struct {
        const char* text;
        int32_t milliseconds;
    } kRows[] = {{"0.025", 25}, {"0.0334", 33}, {"0.0335", 34}, {"0.0285714", 29}, {"2", 2000}};
    for (const auto& row : kRows) {
        make(row.text);
        EXPECT_EQ(system.timers().interval(1), row.milliseconds) << row.text;
        root.reset();
    }
}

TEST_F(Timer, TakesTheSystemsLeastIntervalForNone) {
    for (const char* text : {"0", "", "-3", "often", "1e9"}) {
        make(text);
        EXPECT_EQ(system.timers().interval(1), CTimersByHand::kLeastMilliseconds) << text;
        system.advance(0.1);
        EXPECT_EQ(listener().count, 10) << text;
        root.reset();
    }
}

TEST_F(Timer, AnIntervalBeyondAllBoundsIsALongOne) {
    make("1");
    EXPECT_EQ(consumed(timer().setAttribute("interval", CAttributeValue::fromReal(1e300))), "");
    EXPECT_EQ(system.timers().interval(1), 2000000000);
}

TEST_F(Timer, AChangeOfTheIntervalStartsAnew) {
    make("0.1");
    system.advance(0.15);
    EXPECT_EQ(listener().count, 1);
    EXPECT_EQ(setInterval("0.04"), "");
    EXPECT_EQ(system.timers().count(), 1) << "the former one is gone";
    system.advance(0.04);
    EXPECT_NEAR(listener().last, 0.19, 1e-9);
    EXPECT_EQ(listener().count, 2);
}

TEST_F(Timer, FollowsALinkToAnotherAttribute) {
    root = application.makeRoot({{"ui:ui-event-bridge",
                                  "ui",
                                  {},
                                  {{"core:object", "window", {{"seconds", "0.025"}}},
                                   {"core:timer", "render-timer", {{"interval", "{*/ui.window seconds}"}}}}}});
    EXPECT_EQ(system.timers().interval(1), 25);
    EXPECT_EQ(consumed(root->findObject("ui.window")->setAttribute("seconds", CString("0.05"))), "");
    EXPECT_EQ(system.timers().interval(1), 50);
}

TEST_F(Timer, OneHiddenWindowServesAllOfAThread) {
    make("0.025");
    const auto second = application.makeRoot(nodes("0.03"));
    EXPECT_EQ(system.timers().count(), 2);
    EXPECT_EQ(system.timers().hiddenWindowCount(), 1);
}

TEST_F(Timer, SaysWhatTheSystemRefused) {
    system.failClass(CWindowKind::Timers, 1410);
    EXPECT_EQ(failure(), "Unable to register timer window class: error 1410.");
    system.timers().failWindow(1158);
    EXPECT_EQ(failure(), "Timer window creation error 1158.");
    system.timers().failTimer(8);
    EXPECT_EQ(failure(), "Timer creation error 8.");
    EXPECT_TRUE(system.isClean());
    make("0.025");
    system.timers().failTimer(8);
    EXPECT_EQ(setInterval("0.05"), "Timer creation error 8.");
    system.advance(1.0);
    EXPECT_EQ(listener().count, 0) << "none runs";
    EXPECT_EQ(setInterval("0.05"), "");
    system.advance(1.0);
    EXPECT_EQ(listener().count, 20);
}

TEST_F(Timer, NeedsAWindowSystem) {
    setWindowSystem(nullptr);
    if (!systemWindows()) {
        EXPECT_EQ(failure(), "No window system to run a timer.");
    }
    setWindowSystem(&system);
}

TEST_F(Timer, AFailureOfATickIsLoggedAndTheTimerGoesOn) {
    make("0.025");
    listener().isFailing = true;
    CLogCapture log;
    system.advance(0.05);
    EXPECT_EQ(listener().count, 2);
    EXPECT_EQ(std::count_if(log.lines.begin(), log.lines.end(),
                            [](const std::string& line) { return line.find("Refused.") != std::string::npos; }),
              2);
}

TEST_F(Timer, MayBeDestroyedByItsOwnTick) {
    make("0.025");
    listener().onTick = [&](CAttributeMap&) { delete &timer(); };
    system.advance(1.0);
    EXPECT_EQ(listener().count, 1);
    EXPECT_EQ(system.timers().count(), 0);
}

TEST_F(Timer, MayTakeItsWholeTreeAlongInItsTick) {
    make("0.025");
    int count = 0;
    listener().onTick = [&](CAttributeMap&) {
        ++count;
        root.reset();
    };
    system.advance(1.0);
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(system.isClean());
}

TEST_F(Timer, ChangesItsIntervalInItsOwnTick) {
    make("0.025");
    listener().onTick = [&](CAttributeMap&) { EXPECT_EQ(setInterval("0.1"), ""); };
    system.advance(0.225);
    EXPECT_EQ(listener().count, 3) << "at 0.025, 0.125 and 0.225";
}

TEST_F(Timer, ATickMayServeTheNextOneInside) {
    make("0.025");
    listener().onTick = [&](CAttributeMap& params) {
        if (listener().count == 1) {
            system.advance(0.05);
            EXPECT_EQ(params["sender"].asString(), "ui.render-timer");
        }
    };
    system.advance(0.025);
    EXPECT_EQ(listener().count, 3);
}

TEST_F(Timer, ATickAllocatesNothingInSteadyState) {
    make("0.025");
    system.advance(0.1);
    const uint64_t before = CHeap::counters().allocations;
    system.advance(1.0);
    EXPECT_EQ(CHeap::counters().allocations, before);
    EXPECT_EQ(listener().count, 44);
}

TEST_F(Timer, ATickAllocatesNothingWhereNamesAreLong) {
    const std::string name(100, 'n');
    root = application.makeRoot({{"ui:ui-event-bridge",
                                  "ui",
                                  {},
                                  {{"core:timer", name, {{"interval", "0.025"}}},
                                   {"test:listener", "listener"},
                                   {"test:listener", name + "-listener"}}}});
    root->findObject(("ui." + name + "-listener").c_str())->listenObject(("ui." + name).c_str(), "tick", "receive");
    system.advance(0.1);
    const uint64_t before = CHeap::counters().allocations;
    system.advance(1.0);
    EXPECT_EQ(CHeap::counters().allocations, before);
    EXPECT_EQ(root->findObjectOf<CTickListener>(("ui." + name + "-listener").c_str())->count, 44);
}

TEST_F(Timer, ParametersThatAHandlerAddsDoNotStay) {
    make("0.025");
    size_t size = 0;
    listener().onTick = [&](CAttributeMap& params) {
        size = params.size();
        params["mine"] = CAttributeValue::fromInt(1);
    };
    system.advance(0.1);
    EXPECT_EQ(size, 5u);
}

class CCountingTimer : public CTimer {
public:
    static inline int ticks = 0;

protected:
    CError* onTick() override {
        ++ticks;
        return nullptr;
    }
};

TEST_F(Timer, AClassMayTakeItsTickItself) {
    CCreatorRow row{"test:timer", &createObject<CCountingTimer>, &CTimer::initClass};
    ASSERT_EQ(consumed(CCreatorRegistry::registerRows(&row, 1)), "");
    CCountingTimer::ticks = 0;
    root = application.makeRoot({{"test:timer", "timer", {{"interval", "0.5"}}}});
    system.advance(1.0);
    EXPECT_EQ(CCountingTimer::ticks, 2);
    root.reset();
}

}  // namespace
}  // namespace tarv
