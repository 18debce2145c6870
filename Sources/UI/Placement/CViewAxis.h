#pragma once

#include "UI/Placement/CViewArea.h"

namespace tarv {

/// The cells that one axis takes.
struct CViewAxis {
    CViewCell position;
    CViewCell size;
    CViewCell innerLead;
    CViewCell innerTrail;
    CViewCell outerLead;
    CViewCell outerTrail;
    CViewCell content;
    CViewCell least;
    CViewCell region;
    CViewCell regionSize;
    CViewCell base;
    CViewCell offset;
    CViewCell ratio;
    CViewCell scroller;
};

/// 0 horizontal, 1 vertical.
inline constexpr CViewAxis kViewAxes[2] = {
    {CViewCell::X, CViewCell::Width, CViewCell::InnerLeft, CViewCell::InnerRight, CViewCell::OuterLeft,
     CViewCell::OuterRight, CViewCell::ContentWidth, CViewCell::MinWidth, CViewCell::RegionX, CViewCell::RegionWidth,
     CViewCell::BaseWidth, CViewCell::OffsetX, CViewCell::RatioX, CViewCell::ScrollerWidth},
    {CViewCell::Y, CViewCell::Height, CViewCell::InnerTop, CViewCell::InnerBottom, CViewCell::OuterTop,
     CViewCell::OuterBottom, CViewCell::ContentHeight, CViewCell::MinHeight, CViewCell::RegionY,
     CViewCell::RegionHeight, CViewCell::BaseHeight, CViewCell::OffsetY, CViewCell::RatioY, CViewCell::ScrollerHeight}};

}  // namespace tarv
