// Thresholds: the bridge between entries and kernels.
#pragma once

#include "core/scaled.hpp"
#include "zvps/types.h"

#include <cstddef>

namespace zvps {

// Kernels return the entry's status, so that an entry ends in a jump to its kernel.

template <class T>
using LevelKernel = ZvpStatus (*)(const T* src, T* dst, size_t n, T level);

template <class T>
struct RealThresholds {
    using ValueKernel = ZvpStatus (*)(const T* src, T* dst, size_t n, T level, T value);

    LevelKernel<T> raiseBelow; // elements below the level become the level
    LevelKernel<T> lowerAbove;
    ValueKernel replaceBelow; // elements below the level become the value
    ValueKernel replaceAbove;
    ZvpStatus (*replaceBoth)(const T* src, T* dst, size_t n, T below, T valueBelow, T above, T valueAbove);
    LevelKernel<T> raiseMagnitude; // of elements whose magnitude is below the level, which is not negative
    LevelKernel<T> lowerMagnitude;
};

// Of pairs of parts; magnitudes and a level that is not negative are compared.
template <class T>
struct ComplexThresholds {
    using ValueKernel = ZvpStatus (*)(const T* src, T* dst, size_t n, T level, Pair<T> value);

    LevelKernel<T> raiseBelow;
    LevelKernel<T> lowerAbove;
    ValueKernel replaceBelow;
    ValueKernel replaceAbove;
};

struct ThresholdKernels {
    RealThresholds<Zvp16s> real_16s;
    RealThresholds<Zvp32s> real_32s;
    RealThresholds<Zvp32f> real_32f;
    RealThresholds<Zvp64f> real_64f;
    ComplexThresholds<Zvp16s> complex_16s;
    ComplexThresholds<Zvp32f> complex_32f;
    ComplexThresholds<Zvp64f> complex_64f;

    // Reciprocals after magnitudes have been raised.
    LevelKernel<Zvp32f> invert_32f;
    LevelKernel<Zvp64f> invert_64f;
    LevelKernel<Zvp32f> invert_32fc;
    LevelKernel<Zvp64f> invert_64fc;
};

} // namespace zvps
