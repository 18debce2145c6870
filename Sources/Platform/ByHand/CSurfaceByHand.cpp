// Surfaces in memory.

#include "Platform/ByHand/CSurfaceByHand.h"

#include "Platform/ByHand/CDesktopByHand.h"

namespace tarv {

CSurfaceByHand::CSurfaceByHand(CDesktopByHand& desktop, int32_t width, int32_t height)
    : desktop_(desktop),
      width_(width),
      height_(height),
      pixels_(static_cast<size_t>(width) * static_cast<size_t>(height)) {
    desktop_.countSurface(1);
}

CSurfaceByHand::~CSurfaceByHand() {
    desktop_.readSurface(*this);
    desktop_.countSurface(-1);
}

}  // namespace tarv
