// Multi-rate filters: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>
#include <cstdint>

// X(slot, type of the parts, parts of an element)
#define ZVPS_MULTIRATE_FIRS(X)                                                                                         \
    X(fir_32f, Zvp32f, 1)                                                                                              \
    X(fir_32fc, Zvp32f, 2)                                                                                             \
    X(fir_64f, Zvp64f, 1)                                                                                              \
    X(fir_64fc, Zvp64f, 2)

namespace zvps {

// The lanes of sums and rows of taps fill so many bytes on every level.
inline constexpr size_t kMultirateBytes = 64;

// Sums by lanes. Output vector v is the sum over the rows r of taps of row r times the vector of the source at
// v * srcStep + r * rowStep: rows `shared` apart meet the same vectors. Steps are in parts.
template <class T>
struct LaneTaps {
    const T* taps; // of complex elements a row of real parts, each twice, before one of imaginary parts
    const T* mask; // the bits of the source that the first row meets; null where it meets all
    // Where lanes come from in the source instead of from their own places: each register's from less than two vectors.
    const int32_t* order;
    size_t rows;
    size_t srcStep;
    size_t rowStep;
    size_t shared;
    size_t dstStep; // from vector to vector of sums
    size_t width;   // how many lanes are stored where a vector's end is another's place; all of them otherwise
};

// Sums over sub-filters. The taps of a phase, last to first, begin at phase * length; the first `fullPhases` phases
// have `length` taps, those from there to `phases` one fewer, and the rest none.
template <class T>
struct PhaseTaps {
    const T* taps;
    size_t length; // in elements
    size_t phases;
    size_t fullPhases;
    size_t up;
    size_t stepPhase; // from output to output: so many phases on, and so many inputs
    size_t stepInput;
};

template <class T>
struct MultirateKernels {
    void (*lanes)(const T* src, T* sums, size_t vectors, const LaneTaps<T>& taps);
    // Output i of n is the sum of the elements from i * group to (i + 1) * group - 1. May change the sums.
    void (*addGroups)(T* sums, T* dst, size_t n, size_t group);
    // n outputs, the first by the sub-filter of `phase` with its newest input at src.
    void (*phases)(const T* src, T* dst, size_t n, const PhaseTaps<T>& taps, size_t phase);
};

struct MultirateFilterKernels {
#define ZVPS_SLOT(slot, type, parts) MultirateKernels<type> slot;
    ZVPS_MULTIRATE_FIRS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
