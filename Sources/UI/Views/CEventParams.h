#pragma once

#include <memory>

#include "Core/CArray.h"
#include "Core/CAttribute.h"
#include "UI/Views/CHIDInfoUpdateHandler.h"

namespace tarv {

/// Which parameters an event of input has beside its position and the modifiers.
enum class CEventShape : uint8_t { Plain, Move, Press, Wheel, Key };

/// Maps of parameters that are used again, so that an event takes no memory.
class CEventParamPool : public CHeapObject {
private:
    friend class CEventParams;
    struct CEntry : CHeapObject {
        CEventShape shape = CEventShape::Plain;
        bool isTaken = false;
        CArray<CString, 12> own;  ///< names of the parameters that belong to the event
        CAttributeMap params;
    };
    CEntry& take(CEventShape shape);

    COwnedArray<CEntry, 8> entries_;
};

/// Parameters of one event, from the pool for the length of this object's life, which the pool outlives.
class CEventParams {
public:
    CEventParams(const std::shared_ptr<CEventParamPool>& pool, CEventShape shape, const CHIDInfo& info);
    ~CEventParams();
    CEventParams(const CEventParams&) = delete;
    CEventParams& operator=(const CEventParams&) = delete;

    void set(const char* name, const CAttributeValue& value) { entry_.params[name] = value; }
    /// All parameters are set.
    CAttributeMap& complete();

private:
    std::shared_ptr<CEventParamPool> pool_;
    CEventParamPool::CEntry& entry_;
};

}  // namespace tarv
