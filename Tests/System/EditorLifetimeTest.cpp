// Listeners, clients and editors that are destroyed while messages are read.

#include "Audio/Visuals/CAudioVizData.h"
#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

/// Runs what the test gives it at each notification, and counts them.
struct CRegistryActor : CAudioInterfaceRegistryListener {
    void onRegistryChanged(const CInterfaceRegistryState&) override { ++changes; }
    void onAlternateChanged(bool) override {
        const std::function<void()> copy = onAlternate;
        copy();
    }
    void onRegistryGone() override { ++gone; }
    std::function<void()> onAlternate = [] {};
    int changes = 0;
    int gone = 0;
};

struct CVizCounts {
    int records = 0;
    int ends = 0;
};

struct CVizActor : CAudioInterfaceVizProcessor {
    void processVizData(const CAudioVizData&) override {
        ++counts.records;
        const std::function<void()> copy = onRecord;
        copy();
    }
    void endVizFrame() override { ++counts.ends; }
    std::function<void()> onRecord = [] {};
    /// Of all of them: what is destroyed is counted, too.
    static CVizCounts counts;
};

CVizCounts CVizActor::counts;

struct CParamActor : CParamRecorder {
    void onParamGone() override {
        CParamRecorder::onParamGone();
        const std::function<void()> copy = onGone;
        copy();
    }
    std::function<void()> onGone = [] {};
};

class EditorLifetime : public CEditorTest {
protected:
    EditorLifetime() { CVizActor::counts = {}; }

    /// A frame of two records for the first visual subscription of this editor, whose id follows those of the state,
    /// the default preset and the group names.
    void sendFrame() const {
        CByteBuffer bytes;
        CMemoryWriteBuffer stream;
        const uint32_t id = static_cast<uint32_t>(clientConnector_->clientId()) << 16 | 4;
        delete putFields(stream, static_cast<uint32_t>(kFrame), id, uint32_t{2});
        for (int i = 0; i < 2; ++i) {
            delete CAudioVizDataMeter().write(stream);
        }
        stream.copyTo(bytes);
        EXPECT_EQ(firstLine(connector_->sendToClient(-1, bytes)), "");
    }
    /// The application goes with the last instance, and the editor's tree needs it.
    std::unique_ptr<CPlainInstance> anotherInstance() {
        CError* error = nullptr;
        std::unique_ptr<CPlainInstance> made(CPlainInstance::create(error));
        EXPECT_FALSE(error);
        return made;
    }

    uint32_t request_ = 0;
};

TEST_F(EditorLifetime, ARequestThatIsOpenEndsWithTheClient) {
    CRegistryRecorder preset;
    CRegistryRecorder bank;
    EXPECT_EQ(firstLine(client_->acquirePreset(kRegistry, preset, request_)), "");
    EXPECT_EQ(firstLine(client_->acquireBank(kRegistry, bank, request_)), "");
    editor_.reset();
    EXPECT_EQ(preset.client(), nullptr);
    EXPECT_EQ(bank.client(), nullptr);
    pumpEvents();
    EXPECT_TRUE(preset.data.isEmpty());
}

TEST_F(EditorLifetime, AListenerThatOnlyGotAnAnswerIsReleasedToo) {
    CRegistryRecorder recorder;
    EXPECT_EQ(firstLine(client_->acquirePreset(kRegistry, recorder, request_)), "");
    pumpEvents();
    EXPECT_FALSE(recorder.data.isEmpty());
    editor_.reset();
    EXPECT_EQ(recorder.client(), nullptr);
}

TEST_F(EditorLifetime, ARequestEndsWithItsListener) {
    {
        CRegistryRecorder recorder;
        EXPECT_EQ(firstLine(client_->acquirePreset(kRegistry, recorder, request_)), "");
    }
    EXPECT_GT(pumpEvents(), 0);
}

TEST_F(EditorLifetime, ARegistryListenerMayGoWithinItsFirstNotification) {
    auto actor = std::make_unique<CRegistryActor>();
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, *actor)), "");
    pumpEvents();
    actor->onAlternate = [&] { actor.reset(); };
    EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), "");
    pumpEvents();
    EXPECT_EQ(actor, nullptr);
}

TEST_F(EditorLifetime, ARegistryListenerThatLeavesGetsNoSecondNotification) {
    CRegistryActor actor;
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, actor)), "");
    pumpEvents();
    const int before = actor.changes;
    actor.onAlternate = [&] { client_->removeListener(actor); };
    EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), "");
    pumpEvents();
    EXPECT_EQ(actor.changes, before);
}

TEST_F(EditorLifetime, ARegistryListenerMayCloseTheEditor) {
    CRegistryActor actor;
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, actor)), "");
    pumpEvents();
    actor.onAlternate = [&] { editor_.reset(); };
    EXPECT_EQ(firstLine(client_->swapAB(kRegistry)), "");
    pumpEvents();
    EXPECT_EQ(actor.client(), nullptr);
    EXPECT_EQ(connector_->clientCount(), 0);
}

TEST_F(EditorLifetime, AFrameGoesToItsProcessorRecordByRecord) {
    CVizActor actor;
    EXPECT_EQ(firstLine(client_->addVizProcessor("", actor)), "");
    sendFrame();
    pumpEvents();
    EXPECT_EQ(CVizActor::counts.records, 2);
    EXPECT_EQ(CVizActor::counts.ends, 1);
}

TEST_F(EditorLifetime, AProcessorMayGoWithinItsFrame) {
    auto actor = std::make_unique<CVizActor>();
    EXPECT_EQ(firstLine(client_->addVizProcessor("", *actor)), "");
    actor->onRecord = [&] { actor.reset(); };
    sendFrame();
    pumpEvents();
    EXPECT_EQ(CVizActor::counts.records, 1);
    EXPECT_EQ(CVizActor::counts.ends, 0);
}

TEST_F(EditorLifetime, AProcessorMayCloseTheEditorWithinItsFrame) {
    CVizActor actor;
    EXPECT_EQ(firstLine(client_->addVizProcessor("", actor)), "");
    actor.onRecord = [&] { editor_.reset(); };
    sendFrame();
    pumpEvents();
    EXPECT_EQ(CVizActor::counts.records, 1);
    EXPECT_EQ(CVizActor::counts.ends, 0);
    EXPECT_EQ(actor.client(), nullptr);
}

TEST_F(EditorLifetime, AListenerMayCloseTheEditorWhenTheEngineHasGone) {
    CParamActor first;
    CParamActor second;
    CRegistryActor registryActor;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, first)), "");
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, second)), "");
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, registryActor)), "");
    pumpEvents();
    first.onGone = [&] { editor_.reset(); };
    const auto keeper = anotherInstance();
    instance_.reset();
    pumpEvents();
    EXPECT_EQ(first.gone, 1);
    EXPECT_EQ(second.gone, 0);
    EXPECT_EQ(registryActor.gone, 0);
}

TEST_F(EditorLifetime, AListenerMayDestroyAnotherOneWhenTheEngineHasGone) {
    CParamActor first;
    auto second = std::make_unique<CParamActor>();
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, first)), "");
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, *second)), "");
    pumpEvents();
    first.onGone = [&] { second.reset(); };
    const auto keeper = anotherInstance();
    instance_.reset();
    pumpEvents();
    EXPECT_EQ(first.gone, 1);
    EXPECT_EQ(second, nullptr);
}

/// Closes the editor from inside the engine, as a host may when it is notified of a parameter.
struct CClosingHost : CAudioParamListener {
    CClosingHost(CAudioParam& followed, std::function<void()> closeEditor)
        : param(followed), close(std::move(closeEditor)) {
        param.addListener(*this);
    }
    ~CClosingHost() { param.removeListener(*this); }
    void onParamChanged(CAudioParam&, int32_t, int32_t, int32_t) override { close(); }
    CAudioParam& param;
    std::function<void()> close;
};

TEST_F(EditorLifetime, AHostMayCloseTheEditorWithinAnEditorsMessage) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    const CClosingHost host(param(kOutGain), [&] { editor_.reset(); });
    const double half = 0.5;
    EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &half, 1)), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 0.5);
    EXPECT_EQ(recorder.client(), nullptr);
    EXPECT_EQ(connector_->clientCount(), 0);
    EXPECT_EQ(pumpEvents(), 0);
}

TEST_F(EditorLifetime, AHostMayCloseTheEditorWithinAnUndo) {
    const double half = 0.5;
    EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &half, 1)), "");
    const CClosingHost host(param(kOutGain), [&] { editor_.reset(); });
    EXPECT_EQ(firstLine(client_->undo()), "");
    EXPECT_EQ(param(kOutGain).value(0, 0), 1.0);
    EXPECT_EQ(connector_->clientCount(), 0);
}

TEST_F(EditorLifetime, AConnectorHasOneClientThatAnotherDoesNotUnset) {
    CObject* ui = editor_->findObject("ui");
    CAttributeMap attributes;
    attributes["client-connector"] = CAttributeValue::fromString("ui.connector");
    CObject* second = nullptr;
    EXPECT_EQ(firstLine(ui->createChild(second, "audio:interface-client", "second", false, &attributes)),
              "The connector has a client already.");
    EXPECT_EQ(second, nullptr);
    EXPECT_EQ(clientConnector_->client(), client_);
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    EXPECT_EQ(recorder.changes.size(), 1u);
    delete client_;
    ASSERT_EQ(firstLine(ui->createChild(second, "audio:interface-client", "second", false, &attributes)), "");
    EXPECT_EQ(clientConnector_->client(), dynamic_cast<CAudioInterfaceClient*>(second));
}

}  // namespace
}  // namespace tarv
