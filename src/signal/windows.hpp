// Windows: how their values are generated, and how they are applied.
#pragma once

#include "core/exponential.hpp"
#include "signal/windows.table.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kDoubles = kVectorBytes / sizeof(double);
using DoubleLanes = Lanes<double, kDoubles>;
using Doubles = Vec<double, kDoubles>;

// Consecutive window values.
template <size_t N>
struct Block {
    static constexpr size_t kVectors = N / kDoubles;

    Doubles v[kVectors];
};

// ---- Generators ----

// A generator gives the window's values in blocks of kLanes from k = 0 on, and that in the middle of an odd length. It
// may be asked for values beyond the middle, which are not used.

// 0, 1, 2, ...
template <size_t N>
class Index {
  public:
    HWY_INLINE Block<N> next() {
        const DoubleLanes d;
        Block<N> block;
        repeat<Block<N>::kVectors>(
            [&](size_t i) { block.v[i] = hn::Add(first_, hn::Set(d, static_cast<double>(i * kDoubles))); });
        first_ = hn::Add(first_, hn::Set(d, static_cast<double>(N)));
        return block;
    }

  private:
    Doubles first_ = hn::Iota(DoubleLanes(), 0.0);
};

template <size_t N>
class Bartlett {
  public:
    static constexpr size_t kLanes = N;

    Bartlett(const BartlettWindow& window, size_t) : step_(window.step) {}

    HWY_INLINE Block<N> next() {
        const DoubleLanes d;
        const Block<N> k = index_.next();
        Block<N> block;
        repeat<Block<N>::kVectors>([&](size_t i) { block.v[i] = hn::Mul(k.v[i], hn::Set(d, step_)); });
        return block;
    }
    double middle() const { return 1; }

  private:
    Index<N> index_;
    double step_;
};

// h(k) = c cos(k theta) by h(k + 2) = 2 cos(2 theta) h(k) - h(k - 2), even and odd k side by side. Its rounding errors
// grow with k far beyond a unit in the last place; they belong to the result.
class Recurrence {
  public:
    using Pair = Vec<double, 2>;

    explicit Recurrence(const CosineWindow& window)
        : factor_(hn::Set(d_, window.factor)), now_(hn::LoadU(d_, window.start)),
          next_(hn::LoadU(d_, window.start + 2)) {}

    HWY_INLINE Pair next() {
        const auto result = now_;
        now_ = next_;
        next_ = hn::Sub(hn::Mul(factor_, now_), result);
        return result;
    }
    Pair following() const { return now_; }

  private:
    static constexpr Lanes<double, 2> d_{};

    Pair factor_;
    Pair now_;
    Pair next_;
};

template <size_t N>
HWY_INLINE Vec<double, N> joined(const Recurrence::Pair* pairs) {
    if constexpr (N == 2) {
        return *pairs;
    } else {
        return hn::Combine(Lanes<double, N>(), joined<N / 2>(pairs + N / 4), joined<N / 2>(pairs));
    }
}
template <size_t N>
HWY_INLINE Block<N> joinedBlock(const Recurrence::Pair* pairs) {
    Block<N> block;
    repeat<Block<N>::kVectors>([&](size_t i) { block.v[i] = joined<kDoubles>(pairs + i * kDoubles / 2); });
    return block;
}

// The value of a window for h(k).
class RaisedCosine {
  public:
    explicit RaisedCosine(const CosineWindow& window) : constant_(window.constant) {}

    HWY_INLINE Doubles operator()(Doubles h) const { return hn::Sub(hn::Set(DoubleLanes(), constant_), h); }
    double middle() const { return 1; }

  private:
    double constant_;
};

template <bool isScaled>
class Blackman {
  public:
    explicit Blackman(const CosineWindow& window)
        : constant_(window.constant), square_(window.square), scale_(window.scale) {}

    HWY_INLINE Doubles operator()(Doubles h) const {
        const DoubleLanes d;
        const auto value = hn::Sub(hn::Sub(hn::Set(d, constant_), h), hn::Mul(hn::Set(d, square_), hn::Mul(h, h)));
        return isScaled ? hn::Mul(value, hn::Set(d, scale_)) : value;
    }
    double middle() const { return isScaled ? scale_ : 1; }

  private:
    double constant_;
    double square_;
    double scale_;
};

// hasChains: from window.chainFrom on, h(k + m) = 2 cos(m theta) h(k) - h(k - m) with m = kCosineChains.
template <class Value, bool hasChains>
class Cosines {
  public:
    static constexpr size_t kLanes = kCosineChains;

    Cosines(const CosineWindow& window, size_t)
        : value_(window), recurrence_(window), chainFactor_(window.chainFactor), left_(window.chainFrom) {}

    HWY_INLINE Block<kLanes> next() {
        Block<kLanes> h;
        if (!hasChains || left_ != 0) {
            h = nextOfOneChain();
        } else {
            const auto factor = hn::Set(DoubleLanes(), chainFactor_);
            repeat<h.kVectors>([&](size_t i) { h.v[i] = hn::Sub(hn::Mul(factor, now_.v[i]), before_.v[i]); });
            before_ = now_;
            now_ = h;
        }
        repeat<h.kVectors>([&](size_t i) { h.v[i] = value_(h.v[i]); });
        return h;
    }
    double middle() const { return value_.middle(); }

  private:
    HWY_INLINE Block<kLanes> nextOfOneChain() {
        constexpr size_t kPairs = kLanes / 2;
        Recurrence::Pair pairs[kPairs + 1];
        repeat<kPairs>([&](size_t i) { pairs[i] = recurrence_.next(); });
        const Block<kLanes> h = joinedBlock<kLanes>(pairs);
        if (hasChains) {
            if (isFirst_) {
                // h(-m) to h(-1) are h(m) to h(1).
                pairs[kPairs] = recurrence_.following();
                Recurrence::Pair reflected[kPairs];
                repeat<kPairs>([&](size_t i) { reflected[i] = hn::OddEven(pairs[kPairs - 1 - i], pairs[kPairs - i]); });
                now_ = joinedBlock<kLanes>(reflected);
                isFirst_ = false;
            }
            before_ = now_;
            now_ = h;
            left_ -= kLanes;
        }
        return h;
    }

    Value value_;
    Recurrence recurrence_;
    double chainFactor_;
    size_t left_; // of the leading values, to come from one chain
    bool isFirst_ = true;
    Block<kLanes> before_;
    Block<kLanes> now_;
};

// Even and odd powers apart: half the latency of one chain.
template <size_t count>
HWY_INLINE Doubles polynomial(const double (&coefficients)[count], Doubles x) {
    const DoubleLanes d;
    const auto square = hn::Mul(x, x);
    auto last = hn::Set(d, coefficients[count - 1]);
    auto other = hn::Set(d, coefficients[count - 2]);
    repeat<count - 2>([&](size_t i) {
        const auto sum = hn::Add(hn::Mul(last, square), hn::Set(d, coefficients[count - 3 - i]));
        last = other;
        other = sum;
    });
    return hn::Add(hn::Mul(last, x), other);
}

// I0 by two approximations, below and from 4 on.
HWY_INLINE Doubles besselI0(Doubles x) {
    // Not quite those of the normaliser: the difference belongs to the result.
    static constexpr double kSmall[] = {
        0.9999999985, 4.000003096,  3.9999959541, 1.777809969,
        0.4443189384, 0.0713758187, 0.0075942968, 0.000674193709375,
    };
    static constexpr double kLarge[] = {
        0.3989422809,        0.0124667783,  0.0017623668,        0.00026,       0.0022585681074049, -0.0128314822,
        0.04958113163828737, -0.1209940805, 0.18954771930079328, -0.1867783276, 0.1113315511,       -0.0366694767,
        0.0051246015,
    };
    const DoubleLanes d;
    const auto isSmall = hn::Lt(x, hn::Set(d, 4.0));
    auto small = hn::Zero(d);
    if (!hn::AllFalse(d, isSmall)) {
        const auto quarter = hn::Mul(x, hn::Set(d, 0.25));
        small = polynomial(kSmall, hn::Mul(quarter, quarter));
        if (hn::AllTrue(d, isSmall)) return small;
    }
    const auto inverseRoot = hn::Div(hn::Set(d, 1.0), hn::Sqrt(x));
    const auto series = polynomial(kLarge, hn::Mul(hn::Set(d, 4.0), hn::Mul(inverseRoot, inverseRoot)));
    const auto large = hn::Mul(hn::Mul(exponential(d, x), inverseRoot), series);
    return hn::IfThenElse(isSmall, small, large);
}

template <size_t N>
class Kaiser {
  public:
    static constexpr size_t kLanes = N;

    Kaiser(const KaiserWindow& window, size_t n) : window_(window), last_(static_cast<double>(n - 1)) {}

    HWY_INLINE Block<N> next() {
        const Block<N> k = index_.next();
        Block<N> block;
        repeat<Block<N>::kVectors>([&](size_t i) { block.v[i] = value(k.v[i]); });
        return block;
    }
    double middle() const { return hn::GetLane(value(hn::Set(DoubleLanes(), last_ * 0.5))); }

  private:
    HWY_INLINE Doubles value(Doubles k) const {
        const DoubleLanes d;
        const auto root = hn::Sqrt(hn::Mul(k, hn::Sub(hn::Set(d, last_), k)));
        const auto x = hn::Abs(hn::Mul(hn::Set(d, window_.alpha), root));
        return hn::Mul(besselI0(x), hn::Set(d, window_.inverseNorm));
    }

    Index<N> index_;
    KaiserWindow window_;
    double last_;
};

// ---- Application ----

// The type that 16-bit data are windowed in, and floating-point data.
template <class T>
using Applied = std::conditional_t<std::is_same_v<T, double>, double, float>;

// Multiplies the vectors of elements of kParts parts of type T by window values.
template <class T, size_t kParts>
class Applier {
  public:
    using W = Applied<T>;
    static constexpr size_t kLanes = kVectorBytes / sizeof(W); // window values, and parts of elements, in a vector
    using D = Lanes<W, kLanes>;
    using V = Vec<W, kLanes>;

    Applier(const T* src, T* dst) : src_(src), dst_(dst) {}

    // The window values i * kLanes... of a block, rounded once.
    template <size_t N>
    static HWY_INLINE V values(const Block<N>& block, size_t i) {
        if constexpr (std::is_same_v<W, double>) {
            return block.v[i];
        } else {
            const Lanes<float, kDoubles> half;
            return hn::Combine(D(), hn::DemoteTo(half, block.v[2 * i + 1]), hn::DemoteTo(half, block.v[2 * i]));
        }
    }

    // Elements from `first` on times w, and those that end before `end` times w reversed.
    HWY_INLINE void whole(V w, size_t first, size_t end) const {
        const Lanes<T, kLanes> d;
        repeat<kParts>([&](size_t part) {
            const size_t front = first * kParts + part * kLanes;
            const size_t back = (end - kLanes) * kParts + part * kLanes;
            hn::StoreU(product(hn::LoadU(d, src_ + front), forward(w, part)), d, dst_ + front);
            hn::StoreU(product(hn::LoadU(d, src_ + back), backward(w, part)), d, dst_ + back);
        });
    }

    // count <= kLanes elements from `first` on times w.
    HWY_INLINE void some(V w, size_t first, size_t count) const {
        const Lanes<T, kLanes> d;
        for (size_t part = 0; part * kLanes < count * kParts; ++part) {
            const size_t begin = first * kParts + part * kLanes;
            const size_t left = count * kParts - part * kLanes;
            const size_t n = left < kLanes ? left : kLanes;
            storeFirst(d, product(loadFirst(d, src_ + begin, n), forward(w, part)), dst_ + begin, n);
        }
    }

  private:
    // Every value once for each part of its element, for the part-th vector of elements.
    static HWY_INLINE V forward(V w, size_t part) {
        if constexpr (kParts == 1) {
            return w;
        } else {
            return select(w, [part](size_t lane) { return (part * kLanes + lane) / kParts; });
        }
    }
    static HWY_INLINE V backward(V w, size_t part) {
        if constexpr (kParts == 1) {
            return hn::Reverse(D(), w);
        } else {
            return select(w, [part](size_t lane) { return kLanes - 1 - (part * kLanes + lane) / kParts; });
        }
    }
    template <class Lane>
    static HWY_INLINE V select(V w, Lane lane) {
        using Index = std::conditional_t<sizeof(W) == 8, int64_t, int32_t>;
        alignas(kVectorBytes) Index indices[kLanes];
        for (size_t i = 0; i < kLanes; ++i)
            indices[i] = static_cast<Index>(lane(i));
        return hn::TableLookupLanes(w, hn::SetTableIndices(D(), indices));
    }

    static HWY_INLINE Vec<T, kLanes> product(Vec<T, kLanes> x, V w) {
        if constexpr (std::is_same_v<T, W>) {
            return hn::Mul(x, w);
        } else {
            const Lanes<int32_t, kLanes> wide;
            const D d;
            const auto exact = hn::Mul(hn::ConvertTo(d, hn::PromoteTo(wide, x)), w);
            const auto number = hn::IfThenZeroElse(hn::IsNaN(exact), exact);
            const auto limited = hn::Min(hn::Max(number, hn::Set(d, -32768.0F)), hn::Set(d, 32767.0F));
            // Adding 3 * 2^22 rounds to an integer and leaves it in the lowest bits.
            const auto rounder = hn::Set(d, 0x1.8p23F);
            const auto rounded = hn::Sub(hn::BitCast(wide, hn::Add(limited, rounder)), hn::BitCast(wide, rounder));
            return hn::DemoteTo(Lanes<T, kLanes>(), rounded);
        }
    }

    const T* src_;
    T* dst_;
};

// n elements of kParts parts, from both ends at once.
template <template <class T> class Generator, size_t kParts, class T, class Window>
ZvpStatus window(const T* src, T* dst, size_t n, const Window& parameters) {
    using Apply = Applier<T, kParts>;
    using W = typename Apply::W;
    constexpr size_t kLanes = Apply::kLanes;
    constexpr size_t kBlock = Generator<T>::kLanes;
    const typename Apply::D d;
    const Apply apply(src, dst);
    Generator<T> generator(parameters, n);
    const size_t half = n / 2;
    size_t k = 0;
    for (; k + kBlock <= half; k += kBlock) {
        const auto block = generator.next();
        repeat<kBlock / kLanes>(
            [&](size_t i) { apply.whole(Apply::values(block, i), k + i * kLanes, n - k - i * kLanes); });
    }
    if (k < half) {
        const auto block = generator.next();
        // The values with room before them, for a reversed vector that ends with the first of them.
        alignas(kVectorBytes) W values[kLanes + kBlock] = {};
        repeat<kBlock / kLanes>([&](size_t i) { hn::Store(Apply::values(block, i), d, values + kLanes + i * kLanes); });
        const size_t rest = half - k;
        for (size_t i = 0; i < rest; i += kLanes) {
            const size_t count = rest - i < kLanes ? rest - i : kLanes;
            const W* next = values + kLanes + i;
            apply.some(hn::Load(d, next), k + i, count);
            apply.some(hn::Reverse(d, hn::LoadU(d, next + count - kLanes)), n - k - i - count, count);
        }
    }
    if (n % 2 != 0) apply.some(hn::Set(d, static_cast<W>(generator.middle())), half, 1);
    return zvpStsOk;
}

} // namespace zvps::ZVPS_LEVEL
