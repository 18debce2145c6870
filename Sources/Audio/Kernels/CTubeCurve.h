#pragma once

namespace tarv {

/// One transfer curve: the identity up to `kneeStart`, a circular arc, and from `kneeEnd` on a line through the origin.
struct CTubeCurve {
    double bend;
    double slope;
    double kneeStart;
    double centreOffset;  ///< minus the arc's radius
    double kneeEnd;
    double radiusSquared;
};

}  // namespace tarv
