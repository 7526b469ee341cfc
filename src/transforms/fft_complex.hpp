// The complex transforms: fixed routines for small orders, passes for the others.
#pragma once

#include "transforms/fft.table.hpp"
#include "transforms/fft_passes.hpp"
#include "transforms/fft_plain.hpp"

namespace zvps::ZVPS_LEVEL {

constexpr size_t smaller(size_t a, size_t b) {
    return a < b ? a : b;
}

// ---- Small orders ----

// cos(2 pi k / 32) for k = 0..8
inline constexpr double kCosines[] = {1.0,
                                      0.98078528040323044913,
                                      0.92387953251128675613,
                                      0.83146961230254523708,
                                      0.70710678118654752440,
                                      0.55557023301960222474,
                                      0.38268343236508977173,
                                      0.19509032201612826785,
                                      0.0};

constexpr double cosOf32(size_t k) {
    k %= 32;
    return k <= 8 ? kCosines[k] : k <= 16 ? -kCosines[16 - k] : cosOf32(32 - k);
}

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
    firstPass<T, V, 4, 4>(loader, BlockStorer<T>{work}, R);
    lastPass<T, V, 4, R>(BlockLoader<T>{work}, storer, 4, kSmallTwiddles<T, R>.values);
}

// ---- Transforms of passes ----

// The passes from number `pass` on, by turns from `from` to `to`; the last may be in place.
template <class T, int order, int pass, int reached, class From, class To, class Storer>
HWY_INLINE void runPasses(const From& from, const To& to, const Storer& storer, const T* twiddles) {
    constexpr FftPlan plan = fftPlan<T>(order);
    constexpr size_t B = fftBlock<T>(plan.orders[0]);
    constexpr size_t V = smaller(B, kVectorBytes / sizeof(T));
    constexpr size_t R = size_t{1} << plan.orders[pass];
    constexpr size_t s = size_t{1} << reached;
    if constexpr (pass == plan.passes - 1) {
        lastPass<T, V, B, R>(from.loader(), storer, s, twiddles);
    } else {
        constexpr int next = reached + plan.orders[pass];
        middlePass<T, V, B, R>(from.loader(), to, s, size_t{1} << (order - next), twiddles);
        runPasses<T, order, pass + 1, next>(to, from, storer, twiddles + 2 * s * (R - 1));
    }
}

// From the loader to `work`, then by turns to `spare` and `work`, and from either to the storer, which may work on the
// memory of `spare`.
template <class T, int order, class Loader, class Work, class Spare, class Storer>
HWY_INLINE void transform(const Loader& loader, const Work& work, const Spare& spare, const Storer& storer,
                          const T* twiddles) {
    constexpr FftPlan plan = fftPlan<T>(order);
    constexpr size_t B = fftBlock<T>(plan.orders[0]);
    constexpr size_t R = size_t{1} << plan.orders[0];
    constexpr size_t kColumns = (size_t{1} << order) / R;
    constexpr size_t V = smaller(smaller(B, kColumns), kVectorBytes / sizeof(T));
    firstPass<T, V, B, R>(loader, work, kColumns);
    runPasses<T, order, 1, plan.orders[0]>(work, spare, storer, twiddles);
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
            transform<T, order>(loader, BlockStorer<T>{stack}, spare, scaled, twiddles);
        } else {
            transform<T, order>(loader, BlockStorer<T>{work}, spare, scaled, twiddles);
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

template <class T, FftDirection direction>
ZvpStatus complexFft(const T* src, T* dst, T factor, const FftSpec<T>& spec, T* work) {
    constexpr bool kInverse = direction == kFftInverse;
    if (spec.order > kLastFftPlan) {
        plainFft<direction, T>({src, src + 1, 2}, {dst, dst + 1, 2}, spec.order, {spec.twiddles, 1}, factor);
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
        plainFft<direction, T>({srcRe, srcIm, 1}, {dstRe, dstIm, 1}, spec.order, {spec.twiddles, 1}, factor);
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
