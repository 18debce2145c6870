#include <atomic>
#include <thread>

#include "Tests/Core/Posix/SettingsTree.h"

namespace tarv {
namespace {

class SharedAttributeThreads : public CSettingsTest {};

TEST_F(SharedAttributeThreads, AWriteElsewhereIsTakenOnTheThreadOfTheTree) {
    auto editor = makeEditor();
    std::thread([] { CGlobalData::instance().writeText("tablet", "true"); }).join();
    EXPECT_EQ(valueOf(*editor), "false");
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_EQ(valueOf(*editor), "true");
    EXPECT_EQ(listener(*editor).threads, (std::vector<uint64_t>{currentThreadId()}));
}

TEST_F(SharedAttributeThreads, NoStoreIsLockedWhileAnUpdateIsHeard) {
    auto first = makeEditor(), second = makeEditor();
    // Waits for ever if this very call holds the store.
    listener(*second).onUpdate = [] {
        std::thread([] { CGlobalData::instance().writeText("something-else", "1"); }).join();
    };
    change(*first, "true");
    pumpEvents();
    EXPECT_EQ(listener(*second).values, (std::vector<std::string>{"true"}));
}

TEST_F(SharedAttributeThreads, AnObjectThatDiesMeanwhileIsNotNotified) {
    auto first = makeEditor(), second = makeEditor();
    change(*first, "true");
    delete second->findObject("ui.tablet");
    CObject* successor = nullptr;
    CAttributeMap attributes;
    attributes["attribute"] = CAttributeValue::fromString("tablet-mode");
    ASSERT_EQ(consumed(second->findObject("ui")->createChild(successor, "core:shared-attribute", "tablet", false,
                                                             &attributes)),
              "");
    EXPECT_EQ(pumpEvents(), 1);
    EXPECT_TRUE(listener(*second).values.empty()) << "not even one of the same name";
    change(*first, "again");
    second.reset();
    EXPECT_EQ(pumpEvents(), 0);
}

TEST_F(SharedAttributeThreads, EditorsOnManyThreadsComeToTheSameValue) {
    constexpr int kEditors = 4;
    std::atomic<int> busy{kEditors};
    std::atomic<int> made{0};
    std::vector<std::string> values(kEditors);
    std::vector<std::thread> threads;
    for (int i = 0; i < kEditors; ++i) {
        threads.emplace_back([&, i] {
            auto editor = makeEditor();
            ++made;
            while (made < kEditors) {
                std::this_thread::yield();
            }
            for (int round = 0; round < 50; ++round) {
                change(*editor, std::to_string(i * 1000 + round).c_str());
                pumpEvents();
            }
            --busy;
            while (busy > 0) {
                std::this_thread::yield();
            }
            pumpEvents();
            values[static_cast<size_t>(i)] = valueOf(*editor);
            for (uint64_t thread : listener(*editor).threads) {
                EXPECT_EQ(thread, currentThreadId());
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    for (const std::string& value : values) {
        EXPECT_EQ(value, CGlobalData::instance().readText("tablet", "none").toUtf8());
    }
}

TEST_F(SharedAttributeThreads, EditorsComeAndGoWhileOthersWrite) {
    // As many writes as the rounds allow, so that a pump comes to its end however slow it is.
    constexpr int kWritesPerRound = 100;
    std::atomic<bool> isDone{false};
    std::atomic<int> allowed{0};
    std::thread writer([&] {
        for (int i = 0; !isDone;) {
            if (i < allowed) {
                CGlobalData::instance().writeText("tablet", CString::fromInt(i++));
            } else {
                std::this_thread::yield();
            }
        }
    });
    for (int round = 0; round < 100; ++round) {
        allowed += kWritesPerRound;
        auto editor = makeEditor();
        change(*editor, "mine");
        if (round % 2 == 0) {
            pumpEvents();
        }
    }
    isDone = true;
    writer.join();
    EXPECT_EQ(pumpEvents(), 0);
}

}  // namespace
}  // namespace tarv
