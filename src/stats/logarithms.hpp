// Products of which the logarithm is to be taken: mantissas multiplied, exponents added.
#pragma once

#include "stats/logarithms.table.hpp"
#include "stats/reduction.hpp"

namespace zvps::ZVPS_LEVEL {

using Doubles = FullVec<double>;
using DoubleBits = FullVec<int64_t>;

inline constexpr int kMantissaBits = 52;
inline constexpr int64_t kExponentOne = int64_t{1} << kMantissaBits; // the lowest bit of a double's exponent field
inline constexpr int64_t kExponentBias = 1023;

// The values of elements as doubles; behind the last, ones.
template <class T>
struct Factors {
    Values<T, double> values;

    template <size_t N>
    HWY_INLINE Vec<double, N> load(size_t i) const {
        return values.template load<N>(i);
    }
    template <size_t N>
    HWY_INLINE Vec<double, N> loadSome(size_t i, size_t n) const {
        const Lanes<double, N> d;
        return hn::IfThenElse(hn::FirstN(d, n), values.template loadSome<N>(i, n), hn::Set(d, 1.0));
    }
};

// Lane by lane the product of the values added, as mantissas and biased exponents.
struct SplitProduct {
    Partials<double> mantissas{1.0};
    Partials<int64_t> exponents;
    DoubleBits refused = hn::Zero(FullLanes<int64_t>()); // negative after values that are none
    int64_t added = 0;                                   // so many vectors

    HWY_INLINE void add(size_t i, Doubles x) {
        const FullLanes<int64_t> d;
        const auto bits = hn::BitCast(d, x);
        const auto one = hn::Set(d, kExponentOne);
        // An exponent field of zeros or ones overflows, down or up, into the sign.
        refused = hn::Or(refused, hn::Or(hn::Add(bits, one), hn::Sub(bits, one)));
        mantissas.v[i] = hn::Mul(mantissas.v[i], mantissaOf(bits));
        exponents.v[i] = hn::Add(exponents.v[i], exponentOf(bits));
        ++added;
    }
    // Of a block, whose mantissas have grown to 2^16 at most; this product's stay below 2.
    HWY_INLINE void add(const SplitProduct& block) {
        repeat<kInFlight>([&](size_t i) {
            const auto bits = hn::BitCast(FullLanes<int64_t>(), hn::Mul(mantissas.v[i], block.mantissas.v[i]));
            mantissas.v[i] = mantissaOf(bits);
            exponents.v[i] = hn::Add(exponents.v[i], hn::Add(block.exponents.v[i], exponentOf(bits)));
        });
        added += block.added + static_cast<int64_t>(kInFlight);
    }
    // Of a factor that comes in by a product with others, which may hide it.
    HWY_INLINE void refuseNegative(Doubles x) { refused = hn::Or(refused, hn::BitCast(FullLanes<int64_t>(), x)); }
    HWY_INLINE bool isRefused() const {
        const FullLanes<int64_t> d;
        return !hn::AllFalse(d, hn::Lt(refused, hn::Zero(d)));
    }

    static HWY_INLINE Doubles mantissaOf(DoubleBits bits) {
        const FullLanes<int64_t> d;
        return hn::BitCast(FullLanes<double>(), hn::Or(hn::And(bits, hn::Set(d, kExponentOne - 1)),
                                                       hn::Set(d, kExponentBias * kExponentOne)));
    }
    static HWY_INLINE DoubleBits exponentOf(DoubleBits bits) {
        const FullLanes<uint64_t> d;
        return hn::BitCast(FullLanes<int64_t>(), hn::ShiftRight<kMantissaBits>(hn::BitCast(d, bits)));
    }
};

template <size_t kFactors, class T>
HWY_INLINE void multiplyAll(SplitProduct& product, size_t n, const Factors<T>& factors) {
    constexpr size_t N = kLanesOf<double>;
    constexpr size_t kRow = kInFlight * N;
    size_t i = 0;
    for (; n - i >= kFactors * kRow; i += kFactors * kRow) {
        repeat<kInFlight>([&](size_t v) {
            auto x = factors.template load<N>(i + v * N);
            if constexpr (kFactors > 1) {
                product.refuseNegative(x);
                repeat<kFactors - 1>([&](size_t k) {
                    const auto y = factors.template load<N>(i + v * N + (k + 1) * kRow);
                    product.refuseNegative(y);
                    x = hn::Mul(x, y);
                });
            }
            product.add(v, x);
        });
    }
    for (; n - i >= kRow; i += kRow) {
        repeat<kInFlight>([&](size_t v) { product.add(v, factors.template load<N>(i + v * N)); });
    }
    addRest<N>(product, i, n, factors);
}

template <size_t kFactors, class T>
size_t logProduct(const T* src, size_t n, LogProduct* result) {
    SplitProduct product;
    size_t i = 0;
    while (i < n) {
        const size_t count = n - i < kLogBlock ? n - i : kLogBlock;
        SplitProduct block;
        multiplyAll<kFactors>(block, count, Factors<T>{{src + i}});
        if (HWY_UNLIKELY(block.isRefused())) break;
        product.add(block);
        i += count;
    }
    result->mantissa = hn::GetLane(product.mantissas.product());
    result->exponent =
        hn::GetLane(product.exponents.sum()) - product.added * kExponentBias * static_cast<int64_t>(kLanesOf<double>);
    return i;
}

} // namespace zvps::ZVPS_LEVEL
