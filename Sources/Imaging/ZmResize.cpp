#include "ZmResize.h"

#include "Imaging/Conversion.h"
#include "Imaging/HeapArray.h"
#include "Imaging/ResizeLines.h"
#include "ZmBlit.h"

#include <algorithm>
#include <functional>
#include <math.h>
#include <numeric>
#include <string.h>

namespace {

using namespace zm;

/// One direction of a resize.
class Axis {
public:
    bool Prepare(int from, int to)
    {
        // An area covers from / to source pixels, plus up to two partial ones.
        const int64_t most = to < from ? int64_t(from) + 2 * int64_t(to) : 2 * int64_t(to);
        m_Taps = NewArray<Taps>(to);
        m_Weights = NewArray<float>(most);
        if (m_Taps == nullptr || m_Weights == nullptr) {
            return false;
        }
        m_Used = m_MostTaps = 0;
        for (int i = 0; i < to; ++i) {
            m_Taps[size_t(i)] = to < from ? Area(i, from, to) : Between(i, from, to);
            m_MostTaps = std::max(m_MostTaps, m_Taps[size_t(i)].count);
        }
        m_Parts = to < from ? from / std::gcd(from, to) : 2 * int64_t(to);
        return true;
    }

    const Taps* AllTaps() const { return m_Taps.get(); }
    const float* Weights() const { return m_Weights.get(); }
    /// The largest number of source pixels that contribute to one result pixel.
    int MostTaps() const { return m_MostTaps; }
    /// Every weight is a multiple of 1 / Parts().
    int64_t Parts() const { return m_Parts; }

private:
    void Add(double weight) { m_Weights[size_t(m_Used++)] = float(weight); }

    /// In units of 1 / to of a source pixel, result pixel i covers from * i to from * (i + 1).
    Taps Area(int i, int from, int to)
    {
        const int64_t begin = int64_t(from) * i, end = begin + from;
        const Taps res = {int(begin / to), int((end + to - 1) / to - begin / to), m_Used};
        for (int64_t place = res.first; place < res.first + res.count; ++place) {
            const int64_t left = place * to > begin ? place * to : begin;
            const int64_t right = (place + 1) * to < end ? (place + 1) * to : end;
            Add(double(right - left) / from);
        }
        return res;
    }

    /// In units of half a result pixel, the centre of result pixel i lies from * (2 * i + 1) - to behind the centre of
    /// the first source pixel, and source pixels are 2 * to apart.
    Taps Between(int i, int from, int to)
    {
        const int64_t apart = 2 * int64_t(to), centre = int64_t(from) * (2 * int64_t(i) + 1) - to;
        const int64_t place = centre < 0 ? 0 : centre / apart;
        const double share = centre < 0 ? 0 : double(centre % apart) / double(apart);
        const Taps res = {int(place), share > 0 && place + 1 < from ? 2 : 1, m_Used};
        if (res.count == 1) {
            Add(1);
        } else {
            Add(1 - share);
            Add(share);
        }
        return res;
    }

    HeapArray<Taps> m_Taps;
    HeapArray<float> m_Weights;
    int m_Used = 0, m_MostTaps = 0;
    int64_t m_Parts = 1;
};

bool Equal(const PixelLayout& a, const PixelLayout& b)
{
    return memcmp(&a, &b, sizeof(a)) == 0;
}

/// The lines of an image with colours, and alpha if present, at the positions of ARGB8888. Lines that have this layout
/// already are not copied.
class SourceLines {
public:
    static constexpr int kCopies = 6;

    bool Prepare(const ImageView& image, const PixelLayout& layout)
    {
        m_Image = image;
        m_Read = Convert(image.layout, kArgb);
        m_Direct = Equal(image.layout, kArgb) || Equal(image.layout, layout);
        m_Copies = m_Direct ? nullptr : NewArray<uint8_t>(int64_t(image.width) * 4 * kCopies);
        return m_Direct || m_Copies != nullptr;
    }

    /// Valid until the copy with this number is used again.
    const uint8_t* Read(int y, int number)
    {
        if (m_Direct) {
            return m_Image.Line(y);
        }
        uint8_t* const copy = m_Copies.get() + ptrdiff_t(number) * m_Image.width * 4;
        ConvertPixels(m_Read, m_Image.Line(y), copy, m_Image.width);
        return copy;
    }

private:
    ImageView m_Image;
    Conversion m_Read;
    bool m_Direct;
    HeapArray<uint8_t> m_Copies;
};

/// Whether pixels of an opaque picture can be written directly, with only the highest byte still to be set.
bool HasColoursOfRgb(const PixelLayout& layout)
{
    const bool alpha = layout.channel[kAlpha].bits != 0;
    return Equal(layout, alpha ? kArgb : kRgb);
}

/// What all resizing methods share: reading source lines and writing result lines.
class Lines {
public:
    /// For opaque pictures the highest byte of intermediate pixels is arbitrary.
    bool Prepare(const ImageView& src, const ImageView& dst, bool opaque)
    {
        const PixelLayout& layout = opaque ? kRgb : kArgb;
        m_Dst = dst;
        m_Write = Convert(layout, dst.layout);
        m_Direct = opaque ? HasColoursOfRgb(dst.layout) : Equal(dst.layout, kArgb);
        m_Result = m_Direct ? nullptr : NewArray<uint8_t>(int64_t(dst.width) * 4);
        return (m_Direct || m_Result != nullptr) && m_Source.Prepare(src, layout);
    }

    const uint8_t* Read(int y, int copy) { return m_Source.Read(y, copy); }
    /// The buffer in which to build line y of the result.
    uint8_t* Result(int y) { return m_Direct ? m_Dst.Line(y) : m_Result.get(); }
    /// The same for an opaque picture.
    ResultLine Opaque(int y)
    {
        return {Result(y), m_Dst.width, uint8_t(m_Dst.layout.channel[kAlpha].bits != 0 ? 255 : 0)};
    }
    void Write(int y)
    {
        if (!m_Direct) {
            ConvertPixels(m_Write, m_Result.get(), m_Dst.Line(y), m_Dst.width);
        }
    }

private:
    SourceLines m_Source;
    ImageView m_Dst;
    Conversion m_Write;
    bool m_Direct;
    HeapArray<uint8_t> m_Result;
};

/// The weighted sum, in floats, of the source lines that contribute to result line y. `part` is a scratch line.
void SumOfLines(Lines& lines, const Axis& down, int y, int width, float* sums, float* part)
{
    const Taps& taps = down.AllTaps()[y];
    for (int done = 0; done < taps.count; done += WeightedLines::kMost) {
        WeightedLines some = {{}, {}, std::min(taps.count - done, WeightedLines::kMost)};
        for (int i = 0; i < some.count; ++i) {
            some.line[i] = lines.Read(taps.first + done + i, i);
            some.weight[i] = down.Weights()[taps.weight + done + i];
        }
        const bool first = done < kMostFloats, last = done + some.count == taps.count;
        SumLines(first ? sums : part, some, width, done % kMostFloats > 0);
        if (!first && (last || (done + some.count) % kMostFloats == 0)) {
            std::transform(sums, sums + ptrdiff_t(width) * 4, part, sums, std::plus<float>());
        }
    }
}

/// Resizes any picture: sums up columns in floats, then reduces them to pixels.
bool Resample(const ImageView& src, const ImageView& dst)
{
    Lines lines;
    Axis across, down;
    const HeapArray<float> sums = NewArray<float>(int64_t(src.width) * 4),
                           part = NewArray<float>(int64_t(src.width) * 4);
    if (sums == nullptr || part == nullptr || !lines.Prepare(src, dst, false) ||
        !across.Prepare(src.width, dst.width) || !down.Prepare(src.height, dst.height)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        SumOfLines(lines, down, y, src.width, sums.get(), part.get());
        ReduceLine(lines.Result(y), sums.get(), across.AllTaps(), across.Weights(), dst.width);
        lines.Write(y);
    }
    return true;
}

/// A line of columns, followed by `more` columns of zeros.
class ColumnLine {
public:
    bool Prepare(int width, int more)
    {
        const int64_t each = (int64_t(width) + more) * 2;
        m_Numbers = NewArray<uint16_t>(2 * each);
        if (m_Numbers == nullptr) {
            return false;
        }
        m_Columns = {m_Numbers.get(), m_Numbers.get() + each};
        std::fill_n(m_Columns.blueRed + ptrdiff_t(width) * 2, more * 2, uint16_t(0));
        std::fill_n(m_Columns.greenAlpha + ptrdiff_t(width) * 2, more * 2, uint16_t(0));
        return true;
    }

    const Columns& Get() const { return m_Columns; }

private:
    HeapArray<uint16_t> m_Numbers;
    Columns m_Columns;
};

uint16_t InParts(double weight, int parts)
{
    return uint16_t(floor(weight * parts + 0.5));
}

/// The weighted sums of lines of an opaque picture, with kFraction fraction bits.
class LineSums {
public:
    /// `more` columns beyond the end will be read.
    bool Prepare(int from, int to, int width, int more)
    {
        m_Width = width;
        if (!m_Columns.Prepare(width, more) || !m_Sums.Prepare(width, 0) || !m_Axis.Prepare(from, to)) {
            return false;
        }
        m_Shift = 0;
        const int64_t inner = std::max(m_Axis.MostTaps() - 2, 1);
        while (255 * inner << (m_Shift + 1) <= 65535) {
            ++m_Shift;
        }
        m_InnerWeight = to < from ? InParts(double(to) / from, 1 << (16 + kFraction - m_Shift)) : uint16_t(0);
        return true;
    }

    /// Whether the sum of the bytes of all lines fits in 16 bits.
    bool Fits() const { return m_Axis.MostTaps() <= 256; }

    const Columns& Sum(Lines& lines, int y)
    {
        const Taps& taps = m_Axis.AllTaps()[y];
        const float* const weights = m_Axis.Weights() + taps.weight;
        Band band = {};
        AddInner(band, lines, taps.first + 1, std::max(taps.count - 2, 0));
        band.edge[0] = lines.Read(taps.first, Band::kMost);
        band.edge[1] = lines.Read(taps.first + taps.count - 1, Band::kMost + 1);
        band.edgeWeight[0] = InParts(weights[0], 256 << kFraction);
        band.edgeWeight[1] = taps.count > 1 ? InParts(weights[taps.count - 1], 256 << kFraction) : uint16_t(0);
        band.shift = m_Shift;
        band.innerWeight = m_InnerWeight;
        WeighLines(m_Columns.Get(), band, m_Width);
        return m_Columns.Get();
    }

private:
    void AddInner(Band& band, Lines& lines, int first, int count)
    {
        band.count = count;
        band.sums = m_Sums.Get();
        for (int done = 0; done < count; done += Band::kMost) {
            const int some = std::min(count - done, Band::kMost);
            for (int i = 0; i < some; ++i) {
                band.inner[i] = lines.Read(first + done + i, i);
            }
            if (count > Band::kMost) {
                AddLines(band.sums, band.inner, some, m_Width, done > 0);
            }
        }
    }

    Axis m_Axis;
    int m_Width = 0, m_Shift = 0;
    uint16_t m_InnerWeight = 0;
    ColumnLine m_Columns, m_Sums;
};

/// Integer weights for the columns of an opaque picture.
class IntegerWeights {
public:
    bool Prepare(int from, int to)
    {
        if (!m_Axis.Prepare(from, to)) {
            return false;
        }
        if (!Fits()) {
            return true;
        }
        m_Fours = (m_Axis.MostTaps() + 3) / 4;
        m_First = NewArray<int>(to);
        m_Weights = NewArray<int16_t>(int64_t(to) * m_Fours * 8);
        if (m_First == nullptr || m_Weights == nullptr) {
            return false;
        }
        std::fill_n(m_Weights.get(), ptrdiff_t(to) * m_Fours * 8, int16_t(0));
        for (int x = 0; x < to; ++x) {
            const Taps& taps = m_Axis.AllTaps()[x];
            m_First[size_t(x)] = taps.first;
            for (int i = 0; i < taps.count; ++i) {
                Set(x, i, m_Axis.Weights()[taps.weight + i]);
            }
        }
        return true;
    }

    bool Fits() const { return m_Axis.Parts() <= 32767; }
    /// How many columns beyond the end must be readable.
    int Beyond() const { return m_Fours * 4; }

    WeightTable Table() const
    {
        // Each sum contains up to three products rounded down: the bias returns half of what they can lose.
        constexpr float kBias = 1.5f / (1 << kFraction) + 0.5f;
        return {m_First.get(), m_Weights.get(), m_Fours, 1 / (float(m_Axis.Parts()) * (1 << kFraction)), kBias};
    }

private:
    void Set(int x, int i, double weight)
    {
        int16_t* const res = m_Weights.get() + ptrdiff_t(x) * m_Fours * 8 + i / 2 * 4 + i % 2;
        res[0] = res[2] = int16_t(floor(weight * double(m_Axis.Parts()) + 0.5));
    }

    Axis m_Axis;
    int m_Fours = 0;
    HeapArray<int> m_First;
    HeapArray<int16_t> m_Weights;
};

/// Resizes opaque pictures in integers. Falls back to Resample() where they would overflow.
bool ResampleOpaque(const ImageView& src, const ImageView& dst)
{
    Lines lines;
    IntegerWeights across;
    LineSums down;
    if (!lines.Prepare(src, dst, true) || !across.Prepare(src.width, dst.width) ||
        !down.Prepare(src.height, dst.height, src.width, across.Beyond())) {
        return false;
    }
    if (!across.Fits() || !down.Fits()) {
        return Resample(src, dst);
    }
    const WeightTable table = across.Table();
    for (int y = 0; y < dst.height; ++y) {
        ReduceColumns(lines.Opaque(y), down.Sum(lines, y), table);
        lines.Write(y);
    }
    return true;
}

/// In units of 2^-16, and never 0 or 2^16, so that both weights of a pair fit in 16 bits.
uint16_t WeightOf(double share)
{
    return uint16_t(std::clamp(int(floor(share * 65536 + 0.5)), 1, 65535));
}

/// The last two source lines, stretched to the result's width.
class StretchedLines {
public:
    bool Prepare(int from, int to)
    {
        m_Width = to;
        m_Left = NewArray<int>(to);
        m_Weights = NewArray<uint16_t>(int64_t(to) * 2);
        Axis axis;
        if (m_Left == nullptr || m_Weights == nullptr || !m_Lines[0].Prepare(to, 0) || !m_Lines[1].Prepare(to, 0) ||
            !axis.Prepare(from, to)) {
            return false;
        }
        for (int x = 0; x < to; ++x) {
            const Taps& taps = axis.AllTaps()[x];
            // The last pixel has no right neighbour, so it is taken as the right neighbour of the one before it.
            const bool last = taps.first == from - 1;
            const double right = last ? 1 : taps.count == 2 ? axis.Weights()[taps.weight + 1] : 0;
            m_Left[size_t(x)] = taps.first - last;
            std::fill_n(m_Weights.get() + ptrdiff_t(x) * 2, 2, WeightOf(right));
            m_Inner = taps.first + 9 <= from ? x + 1 : m_Inner;
        }
        return true;
    }

    const Columns& Line(Lines& lines, int y)
    {
        const int place = y % 2;
        if (m_Number[place] != y) {
            StretchLine(m_Lines[place].Get(), lines.Read(y, 0), {m_Left.get(), m_Weights.get(), m_Inner}, m_Width);
            m_Number[place] = y;
        }
        return m_Lines[place].Get();
    }

private:
    int m_Width = 0, m_Inner = 0;
    HeapArray<int> m_Left;
    HeapArray<uint16_t> m_Weights;
    ColumnLine m_Lines[2];
    int m_Number[2] = {-1, -1};
};

/// Enlarges opaque pictures of at least two columns, in integers; each source line is stretched once.
bool Stretch(const ImageView& src, const ImageView& dst)
{
    Lines lines;
    StretchedLines stretched;
    Axis down;
    if (!lines.Prepare(src, dst, true) || !stretched.Prepare(src.width, dst.width) ||
        !down.Prepare(src.height, dst.height)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        const Taps& taps = down.AllTaps()[y];
        const float share = taps.count == 2 ? down.Weights()[taps.weight + 1] : 0;
        const Columns& upper = stretched.Line(lines, taps.first);
        const Columns& lower = stretched.Line(lines, taps.first + taps.count - 1);
        MixLines(lines.Opaque(y), upper, lower, WeightOf(share));
        lines.Write(y);
    }
    return true;
}

/// Scales opaque pictures to exactly half their size.
bool Halve(const ImageView& src, const ImageView& dst)
{
    Lines lines;
    if (!lines.Prepare(src, dst, true)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        const uint8_t* const upper = lines.Read(2 * y, 0);
        HalveLines(lines.Opaque(y), upper, lines.Read(2 * y + 1, 1));
        lines.Write(y);
    }
    return true;
}

/// The bits that are set in all pixels of a line.
template <int Bytes>
uint32_t CommonBits(const uint8_t* pixels, int width)
{
    uint32_t common = ~0u;
    for (int x = 0; x < width; ++x) {
        uint32_t pixel = 0;
        memcpy(&pixel, pixels + ptrdiff_t(x) * Bytes, Bytes);
        common &= pixel;
    }
    return common;
}

uint32_t CommonBits(const ImageView& image, int y)
{
    switch (image.layout.bytes) {
    case 1: return CommonBits<1>(image.Line(y), image.width);
    case 2: return CommonBits<2>(image.Line(y), image.width);
    case 3: return CommonBits<3>(image.Line(y), image.width);
    default: return CommonBits<4>(image.Line(y), image.width);
    }
}

/// Stops at the first line that is not opaque.
bool IsOpaque(const ImageView& image)
{
    const Channel alpha = image.layout.channel[kAlpha];
    const uint32_t mask = ((1u << alpha.bits) - 1) << alpha.shift;
    for (int y = 0; mask != 0 && y < image.height; ++y) {
        if ((CommonBits(image, y) & mask) != mask) {
            return false;
        }
    }
    return true;
}

bool Resize(const ImageView& src, const ImageView& dst)
{
    const bool opaque = IsOpaque(src);
    if (opaque && src.width == 2 * dst.width && src.height == 2 * dst.height) {
        return Halve(src, dst);
    }
    const bool grows = src.width <= dst.width && src.height <= dst.height;
    if (opaque && grows && src.width > 1) {
        return Stretch(src, dst);
    }
    return opaque ? ResampleOpaque(src, dst) : Resample(src, dst);
}

int Half(int size)
{
    return size > 1 ? size / 2 : 1;
}

}  // namespace

int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    ImageView from, to;
    if (!ViewMasked(from, src) || !ViewMasked(to, dst) || from.bits != 32 || to.bits != 32) {
        return 0;
    }
    return from.width == to.width && from.height == to.height ? ZmDoBlit(src, dst) : Resize(from, to);
}

int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    ImageView from, to;
    if (!ViewMasked(from, src) || !ViewMasked(to, dst) || to.width != Half(from.width) ||
        to.height != Half(from.height)) {
        return 0;
    }
    return from.width == 1 && from.height == 1 ? ZmDoBlit(src, dst) : Resize(from, to);
}
