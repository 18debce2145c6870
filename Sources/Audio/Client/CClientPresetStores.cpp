#include "Audio/Client/CClientPresetStores.h"

#include "Core/CNotifyServer.h"
#include "Core/CObjectWatch.h"

namespace tarv {

CError* CClientPresetStores::find(const CString& storeName, CAudioPresetStore*& store) {
    for (CAudioPresetStore* known : stores_) {
        if (storeName == known->form().name) {
            store = known;
            return nullptr;
        }
    }
    const CAudioPresetStoreForm* form = CAudioPresetStore::findForm(storeName);
    if (!form) {
        TARV_FAIL("@tarvstr_CClientPresetStores_find_NoStore No preset store '%1' found.", storeName);
    }
    store = new CAudioPresetStore(*form, &written, this);
    stores_.append(store);
    return nullptr;
}

// On the thread that writes, with the store's lock held: a post notifies the editor's code.
void CClientPresetStores::written(void* user) {
    auto& stores = *static_cast<CClientPresetStores*>(user);
    CNotifyServer* server = stores.owner_.notifyServer();
    if (!server || stores.isPosted_.exchange(true)) {
        return;
    }
    CAttributeMap params;
    if (CError* error = server->sendPosted(stores.owner_.fullName(), kChangedEvent, params)) {
        stores.isPosted_ = false;
        TARV_CONSUME(error);
    }
}

CError* CClientPresetStores::refresh() {
    isPosted_ = false;
    CArray<CString, 2> changed;
    for (CAudioPresetStore* store : stores_) {
        if (store->refreshIfChanged()) {
            changed.append(store->form().name);
        }
    }
    const CObjectWatch watch(owner_);
    for (int32_t i = 0; i < changed.count() && watch.isAlive(); ++i) {
        CAttributeMap params;
        params["store-name"] = CAttributeValue::fromString(changed[i]);
        if (CError* error = owner_.sendEvent("shared-banks-update", params, false)) {
            return error;
        }
    }
    return nullptr;
}

}  // namespace tarv
