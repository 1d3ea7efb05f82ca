#pragma once

#include <stdint.h>

namespace zm {

/// Decodes the sixteen pixels of a block, line by line, into 32-bit numbers with alpha highest, then red, green and
/// blue. `format` is ZM_PF_DXT1 (eight bytes per block) to ZM_PF_DXT5 (sixteen). Interpolated values are rounded to
/// nearest.
void DecodeBlock(uint32_t (&res)[16], const uint8_t* block, uint32_t format);

}  // namespace zm
