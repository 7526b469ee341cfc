// Twiddle factors from a quarter wave.
#pragma once

#include <cstddef>

namespace zvps {

// exp(-2 pi i index / 2^order) from the sines of a quarter wave of 2^waveOrder steps to the circle.
template <class T>
struct Twiddle {
    T re;
    T im;
};

template <class T>
Twiddle<T> twiddle(size_t index, int order, const T* quarterWave, int waveOrder) {
    const size_t quarter = size_t{1} << (waveOrder - 2);
    const size_t step = (index << (waveOrder - order)) & (4 * quarter - 1);
    const size_t rest = step % quarter;
    const T sin = quarterWave[rest];
    const T cos = quarterWave[quarter - rest];
    switch (step / quarter) {
    case 0:
        return {cos, -sin};
    case 1:
        return {-sin, -cos};
    case 2:
        return {-cos, sin};
    default:
        return {sin, cos};
    }
}

// The same as cosines and sines of 2 pi index / 2^of.
template <class T>
struct Wave {
    const T* quarter;
    int order;

    T cosine(size_t index, int of) const { return twiddle(index, of, quarter, order).re; }
    T sine(size_t index, int of) const { return -twiddle(index, of, quarter, order).im; }
    // The cosine less 1, of angles below a quarter circle.
    T lessCosine(size_t index, int of) const {
        const T s = sine(index, of);
        return -s * s / (1 + cosine(index, of));
    }
};

// The table of a pass along rows that starts transforms of 2^order values with a radix of 2^radixOrder.
template <class T>
void storeRowsPass(int order, int radixOrder, Wave<T> wave, T* p) {
    for (size_t n = 0; n < size_t{1} << (order - radixOrder); ++n) {
        for (size_t k = 1; k < size_t{1} << radixOrder; ++k, p += 2) {
            p[0] = wave.cosine(n * k, order);
            p[1] = wave.sine(n * k, order);
        }
    }
}

} // namespace zvps
