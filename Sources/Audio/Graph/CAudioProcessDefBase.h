#pragma once

#include "Core/CObject.h"

namespace tarv {

class CAudioParamAllocDef;
class CAudioParamDef;
class CAudioParamRemapDef;
class CAudioProcessBase;

/// Definition of a process: what it contains, which parameters it owns and how it is instantiated. Holds no audio
/// state; read-only after the tree is built, so that any thread may create processes from it.
class CAudioProcessDefBase : public CObject {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* finishInit() override;

    /// A parameter of the definition; the name carries the namespaces that it is declared in (`io-params.grouping`).
    struct CParam {
        CString name;
        const CAudioParamDef* def;
    };

    /// A new process of this definition: multiband, a stack, or the definition's own class. The caller owns it.
    CAudioProcessBase* instantiate() const;
    /// The factory of the definition's own class; a stack calls it for each of its instances.
    virtual CAudioProcessBase* createProcess() const = 0;

    const CString& multibandFreqParam() const { return multibandFreqParam_; }
    const CString& multibandCountParam() const { return multibandCountParam_; }
    const CString& stackParam() const { return stackParam_; }
    bool isStacked() const { return isStacked_; }
    bool isSmoothUpdate() const { return isSmoothUpdate_; }
    int32_t stackIndexShift() const { return stackIndexShift_; }
    bool isMultiband() const { return isMultiband_; }
    bool isWhole() const { return isWhole_; }
    bool isTerminalWhole() const { return isTerminalWhole_; }
    bool isGrouped() const { return isGrouped_; }
    bool isPrototype() const { return isPrototype_; }
    bool isOutOfOrder() const { return isOutOfOrder_; }
    bool isGroup0() const { return isGroup0_; }
    bool isElement0() const { return isElement0_; }
    int32_t bypassStateId() const { return bypassStateId_; }
    bool useTimeShift() const { return useTimeShift_; }
    bool isWeightedInput() const { return isWeightedInput_; }

    const CArray<CParam, 8>& params() const { return params_; }
    const CArray<const CAudioParamAllocDef*, 8>& allocs() const { return allocs_; }
    /// The slot definition of an index, null if there is none.
    const CAudioParamAllocDef* allocAt(int32_t index) const;
    /// The definition of a parameter of this process by its local name, null if it owns none of that name.
    const CAudioParamDef* findParam(const CString& localName) const;
    /// The same by a name that may lead into processes further in ("modFilter.freq").
    virtual const CAudioParamDef* findParamBelow(const CString& name) const { return findParam(name); }
    /// The remap whose `orig` equals the name, null if there is none.
    const CAudioParamRemapDef* findRemap(const CString& orig) const;
    /// Whether there is a remap of a name that ends so.
    bool mayRemap(const CString& end) const;

protected:
    /// Sorts one child into the lists; called in declared order. Overrides pass on what they do not take.
    virtual void sortChild(CObject* child, const CString& prefix);

private:
    void sortChildren(const CObject& owner, const CString& prefix);

    CString multibandFreqParam_;
    CString multibandCountParam_;
    CString stackParam_;
    bool isStacked_ = false;
    bool isSmoothUpdate_ = false;
    int32_t stackIndexShift_ = 0;
    bool isMultiband_ = false;
    bool isWhole_ = false;
    bool isTerminalWhole_ = false;
    bool isGrouped_ = false;
    bool isPrototype_ = false;
    bool isOutOfOrder_ = false;
    bool isGroup0_ = false;
    bool isElement0_ = false;
    int32_t bypassStateId_ = -1;
    bool useTimeShift_ = true;
    bool isWeightedInput_ = false;

    CArray<CParam, 8> params_;
    CArray<const CAudioParamAllocDef*, 8> allocs_;
    CArray<const CAudioParamRemapDef*, 4> remaps_;
};

}  // namespace tarv
