#pragma once

#include <cstdint>

#include "Core/CString.h"

namespace tarv {

/// Vendor and product of a host, and what the effect does differently for it. Names of hosts occur nowhere else.
struct CHostTraits {
    CString vendor;
    CString product;
    /// The effect shows all channels; otherwise two.
    bool isManyChannels = false;
    /// Suspend, resume and blocks run one at a time.
    bool needsProcessLock = false;
    /// A mouse press in an editor takes the keyboard focus.
    bool isFocusTaken = true;
    /// Begin and end of an edit are reported from the thread that created the effect only.
    bool needsEditsOnFirstThread = false;
};

/// The traits of a host by its answers: the version of the interface (2400 is 2.4) and both texts. Any thread.
CHostTraits traitsOfHost(int32_t masterVersion, const CString& vendor, const CString& product);

}  // namespace tarv
