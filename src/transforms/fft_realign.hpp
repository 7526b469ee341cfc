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

#if HWY_TARGET <= HWY_AVX3
inline constexpr bool kRealigns = true;

// Lanes by which data start beyond the beginning of their line.
template <class T>
HWY_INLINE size_t lanesBeyondLine(const T* p) {
    return reinterpret_cast<uintptr_t>(p) % kLineBytes / sizeof(T);
}
// Elements that themselves straddle lines stay where they are.
template <class T>
HWY_INLINE bool canRealign(const T* p) {
    return reinterpret_cast<uintptr_t>(p) % sizeof(T) == 0;
}

// Lane j of the result is lane order[j] of the lanes of a, followed by those of b.
template <class T>
using LaneOrderTag = Lanes<hwy::MakeSigned<T>, kLineBytes / sizeof(T)>;
template <class T>
using LaneOrder = hn::Vec<LaneOrderTag<T>>;

HWY_INLINE Vec<float, 16> permuted(Vec<float, 16> a, LaneOrder<float> order, Vec<float, 16> b) {
    return Vec<float, 16>{_mm512_permutex2var_ps(a.raw, order.raw, b.raw)};
}
HWY_INLINE Vec<double, 8> permuted(Vec<double, 8> a, LaneOrder<double> order, Vec<double, 8> b) {
    return Vec<double, 8>{_mm512_permutex2var_pd(a.raw, order.raw, b.raw)};
}

// For permuted(): of data `beyond` lanes beyond a line, as vectors one after the other, the line of memory that holds
// the end of one and the beginning of the next.
template <class T>
HWY_INLINE LaneOrder<T> orderOfLine(size_t beyond) {
    constexpr size_t L = kLineBytes / sizeof(T);
    using Index = hwy::MakeSigned<T>;
    return hn::Iota(Lanes<Index, L>(), static_cast<Index>(L - beyond));
}
// Of lines whose data start `beyond` lanes beyond them the vector that begins in one and ends in the next.
template <class T>
HWY_INLINE LaneOrder<T> orderOfVector(size_t beyond) {
    using Index = hwy::MakeSigned<T>;
    return hn::Iota(Lanes<Index, kLineBytes / sizeof(T)>(), static_cast<Index>(beyond));
}

// The first line, of which the data have the lanes from `beyond` on; of the last one storeFirst() stores the others.
template <class T, size_t L>
HWY_INLINE void storeBeyond(Lanes<T, L> d, Vec<T, L> v, T* line, size_t beyond) {
    hn::BlendedStore(v, hn::Not(hn::FirstN(d, beyond)), d, line);
}
template <class T, size_t L>
HWY_INLINE Vec<T, L> loadBeyond(Lanes<T, L> d, const T* line, size_t beyond) {
    return hn::MaskedLoad(hn::Not(hn::FirstN(d, beyond)), d, line);
}

// ---- Results of a pass ----

// Where the lanes of interleaved results are in a vector of real parts in the order of a block, followed by one of
// imaginary parts; and again from the start.
template <class T>
struct InterleavedLanes {
    static constexpr size_t L = kLineBytes / sizeof(T);
    hwy::MakeSigned<T> lanes[2][3 * L]; // forward; inverse: the parts exchanged

    constexpr InterleavedLanes() : lanes() {
        constexpr size_t kInBlock = 16 / sizeof(T); // of 128 bits
        for (size_t inverse = 0; inverse < 2; ++inverse) {
            for (size_t i = 0; i < 3 * L; ++i) {
                const size_t in = i % L;
                const size_t upper = i / L % 2;
                const size_t lane = in / kInBlock * kInBlock + upper * kInBlock / 2 + in % kInBlock / 2;
                lanes[inverse][i] = static_cast<hwy::MakeSigned<T>>(lane + (in % 2 != inverse ? L : 0));
            }
        }
    }
};
template <class T>
inline constexpr InterleavedLanes<T> kInterleavedLanes;

// Stores as many complex values as a vector has lanes in two lines: the one has the end of the values before and the
// first ones, the other those that follow. The last ones wait for the next store in a line of the leg's own.
template <class T>
struct LinesStorer {
    static constexpr size_t L = kLineBytes / sizeof(T);

    T* lines; // the first one of the results
    size_t beyond;
    LaneOrder<T> ends; // the last lanes, which wait, and then the first ones
    LaneOrder<T> inner;
    T factor;

    LinesStorer(T* dst, bool isInverse, T scale)
        : lines(dst - lanesBeyondLine(dst)), beyond(lanesBeyondLine(dst)),
          ends(hn::LoadU(LaneOrderTag<T>(), kInterleavedLanes<T>.lanes[isInverse] + 2 * L - beyond)),
          inner(hn::LoadU(LaneOrderTag<T>(), kInterleavedLanes<T>.lanes[isInverse] + L - beyond)), factor(scale) {}

    HWY_INLINE void store(size_t i, Vec<T, L> re, Vec<T, L> im, T* waiting) const {
        const Lanes<T, L> d;
        T* const line = lines + 2 * i;
        const auto both = permuted(re, ends, im);
        hn::Store(hn::IfThenElse(hn::FirstN(d, beyond), hn::Load(d, waiting), both), d, line);
        hn::Store(permuted(re, inner, im), d, line + L);
        hn::Store(both, d, waiting);
    }
    // From values that are stored before number i, and to those from number i on.
    HWY_INLINE void wait(size_t i, T* waiting) const {
        const Lanes<T, L> d;
        hn::Store(loadFirst(d, lines + 2 * i, beyond), d, waiting);
    }
    HWY_INLINE void finish(size_t i, const T* waiting) const {
        const Lanes<T, L> d;
        storeFirst(d, hn::Load(d, waiting), lines + 2 * i, beyond);
    }
};
#else
inline constexpr bool kRealigns = false;
#endif

} // namespace zvps::ZVPS_LEVEL
