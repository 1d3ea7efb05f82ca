#pragma once

#include <stdint.h>

namespace zm {

/// The sixteen pixels of a block, line by line, each as alpha, red, green and blue from the highest byte down. `format`
/// is ZM_PF_DXT1 (eight bytes a block) to ZM_PF_DXT5 (sixteen). Interpolated values are rounded to nearest.
void DecodeBlock(uint32_t (&res)[16], const uint8_t* block, uint32_t format);

}  // namespace zm
