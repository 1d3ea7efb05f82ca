#pragma once

#include "ZmStridedData.h"

// Sines, tangents and their inverses, of radians. Every result is the float nearest to the true value, for every
// argument, and so has the same bits on every processor, system and compiler: fit for replays and for simulations that
// run in step on several machines. Angles are reduced exactly up to the largest float. What C leaves undefined (the
// sine of infinity, the arc sine of 2) and NaN give NaN; zeros keep their signs. Any thread may call.

/// Sine, cosine and tangent of an angle of any size.
ZM_API float ZmSin(float angle);
ZM_API float ZmCos(float angle);
ZM_API float ZmTan(float angle);

/// Both, in less than the time of two calls.
ZM_API void ZmSinCos(float angle, float* sine, float* cosine);

/// Arc sine: from -pi/2 to pi/2; x from -1 to 1.
ZM_API float ZmAsin(float x);

/// Arc cosine: from 0 to pi; x from -1 to 1.
ZM_API float ZmAcos(float x);

/// Arc tangent: from -pi/2 to pi/2.
ZM_API float ZmAtan(float x);

/// The angle from the x axis to the direction (x, y), from -pi to pi. As in C, both may be zero or infinite.
ZM_API float ZmAtan2(float y, float x);

// The same for arrays of floats at any stride and alignment; nothing but the floats' own bytes is read and written. The
// results may replace a source of the same stride; other overlaps are not supported. A count below 1 does nothing.

/// res[i] = function(src[i]), with the bits of the single calls.
ZM_API void ZmSinStrided(const ZmStridedData& res, const ZmStridedData& angles, int count);
ZM_API void ZmCosStrided(const ZmStridedData& res, const ZmStridedData& angles, int count);
ZM_API void ZmTanStrided(const ZmStridedData& res, const ZmStridedData& angles, int count);
ZM_API void ZmAsinStrided(const ZmStridedData& res, const ZmStridedData& src, int count);
ZM_API void ZmAcosStrided(const ZmStridedData& res, const ZmStridedData& src, int count);
ZM_API void ZmAtanStrided(const ZmStridedData& res, const ZmStridedData& src, int count);

/// The two destinations must not overlap each other.
ZM_API void ZmSinCosStrided(const ZmStridedData& sines, const ZmStridedData& cosines, const ZmStridedData& angles,
                            int count);

/// res[i] = ZmAtan2(y[i], x[i])
ZM_API void ZmAtan2Strided(const ZmStridedData& res, const ZmStridedData& y, const ZmStridedData& x, int count);

// Table-based sine and cosine of an integer angle, 16384 units to the turn. The table is filled when the library is
// loaded; afterwards any thread may read it.

/// Sine and cosine of an angle in table units. Any value is allowed; whole turns are ignored.
ZM_API float Tsin(int angle);
ZM_API float Tcos(int angle);

/// Converts radians to table units, rounded in the processor's current rounding mode. The result is not wrapped; it is
/// INT_MIN if it does not fit an int.
ZM_API int radToAngle(float radians);
