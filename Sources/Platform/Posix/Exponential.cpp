// The exponential function of POSIX systems, whose libraries compute it without the x87.

#include "Platform/Exponential.h"

#include <cmath>

namespace tarv {

double exponential(double x) {
    return std::exp(x);
}

}  // namespace tarv
