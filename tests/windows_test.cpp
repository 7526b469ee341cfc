// The windows, against a scalar evaluation of their definitions: exactly where the library promises the very same
// operations, within its bounds elsewhere. The same bits at every address, in place and by every level.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>

namespace zvps::test {
namespace {

// ---- What a function computes ----

// A window function with everything that decides its values but the length.
struct Window {
    const Function& f;
    std::string base; // without a Q15
    bool isQ15;
    size_t source, output;
    const ElementType& type;
    double alpha = 0;
    int scaleFactor = 0;

    explicit Window(const Function& function)
        : f(function), base(f.base()), isQ15(base.find("Q15") != std::string::npos),
          source(std::min(f.indexOf(Role::source), f.indexOf(Role::inOut))),
          output(std::min(f.indexOf(Role::destination), f.indexOf(Role::inOut))), type(*f.arguments[output].type) {
        if (isQ15) base.resize(base.size() - 3);
    }

    int leastLength() const { return base == "WinKaiser" ? 1 : base == "WinBlackmanOpt" ? 4 : 3; }
    bool isDouble() const { return type.isFloat && type.partBytes == 8; }

    // Passes the parameter as near as its type comes.
    void setAlpha(Operands& operands, double value) {
        alpha = value;
        if (!f.hasRole(Role::constant)) return;
        Value& argument = operands.values[f.indexOf(Role::constant)];
        if (isQ15) {
            const int fixed = static_cast<int>(std::clamp(std::nearbyint(value * 32768), -2147483648.0, 2147483647.0));
            argument.set(fixed);
            alpha = static_cast<float>(fixed) * 0x1p-15F;
        } else if (f.arguments[f.indexOf(Role::constant)].type->partBytes == 8) {
            argument.set(value);
        } else {
            argument.set(static_cast<float>(value));
            alpha = static_cast<float>(value);
        }
    }
};

std::vector<Window> windows() {
    std::vector<Window> result;
    for (const Function& f : functions()) {
        if (f.family == "windows") result.emplace_back(f);
    }
    return result;
}

double besselI0(double x, bool forNorm) {
    const double c[] = {
        0.9999999985, forNorm ? 4.0000001935 : 4.000003096,      3.9999959541, 1.777809969, 0.4443189384, 0.0713758187,
        0.0075942968, forNorm ? 0.0008267816 : 0.000674193709375};
    const double d[] = {0.3989422809,
                        0.0124667783,
                        0.0017623668,
                        0.00026,
                        forNorm ? 0.0022585672 : 0.0022585681074049,
                        -0.0128314822,
                        forNorm ? 0.0495811118 : 0.04958113163828737,
                        -0.1209940805,
                        forNorm ? 0.1895476618 : 0.18954771930079328,
                        -0.1867783276,
                        0.1113315511,
                        -0.0366694767,
                        0.0051246015};
    double sum = 0;
    if (x < 4) {
        for (int i = 7; i >= 0; --i)
            sum = sum * (x / 4 * (x / 4)) + c[i];
        return sum;
    }
    for (int i = 12; i >= 0; --i)
        sum = sum * (4 / x) + d[i];
    return std::exp(x) / std::sqrt(x) * sum;
}

double beta(const Window& w, int n) {
    return std::abs(static_cast<double>(static_cast<float>(w.alpha) * static_cast<float>(n - 1))) * 0.5;
}

// w(0) to w(n - 1).
std::vector<double> windowValues(const Window& w, int n) {
    std::vector<double> values(static_cast<size_t>(n), 1.0);
    const auto set = [&](int k, double value) {
        values[static_cast<size_t>(k)] = values[static_cast<size_t>(n - 1 - k)] = value;
    };
    if (w.base == "WinKaiser") {
        const double factor = 1 / besselI0(beta(w, n), true);
        for (int k = 0; n > 1 && k <= n / 2; ++k) {
            set(k, besselI0(std::abs(w.alpha * std::sqrt(static_cast<double>(k) * (n - 1 - k))), false) * factor);
        }
        return values;
    }
    if (w.base == "WinBartlett") {
        for (int k = 0; k < n / 2; ++k)
            set(k, k * (2.0 / (n - 1)));
        return values;
    }
    const bool isHamming = w.base == "WinHamming";
    const double theta = w.isQ15 ? 2 * M_PI * (1.0 / (n - 1)) : 2 * M_PI / (n - 1);
    std::vector<double> h(static_cast<size_t>(n) + 2);
    h[0] = isHamming ? 0.46 : 0.5;
    h[1] = h[0] * std::cos(theta);
    h[2] = 2 * std::cos(theta) * h[1] - h[0];
    h[3] = 2 * std::cos(theta) * h[2] - h[1];
    for (size_t k = 2; k < h.size() - 2; ++k)
        h[k + 2] = 2 * std::cos(2 * theta) * h[k] - h[k - 2];
    double alpha = w.alpha;
    if (w.base == "WinBlackmanStd") alpha = -0.16;
    if (w.base == "WinBlackmanOpt") alpha = -std::pow(0.5 / std::cos(M_PI / (n - 1)), 2);
    if (!w.isDouble()) alpha = static_cast<float>(alpha);
    for (int k = 0; k < n / 2; ++k) {
        const double value = h[static_cast<size_t>(k)];
        if (w.base == "WinHann" || isHamming) {
            set(k, (isHamming ? 0.54 : 0.5) - value);
        } else {
            set(k, (0.5 + alpha) - value - 4 * alpha * (value * value));
        }
    }
    return values;
}

// By how many units in the last place of the type that it is applied in a window's value may differ.
int tolerance(const Window& w, int n) {
    if (w.base == "WinBartlett") return 0;
    if (w.base == "WinKaiser") return w.isDouble() ? 8 : 1;
    return w.isDouble() || n < 64 || n > 131072 ? 0 : 1;
}

template <class T, class W>
T product(T x, W w) {
    if constexpr (std::is_same_v<T, W>) {
        return x * w;
    } else {
        const float value = static_cast<float>(x) * w;
        if (std::isnan(value)) return 0;
        return static_cast<T>(std::nearbyint(std::clamp(value, -32768.0F, 32767.0F)));
    }
}

// The first element that is not the source's times its window value; empty if none.
template <class T>
std::string firstWrong(const Window& w, const std::vector<double>& values, const unsigned char* source,
                       const unsigned char* actual) {
    using W = std::conditional_t<std::is_same_v<T, double>, double, float>;
    const size_t n = values.size(), parts = w.type.parts;
    const bool hasZeroEnds = n == 3 && w.base != "WinHamming" && w.base != "WinKaiser";
    const int ulps = tolerance(w, static_cast<int>(n));
    for (size_t i = 0; i < n * parts; ++i) {
        const size_t k = i / parts;
        T x, result;
        std::memcpy(&x, source + i * sizeof(T), sizeof(T));
        std::memcpy(&result, actual + i * sizeof(T), sizeof(T));
        const W value = static_cast<W>(std::ldexp(values[k], -std::clamp(w.scaleFactor, -1000, 1000)));
        const T wanted = hasZeroEnds && k != 1 ? T{0} : product(x, value);
        if (result == wanted || (result != result && wanted != wanted)) continue;
        W low = value, high = value;
        const bool isCopied = n % 2 != 0 && k == n / 2 && w.base != "WinKaiser";
        for (int step = 0; step < ulps && !hasZeroEnds && !isCopied; ++step) {
            low = std::nextafter(low, -std::numeric_limits<W>::infinity());
            high = std::nextafter(high, std::numeric_limits<W>::infinity());
        }
        const T one = product(x, low), other = product(x, high);
        if (std::min(one, other) <= result && result <= std::max(one, other)) continue;
        std::ostringstream text;
        text.precision(17);
        text << "part " << i << ": " << +result << " for " << +wanted << " = " << +x << " * " << value;
        return text.str();
    }
    return {};
}

// ---- Tests ----

// By every level at some address; the lowest level against the definition, the others against it.
void check(Stage& stage, const Window& w, Operands& operands, int n, How how) {
    const Function& f = w.f;
    if (how.sameAs[w.output] >= 0) operands.vectors[w.output] = operands.vectors[w.source];
    const std::vector<double> values = windowValues(w, n);
    std::vector<Bytes> outputs(f.arguments.size());
    for (const Level level : levels()) {
        useLevel(level);
        ASSERT_EQ(stage.call(f, operands, 0, static_cast<size_t>(n), how), zvpStsOk) << f.name << ", len " << n;
        const unsigned char* const result = stage.vector(w.output);
        std::string text;
        if (level == levels().front()) {
            outputs[w.output].assign(result, result + static_cast<size_t>(n) * w.type.bytes());
            text = withPartType(w.type, [&](auto part) -> std::string {
                using T = decltype(part);
                if constexpr (std::is_floating_point_v<T> || std::is_same_v<T, int16_t>) {
                    return firstWrong<T>(w, values, operands.vectors[w.source].data(), result);
                } else {
                    return "no type of a window";
                }
            });
        }
        if (text.empty()) text = differences(f, stage, outputs, 0, static_cast<size_t>(n));
        ASSERT_EQ(text, "") << f.name << " by " << levelName(level) << ", len " << n << ", alpha " << w.alpha
                            << ", scaleFactor " << w.scaleFactor << ", " << how.text();
    }
}

// With a parameter of its own for each call, out of all that matter for the window.
void checkLengths(const std::vector<int>& lengths, int longest) {
    Stage stage(static_cast<size_t>(longest) * 16 + 256);
    for (Window& w : windows()) {
        Random random(w.f.name);
        Operands operands = randomOperands(w.f, static_cast<size_t>(longest), random);
        for (const int n : lengths) {
            if (n < w.leastLength()) continue;
            if (w.base == "WinKaiser") {
                constexpr double kBetas[] = {0, 1, 3.99, 4.01, 8.6, -12, 60, 300};
                w.setAlpha(operands, kBetas[random.below(std::size(kBetas))] * 2 / std::max(n - 1, 1));
            } else {
                // Also those whose windows cross zero, or nearly cancel.
                constexpr double kAlphas[] = {-0.16, -0.25, -0.2500001, -0.26, -1.5, 0, 0.7, 1, 1000};
                w.setAlpha(operands, kAlphas[random.below(std::size(kAlphas))]);
            }
            if (w.f.hasRole(Role::scaleFactor)) {
                constexpr int kScaleFactors[] = {0, 1, 3, -2, 15, -15, 140, -140, INT_MAX, INT_MIN};
                w.scaleFactor = kScaleFactors[random.below(std::size(kScaleFactors))];
                operands.setScaleFactor(w.f, w.scaleFactor);
            }
            How how;
            how.atEnd = random.below(2) == 0;
            for (size_t& offset : how.offset)
                offset = random.below(64) / w.type.partBytes * w.type.partBytes;
            if (w.source != w.output && random.below(3) == 0) how.sameAs[w.output] = static_cast<int>(w.source);
            check(stage, w, operands, n, how);
            if (::testing::Test::HasFatalFailure()) break;
        }
    }
    useLevel(levels().back());
}

TEST(Windows, Values) {
    std::vector<int> lengths = {255, 256, 257, 511, 777, 1023, 1024, 1025, 2047, 2049, 2300, 4000, 4096, 4097};
    for (int n = 1; n <= 260; ++n)
        lengths.push_back(n);
    checkLengths(lengths, 4100);
}

// The errors of the recurrence grow with the length: longer vectors, to where the chains of single precision end.
TEST(Windows, LongVectors) {
    checkLengths({16384, 65535, 65536, 131072, 131073, 200001}, 200001);
}

TEST(Windows, Errors) {
    constexpr int kCount = 40;
    Stage stage(kCount * 16);
    for (Window& w : windows()) {
        Random random(w.f.name);
        Operands operands = randomOperands(w.f, kCount, random);
        const auto expect = [&](ZvpStatus expected, const How& how) {
            const ZvpStatus status = stage.call(w.f, operands, 0, kCount, how);
            EXPECT_EQ(status, expected) << w.f.name << ", " << how.text();
            EXPECT_EQ(differences(w.f, stage, operands.vectors, 0, kCount), "") << w.f.name << ", " << how.text();
        };
        const unsigned allNulls = 1u << w.source | 1u << w.output;
        for (const double alpha : {0.0, 1e4}) { // the second one too large for Kaiser at any length but 1
            w.setAlpha(operands, alpha);
            for (const int length : {w.leastLength() - 1, 0, -1, INT_MIN, kCount}) {
                const bool isBad = length != kCount;
                How how;
                how.length = length;
                if (isBad) expect(zvpStsBadSize, how);
                if (!isBad && w.base == "WinKaiser" && alpha != 0) expect(zvpStsBadKaiserAlpha, how);
                for (unsigned nulls = 1; nulls <= allNulls; ++nulls) {
                    if ((nulls & ~allNulls) != 0) continue;
                    how.nulls = nulls;
                    expect(isBad && w.base == "WinBlackmanOpt" ? zvpStsBadSize : zvpStsNullPtr, how);
                }
            }
        }
    }
}

TEST(Windows, KaiserLimit) {
    std::vector<double> x(700, 1.0);
    for (const float alpha : {1.0F, -1.0F}) {
        EXPECT_EQ(zvpsWinKaiser_64f_I(x.data(), 617, alpha), zvpStsOk);
        EXPECT_EQ(zvpsWinKaiser_64f_I(x.data(), 618, alpha), zvpStsBadKaiserAlpha);
    }
    float one = 3;
    EXPECT_EQ(zvpsWinKaiser_32f_I(&one, 1, std::numeric_limits<float>::infinity()), zvpStsOk);
    EXPECT_EQ(one, 3);
}

TEST(Windows, ParametersThatAreNoNumbers) {
    for (const float alpha : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        for (const Level level : levels()) {
            useLevel(level);
            std::vector<Zvp16s> x(101, 7);
            EXPECT_EQ(zvpsWinBlackman_16s_I(x.data(), 101, alpha), zvpStsOk);
            EXPECT_EQ(x[50], 7);
            if (std::isnan(alpha)) {
                EXPECT_EQ(std::count(x.begin(), x.end(), 0), 100) << levelName(level);
            }
        }
    }
    useLevel(levels().back());
}

} // namespace
} // namespace zvps::test
