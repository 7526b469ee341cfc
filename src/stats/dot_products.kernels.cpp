#include "stats/dot_products.hpp"

namespace zvps::ZVPS_LEVEL {

extern const DotKernels dotKernels;
const DotKernels dotKernels = {
#define ZVPS_KERNEL(slot, operation, type1, type2, value, result) operation<value, result>,
    ZVPS_DOT_PRODUCTS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
