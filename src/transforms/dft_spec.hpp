// DFT objects as entries and kernels see them: the header, and how a length of small factors is transformed.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>

namespace zvps {

// Complex values, their parts `step` apart: 2 in interleaved data, 1 in split data.
template <class T>
struct DftPoints {
    T* re;
    T* im;
    ptrdiff_t step;
};

// The values in a block of the data between the passes, the real parts before the imaginary ones: neighbouring columns.
template <class T>
inline constexpr size_t kDftBlock = 32 / sizeof(T);

[[gnu::always_inline]] constexpr size_t dftBlocks(size_t n, size_t block) {
    return (n + block - 1) / block;
}

// Where a block of n columns starts: the last one overlaps the one before.
[[gnu::always_inline]] constexpr size_t dftBlockStart(size_t index, size_t n, size_t block) {
    const size_t start = index * block;
    return n <= block ? 0 : start + block <= n ? start : n - block;
}

// A pass of radix R, with s the product of the radices before it and m that of those behind: m butterflies for each of
// s numbers, as in a transform of 2^n points.
template <class T>
struct DftPass {
    size_t radix;
    size_t s;
    size_t m;
    const T* twiddles;   // exp(-2 pi i n1 k / (s R)) for k and n1 from 1 on
    const T* conjugates; // of the twiddles, where the pass is the last one
    const T* roots;      // cosines and sines of a radix without a routine of its own
};

// The radices that only a first pass may have: without twiddles.
constexpr bool isFirstRadix(size_t radix) {
    return radix == 10 || radix == 12 || radix == 15;
}

inline constexpr int kMostDftPasses = 16;

// The transform down a column.
template <class T>
struct DftColumn {
    size_t points;
    int passes;
    DftPass<T> pass[kMostDftPasses];
};

// L = N1 N2: N2 columns of N1 points, whose results are turned, and transformed along the rows.
template <class T>
struct DftPlan {
    DftColumn<T> first;
    DftColumn<T> second;
    const T* twiddles; // exp(-2 pi i n2 k1 / L) for blocks of columns n2, and in these for blocks of numbers k1
};

inline constexpr int kMostDftFactors = 24;

template <class T>
struct DftSpec {
    uint32_t tag;
    int32_t length;
    int32_t scalesForward;
    int32_t scalesInverse;
    T factor;
    int32_t hint;
    int32_t workSize; // bytes a transform needs, with the slack for alignment
    int32_t isPowerOfTwo;
    const T* twiddles; // of a prime length without plan, or those that turn half a complex transform into a real one
    void* fft;
    int32_t isMixedRadix;
    int32_t factors;
    int32_t factorList[kMostDftFactors];
    DftPlan<T> plan;
    void* inner;             // the transform object that a convolution or a real transform works with
    const T* chirp;          // exp(-pi i n^2 / L)
    const int32_t* powers;   // of a primitive root modulo L, instead of a chirp
    const T* kernelSpectrum; // of the sequence that a convolution is with, divided by its length
    void* tables;            // the memory of all tables
};

static_assert(offsetof(DftSpec<float>, factor) == 16 && offsetof(DftSpec<float>, hint) == 20);
static_assert(offsetof(DftSpec<float>, workSize) == 24 && offsetof(DftSpec<float>, isPowerOfTwo) == 28);
static_assert(offsetof(DftSpec<float>, twiddles) == 32 && offsetof(DftSpec<float>, fft) == 40);
static_assert(offsetof(DftSpec<float>, isMixedRadix) == 48 && offsetof(DftSpec<float>, factors) == 52);
static_assert(offsetof(DftSpec<double>, factor) == 16 && offsetof(DftSpec<double>, hint) == 24);
static_assert(offsetof(DftSpec<double>, workSize) == 28 && offsetof(DftSpec<double>, isPowerOfTwo) == 32);
static_assert(offsetof(DftSpec<double>, twiddles) == 40 && offsetof(DftSpec<double>, fft) == 48);
static_assert(offsetof(DftSpec<double>, isMixedRadix) == 56 && offsetof(DftSpec<double>, factors) == 60);

} // namespace zvps
