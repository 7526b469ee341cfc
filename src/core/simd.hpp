// What kernels are made of: vectors of a fixed number of lanes, sources of operands, and the element-wise loop.
// For kernel files only, which are compiled once per level.
#pragma once

#ifndef ZVPS_LEVEL
#error "kernel code is compiled for a level"
#endif

// The levels are the plain x86-64-v2, -v3 and -v4: no AES.
#define HWY_DISABLE_PCLMUL_AES 1
// Highway is headers only here; its debug checks would call its library.
#define HWY_IS_DEBUG_BUILD 0
#include <hwy/cache_control.h>
#include <hwy/highway.h>

#include "core/scaled.hpp"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>

namespace zvps::ZVPS_LEVEL {

namespace hn = hwy::HWY_NAMESPACE;

#if defined(__AVX512F__)
static_assert(HWY_TARGET == HWY_AVX3);
#elif defined(__AVX2__)
static_assert(HWY_TARGET == HWY_AVX2);
#else
static_assert(HWY_TARGET == HWY_SSE4);
#endif

inline constexpr size_t kVectorBytes = hn::MaxLanes(hn::ScalableTag<uint8_t>());

// The intrinsic of a full vector of the level, for what Highway does not offer.
#if HWY_TARGET <= HWY_AVX3
#define ZVPS_INTRINSIC(name) _mm512_##name
#elif HWY_TARGET == HWY_AVX2
#define ZVPS_INTRINSIC(name) _mm256_##name
#else
#define ZVPS_INTRINSIC(name) _mm_##name
#endif

template <class T, size_t N>
using Lanes = hn::Simd<T, N, 0>;

template <class T, size_t N>
using Vec = hn::Vec<Lanes<T, N>>;

// step(0), ..., step(count - 1), unrolled: so that g++ keeps arrays of vectors in registers.
template <size_t count, class Step>
HWY_INLINE void repeat(Step step) {
    if constexpr (count != 0) {
        repeat<count - 1>(step);
        step(count - 1);
    }
}

// ---- Partial vectors ----

// The first n < N elements, zeros behind them; touches nothing beyond them.
template <class T, size_t N>
HWY_INLINE Vec<T, N> loadFirst(Lanes<T, N> d, const T* p, size_t n) {
#if HWY_TARGET <= HWY_AVX3
    return hn::MaskedLoad(hn::FirstN(d, n), d, p);
#else
    alignas(kVectorBytes) T block[N] = {};
    __builtin_memcpy(block, p, n * sizeof(T));
    return hn::Load(d, block);
#endif
}

template <class T, size_t N>
HWY_INLINE void storeFirst(Lanes<T, N> d, Vec<T, N> v, T* p, size_t n) {
#if HWY_TARGET <= HWY_AVX3
    hn::BlendedStore(v, hn::FirstN(d, n), d, p);
#else
    alignas(kVectorBytes) T block[N];
    hn::Store(v, d, block);
    __builtin_memcpy(p, block, n * sizeof(T));
#endif
}

// Two vectors that an operation takes and gives at once.
template <class V>
struct Two {
    V lower;
    V upper;
};

// Of light operations, which wait for stores alone, vectors of 64 bytes as two halves: no slower where the processor
// stores 64 bytes at once, and a tenth quicker in the first-level cache where it stores 32.
template <bool kLight, class V, class D, class T>
HWY_INLINE void storeVectors(V v, D d, T* p) {
    if constexpr (kLight && sizeof(v) == 64) {
        const hn::Half<D> half;
        hn::StoreU(hn::LowerHalf(half, v), half, p);
        hn::StoreU(hn::UpperHalf(half, v), half, p + hn::MaxLanes(half));
    } else {
        hn::StoreU(v, d, p);
    }
}
template <bool kLight, class V, class D, class T>
HWY_INLINE void storeVectors(Two<V> v, D d, T* p) {
    storeVectors<kLight>(v.lower, d, p);
    storeVectors<kLight>(v.upper, d, p + hn::MaxLanes(d));
}

// An operation of a vector instruction or two says so by its member kLight.
template <class Op, class = void>
inline constexpr bool isLight = false;
template <class Op>
inline constexpr bool isLight<Op, std::void_t<decltype(Op::kLight)>> = Op::kLight;
// A light one that shuffles its results stores them whole: taking halves is a shuffle more.
template <class Op, class = void>
inline constexpr bool storesHalves = isLight<Op>;
template <class Op>
inline constexpr bool storesHalves<Op, std::void_t<decltype(Op::kShuffles)>> = isLight<Op> && !Op::kShuffles;

template <class V, class D, class T>
HWY_INLINE void streamVectors(V v, D d, T* p) {
    hn::Stream(v, d, p);
}
template <class V, class D, class T>
HWY_INLINE void streamVectors(Two<V> v, D d, T* p) {
    hn::Stream(v.lower, d, p);
    hn::Stream(v.upper, d, p + hn::MaxLanes(d));
}

template <class V, class D, class T>
HWY_INLINE void storeFirstOf(V v, D d, T* p, size_t n) {
    storeFirst(d, v, p, n);
}
template <class V, class D, class T>
HWY_INLINE void storeFirstOf(Two<V> v, D d, T* p, size_t n) {
    constexpr size_t N = hn::MaxLanes(d);
    if (n < N) {
        storeFirst(d, v.lower, p, n);
    } else {
        hn::StoreU(v.lower, d, p);
        storeFirst(d, v.upper, p + N, n - N);
    }
}

// ---- Sources of operands ----

// A source gives N lanes at an element index, or from there n < N lanes. kPeriod: 2 where that index must be even.

template <class T>
struct Vector {
    const T* p;

    static constexpr size_t kLaneBytes = sizeof(T);
    static constexpr size_t kReadBytes = sizeof(T);
    static constexpr size_t kPeriod = 1;

    template <size_t N>
    HWY_INLINE Vec<T, N> load(size_t i) const {
        return hn::LoadU(Lanes<T, N>(), p + i);
    }
    template <size_t N>
    HWY_INLINE Vec<T, N> loadSome(size_t i, size_t n) const {
        return loadFirst(Lanes<T, N>(), p + i, n);
    }
    HWY_INLINE bool startsAt(const void* address) const { return p == address; }
};

// A vector of divisors: the lanes behind a partial vector hold 1, so that they neither divide by zero nor report it.
template <class T>
struct Divisors : Vector<T> {
    explicit Divisors(const T* divisors) : Vector<T>{divisors} {}

    template <size_t N>
    HWY_INLINE Vec<T, N> loadSome(size_t i, size_t n) const {
        const Lanes<T, N> d;
        return hn::IfThenElse(hn::FirstN(d, n), Vector<T>::template loadSome<N>(i, n), hn::Set(d, T{1}));
    }
};

// A constant, which may differ in even and odd lanes, so that real and complex ones share a kernel.
template <class T>
struct Constant {
    Pair<T> value;

    static constexpr size_t kLaneBytes = sizeof(T);
    static constexpr size_t kReadBytes = 0;
    static constexpr size_t kPeriod = 2;

    template <size_t N>
    HWY_INLINE Vec<T, N> load(size_t) const {
        const Lanes<T, N> d;
        if constexpr (N == 1) {
            return hn::Set(d, value.values[0]);
        } else if constexpr (sizeof(T) == 8) {
            return repeated<N>(value.values);
        } else {
            // As one element of twice the width.
            using Both = std::conditional_t<std::is_same_v<T, float>, double, hwy::MakeWide<hwy::MakeUnsigned<T>>>;
            Both both;
            __builtin_memcpy(&both, &value, sizeof(both));
            return hn::BitCast(d, hn::Set(Lanes<Both, N / 2>(), both));
        }
    }
    template <size_t N>
    HWY_INLINE Vec<T, N> loadSome(size_t, size_t) const {
        return load<N>(0);
    }
    HWY_INLINE bool startsAt(const void*) const { return false; }

  private:
    template <size_t N, class Block>
    static HWY_INLINE Vec<T, N> repeated(Block block) {
        if constexpr (N == 2) {
            return Vec<T, N>{reinterpret_cast<decltype(Vec<T, N>::raw)>(block)};
        } else {
            const auto half = repeated<N / 2>(block);
            return hn::Combine(Lanes<T, N>(), half, half);
        }
    }
};

// A real vector beside complex ones: every element fills the two lanes of a pair.
template <class T>
struct Duplicated {
    const T* p;

    static constexpr size_t kLaneBytes = sizeof(T);
    static constexpr size_t kReadBytes = sizeof(T) / 2;
    static constexpr size_t kPeriod = 2;

    template <size_t N>
    HWY_INLINE Vec<T, N> load(size_t i) const {
        return duplicate<N>(hn::LoadU(Lanes<T, N / 2>(), p + i / 2));
    }
    template <size_t N>
    HWY_INLINE Vec<T, N> loadSome(size_t i, size_t n) const {
        return duplicate<N>(loadFirst(Lanes<T, N / 2>(), p + i / 2, n / 2));
    }
    HWY_INLINE bool startsAt(const void*) const { return false; }

  private:
    template <size_t N>
    static HWY_INLINE Vec<T, N> duplicate(Vec<T, N / 2> v) {
        static_assert(sizeof(T) == 4);
        const Lanes<uint64_t, N / 2> wide;
        const auto low = hn::PromoteTo(wide, hn::BitCast(Lanes<uint32_t, N / 2>(), v));
        return hn::BitCast(Lanes<T, N>(), hn::Or(low, hn::ShiftLeft<32>(low)));
    }
};

// ---- The element-wise loop ----

// From here on a misaligned destination is worth a separate first vector.
inline constexpr size_t kAlignFromBytes = 1024;
// A result that has left the caches before anyone can read it is written past them. That saves reading its memory but
// is slower while the caches take part in the writing, all the longer the less there is to read: measured, it pays once
// what is written and four times what is read come to this. Copies and fills: from 12 and 60 MiB on.
inline constexpr size_t kStreamFromBytes = size_t{60} << 20;
template <class T, class... Sources>
inline constexpr size_t kStreamFrom = kStreamFromBytes / (sizeof(T) + ... + (4 * Sources::kReadBytes));

constexpr size_t larger(size_t a, size_t b) {
    return a < b ? b : a;
}
template <class... Sizes>
constexpr size_t largest(size_t first, Sizes... rest) {
    size_t result = first;
    ((result = larger(result, rest)), ...);
    return result;
}

// kVectors vectors of N lanes from a source, and the first n < kVectors * N lanes of it.
template <size_t kVectors, size_t N, class Source>
HWY_INLINE auto loadVectors(const Source& source, size_t i) {
    if constexpr (kVectors == 1) {
        return source.template load<N>(i);
    } else {
        // Not by way of a local variable: g++ takes copies of structures through memory.
        return Two<decltype(source.template load<N>(i))>{source.template load<N>(i), source.template load<N>(i + N)};
    }
}
template <size_t kVectors, size_t N, class Source>
HWY_INLINE auto loadFirstVectors(const Source& source, size_t n) {
    if constexpr (kVectors == 1) {
        return source.template loadSome<N>(0, n);
    } else {
        const bool both = n > N;
        const auto lower = source.template loadSome<N>(0, both ? N : n);
        return Two<std::remove_const_t<decltype(lower)>>{lower, source.template loadSome<N>(N, both ? n - N : 0)};
    }
}

// The loop for vectors so long that the destination's alignment counts, or its way past the caches.
template <size_t kPeriod, size_t kVectors, size_t N, class Op, class T, class... Sources>
HWY_NOINLINE Op mapLong(Op op, T* dst, size_t n, Sources... sources) {
    constexpr size_t kBytes = N * sizeof(T);
    constexpr size_t kStep = kVectors * N;
    const Lanes<T, N> d;
    const size_t last = n - kStep;
    const auto tail = op(d, loadVectors<kVectors, N>(sources, last)...);
    const auto head = op(d, loadVectors<kVectors, N>(sources, 0)...);
    const size_t beyond = reinterpret_cast<uintptr_t>(dst) % kBytes;
    const size_t lead = N - beyond / sizeof(T);
    const bool canAlign = beyond % sizeof(T) == 0 && lead % kPeriod == 0;
    size_t i = canAlign ? lead : kStep;
    const bool toCache = n < kStreamFrom<T, Sources...> || !canAlign || (sources.startsAt(dst) || ...);
    if (kBytes < 16 || toCache) {
        for (; i < last; i += kStep) {
            storeVectors<storesHalves<Op>>(op(d, loadVectors<kVectors, N>(sources, i)...), d, dst + i);
        }
    } else {
        for (; i < last; i += kStep) {
            streamVectors(op(d, loadVectors<kVectors, N>(sources, i)...), d, dst + i);
        }
        hwy::FlushStream();
    }
    storeVectors<storesHalves<Op>>(tail, d, dst + last);
    storeVectors<storesHalves<Op>>(head, d, dst);
    return op;
}

// The part of map() for n >= kVectors * N lanes.
template <size_t kPeriod, size_t kVectors, size_t N, class Op, class T, class... Sources>
HWY_INLINE void mapVectors(Op& op, T* dst, size_t n, const Sources&... sources) {
    constexpr size_t kStep = kVectors * N;
    const Lanes<T, N> d;
    constexpr size_t kAlignFrom = kAlignFromBytes / sizeof(T);
    if (HWY_UNLIKELY(n >= kAlignFrom &&
                     (reinterpret_cast<uintptr_t>(dst) % (N * sizeof(T)) != 0 || n >= kStreamFrom<T, Sources...>))) {
        op = mapLong<kPeriod, kVectors, N>(op, dst, n, sources...);
        return;
    }
    const size_t last = n - kStep;
    const auto tail = op(d, loadVectors<kVectors, N>(sources, last)...);
    size_t i = 0;
    // Light operations at least once, which does no harm to a single vector and spares its branch to all.
    if (isLight<Op> || last != 0) {
        do {
            storeVectors<storesHalves<Op>>(op(d, loadVectors<kVectors, N>(sources, i)...), d, dst + i);
            i += kStep;
        } while (i < last);
    }
    storeVectors<storesHalves<Op>>(tail, d, dst + last);
}

// dst[i] = op(sources[i]...) for n lanes, with op called on vectors. kPeriod: 2 where lanes belong together in pairs.
// kWorkBytes: the width of the op's inner lanes where that is more than any operand's. kVectors: 2 for an op that takes
// two vectors of each source at once (Two). The destination may be the same as a source: the vectors at the two ends,
// which overlap their neighbours, are computed before anything is stored that they read.
template <size_t kPeriod = 1, size_t kWorkBytes = 1, size_t kVectors = 1, class Op, class T, class... Sources>
HWY_INLINE void map(Op& op, T* dst, size_t n, const Sources&... sources) {
    constexpr size_t N = kVectorBytes / largest(kWorkBytes, sizeof(T), Sources::kLaneBytes...);
    constexpr size_t kStep = kVectors * N;
    const Lanes<T, N> d;
    if (n < kStep) {
        storeFirstOf(op(d, loadFirstVectors<kVectors, N>(sources, n)...), d, dst, n);
        return;
    }
    mapVectors<largest(kPeriod, Sources::kPeriod...), kVectors, N>(op, dst, n, sources...);
}

} // namespace zvps::ZVPS_LEVEL
