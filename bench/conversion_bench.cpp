#include "zvps/convert.h"
#include "zvps/threshold.h"

#include "bench.hpp"
#include "peers.hpp"
#include "volk.hpp"

namespace bench {
namespace {

// A row's vectors have the wider of the two types, the source's if they are equal; the narrower one takes the front of
// its own.
template <class S, class D>
using Wider = std::conditional_t<(sizeof(S) >= sizeof(D)), S, D>;
template <class S, class V>
const S* source(const V& v) {
    return reinterpret_cast<const S*>(v.a);
}
template <class D, class V>
D* destination(const V& v) {
    return reinterpret_cast<D*>(v.dst);
}

#define FROM(S) source<Zvp##S>(v)
#define TO(D) destination<Zvp##D>(v)

#define ROW(CODE, SUFFIX, S, D) Row<Wider<Zvp##S, Zvp##D>>("Convert_" #CODE SUFFIX, 2, lengths)
#define CONVERT(CODE, S, D)                                                                                            \
    ROW(CODE, "", S, D)                                                                                                \
        .with("ours", BENCH_CALL(zvpsConvert_##CODE(FROM(S), TO(D), v.n)))                                             \
        .with("plain", BENCH_CALL(plain::convert(FROM(S), TO(D), v.n)))                                                \
        .with("eigen", BENCH_CALL(eigen::convert(FROM(S), TO(D), v.n)))
#define ROUND(CODE, S, D)                                                                                              \
    ROW(CODE, "_Sfs:-3", S, D)                                                                                         \
        .with("ours", BENCH_CALL(zvpsConvert_##CODE##_Sfs(FROM(S), TO(D), v.n, zvpRndNear, -3)))                       \
        .with("plain", BENCH_CALL(plain::convertRounded(FROM(S), TO(D), v.n, Zvp##S{8})))                              \
        .with("eigen", BENCH_CALL(eigen::convertRounded(FROM(S), TO(D), v.n, Zvp##S{8})))
#define SATURATE(CODE, S, D)                                                                                           \
    ROW(CODE, "_Sfs:0", S, D)                                                                                          \
        .with("ours", BENCH_CALL(zvpsConvert_##CODE##_Sfs(FROM(S), TO(D), v.n, 0)))                                    \
        .with("plain", BENCH_CALL(plain::convertSaturated(FROM(S), TO(D), v.n)))                                       \
        .with("eigen", BENCH_CALL(eigen::convertSaturated(FROM(S), TO(D), v.n)))
#define VOLK(function, S, D) with("volk", BENCH_CALL(function(TO(D), FROM(S), count(v))))
// VOLK divides integers by the factor, and multiplies floats by it.
#define VOLK_SCALED(function, S, D, factor) with("volk", BENCH_CALL(function(TO(D), FROM(S), factor, count(v))))

void conversions() {
    const Lengths& lengths = kInCacheAndLarge;
    CONVERT(8s16s, 8s, 16s).VOLK(volk_8i_convert_16i, 8s, 16s);
    CONVERT(8s32f, 8s, 32f).VOLK_SCALED(volk_8i_s32f_convert_32f, 8s, 32f, 1.0f);
    CONVERT(8u32f, 8u, 32f);
    CONVERT(16s32f, 16s, 32f).VOLK_SCALED(volk_16i_s32f_convert_32f, 16s, 32f, 1.0f);
    CONVERT(16s32s, 16s, 32s);
    CONVERT(16u32f, 16u, 32f);
    CONVERT(32s32f, 32s, 32f).VOLK_SCALED(volk_32i_s32f_convert_32f, 32s, 32f, 1.0f);
    CONVERT(32s64f, 32s, 64f);
    CONVERT(32f64f, 32f, 64f).VOLK(volk_32f_convert_64f, 32f, 64f);
    CONVERT(64f32f, 64f, 32f).VOLK(volk_64f_convert_32f, 64f, 32f);
    CONVERT(64s64f, 64s, 64f);
    ROUND(32f8s, 32f, 8s).VOLK_SCALED(volk_32f_s32f_convert_8i, 32f, 8s, 8.0f);
    ROUND(32f8u, 32f, 8u);
    ROUND(32f16s, 32f, 16s).VOLK_SCALED(volk_32f_s32f_convert_16i, 32f, 16s, 8.0f);
    ROUND(32f16u, 32f, 16u);
    ROUND(32f32s, 32f, 32s).VOLK_SCALED(volk_32f_s32f_convert_32i, 32f, 32s, 8.0f);
    ROUND(64f16s, 64f, 16s);
    ROUND(64f32s, 64f, 32s);
    ROUND(64f64s, 64f, 64s);
    SATURATE(16s8s, 16s, 8s);
    SATURATE(32s16s, 32s, 16s);
    SATURATE(64s32s, 64s, 32s);
    ROW(16f32f, "", 16f, 32f)
        .with("ours", BENCH_CALL(zvpsConvert_16f32f(FROM(16f), TO(32f), v.n)))
        .with("plain", BENCH_CALL(plain::fromHalf(FROM(16f), TO(32f), v.n)))
        .with("eigen", BENCH_CALL(eigen::fromHalf(FROM(16f), TO(32f), v.n)));
    ROW(32f16f, "", 32f, 16f)
        .with("ours", BENCH_CALL(zvpsConvert_32f16f(FROM(32f), TO(16f), v.n, zvpRndNear)))
        .with("plain", BENCH_CALL(plain::toHalf(FROM(32f), TO(16f), v.n)))
        .with("eigen", BENCH_CALL(eigen::toHalf(FROM(32f), TO(16f), v.n)));
    // No peer knows 24 bits.
    ROW(24s32f, "", 8u, 32f).with("ours", BENCH_CALL(zvpsConvert_24s32f(FROM(8u), TO(32f), v.n)));
    ROW(32f24s, "_Sfs:-3", 32f, 8u)
        .with("ours", BENCH_CALL(zvpsConvert_32f24s_Sfs(FROM(32f), TO(8u), v.n, zvpRndNear, -3)));
}

// Complex rows limit most of their elements; those named `:none` limit none.
void thresholds() {
#define THRESHOLD(TYPE, LEVEL, SUFFIX, level)                                                                          \
    Row<Zvp##TYPE>("Threshold_GT_" #TYPE SUFFIX, 2, kInCache)                                                          \
        .with("ours", BENCH_CALL(zvpsThreshold_GT_##TYPE(v.a, v.dst, v.n, level)))                                     \
        .with("plain", BENCH_CALL(plain::limitAbove(v.a, Zvp##LEVEL{level}, v.dst, v.n)))
    THRESHOLD(16s, 16s, "", 100);
    THRESHOLD(32f, 32f, "", 1);
    THRESHOLD(64f, 64f, "", 1);
    THRESHOLD(16sc, 16s, "", 100);
    THRESHOLD(32fc, 32f, "", 1);
    THRESHOLD(32fc, 32f, ":none", 4);
    THRESHOLD(64fc, 64f, "", 1);
}

} // namespace

void registerConversion() {
    conversions();
    thresholds();
}

} // namespace bench
