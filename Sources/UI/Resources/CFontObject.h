#pragma once

#include "Core/CObject.h"
#include "Core/CScaledResource.h"
#include "UI/Resources/CFont.h"

namespace tarv {

/// A font in its styles (`font`). Each child with `is-font-style` names a style, and its resource in `file`. The
/// styles are empty until an editor opens. The tree's thread builds it; while an editor is open the fonts are for any
/// thread.
class CFontObject final : public CObject, private CScaledResource {
public:
    ~CFontObject() override;
    /// Makes the styles. Fails on one of another name than `regular`, `bold`, `italic`, `bold-italic` and
    /// `superscript`, and if there is no such resource; once an editor has opened, also if it can't be read.
    [[nodiscard]] CError* finishInit() override;
    /// Null for a style that the font lacks.
    const CFont* findStyle(const CString& style) const;

private:
    static constexpr int32_t kStyleCount = 5;
    static const char* const kStyles[kStyleCount];
    static int32_t styleIndex(const CString& style);
    [[nodiscard]] CError* makeStyle(const CObject& child);
    [[nodiscard]] CError* loadAt(double scale) override;

    CFont* fonts_[kStyleCount] = {};
    CString files_[kStyleCount];
};

}  // namespace tarv
