#pragma once

#include <utility>

#include "Core/CObject.h"
#include "Core/CObjectWatch.h"

namespace tarv {

/// The parameters of an event that an object sends again and again: for the length of this object's life they are out
/// of their owner's member, so that a handler may destroy the owner or have it send the event again; then they are
/// back, and the next time takes no memory. Thread: that of the owner.
class CKeptParams {
public:
    /// `kept` is a member of the owner. `own` is how many parameters the event has beside those of every send; where
    /// handlers have added more, nothing is kept.
    CKeptParams(CObject& owner, CAttributeMap& kept, size_t own)
        : params(std::move(kept)), watch_(owner), kept_(kept), most_(own + kOfSend) {}
    ~CKeptParams() {
        if (watch_.isAlive() && params.size() <= most_) {
            kept_ = std::move(params);
        }
    }
    CKeptParams(const CKeptParams&) = delete;
    CKeptParams& operator=(const CKeptParams&) = delete;

    /// Drops what handlers of former sends have added: all but what each send writes anew, and what `isOwn`, a
    /// function of a name, says.
    template <class IsOwn>
    static void dropAdded(CAttributeMap& params, IsOwn&& isOwn) {
        for (auto param = params.begin(); param != params.end();) {
            if (isOfSend(param->first) || isOwn(param->first)) {
                ++param;
            } else {
                param = params.erase(param);
            }
        }
    }

    CAttributeMap params;

private:
    // Sender, name, and three of each delivery.
    static constexpr size_t kOfSend = 5;
    static bool isOfSend(const CString& name) {
        static const CString names[kOfSend] = {"event-name", "listener", "listener-id", "listener-proc", "sender"};
        for (const CString& known : names) {
            if (known == name) {
                return true;
            }
        }
        return false;
    }

    CObjectWatch watch_;
    CAttributeMap& kept_;
    size_t most_;
};

}  // namespace tarv
