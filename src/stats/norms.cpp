// Norms of vectors and of differences.
#include "stats/norms.table.hpp"
#include "zvps/statistics.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "stats/scaling.hpp"

namespace zvps {
namespace {

// What finish() makes of the kernel's result on one vector or two.
template <class Kernel, class T, class R, class Finish>
ZvpStatus norm(const Kernel& kernel, const T* src, int len, R* result, Finish finish) {
    if (const ZvpStatus status = checkVectors(len, src, result)) return status;
    *result = finish(kernel.of(src, static_cast<size_t>(len)));
    return zvpStsOk;
}
template <class Kernel, class T, class R, class Finish>
ZvpStatus norm(const Kernel& kernel, const T* src1, const T* src2, int len, R* result, Finish finish) {
    if (const ZvpStatus status = checkVectors(len, src1, src2, result)) return status;
    *result = finish(kernel.ofDifference(src1, src2, static_cast<size_t>(len)));
    return zvpStsOk;
}

template <class R>
struct Converted {
    template <class V>
    R operator()(V value) const {
        return static_cast<R>(value);
    }
};

template <class R>
struct Root {
    R operator()(float square) const { return std::sqrt(square); }
    R operator()(double square) const { return static_cast<R>(std::sqrt(square)); }
    R operator()(int64_t square) const { return static_cast<R>(std::sqrt(static_cast<double>(square))); }
};

template <class R>
struct Scaled {
    int scaleFactor;

    R operator()(int64_t value) const { return scaled<R>(value, scaleFactor); }
};

// Truncated, not rounded.
struct TruncatedPeak {
    int scaleFactor;

    Zvp32s operator()(int64_t peak) const {
        if (scaleFactor > 31) return 0;
        if (scaleFactor > 0) return static_cast<Zvp32s>(peak >> scaleFactor);
        return saturated<Zvp32s>(peak << -std::max(scaleFactor, -31));
    }
};

// Truncated; only the last five bits of the scale factor's magnitude count.
struct TruncatedRoot {
    int scaleFactor;

    Zvp32s operator()(int64_t square) const {
        const double root = std::sqrt(static_cast<double>(square));
        const int places = scaleFactor % 32;
        return static_cast<Zvp32s>(std::min(std::ldexp(root, -places), 2147483647.0));
    }
};

} // namespace
} // namespace zvps

// ---- Entries: one line for a norm and for that of a difference ----

#define ZVPS_NORM(NAME, SRC, DST, slot, finish)                                                                        \
    ZvpStatus zvpsNorm_##NAME(const Zvp##SRC* pSrc, int len, Zvp##DST* pNorm) {                                        \
        return zvps::norm(zvps::kernels().norms->slot, pSrc, len, pNorm, zvps::finish<Zvp##DST>{});                    \
    }                                                                                                                  \
    ZvpStatus zvpsNormDiff_##NAME(const Zvp##SRC* pSrc1, const Zvp##SRC* pSrc2, int len, Zvp##DST* pNorm) {            \
        return zvps::norm(zvps::kernels().norms->slot, pSrc1, pSrc2, len, pNorm, zvps::finish<Zvp##DST>{});            \
    }
#define ZVPS_NORM_SFS(NAME, DST, slot, finish)                                                                         \
    ZvpStatus zvpsNorm_##NAME##_Sfs(const Zvp16s* pSrc, int len, Zvp##DST* pNorm, int scaleFactor) {                   \
        return zvps::norm(zvps::kernels().norms->slot, pSrc, len, pNorm, zvps::finish{scaleFactor});                   \
    }                                                                                                                  \
    ZvpStatus zvpsNormDiff_##NAME##_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp##DST* pNorm,            \
                                        int scaleFactor) {                                                             \
        return zvps::norm(zvps::kernels().norms->slot, pSrc1, pSrc2, len, pNorm, zvps::finish{scaleFactor});           \
    }

ZVPS_NORM(Inf_16s32f, 16s, 32f, inf_16s, Converted)
ZVPS_NORM_SFS(Inf_16s32s, 32s, inf_16s, TruncatedPeak)
ZVPS_NORM(Inf_32f, 32f, 32f, inf_32f, Converted)
ZVPS_NORM(Inf_32fc32f, 32fc, 32f, infSquared_32fc, Root)
ZVPS_NORM(Inf_64f, 64f, 64f, inf_64f, Converted)
ZVPS_NORM(Inf_64fc64f, 64fc, 64f, infSquared_64fc, Root)

ZVPS_NORM(L1_16s32f, 16s, 32f, l1_16s, Converted)
ZVPS_NORM_SFS(L1_16s32s, 32s, l1_16s, Scaled<Zvp32s>)
ZVPS_NORM_SFS(L1_16s64s, 64s, l1_16s, Scaled<Zvp64s>)
ZVPS_NORM(L1_32f, 32f, 32f, l1_32f, Converted)
ZVPS_NORM(L1_32fc64f, 32fc, 64f, l1_32fc, Converted)
ZVPS_NORM(L1_64f, 64f, 64f, l1_64f, Converted)
ZVPS_NORM(L1_64fc64f, 64fc, 64f, l1_64fc, Converted)

ZVPS_NORM_SFS(L2Sqr_16s64s, 64s, l2Squared_16s, Scaled<Zvp64s>)
ZVPS_NORM(L2_16s32f, 16s, 32f, l2Squared_16s, Root)
ZVPS_NORM_SFS(L2_16s32s, 32s, l2Squared_16s, TruncatedRoot)
ZVPS_NORM(L2_32f, 32f, 32f, l2Squared_32f, Root)
ZVPS_NORM(L2_32fc64f, 32fc, 64f, l2Squared_32fc, Root)
ZVPS_NORM(L2_64f, 64f, 64f, l2Squared_64f, Root)
ZVPS_NORM(L2_64fc64f, 64fc, 64f, l2Squared_64fc, Root)
