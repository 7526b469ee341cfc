// The Fourier transform at one frequency or two: many interleaved recurrences of first order, which neither lose
// accuracy near frequency 0 nor drift, joined by a tree. Products and sums are rounded one by one, for equal bits on
// all levels.
#pragma once

#include "core/rounding.hpp"
#include "telephony/goertzel.table.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kChains = size_t{1} << kGoertzelChainsLog2;
inline constexpr size_t kBlock = size_t{1} << kGoertzelBlockLog2;
inline constexpr size_t kDoubles = kVectorBytes / sizeof(double);
using DoubleLanes = Lanes<double, kDoubles>;
using Doubles = Vec<double, kDoubles>;
// Registers for the chains that run side by side.
inline constexpr size_t kRegisters = HWY_TARGET <= HWY_AVX3 ? 16 : 8;

template <class T>
HWY_INLINE Doubles toDoubles(Vec<T, kDoubles> v) {
    if constexpr (std::is_same_v<T, int16_t>) {
        return hn::PromoteTo(DoubleLanes(), hn::PromoteTo(Lanes<int32_t, kDoubles>(), v));
    } else {
        return widened(DoubleLanes(), v);
    }
}

// The elements from p[i] on, zeros from p[n] on.
template <class T>
HWY_INLINE Doubles loadUpTo(const T* p, size_t i, size_t n) {
    const Lanes<T, kDoubles> d;
    if (i + kDoubles <= n) return toDoubles<T>(hn::LoadU(d, p + i));
    if (i >= n) return hn::Zero(DoubleLanes());
    return toDoubles<T>(loadFirst(d, p + i, n - i));
}

// Chains of real elements: their real and imaginary parts in registers of their own.
struct RealChains {
    static constexpr size_t kParts = 1;
    static constexpr size_t kPlanes = 2;

    Doubles re;
    Doubles im;

    HWY_INLINE void clear() { re = im = hn::Zero(DoubleLanes()); }
    HWY_INLINE void load(const double* p) {
        re = hn::LoadU(DoubleLanes(), p);
        im = hn::LoadU(DoubleLanes(), p + kChains);
    }
    HWY_INLINE void store(double* p) const {
        hn::StoreU(re, DoubleLanes(), p);
        hn::StoreU(im, DoubleLanes(), p + kChains);
    }
    HWY_INLINE void rotate(const RealChains& rotation) {
        const Doubles turned = hn::Sub(hn::Mul(rotation.re, re), hn::Mul(rotation.im, im));
        im = hn::Add(hn::Mul(rotation.im, re), hn::Mul(rotation.re, im));
        re = turned;
    }
    HWY_INLINE void add(Doubles elements) { re = hn::Add(re, elements); }
    HWY_INLINE void add(const RealChains& other) {
        re = hn::Add(re, other.re);
        im = hn::Add(im, other.im);
    }
    static HWY_INLINE RealChains broadcast(const Rotation& r) {
        return {hn::Set(DoubleLanes(), r.re), hn::Set(DoubleLanes(), r.im)};
    }
    // From what store() left behind to real parts followed by imaginary parts.
    static HWY_INLINE void split(const double* stored, double* parts) {
        for (size_t i = 0; i < 2 * kChains; ++i)
            parts[i] = stored[i];
    }
};

// Chains of complex elements, real and imaginary parts beside each other.
struct ComplexChains {
    static constexpr size_t kParts = 2;
    static constexpr size_t kPlanes = 1;

    Doubles pairs;

    HWY_INLINE void clear() { pairs = hn::Zero(DoubleLanes()); }
    HWY_INLINE void load(const double* p) { pairs = hn::LoadU(DoubleLanes(), p); }
    HWY_INLINE void store(double* p) const { hn::StoreU(pairs, DoubleLanes(), p); }
    struct Factor {
        Doubles re;
        Doubles im; // negative in even lanes
    };
    HWY_INLINE void rotate(const Factor& rotation) {
        const Doubles swapped = hn::Reverse2(DoubleLanes(), pairs);
        pairs = hn::Add(hn::Mul(rotation.re, pairs), hn::Mul(rotation.im, swapped));
    }
    HWY_INLINE void add(Doubles elements) { pairs = hn::Add(pairs, elements); }
    HWY_INLINE void add(const ComplexChains& other) { add(other.pairs); }
    static HWY_INLINE Factor broadcast(const Rotation& r) {
        const DoubleLanes d;
        return {hn::Set(d, r.re), hn::OddEven(hn::Set(d, r.im), hn::Set(d, -r.im))};
    }
    static HWY_INLINE void split(const double* stored, double* parts) {
        for (size_t j = 0; j < kChains; ++j) {
            parts[j] = stored[2 * j];
            parts[kChains + j] = stored[2 * j + 1];
        }
    }
};

// Sums of a block of n parts at p by the chains that begin at p[first], kGroup vectors of them for each frequency, last
// elements first.
template <class Chains, size_t kCount, size_t kGroup, class T, class Factor>
HWY_INLINE void sumBlock(Chains (&chains)[kCount][kGroup], const T* p, size_t first, size_t n,
                         const Factor (&rotations)[kCount]) {
    constexpr size_t kStep = kChains * Chains::kParts;
    size_t i = (n - 1) / kStep * kStep + first;
    for (size_t v = 0; v < kGroup; ++v) {
        const Doubles last = loadUpTo(p, i + v * kDoubles, n);
        for (size_t f = 0; f < kCount; ++f) {
            chains[f][v].clear();
            chains[f][v].add(last);
        }
    }
    while (i != first) {
        i -= kStep;
#pragma GCC unroll 16
        for (size_t v = 0; v < kGroup; ++v) {
            const Doubles elements = toDoubles<T>(hn::LoadU(Lanes<T, kDoubles>(), p + i + v * kDoubles));
#pragma GCC unroll 2
            for (size_t f = 0; f < kCount; ++f) {
                chains[f][v].rotate(rotations[f]);
                chains[f][v].add(elements);
            }
        }
    }
}

// The sum over all chains j of rotation^j times the chain, real parts first.
inline void joinChains(double* __restrict re, double* __restrict im, const Rotation* joins, double* value) {
    size_t half = kChains / 2;
    for (int level = kGoertzelChainsLog2; level-- > 0; half /= 2) {
        const Rotation r = joins[level];
        for (size_t j = 0; j < half; ++j) {
            const double a = re[j + half];
            const double b = im[j + half];
            re[j] += r.re * a - r.im * b;
            im[j] += r.im * a + r.re * b;
        }
    }
    value[0] = re[0];
    value[1] = im[0];
}

template <size_t kCount, class Chains, class T>
HWY_INLINE void transform(const T* src, size_t n, const GoertzelRotations* rotations, double* values) {
    constexpr size_t kGroup = kRegisters / Chains::kPlanes / kCount;
    constexpr size_t kParts = Chains::kParts;
    using Factor = decltype(Chains::broadcast(Rotation()));
    Factor chainRotations[kCount];
    Factor blockRotations[kCount];
    for (size_t f = 0; f < kCount; ++f) {
        chainRotations[f] = Chains::broadcast(rotations[f].chain);
        blockRotations[f] = Chains::broadcast(rotations[f].block);
    }
    alignas(64) double sums[kCount][2 * kChains] = {};
    for (size_t begin = (n - 1) / kBlock * kBlock;; begin -= kBlock) {
        const size_t parts = (n - begin < kBlock ? n - begin : kBlock) * kParts;
        for (size_t g = 0; g < kChains * kParts; g += kGroup * kDoubles) {
            Chains chains[kCount][kGroup];
            sumBlock(chains, src + begin * kParts, g, parts, chainRotations);
            for (size_t f = 0; f < kCount; ++f) {
                for (size_t v = 0; v < kGroup; ++v) {
                    double* sum = sums[f] + g + v * kDoubles;
                    Chains later;
                    later.load(sum);
                    later.rotate(blockRotations[f]);
                    later.add(chains[f][v]);
                    later.store(sum);
                }
            }
        }
        if (begin == 0) break;
    }
    for (size_t f = 0; f < kCount; ++f) {
        alignas(64) double parts[2 * kChains];
        Chains::split(sums[f], parts);
        joinChains(parts, parts + kChains, rotations[f].joins, values + 2 * f);
    }
}

template <class Chains, class T>
void goertzel(const T* src, size_t n, const GoertzelRotations* rotations, int count, double* values) {
    if (count == 1) {
        transform<1, Chains>(src, n, rotations, values);
    } else {
        transform<2, Chains>(src, n, rotations, values);
    }
}

} // namespace zvps::ZVPS_LEVEL
