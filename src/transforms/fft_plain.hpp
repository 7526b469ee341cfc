// Radix-2 transforms, complex ones and real ones on top of them.
#pragma once

#include "core/simd.hpp"
#include "transforms/fft.table.hpp"

namespace zvps::ZVPS_LEVEL {

// Complex points, interleaved or split.
template <class T>
struct Points {
    T* re;
    T* im;
    size_t step;
};

template <class T>
struct Twiddles {
    const T* values; // exp(-2 pi i k / N), interleaved, every `step`th
    size_t step;
};

inline size_t reversedBits(size_t i, int order) {
    size_t result = 0;
    for (int b = 0; b < order; ++b)
        result |= (i >> b & 1) << (order - 1 - b);
    return result;
}

// One part of the points to bit-reversed order.
template <class T>
void permuteBits(const T* src, T* dst, size_t step, int order) {
    for (size_t i = 0; i < size_t{1} << order; ++i) {
        const size_t j = reversedBits(i, order);
        if (src != dst) {
            dst[step * j] = src[step * i];
        } else if (i < j) {
            const T held = dst[step * j];
            dst[step * j] = dst[step * i];
            dst[step * i] = held;
        }
    }
}

// From bit-reversed to natural order; sign is that of the exponent.
template <class T>
void runPasses(Points<T> x, int order, T sign, Twiddles<T> twiddles, T factor) {
    const size_t n = size_t{1} << order;
    for (size_t half = 1; half < n; half *= 2) {
        for (size_t j = 0; j < half; ++j) {
            const T* const w = twiddles.values + 2 * twiddles.step * (n / 2 / half) * j;
            const T wRe = w[0];
            const T wIm = -sign * w[1];
            for (size_t i = j; i < n; i += 2 * half) {
                T& aRe = x.re[x.step * i];
                T& aIm = x.im[x.step * i];
                T& bRe = x.re[x.step * (i + half)];
                T& bIm = x.im[x.step * (i + half)];
                const T re = bRe * wRe - bIm * wIm;
                const T im = bRe * wIm + bIm * wRe;
                bRe = aRe - re;
                bIm = aIm - im;
                aRe += re;
                aIm += im;
            }
        }
    }
    if (factor == T{1}) return;
    for (size_t i = 0; i < n; ++i) {
        x.re[x.step * i] *= factor;
        x.im[x.step * i] *= factor;
    }
}

template <class T>
constexpr T signOf(FftDirection direction) {
    return direction == kFftForward ? T{-1} : T{1};
}

template <FftDirection direction, class T>
void plainFft(Points<const T> src, Points<T> dst, int order, Twiddles<T> twiddles, T factor) {
    permuteBits(src.re, dst.re, dst.step, order);
    permuteBits(src.im, dst.im, dst.step, order);
    runPasses(dst, order, signOf<T>(direction), twiddles, factor);
}

// Where the real spectrum's values lie: X[k] for 1 <= k < N / 2 at `pairs` + 2 k.
inline size_t pairsOf(RealFftLayout layout) {
    return layout == kFftPack ? size_t{0} - 1 : 0;
}
inline size_t nyquistOf(RealFftLayout layout, size_t n) {
    return layout == kFftPerm ? 1 : layout == kFftPack ? n - 1 : n;
}

// X[k] and X[N / 2 - k] from those of the transform of half the length in Perm layout, or back but for a factor of 2.
template <class T>
void combine(T* x, size_t half, T sign, Twiddles<T> twiddles) {
    for (size_t k = 1; k < half - k; ++k) {
        T* const a = x + 2 * k;
        T* const b = x + 2 * (half - k);
        const T* const w = twiddles.values + 2 * twiddles.step * k;
        const T evenRe = a[0] + b[0];
        const T evenIm = a[1] - b[1];
        const T re = a[1] + b[1];
        const T im = b[0] - a[0];
        // i w^k (a - conj b) forward, its conjugate factor in the inverse
        const T oddRe = re * w[0] - im * w[1] * -sign;
        const T oddIm = im * w[0] + re * w[1] * -sign;
        a[0] = evenRe - sign * oddRe;
        a[1] = evenIm - sign * oddIm;
        b[0] = evenRe + sign * oddRe;
        b[1] = -(evenIm + sign * oddIm);
    }
}

template <class T>
void plainRealForward(const T* src, T* dst, int order, RealFftLayout layout, Twiddles<T> complex, Twiddles<T> real,
                      T factor) {
    const size_t n = size_t{1} << order;
    if (order == 0) {
        dst[0] = src[0] * factor;
        if (layout == kFftCcs) dst[1] = 0;
        return;
    }
    const size_t half = n / 2;
    plainFft<kFftForward, T>({src, src + 1, 2}, {dst, dst + 1, 2}, order - 1, complex, T{0.5} * factor);
    combine(dst, half, T{-1}, real);
    const T first = 2 * (dst[0] + dst[1]);
    const T last = 2 * (dst[0] - dst[1]);
    if (half > 1) {
        dst[half] *= 2;
        dst[half + 1] *= -2;
    }
    if (layout == kFftPack) {
        for (size_t i = 2; i < n; ++i)
            dst[i - 1] = dst[i];
    }
    dst[0] = first;
    dst[nyquistOf(layout, n)] = last;
    if (layout == kFftCcs) dst[1] = dst[n + 1] = 0;
}

template <class T>
void plainRealInverse(const T* src, T* dst, int order, RealFftLayout layout, Twiddles<T> complex, Twiddles<T> real,
                      T factor) {
    const size_t n = size_t{1} << order;
    if (order == 0) {
        dst[0] = src[0] * factor;
        return;
    }
    const size_t half = n / 2;
    const T first = src[0];
    const T last = src[nyquistOf(layout, n)];
    if (src != dst || layout == kFftPack) {
        for (size_t i = n; i-- > 2;)
            dst[i] = src[pairsOf(layout) + i];
    }
    dst[0] = first + last;
    dst[1] = first - last;
    if (half > 1) {
        dst[half] *= 2;
        dst[half + 1] *= -2;
    }
    combine(dst, half, T{1}, real);
    plainFft<kFftInverse, T>({dst, dst + 1, 2}, {dst, dst + 1, 2}, order - 1, complex, factor);
}

} // namespace zvps::ZVPS_LEVEL
