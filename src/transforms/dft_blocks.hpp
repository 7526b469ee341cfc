// The blocks that the transforms of any length work on.
#pragma once

#include "transforms/dft.table.hpp"
#include "transforms/dft_butterflies.hpp"
#include "transforms/fft_passes.hpp"

namespace zvps::ZVPS_LEVEL {

template <class T>
inline constexpr size_t kDftLanes = kDftBlock<T> * sizeof(T) < kVectorBytes ? kDftBlock<T> : kVectorBytes / sizeof(T);

// Block i of those between the passes, or on the lower level the half of it from a lane on.
template <class T>
HWY_INLINE ComplexVec<T, kDftLanes<T>> loadBlock(const T* p, size_t i) {
    const Lanes<T, kDftLanes<T>> d;
    const T* const block = p + 2 * kDftBlock<T> * i;
    return {inRegister(hn::LoadU(d, block)), inRegister(hn::LoadU(d, block + kDftBlock<T>))};
}
template <class T>
HWY_INLINE void storeBlock(ComplexVec<T, kDftLanes<T>> x, T* p, size_t i) {
    const Lanes<T, kDftLanes<T>> d;
    T* const block = p + 2 * kDftBlock<T> * i;
    hn::StoreU(x.re, d, block);
    hn::StoreU(x.im, d, block + kDftBlock<T>);
}

// All columns of a small number of points, from interleaved data to the grid of their transposed blocks.
template <class T>
using DftColumnsRoutine = void (*)(const T* src, size_t columns, const T* twiddles, T* grid);

// The routine for so many points, if there is one.
template <class T>
DftColumnsRoutine<T> columnsRoutine(size_t rows, bool isInverse);

} // namespace zvps::ZVPS_LEVEL
