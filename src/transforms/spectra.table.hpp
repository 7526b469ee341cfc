// Functions on packed spectra: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

namespace zvps {

// Complex values by their parts: `count` pairs to dst and, conjugated, in reverse order to mirror, before whose end the
// first one comes to lie. The pairs may lie where dst is, or one part before it; they do not overlap the mirror.
template <class T>
using MirrorKernel = void (*)(const T* pairs, T* dst, T* mirror, size_t count);

// srcDst = src * conj(srcDst) on n parts.
template <class T>
using MulConjKernel = void (*)(const T* src, T* srcDst, size_t n);

struct SpectrumKernels {
    MirrorKernel<Zvp16s> mirror_16sc;
    MirrorKernel<Zvp32f> mirror_32fc;
    MirrorKernel<Zvp64f> mirror_64fc;
    MulConjKernel<Zvp32f> mulConj_32fc;
    MulConjKernel<Zvp64f> mulConj_64fc;
};

} // namespace zvps
