// The floating-point transforms.
#include "transforms/fft_objects.hpp"

namespace zvps {
namespace {

template <class T, class General, class... Data>
[[gnu::noinline]] ZvpStatus runGeneral(const FftSpec<T>& spec, T factor, General general, Zvp8u* buffer, Data... data) {
    if (spec.workSize == 0) return general(data..., factor, spec, nullptr);
    const WorkArea work(buffer, spec.workSize);
    if (!work) return zvpStsNoMemory;
    return general(data..., factor, spec, work.as<T>());
}

// Small orders by their fixed routines, without a work area.
template <class T, class Fixed, int kFixed, class General, class... Data>
ZvpStatus run(const FftSpec<T>& spec, FftDirection direction, const Fixed (&fixed)[2][kFixed], General general,
              Zvp8u* buffer, Data... data) {
    const bool scales = (direction == kFftForward ? spec.scalesForward : spec.scalesInverse) != 0;
    if (spec.order < kFixed) return fixed[scales ? 1 : 0][spec.order](data..., spec.factor);
    return runGeneral(spec, scales ? spec.factor : T{1}, general, buffer, data...);
}

template <class Opaque, class Complex>
ZvpStatus complexFft(FftDirection direction, const Complex* src, Complex* dst, const Opaque* spec, Zvp8u* buffer) {
    using T = decltype(Complex::re);
    if (const ZvpStatus status = checkTransform(spec, src, dst)) return status;
    const FftKernels<T>& table = fftKernels<T>();
    return run(*header(spec), direction, table.fixedComplex[direction], table.complex[direction], buffer,
               reinterpret_cast<const T*>(src), reinterpret_cast<T*>(dst));
}

template <class Opaque, class T>
ZvpStatus splitFft(FftDirection direction, const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, const Opaque* spec,
                   Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(spec, srcRe, srcIm, dstRe, dstIm)) return status;
    const FftKernels<T>& table = fftKernels<T>();
    return run(*header(spec), direction, table.fixedSplit[direction], table.split[direction], buffer, srcRe, srcIm,
               dstRe, dstIm);
}

template <class Opaque, class T>
ZvpStatus realFft(FftDirection direction, RealFftLayout layout, const T* src, T* dst, const Opaque* spec,
                  Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(spec, src, dst)) return status;
    const RealFftKernels<T>& table = realFftKernels<T>();
    return run(*header(spec), direction, table.fixed[direction][layout], table.general[direction][layout], buffer, src,
               dst);
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_COMPLEX_FFT(NAME, DIRECTION, TYPE)                                                                        \
    ZvpStatus NAME##_##TYPE(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsFFTSpec_C_##TYPE* spec, Zvp8u* buffer) {   \
        return zvps::complexFft(zvps::DIRECTION, src, dst, spec, buffer);                                              \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_I(Zvp##TYPE* srcDst, const ZvpsFFTSpec_C_##TYPE* spec, Zvp8u* buffer) {                  \
        return zvps::complexFft(zvps::DIRECTION, srcDst, srcDst, spec, buffer);                                        \
    }
#define ZVPS_SPLIT_FFT(NAME, DIRECTION, TYPE)                                                                          \
    ZvpStatus NAME##_##TYPE(const Zvp##TYPE* srcRe, const Zvp##TYPE* srcIm, Zvp##TYPE* dstRe, Zvp##TYPE* dstIm,        \
                            const ZvpsFFTSpec_C_##TYPE* spec, Zvp8u* buffer) {                                         \
        return zvps::splitFft(zvps::DIRECTION, srcRe, srcIm, dstRe, dstIm, spec, buffer);                              \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_I(Zvp##TYPE* srcDstRe, Zvp##TYPE* srcDstIm, const ZvpsFFTSpec_C_##TYPE* spec,            \
                                Zvp8u* buffer) {                                                                       \
        return zvps::splitFft(zvps::DIRECTION, srcDstRe, srcDstIm, srcDstRe, srcDstIm, spec, buffer);                  \
    }
#define ZVPS_REAL_FFT(NAME, DIRECTION, LAYOUT, TYPE)                                                                   \
    ZvpStatus NAME##_##TYPE(const Zvp##TYPE* src, Zvp##TYPE* dst, const ZvpsFFTSpec_R_##TYPE* spec, Zvp8u* buffer) {   \
        return zvps::realFft(zvps::DIRECTION, zvps::LAYOUT, src, dst, spec, buffer);                                   \
    }                                                                                                                  \
    ZvpStatus NAME##_##TYPE##_I(Zvp##TYPE* srcDst, const ZvpsFFTSpec_R_##TYPE* spec, Zvp8u* buffer) {                  \
        return zvps::realFft(zvps::DIRECTION, zvps::LAYOUT, srcDst, srcDst, spec, buffer);                             \
    }

ZVPS_COMPLEX_FFT(zvpsFFTFwd_CToC, kFftForward, 32fc)
ZVPS_COMPLEX_FFT(zvpsFFTFwd_CToC, kFftForward, 64fc)
ZVPS_COMPLEX_FFT(zvpsFFTInv_CToC, kFftInverse, 32fc)
ZVPS_COMPLEX_FFT(zvpsFFTInv_CToC, kFftInverse, 64fc)

ZVPS_SPLIT_FFT(zvpsFFTFwd_CToC, kFftForward, 32f)
ZVPS_SPLIT_FFT(zvpsFFTFwd_CToC, kFftForward, 64f)
ZVPS_SPLIT_FFT(zvpsFFTInv_CToC, kFftInverse, 32f)
ZVPS_SPLIT_FFT(zvpsFFTInv_CToC, kFftInverse, 64f)

ZVPS_REAL_FFT(zvpsFFTFwd_RToPerm, kFftForward, kFftPerm, 32f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToPerm, kFftForward, kFftPerm, 64f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToPack, kFftForward, kFftPack, 32f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToPack, kFftForward, kFftPack, 64f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToCCS, kFftForward, kFftCcs, 32f)
ZVPS_REAL_FFT(zvpsFFTFwd_RToCCS, kFftForward, kFftCcs, 64f)
ZVPS_REAL_FFT(zvpsFFTInv_PermToR, kFftInverse, kFftPerm, 32f)
ZVPS_REAL_FFT(zvpsFFTInv_PermToR, kFftInverse, kFftPerm, 64f)
ZVPS_REAL_FFT(zvpsFFTInv_PackToR, kFftInverse, kFftPack, 32f)
ZVPS_REAL_FFT(zvpsFFTInv_PackToR, kFftInverse, kFftPack, 64f)
ZVPS_REAL_FFT(zvpsFFTInv_CCSToR, kFftInverse, kFftCcs, 32f)
ZVPS_REAL_FFT(zvpsFFTInv_CCSToR, kFftInverse, kFftCcs, 64f)
