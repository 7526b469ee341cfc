// Correlation: the bridge between entries and kernels.
#pragma once

#include "filters/fir.table.hpp"

namespace zvps {

// dst[n] = sum over i < tapsLen of taps[i] * src[n + i] for n < count, for so few results that filters would wait for
// one sum after the other: each result is a fixed number of sums, added up at the end.
template <class T>
using FewSumsKernel = void (*)(const T* src, T* dst, size_t count, const T* taps, size_t tapsLen);

struct CorrelationKernels {
#define ZVPS_SLOT(slot, type, parts) FewSumsKernel<type> slot;
    ZVPS_FIRS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
