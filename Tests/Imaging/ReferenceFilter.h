#pragma once

// Filtered images as sums over all of their pixels, in doubles and without separating the two directions.

#include "Imaging/ReferencePixels.h"
#include "Imaging/TestImage.h"
#include "ZmImageOptions.h"

/// Rounding to nearest, and what floats can lose.
constexpr double kFilterRounding = 0.503, kExactRounding = 0.5001;

inline double SincOf(double x)
{
    const double angle = acos(-1.0) * x;
    return x == 0 ? 1 : sin(angle) / angle;
}

inline double BesselOf(double x)
{
    double sum = 0, term = 1;
    for (int i = 1; i < 40; ++i) {
        sum += term;
        term *= x / 2 / i * (x / 2 / i);
    }
    return sum;
}

/// The filters by their definitions: Mitchell and Netravali's cubics, and windowed sincs.
inline double FilterValue(ZMFILTER filter, double x)
{
    const double y = fabs(x);
    switch (filter) {
    case ZMFILTER_MITCHELL:
        return y < 1   ? 7.0 / 6 * y * y * y - 2 * y * y + 8.0 / 9
               : y < 2 ? -7.0 / 18 * y * y * y + 2 * y * y - 10.0 / 3 * y + 16.0 / 9
                       : 0;
    case ZMFILTER_CATMULL_ROM:
        return y < 1 ? 1.5 * y * y * y - 2.5 * y * y + 1 : y < 2 ? -0.5 * y * y * y + 2.5 * y * y - 4 * y + 2 : 0;
    case ZMFILTER_LANCZOS3: return y < 3 ? SincOf(x) * SincOf(x / 3) : 0;
    case ZMFILTER_KAISER: return y < 3 ? SincOf(x) * BesselOf(4 * sqrt(1 - x * x / 9)) / BesselOf(4) : 0;
    default: return std::max(0.0, 1 - y);
    }
}

/// The weights of all source pixels in result pixel i. Pixels beyond an edge count for those that they repeat.
inline std::vector<double> FilterWeights(int i, int from, int to, const ZmImageOptions& options)
{
    const bool shrinks = to < from;
    const bool isBox = options.Filter == ZMFILTER_BOX || (options.Filter == ZMFILTER_DEFAULT && shrinks);
    const double scale = double(from) / to, stretch = shrinks ? scale : 1, centre = (i + 0.5) * scale - 0.5;
    const int reach = int(ceil(3 * stretch)) + 1;
    std::vector<double> res(size_t(from), 0.0);
    double sum = 0;
    for (int at = int(floor(centre)) - reach; at <= centre + reach; ++at) {
        const double covered = std::max(0.0, std::min((i + 1) * scale, at + 1.0) - std::max(i * scale, double(at)));
        const double weight = isBox ? covered : FilterValue(options.Filter, (at - centre) / stretch);
        int pixel = std::min(std::max(at, 0), from - 1);
        if (options.Edges == ZMEDGES_WRAP) {
            pixel = (at % from + from) % from;
        } else if (options.Edges == ZMEDGES_MIRROR) {
            pixel = (at % (2 * from) + 2 * from) % (2 * from);
            pixel = pixel < from ? pixel : 2 * from - 1 - pixel;
        }
        res[size_t(pixel)] += weight;
        sum += weight;
    }
    for (double& weight : res) {
        weight /= sum;
    }
    return res;
}

/// The light of a byte, without pow(), which some systems compute in the precision of floats. The fifth root comes from
/// halving intervals.
inline double LightOf(double byte)
{
    const double stored = byte / 255, base = (stored + 0.055) / 1.055;
    double low = 0, high = 1;
    for (int i = 0; i < 54; ++i) {
        const double root = (low + high) / 2;
        (root * root * root * root * root < base * base ? low : high) = root;
    }
    return 255 * (stored <= 0.04045 ? stored / 12.92 : base * base * low);
}

/// The byte of a light, interpolated in a table of many fractions of bytes.
inline double ByteOf(double light)
{
    constexpr int kParts = 64;
    static const std::vector<double> lights = [] {
        std::vector<double> res;
        for (int i = 0; i <= 255 * kParts; ++i) {
            res.push_back(LightOf(double(i) / kParts));
        }
        return res;
    }();
    const auto next = std::lower_bound(lights.begin() + 1, lights.end() - 1, light);
    return (double(next - lights.begin()) - (*next - light) / (*next - next[-1])) / kParts;
}

struct Channels {
    double value[4];
    double loss;  ///< what floats lose in colours beyond rounding: quotients of small numbers are not precise
};

inline bool HasSlopes(const TestImage& image)
{
    return image.desc.CompressedFormat >= ZM_PF_BUMP_V8U8;
}

/// The channels of a pixel as what is averaged.
inline Channels Weighable(const TestImage& image, int x, int y, const ZmImageOptions& options)
{
    const Fields fields = FieldsOf(image.desc, image.Get(x, y));
    Channels res = {};
    for (int c = 0; c < 4; ++c) {
        const bool isSigned = HasSlopes(image) && c < 2;
        const double value = fields.value[c], whole = pow(2, fields.bits[c]);
        res.value[c] = isSigned && value >= whole / 2 ? value - whole : value;
        const bool isColour = !HasSlopes(image) && options.Channels != ZMCHANNELS_NORMALS && c < 3;
        if (isColour && options.Light == ZMLIGHT_LINEAR) {
            res.value[c] = LightOf(value);
        }
    }
    res.value[3] = fields.bits[3] ? res.value[3] : 255;
    for (int c = 0; c < 3 && !HasSlopes(image) && options.Channels == ZMCHANNELS_COLOR; ++c) {
        res.value[c] *= res.value[3] / 255;
    }
    return res;
}

/// What averages become in the result.
inline Channels Finished(Channels sums, const ZmImageOptions& options)
{
    double* const v = sums.value;
    const double most = std::min(std::max(v[3], 0.0), 255.0);
    for (int c = 0; c < 3 && options.Channels != ZMCHANNELS_NORMALS; ++c) {
        if (options.Channels == ZMCHANNELS_COLOR) {
            v[c] = v[3] > 0 ? v[c] / v[3] * 255 : 0;
        } else if (options.Channels == ZMCHANNELS_PREMULTIPLIED) {
            v[c] = std::min(v[c], most);
        }
        v[c] = std::min(std::max(v[c], 0.0), 255.0);
        v[c] = options.Light == ZMLIGHT_LINEAR ? ByteOf(v[c]) : v[c];
    }
    if (options.Channels == ZMCHANNELS_NORMALS) {
        double square = 0;
        for (int c = 0; c < 3; ++c) {
            v[c] = v[c] / 127.5 - 1;
            square += v[c] * v[c];
        }
        for (int c = 0; c < 3; ++c) {
            v[c] = (v[c] / sqrt(square) + 1) * 127.5;
        }
        sums.loss = 1e-4 / std::max(sqrt(square), 1e-9);
    } else if (options.Channels == ZMCHANNELS_COLOR) {
        sums.loss = 0.01 / std::max(v[3], 1e-9);
    }
    v[3] = most;
    return sums;
}

/// The largest difference between a filtered image and its definition, in units of the result's channels.
inline double WorstError(const TestImage& src, const TestImage& dst, const ZmImageOptions& options)
{
    double worst = 0;
    for (int y = 0; y < dst.desc.Height; ++y) {
        const std::vector<double> down = FilterWeights(y, src.desc.Height, dst.desc.Height, options);
        for (int x = 0; x < dst.desc.Width; ++x) {
            const std::vector<double> across = FilterWeights(x, src.desc.Width, dst.desc.Width, options);
            Channels sums = {};
            for (int i = 0; i < src.desc.Width * src.desc.Height; ++i) {
                const int u = i % src.desc.Width, v = i / src.desc.Width;
                const double weight = across[size_t(u)] * down[size_t(v)];
                const Channels pixel = Weighable(src, u, v, options);
                for (int c = 0; c < 4 && weight != 0; ++c) {
                    sums.value[c] += weight * pixel.value[c];
                }
            }
            const Fields fields = FieldsOf(dst.desc, dst.Get(x, y));
            const Channels expected = HasSlopes(src) ? sums : Finished(sums, options);
            for (int c = 0; c < 4; ++c) {
                const double whole = pow(2, fields.bits[c]);
                const bool isSigned = HasSlopes(src) && c < 2;
                const double value = fields.value[c], low = isSigned ? -whole / 2 : 0, high = low + whole - 1;
                const double error = fabs((isSigned && value >= whole / 2 ? value - whole : value) -
                                          std::min(std::max(expected.value[c], low), high));
                worst = fields.bits[c] ? std::max(worst, error - (c < 3 ? expected.loss : 0)) : worst;
            }
        }
    }
    return worst;
}
