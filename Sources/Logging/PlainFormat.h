#pragma once

#include <stdarg.h>

namespace zm {

/// Like vsnprintf(), but several times as fast, for the plain conversions %s, %c, %d, %i, %u and %%, without flags or
/// width, which most messages use. Returns false, with undefined contents of `res`, for any other conversion, a null
/// text, or a result that does not fit in `size` characters with its terminator.
bool FormatPlain(char* res, int size, const char* format, va_list arguments);

/// Whether a format ends in the middle of a conversion, as "100%" does. C libraries fail on such a format or drop the
/// unfinished conversion.
bool EndsInConversion(const char* format);

}  // namespace zm
