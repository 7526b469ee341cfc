// The header of the floating-point FFT objects; the tables follow it in the same block.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>

namespace zvps {

// A complex transform of N = 2^order points, or the real one of N samples, which holds the tables of the complex
// transform of half the length and two tables of N / 4 complex values to combine its spectrum with.
template <class T>
struct FftSpec {
    uint32_t tag;
    int32_t order;
    int32_t scalesForward;
    int32_t scalesInverse;
    T factor;
    int32_t hint;
    int32_t workSize; // bytes a transform needs, without the slack for alignment
    int32_t isAllocated;
    const void* area; // where the tables start
    const T* twiddles;
    const T* tables[4]; // further ones, by the length of the transform
};

static_assert(offsetof(FftSpec<float>, factor) == 16 && offsetof(FftSpec<float>, hint) == 20);
static_assert(offsetof(FftSpec<float>, workSize) == 24 && offsetof(FftSpec<float>, isAllocated) == 28);
static_assert(offsetof(FftSpec<float>, area) == 32 && offsetof(FftSpec<float>, twiddles) == 40);
static_assert(offsetof(FftSpec<double>, factor) == 16 && offsetof(FftSpec<double>, hint) == 24);
static_assert(offsetof(FftSpec<double>, workSize) == 28 && offsetof(FftSpec<double>, isAllocated) == 32);
static_assert(offsetof(FftSpec<double>, area) == 40 && offsetof(FftSpec<double>, twiddles) == 48);

} // namespace zvps
