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
#define COMPRESS(NAME, WIDE, loop)                                                                                     \
    Row<Zvp##WIDE>(#NAME "_" #WIDE "8u", 1, kInCache)                                                                  \
        .with("ours", BENCH_CALL(zvps##NAME##_##WIDE##8u(v.a, as<Zvp##WIDE, Zvp8u>(v.dst), v.n)))                      \
        .with("plain", BENCH_CALL(plain::loop(v.a, as<Zvp##WIDE, Zvp8u>(v.dst), v.n)))
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

void companding() {
    EXPAND(ALawToLin, 16s).SPANDSP_EXPAND(G711_ALAW);
    EXPAND(MuLawToLin, 16s).SPANDSP_EXPAND(G711_ULAW);
    EXPAND(ALawToLin, 32f);
    EXPAND(MuLawToLin, 32f);
    COMPRESS(LinToALaw, 16s, compressALaw).SPANDSP_COMPRESS(G711_ALAW);
    COMPRESS(LinToMuLaw, 16s, compressMuLaw).SPANDSP_COMPRESS(G711_ULAW);
    COMPRESS(LinToALaw, 32f, compressALaw);
    COMPRESS(LinToMuLaw, 32f, compressMuLaw);
    RECODE(ALawToMuLaw);
    RECODE(MuLawToALaw);
}

constexpr double kFrequencies[] = {789.0 / 8192, 1731.0 / 8192}; // exact in single precision

// `function` takes v and where to leave a value for each of `count` frequencies.
template <int count, class T, class Value, class Function>
Row<T> goertzelRow(const char* name, Function function) {
    Row<T> row(name, 1, {64, 205, 1024, 4096, 65536, 1 << 20});
    row.with("ours",
             [=](const auto& v) {
                 Value values[count];
                 benchmark::DoNotOptimize(function(v, values));
                 benchmark::DoNotOptimize(values);
             })
        .with("plain", [](const auto& v) {
            double values[2 * count];
            plain::goertzel<count>(v.a, v.n, kFrequencies, values);
            benchmark::DoNotOptimize(values);
        });
    return row;
}

#define GOERTZEL(TYPE, VALUE, FREQUENCY)                                                                               \
    goertzelRow<1, Zvp##TYPE, Zvp##VALUE>("Goertz_" #TYPE, [](const auto& v, Zvp##VALUE* values) {                     \
        return zvpsGoertz_##TYPE(v.a, v.n, values, static_cast<Zvp##FREQUENCY>(kFrequencies[0]));                      \
    });                                                                                                                \
    goertzelRow<2, Zvp##TYPE, Zvp##VALUE>("GoertzTwo_" #TYPE, [](const auto& v, Zvp##VALUE* values) {                  \
        const Zvp##FREQUENCY frequencies[] = {static_cast<Zvp##FREQUENCY>(kFrequencies[0]),                            \
                                              static_cast<Zvp##FREQUENCY>(kFrequencies[1])};                           \
        return zvpsGoertzTwo_##TYPE(v.a, v.n, values, frequencies);                                                    \
    })

void goertzel() {
    GOERTZEL(32f, 32fc, 32f);
    GOERTZEL(32fc, 32fc, 32f);
    GOERTZEL(64f, 64fc, 64f);
    constexpr auto kFrequency = static_cast<float>(kFrequencies[0]);
    goertzelRow<1, Zvp16s, Zvp16sc>("Goertz_16s_Sfs", [](const auto& v, Zvp16sc* values) {
        return zvpsGoertz_16s_Sfs(v.a, v.n, values, kFrequency, 10);
    }).with("spandsp", [](const auto& v) {
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
