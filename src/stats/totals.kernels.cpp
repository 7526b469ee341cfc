#include "stats/totals.hpp"

namespace zvps::ZVPS_LEVEL {

extern const TotalKernels totalKernels;
const TotalKernels totalKernels = {
#define ZVPS_KERNEL(slot, type, value, result) total<value, result, type>,
    ZVPS_TOTALS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
        total16,
    total16Complex,
    moments16,
    moments<Zvp32f>,
    moments<Zvp64f>,
    countBetween,
};

} // namespace zvps::ZVPS_LEVEL
