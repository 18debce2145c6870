// The face of the editor's end: finds the connector, hands operations and messages to the parts.

#include "Audio/Client/CAudioInterfaceClient.h"

#include "Audio/Client/CAudioInterfaceClientParts.h"
#include "Core/CObjectWatch.h"

namespace tarv {

CAudioInterfaceListener::~CAudioInterfaceListener() {
    if (client_) {
        client_->removeListener(*this);
    }
}

constexpr CAudioInterfaceClient::CParts::CHandlerRow CAudioInterfaceClient::CParts::kHandlers[] = {
    {kFullState, &CParts::call<&CParts::state, &CClientState::takeState>},
    {kParamValues, &CParts::call<&CParts::subscriptions, &CClientSubscriptions::takeValues>},
    {kRegistryChanged, &CParts::call<&CParts::subscriptions, &CClientSubscriptions::takeRegistry>},
    {kGroupNames, &CParts::takeGroupNames},
    {kHistory, &CParts::call<&CParts::state, &CClientState::takeHistory>},
    {kSampleRate, &CParts::call<&CParts::state, &CClientState::takeSampleRate>},
    {kIoCounts, &CParts::call<&CParts::state, &CClientState::takeIoCounts>},
    {kGroupCount, &CParts::call<&CParts::state, &CClientState::takeGroupCount>},
    {kInternalCount, &CParts::call<&CParts::state, &CClientState::takeInternalCount>},
    {kFrame, &CParts::call<&CParts::subscriptions, &CClientSubscriptions::takeFrame>},
    {kData, &CParts::takeData},
    {kDefaultPreset, &CParts::call<&CParts::state, &CClientState::takeDefaultPreset>},
    {kEditRefused, &CParts::call<&CParts::state, &CClientState::takeRefusal>},
};

constexpr CAudioInterfaceClient::CParts::CHandlerRow CAudioInterfaceClient::CParts::kDataHandlers[] = {
    {static_cast<uint32_t>(CDataKind::Answer), &CParts::call<&CParts::requests, &CClientRequests::takeAnswer>},
    {static_cast<uint32_t>(CDataKind::Value), &CParts::call<&CParts::values, &CClientBoundValues::take>},
    {static_cast<uint32_t>(CDataKind::Passed), &CParts::call<&CParts::state, &CClientState::takePassed>},
    {static_cast<uint32_t>(CDataKind::Clear), &CParts::call<&CParts::state, &CClientState::takeClear>},
    {static_cast<uint32_t>(CDataKind::OutputLabels), &CParts::call<&CParts::state, &CClientState::takeOutputLabels>},
    {static_cast<uint32_t>(CDataKind::Kept), &CParts::call<&CParts::state, &CClientState::takeKept>},
    {static_cast<uint32_t>(CDataKind::InputLabels), &CParts::call<&CParts::state, &CClientState::takeInputLabels>},
};

CError* CAudioInterfaceClient::CParts::takeData(CPosInputStream& stream) {
    constexpr uint32_t kEnd = static_cast<uint32_t>(CDataKind::InputLabels) + 1;
    static_assert(isKeyedByType(kDataHandlers, 0, kEnd));
    uint32_t kind = 0;
    TARV_TRY(stream.readValue(kind));
    if (kind >= kEnd) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_takeData_InvalidKind Invalid data kind %1.", CString::fromInt(kind));
    }
    return (this->*kDataHandlers[kind].handle)(stream);
}

CAudioInterfaceClient::CAudioInterfaceClient() : parts_(std::make_unique<CParts>(*this)) {}

CError* CAudioInterfaceClient::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioInterfaceClient::presetStoreChanged>(CClientPresetStores::kChangedEvent);
    return nullptr;
}

CAudioInterfaceClient::~CAudioInterfaceClient() {
    parts_->presetStores.close();
    // Each listener is released before the lists are; the engine gets a message of each subscription that ends.
    while (!listeners_.isEmpty()) {
        removeListener(*listeners_.last());
    }
    parts_->values.unbindAll();
    if (connector_) {
        if (parts_->groupNames) {
            TARV_CONSUME(parts_->groupNames->unsubscribe());
        }
        connector_->unsetClient(*this);
    }
}

CError* CAudioInterfaceClient::init() {
    TARV_TRY(CObject::init());
    auto* connector = findObjectOf<CAudioInterfaceClientConnector>(getAttrString("client-connector"));
    if (!connector) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_init_NoClientConnector No client connector '%1' found.",
                  getAttrString("client-connector"));
    }
    TARV_TRY(connector->setClient(*this));
    connector_ = connector;
    parts_->sender.connect(*connector);
    listenObject(fullName(), CClientPresetStores::kChangedEvent, CClientPresetStores::kChangedEvent);
    TARV_TRY(parts_->sender.send(kRequestState, parts_->sender.newId()));
    TARV_TRY(requestDefaultPreset());
    const CString& groupNames = getAttrString("group-names-param");
    if (!groupNames.isEmpty()) {
        parts_->groupNames = std::make_unique<CGroupNamesParamListener>(*this, parts_->sender);
        TARV_TRY(parts_->groupNames->subscribe(groupNames));
    }
    return nullptr;
}

void CAudioInterfaceClient::connectorGone() {
    parts_->sender.disconnect();
    connector_ = nullptr;
}

CError* CAudioInterfaceClient::processMessage(CPosInputStream& stream) {
    static_assert(isKeyedByType(CParts::kHandlers, kFirstBaseMessage, kMessageCount));
    uint32_t type = 0;
    TARV_TRY(stream.readValue(type));
    if (type < kFirstBaseMessage || type >= kMessageCount) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_processMessage_InvalidType Invalid data type %1.",
                  CString::fromInt(type));
    }
    return ((*parts_).*CParts::kHandlers[type - kFirstBaseMessage].handle)(stream);
}

CError* CAudioInterfaceClient::refresh() {
    TARV_TRY(parts_->sender.send(kRequestState, parts_->sender.newId()));
    TARV_TRY(requestDefaultPreset());
    TARV_TRY(parts_->subscriptions.refresh());
    TARV_TRY(parts_->values.refresh());
    if (parts_->groupNames) {
        TARV_TRY(parts_->groupNames->refresh());
    }
    return nullptr;
}

void CAudioInterfaceClient::engineGone() {
    const CObjectWatch watch(*this);
    parts_->subscriptions.engineGone();
    if (watch.isAlive()) {
        CAttributeMap none;
        TARV_CONSUME(sendEvent("engine-gone", none, false));
    }
}

void CAudioInterfaceClient::attach(CAudioInterfaceListener& listener) {
    if (listener.client_ && listener.client_ != this) {
        listener.client_->removeListener(listener);
    }
    if (listener.client_ != this) {
        listener.client_ = this;
        listeners_.append(&listener);
    }
}

void CAudioInterfaceClient::removeListener(CAudioInterfaceListener& listener) {
    if (listener.client_ != this) {
        return;
    }
    listener.client_ = nullptr;
    listeners_.removeAt(listeners_.indexOf(&listener));
    parts_->subscriptions.forget(listener);
    parts_->requests.forget(listener);
}

CError* CAudioInterfaceClient::addParamListener(const CString& param, CAudioInterfaceParamListener& listener) {
    TARV_TRY(parts_->subscriptions.addParam(param, listener));
    attach(listener);
    return nullptr;
}

CError* CAudioInterfaceClient::addRegistryListener(const CString& registry, CAudioInterfaceRegistryListener& listener) {
    TARV_TRY(parts_->subscriptions.addRegistry(registry, listener));
    attach(listener);
    return nullptr;
}

CError* CAudioInterfaceClient::addVizProcessor(const CString& source, CAudioInterfaceVizProcessor& processor) {
    TARV_TRY(parts_->subscriptions.addVisual(source, processor));
    attach(processor);
    return nullptr;
}

CError* CAudioInterfaceClient::requestFrames() {
    return parts_->sender.send(kRequestValues, tickIdOf(parts_->sender.clientId()));
}

const CAudioParamInfo* CAudioInterfaceClient::paramInfo(const CAudioInterfaceParamListener& listener) const {
    return parts_->subscriptions.paramInfo(listener);
}

const CAudioParamData* CAudioInterfaceClient::paramData(const CAudioInterfaceParamListener& listener) const {
    return parts_->subscriptions.paramData(listener);
}

CError* CAudioInterfaceClient::setNumbers(const CString& param, int32_t group, int32_t first, const double* numbers,
                                          int32_t elements, int32_t elementSize, const CInterfaceUndo& undo,
                                          bool isReplacing) {
    return parts_->edits.setNumbers(param, group, first, numbers, elements, elementSize, undo, isReplacing);
}

CError* CAudioInterfaceClient::setTexts(const CString& param, int32_t group, int32_t first, const CTextList& texts,
                                        const CInterfaceUndo& undo, bool isReplacing) {
    return parts_->edits.setTexts(param, group, first, texts, undo, isReplacing);
}

CError* CAudioInterfaceClient::beginEdit(int32_t key, const CString& param, int32_t group, int32_t first,
                                         int32_t elements) {
    return parts_->sender.send(kBeginEdit, tickIdOf(parts_->sender.clientId()), key, param, group, first, elements);
}

CError* CAudioInterfaceClient::endEdit(int32_t key, bool isTakenBack) {
    return parts_->sender.send(kEndEdit, tickIdOf(parts_->sender.clientId()), key, isTakenBack);
}

CError* CAudioInterfaceClient::beginStep(const CString& label, int32_t key) {
    return parts_->sender.send(kRecord, parts_->sender.newId(), true, label, key);
}

CError* CAudioInterfaceClient::endStep() {
    return parts_->sender.send(kRecord, parts_->sender.newId(), false, CString(), int32_t{-1});
}

CError* CAudioInterfaceClient::moveInHistory(CHistoryMove move, int32_t position, int32_t count) {
    return parts_->sender.send(kMoveInHistory, parts_->sender.newId(), static_cast<uint32_t>(move), position, count);
}

CError* CAudioInterfaceClient::undo(int32_t count) {
    return moveInHistory(CHistoryMove::Undo, 0, count);
}

CError* CAudioInterfaceClient::redo(int32_t count) {
    return moveInHistory(CHistoryMove::Redo, 0, count);
}

CError* CAudioInterfaceClient::selectStep(int32_t position) {
    return moveInHistory(CHistoryMove::Select, position, 0);
}

CError* CAudioInterfaceClient::findPresetStore(const CString& storeName, CAudioPresetStore*& store) {
    return parts_->presetStores.find(storeName, store);
}

CError* CAudioInterfaceClient::presetStoreChanged() {
    return parts_->presetStores.refresh();
}

CError* CAudioInterfaceClient::bindValue(const CString& name, int32_t count, uint32_t& id) {
    return parts_->values.bind(name, count, id);
}

CError* CAudioInterfaceClient::unbindValue(uint32_t id) {
    return parts_->values.unbind(id);
}

double CAudioInterfaceClient::boundValue(uint32_t id, int32_t index) const {
    return parts_->values.value(id, index);
}

CError* CAudioInterfaceClient::passData(const CByteBuffer& bytes) {
    return parts_->sender.send(kPass, parts_->sender.newId(), bytes);
}

const CByteBuffer& CAudioInterfaceClient::passedData() const {
    return parts_->state.passedData();
}

CString CAudioInterfaceClient::inputLabel(int32_t input) const {
    const CTextList& labels = parts_->state.inputLabels();
    return input >= 0 && input < labels.count() ? labels[input] : CString();
}

CString CAudioInterfaceClient::outputLabel(int32_t output) const {
    const CTextList& labels = parts_->state.outputLabels();
    return output >= 0 && output < labels.count() ? labels[output] : CString();
}

CError* CAudioInterfaceClient::keepBytes(const CString& key, const CByteBuffer& bytes) {
    parts_->state.noteKept(key, bytes);
    return parts_->sender.send(kKeepBytes, key, bytes);
}

const CByteBuffer& CAudioInterfaceClient::keptBytes(const CString& key) const {
    return parts_->state.keptBytes(key);
}

CError* CAudioInterfaceClient::requestCounts() {
    for (const uint32_t type : {kAskSampleRate, kAskIoCounts, kAskGroupCount, kAskInternalCount}) {
        TARV_TRY(parts_->sender.send(type, parts_->sender.newId()));
    }
    return nullptr;
}

const CInterfaceState& CAudioInterfaceClient::engineState() const {
    return parts_->state.engine();
}

CString CAudioInterfaceClient::groupName(int32_t group) const {
    const CString name = parts_->groupNames ? parts_->groupNames->name(group) : CString();
    return name.isEmpty() ? CString::fromInt(group + 1) : name;
}

CError* CAudioInterfaceClient::setProgram(const CString& registry, int32_t index) {
    return parts_->sender.send(kSetProgram, registry, index);
}

CError* CAudioInterfaceClient::renameProgram(const CString& registry, int32_t index, const CString& displayName) {
    return parts_->sender.send(kRenameProgram, registry, index, displayName);
}

CError* CAudioInterfaceClient::addProgram(const CString& registry, int32_t index, const CString& displayName) {
    return parts_->sender.send(kAddProgram, registry, index, displayName);
}

CError* CAudioInterfaceClient::deleteProgram(const CString& registry, int32_t index) {
    return parts_->sender.send(kDeleteProgram, registry, index);
}

CError* CAudioInterfaceClient::replaceProgram(const CString& registry, int32_t index) {
    return parts_->sender.send(kReplaceProgram, registry, index);
}

CError* CAudioInterfaceClient::activateRomPreset(const CString& registry, int32_t index) {
    return parts_->sender.send(kActivateRomPreset, registry, index);
}

CError* CAudioInterfaceClient::activateData(const CString& registry, const CByteBuffer& packed, int32_t group) {
    return parts_->sender.send(kActivateData, registry, group, packed);
}

CError* CAudioInterfaceClient::acquirePreset(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                             uint32_t& request, bool fromRom, int32_t index, int32_t group) {
    TARV_TRY(parts_->requests.acquirePreset(registry, listener, request, fromRom, index, group));
    attach(listener);
    return nullptr;
}

CError* CAudioInterfaceClient::acquireBank(const CString& registry, CAudioInterfaceRegistryListener& listener,
                                           uint32_t& request, bool fromRom) {
    TARV_TRY(parts_->requests.acquireBank(registry, listener, request, fromRom));
    attach(listener);
    return nullptr;
}

CError* CAudioInterfaceClient::setDefaultPreset(const CString& registry, const CByteBuffer& packed) {
    return parts_->sender.send(kSetDefaultPreset, registry, packed);
}

CError* CAudioInterfaceClient::clearDefaultPreset() {
    return parts_->sender.send(kClearDefaultPreset);
}

CError* CAudioInterfaceClient::requestDefaultPreset() {
    return parts_->sender.send(kAskDefaultPreset, parts_->sender.newId());
}

bool CAudioInterfaceClient::hasDefaultPreset() const {
    return parts_->state.hasDefaultPreset();
}

const CString& CAudioInterfaceClient::defaultPresetName() const {
    return parts_->state.defaultPresetName();
}

CError* CAudioInterfaceClient::swapAB(const CString& registry) {
    return parts_->sender.send(kSwapAB, registry);
}

CError* CAudioInterfaceClient::copyToAlternate(const CString& registry) {
    return parts_->sender.send(kCopyToAlternate, registry);
}

CError* CAudioInterfaceClient::resetState(const CString& registry) {
    return parts_->sender.send(kResetState, registry);
}

CError* CAudioInterfaceClient::masterReset(const CString& registry) {
    return parts_->sender.send(kMasterReset, registry);
}

}  // namespace tarv
