// Sums of products as they stand, by the kernels of filters and dot products.
#pragma once

#include "correlation/sums.hpp"
#include "stats/dot_products.table.hpp"

namespace zvps {

// Taps and signal pass through windows of so many elements: as many taps as half a window, and results as a quarter.
template <class Element>
inline constexpr int64_t kSumWindow = 16384 / static_cast<int64_t>(sizeof(Element));
// Results that reach beyond the signal are computed by so many, as what meets no element of it is left out for all of
// them at once.
template <class Element>
inline constexpr int64_t kSumEdge = 256 / static_cast<int64_t>(sizeof(Element));

template <class T, class Results>
class DirectSums {
  public:
    DirectSums(const Sums<T>& sums, const Results& results) : sums_(sums), results_(results) {}

    void compute() {
        const bool isOnePart = sums_.taps.length <= kMostTaps;
        if (isOnePart && !(kStraight && sums_.taps.isPlain())) loadOperand(sums_.taps, 0, sums_.taps.length, taps_);
        int64_t n = 0;
        for (int64_t k = 0; k < sums_.count; k += n) {
            const int64_t lag = sums_.offset + k;
            const int64_t inside = lag < 0 ? 0 : sums_.signal.length - sums_.taps.length - lag + 1;
            n = std::min(kBlock, sums_.count - k);
            if constexpr (kStraight && Results::kInPlace) {
                if (isOnePart && sums_.signal.isPlain() && inside >= n) n = std::min(inside, sums_.count - k);
            }
            if (inside < n) n = std::min(n, kSumEdge<Element>);
            computeBlock(k, n, lag);
        }
    }

  private:
    using Element = typename Results::Element;
    static constexpr bool kStraight = std::is_same_v<T, Element>;
    static constexpr int64_t kMostTaps = kSumWindow<Element> / 2;
    static constexpr int64_t kBlock = kSumWindow<Element> / 4;

    void computeBlock(int64_t k, int64_t n, int64_t lag) {
        Element* place = block_;
        if constexpr (Results::kInPlace) place = results_.dst + k;
        const int64_t first = std::clamp<int64_t>(1 - lag - n, 0, sums_.taps.length);
        const int64_t last = std::clamp<int64_t>(sums_.signal.length - lag, first, sums_.taps.length);
        if (first == last) std::fill_n(place, n, Element{});
        for (int64_t i = first; i < last; i += kMostTaps) {
            const int64_t count = std::min(kMostTaps, last - i);
            Element* const to = i == first ? place : more_;
            firKernels<Element>().block(parts(signalAt(lag + i, n + count - 1)), parts(to), static_cast<size_t>(n),
                                        parts(tapsAt(i, count)), static_cast<size_t>(count));
            if (i == first) continue;
            for (size_t p = 0; p < partCount<Element>(static_cast<int>(n)); ++p)
                parts(place)[p] += parts(more_)[p];
        }
        if constexpr (!Results::kInPlace) results_.store(k, place, n);
    }

    const Element* tapsAt(int64_t begin, int64_t n) {
        if constexpr (kStraight) {
            if (sums_.taps.isPlain()) return sums_.taps.data + begin;
        }
        if (sums_.taps.length <= kMostTaps) return taps_ + begin;
        loadOperand(sums_.taps, begin, n, taps_);
        return taps_;
    }
    const Element* signalAt(int64_t begin, int64_t n) {
        if constexpr (kStraight) {
            if (sums_.signal.isPlain() && begin >= 0 && begin + n <= sums_.signal.length) {
                return sums_.signal.data + begin;
            }
        }
        loadOperand(sums_.signal, begin, n, window_);
        return window_;
    }

    const Sums<T>& sums_;
    const Results& results_;
    alignas(64) Element window_[kSumWindow<Element>];
    alignas(64) Element taps_[kMostTaps];
    alignas(64) Element block_[Results::kInPlace ? 1 : kBlock];
    alignas(64) Element more_[kBlock];
};

// ---- Few results of many products ----

// Filters keep results in vectors, which so few would not fill.
template <class T>
bool areFew(const Sums<T>& sums) {
    constexpr int64_t kFewest = 8; // products for each result
    constexpr int64_t kMost = 256 / static_cast<int64_t>(sizeof(T));
    return sums.count <= kMost && sums.taps.length >= kFewest * sums.count &&
           sums.taps.isReversed == sums.signal.isReversed;
}

inline Zvp64s dotProduct(const Zvp16s* a, const Zvp16s* b, size_t n) {
    return kernels().dots->dot_16s(a, b, n);
}
inline Zvp32f dotProduct(const Zvp32f* a, const Zvp32f* b, size_t n) {
    return kernels().dots->dot_32f(a, b, n);
}
inline Zvp64f dotProduct(const Zvp64f* a, const Zvp64f* b, size_t n) {
    return kernels().dots->dot_64f(a, b, n);
}

// Both operands lie in the same direction, so that each result is a dot product in place.
template <class T, class Results>
void sumOneByOne(const Sums<T>& sums, const Results& results) {
    for (int64_t k = 0; k < sums.count; ++k) {
        const int64_t lag = sums.offset + k;
        const int64_t first = std::max<int64_t>(-lag, 0);
        const int64_t last = std::min(sums.taps.length, sums.signal.length - lag);
        decltype(dotProduct(sums.taps.data, sums.signal.data, 0)) sum{};
        if (first < last) {
            sum = dotProduct(sums.taps.part(first, last - first).data,
                             sums.signal.part(first + lag, last - first).data, static_cast<size_t>(last - first));
        }
        results.store(k, &sum, 1);
    }
}

} // namespace zvps
