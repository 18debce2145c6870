#pragma once

#include "Audio/CAudioParamCollector.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioParamUndo;

/// The preset view of a part of the parameters (`audio:param-registry`): knows which lie under its hierarchy.
/// Not there yet: banks, presets, their activation and capture, the alternate state. A master reads its attributes but
/// owns no bank.
class CAudioParamRegistry : public CObject {
public:
    struct CEntry {
        CString key;  ///< the full name without the hierarchy
        CAudioParam* param;
    };

    ~CAudioParamRegistry() override;
    [[nodiscard]] CError* init() override;

    /// Takes the parameter if its full name lies under the hierarchy; tells whether it did.
    bool offerParam(const CString& name, CAudioParam& param);
    /// Takes the parameter wherever it lies: it was assigned to this registry by name.
    void takeParam(const CString& name, CAudioParam& param);
    int32_t paramCount() const;
    /// Entry of an index in 0..paramCount-1.
    CEntry param(int32_t index) const;

    /// With the "." at its end.
    const CString& hierarchy() const { return hierarchy_; }
    bool isMaster() const { return isMaster_; }
    bool isEnumerated() const { return isEnumerated_; }
    const CString& id() const { return id_; }
    const CString& presetNaming() const { return presetNaming_; }
    const CString& presetNameParam() const { return presetNameParam_; }
    const CString& groupNamesParam() const { return groupNamesParam_; }
    const CString& bankFile() const { return bankFile_; }
    CAudioParamUndo* undo() const { return undo_; }

private:
    CString hierarchy_;
    CString id_;
    CString presetNaming_;
    CString presetNameParam_;
    CString groupNamesParam_;
    CString bankFile_;
    bool isMaster_ = false;
    bool isEnumerated_ = false;
    CAudioParamCollector* collector_ = nullptr;
    CAudioParamUndo* undo_ = nullptr;
    mutable CLock paramLock_;
    CArray<CEntry, 4> params_;
};

}  // namespace tarv
