#pragma once

#include "Core/CObject.h"

namespace tarv {

class CAudioProcessDef;
class CAudioProcessDefBase;

/// One end of a link: a child of the enclosing definition, or null for the enclosing process's own port.
struct CAudioLinkEnd {
    const CAudioProcessDefBase* child = nullptr;
    int32_t port = 0;
};

/// Definition of a link between two children of a composite.
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

/// Limits of a condition on a parameter's value, written "[0.5;1]" or "(0;1)".
struct CAudioInterval {
    double low = 1.0;
    double high = 1.0;
    bool includesLow = true;
    bool includesHigh = true;

    bool contains(double value) const {
        return (includesLow ? value >= low : value > low) && (includesHigh ? value <= high : value < high);
    }
    /// False if the text does not start and end with a bracket or has not exactly two limits.
    static bool parse(const CString& text, CAudioInterval& interval);
};

/// Definition of a bypass state: active while a parameter (and, if given, a second one) meets a condition.
class CAudioProcessBypassStateDef : public CObject {
public:
    struct CCondition {
        CString param;
        /// Equality with a number is the interval that holds only that number.
        CAudioInterval interval;
    };

    [[nodiscard]] CError* init() override;

    int32_t id() const { return id_; }
    const CCondition& condition() const { return condition_; }
    /// The second condition; its parameter name is empty if there is none.
    const CCondition& andCondition() const { return andCondition_; }
    bool isMultiband() const { return isMultiband_; }
    bool isInverted() const { return isInverted_; }
    bool isGroup0() const { return isGroup0_; }

private:
    bool readInterval(const char* rangeName, const char* valueName, CAudioInterval& interval) const;

    int32_t id_ = 0;
    CCondition condition_;
    CCondition andCondition_;
    bool isMultiband_ = false;
    bool isInverted_ = false;
    bool isGroup0_ = false;
};

}  // namespace tarv
