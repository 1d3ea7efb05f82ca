#pragma once

#include <stdint.h>

/// Identifies a class of objects: log listeners, for example. Two are equal if both words are.
struct XGUID {
    /// The two words; zero when default-built.
    uint32_t first = 0;
    uint32_t second = 0;

    /// Word by word.
    constexpr bool operator==(const XGUID& other) const { return first == other.first && second == other.second; }
    constexpr bool operator!=(const XGUID& other) const { return !(*this == other); }
};
