#pragma once

#include <stdarg.h>

namespace zm {

/// As vsnprintf(), several times as fast, for what most messages consist of: text and the conversions %s, %c, %d, %i,
/// %u and %% as they stand. False, with anything in `res`, for every other conversion, a null text, or a result that
/// `size` characters and the end cannot hold.
bool FormatPlain(char* res, int size, const char* format, va_list arguments);

/// Whether a format ends in the middle of a conversion, as "100%" does. Of such a one C libraries make nothing, or
/// drop what is unfinished.
bool EndsInConversion(const char* format);

}  // namespace zm
