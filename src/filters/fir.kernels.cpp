#include "filters/fir.hpp"
#include "filters/fir_integer.hpp"

namespace zvps::ZVPS_LEVEL {

extern const FilterKernels filterKernels;
const FilterKernels filterKernels = {
#define ZVPS_KERNEL(slot, type, parts) {fir<type, parts>, firOne<type, parts, false>, firOne<type, parts, true>},
    ZVPS_FIRS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
#define ZVPS_KERNEL(slot, parts) {integerFir<parts>, integerFirOne<parts>},
        ZVPS_INTEGER_FIRS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
            sparseFir,
};

} // namespace zvps::ZVPS_LEVEL
