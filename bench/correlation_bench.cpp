#include "zvps/correlation.h"

#include "bench.hpp"
#include "fftw.hpp"
#include "peers.hpp"

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

// Two arrays of n points, transformed in place.
template <class T>
struct FftwPair {
    static constexpr bool kIsReal = std::is_floating_point_v<T>;
    using Part = std::conditional_t<sizeof(T) == (kIsReal ? 4 : 8), float, double>;
    using Plan = FftwPlan<Part>;

    explicit FftwPair(int points) : n(points) {}

    int n;
    FftwArray<Part> work[2] = {array(), array()};
    Plan forward[2] = {plan(0, false), plan(1, false)};
    Plan inverse = plan(1, true);

    FftwArray<Part> array() const { return fftwArray<Part>(2 * static_cast<size_t>(n + 2)); }
    Plan plan(int i, bool isInverse) const { return Plan::dft(kIsReal, isInverse, n, work[i].get(), work[i].get()); }

    void load(int i, const T* src, int count) {
        auto* const to = reinterpret_cast<T*>(work[i].get());
        std::copy_n(src, count, to);
        std::fill(to + count, to + n, T{});
        forward[i]();
    }
    // The second spectrum times the first, conjugated or not, and back.
    template <bool kConjugate>
    const T* multiply(int first) {
        const Part* const a = work[first].get();
        Part* const b = work[1].get();
        const Part scale = Part{1} / static_cast<Part>(n);
        for (int k = 0; k < (kIsReal ? n + 2 : 2 * n); k += 2) {
            const Part re = a[k] * scale, im = kConjugate ? -a[k + 1] * scale : a[k + 1] * scale;
            const Part x = b[k], y = b[k + 1];
            b[k] = x * re - y * im;
            b[k + 1] = x * im + y * re;
        }
        inverse();
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
