// Lines and the test signal of Jaehne: the bridge between entries and kernels.
#pragma once

#include "zvps/status.h"
#include "zvps/types.h"

#include <cstddef>
#include <type_traits>

#define ZVPS_RAMP_TYPES(X) X(8u) X(8s) X(16u) X(16s) X(32u) X(32s) X(32f) X(64f)

namespace zvps {

template <class T>
struct RampSlots {
    ZvpStatus (*ramp)(T* dst, size_t n, float offset, float slope);
    ZvpStatus (*slope)(T* dst, size_t n, double offset, double slope);
    ZvpStatus (*jaehne)(T* dst, size_t n, double magnitude);
};

struct RampKernels {
#define ZVPS_SLOT(type) RampSlots<Zvp##type> for##type;
    ZVPS_RAMP_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT

    template <class T>
    const RampSlots<T>& slots() const {
#define ZVPS_SLOT(type)                                                                                                \
    if constexpr (std::is_same_v<T, Zvp##type>) return for##type;
        ZVPS_RAMP_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
    }
};

} // namespace zvps
