#pragma once

#include "ZmImageOptions.h"

namespace zm {

/// A filter as a function of the distance in pixels, zero from `radius` on. The box, whose weights depend on what a
/// pixel covers, has none.
struct FilterShape {
    double radius;
    double (*at)(double x);
};

/// The shape of a filter; that of ZMFILTER_BILINEAR for the box and the default.
FilterShape ShapeOf(ZMFILTER filter);

}  // namespace zm
