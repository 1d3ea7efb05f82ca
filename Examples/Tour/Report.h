#pragma once

#include "Tour.h"

/// Prints what the tour did and how fast, bulk transforms on both paths included; those take a moment.
void PrintReport(const Tour& tour);
