// DFT: the bridge between entries and kernels.
#pragma once

#include "transforms/dft_spec.hpp"
#include "transforms/fft.table.hpp"

namespace zvps {

// Up to this length a transform is one fixed routine.
inline constexpr int kFixedDft = 16;

// Forward transforms where no direction is named; with the parts of source and destination exchanged they are inverse
// ones. Source and destination are the same arrays or do not overlap. The factor multiplies the result. `work` is
// aligned to 32 bytes.
template <class T>
struct DftKernels {
    // By length; null for powers of two.
    FixedFft<T> fixed[kFftDirections][kFixedDft + 1];
    FixedSplitFft<T> fixedSplit[kFixedDft + 1];
    void (*mixed)(const DftPlan<T>& plan, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor, T* work);
    // An odd length, by its definition. `roots` are cosines and sines; `work` has room for 2 length numbers.
    void (*direct)(size_t length, const T* roots, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor,
                   T* work);

    // dst = src * factors for the first n points; `factors` and the other array are interleaved.
    void (*multiplyIn)(const DftPoints<const T>& src, const T* factors, T* dst, size_t n);
    void (*multiplyOut)(const T* src, const T* factors, const DftPoints<T>& dst, size_t n);
    // By direction: from the transform of the `half` pairs of real samples as complex ones to the spectrum of the
    // samples, and back, from value 1 of src to value half - 1 of dst; src, dst and twiddles point to values 1.
    void (*convertPairs[kFftDirections])(const T* src, T* dst, size_t half, const T* twiddles, T factor);
};

} // namespace zvps
