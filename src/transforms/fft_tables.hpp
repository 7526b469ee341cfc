// The tables of the floating-point transforms, in the order in which the kernels read them.
#pragma once

#include "transforms/fft_spec.hpp"

namespace zvps {

// quarterWave[k] = sin(2 pi k / 2^quarterWaveOrder) for k = 0..2^quarterWaveOrder / 4, correctly rounded; of the order
// of the transform or a higher one. The order of a real transform is that of its number of samples. Tables start at
// `area`, which is aligned to 32 bytes.
template <class T>
size_t fftTableBytes(int order);
template <class T>
void buildFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder);

template <class T>
size_t realFftTableBytes(int order);
template <class T>
void buildRealFftTables(int order, FftSpec<T>& spec, unsigned char* area, const T* quarterWave, int quarterWaveOrder);

} // namespace zvps
