#pragma once

#include <stdint.h>

namespace zm {

/// Puts `over` onto `res`, both ARGB8888 with straight alpha, at any address: the operator "over" of Porter and Duff
/// ("Compositing digital images", 1984). Every channel is rounded to nearest.
void ComposeOver(uint8_t* res, const uint8_t* over, int count);

}  // namespace zm
