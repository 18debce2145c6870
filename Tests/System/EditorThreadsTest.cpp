// Engines and editors that are destroyed on different threads, in each order and at the same time.

#include <atomic>
#include <barrier>
#include <thread>

#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

/// Which of both ends goes first.
enum class CFirst : uint8_t { Engine, Editor, Both };

class EditorThreads : public CMessageTest {
protected:
    /// An editor's whole life beside an engine that may go at any moment of it. `meet` is passed when it is open, and
    /// again when it may close.
    static void edit(CObject* pluginRoot, std::barrier<>& meet, const std::atomic<bool>& isDone) {
        CObject* root = nullptr;
        EXPECT_EQ(firstLine(CApplication::initRootObject(root)), "");
        delete root->setAttribute("PluginRootPtrVar", CAttributeValue::fromPointer(pluginRoot));
        EXPECT_EQ(firstLine(loadTree(*root, CEditorTree::nodes())), "");
        auto* client = root->findObjectOf<CAudioInterfaceClient>("ui.client");
        CParamRecorder recorder;
        CRegistryRecorder registryRecorder;
        delete client->addParamListener(kOutGain, recorder);
        delete client->addRegistryListener(kRegistry, registryRecorder);
        meet.arrive_and_wait();
        for (int32_t i = 0; !isDone; ++i) {
            const double value = 0.5 + 0.01 * (i % 40);
            // A failure says that the engine has gone.
            delete client->setNumbers(kOutGain, 0, 0, &value, 1);
            uint32_t request = 0;
            delete client->acquirePreset(kRegistry, registryRecorder, request);
            pumpEvents();
        }
        delete root;
        EXPECT_EQ(recorder.client(), nullptr);
    }

    void endBoth(CFirst first) {
        CError* error = nullptr;
        std::unique_ptr<CPlainInstance> engine(CPlainInstance::create(error));
        ASSERT_FALSE(error);
        std::barrier<> meet(2);
        std::atomic<bool> isDone{false};
        CObject* pluginRoot = engine->instanceRoot();
        std::thread editor([&] { edit(pluginRoot, meet, isDone); });
        meet.arrive_and_wait();
        for (int32_t i = 0; i < 20; ++i) {
            engine->paramCollector()->findParam(kOutGain)->setValue(0, 0, 0.5 + 0.01 * i);
        }
        if (first == CFirst::Engine) {
            engine.reset();
            isDone = true;
            editor.join();
        } else if (first == CFirst::Editor) {
            isDone = true;
            editor.join();
            engine.reset();
        } else {
            isDone = true;
            engine.reset();
            editor.join();
        }
    }
};

TEST_F(EditorThreads, AnEngineMayGoWhileItsEditorSends) {
    for (int i = 0; i < 12; ++i) {
        endBoth(CFirst::Engine);
    }
}

TEST_F(EditorThreads, AnEditorMayGoWhileItsEngineStays) {
    for (int i = 0; i < 4; ++i) {
        endBoth(CFirst::Editor);
    }
}

TEST_F(EditorThreads, BothMayGoAtTheSameTime) {
    for (int i = 0; i < 20; ++i) {
        endBoth(CFirst::Both);
    }
}

/// Reads nothing: counts what it gets, and whether anything comes behind its end.
struct CCountingEnd final : CAudioInterfaceClientEnd {
    CError* onProcessBaseData(CInputStream&) override {
        EXPECT_FALSE(isClosed);
        return nullptr;
    }
    std::atomic<bool> isClosed{false};
};

TEST_F(EditorThreads, ConnectorsMayGoWhileManyClientsLeave) {
    for (int round = 0; round < 200; ++round) {
        auto connector = std::make_unique<CAudioInterfaceBaseConnectorVST>();
        const std::shared_ptr<CAudioInterfaceLink> link = connector->link();
        std::barrier<> meet(4);
        std::vector<std::thread> clients;
        for (int i = 0; i < 3; ++i) {
            clients.emplace_back([&] {
                CCountingEnd end;
                EXPECT_GE(connector->addClient(end), 0);
                meet.arrive_and_wait();
                CLockScope scope(link->callLock);
                if (link->connector) {
                    link->connector->removeClient(end);
                }
                end.isClosed = true;
            });
        }
        meet.arrive_and_wait();
        connector.reset();
        for (std::thread& client : clients) {
            client.join();
        }
        EXPECT_EQ(link->connector, nullptr);
    }
}

}  // namespace
}  // namespace tarv
