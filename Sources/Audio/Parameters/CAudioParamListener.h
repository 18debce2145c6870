#pragma once

#include <cstdint>

namespace tarv {

class CAudioParam;

/// Is notified of changes that were posted for a parameter, on the poster's thread and outside the parameter's lock.
class CAudioParamListener {
public:
    virtual void onParamChanged(CAudioParam& param, int32_t group, int32_t first, int32_t count) = 0;

protected:
    ~CAudioParamListener() = default;
};

}  // namespace tarv
