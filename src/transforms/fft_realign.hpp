// Interleaved data that start beyond the beginning of a line of memory, in whole lines all the same: vectors that would
// straddle two lines, which a strided pass would touch twice, are put together from their neighbours in registers.
#pragma once

#include "core/simd.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kLineBytes = 64;

template <class T>
HWY_INLINE bool startsAtLine(const T* p) {
    return reinterpret_cast<uintptr_t>(p) % kLineBytes == 0;
}

// Values of some bytes before the first one that starts at a line, or 0 if none does.
template <class T>
HWY_INLINE size_t valuesToLine(const T* p, size_t bytes) {
    const size_t rest = -reinterpret_cast<uintptr_t>(p) % kLineBytes;
    return rest % bytes == 0 ? rest / bytes : 0;
}

inline constexpr bool kRealigns = HWY_TARGET <= HWY_AVX3;

// Elements that themselves straddle lines stay where they are.
template <class T>
HWY_INLINE bool canRealign(const T* p) {
    return kRealigns && valuesToLine(p, sizeof(T)) != 0;
}

// For permuted(a, order, b): lane j of the result is lane order[j] of the lanes of a, followed by those of b.
template <class T>
using LaneOrder = Vec<hwy::MakeSigned<T>, kLineBytes / sizeof(T)>;

// Of lines whose data start `beyond` lanes beyond them the vector that begins in one and ends in the next.
template <class T>
HWY_INLINE LaneOrder<T> orderOfVector(size_t beyond) {
    using Index = hwy::MakeSigned<T>;
    return hn::Iota(Lanes<Index, kLineBytes / sizeof(T)>(), static_cast<Index>(beyond));
}

#if HWY_TARGET <= HWY_AVX3
// Lanes by which data start beyond the beginning of their line.
template <class T>
HWY_INLINE size_t lanesBeyondLine(const T* p) {
    return reinterpret_cast<uintptr_t>(p) % kLineBytes / sizeof(T);
}

HWY_INLINE Vec<float, 16> permuted(Vec<float, 16> a, LaneOrder<float> order, Vec<float, 16> b) {
    return Vec<float, 16>{_mm512_permutex2var_ps(a.raw, order.raw, b.raw)};
}
HWY_INLINE Vec<double, 8> permuted(Vec<double, 8> a, LaneOrder<double> order, Vec<double, 8> b) {
    return Vec<double, 8>{_mm512_permutex2var_pd(a.raw, order.raw, b.raw)};
}

// The first line, of which the data have the lanes from `beyond` on; of the last one they have the others
// (storeFirst(), loadFirst()).
template <class T, size_t L>
HWY_INLINE void storeBeyond(Lanes<T, L> d, Vec<T, L> v, T* line, size_t beyond) {
    hn::BlendedStore(v, hn::Not(hn::FirstN(d, beyond)), d, line);
}
template <class T, size_t L>
HWY_INLINE Vec<T, L> loadBeyond(Lanes<T, L> d, const T* line, size_t beyond) {
    return hn::MaskedLoad(hn::Not(hn::FirstN(d, beyond)), d, line);
}
#endif

} // namespace zvps::ZVPS_LEVEL
