// Butterflies of the radices that are no powers of two, on complex values in two planes.
#pragma once

#include "transforms/fft_butterflies.hpp"
#include "transforms/sines.hpp"

namespace zvps::ZVPS_LEVEL {

// ---- One complex value in a vector ----

// Instead of planes: the real part and the imaginary part in two lanes.
template <class T>
struct ComplexVec<T, 0> {
    Vec<T, 2> v;
};
template <class T>
using Packed = ComplexVec<T, 0>;

// i x
template <class T>
HWY_INLINE Vec<T, 2> turned(Packed<T> x) {
    const Lanes<T, 2> d;
    const auto exchanged = hn::Reverse(d, x.v);
    return hn::Xor(exchanged, hn::InterleaveLower(d, hn::Set(d, T(-0.0)), hn::Zero(d)));
}

template <class T>
HWY_INLINE Packed<T> add(Packed<T> a, Packed<T> b) {
    return {hn::Add(a.v, b.v)};
}
template <class T>
HWY_INLINE Packed<T> sub(Packed<T> a, Packed<T> b) {
    return {hn::Sub(a.v, b.v)};
}
template <class T>
HWY_INLINE Packed<T> addI(Packed<T> a, Packed<T> b) {
    return {hn::Add(a.v, turned(b))};
}
template <class T>
HWY_INLINE Packed<T> subI(Packed<T> a, Packed<T> b) {
    return {hn::Sub(a.v, turned(b))};
}

// ---- Constant factors ----

// x f, a + b f, x (re + i im)
template <class T, size_t V>
HWY_INLINE ComplexVec<T, V> scaledBy(ComplexVec<T, V> x, T f) {
    const auto factor = hn::Set(Lanes<T, V>(), f);
    return {hn::Mul(x.re, factor), hn::Mul(x.im, factor)};
}
template <class T, size_t V>
HWY_INLINE ComplexVec<T, V> addScaled(ComplexVec<T, V> a, ComplexVec<T, V> b, T f) {
    return add(a, b, hn::Set(Lanes<T, V>(), f));
}
template <class T, size_t V>
HWY_INLINE ComplexVec<T, V> turnedBy(ComplexVec<T, V> x, T re, T im) {
    const Lanes<T, V> d;
    return mul(x, ComplexVec<T, V>{hn::Set(d, re), hn::Set(d, im)});
}
template <class T>
HWY_INLINE Packed<T> scaledBy(Packed<T> x, T f) {
    return {hn::Mul(x.v, hn::Set(Lanes<T, 2>(), f))};
}
template <class T>
HWY_INLINE Packed<T> addScaled(Packed<T> a, Packed<T> b, T f) {
    return {hn::MulAdd(b.v, hn::Set(Lanes<T, 2>(), f), a.v)};
}
template <class T>
HWY_INLINE Packed<T> turnedBy(Packed<T> x, T re, T im) {
    const Lanes<T, 2> d;
    return {hn::MulAdd(turned(x), hn::Set(d, im), hn::Mul(x.v, hn::Set(d, re)))};
}

// ---- Butterflies ----

// cos(2 pi k / R) and sin(2 pi k / R)
template <class T, size_t R>
struct RootsOf {
    T cosines[R];
    T sines[R];

    constexpr RootsOf() : cosines(), sines() {
        for (size_t k = 0; k < R; ++k) {
            const SineCosine root = sineCosineOf(k, R);
            cosines[k] = static_cast<T>(root.cosine);
            sines[k] = static_cast<T>(root.sine);
        }
    }
};
template <class T, size_t R>
inline constexpr RootsOf<T, R> kRootsOf;

// The forward transform of R points, as Butterfly; odd R by sums and differences of the points n and R - n.
template <class T, size_t V, size_t R>
struct DftButterfly {
    using C = ComplexVec<T, V>;
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        static_assert(R % 2 != 0);
        constexpr size_t H = R / 2;
        const C x0 = in(Index<0>());
        C sums[H], differences[H];
        C total = x0;
        unroll<H>([&](auto i) ZVPS_INLINE_LAMBDA {
            const C a = in(Index<i + 1>());
            const C b = in(Index<R - 1 - i>());
            sums[i] = add(a, b);
            differences[i] = sub(a, b);
            total = add(total, sums[i]);
        });
        out(Index<0>(), total);
        unroll<H>([&](auto j) ZVPS_INLINE_LAMBDA {
            constexpr size_t k = j + 1;
            C even = x0;
            C odd = scaledBy(differences[0], kRootsOf<T, R>.sines[k]);
            unroll<H>([&](auto i) ZVPS_INLINE_LAMBDA {
                constexpr size_t kIndex = (i + 1) * k % R;
                even = addScaled(even, sums[i], kRootsOf<T, R>.cosines[kIndex]);
                if constexpr (i > 0) odd = addScaled(odd, differences[i], kRootsOf<T, R>.sines[kIndex]);
            });
            out(Index<k>(), subI(even, odd));
            out(Index<R - k>(), addI(even, odd));
        });
    }
};

template <class T, size_t V>
struct DftButterfly<T, V, 2> : Butterfly<T, V, 2> {};
template <class T, size_t V>
struct DftButterfly<T, V, 4> : Butterfly<T, V, 4> {};
template <class T, size_t V>
struct DftButterfly<T, V, 8> : Butterfly<T, V, 8> {};
template <class T, size_t V>
struct DftButterfly<T, V, 16> : Butterfly<T, V, 16> {};

// The multiple of A that leaves the remainder 1 modulo B.
constexpr size_t unitOf(size_t A, size_t B) {
    size_t multiple = A;
    while (multiple % B != 1)
        multiple += A;
    return multiple;
}

// A and B without a common factor: no twiddles.
template <class T, size_t V, size_t A, size_t B>
struct CoprimeButterfly {
    using C = ComplexVec<T, V>;
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        constexpr size_t R = A * B;
        C x[B][A];
        unroll<B>([&](auto n2) ZVPS_INLINE_LAMBDA {
            DftButterfly<T, V, A>::run([&](auto n1) ZVPS_INLINE_LAMBDA { return in(Index<(B * n1 + A * n2) % R>()); },
                                       [&](auto k1, C value) ZVPS_INLINE_LAMBDA { x[n2][k1] = value; });
        });
        unroll<A>([&](auto k1) ZVPS_INLINE_LAMBDA {
            DftButterfly<T, V, B>::run([&](auto n2) ZVPS_INLINE_LAMBDA { return x[n2][k1]; },
                                       [&](auto k2, C value) ZVPS_INLINE_LAMBDA {
                                           out(Index<(unitOf(B, A) * k1 + unitOf(A, B) * k2) % R>(), value);
                                       });
        });
    }
};
template <class T, size_t V>
struct DftButterfly<T, V, 6> : CoprimeButterfly<T, V, 3, 2> {};
template <class T, size_t V>
struct DftButterfly<T, V, 10> : CoprimeButterfly<T, V, 5, 2> {};
template <class T, size_t V>
struct DftButterfly<T, V, 12> : CoprimeButterfly<T, V, 3, 4> {};
template <class T, size_t V>
struct DftButterfly<T, V, 14> : CoprimeButterfly<T, V, 7, 2> {};
template <class T, size_t V>
struct DftButterfly<T, V, 15> : CoprimeButterfly<T, V, 5, 3> {};

template <class T, size_t V>
struct DftButterfly<T, V, 9> {
    using C = ComplexVec<T, V>;
    template <class In, class Out>
    static HWY_INLINE void run(const In& in, const Out& out) {
        C x[3][3];
        unroll<3>([&](auto n2) ZVPS_INLINE_LAMBDA {
            DftButterfly<T, V, 3>::run([&](auto n1) ZVPS_INLINE_LAMBDA { return in(Index<3 * n1 + n2>()); },
                                       [&](auto k1, C value) ZVPS_INLINE_LAMBDA {
                                           constexpr size_t kIndex = k1 * n2;
                                           if constexpr (kIndex == 0) {
                                               x[n2][k1] = value;
                                           } else {
                                               x[n2][k1] = turnedBy(value, kRootsOf<T, 9>.cosines[kIndex],
                                                                    -kRootsOf<T, 9>.sines[kIndex]);
                                           }
                                       });
        });
        unroll<3>([&](auto k1) ZVPS_INLINE_LAMBDA {
            DftButterfly<T, V, 3>::run([&](auto n2) ZVPS_INLINE_LAMBDA { return x[n2][k1]; },
                                       [&](auto k2, C value) ZVPS_INLINE_LAMBDA { out(Index<3 * k2 + k1>(), value); });
        });
    }
};

} // namespace zvps::ZVPS_LEVEL
