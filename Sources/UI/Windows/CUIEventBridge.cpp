#include "UI/Windows/CUIEventBridge.h"

#include "UI/Windows/CWindowSharedData.h"

namespace tarv {

namespace {

constexpr const char* kCallEvent = "call";

}  // namespace

CUIEventBridge::~CUIEventBridge() {
    if (auto* shared = root()->findObjectOf<CWindowSharedData>(CWindowSharedData::kPath)) {
        shared->shutWindows();
    }
}

CError* CUIEventBridge::init() {
    TARV_TRY(windowClass_.init(CWindowKind::Seen));
    TARV_TRY(bridgeClass_.init(CWindowKind::Posts));
    TARV_TRY(CStdEventBridge::init());
    return nullptr;
}

CError* CUIEventBridge::call(std::function<void()> function) {
    CAttributeMap params;
    params["event-name"] = CAttributeValue::fromString(kCallEvent);
    const CLockScope scope(callLock_);
    TARV_TRY(post(params));
    calls_.push_back(std::move(function));
    return nullptr;
}

CError* CUIEventBridge::eventArrived(CAttributeMap& params) {
    if (!(params["event-name"].asString() == kCallEvent)) {
        return CStdEventBridge::eventArrived(params);
    }
    std::function<void()> function;
    {
        const CLockScope scope(callLock_);
        if (!calls_.empty()) {
            function = std::move(calls_.front());
            calls_.erase(calls_.begin());
        }
    }
    if (function) {
        function();
    }
    return nullptr;
}

}  // namespace tarv
