#include "transforms/fft_large_plan.hpp"
#include "transforms/fft_tables.hpp"
#include "transforms/fft_twiddle.hpp"

namespace zvps {
namespace {

template <class T>
void storeMiddle(int order, Wave<T> wave, T* base) {
    constexpr size_t C = kLargeColumns<T>;
    const LargeFftPlan plan = largeFftPlan<T>(order);
    const LargeFftTables tables = largeFftTables<T>(order);
    const size_t coarseCount = (size_t{1} << plan.firstOrder) / C;
    for (size_t n = 0; n < size_t{1} << plan.secondOrder; ++n) {
        const size_t block = n / C;
        const size_t lane = n % C;
        for (size_t k = 0; k < C; ++k) {
            T* const along = base + tables.fine + n * 2 * C + k;
            T* const across = base + tables.fineAcross + (block * C + k) * 2 * C + lane;
            along[0] = across[0] = wave.lessCosine(n * k, order);
            along[C] = across[C] = wave.sine(n * k, order);
        }
        for (size_t k = 0; k < coarseCount; ++k) {
            T* const along = base + tables.coarse + (n * coarseCount + k) * 2;
            T* const across = base + tables.coarseAcross + (block * coarseCount + k) * 2 * C + lane;
            along[0] = across[0] = wave.cosine(n * k * C, order);
            along[1] = across[C] = wave.sine(n * k * C, order);
        }
    }
}

template <class T>
void storePasses(const RowsPlan& plan, const size_t* places, Wave<T> wave, T* base) {
    int order = plan.order;
    for (int pass = 0; pass < kMostRowsPasses && plan.orders[pass] < order; ++pass) {
        storeRowsPass(order, plan.orders[pass], wave, base + places[pass]);
        order -= plan.orders[pass];
    }
}

} // namespace

template <class T>
size_t largeFftTableBytes(int order) {
    return largeFftTables<T>(order).values * sizeof(T);
}

template <class T>
void buildLargeFftTables(int order, T* base, const T* quarterWave, int quarterWaveOrder) {
    const LargeFftPlan plan = largeFftPlan<T>(order);
    const LargeFftTables tables = largeFftTables<T>(order);
    const Wave<T> wave = {quarterWave, quarterWaveOrder};
    storeMiddle(order, wave, base);
    storePasses(plan.first, tables.first, wave, base);
    storePasses(plan.second, tables.second, wave, base);
}

#define ZVPS_TABLES(T)                                                                                                 \
    template size_t largeFftTableBytes<T>(int);                                                                        \
    template void buildLargeFftTables(int, T*, const T*, int);
ZVPS_TABLES(float)
ZVPS_TABLES(double)
#undef ZVPS_TABLES

} // namespace zvps
