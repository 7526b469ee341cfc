#include "transforms/fft_plain.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

// The first 16 of the twiddles of 32 points.
template <class T>
constexpr T kSmallTwiddles[32] = {T(1.0),
                                  T(-0.0),
                                  T(0.98078528040323044913),
                                  T(-0.19509032201612826785),
                                  T(0.92387953251128675613),
                                  T(-0.38268343236508977173),
                                  T(0.83146961230254523708),
                                  T(-0.55557023301960222474),
                                  T(0.70710678118654752440),
                                  T(-0.70710678118654752440),
                                  T(0.55557023301960222474),
                                  T(-0.83146961230254523708),
                                  T(0.38268343236508977173),
                                  T(-0.92387953251128675613),
                                  T(0.19509032201612826785),
                                  T(-0.98078528040323044913),
                                  T(0.0),
                                  T(-1.0),
                                  T(-0.19509032201612826785),
                                  T(-0.98078528040323044913),
                                  T(-0.38268343236508977173),
                                  T(-0.92387953251128675613),
                                  T(-0.55557023301960222474),
                                  T(-0.83146961230254523708),
                                  T(-0.70710678118654752440),
                                  T(-0.70710678118654752440),
                                  T(-0.83146961230254523708),
                                  T(-0.55557023301960222474),
                                  T(-0.92387953251128675613),
                                  T(-0.38268343236508977173),
                                  T(-0.98078528040323044913),
                                  T(-0.19509032201612826785)};

template <class T>
Twiddles<T> smallTwiddles(int order) {
    return {kSmallTwiddles<T>, size_t{1} << (kFixedFftOrder - order)};
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedComplex(const T* src, T* dst, T factor) {
    plainFft<direction, T>({src, src + 1, 2}, {dst, dst + 1, 2}, order, smallTwiddles<T>(order), scales ? factor : 1);
    return zvpStsOk;
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedSplit(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor) {
    plainFft<direction, T>({srcRe, srcIm, 1}, {dstRe, dstIm, 1}, order, smallTwiddles<T>(order), scales ? factor : 1);
    return zvpStsOk;
}

template <FftDirection direction, class T>
void realFft(const T* src, T* dst, int order, RealFftLayout layout, Twiddles<T> complex, Twiddles<T> real, T factor) {
    if constexpr (direction == kFftForward) {
        plainRealForward(src, dst, order, layout, complex, real, factor);
    } else {
        plainRealInverse(src, dst, order, layout, complex, real, factor);
    }
}

template <class T, FftDirection direction, RealFftLayout layout, bool scales, int order>
ZvpStatus fixedReal(const T* src, T* dst, T factor) {
    const Twiddles<T> real = smallTwiddles<T>(order);
    realFft<direction>(src, dst, order, layout, {real.values, 2 * real.step}, real, scales ? factor : T{1});
    return zvpStsOk;
}

template <class T, FftDirection direction>
ZvpStatus complexFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T*) {
    plainFft<direction, T>({src, src + 1, 2}, {dst, dst + 1, 2}, spec.order, {spec.twiddles, 1}, factor);
    return zvpStsOk;
}

template <class T, FftDirection direction>
ZvpStatus splitFft(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor, const FftSpec<T>& spec, T*) {
    plainFft<direction, T>({srcRe, srcIm, 1}, {dstRe, dstIm, 1}, spec.order, {spec.twiddles, 1}, factor);
    return zvpStsOk;
}

template <class T, FftDirection direction, RealFftLayout layout>
ZvpStatus realFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T*) {
    realFft<direction>(src, dst, spec.order, layout, {spec.twiddles, 1}, {spec.tables[0], 1}, factor);
    return zvpStsOk;
}

} // namespace

#define ZVPS_ORDERS(ROUTINE, ...)                                                                                      \
    {                                                                                                                  \
        ROUTINE<__VA_ARGS__, 0>, ROUTINE<__VA_ARGS__, 1>, ROUTINE<__VA_ARGS__, 2>, ROUTINE<__VA_ARGS__, 3>,            \
            ROUTINE<__VA_ARGS__, 4>, ROUTINE<__VA_ARGS__, 5>,                                                          \
    }
#define ZVPS_FIXED(ROUTINE, ...)                                                                                       \
    { ZVPS_ORDERS(ROUTINE, __VA_ARGS__, false), ZVPS_ORDERS(ROUTINE, __VA_ARGS__, true) }
#define ZVPS_BOTH_WAYS(MAKE, ...)                                                                                      \
    { MAKE(__VA_ARGS__, kFftForward), MAKE(__VA_ARGS__, kFftInverse) }
#define ZVPS_FIXED_REAL(ROUTINE, ...)                                                                                  \
    {                                                                                                                  \
        ZVPS_FIXED(ROUTINE, __VA_ARGS__, kFftPerm), ZVPS_FIXED(ROUTINE, __VA_ARGS__, kFftPack),                        \
            ZVPS_FIXED(ROUTINE, __VA_ARGS__, kFftCcs),                                                                 \
    }
#define ZVPS_GENERAL_REAL(ROUTINE, ...)                                                                                \
    { ROUTINE<__VA_ARGS__, kFftPerm>, ROUTINE<__VA_ARGS__, kFftPack>, ROUTINE<__VA_ARGS__, kFftCcs> }
#define ZVPS_FFT_KERNELS(T)                                                                                            \
    {                                                                                                                  \
        ZVPS_BOTH_WAYS(ZVPS_FIXED, fixedComplex, T), ZVPS_BOTH_WAYS(ZVPS_FIXED, fixedSplit, T),                        \
            ZVPS_BOTH_WAYS(ZVPS_FIXED_REAL, fixedReal, T), {complexFft<T, kFftForward>, complexFft<T, kFftInverse>},   \
            {splitFft<T, kFftForward>, splitFft<T, kFftInverse>}, ZVPS_BOTH_WAYS(ZVPS_GENERAL_REAL, realFft, T),       \
    }

extern const FftKernels<float> fft32fKernels;
const FftKernels<float> fft32fKernels = ZVPS_FFT_KERNELS(float);
extern const FftKernels<double> fft64fKernels;
const FftKernels<double> fft64fKernels = ZVPS_FFT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
