#include "zvps/generators.h"

#include "bench.hpp"
#include "peers.hpp"
#include "volk.hpp"

#include <liquid/liquid.h>

namespace bench {
namespace {

#define GENERATOR(NAME, TYPE, operation, ...)                                                                          \
    Row<Zvp##TYPE>(#NAME "_" #TYPE, 1, lengths)                                                                        \
        .with("ours", BENCH_CALL(zvps##NAME##_##TYPE(__VA_ARGS__)))                                                    \
        .with("plain", BENCH_CALL(plain::operation(__VA_ARGS__)))
#define WAVES(TYPE, MAGNITUDE, REAL)                                                                                   \
    Row<Zvp##TYPE>("Tone_Direct_" #TYPE, 1, lengths)                                                                   \
        .with("ours",                                                                                                  \
              BENCH_CALL(REAL phase = 1; zvpsTone_Direct_##TYPE(v.dst, v.n, MAGNITUDE, REAL(0.0123), &phase, 0)))      \
        .with("plain", BENCH_CALL(plain::tone(v.dst, v.n, MAGNITUDE, REAL(0.0123), REAL(1))))
#define TRIANGLES(TYPE)                                                                                                \
    Row<Zvp##TYPE>("Triangle_Direct_" #TYPE, 1, lengths)                                                               \
        .with("ours", BENCH_CALL(Zvp##TYPE phase = 1;                                                                  \
                                 zvpsTriangle_Direct_##TYPE(v.dst, v.n, 1, Zvp##TYPE(0.0123), 0, &phase)))             \
        .with("plain", BENCH_CALL(plain::triangle(v.dst, v.n, Zvp##TYPE(1), Zvp##TYPE(0.0123), Zvp##TYPE(0.2))))

// A state, made once.
template <class State, class T>
State* state(ZvpStatus (*initAlloc)(State**, T, T, Zvp32u), T first, T second) {
    State* result = nullptr;
    initAlloc(&result, first, second, 1);
    return result;
}
#define RANDOM(NAME, TYPE, operation, FIRST, SECOND)                                                                   \
    Row<Zvp##TYPE>("Rand" #NAME "_" #TYPE, 1, lengths)                                                                 \
        .with("ours", BENCH_CALL(static auto* const s = state<ZvpsRand##NAME##State_##TYPE, Zvp##TYPE>(                \
                                     zvpsRand##NAME##InitAlloc_##TYPE, FIRST, SECOND);                                 \
                                 zvpsRand##NAME##_##TYPE(v.dst, v.n, s)))                                              \
        .with("<random>", BENCH_CALL(plain::operation(v.dst, v.n, FIRST, SECOND)))

void liquidTone(Zvp32fc* dst, int n) {
    static const nco_crcf oscillator = nco_crcf_create(LIQUID_VCO);
    nco_crcf_set_frequency(oscillator, 0.077F);
    for (int i = 0; i < n; ++i) {
        nco_crcf_cexpf(oscillator, reinterpret_cast<liquid_float_complex*>(dst + i));
        nco_crcf_step(oscillator);
    }
}

} // namespace

void registerGenerators() {
    const Lengths lengths = {16, 64, 1024, 65536};
    WAVES(16s, 10000, Zvp32f);
    WAVES(32f, 1.0F, Zvp32f);
    WAVES(64f, 1.0, Zvp64f);
    // VOLK turns a vector that exists.
    WAVES(32fc, 1.0F, Zvp32f)
        .with("liquid", BENCH_CALL(liquidTone(v.dst, v.n)))
        .with("volk", BENCH_CALL(lv_32fc_t phase = 1; const lv_32fc_t step(0.997F, 0.0772F);
                                 volk_32fc_s32fc_x2_rotator_32fc(raw(v.dst), raw(v.a), step, &phase, count(v))));
    TRIANGLES(32f);
    TRIANGLES(64f);
    RANDOM(Uniform, 8u, uniform, 0, 255).with("plain", BENCH_CALL(plain::uniformSequence(v.dst, v.n, 0, 255)));
    RANDOM(Uniform, 16s, uniform, -1000, 1000)
        .with("plain", BENCH_CALL(plain::uniformSequence(v.dst, v.n, -1000, 1000)));
    RANDOM(Uniform, 32f, uniform, -1, 1).with("plain", BENCH_CALL(plain::uniformSequence(v.dst, v.n, -1, 1)));
    RANDOM(Gauss, 8u, gauss, 128, 20);
    RANDOM(Gauss, 16s, gauss, 0, 1000);
    RANDOM(Gauss, 32f, gauss, 0, 1);
    GENERATOR(VectorJaehne, 8u, jaehne, v.dst, v.n, Zvp8u(255));
    GENERATOR(VectorJaehne, 16s, jaehne, v.dst, v.n, Zvp16s(32767));
    GENERATOR(VectorJaehne, 32f, jaehne, v.dst, v.n, 1.0F);
    GENERATOR(VectorJaehne, 64f, jaehne, v.dst, v.n, 1.0);
    GENERATOR(VectorRamp, 8u, ramp, v.dst, v.n, 1, 0.003F);
    GENERATOR(VectorRamp, 16s, ramp, v.dst, v.n, 1, 0.3F);
    GENERATOR(VectorRamp, 32s, ramp, v.dst, v.n, 1, 3.3F);
    GENERATOR(VectorRamp, 32f, ramp, v.dst, v.n, 1, 0.3F);
    GENERATOR(VectorRamp, 64f, ramp, v.dst, v.n, 1, 0.3F);
    GENERATOR(VectorSlope, 8u, slope, v.dst, v.n, 1, 0.003F);
    GENERATOR(VectorSlope, 16s, slope, v.dst, v.n, 1, 0.3F);
    GENERATOR(VectorSlope, 32s, slope, v.dst, v.n, 1, 3.3F);
    GENERATOR(VectorSlope, 32f, slope, v.dst, v.n, 1, 0.3F);
    GENERATOR(VectorSlope, 64f, slope, v.dst, v.n, 1, 0.3F);
}

} // namespace bench
