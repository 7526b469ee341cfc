#include "transforms/fft_tables.hpp"
#include "transforms/fft_twiddle.hpp"

namespace zvps {

template <class T>
size_t fftTableBytes(int order) {
    if (order > kLastFftPlan) return largeFftTableBytes<T>(order);
    const FftPlan plan = fftPlan<T>(order);
    return ((size_t{1} << order) - (size_t{1} << plan.orders[0])) * 2 * sizeof(T);
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

#define ZVPS_TABLES(T)                                                                                                 \
    template size_t fftTableBytes<T>(int);                                                                             \
    template void buildFftTables(int, FftSpec<T>&, unsigned char*, const T*, int);
ZVPS_TABLES(float)
ZVPS_TABLES(double)
#undef ZVPS_TABLES

} // namespace zvps
