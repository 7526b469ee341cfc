#include "zvps/arithmetic.h"

#include "core/checks.hpp"
#include "core/elements.hpp"
#include "core/level.hpp"
#include "core/scaled.hpp"
#include "vector/products.table.hpp"
#include "vector/quotients.table.hpp"
#include "vector/sums.table.hpp"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace zvps {
namespace {

// Operands as kernels take them: pointers to parts, and constants as they are.
template <class T>
const Part<T>* operand(const T* vector) {
    return parts(vector);
}
template <class T>
Pair<T> operand(Pair<T> constant) {
    return constant;
}

// ---- Calls ----

// Operands stand in the order of the kernel's, which with the destination last is the order of the checks too.

template <class T>
bool isMissing(const T* vector) {
    return vector == nullptr;
}
template <class T>
bool isMissing(Pair<T>) {
    return false;
}

template <class A, class B>
ZvpStatus checkOperands(int len, A a, B b, const void* dst) {
    if (isMissing(a) || isMissing(b)) return zvpStsNullPtr;
    return checkVectors(len, dst);
}

// Picks the kernel for the scale factor. Any int is one; beyond the kernels' reach the results are known.
template <class A, class B, class D>
ZvpStatus runScaled(const ScaledKernels<A, B, D>& kernels, A a, B b, D* dst, size_t n, int scaleFactor) {
    if (scaleFactor == 0) return kernels.exact(a, b, dst, n, 0);
    if (scaleFactor == 1) return kernels.halved(a, b, dst, n, 1);
    if (scaleFactor < 0) {
        constexpr int kMostPlaces = 64; // as many as saturate any result but 0
        return kernels.up(a, b, dst, n, -std::max(scaleFactor, -kMostPlaces));
    }
    if (scaleFactor <= kernels.lastShift) return kernels.down(a, b, dst, n, scaleFactor);
    std::memset(dst, 0, n * sizeof(D));
    return zvpStsOk;
}

template <class Slot, class A, class B, class D>
ZvpStatus scaled(const Slot& slot, A a, B b, D* dst, int len, int scaleFactor) {
    if (const ZvpStatus status = checkOperands(len, a, b, dst)) return status;
    return runScaled(slot, operand(a), operand(b), parts(dst), partCount<D>(len), scaleFactor);
}

template <class Kernel, class A, class B, class D>
ZvpStatus plain(Kernel kernel, A a, B b, D* dst, int len) {
    if (const ZvpStatus status = checkOperands(len, a, b, dst)) return status;
    return kernel(operand(a), operand(b), parts(dst), partCount<D>(len), 0);
}

template <class Kernel, class T>
ZvpStatus absolute(Kernel kernel, const T* src, T* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    return kernel(src, dst, static_cast<size_t>(len));
}

// The kernels know where every quotient has become 0 or saturates.
template <class Kernel, class A, class B, class D>
ZvpStatus quotient(Kernel kernel, A divisors, B dividends, D* dst, int len, int scaleFactor = 0) {
    if (const ZvpStatus status = checkOperands(len, divisors, dividends, dst)) return status;
    return kernel(operand(divisors), operand(dividends), parts(dst), partCount<D>(len), scaleFactor);
}

template <class Slot, class T>
ZvpStatus roundedQuotient(const Slot& slot, const T* divisors, const T* dividends, T* dst, int len, ZvpRoundMode mode,
                          int scaleFactor) {
    if (const ZvpStatus status = checkVectors(len, divisors, dividends, dst)) return status;
    if (mode < zvpRndZero || mode > zvpRndFinancial) return zvpStsBadRoundMode;
    return slot.byMode[mode](divisors, dividends, dst, static_cast<size_t>(len), scaleFactor);
}

template <class Kernel, class T>
ZvpStatus quotientByConstant(Kernel kernel, T val, const T* src, T* dst, int len, int scaleFactor = 0) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    const Pair<Part<T>> divisor = pairOf(val);
    if (divisor.values[0] == 0 && divisor.values[1] == 0) return zvpStsDivByZeroErr;
    return kernel(divisor, operand(src), parts(dst), partCount<T>(len), scaleFactor);
}

// 32-bit quotients that are scaled up need more than double precision.
auto quotientKernel32s(int scaleFactor) {
    return scaleFactor < 0 ? kernels().quotients->div_32sUp : kernels().quotients->div_32s;
}

ZvpStatus mul32f16s(const Zvp32f* src, Zvp32f val, Zvp16s* dst, int len, int scaleFactor) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    return kernels().products->mulC_32f16s(src, pairOf(val), dst, static_cast<size_t>(len), scaleFactor);
}

// ---- 64-bit integers ----

ZvpStatus multiply64s(Zvp64s multiplier, Zvp64s* srcDst, int len, int64_t shift) {
    if (const ZvpStatus status = checkVectors(len, srcDst)) return status;
    return kernels().products->mulC_64s(multiplier, srcDst, static_cast<size_t>(len), shift);
}

// val = mantissa * 2^exponent, the mantissa of 53 bits at most.
ZvpStatus multiply64f64s(Zvp64f val, Zvp64s* srcDst, int len, int scaleFactor) {
    constexpr int kInfiniteExponent =
        4000; // saturates every element but 0 at any scale factor that is taken into account
    constexpr int kMostScale = 2000;
    int exponent = 0;
    Zvp64s mantissa = 0;
    if (std::isinf(val)) {
        mantissa = val < 0 ? -1 : 1;
        exponent = kInfiniteExponent;
    } else if (!std::isnan(val)) {
        mantissa = static_cast<Zvp64s>(std::ldexp(std::frexp(val, &exponent), DBL_MANT_DIG));
        exponent -= DBL_MANT_DIG;
    }
    return multiply64s(mantissa, srcDst, len, std::clamp(scaleFactor, -kMostScale, kMostScale) - exponent);
}

// By the reciprocal 2^(places + 64) / |val|, rounded to 63 bits.
ZvpStatus divide64s(Zvp64s val, Zvp64s* srcDst, int len, int scaleFactor) {
    if (srcDst == nullptr) return zvpStsNullPtr;
    if (len == 0) return zvpStsBadSize;
    if (val == 0) {
        for (int i = 0; i < std::max(len, 1); ++i) {
            if (srcDst[i] != 0) srcDst[i] = srcDst[i] > 0 ? INT64_MAX : INT64_MIN;
        }
        return zvpStsDivByZero;
    }
    if (val == 1 || val == -1) {
        multiply64s(val, srcDst, len, scaleFactor);
        return zvpStsOk;
    }
    const uint64_t divisor = val < 0 ? 0 - static_cast<uint64_t>(val) : static_cast<uint64_t>(val);
    int places = 0;
    while ((uint64_t{2} << places) < divisor)
        ++places;
    __extension__ typedef unsigned __int128 Wide;
    const uint64_t reciprocal = static_cast<uint64_t>((Wide{1} << (places + 64)) / divisor);
    const Zvp64s multiplier = static_cast<Zvp64s>(reciprocal / 2 + (reciprocal & 1));
    multiply64s(val < 0 ? -multiplier : multiplier, srcDst, len, int64_t{scaleFactor} + places + 63);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Shapes of entries ----

// One line stamps the out-of-place form and the in-place one, whose vector is the second operand.

#define ZVPS_VECTORS_SFS(NAME, TYPE, SLOT)                                                                             \
    ZvpStatus zvps##NAME##_##TYPE##_Sfs(const Zvp##TYPE* pSrc1, const Zvp##TYPE* pSrc2, Zvp##TYPE* pDst, int len,      \
                                        int scaleFactor) {                                                             \
        return zvps::scaled(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len, scaleFactor);                               \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_##TYPE##_ISfs(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, int len, int scaleFactor) {        \
        return zvps::scaled(zvps::kernels().SLOT, pSrc, pSrcDst, pSrcDst, len, scaleFactor);                           \
    }

#define ZVPS_VECTORS(NAME, TYPE, SLOT)                                                                                 \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* pSrc1, const Zvp##TYPE* pSrc2, Zvp##TYPE* pDst, int len) {          \
        return zvps::plain(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len);                                             \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_##TYPE##_I(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, int len) {                            \
        return zvps::plain(zvps::kernels().SLOT, pSrc, pSrcDst, pSrcDst, len);                                         \
    }

// Operands of several types, out of place only.
#define ZVPS_MIXED_SFS(NAME, CODE, TYPE1, TYPE2, RESULT, SLOT)                                                         \
    ZvpStatus zvps##NAME##_##CODE##_Sfs(const Zvp##TYPE1* pSrc1, const Zvp##TYPE2* pSrc2, Zvp##RESULT* pDst, int len,  \
                                        int scaleFactor) {                                                             \
        return zvps::scaled(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len, scaleFactor);                               \
    }

#define ZVPS_MIXED(NAME, CODE, TYPE1, TYPE2, RESULT, SLOT)                                                             \
    ZvpStatus zvps##NAME##_##CODE(const Zvp##TYPE1* pSrc1, const Zvp##TYPE2* pSrc2, Zvp##RESULT* pDst, int len) {      \
        return zvps::plain(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len);                                             \
    }

// A constant as the second operand of the kernel, or as the first.
#define ZVPS_VECTOR_FIRST(SRC) SRC, zvps::pairOf(val)
#define ZVPS_CONSTANT_FIRST(SRC) zvps::pairOf(val), SRC

#define ZVPS_CONSTANT_SFS(NAME, TYPE, ORDER, SLOT)                                                                     \
    ZvpStatus zvps##NAME##_##TYPE##_Sfs(const Zvp##TYPE* pSrc, Zvp##TYPE val, Zvp##TYPE* pDst, int len,                \
                                        int scaleFactor) {                                                             \
        return zvps::scaled(zvps::kernels().SLOT, ORDER(pSrc), pDst, len, scaleFactor);                                \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_##TYPE##_ISfs(Zvp##TYPE val, Zvp##TYPE* pSrcDst, int len, int scaleFactor) {                \
        return zvps::scaled(zvps::kernels().SLOT, ORDER(pSrcDst), pSrcDst, len, scaleFactor);                          \
    }

#define ZVPS_CONSTANT_IN_PLACE(NAME, TYPE, ORDER, SLOT)                                                                \
    ZvpStatus zvps##NAME##_##TYPE##_I(Zvp##TYPE val, Zvp##TYPE* pSrcDst, int len) {                                    \
        return zvps::plain(zvps::kernels().SLOT, ORDER(pSrcDst), pSrcDst, len);                                        \
    }

#define ZVPS_CONSTANT(NAME, TYPE, ORDER, SLOT)                                                                         \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE val, Zvp##TYPE* pDst, int len) {                    \
        return zvps::plain(zvps::kernels().SLOT, ORDER(pSrc), pDst, len);                                              \
    }                                                                                                                  \
    ZVPS_CONSTANT_IN_PLACE(NAME, TYPE, ORDER, SLOT)

// A vector by itself.
#define ZVPS_SQUARE_SFS(TYPE, SLOT)                                                                                    \
    ZvpStatus zvpsSqr_##TYPE##_Sfs(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len, int scaleFactor) {                 \
        return zvps::scaled(zvps::kernels().SLOT, pSrc, pSrc, pDst, len, scaleFactor);                                 \
    }                                                                                                                  \
    ZvpStatus zvpsSqr_##TYPE##_ISfs(Zvp##TYPE* pSrcDst, int len, int scaleFactor) {                                    \
        return zvps::scaled(zvps::kernels().SLOT, pSrcDst, pSrcDst, pSrcDst, len, scaleFactor);                        \
    }

#define ZVPS_SQUARE(TYPE, SLOT)                                                                                        \
    ZvpStatus zvpsSqr_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len) {                                        \
        return zvps::plain(zvps::kernels().SLOT, pSrc, pSrc, pDst, len);                                               \
    }                                                                                                                  \
    ZvpStatus zvpsSqr_##TYPE##_I(Zvp##TYPE* pSrcDst, int len) {                                                        \
        return zvps::plain(zvps::kernels().SLOT, pSrcDst, pSrcDst, pSrcDst, len);                                      \
    }

#define ZVPS_ABSOLUTE(TYPE, SLOT)                                                                                      \
    ZvpStatus zvpsAbs_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE* pDst, int len) {                                        \
        return zvps::absolute(zvps::kernels().SLOT, pSrc, pDst, len);                                                  \
    }                                                                                                                  \
    ZvpStatus zvpsAbs_##TYPE##_I(Zvp##TYPE* pSrcDst, int len) {                                                        \
        return zvps::absolute(zvps::kernels().SLOT, pSrcDst, pSrcDst, len);                                            \
    }

// KERNEL may look at scaleFactor.
#define ZVPS_QUOTIENT_SFS(TYPE, KERNEL)                                                                                \
    ZvpStatus zvpsDiv_##TYPE##_Sfs(const Zvp##TYPE* pSrc1, const Zvp##TYPE* pSrc2, Zvp##TYPE* pDst, int len,           \
                                   int scaleFactor) {                                                                  \
        return zvps::quotient(zvps::KERNEL, pSrc1, pSrc2, pDst, len, scaleFactor);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsDiv_##TYPE##_ISfs(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, int len, int scaleFactor) {             \
        return zvps::quotient(zvps::KERNEL, pSrc, pSrcDst, pSrcDst, len, scaleFactor);                                 \
    }

#define ZVPS_ROUNDED_QUOTIENT_SFS(TYPE, SLOT)                                                                          \
    ZvpStatus zvpsDiv_Round_##TYPE##_Sfs(const Zvp##TYPE* pSrc1, const Zvp##TYPE* pSrc2, Zvp##TYPE* pDst, int len,     \
                                         ZvpRoundMode rndMode, int scaleFactor) {                                      \
        return zvps::roundedQuotient(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len, rndMode, scaleFactor);             \
    }                                                                                                                  \
    ZvpStatus zvpsDiv_Round_##TYPE##_ISfs(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, int len, ZvpRoundMode rndMode,    \
                                          int scaleFactor) {                                                           \
        return zvps::roundedQuotient(zvps::kernels().SLOT, pSrc, pSrcDst, pSrcDst, len, rndMode, scaleFactor);         \
    }

#define ZVPS_QUOTIENT(TYPE, SLOT)                                                                                      \
    ZvpStatus zvpsDiv_##TYPE(const Zvp##TYPE* pSrc1, const Zvp##TYPE* pSrc2, Zvp##TYPE* pDst, int len) {               \
        return zvps::quotient(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len);                                          \
    }                                                                                                                  \
    ZvpStatus zvpsDiv_##TYPE##_I(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, int len) {                                 \
        return zvps::quotient(zvps::kernels().SLOT, pSrc, pSrcDst, pSrcDst, len);                                      \
    }

#define ZVPS_QUOTIENT_BY_CONSTANT_SFS(TYPE, SLOT)                                                                      \
    ZvpStatus zvpsDivC_##TYPE##_Sfs(const Zvp##TYPE* pSrc, Zvp##TYPE val, Zvp##TYPE* pDst, int len, int scaleFactor) { \
        return zvps::quotientByConstant(zvps::kernels().SLOT, val, pSrc, pDst, len, scaleFactor);                      \
    }                                                                                                                  \
    ZvpStatus zvpsDivC_##TYPE##_ISfs(Zvp##TYPE val, Zvp##TYPE* pSrcDst, int len, int scaleFactor) {                    \
        return zvps::quotientByConstant(zvps::kernels().SLOT, val, pSrcDst, pSrcDst, len, scaleFactor);                \
    }

#define ZVPS_QUOTIENT_BY_CONSTANT(TYPE, SLOT)                                                                          \
    ZvpStatus zvpsDivC_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE val, Zvp##TYPE* pDst, int len) {                        \
        return zvps::quotientByConstant(zvps::kernels().SLOT, val, pSrc, pDst, len);                                   \
    }                                                                                                                  \
    ZvpStatus zvpsDivC_##TYPE##_I(Zvp##TYPE val, Zvp##TYPE* pSrcDst, int len) {                                        \
        return zvps::quotientByConstant(zvps::kernels().SLOT, val, pSrcDst, pSrcDst, len);                             \
    }

#define ZVPS_QUOTIENT_OF_CONSTANT(TYPE, SLOT)                                                                          \
    ZvpStatus zvpsDivCRev_##TYPE(const Zvp##TYPE* pSrc, Zvp##TYPE val, Zvp##TYPE* pDst, int len) {                     \
        return zvps::quotient(zvps::kernels().SLOT, ZVPS_VECTOR_FIRST(pSrc), pDst, len);                               \
    }                                                                                                                  \
    ZvpStatus zvpsDivCRev_##TYPE##_I(Zvp##TYPE val, Zvp##TYPE* pSrcDst, int len) {                                     \
        return zvps::quotient(zvps::kernels().SLOT, ZVPS_VECTOR_FIRST(pSrcDst), pSrcDst, len);                         \
    }

// ---- Sums and differences ----

ZVPS_VECTORS_SFS(Add, 8u, sums->add_8u)
ZVPS_VECTORS_SFS(Add, 16s, sums->add_16s)
ZVPS_VECTORS_SFS(Add, 16u, sums->add_16u)
ZVPS_VECTORS_SFS(Add, 16sc, sums->add_16s)
ZVPS_VECTORS_SFS(Add, 32s, sums->add_32s)
ZVPS_VECTORS_SFS(Add, 32sc, sums->add_32s)
ZVPS_VECTORS(Add, 16s, sums->add_16s.exact)
ZVPS_VECTORS(Add, 32f, sums->add_32f)
ZVPS_VECTORS(Add, 32fc, sums->add_32f)
ZVPS_VECTORS(Add, 64f, sums->add_64f)
ZVPS_VECTORS(Add, 64fc, sums->add_64f)
ZVPS_MIXED_SFS(Add, 64s, 64s, 64s, 64s, sums->add_64s)
ZVPS_MIXED(Add, 16u, 16u, 16u, 16u, sums->add_16u.exact)
ZVPS_MIXED(Add, 32u, 32u, 32u, 32u, sums->add_32u)
ZVPS_MIXED(Add, 8u16u, 8u, 8u, 16u, sums->add_8u16u)
ZVPS_MIXED(Add, 16s32f, 16s, 16s, 32f, sums->add_16s32f)
ZvpStatus zvpsAdd_16s32s_I(const Zvp16s* pSrc, Zvp32s* pSrcDst, int len) {
    return zvps::plain(zvps::kernels().sums->add_16s32s, pSrc, pSrcDst, pSrcDst, len);
}

ZVPS_VECTORS_SFS(Sub, 8u, sums->sub_8u)
ZVPS_VECTORS_SFS(Sub, 16s, sums->sub_16s)
ZVPS_VECTORS_SFS(Sub, 16u, sums->sub_16u)
ZVPS_VECTORS_SFS(Sub, 16sc, sums->sub_16s)
ZVPS_VECTORS_SFS(Sub, 32s, sums->sub_32s)
ZVPS_VECTORS_SFS(Sub, 32sc, sums->sub_32s)
ZVPS_VECTORS(Sub, 16s, sums->sub_16s.exact)
ZVPS_VECTORS(Sub, 32f, sums->sub_32f)
ZVPS_VECTORS(Sub, 32fc, sums->sub_32f)
ZVPS_VECTORS(Sub, 64f, sums->sub_64f)
ZVPS_VECTORS(Sub, 64fc, sums->sub_64f)
ZVPS_MIXED(Sub, 16s32f, 16s, 16s, 32f, sums->sub_16s32f)

ZVPS_CONSTANT_SFS(AddC, 8u, ZVPS_VECTOR_FIRST, sums->addC_8u)
ZVPS_CONSTANT_SFS(AddC, 16s, ZVPS_VECTOR_FIRST, sums->addC_16s)
ZVPS_CONSTANT_SFS(AddC, 16u, ZVPS_VECTOR_FIRST, sums->addC_16u)
ZVPS_CONSTANT_SFS(AddC, 16sc, ZVPS_VECTOR_FIRST, sums->addC_16s)
ZVPS_CONSTANT_SFS(AddC, 32s, ZVPS_VECTOR_FIRST, sums->addC_32s)
ZVPS_CONSTANT_SFS(AddC, 32sc, ZVPS_VECTOR_FIRST, sums->addC_32s)
ZVPS_CONSTANT_IN_PLACE(AddC, 16s, ZVPS_VECTOR_FIRST, sums->addC_16s.exact)
ZVPS_CONSTANT(AddC, 32f, ZVPS_VECTOR_FIRST, sums->addC_32f)
ZVPS_CONSTANT(AddC, 32fc, ZVPS_VECTOR_FIRST, sums->addC_32f)
ZVPS_CONSTANT(AddC, 64f, ZVPS_VECTOR_FIRST, sums->addC_64f)
ZVPS_CONSTANT(AddC, 64fc, ZVPS_VECTOR_FIRST, sums->addC_64f)

ZVPS_CONSTANT_SFS(SubC, 8u, ZVPS_CONSTANT_FIRST, sums->subC_8u)
ZVPS_CONSTANT_SFS(SubC, 16s, ZVPS_CONSTANT_FIRST, sums->subC_16s)
ZVPS_CONSTANT_SFS(SubC, 16u, ZVPS_CONSTANT_FIRST, sums->subC_16u)
ZVPS_CONSTANT_SFS(SubC, 16sc, ZVPS_CONSTANT_FIRST, sums->subC_16s)
ZVPS_CONSTANT_SFS(SubC, 32s, ZVPS_CONSTANT_FIRST, sums->subC_32s)
ZVPS_CONSTANT_SFS(SubC, 32sc, ZVPS_CONSTANT_FIRST, sums->subC_32s)
ZVPS_CONSTANT_IN_PLACE(SubC, 16s, ZVPS_CONSTANT_FIRST, sums->subC_16s.exact)
ZVPS_CONSTANT(SubC, 32f, ZVPS_CONSTANT_FIRST, sums->subC_32f)
ZVPS_CONSTANT(SubC, 32fc, ZVPS_CONSTANT_FIRST, sums->subC_32f)
ZVPS_CONSTANT(SubC, 64f, ZVPS_CONSTANT_FIRST, sums->subC_64f)
ZVPS_CONSTANT(SubC, 64fc, ZVPS_CONSTANT_FIRST, sums->subC_64f)

ZVPS_CONSTANT_SFS(SubCRev, 8u, ZVPS_VECTOR_FIRST, sums->subCRev_8u)
ZVPS_CONSTANT_SFS(SubCRev, 16s, ZVPS_VECTOR_FIRST, sums->subCRev_16s)
ZVPS_CONSTANT_SFS(SubCRev, 16u, ZVPS_VECTOR_FIRST, sums->subCRev_16u)
ZVPS_CONSTANT_SFS(SubCRev, 16sc, ZVPS_VECTOR_FIRST, sums->subCRev_16s)
ZVPS_CONSTANT_SFS(SubCRev, 32s, ZVPS_VECTOR_FIRST, sums->subCRev_32s)
ZVPS_CONSTANT_SFS(SubCRev, 32sc, ZVPS_VECTOR_FIRST, sums->subCRev_32s)
ZVPS_CONSTANT(SubCRev, 32f, ZVPS_VECTOR_FIRST, sums->subCRev_32f)
ZVPS_CONSTANT(SubCRev, 32fc, ZVPS_VECTOR_FIRST, sums->subCRev_32f)
ZVPS_CONSTANT(SubCRev, 64f, ZVPS_VECTOR_FIRST, sums->subCRev_64f)
ZVPS_CONSTANT(SubCRev, 64fc, ZVPS_VECTOR_FIRST, sums->subCRev_64f)

ZVPS_ABSOLUTE(16s, sums->abs_16s)
ZVPS_ABSOLUTE(32s, sums->abs_32s)
ZVPS_ABSOLUTE(32f, sums->abs_32f)
ZVPS_ABSOLUTE(64f, sums->abs_64f)

// ---- Products ----

ZVPS_VECTORS_SFS(Mul, 8u, products->mul_8u)
ZVPS_VECTORS_SFS(Mul, 16s, products->mul_16s)
ZVPS_VECTORS_SFS(Mul, 16u, products->mul_16u)
ZVPS_VECTORS_SFS(Mul, 16sc, products->mul_16sc)
ZVPS_VECTORS_SFS(Mul, 32s, products->mul_32s)
ZVPS_VECTORS_SFS(Mul, 32sc, products->mul_32sc)
ZVPS_VECTORS(Mul, 16s, products->mul_16s.exact)
ZVPS_VECTORS(Mul, 32f, products->mul_32f)
ZVPS_VECTORS(Mul, 32fc, products->mul_32fc)
ZVPS_VECTORS(Mul, 64f, products->mul_64f)
ZVPS_VECTORS(Mul, 64fc, products->mul_64fc)
ZVPS_MIXED_SFS(Mul, Low_32s, 32s, 32s, 32s, products->mul_32s)
ZVPS_MIXED_SFS(Mul, 16s32s, 16s, 16s, 32s, products->mul_16s32s)
ZVPS_MIXED_SFS(Mul, 16u16s, 16u, 16s, 16s, products->mul_16u16s)
ZVPS_MIXED_SFS(Mul, 32s32sc, 32s, 32sc, 32sc, products->mul_32s32sc)
ZVPS_MIXED(Mul, 8u16u, 8u, 8u, 16u, products->mul_8u16u)
ZVPS_MIXED(Mul, 16s32f, 16s, 16s, 32f, products->mul_16s32f)
ZVPS_MIXED(Mul, 32f32fc, 32f, 32fc, 32fc, products->mul_32f32fc)
ZvpStatus zvpsMul_32s32sc_ISfs(const Zvp32s* pSrc, Zvp32sc* pSrcDst, int len, int scaleFactor) {
    return zvps::scaled(zvps::kernels().products->mul_32s32sc, pSrc, pSrcDst, pSrcDst, len, scaleFactor);
}
ZvpStatus zvpsMul_32f32fc_I(const Zvp32f* pSrc, Zvp32fc* pSrcDst, int len) {
    return zvps::plain(zvps::kernels().products->mul_32f32fc, pSrc, pSrcDst, pSrcDst, len);
}

ZVPS_CONSTANT_SFS(MulC, 8u, ZVPS_VECTOR_FIRST, products->mulC_8u)
ZVPS_CONSTANT_SFS(MulC, 16s, ZVPS_VECTOR_FIRST, products->mulC_16s)
ZVPS_CONSTANT_SFS(MulC, 16u, ZVPS_VECTOR_FIRST, products->mulC_16u)
ZVPS_CONSTANT_SFS(MulC, 16sc, ZVPS_VECTOR_FIRST, products->mulC_16sc)
ZVPS_CONSTANT_SFS(MulC, 32s, ZVPS_VECTOR_FIRST, products->mulC_32s)
ZVPS_CONSTANT_SFS(MulC, 32sc, ZVPS_VECTOR_FIRST, products->mulC_32sc)
ZVPS_CONSTANT_IN_PLACE(MulC, 16s, ZVPS_VECTOR_FIRST, products->mulC_16s.exact)
ZVPS_CONSTANT(MulC, 32f, ZVPS_VECTOR_FIRST, products->mulC_32f)
ZVPS_CONSTANT(MulC, 32fc, ZVPS_VECTOR_FIRST, products->mulC_32fc)
ZVPS_CONSTANT(MulC, 64f, ZVPS_VECTOR_FIRST, products->mulC_64f)
ZVPS_CONSTANT(MulC, 64fc, ZVPS_VECTOR_FIRST, products->mulC_64fc)
ZvpStatus zvpsMulC_32f16s_Sfs(const Zvp32f* pSrc, Zvp32f val, Zvp16s* pDst, int len, int scaleFactor) {
    return zvps::mul32f16s(pSrc, val, pDst, len, scaleFactor);
}
ZvpStatus zvpsMulC_Low_32f16s(const Zvp32f* pSrc, Zvp32f val, Zvp16s* pDst, int len) {
    return zvps::mul32f16s(pSrc, val, pDst, len, 0);
}
ZvpStatus zvpsMulC_64s_ISfs(Zvp64s val, Zvp64s* pSrcDst, int len, int scaleFactor) {
    return zvps::multiply64s(val, pSrcDst, len, scaleFactor);
}
ZvpStatus zvpsMulC_64f64s_ISfs(Zvp64f val, Zvp64s* pSrcDst, int len, int scaleFactor) {
    return zvps::multiply64f64s(val, pSrcDst, len, scaleFactor);
}

ZVPS_SQUARE_SFS(8u, products->mul_8u)
ZVPS_SQUARE_SFS(16s, products->mul_16s)
ZVPS_SQUARE_SFS(16u, products->mul_16u)
ZVPS_SQUARE_SFS(16sc, products->mul_16sc)
ZVPS_SQUARE(32f, products->mul_32f)
ZVPS_SQUARE(32fc, products->mul_32fc)
ZVPS_SQUARE(64f, products->mul_64f)
ZVPS_SQUARE(64fc, products->mul_64fc)

ZVPS_MIXED_SFS(AddProduct, 16s, 16s, 16s, 16s, products->addProduct_16s)
ZVPS_MIXED_SFS(AddProduct, 16s32s, 16s, 16s, 32s, products->addProduct_16s32s)
ZVPS_MIXED_SFS(AddProduct, 32s, 32s, 32s, 32s, products->addProduct_32s)
ZVPS_MIXED(AddProduct, 32f, 32f, 32f, 32f, products->addProduct_32f)
ZVPS_MIXED(AddProduct, 32fc, 32fc, 32fc, 32fc, products->addProduct_32fc)
ZVPS_MIXED(AddProduct, 64f, 64f, 64f, 64f, products->addProduct_64f)
ZVPS_MIXED(AddProduct, 64fc, 64fc, 64fc, 64fc, products->addProduct_64fc)
ZvpStatus zvpsAddProductC_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pSrcDst, int len) {
    return zvps::plain(zvps::kernels().products->addProductC_32f, ZVPS_VECTOR_FIRST(pSrc), pSrcDst, len);
}

// ---- Quotients ----

ZVPS_QUOTIENT_SFS(8u, kernels().quotients->div_8u.byMode[zvpRndNear])
ZVPS_QUOTIENT_SFS(16s, kernels().quotients->div_16s.byMode[zvpRndNear])
ZVPS_QUOTIENT_SFS(16u, kernels().quotients->div_16u.byMode[zvpRndNear])
ZVPS_QUOTIENT_SFS(16sc, kernels().quotients->div_16sc)
ZVPS_QUOTIENT_SFS(32s, quotientKernel32s(scaleFactor))
ZVPS_ROUNDED_QUOTIENT_SFS(8u, quotients->div_8u)
ZVPS_ROUNDED_QUOTIENT_SFS(16s, quotients->div_16s)
ZVPS_ROUNDED_QUOTIENT_SFS(16u, quotients->div_16u)
ZVPS_QUOTIENT(32f, quotients->div_32f)
ZVPS_QUOTIENT(32fc, quotients->div_32fc)
ZVPS_QUOTIENT(64f, quotients->div_64f)
ZVPS_QUOTIENT(64fc, quotients->div_64fc)
ZvpStatus zvpsDiv_32s16s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp16s* pDst, int len, int scaleFactor) {
    return zvps::quotient(zvps::kernels().quotients->div_32s16s, pSrc1, pSrc2, pDst, len, scaleFactor);
}

ZVPS_QUOTIENT_BY_CONSTANT_SFS(8u, quotients->divC_8u)
ZVPS_QUOTIENT_BY_CONSTANT_SFS(16s, quotients->divC_16s)
ZVPS_QUOTIENT_BY_CONSTANT_SFS(16u, quotients->divC_16u)
ZVPS_QUOTIENT_BY_CONSTANT_SFS(16sc, quotients->divC_16sc)
ZVPS_QUOTIENT_BY_CONSTANT(32f, quotients->divC_32f)
ZVPS_QUOTIENT_BY_CONSTANT(32fc, quotients->divC_32fc)
ZVPS_QUOTIENT_BY_CONSTANT(64f, quotients->divC_64f)
ZVPS_QUOTIENT_BY_CONSTANT(64fc, quotients->divC_64fc)
ZvpStatus zvpsDivC_64s_ISfs(Zvp64s val, Zvp64s* pSrcDst, int len, int scaleFactor) {
    return zvps::divide64s(val, pSrcDst, len, scaleFactor);
}

ZVPS_QUOTIENT_OF_CONSTANT(16u, quotients->divCRev_16u)
ZVPS_QUOTIENT_OF_CONSTANT(32f, quotients->divCRev_32f)
