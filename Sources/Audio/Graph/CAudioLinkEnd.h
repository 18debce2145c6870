#pragma once

#include <cstdint>

namespace tarv {

class CAudioProcessDefBase;

/// One end of a link: a child of the enclosing definition, or null for the enclosing process's own port.
struct CAudioLinkEnd {
    const CAudioProcessDefBase* child = nullptr;
    int32_t port = 0;
};

}  // namespace tarv
