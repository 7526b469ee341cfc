// The passes of the complex transforms, from which the real ones are made too.
//
// A transform of N = R1 R2 R3 ... points is a pass for each factor. Before a pass of radix R, with s the product of the
// radices before it and m = N / (s R), the data are s-point transforms of the m R subsequences of step m R: number k of
// subsequence n at n s + k. The pass multiplies by exp(-2 pi i n1 k / (s R)), transforms over n1, where n = n1 m + n2,
// and leaves number k + s k1 of subsequence n2. So the result is in its order after the last pass.
// Between the passes data are in blocks of B values, B real parts and then B imaginary parts, of which a vector holds V
// lanes. The order of the values in a block is that in which their interleaving takes but one shuffle in 128 bits for
// each vector. The first pass transposes in registers from neighbouring subsequences to neighbouring numbers; no other
// moves lanes until the result is interleaved. The inverse transform swaps the planes when it reads and writes.
#pragma once

#include "transforms/fft_butterflies.hpp"
#include "transforms/fft_realign.hpp"
#include "transforms/fft_tables.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- Shuffles between interleaved data and planes ----

#if HWY_TARGET <= HWY_AVX3
template <int pattern>
HWY_INLINE __m512 shufflePairs(__m512 a, __m512 b) {
    return _mm512_shuffle_ps(a, b, pattern);
}
#endif
#if HWY_TARGET <= HWY_AVX2
template <int pattern>
HWY_INLINE __m256 shufflePairs(__m256 a, __m256 b) {
    return _mm256_shuffle_ps(a, b, pattern);
}
#endif
template <int pattern>
HWY_INLINE __m128 shufflePairs(__m128 a, __m128 b) {
    return _mm_shuffle_ps(a, b, pattern);
}

// In each block of 128 bits the even (odd) lanes of a, then those of b.
template <class T, size_t V>
HWY_INLINE Vec<T, V> evenOfBlocks(Lanes<T, V> d, Vec<T, V> a, Vec<T, V> b) {
    if constexpr (sizeof(T) == 4) {
        return Vec<T, V>{shufflePairs<0x88>(a.raw, b.raw)};
    } else {
        return hn::InterleaveLower(d, a, b);
    }
}
template <class T, size_t V>
HWY_INLINE Vec<T, V> oddOfBlocks(Lanes<T, V> d, Vec<T, V> a, Vec<T, V> b) {
    if constexpr (sizeof(T) == 4) {
        return Vec<T, V>{shufflePairs<0xDD>(a.raw, b.raw)};
    } else {
        return hn::InterleaveUpper(d, a, b);
    }
}

// ---- Blocks ----

// Where the real parts of the V values from number i on are; the imaginary ones are B further.
template <size_t V, size_t B>
HWY_INLINE size_t inBlocks(size_t i) {
    return V == B ? 2 * i : 2 * i - i % B;
}

// The value at a place in a block of interleaved data, after their planes were separated by evenOfBlocks().
template <class T, size_t B>
constexpr size_t numberAt(size_t place) {
    return fftNumberAt<T>(place, B);
}

// Between the order of a block of V values and that of their numbers: pairs of lanes of 4 bytes, or lanes of 8, move.
template <class T, size_t V>
HWY_INLINE Vec<T, V> toBlocks(Vec<T, V> x) {
    const Lanes<T, V> d;
    constexpr size_t kUnits = V * sizeof(T) / 8;
    const Lanes<int64_t, kUnits> unit;
    if constexpr (kUnits == 8) {
        alignas(64) static constexpr int64_t kOrder[] = {0, 4, 1, 5, 2, 6, 3, 7};
        return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(unit, x), hn::SetTableIndices(unit, kOrder)));
    } else if constexpr (kUnits == 4) {
        alignas(32) static constexpr int64_t kOrder[] = {0, 2, 1, 3};
        return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(unit, x), hn::SetTableIndices(unit, kOrder)));
    } else {
        return x;
    }
}
template <class T, size_t V>
HWY_INLINE Vec<T, V> fromBlocks(Vec<T, V> x) {
    const Lanes<T, V> d;
    constexpr size_t kUnits = V * sizeof(T) / 8;
    const Lanes<int64_t, kUnits> unit;
    if constexpr (kUnits == 8) {
        alignas(64) static constexpr int64_t kOrder[] = {0, 2, 4, 6, 1, 3, 5, 7};
        return hn::BitCast(d, hn::TableLookupLanes(hn::BitCast(unit, x), hn::SetTableIndices(unit, kOrder)));
    } else {
        return toBlocks<T, V>(x);
    }
}

// ---- Loaders: V values from an index on ----

template <class T>
struct BlockLoader {
    const T* p;

    template <size_t V, size_t B>
    HWY_INLINE ComplexVec<T, V> load(size_t i) const {
        const Lanes<T, V> d;
        const T* const block = p + inBlocks<V, B>(i);
        return {inRegister(hn::LoadU(d, block)), inRegister(hn::LoadU(d, block + B))};
    }
};

template <class T, bool kInverse>
struct InterleavedLoader {
    const T* p;

    HWY_INLINE size_t columnsToLine() const { return valuesToLine(p, 2 * sizeof(T)); }

    template <size_t V, size_t B>
    HWY_INLINE ComplexVec<T, V> load(size_t i) const {
        const Lanes<T, V> d;
        const ComplexVec<T, V> x = BlockLoader<T>{p}.template load<V, B>(i);
        const auto even = evenOfBlocks<T, V>(d, x.re, x.im);
        const auto odd = oddOfBlocks<T, V>(d, x.re, x.im);
        if constexpr (kInverse) {
            return {odd, even};
        } else {
            return {even, odd};
        }
    }
};

// Data in one array for each part. In memory the values are in their order, in vectors in that of the blocks.
template <class T>
struct SplitLoader {
    const T* re;
    const T* im;

    HWY_INLINE size_t columnsToLine() const {
        const size_t n = valuesToLine(re, sizeof(T));
        return n == valuesToLine(im, sizeof(T)) ? n : 0;
    }

    template <size_t V, size_t B>
    HWY_INLINE ComplexVec<T, V> load(size_t i) const {
        return {part<V, B>(re, i), part<V, B>(im, i)};
    }

  private:
    template <size_t V, size_t B>
    static HWY_INLINE Vec<T, V> part(const T* p, size_t i) {
        const Lanes<T, V / 2> half;
        const T* const lower = p + inBlocks<V, B>(i) / 2;
        return toBlocks<T, V>(hn::Combine(Lanes<T, V>(), hn::LoadU(half, lower + B / 2), hn::LoadU(half, lower)));
    }
};

// ---- Storers ----

template <class T>
struct BlockStorer {
    T* p;

    template <size_t V, size_t B>
    HWY_INLINE void storeRe(size_t i, Vec<T, V> x) const {
        hn::StoreU(x, Lanes<T, V>(), p + inBlocks<V, B>(i));
    }
    template <size_t V, size_t B>
    HWY_INLINE void storeIm(size_t i, Vec<T, V> x) const {
        hn::StoreU(x, Lanes<T, V>(), p + inBlocks<V, B>(i) + B);
    }
    template <size_t V, size_t B>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        storeRe<V, B>(i, x.re);
        storeIm<V, B>(i, x.im);
    }
};

template <class T, bool kInverse>
struct InterleavedStorer {
    T* p;

    template <size_t V, size_t B>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        const Lanes<T, V> d;
        const auto first = kInverse ? x.im : x.re;
        const auto second = kInverse ? x.re : x.im;
        BlockStorer<T>{p}.template store<V, B>(
            i, {hn::InterleaveLower(d, first, second), hn::InterleaveUpper(d, first, second)});
    }
};

template <class T>
struct SplitStorer {
    T* re;
    T* im;

    template <size_t V, size_t B>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        storePart<V, B>(x.re, re, i);
        storePart<V, B>(x.im, im, i);
    }

  private:
    template <size_t V, size_t B>
    static HWY_INLINE void storePart(Vec<T, V> x, T* p, size_t i) {
        const Lanes<T, V / 2> half;
        const Vec<T, V> v = fromBlocks<T, V>(x);
        T* const lower = p + i - i % B / 2;
        hn::StoreU(hn::LowerHalf(half, v), half, lower);
        hn::StoreU(hn::UpperHalf(half, v), half, lower + B / 2);
    }
};

template <class T, class Storer>
struct ScaledStorer {
    Storer storer;
    T factor;

    template <size_t V, size_t B>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        const auto f = hn::Set(Lanes<T, V>(), factor);
        storer.template store<V, B>(i, ComplexVec<T, V>{hn::Mul(x.re, f), hn::Mul(x.im, f)});
    }
    template <size_t N>
    HWY_INLINE void storePairs(size_t i, Vec<T, N> x) const {
        storer.template storePairs<N>(i, hn::Mul(x, hn::Set(Lanes<T, N>(), factor)));
    }
};

// ---- Passes ----

// For a step between the values of a butterfly: keeps the compiler from holding all its multiples in registers of their
// own, for which there are too few.
HWY_INLINE size_t multipliedAnew(size_t step) {
    if (!__builtin_constant_p(step)) asm("" : "+r"(step));
    return step;
}

// The columns n to n + count - 1 of the first pass of N / R = `columns` butterflies, to the storer from column 0 on.
template <class T, size_t V, size_t B, size_t R, class Loader, class Storer>
HWY_INLINE void firstPass(const Loader& loader, size_t n, size_t count, size_t columns, const Storer& storer) {
    using C = ComplexVec<T, V>;
    static_assert(R % B == 0 && B % V == 0);
    for (size_t i = 0; i < count; i += V) {
        C x[R];
        const size_t step = multipliedAnew(columns);
        Butterfly<T, V, R, kMultipliersToo>::run(
            [&](auto n1) ZVPS_INLINE_LAMBDA { return loader.template load<V, V>(n1 * step + n + i); },
            [&](auto k1, C value) ZVPS_INLINE_LAMBDA { x[k1] = value; });
        unroll<R / V>([&](auto chunk) ZVPS_INLINE_LAMBDA {
            constexpr size_t kBlock = chunk * V / B * B;
            constexpr size_t kInBlock = chunk * V % B;
            transpose<T, V>([&](auto row) ZVPS_INLINE_LAMBDA { return x[kBlock + numberAt<T, B>(kInBlock + row)].re; },
                            [&](auto lane, Vec<T, V> v) ZVPS_INLINE_LAMBDA {
                                storer.template storeRe<V, B>((i + numberAt<T, V>(lane)) * R + chunk * V, v);
                            });
            transpose<T, V>([&](auto row) ZVPS_INLINE_LAMBDA { return x[kBlock + numberAt<T, B>(kInBlock + row)].im; },
                            [&](auto lane, Vec<T, V> v) ZVPS_INLINE_LAMBDA {
                                storer.template storeIm<V, B>((i + numberAt<T, V>(lane)) * R + chunk * V, v);
                            });
        });
    }
}

// The twiddles of numbers k to k + V - 1 before a pass of radix R.
template <size_t B, size_t R, class T>
HWY_INLINE const T* twiddlesOf(const T* twiddles, size_t k) {
    return twiddles + k / B * (2 * B * (R - 1)) + k % B;
}

// Where butterflies find or leave their values: those of a butterfly are `step` apart, those of the next one `next`.
struct Strides {
    size_t next;
    size_t step;
};

// A butterfly of V numbers from number `in` on, with the twiddles of these numbers; out(Index<k1>(), value).
template <class T, size_t V, size_t B, size_t R, class Loader, class Out>
HWY_INLINE void butterflyTo(const Loader& loader, size_t in, size_t inStep, const T* twiddles, const Out& out) {
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    inStep = multipliedAnew(inStep);
    Butterfly<T, V, R>::run(
        [&](auto n1) ZVPS_INLINE_LAMBDA {
            const C x = loader.template load<V, B>(in + n1 * inStep);
            if constexpr (n1 == 0) {
                return x;
            } else {
                const T* const w = twiddles + 2 * B * (n1 - 1);
                return mul(x, C{inRegister(hn::LoadU(d, w)), inRegister(hn::LoadU(d, w + B))});
            }
        },
        out);
}

// The same to number `out`.
template <class T, size_t V, size_t B, size_t R, class Loader, class Storer>
HWY_INLINE void butterfly(const Loader& loader, size_t in, size_t inStep, const T* twiddles, const Storer& storer,
                          size_t out, size_t outStep) {
    outStep = multipliedAnew(outStep);
    butterflyTo<T, V, B, R>(loader, in, inStep, twiddles, [&](auto k1, ComplexVec<T, V> x) ZVPS_INLINE_LAMBDA {
        storer.template store<V, B>(out + k1 * outStep, x);
    });
}

// Of a pass between the first and the last `count` butterflies for each of s numbers. The memories do not overlap,
// or each butterfly leaves its values where it found them.
template <class T, size_t V, size_t B, size_t R>
HWY_INLINE void middlePass(const T* src, Strides in, T* dst, Strides out, size_t count, size_t s, const T* twiddles) {
    for (size_t n = 0; n < count; ++n) {
        for (size_t k = 0; k < s; k += V) {
            butterfly<T, V, B, R>(BlockLoader<T>{src}, n * in.next + k, in.step, twiddlesOf<B, R>(twiddles, k),
                                  BlockStorer<T>{dst}, n * out.next + k, out.step);
        }
    }
}

// Of the last pass `count` blocks of numbers, from number k on; `next` is the way from block to block. The storer may
// work on the memory of the source.
template <class T, size_t V, size_t B, size_t R, class Storer>
HWY_INLINE void lastPass(const T* src, size_t inStep, const Storer& storer, size_t k, Strides out, size_t count,
                         const T* twiddles) {
    for (size_t n = 0; n < count; ++n) {
        for (size_t i = 0; i < B; i += V) {
            const size_t number = k + n * out.next + i;
            butterfly<T, V, B, R>(BlockLoader<T>{src}, n * B + i, inStep, twiddlesOf<B, R>(twiddles, number), storer,
                                  number, out.step);
        }
    }
}

} // namespace zvps::ZVPS_LEVEL
