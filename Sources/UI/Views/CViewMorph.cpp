#include "UI/Views/CViewMorph.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tarv {

double CViewMorphTime::ratioAt(double now) const {
    return end > start ? std::clamp((now - start) / (end - start), 0.0, 1.0) : 1.0;
}

void CViewMorphTrack::begin(double from, double to, const CString& text, double now, double duration) {
    from_ = isRunning_ ? valueAt(now) : from;
    to_ = to;
    time_ = {now, now + duration};
    finalText_ = text;
    isRunning_ = true;
}

double CViewMorphTrack::valueAt(double now) const {
    const double p = time_.ratioAt(now);
    return from_ + (to_ - from_) * (std::sin(p * std::numbers::pi - std::numbers::pi / 2) + 1.0) / 2.0;
}

}  // namespace tarv
