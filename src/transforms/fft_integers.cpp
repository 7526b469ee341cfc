// The transforms of integers: through floating point, and the smallest ones of 16 bits in integers.
#include "core/elements.hpp"
#include "transforms/through_floats.hpp"

#include <algorithm>
#include <limits>
#include <type_traits>

namespace zvps {
namespace {

// ---- In integers ----

constexpr int kMostPoints = 8;

struct IntegerPoints {
    int64_t re[kMostPoints];
    int64_t im[kMostPoints];
};

// v / sqrt(2), for |v| up to 2^32
int64_t overRoot2(int64_t v) {
    constexpr int64_t kHalfRoot = 1518500250; // sqrt(1/2) * 2^31
    return (v * kHalfRoot + (int64_t{1} << 30)) >> 31;
}

// v * 2^-places to nearest, ties to even, saturated, for |v| up to 2^33.
Zvp16s narrowed(int64_t v, int64_t places) {
    if (places > 0) {
        const auto shift = static_cast<int>(std::min<int64_t>(places, 40));
        v = (v + (int64_t{1} << (shift - 1)) - 1 + ((v >> shift) & 1)) >> shift;
    } else {
        v *= int64_t{1} << std::min<int64_t>(-places, 16);
    }
    using Limits = std::numeric_limits<Zvp16s>;
    return static_cast<Zvp16s>(std::clamp<int64_t>(v, Limits::min(), Limits::max()));
}

// Transforms 2^order points whose magnitudes leave room for their sum in 33 bits.
void transformIntegers(IntegerPoints& x, int order, FftDirection direction) {
    static constexpr int kReversed[kMostPoints] = {0, 4, 2, 6, 1, 5, 3, 7};
    IntegerPoints y{};
    const int points = 1 << order;
    for (int i = 0; i < points; ++i) {
        const int j = kReversed[i] >> (3 - order);
        y.re[i] = x.re[j];
        y.im[i] = x.im[j];
    }
    const int sign = direction == kFftForward ? 1 : -1;
    for (int half = 1; half < points; half *= 2) {
        for (int i = 0; i < points; i += 2 * half) {
            for (int j = 0; j < half; ++j) {
                // The twiddle is that of an eighth of a turn, eighths times, clockwise in the forward transform.
                const int eighths = j * (4 / half);
                int64_t re = y.re[i + j + half];
                int64_t im = y.im[i + j + half];
                if (eighths & 2) {
                    const int64_t held = re;
                    re = sign * im;
                    im = -sign * held;
                }
                if (eighths & 1) {
                    const int64_t held = re;
                    re = overRoot2(re + sign * im);
                    im = overRoot2(im - sign * held);
                }
                y.re[i + j + half] = y.re[i + j] - re;
                y.im[i + j + half] = y.im[i + j] - im;
                y.re[i + j] += re;
                y.im[i + j] += im;
            }
        }
    }
    x = y;
}

// Points `step` elements apart. The input is raised to make use of 32 bits.
void inIntegers(const FftSpec16s& spec, FftDirection direction, const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe,
                Zvp16s* dstIm, ptrdiff_t step, int scaleFactor) {
    const int points = 1 << spec.order;
    const int raised = 15 - spec.order;
    IntegerPoints x{};
    for (int i = 0; i < points; ++i) {
        x.re[i] = int64_t{srcRe[i * step]} * (1 << raised);
        x.im[i] = int64_t{srcIm[i * step]} * (1 << raised);
    }
    transformIntegers(x, spec.order, direction);
    const bool scales = (direction == kFftForward ? spec.scalesForward : spec.scalesInverse) != 0;
    const int halvings = scales ? spec.halvings : 0;
    const int64_t places = int64_t{scaleFactor} + raised + halvings / 2;
    for (int i = 0; i < points; ++i) {
        dstRe[i * step] = narrowed(halvings % 2 == 0 ? x.re[i] : overRoot2(x.re[i]), places);
        dstIm[i * step] = narrowed(halvings % 2 == 0 ? x.im[i] : overRoot2(x.im[i]), places);
    }
}

// ---- By kind of the data ----

// Whether the transform has been done in integers.
template <class Header, class... Arguments>
bool isDoneInIntegers([[maybe_unused]] const Header& spec, [[maybe_unused]] Arguments... arguments) {
    if constexpr (std::is_same_v<Header, FftSpec16s>) {
        if (spec.inner == nullptr) {
            inIntegers(spec, arguments...);
            return true;
        }
    }
    return false;
}

template <class Opaque, class Complex, class F, class Inner>
ZvpStatus complexFft(FftDirection direction, ZvpStatus (*transform)(F*, const Inner*, Zvp8u*), const Complex* src,
                     Complex* dst, const Opaque* opaque, int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, src, dst)) return status;
    const auto& spec = *header(opaque);
    const auto* const from = parts(src);
    auto* const to = parts(dst);
    if (isDoneInIntegers(spec, direction, from, from + 1, to, to + 1, 2, scaleFactor)) return zvpStsOk;
    const int count = 2 << spec.order;
    const auto* const inner = static_cast<const Inner*>(spec.inner);
    const auto inPlace = [&](auto* data, Zvp8u* rest) { return transform(reinterpret_cast<F*>(data), inner, rest); };
    return throughFloats<Part<F>>(inPlace, spec.workSize, from, count, to, count, static_cast<size_t>(count),
                                  scaleFactor, buffer);
}

template <class Opaque, class T, class F, class Inner>
ZvpStatus splitFft(FftDirection direction, ZvpStatus (*transform)(F*, F*, const Inner*, Zvp8u*), const T* srcRe,
                   const T* srcIm, T* dstRe, T* dstIm, const Opaque* opaque, int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, srcRe, srcIm, dstRe, dstIm)) return status;
    const auto& spec = *header(opaque);
    if (isDoneInIntegers(spec, direction, srcRe, srcIm, dstRe, dstIm, 1, scaleFactor)) return zvpStsOk;
    const auto* const inner = static_cast<const Inner*>(spec.inner);
    const auto inPlace = [&](F* re, F* im, Zvp8u* rest) { return transform(re, im, inner, rest); };
    return splitThroughFloats<F>(inPlace, spec.workSize, srcRe, srcIm, dstRe, dstIm, 1 << spec.order, scaleFactor,
                                 buffer);
}

template <class Opaque, class Src, class Dst, class F, class Inner>
ZvpStatus realFft(FftDirection direction, RealFftLayout layout, ZvpStatus (*transform)(F*, const Inner*, Zvp8u*),
                  const Src* src, Dst* dst, const Opaque* opaque, int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, src, dst)) return status;
    const auto& spec = *header(opaque);
    const int samples = 1 << spec.order;
    const int spectrum = layout == kFftCcs ? 2 * (samples / 2 + 1) : samples;
    const bool isForward = direction == kFftForward;
    const auto* const inner = static_cast<const Inner*>(spec.inner);
    const auto inPlace = [&](F* data, Zvp8u* rest) { return transform(data, inner, rest); };
    return throughFloats<F>(inPlace, spec.workSize, src, isForward ? samples : spectrum, dst,
                            isForward ? spectrum : samples, static_cast<size_t>(samples) + 2, scaleFactor, buffer);
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_COMPLEX_FFT(NAME, DIRECTION, TYPE, INNER)                                                                 \
    ZvpStatus NAME##_##TYPE##_Sfs(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsFFTSpec_C_##TYPE* spec,              \
                                  int scaleFactor, Zvp8u* buffer) {                                                    \
        return zvps::complexFft(zvps::DIRECTION, NAME##_##INNER##_I, src, dst, spec, scaleFactor, buffer);             \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_ISfs(Zvp##TYPE* srcDst, const ZvpsFFTSpec_C_##TYPE* spec, int scaleFactor,               \
                                   Zvp8u* buffer) {                                                                    \
        return NAME##_##TYPE##_Sfs(srcDst, srcDst, spec, scaleFactor, buffer);                                         \
    }
#define ZVPS_SPLIT_FFT(NAME, DIRECTION, TYPE, INNER)                                                                   \
    ZvpStatus NAME##_##TYPE##_Sfs(const Zvp##TYPE* srcRe, const Zvp##TYPE* srcIm, Zvp##TYPE* dstRe, Zvp##TYPE* dstIm,  \
                                  const ZvpsFFTSpec_C_##TYPE* spec, int scaleFactor, Zvp8u* buffer) {                  \
        return zvps::splitFft(zvps::DIRECTION, NAME##_##INNER##_I, srcRe, srcIm, dstRe, dstIm, spec, scaleFactor,      \
                              buffer);                                                                                 \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_ISfs(Zvp##TYPE* srcDstRe, Zvp##TYPE* srcDstIm, const ZvpsFFTSpec_C_##TYPE* spec,         \
                                   int scaleFactor, Zvp8u* buffer) {                                                   \
        return NAME##_##TYPE##_Sfs(srcDstRe, srcDstIm, srcDstRe, srcDstIm, spec, scaleFactor, buffer);                 \
    }
#define ZVPS_REAL_FFT(NAME, DIRECTION, LAYOUT, TYPE, INNER)                                                            \
    ZvpStatus NAME##_##TYPE##_Sfs(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsFFTSpec_R_##TYPE* spec,              \
                                  int scaleFactor, Zvp8u* buffer) {                                                    \
        return zvps::realFft(zvps::DIRECTION, zvps::LAYOUT, NAME##_##INNER##_I, src, dst, spec, scaleFactor, buffer);  \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_ISfs(Zvp##TYPE* srcDst, const ZvpsFFTSpec_R_##TYPE* spec, int scaleFactor,               \
                                   Zvp8u* buffer) {                                                                    \
        return NAME##_##TYPE##_Sfs(srcDst, srcDst, spec, scaleFactor, buffer);                                         \
    }

ZVPS_COMPLEX_FFT(zvpsFFTFwd_CToC, kFftForward, 16sc, 32fc)
ZVPS_COMPLEX_FFT(zvpsFFTFwd_CToC, kFftForward, 32sc, 64fc)
ZVPS_COMPLEX_FFT(zvpsFFTInv_CToC, kFftInverse, 16sc, 32fc)
ZVPS_COMPLEX_FFT(zvpsFFTInv_CToC, kFftInverse, 32sc, 64fc)

ZVPS_SPLIT_FFT(zvpsFFTFwd_CToC, kFftForward, 16s, 32f)
ZVPS_SPLIT_FFT(zvpsFFTFwd_CToC, kFftForward, 32s, 64f)
ZVPS_SPLIT_FFT(zvpsFFTInv_CToC, kFftInverse, 16s, 32f)
ZVPS_SPLIT_FFT(zvpsFFTInv_CToC, kFftInverse, 32s, 64f)

ZVPS_REAL_FFT(zvpsFFTFwd_RToPerm, kFftForward, kFftPerm, 16s, 32f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToPerm, kFftForward, kFftPerm, 32s, 64f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToPack, kFftForward, kFftPack, 16s, 32f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToPack, kFftForward, kFftPack, 32s, 64f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToCCS, kFftForward, kFftCcs, 16s, 32f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToCCS, kFftForward, kFftCcs, 32s, 64f)
ZVPS_REAL_FFT(zvpsFFTInv_PermToR, kFftInverse, kFftPerm, 16s, 32f)
ZVPS_REAL_FFT(zvpsFFTInv_PermToR, kFftInverse, kFftPerm, 32s, 64f)
ZVPS_REAL_FFT(zvpsFFTInv_PackToR, kFftInverse, kFftPack, 16s, 32f)
ZVPS_REAL_FFT(zvpsFFTInv_PackToR, kFftInverse, kFftPack, 32s, 64f)
ZVPS_REAL_FFT(zvpsFFTInv_CCSToR, kFftInverse, kFftCcs, 16s, 32f)
ZVPS_REAL_FFT(zvpsFFTInv_CCSToR, kFftInverse, kFftCcs, 32s, 64f)

ZvpStatus zvpsFFTFwd_RToCCS_16s32s_Sfs(const Zvp16s* src, Zvp32s* dst, const ZvpsFFTSpec_R_16s32s* spec,
                                       int scaleFactor, Zvp8u* buffer) {
    return zvps::realFft(zvps::kFftForward, zvps::kFftCcs, zvpsFFTFwd_RToCCS_32f_I, src, dst, spec, scaleFactor,
                         buffer);
}
ZvpStatus zvpsFFTInv_CCSToR_32s16s_Sfs(const Zvp32s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s32s* spec,
                                       int scaleFactor, Zvp8u* buffer) {
    return zvps::realFft(zvps::kFftInverse, zvps::kFftCcs, zvpsFFTInv_CCSToR_32f_I, src, dst, spec, scaleFactor,
                         buffer);
}
