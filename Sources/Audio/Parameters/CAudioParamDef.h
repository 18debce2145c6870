#pragma once

#include "Audio/Parameters/CAudioParamInfo.h"
#include "Core/CObject.h"

namespace tarv {

/// Declares a parameter (`audio:param`); the object's name is its local name.
class CAudioParamDef : public CObject {
public:
    [[nodiscard]] CError* init() override;
    const CAudioParamInfo& info() const { return info_; }

private:
    int32_t readFlags() const;

    CAudioParamInfo info_;
};

/// Assigns a parameter to the slot number by which the code of the owning process reads it (`audio:param-alloc`).
class CAudioParamAllocDef : public CObject {
public:
    [[nodiscard]] CError* init() override;
    const CString& paramName() const { return paramName_; }
    int32_t index() const { return index_; }

private:
    CString paramName_;
    int32_t index_ = -1;
};

/// Maps a name of the owning process to another, shared parameter (`audio:param-remap`).
class CAudioParamRemapDef : public CObject {
public:
    [[nodiscard]] CError* init() override;
    const CString& origName() const { return origName_; }
    /// As written; resolveParamName at the owner's path gives the full name.
    const CString& newName() const { return newName_; }

private:
    CString origName_;
    CString newName_;
};

}  // namespace tarv
