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

template <class T, FftDirection direction>
void largeComplexFft(const T* src, T* dst, T factor, const LargeFftCall<T>& call);
template <class T, FftDirection direction>
void largeSplitFft(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor, const LargeFftCall<T>& call);

} // namespace zvps::ZVPS_LEVEL
