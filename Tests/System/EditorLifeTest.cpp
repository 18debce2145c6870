// Editors, listeners and engines that are destroyed, and objects that are missing at the start.

#include "Tests/System/EditorTest.h"

namespace tarv {
namespace {

using engine::kOutGain;

class EditorLife : public CEditorTest {};

TEST_F(EditorLife, AListenerThatDiesOrLeavesIsUnsubscribed) {
    {
        CParamRecorder recorder;
        EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
        param(kOutGain).setValue(0, 0, 0.5);
    }
    pumpEvents();
    param(kOutGain).setValue(0, 0, 0.6);
    EXPECT_EQ(clientConnector_->pendingCount(), 0);
    CRegistryRecorder registryRecorder;
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, registryRecorder)), "");
    client_->removeListener(registryRecorder);
    EXPECT_EQ(registryRecorder.client(), nullptr);
    pumpEvents();
    registry().selectProgram(1);
    pumpEvents();
    EXPECT_TRUE(registryRecorder.states.empty());
}

TEST_F(EditorLife, AListenerMayCloseTheEditor) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    recorder.onChange = [&] { editor_.reset(); };
    param(kOutGain).setValue(0, 0, 0.5);
    param(kOutGain).setValue(0, 0, 0.6);
    pumpEvents();
    EXPECT_EQ(recorder.changes.size(), 2u);
    EXPECT_EQ(recorder.client(), nullptr);
    EXPECT_EQ(connector_->clientCount(), 0);
    param(kOutGain).setValue(0, 0, 0.7);
}

TEST_F(EditorLife, AnEditorThatClosesLeavesNothingBehind) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    EXPECT_EQ(firstLine(client_->beginStep("Half")), "");
    const double half = 0.5;
    EXPECT_EQ(firstLine(client_->setNumbers(kOutGain, 0, 0, &half, 1)), "");
    editor_.reset();
    EXPECT_EQ(connector_->clientCount(), 0);
    EXPECT_EQ(recorder.client(), nullptr);
    EXPECT_EQ(labels().back(), "Half");
    param(kOutGain).setValue(0, 0, 0.6);
    EXPECT_EQ(pumpEvents(), 0);
    EXPECT_TRUE(recorder.changes.empty());
}

TEST_F(EditorLife, ListenersAreNotifiedThatTheEngineHasGone) {
    CParamRecorder paramRecorder;
    CRegistryRecorder registryRecorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, paramRecorder)), "");
    EXPECT_EQ(firstLine(client_->addRegistryListener(kRegistry, registryRecorder)), "");
    pumpEvents();
    // The application goes with the last instance: the editor's tree needs it.
    CError* error = nullptr;
    std::unique_ptr<CPlainInstance> keeper(CPlainInstance::create(error));
    instance_.reset();
    pumpEvents();
    EXPECT_EQ(paramRecorder.gone, 1);
    EXPECT_EQ(registryRecorder.gone, 1);
    EXPECT_EQ(firstLine(client_->undo()), "No base connector defined.");
    editor_.reset();
    EXPECT_EQ(paramRecorder.client(), nullptr);
}

TEST_F(EditorLife, AFullQueueIsDroppedAndAllIsRequestedAgain) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    for (int32_t i = 0; i <= CAudioInterfaceClientConnector::kQueueLimit; ++i) {
        param(kOutGain).setValue(0, 0, 0.5 + i * 1e-6);
    }
    EXPECT_EQ(clientConnector_->pendingCount(), 1);
    pumpEvents();
    EXPECT_TRUE(recorder.changes.back().isReplacing);
    EXPECT_TRUE(client_->paramData(recorder)->isSame(param(kOutGain).userData()));
}

TEST_F(EditorLife, ADamagedMessageIsDroppedAndTheOthersAreRead) {
    CParamRecorder recorder;
    EXPECT_EQ(firstLine(client_->addParamListener(kOutGain, recorder)), "");
    pumpEvents();
    param(kOutGain).setValue(0, 0, 0.5);
    CByteBuffer damaged;
    damaged.append(kMessageCount);
    EXPECT_EQ(firstLine(connector_->sendToClient(clientConnector_->clientId(), damaged)), "");
    param(kOutGain).setValue(0, 0, 0.6);
    pumpEvents();
    EXPECT_EQ(recorder.changes.size(), 3u);
    CByteBuffer unknown;
    delete packMessage(unknown, uint32_t{kMessageCount});
    CMemoryReader reader(unknown.data(), 4);
    EXPECT_EQ(firstLine(client_->processMessage(reader)), "Invalid data type " + std::to_string(kMessageCount) + ".");
}

TEST_F(EditorLife, AConnectorWithoutAClientFails) {
    delete editor_->findObject("ui.client");
    CByteBuffer message;
    delete packMessage(message, kGroupCount, kNoRequest, int32_t{1});
    EXPECT_EQ(firstLine(connector_->sendToClient(0, message)), "No client object defined.");
}

TEST_F(EditorLife, EachMissingObjectFailsWithItsMessage) {
    auto root = makeRoot(false);
    EXPECT_EQ(firstLine(loadTree(*root, nodes())), "'PluginRootPtrVar' variable not defined!");
    root = makeRoot();
    EXPECT_EQ(firstLine(loadTree(*root, nodes(kGroupNamesParam, "plugin.audio-env"))),
              "Invalid base connector 'plugin.audio-env' specified.");
    root = makeRoot();
    EXPECT_EQ(firstLine(loadTree(*root, nodes(kGroupNamesParam, "plugin.interface-base-connector", "ui.nowhere"))),
              "No client connector 'ui.nowhere' found.");
    EXPECT_EQ(connector_->clientCount(), 1) << "a tree whose start fails leaves no connector";
}

}  // namespace
}  // namespace tarv
