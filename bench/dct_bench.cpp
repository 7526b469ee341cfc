#include "zvps/dct.h"
#include "zvps/hilbert.h"

#include "bench.hpp"
#include "fftw.hpp"
#include "peers.hpp"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

// Rows DCT_<type>, DCT_<type>_Inv and Hilbert_32f32fc: transforms of LENGTH values against FFTW's plans from
// FFTW_MEASURE on arrays of the same kind. FFTW leaves its DCTs unscaled; its analytic signal is a real transform, a
// pass over the bins and a complex transform. Counter `error`: the root of the mean square error over that of the
// result, against FFTW in long double.
namespace bench {
namespace {

const Lengths kDctLengths = {2,    4,    5,    8,    12,   16,   24,    32,    37,    48,   60,  64,
                             80,   97,   100,  120,  128,  240,  256,   360,   480,   509,  512, 1000,
                             1024, 1920, 2048, 3000, 4096, 8192, 10000, 16384, 32768, 65536};
const Lengths kHilbertLengths = {16, 60, 64, 100, 256, 480, 1000, 1024, 1920, 4096, 10000, 16384, 65536};

// In its place, which plans know.
template <class T>
void fill(std::vector<T>& data) {
    Values values;
    for (T& value : data)
        value = values.operand<T>();
}

void report(benchmark::State& state, size_t bytes) {
    state.counters["traffic"] = 2;
    state.counters["bytes"] = static_cast<double>(bytes);
}

// ---- DCT ----

// The error of c(k) times the sums that a DCT of these values is made of; 0 for a length measured before.
template <class T>
double relativeError(const std::string& name, const std::vector<T>& src, const std::vector<T>& dst, bool isScaled) {
    static std::map<std::string, double> errors;
    if (errors.find(name) != errors.end()) return errors[name];
    const size_t n = src.size();
    std::vector<long double> from(src.begin(), src.end());
    std::vector<long double> to(n);
    const auto exact = FftwPlan<long double>::dct(false, static_cast<int>(n), from.data(), to.data(), FFTW_ESTIMATE);
    std::copy(src.begin(), src.end(), from.begin());
    exact();
    long double error = 0;
    long double sum = 0;
    for (size_t k = 0; k < n; ++k) {
        const long double factor = isScaled ? std::sqrt((k == 0 ? 0.25L : 0.5L) / static_cast<long double>(n)) : 1;
        error += std::pow(dst[k] - factor * to[k], 2.0L);
        sum += std::pow(factor * to[k], 2.0L);
    }
    return errors[name] = static_cast<double>(std::sqrt(error / sum));
}

template <class T, class Call>
void run(benchmark::State& state, const std::string& name, bool isInverse, bool isScaled, const std::vector<T>& src,
         const std::vector<T>& dst, const Call& call) {
    for (int i = 0; i != kWarmUpCalls; ++i)
        call();
    if (!isInverse) state.counters["error"] = relativeError(name, src, dst, isScaled);
    for ([[maybe_unused]] auto _ : state) {
        call();
        benchmark::ClobberMemory();
    }
    report(state, 2 * sizeof(T) * src.size());
}

template <class T, class Spec>
void dcts(const std::string& row, bool isInverse, ZvpStatus (*initAlloc)(Spec**, int, ZvpHintAlgorithm),
          ZvpStatus (*bufSize)(const Spec*, int*), ZvpStatus (*dct)(const T*, T*, const Spec*, Zvp8u*),
          ZvpStatus (*free)(Spec*)) {
    for (const int n : kDctLengths) {
        const std::string ours = row + "/ours/" + std::to_string(n);
        const std::string fftw = row + "/fftw/" + std::to_string(n);
        benchmark::RegisterBenchmark(ours.c_str(), [=](benchmark::State& state) {
            std::vector<T> src(static_cast<size_t>(n));
            std::vector<T> dst(src.size());
            fill(src);
            Spec* spec = nullptr;
            int size = 0;
            if (initAlloc(&spec, n, 0) != zvpStsOk) throw std::bad_alloc();
            bufSize(spec, &size);
            std::vector<Zvp8u> buffer(static_cast<size_t>(size) + 1);
            run(state, ours, isInverse, true, src, dst, [&] { dct(src.data(), dst.data(), spec, buffer.data()); });
            free(spec);
        });
        benchmark::RegisterBenchmark(fftw.c_str(), [=](benchmark::State& state) {
            std::vector<T> src(static_cast<size_t>(n));
            std::vector<T> dst(src.size());
            const auto plan = FftwPlan<T>::dct(isInverse, n, src.data(), dst.data());
            fill(src);
            run(state, fftw, isInverse, false, src, dst, plan);
        });
    }
}

// ---- Hilbert transform ----

struct FftwAnalytic {
    explicit FftwAnalytic(int length)
        : n(length), src(static_cast<size_t>(n)), dst(static_cast<size_t>(n)),
          forward(FftwPlan<float>::dft(true, false, n, src.data(), bins())),
          inverse(FftwPlan<float>::dft(false, true, n, bins(), bins())) {
        fill(src);
    }

    float* bins() { return reinterpret_cast<float*>(dst.data()); }
    void operator()() {
        forward();
        const float single = 1 / static_cast<float>(n);
        for (int k = 0; k <= n / 2; ++k) {
            const float factor = k == 0 || 2 * k == n ? single : 2 * single;
            dst[static_cast<size_t>(k)].re *= factor;
            dst[static_cast<size_t>(k)].im *= factor;
        }
        std::fill(dst.begin() + n / 2 + 1, dst.end(), Zvp32fc{0, 0});
        inverse();
    }

    int n;
    std::vector<Zvp32f> src;
    std::vector<Zvp32fc> dst;
    FftwPlan<float> forward, inverse;
};

void hilbert() {
    for (const int n : kHilbertLengths) {
        const std::string length = std::to_string(n);
        benchmark::RegisterBenchmark(("Hilbert_32f32fc/ours/" + length).c_str(), [=](benchmark::State& state) {
            std::vector<Zvp32f> src(static_cast<size_t>(n));
            std::vector<Zvp32fc> dst(src.size());
            fill(src);
            ZvpsHilbertSpec_32f32fc* spec = nullptr;
            if (zvpsHilbertInitAlloc_32f32fc(&spec, n, 0) != zvpStsOk) throw std::bad_alloc();
            for ([[maybe_unused]] auto _ : state) {
                zvpsHilbert_32f32fc(src.data(), dst.data(), spec);
                benchmark::ClobberMemory();
            }
            zvpsHilbertFree_32f32fc(spec);
            report(state, 12 * src.size());
        });
        benchmark::RegisterBenchmark(("Hilbert_32f32fc/fftw/" + length).c_str(), [=](benchmark::State& state) {
            FftwAnalytic analytic(n);
            for ([[maybe_unused]] auto _ : state) {
                analytic();
                benchmark::ClobberMemory();
            }
            report(state, 12 * analytic.src.size());
        });
    }
}

} // namespace

#define DCTS(TYPE)                                                                                                     \
    dcts("DCT_" #TYPE, false, zvpsDCTFwdInitAlloc_##TYPE, zvpsDCTFwdGetBufSize_##TYPE, zvpsDCTFwd_##TYPE,              \
         zvpsDCTFwdFree_##TYPE);                                                                                       \
    dcts("DCT_" #TYPE "_Inv", true, zvpsDCTInvInitAlloc_##TYPE, zvpsDCTInvGetBufSize_##TYPE, zvpsDCTInv_##TYPE,        \
         zvpsDCTInvFree_##TYPE)

void registerDct() {
    DCTS(32f);
    DCTS(64f);
    hilbert();
}

} // namespace bench
