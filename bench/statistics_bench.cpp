#include "zvps/statistics.h"

#include "bench.hpp"
#include "reductions.hpp"
#include "volk.hpp"

#include <cblas.h>

#include <cmath>
#include <cstdlib>

namespace bench {
namespace {

template <class T>
void keep(T result) {
    benchmark::DoNotOptimize(result);
}

// A call that returns its result, and one of ours that writes it: `result` or `results` in the call.
#define RESULT_OF(...) BENCH_CALL(keep(__VA_ARGS__))
#define RESULT(TYPE, ...) BENCH_CALL(Zvp##TYPE result; __VA_ARGS__; keep(result))
#define RESULTS(TYPE, ...)                                                                                             \
    BENCH_CALL(Zvp##TYPE results[2]; int places[2]; __VA_ARGS__; keep(results); benchmark::DoNotOptimize(places))

#define ROW(name, TYPE, traffic) Row<Zvp##TYPE>(#name, traffic, lengths)
// `operation` with its type of sums, and its arguments.
#define PEERS(operation, ...)                                                                                          \
    with("plain", RESULT_OF(plain::operation(__VA_ARGS__))).with("eigen", RESULT_OF(eigen::operation(__VA_ARGS__)))
#define ONE_CALL(name, TYPE, operation, call)                                                                          \
    ROW(name, TYPE, 1).with("ours", call).PEERS(operation, parts(v.a), v.n)
#define TWO_CALL(name, TYPE, operation, call)                                                                          \
    ROW(name, TYPE, 2).with("ours", call).PEERS(operation, parts(v.a), parts(v.b), v.n)
// _0: with a scale factor or a hint, which is 0.
#define ONE(name, TYPE, RESULT_TYPE, operation)                                                                        \
    ONE_CALL(name, TYPE, operation, RESULT(RESULT_TYPE, zvps##name(v.a, v.n, &result)))
#define ONE_0(name, TYPE, RESULT_TYPE, operation)                                                                      \
    ONE_CALL(name, TYPE, operation, RESULT(RESULT_TYPE, zvps##name(v.a, v.n, &result, 0)))
#define TWO(name, TYPE, RESULT_TYPE, operation)                                                                        \
    TWO_CALL(name, TYPE, operation, RESULT(RESULT_TYPE, zvps##name(v.a, v.b, v.n, &result)))
#define TWO_0(name, TYPE, RESULT_TYPE, operation)                                                                      \
    TWO_CALL(name, TYPE, operation, RESULT(RESULT_TYPE, zvps##name(v.a, v.b, v.n, &result, 0)))
#define BLAS(...) with("openblas", RESULT_OF(__VA_ARGS__))

template <class T>
const T* parts(const T* p) {
    return p;
}
const Zvp32f* parts(const Zvp32fc* p) {
    return &p->re;
}
const Zvp64f* parts(const Zvp64fc* p) {
    return &p->re;
}
const Zvp16s* parts(const Zvp16sc* p) {
    return &p->re;
}

void sums(const Lengths& lengths) {
    ONE_0(Sum_32f, 32f, 32f, sum<double>);
    ONE_0(Sum_32fc, 32fc, 32fc, sumC<double>);
    ONE(Sum_64f, 64f, 64f, sum<double>);
    ONE(Sum_64fc, 64fc, 64fc, sumC<double>);
    ONE_0(Sum_16s32s_Sfs, 16s, 32s, sum<Zvp64s>);
    ONE_0(Sum_16sc32sc_Sfs, 16sc, 32sc, sumC<Zvp64s>);
    ONE_0(Sum_32s_Sfs, 32s, 32s, sum<Zvp64s>);
    ONE_0(Mean_32f, 32f, 32f, sum<double>);
    ONE_0(Mean_32fc, 32fc, 32fc, sumC<double>);
    ONE(Mean_64f, 64f, 64f, sum<double>);
    ONE(Mean_64fc, 64fc, 64fc, sumC<double>);
    ONE_0(Mean_16s_Sfs, 16s, 16s, sum<Zvp64s>);
    ONE_0(Mean_32s_Sfs, 32s, 32s, sum<Zvp64s>);
    ONE(StdDev_32f, 32f, 32f, meanStdDev<double>);
    ONE(StdDev_64f, 64f, 64f, meanStdDev<double>);
    ROW(MeanStdDev_32f, 32f, 1)
        .with("ours", RESULTS(32f, zvpsMeanStdDev_32f(v.a, v.n, results, results + 1)))
        .PEERS(meanStdDev<double>, v.a, v.n);
    ROW(MeanStdDev_64f, 64f, 1)
        .with("ours", RESULTS(64f, zvpsMeanStdDev_64f(v.a, v.n, results, results + 1)))
        .PEERS(meanStdDev<double>, v.a, v.n);
    ROW(CountInRange_32s, 32s, 1)
        .with("ours", RESULT(32s, zvpsCountInRange_32s(v.a, v.n, &result, -1000000000, 500000000)))
        .PEERS(countInRange, v.a, v.n, -1000000000, 500000000);
}

void norms(const Lengths& lengths) {
    ONE_0(Norm_Inf_16s32s_Sfs, 16s, 32s, normInf<int>);
    ONE(Norm_Inf_32f, 32f, 32f, normInf<float>).BLAS(std::abs(v.a[cblas_isamax(v.n, v.a, 1)]));
    ONE(Norm_Inf_64f, 64f, 64f, normInf<double>).BLAS(std::abs(v.a[cblas_idamax(v.n, v.a, 1)]));
    ONE(Norm_Inf_32fc32f, 32fc, 32f, normInfC<double>);
    ONE(Norm_Inf_64fc64f, 64fc, 64f, normInfC<double>);
    ONE_0(Norm_L1_16s64s_Sfs, 16s, 64s, normL1<Zvp64s>);
    ONE(Norm_L1_32f, 32f, 32f, normL1<double>);
    ONE(Norm_L1_64f, 64f, 64f, normL1<double>).BLAS(cblas_dasum(v.n, v.a, 1));
    ONE(Norm_L1_32fc64f, 32fc, 64f, normL1C<double>);
    ONE(Norm_L1_64fc64f, 64fc, 64f, normL1C<double>);
    ONE(Norm_L2_16s32f, 16s, 32f, normL2<Zvp64s>);
    ONE(Norm_L2_32f, 32f, 32f, normL2<float>).BLAS(cblas_snrm2(v.n, v.a, 1));
    ONE(Norm_L2_64f, 64f, 64f, normL2<double>).BLAS(cblas_dnrm2(v.n, v.a, 1));
    ROW(Norm_L2_32fc64f, 32fc, 1)
        .with("ours", RESULT(64f, zvpsNorm_L2_32fc64f(v.a, v.n, &result)))
        .PEERS(normL2<double>, parts(v.a), 2 * v.n);
    ROW(Norm_L2_64fc64f, 64fc, 1)
        .with("ours", RESULT(64f, zvpsNorm_L2_64fc64f(v.a, v.n, &result)))
        .PEERS(normL2<double>, parts(v.a), 2 * v.n)
        .BLAS(cblas_dznrm2(v.n, v.a, 1));

    TWO_0(NormDiff_Inf_16s32s_Sfs, 16s, 32s, normDiffInf<int>);
    TWO(NormDiff_Inf_32f, 32f, 32f, normDiffInf<float>);
    TWO(NormDiff_Inf_64f, 64f, 64f, normDiffInf<double>);
    TWO(NormDiff_Inf_32fc32f, 32fc, 32f, normDiffInfC<double>);
    TWO(NormDiff_Inf_64fc64f, 64fc, 64f, normDiffInfC<double>);
    TWO_0(NormDiff_L1_16s64s_Sfs, 16s, 64s, normDiffL1<Zvp64s>);
    TWO(NormDiff_L1_32f, 32f, 32f, normDiffL1<double>);
    TWO(NormDiff_L1_64f, 64f, 64f, normDiffL1<double>);
    TWO(NormDiff_L1_32fc64f, 32fc, 64f, normDiffL1C<double>);
    TWO(NormDiff_L1_64fc64f, 64fc, 64f, normDiffL1C<double>);
    TWO(NormDiff_L2_16s32f, 16s, 32f, normDiffL2<Zvp64s>);
    TWO(NormDiff_L2_32f, 32f, 32f, normDiffL2<float>);
    TWO(NormDiff_L2_64f, 64f, 64f, normDiffL2<double>);
}

void dotProducts(const Lengths& lengths) {
    TWO(DotProd_16s64s, 16s, 64s, dot<Zvp64s>);
    TWO(DotProd_16sc64sc, 16sc, 64sc, dotC<Zvp64s>);
    TWO_0(DotProd_32s_Sfs, 32s, 32s, dot<Zvp64s>);
    TWO(DotProd_32f, 32f, 32f, dot<float>)
        .BLAS(cblas_sdot(v.n, v.a, 1, v.b, 1))
        .with("volk", BENCH_CALL(float result; volk_32f_x2_dot_prod_32f(&result, v.a, v.b, count(v)); keep(result)));
    // cblas_dsdot is no peer: by its errors it adds in single precision.
    TWO(DotProd_32f64f, 32f, 64f, dot<double>);
    TWO(DotProd_64f, 64f, 64f, dot<double>).BLAS(cblas_ddot(v.n, v.a, 1, v.b, 1));
    TWO(DotProd_32fc, 32fc, 32fc, dotC<float>)
        .with("openblas", BENCH_CALL(Zvp32fc result; cblas_cdotu_sub(v.n, v.a, 1, v.b, 1, &result); keep(result)))
        .with("volk", BENCH_CALL(Zvp32fc result;
                                 volk_32fc_x2_dot_prod_32fc(raw(&result), raw(v.a), raw(v.b), count(v)); keep(result)));
    TWO(DotProd_32fc64fc, 32fc, 64fc, dotC<double>);
    TWO(DotProd_64fc, 64fc, 64fc, dotC<double>)
        .with("openblas", BENCH_CALL(Zvp64fc result; cblas_zdotu_sub(v.n, v.a, 1, v.b, 1, &result); keep(result)));
}

#define EXTREMES(TYPE)                                                                                                 \
    ONE(Min_##TYPE, TYPE, TYPE, min);                                                                                  \
    ONE(Max_##TYPE, TYPE, TYPE, max);                                                                                  \
    ROW(MinIndx_##TYPE, TYPE, 1)                                                                                       \
        .with("ours", RESULTS(TYPE, zvpsMinIndx_##TYPE(v.a, v.n, results, places)))                                    \
        .PEERS(minIndex, v.a, v.n);                                                                                    \
    ROW(MaxIndx_##TYPE, TYPE, 1)                                                                                       \
        .with("ours", RESULTS(TYPE, zvpsMaxIndx_##TYPE(v.a, v.n, results, places)))                                    \
        .PEERS(maxIndex, v.a, v.n)
#define BOTH_EXTREMES(TYPE)                                                                                            \
    ROW(MinMax_##TYPE, TYPE, 1)                                                                                        \
        .with("ours", RESULTS(TYPE, zvpsMinMax_##TYPE(v.a, v.n, results, results + 1)))                                \
        .PEERS(minMax, v.a, v.n);                                                                                      \
    ROW(MinMaxIndx_##TYPE, TYPE, 1)                                                                                    \
        .with("ours", RESULTS(TYPE, zvpsMinMaxIndx_##TYPE(v.a, v.n, results, places, results + 1, places + 1)))        \
        .with("plain", BENCH_CALL(keep(plain::minIndex(v.a, v.n)); keep(plain::maxIndex(v.a, v.n))))                   \
        .with("eigen", BENCH_CALL(keep(eigen::minIndex(v.a, v.n)); keep(eigen::maxIndex(v.a, v.n))))
#define MIN_EVERY(TYPE)                                                                                                \
    ROW(MinEvery_##TYPE##_I, TYPE, 3)                                                                                  \
        .with("ours", BENCH_CALL(zvpsMinEvery_##TYPE##_I(v.a, v.dst, count(v))))                                       \
        .with("plain", BENCH_CALL(plain::minEvery(v.a, v.dst, v.n)))                                                   \
        .with("eigen", BENCH_CALL(eigen::minEvery(v.a, v.dst, v.n)))
#define VOLK_INDEX(extreme)                                                                                            \
    with("volk", BENCH_CALL(uint32_t place; volk_32f_index_##extreme##_32u(&place, v.a, count(v)); keep(place)))

void extremes(const Lengths& lengths) {
    EXTREMES(16s);
    EXTREMES(32s);
    EXTREMES(32f).VOLK_INDEX(max);
    EXTREMES(64f);
    BOTH_EXTREMES(8u);
    BOTH_EXTREMES(16s);
    BOTH_EXTREMES(16u);
    BOTH_EXTREMES(32s);
    BOTH_EXTREMES(32u);
    BOTH_EXTREMES(32f);
    BOTH_EXTREMES(64f);
    MIN_EVERY(8u);
    MIN_EVERY(16s);
    MIN_EVERY(16u);
    MIN_EVERY(32s);
    MIN_EVERY(32f).with("volk", BENCH_CALL(volk_32f_x2_min_32f(v.dst, v.a, v.dst, count(v))));
    MIN_EVERY(64f).with("volk", BENCH_CALL(volk_64f_x2_min_64f(v.dst, v.a, v.dst, count(v))));
}

// The magnitudes of a vector, none of them 0.
template <class T>
const T* positive(const T* p) {
    static const std::vector<T> magnitudes = [p] {
        std::vector<T> result(65536);
        for (size_t i = 0; i < result.size(); ++i)
            result[i] = std::max(T{1}, static_cast<T>(std::abs(p[i] / 2)));
        return result;
    }();
    return magnitudes.data();
}

#define SUM_LN(TYPES, TYPE, RESULT_TYPE)                                                                               \
    ROW(SumLn_##TYPES, TYPE, 1)                                                                                        \
        .with("ours", RESULT(RESULT_TYPE, zvpsSumLn_##TYPES(positive(v.a), v.n, &result)))                             \
        .PEERS(sumLn<Zvp##RESULT_TYPE>, positive(v.a), v.n)

void logarithms(const Lengths& lengths) {
    SUM_LN(16s32f, 16s, 32f);
    SUM_LN(32f, 32f, 32f);
    SUM_LN(32f64f, 32f, 64f);
    SUM_LN(64f, 64f, 64f);
}

// Rows whose length tells how they begin and end.
void shortVectors(const Lengths& lengths) {
    ONE_0(Sum_32f, 32f, 32f, sum<double>);
    ONE_0(Sum_16s32s_Sfs, 16s, 32s, sum<Zvp64s>);
    TWO(DotProd_32f, 32f, 32f, dot<float>);
    TWO(DotProd_16s64s, 16s, 64s, dot<Zvp64s>);
    ONE(Max_32f, 32f, 32f, max);
}

void largeVectors(const Lengths& lengths) {
    ONE_0(Sum_32f, 32f, 32f, sum<double>);
    ONE(Norm_L2_16s32f, 16s, 32f, normL2<Zvp64s>);
    TWO(DotProd_32f, 32f, 32f, dot<float>).BLAS(cblas_sdot(v.n, v.a, 1, v.b, 1));
    ONE(Max_32f, 32f, 32f, max);
    ROW(MinMaxIndx_16s, 16s, 1)
        .with("ours", RESULTS(16s, zvpsMinMaxIndx_16s(v.a, v.n, results, places, results + 1, places + 1)));
}

} // namespace

void registerStatistics() {
    openblas_set_num_threads(1);
    const Lengths lengths = {256, 1024, 4096, 65536};
    sums(lengths);
    norms(lengths);
    dotProducts(lengths);
    extremes(lengths);
    logarithms(lengths);
    shortVectors(shortLengths());
    largeVectors({kLarge});
}

} // namespace bench
