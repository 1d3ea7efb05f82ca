#pragma once

#include <stdlib.h>

// Included before every source of a planted build: switches its faults on, one per run.

namespace plant {

/// Whether the environment asks for the fault of that number.
inline bool Is(unsigned number)
{
    static const unsigned s_Chosen = [] {
        const char* text = getenv("ZMMATH_PLANT");
        return text != nullptr ? unsigned(strtoul(text, nullptr, 10)) : 0;
    }();
    return s_Chosen == number;
}

}  // namespace plant
