// Sums, means, standard deviations, counts.
#include "zvps/statistics.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "stats/scaling.hpp"
#include "stats/totals.table.hpp"

#include <type_traits>

namespace zvps {
namespace {

size_t count(int len) {
    return static_cast<size_t>(len);
}

template <class T>
inline constexpr bool isComplex = std::is_class_v<T>;

// ---- Sums and means ----

// What finish() makes of the sum of the elements, of both parts by themselves.
template <class Kernel, class T, class R, class Finish>
ZvpStatus reduce(Kernel kernel, const T* src, int len, R* result, Finish finish) {
    if (const ZvpStatus status = checkVectors(len, src, result)) return status;
    const auto sum = kernel(src, count(len));
    if constexpr (isComplex<R>) {
        *result = {finish(sum.re), finish(sum.im)};
    } else {
        *result = finish(sum);
    }
    return zvpStsOk;
}

template <class R, class Kernel, class T>
ZvpStatus sumSfs(Kernel kernel, const T* src, int len, R* result, int scaleFactor) {
    return reduce(kernel, src, len, result, [=](int64_t sum) {
        if constexpr (isComplex<R>) {
            return scaled<decltype(R::re)>(sum, scaleFactor);
        } else {
            return scaled<R>(sum, scaleFactor);
        }
    });
}

template <class Part, class Kernel, class T, class R>
ZvpStatus sum(Kernel kernel, const T* src, int len, R* result) {
    return reduce(kernel, src, len, result, [](double sum) { return static_cast<Part>(sum); });
}

template <class Part, class Kernel, class T, class R>
ZvpStatus mean(Kernel kernel, const T* src, int len, R* result) {
    return reduce(kernel, src, len, result, [=](double sum) { return static_cast<Part>(sum / len); });
}

// To nearest, ties to even: symmetrically about 0. |dividend| < 2^63.
int64_t roundedQuotient(int64_t dividend, int64_t divisor) {
    const int64_t magnitude = dividend < 0 ? -dividend : dividend;
    int64_t quotient = magnitude / divisor;
    const int64_t rest = magnitude % divisor;
    if (2 * rest > divisor || (2 * rest == divisor && quotient % 2 != 0)) ++quotient;
    return dividend < 0 ? -quotient : quotient;
}

// Rounds to an integer mean before it scales, unless the sum has room to be scaled up first.
int32_t scaledMean(int64_t sum, int len, int scaleFactor) {
    if (scaleFactor < 0 && scaleFactor >= -31 && sum == saturated<int32_t>(sum)) {
        return saturated<int32_t>(roundedQuotient(sum * (int64_t{1} << -scaleFactor), len));
    }
    return scaled<int32_t>(roundedQuotient(sum, len), scaleFactor);
}

template <class Part, class Kernel, class T, class R>
ZvpStatus meanSfs(Kernel kernel, const T* src, int len, R* result, int scaleFactor) {
    return reduce(kernel, src, len, result,
                  [=](int64_t sum) { return saturated<Part>(scaledMean(sum, len, scaleFactor)); });
}

// ---- Standard deviations ----

struct Deviation {
    double mean;
    double stdDev;
};

Deviation deviation(const Moments<double>& moments, int len) {
    const double n = len;
    const double difference = n * moments.squares - moments.sum * moments.sum;
    // Rounding can make it negative.
    const double squares = difference < 0 ? 0 : difference;
    return {moments.sum / n, std::sqrt(squares / (n * (n - 1)))};
}

Deviation deviation(const Moments<int64_t>& moments, int len) {
    __extension__ typedef __int128 Wide;
    const double n = len;
    const Wide squares = Wide{len} * moments.squares - Wide{moments.sum} * moments.sum;
    return {static_cast<double>(moments.sum) / n, std::sqrt(static_cast<double>(squares) / (n * (n - 1)))};
}

// Null pointers, then lengths below 2.
template <class... Pointers>
ZvpStatus checkDeviation(int len, Pointers... pointers) {
    if (const ZvpStatus status = checkVectors(len, pointers...)) return status;
    return len < 2 ? zvpStsBadSize : zvpStsOk;
}

template <class R>
R finished(double value) {
    return static_cast<R>(value);
}
template <class R>
R finished(double value, int scaleFactor) {
    return saturated<R>(scaledToInteger(value, scaleOf(scaleFactor)));
}

template <class Kernel, class T, class R, class... ScaleFactor>
ZvpStatus stdDev(Kernel kernel, const T* src, int len, R* result, ScaleFactor... scaleFactor) {
    if (const ZvpStatus status = checkDeviation(len, src, result)) return status;
    *result = finished<R>(deviation(kernel(src, count(len)), len).stdDev, scaleFactor...);
    return zvpStsOk;
}

template <class Kernel, class T, class R, class... ScaleFactor>
ZvpStatus meanStdDev(Kernel kernel, const T* src, int len, R* mean, R* stdDev, ScaleFactor... scaleFactor) {
    if (const ZvpStatus status = checkDeviation(len, src, mean, stdDev)) return status;
    const Deviation found = deviation(kernel(src, count(len)), len);
    *mean = finished<R>(found.mean, scaleFactor...);
    *stdDev = finished<R>(found.stdDev, scaleFactor...);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries: one line each ----

#define ZVPS_TOTAL_SFS(NAME, TYPES, SRC, DST, function, slot)                                                          \
    ZvpStatus zvps##NAME##_##TYPES##_Sfs(const Zvp##SRC* pSrc, int len, Zvp##DST* p##NAME, int scaleFactor) {          \
        return zvps::function(zvps::kernels().totals->slot, pSrc, len, p##NAME, scaleFactor);                          \
    }
#define ZVPS_TOTAL(NAME, TYPE, function, slot)                                                                         \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* p##NAME) {                                \
        return zvps::function(zvps::kernels().totals->slot, pSrc, len, p##NAME);                                       \
    }
// One summation serves all hints.
#define ZVPS_TOTAL_HINT(NAME, TYPE, function, slot)                                                                    \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* p##NAME, ZvpHintAlgorithm) {              \
        return zvps::function(zvps::kernels().totals->slot, pSrc, len, p##NAME);                                       \
    }
#define ZVPS_MEAN_STD_DEV_SFS(TYPES, DST)                                                                              \
    ZvpStatus zvpsMeanStdDev_##TYPES##_Sfs(const Zvp16s* pSrc, int len, Zvp##DST* pMean, Zvp##DST* pStdDev,            \
                                           int scaleFactor) {                                                          \
        return zvps::meanStdDev(zvps::kernels().totals->moments_16s, pSrc, len, pMean, pStdDev, scaleFactor);          \
    }
#define ZVPS_MEAN_STD_DEV(TYPE)                                                                                        \
    ZvpStatus zvpsMeanStdDev_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##TYPE* pMean, Zvp##TYPE* pStdDev) {            \
        return zvps::meanStdDev(zvps::kernels().totals->moments_##TYPE, pSrc, len, pMean, pStdDev);                    \
    }

ZVPS_TOTAL_SFS(Sum, 16s32s, 16s, 32s, sumSfs, sum_16s)
ZVPS_TOTAL_SFS(Sum, 16s, 16s, 16s, sumSfs, sum_16s)
ZVPS_TOTAL_SFS(Sum, 16sc32sc, 16sc, 32sc, sumSfs, sum_16sc)
ZVPS_TOTAL_SFS(Sum, 16sc, 16sc, 16sc, sumSfs, sum_16sc)
ZVPS_TOTAL_SFS(Sum, 32s, 32s, 32s, sumSfs, sum_32s)
ZVPS_TOTAL_HINT(Sum, 32f, sum<float>, sum_32f)
ZVPS_TOTAL_HINT(Sum, 32fc, sum<float>, sum_32fc)
ZVPS_TOTAL(Sum, 64f, sum<double>, sum_64f)
ZVPS_TOTAL(Sum, 64fc, sum<double>, sum_64fc)

ZVPS_TOTAL_SFS(Mean, 16s, 16s, 16s, meanSfs<Zvp16s>, sum_16s)
ZVPS_TOTAL_SFS(Mean, 16sc, 16sc, 16sc, meanSfs<Zvp16s>, sum_16sc)
ZVPS_TOTAL_SFS(Mean, 32s, 32s, 32s, meanSfs<Zvp32s>, sum_32s)
ZVPS_TOTAL_HINT(Mean, 32f, mean<float>, sum_32f)
ZVPS_TOTAL_HINT(Mean, 32fc, mean<float>, sum_32fc)
ZVPS_TOTAL(Mean, 64f, mean<double>, sum_64f)
ZVPS_TOTAL(Mean, 64fc, mean<double>, sum_64fc)

ZVPS_TOTAL_SFS(StdDev, 16s32s, 16s, 32s, stdDev, moments_16s)
ZVPS_TOTAL_SFS(StdDev, 16s, 16s, 16s, stdDev, moments_16s)
ZVPS_TOTAL(StdDev, 32f, stdDev, moments_32f)
ZVPS_TOTAL(StdDev, 64f, stdDev, moments_64f)

ZVPS_MEAN_STD_DEV_SFS(16s32s, 32s)
ZVPS_MEAN_STD_DEV_SFS(16s, 16s)
ZVPS_MEAN_STD_DEV(32f)
ZVPS_MEAN_STD_DEV(64f)

ZvpStatus zvpsCountInRange_32s(const Zvp32s* pSrc, int len, int* pCounts, Zvp32s lowerBound, Zvp32s upperBound) {
    if (const ZvpStatus status = zvps::checkVectors(len, pSrc, pCounts)) return status;
    *pCounts =
        lowerBound < upperBound
            ? static_cast<int>(zvps::kernels().totals->countBetween(pSrc, zvps::count(len), lowerBound, upperBound))
            : 0;
    return zvpStsOk;
}
