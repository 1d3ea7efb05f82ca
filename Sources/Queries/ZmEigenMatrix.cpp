#include "ZmEigenMatrix.h"

#include "Queries/PointCloud.h"

#include <math.h>
#include <string.h>

namespace {

constexpr int kMostIterations = 32;

/// The first row, counted from `from`, after which the sub-diagonal is negligible; the last row if there is none.
int EndOfBlock(const float* diagonal, const float* subDiagonal, int from)
{
    for (int i = from; i < 2; ++i) {
        const float sum = fabsf(diagonal[i]) + fabsf(diagonal[i + 1]);
        if (sum + fabsf(subDiagonal[i]) == sum) {
            return i;
        }
    }
    return 2;
}

/// The rotation that turns (f, g) onto the second axis.
struct Turn {
    float sine, cosine, length;

    Turn(float f, float g) : length(float(sqrt(double(f) * double(f) + double(g) * double(g))))
    {
        sine = f / length;
        cosine = g / length;
    }
};

void TurnColumns(float (&matrix)[3][3], int column, float sine, float cosine)
{
    for (float* row : matrix) {
        const float left = row[column], right = row[column + 1];
        row[column + 1] = sine * left + cosine * right;
        row[column] = cosine * left - sine * right;
    }
}

/// The last diagonal element minus the shift: the eigenvalue of the block's leading 2x2 matrix that is nearest to the
/// first diagonal element.
float ShiftedEnd(const float* diagonal, const float* subDiagonal, int from, int end)
{
    const float half = (diagonal[from + 1] - diagonal[from]) / (2 * subDiagonal[from]);
    const float root = sqrtf(half * half + 1);
    return diagonal[end] - diagonal[from] + subDiagonal[from] / (half < 0 ? half - root : half + root);
}

/// One QL iteration over rows from to end: chases the shift up along the diagonal.
void Iterate(float (&matrix)[3][3], float* diagonal, float* subDiagonal, int from, int end)
{
    float g = ShiftedEnd(diagonal, subDiagonal, from, end), sine = 1, cosine = 1, p = 0;
    for (int i = end - 1; i >= from; --i) {
        const float f = sine * subDiagonal[i], b = cosine * subDiagonal[i];
        const Turn turn(f, g);
        subDiagonal[i + 1] = turn.length;
        if (turn.length == 0) {  // the block splits here
            diagonal[i + 1] -= p;
            subDiagonal[end] = 0;
            return;
        }
        sine = turn.sine;
        cosine = turn.cosine;
        g = diagonal[i + 1] - p;
        const float r = (diagonal[i] - g) * sine + 2 * cosine * b;
        p = sine * r;
        diagonal[i + 1] = g + p;
        g = cosine * r - b;
        TurnColumns(matrix, i, sine, cosine);
    }
    diagonal[from] -= p;
    subDiagonal[from] = g;
    subDiagonal[end] = 0;
}

}  // namespace

void ZmEigenMatrix::Covariance(const unsigned char* points, unsigned long stride, int count)
{
    zm::CovarianceOf(zm::PointCloud{points, stride, points ? count : 0}, Matrix);
}

void ZmEigenMatrix::Tridiagonal(float* diagonal, float* subDiagonal)
{
    const float a = Matrix[0][0], b = Matrix[0][1], c = Matrix[0][2];
    const float d = Matrix[1][1], e = Matrix[1][2], f = Matrix[2][2];
    // The reflection that maps (b, c) to (length, 0); in double, so that no square underflows.
    const float length = float(sqrt(double(b) * double(b) + double(c) * double(c)));
    const bool done = c == 0;
    const float y = done ? 1 : b / length, z = done ? 0 : c / length;
    const float q = 2 * y * e + z * (f - d);
    diagonal[0] = a;
    diagonal[1] = done ? d : d + z * q;
    diagonal[2] = done ? f : f - z * q;
    subDiagonal[0] = done ? b : length;
    subDiagonal[1] = done ? e : e - y * q;
    subDiagonal[2] = 0;
    const float transform[3][3] = {{1, 0, 0}, {0, y, z}, {0, z, done ? 1 : -y}};
    memcpy(Matrix, transform, sizeof(Matrix));
}

bool ZmEigenMatrix::QLAlgorithm(float* diagonal, float* subDiagonal)
{
    for (int from = 0; from < 3; ++from) {
        for (int iteration = 0;; ++iteration) {
            const int end = EndOfBlock(diagonal, subDiagonal, from);
            if (end == from) {
                break;
            }
            if (iteration == kMostIterations) {
                return false;
            }
            Iterate(Matrix, diagonal, subDiagonal, from, end);
        }
    }
    return true;
}

void ZmEigenMatrix::EigenStuff3()
{
    float subDiagonal[3];
    Tridiagonal(EigenValues, subDiagonal);
    Converged = QLAlgorithm(EigenValues, subDiagonal);
}
