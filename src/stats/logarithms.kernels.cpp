#include "stats/logarithms.hpp"

namespace zvps::ZVPS_LEVEL {

extern const LogKernels logKernels;
const LogKernels logKernels = {
#define ZVPS_KERNEL(slot, type, factors) logProduct<factors, type>,
    ZVPS_LOG_PRODUCTS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
