#include "zvps/dft.h"

#include "bench.hpp"
#include "fftw.hpp"
#include "peers.hpp"

#include <cmath>
#include <map>

// Rows DFT_<type>: forward transforms of LENGTH points, which is no power of two, against FFTW's plans from
// FFTW_MEASURE on arrays of the same kind. Real spectra are in CCS layout, which is FFTW's. Counter `error`: the root
// of the mean square error over that of the result, against FFTW in long double.
namespace bench {
namespace {

// Of small factors, then of a large prime factor.
const Lengths kDftLengths = {3,    5,    6,     7,     9,      10,  11,  12,  13,  15,  18,   20,   21,    24,
                             30,   36,   40,    60,    100,    120, 240, 360, 480, 500, 600,  1000, 1152,  1536,
                             1920, 3000, 10000, 44100, 100000, 17,  97,  101, 151, 509, 1009, 4093, 10007, 65537};

// The arrays of one call, with room for a real spectrum.
template <class T>
struct Arrays {
    explicit Arrays(int n) : src(2 * static_cast<size_t>(n) + 2), dst(src.size()) {}

    void fill() {
        Values values;
        for (T& value : src)
            value = values.operand<T>();
    }

    std::vector<T> src;
    std::vector<T> dst;
};

// Of the results of the arrays' data; 0 for a length measured before.
template <class T>
double relativeError(const std::string& name, bool isReal, int n, const Arrays<T>& arrays) {
    static std::map<std::string, double> errors;
    if (errors.find(name) != errors.end()) return errors[name];
    Arrays<long double> exact(n);
    const auto transform =
        FftwPlan<long double>::dft(isReal, false, n, exact.src.data(), exact.dst.data(), FFTW_ESTIMATE);
    exact.src.assign(arrays.src.begin(), arrays.src.end());
    transform();
    long double error = 0;
    long double sum = 0;
    for (size_t i = 0; i < static_cast<size_t>(isReal ? 2 * (n / 2 + 1) : 2 * n); ++i) {
        error += std::pow(arrays.dst[i] - exact.dst[i], 2.0L);
        sum += std::pow(exact.dst[i], 2.0L);
    }
    return errors[name] = static_cast<double>(std::sqrt(error / sum));
}

template <class T, class Call>
void run(benchmark::State& state, const std::string& name, bool isReal, int n, const Arrays<T>& arrays,
         const Call& call) {
    for (int i = 0; i != kWarmUpCalls; ++i)
        call();
    state.counters["error"] = relativeError(name, isReal, n, arrays);
    for ([[maybe_unused]] auto _ : state) {
        call();
        benchmark::ClobberMemory();
    }
    state.counters["traffic"] = 2;
    state.counters["bytes"] = static_cast<double>((isReal ? 2 : 4) * sizeof(T)) * n;
}

template <class T, class Element, class Complex, class Spec>
void dfts(const std::string& row, bool isReal, ZvpStatus (*initAlloc)(Spec**, int, int, ZvpHintAlgorithm),
          ZvpStatus (*bufSize)(const Spec*, int*), ZvpStatus (*dft)(const Element*, Complex*, const Spec*, Zvp8u*),
          ZvpStatus (*free)(Spec*)) {
    for (const int n : kDftLengths) {
        const std::string ours = row + "/ours/" + std::to_string(n);
        const std::string fftw = row + "/fftw/" + std::to_string(n);
        benchmark::RegisterBenchmark(ours.c_str(), [=](benchmark::State& state) {
            Arrays<T> arrays(n);
            arrays.fill();
            Spec* spec = nullptr;
            int size = 0;
            if (initAlloc(&spec, n, zvpFftScaleNone, 0) != zvpStsOk) throw std::bad_alloc();
            bufSize(spec, &size);
            std::vector<Zvp8u> buffer(static_cast<size_t>(size) + 1);
            const auto* const src = reinterpret_cast<const Element*>(arrays.src.data());
            auto* const dst = reinterpret_cast<Complex*>(arrays.dst.data());
            run(state, ours, isReal, n, arrays, [&] { dft(src, dst, spec, buffer.data()); });
            free(spec);
        });
        benchmark::RegisterBenchmark(fftw.c_str(), [=](benchmark::State& state) {
            Arrays<T> arrays(n);
            const auto plan = FftwPlan<T>::dft(isReal, false, n, arrays.src.data(), arrays.dst.data());
            arrays.fill();
            run(state, fftw, isReal, n, arrays, plan);
        });
    }
}

} // namespace

#define DFTS(SPEC, PART, TRANSFORM)                                                                                    \
    dfts<Zvp##PART>("DFT_" #SPEC, #SPEC[0] == 'R', zvpsDFTInitAlloc_##SPEC, zvpsDFTGetBufSize_##SPEC, TRANSFORM,       \
                    zvpsDFTFree_##SPEC)

void registerDft() {
    DFTS(C_32fc, 32f, zvpsDFTFwd_CToC_32fc);
    DFTS(C_64fc, 64f, zvpsDFTFwd_CToC_64fc);
    DFTS(R_32f, 32f, zvpsDFTFwd_RToCCS_32f);
    DFTS(R_64f, 64f, zvpsDFTFwd_RToCCS_64f);
}

} // namespace bench
