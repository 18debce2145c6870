#pragma once

#include "Audio/Engine/CEngineSender.h"
#include "Audio/Parameters/CAudioParam.h"

namespace tarv {

class CAudioParamCollector;
class CEngineStatus;

/// The values of the engine that clients bind by the names that kBindValue lists. Its lock is held while a value
/// is read and its message queued, so that the last message carries the last value. Any thread but the audio thread's
/// blocks.
class CEngineBoundValues : private CAudioParamListener {
public:
    CEngineBoundValues(const CEngineSender& sender, const CEngineStatus& status, const CAudioParamCollector& collector)
        : sender_(sender), status_(status), collector_(collector) {}
    ~CEngineBoundValues();

    bool has(uint32_t id) const;
    /// Binds a value and sends it. Fails for a name or a count of numbers that isn't there. Under the call lock.
    [[nodiscard]] CError* bind(uint32_t id, const CString& name, uint32_t count);
    /// Returns whether there was such a binding, as send does.
    bool unbind(uint32_t id);
    /// Sends one value even if it is the one sent last.
    bool send(uint32_t id);
    /// Sends what differs from what was sent last.
    void sendChanged();
    void clientGone(int32_t client);
    /// The parameter that a bound value reads, null while none does. The audio thread may set it. Under the call lock.
    CAudioParam* followedParam() const { return bpmParam_; }

private:
    struct CValue {
        const char* name;
        int32_t count;
        double (*read)(const CEngineBoundValues& values, int32_t index);
    };
    struct CBinding {
        uint32_t id;
        const CValue* value;
        CArray<double, 4> numbers;
    };
    static const CValue kValues[];

    int32_t indexOf(uint32_t id) const;
    void sendBinding(CBinding& binding, bool isForced) const;
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;
    const CString& errorContextName() const { return sender_.errorContextName(); }

    const CEngineSender& sender_;
    const CEngineStatus& status_;
    const CAudioParamCollector& collector_;
    CAudioParam* bpmParam_ = nullptr;
    mutable CLock lock_;  // guards the bindings
    CArray<CBinding, 1> bindings_;
};

}  // namespace tarv
