// Functions on packed spectra.
#include "core/checks.hpp"
#include "core/elements.hpp"
#include "core/level.hpp"
#include "transforms/spectra.table.hpp"
#include "zvps/arithmetic.h"
#include "zvps/fft.h"

namespace zvps {
namespace {

// Where the values of a spectrum of n real samples lie, as real numbers.
struct Layout {
    size_t n;
    size_t pairCount; // values with both parts
    size_t pairs;     // where X[1] begins
    size_t nyquist;   // X[n / 2], of even n only

    Layout(size_t length, size_t firstPair, size_t nyquistPlace)
        : n(length), pairCount((length - 1) / 2), pairs(firstPair), nyquist(nyquistPlace) {}
    bool hasNyquist() const { return n % 2 == 0; }
};

Layout permLayout(int len) {
    const auto n = static_cast<size_t>(len);
    return {n, n % 2 == 0 ? size_t{2} : 1, 1};
}
Layout packLayout(int len) {
    const auto n = static_cast<size_t>(len);
    return {n, 1, n - 1};
}

MirrorKernel<Zvp16s> mirrorKernel(Zvp16s) {
    return kernels().spectra->mirror_16sc;
}
MirrorKernel<Zvp32f> mirrorKernel(Zvp32f) {
    return kernels().spectra->mirror_32fc;
}
MirrorKernel<Zvp64f> mirrorKernel(Zvp64f) {
    return kernels().spectra->mirror_64fc;
}

template <class T>
void mirrorPairs(const T* src, T* dst, const Layout& layout) {
    if (layout.pairCount > 0) {
        mirrorKernel(T{})(src + layout.pairs, dst + 2, dst + 2 * layout.n, layout.pairCount);
    }
}

// In place too: the two real values are read before anything is written.
template <Layout (*layoutOf)(int), class T, class Complex>
ZvpStatus expand(const T* src, Complex* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    const Layout layout = layoutOf(len);
    const T first = src[0];
    const T middle = layout.hasNyquist() ? src[layout.nyquist] : T{0};
    mirrorPairs(src, parts(dst), layout);
    dst[0] = {first, 0};
    if (layout.hasNyquist()) dst[layout.n / 2] = {middle, 0};
    return zvpStsOk;
}

template <class T, class Complex>
ZvpStatus expandCcs(const T* src, Complex* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    const auto n = static_cast<size_t>(len);
    const Layout layout = {n, 2, n};
    const Complex first = {src[0], src[1]};
    const Complex middle = layout.hasNyquist() ? Complex{src[n], src[n + 1]} : Complex{};
    mirrorPairs(src, parts(dst), layout);
    dst[0] = first;
    if (layout.hasNyquist()) dst[n / 2] = middle;
    return zvpStsOk;
}

// The real values by mulReal(place, count), the pairs by mulPairs(place, count).
template <class MulReal, class MulPairs>
void multiply(const Layout& layout, MulReal mulReal, MulPairs mulPairs) {
    mulReal(0);
    if (layout.hasNyquist()) mulReal(layout.nyquist);
    if (layout.pairCount > 0) mulPairs(layout.pairs, static_cast<int>(layout.pairCount));
}

template <class T>
void mulReal(const T* src1, const T* src2, T* dst) {
    *dst = *src1 * *src2;
}
void mulReal(const Zvp16s* src1, const Zvp16s* src2, Zvp16s* dst, int scaleFactor) {
    zvpsMul_16s_Sfs(src1, src2, dst, 1, scaleFactor);
}

// Integers with one scale factor more.
template <class T, class Complex, class... Scale>
ZvpStatus mulSpectra(ZvpStatus (*mulComplex)(const Complex*, const Complex*, Complex*, int, Scale...),
                     Layout (*layoutOf)(int), const T* src1, const T* src2, T* dst, int len, Scale... scaleFactor) {
    if (const ZvpStatus status = checkVectors(len, src1, src2, dst)) return status;
    multiply(
        layoutOf(len), [&](size_t i) { mulReal(src1 + i, src2 + i, dst + i, scaleFactor...); },
        [&](size_t i, int count) {
            mulComplex(reinterpret_cast<const Complex*>(src1 + i), reinterpret_cast<const Complex*>(src2 + i),
                       reinterpret_cast<Complex*>(dst + i), count, scaleFactor...);
        });
    return zvpStsOk;
}

template <class T>
ZvpStatus mulPackConj(MulConjKernel<T> kernel, const T* src, T* srcDst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, srcDst)) return status;
    multiply(
        packLayout(len), [&](size_t i) { srcDst[i] *= src[i]; },
        [&](size_t i, int count) { kernel(src + i, srcDst + i, 2 * static_cast<size_t>(count)); });
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_CONJ(NAME, EXPAND, REAL, COMPLEX)                                                                         \
    ZvpStatus NAME##_##COMPLEX(const Zvp##REAL* src, Zvp##COMPLEX* dst, int len) {                                     \
        return zvps::EXPAND(src, dst, len);                                                                            \
    }                                                                                                                  \
    ZvpStatus NAME##_##COMPLEX##_I(Zvp##COMPLEX* srcDst, int len) {                                                    \
        return zvps::EXPAND(reinterpret_cast<const Zvp##REAL*>(srcDst), srcDst, len);                                  \
    }

ZVPS_CONJ(zvpsConjPerm, expand<zvps::permLayout>, 16s, 16sc)
ZVPS_CONJ(zvpsConjPerm, expand<zvps::permLayout>, 32f, 32fc)
ZVPS_CONJ(zvpsConjPerm, expand<zvps::permLayout>, 64f, 64fc)
ZVPS_CONJ(zvpsConjPack, expand<zvps::packLayout>, 16s, 16sc)
ZVPS_CONJ(zvpsConjPack, expand<zvps::packLayout>, 32f, 32fc)
ZVPS_CONJ(zvpsConjPack, expand<zvps::packLayout>, 64f, 64fc)
ZVPS_CONJ(zvpsConjCcs, expandCcs, 16s, 16sc)
ZVPS_CONJ(zvpsConjCcs, expandCcs, 32f, 32fc)
ZVPS_CONJ(zvpsConjCcs, expandCcs, 64f, 64fc)

#define ZVPS_MUL_SPECTRA(NAME, LAYOUT, TYPE)                                                                           \
    ZvpStatus NAME##_##TYPE(const Zvp##TYPE* src1, const Zvp##TYPE* src2, Zvp##TYPE* dst, int len) {                   \
        return zvps::mulSpectra(zvpsMul_##TYPE##c, zvps::LAYOUT, src1, src2, dst, len);                                \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_I(const Zvp##TYPE* src, Zvp##TYPE* srcDst, int len) {                                    \
        return NAME##_##TYPE(src, srcDst, srcDst, len);                                                                \
    }
#define ZVPS_MUL_SPECTRA_SFS(NAME, LAYOUT)                                                                             \
    ZvpStatus NAME##_16s_Sfs(const Zvp16s* src1, const Zvp16s* src2, Zvp16s* dst, int len, int scaleFactor) {          \
        return zvps::mulSpectra(zvpsMul_16sc_Sfs, zvps::LAYOUT, src1, src2, dst, len, scaleFactor);                    \
    }                                                                                                                  \
    ZvpStatus NAME##_16s_ISfs(const Zvp16s* src, Zvp16s* srcDst, int len, int scaleFactor) {                           \
        return NAME##_16s_Sfs(src, srcDst, srcDst, len, scaleFactor);                                                  \
    }

ZVPS_MUL_SPECTRA(zvpsMulPerm, permLayout, 32f)
ZVPS_MUL_SPECTRA(zvpsMulPerm, permLayout, 64f)
ZVPS_MUL_SPECTRA_SFS(zvpsMulPerm, permLayout)
ZVPS_MUL_SPECTRA(zvpsMulPack, packLayout, 32f)
ZVPS_MUL_SPECTRA(zvpsMulPack, packLayout, 64f)
ZVPS_MUL_SPECTRA_SFS(zvpsMulPack, packLayout)

ZvpStatus zvpsMulPackConj_32f_I(const Zvp32f* src, Zvp32f* srcDst, int len) {
    return zvps::mulPackConj(zvps::kernels().spectra->mulConj_32fc, src, srcDst, len);
}
ZvpStatus zvpsMulPackConj_64f_I(const Zvp64f* src, Zvp64f* srcDst, int len) {
    return zvps::mulPackConj(zvps::kernels().spectra->mulConj_64fc, src, srcDst, len);
}
