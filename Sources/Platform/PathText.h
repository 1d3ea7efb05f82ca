#pragma once

#include <algorithm>
#include <string>

namespace zm {

// Paths take the separators of both platforms.

inline bool IsSeparator(char c)
{
    return c == '\\' || c == '/';
}

/// The path with that separator in place of each.
inline std::string WithSeparator(char separator, std::string path)
{
    std::replace_if(path.begin(), path.end(), IsSeparator, separator);
    return path;
}

}  // namespace zm
