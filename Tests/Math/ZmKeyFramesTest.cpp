#include "ZmKeyFrames.h"

#include "Support/Paths.h"
#include "Support/Strided.h"
#include "ZmInterpolation.h"

#include <math.h>

#include <algorithm>
#include <memory>

namespace {

constexpr float kNaN = NAN, kInfinity = INFINITY;

template <class T>
bool SameBits(const T& a, const T& b)
{
    return memcmp(&a, &b, sizeof(T)) == 0;
}

TEST(ZmKeyFramesTest, SamplesLieAtKeysBetweenThemOrAtTheirEnds)
{
    const float times[] = {-1, 0, 2, 2, 2, 4}, values[] = {10, 20, 30, 40, 50, -50};
    const ZmTrack track = {{const_cast<float*>(times), 4}, {const_cast<float*>(values), 4}, 6};
    const struct {
        const char* name;
        float time, expected;
    } rows[] = {
        {"a key", 0, 20},
        {"the first key", -1, 10},
        {"the last key", 4, -50},
        {"before all keys", -1.5f, 10},
        {"behind all keys", 4.5f, -50},
        {"between two keys", -0.25f, 17.5f},
        {"up to a step", 1, 25},
        {"at a step the last counts", 2, 50},
        {"from a step", 3, 0},
        {"just before a step", 0x1.fffffep+0f, 30},
        {"negative infinity", -kInfinity, 10},
        {"infinity", kInfinity, -50},
        {"not a number", kNaN, 10},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        float time = row.time, res = 7;
        ZmSampleFloats({&res, 4}, track, {&time, 4}, 1);
        EXPECT_NEAR(res, row.expected, 3e-6f);
        for (const int start : {-5, 0, 1, 2, 3, 4, 5, 6, 99}) {
            SCOPED_TRACE(start);
            float again = 7;
            int cursor = start;
            ZmSampleFloatTracks({&again, 4}, &track, 1, time, &cursor);
            EXPECT_EQ(again, res);
            EXPECT_GE(cursor, 0);
            EXPECT_LT(cursor, 6);
        }
    }
}

/// A track of random keys, and the samples that it should have.
template <class T>
struct Keys {
    std::vector<float> times;
    std::vector<T> values;
    Strided<float> timeBytes;
    Strided<T> valueBytes;
    ZmTrack track;

    Keys(Random& random, int count, T (*make)(Random&))
        : times(Ascending(random, count)), values(Made(random, count, make)), timeBytes(times, 4 + unsigned(count) % 3),
          valueBytes(values, unsigned(sizeof(T)) + unsigned(count) % 2 * 3), track{timeBytes.Data(), valueBytes.Data(),
                                                                                   count}
    {
    }
    Keys(const Keys&) = delete;
    Keys& operator=(const Keys&) = delete;

    T Sample(float time, T (*between)(const T&, const T&, float)) const
    {
        const size_t next = size_t(std::upper_bound(times.begin(), times.end(), time) - times.begin());
        if (next == 0 || next == times.size() || times[next - 1] == time) {
            return values[next == 0 ? 0 : next - 1];
        }
        const double start = times[next - 1];
        return between(values[next - 1], values[next], float((time - start) / (times[next] - start)));
    }
    /// Often the time of a key.
    float Time(Random& random) const
    {
        const int last = int(times.size()) - 1;
        return random.Int(0, 3) ? random.Float(-1, times[size_t(last)] + 1) : times[size_t(random.Int(0, last))];
    }

private:
    static std::vector<float> Ascending(Random& random, int count)
    {
        std::vector<float> res;
        float time = random.Float(1);
        for (int i = 0; i < count; ++i) {
            res.push_back(time);
            time += random.Int(0, 3) ? random.Float(0, 2) : 0;  // some steps
        }
        return res;
    }
    static std::vector<T> Made(Random& random, int count, T (*make)(Random&))
    {
        std::vector<T> res;
        for (int i = 0; i < count; ++i) {
            res.push_back(make(random));
        }
        return res;
    }
};

template <class T>
struct Kind {
    T (*make)(Random&);
    T (*between)(const T&, const T&, float);
    void (*track)(const ZmStridedData&, const ZmTrack&, const ZmStridedData&, int);
    void (*tracks)(const ZmStridedData&, const ZmTrack*, int, float, int*);
};

const Kind<ZmQuaternion> kRotations = {[](Random& random) { return random.Rotation(); }, SlerpExact, ZmSampleRotations,
                                       ZmSampleRotationTracks};
const Kind<ZmVector> kVectors = {[](Random& random) { return random.Vector(); }, Lerp, ZmSampleVectors,
                                 ZmSampleVectorTracks};
const Kind<float> kFloats = {[](Random& random) { return random.Float(9); },
                             [](const float& a, const float& b, float t) { return a + (b - a) * t; }, ZmSampleFloats,
                             ZmSampleFloatTracks};

template <class T>
void CheckTrackAtManyTimes(const Kind<T>& kind, Random& random)
{
    for (const int count : {1, 2, 3, 17}) {
        const Keys<T> keys(random, count, kind.make);
        std::vector<float> times;
        for (int i = 0; i < 150; ++i) {
            times.push_back(keys.Time(random));
        }
        if (count % 2) {
            std::sort(times.begin(), times.end());
        }
        Strided<float> when(times, 7);
        Strided<T> res(std::vector<T>(times.size(), keys.values[0]), sizeof(T) + 1);
        kind.track(res.Data(), keys.track, when.Data(), int(times.size()));
        for (size_t i = 0; i < times.size(); ++i) {
            EXPECT_TRUE(SameBits(res[i], keys.Sample(times[i], kind.between))) << i;
        }
        EXPECT_TRUE(res.GapsAreIntact());
    }
}

template <class T>
void CheckManyTracks(const Kind<T>& kind, Random& random)
{
    constexpr size_t count = 90;
    std::vector<std::unique_ptr<Keys<T>>> all;
    std::vector<ZmTrack> tracks;
    for (size_t i = 0; i < count; ++i) {
        all.push_back(std::make_unique<Keys<T>>(random, random.Int(1, 9), kind.make));
        tracks.push_back(all[i]->track);
    }
    tracks[1].count = 0;
    tracks[40].count = -1;
    const T untouched = kind.make(random);
    std::vector<int> cursors(count, 0);
    for (const float time : {-0.5f, 0.25f, 0.5f, 3.0f, 2.0f, 8.5f, all[7]->times[0]}) {
        SCOPED_TRACE(time);
        Strided<T> res(std::vector<T>(count, untouched), sizeof(T) + 4), played = res;
        kind.tracks(res.Data(), tracks.data(), int(count), time, nullptr);
        kind.tracks(played.Data(), tracks.data(), int(count), time, cursors.data());
        for (size_t i = 0; i < count; ++i) {
            const T expected = tracks[i].count < 1 ? untouched : all[i]->Sample(time, kind.between);
            EXPECT_TRUE(SameBits(res[i], expected)) << i;
            EXPECT_TRUE(SameBits(played[i], expected)) << i;
        }
        EXPECT_TRUE(res.GapsAreIntact());
    }
}

TEST(ZmKeyFramesTest, OneTrackIsSampledAtManyTimes)
{
    OnEachPath(3, [](Random& random) {
        CheckTrackAtManyTimes(kRotations, random);
        CheckTrackAtManyTimes(kVectors, random);
        CheckTrackAtManyTimes(kFloats, random);
    });
}

TEST(ZmKeyFramesTest, ManyTracksAreSampledAtOneTime)
{
    OnEachPath(3, [](Random& random) {
        CheckManyTracks(kRotations, random);
        CheckManyTracks(kVectors, random);
        CheckManyTracks(kFloats, random);
    });
}

TEST(ZmKeyFramesTest, WithoutKeysOrSamplesNothingIsWritten)
{
    float time = 0, res = 7;
    const ZmTrack track = {{&time, 4}, {&time, 4}, 1}, empty = {{nullptr, 0}, {nullptr, 0}, 0};
    ZmSampleFloats({&res, 4}, empty, {&time, 4}, 1);
    ZmSampleFloats({&res, 4}, track, {&time, 4}, 0);
    ZmSampleFloats({&res, 4}, track, {&time, 4}, -1);
    ZmSampleFloatTracks({&res, 4}, &track, -1, time);
    EXPECT_EQ(res, 7);
}

}  // namespace
