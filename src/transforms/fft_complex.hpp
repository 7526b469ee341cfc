// The complex transforms: fixed routines for small orders, passes for the others.
#pragma once

#include "transforms/fft_large_call.hpp"
#include "transforms/fft_passes.hpp"

namespace zvps::ZVPS_LEVEL {

constexpr size_t smaller(size_t a, size_t b) {
    return a < b ? a : b;
}

// ---- Small orders ----

// The twiddle factors of a first pass of radix 4 over R columns.
template <class T, size_t R>
struct SmallTwiddles {
    T values[6 * R];

    constexpr SmallTwiddles() : values() {
        T* p = values;
        for (size_t start = 0; start < R; start += 4) {
            for (size_t k = 1; k < 4; ++k, p += 8) {
                for (size_t place = 0; place < 4; ++place) {
                    const size_t index = (start + fftNumberAt<T>(place, 4)) * k * (8 / R);
                    p[place] = static_cast<T>(cosOf32(index));
                    p[4 + place] = static_cast<T>(cosOf32(index + 8));
                }
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
    firstPass<T, V, 4, 4, 4>(loader, 0, R, R, BlockStorer<T>{work}, kSmallTwiddles<T, R>.values);
    lastPass<T, V, 4, R>(BlockLoader<T>{work}, storer, 4);
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
    constexpr size_t B = fftBlock<T>(R1);
    constexpr size_t V = smaller(B, kVectorBytes / sizeof(T));
    const BlockStorer<T> working = {work};
    if constexpr (plan.passes <= 3) {
        constexpr size_t kColumns = N / R1;
        constexpr size_t kColumnBlock = fftBlock<T>(kColumns);
        firstPass<T, smaller(V, kColumnBlock), B, R1, kColumnBlock>(loader, 0, kColumns, kColumns, working, twiddles);
        if constexpr (plan.passes == 2) {
            lastPass<T, V, B, R2>(working.loader(), storer, R1);
        } else {
            constexpr size_t R3 = N / (R1 * R2);
            middlePass<T, V, B, R2>(working.loader(), spare, R1, R3, twiddles + 2 * (N - kColumns));
            lastPass<T, V, B, R3>(spare.loader(), storer, R1 * R2);
        }
    } else {
        constexpr size_t R3 = size_t{1} << plan.orders[2];
        constexpr size_t R4 = size_t{1} << plan.orders[3];
        alignas(64) T scratch[2 * B * (R1 * R2 < R3 * R4 ? R3 * R4 : R1 * R2)];
        firstPasses<T, V, R1, R2>(loader, working, N, scratch, twiddles);
        lastPasses<T, V, B, R3, R4>(working.loader(), storer, R1 * R2, scratch, twiddles + 2 * (N - N / (R1 * R2)));
    }
}

// ---- Kernels ----

// Whether a transform gets no work buffer, and works on the stack.
template <class T>
constexpr bool worksOnStack(int order) {
    return sizeof(T) == 8 && order <= 12;
}

// storer(scaled) for both values of scaled.
template <class T, class Storer, class Run>
HWY_INLINE void withFactor(const Storer& storer, T factor, const Run& run) {
    if (factor == T{1}) {
        run(storer);
    } else {
        run(ScaledStorer<T, Storer>{storer, factor});
    }
}

template <class T, int order, class Loader, class Spare, class Storer>
HWY_NOINLINE void transformOf(const Loader& loader, const Spare& spare, const Storer& storer, T factor,
                              const T* twiddles, T* work) {
    withFactor<T>(storer, factor, [&](const auto& scaled) ZVPS_INLINE_LAMBDA {
        if constexpr (worksOnStack<T>(order)) {
            alignas(64) T stack[size_t{2} << order];
            transform<T, order>(loader, stack, spare, scaled, twiddles);
        } else {
            transform<T, order>(loader, work, spare, scaled, twiddles);
        }
    });
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

template <class T, int order, bool scales, class Points, class Blocks, class PointsOut, class BlocksOut>
HWY_INLINE void fixedTransform(const Points& points, const Blocks& blocks, const PointsOut& pointsOut,
                               const BlocksOut& blocksOut, T factor) {
    const auto run = [&](const auto& scaled, const auto& blocksScaled) ZVPS_INLINE_LAMBDA {
        if constexpr (order <= 3) {
            pointwiseTransform<T, size_t{1} << order>(points, scaled);
        } else {
            smallTransform<T, (size_t{1} << order) / 4>(blocks, blocksScaled);
        }
    };
    if constexpr (scales) {
        run(ScaledStorer<T, PointsOut>{pointsOut, factor}, ScaledStorer<T, BlocksOut>{blocksOut, factor});
    } else {
        run(pointsOut, blocksOut);
    }
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedComplex(const T* src, T* dst, T factor) {
    constexpr bool kInverse = direction == kFftInverse;
    fixedTransform<T, order, scales>(
        PointLoader<T>{src + kInverse, src + !kInverse, 2}, InterleavedLoader<T, kInverse>{src},
        PointStorer<T>{dst + kInverse, dst + !kInverse, 2}, InterleavedStorer<T, kInverse>{dst}, factor);
    return zvpStsOk;
}

template <class T, FftDirection direction, bool scales, int order>
ZvpStatus fixedSplit(const T* srcRe, const T* srcIm, T* dstRe, T* dstIm, T factor) {
    if constexpr (direction == kFftInverse) {
        return fixedSplit<T, kFftForward, scales, order>(srcIm, srcRe, dstIm, dstRe, factor);
    } else {
        fixedTransform<T, order, scales>(PointLoader<T>{srcRe, srcIm, 1}, SplitLoader<T>{srcRe, srcIm},
                                         PointStorer<T>{dstRe, dstIm, 1}, SplitStorer<T>{dstRe, dstIm}, factor);
        return zvpStsOk;
    }
}

} // namespace zvps::ZVPS_LEVEL
