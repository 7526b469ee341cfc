// Long complex transforms in two trips over the data, by blocks of neighbouring columns that stay in the caches.
#pragma once

#include "transforms/fft_large_call.hpp"
#include "transforms/fft_large_plan.hpp"
#include "transforms/fft_rows.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- The data ----

// Interleaved; an inverse transform is the forward one of exchanged parts.
template <class T, bool kInverse>
struct PairData {
    T* p;

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
    HWY_INLINE void store(size_t i, ComplexVec<T, L> x) const {
        const Lanes<T, L> d;
        const auto first = kInverse ? x.im : x.re;
        const auto second = kInverse ? x.re : x.im;
        hn::StoreU(pickLanes<Interleaved<0>>(d, first, second), d, p + 2 * i);
        hn::StoreU(pickLanes<Interleaved<1>>(d, first, second), d, p + 2 * i + L);
    }
    // The columns taken together.
    HWY_INLINE void prefetch(size_t i) const {
        hwy::Prefetch(p + 2 * i);
        hwy::Prefetch(p + 2 * i + 64 / sizeof(T));
    }
};

template <class T>
struct SplitData {
    T* re;
    T* im;

    template <size_t L>
    HWY_INLINE auto load(size_t i) const {
        using Value = std::remove_const_t<T>;
        const Lanes<Value, L> d;
        return ComplexVec<Value, L>{hn::LoadU(d, re + i), hn::LoadU(d, im + i)};
    }
    template <size_t L>
    HWY_INLINE void store(size_t i, ComplexVec<T, L> x) const {
        const Lanes<T, L> d;
        hn::StoreU(x.re, d, re + i);
        hn::StoreU(x.im, d, im + i);
    }
    HWY_INLINE void prefetch(size_t i) const {
        hwy::Prefetch(re + i);
        hwy::Prefetch(im + i);
    }
};

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

// The first transforms and the factors, from the columns to rows. A block is transposed behind the first pass, so that
// each of its columns then is a transform in contiguous memory, with padding behind it.
template <class T, class From, class To>
HWY_NOINLINE void transformToRows(const LargeFft<T>& fft, From from, To to, T* block, size_t padding) {
    using Large = LargeFft<T>;
    constexpr size_t C = Large::C;
    constexpr size_t L = Large::L;
    using V = Vec<T, L>;
    using X = ComplexVec<T, L>;
    const Lanes<T, L> d;
    const size_t rest = fft.n1 / C;
    const size_t columnStep = rest * 2 * C + padding;
    for (size_t n = 0; n < fft.n2; n += C) {
        for (size_t b = 0; b < rest; ++b) {
            const T* const twiddles = fft.first[0] + b * 2 * (C - 1);
            for (size_t group = 0; group < C; group += L) {
                V re[C], im[C];
                Butterfly<T, L, C>::run(
                    [&](auto a)
                        ZVPS_INLINE_LAMBDA { return from.template load<L>((a * rest + b) * fft.n2 + n + group); },
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
        for (size_t i = 0; i < C; ++i) {
            const T* const fine = fft.fine + (n + i) * 2 * C;
            const T* const coarse = fft.coarse + (n + i) * rest * 2;
            const size_t target = fft.place(n + i);
            transformParts<2 * C, 0>(
                block + i * columnStep, fft.plan.rest, fft.plan.rest.order, 1, 0, 0, 1, fft.first + 1,
                [fine, coarse, target, to](auto, auto, size_t k, size_t group, X x) ZVPS_INLINE_LAMBDA {
                    const Lanes<T, L> lanes;
                    const auto once =
                        rotated(x.re, x.im, hn::Set(lanes, coarse[2 * k]), hn::Set(lanes, coarse[2 * k + 1]));
                    const auto twice = rotated(once.re, once.im, hn::LoadU(lanes, fine + group * L),
                                               hn::LoadU(lanes, fine + C + group * L));
                    to.template store<L>(target + k * C + group * L, X{twice.re, twice.im});
                });
        }
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
        transformRows<2 * kColumns>(
            block, fft.plan.first, fft.first,
            [from, step, n](auto, auto, size_t row, size_t group)
                ZVPS_INLINE_LAMBDA { return from.template load<L>(row * step + n + group * L); },
            [fine, coarse, step, n, to](auto, auto, size_t k, size_t group, X x) ZVPS_INLINE_LAMBDA {
                const Lanes<T, L> d;
                const T* const c = coarse + k / C * 2 * C + group * L;
                const T* const f = fine + k % C * 2 * C + group * L;
                const auto once = rotated(x.re, x.im, hn::LoadU(d, c), hn::LoadU(d, c + C));
                const auto twice = rotated(once.re, once.im, hn::LoadU(d, f), hn::LoadU(d, f + C));
                to.template store<L>(k * step + n + group * L, X{twice.re, twice.im});
            });
    }
}

// The second transforms, kColumns at once.
template <size_t kColumns, class T, class From, class To>
HWY_NOINLINE void transformRest(const LargeFft<T>& fft, From from, To to, T factor, T* block) {
    constexpr size_t L = RowLanes<T, 2 * kColumns>::kLanes;
    using X = ComplexVec<T, L>;
    for (size_t k1 = 0; k1 < fft.n1; k1 += kColumns) {
        transformRows<2 * kColumns>(
            block, fft.plan.second, fft.second,
            [from, &fft, k1](auto, auto, size_t row, size_t group) ZVPS_INLINE_LAMBDA {
                const size_t i = fft.place(row) + k1;
                if (group == 0) from.prefetch(i + kColumns);
                return from.template load<L>(i + group * L);
            },
            [step = fft.n1, k1, factor, to](auto, auto, size_t k, size_t group, X x) ZVPS_INLINE_LAMBDA {
                const auto scale = hn::Set(Lanes<T, L>(), factor);
                to.template store<L>(k * step + k1 + group * L, X{hn::Mul(x.re, scale), hn::Mul(x.im, scale)});
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

// ---- Transforms ----

template <size_t kColumns, class T, class From, class To>
void transformInPlace(const LargeFft<T>& fft, From from, To to, T factor, T* block) {
    transformInColumns<kColumns>(fft, from, to, block);
    transposeData(fft, to);
    transformRest<kColumns>(fft, to, to, factor, block);
}

template <class T, class From, class To>
void transformLarge(From from, To to, bool isInPlace, T factor, const LargeFftCall<T>& call) {
    const LargeFft<T> fft(call.tables, call.order);
    constexpr size_t C = LargeFft<T>::C;
    const size_t column = size_t{2} << fft.plan.secondOrder; // values of one in a block
    const size_t all = size_t{2} << call.order;
    T* const work = call.work;
    // A line of cache behind each column keeps them out of each other's way.
    const auto padding = [&](size_t before) { return call.workValues >= before + C * column + C * C ? C : 0; };
    if (call.workValues < 4 * column) {
        transformInPlace<2>(fft, from, to, factor, work);
    } else if (call.workValues < C * column) {
        transformInPlace<4>(fft, from, to, factor, work);
    } else if (!isInPlace) {
        transformToRows(fft, from, to, work, padding(0));
        transformRest<C>(fft, to, to, factor, work);
    } else if (call.workValues < all + C * column) {
        transformInPlace<C>(fft, from, to, factor, work);
    } else {
        const SplitData<T> middle = {work, work + all / 2};
        transformToRows(fft, from, middle, work + all, padding(all));
        transformRest<C>(fft, middle, to, factor, work + all);
    }
}

} // namespace zvps::ZVPS_LEVEL
