// Recursive filters: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(slot, type of the parts, parts of an element)
#define ZVPS_IIRS(X)                                                                                                   \
    X(iir_32f, Zvp32f, 1)                                                                                              \
    X(iir_32fc, Zvp32f, 2)                                                                                             \
    X(iir_64f, Zvp64f, 1)                                                                                              \
    X(iir_64fc, Zvp64f, 2)

namespace zvps {

// ---- Cascades of sections of second order ----

inline constexpr size_t kBiquadTaps = 5; // b0, b1, b2, a1, a2

// A run is as many samples as fill a cache line. Within one, a section's output is the response to the run's inputs
// from rest, plus that of the state before the run: y[j] = rest[j] + h[j] d0 + h[j-1] d1. Runs that follow each other
// can so be computed side by side, and then joined. The state is kept in the same parts, so that a signal cut anywhere,
// even within a run, gives the same bits.
template <class T>
inline constexpr size_t kRun = 64 / sizeof(T);

template <class T>
struct BiquadRun {
    T h[kRun<T> + 1]; // the response of d0 to itself: h[0] = 1
    T power[2][2];    // of the state matrix, over a run
    T rest[2];        // the state that inputs of this run alone would have led to
};

template <class T>
struct BiquadCascade {
    size_t count;
    const T* taps;      // kBiquadTaps for each section
    T* delay;           // d0, d1 of each section before the run
    BiquadRun<T>* runs; // of each section; null where the filter is too unstable for it
    size_t phase;       // samples of the run that are done
};

// ---- Any order ----

// Samples in a step of the block kernel. The delay line and the tap vectors end with zeros behind their order
// elements: up to a whole step and vector more are read, and of the delay line written.
inline constexpr size_t kIirStep = 8;
template <class T>
inline constexpr size_t kIirPadding = kIirStep + 64 / sizeof(T);

template <class T>
struct IirFilter {
    size_t order;
    T* delay;
    // B and -A from index 0 on. Of complex elements each real part twice, then in vectors of their own the imaginary
    // parts: first negative, then as it is.
    T* b[2];
    T* a[2];
};

// ---- Kernels ----

// dst may be src. One section's intermediate results go through dst.
template <class T>
struct IirKernels {
    void (*order)(const T* src, T* dst, size_t n, IirFilter<T>& filter);
    void (*biquads)(const T* src, T* dst, size_t n, BiquadCascade<T>& cascade);
};
// In direct form 1; x[n-1], x[n-2], y[n-1], y[n-2] of each section in `delay`.
template <class T>
using DirectForm1Kernel = void (*)(const T* src, T* dst, size_t n, size_t count, const T* taps, T* delay);

struct RecursiveKernels {
#define ZVPS_SLOT(slot, type, parts) IirKernels<type> slot;
    ZVPS_IIRS(ZVPS_SLOT)
#undef ZVPS_SLOT
    DirectForm1Kernel<Zvp32f> directForm1_32f;
    DirectForm1Kernel<Zvp64f> directForm1_64f;
};

} // namespace zvps
