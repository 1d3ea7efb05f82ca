// Arbitrary descriptors and pixels. For a valid descriptor the memory blocks have the exact sizes that it describes, so
// that any access beyond them is detected; invalid descriptors point to nothing readable. All paths must give the same
// bytes, and a refused operation must change none.

#include "Imaging/ImageView.h"
#include "Input.h"
#include "ZmBlit.h"
#include "ZmNormalMap.h"
#include "ZmPixelFormat.h"
#include "ZmProcessor.h"
#include "ZmQuantization.h"
#include "ZmResize.h"

#include <stdlib.h>

#include <vector>

namespace {

struct Image {
    ZmImageDescEx desc;
    std::vector<uint8_t> pixels, palette;
};

void ReadDescriptor(Input& input, ZmImageDescEx& desc)
{
    constexpr int kLargest = 48;  // for speed
    memset(static_cast<void*>(&desc), 0, sizeof(desc));
    const uint8_t format = input.Byte();
    ZmPixelFormat2ImageDesc(ZM_PIXELFORMAT(format % 32), desc);
    if (format & 0x80) {  // masks from the input, or what it leaves of the format's masks
        uint32_t* const masks[4] = {&desc.RedMask, &desc.GreenMask, &desc.BlueMask, &desc.AlphaMask};
        for (uint32_t* mask : masks) {
            *mask ^= input.Word();
        }
        desc.BitsPerPixel = input.Byte() % 40;
    }
    if (format & 0x40) {
        desc.BitsPerPixel = input.Byte() % 2 ? 4 : 8;
        desc.PaletteEntrySize = input.Byte() % 6;
        desc.PaletteCount = uint16_t(input.Byte() + 1);
    }
    desc.Width = int8_t(input.Byte()) % kLargest;
    desc.Height = int8_t(input.Byte()) % kLargest;
}

/// Blocks exactly as large as the lines and entries need.
void ReadPixels(Input& input, Image& image)
{
    ZmImageDescEx& desc = image.desc;
    const int lineBits = desc.Width * (desc.CompressedFormat != 0 ? 32 : desc.BitsPerPixel);
    const int choice = input.Byte();
    const int pitch = lineBits / 8 + choice % 24 - 2;
    desc.BytesPerLine = choice & 0x80 ? -pitch : pitch;
    static uint8_t nothing;
    desc.Pixels = desc.Palette = &nothing;
    zm::ImageView view;
    if (zm::View(view, desc) != nullptr) {
        return;
    }
    const int lines = view.kind == zm::PixelKind::COMPRESSED ? (desc.Height + 3) / 4 : desc.Height;
    const int blockBytes = view.format == ZM_PF_DXT1 ? 8 : 16;
    const int lineBytes =
        view.kind == zm::PixelKind::COMPRESSED ? (desc.Width + 3) / 4 * blockBytes : (desc.Width * view.bits + 7) / 8;
    image.pixels.resize(size_t(abs(pitch)) * size_t(lines - 1) + size_t(lineBytes));
    input.Fill(image.pixels.data(), image.pixels.size());
    desc.Pixels = image.pixels.data() + (desc.BytesPerLine < 0 ? abs(pitch) * (lines - 1) : 0);
    image.palette.resize(size_t(desc.PaletteCount) * desc.PaletteEntrySize);
    input.Fill(image.palette.data(), image.palette.size());
    desc.Palette = image.palette.data();
}

using Operation = int (*)(const ZmImageDescEx& src, const ZmImageDescEx& dst);
constexpr Operation kOperations[] = {
    ZmDoBlit,
    ZmDoBlitUpsideDown,
    ZmDoAlphaBlit,
    ZmResizeImage32,
    ZmGenerateMipMap,
    [](const ZmImageDescEx& src, const ZmImageDescEx& dst) {
        return ZmConvertToNormalMap(src, dst, src.GreenMask, 1e30f);
    },
    [](const ZmImageDescEx& src, const ZmImageDescEx& dst) { return ZmConvertToBumpMap(src, dst, ~src.RedMask, -3); },
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    Input input(data, size);
    const uint8_t choice = input.Byte();
    Image src, dst;
    ReadDescriptor(input, src.desc);
    ReadDescriptor(input, dst.desc);
    if (choice & 0x80) {
        dst.desc.Width = src.desc.Width;
        dst.desc.Height = src.desc.Height;
    }
    SetQuantizationSamplingFactor(choice & 0x40 ? 15 : 3);
    ReadPixels(input, src);
    ReadPixels(input, dst);
    const std::vector<uint8_t> source = src.pixels, before = dst.pixels;
    const Operation operation = kOperations[choice % 7];
    const int done = operation(src.desc, dst.desc);
    Demand(src.pixels == source && (done == 1 || dst.pixels == before));
    if (dst.desc.PaletteCount == 0) {  // the quantiser has a target of its own
        const std::vector<uint8_t> onVectorPath = dst.pixels;
        std::copy(before.begin(), before.end(), dst.pixels.begin());
        ModifyProcessorFeatures(0, ZMPROCESSOR_FEATURE_SSE | ZMPROCESSOR_FEATURE_MMX);
        Demand(operation(src.desc, dst.desc) == done);
        ModifyProcessorFeatures(ZMPROCESSOR_FEATURE_SSE | ZMPROCESSOR_FEATURE_MMX, 0);
        Demand(dst.pixels == onVectorPath);
    }
    return 0;
}
