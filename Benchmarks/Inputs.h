#pragma once

#include "Operands.h"

#include <stddef.h>

// All data that tasks read and write: created on first use, the same in every run, aligned to 64 bytes. A larger
// request may invalidate what an earlier one returned.
namespace bench {

/// At least `bytes` bytes of random floats from -1 to 1. Every fourth is 1, so that 16-byte elements are points with w
/// = 1.
const float* RandomFloats(size_t bytes);

/// Memory for the results: zero at first, later whatever the last task has left.
void* ResultMemory(size_t bytes);

/// 0 to count - 1 in random order.
const int* ShuffledIndices(int count);

/// `count` different path-like names of 8 to 40 characters, such as "models/city/door_0417.mesh".
const char* const* PathNames(int count);

const Operands& RandomOperands();

/// Pairs for the queries, with the pass counter reset to 0.
struct QueryInputs;
QueryInputs& RandomQueries();

/// A rotation about a point near the origin, as a matrix of the library. Applied repeatedly to its own results it
/// neither grows nor shrinks them.
const float* TurningMatrix();

}  // namespace bench
