#include "zvps/arithmetic.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "core/scaled.hpp"
#include "vector/sums.table.hpp"

#include <algorithm>
#include <cstring>
#include <type_traits>

namespace zvps {
namespace {

// ---- Elements: complex ones as pairs of their parts ------------------------------------------------------------------

template <class T, class = void>
struct PartOf {
    using Type = T;
};
template <class T>
struct PartOf<T, std::void_t<decltype(T::re)>> {
    using Type = decltype(T::re);
};
template <class T>
using Part = typename PartOf<T>::Type;

template <class T>
const Part<T>* parts(const T* p) {
    return reinterpret_cast<const Part<T>*>(p);
}
template <class T>
Part<T>* parts(T* p) {
    return reinterpret_cast<Part<T>*>(p);
}
template <class T>
size_t partCount(int len) {
    return static_cast<size_t>(len) * (sizeof(T) / sizeof(Part<T>));
}

// A constant as kernels take it: the values of even and odd parts.
template <class T>
struct Pair {
    Part<T> values[2];

    explicit Pair(T val) {
        if constexpr (std::is_same_v<T, Part<T>>) {
            values[0] = values[1] = val;
        } else {
            values[0] = val.re;
            values[1] = val.im;
        }
    }
};

// ---- Calls -----------------------------------------------------------------------------------------------------------

// Picks the kernel for the scale factor. Any int is one; beyond the kernels' reach the results are known.
template <class A, class B, class D>
void runScaled(const ScaledKernels<A, B, D>& kernels, const A* a, const B* b, D* dst, size_t n, int scaleFactor) {
    if (scaleFactor == 0) {
        kernels.exact(a, b, dst, n, 0);
    } else if (scaleFactor == 1) {
        kernels.halved(a, b, dst, n, 1);
    } else if (scaleFactor > kernels.lastShift) {
        std::memset(dst, 0, n * sizeof(D));
    } else if (scaleFactor > 1) {
        kernels.down(a, b, dst, n, scaleFactor);
    } else {
        constexpr int kMostPlaces = 64; // as many as saturate any result but 0
        kernels.up(a, b, dst, n, -std::max(scaleFactor, -kMostPlaces));
    }
}

template <class Slot, class A, class B, class D>
ZvpStatus vectorsSfs(const Slot& slot, const A* src1, const B* src2, D* dst, int len, int scaleFactor) {
    if (const ZvpStatus status = checkVectors(len, src1, src2, dst)) return status;
    runScaled(slot, parts(src1), parts(src2), parts(dst), partCount<D>(len), scaleFactor);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

#define ZVPS_TWO_VECTORS_SFS(NAME, TYPE, SLOT)                                                                         \
    ZvpStatus zvps##NAME##_##TYPE##_Sfs(const Zvp##TYPE* pSrc1, const Zvp##TYPE* pSrc2, Zvp##TYPE* pDst, int len,      \
                                        int scaleFactor) {                                                             \
        return zvps::vectorsSfs(zvps::kernels().SLOT, pSrc1, pSrc2, pDst, len, scaleFactor);                           \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_##TYPE##_ISfs(const Zvp##TYPE* pSrc, Zvp##TYPE* pSrcDst, int len, int scaleFactor) {        \
        return zvps::vectorsSfs(zvps::kernels().SLOT, pSrc, pSrcDst, pSrcDst, len, scaleFactor);                       \
    }

ZVPS_TWO_VECTORS_SFS(Add, 8u, sums->add_8u)
ZVPS_TWO_VECTORS_SFS(Add, 16s, sums->add_16s)
ZVPS_TWO_VECTORS_SFS(Add, 16u, sums->add_16u)
ZVPS_TWO_VECTORS_SFS(Add, 16sc, sums->add_16s)
ZVPS_TWO_VECTORS_SFS(Add, 32s, sums->add_32s)
ZVPS_TWO_VECTORS_SFS(Add, 32sc, sums->add_32s)
