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

/// Where a sample lies: at `key` or, if `share` is above 0, that part of the way from there to the next.
struct Place {
    int key;
    float share;
};

Place PlaceOf(const ZmTrack& track, float time, int cursor)
{
    const int key = FindKey(track, time, cursor);
    const double start = ElementAt<float>(track.times, key), past = time - start;
    if (!(past > 0) || key + 1 >= track.count) {
        return {key, 0};
    }
    const float share = float(past / (ElementAt<float>(track.times, key + 1) - start));
    return {key, share > 0 ? share : 0};  // also for keys whose times are NaN
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
    void Write(int i, const ZmTrack& track, const Place& place)
    {
        T value = ElementAt<T>(track.values, place.key);
        if (place.share > 0) {
            value = Lerp(value, ElementAt<T>(track.values, place.key + 1), place.share);
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
    void Write(int i, const ZmTrack& track, const Place& place)
    {
        if (m_Count == kMost || (m_Count > 0 && i != m_First + m_Count)) {
            Flush();
        }
        m_First = m_Count == 0 ? i : m_First;
        memcpy(m_From[m_Count], At(track.values, place.key), sizeof(m_From[0]));
        memcpy(m_To[m_Count], At(track.values, place.share > 0 ? place.key + 1 : place.key), sizeof(m_To[0]));
        m_Shares[m_Count++] = place.share;
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
    int cursor = 0;
    for (int i = 0; i < count; ++i) {
        const Place place = PlaceOf(track, ElementAt<float>(times, i), cursor);
        cursor = place.key;
        writer.Write(i, track, place);
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
        const Place place = PlaceOf(tracks[i], time, cursors ? cursors[i] : -1);
        if (cursors) {
            cursors[i] = place.key;
        }
        writer.Write(i, tracks[i], place);
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
