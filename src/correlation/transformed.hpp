// Sums of products by Fourier transforms of sections: convolutions of the signal with the reversed taps.
#pragma once

#include "correlation/sums.hpp"
#include "transforms/spectra.table.hpp"

#include <cmath>

namespace zvps {

// What sums need to know of the FFT beyond what filters do: how the pairs of spectra are accumulated, the longest
// transforms, and costs in products of a direct sum: of a transform of N points N log2 N times kCost, of its tables N
// times kTableCost where they are not stored.
template <class Element>
struct SumTraits;
#define ZVPS_SUM_TRAITS(TYPE, COMPLEX, lastOrder, cost, tableCost)                                                     \
    template <>                                                                                                        \
    struct SumTraits<Zvp##TYPE> : FirTraits<Zvp##TYPE> {                                                               \
        using Complex = Zvp##COMPLEX;                                                                                  \
        static constexpr auto accumulate = zvpsAddProduct_##COMPLEX;                                                   \
        static constexpr int kLastOrder = lastOrder;                                                                   \
        static constexpr double kCost = cost;                                                                          \
        static constexpr double kTableCost = tableCost;                                                                \
    };
ZVPS_SUM_TRAITS(32f, 32fc, 27, 2.6, 90)
ZVPS_SUM_TRAITS(64f, 64fc, 26, 2.3, 45)
ZVPS_SUM_TRAITS(32fc, 32fc, 27, 0.9, 33)
ZVPS_SUM_TRAITS(64fc, 64fc, 26, 0.9, 17)
#undef ZVPS_SUM_TRAITS

// Which sections are transformed. One that holds all; or windows of the signal, each for its results with all taps; or
// pairs of some taps and the signal that they meet, for all results, whose spectra are added up.
struct SumSections {
    enum Kind { kOne, kOfResults, kOfTaps } kind;
    int order;
    int64_t count;
    int64_t step; // results, or taps
    double cost;
};

// How one transform holds all products that matter.
struct WholeSums {
    int64_t begin;  // the first element of the signal that matters
    int64_t first;  // where result 0 lies
    int64_t length; // so many points at least

    template <class T>
    explicit WholeSums(const Sums<T>& sums) {
        const int64_t taps = sums.taps.length;
        begin = std::max<int64_t>(sums.offset, 0);
        first = sums.offset + taps - 1 - begin;
        const int64_t end = std::min(sums.signal.length, sums.offset + sums.count - 1 + taps);
        length = std::max({taps, taps + (end - begin) - 1 - first, first + sums.count});
    }
};

// The cheapest sections; of order 0 if no transform is long enough.
template <class Element, class T>
SumSections cheapestSections(const Sums<T>& sums) {
    using Traits = SumTraits<Element>;
    constexpr int kFirstOrder = 6;
    constexpr int kStoredOrder = 10; // tables of longer transforms are computed
    const int64_t whole = WholeSums(sums).length;
    const bool isOfTaps = sums.taps.length > sums.count;
    SumSections best = {SumSections::kOne, 0, 0, 0, 0};
    for (int order = kFirstOrder; order <= Traits::kLastOrder; ++order) {
        const int64_t points = int64_t{1} << order;
        SumSections sections = {SumSections::kOne, order, 1, sums.count, 0};
        double transforms = sums.isAutoCorrelation() ? 2 : 3;
        if (points < whole) {
            sections.kind = isOfTaps ? SumSections::kOfTaps : SumSections::kOfResults;
            sections.step = points + 1 - std::min(sums.taps.length, sums.count);
            if (sections.step < points / 8) continue;
            const int64_t total = isOfTaps ? sums.taps.length : sums.count;
            sections.count = (total + sections.step - 1) / sections.step;
            transforms = 2 * static_cast<double>(sections.count) + 1;
        }
        const auto n = static_cast<double>(points);
        sections.cost = n * (order * Traits::kCost * transforms + (order > kStoredOrder ? Traits::kTableCost : 0));
        if (best.order == 0 || sections.cost < best.cost) best = sections;
        if (points >= whole) break;
    }
    return best;
}

// A transform object, vectors of all its points, and what transforms work in, until the end of a call: in one block,
// which the system does not take back after each call as it would several.
template <class Element>
class SumTransform {
  public:
    using Traits = SumTraits<Element>;

    SumTransform() = default;
    SumTransform(const SumTransform&) = delete;
    SumTransform& operator=(const SumTransform&) = delete;
    ~SumTransform() {
        if (memory_ != nullptr) zvpFree(memory_);
    }

    // With so many vectors, and work buffers for so many threads.
    ZvpStatus open(int order, int vectors, int threads) {
        int specSize = 0, initSize = 0, bufferSize = 0;
        if (const ZvpStatus status = Traits::getSize(order, zvpFftScaleInv, 0, &specSize, &initSize, &bufferSize)) {
            return status;
        }
        const auto rounded = [](int64_t bytes) { return (bytes + 63) / 64 * 64; };
        // Vectors a power of two apart would meet in the same cache sets.
        constexpr int64_t kApart = 1088;
        points_ = int64_t{1} << order;
        vectorBytes_ = points_ * static_cast<int64_t>(sizeof(Element)) + kApart;
        bufferBytes_ = rounded(bufferSize);
        const int64_t vectorsBytes = std::max(vectorBytes_ * vectors, rounded(initSize));
        memory_ = static_cast<unsigned char*>(zvpMalloc(vectorsBytes + bufferBytes_ * threads + specSize));
        if (memory_ == nullptr) return zvpStsNoMemory;
        buffers_ = memory_ + vectorsBytes;
        // The object is built with the help of memory that the vectors take afterwards.
        return Traits::init(&spec_, order, zvpFftScaleInv, 0, buffers_ + bufferBytes_ * threads, memory_);
    }

    int64_t points() const { return points_; }
    Element* vector(int i) const { return reinterpret_cast<Element*>(memory_ + vectorBytes_ * i); }

    // n elements of an operand followed by zeros, transformed.
    template <class T>
    ZvpStatus forward(const Operand<T>& operand, int64_t begin, int64_t n, Element* spectrum, int thread = 0) const {
        loadOperand(operand, begin, n, spectrum);
        std::fill(spectrum + n, spectrum + points_, Element{});
        return Traits::forward(spectrum, spec_, buffer(thread));
    }
    ZvpStatus inverse(Element* spectrum, int thread = 0) const {
        return Traits::inverse(spectrum, spec_, buffer(thread));
    }

    ZvpStatus multiply(const Element* factor, Element* spectrum) const {
        return Traits::multiply(factor, spectrum, static_cast<int>(points_));
    }
    // total += factor * spectrum
    ZvpStatus accumulate(const Element* factor, const Element* spectrum, Element* total) const {
        using Complex = typename Traits::Complex;
        // Real spectra begin with two real values.
        constexpr int kReal = std::is_same_v<Element, Part<Element>> ? 2 : 0;
        if constexpr (kReal > 0) {
            total[0] += factor[0] * spectrum[0];
            total[1] += factor[1] * spectrum[1];
        }
        const auto pairs = [](auto* p) { return reinterpret_cast<const Complex*>(p + kReal); };
        return Traits::accumulate(pairs(factor), pairs(spectrum), reinterpret_cast<Complex*>(total + kReal),
                                  static_cast<int>(kReal > 0 ? points_ / 2 - 1 : points_));
    }
    // The squares of the magnitudes.
    void multiplyByConjugate(Element* spectrum) const {
        auto* p = parts(spectrum);
        auto n = static_cast<size_t>(points_) * (sizeof(Element) / sizeof(*p));
        if constexpr (std::is_same_v<Element, Part<Element>>) {
            p[0] *= p[0];
            p[1] *= p[1];
            p += 2;
            n -= 2;
        }
        if constexpr (sizeof(*p) == 4) {
            kernels().spectra->mulConj_32fc(p, p, n);
        } else {
            kernels().spectra->mulConj_64fc(p, p, n);
        }
    }

  private:
    Zvp8u* buffer(int thread) const { return bufferBytes_ == 0 ? nullptr : buffers_ + bufferBytes_ * thread; }

    typename Traits::Spec* spec_ = nullptr;
    unsigned char* memory_ = nullptr;
    unsigned char* buffers_ = nullptr;
    int64_t points_ = 0;
    int64_t vectorBytes_ = 0;
    int64_t bufferBytes_ = 0;
};

template <class Results, class Element>
void storeTransformed(const Results& results, int64_t k, Element* sums, int64_t n) {
    if constexpr (Results::kExact) {
        for (int64_t i = 0; i < n; ++i)
            sums[i] = std::nearbyint(sums[i]);
    }
    results.store(k, sums, n);
}

template <class T, class Results>
ZvpStatus sumWhole(const Sums<T>& sums, int order, const Results& results) {
    using Element = typename Results::Element;
    const WholeSums whole(sums);
    const bool isAuto = sums.isAutoCorrelation();
    SumTransform<Element> transform;
    if (const ZvpStatus status = transform.open(order, isAuto ? 1 : 2, 1)) return status;
    Element* const signal = transform.vector(0);
    if (isAuto) {
        if (const ZvpStatus status = transform.forward(sums.signal, 0, sums.signal.length, signal)) return status;
        transform.multiplyByConjugate(signal);
    } else {
        Element* const taps = transform.vector(1);
        const auto reversed = sums.taps.reversed();
        if (const ZvpStatus status = transform.forward(reversed, 0, reversed.length, taps)) return status;
        const int64_t count = whole.first + sums.count;
        if (const ZvpStatus status = transform.forward(sums.signal, whole.begin, count, signal)) return status;
        if (const ZvpStatus status = transform.multiply(taps, signal)) return status;
    }
    if (const ZvpStatus status = transform.inverse(signal)) return status;
    storeTransformed(results, 0, signal + (isAuto ? 0 : whole.first), sums.count);
    return zvpStsOk;
}

template <class T, class Results>
ZvpStatus sumByResults(const Sums<T>& sums, const SumSections& sections, const Results& results, int threads) {
    using Element = typename Results::Element;
    SumTransform<Element> transform;
    if (const ZvpStatus status = transform.open(sections.order, 1 + threads, threads)) return status;
    const int64_t past = sums.taps.length - 1;
    Element* const taps = transform.vector(threads);
    if (const ZvpStatus status = transform.forward(sums.taps.reversed(), 0, past + 1, taps)) return status;
    const auto sumSection = [&](int64_t section, int thread) -> ZvpStatus {
        const int64_t k = section * sections.step;
        const int64_t n = std::min(sections.step, sums.count - k);
        Element* const signal = transform.vector(thread);
        const int64_t begin = sums.offset + k;
        if (const ZvpStatus status = transform.forward(sums.signal, begin, past + n, signal, thread)) return status;
        if (const ZvpStatus status = transform.multiply(taps, signal)) return status;
        if (const ZvpStatus status = transform.inverse(signal, thread)) return status;
        storeTransformed(results, k, signal + past, n);
        return zvpStsOk;
    };
    ZvpStatus failure = zvpStsOk;
#pragma omp parallel for num_threads(threads) schedule(static, 1) if (threads > 1)
    for (int thread = 0; thread < threads; ++thread) {
        const int64_t end = sections.count * (thread + 1) / threads;
        for (int64_t section = sections.count * thread / threads; section < end; ++section) {
            if (const ZvpStatus status = sumSection(section, thread)) {
#pragma omp atomic write
                failure = status;
            }
        }
    }
    return failure;
}

template <class T, class Results>
ZvpStatus sumByTaps(const Sums<T>& sums, const SumSections& sections, const Results& results) {
    using Element = typename Results::Element;
    SumTransform<Element> transform;
    if (const ZvpStatus status = transform.open(sections.order, 3, 1)) return status;
    Element* const total = transform.vector(0);
    Element* const signal = transform.vector(1);
    Element* const taps = transform.vector(2);
    const auto reversed = sums.taps.reversed();
    for (int64_t i = 0; i < sums.taps.length; i += sections.step) {
        Element* const target = i == 0 ? total : signal;
        const int64_t begin = sums.taps.length - i - sections.step;
        if (const ZvpStatus status = transform.forward(reversed, begin, sections.step, taps)) return status;
        const int64_t count = sections.step + sums.count - 1;
        if (const ZvpStatus status = transform.forward(sums.signal, sums.offset + i, count, target)) return status;
        if (const ZvpStatus status =
                i == 0 ? transform.multiply(taps, total) : transform.accumulate(taps, signal, total)) {
            return status;
        }
    }
    if (const ZvpStatus status = transform.inverse(total)) return status;
    storeTransformed(results, 0, total + sections.step - 1, sums.count);
    return zvpStsOk;
}

template <class T, class Results>
ZvpStatus sumByTransforms(const Sums<T>& sums, const SumSections& sections, const Results& results, int mostThreads) {
    switch (sections.kind) {
    case SumSections::kOfTaps:
        return sumByTaps(sums, sections, results);
    case SumSections::kOfResults:
        return sumByResults(sums, sections, results, static_cast<int>(std::min<int64_t>(mostThreads, sections.count)));
    default:
        return sumWhole(sums, sections.order, results);
    }
}

} // namespace zvps
