// The header of DCT objects; what it points to follows it in the same block or is part of the library.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>

namespace zvps {

template <class T>
struct DctSpec {
    uint32_t tag;
    int32_t length;
    int32_t hint;
    int32_t workSize; // bytes a transform needs, without the slack for alignment
    int32_t isAllocated;
    T firstFactor;   // of X[0]: 1 / sqrt(N)
    T factor;        // of the others: sqrt(2 / N)
    int32_t isFixed; // 1, 2, 4 or 8 values; the other marks stay 0
    int32_t isPowerOfTwo;
    int32_t usesFft;
    int32_t usesDft;
    const T* table;    // the matrix, or what the DFT in two steps reads
    const T* twiddles; // before or after a DFT
    void* inner;       // the FFT or DFT object
    int32_t usesMatrix;
    int32_t rows; // of the DFT in two steps
    int32_t columns;
};

static_assert(offsetof(DctSpec<float>, firstFactor) == 20 && offsetof(DctSpec<float>, isFixed) == 28);
static_assert(offsetof(DctSpec<float>, usesDft) == 40 && offsetof(DctSpec<float>, table) == 48);
static_assert(offsetof(DctSpec<double>, firstFactor) == 24 && offsetof(DctSpec<double>, isFixed) == 40);
static_assert(offsetof(DctSpec<double>, usesDft) == 52 && offsetof(DctSpec<double>, table) == 56);
static_assert(sizeof(DctSpec<double>) <= 128);

} // namespace zvps
