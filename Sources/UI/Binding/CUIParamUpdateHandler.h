#pragma once

#include "Core/CArray.h"
#include "Core/CError.h"

namespace tarv {

class CUIParam;

/// Follows the `ui:ui-param` children that show or set a value for it. A call may come once the param has been
/// initialised, also before the handler itself is, and may destroy handler and param. A failure is logged. The
/// editor's thread.
class CUIParamUpdateHandler {
public:
    CUIParamUpdateHandler() = default;
    CUIParamUpdateHandler(const CUIParamUpdateHandler&) = delete;
    CUIParamUpdateHandler& operator=(const CUIParamUpdateHandler&) = delete;
    /// Its params call it no more.
    virtual ~CUIParamUpdateHandler();
    /// The value may be another one.
    [[nodiscard]] virtual CError* onParamChanged(CUIParam& param) = 0;
    /// The param has become active or inactive.
    [[nodiscard]] virtual CError* onParamActivity(CUIParam&) { return nullptr; }
    /// The range may be another one.
    [[nodiscard]] virtual CError* onParamRangeChanged(CUIParam&) { return nullptr; }
    /// The param is being destroyed.
    virtual void onParamRemoved(CUIParam&) {}
    /// How many elements it shows of this param, from the param's own on: a change of each of them calls it.
    virtual int32_t followedElements(const CUIParam&) const { return 1; }

private:
    friend class CUIParam;
    CArray<CUIParam*, 2> params_;
};

}  // namespace tarv
