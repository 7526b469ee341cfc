// The complex transforms: fixed routines for small orders, passes for the others.
#pragma once

#include "transforms/fft_large_call.hpp"
#include "transforms/fft_passes.hpp"
#include "transforms/fft_small.hpp"

namespace zvps::ZVPS_LEVEL {

constexpr size_t smaller(size_t a, size_t b) {
    return a < b ? a : b;
}

// ---- Small orders ----

// The twiddle factors of the second pass of 4 R points after a first pass of radix 4.
template <class T, size_t R>
struct SmallTwiddles {
    T values[8 * (R - 1)];

    constexpr SmallTwiddles() : values() {
        for (size_t n = 1; n < R; ++n) {
            for (size_t place = 0; place < 4; ++place) {
                const size_t index = n * fftNumberAt<T>(place, 4) * (8 / R);
                values[8 * (n - 1) + place] = static_cast<T>(cosOf32(index));
                values[8 * (n - 1) + 4 + place] = static_cast<T>(cosOf32(index + 8));
            }
        }
    }
};
template <class T, size_t R>
inline constexpr SmallTwiddles<T, R> kSmallTwiddles;

// One point after the other, in registers.
template <class T>
struct PointLoader {
    const T* re;
    const T* im;
    size_t step;

    template <size_t V, size_t B>
    HWY_INLINE ComplexVec<T, 1> load(size_t i) const {
        const Lanes<T, 1> d;
        return {hn::LoadU(d, re + i * step), hn::LoadU(d, im + i * step)};
    }
};
template <class T>
struct PointStorer {
    T* re;
    T* im;
    size_t step;

    template <size_t V, size_t B>
    HWY_INLINE void store(size_t i, ComplexVec<T, 1> x) const {
        const Lanes<T, 1> d;
        hn::StoreU(x.re, d, re + i * step);
        hn::StoreU(x.im, d, im + i * step);
    }
};

template <class T, size_t N, class Loader, class Storer>
HWY_INLINE void pointwiseTransform(const Loader& loader, const Storer& storer) {
    ComplexVec<T, 1> x[N];
    unroll<N>([&](auto n) ZVPS_INLINE_LAMBDA { x[n] = loader.template load<1, 1>(n); });
    if constexpr (N == 1) {
        storer.template store<1, 1>(0, x[0]);
    } else {
        Butterfly<T, 1, N>::run([&](auto n) ZVPS_INLINE_LAMBDA { return x[n]; },
                                [&](auto k, ComplexVec<T, 1> value)
                                    ZVPS_INLINE_LAMBDA { storer.template store<1, 1>(k, value); });
    }
}

// 4 R points.
template <class T, size_t R, class Loader, class Storer>
HWY_INLINE void smallTransform(const Loader& loader, const Storer& storer) {
    constexpr size_t V = smaller(4, kVectorBytes / sizeof(T));
    alignas(64) T work[8 * R];
    firstPass<T, V, 4, 4>(loader, 0, R, R, BlockStorer<T>{work});
    lastPass<T, V, 4, R>(BlockLoader<T>{work}, storer, 4, kSmallTwiddles<T, R>.values);
}

// ---- Transforms of passes ----

// From the loader to `work`, and from there to the storer, three passes by way of `spare`, whose memory the storer may
// work on.
template <class T, int order, class Loader, class Spare, class Storer>
HWY_INLINE void transform(const Loader& loader, T* work, const Spare& spare, const Storer& storer, const T* twiddles) {
    constexpr FftPlan plan = fftPlan<T>(order);
    constexpr size_t N = size_t{1} << order;
    constexpr size_t R1 = size_t{1} << plan.orders[0];
    constexpr size_t R2 = size_t{1} << plan.orders[1];
    constexpr size_t kColumns = N / R1;
    constexpr size_t B = fftBlock<T>(R1, kColumns);
    constexpr size_t V = smaller(B, kVectorBytes / sizeof(T));
    const BlockStorer<T> working = {work};
    if constexpr (plan.passes <= 3) {
        firstPass<T, V, B, R1>(loader, 0, kColumns, kColumns, working);
        if constexpr (plan.passes == 2) {
            lastPass<T, V, B, R2>(working.loader(), storer, R1, twiddles);
        } else {
            constexpr size_t R3 = N / (R1 * R2);
            middlePass<T, V, B, R2>(working.loader(), spare, R1, R3, twiddles);
            lastPass<T, V, B, R3>(spare.loader(), storer, R1 * R2, twiddles + 2 * R1 * (R2 - 1));
        }
    } else {
        constexpr size_t R3 = size_t{1} << plan.orders[2];
        constexpr size_t R4 = size_t{1} << plan.orders[3];
        alignas(64) T scratch[2 * B * (R1 * R2 < R3 * R4 ? R3 * R4 : R1 * R2)];
        firstPasses<T, V, B, R1, R2>(loader, working, N, scratch, twiddles);
        lastPasses<T, V, B, R3, R4>(working.loader(), storer, R1 * R2, scratch, twiddles + 2 * R1 * (R2 - 1));
    }
}

// ---- Kernels ----

// Whether a transform gets no work buffer, and works on the stack.
template <class T>
constexpr bool worksOnStack(int order) {
    return sizeof(T) == 8 && order <= 12;
}

template <class T, int order, class Loader, class Spare, class Storer>
HWY_INLINE void transformThroughWork(const Loader& loader, T* work, const Spare& spare, const Storer& storer,
                                     const T* twiddles) {
    if constexpr (worksOnStack<T>(order)) {
        alignas(64) T stack[size_t{2} << order];
        transform<T, order>(loader, stack, spare, storer, twiddles);
    } else {
        transform<T, order>(loader, work, spare, storer, twiddles);
    }
}

// From this order on a multiplication by 1 costs nothing that shows.
inline constexpr int kAlwaysScaledOrder = 11;

template <class T, int order, class Loader, class Spare, class Storer>
HWY_NOINLINE void transformOf(const Loader& loader, const Spare& spare, const Storer& storer, T factor,
                              const T* twiddles, T* work) {
    if constexpr (order < kAlwaysScaledOrder) {
        if (factor == T{1}) {
            transformThroughWork<T, order>(loader, work, spare, storer, twiddles);
            return;
        }
    }
    transformThroughWork<T, order>(loader, work, spare, ScaledStorer<T, Storer>{storer, factor}, twiddles);
}

// Calls run(std::integral_constant<int, order>()).
template <int order, class Run>
HWY_INLINE void withOrder(int value, const Run& run) {
    if constexpr (order <= kLastFftPlan) {
        if (value == order) {
            run(std::integral_constant<int, order>());
        } else {
            withOrder<order + 1>(value, run);
        }
    }
}

template <class T>
LargeFftCall<T> largeCall(const FftSpec<T>& spec, T* work) {
    return {spec.order, spec.twiddles, work, static_cast<size_t>(spec.workSize) / sizeof(T)};
}

template <class T, FftDirection direction>
ZvpStatus complexFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work) {
    constexpr bool kInverse = direction == kFftInverse;
    if (spec.order > kLastFftPlan) {
        largeComplexFft<T, direction>(src, dst, factor, largeCall(spec, work));
        return zvpStsOk;
    }
    withOrder<kFixedFftOrder + 1>(spec.order, [&](auto order) ZVPS_INLINE_LAMBDA {
        transformOf<T, order>(InterleavedLoader<T, kInverse>{src}, BlockStorer<T>{dst},
                              InterleavedStorer<T, kInverse>{dst}, factor, spec.twiddles, work);
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
        withOrder<kFixedFftOrder + 1>(spec.order, [&](auto order) ZVPS_INLINE_LAMBDA {
            const SplitStorer<T> result = {dstRe, dstIm};
            transformOf<T, order>(SplitLoader<T>{srcRe, srcIm}, result, result, factor, spec.twiddles, work);
        });
        return zvpStsOk;
    }
}

template <class T, int order, class Points, class Blocks, class PointsOut, class BlocksOut>
HWY_INLINE void fixedTransform(const Points& points, const Blocks& blocks, const PointsOut& pointsOut,
                               const BlocksOut& blocksOut) {
    if constexpr (order <= 3) {
        pointwiseTransform<T, size_t{1} << order>(points, pointsOut);
    } else {
        smallTransform<T, (size_t{1} << order) / 4>(blocks, blocksOut);
    }
}

// The storer itself or scaled.
template <bool scales, class T, class Storer>
HWY_INLINE auto scaled(const Storer& storer, T factor) {
    if constexpr (scales) {
        return ScaledStorer<T, Storer>{storer, factor};
    } else {
        return storer;
    }
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedComplex(const T* src, T* dst, T factor) {
    constexpr bool kInverse = direction == kFftInverse;
    const InterleavedLoader<T, kInverse> loader = {src};
    const auto storer = scaled<scales>(InterleavedStorer<T, kInverse>{dst}, factor);
    if constexpr (isInRegisters<T>(order)) {
        transformInRegisters<T, order>(InterleavedFours<const T, kInverse>{src},
                                       scaled<scales>(InterleavedFours<T, kInverse>{dst}, factor), loader, storer);
    } else {
        fixedTransform<T, order>(PointLoader<T>{src + kInverse, src + !kInverse, 2}, loader,
                                 scaled<scales>(PointStorer<T>{dst + kInverse, dst + !kInverse, 2}, factor), storer);
    }
    return zvpStsOk;
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedSplit(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor) {
    if constexpr (direction == kFftInverse) {
        return fixedSplit<T, kFftForward, scales, order>(srcIm, srcRe, dstIm, dstRe, factor);
    } else {
        const SplitLoader<T> loader = {srcRe, srcIm};
        const auto storer = scaled<scales>(SplitStorer<T>{dstRe, dstIm}, factor);
        if constexpr (isInRegisters<T>(order)) {
            transformInRegisters<T, order>(SplitFours<const T>{srcRe, srcIm},
                                           scaled<scales>(SplitFours<T>{dstRe, dstIm}, factor), loader, storer);
        } else {
            fixedTransform<T, order>(PointLoader<T>{srcRe, srcIm, 1}, loader,
                                     scaled<scales>(PointStorer<T>{dstRe, dstIm, 1}, factor), storer);
        }
        return zvpStsOk;
    }
}

} // namespace zvps::ZVPS_LEVEL
