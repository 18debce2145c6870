// A shade over a panel.

#include "UI/Views/CGradient.h"

namespace tarv {

CError* CGradient::draw() {
    const CColor* color = this->color(0);
    if (imageSet() || !color) {
        return CPicture::draw();
    }
    const CIntRect box = areaBox(kBoxArea);
    const CIntRect clip = areaClip(kBoxArea);
    for (int32_t y = clip.top; y < clip.bottom; ++y) {
        const double depth = (y - box.top + 0.5) / box.height();
        target().bitmap->fillRect({clip.left, y, clip.right, y + 1}, *color, depth);
    }
    return nullptr;
}

}  // namespace tarv
