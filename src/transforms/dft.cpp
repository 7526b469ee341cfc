// Transforms of any length.
#include "core/elements.hpp"
#include "transforms/dft_objects.hpp"
#include "transforms/through_floats.hpp"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

namespace zvps {
namespace {

template <class T>
const DftKernels<T>& dftKernels() {
    if constexpr (sizeof(T) == 4) {
        return *kernels().dft32f;
    } else {
        return *kernels().dft64f;
    }
}
int orderOf(int length) {
    return __builtin_ctz(static_cast<unsigned>(length));
}

// ---- Complex data ----

template <class T>
void transformPower(const DftSpec<T>& spec, FftDirection direction, const DftPoints<const T>& src,
                    const DftPoints<T>& dst, T factor, T* work) {
    const FftKernels<T>& table = fftKernels<T>();
    const bool isSplit = src.step == 1;
    const auto* const fft = static_cast<const FftSpec<T>*>(spec.fft);
    const int order = orderOf(spec.length);
    const int scales = factor != T{1};
    if (isSplit) {
        if (order <= kFixedFftOrder) {
            table.fixedSplit[direction][scales][order](src.re, src.im, dst.re, dst.im, factor);
        } else {
            table.split[direction](src.re, src.im, dst.re, dst.im, factor, *fft, work);
        }
    } else if (order <= kFixedComplexFftOrder) {
        table.fixedComplex[direction][scales][order](src.re, dst.re, factor);
    } else {
        table.complex[direction](src.re, dst.re, factor, *fft, work);
    }
}

// By convolution with a chirp.
template <class T>
void convolve(const DftSpec<T>& spec, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor, T* work) {
    const DftKernels<T>& table = dftKernels<T>();
    const auto& inner = *static_cast<const DftSpec<T>*>(spec.inner);
    const auto length = static_cast<size_t>(spec.length);
    const auto points = static_cast<size_t>(inner.length);
    T* const rest = work + 2 * points;
    const DftPoints<const T> from = interleaved<const T>(work);
    table.multiplyIn(src, spec.chirp, work, length);
    std::memset(work + 2 * length, 0, 2 * (points - length) * sizeof(T));
    transformPoints(inner, kFftForward, from, interleaved(work), T{1}, rest);
    table.multiplyIn(from, spec.kernelSpectrum, work, points);
    transformPoints(inner, kFftInverse, from, interleaved(work), factor, rest);
    table.multiplyOut(work, spec.chirp, dst, length);
}

// The points, or in the inverse transform of interleaved data the values, in the order of the powers of a primitive
// root of the length.
template <class T>
void gatherPowers(const DftPoints<const T>& src, const int32_t* powers, T* dst, int count) {
    using Complex = typename DftParts<T>::Complex;
    if (src.step == 2) {
        const auto* const from = reinterpret_cast<const Complex*>(std::min(src.re, src.im));
        auto* const to = reinterpret_cast<Complex*>(dst);
        for (int q = 0; q < count; ++q)
            to[q] = from[powers[q]];
        return;
    }
    for (int q = 0; q < count; ++q) {
        dst[2 * q] = src.re[powers[q]];
        dst[2 * q + 1] = src.im[powers[q]];
    }
}
template <class T>
void scatterPowers(const T* src, const int32_t* powers, const DftPoints<T>& dst, int count) {
    using Complex = typename DftParts<T>::Complex;
    if (dst.step == 2) {
        // The values of the inverse transform are those of the forward one after the first in reverse order.
        const bool isInverse = dst.im < dst.re;
        const auto* const from = reinterpret_cast<const Complex*>(src);
        auto* const to = reinterpret_cast<Complex*>(isInverse ? dst.im : dst.re);
        const int start = isInverse ? count + 1 : 0;
        const int sign = isInverse ? -1 : 1;
        to[start + sign] = from[0];
        for (int q = 1; q < count; ++q)
            to[start + sign * powers[count - q]] = from[q];
        return;
    }
    for (int q = 0; q < count; ++q) {
        const int i = powers[(count - q) % count];
        dst.re[i] = src[2 * q];
        dst.im[i] = src[2 * q + 1];
    }
}

// Of a prime length, by convolution of the points in the order of the powers of a primitive root.
template <class T>
void convolvePowers(const DftSpec<T>& spec, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor, T* work) {
    const auto& inner = *static_cast<const DftSpec<T>*>(spec.inner);
    const auto points = static_cast<size_t>(inner.length);
    T* const rest = work + 2 * points;
    const DftPoints<const T> from = interleaved<const T>(work);
    // Interleaved data are transformed as they are, split ones with their parts exchanged for the inverse.
    const bool isExchanged = src.step == 2 && src.im < src.re;
    const T re = isExchanged ? src.im[0] : src.re[0];
    const T im = isExchanged ? src.re[0] : src.im[0];
    gatherPowers(src, spec.powers, work, inner.length);
    transformPoints(inner, kFftForward, from, interleaved(work), T{1}, rest);
    (isExchanged ? dst.im : dst.re)[0] = factor * (re + work[0]);
    (isExchanged ? dst.re : dst.im)[0] = factor * (im + work[1]);
    dftKernels<T>().multiplyIn(from, spec.kernelSpectrum, work, points);
    // Point 0 adds to all values.
    work[0] += re;
    work[1] += im;
    transformPoints(inner, kFftInverse, from, interleaved(work), factor, rest);
    scatterPowers(work, spec.powers, dst, inner.length);
}

} // namespace

template <class T>
void transformPoints(const DftSpec<T>& spec, FftDirection direction, DftPoints<const T> src, DftPoints<T> dst, T factor,
                     T* work) {
    if (isPowerOfTwo(spec.length)) return transformPower(spec, direction, src, dst, factor, work);
    const DftKernels<T>& table = dftKernels<T>();
    if (spec.length <= kFixedDft && src.step == 2) {
        table.fixed[direction][spec.length](src.re, dst.re, factor);
        return;
    }
    if (direction == kFftInverse) {
        std::swap(src.re, src.im);
        std::swap(dst.re, dst.im);
    }
    const auto length = static_cast<size_t>(spec.length);
    if (spec.length <= kFixedDft) {
        table.fixedSplit[spec.length](src.re, src.im, dst.re, dst.im, factor);
    } else if (spec.isMixedRadix != 0) {
        table.mixed(spec.plan, src, dst, factor, work);
    } else if (spec.powers != nullptr) {
        convolvePowers(spec, src, dst, factor, work);
    } else if (spec.chirp != nullptr) {
        convolve(spec, src, dst, factor, work);
    } else {
        table.direct(length, spec.twiddles, src, dst, factor, work);
    }
}
template void transformPoints(const DftSpec<Zvp32f>&, FftDirection, DftPoints<const Zvp32f>, DftPoints<Zvp32f>, Zvp32f,
                              Zvp32f*);
template void transformPoints(const DftSpec<Zvp64f>&, FftDirection, DftPoints<const Zvp64f>, DftPoints<Zvp64f>, Zvp64f,
                              Zvp64f*);

namespace {

template <class T>
T factorOf(const DftSpec<T>& spec, FftDirection direction) {
    return (direction == kFftForward ? spec.scalesForward : spec.scalesInverse) != 0 ? spec.factor : T{1};
}

template <class T>
ZvpStatus complexDft(FftDirection direction, const DftSpec<T>& spec, const DftPoints<const T>& src,
                     const DftPoints<T>& dst, Zvp8u* buffer) {
    return withWork(spec, buffer,
                    [&](T* work) { transformPoints(spec, direction, src, dst, factorOf(spec, direction), work); });
}

template <class Opaque, class Complex>
ZvpStatus interleavedDft(FftDirection direction, const Complex* src, Complex* dst, const Opaque* spec, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(spec, src, dst)) return status;
    const auto& dft = *header(spec);
    if (dft.length <= kFixedDft && !isPowerOfTwo(dft.length)) {
        const auto& table = dftKernels<std::decay_t<decltype(dft.factor)>>();
        return table.fixed[direction][dft.length](parts(src), parts(dst), factorOf(dft, direction));
    }
    return complexDft(direction, dft, interleaved(parts(src)), interleaved(parts(dst)), buffer);
}

template <class Opaque, class T>
ZvpStatus splitDft(FftDirection direction, const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, const Opaque* spec,
                   Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(spec, srcRe, srcIm, dstRe, dstIm)) return status;
    return complexDft<T>(direction, *header(spec), {srcRe, srcIm, 1}, {dstRe, dstIm, 1}, buffer);
}

// ---- Real data ----

// Where the values 1, 2, ... of a spectrum lie.
constexpr ptrdiff_t pairsAt(RealFftLayout layout, bool isEven) {
    return layout == kFftCcs || (layout == kFftPerm && isEven) ? 2 : 1;
}
// Where X[length / 2] of an even length lies.
constexpr ptrdiff_t lastAt(RealFftLayout layout, ptrdiff_t length) {
    return layout == kFftCcs ? length : layout == kFftPerm ? 1 : length - 1;
}

template <class T>
void storeEnds(T first, T last, RealFftLayout layout, ptrdiff_t length, T* dst) {
    dst[0] = first;
    if (layout == kFftCcs) dst[1] = 0;
    if (length % 2 != 0) return;
    dst[lastAt(layout, length)] = last;
    if (layout == kFftCcs) dst[length + 1] = 0;
}

// Even lengths, by half as many complex values.
template <class T>
void transformPairs(const DftSpec<T>& spec, RealFftLayout layout, const T* src, T* dst, T factor, T* work) {
    const auto half = static_cast<size_t>(spec.length / 2);
    const auto& inner = *static_cast<const DftSpec<T>*>(spec.inner);
    transformPoints(inner, kFftForward, interleaved(src), interleaved(dst), T{1}, work);
    const T re = dst[0];
    const T im = dst[1];
    dftKernels<T>().convertPairs[kFftForward](dst + 2, dst + 2, half, spec.twiddles, factor);
    if (layout == kFftPack) std::memmove(dst + 1, dst + 2, (2 * half - 2) * sizeof(T));
    storeEnds(factor * (re + im), factor * (re - im), layout, spec.length, dst);
}
template <class T>
void transformPairsBack(const DftSpec<T>& spec, RealFftLayout layout, const T* src, T* dst, T factor, T* work) {
    const auto half = static_cast<size_t>(spec.length / 2);
    const auto& inner = *static_cast<const DftSpec<T>*>(spec.inner);
    const T first = src[0];
    const T last = src[lastAt(layout, spec.length)];
    const T* pairs = src + pairsAt(layout, true);
    if (src == dst && layout == kFftPack) {
        std::memmove(dst + 2, pairs, (2 * half - 2) * sizeof(T));
        pairs = dst + 2;
    }
    dftKernels<T>().convertPairs[kFftInverse](pairs, dst + 2, half, spec.twiddles, factor);
    dst[0] = factor * (first + last);
    dst[1] = factor * (first - last);
    transformPoints(inner, kFftInverse, interleaved<const T>(dst), interleaved(dst), T{1}, work);
}

// Odd lengths, as complex values in arrays of real and of imaginary parts.
template <class T>
void transformOdd(const DftSpec<T>& spec, RealFftLayout layout, const T* src, T* dst, T factor, T* re, T* im, T* zeros,
                  T* work) {
    std::fill_n(zeros, spec.length, T{0});
    transformPoints<T>(*static_cast<const DftSpec<T>*>(spec.inner), kFftForward, {src, zeros, 1}, {re, im, 1}, factor,
                       work);
    storeEnds(re[0], T{0}, layout, spec.length, dst);
    T* const pairs = dst + pairsAt(layout, false);
    for (int k = 1; k <= spec.length / 2; ++k) {
        pairs[2 * k - 2] = re[k];
        pairs[2 * k - 1] = im[k];
    }
}
template <class T>
void transformOddBack(const DftSpec<T>& spec, RealFftLayout layout, const T* src, T* dst, T factor, T* re, T* im,
                      T* rest, T* work) {
    const T* const pairs = src + pairsAt(layout, false);
    re[0] = src[0];
    im[0] = 0;
    for (int k = 1; k <= spec.length / 2; ++k) {
        re[k] = re[spec.length - k] = pairs[2 * k - 2];
        im[k] = pairs[2 * k - 1];
        im[spec.length - k] = -im[k];
    }
    transformPoints<T>(*static_cast<const DftSpec<T>*>(spec.inner), kFftInverse, {re, im, 1}, {dst, rest, 1}, factor,
                       work);
}

template <class T>
void transformReals(const DftSpec<T>& spec, FftDirection direction, RealFftLayout layout, const T* src, T* dst,
                    T factor, T* work) {
    const bool isForward = direction == kFftForward;
    if (isPowerOfTwo(spec.length)) {
        const RealFftKernels<T>& table = realFftKernels<T>();
        const int order = orderOf(spec.length);
        if (spec.fft == nullptr || order <= kFixedFftOrder) {
            table.fixed[direction][layout][factor != T{1}][order](src, dst, factor);
        } else {
            table.general[direction][layout](src, dst, factor, *static_cast<const FftSpec<T>*>(spec.fft), work);
        }
    } else if (spec.length % 2 == 0) {
        (isForward ? transformPairs<T> : transformPairsBack<T>)(spec, layout, src, dst, factor, work);
    } else {
        alignas(32) T arrays[3 * kFixedDft];
        const ptrdiff_t room = spec.length <= kFixedDft ? kFixedDft : (spec.length + 7) / 8 * 8;
        T* const array = spec.length <= kFixedDft ? arrays : work;
        T* const rest = spec.length <= kFixedDft ? nullptr : work + 3 * room;
        (isForward ? transformOdd<T> : transformOddBack<T>)(spec, layout, src, dst, factor, array, array + room,
                                                            array + 2 * room, rest);
    }
}

template <class Opaque, class T>
ZvpStatus realDft(FftDirection direction, RealFftLayout layout, const T* src, T* dst, const Opaque* opaque,
                  Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, src, dst)) return status;
    const DftSpec<T>& spec = *header(opaque);
    return withWork(spec, buffer, [&](T* work) {
        transformReals(spec, direction, layout, src, dst, factorOf(spec, direction), work);
    });
}

// ---- Integers ----

template <class Opaque>
ZvpStatus interleavedDft(FftDirection direction, const Zvp16sc* src, Zvp16sc* dst, const Opaque* opaque,
                         int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, src, dst)) return status;
    const auto& inner = *static_cast<const DftSpec<Zvp32f>*>(header(opaque)->inner);
    const int count = 2 * inner.length;
    const auto inPlace = [&](Zvp32f* data, Zvp8u* rest) {
        return complexDft(direction, inner, interleaved<const Zvp32f>(data), interleaved(data), rest);
    };
    return throughFloats<Zvp32f>(inPlace, header(opaque)->workSize, parts(src), count, parts(dst), count,
                                 static_cast<size_t>(count), scaleFactor, buffer);
}

template <class Opaque>
ZvpStatus splitDft(FftDirection direction, const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe, Zvp16s* dstIm,
                   const Opaque* opaque, int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, srcRe, srcIm, dstRe, dstIm)) return status;
    const auto& inner = *static_cast<const DftSpec<Zvp32f>*>(header(opaque)->inner);
    const auto inPlace = [&](Zvp32f* re, Zvp32f* im, Zvp8u* rest) {
        return complexDft<Zvp32f>(direction, inner, {re, im, 1}, {re, im, 1}, rest);
    };
    return splitThroughFloats<Zvp32f>(inPlace, header(opaque)->workSize, srcRe, srcIm, dstRe, dstIm, inner.length,
                                      scaleFactor, buffer);
}

template <class Opaque>
ZvpStatus realDft(FftDirection direction, RealFftLayout layout, const Zvp16s* src, Zvp16s* dst, const Opaque* opaque,
                  int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, src, dst)) return status;
    using Inner = ZvpsDFTSpec_R_32f;
    const auto* const inner = static_cast<const Inner*>(header(opaque)->inner);
    const int samples = header(inner)->length;
    const int spectrum = layout == kFftCcs ? 2 * (samples / 2 + 1) : samples;
    const bool isForward = direction == kFftForward;
    const auto inPlace = [&](Zvp32f* data, Zvp8u* rest) {
        return realDft(direction, layout, static_cast<const Zvp32f*>(data), data, inner, rest);
    };
    return throughFloats<Zvp32f>(inPlace, header(opaque)->workSize, src, isForward ? samples : spectrum, dst,
                                 isForward ? spectrum : samples, static_cast<size_t>(samples) + 2, scaleFactor, buffer);
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_COMPLEX_DFT(NAME, DIRECTION, TYPE)                                                                        \
    ZvpStatus zvps##NAME##_CToC_##TYPE(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsDFTSpec_C_##TYPE* spec,         \
                                       Zvp8u* buffer) {                                                                \
        return zvps::interleavedDft(zvps::DIRECTION, src, dst, spec, buffer);                                          \
    }
#define ZVPS_OUT_OF_ORDER_DFT(NAME, DIRECTION, TYPE)                                                                   \
    ZvpStatus zvps##NAME##_CToC_##TYPE(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsDFTOutOrdSpec_C_##TYPE* spec,   \
                                       Zvp8u* buffer) {                                                                \
        return zvps::interleavedDft(zvps::DIRECTION, src, dst, spec, buffer);                                          \
    }
#define ZVPS_SPLIT_DFT(NAME, DIRECTION, TYPE)                                                                          \
    ZvpStatus zvps##NAME##_CToC_##TYPE(const Zvp##TYPE* srcRe, const Zvp##TYPE* srcIm, Zvp##TYPE* dstRe,               \
                                       Zvp##TYPE* dstIm, const ZvpsDFTSpec_C_##TYPE* spec, Zvp8u* buffer) {            \
        return zvps::splitDft(zvps::DIRECTION, srcRe, srcIm, dstRe, dstIm, spec, buffer);                              \
    }
#define ZVPS_REAL_DFT(NAME, DIRECTION, LAYOUT, TYPE)                                                                   \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsDFTSpec_R_##TYPE* spec,              \
                                  Zvp8u* buffer) {                                                                     \
        return zvps::realDft(zvps::DIRECTION, zvps::LAYOUT, src, dst, spec, buffer);                                   \
    }
#define ZVPS_REAL_DFT_16S(NAME, DIRECTION, LAYOUT)                                                                     \
    ZvpStatus zvps##NAME##_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,     \
                                   Zvp8u* buffer) {                                                                    \
        return zvps::realDft(zvps::DIRECTION, zvps::LAYOUT, src, dst, spec, scaleFactor, buffer);                      \
    }
#define ZVPS_DFT_16S(NAME, DIRECTION)                                                                                  \
    ZvpStatus zvps##NAME##_CToC_16sc_Sfs(const Zvp16sc* src, Zvp16sc* dst, const ZvpsDFTSpec_C_16sc* spec,             \
                                         int scaleFactor, Zvp8u* buffer) {                                             \
        return zvps::interleavedDft(zvps::DIRECTION, src, dst, spec, scaleFactor, buffer);                             \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_CToC_16s_Sfs(const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe, Zvp16s* dstIm,        \
                                        const ZvpsDFTSpec_C_16s* spec, int scaleFactor, Zvp8u* buffer) {               \
        return zvps::splitDft(zvps::DIRECTION, srcRe, srcIm, dstRe, dstIm, spec, scaleFactor, buffer);                 \
    }

ZVPS_COMPLEX_DFT(DFTFwd, kFftForward, 32fc)
ZVPS_COMPLEX_DFT(DFTFwd, kFftForward, 64fc)
ZVPS_COMPLEX_DFT(DFTInv, kFftInverse, 32fc)
ZVPS_COMPLEX_DFT(DFTInv, kFftInverse, 64fc)

ZVPS_SPLIT_DFT(DFTFwd, kFftForward, 32f)
ZVPS_SPLIT_DFT(DFTFwd, kFftForward, 64f)
ZVPS_SPLIT_DFT(DFTInv, kFftInverse, 32f)
ZVPS_SPLIT_DFT(DFTInv, kFftInverse, 64f)

ZVPS_DFT_16S(DFTFwd, kFftForward)
ZVPS_DFT_16S(DFTInv, kFftInverse)

ZVPS_OUT_OF_ORDER_DFT(DFTOutOrdFwd, kFftForward, 32fc)
ZVPS_OUT_OF_ORDER_DFT(DFTOutOrdFwd, kFftForward, 64fc)
ZVPS_OUT_OF_ORDER_DFT(DFTOutOrdInv, kFftInverse, 32fc)
ZVPS_OUT_OF_ORDER_DFT(DFTOutOrdInv, kFftInverse, 64fc)

ZVPS_REAL_DFT(DFTFwd_RToPerm, kFftForward, kFftPerm, 32f)
ZVPS_REAL_DFT(DFTFwd_RToPerm, kFftForward, kFftPerm, 64f)
ZVPS_REAL_DFT_16S(DFTFwd_RToPerm, kFftForward, kFftPerm)
ZVPS_REAL_DFT(DFTFwd_RToPack, kFftForward, kFftPack, 32f)
ZVPS_REAL_DFT(DFTFwd_RToPack, kFftForward, kFftPack, 64f)
ZVPS_REAL_DFT_16S(DFTFwd_RToPack, kFftForward, kFftPack)
ZVPS_REAL_DFT(DFTFwd_RToCCS, kFftForward, kFftCcs, 32f)
ZVPS_REAL_DFT(DFTFwd_RToCCS, kFftForward, kFftCcs, 64f)
ZVPS_REAL_DFT_16S(DFTFwd_RToCCS, kFftForward, kFftCcs)
ZVPS_REAL_DFT(DFTInv_PermToR, kFftInverse, kFftPerm, 32f)
ZVPS_REAL_DFT(DFTInv_PermToR, kFftInverse, kFftPerm, 64f)
ZVPS_REAL_DFT_16S(DFTInv_PermToR, kFftInverse, kFftPerm)
ZVPS_REAL_DFT(DFTInv_PackToR, kFftInverse, kFftPack, 32f)
ZVPS_REAL_DFT(DFTInv_PackToR, kFftInverse, kFftPack, 64f)
ZVPS_REAL_DFT_16S(DFTInv_PackToR, kFftInverse, kFftPack)
ZVPS_REAL_DFT(DFTInv_CCSToR, kFftInverse, kFftCcs, 32f)
ZVPS_REAL_DFT(DFTInv_CCSToR, kFftInverse, kFftCcs, 64f)
ZVPS_REAL_DFT_16S(DFTInv_CCSToR, kFftInverse, kFftCcs)
