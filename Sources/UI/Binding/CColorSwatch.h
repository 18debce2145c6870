#pragma once

#include "Core/CObject.h"

namespace tarv {

/// A list of colours by group (`ui:color-swatch`), so that a group looks the same wherever it shows. Its colours are
/// the children with `is-color`: `index`, from 0, and `color`, a name of the palette. Of several with one index the
/// first counts. The editor's thread.
class CColorSwatch : public CObject {
public:
    /// Name of a colour; null where the list has none.
    const CString* color(int32_t index) const;
};

}  // namespace tarv
