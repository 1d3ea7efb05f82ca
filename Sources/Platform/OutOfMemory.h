#pragma once

#include <new>

namespace zm {

/// Calls the function and returns its result, or `failed` if it runs out of memory: no exception may leave the library.
template <class Result, class Function>
Result UnlessOutOfMemory(Result failed, Function function) noexcept
{
    try {
        return function();
    } catch (const std::bad_alloc&) {
        return failed;
    }
}

}  // namespace zm
