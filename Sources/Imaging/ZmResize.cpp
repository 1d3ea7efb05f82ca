#include "ZmResize.h"

#include "Imaging/Conversion.h"
#include "Imaging/HeapArray.h"
#include "Math/Lanes.h"
#include "Platform/FeatureWord.h"
#include "ZmBlit.h"

#include <algorithm>
#include <string.h>

namespace {

using namespace zm;

/// The pixels behind one pixel of the result, in one direction: a first one, and so many.
struct Taps {
    int first, count;
    int weight;  ///< index of the first of their weights, which add up to 1
};

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

    const Taps& operator[](int i) const { return m_Taps[size_t(i)]; }
    const float* Weights(const Taps& taps) const { return m_Weights.get() + taps.weight; }

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

/// Lines of ARGB8888 become sums of four floats a pixel, blue, green, red and alpha, premultiplied.
template <class Lanes>
void AddLine(float* sums, const uint8_t* line, int width, float weight)
{
    const Lanes share = Lanes::Splat(weight);
    for (int x = 0; x < width; ++x, line += 4, sums += 4) {
        const float alpha = line[3];
        const Lanes pixel = Lanes::Set(line[0] * alpha, line[1] * alpha, line[2] * alpha, alpha);
        (Lanes::Load4(sums) + pixel * share).Store4(sums);
    }
}

uint32_t Rounded(float value)
{
    return uint32_t(value < 255 ? value + 0.5f : 255.0f);
}

uint32_t Straight(const float (&sum)[4])
{
    if (!(sum[3] > 0)) {
        return 0;
    }
    return Rounded(sum[3]) << 24 | Rounded(sum[2] / sum[3]) << 16 | Rounded(sum[1] / sum[3]) << 8 |
           Rounded(sum[0] / sum[3]);
}

template <class Lanes>
void ReduceLine(uint8_t* res, const float* sums, const Axis& axis, int width)
{
    for (int x = 0; x < width; ++x, res += 4) {
        const Taps& taps = axis[x];
        const float* const weights = axis.Weights(taps);
        Lanes sum = Lanes::Splat(0);
        for (int i = 0; i < taps.count; ++i) {
            sum = sum + Lanes::Load4(sums + (int64_t(taps.first) + i) * 4) * Lanes::Splat(weights[i]);
        }
        float whole[4];
        sum.Store4(whole);
        const uint32_t pixel = Straight(whole);
        memcpy(res, &pixel, 4);
    }
}

struct Resizer {
    ImageView src, dst;
    Axis across, down;
    HeapArray<float> sums;
    HeapArray<uint8_t> line;  ///< room for a line of either image
};

template <class Lanes>
void Resample(Resizer& r)
{
    const Conversion read = Convert(r.src.layout, kArgb), write = Convert(kArgb, r.dst.layout);
    for (int y = 0; y < r.dst.height; ++y) {
        const Taps& taps = r.down[y];
        memset(r.sums.get(), 0, size_t(r.src.width) * 16);
        for (int i = 0; i < taps.count; ++i) {
            ConvertPixels(read, r.src.Line(taps.first + i), r.line.get(), r.src.width);
            AddLine<Lanes>(r.sums.get(), r.line.get(), r.src.width, r.down.Weights(taps)[i]);
        }
        ReduceLine<Lanes>(r.line.get(), r.sums.get(), r.across, r.dst.width);
        ConvertPixels(write, r.line.get(), r.dst.Line(y), r.dst.width);
    }
}

bool Resize(const ImageView& src, const ImageView& dst)
{
    Resizer resizer = {src,
                       dst,
                       {},
                       {},
                       NewArray<float>(int64_t(src.width) * 4),
                       NewArray<uint8_t>(int64_t(std::max(src.width, dst.width)) * 4)};
    const bool ready = resizer.sums != nullptr && resizer.line != nullptr &&
                       resizer.across.Prepare(src.width, dst.width) && resizer.down.Prepare(src.height, dst.height);
    if (ready) {
        Dispatch(Resample<SseLanes>, Resample<ScalarLanes>, resizer);
    }
    return ready;
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
