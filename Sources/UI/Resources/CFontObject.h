#pragma once

#include "Core/CObject.h"
#include "UI/Resources/CFont.h"

namespace tarv {

/// A font in its styles (`font`). Each child with `is-font-style` names a style, and its resource in `file`. The tree's
/// thread builds it; the fonts are for any thread from then on.
class CFontObject final : public CObject {
public:
    ~CFontObject() override;
    /// Loads the styles. Fails on one of another name than `regular`, `bold`, `italic`, `bold-italic` and
    /// `superscript`, and on a resource that can't be found or read.
    [[nodiscard]] CError* finishInit() override;
    /// Null for a style that the font lacks.
    const CFont* findStyle(const CString& style) const;

private:
    static constexpr int32_t kStyleCount = 5;
    static const char* const kStyles[kStyleCount];
    static int32_t styleIndex(const CString& style);
    [[nodiscard]] CError* loadStyle(const CObject& child);

    CFont* fonts_[kStyleCount] = {};
};

}  // namespace tarv
