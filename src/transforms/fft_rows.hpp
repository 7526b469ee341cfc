// Complex transforms along rows, side by side in the lanes of vectors: a row holds one value of each of kWidth / 2
// transforms, in groups of as many as a vector has lanes: their real parts, then the imaginary ones.
#pragma once

#include "transforms/fft_butterflies.hpp"
#include "transforms/fft_rows_plan.hpp"

namespace zvps::ZVPS_LEVEL {

// Lanes as of ComplexVec, whatever their number.
template <class V>
struct Parts {
    V re;
    V im;
};

// (re + i im) (c - i s)
template <class V>
HWY_INLINE Parts<V> rotated(V re, V im, V c, V s) {
    return {hn::MulAdd(im, s, hn::Mul(re, c)), hn::NegMulAdd(re, s, hn::Mul(im, c))};
}
// (re + i im) (c + i s)
template <class V>
HWY_INLINE Parts<V> rotatedBack(V re, V im, V c, V s) {
    return {hn::NegMulAdd(im, s, hn::Mul(re, c)), hn::MulAdd(re, s, hn::Mul(im, c))};
}
// (re + i im) (1 + less - i s), where both are small: rounded at full size but once.
template <class V>
HWY_INLINE Parts<V> rotatedABit(V re, V im, V less, V s) {
    return {hn::Add(re, hn::MulAdd(im, s, hn::Mul(re, less))), hn::Add(im, hn::NegMulAdd(re, s, hn::Mul(im, less)))};
}

// (re + i im) (c - i s) (1 + less - i sine). In double precision the larger part of the product is rounded once less.
template <class V>
HWY_INLINE Parts<V> rotatedTwice(V re, V im, V c, V s, V less, V sine) {
    if constexpr (sizeof(hn::TFromV<V>) == 8) {
        const Parts<V> change = {hn::NegMulAdd(s, sine, hn::Mul(c, less)), hn::MulAdd(c, sine, hn::Mul(s, less))};
        const auto rest = rotated(re, im, change.re, change.im);
        return {hn::MulAdd(re, c, hn::MulAdd(im, s, rest.re)), hn::MulAdd(im, c, hn::NegMulAdd(re, s, rest.im))};
    } else {
        const auto once = rotated(re, im, c, s);
        return rotatedABit(once.re, once.im, less, sine);
    }
}

// ---- Shuffles ----

// Lane j of the result is lane Pick::at(j, N) of the lanes of a, followed by those of b.
template <class Pick, class T, size_t N, size_t... j>
HWY_INLINE Vec<T, N> pickLanes(Lanes<T, N>, Vec<T, N> a, Vec<T, N> b, std::index_sequence<j...>) {
    constexpr size_t kRaw = sizeof(a) / sizeof(T);
    return Vec<T, N>{reinterpret_cast<decltype(a.raw)>(
        __builtin_shufflevector(a.raw, b.raw,
                                static_cast<int>(j >= N               ? 0
                                                 : Pick::at(j, N) < N ? Pick::at(j, N)
                                                                      : Pick::at(j, N) - N + kRaw)...))};
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
// Transposes L rows of L lanes in place.
template <class T, size_t L>
HWY_INLINE void transposeRows(Lanes<T, L> d, Vec<T, L>* rows) {
    if constexpr (L * sizeof(T) < 16) {
        static_assert(L == 2);
        const auto first = rows[0];
        rows[0] = hn::InterleaveLower(d, first, rows[1]);
        rows[1] = hn::InterleaveUpper(d, first, rows[1]);
    } else {
        Vec<T, L> columns[L];
        transpose<T, L>([&](auto row) ZVPS_INLINE_LAMBDA { return rows[row]; },
                        [&](auto lane, Vec<T, L> v) ZVPS_INLINE_LAMBDA { columns[lane] = v; });
        unroll<L>([&](auto i) ZVPS_INLINE_LAMBDA { rows[i] = columns[i]; });
    }
}

// ---- Rows ----

template <class T, size_t kWidth>
struct RowLanes {
    static constexpr size_t kVector = kVectorBytes / sizeof(T);
    static constexpr size_t kLanes = kWidth / 2 < kVector ? kWidth / 2 : kVector;
    static constexpr size_t kGroups = kWidth / 2 / kLanes;
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

// A complex pass in place, but the last: transforms over the rows n, n + step, n + 2 step, ... for every n < step,
// whose values load(isUpper, row, n, group) gives, where `row` is row n in memory.
template <size_t kWidth, size_t R, class T, class Load>
HWY_NOINLINE void rowsPass(T* rows, size_t step, const T* twiddles, Load load) {
    using Row = RowLanes<T, kWidth>;
    constexpr size_t L = Row::kLanes;
    using C = ComplexVec<T, L>;
    const typename Row::D d;
    for (size_t n = 0; n < step; ++n, twiddles += 2 * (R - 1)) {
        for (size_t group = 0; group < Row::kGroups; ++group) {
            Butterfly<T, L, R>::run(
                [&](auto i) ZVPS_INLINE_LAMBDA {
                    const size_t row = n + i * step;
                    return load(std::bool_constant<2 * i >= R>(), rows + row * kWidth, row, group);
                },
                [&](auto k, C x) ZVPS_INLINE_LAMBDA {
                    T* const row = rows + (n + k * step) * kWidth + group * 2 * L;
                    if constexpr (k == 0) {
                        hn::StoreU(x.re, d, row);
                        hn::StoreU(x.im, d, row + L);
                    } else {
                        const T* const w = twiddles + 2 * (k - 1);
                        const auto turned = rotated(x.re, x.im, hn::Set(d, w[0]), hn::Set(d, w[1]));
                        hn::StoreU(turned.re, d, row);
                        hn::StoreU(turned.im, d, row + L);
                    }
                });
        }
    }
}

// The last pass: `count` times R neighbouring rows to bins k2, k2 + step, ..., where k2 grows by binStep from time to
// time; bin(isUpper, row, k2, group, x) takes them, where `row` is where they would be in place.
template <size_t kWidth, size_t R, class T, class Bin>
HWY_NOINLINE void lastRowsPass(T* rows, size_t count, size_t k2, size_t binStep, size_t step, Bin bin) {
    using Row = RowLanes<T, kWidth>;
    constexpr size_t L = Row::kLanes;
    using C = ComplexVec<T, L>;
    const typename Row::D d;
    for (size_t m = 0; m < count; ++m, rows += R * kWidth, k2 += binStep) {
        for (size_t group = 0; group < Row::kGroups; ++group) {
            Butterfly<T, L, R>::run(
                [&](auto i) ZVPS_INLINE_LAMBDA {
                    const T* const row = rows + i * kWidth + group * 2 * L;
                    return C{hn::LoadU(d, row), hn::LoadU(d, row + L)};
                },
                [&](auto k, C x) ZVPS_INLINE_LAMBDA {
                    bin(std::bool_constant<2 * k >= R>(), rows + k * kWidth, k2 + k * step, group, x);
                });
        }
    }
}

// Calls step(radix) with a radix of long transforms, from `least` on, as a constant.
template <size_t least, class Step>
HWY_INLINE void byRadix(size_t radix, Step step) {
    if constexpr (least < 16) {
        if (radix != least) return byRadix<2 * least>(radix, step);
    }
    step(Index<least>());
}

// The values of a row in memory.
template <class T, size_t kWidth>
struct RowLoader {
    template <class IsUpper>
    HWY_INLINE auto operator()(IsUpper, const T* row, size_t, size_t group) const {
        using Row = RowLanes<T, kWidth>;
        const typename Row::D d;
        const T* const values = row + group * 2 * Row::kLanes;
        return ComplexVec<T, Row::kLanes>{hn::LoadU(d, values), hn::LoadU(d, values + Row::kLanes)};
    }
};

// The passes from number `pass` on over parts of the rows; the bins of part m start at k + m binStep and are `step`
// apart.
template <size_t kWidth, int pass, class T, class Bin>
HWY_NOINLINE void transformParts(T* rows, const RowsPlan& plan, int order, size_t parts, size_t k, size_t binStep,
                                 size_t step, const T* const* twiddles, const Bin& bin) {
    const int radixOrder = plan.orders[pass];
    const size_t radix = size_t{1} << radixOrder;
    if (radixOrder == order) {
        byRadix<8>(radix, [&](auto constant) ZVPS_INLINE_LAMBDA {
            lastRowsPass<kWidth, constant>(rows, parts, k, binStep, step, bin);
        });
    } else if constexpr (pass + 1 < kMostRowsPasses) {
        const int rest = order - radixOrder;
        for (size_t m = 0; m < parts; ++m) {
            T* const part = rows + (m * kWidth << order);
            byRadix<pass <= 1 ? 4 : 8>(radix, [&](auto constant) ZVPS_INLINE_LAMBDA {
                rowsPass<kWidth, constant>(part, size_t{1} << rest, twiddles[pass], RowLoader<T, kWidth>());
            });
            transformParts<kWidth, pass + 1>(part, plan, rest, radix, k + m * binStep, step, step * radix, twiddles,
                                             bin);
        }
    }
}

// All passes. The first one reads through load(isUpper, row, n, group) and writes to rows, the last one gives the bins
// to bin(isUpper, row, bin, group, value).
template <size_t kWidth, class T, class Load, class Bin>
HWY_INLINE void transformRows(T* rows, const RowsPlan& plan, const T* const* twiddles, const Load& load,
                              const Bin& bin) {
    const int radixOrder = plan.orders[0];
    const size_t radix = size_t{1} << radixOrder;
    const size_t inner = size_t{1} << (plan.order - radixOrder);
    byRadix<4>(radix,
               [&](auto constant) ZVPS_INLINE_LAMBDA { rowsPass<kWidth, constant>(rows, inner, twiddles[0], load); });
    transformParts<kWidth, 1>(rows, plan, plan.order - radixOrder, radix, 0, 1, radix, twiddles, bin);
}

// Where bin k was left by passes in place: its digits in the reverse order.
inline size_t reversedRow(const RowsPlan& plan, size_t k) {
    size_t row = 0;
    for (int pass = 0; pass < kMostRowsPasses; ++pass) {
        const int radixOrder = plan.orders[pass];
        row = row << radixOrder | (k & ((size_t{1} << radixOrder) - 1));
        k >>= radixOrder;
    }
    return row;
}

} // namespace zvps::ZVPS_LEVEL
