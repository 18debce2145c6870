#include "Core/CNotifyServer.h"

#include <functional>
#include <thread>

#include "Core/CObjectEventBridge.h"
#include "Platform/Posix/EventQueue.h"
#include "Platform/ThreadId.h"
#include "Tests/Core/LogCapture.h"
#include "Tests/Core/TestApplication.h"

namespace tarv {
namespace {

/// Records the events that it receives, in one list for all listeners.
class CListening : public CObject {
public:
    static std::vector<std::string> received;
    static std::vector<uint64_t> threads;
    static CObject* victim;
    static std::function<void()> onHear;

    static CError* initClass(CClassDescriptor& descriptor) {
        descriptor.addHandler<&CListening::receive>("receive");
        descriptor.addHandler<&CListening::receiveShort>("receive-short");
        descriptor.addHandler<&CListening::fail>("fail");
        descriptor.addHandler<&CListening::destroyVictim>("destroy-victim");
        descriptor.addHandler<&CListening::releaseSelf>("release-self");
        descriptor.addHandler<&CListening::sendInner>("send-inner");
        descriptor.addHandler<&CListening::destroyAndFail>("destroy-and-fail");
        descriptor.addHandler<&CListening::call>("call");
        return nullptr;
    }
    CError* receive(CAttributeMap& params) {
        received.push_back(name().toUtf8() + ": " + params["sender"].asString().toUtf8() + " " +
                           params["event-name"].asString().toUtf8() + " " + params["listener"].asString().toUtf8() +
                           " " + params["listener-proc"].asString().toUtf8() + " " +
                           params["value"].asString().toUtf8());
        threads.push_back(currentThreadId());
        return nullptr;
    }
    CError* receiveShort() {
        received.push_back(name().toUtf8() + " short");
        return nullptr;
    }
    CError* fail() { TARV_FAIL("@tarvstr_CListening_fail_Always Cannot receive."); }
    CError* destroyVictim() {
        delete victim;
        victim = nullptr;
        return nullptr;
    }
    CError* releaseSelf() { return releaseBridged(); }
    CError* sendInner() {
        CAttributeMap params;
        return sendEvent("inner", params, false);
    }
    CError* destroyAndFail() {
        delete std::exchange(victim, nullptr);
        return addErrorLocation(nullptr, __FILE__, __LINE__, CString(),
                                "@tarvstr_CListening_fail_Always Cannot receive.");
    }
    CError* call() {
        onHear();
        return nullptr;
    }
};

std::vector<std::string> CListening::received;
std::vector<uint64_t> CListening::threads;
CObject* CListening::victim = nullptr;
std::function<void()> CListening::onHear;

const std::vector<CCreatorRow> kRows = {
    {"core:object", &createObject<CObject>, nullptr},
    {"test:listening", &createObject<CListening>, &CListening::initClass},
    {"ui:ui-event-bridge", &createObject<CStdEventBridge>, nullptr},
};

struct CNotifyTest : testing::Test {
    CNotifyTest() {
        CListening::received.clear();
        CListening::threads.clear();
        root = application.makeRoot({{"ui:ui-event-bridge",
                                      "ui",
                                      {},
                                      {{"core:object", "sender"},
                                       {"test:listening", "one"},
                                       {"test:listening", "two"},
                                       {"test:listening", "three"}}},
                                     {"test:listening", "loose"}});
        sender = root->findObject("ui.sender");
    }
    CObject* at(const char* path) { return root->findObject(path); }
    static CObject& at(const CObject& tree, const char* path) { return *tree.findObject(path); }
    std::string send(const char* event, bool synchronous = false) {
        params.clear();
        params["value"] = CAttributeValue::fromInt(7);
        return consumed(sender->sendEvent(event, params, synchronous));
    }

    CTestApplication application{kRows};
    std::unique_ptr<CObject> root;
    CObject* sender;
    CAttributeMap params;
};

TEST_F(CNotifyTest, AListenerOfTheSameThreadIsCalledAtOnce) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"one: ui.sender update ui.one receive 7"}));
    EXPECT_EQ(params["listener-proc"].asString(), "receive");
    EXPECT_GT(params["listener-id"].asInt(), 0);
}

TEST_F(CNotifyTest, AnEventWithoutListenersAddsOnlySenderAndName) {
    at("ui.one")->listenObject("ui.two", "update", "receive");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(params.size(), 3u);
    EXPECT_EQ(params["sender"].asString(), "ui.sender");
    EXPECT_EQ(params["event-name"].asString(), "update");
    EXPECT_EQ(params["value"].asInt(), 7);
    EXPECT_TRUE(CListening::received.empty());
    EXPECT_EQ(send("never-heard-of"), "");
    EXPECT_EQ(params.count("listener"), 0u);
}

TEST_F(CNotifyTest, ASenderCanAskWhetherItHasListeners) {
    CNotifyServer& server = *root->notifyServer();
    EXPECT_FALSE(server.hasListeners("ui.sender", "update"));
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    EXPECT_TRUE(server.hasListeners("ui.sender", "update"));
    EXPECT_FALSE(server.hasListeners("ui.two", "update"));
    EXPECT_FALSE(server.hasListeners("ui.sender", "other"));
    delete at("ui.one");
    EXPECT_FALSE(server.hasListeners("ui.sender", "update"));
}

TEST_F(CNotifyTest, ListenersHearInTheOrderOfRegistration) {
    for (const char* name : {"ui.three", "ui.one", "ui.two"}) {
        at(name)->listenObject("ui.sender", "update", "receive-short");
    }
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"three short", "one short", "two short"}));
}

TEST_F(CNotifyTest, TheSameRegistrationTwiceCountsOnce) {
    at("ui.one")->listenObject("ui.sender", "update", "receive-short");
    at("ui.one")->listenObject("ui.sender", "update", "receive-short");
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(CListening::received.size(), 2u);
}

TEST_F(CNotifyTest, AnUnknownHandlerIsLoggedAndLeavesNoRegistration) {
    CLogCapture log;
    at("ui.one")->listenObject("ui.sender", "update", "nothing");
    EXPECT_EQ(log.lines, (std::vector<std::string>{"Event handler 'nothing' not found in listenObject(). // ui.one"}));
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(params.count("listener"), 0u);
}

TEST_F(CNotifyTest, AListenerWithoutAThreadAnchorIsLeftOut) {
    at("loose")->listenObject("ui.sender", "update", "receive");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(send("update", true), "");
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, TheFirstFailureEndsTheWalk) {
    at("ui.one")->listenObject("ui.sender", "update", "receive-short");
    at("ui.two")->listenObject("ui.sender", "update", "fail");
    at("ui.three")->listenObject("ui.sender", "update", "receive-short");
    std::string error = send("update");
    EXPECT_EQ(error.find("Cannot receive.\r\n"), 0u);
    EXPECT_NE(error.find(" ) // ui.sender\r\n"), std::string::npos) << error;
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"one short"}));
}

TEST_F(CNotifyTest, ReleasedListenersHearNothing) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    at("ui.two")->listenObject("ui.sender", "update", "receive");
    at("ui.one")->releaseListeners();
    delete at("ui.two");
    EXPECT_EQ(send("update"), "");
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, AHandlerMayDestroyAListenerThatComesAfterIt) {
    CListening::victim = at("ui.two");
    at("ui.one")->listenObject("ui.sender", "update", "destroy-victim");
    at("ui.two")->listenObject("ui.sender", "update", "receive");
    at("ui.three")->listenObject("ui.sender", "update", "receive-short");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"three short"}));
}

TEST_F(CNotifyTest, AHandlerMayDestroyTheSender) {
    CListening::victim = sender;
    at("ui.one")->listenObject("ui.sender", "update", "destroy-victim");
    at("ui.two")->listenObject("ui.sender", "update", "receive");
    at("ui.three")->listenObject("ui.sender", "update", "fail");
    const std::string error = send("update");
    EXPECT_EQ(at("ui.sender"), nullptr);
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"two: ui.sender update ui.two receive 7"}));
    EXPECT_NE(error.find("Sources/Core/CObject( "), std::string::npos);
    EXPECT_NE(error.find(" ) // ui.sender\r\n"), std::string::npos) << error;
}

TEST_F(CNotifyTest, AHandlerMayDestroyTheWholeTree) {
    CListening::victim = root.release();
    at(*CListening::victim, "ui.one").listenObject("ui.sender", "update", "destroy-victim");
    at(*CListening::victim, "ui.two").listenObject("ui.sender", "update", "receive");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(CListening::victim, nullptr);
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, TheTreeMayGoWithinAnEventWithinAnEvent) {
    CListening::victim = root.release();
    at(*CListening::victim, "ui.one").listenObject("ui.sender", "outer", "send-inner");
    at(*CListening::victim, "ui.two").listenObject("ui.sender", "outer", "receive");
    at(*CListening::victim, "ui.two").listenObject("ui.one", "inner", "destroy-victim");
    at(*CListening::victim, "ui.three").listenObject("ui.one", "inner", "receive");
    EXPECT_EQ(send("outer"), "");
    EXPECT_EQ(CListening::victim, nullptr);
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, APostedHandlerMayDestroyTheWholeTreeAndFail) {
    CListening::victim = root.release();
    at(*CListening::victim, "ui.one").listenObject("ui.sender", "update", "destroy-and-fail");
    std::thread([&] { EXPECT_EQ(send("update"), ""); }).join();
    CLogCapture log;
    pumpEvents();
    EXPECT_EQ(CListening::victim, nullptr);
    EXPECT_EQ(log.lines.at(0).find("Cannot receive."), 0u) << log.lines.at(0);
}

TEST_F(CNotifyTest, AHandlerMayDestroyAServerThatStandsAlone) {
    auto server = std::make_unique<CNotifyServer>();
    CAttributeMap own;
    CListening::onHear = [&] { server.reset(); };
    ASSERT_TRUE(server->listenObject(*at("ui.one"), "anybody", "update", "call"));
    ASSERT_TRUE(server->listenObject(*at("ui.two"), "anybody", "update", "receive"));
    EXPECT_EQ(consumed(server->send("anybody", "update", own, false)), "");
    EXPECT_EQ(server, nullptr);
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, AnEventFromAnotherThreadArrivesLaterOnTheAnchorsThread) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    std::string error;
    std::thread([&] { error = send("update"); }).join();
    EXPECT_EQ(error, "");
    EXPECT_TRUE(CListening::received.empty());
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"one: ui.sender update ui.one receive 7"}));
    EXPECT_EQ(CListening::threads, (std::vector<uint64_t>{currentThreadId()}));
}

TEST_F(CNotifyTest, ASynchronousEventFromAnotherThreadRunsThere) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    uint64_t other = 0;
    std::thread([&] {
        other = currentThreadId();
        EXPECT_EQ(send("update", true), "");
    }).join();
    EXPECT_EQ(CListening::threads, (std::vector<uint64_t>{other}));
    EXPECT_EQ(pumpEvents(), 0);
}

TEST_F(CNotifyTest, APostedEventWaitsOnItsOwnThreadToo) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    at("loose")->listenObject("ui.sender", "update", "receive");
    params["value"] = CAttributeValue::fromInt(7);
    EXPECT_EQ(consumed(root->notifyServer()->sendPosted("ui.sender", "update", params)), "");
    EXPECT_TRUE(CListening::received.empty());
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_EQ(CListening::received, (std::vector<std::string>{"one: ui.sender update ui.one receive 7"}));
    EXPECT_EQ(consumed(root->notifyServer()->sendPosted("ui.sender", "never-heard-of", params)), "");
}

TEST_F(CNotifyTest, PostsArriveInTheirOrderAndEachWithItsOwnParameters) {
    at("ui.two")->listenObject("ui.sender", "update", "receive");
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    std::thread([&] {
        for (int value : {1, 2}) {
            CAttributeMap own;
            own["value"] = CAttributeValue::fromInt(value);
            EXPECT_EQ(consumed(sender->sendEvent("update", own, false)), "");
        }
    }).join();
    pumpEvents();
    EXPECT_EQ(
        CListening::received,
        (std::vector<std::string>{"two: ui.sender update ui.two receive 1", "one: ui.sender update ui.one receive 1",
                                  "two: ui.sender update ui.two receive 2", "one: ui.sender update ui.one receive 2"}));
}

TEST_F(CNotifyTest, APostToAnObjectThatDiesMeanwhileIsDropped) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    std::thread([&] { EXPECT_EQ(send("update"), ""); }).join();
    delete at("ui.one");
    CObject* successor = nullptr;
    ASSERT_EQ(consumed(at("ui")->createChild(successor, "test:listening", "one", false)), "");
    successor->listenObject("ui.sender", "update", "receive");
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_TRUE(CListening::received.empty()) << "not even one of the same name";
}

TEST_F(CNotifyTest, AnAnchorThatDiesTakesItsPostsAlong) {
    at("ui.one")->listenObject("ui.sender", "update", "receive");
    std::thread([&] { EXPECT_EQ(send("update"), ""); }).join();
    delete at("ui");
    EXPECT_EQ(pumpEvents(), 0);
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, AFailureOfAPostedEventIsLogged) {
    at("ui.one")->listenObject("ui.sender", "update", "fail");
    std::thread([&] { EXPECT_EQ(send("update"), ""); }).join();
    CLogCapture log;
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_TRUE(log.has("Cannot receive."));
}

TEST_F(CNotifyTest, APostToAWindowThatIsGoneFails) {
    std::string error = consumed(CSystem::sendEvent(0, 1));
    EXPECT_EQ(error.find("Post message error 9.\r\n"), 0u) << error;
}

TEST_F(CNotifyTest, AnObjectMayAskForItsOwnEndFromWithinAHandler) {
    CObject* one = at("ui.one");
    one->listenObject("ui.sender", "update", "release-self");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(send("update"), "");
    EXPECT_EQ(at("ui.one"), one) << "not before the calls have returned";
    pumpEvents();
    EXPECT_EQ(at("ui.one"), nullptr);
    EXPECT_FALSE(CCheckedObject::isLive(one));
}

TEST_F(CNotifyTest, ServersHaveDifferentIds) {
    auto second = application.makeRoot();
    EXPECT_NE(root->notifyServer()->id(), second->notifyServer()->id());
}

TEST_F(CNotifyTest, TreesDoNotHearEachOther) {
    auto second = application.makeRoot({{"ui:ui-event-bridge", "ui", {}, {{"test:listening", "one"}}}});
    second->findObject("ui.one")->listenObject("ui.sender", "update", "receive");
    EXPECT_EQ(send("update"), "");
    EXPECT_TRUE(CListening::received.empty());
}

TEST_F(CNotifyTest, SendersOfManyThreadsMeetListenersThatComeAndGo) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 3; ++i) {
        threads.emplace_back([&] {
            for (int round = 0; round < 200; ++round) {
                CAttributeMap own;
                EXPECT_EQ(consumed(sender->sendEvent("update", own, false)), "");
            }
        });
    }
    for (int round = 0; round < 200; ++round) {
        CObject* guest = nullptr;
        ASSERT_EQ(consumed(at("ui")->createChild(guest, "test:listening", "guest", false)), "");
        guest->listenObject("ui.sender", "update", "receive");
        pumpEvents();
        delete guest;
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    pumpEvents();
    for (uint64_t thread : CListening::threads) {
        EXPECT_EQ(thread, currentThreadId());
    }
}

}  // namespace
}  // namespace tarv
