// Long complex transforms in two trips over the data, by blocks of neighbouring columns that stay in the caches.
#pragma once

#include "transforms/fft_joining.hpp"
#include "transforms/fft_large_call.hpp"
#include "transforms/fft_large_plan.hpp"
#include "transforms/fft_realign.hpp"
#include "transforms/fft_rows.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- The data ----

// Streamed past the caches, to aligned memory, lines are not read before they are written.
template <class D, class T>
HWY_INLINE void storeOrStream(hn::Vec<D> x, D d, T* p, bool bypassesCaches) {
    if constexpr (sizeof(x) >= 16) {
        if (bypassesCaches) return hn::Stream(x, d, p);
    }
    hn::StoreU(x, d, p);
}

// Interleaved; an inverse transform is the forward one of exchanged parts.
template <class T, bool kInverse>
struct PairData {
    T* p;

    bool isAligned() const { return startsAtLine(p); }

    template <size_t L>
    HWY_INLINE auto load(size_t i) const {
        using Value = std::remove_const_t<T>;
        const Lanes<Value, L> d;
        const auto lower = hn::LoadU(d, p + 2 * i);
        const auto upper = hn::LoadU(d, p + 2 * i + L);
        const auto first = pickLanes<PartOfPairs<0>>(d, lower, upper);
        const auto second = pickLanes<PartOfPairs<1>>(d, lower, upper);
        return kInverse ? ComplexVec<Value, L>{second, first} : ComplexVec<Value, L>{first, second};
    }
    template <size_t L>
    HWY_INLINE void store(size_t i, ComplexVec<T, L> x, bool bypassesCaches = false) const {
        const Lanes<T, L> d;
        const auto first = kInverse ? x.im : x.re;
        const auto second = kInverse ? x.re : x.im;
        storeOrStream(pickLanes<Interleaved<0>>(d, first, second), d, p + 2 * i, bypassesCaches);
        storeOrStream(pickLanes<Interleaved<1>>(d, first, second), d, p + 2 * i + L, bypassesCaches);
    }
    // Calls step(first, last) for the arrays' bytes of `count` values.
    template <class Step>
    HWY_INLINE void forBytes(size_t i, size_t count, Step step) const {
        step(p + 2 * i, p + 2 * (i + count) - 1);
    }
};

template <class T>
struct SplitData {
    T* re;
    T* im;

    bool isAligned() const { return startsAtLine(re) && startsAtLine(im); }

    template <size_t L>
    HWY_INLINE auto load(size_t i) const {
        using Value = std::remove_const_t<T>;
        const Lanes<Value, L> d;
        return ComplexVec<Value, L>{hn::LoadU(d, re + i), hn::LoadU(d, im + i)};
    }
    template <size_t L>
    HWY_INLINE void store(size_t i, ComplexVec<T, L> x, bool bypassesCaches = false) const {
        const Lanes<T, L> d;
        storeOrStream(x.re, d, re + i, bypassesCaches);
        storeOrStream(x.im, d, im + i, bypassesCaches);
    }
    template <class Step>
    HWY_INLINE void forBytes(size_t i, size_t count, Step step) const {
        step(re + i, re + i + count - 1);
        step(im + i, im + i + count - 1);
    }
};

// Any of them, for what waits for the memory anyway: the arrays of the parts; of pairs, that of the first part is the
// lower one.
template <class T>
struct AnyData {
    T* re;
    T* im;
    bool isPaired;

    template <bool kInverse>
    explicit AnyData(PairData<T, kInverse> data)
        : re(data.p + (kInverse ? 1 : 0)), im(data.p + (kInverse ? 0 : 1)), isPaired(true) {}
    explicit AnyData(SplitData<T> data) : re(data.re), im(data.im), isPaired(false) {}

    bool isInverse() const { return im < re; }
    HWY_INLINE PairData<T, false> pairs() const { return {isInverse() ? im : re}; }
    HWY_INLINE SplitData<T> parts() const { return {re, im}; }
    bool isAligned() const { return isPaired ? pairs().isAligned() : parts().isAligned(); }

    template <size_t L>
    HWY_INLINE auto load(size_t i) const {
        if (!isPaired) return parts().template load<L>(i);
        const auto x = pairs().template load<L>(i);
        return isInverse() ? decltype(x){x.im, x.re} : x;
    }
    template <size_t L>
    HWY_INLINE void store(size_t i, ComplexVec<T, L> x, bool bypassesCaches = false) const {
        if (!isPaired) return parts().template store<L>(i, x, bypassesCaches);
        pairs().template store<L>(i, isInverse() ? ComplexVec<T, L>{x.im, x.re} : x, bypassesCaches);
    }
    template <class Step>
    HWY_INLINE void forBytes(size_t i, size_t count, Step step) const {
        isPaired ? pairs().forBytes(i, count, step) : parts().forBytes(i, count, step);
    }
};

// Brings `count` values into the caches, to be written with the line that their alignment may add.
template <size_t count, bool kWrite, class Data>
HWY_INLINE void prefetchValues(const Data& data, size_t i) {
    data.forBytes(i, count, [](const auto* first, const auto* last) ZVPS_INLINE_LAMBDA {
        for (const auto* line = first; line < last; line += 64 / sizeof(*first)) {
            __builtin_prefetch(line, kWrite);
        }
        if (kWrite) __builtin_prefetch(last, kWrite);
    });
}

// ---- Trips ----

template <class T>
struct LargeFft {
    static constexpr size_t C = kLargeColumns<T>;
    using Row = RowLanes<T, 2 * C>;
    static constexpr size_t L = Row::kLanes;

    LargeFft(const T* base, int order)
        : plan(largeFftPlan<T>(order)), n1(size_t{1} << plan.firstOrder), n2(size_t{1} << plan.secondOrder) {
        const LargeFftTables tables = largeFftTables<T>(order);
        for (int pass = 0; pass < kMostRowsPasses; ++pass) {
            first[pass] = base + tables.first[pass];
            second[pass] = base + tables.second[pass];
        }
        fine = base + tables.fine;
        coarse = base + tables.coarse;
        fineAcross = base + tables.fineAcross;
        coarseAcross = base + tables.coarseAcross;
    }

    // Where value n2 of the second transform for k1 = 0 is between the trips: like this the squares that the data
    // consist of are transposed each in its place.
    HWY_INLINE size_t place(size_t n) const { return (n & (n1 - 1)) * n2 + (n >> plan.firstOrder) * n1; }

    LargeFftPlan plan;
    size_t n1;
    size_t n2;
    const T* first[kMostRowsPasses];
    const T* second[kMostRowsPasses];
    const T* fine;
    const T* coarse;
    const T* fineAcross;
    const T* coarseAcross;
};

// Between two trips in the results' memory: pairs as vectors of parts, each of C neighbouring bins of one first
// transform. Where results are realigned, they lie in the lines these will be in, and the first one, of which these
// have but a part, elsewhere.
template <class T>
struct MiddleData {
    static constexpr size_t C = kLargeColumns<T>;

    T* re;
    T* im;
    T* first; // of the real parts
    size_t isPaired;

    MiddleData(AnyData<T> to, T* firstLine)
        : re(to.isPaired ? to.pairs().p : to.re), im(to.isPaired ? re + C : to.im), first(re), isPaired(to.isPaired) {
#if HWY_TARGET <= HWY_AVX3
        if (firstLine == nullptr) return;
        const size_t beyond = lanesBeyondLine(re);
        re -= beyond;
        im -= beyond;
        first = firstLine;
#else
        static_cast<void>(firstLine);
#endif
    }

    bool isAligned() const {
        return startsAtLine(re) && startsAtLine(im);
    }

    template <size_t L>
    HWY_INLINE size_t place(size_t i) const {
        return L < C ? (i / C << isPaired) * C + i % C : i << isPaired;
    }
    HWY_INLINE T* real(size_t place) const {
        return place < C ? first + place : re + place;
    }

    template <size_t L>
    HWY_INLINE auto load(size_t i) const {
        const Lanes<T, L> d;
        const size_t at = place<L>(i);
        return ComplexVec<T, L>{hn::LoadU(d, real(at)), hn::LoadU(d, im + at)};
    }
    template <size_t L>
    HWY_INLINE void store(size_t i, ComplexVec<T, L> x, bool bypassesCaches) const {
        const Lanes<T, L> d;
        const size_t at = place<L>(i);
        storeOrStream(x.re, d, real(at), bypassesCaches);
        storeOrStream(x.im, d, im + at, bypassesCaches);
    }
    template <class Step>
    HWY_INLINE void forBytes(size_t i, size_t count, Step step) const {
        if (isPaired) return step(re + 2 * i, re + 2 * (i + count) - 1);
        step(re + i, re + i + count - 1);
        step(im + i, im + i + count - 1);
    }
};

#if HWY_TARGET <= HWY_AVX3
// Columns of pairs that begin beyond the beginning of a line, by aligned lines and backward: what the columns before
// have of a line waits for these, in rows of the middle data that are not written before the last block is read.
template <class T>
struct LineColumns {
    static constexpr size_t L = kLineBytes / sizeof(T);
    static constexpr size_t C = kLargeColumns<T>;
    using D = Lanes<T, L>;
    using Few = Lanes<T, L / 4>;

    const LargeFft<T>& fft;
    const T* lines;
    size_t beyond;
    LaneOrder<T> order;
    bool isInverse;
    bool isNarrow; // what waits
    T* middle;

    LineColumns(const LargeFft<T>& transform, AnyData<const T> from, const MiddleData<T>& to)
        : fft(transform), lines(from.pairs().p), beyond(lanesBeyondLine(lines)), order(orderOfVector<T>(beyond)),
          isInverse(from.isInverse()), isNarrow(beyond <= L / 4), middle(to.re) {
        lines -= beyond;
        const size_t rest = fft.n1 / C;
        for (size_t b = 0; b < rest; ++b) {
            for (size_t a = 0; a < C; ++a) {
                const T* const line = lines + 2 * (a * rest + b + 1) * fft.n2;
                store(loadFirst(D(), line, beyond), waiting(a, b));
            }
        }
    }

    // The place for row a n1 / C + b.
    HWY_INLINE T* waiting(size_t a, size_t b) const {
        const size_t pairs = isNarrow ? L / 8 : L / 2;
        const size_t i = b * C * pairs;
        constexpr size_t kFirstRow = 8; // of those of the last block
        return middle + 2 * (fft.place(kFirstRow + (i >> fft.plan.firstOrder)) + (i & (fft.n1 - 1)) + a * pairs);
    }
    HWY_INLINE void store(Vec<T, L> line, T* place) const {
        if (isNarrow) return hn::StoreU(hn::LowerHalf(hn::LowerHalf(line)), Few(), place);
        hn::StoreU(line, D(), place);
    }

    HWY_INLINE ComplexVec<T, L> load(size_t i, size_t a, size_t b) const {
        const D d;
        T* const place = waiting(a, b);
        const T* const line = lines + 2 * i;
        const bool isFirst = a == 0 && i == 0;
        const auto first = isFirst ? loadBeyond(d, line, beyond) : hn::Load(d, line);
        const auto second = hn::Load(d, line + L);
        const auto third = isNarrow ? hn::LoadDup128(d, place) : hn::LoadU(d, place);
        store(first, place);
        const auto lower = permuted(first, order, second);
        const auto upper = permuted(second, order, third);
        const auto even = pickLanes<PartOfPairs<0>>(d, lower, upper);
        const auto odd = pickLanes<PartOfPairs<1>>(d, lower, upper);
        return isInverse ? ComplexVec<T, L>{odd, even} : ComplexVec<T, L>{even, odd};
    }
    template <class Step>
    HWY_INLINE void forBytes(size_t i, size_t count, Step step) const {
        step(lines + 2 * i, lines + 2 * (i + count) - 1);
    }
};
#endif

// ---- Results ----

// Of transforms along rows, by blocks of columns: a block's rows lie at `rows`; bin k of column + lane is number
// k step + column + lane.
template <class T, class To>
struct Results {
    To to;
    size_t step;
    bool bypassesCaches;
    size_t column = 0;

    HWY_INLINE void start(size_t first, const T*, const T*, T*) { column = first; }

    template <size_t L>
    HWY_INLINE void store(const T*, size_t k, size_t group, ComplexVec<T, L> x) const {
        to.template store<L>(k * step + column + group * L, x, bypassesCaches);
    }
};

#if HWY_TARGET <= HWY_AVX3
// The same of pairs that begin beyond the beginning of a line, in whole lines but for the ends of rows: what a block
// has of a line at the end of a row of bins waits for the next block, at the place of the row or, compact, in memory of
// its own.
template <class T>
struct LineResults {
    static constexpr size_t L = kLineBytes / sizeof(T);
    using D = Lanes<T, L>;

    // What waits of each line: nothing but the lanes that are needed, if they are few.
    static size_t waitingLanes(const T* to) { return lanesBeyondLine(to) <= L / 4 ? L / 4 : L; }

    T* lines;
    size_t step;
    bool bypassesCaches;
    size_t beyond;
    hn::Mask<D> isBefore;
    bool isNarrow;
    LaneOrder<T> orders[3]; // of lines from the parts
    int rowShift;           // rows are 2^rowShift times as far apart as what waits of lines
    size_t column = 0;
    const T* rows = nullptr;
    const T* before = nullptr;
    T* after = nullptr;

    LineResults(AnyData<T> to, size_t rowLength, bool bypasses, bool isCompact)
        : lines(to.pairs().p), step(rowLength), bypassesCaches(bypasses), beyond(lanesBeyondLine(lines)),
          isBefore(hn::FirstN(D(), beyond)), isNarrow(waitingLanes(lines) < L) {
        rowShift = !isCompact ? 0 : (L == 16 ? 1 : 2) + (isNarrow ? 2 : 0);
        lines -= beyond;
        using Index = hwy::MakeSigned<T>;
        const Lanes<Index, L> d;
        for (size_t line = 0; line < 3; ++line) {
            const auto value = hn::Iota(d, static_cast<Index>(line * L) - static_cast<Index>(beyond));
            const auto isSecond = hn::And(hn::Xor(value, hn::Set(d, to.isInverse() ? 1 : 0)), hn::Set(d, 1));
            orders[line] = hn::Add(hn::ShiftRight<1>(value), hn::Mul(isSecond, hn::Set(d, Index{L})));
        }
    }

    HWY_INLINE void start(size_t first, const T* rowsOfBlock, const T* lastOnes, T* nextOnes) {
        column = first;
        rows = rowsOfBlock;
        before = lastOnes;
        after = nextOnes;
    }

    HWY_INLINE void store(const T* row, size_t k, size_t group, ComplexVec<T, L> x) const {
        const D d;
        const size_t place = static_cast<size_t>(row - rows) >> rowShift;
        const size_t first = column + group * L;
        T* const line = lines + 2 * (k * step + first);
        const auto own = permuted(x.re, orders[0], x.im);
        if (first == 0) {
            storeBeyond(d, own, line, beyond);
        } else {
            const T* const waiting = (group == 0 ? before : after) + place;
            const auto earlier = isNarrow ? hn::LoadDup128(d, waiting) : hn::LoadU(d, waiting);
            storeOrStream(hn::IfThenElse(isBefore, earlier, own), d, line, bypassesCaches);
        }
        storeOrStream(permuted(x.re, orders[1], x.im), d, line + L, bypassesCaches);
        const auto rest = permuted(x.re, orders[2], x.im);
        if (first + L == step) {
            hn::BlendedStore(rest, isBefore, d, line + 2 * L);
        } else if (isNarrow) {
            hn::StoreU(hn::LowerHalf(hn::LowerHalf(rest)), Lanes<T, L / 4>(), after + place);
        } else {
            hn::StoreU(rest, d, after + place);
        }
    }
};
#endif

// Whether data are unaligned but realigned where they are read or written.
template <class T, bool kInverse>
bool canRealign(PairData<T, kInverse> data) {
    return canRealign(data.p);
}
template <class T>
bool canRealign(SplitData<T>) {
    return false;
}
template <class T>
bool canRealign(const PartedData<T>&) {
    return false;
}
template <class From>
inline constexpr bool kIsSpectrum = false;
template <class T>
inline constexpr bool kIsSpectrum<PartedData<T>> = true;

template <class From>
inline constexpr bool kIsBackward = false;
template <size_t L, class From>
HWY_INLINE auto loadColumns(const From& from, size_t i, size_t, size_t) {
    return from.template load<L>(i);
}
#if HWY_TARGET <= HWY_AVX3
template <class T>
inline constexpr bool kIsBackward<LineColumns<T>> = true;
template <size_t L, class T>
HWY_INLINE auto loadColumns(const LineColumns<T>& from, size_t i, size_t a, size_t b) {
    return from.load(i, a, b);
}
#endif

// The rest of a block of first transforms, and the factors.
template <class T, class Store>
HWY_NOINLINE void transformBlock(const LargeFft<T>& fft, size_t n, T* block, size_t columnStep, const Store& store) {
    using Large = LargeFft<T>;
    constexpr size_t C = Large::C;
    constexpr size_t L = Large::L;
    using X = ComplexVec<T, L>;
    const size_t rest = fft.n1 / C;
    for (size_t i = 0; i < kBlockColumns; ++i) {
        const T* const fine = fft.fine + (n + i) * 2 * C;
        const T* const coarse = fft.coarse + (n + i) * rest * 2;
        transformParts<2 * C, 0>(block + i * columnStep, fft.plan.rest, fft.plan.rest.order, 1, 0, 0, 1, fft.first + 1,
                                 [fine, coarse, store, target = store.row(n + i)](auto, auto, size_t k, size_t group,
                                                                                  X x) ZVPS_INLINE_LAMBDA {
                                     const Lanes<T, L> lanes;
                                     const auto turned = rotatedTwice(
                                         x.re, x.im, hn::Set(lanes, coarse[2 * k]), hn::Set(lanes, coarse[2 * k + 1]),
                                         hn::LoadU(lanes, fine + group * L), hn::LoadU(lanes, fine + C + group * L));
                                     store(target, k, group, X{turned.re, turned.im});
                                 });
    }
}

// The first transforms and the factors, by blocks of columns, whose bins k C + group L + lane of column n go to
// store(store.row(n), k, group, x). A block is transposed behind the first pass, so that each of its columns then is a
// transform in contiguous memory. prefetches: data that the caches lose, whose rows are too far apart for the processor
// to foresee.
template <class T, class From, class Store>
HWY_NOINLINE void transformColumns(const LargeFft<T>& fft, From from, bool prefetches, T* block, size_t padding,
                                   const Store& store) {
    using Large = LargeFft<T>;
    constexpr size_t C = Large::C;
    constexpr size_t L = Large::L;
    using V = Vec<T, L>;
    using X = ComplexVec<T, L>;
    const Lanes<T, L> d;
    const size_t rest = fft.n1 / C;
    const size_t columnStep = rest * 2 * C + padding;
    for (size_t start = 0; start < fft.n2; start += kBlockColumns) {
        const size_t n = kIsBackward<From> ? fft.n2 - kBlockColumns - start : start;
        for (size_t b = 0; b < rest; ++b) {
            const T* const twiddles = fft.first[0] + b * 2 * (C - 1);
            if (prefetches && b + 1 < rest) {
                for (size_t a = 0; a < C; ++a) {
                    prefetchValues<kBlockColumns, false>(from, (a * rest + b + 1) * fft.n2 + n);
                }
            }
            for (size_t group = 0; group < kBlockColumns; group += L) {
                V re[C], im[C];
                Butterfly<T, L, C>::run(
                    [&](auto a)
                        ZVPS_INLINE_LAMBDA { return loadColumns<L>(from, (a * rest + b) * fft.n2 + n + group, a, b); },
                    [&](auto k, X x) ZVPS_INLINE_LAMBDA {
                        if constexpr (k == 0) {
                            re[k] = x.re;
                            im[k] = x.im;
                        } else {
                            const T* const w = twiddles + 2 * (k - 1);
                            const auto turned = rotated(x.re, x.im, hn::Set(d, w[0]), hn::Set(d, w[1]));
                            re[k] = turned.re;
                            im[k] = turned.im;
                        }
                    });
                unroll<C / L>([&](auto tile) ZVPS_INLINE_LAMBDA {
                    transposeRows(d, re + tile * L);
                    transposeRows(d, im + tile * L);
                    unroll<L>([&](auto lane) ZVPS_INLINE_LAMBDA {
                        T* const row = block + (group + lane) * columnStep + b * 2 * C + tile * 2 * L;
                        hn::StoreU(re[tile * L + lane], d, row);
                        hn::StoreU(im[tile * L + lane], d, row + L);
                    });
                });
            }
        }
        transformBlock(fft, n, block, columnStep, store);
    }
}

// The same in place, kColumns at once, to where the data came from.
template <size_t kColumns, class T, class From, class To>
HWY_NOINLINE void transformInColumns(const LargeFft<T>& fft, From from, To to, T* block) {
    constexpr size_t C = LargeFft<T>::C;
    constexpr size_t L = RowLanes<T, 2 * kColumns>::kLanes;
    using X = ComplexVec<T, L>;
    const size_t step = fft.n2;
    const size_t rest = fft.n1 / C;
    for (size_t n = 0; n < fft.n2; n += kColumns) {
        const T* const fine = fft.fineAcross + n / C * C * 2 * C + n % C;
        const T* const coarse = fft.coarseAcross + n / C * rest * 2 * C + n % C;
        rowsPass<2 * kColumns, C>(block, rest, fft.first[0],
                                  [from, step, n](auto, auto, size_t row, size_t group)
                                      ZVPS_INLINE_LAMBDA { return from.template load<L>(row * step + n + group * L); });
        transformParts<2 * kColumns, 1>(
            block, fft.plan.first, fft.plan.first.order - kLargeColumnsOrder<T>, C, 0, 1, C, fft.first,
            [fine, coarse, step, n, to](auto, auto, size_t k, size_t group, X x) ZVPS_INLINE_LAMBDA {
                const Lanes<T, L> d;
                const T* const c = coarse + k / C * 2 * C + group * L;
                const T* const f = fine + k % C * 2 * C + group * L;
                const auto turned = rotatedTwice(x.re, x.im, hn::LoadU(d, c), hn::LoadU(d, c + C), hn::LoadU(d, f),
                                                 hn::LoadU(d, f + C));
                to.template store<L>(k * step + n + group * L, X{turned.re, turned.im});
            });
    }
}

// The second transforms, kColumns at once, from where place() says.
template <size_t kColumns, class T, class From, class Results>
HWY_NOINLINE void transformRest(const LargeFft<T>& fft, From from, Results results, T factor, T* block, T* waiting) {
    constexpr size_t L = RowLanes<T, 2 * kColumns>::kLanes;
    using X = ComplexVec<T, L>;
    for (size_t k1 = 0; k1 < fft.n1; k1 += kColumns) {
        results.start(k1, block, waiting, waiting);
        transformRows<2 * kColumns>(
            block, fft.plan.second, fft.second,
            [from, &fft, k1](auto, auto, size_t row, size_t group) ZVPS_INLINE_LAMBDA {
                const size_t i = fft.place(row) + k1;
                if (group == 0) prefetchValues<kColumns, false>(from, i + kColumns);
                return from.template load<L>(i + group * L);
            },
            [factor, results](auto, const T* row, size_t k, size_t group, X x) ZVPS_INLINE_LAMBDA {
                const auto scale = hn::Set(Lanes<T, L>(), factor);
                results.store(row, k, group, X{hn::Mul(x.re, scale), hn::Mul(x.im, scale)});
            });
    }
}

// Values of a tile as its first pass reads them, in the meantime the places of as many results.
template <class T, class To>
struct TileLoader {
    const T* tile;
    To to;
    size_t start;
    size_t step;
    bool prefetches;

    template <class IsUpper>
    HWY_INLINE auto operator()(IsUpper isUpper, const T*, size_t n, size_t group) const {
        if (prefetches && group == 0) prefetchValues<kTileColumns, true>(to, start + n * step);
        constexpr size_t kWidth = 2 * kTileColumns;
        return RowLoader<T, kWidth>()(isUpper, tile + n * kWidth, n, group);
    }
};

// The same from tiles, in their own places without a block.
template <class T, class To, class Results>
HWY_NOINLINE void transformTiles(const LargeFft<T>& fft, T* tiles, size_t tile, To to, Results results, bool prefetches,
                                 T factor, T* block) {
    constexpr size_t C = kTileColumns;
    constexpr size_t L = RowLanes<T, 2 * C>::kLanes;
    using X = ComplexVec<T, L>;
    T* waiting = tiles; // in a tile that has been read
    for (size_t k1 = 0; k1 < fft.n1; k1 += C, tiles += tile) {
        T* const rows = block != nullptr ? block : tiles;
        T* const last = waiting;
        if (block == nullptr) waiting = tiles;
        results.start(k1, rows, last, waiting);
        transformRows<2 * C>(rows, fft.plan.second, fft.second, TileLoader<T, To>{tiles, to, k1, fft.n1, prefetches},
                             [factor, results](auto, const T* row, size_t k, size_t group, X x) ZVPS_INLINE_LAMBDA {
                                 const auto scale = hn::Set(Lanes<T, L>(), factor);
                                 results.store(row, k, group, X{hn::Mul(x.re, scale), hn::Mul(x.im, scale)});
                             });
    }
}

// ---- Transposition in place ----

// The square of n x n values at p, whose rows are `step` apart.
template <class T>
HWY_NOINLINE void transposeSquare(T* p, size_t n, size_t step) {
    constexpr size_t L = kVectorBytes / sizeof(T);
    const Lanes<T, L> d;
    using V = Vec<T, L>;
    for (size_t i = 0; i < n; i += L) {
        for (size_t j = 0; j <= i; j += L) {
            V a[L], b[L];
            T* const lower = p + i * step + j;
            T* const upper = p + j * step + i;
            unroll<L>([&](auto row) ZVPS_INLINE_LAMBDA {
                a[row] = hn::LoadU(d, lower + row * step);
                b[row] = hn::LoadU(d, upper + row * step);
            });
            transposeRows(d, a);
            transposeRows(d, b);
            unroll<L>([&](auto row) ZVPS_INLINE_LAMBDA {
                hn::StoreU(b[row], d, lower + row * step);
                hn::StoreU(a[row], d, upper + row * step);
            });
        }
    }
}

// The same of pairs of values too wide to move as one.
template <class T>
HWY_NOINLINE void transposePairSquare(T* p, size_t n, size_t step) {
    const Lanes<T, 2> d;
    constexpr size_t kBlock = 8;
    for (size_t i = 0; i < n; i += kBlock) {
        for (size_t j = 0; j <= i; j += kBlock) {
            for (size_t row = i; row < i + kBlock; ++row) {
                for (size_t column = j; column < j + kBlock && column < row; ++column) {
                    T* const lower = p + 2 * (row * step + column);
                    T* const upper = p + 2 * (column * step + row);
                    const auto held = hn::LoadU(d, lower);
                    hn::StoreU(hn::LoadU(d, upper), d, lower);
                    hn::StoreU(held, d, upper);
                }
            }
        }
    }
}

template <class T, bool kInverse>
void transposeData(const LargeFft<T>& fft, PairData<T, kInverse> data) {
    for (size_t start = 0; start < fft.n2; start += fft.n1) {
        if constexpr (sizeof(T) == 4) {
            transposeSquare(reinterpret_cast<double*>(data.p) + start, fft.n1, fft.n2);
        } else {
            transposePairSquare(data.p + 2 * start, fft.n1, fft.n2);
        }
    }
}
template <class T>
void transposeData(const LargeFft<T>& fft, SplitData<T> data) {
    for (size_t start = 0; start < fft.n2; start += fft.n1) {
        transposeSquare(data.re + start, fft.n1, fft.n2);
        transposeSquare(data.im + start, fft.n1, fft.n2);
    }
}
template <class T>
void transposeData(const LargeFft<T>& fft, AnyData<T> data) {
    data.isPaired ? transposeData(fft, data.pairs()) : transposeData(fft, data.parts());
}

// ---- Transforms ----

template <size_t kColumns, class T, class From, class To>
void transformInPlace(const LargeFft<T>& fft, From from, To to, T factor, const LargeFftCall<T>& call) {
    transformInColumns<kColumns>(fft, from, to, call.work);
    transposeData(fft, to);
    transformRest<kColumns>(fft, to, Results<T, To>{to, fft.n1, false}, factor, call.work, static_cast<T*>(nullptr));
}

// Of all arrays together: from the first number on columns wait for the caches, and results with an array of their own
// are better off beside these; from the second on all arrays leave them before they are read again.
inline constexpr size_t kPrefetchBytes = size_t{12} << 20;
inline constexpr size_t kBypassBytes = size_t{24} << 20;

// The results of the first trip as tiles.
template <class T>
struct TileStore {
    static constexpr size_t C = LargeFft<T>::C;
    static constexpr size_t L = LargeFft<T>::L;

    T* tiles;
    size_t tile;
    bool bypassesCaches;

    HWY_INLINE T* row(size_t n) const { return tiles + n * 2 * kTileColumns; }
    HWY_INLINE void operator()(T* row, size_t k, size_t group, ComplexVec<T, L> x) const {
        constexpr size_t kTogether = kTileColumns / C;
        const Lanes<T, L> d;
        T* const values = row + k / kTogether * tile + k % kTogether * 2 * C + group * 2 * L;
        storeOrStream(x.re, d, values, bypassesCaches);
        storeOrStream(x.im, d, values + L, bypassesCaches);
    }
};

// tiles: at the distance of `tile`; secondBlock may be null.
template <class T, class From, class To>
void transformThroughTiles(const LargeFft<T>& fft, From from, To to, bool isInPlace, T factor, T* tiles, size_t tile,
                           T* firstBlock, T* secondBlock) {
    const size_t arrays = isInPlace ? 2 : 3;
    const size_t bytes = arrays * 2 * sizeof(T) * fft.n1 * fft.n2;
    const bool isBeyond = bytes >= kBypassBytes;
    const TileStore<T> store = {tiles, tile, isBeyond};
    transformColumns(fft, from, bytes >= kPrefetchBytes, firstBlock, kColumnPadding<T>, store);
    const bool isResultBeyond = isBeyond || (!isInPlace && bytes >= kPrefetchBytes);
    const bool bypassesCaches = isResultBeyond && (to.isAligned() || canRealign(to));
#if HWY_TARGET <= HWY_AVX3
    if (canRealign(to)) {
        const AnyData<T> any(to);
        const LineResults<T> results(any, fft.n1, bypassesCaches, secondBlock != nullptr);
        transformTiles(fft, tiles, tile, any, results, false, factor, secondBlock);
        if (isResultBeyond) hwy::FlushStream();
        return;
    }
#endif
    const Results<T, To> results = {to, fft.n1, bypassesCaches};
    transformTiles(fft, tiles, tile, to, results, isResultBeyond && !bypassesCaches, factor, secondBlock);
    if (isResultBeyond) hwy::FlushStream();
}

// With the tiles in the work buffer, if it is large enough.
template <class T, class From, class To>
bool transformThroughTiles(const LargeFft<T>& fft, From from, To to, bool isInPlace, T factor,
                           const LargeFftCall<T>& call) {
    if (call.workValues >= largeFftWork<T>(call.order)) {
        T* const tiles =
            reinterpret_cast<T*>((reinterpret_cast<uintptr_t>(call.work) + kLineBytes - 1) / kLineBytes * kLineBytes);
        const size_t tile = largeFftTile<T>(call.order);
        T* const block = tiles + fft.n1 / kTileColumns * tile;
        transformThroughTiles(fft, from, to, isInPlace, factor, tiles, tile, block, block);
        return true;
    }
    if (call.order == kLeastLargeOrder) {
        // Room for all points and no more.
        alignas(kLineBytes)
            T block[kBlockColumns * ((2 << largeFftPlan<T>(kLeastLargeOrder).firstOrder) + kColumnPadding<T>)];
        transformThroughTiles(fft, from, to, isInPlace, factor, call.work, 2 * kTileColumns * fft.n2, block,
                              static_cast<T*>(nullptr));
        return true;
    }
    return false;
}

// The same as middle data.
template <class T>
struct MiddleStore {
    static constexpr size_t C = LargeFft<T>::C;
    static constexpr size_t L = LargeFft<T>::L;

    const LargeFft<T>& fft;
    MiddleData<T> middle;
    bool bypassesCaches;
    bool prefetches;

    HWY_INLINE size_t row(size_t n) const { return fft.place(n); }
    HWY_INLINE void operator()(size_t row, size_t k, size_t group, ComplexVec<T, L> x) const {
        // Mostly the row behind it is next.
        if (prefetches && group == 0) prefetchValues<C, true>(middle, row + fft.n2 + k * C);
        middle.template store<L>(row + k * C + group * L, x, bypassesCaches);
    }
};

// Between the trips the data are where the results will be.
template <class T, class From, class To>
void transformThroughResults(const LargeFft<T>& fft, From from, To to, T factor, const LargeFftCall<T>& call) {
    constexpr size_t C = LargeFft<T>::C;
    constexpr size_t kLine = kLineBytes / sizeof(T);
    const size_t padded = kBlockColumns * ((size_t{2} << fft.plan.firstOrder) + kColumnPadding<T>);
    const size_t padding = call.workValues >= padded ? kColumnPadding<T> : 0;
    const size_t bytes = 2 * (2 * sizeof(T) << call.order);
    const bool isBeyond = bytes >= kBypassBytes;

    alignas(kLineBytes) T firstLine[kLine];
    T* waiting = nullptr;
#if HWY_TARGET <= HWY_AVX3
    // Of 2^22 points the block leaves no room.
    alignas(kLineBytes) T fewWaiting[kLine / 4 << (22 - 22 / 2)];
    if (canRealign(to)) {
        const size_t lanes = LineResults<T>::waitingLanes(AnyData<T>(to).pairs().p) * fft.n2;
        if (call.workValues >= 2 * C * fft.n2 + lanes) {
            waiting = call.work + 2 * C * fft.n2;
        } else if (lanes <= std::size(fewWaiting)) {
            waiting = fewWaiting;
        }
    }
#endif
    const MiddleData<T> middle(AnyData<T>(to), waiting != nullptr ? firstLine : nullptr);
    const bool bypassesCaches = isBeyond && middle.isAligned();
    const MiddleStore<T> store = {fft, middle, bypassesCaches, isBeyond && !bypassesCaches};
    const bool prefetches = bytes >= kPrefetchBytes;
    if (prefetches && canRealign(from)) {
#if HWY_TARGET <= HWY_AVX3
        if constexpr (!kIsSpectrum<From>) {
            const LineColumns<T> columns(fft, AnyData<const T>(from), middle);
            transformColumns(fft, columns, prefetches, call.work, padding, store);
        }
#endif
    } else {
        transformColumns(fft, from, prefetches, call.work, padding, store);
    }
    if (bypassesCaches) hwy::FlushStream();
#if HWY_TARGET <= HWY_AVX3
    if (waiting != nullptr) {
        transformRest<C>(fft, middle, LineResults<T>(AnyData<T>(to), fft.n1, false, true), factor, call.work, waiting);
        return;
    }
#endif
    transformRest<C>(fft, middle, Results<T, To>{to, fft.n1, false}, factor, call.work, waiting);
}

template <class T, class From, class To>
void transformLarge(From from, To to, bool isInPlace, T factor, const LargeFftCall<T>& call) {
    const LargeFft<T> fft(call.tables, call.order);
    constexpr size_t C = LargeFft<T>::C;
    if constexpr (sizeof(T) == 8) {
        if (transformThroughTiles(fft, from, to, isInPlace, factor, call)) return;
        transformInPlace<C>(fft, AnyData<const T>(from), AnyData<T>(to), factor, call);
    } else {
        const size_t column = size_t{2} << fft.plan.secondOrder; // values of one in a block
        if (call.workValues < 4 * column) {
            transformInPlace<2>(fft, AnyData<const T>(from), AnyData<T>(to), factor, call);
        } else if (call.workValues < C * column) {
            transformInPlace<4>(fft, AnyData<const T>(from), AnyData<T>(to), factor, call);
        } else if (isInPlace) {
            transformInPlace<C>(fft, from, to, factor, call);
        } else {
            transformThroughResults(fft, from, to, factor, call);
        }
    }
}

} // namespace zvps::ZVPS_LEVEL
