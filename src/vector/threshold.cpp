#include "zvps/threshold.h"

#include "core/checks.hpp"
#include "core/elements.hpp"
#include "core/level.hpp"
#include "vector/threshold.table.hpp"

#include <cstring>

namespace zvps {
namespace {

// The relations of Threshold.
constexpr int kLessThan = 0;
constexpr int kGreaterThan = 4;

template <class T>
ZvpStatus limit(const RealThresholds<T>& kernels, const T* src, T* dst, int len, T level, int relOp) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    if (relOp != kLessThan && relOp != kGreaterThan) return zvpStsBadArg;
    const auto kernel = relOp == kLessThan ? kernels.raiseBelow : kernels.lowerAbove;
    return kernel(src, dst, static_cast<size_t>(len), level);
}

template <class T, class P>
ZvpStatus limit(const ComplexThresholds<P>& kernels, const T* src, T* dst, int len, P level, int relOp) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    if (level < 0) return zvpStsBadThresholdLevel;
    if (relOp != kLessThan && relOp != kGreaterThan) return zvpStsBadArg;
    if (level == 0) {
        const size_t bytes = static_cast<size_t>(len) * sizeof(T);
        if (relOp == kGreaterThan) {
            std::memset(dst, 0, bytes);
        } else if (dst != src) {
            std::memcpy(dst, src, bytes);
        }
        return zvpStsOk;
    }
    const auto kernel = relOp == kLessThan ? kernels.raiseBelow : kernels.lowerAbove;
    return kernel(parts(src), parts(dst), partCount<T>(len), level);
}

template <class Kernel, class T>
ZvpStatus replace(Kernel kernel, const T* src, T* dst, int len, Part<T> level, T value) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    if constexpr (std::is_same_v<T, Part<T>>) {
        return kernel(src, dst, static_cast<size_t>(len), level, value);
    } else {
        if (level < 0) return zvpStsBadThresholdLevel;
        return kernel(parts(src), parts(dst), partCount<T>(len), level, pairOf(value));
    }
}

template <class T>
ZvpStatus replaceBoth(const RealThresholds<T>& kernels, const T* src, T* dst, int len, T below, T valueBelow, T above,
                      T valueAbove) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    if (above < below) return zvpStsBadThresholdOrder;
    return kernels.replaceBoth(src, dst, static_cast<size_t>(len), below, valueBelow, above, valueAbove);
}

// Levels that are magnitudes.
template <class T>
ZvpStatus withMagnitude(LevelKernel<Part<T>> kernel, const T* src, T* dst, int len, Part<T> level) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    if (level < 0) return zvpStsBadThresholdLevel;
    return kernel(parts(src), parts(dst), partCount<T>(len), level);
}

} // namespace
} // namespace zvps

// ---- Shapes of entries: one line stamps the out-of-place form and the in-place one. LEVEL is the type of the level
// ----

#define ZVPS_LIMIT(TYPE, LEVEL, SLOTS)                                                                                 \
    ZvpStatus zvpsThreshold_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, Zvp##LEVEL level, int relOp) {     \
        return zvps::limit(zvps::kernels().thresholds->SLOTS, pSrc, pDst, len, level, relOp);                          \
    }                                                                                                                  \
    ZvpStatus zvpsThreshold_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, Zvp##LEVEL level, int relOp) {                     \
        return zvps::limit(zvps::kernels().thresholds->SLOTS, pSrcDst, pSrcDst, len, level, relOp);                    \
    }

ZVPS_LIMIT(16s, 16s, real_16s)
ZVPS_LIMIT(16sc, 16s, complex_16s)
ZVPS_LIMIT(32f, 32f, real_32f)
ZVPS_LIMIT(32fc, 32f, complex_32f)
ZVPS_LIMIT(64f, 64f, real_64f)
ZVPS_LIMIT(64fc, 64f, complex_64f)

#define ZVPS_ONE_SIDE(NAME, RELATION, TYPE, LEVEL, SLOTS)                                                              \
    ZvpStatus zvpsThreshold_##NAME##_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, Zvp##LEVEL level) {       \
        return zvps::limit(zvps::kernels().thresholds->SLOTS, pSrc, pDst, len, level, zvps::RELATION);                 \
    }                                                                                                                  \
    ZvpStatus zvpsThreshold_##NAME##_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, Zvp##LEVEL level) {                       \
        return zvps::limit(zvps::kernels().thresholds->SLOTS, pSrcDst, pSrcDst, len, level, zvps::RELATION);           \
    }
#define ZVPS_BOTH_SIDES(TYPE, LEVEL, SLOTS)                                                                            \
    ZVPS_ONE_SIDE(LT, kLessThan, TYPE, LEVEL, SLOTS)                                                                   \
    ZVPS_ONE_SIDE(GT, kGreaterThan, TYPE, LEVEL, SLOTS)

ZVPS_BOTH_SIDES(16s, 16s, real_16s)
ZVPS_BOTH_SIDES(16sc, 16s, complex_16s)
ZVPS_BOTH_SIDES(32s, 32s, real_32s)
ZVPS_BOTH_SIDES(32f, 32f, real_32f)
ZVPS_BOTH_SIDES(32fc, 32f, complex_32f)
ZVPS_BOTH_SIDES(64f, 64f, real_64f)
ZVPS_BOTH_SIDES(64fc, 64f, complex_64f)

#define ZVPS_REPLACE(NAME, TYPE, LEVEL, SLOT)                                                                          \
    ZvpStatus zvpsThreshold_##NAME##_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, Zvp##LEVEL level,         \
                                            Zvp##TYPE value) {                                                         \
        return zvps::replace(zvps::kernels().thresholds->SLOT, pSrc, pDst, len, level, value);                         \
    }                                                                                                                  \
    ZvpStatus zvpsThreshold_##NAME##_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, Zvp##LEVEL level, Zvp##TYPE value) {      \
        return zvps::replace(zvps::kernels().thresholds->SLOT, pSrcDst, pSrcDst, len, level, value);                   \
    }
#define ZVPS_REPLACE_SIDES(TYPE, LEVEL, SLOTS)                                                                         \
    ZVPS_REPLACE(LTVal, TYPE, LEVEL, SLOTS.replaceBelow)                                                               \
    ZVPS_REPLACE(GTVal, TYPE, LEVEL, SLOTS.replaceAbove)

ZVPS_REPLACE_SIDES(16s, 16s, real_16s)
ZVPS_REPLACE_SIDES(16sc, 16s, complex_16s)
ZVPS_REPLACE_SIDES(32f, 32f, real_32f)
ZVPS_REPLACE_SIDES(32fc, 32f, complex_32f)
ZVPS_REPLACE_SIDES(64f, 64f, real_64f)
ZVPS_REPLACE_SIDES(64fc, 64f, complex_64f)

#define ZVPS_REPLACE_BOTH(TYPE, SLOTS)                                                                                 \
    ZvpStatus zvpsThreshold_LTValGTVal_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, Zvp##TYPE levelLT,      \
                                              Zvp##TYPE valueLT, Zvp##TYPE levelGT, Zvp##TYPE valueGT) {               \
        return zvps::replaceBoth(zvps::kernels().thresholds->SLOTS, pSrc, pDst, len, levelLT, valueLT, levelGT,        \
                                 valueGT);                                                                             \
    }                                                                                                                  \
    ZvpStatus zvpsThreshold_LTValGTVal_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, Zvp##TYPE levelLT, Zvp##TYPE valueLT,   \
                                                  Zvp##TYPE levelGT, Zvp##TYPE valueGT) {                              \
        return zvps::replaceBoth(zvps::kernels().thresholds->SLOTS, pSrcDst, pSrcDst, len, levelLT, valueLT, levelGT,  \
                                 valueGT);                                                                             \
    }

ZVPS_REPLACE_BOTH(16s, real_16s)
ZVPS_REPLACE_BOTH(32s, real_32s)
ZVPS_REPLACE_BOTH(32f, real_32f)
ZVPS_REPLACE_BOTH(64f, real_64f)

#define ZVPS_MAGNITUDE(NAME, TYPE, LEVEL, SLOT)                                                                        \
    ZvpStatus zvpsThreshold_##NAME##_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, Zvp##LEVEL level) {       \
        return zvps::withMagnitude(zvps::kernels().thresholds->SLOT, pSrc, pDst, len, level);                          \
    }                                                                                                                  \
    ZvpStatus zvpsThreshold_##NAME##_##TYPE##_I(Zvp##TYPE* pSrcDst, int len, Zvp##LEVEL level) {                       \
        return zvps::withMagnitude(zvps::kernels().thresholds->SLOT, pSrcDst, pSrcDst, len, level);                    \
    }
#define ZVPS_MAGNITUDES(TYPE, SLOTS)                                                                                   \
    ZVPS_MAGNITUDE(LTAbs, TYPE, TYPE, SLOTS.raiseMagnitude)                                                            \
    ZVPS_MAGNITUDE(GTAbs, TYPE, TYPE, SLOTS.lowerMagnitude)

ZVPS_MAGNITUDES(16s, real_16s)
ZVPS_MAGNITUDES(32s, real_32s)
ZVPS_MAGNITUDES(32f, real_32f)
ZVPS_MAGNITUDES(64f, real_64f)

ZVPS_MAGNITUDE(LTInv, 32f, 32f, invert_32f)
ZVPS_MAGNITUDE(LTInv, 32fc, 32f, invert_32fc)
ZVPS_MAGNITUDE(LTInv, 64f, 64f, invert_64f)
ZVPS_MAGNITUDE(LTInv, 64fc, 64f, invert_64fc)
