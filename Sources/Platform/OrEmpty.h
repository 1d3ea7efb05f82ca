#pragma once

namespace zm {

/// The text, or "" for null.
inline const char* OrEmpty(const char* text)
{
    return text != nullptr ? text : "";
}

}  // namespace zm
