// The complex transforms: fixed routines for small orders, passes for the others.
#pragma once

#include "transforms/fft_large_call.hpp"
#include "transforms/fft_lines.hpp"
#include "transforms/fft_passes.hpp"
#include "transforms/fft_small.hpp"

namespace zvps::ZVPS_LEVEL {

constexpr size_t smaller(size_t a, size_t b) {
    return a < b ? a : b;
}

// ---- Short transforms of split data: two passes ----

template <class T, int order, class Loader, class Storer>
HWY_NOINLINE void shortTransform(const Loader& loader, const Storer& storer, const T* twiddles) {
    constexpr FftPlan plan = fftPlan<T>(order);
    static_assert(plan.passes == 2);
    constexpr size_t R1 = size_t{1} << plan.orders[0];
    constexpr size_t R2 = size_t{1} << plan.orders[1];
    constexpr size_t B = fftBlock<T>(R1, R2);
    constexpr size_t V = smaller(B, kVectorBytes / sizeof(T));
    alignas(64) T work[2 * R1 * R2];
    firstPass<T, V, B, R1>(loader, 0, R2, R2, BlockStorer<T>{work});
    lastPass<T, V, B, R2>(work, R1, storer, 0, Strides{B, R1}, R1 / B, twiddles);
}

// Calls run(std::integral_constant<int, order>()) with the order that is `value`, from the first to the last.
template <int first, int last, class Run>
HWY_INLINE void withOrder(int value, const Run& run) {
    if constexpr (first < last) {
        if (value != first) return withOrder<first + 1, last>(value, run);
    }
    run(std::integral_constant<int, first>());
}

// ---- Long transforms ----

// Their passes are compiled once for all of them: for each radix and form of the data.

// A vector of 64 bytes, or less at the lower levels.
template <class T>
inline constexpr size_t kFullBlock = 64 / sizeof(T);
template <class T>
inline constexpr size_t kFullVector = kVectorBytes / sizeof(T);

template <class T, size_t R, class Loader>
HWY_NOINLINE void compiledFirstPass(const Loader& loader, size_t n, size_t count, size_t columns, T* dst) {
    firstPass<T, kFullVector<T>, kFullBlock<T>, R>(loader, n, count, columns, BlockStorer<T>{dst});
}
template <class T, size_t R>
HWY_NOINLINE void compiledMiddlePass(const T* src, Strides in, T* dst, Strides out, size_t count, size_t s,
                                     const T* twiddles) {
    middlePass<T, kFullVector<T>, kFullBlock<T>, R>(src, in, dst, out, count, s, twiddles);
}
// Of one block of numbers.
template <class T, size_t R>
HWY_NOINLINE void compiledBlockPass(const T* src, Strides in, T* dst, Strides out, size_t count, const T* twiddles) {
    constexpr size_t B = kFullBlock<T>;
    middlePass<T, kFullVector<T>, B, R>(src, in, dst, out, count, B, twiddles);
}
template <class T, size_t R, class Storer>
HWY_NOINLINE void compiledLastPass(const T* src, size_t inStep, const Storer& storer, size_t k, Strides out,
                                   size_t count, const T* twiddles) {
    lastPass<T, kFullVector<T>, kFullBlock<T>, R>(src, inStep, storer, k, out, count, twiddles);
}

// Whether the last two passes take two blocks of numbers at a time: where results are so far apart that a line which
// neighbouring blocks share would have left the cache before the second block comes.
template <class T>
constexpr bool areLastBlocksPaired(const FftPlan& plan) {
    const size_t apart = 2 * sizeof(T) << (plan.orders[0] + plan.orders[1]);
    return plan.passes == 4 && plan.orders[3] <= 3 && apart >= 2048;
}

// From so many columns on it pays in the first one of three passes that their blocks start at lines.
template <class T>
inline constexpr size_t kLeastShiftedColumns = 16 * kFullBlock<T>;

template <class T, class Loader, class Storer>
struct LongTransform {
    static constexpr size_t B = kFullBlock<T>;

    FftPlan plan;
    size_t length;
    Loader loader;
    Storer storer;
    const T* twiddles;
    const ResultLines<T>* lines; // of interleaved results that go by whole lines, else null

    HWY_INLINE size_t radix(int pass) const { return size_t{1} << plan.orders[pass]; }
    HWY_INLINE bool isByLines() const {
        if constexpr (kStoresLines<Storer>) {
            return lines != nullptr;
        } else {
            return false;
        }
    }

    HWY_INLINE void first(size_t n, size_t count, T* dst) const {
        // Blocks are no longer than the radix.
        withOrder<B == 16 ? 4 : 3, 4>(plan.orders[0], [&](auto order) ZVPS_INLINE_LAMBDA {
            compiledFirstPass<T, size_t{1} << order>(loader, n, count, length / radix(0), dst);
        });
    }
    HWY_INLINE void middle(int pass, const T* src, Strides in, T* dst, Strides out, size_t count, size_t s,
                           const T* w) const {
        withOrder<kLeastMiddleOrder, kMostMiddleOrder>(plan.orders[pass], [&](auto order) ZVPS_INLINE_LAMBDA {
            compiledMiddlePass<T, size_t{1} << order>(src, in, dst, out, count, s, w);
        });
    }
    HWY_INLINE void last(const T* src, size_t inStep, size_t k, Strides out, size_t count, const T* w) const {
        withOrder<kLeastLastOrder, kMostLastOrder>(plan.orders[plan.passes - 1], [&](auto order) ZVPS_INLINE_LAMBDA {
            compiledLastPass<T, size_t{1} << order>(src, inStep, storer, k, out, count, w);
        });
    }

    // Of all columns. Where the source does not start at a line, blocks of columns do, so that no vector straddles two
    // lines but in the blocks at both ends, some of whose columns are others' too.
    HWY_INLINE void first(T* dst) const {
        const size_t s = radix(0);
        const size_t columns = length / s;
        const size_t lead = loader.columnsToLine();
        if (lead == 0 || columns < kLeastShiftedColumns<T>) return first(0, columns, dst);
        first(columns - B, B, dst + 2 * (columns - B) * s);
        first(0, B, dst);
        first(lead, columns - B, dst + 2 * lead * s);
    }

    // The last pass of three by whole lines.
    HWY_INLINE void lastByLines(const T* src, const NumberRows& rows, const T* w) const {
        if constexpr (kStoresLines<Storer>) {
            if (plan.orders[2] < kMostLastOrder) {
                withOrder<kLeastLastOrder, kMostLastOrder - 1>(plan.orders[2], [&](auto order) ZVPS_INLINE_LAMBDA {
                    lastPassByLines<T, size_t{1} << order>(src, rows, *lines, w);
                });
                return;
            }
            constexpr size_t kLegs = size_t{1} << kMostLastOrder;
            constexpr size_t kLeft = ResultLines<T>::kLeft;
            alignas(64) T left[kLegs * kLeft];
            const size_t numbers = rows.length;
            const size_t start = lines->descends() ? numbers - B : 0;
            const size_t next = lines->descends() ? -B : B;
            const Strides in = {next, rows.in.step};
            const Strides out = {next, numbers};
            lastPassByLines(src, NumberBlocks{start, in, start, out, 1}, *lines, w, left, 0, true);
            const size_t second = start + next;
            lastPassByLines(src, NumberBlocks{second, in, second, out, numbers / B - 1}, *lines, w, left, 0, false);
            for (size_t leg = 0; leg < kLegs; ++leg) {
                lines->storeLeft(leg * numbers, (leg + 1) * numbers, left + leg * kLeft);
            }
        }
    }

    // The first two passes, for a block of the second one's subsequences at a time, through `scratch`.
    HWY_INLINE void firstTwo(T* dst, T* scratch) const {
        const size_t s = radix(0);
        const size_t r2 = radix(1);
        const size_t m = length / (s * r2);
        const size_t leg = 2 * B * s;
        const auto second = [&](const T* from, size_t n, size_t count) {
            middle(1, from, Strides{s, B * s}, dst + 2 * n * s * r2, Strides{s * r2, s}, count, s, twiddles);
        };
        const size_t lead = loader.columnsToLine();
        T* const legs = scratch + leg;
        for (size_t n = lead; n + B <= m; n += B) {
            for (size_t n1 = 0; n1 < r2; ++n1) {
                first(n1 * m + n, B, legs + n1 * leg);
            }
            second(legs, n, B);
        }
        if (lead != 0) {
            // The last block has the first subsequences too: their columns are those of the next leg, and the first
            // leg's are ahead of all. What the blocks at both ends of the source leave in other rows is overwritten.
            const size_t n = m + lead - B;
            T* const ahead = legs - 2 * lead * s;
            first(0, B, ahead);
            first(length / s - B, B, ahead + (r2 - 1) * leg);
            for (size_t n1 = 0; n1 + 1 < r2; ++n1) {
                first(n1 * m + n, B, legs + n1 * leg);
            }
            second(legs, n, B - lead);
            second(ahead, 0, lead);
        }
    }

    // The last two passes after s numbers, for a block of numbers at a time or two, through `scratch`. The storer may
    // work on the memory of the source.
    template <bool isPaired>
    HWY_INLINE void lastTwo(const T* src, size_t s, T* scratch, const T* w) const {
        const int pass = plan.passes - 2;
        const size_t r1 = radix(pass);
        const size_t r2 = radix(pass + 1);
        const T* const lastTwiddles = w + 2 * s * (r1 - 1);
        constexpr size_t kWidth = isPaired ? 2 * B : B;
        const auto firstOfTwo = [&](size_t k) ZVPS_INLINE_LAMBDA {
            withOrder<kLeastMiddleOrder, kMostMiddleOrder>(plan.orders[pass], [&](auto order) ZVPS_INLINE_LAMBDA {
                for (size_t i = 0; i < kWidth; i += B) {
                    compiledBlockPass<T, size_t{1} << order>(src + 2 * (k + i), Strides{s, r2 * s}, scratch + 2 * i,
                                                             Strides{r1 * kWidth, kWidth}, r2,
                                                             w + 2 * (k + i) * (r1 - 1));
                }
            });
        };
        if constexpr (!isPaired && kStoresLines<Storer>) {
            if (isByLines() && plan.orders[pass + 1] == kMostLastOrder) {
                constexpr size_t kLeft = ResultLines<T>::kLeft;
                T* const left = scratch + 2 * B * r1 * r2;
                for (size_t i = 0; i < s; i += B) {
                    const size_t k = lines->descends() ? s - B - i : i;
                    firstOfTwo(k);
                    const NumberBlocks blocks = {0, Strides{B, r1 * B}, k, Strides{s, r1 * s}, r1};
                    lastPassByLines(scratch, blocks, *lines, lastTwiddles, left, r2 * kLeft, i == 0);
                }
                for (size_t n = 0; n < r1; ++n) {
                    for (size_t leg = 0; leg < r2; ++leg) {
                        const size_t begin = (leg * r1 + n) * s;
                        lines->storeLeft(begin, begin + s, left + (n * r2 + leg) * kLeft);
                    }
                }
                return;
            }
        }
        for (size_t k = 0; k < s; k += kWidth) {
            firstOfTwo(k);
            if constexpr (isPaired) {
                for (size_t n = 0; n < r1; ++n) {
                    last(scratch + 2 * n * kWidth, r1 * kWidth, k + n * s, Strides{B, r1 * s}, 2, lastTwiddles);
                }
            } else {
                last(scratch, r1 * B, k, Strides{s, r1 * s}, r1, lastTwiddles);
            }
        }
    }

    // `between` holds all values, and so does `spare` for three passes that are not joined.
    HWY_INLINE void run(T* between, T* spare, T* scratch) const {
        const size_t s = radix(0);
        if (plan.passes == 4) {
            firstTwo(between, scratch);
            const size_t numbers = s * radix(1);
            const T* const w = twiddles + 2 * s * (radix(1) - 1);
            if (areLastBlocksPaired<T>(plan)) return lastTwo<true>(between, numbers, scratch, w);
            return lastTwo<false>(between, numbers, scratch, w);
        }
        first(between);
        const size_t m = length / (s * radix(1));
        const size_t numbers = s * radix(1);
        const T* const w = twiddles + 2 * s * (radix(1) - 1);
        if (plan.areJoined) {
            if (!isByLines()) return lastTwo<false>(between, s, scratch, twiddles);
            const Strides legs = {s, m * s};
            middle(1, between, legs, between, legs, m, s, twiddles);
            lastByLines(between, NumberRows{radix(1), s, {m * s, s}}, w);
        } else {
            middle(1, between, Strides{s, m * s}, spare, Strides{numbers, s}, m, s, twiddles);
            if (isByLines()) return lastByLines(spare, NumberRows{1, numbers, {0, numbers}}, w);
            last(spare, numbers, 0, Strides{B, numbers}, numbers / B, w);
        }
    }
};

// Up to so many bytes the values between passes are on the stack, for which lines of cache can be aligned.
inline constexpr size_t kMostBytesOnStack = 65536;

template <class T>
constexpr bool isOnStack(int order) {
    return (2 * sizeof(T) << order) <= kMostBytesOnStack;
}

// The scratch memory of a pair of passes, or for all values.
template <class T>
constexpr size_t scratchValues(int order) {
    const FftPlan& plan = fftPlan<T>(order);
    if (plan.passes == 3 && !plan.areJoined) return size_t{2} << order;
    const size_t firstTwo = plan.passes == 4 ? ((size_t{1} << plan.orders[1]) + 1) << plan.orders[0] : 0;
    const size_t legs = size_t{1} << (plan.orders[plan.passes - 2] + plan.orders[plan.passes - 1]);
    // Two blocks of them, or one and what they leave to the next one.
    const size_t lastTwo = areLastBlocksPaired<T>(plan) ? 2 * legs : legs + legs / 4;
    return 2 * kFullBlock<T> * larger(firstTwo, lastTwo);
}

template <class T>
constexpr size_t mostStackValues() {
    size_t most = 0;
    for (int order = kLastShortFft + 1; order <= kLastFftPlan; ++order) {
        const size_t values = scratchValues<T>(order) + (isOnStack<T>(order) ? size_t{2} << order : 0);
        if (values > most) most = values;
    }
    return most;
}

// A load waits for an earlier store whose address has the same last 12 bits, be it another one: what is read for a
// result had better not be just ahead of its place. From `room` on the first address some lines behind `data` by these
// bits.
inline constexpr size_t kPageBytes = 4096;

template <class T>
HWY_INLINE T* behindInPages(T* room, const T* data) {
    const uintptr_t way = reinterpret_cast<uintptr_t>(data) + 256 + 63 - reinterpret_cast<uintptr_t>(room);
    return room + way % kPageBytes / 64 * 64 / sizeof(T);
}

// From this order on it pays to store unaligned results by whole lines.
template <class T>
inline constexpr int kLeastOrderByLines = sizeof(T) == 8 ? 9 : 12;

// `data`: where the result goes, for the passes to work in, or null. They do so only where vectors do not straddle
// lines.
template <class T, class Loader, class Storer>
HWY_NOINLINE void longTransform(const Loader& loader, const Storer& storer, T* data, bool isInPlace,
                                const FftSpec<T>& spec, T* work) {
    LongTransform<T, Loader, Storer> transform = {
        fftPlan<T>(spec.order), size_t{1} << spec.order, loader, storer, spec.twiddles, nullptr};
    const auto lines = resultLinesOf(storer);
    if constexpr (kStoresLines<Storer>) {
        if (spec.order >= kLeastOrderByLines<T> && canRealign(data)) transform.lines = &lines;
    }
    alignas(64) T room[mostStackValues<T>() + kPageBytes / sizeof(T)];
    T* const stack = behindInPages(room, data);
    const bool onStack = isOnStack<T>(spec.order);
    T* const scratch = onStack ? stack + 2 * transform.length : stack;
    const bool isAligned = data != nullptr && reinterpret_cast<uintptr_t>(data) % 64 == 0;
    const bool isInData = isAligned && !isInPlace && (transform.plan.areJoined || !onStack);
    transform.run(isInData ? data : onStack ? stack : work, isAligned ? data : scratch, scratch);
}

// ---- Kernels ----

// The storer itself or scaled.
template <bool scales, class T, class Storer>
HWY_INLINE auto scaled(const Storer& storer, T factor) {
    if constexpr (scales) {
        return ScaledStorer<T, Storer>{storer, factor};
    } else {
        return storer;
    }
}

// run(storer), scaled if there is a factor.
template <class T, class Storer, class Run>
HWY_INLINE void withScaled(const Storer& storer, T factor, const Run& run) {
    if (factor == T{1}) {
        run(storer);
    } else {
        run(ScaledStorer<T, Storer>{storer, factor});
    }
}

template <class T>
LargeFftCall<T> largeCall(const FftSpec<T>& spec, T* work) {
    return {spec.order, spec.twiddles, work, static_cast<size_t>(spec.workSize) / sizeof(T)};
}

template <class T, FftDirection direction>
ZvpStatus complexFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work) {
    static_assert(kFixedComplexFftOrder == kLastShortFft);
    constexpr bool kInverse = direction == kFftInverse;
    if (spec.order > kLastFftPlan) {
        largeComplexFft<T, direction>(src, dst, factor, largeCall(spec, work));
        return zvpStsOk;
    }
    withScaled(InterleavedStorer<T, kInverse>{dst}, factor, [&](const auto& storer) ZVPS_INLINE_LAMBDA {
        longTransform(InterleavedLoader<T, kInverse>{src}, storer, dst, src == dst, spec, work);
    });
    return zvpStsOk;
}

template <class T, FftDirection direction>
ZvpStatus splitFft(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor, const FftSpec<T>& spec, T* work) {
    if (spec.order > kLastFftPlan) {
        largeSplitFft<T, direction>(srcRe, srcIm, dstRe, dstIm, factor, largeCall(spec, work));
        return zvpStsOk;
    }
    if constexpr (direction == kFftInverse) {
        return splitFft<T, kFftForward>(srcIm, srcRe, dstIm, dstRe, factor, spec, work);
    } else {
        const SplitLoader<T> loader = {srcRe, srcIm};
        withScaled(SplitStorer<T>{dstRe, dstIm}, factor, [&](const auto& storer) ZVPS_INLINE_LAMBDA {
            if (spec.order > kLastShortFft) {
                longTransform(loader, storer, static_cast<T*>(nullptr), false, spec, work);
            } else {
                withOrder<kFixedFftOrder + 1, kLastShortFft>(spec.order, [&](auto order) ZVPS_INLINE_LAMBDA {
                    shortTransform<T, order>(loader, storer, spec.twiddles);
                });
            }
        });
        return zvpStsOk;
    }
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedComplex(const T* src, T* dst, T factor) {
    smallTransform<T, order, direction == kFftInverse>(PairsLoader<T>{src},
                                                       scaled<scales>(PairsStorer<T>{dst}, factor));
    return zvpStsOk;
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedSplit(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor) {
    if constexpr (direction == kFftInverse) {
        return fixedSplit<T, kFftForward, scales, order>(srcIm, srcRe, dstIm, dstRe, factor);
    } else {
        if constexpr (areInPlanes<T>(order)) {
            transformPlanes<T, (size_t{1} << order) / 4>(srcRe, srcIm,
                                                         scaled<scales>(PlaneStorer<T>{dstRe, dstIm}, factor));
        } else {
            smallTransform<T, order, false>(SplitPairsLoader<T>{srcRe, srcIm},
                                            scaled<scales>(SplitPairsStorer<T>{dstRe, dstIm}, factor));
        }
        return zvpStsOk;
    }
}

} // namespace zvps::ZVPS_LEVEL
