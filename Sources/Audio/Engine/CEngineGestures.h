#pragma once

#include <atomic>

#include "Audio/Engine/CEngineSender.h"
#include "Audio/Parameters/CAudioExtParamGathering.h"

namespace tarv {

class CAudioParamUndo;
class CEngineSubscriptions;

/// What persons do in the editors, as the host is notified of it: the begin of an edit of each host parameter that
/// changes, its values, the end. A gesture that goes on keeps its edits open until it ends, anything else opens and
/// ends them around its values. Its lock is held for the table alone and never when the host is called.
class CEngineGestures {
public:
    /// Gestures that all clients together may have open.
    static constexpr int32_t kLimit = 64;

    explicit CEngineGestures(const CEngineSender& sender) : sender_(sender) {}
    /// The host's parameters, or null. Before any message.
    void setHostParams(CAudioExtParamList* params) { params_ = params; }

    /// One action of a person, while it lives: gathers what it changes of the host's parameters, and notifies the host
    /// at its end. Under the connector's call lock; may end with the client gone.
    class CAction {
    public:
        /// Anything but values that a client sets.
        explicit CAction(CEngineGestures& gestures) : gestures_(gestures), gathering_(gestures.params_) {}
        /// Values that a client sets, of the gesture of a key if it is held. They cancel no gesture.
        CAction(CEngineGestures& gestures, int32_t client, int32_t key, bool isHeld);
        CAction(const CAction&) = delete;
        CAction& operator=(const CAction&) = delete;
        ~CAction();

    private:
        CEngineGestures& gestures_;
        CAudioExtParamGathering gathering_;
        int32_t client_ = -1;
        int32_t key_ = -1;
        bool isHeld_ = false;
        bool isEdit_ = false;
        uint64_t outerThread_ = 0;
    };

    // One message each, under the call lock.
    [[nodiscard]] CError* begin(CInputStream& stream, const CEngineSubscriptions& subscriptions);
    /// A gesture that is taken back ends with the values before it, without its step in the history; one that was
    /// cancelled keeps the new values.
    [[nodiscard]] CError* end(CInputStream& stream, CAudioParamUndo& history);
    /// Ends the gestures of a client. Under the call lock.
    void clientGone(int32_t client);

    /// Fails if a held gesture is not among the open ones and cannot become one.
    [[nodiscard]] CError* requireRoom(int32_t client, int32_t key);
    /// Whether the gesture was cancelled: its values are taken no more.
    bool isCancelled(int32_t key) const;
    /// Cancels all gestures, unless values of a client are being set on this thread: the history moved, or a state
    /// came. The caller holds no lock of the engine. Any thread but the audio thread.
    void cancelAll();

private:
    using CIndexes = CAudioExtParamGathering::CIndexes;

    struct CGesture : public CHeapObject {
        int32_t client = -1;
        int32_t key = -1;
        bool isCancelled = false;
        CIndexes held;
    };

    // Under the lock.
    CGesture* find(int32_t key) const;
    CGesture* findOrOpen(int32_t client, int32_t key);
    void hold(const CIndexes& indexes);
    void release(const CIndexes& indexes);

    /// Notifies the host of the changes of an action.
    void report(const CIndexes& changed, int32_t client, int32_t key, bool isHeld);
    void endEdits(bool (*isMeant)(const CGesture&, int32_t), int32_t number);
    /// Notifies the host of each of these whose edit has begun or ended since it heard of it. A host may act inside its
    /// call, which begins and ends edits of others in the list: each is looked at when it is its turn.
    void notifyHost(const CIndexes& indexes);
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineSender& sender_;
    CAudioExtParamList* params_ = nullptr;
    mutable CLock lock_;
    COwnedArray<CGesture> gestures_;
    CArray<int32_t, 32> holders_;   ///< of each host parameter: edits that are open
    CArray<bool, 32> isHeardOpen_;  ///< of each host parameter: the host has heard the begin, and no end behind it
    std::atomic<uint64_t> editThread_{0};
};

}  // namespace tarv
