#include "transforms/dft.hpp"

namespace zvps::ZVPS_LEVEL {

#define ZVPS_DFT_KERNELS(T)                                                                                            \
    {                                                                                                                  \
        fixedDfts<T>, mixedDft<T>, directDft<T>, multiplyChirp<T>, multiplyConj<T>, multiplyConjChirp<T>,              \
            {convertPairs<T, kFftForward>, convertPairs<T, kFftInverse>},                                              \
    }

extern const DftKernels<float> dft32fKernels;
const DftKernels<float> dft32fKernels = ZVPS_DFT_KERNELS(float);
extern const DftKernels<double> dft64fKernels;
const DftKernels<double> dft64fKernels = ZVPS_DFT_KERNELS(double);

} // namespace zvps::ZVPS_LEVEL
