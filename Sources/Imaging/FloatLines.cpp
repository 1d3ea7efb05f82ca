#include "Imaging/FloatLines.h"

#include "Imaging/FilterLines.h"

#include <algorithm>
#include <math.h>
#include <string.h>

namespace zm {
namespace {

constexpr int kBlue = 2;
constexpr int kPlace[4] = {2, 1, 0, 3};  ///< of red, green, blue and alpha in a pixel of floats

bool HasWideChannels(const PixelLayout& layout)
{
    return std::any_of(layout.channel, layout.channel + 4, [](const Channel& c) { return c.bits > 8; });
}

FloatField FieldOf(const Channel& channel, bool isSigned)
{
    if (channel.bits == 0) {
        return {0, 0, 0, 0, 0, 0};
    }
    const uint32_t mask = (1u << channel.bits) - 1;
    const int sign = isSigned ? 1 << (channel.bits - 1) : 0, most = isSigned ? sign - 1 : int(mask);
    return {channel.shift, sign, mask, float(most) / 255, float(-sign), float(most)};
}

void ReadLayout(FloatField (&res)[4], const PixelLayout& layout, bool hasSlopes)
{
    for (int c = 0; c < 4; ++c) {
        res[c] = FieldOf(layout.channel[c], hasSlopes && c < kBlue);
    }
}

/// Divides colours by their alpha; transparent black if there is none.
void Straighten(float* pixel)
{
    const float alpha = pixel[3];
    for (int c = 0; c < 4; ++c) {
        pixel[c] = alpha > 0 ? (c < 3 ? pixel[c] / alpha : alpha) : 0;
    }
}

void LimitToAlpha(float* pixel)
{
    const float alpha = std::clamp(pixel[3], 0.0f, 255.0f);
    for (int c = 0; c < 3; ++c) {
        pixel[c] = std::clamp(pixel[c], 0.0f, alpha);
    }
}

/// Makes a vector unit again. What cancels out points upwards.
void MakeUnit(float* pixel)
{
    float v[3];
    for (int c = 0; c < 3; ++c) {
        v[c] = pixel[c] / 127.5f - 1;
    }
    constexpr float kNothing = 1e-6f;
    const float length = sqrtf(v[0] * v[0] + v[1] * v[1] + v[2] * v[2]);
    for (int c = 0; c < 3; ++c) {
        const float up = c == 0 ? 1.0f : 0.0f;  // blue comes first
        pixel[c] = ((length > kNothing ? v[c] / length : up) + 1) * 127.5f;
    }
}

}  // namespace

FloatForm FormOf(const ImageView& src, const ImageView& dst, const ZmImageOptions& options)
{
    const Channel* const from = src.layout.channel;
    const bool isColour = !src.hasSlopes && options.Channels == ZMCHANNELS_COLOR;
    FloatForm res;
    res.isWeighted = isColour && from[kAlpha].bits != 0;
    res.isPremultiplied = !src.hasSlopes && options.Channels == ZMCHANNELS_PREMULTIPLIED;
    res.isNormals = !src.hasSlopes && options.Channels == ZMCHANNELS_NORMALS;
    res.isLight = !src.hasSlopes && !res.isNormals && options.Light == ZMLIGHT_LINEAR;
    const bool isWide = HasWideChannels(src.layout) || HasWideChannels(dst.layout);
    res.byFields = src.hasSlopes || (isWide && !res.isLight) || (res.isNormals && from[kBlue].bits == 0);
    return res;
}

bool FloatSource::Prepare(const ImageView& image, const FloatForm& form)
{
    m_Image = image;
    m_Form = form;
    ReadLayout(m_Fields, image.layout, image.hasSlopes);
    return form.byFields || m_Lines.Prepare(image, kArgb);
}

void FloatSource::Read(int y, float* res)
{
    if (m_Form.byFields) {
        ReadFields(m_Image.Line(y), res);
    } else if (m_Form.isLight) {
        KernelsForFilters().widenToLight(res, m_Lines.Read(y, 0), m_Image.width, m_Form.isWeighted);
    } else {
        KernelsForFilters().widen(res, m_Lines.Read(y, 0), m_Image.width, m_Form.isWeighted);
    }
    if (m_Form.isNormals && m_Fields[kBlue].mask == 0) {
        AddDepths(res);
    }
}

void FloatSource::ReadFields(const uint8_t* pixels, float* res) const
{
    for (int x = 0; x < m_Image.width; ++x, pixels += m_Image.layout.bytes, res += 4) {
        uint32_t pixel = 0;
        memcpy(&pixel, pixels, size_t(m_Image.layout.bytes));
        for (int c = 0; c < 4; ++c) {
            const FloatField& field = m_Fields[c];
            const int value = int(pixel >> field.shift & field.mask), whole = (value ^ field.sign) - field.sign;
            res[kPlace[c]] = field.mask != 0 ? float(whole) / field.scale : c == kAlpha ? 255 : 0;
        }
        for (int c = 0; c < 3 && m_Form.isWeighted; ++c) {
            res[c] *= res[3];
        }
    }
}

/// Computes the third coordinates of unit vectors of which only two are stored.
void FloatSource::AddDepths(float* res) const
{
    for (int x = 0; x < m_Image.width; ++x, res += 4) {
        const float u = res[2] / 127.5f - 1, v = res[1] / 127.5f - 1, square = 1 - u * u - v * v;
        res[0] = ((square > 0 ? sqrtf(square) : 0) + 1) * 127.5f;
    }
}

bool FloatResult::Prepare(const ImageView& image, const FloatForm& form, bool hasSlopes)
{
    m_Image = image;
    m_Form = form;
    ReadLayout(m_Fields, image.layout, hasSlopes);
    m_Convert = Convert(kArgb, image.layout);
    m_Bytes = form.byFields || m_Convert.copy ? nullptr : NewArray<uint8_t>(int64_t(image.width) * 4);
    return form.byFields || m_Convert.copy || m_Bytes != nullptr;
}

void FloatResult::Write(int y, float* line)
{
    uint8_t* const bytes = m_Bytes != nullptr ? m_Bytes.get() : m_Image.Line(y);
    Finish(line);
    if (m_Form.byFields) {
        WriteFields(bytes, line);
    } else if (m_Form.isLight) {
        KernelsForFilters().narrowFromLight(bytes, line, m_Image.width, m_Form.isWeighted);
    } else {
        KernelsForFilters().narrow(bytes, line, m_Image.width, m_Form.isWeighted);
    }
    if (m_Bytes != nullptr) {
        ConvertPixels(m_Convert, bytes, m_Image.Line(y), m_Image.width);
    }
}

void FloatResult::Finish(float* line) const
{
    // The kernels for bytes divide by alpha themselves.
    void (*const finish)(float* pixel) = m_Form.isWeighted && m_Form.byFields ? Straighten
                                         : m_Form.isPremultiplied             ? LimitToAlpha
                                         : m_Form.isNormals                   ? MakeUnit
                                                                              : nullptr;
    for (ptrdiff_t x = 0; finish != nullptr && x < m_Image.width; ++x) {
        finish(line + x * 4);
    }
}

void FloatResult::WriteFields(uint8_t* res, const float* line) const
{
    for (int x = 0; x < m_Image.width; ++x, res += m_Image.layout.bytes, line += 4) {
        uint32_t pixel = 0;
        for (int c = 0; c < 4; ++c) {
            const FloatField& field = m_Fields[c];
            const float value = std::clamp(line[kPlace[c]] * field.scale, field.least, field.most);
            pixel |= (uint32_t(int(floorf(value + 0.5f))) & field.mask) << field.shift;
        }
        memcpy(res, &pixel, size_t(m_Image.layout.bytes));
    }
}

}  // namespace zm
