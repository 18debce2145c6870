#pragma once

#include "Audio/Graph/CAudioInterval.h"
#include "Core/CObject.h"

namespace tarv {

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
