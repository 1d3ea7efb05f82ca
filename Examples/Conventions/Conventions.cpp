// Draws the pictures of Documentation/Conventions.md into the current folder. Every arrow and place comes out of the
// library's own functions: the pictures show what the code does.
#include "Pictures.h"

#include "ZmProcessor.h"

#include <cstdio>

int main()
{
    // On the vector path lengths are approximate, and differ between processors.
    ModifyProcessorFeatures(0, ZMPROCESSOR_FEATURE_SSE);
    const bool drawn = DrawRows() && DrawProducts() && DrawRotations() && DrawEulerOrder() && DrawHandedness() &&
                       DrawClipSpace() && DrawScreenSpace() && DrawPixelLayouts() && DrawLines();
    if (!drawn)
        std::fputs("A picture cannot be written\n", stderr);
    return drawn ? 0 : 1;
}
