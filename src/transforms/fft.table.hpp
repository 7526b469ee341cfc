// FFT: the bridge between entries and kernels.
#pragma once

#include "transforms/fft_spec.hpp"
#include "zvps/status.h"

namespace zvps {

// Up to this order a transform is one fixed routine without tables or work buffer.
inline constexpr int kFixedFftOrder = 5;
// Of interleaved complex data some longer ones are, too.
inline constexpr int kFixedComplexFftOrder = 8;

enum FftDirection { kFftForward, kFftInverse, kFftDirections };
enum RealFftLayout { kFftPerm, kFftPack, kFftCcs, kRealFftLayouts };

// Source and destination are the same array or do not overlap; the source is not changed unless they are the same.
// The factor multiplies the result. `work` has room for spec.workSize bytes, aligned to 32.

// Interleaved complex data, or real data and packed spectra.
template <class T>
using FixedFft = ZvpStatus (*)(const T* src, T* dst, T factor);
template <class T>
using Fft = ZvpStatus (*)(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work);

// Complex data in one array for each part.
template <class T>
using FixedSplitFft = ZvpStatus (*)(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor);
template <class T>
using SplitFft = ZvpStatus (*)(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor, const FftSpec<T>& spec,
                               T* work);

// Fixed routines by direction, whether the result is scaled, and order; the others by direction.
template <class T>
struct FftKernels {
    FixedFft<T> fixedComplex[kFftDirections][2][kFixedComplexFftOrder + 1];
    FixedSplitFft<T> fixedSplit[kFftDirections][2][kFixedFftOrder + 1];
    Fft<T> complex[kFftDirections];
    SplitFft<T> split[kFftDirections];
};

template <class T>
struct RealFftKernels {
    FixedFft<T> fixed[kFftDirections][kRealFftLayouts][2][kFixedFftOrder + 1];
    Fft<T> general[kFftDirections][kRealFftLayouts];
};

} // namespace zvps
