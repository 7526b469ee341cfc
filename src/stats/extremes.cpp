// Extreme values and where they stand.
#include "stats/extremes.table.hpp"
#include "zvps/statistics.h"

#include "core/checks.hpp"
#include "core/level.hpp"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace zvps {
namespace {

size_t count(int len) {
    return static_cast<size_t>(len);
}

template <class Kernels, class T>
ZvpStatus extreme(const Kernels& kernels, const T* src, int len, T* result) {
    if (const ZvpStatus status = checkVectors(len, src, result)) return status;
    *result = kernels.value(src, count(len));
    return zvpStsOk;
}

template <class T>
T itself(T x) {
    return x;
}
template <class T>
T magnitude(T x) {
    return static_cast<T>(std::abs(std::max<T>(x, -std::numeric_limits<T>::max())));
}

// The index is asked for only where it is wanted.
template <class Kernels, class T>
ZvpStatus extremeAndIndex(const Kernels& kernels, const T* src, int len, T* result, int* index, T (*value)(T)) {
    if (index == nullptr) return extreme(kernels, src, len, result);
    if (const ZvpStatus status = checkVectors(len, src, result)) return status;
    const size_t place = kernels.index(src, count(len));
    *result = value(src[place]);
    *index = static_cast<int>(place);
    return zvpStsOk;
}

template <class T>
ZvpStatus bothExtremes(const BothExtremesKernels<T>& kernels, const T* src, int len, T* min, T* max) {
    if (const ZvpStatus status = checkVectors(len, src, min, max)) return status;
    const Both<T> values = kernels.values(src, count(len));
    *min = values.min;
    *max = values.max;
    return zvpStsOk;
}

template <class T>
ZvpStatus bothExtremesAndIndices(const BothExtremesKernels<T>& kernels, const T* src, int len, T* min, int* minIndex,
                                 T* max, int* maxIndex) {
    if (const ZvpStatus status = checkVectors(len, src, min, minIndex, max, maxIndex)) return status;
    const Both<size_t> places = kernels.indices(src, count(len));
    *min = src[places.min];
    *minIndex = static_cast<int>(places.min);
    *max = src[places.max];
    *maxIndex = static_cast<int>(places.max);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries: one line each ----

#define ZVPS_EXTREME(NAME, TYPE, slot, value)                                                                          \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* p##NAME) {                                \
        return zvps::extreme(zvps::kernels().extremes->slot##_##TYPE, pSrc, len, p##NAME);                             \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##Indx_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* p##NAME, int* pIndx) {                \
        return zvps::extremeAndIndex(zvps::kernels().extremes->slot##_##TYPE, pSrc, len, p##NAME, pIndx,               \
                                     zvps::value<Zvp##TYPE>);                                                          \
    }
#define ZVPS_EXTREMES_OF(TYPE)                                                                                         \
    ZVPS_EXTREME(Min, TYPE, min, itself)                                                                               \
    ZVPS_EXTREME(Max, TYPE, max, itself)
#define ZVPS_EXTREMES_OF_MAGNITUDES_OF(TYPE)                                                                           \
    ZVPS_EXTREME(MinAbs, TYPE, minAbs, magnitude)                                                                      \
    ZVPS_EXTREME(MaxAbs, TYPE, maxAbs, magnitude)
#define ZVPS_BOTH_EXTREMES_OF(TYPE)                                                                                    \
    ZvpStatus zvpsMinMax_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* pMin, Zvp##TYPE* pMax) {                    \
        return zvps::bothExtremes(zvps::kernels().extremes->minMax_##TYPE, pSrc, len, pMin, pMax);                     \
    }                                                                                                                  \
    ZvpStatus zvpsMinMaxIndx_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* pMin, int* pMinIndx, Zvp##TYPE* pMax,   \
                                    int* pMaxIndx) {                                                                   \
        return zvps::bothExtremesAndIndices(zvps::kernels().extremes->minMax_##TYPE, pSrc, len, pMin, pMinIndx, pMax,  \
                                            pMaxIndx);                                                                 \
    }
// Checks nothing but that there is something to do.
#define ZVPS_ELEMENTWISE_EXTREME(NAME, TYPE, slot)                                                                     \
    ZvpStatus zvps##NAME##_##TYPE##_I(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, Zvp32u len) {                         \
        if (len != 0) zvps::kernels().extremes->slot##_##TYPE(pSrc, pSrcDst, len);                                     \
        return zvpStsOk;                                                                                               \
    }

ZVPS_EXTREMES(ZVPS_EXTREMES_OF)
ZVPS_EXTREMES_OF_MAGNITUDES(ZVPS_EXTREMES_OF_MAGNITUDES_OF)
ZVPS_BOTH_EXTREMES(ZVPS_BOTH_EXTREMES_OF)

ZVPS_ELEMENTWISE_EXTREME(MinEvery, 8u, minEvery)
ZVPS_ELEMENTWISE_EXTREME(MinEvery, 16s, minEvery)
ZVPS_ELEMENTWISE_EXTREME(MinEvery, 16u, minEvery)
ZVPS_ELEMENTWISE_EXTREME(MinEvery, 32s, minEvery)
ZVPS_ELEMENTWISE_EXTREME(MinEvery, 32f, minEvery)
ZVPS_ELEMENTWISE_EXTREME(MinEvery, 64f, minEvery)
ZVPS_ELEMENTWISE_EXTREME(MaxEvery, 8u, maxEvery)
ZVPS_ELEMENTWISE_EXTREME(MaxEvery, 16s, maxEvery)
ZVPS_ELEMENTWISE_EXTREME(MaxEvery, 16u, maxEvery)
ZVPS_ELEMENTWISE_EXTREME(MaxEvery, 32s, maxEvery)
ZVPS_ELEMENTWISE_EXTREME(MaxEvery, 32f, maxEvery)
