#pragma once

namespace zm {

/// Which of two neighbouring floats is nearest to the angle of the direction (x, y), which lies so close to halfway
/// between them that doubles cannot tell.
float NearestArctangent(float y, float x, float low, float high);

}  // namespace zm
