#pragma once

#include "Imaging/PictureLines.h"
#include "ZmImageOptions.h"

namespace zm {

/// How the lines of an image become floats that may be averaged, and averages become pixels again. Values are those of
/// bytes, from 0 to 255, whatever the width of a channel; slopes have about the same range on both sides of 0.
struct FloatForm {
    bool isWeighted;       ///< colours are multiplied by their alpha
    bool isPremultiplied;  ///< they are from the outset
    bool isNormals;
    bool isLight;
    bool byFields;  ///< channel by channel, since bytes would not do
};

FloatForm FormOf(const ImageView& src, const ImageView& dst, const ZmImageOptions& options);

/// A channel's field within a pixel. A missing one has a mask of 0.
struct FloatField {
    int shift, sign;  ///< `sign`: the value of the highest bit if it is one, else 0
    uint32_t mask;
    float scale, least, most;
};

/// Reads lines of an image as floats, four per pixel in the byte order of ARGB8888.
class FloatSource {
public:
    /// Returns false if out of memory.
    bool Prepare(const ImageView& image, const FloatForm& form);

    void Read(int y, float* res);

private:
    void ReadFields(const uint8_t* pixels, float* res) const;
    void AddDepths(float* res) const;

    ImageView m_Image;
    FloatForm m_Form;
    FloatField m_Fields[4];
    SourceLines m_Lines;
};

/// Writes such lines.
class FloatResult {
public:
    /// `hasSlopes`: those of the source. Returns false if out of memory.
    bool Prepare(const ImageView& image, const FloatForm& form, bool hasSlopes);

    /// Changes the line.
    void Write(int y, float* line);

private:
    void Finish(float* line) const;
    void WriteFields(uint8_t* res, const float* line) const;

    ImageView m_Image;
    FloatForm m_Form;
    FloatField m_Fields[4];
    Conversion m_Convert;
    HeapArray<uint8_t> m_Bytes;
};

}  // namespace zm
