#include "Audio/Client/CAudioInterfaceClient.h"

#include "Audio/Client/CAudioInterfaceClientEntries.h"
#include "Core/CNotifyServer.h"

namespace tarv {

namespace {

constexpr uint32_t kNumbers = 0xffff;
constexpr const char* kStoreChanged = "preset-store-changed";

}  // namespace

CAudioInterfaceListener::~CAudioInterfaceListener() {
    if (client_) {
        client_->removeListener(*this);
    }
}

CAudioInterfaceClient::CAudioInterfaceClient() = default;

CError* CAudioInterfaceClient::initClass(CClassDescriptor& descriptor) {
    descriptor.addHandler<&CAudioInterfaceClient::presetStoreChanged>(kStoreChanged);
    return nullptr;
}

CAudioInterfaceClient::~CAudioInterfaceClient() {
    presetStores_.deleteAll();  // their notifications come on other threads
    // Each listener is let go before the lists are; the engine gets a message of each subscription that ends.
    while (!listeners_.isEmpty()) {
        removeListener(*listeners_.last());
    }
    while (!values_.isEmpty()) {
        TARV_CONSUME(unbindValue(values_.last()->id));
    }
    if (groupNames_ && connector_) {
        TARV_CONSUME(send(kUnsubscribeParam, groupNames_->id));
    }
    if (connector_) {
        connector_->unsetClient(*this);
    }
}

CError* CAudioInterfaceClient::init() {
    TARV_TRY(CObject::init());
    connector_ = findObjectOf<CAudioInterfaceClientConnector>(getAttrString("client-connector"));
    if (!connector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_init_NoClientConnector No client connector '%1' found.",
                  getAttrString("client-connector"));
    }
    if (CError* error = connector_->setClient(*this)) {
        connector_ = nullptr;
        return addErrorLocation(error, __FILE__, __LINE__, fullName(), CString());
    }
    listenObject(fullName(), kStoreChanged, kStoreChanged);
    TARV_TRY(send(kRequestState, newId()));
    TARV_TRY(requestDefaultPreset());
    const CString& groupNames = getAttrString("group-names-param");
    if (!groupNames.isEmpty()) {
        groupNames_ = std::make_unique<CGroupNamesParamListener>();
        groupNames_->path = groupNames;
        groupNames_->id = newId();
        const uint32_t flags = kSendAtOnce | kAsGroupNames;
        TARV_TRY(send(kSubscribeParam, groupNames_->id, groupNames, flags, uint32_t{0}));
    }
    return nullptr;
}

CError* CAudioInterfaceClient::requireConnector() const {
    if (!connector_) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_requireConnector_NoConnector No client connector defined.");
    }
    return nullptr;
}

CError* CAudioInterfaceClient::deliver(const CByteBuffer& message) const {
    TARV_TRY(requireConnector());
    TARV_TRY(connector_->sendToBase(message));
    return nullptr;
}

bool CAudioInterfaceClient::isUsed(uint32_t id) const {
    const auto holds = [id](const auto& entries) {
        for (const auto* entry : entries) {
            if (entry->id == id) {
                return true;
            }
        }
        return false;
    };
    return holds(params_) || holds(registries_) || holds(visuals_) || holds(values_) || requests_.count(id) > 0 ||
           (groupNames_ && groupNames_->id == id);
}

uint32_t CAudioInterfaceClient::newId() {
    const uint32_t client = connector_ ? static_cast<uint32_t>(connector_->clientId()) << 16 : 0;
    // In turn, so that a message that is still on its way meets nobody new.
    do {
        lastNumber_ = lastNumber_ % kNumbers + 1;
    } while (isUsed(client | lastNumber_));
    return client | lastNumber_;
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

CError* CAudioInterfaceClient::addParamListener(const CString& param, CAudioInterfaceParamListener& listener) {
    const uint32_t id = newId();
    const uint32_t flags = kSendAtOnce;
    TARV_TRY(send(kSubscribeParam, id, param, flags, uint32_t{0}));
    attach(listener);
    auto* entry = new CParamEntry;
    entry->id = id;
    entry->path = param;
    entry->listener = &listener;
    params_.append(entry);
    return nullptr;
}

CError* CAudioInterfaceClient::addRegistryListener(const CString& registry, CAudioInterfaceRegistryListener& listener) {
    const uint32_t id = newId();
    TARV_TRY(send(kSubscribeRegistry, registry, id));
    attach(listener);
    auto* entry = new CRegistryEntry;
    entry->id = id;
    entry->path = registry;
    entry->listener = &listener;
    registries_.append(entry);
    return nullptr;
}

CError* CAudioInterfaceClient::addVizProcessor(const CString& source, CAudioInterfaceVizProcessor& processor) {
    const uint32_t id = newId();
    TARV_TRY(send(kSubscribeVisual, source, id));
    attach(processor);
    auto* entry = new CVizEntry;
    entry->id = id;
    entry->listener = &processor;
    visuals_.append(entry);
    return nullptr;
}

template <class Entry>
void CAudioInterfaceClient::forget(COwnedArray<Entry>& entries, const CAudioInterfaceListener& listener,
                                   uint32_t type) {
    for (int32_t i = entries.count() - 1; i >= 0; --i) {
        if (entries[i]->listener == &listener) {
            if (connector_) {
                TARV_CONSUME(send(type, entries[i]->id));
            }
            delete entries[i];
            entries.removeAt(i);
        }
    }
}

void CAudioInterfaceClient::removeListener(CAudioInterfaceListener& listener) {
    if (listener.client_ != this) {
        return;
    }
    listener.client_ = nullptr;
    listeners_.removeAt(listeners_.indexOf(&listener));
    forget(params_, listener, kUnsubscribeParam);
    forget(registries_, listener, kUnsubscribeRegistry);
    forget(visuals_, listener, kUnsubscribeVisual);
    for (auto request = requests_.begin(); request != requests_.end();) {
        request = request->second == &listener ? requests_.erase(request) : std::next(request);
    }
}

CError* CAudioInterfaceClient::requestFrames() {
    TARV_TRY(requireConnector());
    TARV_TRY(send(kRequestValues, tickIdOf(connector_->clientId())));
    return nullptr;
}

CError* CAudioInterfaceClient::requirePlace(const CString& param, int32_t group, int32_t first, int32_t count) const {
    if (group < 0 || first < 0 || count < 0 || count > CAudioParamData::kElementLimit) {
        TARV_FAIL(
            "@tarvstr_CAudioInterfaceClient_requirePlace_InvalidPlace Parameter '%1' has no place for %2 elements from "
            "%3 on in group %4.",
            param, CString::fromInt(count), CString::fromInt(first), CString::fromInt(group));
    }
    return nullptr;
}

CError* CAudioInterfaceClient::setHead(COutputStream& stream, const CString& param, int32_t group, int32_t first,
                                       int32_t count, uint32_t flags) const {
    TARV_TRY(putFields(stream, static_cast<uint32_t>(kSetValues), uint32_t{0}, param, group, first, count, flags));
    return nullptr;
}

CError* CAudioInterfaceClient::setTail(CMemoryWriteBuffer& stream, const CInterfaceUndo& undo) const {
    TARV_TRY(putFields(stream, undo.label, undo.key));
    CByteBuffer message;
    stream.copyTo(message);
    TARV_TRY(deliver(message));
    return nullptr;
}

CError* CAudioInterfaceClient::setNumbers(const CString& param, int32_t group, int32_t first, const double* numbers,
                                          int32_t elements, int32_t elementSize, const CInterfaceUndo& undo,
                                          bool isReplacing) {
    TARV_TRY(requirePlace(param, group, first, elements));
    CMemoryWriteBuffer stream;
    TARV_TRY(setHead(stream, param, group, first, elements,
                     (isReplacing ? kIsReplacing : 0u) | (undo.isRecorded ? kIsRecorded : 0u)));
    for (int32_t i = 0; i < elements * elementSize; ++i) {
        TARV_TRY(putField(stream, numbers[i]));
    }
    TARV_TRY(setTail(stream, undo));
    return nullptr;
}

CError* CAudioInterfaceClient::setTexts(const CString& param, int32_t group, int32_t first, const CTextList& texts,
                                        const CInterfaceUndo& undo, bool isReplacing) {
    TARV_TRY(requirePlace(param, group, first, texts.count()));
    CMemoryWriteBuffer stream;
    TARV_TRY(setHead(stream, param, group, first, texts.count(),
                     (isReplacing ? kIsReplacing : 0u) | (undo.isRecorded ? kIsRecorded : 0u)));
    for (const CString& text : texts) {
        TARV_TRY(putField(stream, text));
    }
    TARV_TRY(setTail(stream, undo));
    return nullptr;
}

CError* CAudioInterfaceClient::beginStep(const CString& label, int32_t key) {
    TARV_TRY(send(kRecord, newId(), true, label, key));
    return nullptr;
}

CError* CAudioInterfaceClient::endStep() {
    TARV_TRY(send(kRecord, newId(), false, CString(), int32_t{-1}));
    return nullptr;
}

CError* CAudioInterfaceClient::undo(int32_t count) {
    TARV_TRY(send(kMoveInHistory, newId(), static_cast<uint32_t>(CHistoryMove::Undo), int32_t{0}, count));
    return nullptr;
}

CError* CAudioInterfaceClient::redo(int32_t count) {
    TARV_TRY(send(kMoveInHistory, newId(), static_cast<uint32_t>(CHistoryMove::Redo), int32_t{0}, count));
    return nullptr;
}

CError* CAudioInterfaceClient::selectStep(int32_t position) {
    TARV_TRY(send(kMoveInHistory, newId(), static_cast<uint32_t>(CHistoryMove::Select), position, int32_t{0}));
    return nullptr;
}

CError* CAudioInterfaceClient::findPresetStore(const CString& storeName, CAudioPresetStore*& store) {
    for (CAudioPresetStore* known : presetStores_) {
        if (storeName == known->form().name) {
            store = known;
            return nullptr;
        }
    }
    const CAudioPresetStoreForm* form = CAudioPresetStore::findForm(storeName);
    if (!form) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_findPresetStore_NoStore No preset store '%1' found.", storeName);
    }
    store = new CAudioPresetStore(*form, &presetStoreWritten, this);
    presetStores_.append(store);
    return nullptr;
}

// On the thread that writes, with the store's lock held: a post notifies the editor's code.
void CAudioInterfaceClient::presetStoreWritten(void* user) {
    auto& client = *static_cast<CAudioInterfaceClient*>(user);
    if (!client.notifyServer() || client.isStorePosted_.exchange(true)) {
        return;
    }
    CAttributeMap params;
    if (CError* error = client.notifyServer()->sendPosted(client.fullName(), kStoreChanged, params)) {
        client.isStorePosted_ = false;
        TARV_CONSUME(error);
    }
}

CError* CAudioInterfaceClient::presetStoreChanged() {
    isStorePosted_ = false;
    CArray<CString, 2> changed;
    for (CAudioPresetStore* store : presetStores_) {
        if (store->refreshIfChanged()) {
            changed.append(store->form().name);
        }
    }
    for (int32_t i = 0; i < changed.count() && isLive(this); ++i) {
        CAttributeMap params;
        params["store-name"] = CAttributeValue::fromString(changed[i]);
        if (CError* error = sendEvent("shared-banks-update", params, false)) {
            return error;
        }
    }
    return nullptr;
}

CError* CAudioInterfaceClient::bindValue(const CString& name, int32_t count, uint32_t& id) {
    id = newId();
    TARV_TRY(send(kBindValue, id, name, count));
    auto* entry = new CBoundEntry;
    entry->id = id;
    entry->numbers.resize(count);
    values_.append(entry);
    return nullptr;
}

CError* CAudioInterfaceClient::unbindValue(uint32_t id) {
    for (int32_t i = 0; i < values_.count(); ++i) {
        if (values_[i]->id == id) {
            delete values_[i];
            values_.removeAt(i);
        }
    }
    TARV_TRY(send(kUnbindValue, id));
    return nullptr;
}

double CAudioInterfaceClient::boundValue(uint32_t id, int32_t index) const {
    for (const CBoundEntry* entry : values_) {
        if (entry->id == id && index >= 0 && index < entry->numbers.count()) {
            return entry->numbers[index];
        }
    }
    return 0.0;
}

CError* CAudioInterfaceClient::passData(const CByteBuffer& bytes) {
    TARV_TRY(send(kPass, newId(), bytes));
    return nullptr;
}

CError* CAudioInterfaceClient::importChannelLabels() {
    TARV_TRY(send(kImportLabels));
    return nullptr;
}

CError* CAudioInterfaceClient::requestCounts() {
    for (const uint32_t type : {kAskSampleRate, kAskIoCounts, kAskGroupCount, kAskInternalCount}) {
        TARV_TRY(send(type, newId()));
    }
    return nullptr;
}

}  // namespace tarv
