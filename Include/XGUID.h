#pragma once

#include <stdint.h>

/// Identifies a class of objects, for example of log listeners. Two identifiers are equal if both words are.
struct XGUID {
    /// The two words; zero by default.
    uint32_t first = 0;
    uint32_t second = 0;

    /// Compare both words.
    constexpr bool operator==(const XGUID& other) const { return first == other.first && second == other.second; }
    constexpr bool operator!=(const XGUID& other) const { return !(*this == other); }
};
