// The face of the engine's end: finds the other objects, hands messages to the parts and notifications to the clients.

#include "Audio/Engine/CAudioInterfaceBase.h"

#include "Audio/Engine/CEngineAnswers.h"
#include "Audio/Engine/CEngineDefaultPreset.h"
#include "Audio/Engine/CEngineEditorMemory.h"
#include "Audio/Engine/CEngineEdits.h"
#include "Audio/Engine/CEngineGestures.h"
#include "Audio/Engine/CEngineHistory.h"
#include "Audio/Engine/CEnginePrograms.h"
#include "Audio/Engine/CEngineRegistries.h"
#include "Audio/Engine/CEngineStatus.h"
#include "Audio/Engine/CEngineSubscriptions.h"
#include "Audio/Presets/CAudioParamRegistry.h"
#include "Audio/Visuals/CAudioVizCollector.h"

namespace tarv {

/// The parts of the interface object, in the order in which they need each other, and the table of their handlers.
struct CAudioInterfaceBase::CParts final : public CHeapObject, private CEngineTickListener {
    using CHandler = CError* (CParts::*)(CInputStream& stream);
    /// What a message is for the host and for the gestures that are under way.
    enum class CKind {
        Other,
        Action,  ///< a person changes what there is: what it changes is reported to the host
        Step     ///< the same by values of one step: gestures go on
    };
    struct CHandlerRow {
        uint32_t type;
        CHandler handle;
        CKind kind = CKind::Other;
    };
    static const CHandlerRow kHandlers[kFirstBaseMessage];

    explicit CParts(CAudioInterfaceBase& owner)
        : base(owner),
          sender(base, *base.connector_),
          status(*base.vizCollector_->env()),
          registries(base),
          history(base, sender),
          gestures(sender),
          subscriptions(sender, status, registries, *base.paramCollector_, *base.vizCollector_, *this),
          edits(base, *base.paramCollector_, subscriptions, registries, status, gestures, sender),
          programs(registries, status, sender),
          defaultPreset(registries, sender),
          editorMemory(sender),
          answers(status, registries, base, history, editorMemory, sender) {}

    template <auto Part, auto Handle>
    CError* call(CInputStream& stream) {
        return (this->*Part.*Handle)(stream);
    }
    CError* handle(const CHandlerRow& row, CInputStream& stream);
    CError* beginEdit(CInputStream& stream) { return gestures.begin(stream, subscriptions); }
    CError* endEdit(CInputStream& stream) { return gestures.end(stream, base); }
    void onTick() override {
        if (status.takeClear()) {
            TARV_CONSUME(base.notify("clear"));
        }
    }

    CAudioInterfaceBase& base;
    CEngineSender sender;
    CEngineStatus status;
    CEngineRegistries registries;
    CEngineHistory history;
    CEngineGestures gestures;
    CEngineSubscriptions subscriptions;
    CEngineEdits edits;
    CEnginePrograms programs;
    CEngineDefaultPreset defaultPreset;
    CEngineEditorMemory editorMemory;
    CEngineAnswers answers;
};

constexpr CAudioInterfaceBase::CParts::CHandlerRow CAudioInterfaceBase::CParts::kHandlers[] = {
    {kSubscribeParam, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::subscribeParam>},
    {kUnsubscribeParam, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::unsubscribeParam>},
    {kRequestValues, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::requestValues>},
    {kRequestState, &CParts::call<&CParts::answers, &CEngineAnswers::requestState>},
    {kSetValues, &CParts::call<&CParts::edits, &CEngineEdits::setValues>},
    {kSubscribeRegistry, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::subscribeRegistry>},
    {kUnsubscribeRegistry, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::unsubscribeRegistry>},
    {kRecord, &CParts::call<&CParts::history, &CEngineHistory::record>, CKind::Step},
    {kMoveInHistory, &CParts::call<&CParts::history, &CEngineHistory::move>, CKind::Action},
    {kSubscribeVisual, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::subscribeVisual>},
    {kUnsubscribeVisual, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::unsubscribeVisual>},
    {kSetProgram, &CParts::call<&CParts::programs, &CEnginePrograms::select>, CKind::Action},
    {kRenameProgram, &CParts::call<&CParts::programs, &CEnginePrograms::rename>, CKind::Action},
    {kActivateRomPreset, &CParts::call<&CParts::programs, &CEnginePrograms::activateRomPreset>, CKind::Action},
    {kActivateData, &CParts::call<&CParts::programs, &CEnginePrograms::activateData>, CKind::Action},
    {kAcquirePreset, &CParts::call<&CParts::programs, &CEnginePrograms::acquirePreset>},
    {kAcquireBank, &CParts::call<&CParts::programs, &CEnginePrograms::acquireBank>},
    {kSwapAB, &CParts::call<&CParts::programs, &CEnginePrograms::act<&CAudioParamRegistry::swapAB>>, CKind::Action},
    {kMasterReset, &CParts::call<&CParts::programs, &CEnginePrograms::act<&CAudioParamRegistry::masterReset>>,
     CKind::Action},
    {kResetState, &CParts::call<&CParts::programs, &CEnginePrograms::act<&CAudioParamRegistry::reset>>, CKind::Action},
    {kCopyToAlternate, &CParts::call<&CParts::programs, &CEnginePrograms::act<&CAudioParamRegistry::copyToAlternate>>,
     CKind::Action},
    {kBindValue, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::bindValue>},
    {kUnbindValue, &CParts::call<&CParts::subscriptions, &CEngineSubscriptions::unbindValue>},
    {kPass, &CParts::call<&CParts::answers, &CEngineAnswers::pass>},
    {kAskSampleRate, &CParts::call<&CParts::answers, &CEngineAnswers::askSampleRate>},
    {kAskIoCounts, &CParts::call<&CParts::answers, &CEngineAnswers::askIoCounts>},
    {kAskGroupCount, &CParts::call<&CParts::answers, &CEngineAnswers::askGroupCount>},
    {kAskInternalCount, &CParts::call<&CParts::answers, &CEngineAnswers::askInternalCount>},
    {kImportLabels, &CParts::call<&CParts::edits, &CEngineEdits::importLabels>, CKind::Step},
    {kAddProgram, &CParts::call<&CParts::programs, &CEnginePrograms::add>, CKind::Action},
    {kDeleteProgram, &CParts::call<&CParts::programs, &CEnginePrograms::remove>, CKind::Action},
    {kReplaceProgram, &CParts::call<&CParts::programs, &CEnginePrograms::replace>, CKind::Action},
    {kSetDefaultPreset, &CParts::call<&CParts::defaultPreset, &CEngineDefaultPreset::set>},
    {kClearDefaultPreset, &CParts::call<&CParts::defaultPreset, &CEngineDefaultPreset::clear>},
    {kAskDefaultPreset, &CParts::call<&CParts::defaultPreset, &CEngineDefaultPreset::ask>},
    {kBeginEdit, &CParts::beginEdit},
    {kEndEdit, &CParts::endEdit},
    {kKeepBytes, &CParts::call<&CParts::editorMemory, &CEngineEditorMemory::keep>},
};

CAudioInterfaceBase::CAudioInterfaceBase() = default;

CAudioInterfaceBase::~CAudioInterfaceBase() {
    stopMessages();
}

CError* CAudioInterfaceBase::init() {
    TARV_TRY(CAudioParamUndo::init());
    connector_ = findObjectOf<CAudioInterfaceBaseConnector>(getAttrString("base-connector"));
    if (!connector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoBaseConnector No base connector '%1' found.",
                  getAttrString("base-connector"));
    }
    paramCollector_ = findObjectOf<CAudioParamCollector>(getAttrString("param-collector"));
    if (!paramCollector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoParamCollector No parameter collector '%1' found.",
                  getAttrString("param-collector"));
    }
    vizCollector_ = findObjectOf<CAudioVizCollector>(getAttrString("viz-collector"));
    if (!vizCollector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_init_NoVizCollector No visual object collector '%1' found.",
                  getAttrString("viz-collector"));
    }
    parts_ = std::make_unique<CParts>(*this);
    connector_->setBase(this);
    return nullptr;
}

void CAudioInterfaceBase::connectorGone() {
    parts_->defaultPreset.stop();  // notifications come on other threads
    parts_->sender.connectorGone();
    connector_ = nullptr;
}

void CAudioInterfaceBase::stopMessages() {
    if (parts_) {
        parts_->defaultPreset.stop();
    }
    if (connector_) {
        connector_->unsetBase(*this);
    }
}

CError* CAudioInterfaceBase::processMessage(CInputStream& stream) {
    static_assert(isKeyedByType(CParts::kHandlers, 0, kFirstBaseMessage));
    uint32_t type = 0;
    TARV_TRY(stream.readValue(type));
    if (type >= kFirstBaseMessage) {
        TARV_FAIL("@tarvstr_CAudioInterfaceBase_processMessage_InvalidType Invalid data type %1.",
                  CString::fromInt(type));
    }
    TARV_TRY(parts_->handle(CParts::kHandlers[type], stream));
    return nullptr;
}

CError* CAudioInterfaceBase::CParts::handle(const CHandlerRow& row, CInputStream& stream) {
    if (row.kind == CKind::Action) {
        const CEngineGestures::CAction action(gestures);
        return (this->*row.handle)(stream);
    }
    if (row.kind == CKind::Step) {
        const CEngineGestures::CAction action(gestures, -1, -1, false);
        return (this->*row.handle)(stream);
    }
    return (this->*row.handle)(stream);
}

void CAudioInterfaceBase::setHostParams(CAudioExtParamList* params) {
    parts_->gestures.setHostParams(params);
}

void CAudioInterfaceBase::clientGone(int32_t client) {
    parts_->subscriptions.clientGone(client);
    const CEngineGestures::CAction action(parts_->gestures, client, -1, false);
    parts_->history.clientGone(client);
    parts_->gestures.clientGone(client);
}

void CAudioInterfaceBase::start() {
    parts_->status.setRunning(true);
    parts_->subscriptions.sendChangedValues();
}

void CAudioInterfaceBase::stop() {
    parts_->status.setRunning(false);
    parts_->subscriptions.sendChangedValues();
}

bool CAudioInterfaceBase::isGoing() const {
    return parts_->status.isRunning();
}

CError* CAudioInterfaceBase::notify(const CString& eventName) {
    parts_->answers.notify(eventName);
    parts_->subscriptions.sendChangedValues();
    CAttributeMap none;
    TARV_TRY(sendEvent(eventName, none, false));
    return nullptr;
}

void CAudioInterfaceBase::clearAtTick() {
    parts_->status.markClear();
}

CInterfaceCounts CAudioInterfaceBase::counts() const {
    return parts_->status.counts();
}

template <class Edit>
void CAudioInterfaceBase::editCounts(const CString& eventName, Edit&& edit) {
    if (parts_->status.editCounts(edit)) {
        TARV_CONSUME(notify(eventName));
    }
}

void CAudioInterfaceBase::setIoCounts(int32_t inputs, int32_t outputs, int32_t sidechain) {
    editCounts("update-io-channel-counts", [&](CInterfaceCounts& counts) {
        counts.inputs = inputs;
        counts.outputs = outputs;
        counts.sidechain = sidechain;
    });
}

void CAudioInterfaceBase::setGroupCount(int32_t count) {
    editCounts("update-group-count", [&](CInterfaceCounts& counts) { counts.groups = count; });
}

void CAudioInterfaceBase::setInternalChannelCount(int32_t count) {
    editCounts("update-internal-channel-count", [&](CInterfaceCounts& counts) { counts.internalChannels = count; });
}

void CAudioInterfaceBase::setChannelLabels(const CTextList& labels) {
    if (parts_->status.setChannelLabels(labels)) {
        TARV_CONSUME(notify("update-input-labels"));
    }
}

void CAudioInterfaceBase::setOutputLabels(const CTextList& labels) {
    if (parts_->status.setOutputLabels(labels)) {
        TARV_CONSUME(notify("update-output-labels"));
    }
}

void CAudioInterfaceBase::sendState() {
    parts_->gestures.cancelAll();
    parts_->subscriptions.sendAll();
    parts_->history.send(true);
}

void CAudioInterfaceBase::historyChanged() {
    if (parts_) {
        parts_->gestures.cancelAll();
        parts_->history.send(false);
    }
    CAudioParamUndo::historyChanged();
}

}  // namespace tarv
