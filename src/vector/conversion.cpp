#include "zvps/convert.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "vector/conversion.table.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace zvps {
namespace {

template <class S, class D>
ZvpStatus convert(ConversionKernel<S, D> kernel, const S* src, D* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    return kernel(src, dst, static_cast<size_t>(len));
}

// 2^exponent for the exponent of a normal number.
template <class F>
F power(int exponent) {
    using Bits = std::conditional_t<sizeof(F) == 4, uint32_t, uint64_t>;
    const Bits bits = static_cast<Bits>(exponent + std::numeric_limits<F>::max_exponent - 1)
                      << (std::numeric_limits<F>::digits - 1);
    F result;
    std::memcpy(&result, &bits, sizeof(result));
    return result;
}

// The factor is kept away from the limits of its type: it is never zero, infinite or subnormal.
template <class S, class D>
ZvpStatus convertTimes(FactorKernel<S, D> kernel, const S* src, D* dst, int len, int scaleFactor) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    constexpr int kLeast = sizeof(D) == 4 ? -112 : -1008;
    constexpr int kMost = sizeof(D) == 4 ? 126 : 1022;
    return kernel(src, dst, static_cast<size_t>(len), power<D>(-std::clamp(scaleFactor, kLeast, kMost)));
}

template <class S, class D>
ZvpStatus shift(const ShiftKernels<S, D>& kernels, const S* src, D* dst, int len, int scaleFactor,
                size_t elementBytes = sizeof(D)) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    const auto n = static_cast<size_t>(len);
    if (scaleFactor == 0) return kernels.exact(src, dst, n, 0);
    if (scaleFactor < 0) {
        constexpr int kMostPlaces = 64; // as many as saturate any element but 0
        return kernels.up(src, dst, n, -std::max(scaleFactor, -kMostPlaces));
    }
    if (scaleFactor <= kernels.lastShift) return kernels.down(src, dst, n, scaleFactor);
    std::memset(dst, 0, n * elementBytes);
    return zvpStsOk;
}

// Modes other than 0 and 1, known or not, round ties away from zero.
template <class S, class F, class D>
ZvpStatus roundTo(const RoundingKernels<S, F, D>& kernels, const S* src, D* dst, int len, ZvpRoundMode mode,
                  int scaleFactor) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    const int index = mode == zvpRndZero || mode == zvpRndNear ? mode : zvpRndFinancial;
    constexpr int kMost = std::numeric_limits<F>::max_exponent - 2;
    const auto n = static_cast<size_t>(len);
    if (scaleFactor >= -kMost && scaleFactor <= kMost) {
        return kernels.once[index](src, dst, n, power<F>(-scaleFactor), F{1});
    }
    // Two such powers take the smallest number beyond every integer and the largest below one half.
    const int limited = std::clamp(scaleFactor, -2 * kMost, 2 * kMost);
    const int half = limited / 2;
    return kernels.twice[index](src, dst, n, power<F>(-half), power<F>(half - limited));
}

template <class S>
ZvpStatus toHalf(const HalfKernels<S>& kernels, const S* src, Zvp16f* dst, int len, ZvpRoundMode mode) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    if (mode == zvpRndFinancial) return zvpStsBadRoundMode;
    return convert(mode == zvpRndNear ? kernels.nearest : kernels.truncated, src, dst, len);
}

} // namespace
} // namespace zvps

// ---- Entries ----

// SOURCE and RESULT are the element types of the pointers: bytes for 24 bits.
#define ZVPS_CONVERT(CODE, SOURCE, RESULT)                                                                             \
    ZvpStatus zvpsConvert_##CODE(const SOURCE* pSrc, RESULT* pDst, int len) {                                          \
        return zvps::convert(zvps::kernels().conversions->convert_##CODE, pSrc, pDst, len);                            \
    }

ZVPS_CONVERT(8s16s, Zvp8s, Zvp16s)
ZVPS_CONVERT(8s32f, Zvp8s, Zvp32f)
ZVPS_CONVERT(8u32f, Zvp8u, Zvp32f)
ZVPS_CONVERT(16s32f, Zvp16s, Zvp32f)
ZVPS_CONVERT(16s32s, Zvp16s, Zvp32s)
ZVPS_CONVERT(16u32f, Zvp16u, Zvp32f)
ZVPS_CONVERT(24s32f, Zvp8u, Zvp32f)
ZVPS_CONVERT(24s32s, Zvp8u, Zvp32s)
ZVPS_CONVERT(24u32f, Zvp8u, Zvp32f)
ZVPS_CONVERT(24u32u, Zvp8u, Zvp32u)
ZVPS_CONVERT(32s32f, Zvp32s, Zvp32f)
ZVPS_CONVERT(32s64f, Zvp32s, Zvp64f)
ZVPS_CONVERT(32f64f, Zvp32f, Zvp64f)
ZVPS_CONVERT(64f32f, Zvp64f, Zvp32f)
ZVPS_CONVERT(64s64f, Zvp64s, Zvp64f)
ZVPS_CONVERT(16f32f, Zvp16f, Zvp32f)

#define ZVPS_CONVERT_TIMES(CODE, SOURCE, RESULT)                                                                       \
    ZvpStatus zvpsConvert_##CODE##_Sfs(const SOURCE* pSrc, RESULT* pDst, int len, int scaleFactor) {                   \
        return zvps::convertTimes(zvps::kernels().conversions->scale_##CODE, pSrc, pDst, len, scaleFactor);            \
    }

ZVPS_CONVERT_TIMES(16s32f, Zvp16s, Zvp32f)
ZVPS_CONVERT_TIMES(16s64f, Zvp16s, Zvp64f)
ZVPS_CONVERT_TIMES(32s32f, Zvp32s, Zvp32f)
ZVPS_CONVERT_TIMES(32s64f, Zvp32s, Zvp64f)

ZvpStatus zvpsConvert_32s16s(const Zvp32s* pSrc, Zvp16s* pDst, int len) {
    return zvps::shift(zvps::kernels().conversions->convert_32s16s, pSrc, pDst, len, 0);
}

#define ZVPS_CONVERT_SFS(CODE, SOURCE, RESULT)                                                                         \
    ZvpStatus zvpsConvert_##CODE##_Sfs(const SOURCE* pSrc, RESULT* pDst, int len, int scaleFactor) {                   \
        return zvps::shift(zvps::kernels().conversions->convert_##CODE, pSrc, pDst, len, scaleFactor);                 \
    }

ZVPS_CONVERT_SFS(16s8s, Zvp16s, Zvp8s)
ZVPS_CONVERT_SFS(32s16s, Zvp32s, Zvp16s)
ZVPS_CONVERT_SFS(64s32s, Zvp64s, Zvp32s)

ZvpStatus zvpsConvert_32s24s_Sfs(const Zvp32s* pSrc, Zvp8u* pDst, int len, int scaleFactor) {
    return zvps::shift(zvps::kernels().conversions->convert_32s24s, pSrc, pDst, len, std::clamp(scaleFactor, -31, 31));
}
ZvpStatus zvpsConvert_32u24u_Sfs(const Zvp32u* pSrc, Zvp8u* pDst, int len, int scaleFactor) {
    return zvps::shift(zvps::kernels().conversions->convert_32u24u, pSrc, pDst, len, scaleFactor, 3);
}

#define ZVPS_CONVERT_ROUND_SFS(CODE, SOURCE, RESULT)                                                                   \
    ZvpStatus zvpsConvert_##CODE##_Sfs(const SOURCE* pSrc, RESULT* pDst, int len, ZvpRoundMode rndMode,                \
                                       int scaleFactor) {                                                              \
        return zvps::roundTo(zvps::kernels().conversions->convert_##CODE, pSrc, pDst, len, rndMode, scaleFactor);      \
    }

ZVPS_CONVERT_ROUND_SFS(32f8s, Zvp32f, Zvp8s)
ZVPS_CONVERT_ROUND_SFS(32f8u, Zvp32f, Zvp8u)
ZVPS_CONVERT_ROUND_SFS(32f16s, Zvp32f, Zvp16s)
ZVPS_CONVERT_ROUND_SFS(32f16u, Zvp32f, Zvp16u)
ZVPS_CONVERT_ROUND_SFS(32f32s, Zvp32f, Zvp32s)
ZVPS_CONVERT_ROUND_SFS(64f32s, Zvp64f, Zvp32s)
ZVPS_CONVERT_ROUND_SFS(64f64s, Zvp64f, Zvp64s)
ZVPS_CONVERT_ROUND_SFS(64f16s, Zvp64f, Zvp16s)
ZVPS_CONVERT_ROUND_SFS(32f24s, Zvp32f, Zvp8u)
ZVPS_CONVERT_ROUND_SFS(32f24u, Zvp32f, Zvp8u)
ZVPS_CONVERT_ROUND_SFS(16f16s, Zvp16f, Zvp16s)

#define ZVPS_CONVERT_TO_HALF(CODE, SOURCE)                                                                             \
    ZvpStatus zvpsConvert_##CODE(const SOURCE* pSrc, Zvp16f* pDst, int len, ZvpRoundMode rndMode) {                    \
        return zvps::toHalf(zvps::kernels().conversions->convert_##CODE, pSrc, pDst, len, rndMode);                    \
    }

ZVPS_CONVERT_TO_HALF(16s16f, Zvp16s)
ZVPS_CONVERT_TO_HALF(32f16f, Zvp32f)
