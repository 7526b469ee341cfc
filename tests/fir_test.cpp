// FIR filters of one rate: every form of every type against sums in higher precision, and against each other.
#include "framework/filters.hpp"
#include "framework/memory.hpp"
#include "zvpcore.h"

#include <omp.h>

#include <climits>
#include <functional>
#include <memory>

namespace zvps::test {
namespace {

// ---- Types and their functions ----

template <class S, class T, class D>
struct Family {
    using State = S;
    using Taps = T;
    using Data = D;
    const char* name;
    int tag; // the two digits
    ZvpStatus (*size)(int, int*);
    ZvpStatus (*init)(S**, const T*, int, const D*, Zvp8u*);
    ZvpStatus (*initAlloc)(S**, const T*, int, const D*);
    ZvpStatus (*free)(S*);
    ZvpStatus (*getTaps)(const S*, T*, int* scale);
    ZvpStatus (*setTaps)(const T*, S*);
    ZvpStatus (*getPast)(const S*, D*);
    ZvpStatus (*setPast)(S*, const D*);
    ZvpStatus (*run)(const D*, D*, int, S*, int scale);
    ZvpStatus (*runInPlace)(D*, int, S*, int scale);
    ZvpStatus (*one)(D, D*, S*, int scale);
    ZvpStatus (*direct)(const D*, D*, int, const T*, int, D*, int*, int scale);
    ZvpStatus (*directInPlace)(D*, int, const T*, int, D*, int*, int scale);
    ZvpStatus (*oneDirect)(D, D*, const T*, int, D*, int*, int scale);
    ZvpStatus (*oneDirectInPlace)(D*, const T*, int, D*, int*, int scale);
};

#define INIT_NONE(NAME) zvpsFIRInit##NAME, zvpsFIRInitAlloc##NAME
#define INIT_FACTOR(NAME)                                                                                              \
    [](auto** s, const auto* taps, int len, const auto* past, Zvp8u* buffer) {                                         \
        return zvpsFIRInit##NAME(s, taps, len, kTapsFactor, past, buffer);                                             \
    },                                                                                                                 \
        [](auto** s, const auto* taps, int len, const auto* past) {                                                    \
            return zvpsFIRInitAlloc##NAME(s, taps, len, kTapsFactor, past);                                            \
        }
#define NO_PAST(NAME) nullptr, nullptr
#define DIRECT_NONE_SCALED(BLOCK, ONE) BLOCK##_Sfs, BLOCK##_ISfs, ONE##_Sfs, ONE##_ISfs
#define DIRECT_LAMBDAS(BLOCK, BLOCK_I, ONE, ONE_I, FACTOR, SCALE)                                                      \
    [](const auto* src, auto* dst, int n, const auto* taps, int len, auto* past, int* index, int scale) {              \
        return (void)scale, BLOCK(src, dst, n, taps, len FACTOR, past, index SCALE);                                   \
    },                                                                                                                 \
        [](auto* srcDst, int n, const auto* taps, int len, auto* past, int* index, int scale) {                        \
            return (void)scale, BLOCK_I(srcDst, n, taps, len FACTOR, past, index SCALE);                               \
        },                                                                                                             \
        [](auto src, auto* dst, const auto* taps, int len, auto* past, int* index, int scale) {                        \
            return (void)scale, ONE(src, dst, taps, len FACTOR, past, index SCALE);                                    \
        },                                                                                                             \
        [](auto* srcDst, const auto* taps, int len, auto* past, int* index, int scale) {                               \
            return (void)scale, ONE_I(srcDst, taps, len FACTOR, past, index SCALE);                                    \
        }
#define KEPT_FACTOR , kTapsFactor
#define KEPT_SCALE , scale
#define DIRECT_FACTOR_SCALED(BLOCK, ONE)                                                                               \
    DIRECT_LAMBDAS(BLOCK##_Sfs, BLOCK##_ISfs, ONE##_Sfs, ONE##_ISfs, KEPT_FACTOR, KEPT_SCALE)
#define DIRECT_NONE_PLAIN(BLOCK, ONE) DIRECT_LAMBDAS(BLOCK, BLOCK##_I, ONE, ONE##_I, , )
#define DIRECT(PREFIX, DATA, FACTOR, SCALE)                                                                            \
    DIRECT_##FACTOR##_##SCALE(zvpsFIR##PREFIX##_Direct_##DATA, zvpsFIROne##PREFIX##_Direct_##DATA)
#define NO_DIRECT(PREFIX, DATA, FACTOR, SCALE) nullptr, nullptr, nullptr, nullptr
#define FAMILY(PREFIX, DATA, TAPS, tag, FACTOR, SCALE, PAST, DIRECT)                                                   \
    Family<ZvpsFIRState##PREFIX##_##DATA, Zvp##TAPS, Zvp##DATA> {                                                      \
#PREFIX "_" #DATA, tag, zvpsFIRGetStateSize##PREFIX##_##DATA, INIT_##FACTOR(PREFIX##_##DATA),                  \
            zvpsFIRFree##PREFIX##_##DATA, ZVPS_TEST_FIR_TAPS_##FACTOR(PREFIX##_##DATA, ), PAST(PREFIX##_##DATA),       \
            ZVPS_TEST_FIR_RUN_##SCALE(PREFIX##_##DATA), DIRECT(PREFIX, DATA, FACTOR, SCALE)                            \
    }

template <class Action>
void forEachFamily(Action action) {
    action(FAMILY(, 32f, 32f, 1, NONE, PLAIN, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(, 32fc, 32fc, 2, NONE, PLAIN, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(32f, 16s, 32f, 5, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(32fc, 16sc, 32fc, 6, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(32s, 16s, 32s, 9, FACTOR, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(32sc, 16sc, 32sc, 10, FACTOR, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(, 64f, 64f, 13, NONE, PLAIN, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(, 64fc, 64fc, 14, NONE, PLAIN, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(64f, 32f, 64f, 17, NONE, PLAIN, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(64fc, 32fc, 64fc, 18, NONE, PLAIN, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(64f, 32s, 64f, 21, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(, 32s, 32s, 21, NONE, SCALED, NO_PAST, NO_DIRECT));
    action(FAMILY(64fc, 32sc, 64fc, 22, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(64f, 16s, 64f, 25, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(64fc, 16sc, 64fc, 26, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
    action(FAMILY(, 16s, 16s, 29, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT));
}

// Sums of taps of 16 bits are exact; those of _32s run in double precision.
template <class F>
bool isExact(const F& family) {
    return std::is_integral_v<PartOfType<typename F::Taps>> && family.tag != 21;
}
template <class F>
bool isReduced(const F& family) {
    return family.tag == 9 || family.tag == 10;
}

// The taps as a state keeps them, and the power of two that it multiplies their sums by.
template <class F>
int keptTaps(const F& family, std::vector<typename F::Taps>& taps) {
    if constexpr (std::is_integral_v<PartOfType<typename F::Taps>>) {
        if (!isReduced(family)) return 0;
        long double largest = 0;
        for (const auto& tap : taps)
            largest = std::max({largest, std::abs(part(tap, 0)), std::abs(part(tap, 1))});
        int places = 0;
        while (std::floor(std::ldexp(largest, -places)) > 32766)
            ++places;
        for (auto& tap : taps) {
            if constexpr (isComplex<typename F::Taps>) {
                tap.re >>= places;
                tap.im >>= places;
            } else {
                tap = static_cast<PartOfType<typename F::Taps>>(tap >> places);
            }
        }
        return places + kTapsFactor;
    }
    return 0;
}

// Output n of a signal whose first element is tapsLen - 1 before output 0's newest input.
template <class T, class D>
Sum sumAt(const std::vector<T>& taps, const D* newest) {
    Sum sum;
    for (size_t k = 0; k < taps.size(); ++k)
        sum.add(taps[k], newest[-static_cast<ptrdiff_t>(k)]);
    return sum;
}

// What transforms of a block may add, whatever its single results: by the norms of the taps and of as many inputs as
// the longest transform takes.
template <class T, class D>
long double transformError(const std::vector<T>& taps, const std::vector<D>& x) {
    if (x.size() < 256 || taps.size() < 16) return 0;
    long double energy = 0, largest = 0;
    for (const T& tap : taps)
        energy += part(tap, 0) * part(tap, 0) + part(tap, 1) * part(tap, 1);
    for (const D& element : x)
        largest = std::max({largest, std::abs(part(element, 0)), std::abs(part(element, 1))});
    return 16 * tolerance<T>(0) / 4 * std::sqrt(energy * static_cast<long double>(taps.size())) * largest;
}

// Some of the results of filtering x, with `past` (most recent first) before it.
template <class F, class D = typename F::Data>
void expectResults(const F& family, std::vector<typename F::Taps> taps, const std::vector<D>& past,
                   const std::vector<D>& x, const std::vector<D>& y, int scaleFactor, const std::string& where) {
    const int shift = scaleFactor - keptTaps(family, taps);
    std::vector<D> signal(past.rbegin(), past.rend());
    signal.insert(signal.end(), x.begin(), x.end());
    const size_t step = x.size() / 200 + 1;
    const long double common = isExact(family) ? 0 : transformError(taps, x);
    for (size_t n = 0; n < x.size(); n += n < 40 || n + 40 > x.size() ? 1 : step) {
        const Sum sum = sumAt(taps, &signal[past.size() + n]);
        const long double error =
            isExact(family) ? 0 : common + tolerance<typename F::Taps>(taps.size()) * sum.magnitudes;
        ASSERT_TRUE(isResult(y[n], sum, error, shift)) << where << " output " << n;
    }
}

// ---- States ----

template <class F>
using StatePointer = std::unique_ptr<typename F::State, std::function<void(typename F::State*)>>;

template <class F>
StatePointer<F> makeState(const F& family, const std::vector<typename F::Taps>& taps,
                          const typename F::Data* past = nullptr) {
    typename F::State* state = nullptr;
    EXPECT_EQ(family.initAlloc(&state, taps.data(), static_cast<int>(taps.size()), past), 0) << family.name;
    return {state, [free = family.free](auto* s) { EXPECT_EQ(free(s), 0); }};
}

// By blocks of so many samples, the last one for all that is left. In place or not, at the ends of pages.
template <class F, class D = typename F::Data>
std::vector<D> filtered(const F& family, typename F::State* state, const std::vector<D>& x,
                        const std::vector<size_t>& blocks, int scaleFactor, bool inPlace = false) {
    std::vector<D> y;
    size_t i = 0;
    for (size_t b = 0; i < x.size(); ++b) {
        const size_t n = b < blocks.size() ? std::min(blocks[b], x.size() - i) : x.size() - i;
        const Guarded<D> src({x.begin() + static_cast<ptrdiff_t>(i), x.begin() + static_cast<ptrdiff_t>(i + n)});
        const Guarded<D> dst(std::vector<D>(inPlace ? 0 : n));
        const int count = static_cast<int>(n);
        EXPECT_EQ(inPlace ? family.runInPlace(src.data(), count, state, scaleFactor)
                          : family.run(src.data(), dst.data(), count, state, scaleFactor),
                  0);
        const std::vector<D> part = inPlace ? src.contents() : dst.contents();
        y.insert(y.end(), part.begin(), part.end());
        i += n;
    }
    return y;
}

// A scale factor that keeps most results within the type's range.
template <class F>
int usualScale(const F& family, size_t tapsLen) {
    if constexpr (!std::is_integral_v<PartOfType<typename F::Data>>) {
        return 0;
    } else {
        const int growth = static_cast<int>(std::log2(static_cast<double>(tapsLen))) / 2;
        if (isReduced(family)) return growth + 31 + kTapsFactor;
        if (std::is_integral_v<PartOfType<typename F::Taps>>) return growth + (family.tag == 21 ? 31 : 15);
        return growth;
    }
}

std::string describe(const char* name, size_t tapsLen, Level level) {
    return std::string("FIR") + name + " " + std::to_string(tapsLen) + " taps, " + levelName(level);
}

TEST(Fir, ResultsAreTheSumsHoweverTheSignalIsCut) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        Random random(family.name);
        for (const size_t tapsLen : {1, 2, 3, 5, 8, 11, 12, 16, 17, 31, 32, 37, 63, 64, 65, 100, 131, 257}) {
            const auto taps = randomVector<typename F::Taps>(tapsLen, random);
            const auto past = family.getPast == nullptr ? std::vector<typename F::Data>(tapsLen)
                                                        : randomVector<typename F::Data>(tapsLen, random);
            const auto x = randomVector<typename F::Data>(230 + random.below(25), random);
            const int scale = usualScale(family, tapsLen);
            std::vector<typename F::Data> fused; // the results of levels with fused operations
            for (const Level level : levels()) {
                useLevel(level);
                const std::string where = describe(family.name, tapsLen, level);
                const auto whole = makeState(family, taps, past.data());
                const auto y = filtered(family, whole.get(), x, {}, scale);
                if (level != Level::v2) {
                    EXPECT_TRUE(fused.empty() || sameBits(y, fused)) << where << " against v3";
                    fused = y;
                }
                ASSERT_NO_FATAL_FAILURE(expectResults(family, taps, past, x, y, scale, where));
                const auto inPlace = makeState(family, taps, past.data());
                EXPECT_TRUE(sameBits(y, filtered(family, inPlace.get(), x, {}, scale, true))) << where << " in place";
                const auto cut = makeState(family, taps, past.data());
                const std::vector<size_t> blocks = {1, 1, tapsLen, 2, tapsLen + 3, 7, 16 + random.below(40), 3};
                EXPECT_TRUE(sameBits(y, filtered(family, cut.get(), x, blocks, scale, random.below(2) == 0)))
                    << where << " in blocks";
                std::vector<typename F::Data> single(x.size());
                for (const auto& one : {makeState(family, taps, past.data())}) {
                    for (size_t i = 0; i < x.size(); ++i)
                        ASSERT_EQ(family.one(x[i], &single[i], one.get(), scale), 0);
                }
                ASSERT_NO_FATAL_FAILURE(expectResults(family, taps, past, x, single, scale, where + " singly"));
                if (isExact(family)) {
                    EXPECT_TRUE(sameBits(y, single)) << where << " singly";
                }
            }
        }
    });
}

TEST(Fir, LongBlocksAndManyTaps) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        for (const size_t tapsLen : {9, 32, 64, 150, 600}) {
            const auto taps = randomVector<typename F::Taps>(tapsLen, random);
            const std::vector<D> past(tapsLen);
            const int scale = usualScale(family, tapsLen);
            for (const size_t n : {256, 512, 1601, 4000}) {
                const auto x = randomVector<D>(n, random);
                const std::string where = describe(family.name, tapsLen, Level::v4) + " block of " + std::to_string(n);
                useLevel(levels().back());
                zvpSetNumThreads(1);
                const auto state = makeState(family, taps);
                const auto y = filtered(family, state.get(), x, {}, scale);
                ASSERT_NO_FATAL_FAILURE(expectResults(family, taps, past, x, y, scale, where));
                const auto other = makeState(family, taps);
                EXPECT_TRUE(sameBits(y, filtered(family, other.get(), x, {}, scale, true))) << where << " in place";
                for (const int threads : {2, 4, 8}) {
                    omp_set_num_threads(8);
                    zvpSetNumThreads(threads);
                    const auto threaded = makeState(family, taps);
                    const bool inPlace = threads == 4;
                    EXPECT_TRUE(sameBits(y, filtered(family, threaded.get(), x, {}, scale, inPlace)))
                        << where << " by " << threads << " threads";
                    if (family.getPast == nullptr) continue;
                    std::vector<D> single(tapsLen), many(tapsLen);
                    family.getPast(state.get(), single.data());
                    family.getPast(threaded.get(), many.data());
                    EXPECT_TRUE(sameBits(single, many)) << where;
                }
                zvpSetNumThreads(0);
            }
        }
    });
}

// Results of all scales, of taps and data that reach every limit of the sums.
TEST(Fir, IntegerSumsAreExact) {
    const auto family = FAMILY(, 16s, 16s, 29, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT);
    Random random("extremes");
    for (const size_t tapsLen : {1, 2, 3, 16, 33, 64, 200}) {
        for (const int kind : {0, 1, 2, 3}) {
            auto taps = randomVector<Zvp16s>(tapsLen, random);
            auto x = randomVector<Zvp16s>(300, random);
            for (auto& tap : taps)
                tap = kind == 0   ? Zvp16s{-32768}
                      : kind == 1 ? Zvp16s{32767}
                                  : static_cast<Zvp16s>(tap >> (kind - 2) * 9);
            if (kind < 2) std::fill(x.begin() + 50, x.begin() + 270, Zvp16s{-32768});
            for (const int scale : {0, 1, 14, 15, 16, 30, 31, 32, 33, 40, 62, 63, 64, INT_MAX, -1, -15, -16, INT_MIN}) {
                for (const Level level : levels()) {
                    useLevel(level);
                    const auto state = makeState(family, taps);
                    const auto y = filtered(family, state.get(), x, {}, scale);
                    const std::string where = describe(family.name, tapsLen, level) + " kind " + std::to_string(kind) +
                                              " scale " + std::to_string(scale);
                    ASSERT_NO_FATAL_FAILURE(expectResults(family, taps, std::vector<Zvp16s>(tapsLen), x, y,
                                                          std::clamp(scale, -100, 100), where));
                    const auto other = makeState(family, taps);
                    for (size_t i = 0; i < x.size(); ++i) {
                        Zvp16s one;
                        ASSERT_EQ(family.one(x[i], &one, other.get(), scale), 0);
                        ASSERT_EQ(one, y[i]) << where << " singly, output " << i;
                    }
                }
            }
        }
    }
}

// More runs of 32 bits than blocks can tell apart.
TEST(Fir, VeryLongIntegerFiltersAreExact) {
    const auto family = FAMILY(, 16s, 16s, 29, NONE, SCALED, ZVPS_TEST_FIR_PAST, DIRECT);
    Random random("long");
    constexpr size_t kTaps = 40001;
    std::vector<Zvp16s> taps(kTaps), past(kTaps, Zvp16s{-32768});
    for (auto& tap : taps)
        tap = random.below(8) == 0 ? Zvp16s{32767} : Zvp16s{-32768};
    const auto x = randomVector<Zvp16s>(30, random);
    for (const Level level : levels()) {
        useLevel(level);
        const auto state = makeState(family, taps, past.data());
        const auto y = filtered(family, state.get(), x, {}, 31);
        expectResults(family, taps, past, x, y, 31, describe(family.name, kTaps, level));
    }
}

// ---- Taps and delay lines ----

TEST(Fir, TapsAndDelayLinesRoundTrip) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using T = typename F::Taps;
        using D = typename F::Data;
        Random random(family.name);
        for (const size_t tapsLen : {1, 6, 70}) {
            auto taps = randomVector<T>(tapsLen, random);
            const auto past = randomVector<D>(tapsLen, random);
            const auto x = randomVector<D>(tapsLen + 33, random);
            const int scale = usualScale(family, tapsLen);
            const auto state = makeState(family, randomVector<T>(tapsLen, random), past.data());
            uint32_t tag;
            std::memcpy(&tag, state.get(), sizeof(tag));
            EXPECT_EQ(tag, 0x46493030U + static_cast<uint32_t>(family.tag / 10 * 256 + family.tag % 10)) << family.name;
            ASSERT_EQ(family.setTaps(taps.data(), state.get()), 0);
            auto kept = taps;
            keptTaps(family, kept);
            std::vector<T> read(tapsLen);
            int factor;
            ASSERT_EQ(family.getTaps(state.get(), read.data(), &factor), 0);
            EXPECT_TRUE(sameBits(kept, read)) << family.name << ' ' << tapsLen << " taps";
            if (family.getPast == nullptr) continue;
            std::vector<D> line(tapsLen);
            ASSERT_EQ(family.getPast(state.get(), line.data()), 0);
            EXPECT_TRUE(sameBits(past, line)) << family.name << " after Init";
            // With other taps the past stays; and it is the inputs, however they came.
            const size_t half = 1 + random.below(x.size() - 1);
            const auto y = filtered(family, state.get(), x, {half, 1}, scale);
            expectResults(family, taps, past, x, y, scale, std::string(family.name) + " after SetTaps");
            D one;
            const D newest = randomElement<D>(random);
            ASSERT_EQ(family.one(newest, &one, state.get(), scale), 0);
            ASSERT_EQ(family.getPast(state.get(), line.data()), 0);
            std::vector<D> expected(x.end() - static_cast<ptrdiff_t>(tapsLen) + 1, x.end());
            expected.push_back(newest);
            std::reverse(expected.begin(), expected.end());
            EXPECT_TRUE(sameBits(expected, line)) << family.name << " after blocks and a sample";
            ASSERT_EQ(family.setPast(state.get(), past.data()), 0);
            EXPECT_TRUE(sameBits(y, filtered(family, state.get(), x, {half, 1}, scale))) << family.name << " again";
            ASSERT_EQ(family.setPast(state.get(), nullptr), 0);
            ASSERT_EQ(family.getPast(state.get(), line.data()), 0);
            EXPECT_TRUE(sameBits(std::vector<D>(tapsLen), line)) << family.name << " cleared";
        }
    });
}

// Integer taps around the limit of 32766, float taps around 32767.0.
TEST(Fir, TapsAreReducedTo16Bits) {
    struct {
        std::vector<Zvp32s> taps, kept;
        int scale;
    } integers[] = {{{32766, -5, -32766}, {32766, -5, -32766}, 0},
                    {{-32767, 32766, -1}, {-16384, 16383, -1}, 1},
                    {{65533, 3, 0}, {32766, 1, 0}, 1},
                    {{INT_MIN, INT_MAX, 7}, {-16384, 16383, 0}, 17},
                    {{0, 0, 0}, {0, 0, 0}, 0}};
    for (const auto& c : integers) {
        ZvpsFIRState32s_16s* state = nullptr;
        ASSERT_EQ(zvpsFIRInitAlloc32s_16s(&state, c.taps.data(), 3, 2, nullptr), 0);
        std::vector<Zvp32s> kept(3);
        int scale = 99;
        ASSERT_EQ(zvpsFIRGetTaps32s_16s(state, kept.data(), &scale), 0);
        EXPECT_EQ(kept, c.kept);
        EXPECT_EQ(scale, c.scale + 2);
        zvpsFIRFree32s_16s(state);
    }
    struct {
        std::vector<Zvp32f> taps, kept;
        std::vector<Zvp32s> integers;
        int scale;
    } floats[] = {{{32767, -0.5F, 0.25F}, {32767, -1, 0}, {32767, -1, 0}, 0},
                  {{32768, -3, 2.9F}, {32768, -4, 2}, {16384, -2, 1}, 1},
                  {{16383.5F, 0, -1}, {16384, 0, -1}, {16384, 0, -1}, 0}, // twice it is not below the limit
                  {{0.5F, -0.25F, 1e-6F}, {0.5F, -0.25F, 0}, {16384, -8192, 0}, -15},
                  {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}, 0},
                  {{1e30F, -1e30F, 1}, {0x1.93e4p+99F, -0x1.93e4p+99F, 0}, {25849, -25849, 0}, 85}};
    for (const auto& c : floats) {
        ZvpsFIRState32s_16s* state = nullptr;
        ASSERT_EQ(zvpsFIRInitAlloc32s_16s32f(&state, c.taps.data(), 3, nullptr), 0);
        std::vector<Zvp32f> kept(3);
        std::vector<Zvp32s> values(3);
        int scale = 99;
        ASSERT_EQ(zvpsFIRGetTaps32s_16s32f(state, kept.data()), 0);
        ASSERT_EQ(zvpsFIRGetTaps32s_16s(state, values.data(), &scale), 0);
        EXPECT_EQ(scale, c.scale);
        EXPECT_EQ(values, c.integers);
        EXPECT_EQ(kept, c.kept);
        zvpsFIRFree32s_16s(state);
    }
    // Complex taps by their larger part.
    const Zvp32fc taps[2] = {{1, -3}, {0.5F, 0}};
    Zvp32fc kept[2];
    ZvpsFIRState32sc_16sc* state = nullptr;
    ASSERT_EQ(zvpsFIRInitAlloc32sc_16sc32fc(&state, taps, 2, nullptr), 0);
    ASSERT_EQ(zvpsFIRGetTaps32sc_16sc32fc(state, kept), 0);
    EXPECT_EQ(std::memcmp(taps, kept, sizeof(taps)), 0);
    Zvp16sc y;
    ASSERT_EQ(zvpsFIROne32sc_16sc_Sfs({100, 10}, &y, state, 0), 0);
    EXPECT_EQ(y.re, 130);
    EXPECT_EQ(y.im, -290);
    zvpsFIRFree32sc_16sc(state);
}

// ---- Memory of states ----

TEST(Fir, StatesWorkInTheirSizeAtAnyAddress) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        for (const int tapsLen : {1, 10, 64, 130}) {
            const auto taps = randomVector<typename F::Taps>(static_cast<size_t>(tapsLen), random);
            const auto x = randomVector<D>(2500, random);
            int size = 0;
            ASSERT_EQ(family.size(tapsLen, &size), 0);
            const auto reference = makeState(family, taps);
            const auto y = filtered(family, reference.get(), x, {400}, 0);
            for (const size_t offset : {0, 1, 7, 16, 33, 63}) {
                const auto bytes = static_cast<size_t>(size);
                std::vector<Zvp8u> memory(bytes + 192, 0xa5);
                Zvp8u* const begin = memory.data() + (64 - reinterpret_cast<uintptr_t>(memory.data()) % 64) + offset;
                typename F::State* state = nullptr;
                ASSERT_EQ(family.init(&state, taps.data(), tapsLen, nullptr, begin), 0);
                EXPECT_TRUE(sameBits(y, filtered(family, state, x, {400}, 0, offset == 7))) << family.name;
                EXPECT_TRUE(std::all_of(memory.data(), begin, [](Zvp8u b) { return b == 0xa5; })) << family.name;
                EXPECT_TRUE(
                    std::all_of(begin + bytes, memory.data() + memory.size(), [](Zvp8u b) { return b == 0xa5; }))
                    << family.name << ' ' << tapsLen << " taps at " << offset;
                EXPECT_EQ(family.free(state), 0);
                EXPECT_EQ(family.free(state), zvpStsContextMismatch);
            }
        }
    });
}

TEST(Fir, SizesFollowTheirFormula) {
    const auto up = [](int64_t bytes) { return (bytes + 15) / 16 * 16; };
    for (const int threads : {1, 3}) {
        omp_set_num_threads(8);
        zvpSetNumThreads(threads);
        for (const int64_t n : {1, 2, 31, 63, 64, 127, 128, 1000}) {
            const int64_t fftLen = n < 64 ? 0 : n == 64 || n == 127 ? 256 : n == 128 ? 512 : 2048;
            int spec = 0, initBuffer = 0, work = 0;
            if (fftLen > 0) {
                const int order = static_cast<int>(std::log2(static_cast<double>(fftLen)));
                ASSERT_EQ(zvpsFFTGetSize_R_32f(order, zvpFftScaleInv, 0, &spec, &initBuffer, &work), 0);
            }
            const int64_t f = up(4 * fftLen);
            const int64_t expected = 176 + up(4 * n) + (12 * n + 31) / 16 * 16 + 16 * ((n + 6) / 4 * 4) +
                                     4 * up(4 * n) + 4 * (4 * threads + 4092) + up(4 * threads) + f +
                                     threads * (work + f) + spec + initBuffer;
            int sizes[3] = {};
            ASSERT_EQ(zvpsFIRGetStateSize_32f(static_cast<int>(n), &sizes[0]), 0);
            ASSERT_EQ(zvpsFIRGetStateSize32f_16s(static_cast<int>(n), &sizes[1]), 0);
            ASSERT_EQ(zvpsFIRStreamGetStateSize_32f(static_cast<int>(n), &sizes[2]), 0);
            for (const int size : sizes)
                EXPECT_EQ(size, expected) << n << " taps, " << threads << " threads";
        }
    }
    zvpSetNumThreads(0);
    int size = 5;
    EXPECT_EQ(zvpsFIRGetStateSize_64fc(INT_MAX, &size), zvpStsNoMemory);
    EXPECT_EQ(size, 5);
}

TEST(Fir, RefusedMemoryLeavesNothingBehind) {
    omp_set_num_threads(8); // whose windows together are too large for the stack in every type
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using D = typename F::Data;
        Random random(family.name);
        constexpr int kTaps = 3000;
        const auto taps = randomVector<typename F::Taps>(kTaps, random);
        const auto x = randomVector<D>(7000, random);
        const size_t before = blocks.size();
        typename F::State* state = nullptr;
        const auto refused = [&](auto call) {
            allocationsLeft = 0;
            EXPECT_EQ(call(), zvpStsNoMemory) << family.name;
            allocationsLeft = -1;
        };
        refused([&] { return family.initAlloc(&state, taps.data(), kTaps, nullptr); });
        EXPECT_EQ(state, nullptr);
        {
            const auto good = makeState(family, taps), fresh = makeState(family, taps);
            auto y = x;
            refused([&] { return family.runInPlace(y.data(), 7000, good.get(), 0); });
            EXPECT_TRUE(sameBits(x, y)) << family.name;
            // As if the refused call had not been.
            EXPECT_TRUE(sameBits(filtered(family, fresh.get(), x, {}, 9), filtered(family, good.get(), x, {}, 9)));
            EXPECT_EQ(blocks.size(), before + 2);
            auto line = randomVector<D>(2 * kTaps, random);
            const auto lineBefore = line;
            int index = 17;
            if (family.direct != nullptr) {
                refused([&] {
                    return family.direct(x.data(), y.data(), 7000, taps.data(), kTaps, line.data(), &index, 0);
                });
            }
            EXPECT_TRUE(index == 17 && sameBits(line, lineBefore) && sameBits(x, y)) << family.name;
        }
        EXPECT_EQ(before, blocks.size());
    });
}

// ---- Without a state ----

TEST(Fir, DirectFormsKeepTheRing) {
    forEachFamily([](const auto& family) {
        using F = std::decay_t<decltype(family)>;
        using T = typename F::Taps;
        using D = typename F::Data;
        if (family.direct == nullptr) return;
        constexpr bool isRing = std::is_floating_point_v<PartOfType<T>>;
        const size_t longFrom = std::is_same_v<T, Zvp32fc> ? 16 : std::is_same_v<T, Zvp64fc> ? 32 : 64;
        Random random(family.name);
        for (const size_t tapsLen : {1, 2, 5, 15, 16, 31, 32, 63, 64, 200}) {
            const auto taps = randomVector<T>(tapsLen, random);
            const int scale = usualScale(family, tapsLen);
            const int len = static_cast<int>(tapsLen);
            for (const Level level : levels()) {
                useLevel(level);
                const std::string where = describe(family.name, tapsLen, level) + " direct";
                auto past = randomVector<D>(tapsLen, random); // most recent first
                const auto first = past;
                std::vector<D> ring(2 * tapsLen + 1); // one element more than a call may touch
                int index = static_cast<int>(random.below(tapsLen));
                for (size_t i = 0; i < tapsLen; ++i) {
                    const size_t place = static_cast<size_t>(index) + i;
                    ring[place] = isRing ? past[tapsLen - 1 - i] : past[i];
                    if (isRing) ring[(place + tapsLen) % (2 * tapsLen)] = ring[place];
                }
                std::vector<D> x, y;
                for (const size_t n : {size_t{1}, tapsLen / 2 + 1, tapsLen, size_t{1}, tapsLen + 9, size_t{1},
                                       size_t{1}, size_t{2}, 1 + random.below(520), size_t{600}, size_t{1}}) {
                    const auto block = randomVector<D>(n, random);
                    const Guarded<D> src(block);
                    const Guarded<D> dst{std::vector<D>(n)};
                    const int count = static_cast<int>(n);
                    const int indexBefore = index;
                    const bool inPlace = random.below(2) == 0;
                    const bool singly = n == 1 && random.below(4) != 0;
                    D* const out = inPlace ? src.data() : dst.data();
                    if (singly) {
                        ASSERT_EQ(inPlace
                                      ? family.oneDirectInPlace(out, taps.data(), len, ring.data(), &index, scale)
                                      : family.oneDirect(block[0], out, taps.data(), len, ring.data(), &index, scale),
                                  0);
                    } else {
                        ASSERT_EQ(
                            inPlace
                                ? family.directInPlace(out, count, taps.data(), len, ring.data(), &index, scale)
                                : family.direct(src.data(), out, count, taps.data(), len, ring.data(), &index, scale),
                            0);
                    }
                    x.insert(x.end(), block.begin(), block.end());
                    y.insert(y.end(), out, out + n);
                    past.insert(past.begin(), block.rbegin(), block.rend());
                    past.resize(tapsLen);
                    const int after = !isRing                          ? 0
                                      : !singly && tapsLen >= longFrom ? indexBefore
                                      : singly || n < tapsLen          ? (indexBefore + count) % len
                                                                       : len - 1;
                    ASSERT_EQ(index, after) << where << " block of " << n;
                    // The newest tapsLen - 1 inputs are in their places.
                    for (size_t k = 0; k + 1 < tapsLen; ++k) {
                        const size_t place = isRing ? (static_cast<size_t>(index) + tapsLen - 1 - k) % tapsLen : k;
                        ASSERT_EQ(std::memcmp(&ring[place], &past[k], sizeof(D)), 0)
                            << where << " block of " << n << ", input " << k;
                    }
                }
                ASSERT_NO_FATAL_FAILURE(expectResults(family, taps, first, x, y, scale, where));
                EXPECT_EQ(part(ring[2 * tapsLen], 0), 0) << where;
            }
        }
    });
}

// ---- Streams and sparse taps ----

template <class T, class StateType>
void expectStream(const char* name, ZvpStatus (*initAlloc)(StateType**, const T*, int),
                  ZvpStatus (*run)(const T*, T*, int, StateType*), ZvpStatus (*free)(StateType*),
                  ZvpStatus (*getPast)(const StateType*, T*), ZvpStatus (*setPast)(StateType*, const T*),
                  uint32_t expectedTag) {
    Random random(name);
    for (const size_t tapsLen : {1, 7, 40, 100, 300}) {
        for (const size_t n : {1, 3, 66, 700, 2100}) {
            std::vector<T> taps = randomVector<T>(tapsLen, random);
            const auto x = randomVector<T>(n + tapsLen - 1, random);
            const Guarded<T> src(x), both(x);
            const Guarded<T> dst{std::vector<T>(n)};
            StateType* state = nullptr;
            ASSERT_EQ(initAlloc(&state, taps.data(), static_cast<int>(tapsLen)), 0);
            EXPECT_EQ(*reinterpret_cast<uint32_t*>(state), expectedTag);
            ASSERT_EQ(run(src.data(), dst.data(), static_cast<int>(n), state), 0);
            ASSERT_EQ(run(both.data(), both.data(), static_cast<int>(n), state), 0);
            for (size_t i = 0; i < n; ++i) {
                const Sum sum = sumAt(taps, &x[i + tapsLen - 1]);
                const long double error = std::is_integral_v<T> ? 0 : tolerance<T>(tapsLen) * sum.magnitudes;
                ASSERT_TRUE(isResult(dst.data()[i], sum, error, std::is_integral_v<T> ? 17 : 0))
                    << name << ' ' << tapsLen << " taps, output " << i;
            }
            EXPECT_EQ(std::memcmp(both.data(), dst.data(), n * sizeof(T)), 0) << name << " in place";
            EXPECT_EQ(getPast(state, taps.data()), zvpStsContextMismatch);
            EXPECT_EQ(setPast(state, nullptr), zvpStsContextMismatch);
            EXPECT_EQ(free(state), 0);
        }
    }
}

TEST(Fir, StreamsTakeTheirPastFromTheSource) {
    expectStream<Zvp32f, ZvpsFIRState_32f>("32f", zvpsFIRStreamInitAlloc_32f, zvpsFIR_32f, zvpsFIRFree_32f,
                                           zvpsFIRGetDlyLine_32f, zvpsFIRSetDlyLine_32f, 0x46493333);
    expectStream<Zvp16s, ZvpsFIRState_16s>(
        "16s", zvpsFIRStreamInitAlloc_16s,
        [](const Zvp16s* src, Zvp16s* dst, int n, ZvpsFIRState_16s* s) { return zvpsFIR_16s_Sfs(src, dst, n, s, 17); },
        zvpsFIRFree_16s, zvpsFIRGetDlyLine_16s, zvpsFIRSetDlyLine_16s, 0x46493331);
}

TEST(Fir, SparseTaps) {
    Random random("sparse");
    for (const std::vector<Zvp32s>& positions :
         {std::vector<Zvp32s>{0}, {3}, {0, 1, 2, 40}, {5, 17, 1000, 1001, 3000}}) {
        const auto count = static_cast<int>(positions.size());
        const auto order = static_cast<size_t>(positions.back());
        const auto values = randomVector<Zvp32f>(positions.size(), random);
        std::vector<Zvp32f> taps(order + 1);
        for (size_t k = 0; k < positions.size(); ++k)
            taps[static_cast<size_t>(positions[k])] = values[k];
        const auto past = randomVector<Zvp32f>(order, random);
        const auto x = randomVector<Zvp32f>(2500, random);
        std::vector<Zvp32f> signal(past.rbegin(), past.rend());
        signal.insert(signal.end(), x.begin(), x.end());
        int size = 0;
        ASSERT_EQ(zvpsFIRSparseGetStateSize_32f(count, positions.back(), &size), 0);
        for (const Level level : levels()) {
            useLevel(level);
            std::vector<Zvp8u> memory(static_cast<size_t>(size) + 1);
            ZvpsFIRSparseState_32f* state = nullptr;
            ASSERT_EQ(
                zvpsFIRSparseInit_32f(&state, values.data(), positions.data(), count, past.data(), memory.data() + 1),
                0);
            std::vector<Zvp32f> y = x;
            size_t i = 0;
            for (const size_t n : {1, 15, 130, 2000, 354}) {
                ASSERT_EQ(zvpsFIRSparse_32f(n == 130 ? &y[i] : &x[i], &y[i], static_cast<int>(n), state), 0);
                i += n;
            }
            for (i = 0; i < x.size(); ++i) {
                const Sum sum = sumAt(taps, &signal[order + i]);
                ASSERT_TRUE(isResult(y[i], sum, tolerance<Zvp32f>(positions.size()) * sum.magnitudes, 0)) << i;
            }
        }
    }
    const Zvp32f taps[2] = {1, 2};
    const Zvp32s falling[2] = {4, 4}, negative[2] = {-1, 4};
    Zvp8u buffer[8192];
    ZvpsFIRSparseState_32f* state = nullptr;
    EXPECT_EQ(zvpsFIRSparseInit_32f(&state, taps, falling, 2, nullptr, buffer), zvpStsBadSparsePos);
    EXPECT_EQ(zvpsFIRSparseInit_32f(&state, taps, negative, 2, nullptr, buffer), zvpStsBadSparsePos);
    EXPECT_EQ(zvpsFIRSparseInit_32f(&state, taps, negative, 0, nullptr, buffer), zvpStsBadFirLength);
    EXPECT_EQ(zvpsFIRSparseInit_32f(&state, taps, negative, 0, nullptr, nullptr), zvpStsNullPtr);
    EXPECT_EQ(state, nullptr);
}

// ---- Statuses ----

TEST(Fir, ArgumentsAreCheckedInOrder) {
    forEachFamily([](const auto& f) {
        using F = std::decay_t<decltype(f)>;
        using State = typename F::State;
        using T = typename F::Taps;
        SCOPED_TRACE(f.name);
        const std::vector<T> taps(8, T{});
        std::vector<typename F::Data> x(16), y(16), line(16);
        std::vector<T> read(8);
        std::vector<Zvp8u> buffer(1 << 20);
        int size = 0, factor;
        State* state = nullptr;
        State* const none = nullptr;
        uint32_t alien[64] = {0x46493099};
        auto* const other = reinterpret_cast<State*>(alien);
        const auto good = makeState(f, taps);
        std::vector<std::pair<ZvpStatus, ZvpStatus>> statuses = {
            {f.size(0, nullptr), zvpStsNullPtr},
            {f.size(0, &size), zvpStsBadFirLength},
            {f.init(nullptr, taps.data(), 0, nullptr, buffer.data()), zvpStsNullPtr},
            {f.init(&state, nullptr, 0, nullptr, buffer.data()), zvpStsNullPtr},
            {f.init(&state, taps.data(), 0, nullptr, nullptr), zvpStsNullPtr},
            {f.init(&state, taps.data(), 0, nullptr, buffer.data()), zvpStsBadFirLength},
            {f.initAlloc(nullptr, taps.data(), 0, nullptr), zvpStsNullPtr},
            {f.initAlloc(&state, nullptr, 0, nullptr), zvpStsNullPtr},
            {f.initAlloc(&state, taps.data(), -1, nullptr), zvpStsBadFirLength},
            {f.run(nullptr, y.data(), 0, good.get(), 0), zvpStsNullPtr},
            {f.run(x.data(), nullptr, 0, good.get(), 0), zvpStsNullPtr},
            {f.run(x.data(), y.data(), 0, none, 0), zvpStsNullPtr},
            {f.run(x.data(), y.data(), 0, other, 0), zvpStsBadSize},
            {f.run(x.data(), y.data(), 1, other, 0), zvpStsContextMismatch},
            {f.runInPlace(x.data(), -1, other, 0), zvpStsBadSize},
            {f.one(x[0], nullptr, other, 0), zvpStsNullPtr},
            {f.one(x[0], y.data(), none, 0), zvpStsNullPtr},
            {f.one(x[0], y.data(), other, 0), zvpStsContextMismatch},
            {f.free(none), zvpStsNullPtr},
            {f.free(other), zvpStsContextMismatch},
            {f.getTaps(none, read.data(), &factor), zvpStsNullPtr},
            {f.getTaps(other, nullptr, &factor), zvpStsNullPtr},
            {f.getTaps(other, read.data(), &factor), zvpStsContextMismatch},
            {f.setTaps(nullptr, other), zvpStsNullPtr},
            {f.setTaps(taps.data(), other), zvpStsContextMismatch},
        };
        const auto expect = [&](ZvpStatus actual, ZvpStatus expected) { statuses.emplace_back(actual, expected); };
        if (f.getPast != nullptr) {
            expect(f.getPast(other, nullptr), zvpStsNullPtr);
            expect(f.getPast(other, line.data()), zvpStsContextMismatch);
            expect(f.setPast(none, line.data()), zvpStsNullPtr);
            expect(f.setPast(other, line.data()), zvpStsContextMismatch);
        }
        if (f.direct != nullptr) {
            const auto direct = [&](const T* h, int n, int tapsLen, auto* past, int* index) {
                return f.direct(x.data(), y.data(), n, h, tapsLen, past, index, 0);
            };
            const auto one = [&](int tapsLen, int* index) {
                return f.oneDirect(x[0], y.data(), taps.data(), tapsLen, line.data(), index, 0);
            };
            int index = 8;
            expect(direct(nullptr, 0, 0, line.data(), &index), zvpStsNullPtr);
            expect(f.direct(x.data(), y.data(), 0, taps.data(), 0, nullptr, &index, 0), zvpStsNullPtr);
            expect(direct(taps.data(), 0, 0, line.data(), nullptr), zvpStsNullPtr);
            expect(direct(taps.data(), 0, 0, line.data(), &index), zvpStsBadSize);
            expect(direct(taps.data(), 1, 0, line.data(), &index), zvpStsBadFirLength);
            expect(f.oneDirect(x[0], nullptr, taps.data(), 0, line.data(), &index, 0), zvpStsNullPtr);
            expect(f.oneDirectInPlace(nullptr, taps.data(), 8, line.data(), &index, 0), zvpStsNullPtr);
            expect(one(0, &index), zvpStsBadFirLength);
            for (int bad : {8, -1}) {
                if (!std::is_integral_v<PartOfType<T>>) break;
                expect(direct(taps.data(), 1, 8, line.data(), &bad), zvpStsBadDelayIndex);
                expect(direct(taps.data(), 1, 0, line.data(), &bad), zvpStsBadFirLength);
                expect(one(8, &bad), zvpStsBadDelayIndex);
                EXPECT_TRUE(bad == 8 || bad == -1);
            }
        }
        for (size_t i = 0; i < statuses.size(); ++i)
            EXPECT_EQ(statuses[i].first, statuses[i].second) << i;
        EXPECT_EQ(state, nullptr);
    });
    // A state of one kind is no other's.
    const Zvp32f tap = 1;
    ZvpsFIRState_32f* state = nullptr;
    ASSERT_EQ(zvpsFIRInitAlloc_32f(&state, &tap, 1, nullptr), 0);
    Zvp16s sample = 0;
    EXPECT_EQ(zvpsFIR32f_16s_ISfs(&sample, 1, reinterpret_cast<ZvpsFIRState32f_16s*>(state), 0), zvpStsContextMismatch);
    EXPECT_EQ(zvpsFIRFree_32f(state), 0);
}

} // namespace
} // namespace zvps::test
