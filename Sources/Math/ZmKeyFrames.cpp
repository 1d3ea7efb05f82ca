#include "ZmKeyFrames.h"

#include "ZmAnimation.h"
#include "ZmArithmetic.h"

#include <stddef.h>
#include <string.h>

namespace zm {
namespace {

char* At(const ZmStridedData& data, ptrdiff_t i)
{
    return static_cast<char*>(data.Ptr) + i * ptrdiff_t(data.Stride);
}

template <class T>
T ElementAt(const ZmStridedData& data, ptrdiff_t i)
{
    T element;
    memcpy(&element, At(data, i), sizeof(element));
    return element;
}

/// The last of keys [low, high) at or before a time. That of `low` is.
int LastKeyBefore(const ZmTrack& track, float time, int low, int high)
{
    while (high - low > 1) {
        const int middle = low + (high - low) / 2;
        (ElementAt<float>(track.times, middle) <= time ? low : high) = middle;
    }
    return low;
}

/// The last key at or before a time, or the first. Looks at `cursor` and the key behind it before it searches.
int FindKey(const ZmTrack& track, float time, int cursor)
{
    const auto isReached = [&](int i) { return ElementAt<float>(track.times, i) <= time; };
    if (cursor < 0 || cursor >= track.count || !isReached(cursor)) {
        return isReached(0) ? LastKeyBefore(track, time, 0, track.count) : 0;
    }
    for (int i = cursor; i < cursor + 2; ++i) {
        if (i + 1 == track.count || !isReached(i + 1)) {
            return i;
        }
    }
    return LastKeyBefore(track, time, cursor + 2, track.count);
}

/// The time from a key to the next; none from the last key, or before the first.
struct Segment {
    int key;
    double start, end;

    bool Holds(float time) const { return start <= time && time < end; }
    /// How far a time is on its way to the end: 0 where it is the key's, or that of a key whose time is NaN.
    float ShareAt(float time) const
    {
        const double past = time - start, length = end - start;
        return past > 0 && length > 0 ? float(past / length) : 0;
    }
};

Segment FindSegment(const ZmTrack& track, float time, int cursor)
{
    const int key = FindKey(track, time, cursor), next = key + 1 < track.count ? key + 1 : key;
    return {key, ElementAt<float>(track.times, key), ElementAt<float>(track.times, next)};
}

float Lerp(float a, float b, float t)
{
    return a + (b - a) * t;
}

/// Writes samples one by one.
template <class T>
class LinearWriter {
public:
    explicit LinearWriter(const ZmStridedData& res) : m_Res(res) {}
    /// Sample i, at `key` or some share of the way from there to the next.
    void Write(int i, const ZmTrack& track, int key, float share)
    {
        T value = ElementAt<T>(track.values, key);
        if (share > 0) {
            value = Lerp(value, ElementAt<T>(track.values, key + 1), share);
        }
        memcpy(At(m_Res, i), &value, sizeof(value));
    }
    void Flush() {}

private:
    ZmStridedData m_Res;
};

/// Collects neighbours of samples and interpolates them together.
class RotationWriter {
public:
    explicit RotationWriter(const ZmStridedData& res) : m_Res(res) {}
    void Write(int i, const ZmTrack& track, int key, float share)
    {
        if (m_Count == kMost || (m_Count > 0 && i != m_First + m_Count)) {
            Flush();
        }
        m_First = m_Count == 0 ? i : m_First;
        memcpy(m_From[m_Count], At(track.values, key), sizeof(m_From[0]));
        memcpy(m_To[m_Count], At(track.values, share > 0 ? key + 1 : key), sizeof(m_To[0]));
        m_Shares[m_Count++] = share;
    }
    void Flush()
    {
        ZmSlerpStrided({At(m_Res, m_First), m_Res.Stride}, {m_From, sizeof(m_From[0])}, {m_To, sizeof(m_To[0])},
                       ZmStridedData(m_Shares, sizeof(m_Shares[0])), m_Count);
        m_Count = 0;
    }

private:
    static constexpr int kMost = 64;

    ZmStridedData m_Res;
    int m_First = 0, m_Count = 0;  // of the samples that wait
    float m_From[kMost][4], m_To[kMost][4], m_Shares[kMost];
};

template <class Writer>
void SampleTrack(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count)
{
    if (track.count < 1) {
        return;
    }
    Writer writer(res);
    Segment segment = {0, 0, 0};
    for (int i = 0; i < count; ++i) {
        const float time = ElementAt<float>(times, i);
        if (!segment.Holds(time)) {
            segment = FindSegment(track, time, segment.key);
        }
        writer.Write(i, track, segment.key, segment.ShareAt(time));
    }
    writer.Flush();
}

template <class Writer>
void SampleTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time, int* cursors)
{
    Writer writer(res);
    for (int i = 0; i < count; ++i) {
        if (tracks[i].count < 1) {
            continue;
        }
        const Segment segment = FindSegment(tracks[i], time, cursors ? cursors[i] : -1);
        if (cursors) {
            cursors[i] = segment.key;
        }
        writer.Write(i, tracks[i], segment.key, segment.ShareAt(time));
    }
    writer.Flush();
}

}  // namespace
}  // namespace zm

void ZmSampleRotations(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count)
{
    zm::SampleTrack<zm::RotationWriter>(res, track, times, count);
}

void ZmSampleVectors(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count)
{
    zm::SampleTrack<zm::LinearWriter<ZmVector>>(res, track, times, count);
}

void ZmSampleFloats(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count)
{
    zm::SampleTrack<zm::LinearWriter<float>>(res, track, times, count);
}

void ZmSampleRotationTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time, int* cursors)
{
    zm::SampleTracks<zm::RotationWriter>(res, tracks, count, time, cursors);
}

void ZmSampleVectorTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time, int* cursors)
{
    zm::SampleTracks<zm::LinearWriter<ZmVector>>(res, tracks, count, time, cursors);
}

void ZmSampleFloatTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time, int* cursors)
{
    zm::SampleTracks<zm::LinearWriter<float>>(res, tracks, count, time, cursors);
}
