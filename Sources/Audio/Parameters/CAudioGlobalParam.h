#pragma once

#include "Audio/Parameters/CAudioParam.h"
#include "Core/CApplicationData.h"

namespace tarv {

/// Binds one parameter to a key of a store. A value that a user sets in one instance reaches all instances. Created
/// when the parameter is defined; the parameter then takes the stored value. Without one, or with one that cannot be
/// read, the parameter keeps its value and nothing is written, so that a stored value is only replaced by one that a
/// user sets. Values are stored as texts in real units. [any thread but the audio thread]
class CAudioGlobalParam final : public CHeapObject, private CAudioParamListener {
public:
    CAudioGlobalParam(CAudioParam& param, CApplicationData& store, const CString& key);
    ~CAudioGlobalParam();

private:
    using CDataBridge = CApplicationDataBridge<CAudioGlobalParam>;
    void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) override;
    void storeChanged(CCheckedObject* sender);
    void takeStored();

    CAudioParam& param_;
    CApplicationData& store_;
    CString key_;
    CDataBridge bridge_;
};

}  // namespace tarv
