// Correlation and convolution against their sums in higher precision.
#include "framework/filters.hpp"
#include "framework/memory.hpp"
#include "zvpcore.h"

#include <climits>
#include <functional>

namespace zvps::test {
namespace {

// ---- The functions ----

enum class Kind { correlation, biased, unbiased, convolution };

// What a call computes: results of `first` and following lags, or places in the convolution.
struct Shape {
    int length1;
    int length2;
    int count;
    int first;
    int scaleFactor = 0;
};

template <class S, class D>
struct Function {
    using Source = S;
    using Result = D;
    const char* name;
    Kind kind;
    bool isAuto;  // of one source, from lag 0 on
    bool isWhole; // all of the convolution
    std::function<ZvpStatus(const S*, const S*, D*, const Shape&)> call;
};

// Arguments beyond those that all have.
#define ARGUMENT_NONE
#define ARGUMENT_SCALE , s.scaleFactor
#define ARGUMENT_PART , s.count, s.first
#define AUTO(NAME, KIND, TYPE, MORE)                                                                                   \
    Function<Zvp##TYPE, Zvp##TYPE> {                                                                                   \
#NAME, Kind::KIND, true, false,                                                                                \
            [](const Zvp##TYPE* a, const Zvp##TYPE*, Zvp##TYPE* dst,                                                   \
               [[maybe_unused]] const Shape& s) { return NAME(a, s.length1, dst, s.count ARGUMENT_##MORE); }           \
    }
#define CROSS(NAME, TYPE, RESULT, MORE)                                                                                \
    Function<Zvp##TYPE, Zvp##RESULT> {                                                                                 \
#NAME, Kind::correlation, false, false,                                                                        \
            [](const Zvp##TYPE* a, const Zvp##TYPE* b, Zvp##RESULT* dst,                                               \
               const Shape& s) { return NAME(a, s.length1, b, s.length2, dst, s.count, s.first ARGUMENT_##MORE); }     \
    }
#define CONVOLUTION(NAME, TYPE, isWhole, MORE)                                                                         \
    Function<Zvp##TYPE, Zvp##TYPE> {                                                                                   \
#NAME, Kind::convolution, false, isWhole,                                                                      \
            [](const Zvp##TYPE* a, const Zvp##TYPE* b, Zvp##TYPE* dst,                                                 \
               [[maybe_unused]] const Shape& s) { return NAME(a, s.length1, b, s.length2, dst ARGUMENT_##MORE); }      \
    }

template <class Action>
void forEachFunction(Action action) {
#define FLOATS(TYPE)                                                                                                   \
    action(AUTO(zvpsAutoCorr_##TYPE, correlation, TYPE, NONE));                                                        \
    action(AUTO(zvpsAutoCorr_NormA_##TYPE, biased, TYPE, NONE));                                                       \
    action(AUTO(zvpsAutoCorr_NormB_##TYPE, unbiased, TYPE, NONE));                                                     \
    action(CROSS(zvpsCrossCorr_##TYPE, TYPE, TYPE, NONE));
    FLOATS(32f)
    FLOATS(32fc)
    FLOATS(64f)
    FLOATS(64fc)
#undef FLOATS
    action(AUTO(zvpsAutoCorr_16s_Sfs, correlation, 16s, SCALE));
    action(AUTO(zvpsAutoCorr_NormA_16s_Sfs, biased, 16s, SCALE));
    action(AUTO(zvpsAutoCorr_NormB_16s_Sfs, unbiased, 16s, SCALE));
    action(CROSS(zvpsCrossCorr_16s_Sfs, 16s, 16s, SCALE));
    action(CROSS(zvpsCrossCorr_16s64s, 16s, 64s, NONE));
    action(CONVOLUTION(zvpsConv_32f, 32f, true, NONE));
    action(CONVOLUTION(zvpsConv_64f, 64f, true, NONE));
    action(CONVOLUTION(zvpsConv_16s_Sfs, 16s, true, SCALE));
    action(CONVOLUTION(zvpsConvBiased_32f, 32f, false, PART));
}

template <class S>
std::vector<S> randomSource(int n, Random& random) {
    return randomVector<S>(static_cast<size_t>(n), random);
}

template <class F, class S = typename F::Source, class D = typename F::Result>
std::vector<D> resultsOf(const F& f, const std::vector<S>& a, const std::vector<S>& b, const Shape& shape,
                         bool atEnd = true) {
    const Guarded<S> src1(a, atEnd), src2(b, atEnd);
    const Guarded<D> dst(std::vector<D>(static_cast<size_t>(shape.count)), atEnd);
    const size_t before = blocks.size();
    EXPECT_EQ(f.call(src1.data(), src2.data(), dst.data(), shape), zvpStsOk) << f.name;
    EXPECT_EQ(blocks.size(), before) << f.name;
    return dst.contents();
}

// ---- What results must be ----

// In extended precision, which holds sums of products of 16 bits exactly.
template <class F, class S = typename F::Source>
Sum sumAt(const F& f, const std::vector<S>& a, const std::vector<S>& b, int64_t place) {
    Sum sum;
    for (size_t n = 0; n < a.size(); ++n) {
        const auto i = static_cast<int64_t>(n);
        const int64_t other = f.kind == Kind::convolution ? place - i : place + i;
        if (other < 0 || other >= static_cast<int64_t>(b.size())) continue;
        S x = a[n];
        if constexpr (isComplex<S>) x.im = -x.im;
        sum.add(x, b[static_cast<size_t>(other)]);
    }
    return sum;
}

template <class S>
long double norm(const std::vector<S>& v) {
    long double sum = 0;
    for (const S& x : v)
        sum += part(x, 0) * part(x, 0) + part(x, 1) * part(x, 1);
    return std::sqrt(sum);
}

// All results of short vectors, of long ones those near both ends and some others.
template <class F, class S = typename F::Source, class D = typename F::Result>
void expectResults(const F& f, const std::vector<S>& a, const std::vector<S>& b, const Shape& shape,
                   const std::vector<D>& results, const std::string& where) {
    using P = PartOfType<D>;
    const auto count = static_cast<size_t>(shape.count);
    const size_t step = std::max<size_t>(1, a.size() * count / 1000000);
    const int places = sizeof(P) == 2 ? std::clamp(shape.scaleFactor, -99, 99) : 0;
    // What transforms may add, whatever the single result is.
    const long double transformed = std::min(a.size(), b.size()) >= 64 && count > 64 ? norm(a) * norm(b) : 0;
    for (size_t k = 0; k < count; k += k < 20 || k + 20 > count ? 1 : step) {
        Sum sum = sumAt(f, a, b, shape.first + static_cast<int64_t>(k));
        const long double divisor = f.kind == Kind::biased && k < a.size()     ? static_cast<long double>(a.size())
                                    : f.kind == Kind::unbiased && k < a.size() ? static_cast<long double>(a.size() - k)
                                                                               : 1;
        for (int i = 0; i < (isComplex<D> ? 2 : 1); ++i) {
            const long double value = part(results[k], i);
            if constexpr (std::is_integral_v<P>) {
                // Halves stay apart from what lies near them: divisors have 31 bits, sums 50.
                const long double exact = std::ldexp(sum.parts[i] / divisor, -places);
                const auto expected = std::clamp<long double>(std::nearbyint(exact), std::numeric_limits<P>::min(),
                                                              static_cast<long double>(std::numeric_limits<P>::max()));
                ASSERT_EQ(value, expected) << where << " result " << k;
            } else {
                const long double epsilon = std::numeric_limits<P>::epsilon();
                const long double error =
                    tolerance<D>(std::min(a.size(), b.size())) * sum.magnitudes + epsilon * transformed;
                ASSERT_LE(std::abs(value - sum.parts[i] / divisor), error / divisor) << where << " result " << k;
            }
        }
    }
}

template <class F>
Shape fitted(const F& f, Shape shape) {
    if (f.isAuto) shape.first = 0;
    if (f.isAuto) shape.length2 = shape.length1;
    if (f.isWhole) shape.first = 0;
    if (f.isWhole) shape.count = shape.length1 + shape.length2 - 1;
    return shape;
}

// On all levels, the results of a shape with random operands; scale factors that keep most results in range.
template <class F>
void expectSums(const F& f, Shape shape, Random& random) {
    using S = typename F::Source;
    shape = fitted(f, shape);
    const auto a = randomSource<S>(shape.length1, random);
    const auto b = f.isAuto ? a : randomSource<S>(shape.length2, random);
    if (sizeof(typename F::Result) == 2) {
        const int shorter = std::min(shape.length1, shape.length2);
        shape.scaleFactor = f.kind == Kind::biased || f.kind == Kind::unbiased
                                ? static_cast<int>(random.below(30)) - 3
                                : 14 + static_cast<int>(std::log2(shorter)) - static_cast<int>(random.below(4));
    }
    std::vector<typename F::Result> fused; // the results of levels with fused operations
    for (const Level level : levels()) {
        useLevel(level);
        std::string where = std::string(f.name) + ' ' + std::to_string(shape.length1) + ' ' +
                            std::to_string(shape.length2) + ' ' + std::to_string(shape.count) + " from " +
                            std::to_string(shape.first) + ' ' + levelName(level);
        const auto results = resultsOf(f, a, b, shape);
        if (fused.empty()) expectResults(f, a, b, shape, results, where);
        EXPECT_TRUE(fused.empty() || sameBits(fused, results)) << where;
        if (testing::Test::HasFatalFailure()) return;
        if (level != Level::v2) fused = results;
    }
}

TEST(Correlation, ShortVectors) {
    forEachFunction([](const auto& f) {
        Random random(f.name);
        for (const int length1 : {1, 2, 3, 5, 8, 16, 31, 33, 70}) {
            for (const int length2 : {1, 2, 4, 15, 16, 40, 71}) {
                const int places = length1 + length2;
                for (const int count : {1, 3, 17, places + 8}) {
                    const int first = static_cast<int>(random.below(static_cast<size_t>(2 * places))) - places;
                    expectSums(f, {length1, length2, count, count > places ? -4 - length1 : first}, random);
                    if (testing::Test::HasFatalFailure() || f.isWhole) break;
                }
            }
        }
    });
}

// Around the lengths that transforms, other sections and other blocks begin at.
TEST(Correlation, LongVectors) {
    const Shape shapes[] = {
        {700, 700, 151, 0},         {700, 700, 152, -30},        {2000, 1500, 367, 0},
        {2000, 1500, 368, 900},     {1000, 1000, 855, 0},        {1000, 900, 856, -100},
        {860, 2, 900, 0},           {600, 63, 400, -7},          {448, 65, 700, -600},
        {449, 64, 100, 3},          {64, 5000, 5400, -63},       {5000, 64, 5070, -4999},
        {200, 30000, 20000, 8},     {30000, 200, 25000, -29000}, {9000, 9000, 9000, 0},
        {9000, 9000, 900, 0},       {20000, 70000, 600, 100},    {70000, 20000, 1200, -30000},
        {70000, 80000, 2000, -999}, {4097, 4096, 9000, -4500},   {12000, 12000, 40, 11980},
    };
    forEachFunction([&](const auto& f) {
        Random random(f.name);
        for (const Shape& shape : shapes) {
            expectSums(f, shape, random);
            if (testing::Test::HasFatalFailure()) return;
        }
    });
}

TEST(Correlation, LagsBeyondBothEnds) {
    forEachFunction([](const auto& f) {
        if (f.isAuto || f.isWhole) return;
        Random random(f.name);
        for (const int first : {INT_MIN, -1000, 1000, INT_MAX}) {
            expectSums(f, {20, 30, 50, first}, random);
        }
        expectSums(f, {20, 30, 2000, -1000}, random);
    });
}

// The lowest number throughout gives the largest sums, for which transforms err most; far scale factors, and ties.
TEST(Correlation, IntegersAreExact) {
    forEachFunction([](const auto& f) {
        using S = typename std::decay_t<decltype(f)>::Source;
        if constexpr (std::is_same_v<S, Zvp16s>) {
            for (const Shape& s : {Shape{65536, 65537, 900, 0}, Shape{65536, 65537, 65000, 0}, Shape{3, 1, 2, 0}}) {
                Shape shape = fitted(f, s);
                const std::vector<S> a(static_cast<size_t>(shape.length1), SHRT_MIN);
                const std::vector<S> b(static_cast<size_t>(shape.length2), SHRT_MIN);
                for (const int scaleFactor : {INT_MIN, -70, -64, -1, 0, 14, 15, 31, 32, 63, 64, 65, INT_MAX}) {
                    if (shape.length1 > 3 && (scaleFactor < 14 || scaleFactor > 32)) continue;
                    shape.scaleFactor = scaleFactor;
                    expectResults(f, a, b, shape, resultsOf(f, a, b, shape), f.name + std::to_string(scaleFactor));
                }
            }
            for (const int scaleFactor : {-2, 0, 1, 2, 3}) {
                const Shape shape = fitted(f, {8, 8, 8, 0, scaleFactor});
                const std::vector<S> a = {1, -1, 3, 1, 2, -3, 1, 1};
                expectResults(f, a, a, shape, resultsOf(f, a, a, shape), f.name + std::to_string(scaleFactor));
            }
        }
    });
}

TEST(Correlation, ThreadsAndAddressesLeaveResultsAsTheyAre) {
    forEachFunction([](const auto& f) {
        using S = typename std::decay_t<decltype(f)>::Source;
        if (!f.isWhole) return;
        Random random(f.name);
        const Shape shape = fitted(f, {200, 50000, 0, 0, 17});
        const auto a = randomSource<S>(shape.length1, random);
        const auto b = randomSource<S>(shape.length2, random);
        zvpSetNumThreads(1);
        const auto alone = resultsOf(f, a, b, shape);
        for (const bool atEnd : {true, false}) {
            zvpSetNumThreads(0);
            const auto together = resultsOf(f, a, b, shape, atEnd);
            EXPECT_EQ(std::memcmp(alone.data(), together.data(), alone.size() * sizeof(alone[0])), 0) << f.name;
        }
    });
}

TEST(Correlation, RefusedMemoryLeavesNothingBehind) {
    forEachFunction([](const auto& f) {
        using F = std::decay_t<decltype(f)>;
        Random random(f.name);
        for (const Shape& s :
             {Shape{12000, 12000, 12000, 0}, Shape{1500, 60000, 50000, 0}, Shape{70000, 70000, 900, 20000}}) {
            const Shape shape = fitted(f, s);
            const auto a = randomSource<typename F::Source>(shape.length1, random);
            const auto b = randomSource<typename F::Source>(shape.length2, random);
            std::vector<typename F::Result> dst(static_cast<size_t>(shape.count));
            const size_t inUse = blocks.size();
            int allowed = 0;
            ZvpStatus status = zvpStsNoMemory;
            for (; status == zvpStsNoMemory; ++allowed) {
                allocationsLeft = allowed;
                status = f.call(a.data(), b.data(), dst.data(), shape);
                allocationsLeft = -1;
                EXPECT_EQ(blocks.size(), inUse) << f.name;
            }
            EXPECT_EQ(status, zvpStsOk) << f.name;
            EXPECT_GT(allowed, 1) << f.name << ' ' << shape.length1;
        }
    });
}

TEST(Correlation, ArgumentsAreCheckedInOrder) {
    forEachFunction([](const auto& f) {
        using F = std::decay_t<decltype(f)>;
        const std::vector<typename F::Source> a(9);
        const std::vector<typename F::Result> untouched(20);
        auto dst = untouched;
        const auto status = [&](const auto* x, const auto* y, auto* z, const Shape& s) { return f.call(x, y, z, s); };
        const Shape good = {9, 9, 20, 0};
        EXPECT_EQ(status(static_cast<decltype(a.data())>(nullptr), a.data(), dst.data(), {0, 0, 0, 0}), zvpStsNullPtr);
        EXPECT_EQ(status(a.data(), a.data(), static_cast<decltype(dst.data())>(nullptr), {0, 0, 0, 0}), zvpStsNullPtr);
        EXPECT_EQ(status(a.data(), a.data(), dst.data(), {0, 9, 20, 0}), zvpStsBadSize) << f.name;
        if (!f.isAuto) {
            EXPECT_EQ(status(a.data(), static_cast<decltype(a.data())>(nullptr), dst.data(), good), zvpStsNullPtr);
            EXPECT_EQ(status(a.data(), a.data(), dst.data(), {9, -1, 20, 0}), zvpStsBadSize) << f.name;
        }
        if (!f.isWhole) {
            EXPECT_EQ(status(a.data(), a.data(), dst.data(), {9, 9, INT_MIN, 0}), zvpStsBadSize) << f.name;
        }
        EXPECT_EQ(std::memcmp(dst.data(), untouched.data(), dst.size() * sizeof(dst[0])), 0);
    });
}

// ---- Cyclic convolution ----

template <int n, class A, class B, class Call>
void expectCyclic(Call call) {
    Random random("cyclic");
    const auto a = randomSource<A>(n, random);
    const auto b = randomSource<B>(n, random);
    for (const int scaleFactor : {16, 0, -3}) {
        B dst[n];
        ASSERT_EQ(call(a.data(), b.data(), dst, scaleFactor), zvpStsOk);
        for (int k = 0; k < n; ++k) {
            for (int i = 0; i < (isComplex<B> ? 2 : 1); ++i) {
                long double sum = 0;
                for (int j = 0; j < n; ++j)
                    sum += static_cast<long double>(a[static_cast<size_t>(j)]) *
                           part(b[static_cast<size_t>((k - j + n) % n)], i);
                if constexpr (std::is_integral_v<B>) {
                    const long double rounded = std::nearbyint(std::ldexp(sum, -scaleFactor));
                    EXPECT_EQ(dst[k], std::clamp<long double>(rounded, SHRT_MIN, SHRT_MAX));
                } else {
                    EXPECT_LE(std::abs(part(dst[k], i) - sum), 1e-6);
                }
            }
        }
    }
    B dst[n];
    EXPECT_EQ(call(nullptr, b.data(), dst, 0), zvpStsNullPtr);
    EXPECT_EQ(call(a.data(), nullptr, dst, 0), zvpStsNullPtr);
    EXPECT_EQ(call(a.data(), b.data(), nullptr, 0), zvpStsNullPtr);
}

TEST(Correlation, CyclicConvolutions) {
    expectCyclic<4, Zvp32f, Zvp32fc>(
        [](const Zvp32f* a, const Zvp32fc* b, Zvp32fc* dst, int) { return zvpsConvCyclic4x4_32f32fc(a, b, dst); });
    expectCyclic<8, Zvp32f, Zvp32f>(
        [](const Zvp32f* a, const Zvp32f* b, Zvp32f* dst, int) { return zvpsConvCyclic8x8_32f(a, b, dst); });
    expectCyclic<8, Zvp16s, Zvp16s>(zvpsConvCyclic8x8_16s_Sfs);
}

} // namespace
} // namespace zvps::test
