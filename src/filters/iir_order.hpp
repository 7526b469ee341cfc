// Filters of any order in transposed direct form 2: entry k of the delay line is what inputs and outputs so far add to
// the output k samples ahead. A step takes several samples: their own outputs by the recurrence, then all entries
// behind them, side by side. Every entry sums its products sample by sample, so that no cut of a signal changes a bit.
#pragma once

#include "filters/iir_elements.hpp"

namespace zvps::ZVPS_LEVEL {

template <class T, size_t kParts>
struct IirOrder {
    using Element = Single<T, kParts>;
    using V = typename Element::V;

    static HWY_INLINE typename Element::Tap tap(const T* const* taps, size_t k) {
        const typename Element::D d;
        if constexpr (kParts == 1) {
            return hn::LoadU(d, taps[0] + k);
        } else {
            return {hn::LoadU(d, taps[0] + 2 * k), hn::LoadU(d, taps[1] + 2 * k)};
        }
    }

    // Whole vectors: the same elements in all of them, as they are and with their parts swapped.
    static constexpr size_t N = kVectorBytes / sizeof(T);
    using D = Lanes<T, N>;
    struct Everywhere {
        Vec<T, N> v[kParts];

        explicit HWY_INLINE Everywhere(const T* element) {
            const D d;
            if constexpr (kParts == 1) {
                v[0] = hn::Set(d, *element);
            } else {
                if constexpr (sizeof(T) == 8) {
                    v[0] = hn::LoadDup128(d, element);
                } else {
                    double both;
                    __builtin_memcpy(&both, element, sizeof(both));
                    v[0] = hn::BitCast(d, hn::Set(Lanes<double, N / 2>(), both));
                }
                v[1] = hn::Reverse2(d, v[0]);
            }
        }
        HWY_INLINE Vec<T, N> mulAdd(const T* const* taps, size_t part, Vec<T, N> sum) const {
#pragma GCC unroll 2
            for (size_t i = 0; i < kParts; ++i)
                sum = hn::MulAdd(hn::LoadU(D(), taps[i] + part), v[i], sum);
            return sum;
        }
    };

    static HWY_INLINE bool isFinite(V v) {
        const typename Element::D d;
        const V zeros = hn::Sub(v, v);
        return hn::AllTrue(d, hn::Eq(zeros, hn::Zero(d)));
    }

    // One sample, whatever the numbers: touches no entry beyond the order.
    static HWY_NOINLINE void any(const T* src, T* dst, IirFilter<T>& filter) {
        const typename Element::D d;
        const V x = hn::LoadU(d, src);
        const V y = Element::mulAdd(tap(filter.b, 0), x, hn::LoadU(d, filter.delay));
        for (size_t k = 0; k < filter.order; ++k) {
            const V ahead = hn::LoadU(d, filter.delay + (k + 1) * kParts);
            hn::StoreU(Element::mulAdd(tap(filter.a, k + 1), y, Element::mulAdd(tap(filter.b, k + 1), x, ahead)), d,
                       filter.delay + k * kParts);
        }
        hn::StoreU(y, d, dst);
    }

    template <size_t kSamples>
    static HWY_INLINE void step(const T* src, T* dst, IirFilter<T>& filter) {
        const typename Element::D d;
        V x[kSamples], y[kSamples];
#pragma GCC unroll 8
        for (size_t j = 0; j < kSamples; ++j) {
            x[j] = hn::LoadU(d, src + j * kParts);
            y[j] = hn::LoadU(d, filter.delay + j * kParts);
        }
#pragma GCC unroll 8
        for (size_t j = 0; j < kSamples; ++j) {
            y[j] = Element::mulAdd(tap(filter.b, 0), x[j], y[j]);
#pragma GCC unroll 8
            for (size_t t = j + 1; t < kSamples; ++t) {
                y[t] = Element::mulAdd(tap(filter.a, t - j), y[j], Element::mulAdd(tap(filter.b, t - j), x[j], y[t]));
            }
        }
        // The zeros behind the taps would make NaNs of infinities. One infinity or NaN makes all later outputs so too.
        if (HWY_UNLIKELY(!isFinite(y[kSamples - 1]))) {
            for (size_t j = 0; j < kSamples; ++j)
                any(src + j * kParts, dst + j * kParts, filter);
            return;
        }
        alignas(16) T outputs[kSamples * kParts], inputs[kSamples * kParts];
#pragma GCC unroll 8
        for (size_t j = 0; j < kSamples; ++j) {
            hn::StoreU(x[j], d, inputs + j * kParts);
            hn::StoreU(y[j], d, outputs + j * kParts);
            hn::StoreU(y[j], d, dst + j * kParts);
        }
        for (size_t m = 0; m < filter.order * kParts; m += N) {
            auto sum = hn::LoadU(D(), filter.delay + m + kSamples * kParts);
#pragma GCC unroll 8
            for (size_t j = 0; j < kSamples; ++j) {
                const size_t ahead = m + (kSamples - j) * kParts;
                sum = Everywhere(inputs + j * kParts).mulAdd(filter.b, ahead, sum);
                sum = Everywhere(outputs + j * kParts).mulAdd(filter.a, ahead, sum);
            }
            hn::StoreU(sum, D(), filter.delay + m);
        }
    }
};

template <class T, size_t kParts>
void iirOrder(const T* src, T* dst, size_t n, IirFilter<T>& filter) {
    using Order = IirOrder<T, kParts>;
    size_t i = 0;
    const auto advance = [&](auto samples) HWY_ATTR {
        Order::template step<samples.value>(src + i * kParts, dst + i * kParts, filter);
        i += samples.value;
    };
    while (n - i >= kIirStep)
        advance(std::integral_constant<size_t, kIirStep>());
    if (n - i >= 4) advance(std::integral_constant<size_t, 4>());
    if (n - i >= 2) advance(std::integral_constant<size_t, 2>());
    if (n - i >= 1) advance(std::integral_constant<size_t, 1>());
}

} // namespace zvps::ZVPS_LEVEL
