// Frames with pixman.

#include "../Pictures.h"

#include <pixman.h>
#include <stdlib.h>

namespace bench {
namespace {

pixman_image_t* Picture(pixman_format_code_t format, int width, int height, const void* pixels)
{
    return pixman_image_create_bits(format, width, height, static_cast<uint32_t*>(const_cast<void*>(pixels)),
                                    width * PIXMAN_FORMAT_BPP(format) / 8);
}

void Compose(pixman_op_t operation, pixman_image_t* src, pixman_image_t* dst)
{
    pixman_image_composite32(operation, src, nullptr, dst, 0, 0, 0, 0, 0, 0, pixman_image_get_width(dst),
                             pixman_image_get_height(dst));
    pixman_image_unref(src);
    pixman_image_unref(dst);
}

template <pixman_format_code_t From, pixman_format_code_t To>
void Convert(const Work& w)
{
    const int width = WidthOf(w), height = HeightOf(w);
    Compose(PIXMAN_OP_SRC, Picture(From, width, height, w.src), Picture(To, width, height, w.dst));
}

template <int Width, int Height>
void Resize(const Work& w)
{
    pixman_image_t* const src = Picture(PIXMAN_x8r8g8b8, WidthOf(w), HeightOf(w), w.src);
    pixman_transform_t scale;
    pixman_transform_init_scale(&scale, pixman_double_to_fixed(double(WidthOf(w)) / Width),
                                pixman_double_to_fixed(double(HeightOf(w)) / Height));
    pixman_image_set_transform(src, &scale);
    pixman_image_set_filter(src, PIXMAN_FILTER_BILINEAR, nullptr, 0);
    pixman_image_set_repeat(src, PIXMAN_REPEAT_PAD);
    Compose(PIXMAN_OP_SRC, src, Picture(PIXMAN_x8r8g8b8, Width, Height, w.dst));
}

/// The peer's separable filter has the size of its taps fixed for the picture, and 64 phases.
template <int Width, int Height>
void Lanczos(const Work& w)
{
    const double across = double(WidthOf(w)) / Width, down = double(HeightOf(w)) / Height;
    pixman_image_t* const src = Picture(PIXMAN_a8r8g8b8, WidthOf(w), HeightOf(w), w.src);
    pixman_transform_t scale;
    pixman_transform_init_scale(&scale, pixman_double_to_fixed(across), pixman_double_to_fixed(down));
    pixman_image_set_transform(src, &scale);
    int count = 0;
    const pixman_kernel_t box = PIXMAN_KERNEL_IMPULSE, sinc = PIXMAN_KERNEL_LANCZOS3;
    pixman_fixed_t* const filter = pixman_filter_create_separable_convolution(
        &count, pixman_double_to_fixed(across), pixman_double_to_fixed(down), box, box, sinc, sinc, 6, 6);
    pixman_image_set_filter(src, PIXMAN_FILTER_SEPARABLE_CONVOLUTION, filter, count);
    free(filter);
    pixman_image_set_repeat(src, PIXMAN_REPEAT_PAD);
    Compose(PIXMAN_OP_SRC, src, Picture(PIXMAN_a8r8g8b8, Width, Height, w.dst));
}

constexpr Entry kEntries[] = {
    {"Blit/8888to565", Convert<PIXMAN_a8r8g8b8, PIXMAN_r5g6b5>},
    {"Blit/565to8888", Convert<PIXMAN_r5g6b5, PIXMAN_a8r8g8b8>},
    {"Blit/ARGBtoABGR", Convert<PIXMAN_a8r8g8b8, PIXMAN_a8b8g8r8>},
    {"Blit/24to32", Convert<PIXMAN_r8g8b8, PIXMAN_a8r8g8b8>},
    {"Resize/960x540", Resize<960, 540>},
    {"Resize/700x400", Resize<700, 400>},
    {"Resize/2560x1440", Resize<2560, 1440>},
    {"Resize/Lanczos3To700x400", Lanczos<700, 400>},
    {"Resize/Lanczos3To2560x1440", Lanczos<2560, 1440>},
};

}  // namespace

extern const Contender kPixman;
constexpr Contender kPixman{"pixman", Role::PEER, kEntries};

}  // namespace bench
