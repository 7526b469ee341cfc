#include "filters/fir_multirate.hpp"

namespace zvps::ZVPS_LEVEL {

extern const MultirateFilterKernels multirateFilterKernels;
const MultirateFilterKernels multirateFilterKernels = {
#define ZVPS_KERNEL(slot, type, parts) {laneSums<type, parts>, addGroups<type, parts>, phaseSums<type, parts>},
    ZVPS_MULTIRATE_FIRS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
