#pragma once

#include "Imaging/HeapArray.h"
#include "Imaging/ResizeLines.h"

namespace zm {

/// One direction of a resize: the source pixels that contribute to each result pixel, and their weights.
class ResizeAxis {
public:
    /// Returns false if out of memory.
    bool Prepare(int from, int to);

    const Taps* AllTaps() const { return m_Taps.get(); }
    const float* Weights() const { return m_Weights.get(); }
    /// The largest number of source pixels that contribute to one result pixel.
    int MostTaps() const { return m_MostTaps; }
    /// Every weight is a multiple of 1 / Parts().
    int64_t Parts() const { return m_Parts; }

private:
    Taps Area(int i, int from, int to);
    Taps Between(int i, int from, int to);
    void Add(double weight) { m_Weights[size_t(m_Used++)] = float(weight); }

    HeapArray<Taps> m_Taps;
    HeapArray<float> m_Weights;
    int m_Used = 0, m_MostTaps = 0;
    int64_t m_Parts = 1;
};

}  // namespace zm
