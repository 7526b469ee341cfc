#include "transforms/fft_real_plan.hpp"
#include "transforms/fft_tables.hpp"
#include "transforms/fft_twiddle.hpp"

namespace zvps {
namespace {

template <class T>
void storeColumns(int order, const RealFftPlan& plan, Wave<T> wave, T* p) {
    const size_t block = realFftBlock<T>(plan);
    for (size_t n = 0; n < plan.columns; n += block) {
        for (size_t k = 1; k < plan.rows / 2; ++k, p += 2 * block) {
            for (size_t i = 0; i < block; ++i) {
                p[i] = wave.cosine((n + i) * k, order);
                p[block + i] = wave.sine((n + i) * k, order);
            }
        }
    }
}

template <class T>
void storeEnds(int columnOrder, Wave<T> wave, T* p) {
    const size_t half = (size_t{1} << columnOrder) / 2;
    for (size_t k = 0; k < half; ++k) {
        p[k] = wave.cosine(k, columnOrder + 1);
        p[half + k] = wave.sine(k, columnOrder + 1);
    }
}

template <class T>
void storeJoining(int order, Wave<T> wave, T* p) {
    constexpr size_t C = kJoinedBins<T>;
    for (size_t from = 0; from < 2; ++from, p += 2 * C) {
        for (size_t k = 0; k < C; ++k) {
            p[k] = wave.lessCosine(from + k, order);
            p[C + k] = wave.sine(from + k, order);
        }
    }
    for (size_t k = 0; k < (size_t{1} << order) / 2; k += C, p += 2) {
        p[0] = wave.cosine(k, order);
        p[1] = wave.sine(k, order);
    }
}

template <class T>
void storeTables(int order, Wave<T> wave, T* base) {
    const RealFftPlan plan = realFftPlan<T>(order);
    const RealFftTables tables = realFftTables<T>(order);
    storeColumns(order, plan, wave, base);
    if (order <= kMostShortRealOrder) {
        storeEnds(plan.along.order, wave, base + tables.ends);
        return;
    }
    int remaining = plan.along.order;
    for (int pass = 0; plan.along.orders[pass] < remaining; ++pass) {
        storeRowsPass(remaining, plan.along.orders[pass], wave, base + tables.pass[pass]);
        remaining -= plan.along.orders[pass];
    }
    storeTables(plan.along.order + 1, wave, base + tables.inner);
}

} // namespace

template <class T>
size_t realFftTableBytes(int order) {
    if (order > kMostRealOrder) return joiningValues<T>(order) * sizeof(T) + largeFftTableBytes<T>(order - 1);
    return realFftTables<T>(order).values * sizeof(T);
}

template <class T>
void buildRealFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    const Wave<T> wave = {quarterWave, quarterWaveOrder};
    T* p = reinterpret_cast<T*>(area);
    spec.twiddles = p;
    if (order > kMostRealOrder) {
        storeJoining(order, wave, p);
        T* const half = p + joiningValues<T>(order);
        spec.tables[0] = half;
        buildLargeFftTables(order - 1, half, quarterWave, quarterWaveOrder);
        return;
    }
    storeTables(order, wave, p);
}

#define ZVPS_TABLES(T)                                                                                                 \
    template size_t realFftTableBytes<T>(int);                                                                         \
    template void buildRealFftTables(int, FftSpec<T>&, unsigned char*, const T*, int);
ZVPS_TABLES(float)
ZVPS_TABLES(double)
#undef ZVPS_TABLES

} // namespace zvps
