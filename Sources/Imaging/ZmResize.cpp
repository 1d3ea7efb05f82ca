#include "ZmResize.h"

#include "Imaging/Filter.h"
#include "Imaging/IntegerWeights.h"
#include "Imaging/LineSums.h"
#include "ZmBlit.h"

#include <algorithm>
#include <functional>
#include <math.h>
#include <string.h>

namespace zm {
namespace {

/// The weighted sum, in floats, of the source lines that contribute to result line y. `part` is a scratch line.
void SumOfLines(PictureLines& lines, const ResizeAxis& down, int y, int width, float* sums, float* part)
{
    const Taps& taps = down.AllTaps()[y];
    for (int done = 0; done < taps.count; done += WeightedLines::kMost) {
        WeightedLines some = {{}, {}, std::min(taps.count - done, WeightedLines::kMost)};
        for (int i = 0; i < some.count; ++i) {
            some.line[i] = lines.Read(taps.first + done + i, i);
            some.weight[i] = down.Weights()[taps.weight + done + i];
        }
        const bool first = done < kMostFloats, last = done + some.count == taps.count;
        KernelsForLines().sumLines(first ? sums : part, some, width, done % kMostFloats > 0);
        if (!first && (last || (done + some.count) % kMostFloats == 0)) {
            std::transform(sums, sums + ptrdiff_t(width) * 4, part, sums, std::plus<float>());
        }
    }
}

/// Resizes any picture: sums up columns in floats, then reduces them to pixels.
bool Resample(const ImageView& src, const ImageView& dst)
{
    PictureLines lines;
    ResizeAxis across, down;
    const HeapArray<float> sums = NewArray<float>(int64_t(src.width) * 4),
                           part = NewArray<float>(int64_t(src.width) * 4);
    if (sums == nullptr || part == nullptr || !lines.Prepare(src, dst, false) ||
        !across.Prepare(src.width, dst.width) || !down.Prepare(src.height, dst.height)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        SumOfLines(lines, down, y, src.width, sums.get(), part.get());
        KernelsForLines().reduceLine(lines.Result(y), sums.get(), across.AllTaps(), across.Weights(), dst.width);
        lines.Write(y);
    }
    return true;
}

/// Resizes opaque pictures in integers. Falls back to Resample() where they would overflow.
bool ResampleOpaque(const ImageView& src, const ImageView& dst)
{
    PictureLines lines;
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
        KernelsForLines().reduceColumns(lines.Opaque(y), down.Sum(lines, y), table);
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
        ResizeAxis axis;
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

    const Columns& Line(PictureLines& lines, int y)
    {
        const int place = y % 2;
        if (m_Number[place] != y) {
            KernelsForLines().stretchLine(m_Lines[place].Get(), lines.Read(y, 0),
                                          {m_Left.get(), m_Weights.get(), m_Inner}, m_Width);
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
    PictureLines lines;
    StretchedLines stretched;
    ResizeAxis down;
    if (!lines.Prepare(src, dst, true) || !stretched.Prepare(src.width, dst.width) ||
        !down.Prepare(src.height, dst.height)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        const Taps& taps = down.AllTaps()[y];
        const float share = taps.count == 2 ? down.Weights()[taps.weight + 1] : 0;
        const Columns& upper = stretched.Line(lines, taps.first);
        const Columns& lower = stretched.Line(lines, taps.first + taps.count - 1);
        KernelsForLines().mixLines(lines.Opaque(y), upper, lower, WeightOf(share));
        lines.Write(y);
    }
    return true;
}

/// Scales opaque pictures to exactly half their size.
bool Halve(const ImageView& src, const ImageView& dst)
{
    PictureLines lines;
    if (!lines.Prepare(src, dst, true)) {
        return false;
    }
    for (int y = 0; y < dst.height; ++y) {
        const uint8_t* const upper = lines.Read(2 * y, 0);
        KernelsForLines().halveLines(lines.Opaque(y), upper, lines.Read(2 * y + 1, 1));
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

bool AreValid(const ZmImageOptions& options)
{
    return options.Channels <= ZMCHANNELS_NORMALS && options.Light <= ZMLIGHT_LINEAR &&
           options.Filter <= ZMFILTER_KAISER && options.Edges <= ZMEDGES_MIRROR;
}

/// Edges do not matter to a mean of areas, which lie within the picture.
bool AreDefault(const ImageView& src, const ImageView& dst, const ZmImageOptions& options)
{
    const bool shrinks = src.width >= dst.width && src.height >= dst.height;
    const bool isBox = options.Filter == ZMFILTER_DEFAULT || (options.Filter == ZMFILTER_BOX && shrinks);
    return options.Channels == ZMCHANNELS_COLOR && options.Light == ZMLIGHT_STORED && isBox &&
           (options.Edges == ZMEDGES_CLAMP || shrinks);
}

bool HasNormals(const ImageView& image)
{
    return image.layout.channel[0].bits != 0 && image.layout.channel[1].bits != 0;
}

ImageProblem ViewForScaling(ImageView& from, ImageView& to, const ZmImageDescEx& src, const ZmImageDescEx& dst,
                            const ZmImageOptions& options)
{
    const ImageProblem problem = ViewBoth(from, to, src, dst, true);
    if (problem.what != nullptr) {
        return problem;
    }
    if (!AreValid(options)) {
        return {nullptr, "an option has none of its values"};
    }
    if (options.Channels == ZMCHANNELS_NORMALS && !HasNormals(from)) {
        return {"source", "normals need red and green"};
    }
    return kNoProblem;
}

/// `isCopy`: the filter changes nothing.
int Scale(const ZmImageDescEx& src, const ZmImageDescEx& dst, const ZmImageOptions& options, bool isCopy)
{
    ImageView from, to;
    if (ViewForScaling(from, to, src, dst, options).what != nullptr) {
        return 0;
    }
    if (isCopy) {
        return ZmDoBlit(src, dst);
    }
    return !from.hasSlopes && AreDefault(from, to, options) ? Resize(from, to) : Filter(from, to, options);
}

bool HaveWholeWords(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    return src.BitsPerPixel == 32 && dst.BitsPerPixel == 32;
}

bool IsNextLevel(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    return dst.Width == Half(src.Width) && dst.Height == Half(src.Height);
}

int ExplainScaling(const ZmImageDescEx& src, const ZmImageDescEx& dst, const ZmImageOptions& options, bool fits,
                   const char* misfit, XString& why)
{
    ImageView from, to;
    const ImageProblem problem = ViewForScaling(from, to, src, dst, options);
    return Explain(problem.what == nullptr && !fits ? ImageProblem{nullptr, misfit} : problem, why);
}

}  // namespace
}  // namespace zm

int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    return ZmResizeImage32(src, dst, {});
}

int ZmResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst, const ZmImageOptions& options)
{
    const bool isCopy = src.Width == dst.Width && src.Height == dst.Height && options.Filter != ZMFILTER_MITCHELL;
    return zm::HaveWholeWords(src, dst) ? zm::Scale(src, dst, options, isCopy) : 0;
}

int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst)
{
    return ZmGenerateMipMap(src, dst, {});
}

int ZmGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, const ZmImageOptions& options)
{
    return zm::IsNextLevel(src, dst) ? zm::Scale(src, dst, options, src.Width == 1 && src.Height == 1) : 0;
}

int ZmCanResizeImage32(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why, const ZmImageOptions& options)
{
    return zm::ExplainScaling(src, dst, options, zm::HaveWholeWords(src, dst), "both images need 32 bits per pixel",
                              why);
}

int ZmCanGenerateMipMap(const ZmImageDescEx& src, const ZmImageDescEx& dst, XString& why, const ZmImageOptions& options)
{
    return zm::ExplainScaling(src, dst, options, zm::IsNextLevel(src, dst),
                              "the destination is not half the source, rounded down, at least 1", why);
}
