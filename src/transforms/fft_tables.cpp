#include "transforms/fft_tables.hpp"

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

} // namespace

template <class T>
size_t fftTableBytes(int order) {
    return sizeof(T) << order;
}

template <class T>
void buildFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    T* const twiddles = reinterpret_cast<T*>(area);
    storeTwiddles(order, (size_t{1} << order) / 2, twiddles, quarterWave, quarterWaveOrder);
    spec.twiddles = twiddles;
}

template <class T>
size_t realFftTableBytes(int order) {
    return fftTableBytes<T>(order - 1) + 2 * sizeof(T) * ((size_t{1} << order) / 4);
}

template <class T>
void buildRealFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder) {
    buildFftTables(order - 1, spec, area, quarterWave, quarterWaveOrder);
    T* const recombination = reinterpret_cast<T*>(area + fftTableBytes<T>(order - 1));
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
