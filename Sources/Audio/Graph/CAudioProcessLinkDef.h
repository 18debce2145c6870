#pragma once

#include "Audio/Graph/CAudioLinkEnd.h"
#include "Core/CObject.h"

namespace tarv {

class CAudioProcessDef;

/// Definition of a link between two children of a composite, or between a child and a port of the composite.
class CAudioProcessLinkDef : public CObject {
public:
    [[nodiscard]] CError* init() override;
    /// Finds the children and bypass states that the attributes name; called once by the enclosing definition.
    [[nodiscard]] CError* resolve(const CAudioProcessDef& owner);

    /// The highest port that a link may name.
    static constexpr int32_t kMaxPort = 63;

    const CAudioLinkEnd& src() const { return src_; }
    const CAudioLinkEnd& dst() const { return dst_; }
    /// Link state in which the link is live, -1 for always.
    int32_t stateId() const { return stateId_; }
    /// Bypass states that the link depends on: it is live while one of them is active. Empty: unconditional.
    const CArray<int32_t, 4>& bypassStateIds() const { return bypassStateIds_; }

private:
    static bool parseEnd(const CString& text, CString& name, int32_t& port);
    static bool findEnd(const CAudioProcessDef& owner, const CString& name, CAudioLinkEnd& end);

    CString srcName_;
    CString dstName_;
    CAudioLinkEnd src_;
    CAudioLinkEnd dst_;
    int32_t stateId_ = -1;
    CArray<int32_t, 4> bypassStateIds_;
};

}  // namespace tarv
