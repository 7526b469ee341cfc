#include "transforms/fft_tables.hpp"
#include "transforms/fft_twiddle.hpp"

namespace zvps {

template <class T>
size_t fftTableBytes(int order) {
    if (order > kLastFftPlan) return largeFftTableBytes<T>(order);
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
        T* const tables = reinterpret_cast<T*>(area);
        spec.twiddles = tables;
        buildLargeFftTables(order, tables, quarterWave, quarterWaveOrder);
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
