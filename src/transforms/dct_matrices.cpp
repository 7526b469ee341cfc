// The matrices of short DCTs, made while the library is compiled.
#include "transforms/dct_objects.hpp"
#include "transforms/sines.hpp"

namespace zvps {
namespace {

// Where the matrix of each length starts.
constexpr size_t matrixStart(size_t n) {
    size_t start = 0;
    for (size_t i = 1; i < n; ++i) {
        start += i * dctMatrixColumns(i);
    }
    return start;
}

constexpr long double squareRoot(long double x) {
    long double root = 1;
    for (int i = 0; i < 40; ++i) {
        root = (root + x / root) / 2;
    }
    return root;
}

template <class T>
struct DctMatrices {
    // Kernels read whole vectors.
    T values[matrixStart(kMostDctMatrix + 1) + kMostDense] = {};

    constexpr explicit DctMatrices(DctDirection direction) {
        for (size_t n = 1; n <= kMostDctMatrix; ++n) {
            store(direction, n, values + matrixStart(n));
        }
    }

  private:
    static constexpr void store(DctDirection direction, size_t n, T* p) {
        constexpr long double kRoot2 = squareRoot(2);
        const long double root = squareRoot(static_cast<long double>(n));
        const size_t columns = dctMatrixColumns(n);
        const size_t sums = (n + 1) / 2;
        for (size_t row = 0; row < n; ++row) {
            for (size_t column = 0; column < columns; ++column) {
                const bool isOdd = n > kMostDense && row >= sums;
                const size_t line = isOdd ? row - sums : row;
                const size_t time = direction == kDctForward ? line : column;
                size_t frequency = direction == kDctForward ? column : line;
                long double factor = 1 / root;
                if (n > kMostDense) {
                    frequency = 2 * frequency + (isOdd ? 1 : 0);
                    if (frequency >= n) continue;
                    if (direction == kDctForward && 2 * time + 1 == n) factor /= 2;
                }
                if (frequency > 0) factor *= kRoot2;
                const long double cosine = sineCosineOf((2 * time + 1) * frequency, 4 * n).cosine;
                p[row * columns + column] = static_cast<T>(factor * cosine);
            }
        }
    }
};

template <class T>
constexpr DctMatrices<T> kMatrices[kDctDirections] = {DctMatrices<T>(kDctForward), DctMatrices<T>(kDctInverse)};

} // namespace

template <class T>
const T* dctMatrix(DctDirection direction, size_t n) {
    return kMatrices<T>[direction].values + matrixStart(n);
}
template const Zvp32f* dctMatrix(DctDirection, size_t);
template const Zvp64f* dctMatrix(DctDirection, size_t);

} // namespace zvps
