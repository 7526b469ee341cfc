#include "stats/norms.hpp"

namespace zvps::ZVPS_LEVEL {

extern const NormKernels normKernels;
const NormKernels normKernels = {
#define ZVPS_KERNELS(slot, type, result, operation, work, difference, value)                                           \
    {normOf<operation, work, difference, value, type>, normOfDifference<operation, work, difference, value, type>},
    ZVPS_NORMS(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNELS(slot) {slot##Of, slot##OfDifference},
        ZVPS_NORMS_16S(ZVPS_KERNELS)
#undef ZVPS_KERNELS
};

} // namespace zvps::ZVPS_LEVEL
