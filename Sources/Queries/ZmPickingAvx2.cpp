#include "Queries/MeshKernels.h"

// Compiled for AVX2. Only this function may be visible outside this file.

namespace zm {
namespace avx2 {

bool FindHit(const MeshQuery& query)
{
    return zm::FindHit<Avx2Lanes>(query);
}

}  // namespace avx2
}  // namespace zm
