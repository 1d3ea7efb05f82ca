// Frames with libyuv; memcpy where it has no conversion.

#include "../Pictures.h"

#include <libyuv.h>
#include <string.h>

#include <vector>

namespace bench {
namespace {

using Bytes = uint8_t;

template <int (*Function)(const Bytes*, int, Bytes*, int, int, int)>
void Convert(const Work& w)
{
    const int width = WidthOf(w);
    Function(static_cast<const Bytes*>(w.src), width * w.srcStride / 4, static_cast<Bytes*>(w.dst),
             width * w.dstStride / 4, width, HeightOf(w));
}

/// Premultiplies the source, then blends it.
void AttenuateAndBlend(const Work& w)
{
    static std::vector<Bytes> premultiplied;
    premultiplied.resize(size_t(w.count) * 16);
    const int width = WidthOf(w), height = HeightOf(w), pitch = width * 4;
    Bytes* const res = static_cast<Bytes*>(w.dst);
    libyuv::ARGBAttenuate(static_cast<const Bytes*>(w.src), pitch, premultiplied.data(), pitch, width, height);
    libyuv::ARGBBlend(premultiplied.data(), pitch, res, pitch, res, pitch, width, height);
}

template <int Width, int Height>
void Resize(const Work& w)
{
    libyuv::ARGBScale(static_cast<const Bytes*>(w.src), WidthOf(w) * 4, WidthOf(w), HeightOf(w),
                      static_cast<Bytes*>(w.dst), Width * 4, Width, Height, libyuv::kFilterBox);
}

void MakeMipmaps(const Work& w)
{
    const Bytes* level = static_cast<const Bytes*>(w.src);
    Bytes* next = static_cast<Bytes*>(w.dst);
    for (int size = kSquare / 2; size > 0; size /= 2) {
        libyuv::ARGBScale(level, size * 8, size * 2, size * 2, next, size * 4, size, size, libyuv::kFilterBox);
        level = next;
        next += size * size * 4;
    }
}

/// Copies as many bytes as the larger side has.
void Copy(const Work& w)
{
    static std::vector<Bytes> copy;
    const size_t size = size_t(w.count) * size_t(w.srcStride > w.dstStride ? w.srcStride : w.dstStride);
    copy.resize(size);
    memcpy(copy.data(), w.srcStride > w.dstStride ? w.src : w.dst, size);
}

constexpr Entry kEntries[] = {
    {"Blit/8888to565", Convert<libyuv::ARGBToRGB565>},
    {"Blit/565to8888", Convert<libyuv::RGB565ToARGB>},
    {"Blit/ARGBtoABGR", Convert<libyuv::ARGBToABGR>},
    {"Blit/24to32", Convert<libyuv::RGB24ToARGB>},
    {"Blit/32to24", Convert<libyuv::ARGBToRGB24>},
    {"Blit/4444to565", Copy, "memcpy"},
    {"Blit/V16U16to565", Copy, "memcpy"},
    {"Blit/332to8888", Copy, "memcpy"},
    {"Blit/Alpha", AttenuateAndBlend},
    {"Resize/960x540", Resize<960, 540>},
    {"Resize/700x400", Resize<700, 400>},
    {"Resize/2560x1440", Resize<2560, 1440>},
    {"Resize/Mipmaps", MakeMipmaps},
    {"Resize/WithAlpha", Resize<2560, 1440>, "unweighted"},
};

}  // namespace

extern const Contender kLibyuv;
constexpr Contender kLibyuv{"libyuv", Role::PEER, kEntries};

}  // namespace bench
