#include "ZmRect.h"

void ZmRect::Transform(const ZmRect& destScreen, const ZmRect& srcScreen)
{
    // Copies: this rectangle may be one of the screens.
    const ZmRect dest = destScreen, src = srcScreen;
    const float srcWidth = src.right - src.left, srcHeight = src.bottom - src.top;
    const float destWidth = dest.right - dest.left, destHeight = dest.bottom - dest.top;
    left = (left - src.left) / srcWidth * destWidth + dest.left;
    top = (top - src.top) / srcHeight * destHeight + dest.top;
    right = (right - src.right) / srcWidth * destWidth + dest.right;
    bottom = (bottom - src.bottom) / srcHeight * destHeight + dest.bottom;
}

void ZmRect::Transform(const Zm2DVector& destSize, const Zm2DVector& srcSize)
{
    const float scaleX = destSize.x / srcSize.x, scaleY = destSize.y / srcSize.y;
    left *= scaleX;
    right *= scaleX;
    top *= scaleY;
    bottom *= scaleY;
}

void ZmRect::TransformToHomogeneous(const ZmRect& screen)
{
    const float originX = screen.left, originY = screen.top;
    const float screenWidth = screen.right - originX, screenHeight = screen.bottom - originY;
    const float width = right - left, height = bottom - top;
    left = (left - originX) / screenWidth;
    top = (top - originY) / screenHeight;
    right = left + width / screenWidth;
    bottom = top + height / screenHeight;
}

void ZmRect::TransformFromHomogeneous(const ZmRect& screen)
{
    const float originX = screen.left, originY = screen.top;
    const float screenWidth = screen.right - originX, screenHeight = screen.bottom - originY;
    const float width = right - left, height = bottom - top;
    left = screenWidth * left + originX;
    top = screenHeight * top + originY;
    right = left + width * screenWidth;
    bottom = top + height * screenHeight;
}

int ZmPtInRect(const RKRECT* rect, const RKPOINT* pt)
{
    return rect->left <= pt->x && pt->x <= rect->right && rect->top <= pt->y && pt->y <= rect->bottom;
}
