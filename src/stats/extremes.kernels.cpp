#include "stats/extremes.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <class Order, class Work, class T>
constexpr ExtremeKernels<T> extremeKernels() {
    return {extreme<Order, Work, T>, indexOfExtreme<Order, Work, T>};
}

} // namespace

extern const ExtremesKernels extremesKernels;
const ExtremesKernels extremesKernels = {
#define ZVPS_KERNELS(code)                                                                                             \
    extremeKernels<Smaller, Elements, Zvp##code>(), extremeKernels<Larger, Elements, Zvp##code>(),
    ZVPS_EXTREMES(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNELS(code) {bothExtremes<Zvp##code>, indicesOfBothExtremes<Zvp##code>},
        ZVPS_BOTH_EXTREMES(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNELS(code)                                                                                             \
    extremeKernels<Smaller, SaturatedMagnitudes, Zvp##code>(), extremeKernels<Larger, SaturatedMagnitudes, Zvp##code>(),
            ZVPS_EXTREMES_OF_MAGNITUDES(ZVPS_KERNELS)
#undef ZVPS_KERNELS
#define ZVPS_KERNEL(slot, operation, type) elementwiseExtreme<operation, type>,
                ZVPS_ELEMENTWISE_EXTREMES(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
