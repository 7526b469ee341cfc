// The matrices of short DCTs. Those of the shortest ones are made while the library is compiled.
#include "transforms/dct_objects.hpp"
#include "transforms/sines.hpp"

namespace zvps {
namespace {

constexpr long double squareRoot(long double x) {
    long double root = 1;
    for (int i = 0; i < 40; ++i) {
        root = (root + x / root) / 2;
    }
    return root;
}

template <class T>
constexpr void storeMatrix(DctDirection direction, size_t n, T* p) {
    // cos(2 pi i / 4 n)
    long double cosines[kMostDctTable + 1] = {};
    for (size_t i = 0; i <= n; ++i) {
        cosines[i] = sineCosineOf(i, 4 * n).cosine;
    }
    constexpr long double kRoot2 = squareRoot(2);
    const long double first = 1 / squareRoot(static_cast<long double>(n));
    const bool isSymmetric = n > kMostDense;
    const size_t columns = dctMatrixColumns<T>(n);
    const size_t sums = (n + 1) / 2;
    for (size_t row = 0; row < n; ++row) {
        for (size_t column = 0; column < columns; ++column) {
            const bool isOdd = isSymmetric && row >= sums;
            const size_t line = isOdd ? row - sums : row;
            const size_t time = direction == kDctForward ? line : column;
            size_t frequency = direction == kDctForward ? column : line;
            if (isSymmetric) frequency = 2 * frequency + (isOdd ? 1 : 0);
            const bool isBeyond = frequency >= n;
            // Added to itself, the middle one of the values counts twice.
            const bool isMiddle = isSymmetric && direction == kDctForward && 2 * time + 1 == n;
            const long double factor = (frequency > 0 ? kRoot2 : 1) * (isMiddle ? 0.5L : 1) * first;
            const size_t angle = (2 * time + 1) * frequency % (4 * n);
            const size_t half = angle > 2 * n ? 4 * n - angle : angle;
            const long double cosine = half > n ? -cosines[2 * n - half] : cosines[half];
            p[row * columns + column] = isBeyond ? T{0} : static_cast<T>(factor * cosine);
        }
    }
}

// Where the matrix of each length starts.
template <class T>
constexpr size_t matrixStart(size_t n) {
    size_t start = 0;
    for (size_t i = 1; i < n; ++i) {
        start += dctMatrixValues<T>(i);
    }
    return start;
}

template <class T>
struct StoredMatrices {
    alignas(64) T values[matrixStart<T>(kMostStoredMatrix + 1)] = {};

    constexpr explicit StoredMatrices(DctDirection direction) {
        for (size_t n = 1; n <= kMostStoredMatrix; ++n) {
            storeMatrix(direction, n, values + matrixStart<T>(n));
        }
    }
};

template <class T>
constexpr StoredMatrices<T> kStored[kDctDirections] = {StoredMatrices<T>(kDctForward), StoredMatrices<T>(kDctInverse)};

} // namespace

template <class T>
const T* storedDctMatrix(DctDirection direction, size_t n) {
    return kStored<T>[direction].values + matrixStart<T>(n);
}
template <class T>
void storeDctMatrix(DctDirection direction, size_t n, T* p) {
    storeMatrix(direction, n, p);
}

#define ZVPS_MATRICES(T)                                                                                               \
    template const T* storedDctMatrix(DctDirection, size_t);                                                           \
    template void storeDctMatrix(DctDirection, size_t, T*);
ZVPS_MATRICES(Zvp32f)
ZVPS_MATRICES(Zvp64f)
#undef ZVPS_MATRICES

} // namespace zvps
