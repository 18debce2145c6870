#pragma once

#include <cstdint>

#include "Core/CAttribute.h"

namespace tarv {

/// Where the pointer is, in pixels of the window, and what is held with it.
struct CSurfacePointer {
    int32_t x = 0;
    int32_t y = 0;
    bool isAlt = false;
    bool isCtrl = false;
    bool isShift = false;

    /// Of an event of the mouse or of a key.
    static CSurfacePointer of(CAttributeMap& params);
};

/// Pixel of a point that is no bar.
struct CSurfacePlace {
    double x = 0.0;
    double y = 0.0;
};

/// What is dragged, and how far the pointer has come. The way is kept in pixels from the start, so that a drag back to
/// its start gives the values of the start; a finer movement adds less, and a change of the precision makes no jump.
class CSurfaceDrag {
public:
    enum class CMode : uint8_t {
        None,
        Relative,  ///< the point follows
        Segment,   ///< it and the next one follow
        Painting,  ///< each bar that is passed takes the pointer's height
        Held       ///< the button is down, and nothing follows any more
    };
    /// A value at the start, and its position along its axis.
    struct CStart {
        double value = 0.0;
        double position = 0.0;
    };

    void begin(CMode mode, int32_t point, const CSurfacePointer& pointer);
    void setStart(int32_t offset, const CStart& x, const CStart& y);
    /// The pointer is elsewhere.
    void moveTo(const CSurfacePointer& pointer, double precision);
    void stop() { mode_ = CMode::Held; }
    void end() { mode_ = CMode::None; }

    CMode mode() const { return mode_; }
    /// Values follow the pointer.
    bool isActive() const { return mode_ != CMode::None && mode_ != CMode::Held; }
    int32_t point() const { return point_; }
    int32_t pointCount() const { return mode_ == CMode::Segment ? 2 : 1; }
    const CStart& startX(int32_t offset) const { return starts_[offset][0]; }
    const CStart& startY(int32_t offset) const { return starts_[offset][1]; }
    const CSurfacePointer& last() const { return last_; }
    /// Pixels to the right and upwards since the start.
    double movedRight() const { return movedRight_; }
    double movedUp() const { return movedUp_; }

private:
    CMode mode_ = CMode::None;
    int32_t point_ = -1;
    CStart starts_[2][2];
    CSurfacePointer last_;
    double movedRight_ = 0.0;
    double movedUp_ = 0.0;
};

}  // namespace tarv
