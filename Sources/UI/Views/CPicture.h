#pragma once

#include "UI/Views/CView.h"

namespace tarv {

/// A picture over a panel (`ui:picture`), decorative unless `is-decorative` is "false". Its compact size is the nominal
/// size of its range's first image, in device pixels, where `compact-width` and `compact-height` say nothing. The range
/// stretches over the box: a texture is repeated. With `image-alignment` it is drawn once, aligned. Thread: that of the
/// window.
class CPicture : public CView {
public:
    [[nodiscard]] CError* init() override;
    [[nodiscard]] CError* attrCompactWidth() override;
    [[nodiscard]] CError* attrCompactHeight() override;

protected:
    [[nodiscard]] CError* draw() override;
    void imageRangeChanged() override;
    bool isDecorativeByClass() const override { return true; }
};

}  // namespace tarv
