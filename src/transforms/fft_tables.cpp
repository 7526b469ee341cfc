#include "transforms/fft_tables.hpp"

namespace zvps {

namespace {

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

} // namespace

template <class T>
size_t fftTableBytes(int order) {
    const FftPlan plan = fftPlan<T>(order);
    return ((size_t{1} << order) - (size_t{1} << plan.orders[0])) * 2 * sizeof(T);
}

template <class T>
void buildFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    const FftPlan plan = fftPlan<T>(order);
    const size_t block = fftBlock<T>(plan.orders[0]);
    T* const table = reinterpret_cast<T*>(area);
    spec.twiddles = table;
    T* p = table;
    int reached = plan.orders[0];
    for (int pass = 1; pass < plan.passes; ++pass) {
        const size_t s = size_t{1} << reached;
        const size_t radix = size_t{1} << plan.orders[pass];
        reached += plan.orders[pass];
        for (size_t start = 0; start < s; start += block) {
            for (size_t n = 1; n < radix; ++n, p += 2 * block) {
                for (size_t i = 0; i < block; ++i) {
                    const Twiddle<T> w = twiddle(n * (start + fftNumberAt<T>(i, block)), reached, quarterWave, quarterWaveOrder);
                    p[i] = w.re;
                    p[block + i] = w.im;
                }
            }
        }
    }
}

template size_t fftTableBytes<float>(int);
template size_t fftTableBytes<double>(int);
template void buildFftTables(int, FftSpec<float>&, unsigned char*, const float*, int);
template void buildFftTables(int, FftSpec<double>&, unsigned char*, const double*, int);

} // namespace zvps
