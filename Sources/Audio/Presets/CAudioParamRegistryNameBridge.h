#pragma once

#include "Core/CBridge.h"
#include "Core/CString.h"

namespace tarv {

class CAudioParamRegistry;

/// The name of a registry's current preset, to read and to write. Calls `changed` on the thread that changed it.
class CAudioParamRegistryNameBridge final : public CBridge {
public:
    CAudioParamRegistryNameBridge(CAudioParamRegistry& registry, void (*changed)(void*), void* user);
    ~CAudioParamRegistryNameBridge() override { disconnect(); }

    /// Empty after the registry was destroyed.
    CString read() const;
    /// A step "Program name change" of the history.
    void write(const CString& displayName);
    void notify(CCheckedObject* sender) override;

private:
    CAudioParamRegistry* registry() const;
    void (*changed_)(void*);
    void* user_;
};

}  // namespace tarv
