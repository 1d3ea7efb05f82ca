#pragma once

#include "Imaging/Conversion.h"
#include "Imaging/PixelLanes.h"

namespace zm {
namespace {

/// A channel's move, copied out of the conversion: stores through byte pointers may alias the original.
template <class Pixels>
struct Mover {
    explicit Mover(const ChannelMove& m)
        : shift(m.shift), drop(m.drop), place(m.place), mask(Pixels::Splat(m.mask)),
          factor(Pixels::Splat(uint32_t(m.factor))), bias(Pixels::Splat(uint32_t(m.bias))),
          carry(Pixels::Splat(m.carry))
    {
    }

    template <Moves Kind>
    Pixels Of(Pixels pixel) const
    {
        const Pixels value = pixel >> shift & mask;
        if constexpr (Kind == Moves::WIDE) {
            const Pixels sum = value.ScaleAddWide(factor, bias);
            return sum.Plus(sum >> 16 & carry) >> drop << place;
        } else if constexpr (Kind == Moves::SCALED) {
            return value.ScaleAdd(factor, bias) >> drop << place;
        } else if constexpr (Kind == Moves::UNBIASED) {
            return value.Scale(factor) >> drop << place;
        } else {
            return value << place;
        }
    }

    int shift, drop, place;
    Pixels mask, factor, bias, carry;
};

/// Converts whole registers and returns the number of pixels done. Without `Alpha`, colours only.
template <class Pixels, int From, int To, Moves Kind, bool Alpha>
inline int ConvertRegisters(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    const Mover<Pixels> red(conversion.moves[0]), green(conversion.moves[1]), blue(conversion.moves[2]),
        alpha(conversion.moves[kAlpha]);
    const Pixels constant = Pixels::Splat(conversion.constant);
    int i = 0;
    for (; i + Pixels::kCount <= count; i += Pixels::kCount, src += Pixels::kCount * From, res += Pixels::kCount * To) {
        const Pixels pixel = Pixels::template Load<From>(src);
        Pixels colour =
            red.template Of<Kind>(pixel) | green.template Of<Kind>(pixel) | blue.template Of<Kind>(pixel) | constant;
        if constexpr (Alpha) {
            colour = colour | alpha.template Of<Kind>(pixel);
        }
        colour.template Store<To>(res);
    }
    return i;
}

template <class Pixels, int From, int To, Moves Kind, bool Alpha = true>
inline void ConvertRow(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    const int done = ConvertRegisters<Pixels, From, To, Kind, Alpha>(conversion, src, res, count);
    if constexpr (Pixels::kCount > 1) {
        ConvertRegisters<ScalarPixel, From, To, Kind, Alpha>(conversion, src + size_t(done) * From,
                                                             res + size_t(done) * To, count - done);
    }
}

template <class Pixels, int From, int To>
inline void ConvertSizes(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    switch (conversion.kind) {
    case Moves::SCALED: ConvertRow<Pixels, From, To, Moves::SCALED>(conversion, src, res, count); break;
    case Moves::WIDE: ConvertRow<Pixels, From, To, Moves::WIDE>(conversion, src, res, count); break;
    default: ConvertRow<Pixels, From, To, Moves::PLACES>(conversion, src, res, count); break;
    }
}

template <class Pixels, int From>
inline void ConvertFrom(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    switch (conversion.to.bytes) {
    case 1: ConvertSizes<Pixels, From, 1>(conversion, src, res, count); break;
    case 2: ConvertSizes<Pixels, From, 2>(conversion, src, res, count); break;
    case 3: ConvertSizes<Pixels, From, 3>(conversion, src, res, count); break;
    default: ConvertSizes<Pixels, From, 4>(conversion, src, res, count); break;
    }
}

template <class Pixels>
inline void ConvertBy(const Conversion& conversion, const uint8_t* src, uint8_t* res, int count)
{
    switch (conversion.from.bytes) {
    case 1: ConvertFrom<Pixels, 1>(conversion, src, res, count); break;
    case 2: ConvertFrom<Pixels, 2>(conversion, src, res, count); break;
    case 3: ConvertFrom<Pixels, 3>(conversion, src, res, count); break;
    default: ConvertFrom<Pixels, 4>(conversion, src, res, count); break;
    }
}

}  // namespace
}  // namespace zm
