#pragma once

#include <stdint.h>

namespace zm {

/// Composes `over`, ARGB8888 with straight alpha, onto `res`: the operator "over" of Porter and Duff ("Compositing
/// digital images", 1984). Every channel is rounded to nearest. `res` is ARGB8888 or, without alpha, RGB888 in 32 bits,
/// which counts as opaque; its high byte becomes 0. Addresses need no alignment.
void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha);

/// The reference implementation, one pixel at a time.
void ComposeScalar(uint8_t* res, const uint8_t* over, int count, bool alpha);

/// The kernel for processors with AVX2.
namespace avx2 {

void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha);

}  // namespace avx2
}  // namespace zm
