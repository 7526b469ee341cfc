#include "correlation/correlation.hpp"

namespace zvps::ZVPS_LEVEL {

extern const CorrelationKernels correlationKernels;
const CorrelationKernels correlationKernels = {
#define ZVPS_KERNEL(slot, type, parts) fewSums<type, parts>,
    ZVPS_FIRS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
