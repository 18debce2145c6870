#include "Audio/Client/CClientSubscriptions.h"

#include <algorithm>

#include "Audio/Client/CClientState.h"
#include "Audio/Parameters/CAudioParamChange.h"
#include "Audio/Parameters/CAudioParamDef.h"
#include "Audio/Parameters/CAudioParamStorage.h"
#include "Audio/Visuals/CAudioVizData.h"
#include "Core/CApplication.h"
#include "Core/CObjectWatch.h"

namespace tarv {

template <class Entry>
Entry* CClientSubscriptions::find(const COwnedArray<Entry>& entries, uint32_t id) {
    for (Entry* entry : entries) {
        if (entry->id.value() == id) {
            return entry;
        }
    }
    return nullptr;
}

CError* CClientSubscriptions::addParam(const CString& param, CAudioInterfaceParamListener& listener) {
    auto entry = std::make_unique<CParamEntry>(sender_, param, listener);
    const uint32_t flags = kSendAtOnce;
    TARV_TRY(sender_.send(kSubscribeParam, entry->id.value(), param, flags, uint32_t{0}));
    params_.append(entry.release());
    return nullptr;
}

CError* CClientSubscriptions::addRegistry(const CString& registry, CAudioInterfaceRegistryListener& listener) {
    auto entry = std::make_unique<CRegistryEntry>(sender_, registry, listener);
    TARV_TRY(sender_.send(kSubscribeRegistry, registry, entry->id.value()));
    registries_.append(entry.release());
    return nullptr;
}

CError* CClientSubscriptions::addVisual(const CString& source, CAudioInterfaceVizProcessor& processor) {
    auto entry = std::make_unique<CVizEntry>(sender_, source, processor);
    TARV_TRY(sender_.send(kSubscribeVisual, source, entry->id.value()));
    visuals_.append(entry.release());
    return nullptr;
}

template <class Entry>
void CClientSubscriptions::forgetIn(COwnedArray<Entry>& entries, const CAudioInterfaceListener& listener,
                                    uint32_t type) {
    for (int32_t i = entries.count() - 1; i >= 0; --i) {
        if (entries[i]->listener == &listener) {
            if (sender_.isConnected()) {
                TARV_CONSUME(sender_.send(type, entries[i]->id.value()));
            }
            delete entries[i];
            entries.removeAt(i);
        }
    }
}

void CClientSubscriptions::forget(const CAudioInterfaceListener& listener) {
    forgetIn(params_, listener, kUnsubscribeParam);
    forgetIn(registries_, listener, kUnsubscribeRegistry);
    forgetIn(visuals_, listener, kUnsubscribeVisual);
}

const CAudioParamInfo* CClientSubscriptions::paramInfo(const CAudioInterfaceParamListener& listener) const {
    for (const CParamEntry* entry : params_) {
        if (entry->listener == &listener) {
            return entry->info;
        }
    }
    return nullptr;
}

const CAudioParamData* CClientSubscriptions::paramData(const CAudioInterfaceParamListener& listener) const {
    for (const CParamEntry* entry : params_) {
        if (entry->listener == &listener && entry->info) {
            return &entry->data;
        }
    }
    return nullptr;
}

CError* CClientSubscriptions::takeValues(CPosInputStream& stream) {
    uint32_t id = 0;
    uint32_t request = 0;
    uint32_t form = 0;
    TARV_TRY(takeFields(stream, id, request, form));
    CParamEntry* entry = find(params_, id);
    if (!entry) {
        return nullptr;  // it was on its way when the listener left
    }
    return form == static_cast<uint32_t>(CValuesForm::Whole) ? takeWhole(stream, *entry) : takePart(stream, *entry);
}

CError* CClientSubscriptions::takeWhole(CPosInputStream& stream, CParamEntry& entry) {
    CString path;
    TARV_TRY(stream.readString(path));
    const auto* definition = CApplication::sharedRoot()->findObjectOf<CAudioParamDef>(path);
    if (!definition) {
        TARV_FAIL("@tarvstr_CClientSubscriptions_takeWhole_NoDefinition No definition '%1' of parameter '%2' found.",
                  path, entry.path);
    }
    CAudioParamData data;
    TARV_TRY(CAudioParamStorage::load(stream, definition->info(), data));
    TARV_TRY(expectMessageEnd(stream));
    const int32_t groups = std::max({entry.data.groupCount(), data.groupCount(), 1});
    entry.info = &definition->info();
    entry.data = std::move(data);
    const uint32_t id = entry.id.value();
    const CObjectWatch watch(owner_);
    for (int32_t group = 0; group < groups; ++group) {
        // The call for the group before may have destroyed the listener, or this object.
        CParamEntry* now = watch.isAlive() ? find(params_, id) : nullptr;
        if (!now) {
            break;
        }
        now->listener->onParamChanged(now->data, group, 0, now->data.elementCount(group), true);
    }
    return nullptr;
}

CError* CClientSubscriptions::takePart(CPosInputStream& stream, CParamEntry& entry) {
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
        TARV_FAIL("@tarvstr_CClientSubscriptions_takePart_InvalidPlace Parameter '%1' has no place for such values.",
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

CError* CClientSubscriptions::takeRegistry(CPosInputStream& stream) {
    uint32_t id = 0;
    CInterfaceRegistryState state;
    TARV_TRY(takeMessage(stream, id, state));
    state_.noteRegistry(state);
    CRegistryEntry* entry = find(registries_, id);
    if (entry && entry->isAlternate != state.isAlternate) {
        const CObjectWatch watch(owner_);
        entry->isAlternate = state.isAlternate;
        entry->listener->onAlternateChanged(state.isAlternate);
        entry = watch.isAlive() ? find(registries_, id) : nullptr;
    }
    if (entry) {
        entry->listener->onRegistryChanged(state);
    }
    return nullptr;
}

CError* CClientSubscriptions::takeFrame(CPosInputStream& stream) {
    uint32_t id = 0;
    uint32_t count = 0;
    TARV_TRY(takeFields(stream, id, count));
    const CObjectWatch watch(owner_);
    CVizEntry* entry = find(visuals_, id);
    for (uint32_t i = 0; i < count && entry; ++i) {
        CAudioVizData* read = nullptr;
        TARV_TRY(CAudioVizData::readAny(stream, read));
        const std::unique_ptr<CAudioVizData> data(read);
        if (!data) {
            break;  // where a record of an unknown kind ends is not known
        }
        entry->listener->processVizData(*data);
        entry = watch.isAlive() ? find(visuals_, id) : nullptr;
    }
    if (entry) {
        entry->listener->endVizFrame();
    }
    return nullptr;
}

CError* CClientSubscriptions::refresh() const {
    for (const CParamEntry* entry : params_) {
        TARV_TRY(sender_.send(kRequestValues, entry->id.value()));
    }
    for (const CRegistryEntry* entry : registries_) {
        TARV_TRY(sender_.send(kUnsubscribeRegistry, entry->id.value()));
        TARV_TRY(sender_.send(kSubscribeRegistry, entry->path, entry->id.value()));
    }
    return nullptr;
}

template <class Entry, class Notify>
void CClientSubscriptions::notifyAll(const COwnedArray<Entry>& entries, Notify&& notify) {
    CArray<uint32_t, 16> ids;
    for (const Entry* entry : entries) {
        ids.append(entry->id.value());
    }
    const CObjectWatch watch(owner_);
    for (int32_t i = 0; i < ids.count() && watch.isAlive(); ++i) {
        if (const Entry* entry = find(entries, ids[i])) {
            notify(*entry->listener);
        }
    }
}

void CClientSubscriptions::engineGone() {
    const CObjectWatch watch(owner_);
    notifyAll(params_, [](CAudioInterfaceParamListener& listener) { listener.onParamGone(); });
    if (watch.isAlive()) {
        notifyAll(registries_, [](CAudioInterfaceRegistryListener& listener) { listener.onRegistryGone(); });
    }
}

}  // namespace tarv
