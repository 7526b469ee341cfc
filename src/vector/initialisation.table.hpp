// Filling: the bridge between entries and kernels. Copying and clearing are the C library's.
#pragma once

#include "core/scaled.hpp"

#include <cstdint>

namespace zvps {

// The two values fill even and odd places of n.
template <class T>
using FillKernel = ZvpStatus (*)(Pair<T> values, T* dst, size_t n);

struct InitialisationKernels {
    FillKernel<uint16_t> fill16;
    FillKernel<uint32_t> fill32;
    FillKernel<uint64_t> fill64;
};

} // namespace zvps
