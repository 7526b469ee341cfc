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

// The best of a search that starts from a value.
template <class T, class Order>
struct Best {
    FullVec<T> start;
    Partials<T> bests;

    HWY_INLINE explicit Best(FullVec<T> value) { begin(value); }

    HWY_INLINE void begin(FullVec<T> value) {
        start = value;
        repeat<kInFlight>([&](size_t i) { bests.v[i] = value; });
    }
    HWY_INLINE void add(size_t i, FullVec<T> x) { bests.v[i] = Order::better(x, bests.v[i]); }
    // Of a partial vector's n elements.
    HWY_INLINE void addSome(size_t i, FullVec<T> x, size_t n) {
        add(i, hn::IfThenElse(hn::FirstN(FullLanes<T>(), n), x, start));
    }
    HWY_INLINE FullVec<T> joined() const {
        return bests.joined([](auto a, auto b) HWY_ATTR { return Order::better(a, b); });
    }
    static HWY_INLINE T folded(FullVec<T> v) {
        return hn::GetLane(
            foldLanes<1>(FullLanes<T>(), v, [](auto a, auto b) HWY_ATTR { return Order::better(a, b); }));
    }
};

// The bests of the elements from `first` to `end`. Those before may come in too, which changes nothing: they were
// searched before.
template <class Work, class T, class... Bests>
HWY_INLINE void search(const T* src, size_t first, size_t end, Bests&... bests) {
    const FullLanes<T> d;
    constexpr size_t N = kLanesOf<T>;
    const auto load = [&](size_t i) HWY_ATTR {
        const auto x = Work::of(d, hn::LoadU(d, src + i));
        return sizeof...(Bests) > 1 ? inRegister(x) : x;
    };
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
    if (i == end) return;
    if (HWY_LIKELY(end >= N)) {
        const auto x = load(end - N);
        (bests.add(1, x), ...);
    } else {
        const auto x = Work::of(d, loadFirst(d, src, end));
        (bests.addSome(1, x, end), ...);
    }
}

// The best value so far, and the beginning of the block that had it first.
template <class T, class Order>
struct FirstBest : Best<T, Order> {
    using Base = Best<T, Order>;
    FullVec<T> value;
    size_t block = 0;

    HWY_INLINE explicit FirstBest(FullVec<T> first) : Base(first), value(first) {}

    HWY_INLINE void endBlock(size_t first) {
        const FullLanes<T> d;
        const auto found = Base::joined();
        if (HWY_UNLIKELY(!hn::AllTrue(d, hn::Eq(found, value)))) {
            value = hn::Set(d, Base::folded(found));
            block = first;
        }
        Base::begin(value);
    }
};

template <class Work, class T, class... Bests>
HWY_INLINE void searchBlocks(const T* src, size_t n, Bests&... bests) {
    constexpr size_t kBlock = kSearchedVectors * kLanesOf<T>;
    for (size_t first = 0; first < n; first += kBlock) {
        search<Work>(src, first, n - first < kBlock ? n : first + kBlock, bests...);
        (bests.endBlock(first), ...);
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

template <class T>
HWY_NOINLINE T firstEqual(const T* src, size_t n, T value) {
    return src[find<Elements>(src, 0, n, hn::Set(FullLanes<T>(), value))];
}

// The value of a whole search. Only the first of several zeros tells the sign.
template <class T, class Order>
HWY_INLINE T valueOf(const Best<T, Order>& best, const T* src, size_t n) {
    const T value = best.folded(best.joined());
    if constexpr (std::is_floating_point_v<T>) {
        if (HWY_UNLIKELY(value == 0)) return firstEqual(src, n, value);
    }
    return value;
}

// ---- Kernels ----

template <class Order, class Work, class T>
T extreme(const T* src, size_t n) {
    if (!isNumber(*src)) return *src;
    Best<T, Order> best(firstOf<Work>(src));
    search<Work>(src, 0, n, best);
    return valueOf(best, src, n);
}

template <class Order, class Work, class T>
size_t indexOfExtreme(const T* src, size_t n) {
    if (!isNumber(*src)) return 0;
    FirstBest<T, Order> best(firstOf<Work>(src));
    searchBlocks<Work>(src, n, best);
    return find<Work>(src, best.block, n, best.value);
}

template <class T>
Both<T> bothExtremes(const T* src, size_t n) {
    if (!isNumber(*src)) return {*src, *src};
    Best<T, Smaller> min(firstOf<Elements>(src));
    Best<T, Larger> max(firstOf<Elements>(src));
    search<Elements>(src, 0, n, min, max);
    return {valueOf(min, src, n), valueOf(max, src, n)};
}

template <class T>
Both<size_t> indicesOfBothExtremes(const T* src, size_t n) {
    if (!isNumber(*src)) return {0, 0};
    FirstBest<T, Smaller> min(firstOf<Elements>(src));
    FirstBest<T, Larger> max(firstOf<Elements>(src));
    searchBlocks<Elements>(src, n, min, max);
    return {find<Elements>(src, min.block, n, min.value), find<Elements>(src, max.block, n, max.value)};
}

// ---- Elementwise ----

// Vectors up to this length are not worth aligning stores for.
inline constexpr size_t kShortBytes = 4096;

template <class Order, class T>
void elementwiseExtreme(const T* src, T* srcDst, size_t n) {
    // Stores are what this loop waits for: no wider than the processor takes at once.
    constexpr size_t N = (kVectorBytes < 32 ? kVectorBytes : 32) / sizeof(T);
    const Lanes<T, N> d;
    const bool isAligned = reinterpret_cast<uintptr_t>(srcDst) % (N * sizeof(T)) == 0;
    if (n < N || (n * sizeof(T) > kShortBytes && !isAligned)) {
        Order op;
        map(op, srcDst, n, Vector<T>{src}, Vector<T>{srcDst});
        return;
    }
    const auto step = [&](size_t i) HWY_ATTR {
        hn::StoreU(Order::better(hn::LoadU(d, src + i), hn::LoadU(d, srcDst + i)), d, srcDst + i);
    };
    size_t i = 0;
    for (; n - i >= 4 * N; i += 4 * N) {
        repeat<4>([&](size_t v) { step(i + v * N); });
    }
    for (; n - i >= N; i += N)
        step(i);
    // Elements a second time come out the same.
    if (i != n) step(n - N);
}

} // namespace zvps::ZVPS_LEVEL
