// How points stand and look.

#include <algorithm>
#include <cmath>

#include "Core/CApplication.h"
#include "UI/Controls/Surface/CControlSurface.h"
#include "UI/Drawing/CBrushStroke.h"
#include "UI/Views/CSectorMap.h"

namespace tarv {

namespace {

constexpr int64_t kLoadOfImage = 500;
// Of the line at the end of an underlay.
constexpr double kUnderlayLine = 0.45;
constexpr int32_t kLine = 1;
// Of the lines between points: the middle one of the set.
constexpr int32_t kLineBrush = 1;

CViewRect viewRect(const CIntRect& rect) {
    return {static_cast<double>(rect.left), static_cast<double>(rect.top), static_cast<double>(rect.width()),
            static_cast<double>(rect.height())};
}

}  // namespace

/// The box in whole pixels, without the inner borders and what labels of rulers need at its ends.
CIntRect CControlSurface::innerBox() const {
    const CViewRect& box = areaRect(kBoxArea);
    const auto pixel = [](double position) { return static_cast<int32_t>(std::lround(position)); };
    const auto border = [&](CViewCell cell) { return pixel(area().value(cell)); };
    CIntRect inner{pixel(box.x) + border(CViewCell::InnerLeft), pixel(box.y) + border(CViewCell::InnerTop),
                   pixel(box.right()) - border(CViewCell::InnerRight),
                   pixel(box.bottom()) - border(CViewCell::InnerBottom)};
    inner = {inner.left + marginX_, inner.top + marginY_, inner.right - marginX_, inner.bottom - marginY_};
    return {inner.left, inner.top, std::max(inner.left, inner.right), std::max(inner.top, inner.bottom)};
}

CSurfaceLayout CControlSurface::layoutOf(const CControlSurfaceGroup& group) const {
    return CSurfaceLayout(innerBox(), !isSliderMode_ || group.isVertical(), group.count(),
                          group.isBalanced() && group.isFixedY(), CApplication::uiScale());
}

CSurfaceLayout CControlSurface::layout() const {
    const CControlSurfaceGroup* group = editable_ ? editable_ : groups_.isEmpty() ? nullptr : groups_[0];
    return group ? layoutOf(*group) : CSurfaceLayout(innerBox(), true, 0, false, CApplication::uiScale());
}

CSurfacePlace CControlSurface::placeOf(const CControlSurfaceGroup& group, int32_t index) const {
    const CSurfaceLayout layout = layoutOf(group);
    const CControlSurfaceGroup::CPoint& point = group.point(index);
    const bool isColumn = group.isBalanced() && group.isFixedX();
    return {isColumn ? layout.middle(index) : layout.box().left + axisX_.position(point.x) * layout.box().width(),
            layout.rangeStart() - axisY_.position(point.y) * layout.rangeLength()};
}

CIntRect CControlSurface::barRect(const CControlSurfaceGroup& group, int32_t index) const {
    return barRect(group, index, layoutOf(group));
}

CIntRect CControlSurface::barRect(const CControlSurfaceGroup& group, int32_t index,
                                  const CSurfaceLayout& layout) const {
    const CSurfaceAxis& axis = this->axis(group.barRole());
    return layout.bar(index, layout.pixel(axis.position(axis.zero())),
                      layout.pixel(axis.position(axis.clamp(group.barValue(index)))));
}

const CImage* CControlSurface::pointImage(const CControlSurfaceGroup& group) const {
    const CPartRange& part = parts_[group.isAnchor() ? Anchor : Point];
    return part.isFound ? imageSet()->getImage(part.first) : nullptr;
}

CViewRect CControlSurface::shownRect(const CControlSurfaceGroup& group, int32_t index) const {
    CIntRect rect;
    if (isSliderMode_) {
        rect = barRect(group, index);
    } else {
        const CSurfacePlace place = placeOf(group, index);
        const CImage* image = pointImage(group);
        const int32_t side = image ? std::max(image->getWidth(), image->getHeight()) + 2 : 0;
        const auto x = static_cast<int32_t>(std::lround(place.x));
        const auto y = static_cast<int32_t>(std::lround(place.y));
        rect = {x - side, y - side, x + side, y + side};
        const CBrush* brush = lineBrush(group);
        const int32_t reach = brush ? brush->stampSide() : 0;
        for (int32_t i = std::max(index - 1, 0); brush && i < std::min(index + 2, group.count()); ++i) {
            const CSurfacePlace end = placeOf(group, i);
            const auto endX = static_cast<int32_t>(std::lround(end.x));
            const auto endY = static_cast<int32_t>(std::lround(end.y));
            rect = {std::min(rect.left, endX - reach), std::min(rect.top, endY - reach),
                    std::max(rect.right, endX + reach), std::max(rect.bottom, endY + reach)};
        }
    }
    return viewRect({rect.left - overhang_.left, rect.top - overhang_.top, rect.right + overhang_.right,
                     rect.bottom + overhang_.bottom});
}

void CControlSurface::redrawColumn(int32_t point) {
    if (point < 0 || !editable_ || point >= editable_->count() || !hasArea()) {
        return;
    }
    if (!isSliderMode_) {
        for (const CControlSurfaceGroup* group : groups_) {
            if (point < group->count()) {
                requestRedraw(shownRect(*group, point));
            }
        }
        return;
    }
    const CIntRect rect = layoutOf(*editable_).pit(point);
    requestRedraw(viewRect({rect.left - overhang_.left, rect.top - overhang_.top, rect.right + overhang_.right,
                            rect.bottom + overhang_.bottom}));
}

void CControlSurface::drawPart(CPart part, const CIntRect& box, const CColor& color, double opacity,
                               const CIntRect& clip) {
    if (!parts_[part].isFound) {
        return;
    }
    const CIntRect placed = box.moved(-target().originX, -target().originY);
    const CDrawnImages drawn = CFramePieces(*imageSet(), parts_[part].first, parts_[part].last)
                                   .draw(*target().bitmap, placed, color, opacity, clip);
    if (CSectorMap* map = sectorMap()) {
        map->addLoad(kLoadOfImage * drawn.count + drawn.pixels);
    }
}

const CColor* CControlSurface::groupColor(int32_t groupIndex, bool isHovered) const {
    if (!groups_[groupIndex]->isActive() || isDisabled()) {
        return classColor(kDisabled);
    }
    return groupIndex < colorNames_.count() ? classColor(kOwnColors + 2 * groupIndex + (isHovered ? 1 : 0)) : nullptr;
}

bool CControlSurface::isMarked(const CControlSurfaceGroup& group, int32_t index) const {
    return group.param(CRole::Selected) ? index == group.selectedPoint() : &group == editable_ && index == selected_;
}

CError* CControlSurface::draw() {
    if (!imageSet()) {
        return nullptr;
    }
    const CControlSurfaceGroup* ground = editable_;
    for (int32_t i = 0; i < groups_.count() && !ground; ++i) {
        ground = groups_[i]->isVisible() ? groups_[i] : nullptr;
    }
    if (isSliderMode_ && ground) {
        drawPits(*ground, layoutOf(*ground));
    }
    for (int32_t i = 0; i < groups_.count(); ++i) {
        if (!groups_[i]->isVisible()) {
            continue;
        }
        if (isSliderMode_) {
            drawBars(*groups_[i], i, layoutOf(*groups_[i]));
        } else {
            drawPoints(*groups_[i], i);
        }
    }
    return nullptr;
}

/// Of a column with what overhangs it. Most of what is drawn anew is one bar.
bool CControlSurface::isInClip(const CIntRect& column) const {
    const CIntRect& clip = target().clip;
    const int32_t x = target().originX;
    const int32_t y = target().originY;
    return column.left - overhang_.left < clip.right + x && column.right + overhang_.right > clip.left + x &&
           column.top - overhang_.top < clip.bottom + y && column.bottom + overhang_.bottom > clip.top + y;
}

void CControlSurface::drawPits(const CControlSurfaceGroup& group, const CSurfaceLayout& layout) {
    for (int32_t i = 0; i < group.count() && layout.pitch() > 0; ++i) {
        const CIntRect pit = layout.pit(i);
        const CColor* color = classColor(i == hovered_ ? kPitHover : kPit);
        if (!isInClip(pit)) {
            continue;
        }
        if (color) {
            drawPart(Pit, pit, *color, 1.0, target().clip);
        }
        const CColor* ground = isMarked(group, i) ? classColor(kSelectBG) : nullptr;
        if (ground) {
            drawPart(SelectBG, pit, *ground, 1.0, target().clip);
        }
    }
}

void CControlSurface::drawBars(const CControlSurfaceGroup& group, int32_t groupIndex, const CSurfaceLayout& layout) {
    for (int32_t i = 0; i < group.count() && layout.pitch() > 0; ++i) {
        const CIntRect pit = layout.pit(i);
        if (!isInClip(pit)) {
            continue;
        }
        const CColor* color = groupColor(groupIndex, isHovered(group, i));
        if (color && group.isEditable()) {
            drawBar(group, i, layout, *color);
        } else if (color) {
            drawUnderlay(group, i, layout, *color);
        }
        const CColor* line = isMarked(group, i) ? classColor(kSelectLine) : nullptr;
        if (line) {
            drawPart(Select, pit, *line, 1.0, target().clip);
        }
    }
}

void CControlSurface::drawBar(const CControlSurfaceGroup& group, int32_t index, const CSurfaceLayout& layout,
                              const CColor& color) {
    const CSurfaceAxis& axis = this->axis(group.barRole());
    const bool isDown = group.isVertical() && group.barValue(index) < axis.zero();
    const CPart part = !group.isVertical() ? BarRight : isDown ? BarDown : Bar;
    const CIntRect bar = barRect(group, index, layout);
    CIntRect box = bar;
    CIntRect clip = target().clip;
    // The end at the value is drawn whole also where the bar is shorter: the rest of its picture is clipped.
    constexpr int32_t kWhole = CSurfaceLayout::kCap + 2;
    if (part == Bar) {
        box.bottom = std::max(box.bottom, box.top + kWhole);
        clip.bottom = std::min(clip.bottom, bar.bottom - target().originY);
    } else if (part == BarDown) {
        box.top = std::min(box.top, box.bottom - kWhole);
        clip.top = std::max(clip.top, bar.top - target().originY);
    } else {
        box.left = std::min(box.left, box.right - kWhole);
        clip.left = std::max(clip.left, bar.left - target().originX);
    }
    drawPart(part, box, color, barOpacity_, clip);
}

/// Flat, so that it doesn't read as the setting; its opacity is that of a colour of its own.
void CControlSurface::drawUnderlay(const CControlSurfaceGroup& group, int32_t index, const CSurfaceLayout& layout,
                                   const CColor& color) {
    const CColor* strength = classColor(kUnderlay);
    const CSurfaceAxis& axis = this->axis(group.barRole());
    const int32_t zero = layout.pixel(axis.position(axis.zero()));
    const int32_t end = layout.pixel(axis.position(axis.clamp(group.barValue(index))));
    CIntRect box = barRect(group, index, layout);
    if (zero != end && strength) {
        const bool isDown = group.isVertical() && end > zero;
        drawPart(isDown ? UnderlayDown : Underlay, box, color, strength->opacity * barOpacity_, target().clip);
    }
    // Within the bar, at the value; in the middle of one without length.
    if (!group.isVertical()) {
        box.left = box.right - kLine;
    } else if (end > zero) {
        box.top = box.bottom - kLine;
    } else {
        box.bottom = box.top + kLine;
    }
    const CIntRect line = box.moved(-target().originX, -target().originY).intersection(target().clip);
    target().bitmap->fillRect(line, color, kUnderlayLine * barOpacity_);
}

/// Between points that a press takes in pairs; null without lines.
const CBrush* CControlSurface::lineBrush(const CControlSurfaceGroup& group) const {
    return brushSet() && group.isDragSegments() ? brushSet()->getBrush(kLineBrush) : nullptr;
}

void CControlSurface::drawLines(const CControlSurfaceGroup& group, const CColor& color) {
    const CBrush* brush = lineBrush(group);
    if (!brush) {
        return;
    }
    CBrushStroke stroke(*target().bitmap, target().originX, target().originY, target().clip, *brush, color,
                        pointOpacity_);
    for (int32_t i = 0; i < group.count(); ++i) {
        const CSurfacePlace place = placeOf(group, i);
        if (i == 0) {
            stroke.moveTo(place.x, place.y);
        } else {
            stroke.lineTo(place.x, place.y);
        }
    }
}

void CControlSurface::drawPoints(const CControlSurfaceGroup& group, int32_t groupIndex) {
    const CImage* image = pointImage(group);
    if (const CColor* color = groupColor(groupIndex, false)) {
        drawLines(group, *color);
    }
    for (int32_t i = 0; i < group.count() && image; ++i) {
        const CColor* color = group.isEditable() || !group.isActive() ? groupColor(groupIndex, isHovered(group, i))
                                                                      : classColor(kPointOff);
        const CSurfacePlace place = placeOf(group, i);
        const auto x = static_cast<int32_t>(std::lround(place.x)) - image->getWidth() / 2;
        const auto y = static_cast<int32_t>(std::lround(place.y)) - image->getHeight() / 2;
        const CColor* mark = isMarked(group, i) ? classColor(kSelectLine) : nullptr;
        for (int32_t layer = 0; color && layer < image->layerCount(); ++layer) {
            drawImageLayer(image->layer(layer), x, y, kWholeArea, *color, pointOpacity_, false);
        }
        if (mark) {
            drawPart(Select, {x, y, x + image->getWidth(), y + image->getHeight()}, *mark, 1.0, target().clip);
        }
    }
}

bool CControlSurface::isHovered(const CControlSurfaceGroup& group, int32_t index) const {
    return index == hovered_ && (isSliderMode_ || &group == editable_ || isLinked(group));
}

bool CControlSurface::isLinked(const CControlSurfaceGroup& group) const {
    return editable_ && groupNamed(group.linkedGroup()) == editable_;
}

}  // namespace tarv
