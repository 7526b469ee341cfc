#include "zvps/correlation.h"

#include "bench.hpp"
#include "peers.hpp"

#include <fftw3.h>

#include <algorithm>
#include <map>
#include <memory>

// Rows Conv<type>:TAPS and CrossCorr<type>:TAPS: a source of LENGTH elements with one of so many, all results;
// AutoCorr<type>:LAGS. SAME: as many as LENGTH.
namespace bench {
namespace {

const Lengths kLengths = {16, 64, 256, 1024, 4096, 16384, 65536};
const std::vector<int> kShorter = {16, 64, 256, 1024, 0};
constexpr int kMost = 65536;

template <class T>
struct Signals {
    std::vector<T> first, second, results;
    std::vector<int64_t> sums;

    Signals() : first(kMost), second(kMost), results(2 * kMost), sums(2 * kMost) {
        Values values;
        for (size_t i = 0; i < first.size(); ++i) {
            first[i] = values.operand<T>();
            second[i] = values.operand<T>();
        }
    }
};
template <class T>
Signals<T>& signals() {
    static Signals<T> result;
    return result;
}

// ---- FFTW with measured plans that live as long as the program ----

template <class T>
struct Fftw;
#define BENCH_FFTW(T, F, COMPLEX, FORWARD, INVERSE, isReal)                                                            \
    template <>                                                                                                        \
    struct Fftw<T> {                                                                                                   \
        using Plan = F##_plan;                                                                                         \
        using Complex = F##_complex;                                                                                   \
        using Part = std::remove_extent_t<Complex>;                                                                    \
        static constexpr bool kIsReal = isReal;                                                                        \
        static void* allocate(size_t bytes) { return F##_malloc(bytes); }                                              \
        static void execute(Plan plan) { F##_execute(plan); }                                                          \
        static Plan forward(int n, void* work) { return FORWARD; }                                                     \
        static Plan inverse(int n, void* work) { return INVERSE; }                                                     \
    };
#define BENCH_REAL_FFTW(T, F)                                                                                          \
    BENCH_FFTW(T, F, F##_complex,                                                                                      \
               F##_plan_dft_r2c_1d(n, static_cast<Part*>(work), static_cast<Complex*>(work), FFTW_MEASURE),            \
               F##_plan_dft_c2r_1d(n, static_cast<Complex*>(work), static_cast<Part*>(work), FFTW_MEASURE), true)
BENCH_REAL_FFTW(Zvp32f, fftwf)
BENCH_REAL_FFTW(Zvp64f, fftw)
#define BENCH_COMPLEX_FFTW(T, F)                                                                                       \
    BENCH_FFTW(                                                                                                        \
        T, F, F##_complex,                                                                                             \
        F##_plan_dft_1d(n, static_cast<Complex*>(work), static_cast<Complex*>(work), FFTW_FORWARD, FFTW_MEASURE),      \
        F##_plan_dft_1d(n, static_cast<Complex*>(work), static_cast<Complex*>(work), FFTW_BACKWARD, FFTW_MEASURE),     \
        false)
BENCH_COMPLEX_FFTW(Zvp32fc, fftwf)
BENCH_COMPLEX_FFTW(Zvp64fc, fftw)

// Two arrays of n points, transformed in place.
template <class T>
struct FftwPair {
    using Api = Fftw<T>;
    using Part = typename Api::Part;
    int n;
    Part* work[2];
    typename Api::Plan forward[2], inverse;

    explicit FftwPair(int points) : n(points) {
        for (int i = 0; i < 2; ++i) {
            work[i] = static_cast<Part*>(Api::allocate(sizeof(Part) * 2 * static_cast<size_t>(points + 2)));
            forward[i] = Api::forward(n, work[i]);
        }
        inverse = Api::inverse(n, work[1]);
    }
    void load(int i, const T* src, int count) {
        auto* const to = reinterpret_cast<T*>(work[i]);
        std::copy_n(src, count, to);
        std::fill(to + count, to + n, T{});
        Api::execute(forward[i]);
    }
    // The second spectrum times the first, conjugated or not, and back.
    template <bool kConjugate>
    const T* multiply(int first) {
        const Part* const a = work[first];
        Part* const b = work[1];
        const Part scale = Part{1} / static_cast<Part>(n);
        for (int k = 0; k < (Api::kIsReal ? n + 2 : 2 * n); k += 2) {
            const Part re = a[k] * scale, im = kConjugate ? -a[k + 1] * scale : a[k + 1] * scale;
            const Part x = b[k], y = b[k + 1];
            b[k] = x * re - y * im;
            b[k + 1] = x * im + y * re;
        }
        Api::execute(inverse);
        return reinterpret_cast<const T*>(b);
    }
};
template <class T>
FftwPair<T>& fftwPair(int least) {
    int n = 32;
    while (n < least)
        n *= 2;
    static std::map<int, std::unique_ptr<FftwPair<T>>> pairs;
    auto& pair = pairs[n];
    if (!pair) pair = std::make_unique<FftwPair<T>>(n);
    return *pair;
}

// Of both sources at once, or of sections of the longer one, added up where they overlap.
template <class T>
void fftwConv(const T* a, int n, const T* b, int taps, T* dst) {
    const bool inSections = n >= 3 * taps;
    FftwPair<T>& pair = fftwPair<T>(inSections ? 4 * taps : n + taps - 1);
    const int step = inSections ? pair.n - taps + 1 : n;
    pair.load(0, b, taps);
    std::fill_n(dst, n + taps - 1, T{});
    for (int i = 0; i < n; i += step) {
        const int count = std::min(step, n - i);
        pair.load(1, a + i, count);
        const T* const results = pair.template multiply<false>(0);
        for (int k = 0; k < count + taps - 1; ++k)
            dst[i + k] = inSections ? dst[i + k] + results[k] : results[k];
    }
}
// Of one transform for both. Lags from 1 - taps on.
template <class T>
void fftwCrossCorr(const T* a, int n, const T* b, int taps, T* dst) {
    FftwPair<T>& pair = fftwPair<T>(n + taps - 1);
    pair.load(0, b, taps);
    pair.load(1, a, n);
    const T* const results = pair.template multiply<true>(0);
    std::copy_n(results + pair.n - (taps - 1), taps - 1, dst);
    std::copy_n(results, n, dst + taps - 1);
}
template <class T>
void fftwAutoCorr(const T* a, int n, T* dst, int lags) {
    FftwPair<T>& pair = fftwPair<T>(n + lags - 1);
    pair.load(1, a, n);
    std::copy_n(pair.template multiply<true>(1), lags, dst);
}

// ---- Rows ----

template <class T>
Row<T> row(const char* name, int taps, int most = kMost) {
    Lengths lengths;
    for (const int n : kLengths) {
        if (n <= most && (taps == 0 || n >= taps)) lengths.push_back(n);
    }
    return Row<T>(std::string(name) + ':' + (taps == 0 ? "same" : std::to_string(taps)), 2, lengths);
}

// call(first source, its length, second source, its length, results)
template <class T, class Call>
auto on(int taps, Call call) {
    return [=](const auto& v) {
        auto& s = signals<T>();
        call(s.first.data(), v.n, s.second.data(), taps == 0 ? v.n : taps, s.results.data());
    };
}

constexpr int kMostPlain = 16384;

template <class T>
void convolutions(const char* name, int taps, ZvpStatus (*ours)(const T*, int, const T*, int, T*)) {
    row<T>(name, taps).with("ours", on<T>(taps, ours)).with("fftw", on<T>(taps, fftwConv<T>));
    row<T>(name, taps, kMostPlain).with("plain", on<T>(taps, plain::convolve<T>));
}

template <class T>
void correlations(const std::string& type, int taps, ZvpStatus (*cross)(const T*, int, const T*, int, T*, int, int),
                  ZvpStatus (*automatic)(const T*, int, T*, int)) {
    const std::string crossName = "CrossCorr_" + type;
    row<T>(crossName.c_str(), taps)
        .with("ours", on<T>(taps, [=](const T* a, int n, const T* b, int m,
                                      T* dst) { cross(b, m, a, n, dst, n + m - 1, 1 - m); }))
        .with("fftw", on<T>(taps, fftwCrossCorr<T>));
    row<T>(crossName.c_str(), taps, kMostPlain).with("plain", on<T>(taps, plain::crossCorrelate<T>));
    const std::string autoName = "AutoCorr_" + type;
    row<T>(autoName.c_str(), taps)
        .with("ours", on<T>(taps, [=](const T* a, int n, const T*, int lags, T* dst) { automatic(a, n, dst, lags); }))
        .with("fftw",
              on<T>(taps, [](const T* a, int n, const T*, int lags, T* dst) { fftwAutoCorr(a, n, dst, lags); }));
    row<T>(autoName.c_str(), taps, kMostPlain)
        .with("plain",
              on<T>(taps, [](const T* a, int n, const T*, int lags, T* dst) { plain::autoCorrelate(a, n, dst, lags); }))
        .with("eigen", on<T>(taps, [](const T* a, int n, const T*, int lags, T* dst) {
                  eigen::autoCorrelate(a, n, dst, lags);
              }));
}

void integers(int taps) {
    constexpr int kScale = 20;
    row<Zvp16s>("Conv_16s_Sfs", taps)
        .with("ours", on<Zvp16s>(taps, [](const Zvp16s* a, int n, const Zvp16s* b, int m, Zvp16s* dst) {
                  zvpsConv_16s_Sfs(a, n, b, m, dst, kScale);
              }));
    row<Zvp16s>("Conv_16s_Sfs", taps, kMostPlain)
        .with("plain", on<Zvp16s>(taps, [](const Zvp16s* a, int n, const Zvp16s* b, int m, Zvp16s* dst) {
                  plain::convolve(a, n, b, m, dst, kScale);
              }));
    row<Zvp16s>("AutoCorr_16s_Sfs", taps)
        .with("ours", on<Zvp16s>(taps, [](const Zvp16s* a, int n, const Zvp16s*, int m, Zvp16s* dst) {
                  zvpsAutoCorr_16s_Sfs(a, n, dst, m, kScale);
              }));
    row<Zvp16s>("AutoCorr_16s_Sfs", taps, kMostPlain)
        .with("plain", on<Zvp16s>(taps, [](const Zvp16s* a, int n, const Zvp16s*, int m, Zvp16s* dst) {
                  plain::autoCorrelate(a, n, dst, m, kScale);
              }));
}

} // namespace

void registerCorrelation() {
    for (const int taps : kShorter) {
        convolutions<Zvp32f>("Conv_32f", taps, zvpsConv_32f);
        convolutions<Zvp64f>("Conv_64f", taps, zvpsConv_64f);
        correlations<Zvp32f>("32f", taps, zvpsCrossCorr_32f, zvpsAutoCorr_32f);
        correlations<Zvp64f>("64f", taps, zvpsCrossCorr_64f, zvpsAutoCorr_64f);
        correlations<Zvp32fc>("32fc", taps, zvpsCrossCorr_32fc, zvpsAutoCorr_32fc);
        integers(taps);
    }
}

} // namespace bench
