// Products of taps and elements, as recursive filters need them: fused, in the same order in every kernel.
#pragma once

#include "core/simd.hpp"
#include "filters/iir.table.hpp"

namespace zvps::ZVPS_LEVEL {

// Real taps in all lanes.
template <class T, size_t N>
struct Wide {
    using D = Lanes<T, N>;
    using V = Vec<T, N>;
    using Tap = V;

    static HWY_INLINE Tap tap(const T* taps, size_t i) { return hn::Set(D(), taps[i]); }
    static HWY_INLINE V mul(Tap t, V x) { return hn::Mul(t, x); }
    static HWY_INLINE V mulAdd(Tap t, V x, V sum) { return hn::MulAdd(t, x, sum); }
    static HWY_INLINE V mulSub(Tap t, V x, V sum) { return hn::NegMulAdd(t, x, sum); } // sum - t x
};

// One element and one tap, of one or two parts.
template <class T, size_t kParts>
struct Single : Wide<T, 1> {};

template <class T>
struct Single<T, 2> {
    using D = Lanes<T, 2>;
    using V = Vec<T, 2>;
    struct Tap {
        V re;
        V im; // negative in the real lane
    };

    static HWY_INLINE Tap tap(const T* taps, size_t i) {
        const T* t = taps + 2 * i;
        const V im = hn::Set(D(), t[1]);
        return {hn::Set(D(), t[0]), hn::OddEven(im, hn::Neg(im))};
    }
    static HWY_INLINE V mul(const Tap& t, V x) { return hn::MulAdd(t.im, hn::Reverse2(D(), x), hn::Mul(t.re, x)); }
    static HWY_INLINE V mulAdd(const Tap& t, V x, V sum) {
        return hn::MulAdd(t.im, hn::Reverse2(D(), x), hn::MulAdd(t.re, x, sum));
    }
    static HWY_INLINE V mulSub(const Tap& t, V x, V sum) {
        return hn::NegMulAdd(t.im, hn::Reverse2(D(), x), hn::NegMulAdd(t.re, x, sum));
    }
};

} // namespace zvps::ZVPS_LEVEL
