// What correlations and convolutions have in common: sums of products of two vectors at successive lags.
#pragma once

#include "filters/fir_run.hpp"

namespace zvps {

// A vector, perhaps read backwards or conjugated. Elements outside it count as zeros.
template <class T>
struct Operand {
    const T* data;
    int64_t length;
    bool isReversed = false;
    bool isConjugate = false;

    Operand reversed() const { return {data, length, !isReversed, isConjugate}; }
    Operand part(int64_t begin, int64_t count) const {
        return {data + (isReversed ? length - begin - count : begin), count, isReversed, isConjugate};
    }
    bool isPlain() const { return !isReversed && !isConjugate; }
};

// The operand's elements from `begin` on.
template <class T, class Element>
void loadOperand(const Operand<T>& operand, int64_t begin, int64_t n, Element* to) {
    const int64_t end = begin + n;
    const int64_t first = std::clamp<int64_t>(0, begin, end);
    const int64_t last = std::clamp(operand.length, first, end);
    std::fill(to, to + (first - begin), Element{});
    Element* const inside = to + (first - begin);
    if (first < last && !operand.isReversed) {
        loadElements(operand.data + first, inside, static_cast<size_t>(last - first));
    } else {
        for (int64_t i = first; i < last; ++i)
            inside[i - first] = firElement<Element>(operand.data[operand.length - 1 - i]);
    }
    if constexpr (!std::is_same_v<Element, Part<Element>>) {
        for (int64_t i = 0; i < last - first && operand.isConjugate; ++i)
            inside[i].im = -inside[i].im;
    }
    std::fill(to + (last - begin), to + n, Element{});
}

// sum[k] = sum over i of taps[i] * signal[offset + k + i] for 0 <= k < count.
template <class T>
struct Sums {
    Operand<T> taps;
    Operand<T> signal;
    int64_t offset;
    int64_t count;

    // The same with the shorter operand for the taps.
    Sums shorterFirst() const {
        if (taps.length <= signal.length) return *this;
        return {signal.reversed(), taps.reversed(), offset + taps.length - signal.length, count};
    }
    // Those with some of the taps.
    Sums ofTaps(int64_t begin, int64_t n) const { return {taps.part(begin, n), signal, offset + begin, count}; }

    // Whether the operands are one and the same and lags start from 0.
    bool isAutoCorrelation() const {
        return taps.data == signal.data && taps.length == signal.length && offset == 0 && !taps.isReversed &&
               !signal.isReversed;
    }
    // How many products there are, other than by zeros outside the operands.
    double products() const { return productsBelow(offset + count) - productsBelow(offset); }

  private:
    // At lags below one.
    double productsBelow(int64_t lag) const {
        const auto triangle = [](int64_t n) {
            const auto side = static_cast<double>(std::max<int64_t>(n, 0));
            return side * (side + 1) / 2;
        };
        const int64_t lags = lag + taps.length - 1;
        return triangle(lags) - triangle(lags - taps.length) - triangle(lags - signal.length) +
               triangle(lags - taps.length - signal.length);
    }
};

// ---- Results ----

// Where sums go: store(k, sums, n) takes those from k on, once all products are in them. With kInPlace they may instead
// be computed where they belong. kExact: they are integers.

template <class T>
struct FloatResults {
    using Element = T;
    static constexpr bool kInPlace = true;
    static constexpr bool kExact = false;

    T* dst;

    void store(int64_t k, const T* sums, int64_t n) const {
        std::memcpy(dst + k, sums, static_cast<size_t>(n) * sizeof(T));
    }
};

// finish(k, sums, n) takes the sums, in double precision or, after adding up those of several parts of the taps in
// `totals`, as integers.
template <class Finish>
struct IntegerResults {
    using Element = Zvp64f;
    static constexpr bool kInPlace = false;
    static constexpr bool kExact = true;

    Finish finish;
    Zvp64s* totals = nullptr;
    bool isFirst = true;
    bool isLast = true;

    template <class Sum>
    void store(int64_t k, const Sum* sums, int64_t n) const {
        if (totals == nullptr) return finish(k, sums, n);
        for (int64_t i = 0; i < n; ++i)
            totals[k + i] = (isFirst ? 0 : totals[k + i]) + static_cast<Zvp64s>(sums[i]);
        if (isLast) finish(k, totals + k, n);
    }
};

} // namespace zvps
