#include "zvps/initialisation.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "vector/initialisation.table.hpp"

#include <cstring>

namespace zvps {
namespace {

template <class T>
size_t bytes(int len) {
    return static_cast<size_t>(len) * sizeof(T);
}

// memmove on both: on equal pointers it is defined, and as fast as memcpy.
template <class T>
ZvpStatus copy(const T* src, T* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    std::memmove(dst, src, bytes<T>(len));
    return zvpStsOk;
}

template <class T>
ZvpStatus zero(T* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, dst)) return status;
    std::memset(dst, 0, bytes<T>(len));
    return zvpStsOk;
}

template <class Unit, class T>
ZvpStatus fill(FillKernel<Unit> kernel, T val, T* dst, int len) {
    constexpr size_t kUnits = sizeof(T) / sizeof(Unit);
    Unit units[2];
    std::memcpy(units, &val, sizeof(T));
    return kernel(makePair(units[0], units[kUnits - 1]), reinterpret_cast<Unit*>(dst),
                  static_cast<size_t>(len) * kUnits);
}

// By the element's size: what its bytes mean makes no difference.
template <class T>
ZvpStatus set(T val, T* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, dst)) return status;
    if constexpr (sizeof(T) == 1) {
        std::memset(dst, val, bytes<T>(len));
        return zvpStsOk;
    } else if constexpr (sizeof(T) == 2) {
        return fill(kernels().initialisation->fill16, val, dst, len);
    } else if constexpr (sizeof(T) == 4) {
        return fill(kernels().initialisation->fill32, val, dst, len);
    } else {
        return fill(kernels().initialisation->fill64, val, dst, len);
    }
}

} // namespace
} // namespace zvps

#define ZVPS_INITIALISATION(TYPE)                                                                                      \
    ZvpStatus zvpsCopy_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len) {                                       \
        return zvps::copy(pSrc, pDst, len);                                                                            \
    }                                                                                                                  \
    ZvpStatus zvpsMove_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len) {                                       \
        return zvps::copy(pSrc, pDst, len);                                                                            \
    }                                                                                                                  \
    ZvpStatus zvpsSet_##TYPE(Zvp##TYPE val, Zvp##TYPE* pDst, int len) {                                                \
        return zvps::set(val, pDst, len);                                                                              \
    }                                                                                                                  \
    ZvpStatus zvpsZero_##TYPE(Zvp##TYPE* pDst, int len) {                                                              \
        return zvps::zero(pDst, len);                                                                                  \
    }

ZVPS_INITIALISATION(8u)
ZVPS_INITIALISATION(16s)
ZVPS_INITIALISATION(16sc)
ZVPS_INITIALISATION(32s)
ZVPS_INITIALISATION(32sc)
ZVPS_INITIALISATION(32f)
ZVPS_INITIALISATION(32fc)
ZVPS_INITIALISATION(64s)
ZVPS_INITIALISATION(64sc)
ZVPS_INITIALISATION(64f)
ZVPS_INITIALISATION(64fc)
