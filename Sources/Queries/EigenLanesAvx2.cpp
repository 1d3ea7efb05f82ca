#include "Queries/EigenLanes.h"

// Compiled for AVX2. Only this function may be visible outside this file.

namespace zm {
namespace avx2 {

void FindEigenvectors(EigenBlock& block)
{
    zm::FindEigenvectors<Avx2Lanes>(block);
}

}  // namespace avx2
}  // namespace zm
