// How a complex transform is cut into passes, and the tables that its kernels read.
#pragma once

#include "transforms/fft_spec.hpp"

#include <cstddef>

namespace zvps {

// Up to this order complex transforms are made of such passes.
inline constexpr int kLastFftPlan = 17;
inline constexpr int kMaxFftPasses = 4;

// The radices of the passes, as powers of two, in their order. Four passes run as two pairs, each in the first-level
// cache; of three, those that are joined run the last two as a pair.
struct FftPlan {
    int passes;
    int orders[kMaxFftPasses];
    bool areJoined;
};

// Up to this order a transform takes two passes.
inline constexpr int kLastShortFft = 8;

// The radices there are kernels for.
inline constexpr int kLeastMiddleOrder = 3;
inline constexpr int kMostMiddleOrder = 5;
inline constexpr int kLeastLastOrder = 2;
inline constexpr int kMostLastOrder = 4;

// For orders from 6 to kLastFftPlan, in single and in double precision.
constexpr FftPlan kFftPlans[2][kLastFftPlan - 5] = {
    {{2, {3, 3}, false},
     {2, {4, 3}, false},
     {2, {4, 4}, false},
     {3, {4, 3, 2}, true},
     {3, {4, 3, 3}, true},
     {3, {4, 3, 4}, false},
     {3, {4, 4, 4}, false},
     {4, {4, 3, 4, 2}, false},
     {4, {4, 4, 4, 2}, false},
     {4, {4, 4, 3, 4}, false},
     {4, {4, 4, 5, 3}, false},
     {4, {4, 4, 5, 4}, false}},
    {{2, {3, 3}, false},
     {2, {3, 4}, false},
     {2, {4, 4}, false},
     {3, {4, 3, 2}, true},
     {3, {4, 3, 3}, true},
     {3, {4, 4, 3}, false},
     {4, {3, 4, 3, 2}, false},
     {4, {3, 4, 4, 2}, false},
     {4, {3, 4, 3, 4}, false},
     {4, {3, 4, 4, 4}, false},
     {4, {3, 4, 5, 4}, false},
     {4, {4, 5, 4, 4}, false}},
};
template <class T>
[[gnu::always_inline]] constexpr const FftPlan& fftPlan(int order) {
    return kFftPlans[sizeof(T) == 8][order - 6];
}

// The values in a block of the data between the passes: a vector of 64 bytes, or as many as the first pass has numbers
// and columns.
template <class T>
constexpr size_t fftBlock(size_t numbers, size_t columns) {
    size_t block = 64 / sizeof(T);
    if (numbers < block) block = numbers;
    if (columns < block) block = columns;
    return block;
}

// The number at a place in a block: in 128 bits the first half from the block's first half, the other from its second.
template <class T>
constexpr size_t fftNumberAt(size_t place, size_t block) {
    const size_t half = 8 / sizeof(T);
    return place / (2 * half) * half + place % half + (place % (2 * half) >= half ? block / 2 : 0);
}

// The twiddle factors of the passes after the first, one pass after the other: for each block of numbers k, and n1 from
// 1 on, exp(-2 pi i n1 k / (s R)), the real parts of the block before the imaginary parts.

// quarterWave[k] = sin(2 pi k / 2^quarterWaveOrder) for k = 0..2^quarterWaveOrder / 4, correctly rounded; of the order
// of the transform or a higher one. The order of a real transform is that of its number of samples. Tables start at
// `area`, which is aligned to 32 bytes.
template <class T>
size_t fftTableBytes(int order);
template <class T>
void buildFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder);

template <class T>
size_t realFftTableBytes(int order);
template <class T>
void buildRealFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder);

// Of the longest complex transforms, which are cut in two.
template <class T>
size_t largeFftTableBytes(int order);
template <class T>
void buildLargeFftTables(int order, T* base, const T* quarterWave, int quarterWaveOrder);

} // namespace zvps
