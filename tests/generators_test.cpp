// The generators, against evaluations of their definitions in extended precision or, where these are exact, bit by bit:
// at any address, by every level with the same bits, in any cut into calls.
#include "core/level.hpp"
#include "framework/arena.hpp"
#include "framework/call.hpp"
#include "framework/memory.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <functional>
#include <memory>

namespace zvps::test {
namespace {

constexpr long double kPi = 3.14159265358979323846264338327950288L;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

// ---- A signal and what it should be ----

// What a fresh generator gives: calls go on where the one before ended.
template <class T>
using Generator = std::function<ZvpStatus(T* dst, int len)>;

template <class T>
struct Signal {
    std::string name;
    std::function<Generator<T>()> start;
    // Of element n in a signal of that length; `tolerance` of floating-point values, or before rounding.
    std::function<long double(size_t n, size_t length)> exact;
    long double tolerance = 0;
    bool goesOn = true; // in further calls
};

template <class T>
bool isRight(T value, long double exact, long double tolerance) {
    if constexpr (std::is_integral_v<T>) {
        if (std::isnan(exact)) return value == 0;
        using Limits = std::numeric_limits<T>;
        const auto limited = [](long double v) {
            return std::min(std::max(v, static_cast<long double>(Limits::min())),
                            static_cast<long double>(Limits::max()));
        };
        const auto v = static_cast<long double>(value);
        return v == std::nearbyint(limited(exact)) ||
               (v >= limited(exact - tolerance) - 0.5L && v <= limited(exact + tolerance) + 0.5L && tolerance > 0);
    } else {
        if (std::isnan(exact)) return std::isnan(value);
        return value == static_cast<T>(exact) || std::abs(static_cast<long double>(value) - exact) <= tolerance;
    }
}

const std::vector<int>& lengths() {
    static const std::vector<int> list = [] {
        std::vector<int> result = {255, 256, 257, 511, 1000, 1023, 1024, 1025, 2047, 3000, 5003};
        for (int n = 1; n <= 140; ++n)
            result.push_back(n);
        return result;
    }();
    return list;
}

// By all levels and at many addresses, once against the definition and then against the first.
template <class T>
void check(const Signal<T>& signal, const std::vector<int>& wantedLengths = lengths()) {
    Random random(signal.name);
    const auto longest = static_cast<size_t>(*std::max_element(wantedLengths.begin(), wantedLengths.end()));
    Arena arena(longest * sizeof(T) + 256);
    for (const int length : wantedLengths) {
        const auto n = static_cast<size_t>(length);
        std::vector<T> wanted;
        for (const Level level : levels()) {
            SCOPED_TRACE(signal.name + " by " + levelName(level) + ", " + std::to_string(n) + " elements");
            useLevel(level);
            const size_t gap = random.below(64 / sizeof(T)) * sizeof(T);
            auto* const dst = reinterpret_cast<T*>(random.below(2) == 0 ? arena.atEnd(n * sizeof(T), gap)
                                                                        : arena.atStart(n * sizeof(T), gap));
            const Generator<T> generator = signal.start();
            if (level == levels().front() || !signal.goesOn) {
                ASSERT_EQ(generator(dst, length), zvpStsOk);
            } else {
                for (size_t i = 0; i < n;) {
                    const size_t count = std::min(n - i, 1 + random.below(random.below(4) == 0 ? 700 : 40));
                    ASSERT_EQ(generator(dst + i, static_cast<int>(count)), zvpStsOk);
                    i += count;
                }
            }
            ASSERT_TRUE(arena.isIntact());
            if (level == levels().front()) {
                wanted.assign(dst, dst + n);
                for (size_t i = 0; i < n; ++i)
                    ASSERT_TRUE(isRight(dst[i], signal.exact(i, n), signal.tolerance))
                        << "element " << i << ": " << +dst[i] << " for " << signal.exact(i, n);
            } else {
                for (size_t i = 0; i < n; ++i)
                    ASSERT_TRUE(dst[i] == wanted[i] || dst[i] != dst[i])
                        << "element " << i << ": " << +dst[i] << " for " << +wanted[i];
            }
        }
    }
    useLevel(levels().back());
}

// An object in memory of the caller or of the library, released with the last use.
template <class State>
std::shared_ptr<State> held(State* state, ZvpStatus (*release)(State*)) {
    return {state, [=](State* s) { EXPECT_EQ(release(s), zvpStsOk); }};
}

template <class T, class State>
Generator<T> runs(ZvpStatus (*run)(T*, int, State*), std::shared_ptr<State> state) {
    return [=](T* dst, int len) { return run(dst, len, state.get()); };
}

// ---- Random numbers ----

// The sequence of raw numbers, cell by cell as it is defined.
class Sequence {
  public:
    explicit Sequence(uint32_t seed) : t_{seed, 69069 * seed + 1013904243, 0} { t_[2] = 69069 * t_[1] + 1013904243; }

    int32_t next() {
        uint32_t t = t_[1] - t_[2];
        if (wasNegative_) --t;
        wasNegative_ = t >= 0x80000000;
        if (wasNegative_) t -= 18;
        l_ = 69069 * l_ + 1013904243;
        t_[2] = t_[1];
        t_[1] = t_[0];
        t_[0] = t;
        return static_cast<int32_t>(l_ + t);
    }

  private:
    uint32_t l_ = 1131199209;
    uint32_t t_[3];
    bool wasNegative_ = true;
};

constexpr size_t kMostNumbers = 5100;

// So many standard deviates, or uniform numbers in [-1/2, 1/2).
std::vector<double> deviates(uint32_t seed, bool isNormal) {
    Sequence sequence(seed);
    std::vector<double> result;
    while (result.size() < kMostNumbers) {
        const double u = sequence.next() * 0x1p-31;
        if (!isNormal) {
            result.push_back(u / 2);
            continue;
        }
        const double v = sequence.next() * 0x1p-31;
        const double s = u * u + v * v;
        if (s == 0 || s >= 1) continue;
        const long double factor = std::sqrt(-2 * std::log(static_cast<long double>(s)) / s);
        result.push_back(static_cast<double>(u * factor));
        result.push_back(static_cast<double>(v * factor));
    }
    return result;
}

template <class T>
Signal<T> randomSignal(const std::string& name, bool isNormal, T first, T second, uint32_t seed,
                       std::function<Generator<T>()> start) {
    const auto numbers = std::make_shared<std::vector<double>>(deviates(seed, isNormal));
    const auto a = static_cast<double>(first), b = static_cast<double>(second);
    const double scale = isNormal ? b : b - a, middle = isNormal ? a : (a + b) / 2;
    // A logarithm, a root and a quotient within a unit in the last place each.
    const double tolerance = isNormal ? std::abs(scale) * 1e-14 : 0;
    const auto exact = [=](size_t n, size_t) -> long double {
        const double value = (*numbers)[n] * scale + middle;
        return std::is_same_v<T, float> ? static_cast<float>(value) : value;
    };
    return {name + " of " + std::to_string(a) + ", " + std::to_string(b), start, exact,
            std::is_same_v<T, float> ? tolerance + std::abs(scale) * 1e-7 * isNormal : tolerance};
}

template <class T, class State>
void checkRandom(const std::string& name, bool isNormal, const std::vector<std::pair<T, T>>& parameters,
                 ZvpStatus (*initAlloc)(State**, T, T, Zvp32u), ZvpStatus (*run)(T*, int, State*),
                 ZvpStatus (*release)(State*)) {
    uint32_t seed = 0;
    for (const auto& [a, b] : parameters) {
        const auto start = [=, a = a, b = b] {
            State* state = nullptr;
            EXPECT_EQ(initAlloc(&state, a, b, seed), zvpStsOk);
            return runs(run, held(state, release));
        };
        check(randomSignal<T>(name, isNormal, a, b, seed, start));
        seed = seed * 5 + 0x9e3779b9;
    }
}

template <class T>
void checkRandomDirect(const std::string& name, bool isNormal, const std::vector<std::pair<T, T>>& parameters,
                       ZvpStatus (*run)(T*, int, T, T, Zvp32u*)) {
    for (const auto& [a, b] : parameters) {
        const auto start = [=, a = a, b = b]() -> Generator<T> {
            return [=](T* dst, int len) {
                Zvp32u seed = 4711;
                const ZvpStatus status = run(dst, len, a, b, &seed);
                // One number more than it took.
                Sequence sequence(4711);
                size_t taken = 0, given = 0;
                while (given < static_cast<size_t>(len)) {
                    const double u = sequence.next() * 0x1p-31;
                    ++taken;
                    if (!isNormal) {
                        ++given;
                        continue;
                    }
                    const double v = sequence.next() * 0x1p-31;
                    if (u * u + v * v < 1) given += 2;
                }
                EXPECT_EQ(seed, static_cast<Zvp32u>(sequence.next()));
                return status;
            };
        };
        Signal<T> signal = randomSignal<T>(name, isNormal, a, b, 4711, start);
        signal.goesOn = false;
        check(signal);
    }
}

TEST(Generators, Random) {
    checkRandom<Zvp8u>("RandUniform_8u", false, {{0, 255}, {10, 11}, {200, 3}}, zvpsRandUniformInitAlloc_8u,
                       zvpsRandUniform_8u, zvpsRandUniformFree_8u);
    checkRandom<Zvp16s>("RandUniform_16s", false, {{-32768, 32767}, {0, 1}, {7, 7}}, zvpsRandUniformInitAlloc_16s,
                        zvpsRandUniform_16s, zvpsRandUniformFree_16s);
    checkRandom<Zvp32f>("RandUniform_32f", false, {{-1, 1}, {0, 1e30F}, {5, -3}}, zvpsRandUniformInitAlloc_32f,
                        zvpsRandUniform_32f, zvpsRandUniformFree_32f);
    checkRandom<Zvp8u>("RandGauss_8u", true, {{128, 20}, {3, 250}}, zvpsRandGaussInitAlloc_8u, zvpsRandGauss_8u,
                       zvpsRandGaussFree_8u);
    checkRandom<Zvp16s>("RandGauss_16s", true, {{0, 1000}, {-30000, 32767}, {5, 0}}, zvpsRandGaussInitAlloc_16s,
                        zvpsRandGauss_16s, zvpsRandGaussFree_16s);
    checkRandom<Zvp32f>("RandGauss_32f", true, {{0, 1}, {100, 0.01F}}, zvpsRandGaussInitAlloc_32f, zvpsRandGauss_32f,
                        zvpsRandGaussFree_32f);
    EXPECT_TRUE(blocks.empty());
}

TEST(Generators, RandomWithoutState) {
    checkRandomDirect<Zvp16s>("RandUniform_Direct_16s", false, {{-100, 100}}, zvpsRandUniform_Direct_16s);
    checkRandomDirect<Zvp32f>("RandUniform_Direct_32f", false, {{-1, 1}}, zvpsRandUniform_Direct_32f);
    checkRandomDirect<Zvp64f>("RandUniform_Direct_64f", false, {{-1, 1}, {1e300, -1e300}}, zvpsRandUniform_Direct_64f);
    checkRandomDirect<Zvp16s>("RandGauss_Direct_16s", true, {{0, 3000}}, zvpsRandGauss_Direct_16s);
    checkRandomDirect<Zvp32f>("RandGauss_Direct_32f", true, {{0, 1}}, zvpsRandGauss_Direct_32f);
    checkRandomDirect<Zvp64f>("RandGauss_Direct_64f", true, {{0, 1}, {-3, 1e-9}}, zvpsRandGauss_Direct_64f);
}

// ---- Waves ----

// frequency n modulo 1 without rounding: the frequency has 53 bits or fewer below 1/2.
long double turns(double frequency, size_t n, double phase) {
    int exponent;
    const double mantissa = std::frexp(frequency, &exponent);
    __extension__ using Wide = unsigned __int128;
    Wide product = static_cast<Wide>(std::ldexp(mantissa, 53)) * n;
    const int places = 53 - exponent; // product 2^-places
    if (places < 128) product &= (Wide{1} << places) - 1;
    const long double t = std::ldexp(static_cast<long double>(product), -places) + phase / (2 * kPi);
    return t - std::floor(t);
}

// The real value, then for complex elements that at a phase so many turns ahead.
std::function<long double(size_t, size_t)> waveOf(std::function<long double(long double)> value, double frequency,
                                                  double phase, size_t parts, long double ahead) {
    return [=](size_t i, size_t) {
        const long double t = turns(frequency, i / parts, phase) + (i % parts == 0 ? 0 : ahead);
        return value(t - std::floor(t));
    };
}
std::function<long double(long double)> cosine(double magnitude) {
    // Cosines of small angles, for its zeros too.
    return [=](long double t) {
        const long double quarter = std::abs(std::abs(t - 0.5L) - 0.25L); // from the zeros
        const bool isPositive = std::abs(t - 0.5L) > 0.25L;
        return (isPositive ? 1 : -1) * magnitude * std::sin(2 * kPi * quarter);
    };
}
std::function<long double(long double)> triangle(double magnitude, double asymmetry) {
    return [=](long double t) -> long double {
        const long double peak = (kPi + asymmetry) / (2 * kPi);
        return magnitude * (t < peak ? 2 * t / peak - 1 : 2 * (1 - t) / (1 - peak) - 1);
    };
}

struct WaveParameters {
    double magnitude, frequency, phase, asymmetry;
};
const WaveParameters kWaves[] = {
    {1, 0.25, 0, 0},           {0.3, 0.01, 1, 1.5},           {1000, 0.4999999, 6.28, -3.1}, {1, 0, 2, 0.3},
    {32767, 1e-9, 3.14159, 3}, {12345, 0.12345678901, 6, -2}, {2, 1.0 / 3, 0.5, -1e-3},
};

// How exact the value of a wave is, in its type but for rounding to an integer.
long double waveTolerance(const WaveParameters& w, bool isTone, bool isSingle, bool isInteger) {
    if (isTone) return w.magnitude * (isSingle ? 2.4e-7L : isInteger ? 1e-14L : 1e-15L);
    // The steeper slope, 4 / narrow, multiplies the roundings of the phase.
    const long double narrow = std::min(kPi + w.asymmetry, kPi - w.asymmetry) / kPi;
    return w.magnitude * (2.5e-15L / narrow + (isSingle ? 6e-8L : 0));
}

template <class E, class Magnitude, class F>
using Direct = ZvpStatus (*)(E* dst, int len, Magnitude magnitude, F frequency, F asymmetry, F* phase);

// In one call, by parts of the elements; and the phase that is left.
template <class E, class Magnitude, class F>
void checkDirect(const char* name, bool isTone, Direct<E, Magnitude, F> run, const std::vector<int>& samples) {
    using T = std::conditional_t<std::is_same_v<Magnitude, Zvp16s>, Zvp16s, F>;
    constexpr int kParts = sizeof(E) / sizeof(T);
    std::vector<int> partLengths;
    for (const int n : samples)
        partLengths.push_back(n * kParts);
    for (WaveParameters w : kWaves) {
        const auto magnitude =
            static_cast<Magnitude>(std::is_integral_v<Magnitude> ? std::ceil(w.magnitude) : w.magnitude);
        const auto frequency = static_cast<F>(w.frequency), phase = static_cast<F>(w.phase),
                   asymmetry = static_cast<F>(w.asymmetry);
        w = {static_cast<double>(magnitude), frequency, phase, asymmetry};
        Signal<T> signal;
        signal.name = name;
        signal.goesOn = false;
        signal.start = [=]() -> Generator<T> {
            return [=](T* dst, int len) {
                F p = phase;
                const ZvpStatus status =
                    run(reinterpret_cast<E*>(dst), len / kParts, magnitude, frequency, asymmetry, &p);
                const long double left = 2 * kPi * turns(w.frequency, static_cast<size_t>(len / kParts), w.phase);
                const long double error = std::abs(p - left), unit = std::is_same_v<F, float> ? 2.4e-7L : 4.5e-16L;
                EXPECT_TRUE(error <= unit || (p == 0 && 2 * kPi - error <= unit)) << +p << " for " << left;
                EXPECT_LT(p, 2 * kPi);
                return status;
            };
        };
        const auto value = isTone ? cosine(w.magnitude) : triangle(w.magnitude, w.asymmetry);
        signal.exact = waveOf(value, w.frequency, w.phase, kParts, 0.75L);
        signal.tolerance = waveTolerance(w, isTone, std::is_same_v<T, float>, std::is_integral_v<T>);
        check(signal, partLengths);
    }
}

#define ZVPS_TEST_WAVES(TYPE, MAGNITUDE, REAL)                                                                         \
    checkDirect<Zvp##TYPE, MAGNITUDE, REAL>(                                                                           \
        "Tone_Direct_" #TYPE, true,                                                                                    \
        [](Zvp##TYPE* dst, int len, MAGNITUDE magnitude, REAL frequency, REAL, REAL* phase) {                          \
            return zvpsTone_Direct_##TYPE(dst, len, magnitude, frequency, phase, 0);                                   \
        },                                                                                                             \
        samples);                                                                                                      \
    checkDirect<Zvp##TYPE, MAGNITUDE, REAL>("Triangle_Direct_" #TYPE, false, zvpsTriangle_Direct_##TYPE, samples);

void checkDirectWaves(const std::vector<int>& samples){
    ZVPS_TEST_WAVES(16s, Zvp16s, Zvp32f) ZVPS_TEST_WAVES(16sc, Zvp16s, Zvp32f) ZVPS_TEST_WAVES(32f, Zvp32f, Zvp32f)
        ZVPS_TEST_WAVES(32fc, Zvp32f, Zvp32f) ZVPS_TEST_WAVES(64f, Zvp64f, Zvp64f)
            ZVPS_TEST_WAVES(64fc, Zvp64f, Zvp64f)}

TEST(Generators, WavesWithoutState) {
    checkDirectWaves(lengths());
}

// Where rounding errors of a recurrence would have grown.
TEST(Generators, LongWaves) {
    checkDirectWaves({30001});
}

// Full of what it must not be mistaken for.
template <class State>
State* inMemory(std::vector<uint64_t>& memory, ZvpStatus (*getSize)(int*)) {
    int size = 0;
    EXPECT_EQ(getSize(&size), zvpStsOk);
    memory.assign((static_cast<size_t>(size) + 7) / 8, 0xA5A5A5A5A5A5A5A5);
    return reinterpret_cast<State*>(memory.data());
}

struct FixedWave {
    Zvp16s magnitude;
    int frequency, phase, asymmetry;
};

// In memory of either kind, in any cut; and the Direct forms.
TEST(Generators, WavesInFixedPoint) {
    const FixedWave waves[] = {{32767, 1000, 0, 0},      {1, 16383, 205886, 102943}, {20000, 1, 7, -102943},
                               {999, 0, 70000, -102940}, {5000, 8192, 102944, 5},    {32767, 12345, 1, 40000}};
    for (const FixedWave& w : waves) {
        const WaveParameters scaled = {static_cast<double>(w.magnitude), w.frequency * 0x1p-15, w.phase * 0x1p-15,
                                       w.asymmetry * 0x1p-15};
        for (const bool isTone : {true, false}) {
            Signal<Zvp16s> signal;
            signal.name = std::string(isTone ? "ToneQ15 " : "TriangleQ15 ") + std::to_string(w.frequency);
            signal.exact = waveOf(isTone ? cosine(scaled.magnitude) : triangle(scaled.magnitude, scaled.asymmetry),
                                  scaled.frequency, scaled.phase, 1, 0);
            signal.tolerance = waveTolerance(scaled, isTone, false, true);
            signal.start = [&]() -> Generator<Zvp16s> {
                const auto memory = std::make_shared<std::vector<uint64_t>>();
                if (isTone) {
                    auto* const state = inMemory<ZvpsToneState_16s>(*memory, zvpsToneGetStateSizeQ15_16s);
                    EXPECT_EQ(zvpsToneInitQ15_16s(state, w.magnitude, w.frequency, w.phase), zvpStsOk);
                    return [=](Zvp16s* dst, int len) {
                        (void)memory;
                        return zvpsToneQ15_16s(dst, len, state);
                    };
                }
                auto* const state = inMemory<ZvpsTriangleState_16s>(*memory, zvpsTriangleGetStateSizeQ15_16s);
                EXPECT_EQ(zvpsTriangleInitQ15_16s(state, w.magnitude, w.frequency, w.phase, w.asymmetry), zvpStsOk);
                return [=](Zvp16s* dst, int len) {
                    (void)memory;
                    return zvpsTriangleQ15_16s(dst, len, state);
                };
            };
            check(signal);
            signal.start = [&]() -> Generator<Zvp16s> {
                if (isTone) {
                    ZvpsToneState_16s* state = nullptr;
                    EXPECT_EQ(zvpsToneInitAllocQ15_16s(&state, w.magnitude, w.frequency, w.phase), zvpStsOk);
                    return runs(zvpsToneQ15_16s, held(state, zvpsToneFree));
                }
                ZvpsTriangleState_16s* state = nullptr;
                EXPECT_EQ(zvpsTriangleInitAllocQ15_16s(&state, w.magnitude, w.frequency, w.phase, w.asymmetry),
                          zvpStsOk);
                return runs(zvpsTriangleQ15_16s, held(state, zvpsTriangleFree));
            };
            check(signal, {1000, 70000});
            signal.goesOn = false;
            signal.start = [&]() -> Generator<Zvp16s> {
                return [&](Zvp16s* dst, int len) {
                    int phase = w.phase;
                    const ZvpStatus status =
                        isTone ? zvpsToneQ15_Direct_16s(dst, len, w.magnitude, w.frequency, &phase)
                               : zvpsTriangleQ15_Direct_16s(dst, len, w.magnitude, w.frequency, w.asymmetry, &phase);
                    const long double left =
                        65536 * kPi * turns(scaled.frequency, static_cast<size_t>(len), scaled.phase);
                    EXPECT_TRUE(std::abs(phase - left) <= 0.5001L || (phase == 0 && left > 205886.49L)) << phase;
                    return status;
                };
            };
            check(signal, {1, 31, 100, 4000});
        }
    }
    EXPECT_TRUE(blocks.empty());
}

// ---- Functions of an element's number ----

template <class T>
void checkJaehne(const char* name, ZvpStatus (*run)(T*, int, T), const std::vector<T>& magnitudes,
                 const std::vector<int>& signalLengths) {
    for (const T magnitude : magnitudes) {
        Signal<T> signal;
        signal.name = name;
        signal.goesOn = false;
        signal.start = [=] { return [=](T* dst, int len) { return run(dst, len, magnitude); }; };
        const auto m = static_cast<long double>(magnitude);
        signal.exact = [=](size_t n, size_t length) {
            // A quarter of a turn for each length.
            const auto rest = static_cast<long double>(n * n % (4 * length)) / static_cast<long double>(length);
            const long double quarter = rest - 2 * std::floor(rest / 2); // within half a turn
            const long double value = std::sin(kPi / 2 * std::min(quarter, 2 - quarter));
            return rest < 2 ? m * value : -m * value;
        };
        signal.tolerance = m * (std::is_same_v<T, float> ? 3e-8L : sizeof(T) <= 2 ? 5e-13L : 3e-16L);
        check(signal, signalLengths);
    }
}

#define ZVPS_TEST_JAEHNE(TYPE, ...)                                                                                    \
    checkJaehne<Zvp##TYPE>("VectorJaehne_" #TYPE, zvpsVectorJaehne_##TYPE, {__VA_ARGS__}, lengths());                  \
    checkJaehne<Zvp##TYPE>("VectorJaehne_" #TYPE, zvpsVectorJaehne_##TYPE, {__VA_ARGS__}, {200001});

TEST(Generators, Jaehne) {
    ZVPS_TEST_JAEHNE(8u, 255, 0)
    ZVPS_TEST_JAEHNE(8s, 127)
    ZVPS_TEST_JAEHNE(16u, 65535)
    ZVPS_TEST_JAEHNE(16s, 32767, 1)
    ZVPS_TEST_JAEHNE(32u, 4294967295)
    ZVPS_TEST_JAEHNE(32s, 2147483647)
    ZVPS_TEST_JAEHNE(32f, 1)
    ZVPS_TEST_JAEHNE(64f, 1, 1e300)
}

struct LineParameters {
    double offset, slope;
};
const LineParameters kLines[] = {
    {-3, 1},        {3, 0},       {0.5, 1},   {-0.5, -1},  {1.5, 0.25},      {-1e-10, 0},      {0.49999997, 1e-9},
    {300, -0.37},   {-7e4, 31.7}, {7e4, -33}, {-3e9, 1e6}, {5e9, -2.1e6},    {0, 0.1},         {1e30, -1e27},
    {kInfinity, 1}, {0, kNan},    {kNan, 0},  {1, -1e300}, {2147483520, 64}, {4294967040, 64},
};

// W: in which the line is computed.
template <class T, class W>
void checkLine(const char* name, ZvpStatus (*run)(T*, int, W, W), bool isRamp) {
    using Computed = std::conditional_t<std::is_same_v<W, float>, float, double>;
    for (const LineParameters& line : kLines) {
        const auto offset = static_cast<W>(line.offset), slope = static_cast<W>(line.slope);
        Signal<T> signal;
        signal.name = std::string(name) + " " + std::to_string(line.offset) + ", " + std::to_string(line.slope);
        signal.goesOn = false;
        signal.start = [=] { return [=](T* dst, int len) { return run(dst, len, offset, slope); }; };
        signal.exact = [=](size_t n, size_t) -> long double {
            if (!isRamp) return double{offset} + double{slope} * static_cast<double>(n);
            const Computed product = static_cast<Computed>(slope) * static_cast<Computed>(n);
            const double value = static_cast<Computed>(offset) + product;
            return std::is_integral_v<T> ? std::floor(value + 0.5) : value;
        };
        check(signal);
    }
}

#define ZVPS_TEST_LINES(TYPE, SLOPE)                                                                                   \
    checkLine<Zvp##TYPE, Zvp32f>("VectorRamp_" #TYPE, zvpsVectorRamp_##TYPE, true);                                    \
    checkLine<Zvp##TYPE, SLOPE>("VectorSlope_" #TYPE, zvpsVectorSlope_##TYPE, false);

TEST(Generators, Lines) {
    ZVPS_TEST_LINES(8u, Zvp32f)
    ZVPS_TEST_LINES(8s, Zvp32f)
    ZVPS_TEST_LINES(16u, Zvp32f)
    ZVPS_TEST_LINES(16s, Zvp32f)
    ZVPS_TEST_LINES(32u, Zvp32f)
    ZVPS_TEST_LINES(32s, Zvp32f)
    ZVPS_TEST_LINES(32f, Zvp32f)
    ZVPS_TEST_LINES(64f, Zvp64f)
    // Ties go up, and the element's number counts as a single.
    Zvp8u bytes[6];
    EXPECT_EQ(zvpsVectorRamp_8u(bytes, 6, -3, 1), zvpStsOk);
    EXPECT_EQ(std::vector<int>(bytes, bytes + 6), (std::vector<int>{0, 0, 0, 0, 1, 2}));
    std::vector<Zvp64f> many((1 << 24) + 4);
    EXPECT_EQ(zvpsVectorRamp_64f(many.data(), static_cast<int>(many.size()), 0, 1), zvpStsOk);
    EXPECT_EQ(many[(1 << 24) + 1], 0x1p24);
    EXPECT_EQ(many[(1 << 24) + 2], 0x1p24 + 2);
}

// ---- Errors ----

TEST(Generators, Errors) {
    int written = 77;
    Zvp16s x[4] = {77, 77, 77, 77};
    Zvp32f y[4] = {77, 77, 77, 77}, phase = 77;
    const auto expect = [&](ZvpStatus wanted, ZvpStatus status) {
        EXPECT_EQ(status, wanted);
        EXPECT_TRUE(x[0] == 77 && y[0] == 77 && written == 77);
    };
    const auto at = [&](Zvp32f value) { return phase = value, &phase; };
    const auto atQ15 = [&](int value) {
        static int phaseQ15;
        return phaseQ15 = value, &phaseQ15;
    };
    const float nan = std::numeric_limits<float>::quiet_NaN(), twoPi = 6.2831855F;
    // Tones: pointers, length, magnitude, frequency, phase.
    expect(zvpStsNullPtr, zvpsTone_Direct_32f(nullptr, 0, 0, 0, at(0), 0));
    expect(zvpStsNullPtr, zvpsTone_Direct_32f(y, 0, 0, 0, nullptr, 0));
    expect(zvpStsBadSize, zvpsTone_Direct_32f(y, 0, 0, 0, at(0), 0));
    for (const float magnitude : {0.0F, -1.0F, nan})
        expect(zvpStsBadToneMagn, zvpsTone_Direct_32f(y, 4, magnitude, 9, at(9), 0));
    for (const float frequency : {-1e-30F, 0.5F, nan})
        expect(zvpStsBadToneFreq, zvpsTone_Direct_32f(y, 4, 1, frequency, at(9), 0));
    for (const float wrong : {-1e-30F, twoPi, nan})
        expect(zvpStsBadTonePhase, zvpsTone_Direct_32f(y, 4, 1, 0, at(wrong), 0));
    expect(zvpStsBadToneMagn, zvpsToneQ15_Direct_16s(x, 4, 0, 16384, atQ15(205887)));
    expect(zvpStsBadToneFreq, zvpsToneQ15_Direct_16s(x, 4, 1, 16384, atQ15(205887)));
    expect(zvpStsBadTonePhase, zvpsToneQ15_Direct_16s(x, 4, 1, 16383, atQ15(205887)));
    // Triangles: the phase's pointer, magnitude, frequency, phase, asymmetry, destination, length.
    expect(zvpStsNullPtr, zvpsTriangle_Direct_32f(nullptr, 0, 0, 9, 9, nullptr));
    for (const float magnitude : {0.0F, -1.0F, nan})
        expect(zvpStsBadTriMagn, zvpsTriangle_Direct_32f(nullptr, 0, magnitude, 9, 9, at(9)));
    for (const float frequency : {-1e-30F, 0.5F, nan})
        expect(zvpStsBadTriFreq, zvpsTriangle_Direct_32f(nullptr, 0, 1, frequency, 9, at(9)));
    for (const float wrong : {-1e-30F, twoPi, nan})
        expect(zvpStsBadTriPhase, zvpsTriangle_Direct_32f(nullptr, 0, 1, 0, 9, at(wrong)));
    for (const float asymmetry : {-3.1415930F, 3.1415930F, nan})
        expect(zvpStsBadTriAsym, zvpsTriangle_Direct_32f(nullptr, 0, 1, 0, asymmetry, at(0)));
    expect(zvpStsNullPtr, zvpsTriangle_Direct_32f(nullptr, 0, 1, 0, 0, at(0)));
    expect(zvpStsBadSize, zvpsTriangle_Direct_32f(y, 0, 1, 0, 0, at(0)));
    expect(zvpStsNullPtr, zvpsTriangleQ15_Direct_16s(nullptr, 0, 0, 0, 0, nullptr));
    expect(zvpStsBadTriAsym, zvpsTriangleQ15_Direct_16s(nullptr, 0, 1, 0, 102944, atQ15(0)));
    // Others.
    expect(zvpStsNullPtr, zvpsVectorJaehne_32f(nullptr, 0, -1));
    expect(zvpStsBadSize, zvpsVectorJaehne_32f(y, 0, -1));
    expect(zvpStsBadJaehneMagn, zvpsVectorJaehne_32f(y, 4, -1));
    expect(zvpStsBadJaehneMagn, zvpsVectorJaehne_32f(y, 4, nan));
    expect(zvpStsBadJaehneMagn, zvpsVectorJaehne_16s(x, 4, -1));
    expect(zvpStsNullPtr, zvpsVectorRamp_32f(nullptr, 0, 0, 0));
    expect(zvpStsBadSize, zvpsVectorRamp_32f(y, 0, 0, 0));
    expect(zvpStsNullPtr, zvpsVectorSlope_16s(nullptr, 0, 0, 0));
    expect(zvpStsBadSize, zvpsVectorSlope_16s(x, INT_MIN, 0, 0));
    Zvp32u seed = 1;
    expect(zvpStsNullPtr, zvpsRandGauss_Direct_32f(y, 0, 0, 1, nullptr));
    expect(zvpStsNullPtr, zvpsRandUniform_Direct_32f(nullptr, 0, 0, 1, &seed));
    expect(zvpStsBadSize, zvpsRandUniform_Direct_32f(y, 0, 0, 1, &seed));
    EXPECT_EQ(seed, 1U);
}

// What the functions on a kind of states have in common. `init` and `initAlloc` with parameters that are right.
template <class T, class State>
void checkState(uint32_t tag, ZvpStatus (*getSize)(int*), std::function<ZvpStatus(State*)> init,
                std::function<ZvpStatus(State**)> initAlloc, ZvpStatus (*run)(T*, int, State*),
                ZvpStatus (*release)(State*)) {
    T x[40] = {77};
    State* state = nullptr;
    EXPECT_EQ(initAlloc(nullptr), zvpStsNullPtr);
    allocationsLeft = 0;
    EXPECT_EQ(initAlloc(&state), zvpStsNoMemory);
    allocationsLeft = -1;
    EXPECT_EQ(state, nullptr);
    ASSERT_EQ(initAlloc(&state), zvpStsOk);
    EXPECT_EQ(*reinterpret_cast<uint32_t*>(state), tag);
    EXPECT_EQ(run(nullptr, 1, state), zvpStsNullPtr);
    EXPECT_EQ(run(x, 0, nullptr), zvpStsNullPtr);
    *reinterpret_cast<uint32_t*>(state) = tag + 1;
    EXPECT_EQ(run(x, 0, state), zvpStsBadSize);
    EXPECT_EQ(run(x, 1, state), zvpStsContextMismatch);
    EXPECT_EQ(release(state), zvpStsContextMismatch);
    EXPECT_EQ(x[0], 77);
    *reinterpret_cast<uint32_t*>(state) = tag;
    EXPECT_EQ(release(nullptr), zvpStsNullPtr);
    EXPECT_EQ(release(state), zvpStsOk);
    EXPECT_TRUE(blocks.empty());
    if (getSize == nullptr) return;
    EXPECT_EQ(getSize(nullptr), zvpStsNullPtr);
    EXPECT_EQ(init(nullptr), zvpStsNullPtr);
    std::vector<uint64_t> memory;
    state = inMemory<State>(memory, getSize);
    EXPECT_EQ(init(state), zvpStsOk);
    EXPECT_EQ(run(x, 40, state), zvpStsOk);
    EXPECT_EQ(release(state), zvpStsOk);
    EXPECT_EQ(release(state), zvpStsContextMismatch);
    EXPECT_EQ(run(x, 40, state), zvpStsContextMismatch);
}

#define ZVPS_TEST_RANDOM_STATE(NAME, TYPE, TAG, GET_SIZE, INIT)                                                        \
    checkState<Zvp##TYPE, ZvpsRand##NAME##State_##TYPE>(                                                               \
        TAG, GET_SIZE, INIT,                                                                                           \
        [](ZvpsRand##NAME##State_##TYPE** s) { return zvpsRand##NAME##InitAlloc_##TYPE(s, 0, 1, 2); },                 \
        zvpsRand##NAME##_##TYPE, zvpsRand##NAME##Free_##TYPE);

TEST(Generators, States) {
    ZVPS_TEST_RANDOM_STATE(Uniform, 8u, 35, nullptr, nullptr)
    ZVPS_TEST_RANDOM_STATE(Uniform, 16s, 36, zvpsRandUniformGetSize_16s,
                           [](auto* s) { return zvpsRandUniformInit_16s(s, 0, 1, 2); })
    ZVPS_TEST_RANDOM_STATE(Uniform, 32f, 37, nullptr, nullptr)
    ZVPS_TEST_RANDOM_STATE(Gauss, 8u, 38, nullptr, nullptr)
    ZVPS_TEST_RANDOM_STATE(Gauss, 16s, 39, zvpsRandGaussGetSize_16s,
                           [](auto* s) { return zvpsRandGaussInit_16s(s, 0, 1, 2); })
    ZVPS_TEST_RANDOM_STATE(Gauss, 32f, 40, nullptr, nullptr)
    checkState<Zvp16s, ZvpsToneState_16s>(
        0x434D4148, zvpsToneGetStateSizeQ15_16s, [](auto* s) { return zvpsToneInitQ15_16s(s, 1, 2, 3); },
        [](auto** s) { return zvpsToneInitAllocQ15_16s(s, 1, 2, 3); }, zvpsToneQ15_16s, zvpsToneFree);
    checkState<Zvp16s, ZvpsTriangleState_16s>(
        0x434D4149, zvpsTriangleGetStateSizeQ15_16s, [](auto* s) { return zvpsTriangleInitQ15_16s(s, 1, 2, 3, 4); },
        [](auto** s) { return zvpsTriangleInitAllocQ15_16s(s, 1, 2, 3, 4); }, zvpsTriangleQ15_16s, zvpsTriangleFree);
}

TEST(Generators, StateParameters) {
    struct {
        FixedWave wave;
        ZvpStatus tone, triangle;
    } const cases[] = {
        {{1, 0, 205886, -102943}, zvpStsOk, zvpStsOk},
        {{32767, 16383, 0, 102943}, zvpStsOk, zvpStsOk},
        {{0, -1, -1, INT_MIN}, zvpStsBadToneMagn, zvpStsBadTriMagn},
        {{1, -1, -1, INT_MIN}, zvpStsBadToneFreq, zvpStsBadTriFreq},
        {{1, 16384, 205887, 102944}, zvpStsBadToneFreq, zvpStsBadTriFreq},
        {{1, 16383, 205887, 102944}, zvpStsBadTonePhase, zvpStsBadTriPhase},
        {{1, 0, -1, 102944}, zvpStsBadTonePhase, zvpStsBadTriPhase},
        {{1, 0, 0, 102944}, zvpStsOk, zvpStsBadTriAsym},
        {{1, 0, 0, -102944}, zvpStsOk, zvpStsBadTriAsym},
    };
    for (const auto& [w, toneStatus, triangleStatus] : cases) {
        std::vector<uint64_t> memory;
        auto* const tone = inMemory<ZvpsToneState_16s>(memory, zvpsToneGetStateSizeQ15_16s);
        EXPECT_EQ(zvpsToneInitQ15_16s(tone, w.magnitude, w.frequency, w.phase), toneStatus);
        EXPECT_EQ(memory[0] == 0xA5A5A5A5A5A5A5A5, toneStatus != zvpStsOk);
        auto* const triangle = inMemory<ZvpsTriangleState_16s>(memory, zvpsTriangleGetStateSizeQ15_16s);
        EXPECT_EQ(zvpsTriangleInitQ15_16s(triangle, w.magnitude, w.frequency, w.phase, w.asymmetry), triangleStatus);
        EXPECT_EQ(memory[0] == 0xA5A5A5A5A5A5A5A5, triangleStatus != zvpStsOk);
        ZvpsToneState_16s* newTone = nullptr;
        EXPECT_EQ(zvpsToneInitAllocQ15_16s(&newTone, w.magnitude, w.frequency, w.phase), toneStatus);
        EXPECT_EQ(newTone == nullptr || zvpsToneFree(newTone) == zvpStsOk, true);
        ZvpsTriangleState_16s* newTriangle = nullptr;
        EXPECT_EQ(zvpsTriangleInitAllocQ15_16s(&newTriangle, w.magnitude, w.frequency, w.phase, w.asymmetry),
                  triangleStatus);
        EXPECT_EQ(newTriangle == nullptr || zvpsTriangleFree(newTriangle) == zvpStsOk, true);
        EXPECT_TRUE(blocks.empty());
    }
}

} // namespace
} // namespace zvps::test
