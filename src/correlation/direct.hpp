// Sums of products as they stand, by the kernels of filters and dot products.
#pragma once

#include "correlation/correlation.table.hpp"
#include "correlation/sums.hpp"
#include "stats/dot_products.table.hpp"

namespace zvps {

// Taps and signal pass through windows of so many elements: as many taps as half a window, and results as a quarter.
template <class Element>
inline constexpr int64_t kSumWindow = 16384 / static_cast<int64_t>(sizeof(Element));
// Results that reach beyond the signal are computed by blocks, for which taps that meet no element of it are left out:
// many taps by smaller blocks.
template <class Element>
inline constexpr int64_t kSumEdge = 1024 / static_cast<int64_t>(sizeof(Element));
template <class Element>
inline constexpr int64_t kPartsOf = sizeof(Element) / sizeof(Part<Element>);
template <class Element>
inline constexpr int64_t kSmallSumEdge = kSumEdge<Element> / 4;
// So few results would not fill the vectors of filters.
template <class Element>
inline constexpr int64_t kFewSums = 192 / static_cast<int64_t>(sizeof(Element));

template <class Element>
auto fewSumsKernel() {
    if constexpr (std::is_same_v<Element, Zvp32f>) {
        return kernels().correlation->fir_32f;
    } else if constexpr (std::is_same_v<Element, Zvp32fc>) {
        return kernels().correlation->fir_32fc;
    } else if constexpr (std::is_same_v<Element, Zvp64f>) {
        return kernels().correlation->fir_64f;
    } else {
        return kernels().correlation->fir_64fc;
    }
}

template <class Element>
void sumByKernels(const Element* signal, Element* sums, int64_t n, const Element* taps, int64_t tapsLen) {
    const auto& kernel = n <= kFewSums<Element> && n < tapsLen ? fewSumsKernel<Element>() : firKernels<Element>().block;
    kernel(parts(signal), parts(sums), static_cast<size_t>(n), parts(taps), static_cast<size_t>(tapsLen));
}

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
        const Taps all = meeting({0, sums_.taps.length}, n, lag);
        if (all.begin == all.end) std::fill_n(place, n, Element{});
        // The taps that meet the signal inside it for all n results; few products are not worth a call of their own.
        constexpr int64_t kWorth = 8192;
        const Taps inside = {std::max<int64_t>(-lag, 0), sums_.signal.length - lag - n + 1};
        const bool isSplit = inside.end - inside.begin > std::max(2 * n, kWorth / n);
        Taps some = all;
        for (; some.begin < all.end; some.begin = some.end) {
            some.end = std::min(some.begin + kMostTaps, all.end);
            if (isSplit && some.begin < inside.begin) {
                some.end = std::min(some.end, inside.begin);
            } else if (isSplit && some.begin < inside.end) {
                some.end = std::min(some.end, inside.end);
            }
            const bool isInside = some.begin >= inside.begin && some.end <= inside.end;
            Element* const to = some.begin == all.begin ? place : more_;
            const bool bySmaller = !isInside && 2 * (some.end - some.begin) * kPartsOf<Element> >= kSumEdge<Element>;
            const int64_t step = bySmaller ? kSmallSumEdge<Element> : n;
            for (int64_t j = 0; j < n; j += step)
                sumSome(to + j, std::min(step, n - j), lag + j, some);
            if (to == place) continue;
            for (size_t p = 0; p < partCount<Element>(static_cast<int>(n)); ++p)
                parts(place)[p] += parts(more_)[p];
        }
        if constexpr (!Results::kInPlace) results_.store(k, place, n);
    }

    struct Taps {
        int64_t begin;
        int64_t end;
    };

    // Those of some taps that meet the signal in n results from a lag on.
    Taps meeting(Taps some, int64_t n, int64_t lag) const {
        const int64_t begin = std::clamp(1 - lag - n, some.begin, some.end);
        return {begin, std::clamp(sums_.signal.length - lag, begin, some.end)};
    }

    void sumSome(Element* to, int64_t n, int64_t lag, Taps some) {
        const Taps taps = meeting(some, n, lag);
        const int64_t count = taps.end - taps.begin;
        if (count == 0) {
            std::fill_n(to, n, Element{});
        } else {
            sumByKernels(signalAt(lag + taps.begin, n + count - 1), to, n, tapsAt(taps.begin, count), count);
        }
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

// ---- Few results of integers ----

inline constexpr int64_t kFewIntegerSums = 32;

inline bool areFew(const Sums<Zvp16s>& sums) {
    constexpr int64_t kLeast = 4; // taps for each result
    return sums.count <= kFewIntegerSums && sums.taps.length >= kLeast * sums.count &&
           sums.taps.isReversed == sums.signal.isReversed;
}

// Both operands lie in the same direction, so that each result is a dot product in place.
template <class Results>
void sumOneByOne(const Sums<Zvp16s>& sums, const Results& results) {
    Zvp64s dots[kFewIntegerSums];
    for (int64_t k = 0; k < sums.count; ++k) {
        const int64_t lag = sums.offset + k;
        const int64_t first = std::max<int64_t>(-lag, 0);
        const int64_t last = std::min(sums.taps.length, sums.signal.length - lag);
        dots[k] = 0;
        if (first >= last) continue;
        const auto taps = sums.taps.part(first, last - first);
        const auto signal = sums.signal.part(first + lag, last - first);
        dots[k] = kernels().dots->dot_16s(taps.data, signal.data, static_cast<size_t>(last - first));
    }
    results.store(0, dots, sums.count);
}

} // namespace zvps
