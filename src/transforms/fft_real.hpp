// Real FFTs: N = N1 x N2 samples in N1 rows. Real transforms of the columns leave rows k1 = 0 .. N1/2; complex
// transforms of length N2 along the rows 1 .. N1/2 - 1, side by side in the lanes of vectors, give the bins k1 + N1 k2,
// each of which is a bin of the half spectrum or the conjugate of one. The rows 0 and N1/2 together are the transform
// of 2 N2 real values, which runs as a complex one of length N2 in the lane of row 0.
#pragma once

#include "transforms/fft.table.hpp"
#include "transforms/fft_real_plan.hpp"
#include "transforms/fft_realign.hpp"
#include "transforms/fft_rows.hpp"

namespace zvps::ZVPS_LEVEL {

// Of 2 pi k / N.
template <size_t N, size_t k, class T>
inline constexpr T kCosine = static_cast<T>(cosOf32(k*(32 / N)));
template <size_t N, size_t k, class T>
inline constexpr T kSine = static_cast<T>(cosOf32(k*(32 / N) + 24));

// ---- Butterflies ----

// Bins 0 and N/2 of N real values have no imaginary part. What stands in their place:
enum class Ends {
    bins,
    halves,        // the sums of the values with even and with odd index; the inverse takes N/2 times these
    negatedMiddle, // bin N/2 with the opposite sign; the inverse takes half of that
    halvedMiddle,  // the inverse takes half of bin N/2
};

// The bins 0 .. N/2 of the transform of N real values in registers.
template <size_t N, Ends ends = Ends::bins, size_t kStride = 1, class D, class V>
HWY_INLINE void realDft(D d, const V* x, V* re, V* im) {
    using T = hn::TFromD<D>;
    if constexpr (N == 1) {
        re[0] = x[0];
    } else {
        V evenRe[N / 4 + 1], evenIm[N / 4 + 1], oddRe[N / 4 + 1], oddIm[N / 4 + 1];
        realDft<N / 2, Ends::bins, 2 * kStride>(d, x, evenRe, evenIm);
        realDft<N / 2, Ends::negatedMiddle, 2 * kStride>(d, x + kStride, oddRe, oddIm);
        if constexpr (ends == Ends::halves) {
            re[0] = evenRe[0];
            re[N / 2] = oddRe[0];
        } else {
            re[0] = hn::Add(evenRe[0], oddRe[0]);
            re[N / 2] = ends == Ends::negatedMiddle ? hn::Sub(oddRe[0], evenRe[0]) : hn::Sub(evenRe[0], oddRe[0]);
        }
        if constexpr (N >= 4) {
            re[N / 4] = evenRe[N / 4];
            im[N / 4] = oddRe[N / 4];
            unroll<N / 4 - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
                constexpr size_t k = i + 1;
                const auto cos = hn::Set(d, kCosine<N, k, T>);
                if constexpr (N == 8) {
                    const V oddSum = hn::Add(oddRe[k], oddIm[k]);
                    const V oddDifference = hn::Sub(oddIm[k], oddRe[k]);
                    re[k] = hn::MulAdd(oddSum, cos, evenRe[k]);
                    im[k] = hn::MulAdd(oddDifference, cos, evenIm[k]);
                    re[N / 2 - k] = hn::NegMulAdd(oddSum, cos, evenRe[k]);
                    im[N / 2 - k] = hn::MulSub(oddDifference, cos, evenIm[k]);
                } else {
                    const auto odd = rotated(oddRe[k], oddIm[k], cos, hn::Set(d, kSine<N, k, T>));
                    re[k] = hn::Add(evenRe[k], odd.re);
                    im[k] = hn::Add(evenIm[k], odd.im);
                    re[N / 2 - k] = hn::Sub(evenRe[k], odd.re);
                    im[N / 2 - k] = hn::Sub(odd.im, evenIm[k]);
                }
            });
        }
    }
}

// The inverse of realDft, N times as large. Where registers suffice, the bins in the middle are doubled by the products
// they go into.
template <size_t N, Ends ends = Ends::bins, size_t kStride = 1, class D, class V>
HWY_INLINE void inverseRealDft(D d, const V* re, const V* im, V* x) {
    using T = hn::TFromD<D>;
    if constexpr (N == 1) {
        x[0] = re[0];
    } else {
        V evenRe[N / 4 + 1], evenIm[N / 4 + 1], oddRe[N / 4 + 1], oddIm[N / 4 + 1];
        if constexpr (ends == Ends::halves) {
            evenRe[0] = re[0];
            oddRe[0] = re[N / 2];
        } else if constexpr (ends == Ends::bins) {
            evenRe[0] = hn::Add(re[0], re[N / 2]);
            oddRe[0] = hn::Sub(re[0], re[N / 2]);
        } else {
            const V two = hn::Set(d, T{2});
            const V sum = hn::MulAdd(re[N / 2], two, re[0]);
            const V difference = hn::NegMulAdd(re[N / 2], two, re[0]);
            evenRe[0] = ends == Ends::negatedMiddle ? difference : sum;
            oddRe[0] = ends == Ends::negatedMiddle ? sum : difference;
        }
        constexpr bool kDoublesLater = N >= 4 && N * kStride <= 8;
        if constexpr (N >= 4) {
            evenRe[N / 4] = kDoublesLater ? re[N / 4] : hn::Add(re[N / 4], re[N / 4]);
            oddRe[N / 4] = kDoublesLater ? im[N / 4] : hn::Mul(im[N / 4], hn::Set(d, T{-2}));
            unroll<N / 4 - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
                constexpr size_t k = i + 1;
                evenRe[k] = hn::Add(re[k], re[N / 2 - k]);
                evenIm[k] = hn::Sub(im[k], im[N / 2 - k]);
                const auto odd = rotatedBack(hn::Sub(re[k], re[N / 2 - k]), hn::Add(im[k], im[N / 2 - k]),
                                             hn::Set(d, kCosine<N, k, T>), hn::Set(d, kSine<N, k, T>));
                oddRe[k] = odd.re;
                oddIm[k] = odd.im;
            });
        }
        constexpr Ends evenEnds = kDoublesLater ? Ends::halvedMiddle : Ends::bins;
        constexpr Ends oddEnds = kDoublesLater ? Ends::negatedMiddle : Ends::bins;
        inverseRealDft<N / 2, evenEnds, 2 * kStride>(d, evenRe, evenIm, x);
        inverseRealDft<N / 2, oddEnds, 2 * kStride>(d, oddRe, oddIm, x + kStride);
    }
}

// ---- Shuffles ----

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
HWY_INLINE Parts<Vec<T, N>> loadPairs(Lanes<T, N> d, Place place) {
    if constexpr (N == 1) {
        return {hn::Set(d, place(0)[0]), hn::Set(d, place(0)[1])};
    } else {
        const auto lower = gatheredPairs<N / 2, 0, T>(place);
        const auto upper = gatheredPairs<N / 2, N / 2, T>(place);
        return {pickLanes<PartOfPairs<0>>(d, lower, upper), pickLanes<PartOfPairs<1>>(d, lower, upper)};
    }
}

// ---- Passes ----

// The factors of neighbouring columns, from a block of the table or, where columns start anywhere, from two.
template <class T, size_t kRows, size_t kBlock>
struct TwiddlesOfBlock {
    static constexpr bool kShifts = false;

    explicit TwiddlesOfBlock(size_t) {}

    static HWY_INLINE const T* at(const T* twiddles, size_t c) {
        return twiddles + c / kBlock * (kRows / 2 - 1) * 2 * kBlock + c % kBlock;
    }
    template <class D>
    HWY_INLINE auto load(D d, const T* w) const {
        return hn::LoadU(d, w);
    }
};
template <class T, size_t kRows, size_t kBlock>
struct TwiddlesOfTwoBlocks {
    static constexpr bool kShifts = true;

    LaneOrder<T> order;

    explicit TwiddlesOfTwoBlocks(size_t begin) : order(orderOfVector<T>(begin % kBlock)) {}

    static HWY_INLINE const T* at(const T* twiddles, size_t c) {
        return TwiddlesOfBlock<T, kRows, kBlock>::at(twiddles, c - c % kBlock);
    }
    template <class D>
    HWY_INLINE auto load(D d, const T* w) const {
        return permuted(hn::LoadU(d, w), order, hn::LoadU(d, w + (kRows / 2 - 1) * 2 * kBlock));
    }
};

// Samples i, i + 1, ... of an array, which are in its upper half or not; there are other sources with such a function.
template <bool isUpper, class T, size_t L>
HWY_INLINE Vec<T, L> loadSamples(Lanes<T, L> d, const T* src, size_t i) {
    return hn::LoadU(d, src + i);
}

// The transforms of `count` columns from number `begin` on, several at once: from src, where they start and whose rows
// are `step` apart, to rows, and their sums over even and over odd samples to halves.
template <size_t kRows, size_t kMaxColumns, template <class, size_t, size_t> class Twiddles = TwiddlesOfBlock,
          class Source, class T>
HWY_INLINE void transformColumns(Source src, size_t step, T* rows, T* halves, size_t columns, size_t begin,
                                 size_t count, const T* twiddles) {
    using Row = RowLanes<T, kRows>;
    constexpr size_t L = smallest(Row::kLanes, kMaxColumns);
    constexpr size_t kBlock = smallest(kMaxColumns, kTwiddleBlockBytes / sizeof(T));
    const Lanes<T, L> d;
    using V = Vec<T, L>;
    const Twiddles<T, kRows, kBlock> factors(begin);
    for (size_t c = begin; c < begin + count; c += L) {
        V x[kRows], re[kRows / 2 + 1], im[kRows / 2 + 1];
        unroll<kRows>([&](auto i)
                          ZVPS_INLINE_LAMBDA { x[i] = loadSamples<2 * i >= kRows>(d, src, i * step + (c - begin)); });
        realDft<kRows, Ends::halves>(d, x, re, im);
        if constexpr (L == kMaxColumns) {
            im[0] = pickLanes<PartOfPairs<1>>(d, re[0], re[kRows / 2]);
            re[0] = pickLanes<PartOfPairs<0>>(d, re[0], re[kRows / 2]);
        } else {
            hn::StoreU(re[0], d, halves + c);
            hn::StoreU(re[kRows / 2], d, halves + columns + c);
            im[0] = re[0];
        }
        const T* const w = factors.at(twiddles, c);
        unroll<kRows / 2 - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
            constexpr size_t k = i + 1;
            const T* const wk = w + i * 2 * kBlock;
            const auto turned = rotated(re[k], im[k], factors.load(d, wk), factors.load(d, wk + kBlock));
            re[k] = turned.re;
            im[k] = turned.im;
        });
        unroll<kRows / 2 / L>([&](auto i) ZVPS_INLINE_LAMBDA {
            transposeRows(d, re + i * L);
            transposeRows(d, im + i * L);
        });
        unroll<Row::kGroups>([&](auto group) ZVPS_INLINE_LAMBDA {
            unroll<L>([&](auto n) ZVPS_INLINE_LAMBDA {
                constexpr size_t k = group * Row::kLanes + n;
                T* const row = rows + (c + n) * kRows + group * 2 * Row::kLanes;
                const typename Row::D rowLanes;
                hn::StoreU(joined<Row::kLanes / L>(rowLanes, re + k), rowLanes, row);
                hn::StoreU(joined<Row::kLanes / L>(rowLanes, im + k), rowLanes, row + Row::kLanes);
            });
        });
    }
}

// Compiled once for each number of rows.
template <size_t kRows, template <class, size_t, size_t> class Twiddles = TwiddlesOfBlock, class T>
HWY_NOINLINE void compiledColumns(const T* src, size_t step, T* rows, T* halves, size_t columns, size_t begin,
                                  size_t count, const T* twiddles) {
    transformColumns<kRows, kMostRealColumns, Twiddles>(src, step, rows, halves, columns, begin, count, twiddles);
}

// Long rows share few sets of the first-level cache: lines crowd each other out, and one that straddling vectors have
// in common would be gone before the neighbouring columns come. So where an array does not start at a line, blocks of
// its columns do, but the first and the last one, some of whose columns are others' too.
template <class T, class Run, class RunShifted>
HWY_INLINE void forShiftedColumns(const T* array, size_t columns, const Run& run, const RunShifted& runShifted) {
    constexpr size_t kBlock = kTwiddleBlockBytes / sizeof(T);
    run(0, kBlock);
    run(columns - kBlock, kBlock);
    runShifted(valuesToLine(array, sizeof(T)), columns - kBlock);
}

// The same for all columns, by way of some of them in lines of their own.
template <size_t kRows, class T>
HWY_NOINLINE void transformStagedColumns(const T* src, T* rows, T* halves, size_t columns, const T* twiddles) {
    const Lanes<T, kVectorBytes / sizeof(T)> d;
    constexpr size_t kVectors = 512 / kVectorBytes;
    constexpr size_t kCount = 512 / sizeof(T);
    alignas(64) T staged[kRows * kCount];
    for (size_t c = 0; c < columns; c += kCount) {
        for (size_t row = 0; row < kRows; ++row) {
            unroll<kVectors>([&](auto i) ZVPS_INLINE_LAMBDA {
                constexpr size_t kPlace = i * (kCount / kVectors);
                const auto x = hn::LoadU(d, src + row * columns + c + kPlace);
                hn::Store(x, d, staged + row * kCount + kPlace);
            });
        }
        compiledColumns<kRows>(staged, kCount, rows, halves, columns, c, kCount, twiddles);
    }
}

template <size_t kRows, class Source, class T>
HWY_INLINE void transformAllColumns(Source src, T* rows, T* halves, size_t columns, const T* twiddles) {
    transformColumns<kRows, kMostRealColumns>(src, columns, rows, halves, columns, 0, columns, twiddles);
}
template <size_t kRows, class T>
HWY_INLINE void transformAllColumns(const T* src, T* rows, T* halves, size_t columns, const T* twiddles) {
    // Lines of their own are the better way for the longest rows.
    const bool isAligned = reinterpret_cast<uintptr_t>(src) % kVectorBytes == 0;
    if (columns * kRows * sizeof(T) >= (isAligned ? 131072 : 65536)) {
        transformStagedColumns<kRows>(src, rows, halves, columns, twiddles);
        return;
    }
    const auto transform = [&](size_t begin, size_t count) {
        compiledColumns<kRows, TwiddlesOfBlock>(src + begin, columns, rows, halves, columns, begin, count, twiddles);
    };
    if constexpr (kRealigns) {
        if (columns * kRows * sizeof(T) >= 32768 && canRealign(src)) {
            forShiftedColumns(src, columns, transform, [&](size_t begin, size_t count) {
                compiledColumns<kRows, TwiddlesOfTwoBlocks>(src + begin, columns, rows, halves, columns, begin, count,
                                                            twiddles);
            });
            return;
        }
    }
    transform(0, columns);
}

// place(n, i): the row that column n + i is in; of `count` columns from number `begin` on.
template <size_t kRows, size_t kMaxColumns, template <class, size_t, size_t> class Twiddles = TwiddlesOfBlock, class T,
          class Place>
HWY_INLINE void inverseTransformColumns(const T* rows, const T* halves, T* dst, T factor, size_t columns, size_t begin,
                                        size_t count, const T* twiddles, Place place) {
    using Row = RowLanes<T, kRows>;
    constexpr size_t L = smallest(Row::kLanes, kMaxColumns);
    constexpr size_t kBlock = smallest(kMaxColumns, kTwiddleBlockBytes / sizeof(T));
    const Lanes<T, L> d;
    using V = Vec<T, L>;
    const V scale = hn::Set(d, factor);
    const Twiddles<T, kRows, kBlock> factors(begin);
    for (size_t c = begin; c < begin + count; c += L) {
        V x[kRows], re[kRows / 2 + 1], im[kRows / 2 + 1];
        unroll<kRows / 2 / L>([&](auto i) ZVPS_INLINE_LAMBDA {
            constexpr size_t k = i * L;
            constexpr size_t group = k / Row::kLanes * 2 * Row::kLanes + k % Row::kLanes;
            unroll<L>([&](auto n) ZVPS_INLINE_LAMBDA {
                const T* const row = rows + place(c, n) * kRows + group;
                im[k + n] = hn::LoadU(d, row);
                re[k + n] = hn::LoadU(d, row + Row::kLanes);
            });
            transposeRows(d, re + k);
            transposeRows(d, im + k);
        });
        const T* const w = factors.at(twiddles, c);
        unroll<kRows / 2 - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
            constexpr size_t k = i + 1;
            const T* const wk = w + i * 2 * kBlock;
            const auto turned = rotatedBack(re[k], im[k], factors.load(d, wk), factors.load(d, wk + kBlock));
            re[k] = turned.re;
            im[k] = turned.im;
        });
        if constexpr (L == kMaxColumns) {
            re[kRows / 2] = pickLanes<Interleaved<1>>(d, re[0], im[0]);
            re[0] = pickLanes<Interleaved<0>>(d, re[0], im[0]);
        } else {
            re[0] = hn::LoadU(d, halves + c);
            re[kRows / 2] = hn::LoadU(d, halves + columns + c);
        }
        inverseRealDft<kRows, Ends::halves>(d, re, im, x);
        unroll<kRows>([&](auto i) ZVPS_INLINE_LAMBDA { hn::StoreU(hn::Mul(x[i], scale), d, dst + i * columns + c); });
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
        : values(p), shift(layout == kFftPack ? 1 : 0), last(layout == kFftPerm   ? 1
                                                             : layout == kFftPack ? n - 1
                                                                                  : n),
          isCcs(layout == kFftCcs) {}

    HWY_INLINE T* pair(size_t k) const { return values + (2 * k - shift); }

    HWY_INLINE void storeEnds(T first, T middle) const {
        values[0] = first;
        values[last] = middle;
        if (isCcs) {
            values[1] = 0;
            values[last + 1] = 0;
        }
    }
};

// Lane 0 from memory.
template <class D, class V, class T>
HWY_INLINE V withFirst(D d, V v, const T* p) {
    return hn::IfThenElse(hn::FirstN(d, 1), hn::Set(d, *p), v);
}

// Bins of one group and one k2 of the half spectrum, kIsUpper: from N2/2 on. Lane 0 of the first group is anything, and
// so is what its place and the places of the bins N1/2 + N1 k are filled with.
template <size_t kRows, bool kIsUpper, class T, class V>
HWY_INLINE void storeBins(Spectrum<T> dst, size_t columns, size_t k2, size_t group, V re, V im) {
    using Row = RowLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    const typename Row::D d;
    if constexpr (!kIsUpper) {
        const V lower = pickLanes<Interleaved<0>>(d, re, im);
        const V upper = pickLanes<Interleaved<1>>(d, re, im);
        const size_t k = kRows * k2 + group * L;
        if (HWY_UNLIKELY(k == 0 && dst.shift != 0)) {
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
        if (group != 0) hn::StoreU(firstLanes<2>(d, lower), Lanes<T, 2>(), p + 2 * L);
    }
}

// The same bins from memory, parts exchanged.
template <size_t kRows, bool kIsUpper, class T>
HWY_INLINE auto loadBins(Spectrum<const T> src, size_t columns, size_t k2, size_t group) {
    using Row = RowLanes<T, kRows>;
    constexpr size_t L = Row::kLanes;
    using V = Vec<T, L>;
    const typename Row::D d;
    if constexpr (!kIsUpper) {
        const size_t k = kRows * k2 + group * L;
        V lower;
        V upper;
        if (HWY_UNLIKELY(k == 0 && src.shift != 0)) {
            const V first = hn::LoadU(d, src.values);
            lower = pickLanes<Up>(d, first, first);
            upper = hn::LoadU(d, src.values + L - 1);
        } else {
            lower = hn::LoadU(d, src.pair(k));
            upper = hn::LoadU(d, src.pair(k) + L);
        }
        return ComplexVec<T, L>{pickLanes<PartOfPairs<1>>(d, lower, upper), pickLanes<PartOfPairs<0>>(d, lower, upper)};
    } else {
        const T* const p = src.pair(kRows * (columns - k2) - (group + 1) * L);
        const V lower = hn::LoadU(d, p);
        const V upper = hn::LoadU(d, p + L);
        V im = pickLanes<MirrorPartOfPairs<0>>(d, lower, upper);
        V re = pickLanes<MirrorPartOfPairs<1>>(d, lower, upper);
        if (group != 0) {
            im = withFirst(d, im, p + 2 * L);
            re = withFirst(d, re, p + 2 * L + 1);
        }
        return ComplexVec<T, L>{hn::Neg(re), im};
    }
}

// The ends: with M columns the bins k N1/2, k = 0 .. M, are the transform of 2 M real values, which went (go) through
// the passes as M complex ones z. ends: the real parts of bin 0 .. M-1 of their transform, a place, the imaginary
// parts, a place. kLanes bins at once.
template <size_t kLanes, size_t kRows, class Bins, class T>
HWY_INLINE void joinEnds(const Bins& dst, const T* re, const T* im, size_t columns, const T* twiddles) {
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
template <size_t kLanes, size_t kRows, class Bins, class T>
HWY_INLINE void partEnds(const Bins& src, T* re, T* im, size_t columns, const T* twiddles) {
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
template <size_t kColumns, class T>
inline constexpr size_t kEndsLanes = kColumns < 8 ? 1 : smallest(kColumns / 2, kVectorBytes / sizeof(T));

template <size_t kRows, size_t columns, class Bins, class T>
HWY_INLINE void storeEnds(const Bins& dst, T* ends, const T* twiddles) {
    T* const re = ends;
    T* const im = ends + columns + 1;
    re[columns] = re[0];
    im[columns] = im[0];
    joinEnds<kEndsLanes<columns, T>, kRows>(dst, re, im, columns, twiddles);
    T* const middle = dst.pair(columns / 2 * (kRows / 2));
    middle[0] = re[columns / 2];
    middle[1] = -im[columns / 2];
    dst.storeEnds(re[0] + im[0], re[0] - im[0]);
}

template <size_t kRows, size_t columns, class Bins, class T>
HWY_INLINE void loadEnds(const Bins& src, T* ends, const T* twiddles) {
    T* const re = ends;
    T* const im = ends + columns + 1;
    partEnds<kEndsLanes<columns, T>, kRows>(src, re, im, columns, twiddles);
    const T* const middle = src.pair(columns / 2 * (kRows / 2));
    re[columns / 2] = middle[0] + middle[0];
    im[columns / 2] = -(middle[1] + middle[1]);
    re[0] = src.values[0] + src.values[src.last];
    im[0] = src.values[0] - src.values[src.last];
}

// ---- Transforms ----

// Up to 8 values, one by one.
template <size_t N, RealFftLayout layout, class T>
HWY_INLINE void tinyRealFft(const T* src, T* dst, T factor) {
    const Lanes<T, 1> d;
    using V = Vec<T, 1>;
    V x[N], re[N / 2 + 1], im[N / 2 + 1];
    unroll<N>([&](auto n) ZVPS_INLINE_LAMBDA { x[n] = hn::LoadU(d, src + n); });
    realDft<N>(d, x, re, im);
    const auto store = [&](V v, T* p) ZVPS_INLINE_LAMBDA { hn::StoreU(hn::Mul(v, hn::Set(d, factor)), d, p); };
    const Spectrum<T> spectrum(dst, layout, N);
    store(re[0], dst);
    if constexpr (N > 2) {
        unroll<N / 2 - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
            store(re[i + 1], spectrum.pair(i + 1));
            store(im[i + 1], spectrum.pair(i + 1) + 1);
        });
    }
    if constexpr (N > 1) store(re[N / 2], dst + spectrum.last);
    if constexpr (layout == kFftCcs) {
        dst[1] = 0;
        if constexpr (N > 1) dst[spectrum.last + 1] = 0;
    }
}
template <size_t N, RealFftLayout layout, class T>
HWY_INLINE void tinyInverseRealFft(const T* src, T* dst, T factor) {
    const Lanes<T, 1> d;
    using V = Vec<T, 1>;
    V x[N], re[N / 2 + 1], im[N / 2 + 1];
    const Spectrum<const T> spectrum(src, layout, N);
    re[0] = hn::LoadU(d, src);
    if constexpr (N > 2) {
        unroll<N / 2 - 1>([&](auto i) ZVPS_INLINE_LAMBDA {
            re[i + 1] = hn::LoadU(d, spectrum.pair(i + 1));
            im[i + 1] = hn::LoadU(d, spectrum.pair(i + 1) + 1);
        });
    }
    if constexpr (N > 1) re[N / 2] = hn::LoadU(d, src + spectrum.last);
    inverseRealDft<N>(d, re, im, x);
    unroll<N>([&](auto n) ZVPS_INLINE_LAMBDA { hn::StoreU(hn::Mul(x[n], hn::Set(d, factor)), d, dst + n); });
}

// step(group, isFirst) for every group of a row.
template <size_t kGroups, class Step>
HWY_INLINE void forGroups(Step step) {
    step(size_t{0}, std::true_type());
    for (size_t group = 1; group < kGroups; ++group) {
        step(group, std::false_type());
    }
}

// What two passes, for up to 16 columns, keep between them. All columns at once keep the values of the ends in the
// rows.
template <size_t kRows, size_t kColumns, class T>
struct ShortRealRows {
    using Row = RowLanes<T, kRows>;
    static constexpr size_t L = Row::kLanes;
    static constexpr bool kHasHalves = kColumns > L;
    static constexpr size_t kImag = kColumns + 1;

    alignas(kVectorBytes) T rows[kColumns * kRows];
    alignas(kVectorBytes) T halves[2 * kColumns];
    alignas(kVectorBytes) T ends[2 * kImag];

    // load(n, group, isFirst) and store(k, group, isFirst, x) for the transforms along the rows.
    template <class Load, class Store>
    static HWY_INLINE void transform(const Load& load, const Store& store) {
        const auto step = [&](size_t group, auto isFirst) ZVPS_INLINE_LAMBDA {
            Butterfly<T, L, kColumns>::run([&](auto n) ZVPS_INLINE_LAMBDA { return load(n, group, isFirst); },
                                           [&](auto k, ComplexVec<T, L> x)
                                               ZVPS_INLINE_LAMBDA { store(k, group, isFirst, x); });
        };
        step(size_t{0}, std::true_type());
        for (size_t group = 1; group < Row::kGroups; ++group) {
            step(group, std::false_type());
        }
    }
};

template <size_t kRows, size_t kColumns, class Source, class Bins, class T>
HWY_INLINE void shortRealFft(Source src, const Bins& dst, T factor, const T* columnTwiddles, const T* endTwiddles) {
    using Rows = ShortRealRows<kRows, kColumns, T>;
    using C = ComplexVec<T, Rows::L>;
    const typename Rows::Row::D d;
    Rows data;
    transformColumns<kRows, kColumns>(src, kColumns, data.rows, data.halves, kColumns, 0, kColumns, columnTwiddles);
    const auto scale = hn::Set(d, factor);
    Rows::transform(
        [&](auto n, size_t group, auto isFirst) ZVPS_INLINE_LAMBDA {
            C x = RowLoader<T, kRows>()(true, data.rows + n * kRows, n, group);
            if constexpr (isFirst && Rows::kHasHalves) {
                x.re = withFirst(d, x.re, data.halves + 2 * n);
                x.im = withFirst(d, x.im, data.halves + 2 * n + 1);
            }
            return x;
        },
        [&](auto k2, size_t group, auto isFirst, C x) ZVPS_INLINE_LAMBDA {
            x.re = hn::Mul(x.re, scale);
            x.im = hn::Mul(x.im, scale);
            if constexpr (isFirst) {
                data.ends[k2] = hn::GetLane(x.re);
                data.ends[Rows::kImag + k2] = hn::GetLane(x.im);
            }
            storeBins<kRows, 2 * k2 >= kColumns>(dst, kColumns, k2, group, x.re, x.im);
        });
    storeEnds<kRows, kColumns>(dst, data.ends, endTwiddles);
}

template <size_t kRows, size_t kColumns, class Bins, class T>
HWY_INLINE void shortInverseRealFft(const Bins& src, T* dst, T factor, const T* columnTwiddles, const T* endTwiddles) {
    using Rows = ShortRealRows<kRows, kColumns, T>;
    using C = ComplexVec<T, Rows::L>;
    const typename Rows::Row::D d;
    Rows data;
    loadEnds<kRows, kColumns>(src, data.ends, endTwiddles);
    Rows::transform(
        [&](auto k2, size_t group, auto isFirst) ZVPS_INLINE_LAMBDA {
            C x = loadBins<kRows, 2 * k2 >= kColumns>(src, kColumns, k2, group);
            if constexpr (isFirst) {
                x.im = withFirst(d, x.im, data.ends + k2);
                x.re = withFirst(d, x.re, data.ends + Rows::kImag + k2);
            }
            return x;
        },
        [&](auto n, size_t group, auto isFirst, C x) ZVPS_INLINE_LAMBDA {
            T* const row = data.rows + n * kRows + group * 2 * Rows::L;
            hn::StoreU(x.re, d, row);
            hn::StoreU(x.im, d, row + Rows::L);
            if constexpr (isFirst && Rows::kHasHalves) {
                data.halves[2 * n] = hn::GetLane(x.im);
                data.halves[2 * n + 1] = hn::GetLane(x.re);
            }
        });
    inverseTransformColumns<kRows, kColumns>(data.rows, data.halves, dst, factor, kColumns, 0, kColumns, columnTwiddles,
                                             [](size_t n, auto i) { return n + i; });
}

// ---- Long transforms ----

// The plan and the places of the tables of an order: a transform of a microsecond has no time to find them.
template <class T>
struct LongRealFft {
    RealFftPlan plan;
    RealFftTables tables;
};
template <class T, int... i>
inline const LongRealFft<T>& longRealFftOf(int order, std::integer_sequence<int, i...>) {
    constexpr int kLeast = kMostShortRealOrder + 1;
    static constexpr LongRealFft<T> all[] = {{realFftPlan<T>(kLeast + i), realFftTables<T>(kLeast + i)}...};
    return all[order - kLeast];
}
template <class T>
const LongRealFft<T>& longRealFftOf(int order) {
    return longRealFftOf<T>(order, std::make_integer_sequence<int, kMostRealOrder - kMostShortRealOrder>());
}

// A transform of 2^order values, from the first order without a fixed routine to kMostRealOrder. `work` has room for
// all values, `halves` for those of two rows; two passes need neither. The spectrum is described where it is used: its
// description would be copied by vectors from single stores, which wait for each other.
template <FftDirection direction, class T>
void realFft(int order, const T* src, T* dst, RealFftLayout layout, T factor, const T* tables, T* work, T* halves);

// The passes along the rows, and the ends: the bins k N1/2 are those of the transform of 2 N2 real values, the sums of
// the columns over even samples and then over odd ones. It takes place in the memory of the rows, when they are not.
template <FftDirection direction, class T>
struct RowsOfReal {
    const RealFftPlan& plan;
    const T* twiddles[kMostRowsPasses - 1];
    const T* inner;
    T* rows;

    RowsOfReal(int order, const T* tables, T* work) : plan(longRealFftOf<T>(order).plan), rows(work) {
        const RealFftTables& places = longRealFftOf<T>(order).tables;
        inner = tables + places.inner;
        for (int i = 0; i < kMostRowsPasses - 1; ++i) {
            twiddles[i] = tables + places.pass[i];
        }
    }

    void transformEnds(const T* src, T* dst, T factor) const {
        const size_t count = 2 * plan.columns;
        realFft<direction>(plan.along.order + 1, src, dst, kFftPerm, factor, inner, rows + count, rows + 2 * count);
    }
};

// The ends between the bins and an array that holds them in Perm layout.
template <size_t kRows, class T>
HWY_INLINE void storeJoinedEnds(const Spectrum<T>& dst, const T* ends, size_t columns) {
    dst.storeEnds(ends[0], ends[1]);
    for (size_t k = 1; k < columns; ++k) {
        __builtin_memcpy(dst.pair(k * (kRows / 2)), ends + 2 * k, 2 * sizeof(T));
    }
}
template <size_t kRows, class T>
HWY_INLINE void loadJoinedEnds(const Spectrum<const T>& src, T* ends, size_t columns) {
    ends[0] = src.values[0];
    ends[1] = src.values[src.last];
    for (size_t k = 1; k < columns; ++k) {
        __builtin_memcpy(ends + 2 * k, src.pair(k * (kRows / 2)), 2 * sizeof(T));
    }
}

template <size_t kRows, class Source, class Bins, class T>
HWY_INLINE void longRealFft(int order, Source src, Bins dst, T factor, const T* tables, T* work, T* halves) {
    using X = ComplexVec<T, RowLanes<T, kRows>::kLanes>;
    const RowsOfReal<kFftForward, T> rows(order, tables, work);
    const size_t columns = rows.plan.columns;
    transformAllColumns<kRows>(src, work, halves, columns, tables);
    transformRows<kRows>(work, rows.plan.along, rows.twiddles, RowLoader<T, kRows>(),
                         [columns, dst, factor](auto isUpper, auto, size_t k2, size_t group, X x) ZVPS_INLINE_LAMBDA {
                             const auto scale = hn::Set(typename RowLanes<T, kRows>::D(), factor);
                             storeBins<kRows, isUpper>(dst, columns, k2, group, hn::Mul(x.re, scale),
                                                       hn::Mul(x.im, scale));
                         });
    rows.transformEnds(halves, work, factor);
    storeJoinedEnds<kRows>(dst, work, columns);
}

// The columns after passes in place along the rows.
template <size_t kRows, template <class, size_t, size_t> class Twiddles, class T>
HWY_NOINLINE void compiledInverseColumns(const RowsPlan& along, const T* rows, const T* halves, T* dst, T factor,
                                         size_t columns, size_t begin, size_t count, const T* twiddles) {
    constexpr size_t L = RowLanes<T, kRows>::kLanes;
    const size_t shift = begin % L;
    size_t places[L];
    for (size_t i = 0; i < L; ++i) {
        places[i] = reversedRow(along, (i + shift) % L);
    }
    inverseTransformColumns<kRows, kMostRealColumns, Twiddles>(
        rows, halves, dst, factor, columns, begin, count, twiddles, [&](size_t n, auto i) ZVPS_INLINE_LAMBDA {
            if constexpr (Twiddles<T, kRows, L>::kShifts) {
                const size_t block = n - shift;
                return reversedRow(along, i + shift < L ? block : block + L) + places[i];
            } else {
                return reversedRow(along, n) + places[i];
            }
        });
}

template <size_t kRows, class T>
HWY_INLINE void inverseTransformAllColumns(const RowsPlan& along, const T* rows, const T* halves, T* dst, T factor,
                                           size_t columns, const T* twiddles) {
    const auto transform = [&](size_t begin, size_t count) {
        compiledInverseColumns<kRows, TwiddlesOfBlock>(along, rows, halves, dst, factor, columns, begin, count,
                                                       twiddles);
    };
    if constexpr (kRealigns) {
        if (columns * kRows * sizeof(T) >= 65536 && canRealign(dst)) {
            forShiftedColumns(dst, columns, transform, [&](size_t begin, size_t count) {
                compiledInverseColumns<kRows, TwiddlesOfTwoBlocks>(along, rows, halves, dst, factor, columns, begin,
                                                                   count, twiddles);
            });
            return;
        }
    }
    transform(0, columns);
}

template <size_t kRows, class Bins, class T>
HWY_INLINE void longInverseRealFft(int order, Bins src, T* dst, T factor, const T* tables, T* work, T* halves) {
    using Row = RowLanes<T, kRows>;
    using X = ComplexVec<T, Row::kLanes>;
    const RowsOfReal<kFftInverse, T> rows(order, tables, work);
    const size_t columns = rows.plan.columns;
    loadJoinedEnds<kRows>(src, work, columns);
    rows.transformEnds(work, halves, T{1});
    transformRows<kRows>(
        work, rows.plan.along, rows.twiddles,
        [src, columns](auto isUpper, auto, size_t k2, size_t group)
            ZVPS_INLINE_LAMBDA { return loadBins<kRows, isUpper>(src, columns, k2, group); },
        [](auto, T* row, size_t, size_t group, X x) ZVPS_INLINE_LAMBDA {
            const typename Row::D d;
            hn::StoreU(x.re, d, row + group * 2 * Row::kLanes);
            hn::StoreU(x.im, d, row + group * 2 * Row::kLanes + Row::kLanes);
        });
    inverseTransformAllColumns<kRows>(rows.plan.along, work, halves, dst, factor, columns, tables);
}

} // namespace zvps::ZVPS_LEVEL
