// Windows: the bridge between entries and kernels.
#pragma once

#include "zvps/status.h"
#include "zvps/types.h"

#include <cstddef>
#include <type_traits>

#define ZVPS_WINDOW_TYPES(X) X(16s) X(16sc) X(32f) X(32fc) X(64f) X(64fc)

namespace zvps {

// How many independent runs the recurrence of cosines is split into where the window is applied in single precision.
inline constexpr size_t kCosineChains = 16;

// With h(k) = c cos(k theta): w(k) = (constant - h(k) - square h(k)^2) scale.
struct CosineWindow {
    double start[4];    // h(0) to h(3)
    double factor;      // 2 cos(2 theta): h(k + 2) = factor h(k) - h(k - 2)
    double chainFactor; // 2 cos(kCosineChains theta)
    size_t chainFrom;   // before this k the recurrence runs in one chain; a multiple of kCosineChains
    double constant;
    double square; // Blackman windows only
    double scale;  // those of 16-bit data only
};

// w(k) = k step
struct BartlettWindow {
    double step;
};

// w(k) = I0(|alpha sqrt(k (n - 1 - k))|) inverseNorm
struct KaiserWindow {
    double alpha;
    double inverseNorm;
};

// Multiplies n elements by the window, symmetrically from both ends.
template <class T, class Window>
using WindowKernel = ZvpStatus (*)(const T* src, T* dst, size_t n, const Window& window);

// The kernels of one window for all types.
template <class Window>
struct WindowSlots {
#define ZVPS_SLOT(type) WindowKernel<Zvp##type, Window> for##type;
    ZVPS_WINDOW_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT

    template <class T>
    WindowKernel<T, Window> kernel() const {
#define ZVPS_SLOT(type)                                                                                                \
    if constexpr (std::is_same_v<T, Zvp##type>) return for##type;
        ZVPS_WINDOW_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
    }
};

struct WindowKernels {
    WindowSlots<BartlettWindow> bartlett;
    WindowSlots<CosineWindow> raisedCosine;
    WindowSlots<CosineWindow> blackman;
    WindowSlots<KaiserWindow> kaiser;
};

} // namespace zvps
