#include "zvps/generators.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "signal/ramps.table.hpp"

namespace zvps {
namespace {

template <class T>
ZvpStatus ramp(T* dst, int len, float offset, float slope) {
    if (const ZvpStatus status = checkVectors(len, dst)) return status;
    return kernels().ramps->slots<T>().ramp(dst, static_cast<size_t>(len), offset, slope);
}

template <class T>
ZvpStatus slope(T* dst, int len, double offset, double slope) {
    if (const ZvpStatus status = checkVectors(len, dst)) return status;
    return kernels().ramps->slots<T>().slope(dst, static_cast<size_t>(len), offset, slope);
}

template <class T>
ZvpStatus jaehne(T* dst, int len, T magnitude) {
    if (const ZvpStatus status = checkVectors(len, dst)) return status;
    if (!(magnitude >= 0)) return zvpStsBadJaehneMagn;
    return kernels().ramps->slots<T>().jaehne(dst, static_cast<size_t>(len), static_cast<double>(magnitude));
}

} // namespace
} // namespace zvps

#define ZVPS_RAMPS(TYPE, SLOPE)                                                                                        \
    ZvpStatus zvpsVectorJaehne_##TYPE(Zvp##TYPE* pDst, int len, Zvp##TYPE magn) {                                      \
        return zvps::jaehne(pDst, len, magn);                                                                          \
    }                                                                                                                  \
    ZvpStatus zvpsVectorRamp_##TYPE(Zvp##TYPE* pDst, int len, Zvp32f offset, Zvp32f slope) {                           \
        return zvps::ramp(pDst, len, offset, slope);                                                                   \
    }                                                                                                                  \
    ZvpStatus zvpsVectorSlope_##TYPE(Zvp##TYPE* pDst, int len, SLOPE offset, SLOPE slope) {                            \
        return zvps::slope(pDst, len, offset, slope);                                                                  \
    }

ZVPS_RAMPS(8u, Zvp32f)
ZVPS_RAMPS(8s, Zvp32f)
ZVPS_RAMPS(16u, Zvp32f)
ZVPS_RAMPS(16s, Zvp32f)
ZVPS_RAMPS(32u, Zvp32f)
ZVPS_RAMPS(32s, Zvp32f)
ZVPS_RAMPS(32f, Zvp32f)
ZVPS_RAMPS(64f, Zvp64f)
