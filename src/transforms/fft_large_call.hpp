// The long complex transforms, for kernels that are built on them.
#pragma once

#include "transforms/fft.table.hpp"

#ifndef ZVPS_LEVEL
#error "kernel code is compiled for a level"
#endif

namespace zvps::ZVPS_LEVEL {

// 2^order points, with the tables of that order, in room for workValues values.
template <class T>
struct LargeFftCall {
    int order;
    const T* tables;
    T* work;
    size_t workValues;
};

template <class T>
struct Spectrum;

template <class T, FftDirection direction>
void largeComplexFft(const T* src, T* dst, T factor, const LargeFftCall<T>& call);
template <class T, FftDirection direction>
void largeSplitFft(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor, const LargeFftCall<T>& call);

// The inverse of twice as many samples, from their spectrum and the table that parts its bins. False: not done, since
// it is no faster than from the parted bins, or needs the results' memory beside the source.
bool partedFft(const Spectrum<const float>& src, float* dst, float factor, const float* joining,
               const LargeFftCall<float>& call);

} // namespace zvps::ZVPS_LEVEL
