#include "transforms/dft.hpp"

namespace zvps::ZVPS_LEVEL {

#define ZVPS_LENGTHS(ROUTINE, ...)                                                                                     \
    {                                                                                                                  \
        nullptr, nullptr, nullptr, ROUTINE<__VA_ARGS__, 3>, nullptr, ROUTINE<__VA_ARGS__, 5>, ROUTINE<__VA_ARGS__, 6>, \
            ROUTINE<__VA_ARGS__, 7>, nullptr, ROUTINE<__VA_ARGS__, 9>, ROUTINE<__VA_ARGS__, 10>,                       \
            ROUTINE<__VA_ARGS__, 11>, ROUTINE<__VA_ARGS__, 12>, ROUTINE<__VA_ARGS__, 13>, ROUTINE<__VA_ARGS__, 14>,    \
            ROUTINE<__VA_ARGS__, 15>, nullptr,                                                                         \
    }
#define ZVPS_DFT_KERNELS(T)                                                                                            \
    {                                                                                                                  \
        {ZVPS_LENGTHS(fixedDft, T, kFftForward), ZVPS_LENGTHS(fixedDft, T, kFftInverse)},                              \
            ZVPS_LENGTHS(fixedSplitDft, T), mixedDft<T>, directDft<T>, multiplyIn<T>, multiplyOut<T>,                  \
            {convertPairs<T, kFftForward>, convertPairs<T, kFftInverse>},                                              \
    }

extern const DftKernels<float> dft32fKernels;
const DftKernels<float> dft32fKernels = ZVPS_DFT_KERNELS(float);
extern const DftKernels<double> dft64fKernels;
const DftKernels<double> dft64fKernels = ZVPS_DFT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
