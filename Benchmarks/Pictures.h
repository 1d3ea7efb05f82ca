#pragma once

#include "Harness.h"

// Conventions of the imaging tasks and their peers. An element is four pixels, so that its bytes are whole floats in
// all formats. The number of elements determines the size; lines have no padding.
namespace bench {
namespace {

constexpr int kPhotoWidth = 640, kPhotoHeight = 427, kSquare = 2048;

inline int WidthOf(const Work& w)
{
    return w.count * 4 == kPhotoWidth * kPhotoHeight ? kPhotoWidth
           : w.count * 4 == kSquare * kSquare        ? kSquare
           : w.count < 100000                        ? 320
                                                     : 1920;
}

inline int HeightOf(const Work& w)
{
    return w.count * 4 / WidthOf(w);
}

}  // namespace
}  // namespace bench
