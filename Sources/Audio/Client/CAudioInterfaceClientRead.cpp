// What comes from the engine.

#include <algorithm>

#include "Audio/Client/CAudioInterfaceClient.h"
#include "Audio/Client/CAudioInterfaceClientEntries.h"
#include "Audio/Messages/CAudioInterfaceClientConnector.h"
#include "Audio/Parameters/CAudioParamChange.h"
#include "Audio/Parameters/CAudioParamDef.h"
#include "Audio/Parameters/CAudioParamStorage.h"
#include "Audio/Visuals/CAudioVizData.h"
#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"

namespace tarv {

constexpr CAudioInterfaceClient::CHandlerRow CAudioInterfaceClient::kHandlers[] = {
    {kFullState, &CAudioInterfaceClient::takeState},
    {kParamValues, &CAudioInterfaceClient::takeValues},
    {kRegistryChanged, &CAudioInterfaceClient::takeRegistry},
    {kGroupNames, &CAudioInterfaceClient::takeGroupNames},
    {kHistory, &CAudioInterfaceClient::takeHistory},
    {kSampleRate, &CAudioInterfaceClient::takeSampleRate},
    {kIoCounts, &CAudioInterfaceClient::takeIoCounts},
    {kGroupCount, &CAudioInterfaceClient::takeGroupCount},
    {kInternalCount, &CAudioInterfaceClient::takeInternalCount},
    {kFrame, &CAudioInterfaceClient::takeFrame},
    {kData, &CAudioInterfaceClient::takeData},
    {kDefaultPreset, &CAudioInterfaceClient::takeDefaultPreset},
};

CError* CAudioInterfaceClient::processMessage(CPosInputStream& stream) {
    static_assert(isKeyedByType(kHandlers, kFirstBaseMessage, kMessageCount));
    uint32_t type = 0;
    TARV_TRY(stream.readValue(type));
    if (type < kFirstBaseMessage || type >= kMessageCount) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_processMessage_InvalidType Invalid data type %1.",
                  CString::fromInt(type));
    }
    // The last of what each of them does is to call the editor's code: that may destroy this object.
    return (this->*kHandlers[type - kFirstBaseMessage].handle)(stream);
}

CError* CAudioInterfaceClient::tell(const CString& eventName) {
    CAttributeMap none;
    return sendEvent(eventName, none, false);
}

CError* CAudioInterfaceClient::takeState(CPosInputStream& stream) {
    uint32_t request = 0;
    CInterfaceState state;
    TARV_TRY(takeMessage(stream, request, state));
    state_ = std::move(state);
    return tell("engine-state");
}

CError* CAudioInterfaceClient::takeValues(CPosInputStream& stream) {
    uint32_t id = 0;
    uint32_t request = 0;
    uint32_t form = 0;
    TARV_TRY(takeFields(stream, id, request, form));
    CParamEntry* entry = entryOf(params_, id);
    if (!entry) {
        return nullptr;  // it was on its way when the listener left
    }
    return form == static_cast<uint32_t>(CValuesForm::Whole) ? takeWhole(stream, *entry) : takePart(stream, *entry);
}

CError* CAudioInterfaceClient::takeWhole(CPosInputStream& stream, CParamEntry& entry) {
    CString path;
    TARV_TRY(stream.readString(path));
    const auto* definition = CApplication::sharedRoot()->findObjectOf<CAudioParamDef>(path);
    if (!definition) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_takeWhole_NoDefinition No definition '%1' of parameter '%2' found.",
                  path, entry.path);
    }
    CAudioParamData data;
    TARV_TRY(CAudioParamStorage::load(stream, definition->info(), data));
    TARV_TRY(expectMessageEnd(stream));
    const int32_t groups = std::max({entry.data.groupCount(), data.groupCount(), 1});
    entry.info = &definition->info();
    entry.data = std::move(data);
    const uint32_t id = entry.id;
    const CObjectWatch watch(*this);
    for (int32_t group = 0; group < groups; ++group) {
        // The call for a former group may have destroyed the listener, or this object.
        CParamEntry* now = watch.isAlive() ? entryOf(params_, id) : nullptr;
        if (!now) {
            break;
        }
        now->listener->onParamChanged(now->data, group, 0, now->data.elementCount(group), true);
    }
    return nullptr;
}

CError* CAudioInterfaceClient::takePart(CPosInputStream& stream, CParamEntry& entry) {
    if (!entry.info) {
        return nullptr;  // the whole value is on its way
    }
    int32_t group = 0;
    int32_t first = 0;
    int32_t count = 0;
    int32_t held = 0;
    int32_t size = 0;
    TARV_TRY(takeFields(stream, group, first, count, held, size));
    const bool isPlace = group >= 0 && first >= 0 && count >= 0 && held >= first && count <= held - first &&
                         held <= CAudioParamData::kElementLimit;
    if (!isPlace || size != (entry.data.isString() ? 0 : entry.data.elementSize())) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_takePart_InvalidPlace Parameter '%1' has no place for such values.",
                  entry.path);
    }
    CAudioParamData pool;
    CAudioParamChange change;
    change.group = group;
    change.first = first;
    change.count = count;
    change.elementSize = entry.data.elementSize();
    change.isString = entry.data.isString() ? 1 : 0;
    change.sourcePool = &pool;
    for (int32_t i = 0; i < count * change.elementSize; ++i) {
        CString text;
        double number = 0.0;
        TARV_TRY(size == 0 ? takeField(stream, text) : takeField(stream, number));
        change.values.append(size == 0 ? pool.addString(text) : number);
    }
    TARV_TRY(expectMessageEnd(stream));
    entry.data.apply(change);
    const bool isReplacing = entry.data.elementCount(group) != held;
    if (isReplacing) {
        CAudioParamChange end;
        end.group = group;
        end.first = held;
        end.resize = 1;
        end.elementSize = change.elementSize;
        end.isString = change.isString;
        end.sourcePool = &pool;
        entry.data.apply(end);
    }
    entry.listener->onParamChanged(entry.data, group, first, count, isReplacing);
    return nullptr;
}

const CAudioParamInfo* CAudioInterfaceClient::paramInfo(const CAudioInterfaceParamListener& listener) const {
    for (const CParamEntry* entry : params_) {
        if (entry->listener == &listener) {
            return entry->info;
        }
    }
    return nullptr;
}

const CAudioParamData* CAudioInterfaceClient::paramData(const CAudioInterfaceParamListener& listener) const {
    for (const CParamEntry* entry : params_) {
        if (entry->listener == &listener && entry->info) {
            return &entry->data;
        }
    }
    return nullptr;
}

CError* CAudioInterfaceClient::takeRegistry(CPosInputStream& stream) {
    uint32_t id = 0;
    CInterfaceRegistryState state;
    TARV_TRY(takeMessage(stream, id, state));
    for (CInterfaceRegistryState& known : state_.registries) {
        if (known.path == state.path) {
            known = state;
        }
    }
    CRegistryEntry* entry = entryOf(registries_, id);
    if (entry && entry->isAlternate != state.isAlternate) {
        const CObjectWatch watch(*this);
        entry->isAlternate = state.isAlternate;
        entry->listener->onAlternateChanged(state.isAlternate);
        entry = watch.isAlive() ? entryOf(registries_, id) : nullptr;
    }
    if (entry) {
        entry->listener->onRegistryChanged(state);
    }
    return nullptr;
}

CError* CAudioInterfaceClient::takeGroupNames(CPosInputStream& stream) {
    uint32_t id = 0;
    uint32_t request = 0;
    CTextList names;
    TARV_TRY(takeMessage(stream, id, request, names));
    if (!groupNames_ || groupNames_->id != id) {
        return nullptr;
    }
    groupNames_->names = std::move(names);
    return tell("group-names-changed");
}

CString CAudioInterfaceClient::groupName(int32_t group) const {
    const bool isNamed = groupNames_ && group >= 0 && group < groupNames_->names.count();
    return isNamed && !groupNames_->names[group].isEmpty() ? groupNames_->names[group] : CString::fromInt(group + 1);
}

CError* CAudioInterfaceClient::takeHistory(CPosInputStream& stream) {
    CInterfaceHistory history;
    TARV_TRY(takeMessage(stream, history));
    state_.history = std::move(history);
    return tell("undo-history-changed");
}

CError* CAudioInterfaceClient::takeSampleRate(CPosInputStream& stream) {
    uint32_t request = 0;
    double rate = 0.0;
    TARV_TRY(takeMessage(stream, request, rate));
    state_.sampleRate = rate;
    return tell("update-sample-rate");
}

CError* CAudioInterfaceClient::takeIoCounts(CPosInputStream& stream) {
    uint32_t request = 0;
    CInterfaceCounts counts = state_.counts;
    TARV_TRY(takeMessage(stream, request, counts.inputs, counts.outputs, counts.sidechain));
    state_.counts = counts;
    return tell("update-io-channel-counts");
}

CError* CAudioInterfaceClient::takeGroupCount(CPosInputStream& stream) {
    uint32_t request = 0;
    int32_t count = 0;
    TARV_TRY(takeMessage(stream, request, count));
    state_.counts.groups = count;
    return tell("update-group-count");
}

CError* CAudioInterfaceClient::takeInternalCount(CPosInputStream& stream) {
    uint32_t request = 0;
    int32_t count = 0;
    TARV_TRY(takeMessage(stream, request, count));
    state_.counts.internalChannels = count;
    return tell("update-internal-channel-count");
}

CError* CAudioInterfaceClient::takeDefaultPreset(CPosInputStream& stream) {
    uint32_t request = 0;
    bool isThere = false;
    CString name;
    TARV_TRY(takeMessage(stream, request, isThere, name));
    hasDefaultPreset_ = isThere;
    defaultPresetName_ = name;
    return tell("default-preset-update");
}

CError* CAudioInterfaceClient::takeFrame(CPosInputStream& stream) {
    uint32_t id = 0;
    uint32_t count = 0;
    TARV_TRY(takeFields(stream, id, count));
    const CObjectWatch watch(*this);
    CVizEntry* entry = entryOf(visuals_, id);
    for (uint32_t i = 0; i < count && entry; ++i) {
        CAudioVizData* read = nullptr;
        TARV_TRY(CAudioVizData::readAny(stream, read));
        const std::unique_ptr<CAudioVizData> data(read);
        if (!data) {
            break;  // where a record of an unknown kind ends is not known
        }
        entry->listener->processVizData(*data);
        entry = watch.isAlive() ? entryOf(visuals_, id) : nullptr;
    }
    if (entry) {
        entry->listener->endVizFrame();
    }
    return nullptr;
}

CError* CAudioInterfaceClient::takeData(CPosInputStream& stream) {
    static constexpr CHandler kKinds[] = {&CAudioInterfaceClient::takeAnswer, &CAudioInterfaceClient::takeBoundValue,
                                          &CAudioInterfaceClient::takePassed};
    uint32_t kind = 0;
    TARV_TRY(stream.readValue(kind));
    if (kind == static_cast<uint32_t>(CDataKind::Clear)) {
        TARV_TRY(expectMessageEnd(stream));
        return tell("clear");
    }
    if (kind > static_cast<uint32_t>(CDataKind::Clear)) {
        TARV_FAIL("@tarvstr_CAudioInterfaceClient_takeData_InvalidKind Invalid data kind %1.", CString::fromInt(kind));
    }
    return (this->*kKinds[kind])(stream);
}

CError* CAudioInterfaceClient::takeAnswer(CPosInputStream& stream) {
    uint32_t request = 0;
    CByteBuffer bytes;
    TARV_TRY(takeMessage(stream, request, bytes));
    const auto found = requests_.find(request);
    if (found != requests_.end()) {
        CAudioInterfaceRegistryListener& listener = *found->second;
        requests_.erase(found);
        listener.onDataAcquired(request, bytes);
    }
    return nullptr;
}

CError* CAudioInterfaceClient::takeBoundValue(CPosInputStream& stream) {
    uint32_t id = 0;
    CNumberList numbers;
    TARV_TRY(takeMessage(stream, id, numbers));
    for (CBoundEntry* entry : values_) {
        if (entry->id == id) {
            entry->numbers = std::move(numbers);
            CAttributeMap params;
            params["id"] = CAttributeValue::fromInt(static_cast<int32_t>(id));
            return sendEvent("bound-value-changed", params, false);
        }
    }
    return nullptr;
}

CError* CAudioInterfaceClient::takePassed(CPosInputStream& stream) {
    uint32_t request = 0;
    CByteBuffer bytes;
    TARV_TRY(takeMessage(stream, request, bytes));
    passedData_ = std::move(bytes);
    return tell("data-passed");
}

CError* CAudioInterfaceClient::refresh() {
    TARV_TRY(send(kRequestState, newId()));
    TARV_TRY(requestDefaultPreset());
    for (const CParamEntry* entry : params_) {
        TARV_TRY(send(kRequestValues, entry->id));
    }
    for (const CBoundEntry* entry : values_) {
        TARV_TRY(send(kRequestValues, entry->id));
    }
    if (groupNames_) {
        TARV_TRY(send(kRequestValues, groupNames_->id));
    }
    for (CRegistryEntry* entry : registries_) {
        TARV_TRY(send(kUnsubscribeRegistry, entry->id));
        TARV_TRY(send(kSubscribeRegistry, entry->path, entry->id));
    }
    return nullptr;
}

void CAudioInterfaceClient::engineGone() {
    const CObjectWatch watch(*this);
    CArray<uint32_t, 16> params;
    for (const CParamEntry* entry : params_) {
        params.append(entry->id);
    }
    for (int32_t i = 0; i < params.count() && watch.isAlive(); ++i) {
        if (const CParamEntry* entry = entryOf(params_, params[i])) {
            entry->listener->onParamGone();
        }
    }
    CArray<uint32_t, 4> registries;
    for (int32_t i = 0; watch.isAlive() && i < registries_.count(); ++i) {
        registries.append(registries_[i]->id);
    }
    for (int32_t i = 0; i < registries.count() && watch.isAlive(); ++i) {
        if (const CRegistryEntry* entry = entryOf(registries_, registries[i])) {
            entry->listener->onRegistryGone();
        }
    }
    if (watch.isAlive()) {
        TARV_CONSUME(tell("engine-gone"));
    }
}

}  // namespace tarv
