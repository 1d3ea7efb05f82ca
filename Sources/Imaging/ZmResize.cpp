#include "ZmResize.h"

#include "Imaging/Conversion.h"
#include "Imaging/HeapArray.h"
#include "Imaging/ResizeLines.h"
#include "ZmBlit.h"

#include <algorithm>
#include <math.h>
#include <string.h>

namespace {

using namespace zm;

/// One direction of a resize.
class Axis {
public:
    bool Prepare(int from, int to)
    {
        // An area touches from / to pixels and two that it cuts.
        const int64_t most = to < from ? int64_t(from) + 2 * int64_t(to) : 2 * int64_t(to);
        m_Taps = NewArray<Taps>(to);
        m_Weights = NewArray<float>(most);
        if (m_Taps == nullptr || m_Weights == nullptr) {
            return false;
        }
        m_Used = 0;
        for (int i = 0; i < to; ++i) {
            m_Taps[size_t(i)] = to < from ? Area(i, from, to) : Between(i, from, to);
        }
        return true;
    }

    const Taps* AllTaps() const { return m_Taps.get(); }
    const float* Weights() const { return m_Weights.get(); }

private:
    void Add(double weight) { m_Weights[size_t(m_Used++)] = float(weight); }

    /// In units of 1 / to of a source pixel, the result's pixel i covers from * i to from * (i + 1).
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

    /// In units of half a pixel of the result, its centre lies at from * (2 * i + 1) - to behind that of the first
    /// source pixel, and source pixels are 2 * to apart.
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
    int m_Used = 0;
};

bool Equal(const PixelLayout& a, const PixelLayout& b)
{
    return memcmp(&a, &b, sizeof(a)) == 0;
}

/// The lines of an image with the colours where ARGB8888 has them, and alpha if it has some: its own where they are so
/// already, else copies of the last few that were read.
class SourceLines {
public:
    bool Prepare(const ImageView& image, const PixelLayout& layout)
    {
        m_Image = image;
        m_Read = Convert(image.layout, kArgb);
        m_Direct = Equal(image.layout, kArgb) || Equal(image.layout, layout);
        m_Copies = m_Direct ? nullptr : NewArray<uint8_t>(int64_t(image.width) * 4 * WeightedLines::kMost);
        return m_Direct || m_Copies != nullptr;
    }

    const uint8_t* Read(int y)
    {
        if (m_Direct) {
            return m_Image.Line(y);
        }
        uint8_t* const copy = m_Copies.get() + ptrdiff_t(y % WeightedLines::kMost) * m_Image.width * 4;
        ConvertPixels(m_Read, m_Image.Line(y), copy, m_Image.width);
        return copy;
    }

private:
    ImageView m_Image;
    Conversion m_Read;
    bool m_Direct;
    HeapArray<uint8_t> m_Copies;
};

/// Whether pixels of an opaque picture can be written as they are to be: only their highest byte is to be set.
bool HasColoursOfRgb(const PixelLayout& layout)
{
    const bool alpha = layout.channel[kAlpha].bits != 0;
    return Equal(layout, alpha ? kArgb : kRgb);
}

/// What all ways of resizing have: lines of the source go in, lines of the result come out.
class Lines {
public:
    /// Of opaque pictures the highest byte of a pixel may be anything on the way.
    bool Prepare(const ImageView& src, const ImageView& dst, bool opaque)
    {
        const PixelLayout& layout = opaque ? kRgb : kArgb;
        m_Dst = dst;
        m_Write = Convert(layout, dst.layout);
        m_Direct = opaque ? HasColoursOfRgb(dst.layout) : Equal(dst.layout, kArgb);
        m_Result = m_Direct ? nullptr : NewArray<uint8_t>(int64_t(dst.width) * 4);
        return (m_Direct || m_Result != nullptr) && m_Source.Prepare(src, layout);
    }

    const uint8_t* Read(int y) { return m_Source.Read(y); }
    /// Where line y of the result is to be put together.
    uint8_t* Result(int y) { return m_Direct ? m_Dst.Line(y) : m_Result.get(); }
    /// The same of an opaque picture.
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

/// Any sizes: columns are added up in floats, and then reduced to pixels.
bool Resample(const ImageView& src, const ImageView& dst, bool opaque)
{
    Lines lines;
    Axis across, down;
    const HeapArray<float> sums = NewArray<float>(int64_t(src.width) * 4);
    if (sums == nullptr || !lines.Prepare(src, dst, opaque) || !across.Prepare(src.width, dst.width) ||
        !down.Prepare(src.height, dst.height)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        const Taps& taps = down.AllTaps()[y];
        for (int done = 0; done < taps.count; done += WeightedLines::kMost) {
            WeightedLines some = {{}, {}, std::min(taps.count - done, WeightedLines::kMost), opaque};
            for (int i = 0; i < some.count; ++i) {
                some.line[i] = lines.Read(taps.first + done + i);
                some.weight[i] = down.Weights()[taps.weight + done + i];
            }
            SumLines(sums.get(), some, src.width, done > 0);
        }
        ReduceLine(lines.Result(y), sums.get(), across.AllTaps(), across.Weights(), dst.width, opaque);
        lines.Write(y);
    }
    return true;
}

/// In parts of 2^15; all of them do not fit in 16 bits.
int16_t ShareOf(double weight)
{
    return int16_t(std::min(int(floor(weight * 32768 + 0.5)), 32767));
}

/// The last two source lines, stretched.
class StretchedLines {
public:
    bool Prepare(int from, int to)
    {
        m_Width = to;
        m_Left = NewArray<int>(to);
        m_Shares = NewArray<int16_t>(int64_t(to) * 4);
        m_Lines[0] = NewArray<int16_t>(int64_t(to) * 4);
        m_Lines[1] = NewArray<int16_t>(int64_t(to) * 4);
        Axis axis;
        if (m_Left == nullptr || m_Shares == nullptr || m_Lines[0] == nullptr || m_Lines[1] == nullptr ||
            !axis.Prepare(from, to)) {
            return false;
        }
        for (int x = 0; x < to; ++x) {
            const Taps& taps = axis.AllTaps()[x];
            // The last pixel has no neighbour: it is that of the one before it.
            const bool last = taps.first == from - 1;
            const double right = last ? 1 : taps.count == 2 ? axis.Weights()[taps.weight + 1] : 0;
            m_Left[size_t(x)] = taps.first - last;
            std::fill_n(m_Shares.get() + ptrdiff_t(x) * 4, 4, ShareOf(2 * right - 1));
            m_Inner = taps.first + 9 <= from ? x + 1 : m_Inner;
        }
        return true;
    }

    const int16_t* Line(Lines& lines, int y)
    {
        const int place = y % 2;
        if (m_Number[place] != y) {
            StretchLine(m_Lines[place].get(), lines.Read(y), {m_Left.get(), m_Shares.get(), m_Inner}, m_Width);
            m_Number[place] = y;
        }
        return m_Lines[place].get();
    }

private:
    int m_Width = 0, m_Inner = 0;
    HeapArray<int> m_Left;
    HeapArray<int16_t> m_Shares, m_Lines[2];
    int m_Number[2] = {-1, -1};
};

/// Opaque pictures that do not shrink, of two columns at least: whole numbers, each source line once.
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
        const int16_t* const upper = stretched.Line(lines, taps.first);
        const int16_t* const lower = stretched.Line(lines, taps.first + taps.count - 1);
        MixLines(lines.Opaque(y), upper, lower, ShareOf(share));
        lines.Write(y);
    }
    return true;
}

/// Opaque pictures to exactly half their size.
bool Halve(const ImageView& src, const ImageView& dst)
{
    Lines lines;
    if (!lines.Prepare(src, dst, true)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        const uint8_t* const upper = lines.Read(2 * y);
        HalveLines(lines.Opaque(y), upper, lines.Read(2 * y + 1));
        lines.Write(y);
    }
    return true;
}

/// Looks at the pixels until one is not.
bool IsOpaque(const ImageView& image)
{
    const Channel alpha = image.layout.channel[kAlpha];
    const uint32_t mask = ((1u << alpha.bits) - 1) << alpha.shift;
    for (int y = 0; mask != 0 && y < image.height; ++y) {
        const uint8_t* pixels = image.Line(y);
        uint32_t common = mask;
        for (int x = 0; x < image.width; ++x, pixels += image.layout.bytes) {
            uint32_t pixel = 0;
            memcpy(&pixel, pixels, size_t(image.layout.bytes));
            common &= pixel;
        }
        if (common != mask) {
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
    return opaque && grows && src.width > 1 ? Stretch(src, dst) : Resample(src, dst, opaque);
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
