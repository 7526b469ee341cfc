#include "zvps/companding.h"
#include "zvps/goertzel.h"

#include "bench.hpp"
#include "peers.hpp"

#include <spandsp.h>

#include <array>
#include <cstring>

namespace bench {
namespace {

template <class D>
std::array<D, 256> tableOf(ZvpStatus (*function)(const Zvp8u*, D*, int)) {
    std::array<Zvp8u, 256> codes;
    for (size_t i = 0; i < codes.size(); ++i)
        codes[i] = static_cast<Zvp8u>(i);
    std::array<D, 256> table;
    function(codes.data(), table.data(), 256);
    return table;
}

template <class T, class D>
D* as(const T* p) {
    return reinterpret_cast<D*>(const_cast<T*>(p));
}

// Rows are of the wider element type; codes lie in the same memory.
#define EXPAND(NAME, WIDE)                                                                                             \
    Row<Zvp##WIDE>(#NAME "_8u" #WIDE, 1, kInCache)                                                                     \
        .with("ours", BENCH_CALL(zvps##NAME##_8u##WIDE(as<Zvp##WIDE, Zvp8u>(v.a), v.dst, v.n)))                        \
        .with("table", [](const auto& v) {                                                                             \
            static const auto table = tableOf(zvps##NAME##_8u##WIDE);                                                  \
            plain::lookUp(as<Zvp##WIDE, Zvp8u>(v.a), table.data(), v.dst, v.n);                                        \
        })
#define COMPRESS(NAME, WIDE)                                                                                           \
    Row<Zvp##WIDE>(#NAME "_" #WIDE "8u", 1, kInCache)                                                                  \
        .with("ours", BENCH_CALL(zvps##NAME##_##WIDE##8u(v.a, as<Zvp##WIDE, Zvp8u>(v.dst), v.n)))
#define RECODE(NAME)                                                                                                   \
    Row<Zvp8u>(#NAME "_8u", 2, kInCache)                                                                               \
        .with("ours", BENCH_CALL(zvps##NAME##_8u(v.a, v.dst, v.n)))                                                    \
        .with("table", [](const auto& v) {                                                                             \
            static const auto table = tableOf(zvps##NAME##_8u);                                                        \
            plain::lookUp(v.a, table.data(), v.dst, v.n);                                                              \
        })

g711_state_t* spandspState(int law) {
    static g711_state_t* const aLaw = g711_init(nullptr, G711_ALAW);
    static g711_state_t* const muLaw = g711_init(nullptr, G711_ULAW);
    return law == G711_ALAW ? aLaw : muLaw;
}

#define SPANDSP_EXPAND(law)                                                                                            \
    with("spandsp", BENCH_CALL(g711_decode(spandspState(law), v.dst, as<Zvp16s, Zvp8u>(v.a), v.n)))
#define SPANDSP_COMPRESS(law)                                                                                          \
    with("spandsp", BENCH_CALL(g711_encode(spandspState(law), as<Zvp16s, Zvp8u>(v.dst), v.a, v.n)))
#define PLAIN_COMPRESS(loop) with("plain", BENCH_CALL(plain::loop(v.a, as<Zvp16s, Zvp8u>(v.dst), v.n)))

void companding() {
    EXPAND(ALawToLin, 16s).SPANDSP_EXPAND(G711_ALAW);
    EXPAND(MuLawToLin, 16s).SPANDSP_EXPAND(G711_ULAW);
    EXPAND(ALawToLin, 32f);
    EXPAND(MuLawToLin, 32f);
    COMPRESS(LinToALaw, 16s).PLAIN_COMPRESS(compressALaw).SPANDSP_COMPRESS(G711_ALAW);
    COMPRESS(LinToMuLaw, 16s).PLAIN_COMPRESS(compressMuLaw).SPANDSP_COMPRESS(G711_ULAW);
    COMPRESS(LinToALaw, 32f);
    COMPRESS(LinToMuLaw, 32f);
    RECODE(ALawToMuLaw);
    RECODE(MuLawToALaw);
}

constexpr float kFrequency = 0.0963125f;

void goertzel() {
    const Lengths lengths = {64, 205, 1024, 4096, 65536, 1 << 20};
    Row<Zvp32f>("Goertz_32f", 1, lengths)
        .with("ours",
              [](const auto& v) {
                  Zvp32fc value;
                  benchmark::DoNotOptimize(zvpsGoertz_32f(v.a, v.n, &value, kFrequency));
                  benchmark::DoNotOptimize(value);
              })
        .with("plain", [](const auto& v) {
            double value[2];
            plain::goertzel(v.a, v.n, kFrequency, value);
            benchmark::DoNotOptimize(value);
        });
    Row<Zvp64f>("Goertz_64f", 1, lengths)
        .with("ours",
              [](const auto& v) {
                  Zvp64fc value;
                  benchmark::DoNotOptimize(zvpsGoertz_64f(v.a, v.n, &value, kFrequency));
                  benchmark::DoNotOptimize(value);
              })
        .with("plain", [](const auto& v) {
            double value[2];
            plain::goertzel(v.a, v.n, kFrequency, value);
            benchmark::DoNotOptimize(value);
        });
    Row<Zvp32fc>("Goertz_32fc", 1, lengths).with("ours", [](const auto& v) {
        Zvp32fc value;
        benchmark::DoNotOptimize(zvpsGoertz_32fc(v.a, v.n, &value, kFrequency));
        benchmark::DoNotOptimize(value);
    });
    Row<Zvp16s>("Goertz_16s_Sfs", 1, lengths)
        .with("ours",
              [](const auto& v) {
                  Zvp16sc value;
                  benchmark::DoNotOptimize(zvpsGoertz_16s_Sfs(v.a, v.n, &value, kFrequency, 10));
                  benchmark::DoNotOptimize(value);
              })
        .with("plain",
              [](const auto& v) {
                  double value[2];
                  plain::goertzel(v.a, v.n, kFrequency, value);
                  benchmark::DoNotOptimize(value);
              })
        .with("spandsp", [](const auto& v) {
            goertzel_descriptor_t descriptor;
            make_goertzel_descriptor(&descriptor, kFrequency * 8000, v.n);
            goertzel_state_t state;
            goertzel_init(&state, &descriptor);
            goertzel_update(&state, v.a, v.n);
            benchmark::DoNotOptimize(goertzel_result(&state));
        });
}

} // namespace

void registerTelephony() {
    companding();
    goertzel();
}

} // namespace bench
