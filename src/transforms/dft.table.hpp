// DFT: the bridge between entries and kernels.
#pragma once

#include "transforms/dft_spec.hpp"
#include "transforms/fft.table.hpp"

namespace zvps {

// Up to this length a transform is one fixed routine.
inline constexpr int kFixedDft = 16;

// Forward transforms; with the parts of source and destination exchanged they are inverse ones. Source and destination
// are the same arrays or do not overlap. The factor multiplies the result. `work` is aligned to 32 bytes.
template <class T>
struct DftKernels {
    // 3 to 15 points, no power of two.
    void (*fixed)(size_t length, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor);
    void (*mixed)(const DftPlan<T>& plan, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor, T* work);
    // An odd length, by its definition. `roots` are cosines and sines; `work` has room for 2 length numbers.
    void (*direct)(size_t length, const T* roots, const DftPoints<const T>& src, const DftPoints<T>& dst, T factor,
                   T* work);

    // dst = src * chirp on interleaved data
    void (*multiplyChirp)(const DftPoints<const T>& src, const T* chirp, T* dst, size_t n);
    // x = conj(x * y) on interleaved data
    void (*multiplyConj)(T* x, const T* y, size_t n);
    // dst = conj(x) * chirp * factor
    void (*multiplyConjChirp)(const T* x, const T* chirp, const DftPoints<T>& dst, size_t n, T factor);

    // By direction: from the transform of the `half` pairs of real samples as complex ones to the spectrum of the
    // samples, and back, from value 1 of src to value half - 1 of dst; src, dst and twiddles point to values 1.
    void (*convertPairs[kFftDirections])(const T* src, T* dst, size_t half, const T* twiddles, T factor);
};

} // namespace zvps
