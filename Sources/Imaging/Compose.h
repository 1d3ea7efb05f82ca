#pragma once

#include <stdint.h>

namespace zm {

/// Puts `over`, ARGB8888 with straight alpha, onto `res`, at any address: the operator "over" of Porter and Duff
/// ("Compositing digital images", 1984). Every channel is rounded to nearest. `res` is ARGB8888, or, without alpha,
/// RGB888 in 32 bits, which is opaque; its high byte becomes 0.
void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha);

/// A pixel at a time.
void ComposeScalar(uint8_t* res, const uint8_t* over, int count, bool alpha);

/// The kernel for processors with AVX2.
namespace avx2 {

void ComposeOver(uint8_t* res, const uint8_t* over, int count, bool alpha);

}  // namespace avx2
}  // namespace zm
