#pragma once

#include "Tour.h"

/// Prints what the tour did and how fast. Includes bulk transforms on both paths, which take a moment.
void PrintReport(const Tour& tour);
