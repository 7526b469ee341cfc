// Real FFTs: N = N1 x N2 samples in N1 rows. Real transforms of the columns leave rows k1 = 0 .. N1/2; complex
// transforms of length N2 along the rows 1 .. N1/2 - 1, side by side in the lanes of vectors, give the bins k1 + N1 k2,
// each of which is a bin of the half spectrum or the conjugate of one. The rows 0 and N1/2 together are the transform of
// 2 N2 real values, which runs as a complex one of length N2 in the lane of row 0.
#pragma once

#include "core/simd.hpp"
#include "transforms/fft.table.hpp"
#include "transforms/fft_real_plan.hpp"

#include <utility>

namespace zvps::ZVPS_LEVEL {

// step(0), ..., step(count - 1) with the index as a constant.
template <size_t count, size_t first = 0, class Step>
HWY_INLINE void unroll(Step&& step) {
    if constexpr (first < count) {
        step(std::integral_constant<size_t, first>());
        unroll<count, first + 1>(step);
    }
}
#define ZVPS_STEP(i) [&](auto i) __attribute__((always_inline))

// cos(2 pi k / 32) for k = 0 .. 8.
inline constexpr double kCosines32[] = {
    1.0,
    0.98078528040323044912618223613424,
    0.92387953251128675612818318939679,
    0.83146961230254523707878837761791,
    0.70710678118654752440084436210485,
    0.55557023301960222474283081394853,
    0.38268343236508977172845998403040,
    0.19509032201612826784828486847702,
    0.0,
};

template <size_t N, size_t k, class T>
inline constexpr T kCosine = static_cast<T>(k * (32 / N) <= 8 ? kCosines32[k * (32 / N) % 9]
                                                              : -kCosines32[(16 - k * (32 / N)) % 9]);
template <size_t N, size_t k, class T>
inline constexpr T kSine = static_cast<T>(kCosines32[k * (32 / N) <= 8 ? 8 - k * (32 / N) : k * (32 / N) - 8]);

template <class V>
struct Complex {
    V re;
    V im;
};

// (re + i im) (c - i s)
template <class V>
HWY_INLINE Complex<V> rotated(V re, V im, V c, V s) {
    return {hn::MulAdd(im, s, hn::Mul(re, c)), hn::NegMulAdd(re, s, hn::Mul(im, c))};
}
// (re + i im) (c + i s)
template <class V>
HWY_INLINE Complex<V> rotatedBack(V re, V im, V c, V s) {
    return {hn::NegMulAdd(im, s, hn::Mul(re, c)), hn::MulAdd(re, s, hn::Mul(im, c))};
}

// ---- Butterflies ----

// The complex transform of N points in registers.
template <size_t N, size_t kStride = 1, class D, class V>
HWY_INLINE void complexDft(D d, const V* xRe, const V* xIm, V* re, V* im) {
    using T = hn::TFromD<D>;
    if constexpr (N == 1) {
        re[0] = xRe[0];
        im[0] = xIm[0];
    } else {
        V evenRe[N / 2], evenIm[N / 2], oddRe[N / 2], oddIm[N / 2];
        complexDft<N / 2, 2 * kStride>(d, xRe, xIm, evenRe, evenIm);
        complexDft<N / 2, 2 * kStride>(d, xRe + kStride, xIm + kStride, oddRe, oddIm);
        unroll<N / 2>(ZVPS_STEP(i) {
            constexpr size_t k = i;
            if constexpr (k == 0) {
                re[k] = hn::Add(evenRe[k], oddRe[k]);
                im[k] = hn::Add(evenIm[k], oddIm[k]);
                re[k + N / 2] = hn::Sub(evenRe[k], oddRe[k]);
                im[k + N / 2] = hn::Sub(evenIm[k], oddIm[k]);
            } else if constexpr (4 * k == N) {
                re[k] = hn::Add(evenRe[k], oddIm[k]);
                im[k] = hn::Sub(evenIm[k], oddRe[k]);
                re[k + N / 2] = hn::Sub(evenRe[k], oddIm[k]);
                im[k + N / 2] = hn::Add(evenIm[k], oddRe[k]);
            } else {
                const auto odd =
                    rotated(oddRe[k], oddIm[k], hn::Set(d, kCosine<N, k, T>), hn::Set(d, kSine<N, k, T>));
                re[k] = hn::Add(evenRe[k], odd.re);
                im[k] = hn::Add(evenIm[k], odd.im);
                re[k + N / 2] = hn::Sub(evenRe[k], odd.re);
                im[k + N / 2] = hn::Sub(evenIm[k], odd.im);
            }
        });
    }
}

// The bins 0 .. N/2 of the transform of N real values in registers. The bins 0 and N/2 have no imaginary part;
// areHalves: in their place the sums of the values with even and with odd index.
template <size_t N, bool areHalves = false, size_t kStride = 1, class D, class V>
HWY_INLINE void realDft(D d, const V* x, V* re, V* im) {
    using T = hn::TFromD<D>;
    if constexpr (N == 1) {
        re[0] = x[0];
    } else {
        V evenRe[N / 4 + 1], evenIm[N / 4 + 1], oddRe[N / 4 + 1], oddIm[N / 4 + 1];
        realDft<N / 2, false, 2 * kStride>(d, x, evenRe, evenIm);
        realDft<N / 2, false, 2 * kStride>(d, x + kStride, oddRe, oddIm);
        re[0] = areHalves ? evenRe[0] : hn::Add(evenRe[0], oddRe[0]);
        re[N / 2] = areHalves ? oddRe[0] : hn::Sub(evenRe[0], oddRe[0]);
        if constexpr (N >= 4) {
            re[N / 4] = evenRe[N / 4];
            im[N / 4] = hn::Neg(oddRe[N / 4]);
            unroll<N / 4, 1>(ZVPS_STEP(i) {
                constexpr size_t k = i;
                const auto odd =
                    rotated(oddRe[k], oddIm[k], hn::Set(d, kCosine<N, k, T>), hn::Set(d, kSine<N, k, T>));
                re[k] = hn::Add(evenRe[k], odd.re);
                im[k] = hn::Add(evenIm[k], odd.im);
                re[N / 2 - k] = hn::Sub(evenRe[k], odd.re);
                im[N / 2 - k] = hn::Sub(odd.im, evenIm[k]);
            });
        }
    }
}

// The inverse of realDft, N times as large. areHalves: the bins 0 and N/2 hold N/2 times those sums.
template <size_t N, bool areHalves = false, size_t kStride = 1, class D, class V>
HWY_INLINE void inverseRealDft(D d, const V* re, const V* im, V* x) {
    using T = hn::TFromD<D>;
    if constexpr (N == 1) {
        x[0] = re[0];
    } else {
        V evenRe[N / 4 + 1], evenIm[N / 4 + 1], oddRe[N / 4 + 1], oddIm[N / 4 + 1];
        evenRe[0] = areHalves ? re[0] : hn::Add(re[0], re[N / 2]);
        oddRe[0] = areHalves ? re[N / 2] : hn::Sub(re[0], re[N / 2]);
        if constexpr (N >= 4) {
            evenRe[N / 4] = hn::Add(re[N / 4], re[N / 4]);
            oddRe[N / 4] = hn::Neg(hn::Add(im[N / 4], im[N / 4]));
            unroll<N / 4, 1>(ZVPS_STEP(i) {
                constexpr size_t k = i;
                evenRe[k] = hn::Add(re[k], re[N / 2 - k]);
                evenIm[k] = hn::Sub(im[k], im[N / 2 - k]);
                const auto odd =
                    rotatedBack(hn::Sub(re[k], re[N / 2 - k]), hn::Add(im[k], im[N / 2 - k]),
                                hn::Set(d, kCosine<N, k, T>), hn::Set(d, kSine<N, k, T>));
                oddRe[k] = odd.re;
                oddIm[k] = odd.im;
            });
        }
        inverseRealDft<N / 2, false, 2 * kStride>(d, evenRe, evenIm, x);
        inverseRealDft<N / 2, false, 2 * kStride>(d, oddRe, oddIm, x + kStride);
    }
}

// ---- Shuffles ----

// Lane j of the result is lane Pick::at(j, N) of the lanes of a, followed by those of b.
template <class Pick, class T, size_t N, size_t... j>
HWY_INLINE Vec<T, N> pickLanes(Lanes<T, N>, Vec<T, N> a, Vec<T, N> b, std::index_sequence<j...>) {
    constexpr size_t kRaw = sizeof(a) / sizeof(T);
    return Vec<T, N>{reinterpret_cast<decltype(a.raw)>(__builtin_shufflevector(
        a.raw, b.raw, static_cast<int>(j >= N ? 0 : Pick::at(j, N) < N ? Pick::at(j, N) : Pick::at(j, N) - N + kRaw)...))};
}
template <class Pick, class T, size_t N>
HWY_INLINE Vec<T, N> pickLanes(Lanes<T, N> d, Vec<T, N> a, Vec<T, N> b) {
    return pickLanes<Pick>(d, a, b, std::make_index_sequence<sizeof(a) / sizeof(T)>());
}

// Real and imaginary parts to pairs (kHalf 0: the first pairs, 1: the rest), and pairs to one part.
template <size_t kHalf>
struct Interleaved {
    static constexpr size_t at(size_t j, size_t n) { return (kHalf * n + j) / 2 + j % 2 * n; }
};
template <size_t kPart>
struct PartOfPairs {
    static constexpr size_t at(size_t j, size_t) { return 2 * j + kPart; }
};
// The same with lanes in the order 0, n-1, ..., 1.
template <size_t kHalf>
struct MirrorInterleaved {
    static constexpr size_t at(size_t j, size_t n) { return (n - (kHalf * n + j) / 2) % n + j % 2 * n; }
};
template <size_t kPart>
struct MirrorPartOfPairs {
    static constexpr size_t at(size_t j, size_t n) { return 2 * ((n - j) % n) + kPart; }
};
// One lane down and one lane up; the lane that has no source is a copy of its neighbour.
struct Down {
    static constexpr size_t at(size_t j, size_t n) { return j + 1 < n ? j + 1 : j; }
};
struct Up {
    static constexpr size_t at(size_t j, size_t) { return j == 0 ? 0 : j - 1; }
};

template <size_t kCount, class T, size_t N>
HWY_INLINE Vec<T, kCount> firstLanes(Lanes<T, N>, Vec<T, N> v) {
    if constexpr (kCount == N) {
        return v;
    } else {
        const Lanes<T, N / 2> half;
        return firstLanes<kCount>(half, hn::LowerHalf(half, v));
    }
}

// Pairs at the places that place(i) gives for lane i.
template <class T, size_t N, class Place>
HWY_INLINE void storePairs(Lanes<T, N> d, Vec<T, N> re, Vec<T, N> im, size_t from, Place place) {
    if constexpr (N == 1) {
        place(0)[0] = hn::GetLane(re);
        place(0)[1] = hn::GetLane(im);
        return;
    }
    alignas(kVectorBytes) T pairs[2 * N];
    hn::StoreU(pickLanes<Interleaved<0>>(d, re, im), d, pairs);
    hn::StoreU(pickLanes<Interleaved<1>>(d, re, im), d, pairs + N);
    for (size_t i = from; i < N; ++i) {
        __builtin_memcpy(place(i), pairs + 2 * i, 2 * sizeof(T));
    }
}
template <size_t kPairs, size_t kFrom, class T, class Place>
HWY_INLINE Vec<T, 2 * kPairs> gatheredPairs(Place place) {
    const Lanes<T, 2 * kPairs> d;
    if constexpr (kPairs == 1) {
        return hn::LoadU(d, place(kFrom));
    } else {
        return hn::Combine(d, gatheredPairs<kPairs / 2, kFrom + kPairs / 2, T>(place),
                           gatheredPairs<kPairs / 2, kFrom, T>(place));
    }
}
template <class T, size_t N, class Place>
HWY_INLINE Complex<Vec<T, N>> loadPairs(Lanes<T, N> d, Place place) {
    if constexpr (N == 1) {
        return {hn::Set(d, place(0)[0]), hn::Set(d, place(0)[1])};
    } else {
        const auto lower = gatheredPairs<N / 2, 0, T>(place);
        const auto upper = gatheredPairs<N / 2, N / 2, T>(place);
        return {pickLanes<PartOfPairs<0>>(d, lower, upper), pickLanes<PartOfPairs<1>>(d, lower, upper)};
    }
}

// Vectors of N lanes seen as blocks of kBlock lanes: of two such vectors the first or last halves of their blocks'
// sequences (kHalf), or their even or odd blocks.
template <size_t kBlock, size_t kHalf>
struct HalvesOfBlocks {
    static constexpr size_t at(size_t j, size_t n) { return (j < n / 2 ? j : j + n / 2) + kHalf * (n / 2); }
};
template <size_t kBlock, size_t kParity>
struct AlternateBlocks {
    static constexpr size_t at(size_t j, size_t) { return (j / kBlock * 2 + kParity) * kBlock + j % kBlock; }
};

// An N x N transposition in registers: inside blocks of 16 bytes, then of blocks.
template <class T, size_t N>
HWY_INLINE void transpose(Lanes<T, N> d, Vec<T, N>* v) {
    constexpr size_t kBlock = N < 16 / sizeof(T) ? N : 16 / sizeof(T);
    using V = Vec<T, N>;
    V w[N];
    unroll<N / kBlock>(ZVPS_STEP(i) {
        constexpr size_t g = i * kBlock;
        if constexpr (kBlock == 1) {
            w[g] = v[g];
        } else if constexpr (kBlock == 2) {
            w[g] = hn::InterleaveLower(d, v[g], v[g + 1]);
            w[g + 1] = hn::InterleaveUpper(d, v[g], v[g + 1]);
        } else {
            const V a = hn::InterleaveLower(d, v[g], v[g + 2]);
            const V b = hn::InterleaveUpper(d, v[g], v[g + 2]);
            const V e = hn::InterleaveLower(d, v[g + 1], v[g + 3]);
            const V f = hn::InterleaveUpper(d, v[g + 1], v[g + 3]);
            w[g] = hn::InterleaveLower(d, a, e);
            w[g + 1] = hn::InterleaveUpper(d, a, e);
            w[g + 2] = hn::InterleaveLower(d, b, f);
            w[g + 3] = hn::InterleaveUpper(d, b, f);
        }
    });
    unroll<kBlock>(ZVPS_STEP(i) {
        constexpr size_t r = i;
        if constexpr (N == kBlock) {
            v[r] = w[r];
        } else if constexpr (N == 2 * kBlock) {
            v[r] = pickLanes<HalvesOfBlocks<kBlock, 0>>(d, w[r], w[r + kBlock]);
            v[r + kBlock] = pickLanes<HalvesOfBlocks<kBlock, 1>>(d, w[r], w[r + kBlock]);
        } else {
            static_assert(N == 4 * kBlock);
            const V a = pickLanes<HalvesOfBlocks<kBlock, 0>>(d, w[r], w[r + kBlock]);
            const V b = pickLanes<HalvesOfBlocks<kBlock, 1>>(d, w[r], w[r + kBlock]);
            const V e = pickLanes<HalvesOfBlocks<kBlock, 0>>(d, w[r + 2 * kBlock], w[r + 3 * kBlock]);
            const V f = pickLanes<HalvesOfBlocks<kBlock, 1>>(d, w[r + 2 * kBlock], w[r + 3 * kBlock]);
            v[r] = pickLanes<AlternateBlocks<kBlock, 0>>(d, a, e);
            v[r + kBlock] = pickLanes<AlternateBlocks<kBlock, 1>>(d, a, e);
            v[r + 2 * kBlock] = pickLanes<AlternateBlocks<kBlock, 0>>(d, b, f);
            v[r + 3 * kBlock] = pickLanes<AlternateBlocks<kBlock, 1>>(d, b, f);
        }
    });
}

// ---- Passes ----

// Between the passes bin k1 of column n2 is in row n2, in groups of kLanes bins: their real parts, then the imaginary
// ones. In inverse transforms real and imaginary parts change places, which makes the passes those of the forward one.
template <class T, size_t kRows>
struct RealLanes {
    static constexpr size_t kVector = kVectorBytes / sizeof(T);
    static constexpr size_t kLanes = kRows / 2 < kVector ? kRows / 2 : kVector;
    static constexpr size_t kGroups = kRows / 2 / kLanes;
    using D = Lanes<T, kLanes>;
    using V = Vec<T, kLanes>;
};

constexpr size_t smallest(size_t a, size_t b) {
    return a < b ? a : b;
}

// One vector of count that follow each other at the distance of their lanes.
template <size_t count, class D, class V>
HWY_INLINE hn::Vec<D> joined(D d, const V* v) {
    if constexpr (count == 1) {
        return v[0];
    } else {
        static_assert(count == 2);
        return hn::Combine(d, v[hn::MaxLanes(d) / 2], v[0]);
    }
}

// The columns' transforms, several columns at once: from src to rows, and their sums over even and over odd samples to
// halves.
template <size_t kRows, size_t kMaxColumns, class T>
HWY_INLINE void transformColumns(const T* src, T* rows, T* halves, size_t columns, const T* twiddles) {
    using Row = RealLanes<T, kRows>;
    constexpr size_t L = smallest(Row::kLanes, kMaxColumns);
    constexpr size_t kBlock = smallest(kMaxColumns, kTwiddleBlockBytes / sizeof(T));
    const Lanes<T, L> d;
    using V = Vec<T, L>;
    for (size_t c = 0; c < columns; c += L) {
        V x[kRows], re[kRows / 2 + 1], im[kRows / 2 + 1];
        unroll<kRows>(ZVPS_STEP(i) { x[i] = hn::LoadU(d, src + i * columns + c); });
        realDft<kRows, true>(d, x, re, im);
        if constexpr (L == kMaxColumns) {
            im[0] = pickLanes<PartOfPairs<1>>(d, re[0], re[kRows / 2]);
            re[0] = pickLanes<PartOfPairs<0>>(d, re[0], re[kRows / 2]);
        } else {
            hn::StoreU(re[0], d, halves + c);
            hn::StoreU(re[kRows / 2], d, halves + columns + c);
            im[0] = re[0];
        }
        const T* const w = twiddles + c / kBlock * (kRows / 2 - 1) * 2 * kBlock + c % kBlock;
        unroll<kRows / 2, 1>(ZVPS_STEP(i) {
            const T* const wi = w + (i - 1) * 2 * kBlock;
            const auto turned = rotated(re[i], im[i], hn::LoadU(d, wi), hn::LoadU(d, wi + kBlock));
            re[i] = turned.re;
            im[i] = turned.im;
        });
        unroll<kRows / 2 / L>(ZVPS_STEP(i) {
            transpose(d, re + i * L);
            transpose(d, im + i * L);
        });
        unroll<Row::kGroups>(ZVPS_STEP(group) {
            unroll<L>(ZVPS_STEP(n) {
                constexpr size_t k = group * Row::kLanes + n;
                T* const row = rows + (c + n) * kRows + group * 2 * Row::kLanes;
                const typename Row::D rowLanes;
                hn::StoreU(joined<Row::kLanes / L>(rowLanes, re + k), rowLanes, row);
                hn::StoreU(joined<Row::kLanes / L>(rowLanes, im + k), rowLanes, row + Row::kLanes);
            });
        });
    }
}

template <size_t kRows, size_t kMaxColumns, bool isScaled, class T>
HWY_INLINE void inverseTransformColumns(const T* rows, const T* halves, T* dst, T factor, size_t columns,
                                        const T* twiddles) {
    using Row = RealLanes<T, kRows>;
    constexpr size_t L = smallest(Row::kLanes, kMaxColumns);
    constexpr size_t kBlock = smallest(kMaxColumns, kTwiddleBlockBytes / sizeof(T));
    const Lanes<T, L> d;
    using V = Vec<T, L>;
    const V scale = hn::Set(d, factor);
    for (size_t c = 0; c < columns; c += L) {
        V x[kRows], re[kRows / 2 + 1], im[kRows / 2 + 1];
        unroll<kRows / 2 / L>(ZVPS_STEP(i) {
            constexpr size_t k = i * L;
            constexpr size_t place = k / Row::kLanes * 2 * Row::kLanes + k % Row::kLanes;
            unroll<L>(ZVPS_STEP(n) {
                const T* const row = rows + (c + n) * kRows + place;
                im[k + n] = hn::LoadU(d, row);
                re[k + n] = hn::LoadU(d, row + Row::kLanes);
            });
            transpose(d, re + k);
            transpose(d, im + k);
        });
        const T* const w = twiddles + c / kBlock * (kRows / 2 - 1) * 2 * kBlock + c % kBlock;
        unroll<kRows / 2, 1>(ZVPS_STEP(i) {
            const T* const wi = w + (i - 1) * 2 * kBlock;
            const auto turned = rotatedBack(re[i], im[i], hn::LoadU(d, wi), hn::LoadU(d, wi + kBlock));
            re[i] = turned.re;
            im[i] = turned.im;
        });
        if constexpr (L == kMaxColumns) {
            re[kRows / 2] = pickLanes<Interleaved<1>>(d, re[0], im[0]);
            re[0] = pickLanes<Interleaved<0>>(d, re[0], im[0]);
        } else {
            re[0] = hn::LoadU(d, halves + c);
            re[kRows / 2] = hn::LoadU(d, halves + columns + c);
        }
        inverseRealDft<kRows, true>(d, re, im, x);
        unroll<kRows>(ZVPS_STEP(i) {
            hn::StoreU(isScaled ? hn::Mul(x[i], scale) : x[i], d, dst + i * columns + c);
        });
    }
}

// Where a layout keeps the bins of N samples.
template <class T>
struct Spectrum {
    T* values;
    size_t shift; // the pair of bin k starts at 2 k - shift
    size_t last;  // bin N/2
    bool isCcs;

    Spectrum(T* p, RealFftLayout layout, size_t n)
        : values(p), shift(layout == kFftPack ? 1 : 0),
          last(layout == kFftPerm ? 1 : layout == kFftPack ? n - 1 : n), isCcs(layout == kFftCcs) {}

    HWY_INLINE T* pair(size_t k) const { return values + (2 * k - shift); }
};

// One complex transform of length R along the rows, in the lanes of a group of bins, by what loads row i and what
// stores bin i of the result.
template <size_t R, class D, class Load, class Store>
HWY_INLINE void transformRows(D d, Load load, Store store) {
    using V = hn::Vec<D>;
    V xRe[R], xIm[R], re[R], im[R];
    unroll<R>(ZVPS_STEP(i) { load(i, xRe[i], xIm[i]); });
    complexDft<R>(d, xRe, xIm, re, im);
    unroll<R>(ZVPS_STEP(i) { store(i, re[i], im[i]); });
}

// Lane 0 from memory.
template <class D, class V, class T>
HWY_INLINE V withFirst(D d, V v, const T* p) {
    return hn::IfThenElse(hn::FirstN(d, 1), hn::Set(d, *p), v);
}

// Bins of one group and one k2 of the half spectrum; the place of lane 0 of the first group is filled with anything.
template <size_t kRows, class T, class V>
HWY_INLINE void storeBins(const Spectrum<T>& dst, size_t columns, size_t k2, size_t group, V re, V im) {
    using Row = RealLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    const typename Row::D d;
    if (2 * k2 < columns) {
        const V lower = pickLanes<Interleaved<0>>(d, re, im);
        const V upper = pickLanes<Interleaved<1>>(d, re, im);
        const size_t k = kRows * k2 + group * L;
        if (HWY_UNLIKELY(k == 0) && dst.shift != 0) {
            hn::StoreU(pickLanes<Down>(d, lower, lower), d, dst.values);
            hn::StoreU(upper, d, dst.values + L - 1);
        } else {
            hn::StoreU(lower, d, dst.pair(k));
            hn::StoreU(upper, d, dst.pair(k) + L);
        }
    } else {
        const V conjugated = hn::Neg(im);
        const V lower = pickLanes<MirrorInterleaved<0>>(d, re, conjugated);
        T* const p = dst.pair(kRows * (columns - k2) - (group + 1) * L);
        hn::StoreU(lower, d, p);
        hn::StoreU(pickLanes<MirrorInterleaved<1>>(d, re, conjugated), d, p + L);
        if (group != 0) {
            hn::StoreU(firstLanes<2>(d, lower), Lanes<T, 2>(), p + 2 * L);
        }
    }
}

// The same bins from memory, parts exchanged; lane 0 of the first group comes from the joined ends.
template <size_t kRows, class T, class V>
HWY_INLINE void loadBins(const Spectrum<const T>& src, size_t columns, size_t k2, size_t group, const T* ends, V& re,
                         V& im) {
    using Row = RealLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    const typename Row::D d;
    if (2 * k2 < columns) {
        const size_t k = kRows * k2 + group * L;
        V lower;
        V upper;
        if (HWY_UNLIKELY(k == 0) && src.shift != 0) {
            const V first = hn::LoadU(d, src.values);
            lower = pickLanes<Up>(d, first, first);
            upper = hn::LoadU(d, src.values + L - 1);
        } else {
            lower = hn::LoadU(d, src.pair(k));
            upper = hn::LoadU(d, src.pair(k) + L);
        }
        im = pickLanes<PartOfPairs<0>>(d, lower, upper);
        re = pickLanes<PartOfPairs<1>>(d, lower, upper);
    } else {
        const T* const p = src.pair(kRows * (columns - k2) - (group + 1) * L);
        const V lower = hn::LoadU(d, p);
        const V upper = hn::LoadU(d, p + L);
        im = pickLanes<MirrorPartOfPairs<0>>(d, lower, upper);
        re = pickLanes<MirrorPartOfPairs<1>>(d, lower, upper);
        if (group != 0) {
            im = withFirst(d, im, p + 2 * L);
            re = withFirst(d, re, p + 2 * L + 1);
        }
        re = hn::Neg(re);
    }
    if (group == 0) {
        im = withFirst(d, im, ends + k2);
        re = withFirst(d, re, ends + columns + 1 + k2);
    }
}

// The ends: with M columns the bins k N1/2, k = 0 .. M, are the transform of 2 M real values, which went (go) through
// the passes as M complex ones z. ends: the real parts of bin 0 .. M-1 of their transform, a place, the imaginary parts,
// a place.
// kLanes bins at once.
template <size_t kLanes, size_t kRows, class T>
HWY_INLINE void joinEnds(const Spectrum<T>& dst, const T* re, const T* im, size_t columns, const T* twiddles) {
    const Lanes<T, kLanes> d;
    const auto half = hn::Set(d, T{0.5});
    for (size_t k = kLanes == 1; k < columns / 2; k += kLanes) {
        const size_t mirror = columns - k - kLanes + 1;
        const auto aRe = hn::Mul(half, hn::LoadU(d, re + k));
        const auto aIm = hn::Mul(half, hn::LoadU(d, im + k));
        const auto bRe = hn::Mul(half, hn::Reverse(d, hn::LoadU(d, re + mirror)));
        const auto bIm = hn::Mul(half, hn::Reverse(d, hn::LoadU(d, im + mirror)));
        const auto turned = rotated(hn::Sub(aRe, bRe), hn::Add(aIm, bIm), hn::LoadU(d, twiddles + k),
                                    hn::LoadU(d, twiddles + columns / 2 + k));
        const auto evenRe = hn::Add(aRe, bRe);
        const auto evenIm = hn::Sub(aIm, bIm);
        storePairs(d, hn::Add(evenRe, turned.im), hn::Sub(evenIm, turned.re), k == 0,
                   [&](size_t i) { return dst.pair((k + i) * (kRows / 2)); });
        storePairs(d, hn::Sub(evenRe, turned.im), hn::Neg(hn::Add(evenIm, turned.re)), k == 0,
                   [&](size_t i) { return dst.pair((columns - k - i) * (kRows / 2)); });
    }
}
template <size_t kLanes, size_t kRows, class T>
HWY_INLINE void partEnds(const Spectrum<const T>& src, T* re, T* im, size_t columns, const T* twiddles) {
    const Lanes<T, kLanes> d;
    for (size_t k = kLanes == 1; k < columns / 2; k += kLanes) {
        // The bins 0 and M, which are no pairs, are replaced by others: their results are not used.
        const auto a = loadPairs(d, [&](size_t i) { return src.pair((k + i + (k + i == 0)) * (kRows / 2)); });
        const auto b = loadPairs(d, [&](size_t i) { return src.pair((columns - k - i - (k + i == 0)) * (kRows / 2)); });
        const auto turned = rotatedBack(hn::Sub(a.re, b.re), hn::Add(a.im, b.im), hn::LoadU(d, twiddles + k),
                                        hn::LoadU(d, twiddles + columns / 2 + k));
        const auto evenRe = hn::Add(a.re, b.re);
        const auto evenIm = hn::Sub(a.im, b.im);
        const size_t mirror = columns - k - kLanes + 1;
        hn::StoreU(hn::Sub(evenRe, turned.im), d, re + k);
        hn::StoreU(hn::Add(evenIm, turned.re), d, im + k);
        hn::StoreU(hn::Reverse(d, hn::Add(evenRe, turned.im)), d, re + mirror);
        hn::StoreU(hn::Reverse(d, hn::Sub(turned.re, evenIm)), d, im + mirror);
    }
}

// Few bins one by one: they come from and go to single lanes.
template <class T, class Step>
HWY_INLINE void byLanes(size_t columns, Step step) {
    constexpr size_t kVector = kVectorBytes / sizeof(T);
    if (columns >= 2 * kVector) {
        step(std::integral_constant<size_t, kVector>());
    } else if (columns >= 8) {
        step(std::integral_constant<size_t, smallest(4, kVector)>());
    } else if (columns == 4) {
        step(std::integral_constant<size_t, 1>());
    }
}

template <size_t kRows, class T>
HWY_INLINE void storeEnds(const Spectrum<T>& dst, T* ends, size_t columns, const T* twiddles) {
    T* const re = ends;
    T* const im = ends + columns + 1;
    re[columns] = re[0];
    im[columns] = im[0];
    byLanes<T>(columns, [&](auto lanes) __attribute__((always_inline)) {
        joinEnds<lanes, kRows>(dst, re, im, columns, twiddles);
    });
    T* const middle = dst.pair(columns / 2 * (kRows / 2));
    middle[0] = re[columns / 2];
    middle[1] = -im[columns / 2];
    dst.values[0] = re[0] + im[0];
    dst.values[dst.last] = re[0] - im[0];
    if (dst.isCcs) {
        dst.values[1] = 0;
        dst.values[dst.last + 1] = 0;
    }
}

template <size_t kRows, class T>
HWY_INLINE void loadEnds(const Spectrum<const T>& src, T* ends, size_t columns, const T* twiddles) {
    T* const re = ends;
    T* const im = ends + columns + 1;
    byLanes<T>(columns, [&](auto lanes) __attribute__((always_inline)) {
        partEnds<lanes, kRows>(src, re, im, columns, twiddles);
    });
    const T* const middle = src.pair(columns / 2 * (kRows / 2));
    re[columns / 2] = middle[0] + middle[0];
    im[columns / 2] = -(middle[1] + middle[1]);
    re[0] = src.values[0] + src.values[src.last];
    im[0] = src.values[0] - src.values[src.last];
}

// ---- Transforms ----

// Two passes, for up to 16 columns.
template <size_t kRows, size_t kColumns, bool isScaled, class T>
HWY_INLINE void shortRealFft(const T* src, const Spectrum<T>& dst, T factor, const T* columnTwiddles,
                             const T* endTwiddles) {
    using Row = RealLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    const typename Row::D d;
    alignas(kVectorBytes) T rows[kColumns * kRows];
    // All columns at once keep the values of the ends in the rows.
    constexpr bool areInRows = kColumns <= L;
    alignas(kVectorBytes) T halves[2 * kColumns];
    alignas(kVectorBytes) T ends[2 * kColumns + 2];
    transformColumns<kRows, kColumns>(src, rows, halves, kColumns, columnTwiddles);
    const auto scale = hn::Set(d, factor);
    unroll<Row::kGroups>(ZVPS_STEP(group) {
        transformRows<kColumns>(
            d,
            [&](auto n, auto& re, auto& im) __attribute__((always_inline)) {
                const T* const row = rows + n * kRows + group * 2 * L;
                re = hn::LoadU(d, row);
                im = hn::LoadU(d, row + L);
                if constexpr (group == 0 && !areInRows) {
                    re = withFirst(d, re, halves + 2 * n);
                    im = withFirst(d, im, halves + 2 * n + 1);
                }
            },
            [&](auto k2, auto re, auto im) __attribute__((always_inline)) {
                if constexpr (isScaled) {
                    re = hn::Mul(re, scale);
                    im = hn::Mul(im, scale);
                }
                if constexpr (group == 0) {
                    ends[k2] = hn::GetLane(re);
                    ends[kColumns + 1 + k2] = hn::GetLane(im);
                }
                storeBins<kRows>(dst, kColumns, k2, group, re, im);
            });
    });
    storeEnds<kRows>(dst, ends, kColumns, endTwiddles);
}

template <size_t kRows, size_t kColumns, bool isScaled, class T>
HWY_INLINE void shortInverseRealFft(const Spectrum<const T>& src, T* dst, T factor, const T* columnTwiddles,
                                    const T* endTwiddles) {
    using Row = RealLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    const typename Row::D d;
    alignas(kVectorBytes) T rows[kColumns * kRows];
    // All columns at once keep the values of the ends in the rows.
    constexpr bool areInRows = kColumns <= L;
    alignas(kVectorBytes) T halves[2 * kColumns];
    alignas(kVectorBytes) T ends[2 * kColumns + 2];
    loadEnds<kRows>(src, ends, kColumns, endTwiddles);
    unroll<Row::kGroups>(ZVPS_STEP(group) {
        transformRows<kColumns>(
            d,
            [&](auto k2, auto& re, auto& im) __attribute__((always_inline)) {
                loadBins<kRows>(src, kColumns, k2, group, ends, re, im);
            },
            [&](auto n, auto re, auto im) __attribute__((always_inline)) {
                T* const row = rows + n * kRows + group * 2 * L;
                hn::StoreU(re, d, row);
                hn::StoreU(im, d, row + L);
                if constexpr (group == 0 && !areInRows) {
                    halves[2 * n] = hn::GetLane(im);
                    halves[2 * n + 1] = hn::GetLane(re);
                }
            });
    });
    inverseTransformColumns<kRows, kColumns, isScaled>(rows, halves, dst, factor, kColumns, columnTwiddles);
}

} // namespace zvps::ZVPS_LEVEL
