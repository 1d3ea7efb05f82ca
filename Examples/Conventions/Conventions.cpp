// Draws the pictures of Documentation/Conventions.md into the current folder. All arrows and positions are computed by
// the library's own functions, so the pictures show what the code does.
#include "Pictures.h"

#include "ZmProcessor.h"

#include <cstdio>

int main()
{
    // Lengths on the vector path are approximate and differ between processors.
    ModifyProcessorFeatures(0, ZMPROCESSOR_FEATURE_SSE);
    const bool drawn = DrawRows() && DrawProducts() && DrawRotations() && DrawEulerOrder() && DrawHandedness() &&
                       DrawCameras() && DrawClipSpace() && DrawDepths() && DrawScreenSpace() && DrawPixelLayouts() &&
                       DrawLines() && DrawFilters() && DrawLight() && DrawNormalLevels();
    if (!drawn) {
        std::fputs("A picture cannot be written\n", stderr);
    }
    return drawn ? 0 : 1;
}
