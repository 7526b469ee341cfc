// The passes of the complex transforms, from which the real ones are made too.
//
// A transform of N = R1 R2 R3 ... points is a pass for each factor. Before a pass of radix R, with s the product of the
// radices before it and m = N / (s R), the data are s-point transforms of the m R subsequences of step m R: value
// n s + k is number k of subsequence n. The pass multiplies by exp(-2 pi i n1 k / (s R)), transforms over n1, where
// n = n1 m + n2, and leaves number k + s k1 of subsequence n2. So the result is in its order after the last pass.
// Between the passes data are in blocks of V real and V imaginary parts, which a vector of the level holds. The first
// pass transposes in registers from neighbouring subsequences to neighbouring numbers; no other moves lanes until the
// result is interleaved. The inverse transform swaps the planes when it reads and writes.
#pragma once

#include "transforms/fft_butterflies.hpp"
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

#if HWY_TARGET <= HWY_AVX3
HWY_INLINE void storeInterleaved(__m512 re, __m512 im, float* p) {
    const __m512i lower = _mm512_setr_epi32(0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23);
    const __m512i upper = _mm512_setr_epi32(8, 24, 9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31);
    _mm512_storeu_ps(p, _mm512_permutex2var_ps(re, lower, im));
    _mm512_storeu_ps(p + 16, _mm512_permutex2var_ps(re, upper, im));
}
HWY_INLINE void storeInterleaved(__m512d re, __m512d im, double* p) {
    const __m512i lower = _mm512_setr_epi64(0, 8, 1, 9, 2, 10, 3, 11);
    const __m512i upper = _mm512_setr_epi64(4, 12, 5, 13, 6, 14, 7, 15);
    _mm512_storeu_pd(p, _mm512_permutex2var_pd(re, lower, im));
    _mm512_storeu_pd(p + 8, _mm512_permutex2var_pd(re, upper, im));
}
HWY_INLINE void storeInterleaved(__m256 re, __m256 im, float* p) {
    _mm256_storeu_ps(p, _mm256_permutex2var_ps(re, _mm256_setr_epi32(0, 8, 1, 9, 2, 10, 3, 11), im));
    _mm256_storeu_ps(p + 8, _mm256_permutex2var_ps(re, _mm256_setr_epi32(4, 12, 5, 13, 6, 14, 7, 15), im));
}
HWY_INLINE void storeInterleaved(__m256d re, __m256d im, double* p) {
    _mm256_storeu_pd(p, _mm256_permutex2var_pd(re, _mm256_setr_epi64x(0, 4, 1, 5), im));
    _mm256_storeu_pd(p + 4, _mm256_permutex2var_pd(re, _mm256_setr_epi64x(2, 6, 3, 7), im));
}
#endif

// ---- Loaders: V values from an index on ----

// Interleaved data. Lane l holds value column(l), an order that takes but one shuffle in blocks for each plane.
template <class T, bool kInverse>
struct InterleavedLoader {
    const T* p;

    template <size_t V>
    static constexpr size_t column(size_t lane) {
        constexpr size_t kLanes = 16 / sizeof(T);
        const size_t inBlock = lane % kLanes;
        return lane / kLanes * (kLanes / 2) + inBlock % (kLanes / 2) + inBlock / (kLanes / 2) * (V / 2);
    }

    template <size_t V>
    HWY_INLINE ComplexVec<T, V> load(size_t i) const {
        const Lanes<T, V> d;
        const auto a = hn::LoadU(d, p + 2 * i);
        const auto b = hn::LoadU(d, p + 2 * i + V);
        const auto even = evenOfBlocks<T, V>(d, a, b);
        const auto odd = oddOfBlocks<T, V>(d, a, b);
        if constexpr (kInverse) {
            return {odd, even};
        } else {
            return {even, odd};
        }
    }
};

template <class T>
struct SplitLoader {
    const T* re;
    const T* im;

    template <size_t V>
    static constexpr size_t column(size_t lane) {
        return lane;
    }
    template <size_t V>
    HWY_INLINE ComplexVec<T, V> load(size_t i) const {
        const Lanes<T, V> d;
        return {hn::LoadU(d, re + i), hn::LoadU(d, im + i)};
    }
};

// The blocks between the passes.
template <class T>
struct BlockLoader {
    const T* p;

    template <size_t V>
    HWY_INLINE ComplexVec<T, V> load(size_t i) const {
        const Lanes<T, V> d;
        return {hn::LoadU(d, p + 2 * i), hn::LoadU(d, p + 2 * i + V)};
    }
};

// ---- Storers ----

template <class T, bool kInverse>
struct InterleavedStorer {
    T* p;

    template <size_t V>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        const auto first = kInverse ? x.im : x.re;
        const auto second = kInverse ? x.re : x.im;
#if HWY_TARGET <= HWY_AVX3
        if constexpr (V * sizeof(T) >= 32) {
            storeInterleaved(first.raw, second.raw, p + 2 * i);
            return;
        }
#endif
        hn::StoreInterleaved2(first, second, Lanes<T, V>(), p + 2 * i);
    }
};

template <class T>
struct SplitStorer {
    T* re;
    T* im;

    template <size_t V>
    HWY_INLINE void storeRe(size_t i, Vec<T, V> x) const {
        hn::StoreU(x, Lanes<T, V>(), re + i);
    }
    template <size_t V>
    HWY_INLINE void storeIm(size_t i, Vec<T, V> x) const {
        hn::StoreU(x, Lanes<T, V>(), im + i);
    }
    template <size_t V>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        storeRe<V>(i, x.re);
        storeIm<V>(i, x.im);
    }
};

template <class T>
struct BlockStorer {
    T* p;

    template <size_t V>
    HWY_INLINE void storeRe(size_t i, Vec<T, V> x) const {
        hn::StoreU(x, Lanes<T, V>(), p + 2 * i);
    }
    template <size_t V>
    HWY_INLINE void storeIm(size_t i, Vec<T, V> x) const {
        hn::StoreU(x, Lanes<T, V>(), p + 2 * i + V);
    }
    template <size_t V>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        storeRe<V>(i, x.re);
        storeIm<V>(i, x.im);
    }
};

template <class T, class Storer>
struct ScaledStorer {
    Storer storer;
    T factor;

    template <size_t V>
    HWY_INLINE void store(size_t i, ComplexVec<T, V> x) const {
        const auto f = hn::Set(Lanes<T, V>(), factor);
        storer.template store<V>(i, ComplexVec<T, V>{hn::Mul(x.re, f), hn::Mul(x.im, f)});
    }
};

// ---- Passes ----

// The first pass, of N / R = `columns` butterflies. R is a multiple of V.
template <class T, size_t V, size_t R, class Loader, class Storer>
HWY_INLINE void firstPass(const Loader& loader, const Storer& storer, size_t columns) {
    using C = ComplexVec<T, V>;
    static_assert(R % V == 0);
    for (size_t n = 0; n < columns; n += V) {
        C x[R];
        Butterfly<T, V, R>::run(
            [&](auto n1) ZVPS_INLINE_LAMBDA { return loader.template load<V>(n1 * columns + n); },
            [&](auto k1, C value) ZVPS_INLINE_LAMBDA { x[k1] = value; });
        unroll<R / V>([&](auto g) ZVPS_INLINE_LAMBDA {
            transpose<T, V>([&](auto row) ZVPS_INLINE_LAMBDA { return x[g * V + row].re; },
                            [&](auto lane, Vec<T, V> v) ZVPS_INLINE_LAMBDA {
                                constexpr size_t kColumn = Loader::template column<V>(lane);
                                storer.template storeRe<V>((n + kColumn) * R + g * V, v);
                            });
            transpose<T, V>([&](auto row) ZVPS_INLINE_LAMBDA { return x[g * V + row].im; },
                            [&](auto lane, Vec<T, V> v) ZVPS_INLINE_LAMBDA {
                                constexpr size_t kColumn = Loader::template column<V>(lane);
                                storer.template storeIm<V>((n + kColumn) * R + g * V, v);
                            });
        });
    }
}

// The twiddles of numbers k to k + V - 1 before a pass of radix R, in blocks of B.
template <size_t R, size_t B, class T>
HWY_INLINE const T* twiddlesOf(const T* twiddles, size_t k) {
    return twiddles + k / B * (2 * B * (R - 1)) + k % B;
}

// A butterfly of V numbers from `in`, the R values `inStep` apart, to `out`, `outStep` apart.
template <class T, size_t V, size_t R, size_t B, class Loader, class Storer>
HWY_INLINE void twiddledButterfly(const Loader& loader, size_t in, size_t inStep, const T* twiddles,
                                  const Storer& storer, size_t out, size_t outStep) {
    using C = ComplexVec<T, V>;
    const Lanes<T, V> d;
    Butterfly<T, V, R>::run(
        [&](auto n1) ZVPS_INLINE_LAMBDA {
            const C x = loader.template load<V>(in + n1 * inStep);
            if constexpr (n1 == 0) {
                return x;
            } else {
                const T* const w = twiddles + 2 * B * (n1 - 1);
                return mul(x, C{hn::LoadU(d, w), hn::LoadU(d, w + B)});
            }
        },
        [&](auto k1, C x) ZVPS_INLINE_LAMBDA { storer.template store<V>(out + k1 * outStep, x); });
}

// The loader's and the storer's memory do not overlap.
template <class T, size_t V, size_t R, size_t B, class Loader, class Storer>
HWY_INLINE void middlePass(const Loader& loader, const Storer& storer, size_t s, size_t m, const T* twiddles) {
    for (size_t n = 0; n < m; ++n) {
        for (size_t k = 0; k < s; k += V) {
            twiddledButterfly<T, V, R, B>(loader, n * s + k, m * s, twiddlesOf<R, B>(twiddles, k), storer,
                                          n * R * s + k, s);
        }
    }
}

// Loader and storer may work on the same memory.
template <class T, size_t V, size_t R, size_t B, class Loader, class Storer>
HWY_INLINE void lastPass(const Loader& loader, const Storer& storer, size_t s, const T* twiddles) {
    for (size_t k = 0; k < s; k += V) {
        twiddledButterfly<T, V, R, B>(loader, k, s, twiddlesOf<R, B>(twiddles, k), storer, k, s);
    }
}

} // namespace zvps::ZVPS_LEVEL
