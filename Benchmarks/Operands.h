#pragma once

namespace bench {

constexpr int kOperands = 1000;

/// Inputs of the single operations, small enough for the cache. Matrices are row by row in the library's convention,
/// which is column by column in that of the peers.
struct alignas(64) Operands {
    using Matrices = float[kOperands][16];
    using Quaternions = float[kOperands][4];

    /// Scale (0.5 to 2), then rotation, then translation.
    Matrices a, b;
    /// The same with the 3x3 block transposed: the layout of btTransform.
    Matrices aTransform, bTransform;
    /// Rotation, scale, rotation, translation: stretched along axes that are not the coordinate axes.
    Matrices stretched;
    Matrices rotation;
    /// Unit quaternions, at least a few degrees away from each other and from each other's negative: closer pairs take
    /// short cuts that differ between the slerps.
    Quaternions p, q;
    /// Unit axis and angle.
    Quaternions axisAngle;
    float euler[kOperands][3];
    float t[kOperands];
};

}  // namespace bench
