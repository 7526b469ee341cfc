#include "transforms/fft_tables.hpp"
#include "transforms/fft_twiddle.hpp"

namespace zvps {

namespace {

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
    size_t values = 0;
    int rest = order;
    for (int pass = 0; pass < plan.passes - 1; ++pass) {
        values += (size_t{1} << rest) - (size_t{1} << (rest - plan.orders[pass]));
        rest -= plan.orders[pass];
    }
    return 2 * sizeof(T) * values;
}

template <class T>
void buildFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    if (order > kLastFftPlan) {
        buildPlainTables(order, spec, area, quarterWave, quarterWaveOrder);
        return;
    }
    const FftPlan plan = fftPlan<T>(order);
    T* p = reinterpret_cast<T*>(area);
    spec.twiddles = p;
    int rest = order;
    for (int pass = 0; pass < plan.passes - 1; ++pass) {
        const size_t radix = size_t{1} << plan.orders[pass];
        const size_t columns = (size_t{1} << rest) / radix;
        const size_t block = pass == 0 ? fftBlock<T>(columns) : 1;
        for (size_t start = 0; start < columns; start += block) {
            for (size_t k = 1; k < radix; ++k, p += 2 * block) {
                for (size_t i = 0; i < block; ++i) {
                    const size_t n = start + fftNumberAt<T>(i, block);
                    const Twiddle<T> w = twiddle(n * k, rest, quarterWave, quarterWaveOrder);
                    p[i] = w.re;
                    p[block + i] = w.im;
                }
            }
        }
        rest -= plan.orders[pass];
    }
}

#define ZVPS_TABLES(T)                                                                                                 \
    template size_t fftTableBytes<T>(int);                                                                             \
    template void buildFftTables(int, FftSpec<T>&, unsigned char*, const T*, int);
ZVPS_TABLES(float)
ZVPS_TABLES(double)
#undef ZVPS_TABLES

} // namespace zvps
