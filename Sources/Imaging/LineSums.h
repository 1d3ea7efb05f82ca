#pragma once

#include "Imaging/PictureLines.h"
#include "Imaging/ResizeAxis.h"

namespace zm {

/// A line of columns, followed by `more` columns of zeros.
class ColumnLine {
public:
    /// Returns false if out of memory.
    bool Prepare(int width, int more);

    const Columns& Get() const { return m_Columns; }

private:
    HeapArray<uint16_t> m_Numbers;
    Columns m_Columns;
};

/// The weighted sums of lines of an opaque picture, with kFraction fraction bits.
class LineSums {
public:
    /// `more` columns beyond the end will be read. Returns false if out of memory.
    bool Prepare(int from, int to, int width, int more);

    /// Whether the sum of the bytes of all lines fits in 16 bits.
    bool Fits() const { return m_Axis.MostTaps() <= 256; }

    const Columns& Sum(PictureLines& lines, int y);

private:
    void AddInner(Band& band, PictureLines& lines, int first, int count);

    ResizeAxis m_Axis;
    int m_Width = 0, m_Shift = 0;
    uint16_t m_InnerWeight = 0;
    ColumnLine m_Columns, m_Sums;
};

}  // namespace zm
