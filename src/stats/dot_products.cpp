// Dot products.
#include "stats/dot_products.table.hpp"
#include "zvps/statistics.h"

#include "core/checks.hpp"
#include "core/elements.hpp"
#include "core/level.hpp"
#include "stats/scaling.hpp"

namespace zvps {
namespace {

// What finish() makes of the kernel's result, of both parts by themselves.
template <class Kernel, class A, class B, class R, class Finish>
ZvpStatus dot(Kernel kernel, const A* src1, const B* src2, int len, R* result, Finish finish) {
    if (const ZvpStatus status = checkVectors(len, src1, src2, result)) return status;
    const auto sum = kernel(src1, src2, static_cast<size_t>(len));
    if constexpr (std::is_class_v<R>) {
        *result = {finish(sum.re), finish(sum.im)};
    } else {
        *result = finish(sum);
    }
    return zvpStsOk;
}

template <class Kernel, class A, class B, class R>
ZvpStatus dotProduct(Kernel kernel, const A* src1, const B* src2, int len, R* result) {
    return dot(kernel, src1, src2, len, result, [](auto sum) { return static_cast<Part<R>>(sum); });
}

// No more than 31 places down.
template <class Kernel, class A, class B, class R>
ZvpStatus dotProduct(Kernel kernel, const A* src1, const B* src2, int len, R* result, int scaleFactor) {
    const int places = std::min(scaleFactor, 31);
    return dot(kernel, src1, src2, len, result, [=](int64_t sum) { return scaled<Part<R>>(sum, places); });
}

} // namespace
} // namespace zvps

// ---- Entries: one line each ----

#define ZVPS_DOT_PRODUCT(NAME, SRC1, SRC2, DST, slot)                                                                  \
    ZvpStatus zvpsDotProd_##NAME(const Zvp##SRC1* pSrc1, const Zvp##SRC2* pSrc2, int len, Zvp##DST* pDp) {             \
        return zvps::dotProduct(zvps::kernels().dots->slot, pSrc1, pSrc2, len, pDp);                                   \
    }
#define ZVPS_DOT_PRODUCT_SFS(NAME, SRC1, SRC2, DST, slot)                                                              \
    ZvpStatus zvpsDotProd_##NAME##_Sfs(const Zvp##SRC1* pSrc1, const Zvp##SRC2* pSrc2, int len, Zvp##DST* pDp,         \
                                       int scaleFactor) {                                                              \
        return zvps::dotProduct(zvps::kernels().dots->slot, pSrc1, pSrc2, len, pDp, scaleFactor);                      \
    }

ZVPS_DOT_PRODUCT(16s16sc32fc, 16s, 16sc, 32fc, dot_16s16sc)
ZVPS_DOT_PRODUCT_SFS(16s16sc32sc, 16s, 16sc, 32sc, dot_16s16sc)
ZVPS_DOT_PRODUCT(16s16sc64sc, 16s, 16sc, 64sc, dot_16s16sc)
ZVPS_DOT_PRODUCT_SFS(16s16sc, 16s, 16sc, 16sc, dot_16s16sc)
ZVPS_DOT_PRODUCT(16s32f, 16s, 16s, 32f, dot_16s)
ZVPS_DOT_PRODUCT_SFS(16s32s32s, 16s, 32s, 32s, dot_16s32s)
ZVPS_DOT_PRODUCT_SFS(16s32s, 16s, 16s, 32s, dot_16s)
ZVPS_DOT_PRODUCT(16s64s, 16s, 16s, 64s, dot_16s)
ZVPS_DOT_PRODUCT_SFS(16s, 16s, 16s, 16s, dot_16s)
ZVPS_DOT_PRODUCT(16sc32fc, 16sc, 16sc, 32fc, dot_16sc)
ZVPS_DOT_PRODUCT_SFS(16sc32sc, 16sc, 16sc, 32sc, dot_16sc)
ZVPS_DOT_PRODUCT(16sc64sc, 16sc, 16sc, 64sc, dot_16sc)
ZVPS_DOT_PRODUCT_SFS(16sc, 16sc, 16sc, 16sc, dot_16sc)
ZVPS_DOT_PRODUCT(32f, 32f, 32f, 32f, dot_32f)
ZVPS_DOT_PRODUCT(32f32fc, 32f, 32fc, 32fc, dot_32f32fc)
ZVPS_DOT_PRODUCT(32f32fc64fc, 32f, 32fc, 64fc, dot_32f32fc64fc)
ZVPS_DOT_PRODUCT(32f64f, 32f, 32f, 64f, dot_32f64f)
ZVPS_DOT_PRODUCT(32fc, 32fc, 32fc, 32fc, dot_32fc)
ZVPS_DOT_PRODUCT(32fc64fc, 32fc, 32fc, 64fc, dot_32fc64fc)
ZVPS_DOT_PRODUCT_SFS(32s32sc, 32s, 32sc, 32sc, dot_32s32sc)
ZVPS_DOT_PRODUCT_SFS(32s, 32s, 32s, 32s, dot_32s)
ZVPS_DOT_PRODUCT_SFS(32sc, 32sc, 32sc, 32sc, dot_32sc)
ZVPS_DOT_PRODUCT(64f, 64f, 64f, 64f, dot_64f)
ZVPS_DOT_PRODUCT(64f64fc, 64f, 64fc, 64fc, dot_64f64fc)
ZVPS_DOT_PRODUCT(64fc, 64fc, 64fc, 64fc, dot_64fc)
