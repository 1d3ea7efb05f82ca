#pragma once

#include "Imaging/ResizeAxis.h"

namespace zm {

/// Integer weights for the columns of an opaque picture.
class IntegerWeights {
public:
    /// Returns false if out of memory.
    bool Prepare(int from, int to);

    /// Whether the weights fit in 16 bits. If not, there is no table.
    bool Fits() const { return m_Axis.Parts() <= 32767; }
    /// How many columns beyond the end must be readable.
    int Beyond() const { return m_Fours * 4; }

    WeightTable Table() const;

private:
    void Set(int x, int i, double weight);

    ResizeAxis m_Axis;
    int m_Fours = 0;
    HeapArray<int> m_First;
    HeapArray<int16_t> m_Weights;
};

}  // namespace zm
