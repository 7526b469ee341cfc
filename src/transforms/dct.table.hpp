// DCT: the bridge between entries and kernels.
#pragma once

#include "transforms/dct_spec.hpp"

namespace zvps {

// Transforms are products with a matrix up to the first of these lengths; up to the second one too if their object has
// room for a matrix of its own, or else a real DFT in two steps. Longer ones use FFT or DFT objects.
inline constexpr size_t kMostStoredMatrix = 32;
inline constexpr size_t kMostDctTable = 100;

// The powers of two among the stored matrices have fixed routines: 2^0 to 2^5.
inline constexpr size_t kFixedDcts = 6;

// ---- Matrices ----

// Up to this length a matrix has a column for each result and a row for each value that it is made of.
inline constexpr size_t kMostDense = 16;
// Longer ones use symmetry. Forward: they have rows for the sums of mirrored values, which give the results with even
// index, then for their differences, which give the odd ones. Inverse: for the values with even index, which give the
// even part of the result, then for the odd ones. There are columns for half of the results, in whole vectors.
template <class T>
constexpr size_t dctMatrixColumns(size_t n) {
    constexpr size_t kVector = 64 / sizeof(T);
    return n <= kMostDense ? n : ((n + 1) / 2 + kVector - 1) / kVector * kVector;
}
// The values of a matrix; kernels read whole vectors of those without symmetry.
template <class T>
constexpr size_t dctMatrixValues(size_t n) {
    return n <= kMostDense ? (n * n + 2 * kMostDense - 1) / kMostDense * kMostDense : n * dctMatrixColumns<T>(n);
}

// ---- Transforms by a real DFT of the same length ----

// v[n] = x[2 n], v[N - 1 - n] = x[2 n + 1] have the spectrum V; with theta = pi k / 2N,
//     X[k] = c(k) Re(exp(-i theta) V[k]), X[N - k] = -c(k) Im(exp(-i theta) V[k]).
// The twiddles are cos(theta), then sin(theta), for k = 0 .. N/2, multiplied by a factor of the direction.
constexpr size_t dctBins(size_t n) {
    return n / 2 + 1;
}

enum DctDirection { kDctForward, kDctInverse, kDctDirections };

// Source and destination of a whole transform may be the same.
template <class T>
using TableDct = void (*)(const T* src, T* dst, const DctSpec<T>& spec);
// Values in the order of v; their spectrum in CCS layout. These do not overlap.
template <class T>
using ReorderDct = void (*)(const T* src, T* dst, size_t n);
template <class T>
using TurnDct = void (*)(const T* src, T* dst, size_t n, const T* twiddles);

template <class T>
struct DctKernels {
    TableDct<T> fixed[kDctDirections][kFixedDcts];
    TableDct<T> matrix[kDctDirections];
    TableDct<T> composite[kDctDirections];
    ReorderDct<T> reorder[kDctDirections]; // x to v, v to x
    TurnDct<T> turn[kDctDirections];       // V to X, X to V
};

} // namespace zvps
