// Sums of logarithms: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>

// X(slot, element type, elements whose product always fits a double)
#define ZVPS_LOG_PRODUCTS(X)                                                                                           \
    X(product_16s, Zvp16s, 16)                                                                                         \
    X(product_32f, Zvp32f, 4)                                                                                          \
    X(product_64f, Zvp64f, 1)

namespace zvps {

// Elements are multiplied in blocks of so many, of which the last may be shorter.
inline constexpr size_t kLogBlock = 512;

// mantissa 2^exponent with 1 <= mantissa < 2^64.
struct LogProduct {
    double mantissa;
    int64_t exponent;
};

// The product of n >= 1 elements, up to the first block that holds one that is not positive and finite, or a
// subnormal double. Returns how many elements were multiplied.
template <class T>
using LogProductKernel = size_t (*)(const T* src, size_t n, LogProduct* product);

struct LogKernels {
#define ZVPS_SLOT(slot, type, factors) LogProductKernel<type> slot;
    ZVPS_LOG_PRODUCTS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
