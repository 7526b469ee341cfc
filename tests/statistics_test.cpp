// The values of the reductions, computed in the most obvious way.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace zvps::test {
namespace {

__extension__ using Wide = __int128;
using Real = long double; // holds every 64-bit integer

template <class N>
struct Complex {
    N re, im;
};

// ---- Operands as numbers ----

template <class N>
std::vector<Complex<N>> numbers(const ElementType& type, const unsigned char* elements, size_t count) {
    std::vector<Complex<N>> result(count, {0, 0});
    withPartType(type, [&](auto part) {
        for (size_t i = 0; i < count; ++i) {
            const unsigned char* const element = elements + i * type.bytes();
            std::memcpy(&part, element, sizeof(part));
            result[i].re = static_cast<N>(part);
            if (type.parts == 1) continue;
            std::memcpy(&part, element + sizeof(part), sizeof(part));
            result[i].im = static_cast<N>(part);
        }
    });
    return result;
}

template <class T>
T constant(const Function& f, const Operands& operands, std::string_view name) {
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        if (f.arguments[i].name == name) return operands.values[i].get<T>();
    }
    return 0;
}

// ---- Scaling ----

Wide saturated(const ElementType& type, Wide value) {
    return withPartType(type, [&](auto part) -> Wide {
        using Limits = std::numeric_limits<decltype(part)>;
        if (type.isFloat) return value;
        return std::min(std::max(value, static_cast<Wide>(Limits::min())), static_cast<Wide>(Limits::max()));
    });
}

// |value| < 2^64
Wide scaled(Wide value, int scaleFactor) {
    if (scaleFactor > 100) return 0;
    if (scaleFactor <= 0) return value * (Wide{1} << std::min(-std::max(scaleFactor, -63), 63));
    const Wide divisor = Wide{1} << scaleFactor;
    Wide quotient = value / divisor;
    Wide rest = value % divisor;
    if (rest < 0) {
        rest += divisor;
        --quotient;
    }
    if (2 * rest > divisor || (2 * rest == divisor && quotient % 2 != 0)) ++quotient;
    return quotient;
}

Wide roundedMean(Wide sum, Wide n) {
    const Wide magnitude = sum < 0 ? -sum : sum;
    Wide mean = magnitude / n;
    const Wide rest = magnitude % n;
    if (2 * rest > n || (2 * rest == n && mean % 2 != 0)) ++mean;
    return sum < 0 ? -mean : mean;
}

Wide scaledMean(Wide sum, Wide n, int scaleFactor) {
    if (scaleFactor < 0 && scaleFactor >= -31 && sum >= INT_MIN && sum <= INT_MAX) {
        return roundedMean(sum * (Wide{1} << -scaleFactor), n);
    }
    return scaled(roundedMean(sum, n), scaleFactor);
}

// ---- Expected results ----

// What a result may differ from; 0 for the very value.
struct Expected {
    Complex<Real> value;
    Real slack;
};

struct Call {
    const Function& f;
    const Operands& operands;
    std::string base;
    const ElementType& source;
    const ElementType& result;
    size_t n;
    int scaleFactor;

    template <class N>
    std::vector<Complex<N>> vector(size_t argument) const {
        return numbers<N>(*f.arguments[argument].type, operands.vectors[argument].data(), n);
    }
    bool hasBase(std::string_view begin) const { return base.compare(0, begin.size(), begin) == 0; }
    bool isScaled() const { return f.hasRole(Role::scaleFactor); }
};

Expected exact(const Call& call, Wide re, Wide im = 0) {
    return {{static_cast<Real>(saturated(call.result, re)), static_cast<Real>(saturated(call.result, im))},
            call.result.isFloat ? std::fabs(static_cast<Real>(re)) * FLT_EPSILON : 0};
}

// A sum of `terms` floating-point terms of that total magnitude.
Expected nearly(const Call& call, Real re, Real im, Real magnitudes, bool isSingle) {
    const Real last = call.result.partBytes == 4 ? FLT_EPSILON : DBL_EPSILON;
    const Real step = isSingle ? FLT_EPSILON : DBL_EPSILON;
    return {{re, im}, last * std::hypot(re, im) + step * magnitudes * (static_cast<Real>(call.n) / 8 + 10)};
}

// The value times 2^-scaleFactor in double, then an integer.
Expected roundedDouble(const Call& call, Real value) {
    const Real factor = call.scaleFactor >= 1023 ? 0 : std::ldexp(1.0L, -std::max(call.scaleFactor, -1100));
    const Real scaledValue = value == 0 ? 0 : value * factor;
    const Real low = static_cast<Real>(saturated(call.result, INT_MIN)),
               high = static_cast<Real>(saturated(call.result, INT_MAX));
    const Real limited = std::fmin(std::fmax(scaledValue, low), high);
    return {{limited, 0}, limited == low || limited == high ? 0 : 0.5L + 1e-12L * std::fabs(limited)};
}

std::vector<Expected> expectedDeviation(const Call& call) {
    const Real n = static_cast<Real>(call.n);
    Expected mean, deviation;
    if (call.source.isFloat) {
        Real sum = 0, squares = 0, magnitudes = 0;
        for (const auto& x : call.vector<Real>(0)) {
            sum += x.re;
            squares += x.re * x.re;
            magnitudes += std::fabs(x.re);
        }
        const Real variance = std::fmax(0.0L, (n * squares - sum * sum) / (n * (n - 1)));
        const Real error = 4 * (n + 10) * DBL_EPSILON * squares / (n - 1);
        mean = nearly(call, sum / n, 0, magnitudes / n, false);
        deviation = nearly(call, std::sqrt(variance), 0, 0, false);
        deviation.slack += std::fmin(std::sqrt(error), error / std::sqrt(variance));
    } else {
        Wide sum = 0, squares = 0;
        for (const auto& x : call.vector<Wide>(0)) {
            sum += x.re;
            squares += x.re * x.re;
        }
        const Wide difference = static_cast<Wide>(call.n) * squares - sum * sum;
        mean = roundedDouble(call, static_cast<Real>(sum) / n);
        deviation = roundedDouble(call, std::sqrt(static_cast<Real>(difference) / (n * (n - 1))));
    }
    if (call.base == "StdDev") return {deviation};
    return {mean, deviation};
}

std::vector<Expected> expectedSum(const Call& call) {
    const bool isMean = call.base == "Mean";
    if (!call.source.isFloat) {
        Complex<Wide> sum = {0, 0};
        for (const auto& x : call.vector<Wide>(0)) {
            sum.re += x.re;
            sum.im += x.im;
        }
        const Wide n = static_cast<Wide>(call.n);
        if (isMean)
            return {exact(call, scaledMean(sum.re, n, call.scaleFactor), scaledMean(sum.im, n, call.scaleFactor))};
        return {exact(call, scaled(sum.re, call.scaleFactor), scaled(sum.im, call.scaleFactor))};
    }
    const Real n = isMean ? static_cast<Real>(call.n) : 1;
    Complex<Real> sum = {0, 0};
    Real magnitudes = 0;
    for (const auto& x : call.vector<Real>(0)) {
        sum.re += x.re;
        sum.im += x.im;
        magnitudes += std::hypot(x.re, x.im);
    }
    return {nearly(call, sum.re / n, sum.im / n, magnitudes / n, false)};
}

std::vector<Expected> expectedIntegerNorm(const Call& call, bool isDifference) {
    const auto x = call.vector<Wide>(0);
    const auto y = isDifference ? call.vector<Wide>(1) : std::vector<Complex<Wide>>(call.n, {0, 0});
    Wide peak = 0, sum = 0, squares = 0;
    for (size_t i = 0; i < call.n; ++i) {
        const Wide d = x[i].re < y[i].re ? y[i].re - x[i].re : x[i].re - y[i].re;
        peak = std::max(peak, d);
        sum += d;
        squares += d * d;
    }
    const std::string kind = call.base.substr(call.base.find('_') + 1);
    const int shift = std::min(-std::max(call.scaleFactor, -31), 31);
    if (kind == "Inf")
        return {exact(call, call.scaleFactor > 31  ? 0
                            : call.scaleFactor > 0 ? peak >> call.scaleFactor
                                                   : peak << shift)};
    if (kind == "L1") return {exact(call, scaled(sum, call.scaleFactor))};
    if (kind == "L2Sqr") return {exact(call, scaled(squares, call.scaleFactor))};
    const Real root = std::sqrt(static_cast<Real>(squares));
    if (!call.isScaled()) return {{{root, 0}, FLT_EPSILON * root}};
    const Real whole = std::floor(std::fmin(std::ldexp(root, -(call.scaleFactor % 32)), 2147483647.0L));
    // Where the root of the sum in double is the next integer already.
    const Real double_ = std::floor(
        std::fmin(std::ldexp(std::sqrt(static_cast<double>(squares)), -(call.scaleFactor % 32)), 2147483647.0));
    return {{{double_, 0}, std::fabs(double_ - whole) <= 1 ? 0.0L : -1}};
}

std::vector<Expected> expectedNorm(const Call& call) {
    const bool isDifference = call.hasBase("NormDiff");
    if (!call.source.isFloat) return expectedIntegerNorm(call, isDifference);
    const auto x = call.vector<Real>(0);
    const auto y = isDifference ? call.vector<Real>(1) : std::vector<Complex<Real>>(call.n, {0, 0});
    const bool isSingle = call.source.partBytes == 4 && call.result.partBytes == 4;
    const auto subtracted = [&](Real a, Real b) {
        return isSingle ? static_cast<float>(a - b) : call.source.partBytes == 4 ? a - b : static_cast<double>(a - b);
    };
    Real peak = 0, sum = 0, squares = 0;
    for (size_t i = 0; i < call.n; ++i) {
        const Real d = std::hypot(subtracted(x[i].re, y[i].re), subtracted(x[i].im, y[i].im));
        peak = std::fmax(peak, d);
        sum += d;
        squares += d * d;
    }
    const std::string kind = call.base.substr(call.base.find('_') + 1);
    if (kind == "Inf") return {nearly(call, peak, 0, 0, false)};
    if (kind == "L1") return {nearly(call, sum, 0, sum, false)};
    return {nearly(call, std::sqrt(squares), 0, std::sqrt(squares), isSingle)};
}

template <class N>
Complex<N> product(Complex<N> a, Complex<N> b) {
    return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
}

std::vector<Expected> expectedDotProduct(const Call& call) {
    if (call.source.isFloat) {
        const auto x = call.vector<Real>(0), y = call.vector<Real>(1);
        Complex<Real> sum = {0, 0};
        Real magnitudes = 0;
        for (size_t i = 0; i < call.n; ++i) {
            const auto p = product(x[i], y[i]);
            sum.re += p.re;
            sum.im += p.im;
            magnitudes += std::hypot(x[i].re, x[i].im) * std::hypot(y[i].re, y[i].im);
        }
        return {nearly(call, sum.re, sum.im, magnitudes, call.result.partBytes == 4)};
    }
    const auto x = call.vector<Wide>(0), y = call.vector<Wide>(1);
    Complex<Wide> sum = {0, 0};
    for (size_t i = 0; i < call.n; ++i) {
        const auto p = product(x[i], y[i]);
        sum.re += p.re;
        sum.im += p.im;
    }
    const auto finished = [&](Wide value) {
        return scaled(static_cast<int64_t>(value), std::min(call.scaleFactor, 31));
    };
    if (!call.isScaled() && call.result.isFloat) {
        return {{{static_cast<Real>(sum.re), static_cast<Real>(sum.im)},
                 FLT_EPSILON * std::hypot(static_cast<Real>(sum.re), static_cast<Real>(sum.im))}};
    }
    return {exact(call, finished(sum.re), finished(sum.im))};
}

// By strict comparisons from the first element on.
std::vector<Expected> expectedExtremes(const Call& call) {
    auto x = call.vector<Real>(0);
    if (call.base.find("Abs") != std::string::npos) {
        for (auto& value : x)
            value.re = static_cast<Real>(saturated(call.source, static_cast<Wide>(std::fabs(value.re))));
    }
    size_t min = 0, max = 0;
    for (size_t i = 1; i < call.n; ++i) {
        if (x[i].re < x[min].re) min = i;
        if (x[i].re > x[max].re) max = i;
    }
    const auto result = [&](size_t place) -> std::vector<Expected> {
        if (call.base.find("Indx") == std::string::npos) return {{x[place], 0}};
        return {{x[place], 0}, {{static_cast<Real>(place), 0}, 0}};
    };
    if (!call.hasBase("MinMax")) return result(call.hasBase("Min") ? min : max);
    auto both = result(min);
    for (const Expected& other : result(max))
        both.push_back(other);
    return both;
}

std::vector<Expected> expectedResults(const Call& call) {
    if (call.base == "Sum" || call.base == "Mean") return expectedSum(call);
    if (call.base == "StdDev" || call.base == "MeanStdDev") return expectedDeviation(call);
    if (call.hasBase("Norm")) return expectedNorm(call);
    if (call.hasBase("DotProd")) return expectedDotProduct(call);
    if (call.hasBase("CountInRange")) {
        size_t count = 0;
        for (const auto& x : call.vector<Wide>(0))
            count += x.re > constant<int>(call.f, call.operands, "lowerBound") &&
                     x.re < constant<int>(call.f, call.operands, "upperBound");
        return {{{static_cast<Real>(count), 0}, 0}};
    }
    return expectedExtremes(call);
}

// ---- Sweeps ----

class Statistics : public ::testing::Test {
  protected:
    ~Statistics() override { useLevel(levels().back()); }

    // By all levels. False after a failure.
    bool isRight(const Function& f, const Operands& operands, int scaleFactor) {
        const Call call{f,
                        operands,
                        f.base(),
                        *f.arguments[0].type,
                        *f.arguments[f.indexOf(Role::result)].type,
                        operands.count,
                        scaleFactor};
        const auto expected = expectedResults(call);
        for (const Level level : levels()) {
            useLevel(level);
            const ZvpStatus status = stage.call(f, operands, 0, operands.count, {});
            std::string text = stage.damage();
            if (status != zvpStsOk) text += "status " + std::to_string(status);
            for (size_t i = 0, k = 0; i < f.arguments.size() && text.empty(); ++i) {
                if (f.arguments[i].role != Role::result) continue;
                const Expected& wanted = expected.at(k++);
                const ElementType& type = *f.arguments[i].type;
                const auto actual = numbers<Real>(type, stage.vector(i), 1)[0];
                if (isNear(wanted.value.re, actual.re, wanted.slack) &&
                    isNear(wanted.value.im, actual.im, wanted.slack))
                    continue;
                std::ostringstream out;
                out.precision(20);
                out << f.arguments[i].name << ": expected " << wanted.value.re << ", " << wanted.value.im << " within "
                    << wanted.slack << ", got " << actual.re << ", " << actual.im;
                text = out.str();
            }
            if (text.empty()) continue;
            ADD_FAILURE() << f.name << " by " << levelName(level) << ", len " << operands.count << ", scale factor "
                          << scaleFactor << ": " << text;
            return false;
        }
        return true;
    }

    Stage stage{70001 * 16};

  private:
    static bool isNear(Real wanted, Real actual, Real slack) {
        if (slack != 0) return std::fabs(actual - wanted) <= slack;
        return (wanted == actual && std::signbit(wanted) == std::signbit(actual)) ||
               (wanted != wanted && actual != actual);
    }
};

// Numbers whose sums stay finite; of extremes all kinds of numbers.
Operands suitableOperands(const Function& f, size_t count, Random& random) {
    Operands operands = randomOperands(f, count, random);
    if (f.base().compare(0, 3, "Min") == 0 || f.base().compare(0, 3, "Max") == 0) return operands;
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        if (f.arguments[i].role != Role::source || !f.arguments[i].type->isFloat) continue;
        withPartType(*f.arguments[i].type, [&](auto part) {
            for (size_t k = 0; k < operands.vectors[i].size(); k += sizeof(part)) {
                part = static_cast<decltype(part)>(std::ldexp(static_cast<double>(static_cast<int64_t>(random())),
                                                              static_cast<int>(random.below(20)) - 70));
                std::memcpy(&operands.vectors[i][k], &part, sizeof(part));
            }
        });
    }
    return operands;
}

TEST_F(Statistics, Values) {
    size_t tested = 0;
    for (const Function& f : functions()) {
        if (f.family != "statistics" || !f.isReduction() || f.base() == "SumLn") continue;
        ++tested;
        Random random(f.name);
        std::vector<size_t> lengths = {255, 256, 257, 1000, 2049, 32767, 32768, 32769, 70001};
        for (size_t length = static_cast<size_t>(f.leastLength()); length <= 140; ++length)
            lengths.push_back(length);
        for (const size_t length : lengths) {
            Operands operands = suitableOperands(f, length, random);
            // The same limit everywhere, which fills every intermediate sum.
            if (random.below(8) == 0 && !operands.vectors[0].empty()) {
                for (size_t i = 0; i < f.arguments.size(); ++i) {
                    if (f.arguments[i].role != Role::source || f.arguments[i].type->isFloat) continue;
                    withPartType(*f.arguments[i].type, [&](auto part) {
                        using Limits = std::numeric_limits<decltype(part)>;
                        part = random.below(2) == 0 ? Limits::min() : Limits::max();
                        for (size_t k = 0; k < operands.vectors[i].size(); k += sizeof(part))
                            std::memcpy(&operands.vectors[i][k], &part, sizeof(part));
                    });
                }
            }
            for (const int scaleFactor : {0,  1,    2,       7,  13, 20,  31,  32,  35,  62,    64,
                                          65, 1023, INT_MAX, -1, -3, -17, -31, -32, -63, -1024, INT_MIN}) {
                if (length > 2000 && scaleFactor != 0 && random.below(10) != 0) continue;
                operands.setScaleFactor(f, scaleFactor);
                if (!isRight(f, operands, scaleFactor)) return;
                if (!f.hasRole(Role::scaleFactor)) break;
            }
        }
    }
    EXPECT_EQ(tested, 128u);
}

// Few values, so that extremes occur often; the first counts. Beyond several blocks of the search.
TEST_F(Statistics, FirstOfEqualExtremes) {
    for (const Function& f : functions()) {
        if (f.family != "statistics" || f.base().find("Indx") == std::string::npos) continue;
        Random random(f.name);
        for (int round = 0; round < 150; ++round) {
            Operands operands = randomOperands(f, 1 + random.below(20000), random);
            const size_t rare = 1 + random.below(operands.count);
            withPartType(*f.arguments[0].type, [&](auto part) {
                for (size_t k = 0; k < operands.count; ++k) {
                    const size_t value = random.below(rare) == 0 ? random.below(5) : 2;
                    part = static_cast<decltype(part)>(value);
                    if (std::is_signed_v<decltype(part)> && random.below(2) == 0)
                        part = static_cast<decltype(part)>(-part);
                    std::memcpy(&operands.vectors[0][k * sizeof(part)], &part, sizeof(part));
                }
            });
            if (!isRight(f, operands, 0)) return;
        }
    }
}

// Without an index, results and their bits are the same as with one.
TEST_F(Statistics, NullIndex) {
    const Zvp32f zeros[40] = {0.0F, -0.0F};
    const Zvp16s integers[3] = {-7, -32768, 5};
    for (const Level level : levels()) {
        useLevel(level);
        Zvp32f least = 1;
        Zvp16s largest = 0;
        EXPECT_EQ(zvpsMinIndx_32f(zeros, 40, &least, nullptr), zvpStsOk);
        EXPECT_FALSE(std::signbit(least));
        EXPECT_EQ(zvpsMinIndx_32f(zeros + 1, 39, &least, nullptr), zvpStsOk);
        EXPECT_TRUE(std::signbit(least));
        EXPECT_EQ(zvpsMaxAbsIndx_16s(integers, 3, &largest, nullptr), zvpStsOk);
        EXPECT_EQ(largest, 32767);
    }
}

// Sums that only exact 64-bit arithmetic gets right.
TEST_F(Statistics, Millions) {
    constexpr int kLength = 5000001;
    const std::vector<Zvp16s> low(kLength, -32768);
    const std::vector<Zvp16s> high(kLength, 32767);
    const std::vector<Zvp32s> wide(kLength, INT_MIN);
    for (const Level level : levels()) {
        useLevel(level);
        Zvp64s result = 0;
        Zvp32s narrow = 0;
        Zvp64sc pair = {0, 0};
        EXPECT_EQ(zvpsDotProd_16s64s(low.data(), low.data(), kLength, &result), zvpStsOk);
        EXPECT_EQ(result, int64_t{kLength} << 30);
        EXPECT_EQ(zvpsNormDiff_L2Sqr_16s64s_Sfs(low.data(), high.data(), kLength, &result, 0), zvpStsOk);
        EXPECT_EQ(result, int64_t{kLength} * 65535 * 65535);
        EXPECT_EQ(zvpsNormDiff_L1_16s64s_Sfs(high.data(), low.data(), kLength, &result, 0), zvpStsOk);
        EXPECT_EQ(result, int64_t{kLength} * 65535);
        EXPECT_EQ(zvpsSum_16s32s_Sfs(low.data(), kLength, &narrow, 10), zvpStsOk);
        EXPECT_EQ(narrow, -kLength * 32);
        EXPECT_EQ(zvpsMean_32s_Sfs(wide.data(), kLength, &narrow, 0), zvpStsOk);
        EXPECT_EQ(narrow, INT_MIN);
        EXPECT_EQ(zvpsDotProd_16sc64sc(reinterpret_cast<const Zvp16sc*>(low.data()),
                                       reinterpret_cast<const Zvp16sc*>(low.data()), kLength / 2, &pair),
                  zvpStsOk);
        EXPECT_EQ(pair.re, 0);
        EXPECT_EQ(pair.im, int64_t{kLength / 2} << 31);
    }
}

TEST_F(Statistics, Rounding) {
    const struct {
        std::vector<Zvp32s> x;
        int scaleFactor;
        Zvp32s mean;
    } means[] = {{{1, 2}, 0, 2},
                 {{-1, -2}, 0, -2},
                 {{2, 3}, 0, 2},
                 {{1, 2}, 1, 1},
                 {{1, 2, 2}, -1, 3},
                 {{5}, -32, INT_MAX},
                 {{0, -1}, -40, 0},
                 {{-1, -1}, -33, INT_MIN},
                 {{INT_MAX, INT_MAX, 1}, -1, INT_MAX},
                 {{INT_MAX, INT_MAX, INT_MIN, INT_MIN, -1}, -1, -1}};
    for (const auto& c : means) {
        Zvp32s mean = 77;
        EXPECT_EQ(zvpsMean_32s_Sfs(c.x.data(), static_cast<int>(c.x.size()), &mean, c.scaleFactor), zvpStsOk);
        EXPECT_EQ(mean, c.mean) << c.x[0] << " by " << c.scaleFactor;
    }
    const Zvp16s ones[2] = {1, 1};
    Zvp32s norm = 77;
    EXPECT_EQ(zvpsNorm_L2_16s32s_Sfs(ones, 2, &norm, 0), zvpStsOk);
    EXPECT_EQ(norm, 1);
    // A mean that lies between two integers, to even.
    const Zvp16s half[2] = {2, 3};
    Zvp32s mean = 77;
    EXPECT_EQ(zvpsMeanStdDev_16s32s_Sfs(half, 2, &mean, &norm, 0), zvpStsOk);
    EXPECT_EQ(mean, 2);
    EXPECT_EQ(norm, 1);
    const Zvp32f equal[3] = {0.1F, 0.1F, 0.1F};
    Zvp32f deviation = 77;
    EXPECT_EQ(zvpsStdDev_32f(equal, 2, &deviation), zvpStsOk);
    EXPECT_EQ(deviation, 0);
}

TEST_F(Statistics, ElementwiseExtremes) {
    size_t tested = 0;
    for (const Function& f : functions()) {
        if (!f.isUnchecked()) continue;
        ++tested;
        Random random(f.name);
        const Operands operands = randomOperands(f, 1000, random);
        const ElementType& type = *f.arguments[0].type;
        const auto x = numbers<Real>(type, operands.vectors[0].data(), operands.count);
        Bytes expected = operands.vectors[1];
        const auto y = numbers<Real>(type, expected.data(), operands.count);
        for (size_t i = 0; i < operands.count; ++i) {
            if (f.base() == "MinEvery" ? x[i].re < y[i].re : x[i].re > y[i].re) {
                std::memcpy(&expected[i * type.bytes()], &operands.vectors[0][i * type.bytes()], type.bytes());
            }
        }
        for (const Level level : levels()) {
            useLevel(level);
            EXPECT_EQ(stage.call(f, operands, 0, operands.count, {}), zvpStsOk);
            EXPECT_EQ(std::memcmp(expected.data(), stage.vector(1), expected.size()), 0)
                << f.name << " by " << levelName(level);
        }
    }
    EXPECT_EQ(tested, 11u);
}

// ---- Logarithms ----

template <class T, class R>
void expectSumLn(const char* name, ZvpStatus (*function)(const T*, int, R*)) {
    using Limits = std::numeric_limits<T>;
    Random random(name);
    for (int round = 0; round < 600; ++round) {
        std::vector<T> x(1 + random.below(round % 10 == 0 ? 5000 : 700));
        // Numbers of any magnitude, in a quarter of the rounds with subnormals among them, in another all near 1.
        for (T& element : x) {
            if constexpr (std::is_integral_v<T>) {
                element = static_cast<T>(1 + random.below(Limits::max()));
            } else {
                const T fraction = 1 + static_cast<T>(random.below(1 << 20)) * Limits::epsilon();
                const int exponents = Limits::max_exponent - Limits::min_exponent;
                element = std::ldexp(fraction, round % 4 == 0
                                                   ? 0
                                                   : static_cast<int>(random.below(static_cast<size_t>(exponents))) +
                                                         Limits::min_exponent);
                if (round % 4 == 1 && random.below(100) == 0)
                    element = Limits::denorm_min() * static_cast<T>(1 + random.below(1000));
            }
        }
        size_t end = x.size();
        ZvpStatus wantedStatus = zvpStsOk;
        Real wanted = 0;
        const size_t ending = random.below(7);
        if (ending > 0) {
            const T endings[] = {0,
                                 -1,
                                 Limits::min(),
                                 Limits::lowest(),
                                 std::is_integral_v<T> ? T{0} : static_cast<T>(HUGE_VAL),
                                 std::is_integral_v<T> ? T{0} : static_cast<T>(NAN),
                                 static_cast<T>(-0.0)};
            for (int i = 0; i < 3; ++i) {
                const T element = endings[random.below(std::size(endings))];
                if (element > 0 && std::isfinite(static_cast<double>(element))) continue;
                const size_t place = random.below(x.size());
                x[place] = element;
                end = std::min(end, place);
            }
        }
        for (size_t i = 0; i < end; ++i)
            wanted += std::log(static_cast<Real>(x[i]));
        Real slack = (static_cast<Real>(end) + 8) * DBL_EPSILON / 2 +
                     std::fabs(wanted) * (2 * DBL_EPSILON + (sizeof(R) == 4 ? FLT_EPSILON / 2 : 0));
        if (end < x.size()) {
            slack = 0;
            const double element = static_cast<double>(x[end]);
            wanted = element == 0 ? HUGE_VAL : element < 0 ? NAN : element;
            wantedStatus = element == 0 ? zvpStsLnZeroArg : element < 0 ? zvpStsLnNegArg : zvpStsOk;
        }
        R first = 0;
        for (const Level level : levels()) {
            useLevel(level);
            R sum = 77;
            ASSERT_EQ(function(x.data(), static_cast<int>(x.size()), &sum), wantedStatus)
                << name << " by " << levelName(level);
            const bool isSpecial =
                std::isnan(wanted) ? std::isnan(sum) && (wantedStatus == zvpStsOk || std::signbit(sum)) : sum == wanted;
            ASSERT_TRUE(isSpecial || std::fabs(sum - wanted) <= slack)
                << name << " by " << levelName(level) << ", len " << x.size() << ", end " << end << ": expected "
                << wanted << ", got " << sum;
            if (level == Level::v3) first = sum;
            if (level == Level::v4) {
                ASSERT_EQ(std::memcmp(&first, &sum, sizeof(R)), 0) << name;
            }
        }
    }
    useLevel(levels().back());
}

TEST_F(Statistics, Logarithms) {
    expectSumLn("16s32f", zvpsSumLn_16s32f);
    expectSumLn("32f", zvpsSumLn_32f);
    expectSumLn("32f64f", zvpsSumLn_32f64f);
    expectSumLn("64f", zvpsSumLn_64f);
    // The logarithm of a number itself, as near 1 as can be.
    const Zvp64f near[] = {1 - 0x1p-53, 1 + 0x1p-52, 1};
    for (const Zvp64f& x : near) {
        Zvp64f sum = 77;
        EXPECT_EQ(zvpsSumLn_64f(&x, 1, &sum), zvpStsOk);
        EXPECT_EQ(sum, std::log(x));
    }
}

} // namespace
} // namespace zvps::test
