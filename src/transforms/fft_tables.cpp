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

// exp(-2 pi i k / 2^order) for k < count <= 2^order / 2.
template <class T>
void storeTwiddles(int order, size_t count, T* twiddles, const T* quarterWave, int quarterWaveOrder) {
    const int places = quarterWaveOrder - order;
    const size_t quarter = (size_t{1} << order) / 4;
    for (size_t k = 0; k < count; ++k) {
        const bool second = k > quarter;
        const T cosine = quarterWave[(second ? k - quarter : quarter - k) << places];
        twiddles[2 * k] = second ? -cosine : cosine;
        twiddles[2 * k + 1] = -quarterWave[(second ? 2 * quarter - k : k) << places];
    }
}

// The tables of radix-2 passes.
template <class T>
size_t plainTableBytes(int order) {
    return sizeof(T) << order;
}

template <class T>
void buildPlainTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    T* const twiddles = reinterpret_cast<T*>(area);
    storeTwiddles(order, (size_t{1} << order) / 2, twiddles, quarterWave, quarterWaveOrder);
    spec.twiddles = twiddles;
}

} // namespace

template <class T>
size_t fftTableBytes(int order) {
    if (order > kLastFftPlan) return plainTableBytes<T>(order);
    const FftPlan plan = fftPlan<T>(order);
    return ((size_t{1} << order) - (size_t{1} << plan.orders[0])) * 2 * sizeof(T);
}

template <class T>
void buildFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    if (order > kLastFftPlan) {
        buildPlainTables(order, spec, area, quarterWave, quarterWaveOrder);
        return;
    }
    const FftPlan plan = fftPlan<T>(order);
    const size_t block = fftBlock<T>(size_t{1} << plan.orders[0], size_t{1} << (order - plan.orders[0]));
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
                    const Twiddle<T> w =
                        twiddle(n * (start + fftNumberAt<T>(i, block)), reached, quarterWave, quarterWaveOrder);
                    p[i] = w.re;
                    p[block + i] = w.im;
                }
            }
        }
    }
}

template <class T>
size_t realFftTableBytes(int order) {
    return plainTableBytes<T>(order - 1) + 2 * sizeof(T) * ((size_t{1} << order) / 4);
}

template <class T>
void buildRealFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    buildPlainTables(order - 1, spec, area, quarterWave, quarterWaveOrder);
    T* const recombination = reinterpret_cast<T*>(area + plainTableBytes<T>(order - 1));
    storeTwiddles(order, (size_t{1} << order) / 4, recombination, quarterWave, quarterWaveOrder);
    spec.tables[0] = recombination;
}

#define ZVPS_TABLES(T)                                                                                                 \
    template size_t fftTableBytes<T>(int);                                                                             \
    template void buildFftTables(int, FftSpec<T>&, unsigned char*, const T*, int);                                     \
    template size_t realFftTableBytes<T>(int);                                                                         \
    template void buildRealFftTables(int, FftSpec<T>&, unsigned char*, const T*, int);
ZVPS_TABLES(float)
ZVPS_TABLES(double)
#undef ZVPS_TABLES

} // namespace zvps
