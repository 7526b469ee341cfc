// Extreme values: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(code): the types with Min and Max, and all types, which have MinMax.
#define ZVPS_EXTREMES(X)                                                                                               \
    X(16s)                                                                                                             \
    X(32s)                                                                                                             \
    X(32f)                                                                                                             \
    X(64f)
#define ZVPS_BOTH_EXTREMES(X)                                                                                          \
    ZVPS_EXTREMES(X)                                                                                                   \
    X(8u)                                                                                                              \
    X(16u)                                                                                                             \
    X(32u)
// X(code): of magnitudes.
#define ZVPS_EXTREMES_OF_MAGNITUDES(X)                                                                                 \
    X(16s)                                                                                                             \
    X(32s)

// X(slot, type): of the elements at the same places.
#define ZVPS_ELEMENTWISE_EXTREMES(X)                                                                                   \
    X(minEvery_8u, Smaller, Zvp8u)                                                                                     \
    X(minEvery_16s, Smaller, Zvp16s)                                                                                   \
    X(minEvery_16u, Smaller, Zvp16u)                                                                                   \
    X(minEvery_32s, Smaller, Zvp32s)                                                                                   \
    X(minEvery_32f, Smaller, Zvp32f)                                                                                   \
    X(minEvery_64f, Smaller, Zvp64f)                                                                                   \
    X(maxEvery_8u, Larger, Zvp8u)                                                                                      \
    X(maxEvery_16s, Larger, Zvp16s)                                                                                    \
    X(maxEvery_16u, Larger, Zvp16u)                                                                                    \
    X(maxEvery_32s, Larger, Zvp32s)                                                                                    \
    X(maxEvery_32f, Larger, Zvp32f)

namespace zvps {

template <class T>
struct Both {
    T min;
    T max;
};

// Of n >= 1 elements: the extreme, and the index of the first that equals it. A NaN is passed over, but for the first
// element, which then is the extreme.
template <class T>
struct ExtremeKernels {
    T (*value)(const T* src, size_t n);
    size_t (*index)(const T* src, size_t n);
};
template <class T>
struct BothExtremesKernels {
    Both<T> (*values)(const T* src, size_t n);
    Both<size_t> (*indices)(const T* src, size_t n);
};

struct ExtremesKernels {
#define ZVPS_SLOT(code)                                                                                                \
    ExtremeKernels<Zvp##code> min_##code;                                                                              \
    ExtremeKernels<Zvp##code> max_##code;
    ZVPS_EXTREMES(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(code) BothExtremesKernels<Zvp##code> minMax_##code;
    ZVPS_BOTH_EXTREMES(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(code)                                                                                                \
    ExtremeKernels<Zvp##code> minAbs_##code;                                                                           \
    ExtremeKernels<Zvp##code> maxAbs_##code;
    ZVPS_EXTREMES_OF_MAGNITUDES(ZVPS_SLOT)
#undef ZVPS_SLOT
#define ZVPS_SLOT(slot, operation, type) void (*slot)(const type* src, type* srcDst, size_t n);
    ZVPS_ELEMENTWISE_EXTREMES(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
