#include "transforms/fft_complex.hpp"

namespace zvps::ZVPS_LEVEL {

#define ZVPS_ORDERS(ROUTINE, ...)                                                                                      \
    ROUTINE<__VA_ARGS__, 0>, ROUTINE<__VA_ARGS__, 1>, ROUTINE<__VA_ARGS__, 2>, ROUTINE<__VA_ARGS__, 3>,                \
        ROUTINE<__VA_ARGS__, 4>, ROUTINE<__VA_ARGS__, 5>
#define ZVPS_COMPLEX_ORDERS(...)                                                                                       \
    {                                                                                                                  \
        ZVPS_ORDERS(fixedComplex, __VA_ARGS__), fixedComplex<__VA_ARGS__, 6>, fixedComplex<__VA_ARGS__, 7>,            \
            fixedComplex<__VA_ARGS__, 8>,                                                                              \
    }
#define ZVPS_SPLIT_ORDERS(...)                                                                                         \
    { ZVPS_ORDERS(fixedSplit, __VA_ARGS__) }
#define ZVPS_FIXED(ORDERS, ...)                                                                                        \
    { ORDERS(__VA_ARGS__, false), ORDERS(__VA_ARGS__, true) }
#define ZVPS_BOTH_WAYS(MAKE, ...)                                                                                      \
    { MAKE(__VA_ARGS__, kFftForward), MAKE(__VA_ARGS__, kFftInverse) }
#define ZVPS_FFT_KERNELS(T)                                                                                            \
    {                                                                                                                  \
        ZVPS_BOTH_WAYS(ZVPS_FIXED, ZVPS_COMPLEX_ORDERS, T), ZVPS_BOTH_WAYS(ZVPS_FIXED, ZVPS_SPLIT_ORDERS, T),          \
            {complexFft<T, kFftForward>, complexFft<T, kFftInverse>},                                                  \
            {splitFft<T, kFftForward>, splitFft<T, kFftInverse>},                                                      \
    }

extern const FftKernels<float> fft32fKernels;
const FftKernels<float> fft32fKernels = ZVPS_FFT_KERNELS(float);
extern const FftKernels<double> fft64fKernels;
const FftKernels<double> fft64fKernels = ZVPS_FFT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
