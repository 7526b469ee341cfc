// Recursive filters against the recurrence in higher precision.
#include "filters/iir_state.hpp"
#include "framework/arena.hpp"
#include "framework/filters.hpp"
#include "framework/memory.hpp"

#include <climits>
#include <cmath>
#include <complex>

namespace zvps::test {
namespace {

// ---- The functions of a pair of types ----

// Uniformly: every call with a tapsFactor and a scaleFactor, used or not. Of two functions the first is for any order.
template <class StateType, class TapsType, class DelayType, class DataType>
struct Family {
    using State = StateType;
    using Taps = TapsType;
    using Delay = DelayType;
    using Data = DataType;
    using Element = typename IirTraits<State>::Element;

    const char* name;
    bool hasTapsFactor;
    ZvpStatus (*getSize[2])(int n, int* size);
    ZvpStatus (*init[2])(State** state, const Taps* taps, int n, int factor, const Delay* delay, Zvp8u* buffer);
    ZvpStatus (*initAlloc[2])(State** state, const Taps* taps, int n, int factor, const Delay* delay);
    ZvpStatus (*free)(State* state);
    ZvpStatus (*getDelay)(const State* state, Delay* delay);
    ZvpStatus (*setDelay)(State* state, const Delay* delay);
    ZvpStatus (*setTaps)(const Taps* taps, State* state, int factor);
    ZvpStatus (*run)(const Data* src, Data* dst, int len, State* state, int scaleFactor);
    ZvpStatus (*runInPlace)(Data* srcDst, int len, State* state, int scaleFactor);
    ZvpStatus (*one)(Data src, Data* dst, State* state, int scaleFactor);
};

#define INIT_FLOAT(NAME)                                                                                               \
    [](auto** s, const auto* taps, int n, int, const auto* delay, Zvp8u* buffer) {                                     \
        return zvpsIIRInit##NAME(s, taps, n, delay, buffer);                                                           \
    }
#define ALLOC_FLOAT(NAME)                                                                                              \
    [](auto** s, const auto* taps, int n, int, const auto* delay) { return zvpsIIRInitAlloc##NAME(s, taps, n, delay); }
#define TAPS_FLOAT(NAME) [](const auto* taps, auto* s, int) { return zvpsIIRSetTaps##NAME(taps, s); }
#define INIT_INTEGER(NAME) zvpsIIRInit##NAME
#define ALLOC_INTEGER(NAME) zvpsIIRInitAlloc##NAME
#define TAPS_INTEGER(NAME) zvpsIIRSetTaps##NAME
#define RUN_PLAIN(NAME)                                                                                                \
    [](const auto* src, auto* dst, int len, auto* s, int) { return zvpsIIR##NAME(src, dst, len, s); },                 \
        [](auto* srcDst, int len, auto* s, int) { return zvpsIIR##NAME##_I(srcDst, len, s); },                         \
        [](auto src, auto* dst, auto* s, int) { return zvpsIIROne##NAME(src, dst, s); }
#define RUN_SFS(NAME) zvpsIIR##NAME##_Sfs, zvpsIIR##NAME##_ISfs, zvpsIIROne##NAME##_Sfs
#define FAMILY(PRE, POST, STATE, TAPS, DELAY, DATA, KIND, RUN)                                                         \
    Family<ZvpsIIRState##STATE, Zvp##TAPS, Zvp##DELAY, Zvp##DATA> {                                                    \
#PRE "_" #POST, #KIND[0] == 'I',                                                                               \
                              {zvpsIIRGetStateSize##PRE##_##POST, zvpsIIRGetStateSize##PRE##_BiQuad_##POST },          \
                               {INIT_##KIND(PRE##_##POST), INIT_##KIND(PRE##_BiQuad_##POST) },                         \
                                {ALLOC_##KIND(PRE##_##POST), ALLOC_##KIND(PRE##_BiQuad_##POST) },                      \
                                 zvpsIIRFree##PRE##_##POST, zvpsIIRGetDlyLine##PRE##_##POST,                           \
                                 zvpsIIRSetDlyLine##PRE##_##POST, TAPS_##KIND(PRE##_##POST), RUN_##RUN(PRE##_##POST)   \
    }

template <class Action>
void forEachFamily(Action action) {
    action(FAMILY(, 32f, _32f, 32f, 32f, 32f, FLOAT, PLAIN));
    action(FAMILY(, 32fc, _32fc, 32fc, 32fc, 32fc, FLOAT, PLAIN));
    action(FAMILY(, 64f, _64f, 64f, 64f, 64f, FLOAT, PLAIN));
    action(FAMILY(, 64fc, _64fc, 64fc, 64fc, 64fc, FLOAT, PLAIN));
    action(FAMILY(64f, 32f, 64f_32f, 64f, 64f, 32f, FLOAT, PLAIN));
    action(FAMILY(64fc, 32fc, 64fc_32fc, 64fc, 64fc, 32fc, FLOAT, PLAIN));
    action(FAMILY(32f, 16s, 32f_16s, 32f, 32f, 16s, FLOAT, SFS));
    action(FAMILY(32fc, 16sc, 32fc_16sc, 32fc, 32fc, 16sc, FLOAT, SFS));
    action(FAMILY(64f, 16s, 64f_16s, 64f, 64f, 16s, FLOAT, SFS));
    action(FAMILY(64f, 32s, 64f_32s, 64f, 64f, 32s, FLOAT, SFS));
    action(FAMILY(64fc, 16sc, 64fc_16sc, 64fc, 64fc, 16sc, FLOAT, SFS));
    action(FAMILY(64fc, 32sc, 64fc_32sc, 64fc, 64fc, 32sc, FLOAT, SFS));
    action(FAMILY(32s, 16s, 32s_16s, 32s, 32s, 16s, INTEGER, SFS));
    action(FAMILY(32sc, 16sc, 32sc_16sc, 32sc, 32sc, 16sc, INTEGER, SFS));
    action(FAMILY(32s, 16s32f, 32s_16s, 32f, 32s, 16s, FLOAT, SFS));
    action(FAMILY(32sc, 16sc32fc, 32sc_16sc, 32fc, 32sc, 16sc, FLOAT, SFS));
}

// ---- Numbers ----

using Long = std::complex<long double>;

template <class T>
inline constexpr bool kIsReal = std::is_arithmetic_v<T>;

template <class T>
Long toLong(T v) {
    if constexpr (kIsReal<T>) {
        return {static_cast<long double>(v), 0};
    } else {
        return {static_cast<long double>(v.re), static_cast<long double>(v.im)};
    }
}
template <class T>
T fromLong(Long v) {
    const auto part = [](long double x) {
        return static_cast<Part<T>>(std::is_integral_v<Part<T>> ? std::rint(x) : x);
    };
    if constexpr (kIsReal<T>) {
        return part(v.real());
    } else {
        return {part(v.real()), part(v.imag())};
    }
}

long double uniform(Random& random) {
    return static_cast<long double>(random.below(1 << 24)) / (1 << 23) - 1;
}
template <class T>
T randomElement(Random& random, long double magnitude) {
    const long double re = uniform(random) * magnitude;
    return fromLong<T>({re, kIsReal<T> ? 0 : uniform(random) * magnitude});
}
template <class T>
std::vector<T> randomSignal(size_t count, Random& random) {
    const long double magnitude = !std::is_integral_v<Part<T>> ? 1 : sizeof(Part<T>) == 2 ? 9000 : 1e8;
    std::vector<T> signal(count);
    for (T& v : signal)
        v = randomElement<T>(random, magnitude);
    return signal;
}

// Of a stable filter, times an A0 that is no power of two; complex ones and those of high order with small A.
template <class T>
std::vector<T> randomTaps(int kind, int n, Random& random) {
    const long double scale = std::is_integral_v<Part<T>> ? 300000001 : 1.7L;
    std::vector<T> taps;
    const auto add = [&](Long v) { taps.push_back(fromLong<T>(scale * v)); };
    const auto tap = [&](long double magnitude) { return toLong(randomElement<T>(random, scale * magnitude)) / scale; };
    for (int s = 0; s < (kind == 0 ? 1 : n); ++s) {
        const int order = kind == 0 ? n : 2;
        add(tap(0.3L) + 0.4L);
        for (int k = 1; k <= order; ++k)
            add(tap(0.5L));
        add(1);
        if (kind == 1 && kIsReal<T>) {
            const long double radius = 0.99L - 0.5L * std::abs(uniform(random));
            add(-2 * radius * std::cos(3 * uniform(random)));
            add(radius * radius);
        } else {
            for (int k = 1; k <= order; ++k)
                add(tap(0.6L / order));
        }
    }
    return taps;
}

// ---- The recurrence ----

// One filter of any order, or one section.
struct Reference {
    std::vector<Long> b, a, d;
    long double peak = 0; // of outputs and entries of the delay line

    Long next(Long x) {
        const size_t n = d.size();
        const Long y = b[0] * x + d[0];
        for (size_t k = 0; k < n; ++k) {
            d[k] = b[k + 1] * x - a[k + 1] * y + (k + 1 < n ? d[k + 1] : Long());
            peak = std::max(peak, std::abs(d[k]));
        }
        peak = std::max(peak, std::abs(y));
        return y;
    }
};

// Real taps are normalised in the type the filter computes in, so that only its own rounding tells them apart.
template <class Element, class Taps>
std::vector<Reference> makeReference(int kind, int n, const std::vector<Taps>& taps, const Long* delay) {
    const size_t order = kind == 0 ? static_cast<size_t>(n) : 2;
    std::vector<Reference> sections(kind == 0 ? 1 : static_cast<size_t>(n));
    for (size_t s = 0; s < sections.size(); ++s) {
        const Taps* const given = taps.data() + s * 6;
        const auto normalised = [&](size_t i) -> Long {
            if constexpr (kIsReal<Taps>) {
                const Element factor = 1 / static_cast<Element>(given[order + 1]);
                return static_cast<long double>(static_cast<Element>(static_cast<Element>(given[i]) * factor));
            } else {
                return toLong(given[i]) / toLong(given[order + 1]);
            }
        };
        for (size_t k = 0; k <= order; ++k) {
            sections[s].b.push_back(normalised(k));
            sections[s].a.push_back(normalised(order + 1 + k));
        }
        sections[s].d.assign(delay + s * order, delay + (s + 1) * order);
    }
    return sections;
}

Long next(std::vector<Reference>& sections, Long x) {
    for (Reference& section : sections)
        x = section.next(x);
    return x;
}

long double peakOf(const std::vector<Reference>& sections) {
    long double peak = 0;
    for (const Reference& section : sections)
        peak = std::max(peak, section.peak);
    return peak;
}

// What the filter's own rounding may cost, and that of the stored value.
template <class Family>
long double bound(long double peak) {
    return 2000 * peak * std::numeric_limits<Part<typename Family::Element>>::epsilon();
}

template <class T>
void expectElement(T actual, Long expected, int scaleFactor, long double bound, const std::string& where) {
    const auto expectPart = [&](Part<T> got, long double exact) {
        using Limits = std::numeric_limits<Part<T>>;
        const long double scale = std::ldexp(1.0L, -scaleFactor);
        long double allowed = bound * scale;
        exact *= scale;
        if constexpr (std::is_integral_v<Part<T>>) {
            exact = std::clamp<long double>(exact, Limits::min(), Limits::max());
            allowed += 0.5L;
        } else {
            allowed += std::abs(exact) * Limits::epsilon();
        }
        ASSERT_NEAR(static_cast<double>(got - exact), 0, static_cast<double>(allowed)) << where;
    };
    if constexpr (kIsReal<T>) {
        expectPart(actual, expected.real());
    } else {
        expectPart(actual.re, expected.real());
        expectPart(actual.im, expected.imag());
    }
}

// ---- Filters of every kind ----

constexpr int kOrders[] = {1, 2, 3, 7, 8, 9, 21, 40};
constexpr int kSections[] = {1, 2, 3, 4, 5, 9};

template <class Family>
struct Case {
    const Family& f;
    int kind;
    int n;
    std::vector<typename Family::Taps> taps;
    std::vector<typename Family::Delay> delay;

    Case(const Family& family, int kindOf, int count, Random& random)
        : f(family), kind(kindOf), n(count), taps(randomTaps<typename Family::Taps>(kind, n, random)),
          delay(randomSignal<typename Family::Delay>(static_cast<size_t>(kind == 0 ? n : 2 * n), random)) {}

    std::string where() const {
        return std::string(f.name) + (kind == 0 ? ", order " : ", sections: ") + std::to_string(n);
    }
    size_t size() const {
        int bytes = 0;
        EXPECT_EQ(f.getSize[kind](n, &bytes), zvpStsOk);
        return static_cast<size_t>(bytes);
    }
    typename Family::State* init(Zvp8u* buffer) const {
        typename Family::State* state = nullptr;
        EXPECT_EQ(f.init[kind](&state, taps.data(), n, 5, delay.data(), buffer), zvpStsOk) << where();
        return state;
    }
    std::vector<typename Family::Delay> currentDelay(const typename Family::State* state) const {
        std::vector<typename Family::Delay> current(delay.size());
        EXPECT_EQ(f.getDelay(state, current.data()), zvpStsOk) << where();
        return current;
    }
    std::vector<Reference> reference() const {
        std::vector<Long> d;
        for (const auto& entry : delay)
            d.push_back(toLong(entry));
        return makeReference<typename Family::Element>(kind, n, taps, d.data());
    }
};

template <class Action>
void forEachCase(const char* purpose, Action action) {
    forEachFamily([&](const auto& f) {
        Random random(std::string(purpose) + f.name);
        for (const int n : kOrders)
            action(Case(f, 0, n, random), random);
        for (const int n : kSections)
            action(Case(f, 1, n, random), random);
    });
    useLevel(levels().back());
}

// In random pieces by all functions, from and to memory that ends with the last sample.
template <class Case, class Data>
std::vector<Data> inPieces(const Case& c, const std::vector<Data>& x, decltype(c.init(nullptr)) state, int scaleFactor,
                           Random& random) {
    std::vector<Data> y(x.size());
    Arena sources(x.size() * sizeof(Data)), destinations(x.size() * sizeof(Data));
    for (size_t i = 0; i < x.size();) {
        const size_t most = random.below(3) == 0 ? 700 : 40;
        const size_t count = std::min(1 + random.below(most), x.size() - i);
        const int len = static_cast<int>(count);
        Data* const src = reinterpret_cast<Data*>(sources.atEnd(count * sizeof(Data)));
        Data* const dst = reinterpret_cast<Data*>(destinations.atEnd(count * sizeof(Data)));
        std::copy_n(x.data() + i, count, src);
        const Data* result = dst;
        if (count == 1) {
            EXPECT_EQ(c.f.one(*src, dst, state, scaleFactor), zvpStsOk);
        } else if (random.below(2) == 0) {
            EXPECT_EQ(c.f.run(src, dst, len, state, scaleFactor), zvpStsOk);
        } else {
            EXPECT_EQ(c.f.runInPlace(src, len, state, scaleFactor), zvpStsOk);
            result = src;
        }
        EXPECT_TRUE(sources.isIntact() && destinations.isIntact()) << c.where();
        std::copy_n(result, count, y.data() + i);
        i += count;
    }
    return y;
}

// Outputs and delay lines; the same bits however the signal is cut, and on the levels with fused operations.
TEST(Iir, Recurrence) {
    forEachCase("Recurrence", [](const auto& c, Random& random) {
        using F = std::decay_t<decltype(c.f)>;
        if (::testing::Test::HasFailure()) return;
        const auto x = randomSignal<typename F::Data>(2300, random);
        const bool isScaled = std::is_integral_v<Part<typename F::Data>>;
        const int scaleFactor = isScaled ? static_cast<int>(random.below(5)) - 1 : 0;
        auto reference = c.reference();
        std::vector<Long> expected;
        for (const auto& v : x)
            expected.push_back(next(reference, toLong(v)));
        const long double allowed = bound<F>(peakOf(reference));
        std::vector<typename F::Data> fused;
        for (const Level level : levels()) {
            useLevel(level);
            const std::string where = c.where() + " by " + levelName(level);
            Arena memory(c.size() + 32), others(c.size() + 32);
            auto* const state = c.init(memory.atEnd(c.size()));
            ASSERT_EQ(reinterpret_cast<uintptr_t>(state) % 32, 0);
            std::vector<typename F::Data> y(x.size());
            ASSERT_EQ(c.f.run(x.data(), y.data(), static_cast<int>(x.size()), state, scaleFactor), zvpStsOk);
            for (size_t i = 0; i < x.size(); ++i) {
                expectElement(y[i], expected[i], scaleFactor, allowed, where + ", sample " + std::to_string(i));
                if (::testing::Test::HasFatalFailure()) return;
            }
            const auto delay = c.currentDelay(state);
            for (size_t i = 0; i < delay.size(); ++i) {
                const Long d = c.kind == 0 ? reference[0].d[i] : reference[i / 2].d[i % 2];
                expectElement(delay[i], d, 0, allowed, where + ", delay " + std::to_string(i));
            }
            auto* const other = c.init(others.atStart(c.size(), 1 + random.below(31)));
            ASSERT_TRUE(sameBits(inPieces(c, x, other, scaleFactor, random), y)) << where;
            EXPECT_TRUE(sameBits(c.currentDelay(other), delay)) << where;
            EXPECT_TRUE(memory.isIntact() && others.isIntact()) << where;
            if (level == Level::v2) continue;
            EXPECT_TRUE(fused.empty() || sameBits(y, fused)) << where;
            fused = y;
        }
    });
}

// In and out at any time; new taps leave the line alone, taps that are refused leave everything.
TEST(Iir, DelayLinesAndTaps) {
    forEachCase("DelayLinesAndTaps", [](const auto& c, Random& random) {
        using F = std::decay_t<decltype(c.f)>;
        const std::string where = c.where();
        Arena memory(c.size());
        auto* const state = c.init(memory.atEnd(c.size()));
        EXPECT_TRUE(sameBits(c.currentDelay(state), c.delay)) << where;
        const auto x = randomSignal<typename F::Data>(37, random);
        std::vector<typename F::Data> y(x.size()), again(x.size());
        ASSERT_EQ(c.f.run(x.data(), y.data(), 37, state, 0), zvpStsOk);
        const auto line = c.currentDelay(state);

        auto taps = c.taps;
        const size_t divisor = c.kind == 0 ? static_cast<size_t>(c.n) + 1 : taps.size() - 6 + 3 * random.below(2);
        taps[divisor] = {};
        EXPECT_EQ(c.f.setTaps(taps.data(), state, 0), zvpStsDivByZeroErr) << where;
        if (c.f.hasTapsFactor) {
            EXPECT_EQ(c.f.setTaps(c.taps.data(), state, -1), zvpStsBadTapsScale);
        }
        EXPECT_TRUE(sameBits(c.currentDelay(state), line)) << where;

        ASSERT_EQ(c.f.setDelay(state, c.delay.data()), zvpStsOk);
        EXPECT_TRUE(sameBits(c.currentDelay(state), c.delay)) << where;
        ASSERT_EQ(c.f.run(x.data(), again.data(), 37, state, 0), zvpStsOk);
        EXPECT_TRUE(sameBits(again, y)) << where;

        const Case fresh(c.f, c.kind, c.n, random);
        ASSERT_EQ(c.f.setTaps(fresh.taps.data(), state, 3), zvpStsOk);
        EXPECT_TRUE(sameBits(c.currentDelay(state), line)) << where;
        ASSERT_EQ(c.f.setDelay(state, fresh.delay.data()), zvpStsOk);
        ASSERT_EQ(c.f.run(x.data(), y.data(), 37, state, 0), zvpStsOk);
        Arena other(c.size());
        ASSERT_EQ(c.f.run(x.data(), again.data(), 37, fresh.init(other.atEnd(c.size())), 0), zvpStsOk);
        EXPECT_TRUE(sameBits(again, y)) << where;

        ASSERT_EQ(c.f.setDelay(state, nullptr), zvpStsOk);
        EXPECT_TRUE(sameBits(c.currentDelay(state), std::vector<typename F::Delay>(line.size()))) << where;
    });
}

// What callers see of states: tags, and sizes for orders, and numbers of sections, of 1, 6 and 35.
struct Layout {
    std::string name;
    uint32_t tags[2];
    int sizes[2][3];
};
const Layout& layoutOf(std::string name) {
    static const Layout layouts[] = {
        {"_32f", {0x49493031, 0x49493032}, {{4392, 4616, 5880}, {4472, 5400, 10856}}},
        {"_32fc", {0x49493033, 0x49493034}, {{8880, 9648, 14032}, {9632, 15808, 51776}}},
        {"32f_16s", {0x49493035, 0x49493036}, {{8488, 8712, 9976}, {8568, 9496, 14952}}},
        {"32fc_16sc", {0x49493037, 0x49493038}, {{17072, 17840, 22224}, {17824, 24000, 59968}}},
        {"32s_16s", {0x49493039, 0x49493130}, {{8488, 8712, 9976}, {8568, 9496, 14952}}},
        {"32sc_16sc", {0x49493131, 0x49493132}, {{17072, 17840, 22224}, {17824, 24000, 59968}}},
        {"_64f", {0x49493133, 0x49493134}, {{8528, 8896, 10976}, {8608, 10160, 19216}}},
        {"_64fc", {0x49493135, 0x49493136}, {{16992, 18432, 26784}, {17648, 23328, 56272}}},
        {"64f_32f", {0x49493137, 0x49493138}, {{16720, 17088, 19168}, {16800, 18352, 27408}}},
        {"64fc_32fc", {0x49493139, 0x49493230}, {{33392, 34912, 43728}, {34032, 39712, 72656}}},
        {"64f_32s", {0x49493231, 0x49493232}, {{16720, 17088, 19168}, {16800, 18352, 27408}}},
        {"64fc_32sc", {0x49493233, 0x49493234}, {{33392, 34912, 43728}, {34032, 39712, 72656}}},
        {"64f_16s", {0x49493235, 0x49493236}, {{16720, 17088, 19168}, {16800, 18352, 27408}}},
        {"64fc_16sc", {0x49493237, 0x49493238}, {{33392, 34912, 43728}, {34032, 39712, 72656}}},
    };
    for (const std::string suffix : {"32fc", "32f"}) {
        if (name == "32sc_16sc" + suffix || name == "32s_16s" + suffix) name.resize(name.size() - suffix.size());
    }
    for (const Layout& layout : layouts) {
        if (layout.name == name) return layout;
    }
    throw std::out_of_range(name);
}

TEST(Iir, Sizes) {
    forEachFamily([](const auto& f) {
        for (const int kind : {0, 1}) {
            for (const int i : {0, 1, 2}) {
                constexpr int kCounts[] = {1, 6, 35};
                int size = 0;
                EXPECT_EQ(f.getSize[kind](kCounts[i], &size), zvpStsOk);
                EXPECT_EQ(size, layoutOf(f.name).sizes[kind][i]) << f.name;
            }
        }
    });
}

// Normalised taps, behind the pointer at their place.
TEST(Iir, StoredTaps) {
    const Zvp32f given[] = {3, 5, 7, 3, -1, 2, 1, 2, 3, 10, 5, 4};
    const Zvp32f third = 1.0F / 3;
    const Zvp32f tenth = 1.0F / 10;
    ZvpsIIRState_32f* states[2];
    ASSERT_EQ(zvpsIIRInitAlloc_32f(&states[0], given, 2, nullptr), zvpStsOk);
    ASSERT_EQ(zvpsIIRInitAlloc_BiQuad_32f(&states[1], given, 2, nullptr), zvpStsOk);
    const std::vector<Zvp32f> expected[] = {{3 * third, 5 * third, 7 * third, -1 * third, 2 * third},
                                            {3 * third, 5 * third, 7 * third, -1 * third, 2 * third, 1 * tenth,
                                             2 * tenth, 3 * tenth, 5 * tenth, 4 * tenth}};
    for (const int kind : {0, 1}) {
        const auto* const taps = zvps::header(states[kind])->taps;
        EXPECT_TRUE(sameBits(std::vector<Zvp32f>(taps, taps + expected[kind].size()), expected[kind])) << kind;
        EXPECT_EQ(zvpsIIRFree_32f(states[kind]), zvpStsOk);
    }
}

TEST(Iir, StatesAndStatuses) {
    int family = 0;
    forEachCase("StatesAndStatuses", [&](const auto& c, Random&) {
        using F = std::decay_t<decltype(c.f)>;
        using State = typename F::State;
        const std::string where = c.where();
        State* const untouched = reinterpret_cast<State*>(64);
        State* state = untouched;
        const auto* taps = c.taps.data();
        std::vector<Zvp8u> buffer(c.size());
        int size = 77;
        EXPECT_EQ(c.f.getSize[c.kind](0, nullptr), zvpStsNullPtr);
        for (const int n : {0, -1, INT_MIN, INT_MAX}) {
            EXPECT_EQ(c.f.getSize[c.kind](n, &size), zvpStsBadIirOrder) << where << ", " << n;
            EXPECT_EQ(c.f.init[c.kind](&state, taps, n, -1, nullptr, buffer.data()), zvpStsBadIirOrder);
            EXPECT_EQ(c.f.initAlloc[c.kind](&state, taps, n, -1, nullptr), zvpStsBadIirOrder);
        }
        EXPECT_EQ(size, 77);
        EXPECT_EQ(c.f.init[c.kind](nullptr, taps, 0, -1, nullptr, buffer.data()), zvpStsNullPtr);
        EXPECT_EQ(c.f.init[c.kind](&state, nullptr, 0, -1, nullptr, buffer.data()), zvpStsNullPtr);
        EXPECT_EQ(c.f.init[c.kind](&state, taps, 0, -1, nullptr, nullptr), zvpStsNullPtr);
        EXPECT_EQ(c.f.initAlloc[c.kind](nullptr, taps, 0, -1, nullptr), zvpStsNullPtr);
        EXPECT_EQ(c.f.initAlloc[c.kind](&state, nullptr, 0, -1, nullptr), zvpStsNullPtr);
        auto zero = c.taps;
        zero[c.kind == 0 ? static_cast<size_t>(c.n) + 1 : 3] = {};
        if (c.f.hasTapsFactor) {
            EXPECT_EQ(c.f.init[c.kind](&state, zero.data(), c.n, -1, nullptr, buffer.data()), zvpStsBadTapsScale);
        }
        EXPECT_EQ(c.f.init[c.kind](&state, zero.data(), c.n, 0, nullptr, buffer.data()), zvpStsDivByZeroErr);
        if (c.kind == 1) {
            zero = c.taps;
            zero[zero.size() - 6] = {}; // the last B0
            EXPECT_EQ(c.f.initAlloc[c.kind](&state, zero.data(), c.n, 0, nullptr), zvpStsDivByZeroErr);
        }
        allocationsLeft = 0;
        EXPECT_EQ(c.f.initAlloc[c.kind](&state, taps, c.n, 0, nullptr), zvpStsNoMemory);
        allocationsLeft = -1;
        EXPECT_EQ(state, untouched) << where;
        EXPECT_TRUE(blocks.empty());

        ASSERT_EQ(c.f.initAlloc[c.kind](&state, taps, c.n, 0, c.delay.data()), zvpStsOk);
        EXPECT_EQ(blocks.size(), 1U);
        EXPECT_TRUE(sameBits(c.currentDelay(state), c.delay)) << where;
        const auto* const header = zvps::header(state);
        EXPECT_EQ(header->tag, layoutOf(c.f.name).tags[c.kind]) << where;
        EXPECT_EQ(header->order, c.kind == 0 ? c.n : 2 * c.n);
        EXPECT_EQ(header->sections, c.kind == 0 ? 0 : c.n);

        typename F::Data x[3] = {};
        typename F::Delay line[1] = {};
        EXPECT_EQ(c.f.run(nullptr, x, 0, state, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.run(x, nullptr, 0, state, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.run(x, x, 0, nullptr, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.run(x, x, 0, state, 0), zvpStsBadSize);
        EXPECT_EQ(c.f.runInPlace(nullptr, 0, state, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.runInPlace(x, -1, state, 0), zvpStsBadSize);
        EXPECT_EQ(c.f.one(x[0], nullptr, state, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.one(x[0], x, nullptr, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.getDelay(state, nullptr), zvpStsNullPtr);
        EXPECT_EQ(c.f.setDelay(nullptr, line), zvpStsNullPtr);
        EXPECT_EQ(c.f.setTaps(nullptr, state, 0), zvpStsNullPtr);
        EXPECT_EQ(c.f.free(nullptr), zvpStsNullPtr);
        EXPECT_EQ(c.f.free(state), zvpStsOk);
        EXPECT_TRUE(blocks.empty());

        state = c.init(buffer.data());
        EXPECT_EQ(c.f.free(state), zvpStsOk);
        EXPECT_EQ(c.f.free(state), zvpStsContextMismatch) << where;
        EXPECT_EQ(c.f.run(x, x, 0, state, 0), zvpStsBadSize);
        EXPECT_EQ(c.f.run(x, x, 1, state, 0), zvpStsContextMismatch);
        EXPECT_EQ(c.f.runInPlace(x, 1, state, 0), zvpStsContextMismatch);
        EXPECT_EQ(c.f.one(x[0], x, state, 0), zvpStsContextMismatch);
        EXPECT_EQ(c.f.getDelay(state, line), zvpStsContextMismatch);
        EXPECT_EQ(c.f.setDelay(state, line), zvpStsContextMismatch);
        EXPECT_EQ(c.f.setTaps(taps, state, -1), zvpStsContextMismatch);
        ++family;
    });
    EXPECT_EQ(family, 16 * 14);
}

// ---- Where arithmetic ends ----

template <class T>
bool isFinite(T v) {
    const Long w = toLong(v);
    return std::isfinite(w.real()) && std::isfinite(w.imag());
}

// Nothing changes before a NaN or an infinity, and nothing is finite from there on.
TEST(Iir, NotFinite) {
    forEachCase("NotFinite", [](const auto& c, Random& random) {
        using F = std::decay_t<decltype(c.f)>;
        using Data = typename F::Data;
        if constexpr (!std::is_integral_v<Part<Data>>) {
            const auto x = randomSignal<Data>(1400, random);
            for (const Level level : levels()) {
                useLevel(level);
                std::vector<Zvp8u> memory(c.size());
                std::vector<Data> clean(x.size());
                const int len = static_cast<int>(x.size());
                ASSERT_EQ(c.f.run(x.data(), clean.data(), len, c.init(memory.data()), 0), zvpStsOk);
                for (const long double bad : {HUGE_VALL, -HUGE_VALL, std::nanl("")}) {
                    const size_t at = random.below(x.size());
                    auto y = x;
                    y[at] = fromLong<Data>({bad, kIsReal<Data> ? 0 : uniform(random)});
                    ASSERT_EQ(c.f.runInPlace(y.data(), len, c.init(memory.data()), 0), zvpStsOk);
                    EXPECT_EQ(std::memcmp(y.data(), clean.data(), at * sizeof(Data)), 0) << c.where() << " " << at;
                    for (size_t i = at; i < y.size(); ++i)
                        ASSERT_FALSE(isFinite(y[i])) << c.where() << ", " << bad << " at " << at << ", sample " << i;
                }
            }
        }
    });
}

// An infinity that the recurrence keeps stays one, of its sign; poles on and far outside the unit circle.
TEST(Iir, Extremes) {
    struct Filter {
        const char* name;
        float taps[6];
        float input; // from the second sample on
        size_t count;
    };
    const float infinity = std::numeric_limits<float>::infinity();
    const Filter filters[] = {
        {"infinity", {1, 0.5F, 0.25F, 1, -0.5F, -0.25F}, infinity, 300},
        {"largest", {1, 0.5F, 0.25F, 1, -0.5F, -0.25F}, 3e38F, 300},
        {"oscillator", {1, 0, 0, 1, -1.6F, 1}, 0, 2000},
        {"two integrators", {1, 0, 0, 1, -2, 1}, 1, 2000},
        {"pole at 1.02", {1, 1, 0, 1, -1.02F, 0}, 0.5F, 2000},
        {"pole at -3", {1, 0.5F, 0, 1, 3, 0}, 0.5F, 60},
        {"pole at 100000", {1, 0, 0, 1, -1e5F, 0}, 0, 7},
        {"far poles at rest", {1, 0, 0, 1, -1e30F, 1e30F}, 0, 600},
    };
    for (const Level level : levels()) {
        useLevel(level);
        for (const Filter& f : filters) {
            const bool rests = std::string(f.name).find("rest") != std::string::npos;
            std::vector<float> x(f.count, f.input), any(f.count), cascade(f.count);
            x[0] = rests ? 0 : 1;
            const float any6[] = {f.taps[0], f.taps[1], f.taps[2], f.taps[3], f.taps[4], f.taps[5]};
            ZvpsIIRState_32f *first, *second;
            ASSERT_EQ(zvpsIIRInitAlloc_32f(&first, any6, 2, nullptr), zvpStsOk);
            ASSERT_EQ(zvpsIIRInitAlloc_BiQuad_32f(&second, f.taps, 1, nullptr), zvpStsOk);
            const int len = static_cast<int>(f.count);
            ASSERT_EQ(zvpsIIR_32f(x.data(), any.data(), len, first), zvpStsOk);
            ASSERT_EQ(zvpsIIR_32f(x.data(), cascade.data(), len, second), zvpStsOk);
            float d0 = 0;
            float d1 = 0;
            long double peak = 0;
            for (size_t i = 0; i < f.count; ++i) {
                const float y = f.taps[0] * x[i] + d0;
                d0 = f.taps[1] * x[i] - f.taps[4] * y + d1;
                d1 = f.taps[2] * x[i] - f.taps[5] * y;
                const std::string where = std::string(f.name) + " by " + levelName(level) + ", " + std::to_string(i);
                for (const float actual : {any[i], cascade[i]}) {
                    if (!std::isfinite(y)) {
                        ASSERT_EQ(actual, y) << where;
                    } else {
                        peak = std::max<long double>(peak, std::abs(y));
                        ASSERT_NEAR(actual, y, static_cast<double>(1e-3L * peak)) << where;
                    }
                }
            }
            EXPECT_EQ(zvpsIIRFree_32f(first), zvpStsOk);
            EXPECT_EQ(zvpsIIRFree_32f(second), zvpStsOk);
        }
    }
    EXPECT_TRUE(blocks.empty());
}

// ---- Direct form 1 ----

// The outputs; `lines` are x[n-1], x[n-2], y[n-1], y[n-2] of each section, before and after.
template <class T, class Taps>
std::vector<long double> directForm1(const std::vector<T>& x, const std::vector<Taps>& taps,
                                     std::vector<long double>& lines) {
    std::vector<long double> result;
    for (const T& v : x) {
        long double y = v;
        for (size_t s = 0; s < taps.size() / 6; ++s) {
            const Taps* t = taps.data() + 6 * s;
            long double* line = lines.data() + 4 * s;
            const long double input = y;
            y = (t[0] * input + t[1] * line[0] + t[2] * line[1] - t[4] * line[2] - t[5] * line[3]) / t[3];
            line[1] = line[0];
            line[0] = input;
            line[3] = line[2];
            line[2] = y;
        }
        result.push_back(y);
    }
    return result;
}

template <class State, class Taps, class Data>
struct DirectForm1 {
    uint32_t tag;
    int sizeOf35;
    int scaleFactor; // of run
    ZvpStatus (*getSize)(int n, int* size);
    ZvpStatus (*init)(State** state, const Taps* taps, int n, const Data* line, Zvp8u* buffer);
    ZvpStatus (*getLine)(const State* state, Data* line);
    ZvpStatus (*run)(Data* srcDst, int len, State* state);
    ZvpStatus (*free)(State* state);
    std::vector<ZvpStatus> (*refusals)(State* state); // of functions for other states
};

template <class State, class Taps, class Data>
void expectDirectForm1(const DirectForm1<State, Taps, Data>& f) {
    Random random("DirectForm1");
    for (const int n : {1, 2, 4, 7, 35}) {
        const auto taps = randomTaps<Taps>(1, n, random);
        const auto x = randomSignal<Data>(1500, random);
        const auto line = randomSignal<Data>(4 * static_cast<size_t>(n), random);
        std::vector<long double> lines(line.begin(), line.end());
        const auto expected = directForm1(x, taps, lines);
        long double peak = 1;
        for (const long double v : expected)
            peak = std::max(peak, std::abs(v));
        const long double bound =
            std::is_integral_v<Data> ? 1e-2L : 2000.0L * n * peak * std::numeric_limits<float>::epsilon();
        int size = 0;
        ASSERT_EQ(f.getSize(n, &size), zvpStsOk);
        EXPECT_TRUE(n != 35 || size == f.sizeOf35);
        Arena memory(static_cast<size_t>(size));
        for (const Level level : levels()) {
            useLevel(level);
            State* state;
            ASSERT_EQ(f.init(&state, taps.data(), n, line.data(), memory.atEnd(static_cast<size_t>(size))), zvpStsOk);
            EXPECT_EQ(zvps::header(state)->tag, f.tag);
            std::vector<Data> now(line.size()), y(x);
            ASSERT_EQ(f.getLine(state, now.data()), zvpStsOk);
            EXPECT_TRUE(sameBits(now, line));
            for (const ZvpStatus status : f.refusals(state))
                EXPECT_EQ(status, zvpStsContextMismatch);
            for (size_t i = 0; i < y.size();) {
                const size_t piece = std::min(1 + random.below(1100), y.size() - i);
                ASSERT_EQ(f.run(y.data() + i, static_cast<int>(piece), state), zvpStsOk);
                i += piece;
            }
            for (size_t i = 0; i < y.size(); ++i)
                expectElement(y[i], expected[i], f.scaleFactor, bound, "sample " + std::to_string(i));
            ASSERT_EQ(f.getLine(state, now.data()), zvpStsOk);
            for (size_t i = 0; i < now.size(); ++i)
                expectElement(now[i], lines[i], 0, bound, "line " + std::to_string(i));
            EXPECT_EQ(f.free(state), zvpStsOk);
            EXPECT_EQ(f.getLine(state, now.data()), zvpStsContextMismatch);
        }
    }
}

TEST(Iir, DirectForm1) {
    expectDirectForm1<ZvpsIIRState_32f, Zvp32f, Zvp32f>(
        {0x49493239, 1392, 0, zvpsIIRGetStateSize_BiQuad_DF1_32f, zvpsIIRInit_BiQuad_DF1_32f, zvpsIIRGetDlyLine_32f,
         zvpsIIR_32f_I, zvpsIIRFree_32f, [](ZvpsIIRState_32f* state) -> std::vector<ZvpStatus> {
             const Zvp32f values[210] = {1, 1, 1, 1, 1, 1};
             Zvp32f y;
             return {zvpsIIRSetDlyLine_32f(state, values), zvpsIIRSetTaps_32f(values, state),
                     zvpsIIROne_32f(1, &y, state)};
         }});
    expectDirectForm1<ZvpsIIRState64f_32s, Zvp64f, Zvp32s>(
        {0x49493330, 28528, 3, zvpsIIRGetStateSize64f_BiQuad_DF1_32s, zvpsIIRInit64f_BiQuad_DF1_32s,
         zvpsIIRGetDlyLine64f_DF1_32s,
         [](Zvp32s* y, int len, ZvpsIIRState64f_32s* state) { return zvpsIIR64f_32s_Sfs(y, y, len, state, 3); },
         zvpsIIRFree64f_32s,
         [](ZvpsIIRState64f_32s* state) -> std::vector<ZvpStatus> {
             Zvp64f line[140];
             Zvp32s y;
             return {zvpsIIRGetDlyLine64f_32s(state, line), zvpsIIROne64f_32s_Sfs(1, &y, state, 0)};
         }});
}

// ---- Channels ----

TEST(Iir, Channels) {
    Random random("Channels");
    constexpr int kChannels = 3;
    const auto taps = randomTaps<Zvp64f>(1, 2, random);
    ZvpsIIRState64f_32s *states[kChannels], *single[kChannels];
    std::vector<Zvp32s> x[kChannels], y[kChannels];
    const Zvp32s* sources[kChannels];
    Zvp32s* destinations[kChannels];
    for (int i = 0; i < kChannels; ++i) {
        x[i] = randomSignal<Zvp32s>(500, random);
        y[i] = x[i];
        sources[i] = x[i].data();
        destinations[i] = y[i].data();
        for (auto* const state : {&states[i], &single[i]}) {
            ASSERT_EQ(i == 1 ? zvpsIIRInitAlloc64f_32s(state, taps.data(), 5, nullptr)
                             : zvpsIIRInitAlloc64f_BiQuad_32s(state, taps.data(), 2, nullptr),
                      zvpStsOk);
        }
    }
    EXPECT_EQ(zvpsIIR64f_32s_PSfs(nullptr, destinations, 0, 0, states, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIR64f_32s_PSfs(sources, nullptr, 0, 0, states, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIR64f_32s_IPSfs(destinations, 0, 0, nullptr, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIR64f_32s_PSfs(sources, destinations, 0, 0, states, 0), zvpStsBadSize);
    EXPECT_EQ(zvpsIIR64f_32s_PSfs(sources, destinations, 500, 0, states, 0), zvpStsBadIirParam);
    sources[2] = nullptr;
    EXPECT_EQ(zvpsIIR64f_32s_PSfs(sources, destinations, 500, kChannels, states, 0), zvpStsNullPtr);
    sources[2] = x[2].data();
    const auto tag = zvps::header(states[2])->tag;
    zvps::header(states[2])->tag = 0;
    EXPECT_EQ(zvpsIIR64f_32s_PSfs(sources, destinations, 500, kChannels, states, 0), zvpStsContextMismatch);
    zvps::header(states[2])->tag = tag;
    for (int i = 0; i < kChannels; ++i)
        EXPECT_TRUE(sameBits(x[i], y[i]));

    ASSERT_EQ(zvpsIIR64f_32s_PSfs(sources, destinations, 500, kChannels, states, 2), zvpStsOk);
    for (int i = 0; i < kChannels; ++i) {
        std::vector<Zvp32s> expected(x[i].size());
        ASSERT_EQ(zvpsIIR64f_32s_Sfs(x[i].data(), expected.data(), 500, single[i], 2), zvpStsOk);
        EXPECT_TRUE(sameBits(y[i], expected)) << i;
        ASSERT_EQ(zvpsIIR64f_32s_ISfs(expected.data(), 500, single[i], 1), zvpStsOk);
        x[i] = expected;
    }
    ASSERT_EQ(zvpsIIR64f_32s_IPSfs(destinations, 500, kChannels, states, 1), zvpStsOk);
    for (int i = 0; i < kChannels; ++i) {
        EXPECT_TRUE(sameBits(y[i], x[i])) << i;
        zvpsIIRFree64f_32s(states[i]);
        zvpsIIRFree64f_32s(single[i]);
    }

    ZvpsIIRState_32f *plain, *other;
    const Zvp32f taps32f[] = {1, 0.5F, 1, -0.5F};
    ASSERT_EQ(zvpsIIRInitAlloc_32f(&plain, taps32f, 1, nullptr), zvpStsOk);
    ASSERT_EQ(zvpsIIRInitAlloc_32f(&other, taps32f, 1, nullptr), zvpStsOk);
    const auto signal = randomSignal<Zvp32f>(77, random);
    std::vector<Zvp32f> result(77), expected(77);
    const Zvp32f* source = signal.data();
    Zvp32f* destination = result.data();
    ASSERT_EQ(zvpsIIR_32f_P(&source, &destination, 77, 1, &plain), zvpStsOk);
    ASSERT_EQ(zvpsIIR_32f(signal.data(), expected.data(), 77, other), zvpStsOk);
    EXPECT_TRUE(sameBits(result, expected));
    zvpsIIRFree_32f(plain);
    zvpsIIRFree_32f(other);
    EXPECT_TRUE(blocks.empty());
}

// ---- Without a state ----

// a / b to nearest even, within limits; what they do not cut off is exact enough in 64 bits of mantissa.
int64_t roundedQuotient(int64_t a, int64_t b, long double least, long double most) {
    return static_cast<int64_t>(std::clamp(std::rint(static_cast<long double>(a) / b), least, most));
}

Zvp16s nextDirect(Zvp16s x, const Zvp16s* taps, size_t n, Zvp32s* d) {
    const Zvp16s* const a = taps + n + 1;
    const int64_t v = int64_t{taps[0]} * x + d[0];
    for (size_t k = 0; k < n; ++k) {
        const int64_t sum = (int64_t{taps[k + 1]} * x + (k + 1 < n ? d[k + 1] : 0)) * a[0] - a[k + 1] * v;
        d[k] = static_cast<Zvp32s>(roundedQuotient(sum, a[0], INT32_MIN, INT32_MAX));
    }
    return static_cast<Zvp16s>(roundedQuotient(v, a[0], INT16_MIN, INT16_MAX));
}

TEST(Iir, Direct) {
    Random random("Direct");
    for (int trial = 0; trial < 300; ++trial) {
        const size_t n = 1 + random.below(6);
        const bool isWild = trial % 3 == 0;
        std::vector<Zvp16s> taps(6 * n);
        for (Zvp16s& tap : taps)
            tap = static_cast<Zvp16s>(isWild ? random() : random.below(6001) - 3000);
        const bool isSections = trial % 2 == 0;
        for (size_t i = 3; i < taps.size(); i += 6)
            taps[i] = isWild ? static_cast<Zvp16s>(random() | 1) : Zvp16s{16384};
        for (size_t i = 0; i < taps.size(); i += 6)
            taps[i] = static_cast<Zvp16s>(taps[i] | 1);
        if (!isSections) taps[n + 1] = isWild ? Zvp16s{-32768} : Zvp16s{8192};
        std::vector<Zvp32s> expectedLine(2 * n), line(2 * n);
        std::vector<Zvp16s> x(60), expected, y(60);
        for (Zvp16s& v : x) {
            v = static_cast<Zvp16s>(random());
            Zvp16s out = v;
            for (size_t s = 0; s < (isSections ? n : 1); ++s)
                out = nextDirect(out, taps.data() + 6 * s, isSections ? 2 : n, expectedLine.data() + 2 * s);
            expected.push_back(out);
        }
        const int order = static_cast<int>(n);
        if (isSections) {
            for (size_t i = 0; i < x.size(); ++i) {
                y[i] = x[i];
                ASSERT_EQ(i % 2 == 0 ? zvpsIIROne_BiQuadDirect_16s(x[i], &y[i], taps.data(), order, line.data())
                                     : zvpsIIROne_BiQuadDirect_16s_I(&y[i], taps.data(), order, line.data()),
                          zvpStsOk);
            }
        } else {
            std::copy(x.begin(), x.end(), y.begin());
            ASSERT_EQ(zvpsIIR_Direct_16s(x.data(), y.data(), 30, taps.data(), order, line.data()), zvpStsOk);
            ASSERT_EQ(zvpsIIR_Direct_16s_I(y.data() + 30, 28, taps.data(), order, line.data()), zvpStsOk);
            ASSERT_EQ(zvpsIIROne_Direct_16s(x[58], &y[58], taps.data(), order, line.data()), zvpStsOk);
            ASSERT_EQ(zvpsIIROne_Direct_16s_I(&y[59], taps.data(), order, line.data()), zvpStsOk);
        }
        ASSERT_EQ(y, expected) << trial;
        ASSERT_EQ(line, expectedLine) << trial;
    }
    // 8 halved and halved again; 1/2 and the ties before it go to even.
    const Zvp16s halves[] = {2, 0, 2, -1};
    const Zvp16s impulse[] = {8, 0, 0, 0, 0, 0};
    Zvp16s y[6];
    Zvp32s line = 0;
    ASSERT_EQ(zvpsIIR_Direct_16s(impulse, y, 6, halves, 1, &line), zvpStsOk);
    EXPECT_EQ(std::vector<Zvp16s>(y, y + 6), (std::vector<Zvp16s>{8, 4, 2, 1, 0, 0}));

    const Zvp16s noDivisor[] = {1, 1, 0, 1, 1, 1};
    const Zvp16s noB0[] = {0, 1, 1, 1, 1, 1};
    EXPECT_EQ(zvpsIIR_Direct_16s(nullptr, y, 0, halves, 0, &line), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIR_Direct_16s(y, y, 0, nullptr, 0, &line), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIR_Direct_16s_I(y, 0, halves, 0, nullptr), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIR_Direct_16s_I(y, 0, halves, 0, &line), zvpStsBadSize);
    EXPECT_EQ(zvpsIIR_Direct_16s_I(y, 1, halves, 0, &line), zvpStsBadIirOrder);
    EXPECT_EQ(zvpsIIROne_Direct_16s(1, y, noDivisor, 1, &line), zvpStsDivByZeroErr);
    EXPECT_EQ(zvpsIIROne_Direct_16s_I(y, halves, -1, &line), zvpStsBadIirOrder);
    EXPECT_EQ(zvpsIIROne_BiQuadDirect_16s(1, y, noB0, 1, &line), zvpStsDivByZeroErr);
    EXPECT_EQ(zvpsIIROne_BiQuadDirect_16s_I(nullptr, noB0, 1, &line), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIROne_BiQuadDirect_16s_I(y, noB0, 0, &line), zvpStsBadIirOrder);
    EXPECT_EQ(line, 0);
}

// ---- Few taps ----

TEST(Iir, Sparse) {
    Random random("Sparse");
    const Zvp32s posB[] = {2, 5, 17}, posA[] = {0, 3, 40}, posNoA0[] = {3, 40}, unordered[] = {3, 3, 4};
    const Zvp32f b[] = {1, -0.5F, 0.25F}, a[] = {2, 0.5F, -0.75F};
    const auto x = randomSignal<Zvp32f>(500, random);
    const auto past = randomSignal<Zvp32f>(57, random);
    int size = 0;
    ASSERT_EQ(zvpsIIRSparseGetStateSize_32f(3, 3, 17, 40, &size), zvpStsOk);
    for (const bool hasA0 : {true, false}) {
        const Zvp32f divisor = hasA0 ? a[0] : 1;
        Arena memory(static_cast<size_t>(size));
        ZvpsIIRSparseState_32f* state = nullptr;
        ASSERT_EQ(zvpsIIRSparseInit_32f(&state, b, posB, 3, hasA0 ? a : a + 1, hasA0 ? posA : posNoA0, hasA0 ? 3 : 2,
                                        past.data(), memory.atEnd(static_cast<size_t>(size))),
                  zvpStsOk);
        std::vector<Zvp32f> y(x);
        ASSERT_EQ(zvpsIIRSparse_32f(x.data(), y.data(), 123, state), zvpStsOk);
        ASSERT_EQ(zvpsIIRSparse_32f(y.data() + 123, y.data() + 123, 377, state), zvpStsOk);
        std::vector<double> in(past.rend() - 17, past.rend()), out(past.rbegin(), past.rend() - 17);
        for (size_t n = 0; n < x.size(); ++n) {
            in.push_back(static_cast<double>(x[n]));
            double sum = 0;
            for (int k = 0; k < 3; ++k)
                sum += b[k] * in[in.size() - 1 - static_cast<size_t>(posB[k])];
            for (int k = 1; k < 3; ++k)
                sum -= a[k] * out[out.size() - static_cast<size_t>(posA[k])];
            out.push_back(sum / divisor);
            ASSERT_NEAR(y[n], out.back(), 1e-4) << n;
        }
        EXPECT_TRUE(memory.isIntact());
    }
    std::vector<Zvp8u> buffer(static_cast<size_t>(size));
    ZvpsIIRSparseState_32f* state = nullptr;
    const Zvp32f noA0[] = {0, 1, 1};
    EXPECT_EQ(zvpsIIRSparseGetStateSize_32f(0, 1, -1, 1, &size), zvpStsBadIirOrder);
    EXPECT_EQ(zvpsIIRSparseGetStateSize_32f(1, 1, -1, 1, &size), zvpStsBadSparsePos);
    EXPECT_EQ(zvpsIIRSparseGetStateSize_32f(1, 1, 1, 1, nullptr), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIRSparseInit_32f(&state, b, posB, 0, nullptr, posA, 3, nullptr, buffer.data()), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIRSparseInit_32f(&state, b, posB, 0, a, posA, 3, nullptr, buffer.data()), zvpStsBadIirOrder);
    EXPECT_EQ(zvpsIIRSparseInit_32f(&state, b, unordered, 3, a, posA, 3, nullptr, buffer.data()), zvpStsBadSparsePos);
    EXPECT_EQ(zvpsIIRSparseInit_32f(&state, b, posB, 3, a, unordered, 3, nullptr, buffer.data()), zvpStsBadSparsePos);
    EXPECT_EQ(zvpsIIRSparseInit_32f(&state, b, posB, 3, noA0, posA, 3, nullptr, buffer.data()), zvpStsDivByZeroErr);
    EXPECT_EQ(state, nullptr);
    ASSERT_EQ(zvpsIIRSparseInit_32f(&state, b, posB, 3, nullptr, nullptr, 0, nullptr, buffer.data()), zvpStsOk);
    Zvp32f y[3] = {};
    EXPECT_EQ(zvpsIIRSparse_32f(y, y, 0, state), zvpStsBadSize);
    EXPECT_EQ(zvpsIIRSparse_32f(nullptr, y, 0, state), zvpStsNullPtr);
    EXPECT_EQ(zvpsIIRSparse_32f(y, y, 1, reinterpret_cast<ZvpsIIRSparseState_32f*>(y)), zvpStsContextMismatch);
}

} // namespace
} // namespace zvps::test
