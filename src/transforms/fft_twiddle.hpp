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

} // namespace zvps
