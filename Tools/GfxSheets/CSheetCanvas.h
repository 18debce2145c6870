#pragma once

#include <string>
#include <unordered_map>

#include "CSheetResources.h"
#include "UI/Drawing/CLinearBitmap.h"

namespace tarv {

enum class CSheetAlign { Left, Center, Right };

/// A bitmap, a palette, and drawing as the views of the editor do it. Lengths of the layout are pixels at scale 1.0, as
/// the editor's data hold them; whole pixels are reached by rounding the two ends of each.
class CSheetCanvas {
public:
    struct CBox {
        double x = 0.0;
        double y = 0.0;
        double width = 0.0;
        double height = 0.0;

        CBox inset(double by) const { return {x + by, y + by, width - 2 * by, height - 2 * by}; }
        double right() const { return x + width; }
        double bottom() const { return y + height; }
    };

    /// `width` and `height` at scale 1.0.
    CSheetCanvas(CSheetResources& resources, const std::string& palette, double width, double height);

    int32_t pixels(double length) const;
    CIntRect rect(const CBox& box) const;
    const CColor& color(const std::string& name) const;
    void fill(const CBox& box, const std::string& colorName, double opacity = 1.0);

    /// One picture of a range, its nominal rectangle in the middle of the box.
    void image(const std::string& set, const std::string& range, const std::string& colorName, const CBox& box,
               uint32_t frame = 0, double opacity = 1.0);
    /// The nine pictures of a range around the box; a range of one picture is repeated over it. Within `clip`, if
    /// given.
    void frame(const std::string& set, const std::string& range, const std::string& colorName, const CBox& box,
               double opacity = 1.0, const CBox* clip = nullptr);

    /// One line; `[B]`, `[/B]` and `[IMG=set#Range:Color]` as in the texts of views. In the middle of the box's height.
    void text(const std::string& font, const std::string& line, const std::string& colorName, const CBox& box,
              CSheetAlign align = CSheetAlign::Left);
    /// Its width in device pixels.
    int32_t textWidth(const std::string& font, const std::string& line);

    CLinearBitmap& bitmap() { return bitmap_; }
    CSheetResources& resources() { return resources_; }
    double scale() const { return resources_.scale(); }
    /// Each pixel as a square of `zoom` pixels.
    [[nodiscard]] bool writePng(const std::string& path, int32_t zoom = 1) const;

private:
    /// Draws the line from `x` on if `colorName` is given; gives its width.
    int32_t walk(const std::string& font, const std::string& line, const std::string* colorName, int32_t x,
                 const CIntRect& to);
    /// Gives its advance.
    double drawGlyph(const CFont& font, uint32_t code, const CColor* color, double pen, const CIntRect& to);

    CSheetResources& resources_;
    const CPalette& palette_;
    mutable std::unordered_map<std::string, const CColor*> colors_;
    CLinearBitmap bitmap_;
};

}  // namespace tarv
