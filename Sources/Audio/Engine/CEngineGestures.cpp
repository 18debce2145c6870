#include "Audio/Engine/CEngineGestures.h"

#include <memory>
#include <utility>

#include "Audio/Engine/CEngineSubscriptions.h"
#include "Audio/Parameters/CAudioExtParam.h"
#include "Audio/Presets/CAudioParamUndo.h"
#include "Platform/ThreadId.h"

namespace tarv {

CEngineGestures::CAction::CAction(CEngineGestures& gestures, int32_t client, int32_t key, bool isHeld)
    : gestures_(gestures), gathering_(gestures.params_), client_(client), key_(key), isHeld_(isHeld), isEdit_(true) {
    outerThread_ = gestures_.editThread_.exchange(currentThreadId(), std::memory_order_relaxed);
}

CEngineGestures::CAction::~CAction() {
    if (isEdit_) {
        gestures_.editThread_.store(outerThread_, std::memory_order_relaxed);
    }
    gestures_.report(gathering_.finish(), client_, key_, isHeld_);
}

CEngineGestures::CGesture* CEngineGestures::find(int32_t key) const {
    for (CGesture* gesture : gestures_) {
        if (gesture->key == key) {
            return gesture;
        }
    }
    return nullptr;
}

CEngineGestures::CGesture* CEngineGestures::findOrOpen(int32_t client, int32_t key) {
    CGesture* gesture = find(key);
    if (!gesture && key >= 0 && gestures_.count() < kLimit) {
        gesture = new CGesture;
        gesture->client = client;
        gesture->key = key;
        gestures_.append(gesture);
    }
    return gesture;
}

void CEngineGestures::hold(const CIndexes& indexes) {
    for (const int32_t index : indexes) {
        holders_.resize(std::max(holders_.count(), index + 1));
        isHeardOpen_.resize(holders_.count());
        ++holders_[index];
    }
}

void CEngineGestures::release(const CIndexes& indexes) {
    for (const int32_t index : indexes) {
        --holders_[index];
    }
}

void CEngineGestures::notifyHost(const CIndexes& indexes) {
    for (const int32_t index : indexes) {
        bool isOpen = false;
        {
            CLockScope scope(lock_);
            isOpen = holders_[index] > 0;
            if (std::exchange(isHeardOpen_[index], isOpen) == isOpen) {
                continue;
            }
        }
        if (const CAudioExtParam* param = params_->param(index)) {
            param->notifyHostOfEdit(isOpen);
        }
    }
}

void CEngineGestures::report(const CIndexes& changed, int32_t client, int32_t key, bool isHeld) {
    if (changed.isEmpty()) {
        return;
    }
    {
        CLockScope scope(lock_);
        // Open until the values have been reported, also if the host closes the editor meanwhile.
        hold(changed);
        if (CGesture* gesture = isHeld ? findOrOpen(client, key) : nullptr) {
            CIndexes added;
            for (const int32_t index : changed) {
                if (gesture->held.indexOf(index) < 0) {
                    added.append(index);
                }
            }
            gesture->held.append(added.data(), added.count());
            hold(added);
        }
    }
    notifyHost(changed);
    for (const int32_t index : changed) {
        if (const CAudioExtParam* param = params_->param(index)) {
            param->notifyHost();
        }
    }
    {
        CLockScope scope(lock_);
        release(changed);
    }
    notifyHost(changed);
}

CError* CEngineGestures::requireRoom(int32_t client, int32_t key) {
    CLockScope scope(lock_);
    if (!findOrOpen(client, key)) {
        TARV_FAIL("@tarvstr_CEngineGestures_requireRoom_InvalidGesture Invalid gesture %1.", CString::fromInt(key));
    }
    return nullptr;
}

bool CEngineGestures::isCancelled(int32_t key) const {
    CLockScope scope(lock_);
    const CGesture* gesture = find(key);
    return gesture && gesture->isCancelled;
}

CError* CEngineGestures::begin(CInputStream& stream, const CEngineSubscriptions& subscriptions) {
    uint32_t request = 0;
    int32_t key = 0;
    CString name;
    int32_t group = 0;
    int32_t first = 0;
    int32_t count = 0;
    TARV_TRY(takeMessage(stream, request, key, name, group, first, count));
    TARV_TRY(sender_.requireClient(request));
    CAudioParam* param = nullptr;
    TARV_TRY(subscriptions.findParam(0, name, param));
    TARV_TRY(requireRoom(clientOf(request), key));
    CIndexes added;
    {
        CLockScope scope(lock_);
        CGesture* gesture = find(key);
        for (int32_t i = 0; params_ && i < params_->count(); ++i) {
            if (!gesture->isCancelled && params_->param(i)->isAmong(*param, group, first, count) &&
                gesture->held.indexOf(i) < 0) {
                added.append(i);
                gesture->held.append(i);
            }
        }
        hold(added);
    }
    notifyHost(added);
    return nullptr;
}

CError* CEngineGestures::end(CInputStream& stream, CAudioParamUndo& history) {
    uint32_t request = 0;
    int32_t key = 0;
    bool isTakenBack = false;
    TARV_TRY(takeMessage(stream, request, key, isTakenBack));
    TARV_TRY(sender_.requireClient(request));
    if (isTakenBack && !isCancelled(key)) {
        const CAction action(*this, clientOf(request), key, true);
        history.takeBack(key);
    }
    endEdits([](const CGesture& gesture, int32_t number) { return gesture.key == number; }, key);
    return nullptr;
}

void CEngineGestures::clientGone(int32_t client) {
    endEdits([](const CGesture& gesture, int32_t number) { return gesture.client == number; }, client);
}

void CEngineGestures::endEdits(bool (*isMeant)(const CGesture&, int32_t), int32_t number) {
    CIndexes ended;
    {
        CLockScope scope(lock_);
        for (int32_t i = gestures_.count() - 1; i >= 0; --i) {
            if (isMeant(*gestures_[i], number)) {
                const std::unique_ptr<CGesture> gesture(gestures_[i]);
                gestures_.removeAt(i);
                release(gesture->held);
                ended.append(gesture->held.data(), gesture->held.count());
            }
        }
    }
    notifyHost(ended);
}

void CEngineGestures::cancelAll() {
    if (editThread_.load(std::memory_order_relaxed) == currentThreadId()) {
        return;
    }
    CArray<std::pair<int32_t, int32_t>, 4> cancelled;
    {
        CLockScope scope(lock_);
        for (CGesture* gesture : gestures_) {
            if (!std::exchange(gesture->isCancelled, true)) {
                cancelled.append({gesture->client, gesture->key});
            }
        }
    }
    for (const auto& [client, key] : cancelled) {
        TARV_CONSUME(sender_.send(client, kEditRefused, key));
    }
}

}  // namespace tarv
