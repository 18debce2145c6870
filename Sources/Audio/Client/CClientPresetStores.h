#pragma once

#include <atomic>

#include "Audio/Client/CAudioPresetStore.h"
#include "Core/CObject.h"

namespace tarv {

/// The preset stores that an editor uses, opened at the first call for each. When any editor of the process writes one,
/// the owner's event kChangedEvent is posted to the editor's thread, where the owner calls `refresh`.
class CClientPresetStores {
public:
    static constexpr const char* kChangedEvent = "preset-store-changed";

    explicit CClientPresetStores(CObject& owner) : owner_(owner) {}
    /// Ends the notifications, which come on other threads.
    void close() { stores_.deleteAll(); }

    /// The store of a `store-name`, as long as this object. Fails for a name without a store. The editor's thread.
    [[nodiscard]] CError* find(const CString& storeName, CAudioPresetStore*& store);
    /// Reads the stores again that were written, and sends the owner's event `shared-banks-update` (`store-name`) for
    /// each. Its handlers may destroy the owner. The editor's thread.
    [[nodiscard]] CError* refresh();

private:
    static void written(void* user);

    CObject& owner_;
    COwnedArray<CAudioPresetStore, 2> stores_;
    std::atomic<bool> isPosted_{false};
};

}  // namespace tarv
