// Correlation and convolution: checks, and whether sums are computed directly or by transforms.
#include "zvps/correlation.h"

#include "core/checks.hpp"
#include "correlation/direct.hpp"
#include "correlation/transformed.hpp"
#include "stats/scaling.hpp"

namespace zvps {
namespace {

template <class T>
constexpr bool kIsComplex = !std::is_same_v<T, Part<T>>;

// ---- Any sums ----

// `mayTransform`: the operands are so long that transforms are allowed; then the cost decides.
template <class T, class Results>
ZvpStatus computeSums(const Sums<T>& sums, bool mayTransform, const Results& results, int mostThreads) {
    if (mayTransform) {
        const SumSections sections = cheapestSections<typename Results::Element>(sums);
        if (sections.order == 0 || sections.cost < sums.products()) {
            return sumByTransforms(sums, sections, results, mostThreads);
        }
    }
    if constexpr (std::is_same_v<T, Zvp16s>) {
        if (areFew(sums)) {
            sumOneByOne(sums, results);
            return zvpStsOk;
        }
    }
    DirectSums<T, Results>(sums, results).compute();
    return zvpStsOk;
}

template <class T>
ZvpStatus computeFloats(const Sums<T>& sums, bool mayTransform, T* dst, int mostThreads = 1) {
    return computeSums(sums.shorterFirst(), mayTransform, FloatResults<T>{dst}, mostThreads);
}

// Of integers, by parts of the taps for which rounding errors of transforms stay far below one half.
template <class Finish>
ZvpStatus computeIntegers(const Sums<Zvp16s>& unordered, bool mayTransform, const Finish& finish, int mostThreads = 1) {
    constexpr int64_t kMostTaps = 65536;
    const Sums<Zvp16s> sums = unordered.shorterFirst();
    const int64_t taps = sums.taps.length;
    if (taps <= kMostTaps) return computeSums(sums, mayTransform, IntegerResults<Finish>{finish}, mostThreads);
    auto* const totals = static_cast<Zvp64s*>(zvpMalloc(sums.count * static_cast<int64_t>(sizeof(Zvp64s))));
    if (totals == nullptr) return zvpStsNoMemory;
    ZvpStatus status = zvpStsOk;
    for (int64_t i = 0; i < taps && status == zvpStsOk; i += kMostTaps) {
        const int64_t n = std::min(kMostTaps, taps - i);
        status = computeSums(sums.ofTaps(i, n), mayTransform,
                             IntegerResults<Finish>{finish, totals, i == 0, i + n == taps}, mostThreads);
    }
    zvpFree(totals);
    return status;
}

// What becomes of exact sums, which come in double precision or as integers.

struct Scaled16s {
    Zvp16s* dst;
    int scaleFactor;

    void operator()(int64_t k, const Zvp64f* sums, int64_t n) const {
        fromFloats(sums, dst + k, static_cast<int>(n), scaleFactor);
    }
    void operator()(int64_t k, const Zvp64s* sums, int64_t n) const {
        for (int64_t i = 0; i < n; ++i)
            dst[k + i] = scaled<Zvp16s>(sums[i], scaleFactor);
    }
};

struct Unscaled64s {
    Zvp64s* dst;

    template <class Sum>
    void operator()(int64_t k, const Sum* sums, int64_t n) const {
        std::transform(sums, sums + n, dst + k, [](Sum sum) { return static_cast<Zvp64s>(sum); });
    }
};

// sum / divisor * 2^-scaleFactor, rounded once.
Zvp16s scaledQuotient(int64_t sum, int64_t divisor, int scaleFactor) {
    __extension__ typedef __int128 Wide;
    const auto rounded = [](auto dividend, auto by) {
        const auto quotient = dividend / by;
        const auto rest = dividend % by < 0 ? -(dividend % by) : dividend % by;
        const bool up = rest > by - rest || (rest == by - rest && quotient % 2 != 0);
        return up ? quotient + (dividend < 0 ? -1 : 1) : quotient;
    };
    constexpr int kNarrow = 31; // the divisor times 2^31 still fits
    constexpr int kMost = 64;   // beyond, the sum has become 0 or a limit
    if (scaleFactor >= 0 && scaleFactor <= kNarrow) return saturated<Zvp16s>(rounded(sum, divisor << scaleFactor));
    if (scaleFactor > kMost) return 0;
    const Wide dividend = scaleFactor < 0 ? Wide{sum} * (Wide{1} << -std::max(scaleFactor, -kMost)) : Wide{sum};
    const Wide quotient = rounded(dividend, scaleFactor < 0 ? Wide{divisor} : Wide{divisor} << scaleFactor);
    using Limits = std::numeric_limits<Zvp16s>;
    return static_cast<Zvp16s>(std::clamp<Wide>(quotient, Limits::min(), Limits::max()));
}

// The divisor of sum k is length - slope * k.
struct Quotients16s {
    Zvp16s* dst;
    int scaleFactor;
    int64_t length;
    int64_t slope;

    template <class Sum>
    void operator()(int64_t k, const Sum* sums, int64_t n) const {
        for (int64_t i = 0; i < n; ++i) {
            dst[k + i] = scaledQuotient(static_cast<int64_t>(sums[i]), length - slope * (k + i), scaleFactor);
        }
    }
};

// ---- Correlation ----

template <class T>
Sums<T> correlation(const T* src1, int src1Len, const T* src2, int src2Len, int64_t lag, int64_t count) {
    return {{src1, src1Len, false, kIsComplex<T>}, {src2, src2Len}, lag, count};
}

template <class T, class Compute>
ZvpStatus autoCorrelation(const T* src, int srcLen, T* dst, int dstLen, const Compute& compute) {
    if (const ZvpStatus status = checkVectors(std::min(srcLen, dstLen), src, dst)) return status;
    constexpr int kTransforms = !kIsComplex<T> ? 856 : sizeof(Part<T>) == 4 ? 152 : 368;
    const int lags = std::min(srcLen, dstLen);
    std::fill(dst + lags, dst + dstLen, T{});
    return compute(correlation(src, srcLen, src, srcLen, 0, lags), lags >= kTransforms);
}

template <class T>
ZvpStatus autoCorrelation(const T* src, int srcLen, T* dst, int dstLen) {
    return autoCorrelation(src, srcLen, dst, dstLen, [dst](const Sums<T>& sums, bool mayTransform) {
        return computeFloats(sums, mayTransform, dst);
    });
}

enum class Norm { biased, unbiased };

template <class T>
ZvpStatus normedAutoCorrelation(Norm norm, const T* src, int srcLen, T* dst, int dstLen) {
    if (const ZvpStatus status = autoCorrelation(src, srcLen, dst, dstLen)) return status;
    constexpr int kParts = sizeof(T) / sizeof(Part<T>);
    using Real = Part<T>;
    const Real reciprocal = Real{1} / static_cast<Real>(srcLen);
    Real* p = parts(dst);
    for (int k = 0; k < std::min(srcLen, dstLen); ++k) {
        for (int part = 0; part < kParts; ++part, ++p)
            *p = norm == Norm::biased ? *p * reciprocal : *p / static_cast<Real>(srcLen - k);
    }
    return zvpStsOk;
}

template <class Finish>
ZvpStatus autoCorrelation16s(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, const Finish& finish) {
    return autoCorrelation(src, srcLen, dst, dstLen, [&](const Sums<Zvp16s>& sums, bool mayTransform) {
        return computeIntegers(sums, mayTransform, finish);
    });
}

// compute(sums, first, mayTransform) for the lags at which the operands meet, from result `first` on.
template <class T, class D, class Compute>
ZvpStatus crossCorrelation(const T* src1, int src1Len, const T* src2, int src2Len, D* dst, int dstLen, int lowLag,
                           const Compute& compute) {
    if (const ZvpStatus status = checkVectors(std::min({src1Len, src2Len, dstLen}), src1, src2, dst)) return status;
    const int64_t first = std::clamp<int64_t>(1 - int64_t{src1Len} - lowLag, 0, dstLen);
    const int64_t end = std::clamp<int64_t>(int64_t{src2Len} - lowLag, first, dstLen);
    std::fill(dst, dst + first, D{});
    std::fill(dst + end, dst + dstLen, D{});
    const int64_t count = end - first;
    if (count == 0) return zvpStsOk;
    constexpr int64_t kTransforms = sizeof(Part<T>) == 8 ? 512 : kIsComplex<T> ? 256 : 384;
    const auto [least, most] = std::minmax(src1Len, src2Len);
    const float cost = static_cast<float>(count) * static_cast<float>(least) / static_cast<float>(most);
    return compute(correlation(src1, src1Len, src2, src2Len, lowLag + first, count), dst + first,
                   static_cast<int64_t>(cost) >= kTransforms);
}

template <class T>
ZvpStatus crossCorrelation(const T* src1, int src1Len, const T* src2, int src2Len, T* dst, int dstLen, int lowLag) {
    return crossCorrelation(
        src1, src1Len, src2, src2Len, dst, dstLen, lowLag,
        [](const Sums<T>& sums, T* results, bool mayTransform) { return computeFloats(sums, mayTransform, results); });
}

// ---- Convolution ----

// From which results' number on, and with how many elements of the shorter source, transforms are allowed.
constexpr int64_t kConvTransforms = 512;
constexpr int kConvTransformsShorter = 64;
// Sections of more results than this are shared among threads.
constexpr int64_t kConvForks = 4096;

template <class T, class Compute>
ZvpStatus convolution(const T* src1, int src1Len, const T* src2, int src2Len, int64_t first, int64_t count,
                      const Compute& compute) {
    const bool mayTransform =
        int64_t{src1Len} + src2Len - 1 >= kConvTransforms && std::min(src1Len, src2Len) >= kConvTransformsShorter;
    return compute(Sums<T>{Operand<T>{src1, src1Len}.reversed(), {src2, src2Len}, first + 1 - src1Len, count},
                   mayTransform);
}

template <class T, class Compute>
ZvpStatus wholeConvolution(const T* src1, int src1Len, const T* src2, int src2Len, const T* dst,
                           const Compute& compute) {
    if (const ZvpStatus status = checkVectors(std::min(src1Len, src2Len), src1, src2, dst)) return status;
    const int64_t count = int64_t{src1Len} + src2Len - 1;
    const int mostThreads = count > kConvForks ? ownGetNumThreads() : 1;
    return convolution(src1, src1Len, src2, src2Len, 0, count, [&](const Sums<T>& sums, bool mayTransform) {
        return compute(sums, mayTransform, mostThreads);
    });
}

template <class T>
ZvpStatus wholeConvolution(const T* src1, int src1Len, const T* src2, int src2Len, T* dst) {
    return wholeConvolution(src1, src1Len, src2, src2Len, dst,
                            [dst](const Sums<T>& sums, bool mayTransform, int mostThreads) {
                                return computeFloats(sums, mayTransform, dst, mostThreads);
                            });
}

ZvpStatus partialConvolution(const Zvp32f* src1, int src1Len, const Zvp32f* src2, int src2Len, Zvp32f* dst, int dstLen,
                             int bias) {
    if (const ZvpStatus status = checkVectors(std::min({src1Len, src2Len, dstLen}), src1, src2, dst)) return status;
    const int64_t length = int64_t{src1Len} + src2Len - 1;
    const int64_t first = std::clamp<int64_t>(-int64_t{bias}, 0, dstLen);
    const int64_t end = std::clamp<int64_t>(length - bias, first, dstLen);
    std::fill(dst, dst + first, 0.0F);
    std::fill(dst + end, dst + dstLen, 0.0F);
    if (first == end) return zvpStsOk;
    return convolution(
        src1, src1Len, src2, src2Len, bias + first, end - first,
        [&](const Sums<Zvp32f>& sums, bool mayTransform) { return computeFloats(sums, mayTransform, dst + first); });
}

// store(k, sum) for the sums of n products of real elements and perhaps complex ones.
template <int n, class Sum, class A, class B, class Store>
ZvpStatus cyclicConvolution(const A* src1, const B* src2, const void* dst, Store store) {
    if (src1 == nullptr || src2 == nullptr || dst == nullptr) return zvpStsNullPtr;
    constexpr int kParts = sizeof(B) / sizeof(Part<B>);
    Sum sums[n * kParts] = {};
    Sum twice[2 * n * kParts];
    for (int i = 0; i < 2 * n * kParts; ++i)
        twice[i] = parts(src2)[i % (n * kParts)];
    for (int i = 0; i < n; ++i) {
        for (int k = 0; k < n * kParts; ++k)
            sums[k] += static_cast<Sum>(src1[i]) * twice[(n - i) * kParts + k];
    }
    for (int k = 0; k < n * kParts; ++k)
        store(k, sums[k]);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_CORRELATIONS(TYPE)                                                                                        \
    ZvpStatus zvpsAutoCorr_##TYPE(const Zvp##TYPE* src, int srcLen, Zvp##TYPE* dst, int dstLen) {                      \
        return zvps::autoCorrelation(src, srcLen, dst, dstLen);                                                        \
    }                                                                                                                  \
    ZvpStatus zvpsAutoCorr_NormA_##TYPE(const Zvp##TYPE* src, int srcLen, Zvp##TYPE* dst, int dstLen) {                \
        return zvps::normedAutoCorrelation(zvps::Norm::biased, src, srcLen, dst, dstLen);                              \
    }                                                                                                                  \
    ZvpStatus zvpsAutoCorr_NormB_##TYPE(const Zvp##TYPE* src, int srcLen, Zvp##TYPE* dst, int dstLen) {                \
        return zvps::normedAutoCorrelation(zvps::Norm::unbiased, src, srcLen, dst, dstLen);                            \
    }                                                                                                                  \
    ZvpStatus zvpsCrossCorr_##TYPE(const Zvp##TYPE* src1, int src1Len, const Zvp##TYPE* src2, int src2Len,             \
                                   Zvp##TYPE* dst, int dstLen, int lowLag) {                                           \
        return zvps::crossCorrelation(src1, src1Len, src2, src2Len, dst, dstLen, lowLag);                              \
    }
#define ZVPS_CONVOLUTION(TYPE)                                                                                         \
    ZvpStatus zvpsConv_##TYPE(const Zvp##TYPE* src1, int src1Len, const Zvp##TYPE* src2, int src2Len,                  \
                              Zvp##TYPE* dst) {                                                                        \
        return zvps::wholeConvolution(src1, src1Len, src2, src2Len, dst);                                              \
    }

ZVPS_CORRELATIONS(32f)
ZVPS_CORRELATIONS(32fc)
ZVPS_CORRELATIONS(64f)
ZVPS_CORRELATIONS(64fc)
ZVPS_CONVOLUTION(32f)
ZVPS_CONVOLUTION(64f)

ZvpStatus zvpsAutoCorr_16s_Sfs(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, int scaleFactor) {
    return zvps::autoCorrelation16s(src, srcLen, dst, dstLen, zvps::Scaled16s{dst, scaleFactor});
}
ZvpStatus zvpsAutoCorr_NormA_16s_Sfs(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, int scaleFactor) {
    return zvps::autoCorrelation16s(src, srcLen, dst, dstLen, zvps::Quotients16s{dst, scaleFactor, srcLen, 0});
}
ZvpStatus zvpsAutoCorr_NormB_16s_Sfs(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, int scaleFactor) {
    return zvps::autoCorrelation16s(src, srcLen, dst, dstLen, zvps::Quotients16s{dst, scaleFactor, srcLen, 1});
}
ZvpStatus zvpsCrossCorr_16s_Sfs(const Zvp16s* src1, int src1Len, const Zvp16s* src2, int src2Len, Zvp16s* dst,
                                int dstLen, int lowLag, int scaleFactor) {
    return zvps::crossCorrelation(
        src1, src1Len, src2, src2Len, dst, dstLen, lowLag, [=](const auto& sums, Zvp16s* results, bool mayTransform) {
            return zvps::computeIntegers(sums, mayTransform, zvps::Scaled16s{results, scaleFactor});
        });
}
ZvpStatus zvpsCrossCorr_16s64s(const Zvp16s* src1, int src1Len, const Zvp16s* src2, int src2Len, Zvp64s* dst,
                               int dstLen, int lowLag) {
    return zvps::crossCorrelation(src1, src1Len, src2, src2Len, dst, dstLen, lowLag,
                                  [](const auto& sums, Zvp64s* results, bool mayTransform) {
                                      return zvps::computeIntegers(sums, mayTransform, zvps::Unscaled64s{results});
                                  });
}
ZvpStatus zvpsConv_16s_Sfs(const Zvp16s* src1, int src1Len, const Zvp16s* src2, int src2Len, Zvp16s* dst,
                           int scaleFactor) {
    return zvps::wholeConvolution(
        src1, src1Len, src2, src2Len, dst, [=](const auto& sums, bool mayTransform, int mostThreads) {
            return zvps::computeIntegers(sums, mayTransform, zvps::Scaled16s{dst, scaleFactor}, mostThreads);
        });
}
ZvpStatus zvpsConvBiased_32f(const Zvp32f* src1, int src1Len, const Zvp32f* src2, int src2Len, Zvp32f* dst, int dstLen,
                             int bias) {
    return zvps::partialConvolution(src1, src1Len, src2, src2Len, dst, dstLen, bias);
}

ZvpStatus zvpsConvCyclic4x4_32f32fc(const Zvp32f* src1, const Zvp32fc* src2, Zvp32fc* dst) {
    return zvps::cyclicConvolution<4, Zvp32f>(src1, src2, dst, [dst](int k, Zvp32f sum) { zvps::parts(dst)[k] = sum; });
}
ZvpStatus zvpsConvCyclic8x8_32f(const Zvp32f* src1, const Zvp32f* src2, Zvp32f* dst) {
    return zvps::cyclicConvolution<8, Zvp32f>(src1, src2, dst, [dst](int k, Zvp32f sum) { dst[k] = sum; });
}
ZvpStatus zvpsConvCyclic8x8_16s_Sfs(const Zvp16s* src1, const Zvp16s* src2, Zvp16s* dst, int scaleFactor) {
    return zvps::cyclicConvolution<8, Zvp64s>(
        src1, src2, dst, [=](int k, Zvp64s sum) { dst[k] = zvps::scaled<Zvp16s>(sum, scaleFactor); });
}
