// Extreme values and where they stand.
#pragma once

#include "stats/extremes.table.hpp"
#include "stats/reduction.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- Orders, and what is put in order ----

// Of equal values, and where x is a NaN, the best so far stays: the second operand of the processor's instruction.
struct Smaller {
    static constexpr bool kLight = true;

    template <class V>
    static HWY_INLINE V better(V x, V best) {
        return hn::Min(x, best);
    }
    template <class D, class V>
    HWY_INLINE V operator()(D, V x, V y) const {
        return better(x, y);
    }
};
struct Larger {
    static constexpr bool kLight = true;

    template <class V>
    static HWY_INLINE V better(V x, V best) {
        return hn::Max(x, best);
    }
    template <class D, class V>
    HWY_INLINE V operator()(D, V x, V y) const {
        return better(x, y);
    }
};

struct Elements {
    template <class D, class V>
    static HWY_INLINE V of(D, V x) {
        return x;
    }
};
struct SaturatedMagnitudes {
    template <class D, class V>
    static HWY_INLINE V of(D d, V x) {
        return hn::Abs(hn::Max(x, hn::Set(d, -std::numeric_limits<hn::TFromD<D>>::max())));
    }
};

// ---- The search ----

// What is searched at once for a better value, and then again for its place.
inline constexpr size_t kSearchedVectors = 32;
template <class T>
inline constexpr size_t kSearchedBlock = kSearchedVectors* kLanesOf<T>;

// The best value so far, and the beginning of the block that had it first.
template <class T, class Order>
struct Best {
    FullVec<T> value;
    size_t block;
    FullVec<T> v[kInFlight];

    HWY_INLINE explicit Best(FullVec<T> first) : value(first), block(0) {}

    HWY_INLINE void begin() {
        repeat<kInFlight>([&](size_t i) { v[i] = value; });
    }
    HWY_INLINE void add(size_t i, FullVec<T> x) { v[i] = Order::better(x, v[i]); }
    // Of a partial vector's n elements.
    HWY_INLINE void addSome(size_t i, FullVec<T> x, size_t n) {
        add(i, hn::IfThenElse(hn::FirstN(FullLanes<T>(), n), x, value));
    }
    HWY_INLINE void end(size_t first) {
        const FullLanes<T> d;
        for (size_t half = kInFlight / 2; half != 0; half /= 2) {
            for (size_t i = 0; i < half; ++i)
                v[i] = Order::better(v[i], v[i + half]);
        }
        if (HWY_LIKELY(hn::AllTrue(d, hn::Eq(v[0], value)))) return;
        value = hn::Set(d, folded());
        block = first;
    }
    HWY_INLINE T folded() const {
        return hn::GetLane(
            foldLanes<1>(FullLanes<T>(), v[0], [](auto a, auto b) HWY_ATTR { return Order::better(a, b); }));
    }
};

// The bests of n elements, by blocks of kBlock.
template <class Work, size_t kBlock, class T, class... Bests>
HWY_INLINE void search(const T* src, size_t n, Bests&... bests) {
    const FullLanes<T> d;
    constexpr size_t N = kLanesOf<T>;
    const auto load = [&](size_t i) HWY_ATTR { return inRegister(Work::of(d, hn::LoadU(d, src + i))); };
    for (size_t first = 0; first < n; first += kBlock) {
        const size_t end = n - first < kBlock ? n : first + kBlock;
        (bests.begin(), ...);
        size_t i = first;
        for (; end - i >= kInFlight * N; i += kInFlight * N) {
            repeat<kInFlight>([&](size_t v) {
                const auto x = load(i + v * N);
                (bests.add(v, x), ...);
            });
        }
        for (; end - i >= N; i += N) {
            const auto x = load(i);
            (bests.add(0, x), ...);
        }
        if (i != end) {
            if (end >= N) {
                // Elements before i a second time change nothing.
                const auto x = load(end - N);
                (bests.add(1, x), ...);
            } else {
                const auto x = Work::of(d, loadFirst(d, src, end));
                (bests.addSome(1, x, end), ...);
            }
        }
        (bests.end(first), ...);
    }
}

// The first place from i on that has the value, which one has.
template <class Work, class T>
HWY_INLINE size_t find(const T* src, size_t i, size_t n, FullVec<T> value) {
    const FullLanes<T> d;
    constexpr size_t N = kLanesOf<T>;
    constexpr size_t kStep = 4;
    const auto isFound = [&](size_t k) HWY_ATTR { return hn::Eq(Work::of(d, hn::LoadU(d, src + k)), value); };
    for (; n - i >= kStep * N; i += kStep * N) {
        const auto both0 = hn::Or(isFound(i), isFound(i + N));
        const auto both1 = hn::Or(isFound(i + 2 * N), isFound(i + 3 * N));
        if (!hn::AllFalse(d, hn::Or(both0, both1))) break;
    }
    for (; n - i >= N; i += N) {
        const intptr_t lane = hn::FindFirstTrue(d, isFound(i));
        if (lane >= 0) return i + static_cast<size_t>(lane);
    }
    const auto rest = hn::Eq(Work::of(d, loadFirst(d, src + i, n - i)), value);
    return i + static_cast<size_t>(hn::FindFirstTrue(d, rest));
}

template <class T>
HWY_INLINE bool isNumber(T x) {
    if constexpr (std::is_floating_point_v<T>) return x == x;
    return true;
}

// The first element's value in all lanes.
template <class Work, class T>
HWY_INLINE FullVec<T> firstOf(const T* src) {
    const FullLanes<T> d;
    return Work::of(d, hn::Set(d, *src));
}

// The value of a whole search. Only the first of several zeros tells the sign.
template <class Work, class T, class Order>
HWY_INLINE T valueOf(const Best<T, Order>& best, const T* src, size_t n) {
    const T value = hn::GetLane(best.value);
    if constexpr (std::is_floating_point_v<T>) {
        if (value == 0) return src[find<Work>(src, 0, n, best.value)];
    }
    return value;
}

// ---- Kernels ----

inline constexpr size_t kWhole = ~size_t{0};

template <class Order, class Work, class T>
T extreme(const T* src, size_t n) {
    if (!isNumber(*src)) return *src;
    Best<T, Order> best(firstOf<Work>(src));
    search<Work, kWhole>(src, n, best);
    return valueOf<Work>(best, src, n);
}

template <class Order, class Work, class T>
size_t indexOfExtreme(const T* src, size_t n) {
    if (!isNumber(*src)) return 0;
    Best<T, Order> best(firstOf<Work>(src));
    search<Work, kSearchedBlock<T>>(src, n, best);
    return find<Work>(src, best.block, n, best.value);
}

template <class T>
Both<T> bothExtremes(const T* src, size_t n) {
    if (!isNumber(*src)) return {*src, *src};
    Best<T, Smaller> min(firstOf<Elements>(src));
    Best<T, Larger> max(firstOf<Elements>(src));
    search<Elements, kWhole>(src, n, min, max);
    return {valueOf<Elements>(min, src, n), valueOf<Elements>(max, src, n)};
}

template <class T>
Both<size_t> indicesOfBothExtremes(const T* src, size_t n) {
    if (!isNumber(*src)) return {0, 0};
    Best<T, Smaller> min(firstOf<Elements>(src));
    Best<T, Larger> max(firstOf<Elements>(src));
    search<Elements, kSearchedBlock<T>>(src, n, min, max);
    return {find<Elements>(src, min.block, n, min.value), find<Elements>(src, max.block, n, max.value)};
}

template <class Order, class T>
void elementwiseExtreme(const T* src, T* srcDst, size_t n) {
    Order op;
    map(op, srcDst, n, Vector<T>{src}, Vector<T>{srcDst});
}

} // namespace zvps::ZVPS_LEVEL
