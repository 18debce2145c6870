#pragma once

#include "UI/Views/CInputRouter.h"

namespace tarv {

/// A call of the router that handlers run in. At the end of the outermost one the router looks what has changed.
class CInputRouter::CCall {
public:
    // Not inline: a compiler that sees the router keep the place on the stack warns, since it sees no end.
    explicit CCall(CInputRouter& router);
    ~CCall();
    CCall(const CCall&) = delete;
    CCall& operator=(const CCall&) = delete;

    /// False once a handler has destroyed the router.
    bool isAlive() const { return router_ != nullptr; }

    /// Takes what a handler returned: the window gets an error, the log alone if the router is gone. Returns isAlive().
    bool report(CError* error) const;

private:
    friend class CInputRouter;

    CInputRouter* router_;
    CCall* outer_;
};

}  // namespace tarv
