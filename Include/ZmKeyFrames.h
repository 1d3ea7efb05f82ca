#pragma once

#include "ZmStridedData.h"

// Key frames: values at times, and what lies between them.
//
//     const ZmTrack turn = {{times, sizeof(float)}, {rotations, sizeof(ZmQuaternion)}, keyCount};
//     ZmSampleRotationTracks({pose, sizeof(ZmQuaternion)}, tracks, boneCount, time, cursors);   // one frame
//     ZmSampleRotations({path, sizeof(ZmQuaternion)}, turn, {when, sizeof(float)}, count);      // one track, baked
//
// A key comes back with its bits at its own time. Between two keys lies SlerpExact (ZmInterpolation.h) or Lerp of both,
// at their share of the time, which is computed in double and rounded to float. Before the first key and after the last
// lie these. Where keys have the same time, a step, the last of them counts at that time. A time that is NaN gives the
// first key.
//
// Arrays have any stride and alignment, and nothing but the bytes of their elements is read and written; a stride of 0
// gives all the same. Results must not overlap what is read. A count below 1 does nothing. All functions give the same
// bits for every value of the feature word. Any thread may call.

/// A sequence of keys. One without keys has no samples: where it should give one, nothing is written.
struct ZmTrack {
    ZmStridedData times;   ///< floats, ascending and finite
    ZmStridedData values;  ///< quaternions, vectors or floats, as the function says
    int count;             ///< keys
};

/// res[i] = the track of quaternions at times[i], which are floats in any order. Ascending times are found the fastest.
ZM_API void ZmSampleRotations(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count);
/// The same for vectors of three components.
ZM_API void ZmSampleVectors(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count);
/// The same for floats.
ZM_API void ZmSampleFloats(const ZmStridedData& res, const ZmTrack& track, const ZmStridedData& times, int count);

/// res[i] = the track tracks[i] of quaternions at one time. Of `cursors`, which may be null, each remembers a key of
/// its track between the calls, so that a player that moves on by little finds it at once; any values may stand there
/// at first, and they change no result.
ZM_API void ZmSampleRotationTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time,
                                   int* cursors = nullptr);
/// The same for vectors of three components.
ZM_API void ZmSampleVectorTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time,
                                 int* cursors = nullptr);
/// The same for floats.
ZM_API void ZmSampleFloatTracks(const ZmStridedData& res, const ZmTrack* tracks, int count, float time,
                                int* cursors = nullptr);
