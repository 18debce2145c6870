#pragma once

#include "Core/CHeap.h"
#include "Platform/Lock.h"

namespace tarv {

class CBridge;

/// Root of the class tree. Each live object stands in a table of 64 buckets, so that the other end of a bridge can
/// verify that it still lives. Construction, destruction and isLive: any thread.
class CCheckedObject : public CHeapObject {
public:
    CCheckedObject();
    CCheckedObject(const CCheckedObject&) = delete;
    CCheckedObject& operator=(const CCheckedObject&) = delete;
    virtual ~CCheckedObject();

    static bool isLive(const CCheckedObject* object);

protected:
    CLock& checkedLock() { return checkedLock_; }

private:
    CLock checkedLock_;
};

}  // namespace tarv
