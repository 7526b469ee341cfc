// Mirrored spectra, and products with conjugate ones.
#pragma once

#include "transforms/spectra.table.hpp"
#include "vector/products.hpp"

namespace zvps::ZVPS_LEVEL {

// Complex elements as one lane each, where there are such lanes, in reverse order.
template <class D, class V>
HWY_INLINE V reversedPairs(D d, V v) {
    using T = Element<D>;
    if constexpr (sizeof(T) == 8) {
        return hn::ReverseBlocks(d, v);
    } else {
        using Both = std::conditional_t<sizeof(T) == 2, uint32_t, uint64_t>;
        const hn::Repartition<Both, D> pairs;
        return hn::BitCast(d, hn::Reverse(pairs, hn::BitCast(pairs, v)));
    }
}

template <class D, class V>
HWY_INLINE V conjugate(D d, V v) {
    using T = Element<D>;
    if constexpr (std::is_floating_point_v<T>) {
        return hn::OddEven(hn::Neg(v), v);
    } else {
        return hn::OddEven(hn::SaturatedSub(hn::Zero(d), v), v);
    }
}

// In vectors of N lanes, from the end to the start, because the pairs may lie one part before dst; less than a vector
// in narrower ones.
template <size_t N, class T>
HWY_INLINE void mirrorVectors(const T* pairs, T* dst, T* mirror, size_t n) {
    const Lanes<T, N> d;
    if (n < N) {
        if constexpr (N > 2) mirrorVectors<N / 2>(pairs, dst, mirror, n);
        return;
    }
    // What is left at the start: read before the vector behind it overwrites its last lane.
    const auto first = hn::LoadU(d, pairs);
    for (size_t i = n - N; i > 0; i -= i < N ? i : N) {
        const auto v = hn::LoadU(d, pairs + i);
        hn::StoreU(v, d, dst + i);
        hn::StoreU(reversedPairs(d, conjugate(d, v)), d, mirror - i - N);
    }
    hn::StoreU(first, d, dst);
    hn::StoreU(reversedPairs(d, conjugate(d, first)), d, mirror - N);
}

// x * conj(y), each operation rounded by itself.
struct MulConj {
    static constexpr size_t kPeriod = 2;

    template <class D, class V>
    HWY_INLINE V operator()(D d, V x, V y) const {
        return subtractAdd(hn::Mul(x, hn::DupEven(y)), hn::Mul(hn::Reverse2(d, x), hn::Neg(hn::DupOdd(y))));
    }
};

} // namespace zvps::ZVPS_LEVEL
