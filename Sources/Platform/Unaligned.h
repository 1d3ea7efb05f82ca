#pragma once

#include <string.h>

namespace zm {

/// The value at any address.
template <class T>
T LoadUnaligned(const void* bytes)
{
    T res;
    memcpy(&res, bytes, sizeof(res));
    return res;
}

}  // namespace zm
