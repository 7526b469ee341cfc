// Filling: the bridge between entries and kernels. Copying and clearing are the C library's.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zvps {

// The pair of values fills even and odd places of n.
template <class T>
using FillKernel = void (*)(const T* pair, T* dst, size_t n);

struct InitialisationKernels {
    FillKernel<uint16_t> fill16;
    FillKernel<uint32_t> fill32;
    FillKernel<uint64_t> fill64;
};

} // namespace zvps
