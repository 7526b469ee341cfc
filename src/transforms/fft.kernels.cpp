#include "transforms/fft_complex.hpp"

namespace zvps::ZVPS_LEVEL {

#define ZVPS_ORDERS(ROUTINE, ...)                                                                                      \
    {                                                                                                                  \
        ROUTINE<__VA_ARGS__, 0>, ROUTINE<__VA_ARGS__, 1>, ROUTINE<__VA_ARGS__, 2>, ROUTINE<__VA_ARGS__, 3>,            \
            ROUTINE<__VA_ARGS__, 4>, ROUTINE<__VA_ARGS__, 5>, ROUTINE<__VA_ARGS__, 6>,                                 \
    }
#define ZVPS_FIXED(ROUTINE, ...)                                                                                       \
    { ZVPS_ORDERS(ROUTINE, __VA_ARGS__, false), ZVPS_ORDERS(ROUTINE, __VA_ARGS__, true) }
#define ZVPS_BOTH_WAYS(MAKE, ...)                                                                                      \
    { MAKE(__VA_ARGS__, kFftForward), MAKE(__VA_ARGS__, kFftInverse) }
#define ZVPS_FFT_KERNELS(T)                                                                                            \
    {                                                                                                                  \
        ZVPS_BOTH_WAYS(ZVPS_FIXED, fixedComplex, T), ZVPS_BOTH_WAYS(ZVPS_FIXED, fixedSplit, T),                        \
            {complexFft<T, kFftForward>, complexFft<T, kFftInverse>},                                                  \
            {splitFft<T, kFftForward>, splitFft<T, kFftInverse>},                                                      \
    }

extern const FftKernels<float> fft32fKernels;
const FftKernels<float> fft32fKernels = ZVPS_FFT_KERNELS(float);
extern const FftKernels<double> fft64fKernels;
const FftKernels<double> fft64fKernels = ZVPS_FFT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
