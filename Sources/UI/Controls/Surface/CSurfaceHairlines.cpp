// Lines across a surface.

#include "UI/Controls/Surface/CSurfaceHairlines.h"

#include <algorithm>
#include <cmath>

#include "UI/Controls/Surface/CControlSurface.h"

namespace tarv {

CError* CSurfaceHairlines::init() {
    TARV_TRY(CView::init());
    classColorsChanged();
    return nullptr;
}

CError* CSurfaceHairlines::draw() {
    const auto* surface = dynamic_cast<const CControlSurface*>(parentView());
    if (!surface) {
        return nullptr;
    }
    const CSurfaceLayout layout = surface->layout();
    const CIntRect& box = layout.box();
    for (const CSurfaceLineSet& set : surface->lineSets()) {
        const CSurfaceAxis& axis =
            surface->axis(set.lines.isVertical ? CControlSurfaceGroup::CRole::X : CControlSurfaceGroup::CRole::Y);
        for (const double value : set.lines.values) {
            const CColor* color = value == 0.0 && classColor(0) ? classColor(0) : this->color(0);
            const double position = axis.position(value);
            if (!color || position < 0.0 || position > 1.0) {
                continue;
            }
            if (set.lines.isVertical) {
                const auto x = static_cast<int32_t>(std::lround(box.left + position * box.width()));
                const int32_t pixel = std::clamp(x, box.left, std::max(box.left, box.right - 1));
                drawLine({pixel, box.top, pixel + 1, box.bottom}, layout, *color);
            } else {
                const int32_t pixel =
                    layout.isVertical()
                        ? layout.linePixel(position)
                        : static_cast<int32_t>(std::lround(box.bottom - 1 - position * (box.height() - 1)));
                drawLine({box.left, pixel, box.right, pixel + 1}, layout, *color);
            }
        }
    }
    return nullptr;
}

/// In pieces between the bars.
void CSurfaceHairlines::drawLine(const CIntRect& line, const CSurfaceLayout& layout, const CColor& color) {
    const auto& surface = static_cast<const CControlSurface&>(*parentView());
    const CControlSurfaceGroup* bars = surface.isSliderMode() ? surface.editableGroup() : nullptr;
    const CIntRect seen = line.intersection(target().clip.moved(target().originX, target().originY));
    if (seen.isEmpty()) {
        return;
    }
    const auto fill = [&](const CIntRect& rect) {
        target().bitmap->fillRect(rect.moved(-target().originX, -target().originY), color, 1.0);
    };
    const bool isLevel = line.width() >= line.height();
    CIntRect rest = seen;
    for (int32_t i = 0; bars && i < bars->count(); ++i) {
        if (layout.column(i).intersection(rest).isEmpty()) {
            continue;
        }
        const CIntRect covered = surface.barRect(*bars, i, layout).intersection(rest);
        if (covered.isEmpty()) {
            continue;
        }
        fill(isLevel ? CIntRect{rest.left, rest.top, covered.left, rest.bottom}
                     : CIntRect{rest.left, rest.top, rest.right, covered.top});
        (isLevel ? rest.left : rest.top) = isLevel ? covered.right : covered.bottom;
    }
    fill(rest);
}

}  // namespace tarv
