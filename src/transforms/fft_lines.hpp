// The last pass of complex transforms by whole lines of memory, for interleaved results that start beyond a line.
#pragma once

#include "transforms/fft_passes.hpp"
#include "transforms/fft_realign.hpp"

namespace zvps::ZVPS_LEVEL {

// Rows of numbers one after the other: how many and how long; in the source the way from row to row and from leg to
// leg.
struct NumberRows {
    size_t count;
    size_t length;
    Strides in;
};

// Blocks of numbers: the first one in the source and in the result, the ways from block to block and from leg to leg.
struct NumberBlocks {
    size_t firstIn;
    Strides in;
    size_t firstOut;
    Strides out;
    size_t count;
};

// Where the lanes of interleaved values are in a vector of real parts in the order of a block followed by one of
// imaginary parts; and again from the start.
template <class T>
struct InterleavedLanes {
    static constexpr size_t L = kLineBytes / sizeof(T);
    hwy::MakeSigned<T> lanes[2][3 * L]; // forward; inverse: the parts exchanged

    constexpr InterleavedLanes() : lanes() {
        constexpr size_t kInBlock = 16 / sizeof(T); // of 128 bits
        for (size_t inverse = 0; inverse < 2; ++inverse) {
            for (size_t i = 0; i < 3 * L; ++i) {
                const size_t in = i % L;
                const size_t upper = i / L % 2;
                const size_t lane = in / kInBlock * kInBlock + upper * kInBlock / 2 + in % kInBlock / 2;
                lanes[inverse][i] = static_cast<hwy::MakeSigned<T>>(lane + (in % 2 != inverse ? L : 0));
            }
        }
    }
};
template <class T>
inline constexpr InterleavedLanes<T> kInterleavedLanes;

#if HWY_TARGET <= HWY_AVX3
// Half a vector from p in those lanes of v that the mask has, in the lower or in the upper half.
HWY_INLINE Vec<float, 16> withHalf(Vec<float, 16> v, hn::Mask<Lanes<float, 16>> mask, const float* p) {
    return Vec<float, 16>{_mm512_mask_broadcast_f32x8(v.raw, mask.raw, _mm256_load_ps(p))};
}
HWY_INLINE Vec<double, 8> withHalf(Vec<double, 8> v, hn::Mask<Lanes<double, 8>> mask, const double* p) {
    return Vec<double, 8>{_mm512_mask_broadcast_f64x4(v.raw, mask.raw, _mm256_load_pd(p))};
}
#endif

// The results of a leg for as many numbers as a vector has lanes are a line in the middle, the end of the line before
// and the beginning of the line behind. Neighbours share a line: of two that are stored one after the other the first
// leaves its part to the second.
template <class T>
struct ResultLines {
    static constexpr size_t L = kLineBytes / sizeof(T);
    // Values that 16 legs leave.
    static constexpr size_t kLeft = L / 2;
    using D = Lanes<T, L>;
    using V = Vec<T, L>;
    using M = hn::Mask<D>;
    using Index = Vec<hwy::MakeSigned<T>, L>;

    T* first; // the line in which the results start, `beyond` lanes from its beginning
    size_t beyond;
    T factor;
    // For permuted() of real and imaginary parts: to the line in the middle, and to the beginning of the line behind
    // with the end of the line before.
    alignas(kLineBytes) hwy::MakeSigned<T> orders[2 * L];

    ResultLines(T* dst, bool isInverse, T scale)
        : first(dst - lanesBeyondLine(dst)), beyond(lanesBeyondLine(dst)), factor(scale) {
        const Lanes<hwy::MakeSigned<T>, L> d;
        const auto* const lanes = kInterleavedLanes<T>.lanes[isInverse] + L - beyond;
        hn::Store(hn::LoadU(d, lanes), d, orders);
        hn::Store(hn::LoadU(d, lanes + L), d, orders + L);
    }

    static HWY_INLINE Index middleOf(const hwy::MakeSigned<T>* orders) {
        return hn::Load(Lanes<hwy::MakeSigned<T>, L>(), orders);
    }
    static HWY_INLINE Index endsOf(const hwy::MakeSigned<T>* orders) {
        return hn::Load(Lanes<hwy::MakeSigned<T>, L>(), orders + L);
    }
    // Of a line that neighbours share; those with the higher numbers have the other lanes.
    HWY_INLINE M lanesOfLower() const { return hn::FirstN(D(), beyond); }

    // Blocks come by descending numbers where the end of the line before is the smaller part: half a vector is to hold
    // what is left.
    HWY_INLINE bool descends() const { return beyond > L / 2; }
    // Takes those lanes of the line it completes that `others` has from `left` and stores those that `mask` has.
    template <bool kDescends>
    HWY_INLINE void store(size_t number, V re, V im, T* left, M others, M mask) const {
        const D d;
        const hn::Half<D> half;
        // Indices from memory: the butterfly has no registers to spare.
        const auto* anew = orders;
        asm("" : "+r"(anew));
        T* const line = first + 2 * number;
        const V ends = permuted(re, endsOf(anew), im);
        hn::BlendedStore(withHalf(ends, others, left), mask, d, line + (kDescends ? 2 * L : 0));
        hn::Store(permuted(re, middleOf(anew), im), d, line + L);
        hn::Store(kDescends ? hn::UpperHalf(half, ends) : hn::LowerHalf(half, ends), half, left);
    }
    // What a leg whose numbers are from `begin` to `end` has left at last.
    HWY_INLINE void storeLeft(size_t begin, size_t end, const T* left) const {
        const D d;
        const V v = withHalf(hn::Zero(d), hn::FirstN(d, L), left);
        if (descends()) {
            hn::BlendedStore(v, hn::Not(lanesOfLower()), d, first + 2 * begin);
        } else {
            hn::BlendedStore(v, lanesOfLower(), d, first + 2 * end);
        }
    }
};

// All numbers. Up to 8 legs keep what they leave in registers.
template <class T, size_t R, bool scales>
HWY_NOINLINE void compiledLinesOfRows(const T* src, const NumberRows& rows, const ResultLines<T>& results,
                                      const T* twiddles) {
    constexpr size_t B = ResultLines<T>::L;
    using V = Vec<T, B>;
    const Lanes<T, B> d;
    const auto endsOrder = results.endsOf(results.orders);
    const auto middleOrder = results.middleOf(results.orders);
    const auto factor = hn::Set(d, results.factor);
    const auto lanesOfLower = results.lanesOfLower();
    const size_t numbers = rows.count * rows.length;
    T* line = results.first;
    V left[R];
    unroll<R>([&](auto leg) ZVPS_INLINE_LAMBDA { left[leg] = hn::Zero(d); });
    auto mask = hn::Not(lanesOfLower);
    size_t number = 0;
    for (size_t row = 0; row < rows.count; ++row) {
        for (size_t i = 0; i < rows.length; i += B, number += B, line += 2 * B) {
            const size_t step = multipliedAnew(2 * numbers);
            butterflyTo<T, B, B, R>(BlockLoader<T>{src}, row * rows.in.next + i, rows.in.step,
                                    twiddlesOf<B, R>(twiddles, number),
                                    [&](auto leg, ComplexVec<T, B> x) ZVPS_INLINE_LAMBDA {
                                        if constexpr (scales) x = {hn::Mul(x.re, factor), hn::Mul(x.im, factor)};
                                        T* const p = line + leg * step;
                                        const V ends = permuted(x.re, endsOrder, x.im);
                                        hn::BlendedStore(hn::IfThenElse(lanesOfLower, left[leg], ends), mask, d, p);
                                        hn::Store(permuted(x.re, middleOrder, x.im), d, p + B);
                                        left[leg] = ends;
                                    });
            mask = hn::FirstN(d, B);
        }
    }
    unroll<R>([&](auto leg)
                  ZVPS_INLINE_LAMBDA { hn::BlendedStore(left[leg], lanesOfLower, d, line + 2 * leg * numbers); });
}

// Of blocks of numbers. 16 legs keep what they leave in memory, each block `leftStep` further than the one before;
// isFirst: there is nothing yet.
template <class T, bool kDescends, bool scales>
HWY_NOINLINE void compiledLinesOfBlocks(const T* src, const NumberBlocks& blocks, const ResultLines<T>& results,
                                        const T* twiddles, T* left, size_t leftStep, bool isFirst) {
    constexpr size_t B = ResultLines<T>::L;
    const Lanes<T, B> d;
    const auto factor = hn::Set(d, results.factor);
    const auto lanesOfOthers = kDescends ? hn::Not(results.lanesOfLower()) : results.lanesOfLower();
    const auto mask = isFirst ? hn::Not(lanesOfOthers) : hn::FirstN(d, B);
    const auto others = isFirst ? hn::FirstN(d, 0) : lanesOfOthers;
    size_t in = blocks.firstIn;
    size_t out = blocks.firstOut;
    for (size_t n = 0; n < blocks.count; ++n, in += blocks.in.next, out += blocks.out.next, left += leftStep) {
        const size_t step = multipliedAnew(blocks.out.step);
        butterflyTo<T, B, B, 16>(BlockLoader<T>{src}, in, blocks.in.step, twiddlesOf<B, 16>(twiddles, out),
                                 [&](auto leg, ComplexVec<T, B> x) ZVPS_INLINE_LAMBDA {
                                     if constexpr (scales) x = {hn::Mul(x.re, factor), hn::Mul(x.im, factor)};
                                     results.template store<kDescends>(out + leg * step, x.re, x.im,
                                                                       left + leg * ResultLines<T>::kLeft, others,
                                                                       mask);
                                 });
    }
}

// run(std::true_type()) where results are scaled, else run(std::false_type()).
template <class T, class Run>
HWY_INLINE void withScaling(const ResultLines<T>& results, const Run& run) {
    if (results.factor == T{1}) {
        run(std::false_type());
    } else {
        run(std::true_type());
    }
}

template <class T, size_t R>
HWY_INLINE void lastPassByLines(const T* src, const NumberRows& rows, const ResultLines<T>& results,
                                const T* twiddles) {
    withScaling(results, [&](auto scales)
                             ZVPS_INLINE_LAMBDA { compiledLinesOfRows<T, R, scales>(src, rows, results, twiddles); });
}
template <class T>
HWY_INLINE void lastPassByLines(const T* src, const NumberBlocks& blocks, const ResultLines<T>& results,
                                const T* twiddles, T* left, size_t leftStep, bool isFirst) {
    withScaling(results, [&](auto scales) ZVPS_INLINE_LAMBDA {
        if (results.descends()) {
            compiledLinesOfBlocks<T, true, scales>(src, blocks, results, twiddles, left, leftStep, isFirst);
        } else {
            compiledLinesOfBlocks<T, false, scales>(src, blocks, results, twiddles, left, leftStep, isFirst);
        }
    });
}

// The storers whose results may go by whole lines.
template <class Storer>
inline constexpr bool kStoresLines = false;
template <class T, bool kInverse>
inline constexpr bool kStoresLines<InterleavedStorer<T, kInverse>> = kRealigns;
template <class T, class Storer>
inline constexpr bool kStoresLines<ScaledStorer<T, Storer>> = kStoresLines<Storer>;

template <class T, bool kInverse>
HWY_INLINE ResultLines<T> resultLines(const InterleavedStorer<T, kInverse>& storer, T factor = 1) {
    return {storer.p, kInverse, factor};
}
template <class T, class Storer>
HWY_INLINE ResultLines<T> resultLines(const ScaledStorer<T, Storer>& storer) {
    return resultLines(storer.storer, storer.factor);
}
template <class Storer>
HWY_INLINE auto resultLinesOf(const Storer& storer) {
    if constexpr (kStoresLines<Storer>) {
        return resultLines(storer);
    } else {
        return nullptr;
    }
}

} // namespace zvps::ZVPS_LEVEL
