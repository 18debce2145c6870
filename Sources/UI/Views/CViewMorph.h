#pragma once

#include "Core/CString.h"

namespace tarv {

/// Time of a change from one look to another, in seconds of the window's clock.
struct CViewMorphTime {
    double start = 0.0;
    double end = 0.0;

    /// 0 at the start to 1 at the end; 1 also where the end isn't after the start.
    double ratioAt(double now) const;
};

/// A number of a view that moves: slowly at both ends, as a raised cosine.
class CViewMorphTrack {
public:
    /// A size or an opacity moves from what the track has now, or from `from` if it rests. `text` is the attribute's at
    /// the end.
    void begin(double from, double to, const CString& text, double now, double duration);
    void stop() { isRunning_ = false; }
    bool isRunning() const { return isRunning_; }
    bool isOver(double now) const { return time_.ratioAt(now) >= 1.0; }
    double valueAt(double now) const;
    const CString& finalText() const { return finalText_; }

private:
    CViewMorphTime time_;
    double from_ = 0.0;
    double to_ = 0.0;
    CString finalText_;
    bool isRunning_ = false;
};

}  // namespace tarv
