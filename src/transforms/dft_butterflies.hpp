// Butterflies of the radices that are no powers of two, on complex values in two planes.
#pragma once

#include "transforms/fft_butterflies.hpp"
#include "transforms/sines.hpp"

namespace zvps::ZVPS_LEVEL {

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
        const Lanes<T, V> d;
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
            C odd = {hn::Mul(differences[0].re, hn::Set(d, kRootsOf<T, R>.sines[k])),
                     hn::Mul(differences[0].im, hn::Set(d, kRootsOf<T, R>.sines[k]))};
            unroll<H>([&](auto i) ZVPS_INLINE_LAMBDA {
                constexpr size_t kIndex = (i + 1) * k % R;
                even = add(even, sums[i], hn::Set(d, kRootsOf<T, R>.cosines[kIndex]));
                if constexpr (i > 0) odd = add(odd, differences[i], hn::Set(d, kRootsOf<T, R>.sines[kIndex]));
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
        const Lanes<T, V> d;
        C x[3][3];
        unroll<3>([&](auto n2) ZVPS_INLINE_LAMBDA {
            DftButterfly<T, V, 3>::run([&](auto n1) ZVPS_INLINE_LAMBDA { return in(Index<3 * n1 + n2>()); },
                                       [&](auto k1, C value) ZVPS_INLINE_LAMBDA {
                                           constexpr size_t kIndex = k1 * n2;
                                           if constexpr (kIndex == 0) {
                                               x[n2][k1] = value;
                                           } else {
                                               x[n2][k1] = mul(value, C{hn::Set(d, kRootsOf<T, 9>.cosines[kIndex]),
                                                                        hn::Set(d, -kRootsOf<T, 9>.sines[kIndex])});
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
