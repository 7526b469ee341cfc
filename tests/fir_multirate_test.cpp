// FIR filters of several rates: every form of every type against the filtered upsampled signal in higher precision.
#include "framework/filters.hpp"
#include "framework/memory.hpp"
#include "zvpcore.h"

#include <omp.h>

#include <climits>

namespace zvps::test {
namespace {

// ---- Types and their functions ----

struct Rates {
    int up, upPhase, down, downPhase;
};
#define RATES r.up, r.upPhase, r.down, r.downPhase

template <class S, class H, class K, class D>
struct Family {
    using State = S;
    using Taps = H; // as the caller gives them
    using Kept = K; // as they are kept
    using Data = D;
    const char* name;
    int tag;      // the two digits
    bool isFixed; // a scale comes with the taps
    ZvpStatus (*size)(int, int, int, int*);
    ZvpStatus (*init)(S**, const H*, int, Rates, const D*, Zvp8u*);
    ZvpStatus (*initAlloc)(S**, const H*, int, Rates, const D*);
    ZvpStatus (*free)(S*);
    ZvpStatus (*getKept)(const S*, K*, int* scale);
    ZvpStatus (*setTaps)(const H*, S*);
    ZvpStatus (*getPast)(const S*, D*);
    ZvpStatus (*setPast)(S*, const D*);
    ZvpStatus (*run)(const D*, D*, int, S*, int scale);
    ZvpStatus (*runInPlace)(D*, int, S*, int scale);
    ZvpStatus (*one)(D, D*, S*, int scale);
    ZvpStatus (*direct)(const D*, D*, int, const H*, int, Rates, D*, int scale);
    ZvpStatus (*directInPlace)(D*, int, const H*, int, Rates, D*, int scale);
};

#define GIVEN_NONE
#define GIVEN_FACTOR , kTapsFactor
#define GIVEN_FLOAT
#define DIRECT_OF(BLOCK, BLOCK_I, FACTOR, SCALE)                                                                       \
    [](const auto* src, auto* dst, int n, const auto* taps, int len, Rates r, auto* past, int scale) {                 \
        return (void)scale, BLOCK(src, dst, n, taps, len GIVEN_##FACTOR, RATES, past SCALE);                           \
    },                                                                                                                 \
        [](auto* srcDst, int n, const auto* taps, int len, Rates r, auto* past, int scale) {                           \
            return (void)scale, BLOCK_I(srcDst, n, taps, len GIVEN_##FACTOR, RATES, past SCALE);                       \
        }
#define SCALE , scale
#define DIRECT_PLAIN(NAME, FACTOR) DIRECT_OF(NAME, NAME##_I, FACTOR, )
#define DIRECT_SCALED(NAME, FACTOR) DIRECT_OF(NAME##_Sfs, NAME##_ISfs, FACTOR, SCALE)
#define DIRECT(PREFIX, DATA, FACTOR, KIND) DIRECT_##KIND(zvpsFIRMR##PREFIX##_Direct_##DATA, FACTOR)
#define NO_DIRECT(PREFIX, DATA, FACTOR, KIND) nullptr, nullptr
// END: of the names of functions that take taps of SOURCE.
#define FAMILY(PREFIX, DATA, END, KEPT, SOURCE, tag, FACTOR, KIND, DIRECT)                                             \
    Family<ZvpsFIRState##PREFIX##_##DATA, Zvp##SOURCE, Zvp##KEPT, Zvp##DATA> {                                         \
#PREFIX "_" #DATA #END, tag, #FACTOR[0] == 'F', zvpsFIRMRGetStateSize##PREFIX##_##DATA##END,                   \
            [](auto** s, const auto* taps, int len, Rates r, const auto* past, Zvp8u* buffer) {                        \
                return zvpsFIRMRInit##PREFIX##_##DATA##END(s, taps, len GIVEN_##FACTOR, RATES, past, buffer);          \
            },                                                                                                         \
            [](auto** s, const auto* taps, int len, Rates r, const auto* past) {                                       \
                return zvpsFIRMRInitAlloc##PREFIX##_##DATA##END(s, taps, len GIVEN_##FACTOR, RATES, past);             \
            },                                                                                                         \
            zvpsFIRFree##PREFIX##_##DATA, ZVPS_TEST_FIR_TAPS_##FACTOR(PREFIX##_##DATA, END),                           \
            ZVPS_TEST_FIR_PAST(PREFIX##_##DATA), ZVPS_TEST_FIR_RUN_##KIND(PREFIX##_##DATA),                            \
            DIRECT(PREFIX, DATA, FACTOR, KIND)       \
    }

template <class Action>
void forEachFamily(Action action) {
    action(FAMILY(, 32f, , 32f, 32f, 3, NONE, PLAIN, DIRECT));
    action(FAMILY(, 32fc, , 32fc, 32fc, 4, NONE, PLAIN, DIRECT));
    action(FAMILY(32f, 16s, , 32f, 32f, 7, NONE, SCALED, DIRECT));
    action(FAMILY(32fc, 16sc, , 32fc, 32fc, 8, NONE, SCALED, DIRECT));
    action(FAMILY(32s, 16s, , 32s, 32s, 11, FACTOR, SCALED, DIRECT));
    action(FAMILY(32sc, 16sc, , 32sc, 32sc, 12, FACTOR, SCALED, DIRECT));
    action(FAMILY(32s, 16s, 32f, 32s, 32f, 11, FLOAT, SCALED, NO_DIRECT));
    action(FAMILY(32sc, 16sc, 32fc, 32sc, 32fc, 12, FLOAT, SCALED, NO_DIRECT));
    action(FAMILY(, 64f, , 64f, 64f, 15, NONE, PLAIN, DIRECT));
    action(FAMILY(, 64fc, , 64fc, 64fc, 16, NONE, PLAIN, DIRECT));
    action(FAMILY(64f, 32f, , 64f, 64f, 19, NONE, PLAIN, DIRECT));
    action(FAMILY(64fc, 32fc, , 64fc, 64fc, 20, NONE, PLAIN, DIRECT));
    action(FAMILY(64f, 32s, , 64f, 64f, 23, NONE, SCALED, DIRECT));
    action(FAMILY(64fc, 32sc, , 64fc, 64fc, 24, NONE, SCALED, DIRECT));
    action(FAMILY(64f, 16s, , 64f, 64f, 27, NONE, SCALED, DIRECT));
    action(FAMILY(64fc, 16sc, , 64fc, 64fc, 28, NONE, SCALED, DIRECT));
    action(FAMILY(, 16s, , 16s, 16s, 30, NONE, SCALED, DIRECT));
}

// ---- What results must be ----

size_t pastOf(size_t tapsLen, Rates r) {
    return (tapsLen + static_cast<size_t>(r.up) - 1) / static_cast<size_t>(r.up);
}

// Output m of the upsampled signal with the `past` (most recent first) before it.
template <class K, class D>
Sum outputAt(const std::vector<K>& taps, Rates r, const std::vector<D>& past, const D* x, int64_t m) {
    Sum sum;
    const int64_t position = r.downPhase + m * r.down;
    for (size_t k = 0; k < taps.size(); ++k) {
        const int64_t at = position - static_cast<int64_t>(k) - r.upPhase;
        if (at % r.up != 0) continue;
        const int64_t n = at / r.up;
        sum.add(taps[k], n < 0 ? past.at(static_cast<size_t>(-1 - n)) : x[n]);
    }
    return sum;
}

template <class D, class K>
void expectOutputs(const std::vector<K>& taps, int shift, Rates r, const std::vector<D>& past, const std::vector<D>& x,
                   const std::vector<D>& y, const std::string& where) {
    constexpr bool isExact = std::is_integral_v<PartOfType<K>>;
    const size_t step = y.size() / 150 + 1;
    for (size_t m = 0; m < y.size(); m += m < 40 || m + 40 > y.size() ? 1 : step) {
        const Sum sum = outputAt(taps, r, past, x.data(), static_cast<int64_t>(m));
        const long double error = isExact ? 0 : tolerance<K>(pastOf(taps.size(), r)) * sum.magnitudes;
        ASSERT_TRUE(isResult(y[m], sum, error, shift)) << where << ", output " << m;
    }
}

// A scale factor that keeps most results within the type's range.
template <class F>
int usualScale(const F& family) {
    if (!std::is_integral_v<PartOfType<typename F::Data>> || !std::is_integral_v<PartOfType<typename F::Taps>>)
        return 0;
    return family.isFixed ? 33 + kTapsFactor : 17;
}

template <class F>
std::string describe(const F& family, size_t tapsLen, Rates r) {
    return std::string(family.name) + ", " + std::to_string(tapsLen) + " taps, up " + std::to_string(r.up) + " from " +
           std::to_string(r.upPhase) + ", down " + std::to_string(r.down) + " from " + std::to_string(r.downPhase);
}

// ---- Filters ----

template <class F>
struct Filter {
    F family;
    Rates r;
    std::vector<typename F::Taps> taps;
    std::vector<typename F::Data> past;
    typename F::State* state = nullptr;

    Filter(const F& f, std::vector<typename F::Taps> h, Rates rates, std::vector<typename F::Data> line)
        : family(f), r(rates), taps(std::move(h)), past(std::move(line)) {
        EXPECT_EQ(family.initAlloc(&state, taps.data(), length(), r, past.data()), 0) << where();
    }
    ~Filter() { EXPECT_EQ(family.free(state), 0) << where(); }
    Filter(const Filter&) = delete;
    Filter& operator=(const Filter&) = delete;

    int length() const { return static_cast<int>(taps.size()); }
    std::string where() const { return describe(family, taps.size(), r); }

    // By blocks of so many iterations, the last one for all that are left; in place or not, at the ends of pages.
    using D = typename F::Data;
    std::vector<D> run(const std::vector<D>& x, const std::vector<size_t>& blocks, int scale, bool inPlace = false) {
        std::vector<D> y;
        const auto up = static_cast<size_t>(r.up), down = static_cast<size_t>(r.down);
        const size_t iterations = x.size() / down;
        for (size_t i = 0, b = 0; i < iterations; ++b) {
            const size_t n = b < blocks.size() ? std::min(blocks[b], iterations - i) : iterations - i;
            std::vector<D> inputs(x.begin() + static_cast<ptrdiff_t>(i * down),
                                  x.begin() + static_cast<ptrdiff_t>((i + n) * down));
            if (inPlace) inputs.resize(n * std::max(up, down));
            const Guarded<D> src(inputs), dst(std::vector<D>(inPlace ? 0 : n * up));
            const int count = static_cast<int>(n);
            EXPECT_EQ(inPlace ? family.runInPlace(src.data(), count, state, scale)
                              : family.run(src.data(), dst.data(), count, state, scale),
                      0);
            const D* const results = inPlace ? src.data() : dst.data();
            y.insert(y.end(), results, results + n * up);
            i += n;
        }
        return y;
    }
    std::vector<D> line() const {
        std::vector<D> now(past.size());
        EXPECT_EQ(family.getPast(state, now.data()), 0) << where();
        return now;
    }
    // The taps in use, and what the results' scale factor must be lowered by.
    std::vector<typename F::Kept> kept(int* scale) const {
        *scale = 0;
        std::vector<typename F::Kept> result(taps.size());
        EXPECT_EQ(family.getKept(state, result.data(), scale), 0) << where();
        return result;
    }
};

// Sums by lanes of both kinds and of both together, and outputs one by one; all with every kind of phase.
constexpr Rates kRates[] = {{1, 0, 2, 1},   {2, 1, 1, 0},  {1, 0, 3, 0},    {3, 2, 1, 0},      {1, 0, 4, 3},
                            {4, 0, 1, 0},   {1, 0, 5, 2},  {1, 0, 6, 5},    {7, 3, 1, 0},      {1, 0, 7, 6},
                            {8, 7, 1, 0},   {1, 0, 8, 1},  {3, 1, 2, 0},    {2, 1, 3, 2},      {4, 3, 6, 5},
                            {5, 4, 3, 0},   {2, 0, 7, 6},  {6, 5, 4, 0},    {1, 0, 12, 3},     {1, 0, 16, 0},
                            {1, 0, 40, 39}, {21, 4, 1, 0}, {16, 15, 15, 3}, {160, 9, 147, 146}};

TEST(FirMultirate, OutputsAreThoseOfTheUpsampledSignal) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        for (const Rates r : kRates) {
            for (const size_t tapsLen : {1, 2, 9, 16, 37, 100, 260}) {
                if (tapsLen > 40 && random.below(2) == 0) continue;
                const auto taps = randomVector<typename F::Taps>(tapsLen, random);
                const auto past = randomVector<D>(pastOf(tapsLen, r), random);
                const auto least = static_cast<size_t>(std::max(r.up, r.down));
                const size_t iterations = 200 / least + 1 + random.below(600 / least + 2);
                const auto x = randomVector<D>(iterations * static_cast<size_t>(r.down), random);
                const int scale = usualScale(family);
                std::vector<D> fused; // the results of levels with fused operations
                for (const Level level : levels()) {
                    useLevel(level);
                    Filter<F> whole(family, taps, r, past);
                    const std::string where = whole.where() + ", " + levelName(level);
                    const auto y = whole.run(x, {}, scale);
                    int tapScale;
                    const auto kept = whole.kept(&tapScale);
                    ASSERT_NO_FATAL_FAILURE(expectOutputs(kept, scale - tapScale, r, past, x, y, where));
                    if (level != Level::v2) {
                        EXPECT_TRUE(fused.empty() || sameBits(y, fused)) << where << " against v3";
                        fused = y;
                    }
                    Filter<F> cut(family, taps, r, past);
                    const std::vector<size_t> blocks = {1, 1, 2, 1 + random.below(9), 17, 1 + random.below(60), 3};
                    EXPECT_TRUE(sameBits(y, cut.run(x, blocks, scale, random.below(2) == 0))) << where << " cut";
                    auto newest = past;
                    newest.insert(newest.begin(), x.rbegin(), x.rend());
                    newest.resize(past.size());
                    EXPECT_TRUE(sameBits(whole.line(), newest) && sameBits(cut.line(), newest)) << where;
                    if (family.direct == nullptr) continue;
                    auto line = past;
                    std::vector<D> direct(y.size()), both = x;
                    both.resize(std::max(x.size(), y.size()));
                    const int n = static_cast<int>(iterations), len = static_cast<int>(tapsLen);
                    ASSERT_EQ(family.direct(x.data(), direct.data(), n, taps.data(), len, r, line.data(), scale), 0);
                    EXPECT_TRUE(sameBits(y, direct) && sameBits(line, newest)) << where << " direct";
                    line = past;
                    ASSERT_EQ(family.directInPlace(both.data(), n, taps.data(), len, r, line.data(), scale), 0);
                    both.resize(y.size());
                    EXPECT_TRUE(sameBits(y, both) && sameBits(line, newest)) << where << " direct, in place";
                }
            }
        }
    });
}

TEST(FirMultirate, LongBlocksOnAnyNumberOfThreads) {
    omp_set_num_threads(8);
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        useLevel(levels().back());
        for (const Rates r : {Rates{1, 0, 4, 3}, {3, 1, 1, 0}, {3, 0, 2, 1}, {25, 7, 24, 5}}) {
            for (const size_t tapsLen : {24, 1000}) {
                const auto taps = randomVector<typename F::Taps>(tapsLen, random);
                const auto past = randomVector<D>(pastOf(tapsLen, r), random);
                const auto iterations = static_cast<size_t>(9001 / r.up);
                const auto x = randomVector<D>(iterations * static_cast<size_t>(r.down), random);
                const int scale = usualScale(family);
                zvpSetNumThreads(1);
                Filter<F> single(family, taps, r, past);
                const auto y = single.run(x, {}, scale);
                int tapScale;
                const auto kept = single.kept(&tapScale);
                ASSERT_NO_FATAL_FAILURE(expectOutputs(kept, scale - tapScale, r, past, x, y, single.where()));
                for (const int threads : {2, 5}) {
                    zvpSetNumThreads(threads);
                    Filter<F> many(family, taps, r, past);
                    EXPECT_TRUE(sameBits(y, many.run(x, {}, scale, threads == 5))) << many.where();
                    EXPECT_TRUE(sameBits(single.line(), many.line())) << many.where();
                }
                zvpSetNumThreads(0);
            }
        }
    });
}

// Inputs beyond the reach of an output's taps have no influence on it, whatever they are.
TEST(FirMultirate, WhatIsNotFiniteStaysInItsPlace) {
    const auto family = FAMILY(, 32f, , 32f, 32f, 3, NONE, PLAIN, DIRECT);
    Random random("infinite");
    for (const Rates r : kRates) {
        for (const size_t tapsLen : {1, 7, 33}) {
            const auto taps = randomVector<Zvp32f>(tapsLen, random);
            const auto past = randomVector<Zvp32f>(pastOf(tapsLen, r), random);
            const auto x = randomVector<Zvp32f>(static_cast<size_t>(r.down) * 90, random);
            auto bad = x;
            const size_t at = random.below(x.size());
            bad[at] = std::numeric_limits<Zvp32f>::quiet_NaN();
            for (const Level level : levels()) {
                useLevel(level);
                Filter clean(family, taps, r, past), other(family, taps, r, past);
                const auto y = clean.run(x, {}, 0);
                const auto z = other.run(bad, {}, 0);
                for (size_t m = 0; m < y.size(); ++m) {
                    const int64_t k =
                        r.downPhase + static_cast<int64_t>(m) * r.down - static_cast<int64_t>(at) * r.up - r.upPhase;
                    const bool isReached = k >= 0 && k < static_cast<int64_t>(tapsLen);
                    ASSERT_TRUE(isReached ? std::isnan(z[m]) : y[m] == z[m]) << clean.where() << ", output " << m;
                }
            }
        }
    }
}

// Sums of the largest products, for all scale factors; and more of them than double precision counts.
TEST(FirMultirate, IntegerSumsAreExact) {
    const auto family = FAMILY(, 16s, , 16s, 16s, 30, NONE, SCALED, DIRECT);
    Random random("exact");
    for (const Rates r : {Rates{1, 0, 3, 1}, {4, 1, 1, 0}, {2, 1, 3, 2}, {30, 3, 1, 0}}) {
        auto taps = randomVector<Zvp16s>(150, random);
        std::fill(taps.begin() + 30, taps.begin() + 130, Zvp16s{-32768});
        const std::vector<Zvp16s> past(pastOf(taps.size(), r), Zvp16s{-32768});
        auto x = randomVector<Zvp16s>(static_cast<size_t>(r.down) * 40, random);
        std::fill(x.begin(), x.begin() + 20, Zvp16s{-32768});
        for (const int scale : {0, 1, 15, 16, 31, 32, 40, 63, 64, INT_MAX, -1, -16, INT_MIN}) {
            Filter filter(family, taps, r, past);
            const auto y = filter.run(x, {}, scale);
            ASSERT_NO_FATAL_FAILURE(expectOutputs(taps, std::clamp(scale, -100, 100), r, past, x, y,
                                                  filter.where() + std::to_string(scale)));
        }
    }
    // 2^53 + 2^38 + 1: without the one, half of the last place, to even.
    constexpr size_t kTaps = (size_t{1} << 23) + 257;
    std::vector<Zvp16s> taps(kTaps, Zvp16s{-32768}), past(kTaps, Zvp16s{-32768}), x = {-32768, 0};
    taps[kTaps - 1] = past[kTaps - 2] = 1;
    {
        Filter filter(family, taps, Rates{1, 0, 2, 0}, past);
        EXPECT_EQ(filter.run(x, {}, 39), (std::vector<Zvp16s>{16385}));
    }
    constexpr int kPairs = (1 << 22) + 512;
    const std::vector<Zvp32sc> pairs(kPairs, Zvp32sc{32766, -32766});
    const std::vector<Zvp16sc> inputs(kPairs, Zvp16sc{16384, 16384});
    ZvpsFIRState32sc_16sc* state = nullptr;
    ASSERT_EQ(zvpsFIRMRInitAlloc32sc_16sc(&state, pairs.data(), kPairs, 0, 1, 0, 2, 0, inputs.data()), 0);
    Zvp16sc result;
    ASSERT_EQ(zvpsFIR32sc_16sc_Sfs(inputs.data(), &result, 1, state, 38), 0);
    EXPECT_TRUE(result.re == 16385 && result.im == 0) << result.re << ' ' << result.im;
    EXPECT_EQ(zvpsFIRFree32sc_16sc(state), 0);
}

// ---- States ----

TEST(FirMultirate, TapsAndDelayLines) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        for (const Rates r : {Rates{3, 1, 2, 1}, {1, 0, 5, 0}, {19, 2, 3, 1}}) {
            const auto taps = randomVector<typename F::Taps>(70, random);
            const auto past = randomVector<D>(pastOf(70, r), random);
            const auto x = randomVector<D>(static_cast<size_t>(r.down) * 20, random);
            Filter<F> expected(family, taps, r, past),
                filter(family, randomVector<typename F::Taps>(70, random), r, past);
            uint32_t tag;
            std::memcpy(&tag, filter.state, sizeof(tag));
            EXPECT_EQ(tag, 0x46493030U + static_cast<uint32_t>(family.tag / 10 * 256 + family.tag % 10)) << family.name;
            EXPECT_TRUE(sameBits(filter.line(), past)) << family.name;
            ASSERT_EQ(family.setTaps(taps.data(), filter.state), 0);
            int scales[2];
            EXPECT_TRUE(sameBits(filter.kept(&scales[0]), expected.kept(&scales[1]))) << family.name;
            EXPECT_EQ(scales[0], scales[1]) << family.name;
            const auto y = expected.run(x, {}, 3);
            EXPECT_TRUE(sameBits(filter.run(x, {}, 3), y)) << family.name;
            ASSERT_EQ(family.setPast(filter.state, past.data()), 0);
            EXPECT_TRUE(sameBits(filter.run(x, {}, 3), y)) << family.name << " again";
            ASSERT_EQ(family.setPast(filter.state, nullptr), 0);
            EXPECT_TRUE(sameBits(filter.line(), std::vector<D>(past.size()))) << family.name;
            D sample = {};
            EXPECT_EQ(family.one(sample, &sample, filter.state, 0), zvpStsContextMismatch);
        }
    });
}

TEST(FirMultirate, StatesWorkInTheirSizeAtAnyAddress) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        for (const Rates r : {Rates{1, 0, 1, 0}, {2, 1, 3, 2}, {30, 7, 7, 0}, {200, 100, 3, 1}}) {
            for (const int tapsLen : {1, 10, 130}) {
                const auto taps = randomVector<typename F::Taps>(static_cast<size_t>(tapsLen), random);
                const std::vector<D> past(pastOf(taps.size(), r));
                const auto x = randomVector<D>(static_cast<size_t>(r.down) * 60, random);
                int size = 0;
                ASSERT_EQ(family.size(tapsLen, r.up, r.down, &size), 0);
                Filter<F> reference(family, taps, r, past);
                const auto y = reference.run(x, {}, 0);
                for (const size_t offset : {0, 1, 31, 32}) {
                    const auto bytes = static_cast<size_t>(size);
                    std::vector<Zvp8u> memory(bytes + 192, 0xa5);
                    Zvp8u* const begin =
                        memory.data() + (64 - reinterpret_cast<uintptr_t>(memory.data()) % 64) + offset;
                    typename F::State* state = nullptr;
                    ASSERT_EQ(family.init(&state, taps.data(), tapsLen, r, nullptr, begin), 0);
                    std::vector<D> z(y.size());
                    ASSERT_EQ(family.run(x.data(), z.data(), 60, state, 0), 0);
                    EXPECT_TRUE(sameBits(y, z)) << reference.where();
                    const auto isFree = [](Zvp8u b) { return b == 0xa5; };
                    EXPECT_TRUE(std::all_of(memory.data(), begin, isFree) &&
                                std::all_of(begin + bytes, memory.data() + memory.size(), isFree))
                        << reference.where();
                    EXPECT_EQ(family.free(state), 0);
                    EXPECT_EQ(family.free(state), zvpStsContextMismatch);
                }
            }
        }
    });
}

TEST(FirMultirate, RefusedMemoryLeavesNothingBehind) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        const Rates r = {2, 0, 3, 1};
        constexpr int kTaps = 12000; // too many for the windows on the stack
        const auto taps = randomVector<typename F::Taps>(kTaps, random);
        const auto past = randomVector<D>(pastOf(kTaps, r), random);
        const size_t before = blocks.size();
        typename F::State* state = nullptr;
        allocationsLeft = 0;
        EXPECT_EQ(family.initAlloc(&state, taps.data(), kTaps, r, nullptr), zvpStsNoMemory);
        EXPECT_EQ(state, nullptr);
        allocationsLeft = -1;
        const auto x = randomVector<D>(3 * 3000, random);
        auto y = x;
        {
            Filter<F> filter(family, taps, r, past);
            int allocations = 0;
            const auto tryRun = [&](auto run) {
                for (allocations = 0;; ++allocations) {
                    allocationsLeft = allocations;
                    const ZvpStatus status = run();
                    allocationsLeft = -1;
                    EXPECT_EQ(blocks.size(), before + 1) << family.name;
                    if (status == zvpStsOk) return;
                    ASSERT_EQ(status, zvpStsNoMemory);
                    EXPECT_TRUE(sameBits(x, y) && sameBits(filter.line(), past)) << family.name;
                }
            };
            tryRun([&] { return family.runInPlace(y.data(), 3000, filter.state, 0); });
            EXPECT_EQ(allocations, 2) << family.name;
            if (family.direct != nullptr) {
                auto line = past;
                y = x;
                ASSERT_EQ(family.setPast(filter.state, past.data()), 0);
                tryRun([&] { return family.directInPlace(y.data(), 3000, taps.data(), kTaps, r, line.data(), 0); });
                EXPECT_EQ(allocations, 3) << family.name;
            }
        }
        EXPECT_EQ(blocks.size(), before);
    });
    // A state of 1 tap needs little memory, whatever its factors.
    const Zvp32f tap = 3;
    ZvpsFIRState_32f* state = nullptr;
    int size = 0;
    ASSERT_EQ(zvpsFIRMRGetStateSize_32f(1, INT_MAX, INT_MAX - 1, &size), 0);
    EXPECT_LT(size, 4096);
    ASSERT_EQ(zvpsFIRMRInitAlloc_32f(&state, &tap, 1, INT_MAX, 5, INT_MAX - 1, 4, nullptr), 0);
    EXPECT_EQ(zvpsFIRFree_32f(state), 0);
    EXPECT_EQ(zvpsFIRMRGetStateSize_64fc(INT_MAX, 2, 1, &size), zvpStsNoMemory);
}

// ---- Streams ----

template <class T, class S>
void expectStream(ZvpStatus (*initAlloc)(S**, const T*, int, int, int, int, int), ZvpStatus (*free)(S*),
                  ZvpStatus (*getPast)(const S*, T*), ZvpStatus (*run)(const T*, T*, int, S*), uint32_t tag) {
    constexpr int kShift = std::is_integral_v<T> ? 17 : 0;
    Random random("streams");
    for (const Rates r : {Rates{1, 0, 3, 2}, {4, 3, 1, 0}, {3, 0, 2, 1}, {3, 2, 2, 0}, {20, 19, 7, 3}, {1, 0, 1, 0}}) {
        for (const size_t tapsLen : {1, 6, 50}) {
            auto taps = randomVector<T>(tapsLen, random);
            const auto up = static_cast<size_t>(r.up), down = static_cast<size_t>(r.down);
            const size_t past = (tapsLen - 1 + static_cast<size_t>(r.upPhase)) / up;
            constexpr size_t n = 70;
            auto x = randomVector<T>(past + n * down, random);
            const Guarded<T> src(x), dst(std::vector<T>(n * up));
            std::vector<T> both = x;
            both.resize(std::max(x.size(), n * up));
            S* state = nullptr;
            ASSERT_EQ(initAlloc(&state, taps.data(), static_cast<int>(tapsLen), RATES), 0);
            EXPECT_EQ(*reinterpret_cast<uint32_t*>(state), r.up * r.down == 1 ? tag - 1 : tag);
            ASSERT_EQ(run(src.data(), dst.data(), n, state), 0);
            ASSERT_EQ(run(both.data(), both.data(), n, state), 0);
            both.resize(n * up);
            EXPECT_TRUE(sameBits(dst.contents(), both));
            std::vector<T> line(x.rend() - static_cast<ptrdiff_t>(past), x.rend());
            x.erase(x.begin(), x.begin() + static_cast<ptrdiff_t>(past));
            const auto family = std::is_integral_v<T> ? "16s stream" : "32f stream";
            expectOutputs(taps, kShift, r, line, x, both, family + std::to_string(tapsLen));
            EXPECT_EQ(getPast(state, both.data()), zvpStsContextMismatch);
            EXPECT_EQ(free(state), 0);
        }
    }
}

TEST(FirMultirate, StreamsTakeTheirPastFromTheSource) {
    expectStream<Zvp32f, ZvpsFIRState_32f>(zvpsFIRMRStreamInitAlloc_32f, zvpsFIRFree_32f, zvpsFIRGetDlyLine_32f,
                                           zvpsFIR_32f, 0x46493334);
    expectStream<Zvp16s, ZvpsFIRState_16s>(
        zvpsFIRMRStreamInitAlloc_16s, zvpsFIRFree_16s, zvpsFIRGetDlyLine_16s,
        [](const Zvp16s* src, Zvp16s* dst, int n, ZvpsFIRState_16s* s) { return zvpsFIR_16s_Sfs(src, dst, n, s, 17); },
        0x46493332);
    const Zvp32f taps[] = {1, 2, 3};
    int size = 0;
    ASSERT_EQ(zvpsFIRMRStreamGetStateSize_32f(3, 2, 1, &size), 0);
    std::vector<Zvp8u> memory(static_cast<size_t>(size));
    ZvpsFIRState_32f* state = nullptr;
    ASSERT_EQ(zvpsFIRMRStreamInit_32f(&state, taps, 3, 2, 1, 1, 0, memory.data()), 0);
    const Zvp32f x[] = {10, 100};
    Zvp32f y[2];
    ASSERT_EQ(zvpsFIR_32f(x, y, 1, state), 0);
    EXPECT_TRUE(y[0] == 20 && y[1] == 130) << y[0] << ' ' << y[1];
    EXPECT_EQ(zvpsFIRFree_32f(state), 0);
}

// ---- Statuses ----

TEST(FirMultirate, ArgumentsAreCheckedInOrder) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        SCOPED_TRACE(family.name);
        const std::vector<typename F::Taps> taps(8);
        std::vector<D> x(16), y(16), line(8);
        std::vector<Zvp8u> buffer(1 << 16);
        struct {
            int tapsLen;
            Rates r;
            ZvpStatus status;
        } cases[] = {{0, {0, 0, 1, 0}, zvpStsBadFirLength}, {8, {0, 0, 1, 1}, zvpStsBadMrFactor},
                     {8, {2, 2, 0, 0}, zvpStsBadMrFactor},  {8, {2, 2, 1, 0}, zvpStsBadMrPhase},
                     {8, {2, -1, 1, 0}, zvpStsBadMrPhase},  {8, {2, 1, 3, 3}, zvpStsBadMrPhase},
                     {8, {1, 0, 3, -1}, zvpStsBadMrPhase}};
        typename F::State* state = nullptr;
        for (const auto& c : cases) {
            int size = -1;
            EXPECT_EQ(family.size(c.tapsLen, c.r.up, c.r.down, nullptr), zvpStsNullPtr);
            if (c.status != zvpStsBadMrPhase) {
                EXPECT_EQ(family.size(c.tapsLen, c.r.up, c.r.down, &size), c.status);
            }
            EXPECT_EQ(family.init(&state, taps.data(), c.tapsLen, c.r, nullptr, buffer.data()), c.status);
            EXPECT_EQ(family.init(nullptr, taps.data(), c.tapsLen, c.r, nullptr, buffer.data()), zvpStsNullPtr);
            EXPECT_EQ(family.init(&state, nullptr, c.tapsLen, c.r, nullptr, buffer.data()), zvpStsNullPtr);
            EXPECT_EQ(family.init(&state, taps.data(), c.tapsLen, c.r, nullptr, nullptr), zvpStsNullPtr);
            EXPECT_EQ(family.initAlloc(&state, taps.data(), c.tapsLen, c.r, nullptr), c.status);
            EXPECT_EQ(family.initAlloc(nullptr, taps.data(), c.tapsLen, c.r, nullptr), zvpStsNullPtr);
            EXPECT_EQ(family.initAlloc(&state, nullptr, c.tapsLen, c.r, nullptr), zvpStsNullPtr);
            if (family.direct == nullptr) continue;
            const auto direct = [&](const D* src, int n, D* past) {
                return family.direct(src, y.data(), n, taps.data(), c.tapsLen, c.r, past, 0);
            };
            EXPECT_EQ(direct(x.data(), 1, line.data()), c.status);
            EXPECT_EQ(direct(x.data(), 0, line.data()), zvpStsBadSize);
            EXPECT_EQ(direct(x.data(), 0, nullptr), zvpStsNullPtr);
            EXPECT_EQ(direct(nullptr, 0, line.data()), zvpStsNullPtr);
            EXPECT_EQ(family.directInPlace(nullptr, 0, taps.data(), 8, c.r, line.data(), 0), zvpStsNullPtr);
        }
        EXPECT_EQ(state, nullptr);
        // Without a change of the rate: a state of one rate.
        ASSERT_EQ(family.initAlloc(&state, taps.data(), 8, Rates{1, 0, 1, 0}, nullptr), 0);
        EXPECT_EQ(family.one(x[0], y.data(), state, 0), 0);
        EXPECT_EQ(family.free(state), 0);
    });
}

} // namespace
} // namespace zvps::test
