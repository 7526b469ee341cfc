#include "telephony/goertzel.hpp"

namespace zvps::ZVPS_LEVEL {

namespace {

template <int parts>
using ChainsOf = std::conditional_t<parts == 1, RealChains, ComplexChains>;

} // namespace

extern const GoertzelKernels goertzelKernels;
const GoertzelKernels goertzelKernels = {
#define ZVPS_KERNEL(slot, type, parts) goertzel<ChainsOf<parts>, type>,
    ZVPS_GOERTZELS(ZVPS_KERNEL)
#undef ZVPS_KERNEL
};

} // namespace zvps::ZVPS_LEVEL
