#pragma once

#include "UI/Views/CView.h"

namespace tarv {

class CSurfaceLayout;

/// The lines that rulers put across a surface (`ui:surface-hairlines`), a child of it: one device pixel each, in the
/// view's colour, that at zero in `GraphZero`. Bars hide them. Decorative unless `is-decorative` is "false". Thread:
/// that of the window.
class CSurfaceHairlines : public CView {
public:
    [[nodiscard]] CError* init() override;

protected:
    [[nodiscard]] CError* draw() override;
    bool isDecorativeByClass() const override { return true; }
    int32_t classColorCount() const override { return 1; }
    CString classColorText(int32_t) const override { return "GraphZero"; }

private:
    void drawLine(const CIntRect& line, const CSurfaceLayout& layout, const CColor& color);
};

}  // namespace tarv
