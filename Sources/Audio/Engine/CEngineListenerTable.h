#pragma once

#include <map>

#include "Audio/Messages/CAudioInterfaceMessage.h"

namespace tarv {

/// Listeners of one kind and the ids under which clients subscribed them. A listener lives as long as the table, since
/// what it listens to calls it outside all locks. The ids belong to the connector's call lock; the listeners are read
/// on any thread.
template <class Listener>
class CEngineListenerTable {
public:
    /// The listener for which `matches(const Listener&)` holds, otherwise the new one that `make()` gives.
    template <class Matches, class Make>
    Listener& findOrMake(Matches&& matches, Make&& make) {
        CLockScope scope(lock_);
        for (Listener* listener : listeners_) {
            if (matches(*listener)) {
                return *listener;
            }
        }
        listeners_.append(make());
        return *listeners_.last();
    }
    CArray<Listener*, 16> listeners() const {
        CLockScope scope(lock_);
        CArray<Listener*, 16> all;
        for (Listener* listener : listeners_) {
            all.append(listener);
        }
        return all;
    }

    /// The listener that an id subscribed, or null. Under the call lock, as all below.
    Listener* find(uint32_t id) const {
        const auto found = ids_.find(id);
        return found != ids_.end() ? found->second : nullptr;
    }
    void subscribe(uint32_t id, Listener& listener) { ids_[id] = &listener; }
    /// Ends a subscription; returns whether there was one.
    bool unsubscribe(uint32_t id) {
        Listener* listener = find(id);
        if (listener) {
            listener->remove(id);
            ids_.erase(id);
        }
        return listener != nullptr;
    }
    /// Ends all subscriptions of a client.
    void clientGone(int32_t client) {
        for (auto entry = ids_.lower_bound(tickIdOf(client));
             entry != ids_.end() && clientOf(entry->first) == client;) {
            entry->second->remove(entry->first);
            entry = ids_.erase(entry);
        }
    }

private:
    std::map<uint32_t, Listener*, std::less<uint32_t>, CHeapAllocator<std::pair<const uint32_t, Listener*>>> ids_;
    mutable CLock lock_;  // guards the array, not what it owns
    COwnedArray<Listener, 4> listeners_;
};

}  // namespace tarv
