#include "Imaging/ConversionKernels.h"

// Compiled for AVX2. Only ConvertPixels() may be visible outside this file.

namespace zm {
namespace {

/// The bytes of a pixel before and after, as one number.
constexpr int Sizes(int from, int to)
{
    return from * 8 + to;
}

// The sizes, in bits, that have a form of their own because pictures usually have them. All others are left to the
// kernel for every layout.

// True colour with its bytes in another order, with and without alpha.
constexpr int k32To32 = Sizes(4, 4), k32To24 = Sizes(4, 3), k24To32 = Sizes(3, 4);

// True colour, or two channels of 16 bits, to the small formats (565, 1555, 4444, 332), and true colour from them.
constexpr int k32To16 = Sizes(4, 2), k24To16 = Sizes(3, 2), k32To8 = Sizes(4, 1), k16To32 = Sizes(2, 4),
              k16To24 = Sizes(2, 3), k8To32 = Sizes(1, 4);

// Between the small formats: twice as many pixels fit in a register.
constexpr int k16To16 = Sizes(2, 2);

/// Whether the conversion only moves whole bytes; if so, `order` says which byte goes where in a 32-bit pixel.
bool ByteOrder(const Conversion& conversion, uint8_t (&order)[4])
{
    memset(order, 0x80, sizeof(order));
    bool whole = conversion.kind == Moves::PLACES;
    for (int c = 0; c < 4; ++c) {
        const ChannelMove& move = conversion.moves[c];
        if (move.mask != 0) {
            whole = whole && move.mask == 0xFF && (move.shift | move.place) % 8 == 0;
            order[move.place / 8] = uint8_t(move.shift / 8);
        }
    }
    return whole;
}

/// Stores four registers of pixels as three registers of 24-bit pixels.
inline void StoreThrees(const Avx2Pixels (&pixels)[4], uint8_t* res)
{
    const Avx2Pixels a = pixels[0].Threes<0>(), b = pixels[1].Threes<1>(), c = pixels[2].Threes<2>(),
                     d = pixels[3].Threes<3>();
    a.JoinedAt<6>(b).Store<4>(res);
    b.JoinedAt<4>(c).Store<4>(res + 32);
    c.JoinedAt<2>(d).Store<4>(res + 64);
}

template <int From, int To>
void MoveBytes(const Conversion& conversion, const uint8_t (&order)[4], const uint8_t* src, uint8_t* res, int count)
{
    uint8_t places[32];
    for (int i = 0; i < 32; ++i) {
        // Entries for bytes outside the pixel have the high bit set, and keep it.
        places[i] = uint8_t(order[i % 4] + (i / 4 % 4) * 4);
    }
    const Avx2Pixels move = Avx2Pixels::Load<4>(places), constant = Avx2Pixels::Splat(conversion.constant);
    int i = 0;
    if constexpr (To == 3) {
        for (; i + 32 <= count; i += 32) {
            Avx2Pixels pixels[4];
            for (int k = 0; k < 4; ++k) {
                pixels[k] = Avx2Pixels::Load<From>(src + size_t(i + k * 8) * From).Bytes(move) | constant;
            }
            StoreThrees(pixels, res + size_t(i) * To);
        }
    }
    for (; i + 8 <= count; i += 8) {
        const Avx2Pixels pixels = Avx2Pixels::Load<From>(src + size_t(i) * From).Bytes(move) | constant;
        pixels.Store<To>(res + size_t(i) * To);
    }
    ConvertRow<ScalarPixel, From, To, Moves::PLACES>(conversion, src + size_t(i) * From, res + size_t(i) * To,
                                                     count - i);
}

/// Two channels in the halves of 32 bits: where they come from, and how they are scaled within 16 bits.
struct Halves {
    uint8_t bytes[32];  ///< for each pixel, the bytes of the word that holds the channel
    uint16_t mask[2], align[2], bias[2], factor[2], place[2];
};

uint32_t Both(const uint16_t (&of)[2])
{
    return of[0] | uint32_t(of[1]) << 16;
}

/// kNarrowByte[m] narrows 8 bits to m + 1: (value + bias) * factor >> 16 is the nearest number for every value.
constexpr struct {
    uint16_t bias, factor;
} kNarrowByte[8] = {{131, 254}, {43, 768}, {18, 1801}, {9, 3840}, {4, 7971}, {2, 16192}, {1, 32640}, {0, 0}};

/// Returns whether the channel can be scaled in this way: whole bytes to any width, 16 bits to at most eight, and other
/// widths to the same or a larger one.
bool SetHalf(Halves& res, int half, const Channel& from, const Channel& to)
{
    const int word = from.shift / 8;
    const bool missing = from.bits == 0 || to.bits == 0, second = from.shift % 8 + from.bits > 8;
    for (int pixel = 0; pixel < 8; ++pixel) {
        uint8_t* const bytes = res.bytes + pixel * 4 + half * 2;
        bytes[0] = uint8_t(missing ? 0x80 : pixel % 4 * 4 + word);
        bytes[1] = uint8_t(missing || !second ? 0x80 : bytes[0] + 1);
    }
    res.mask[half] = uint16_t(((1u << from.bits) - 1) << from.shift % 8);
    res.place[half] = uint16_t(1u << to.shift % 16);
    res.align[half] = 1;
    res.bias[half] = res.factor[half] = 0;
    if (missing) {
        return true;
    }
    if (from.bits == 8 && to.bits < 8) {
        res.bias[half] = kNarrowByte[to.bits - 1].bias;
        res.factor[half] = kNarrowByte[to.bits - 1].factor;
        return from.shift % 8 == 0;
    }
    if (from.bits == 16 && to.bits <= 8) {
        res.factor[half] = uint16_t((1u << to.bits) - 1);
        return from.shift % 8 == 0;
    }
    // The value moves to the highest bits; a product repeats it.
    int repeated = 1, bits = from.bits;
    for (; bits < to.bits; bits += from.bits) {
        repeated = repeated << from.bits | 1;
    }
    res.align[half] = uint16_t(1u << (16 - from.bits - from.shift % 8));
    res.factor[half] = uint16_t(repeated << (from.bits - (bits - to.bits)));
    return from.bits <= to.bits;
}

/// Pairs blue with red, and green with alpha.
bool InHalves(const Conversion& c, Halves (&pairs)[2])
{
    const Channel *const from = c.from.channel, *const to = c.to.channel;
    return SetHalf(pairs[0], 0, from[2], to[2]) && SetHalf(pairs[0], 1, from[0], to[0]) &&
           SetHalf(pairs[1], 0, from[1], to[1]) && SetHalf(pairs[1], 1, from[kAlpha], to[kAlpha]);
}

struct HalvesMover {
    explicit HalvesMover(const Halves& h)
        : bytes(Avx2Pixels::Load<4>(h.bytes)), mask(Avx2Pixels::Splat(Both(h.mask))),
          align(Avx2Pixels::Splat(Both(h.align))), bias(Avx2Pixels::Splat(Both(h.bias))),
          factor(Avx2Pixels::Splat(Both(h.factor))), place(Avx2Pixels::Splat(Both(h.place)))
    {
    }

    /// From channels of `Size` whole bytes.
    template <int Size>
    Avx2Pixels Narrowed(Avx2Pixels pixel) const
    {
        const Avx2Pixels values = pixel.Bytes(bytes);
        return Size == 2 ? values.HalvesNarrowed(factor) : values.HalvesPlus(bias).HalvesScaled(factor);
    }
    Avx2Pixels Widened(Avx2Pixels pixel) const
    {
        return (pixel.Bytes(bytes) & mask).HalvesTimes(align).HalvesScaled(factor);
    }

    Avx2Pixels bytes, mask, align, bias, factor, place;
};

bool IsWhole(const Channel& c, int bits)
{
    return c.bits == 0 || (c.bits == bits && c.shift % 8 == 0);
}

/// Whether all channels consist of `bits` bits, in whole bytes.
bool HasWhole(const PixelLayout& layout, int bits)
{
    const Channel* const c = layout.channel;
    return IsWhole(c[0], bits) && IsWhole(c[1], bits) && IsWhole(c[2], bits) && IsWhole(c[kAlpha], bits);
}

bool HasNoByte(const PixelLayout& layout)
{
    return layout.channel[0].bits < 8 && layout.channel[1].bits < 8 && layout.channel[2].bits < 8 &&
           layout.channel[kAlpha].bits < 8;
}

/// From channels of whole bytes to pixels of at most 16 bits with channels of less than eight.
template <int From, int To, int Size>
void Narrow(const Conversion& c, const Halves (&pairs)[2], const uint8_t* src, uint8_t* res, int count)
{
    const HalvesMover first(pairs[0]), second(pairs[1]);
    const Avx2Pixels constant = Avx2Pixels::Splat(c.constant);
    int i = 0;
    for (; i + 8 <= count; i += 8, src += 8 * From, res += 8 * To) {
        const Avx2Pixels pixel = Avx2Pixels::Load<From>(src);
        const Avx2Pixels colour = first.Narrowed<Size>(pixel).HalvesJoined(first.place) |
                                  second.Narrowed<Size>(pixel).HalvesJoined(second.place) | constant;
        colour.Store<To>(res);
    }
    ConvertRow<ScalarPixel, From, To, Size == 2 ? Moves::WIDE : Moves::SCALED>(c, src, res, count - i);
}

/// To whole bytes from pixels of at most 16 bits.
template <int From, int To>
void WidenToBytes(const Conversion& c, const Halves (&pairs)[2], const uint8_t* src, uint8_t* res, int count)
{
    // Blue, green, red and alpha in this order, each at its destination.
    uint8_t order[32];
    memset(order, 0x80, sizeof(order));
    constexpr int from[4] = {2, 1, 0, 3};
    for (int pixel = 0; pixel < 8; ++pixel) {
        for (int channel = 0; channel < 4; ++channel) {
            if (c.to.channel[channel].bits != 0) {
                order[pixel * 4 + c.to.channel[channel].shift / 8] = uint8_t(pixel % 4 * 4 + from[channel]);
            }
        }
    }
    const HalvesMover first(pairs[0]), second(pairs[1]);
    const Avx2Pixels constant = Avx2Pixels::Splat(c.constant), places = Avx2Pixels::Load<4>(order);
    int i = 0;
    for (; i + 8 <= count; i += 8, src += 8 * From, res += 8 * To) {
        const Avx2Pixels pixel = Avx2Pixels::Load<From>(src);
        const Avx2Pixels colour = first.Widened(pixel) | second.Widened(pixel) << 8;
        const Avx2Pixels placed = colour.Bytes(places) | constant;
        placed.Store<To>(res);
    }
    ConvertRow<ScalarPixel, From, To, Moves::SCALED>(c, src, res, count - i);
}

/// Handles the pairs of pixel sizes that have a specialised form; returns false for all others.
bool ConvertInHalves(const Conversion& c, const uint8_t* src, uint8_t* res, int count)
{
    Halves pairs[2];
    const bool bytes = c.kind == Moves::SCALED && HasWhole(c.from, 8), words = HasWhole(c.from, 16);
    const bool narrow = (bytes || words) && c.to.bytes <= 2 && HasNoByte(c.to),
               widen = c.kind == Moves::SCALED && HasWhole(c.to, 8) && c.from.bytes <= 2;
    if (narrow == widen || !InHalves(c, pairs)) {
        return false;
    }
    const int sizes = Sizes(c.from.bytes, c.to.bytes);
    if (words && sizes != k32To16) {
        return false;
    }
    switch (sizes) {
    case k32To16: (words ? Narrow<4, 2, 2> : Narrow<4, 2, 1>)(c, pairs, src, res, count); return true;
    case k24To16: Narrow<3, 2, 1>(c, pairs, src, res, count); return true;
    case k32To8: Narrow<4, 1, 1>(c, pairs, src, res, count); return true;
    case k16To32: WidenToBytes<2, 4>(c, pairs, src, res, count); return true;
    case k16To24: WidenToBytes<2, 3>(c, pairs, src, res, count); return true;
    case k8To32: WidenToBytes<1, 4>(c, pairs, src, res, count); return true;
    default: return false;
    }
}

/// Sixteen pixels at a time.
template <Moves Kind>
void ConvertShorts(const Conversion& c, const uint8_t* src, uint8_t* res, int count)
{
    if (c.moves[kAlpha].mask != 0) {
        ConvertRow<Avx2ShortPixels, 2, 2, Kind>(c, src, res, count);
    } else {
        ConvertRow<Avx2ShortPixels, 2, 2, Kind, false>(c, src, res, count);
    }
}

bool HasBias(const Conversion& c)
{
    return (c.moves[0].bias | c.moves[1].bias | c.moves[2].bias | c.moves[kAlpha].bias) != 0;
}

}  // namespace

namespace avx2 {

void ConvertPixels(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    uint8_t order[4];
    const int sizes = Sizes(conversion.from.bytes, conversion.to.bytes);
    const bool bytes = ByteOrder(conversion, order);
    if (bytes && sizes == k32To32) {
        MoveBytes<4, 4>(conversion, order, src, res, count);
    } else if (bytes && sizes == k32To24) {
        MoveBytes<4, 3>(conversion, order, src, res, count);
    } else if (bytes && sizes == k24To32) {
        MoveBytes<3, 4>(conversion, order, src, res, count);
    } else if (sizes == k16To16 && conversion.kind <= Moves::SCALED) {
        (HasBias(conversion) ? ConvertShorts<Moves::SCALED> : ConvertShorts<Moves::UNBIASED>)(conversion, src, res,
                                                                                              count);
    } else if (!ConvertInHalves(conversion, src, res, count)) {
        ConvertBy<Avx2Pixels>(conversion, src, res, count);
    }
}

}  // namespace avx2
}  // namespace zm
