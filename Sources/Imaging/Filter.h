#pragma once

#include "Imaging/ImageView.h"
#include "ZmImageOptions.h"

namespace zm {

/// Scales an image by the filter of the options. Takes memory for as many lines of the result as the filter needs, at
/// most FilteredSum::kMost. Returns false, having written nothing, if out of memory.
bool Filter(const ImageView& src, const ImageView& dst, const ZmImageOptions& options);

}  // namespace zm
