// The values of the arithmetic functions, against one exact oracle for integers and the plain operations of the
// processor for floating point. Which operation, types and scaling a function has, its name tells.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <map>
#include <set>

namespace zvps::test {
namespace {

__extension__ using Wide = __int128;

template <class T>
struct Complex {
    T re{};
    T im{};
};

template <class T>
Complex<T> load(const ElementType& type, const unsigned char* element) {
    return withPartType(type, [&](auto part) {
        Complex<T> result;
        std::memcpy(&part, element, sizeof(part));
        result.re = static_cast<T>(part);
        if (type.parts == 2) {
            std::memcpy(&part, element + sizeof(part), sizeof(part));
            result.im = static_cast<T>(part);
        }
        return result;
    });
}

// ---- What a function computes ----

enum class Kind { sum, difference, product, quotient, absolute };

// left op right [+ the destination's old value]
struct Meaning {
    Kind kind;
    size_t left, right; // arguments
    bool accumulates;
    size_t output;
};

Meaning meaningOf(const Function& f) {
    static const std::map<std::string, Kind> kKinds = {
        {"Add", Kind::sum},          {"AddC", Kind::sum},           {"Sub", Kind::difference},
        {"SubC", Kind::difference},  {"SubCRev", Kind::difference}, {"Mul", Kind::product},
        {"Mul_Low", Kind::product},  {"MulC", Kind::product},       {"MulC_Low", Kind::product},
        {"Div", Kind::quotient},     {"Div_Round", Kind::quotient}, {"DivC", Kind::quotient},
        {"DivCRev", Kind::quotient}, {"AddProduct", Kind::product}, {"AddProductC", Kind::product},
        {"Sqr", Kind::product},      {"Abs", Kind::absolute}};
    const std::string base = f.base();
    Meaning m{kKinds.at(base), 0, 0, base.find("AddProduct") == 0, f.indexOf(Role::destination)};
    if (!f.hasRole(Role::destination)) m.output = f.indexOf(Role::inOut);
    std::vector<size_t> operands;
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        const Role role = f.arguments[i].role;
        if (role == Role::source || (role == Role::inOut && !m.accumulates)) operands.push_back(i);
    }
    m.left = operands.back(); // of two vectors, the second is the left operand
    m.right = operands.front();
    if (f.hasRole(Role::constant)) m.right = f.indexOf(Role::constant);
    if (base.find("Rev") != std::string::npos) std::swap(m.left, m.right);
    return m;
}

// ---- Integers ----

// numerator / denominator * 2^-scale, rounded by the mode, saturated.
Wide scaled(Wide numerator, Wide denominator, int64_t scale, ZvpRoundMode mode, Wide low, Wide high) {
    const bool isNegative = numerator < 0;
    const Wide magnitude = isNegative ? -numerator : numerator;
    Wide quotient = magnitude / denominator;
    Wide rest = magnitude % denominator;
    int aboveHalf = 0; // how the part that rounding drops compares with one half
    if (scale > 0) {
        if (scale > 126) return 0; // below one half of the least place
        const Wide half = Wide{1} << (scale - 1);
        const Wide dropped = quotient & (2 * half - 1);
        aboveHalf = dropped > half || (dropped == half && rest > 0) ? 1 : dropped == half ? 0 : -1;
        quotient >>= scale;
    } else {
        for (; scale < 0 && (quotient != 0 || rest != 0) && quotient >> 70 == 0; ++scale) {
            rest *= 2;
            quotient = 2 * quotient + (rest >= denominator);
            if (rest >= denominator) rest -= denominator;
        }
        aboveHalf = 2 * rest > denominator ? 1 : 2 * rest == denominator ? 0 : -1;
    }
    const bool isUp = aboveHalf > 0 || (aboveHalf == 0 && (mode == zvpRndFinancial || quotient % 2 == 1));
    if (mode != zvpRndZero && isUp) ++quotient;
    const Wide result = isNegative ? -quotient : quotient;
    return result < low ? low : result > high ? high : result;
}

// A product of factors of which at least one is floating-point, in units of 2^exponent.
struct Factor {
    Wide mantissa;
    int exponent;
    bool isNan, isInfinite;
};

Factor factor(const ElementType& type, const unsigned char* element) {
    if (!type.isFloat) return {load<Wide>(type, element).re, 0, false, false};
    const double value = load<double>(type, element).re;
    if (std::isnan(value)) return {0, 0, true, false};
    if (std::isinf(value)) return {std::signbit(value) ? -1 : 1, 0, false, true};
    int exponent = 0;
    const double fraction = std::frexp(value, &exponent);
    return {static_cast<Wide>(std::ldexp(fraction, 53)), exponent - 53, false, false};
}

Wide scaledProduct(const Factor& a, const Factor& b, int64_t scale, Wide low, Wide high) {
    const bool isInfinite = a.isInfinite || b.isInfinite;
    const Wide product = a.mantissa * b.mantissa;
    if (a.isNan || b.isNan || product == 0) return 0; // zero times infinity is no number either
    if (isInfinite) return product < 0 ? low : high;
    return scaled(product, 1, scale - a.exponent - b.exponent, zvpRndNear, low, high);
}

// Multiplication by the reciprocal in 63 bits, which is what zvpsDivC_64s_ISfs promises.
Wide scaledReciprocalProduct(int64_t value, int64_t divisor, int64_t scale, Wide low, Wide high) {
    if (divisor == 0) return value == 0 ? 0 : value < 0 ? low : high;
    if (divisor == 1 || divisor == -1) return scaled(Wide{value} * divisor, 1, scale, zvpRndNear, low, high);
    const Wide d = divisor < 0 ? -Wide{divisor} : Wide{divisor};
    int k = 0;
    while (Wide{1} << (k + 1) < d)
        ++k;
    uint64_t reciprocal = 0;
    Wide rest = Wide{1} << (k + 1);
    for (int bit = 63; bit >= 0; --bit) {
        if (rest >= d) {
            reciprocal |= uint64_t{1} << bit;
            rest -= d;
        }
        rest *= 2;
    }
    const Wide rounded = (static_cast<Wide>(reciprocal) + (reciprocal & 1)) >> 1;
    return scaled(value * (divisor < 0 ? -rounded : rounded), 1, scale + k + 63, zvpRndNear, low, high);
}

// ---- Floating point ----

template <class T>
Complex<T> floatResult(Kind kind, Complex<T> x, Complex<T> y, bool isComplexX, bool isComplexY) {
    switch (kind) {
    case Kind::sum:
        return {x.re + y.re, x.im + y.im};
    case Kind::difference:
        return {x.re - y.re, x.im - y.im};
    case Kind::product:
        if (!isComplexX) return {x.re * y.re, x.re * y.im};
        if (!isComplexY) return {x.re * y.re, x.im * y.re};
        return {x.re * y.re - x.im * y.im, x.re * y.im + x.im * y.re};
    case Kind::quotient:
        return {x.re / y.re, x.im / y.re}; // real, or the divisor zero
    default:
        return {std::fabs(x.re), 0};
    }
}

// Both parts within a few units in the last place of the larger one of the true quotient x / y.
template <class T>
bool isQuotient(Complex<T> actual, Complex<T> x, Complex<T> y) {
    using Limits = std::numeric_limits<T>;
    constexpr int kUlps = 4;
    for (const T part : {x.re, x.im, y.re, y.im}) {
        if (!std::isfinite(part)) return true; // what it gives is left open
    }
    const Complex<long double> a{x.re, x.im}, b{y.re, y.im};
    const long double norm = b.re * b.re + b.im * b.im;
    const long double re = (a.re * b.re + a.im * b.im) / norm;
    const long double im = (a.im * b.re - a.re * b.im) / norm;
    const long double larger = std::fmax(std::fabs(re), std::fabs(im));
    const long double bound =
        kUlps * std::fmax(larger * Limits::epsilon(), static_cast<long double>(Limits::denorm_min()));
    const auto isNear = [&](long double expected, T part) {
        if (std::isinf(part)) return std::fabs(expected) + bound >= Limits::max() && (part > 0) == (expected > 0);
        return std::fabs(expected - part) <= bound;
    };
    return isNear(re, actual.re) && isNear(im, actual.im);
}

// ---- The oracle ----

struct Expected {
    std::vector<Bytes> outputs;
    std::vector<bool> zeroDivisors; // by element
    bool isApproximate = false;     // complex quotients, where no divisor is zero
};

Expected expected(const Function& f, const Operands& operands) {
    const Meaning m = meaningOf(f);
    const ElementType &x = *f.arguments[m.left].type, &y = *f.arguments[m.right].type;
    const ElementType& d = *f.arguments[m.output].type;
    const int64_t scale = f.hasRole(Role::scaleFactor) ? operands.values[f.indexOf(Role::scaleFactor)].get<int>() : 0;
    const ZvpRoundMode mode =
        f.hasRole(Role::roundMode) ? operands.values[f.indexOf(Role::roundMode)].get<int>() : zvpRndNear;
    const auto element = [&](size_t argument, size_t i) {
        return operands.vectors[argument].empty()
                   ? operands.values[argument].bytes.data()
                   : &operands.vectors[argument][i * f.arguments[argument].type->bytes()];
    };

    Expected result{operands.vectors, std::vector<bool>(operands.count), false};
    result.isApproximate = m.kind == Kind::quotient && d.isFloat && d.parts == 2;
    for (size_t i = 0; i < operands.count; ++i) {
        const unsigned char* const left = element(m.left, i);
        const unsigned char* const right = element(m.right, i);
        unsigned char* const out = &result.outputs[m.output][i * d.bytes()];
        const bool isByZero = m.kind == Kind::quotient && isZero(y, right);
        result.zeroDivisors[i] = isByZero;
        withPartType(d, [&](auto part) {
            using T = decltype(part);
            Complex<T> stored;
            if constexpr (std::is_floating_point_v<T>) {
                stored = floatResult(m.kind, load<T>(x, left), load<T>(y, right), x.parts == 2, y.parts == 2);
                if (m.accumulates) {
                    const Complex<T> old = load<T>(d, out);
                    stored = {old.re + stored.re, old.im + stored.im};
                }
            } else {
                const Wide low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
                Complex<Wide> exact;
                Wide denominator = 1;
                const auto store = [&](Wide value) { return static_cast<T>(value); };
                if (x.isFloat || y.isFloat) {
                    stored.re = store(scaledProduct(factor(x, left), factor(y, right), scale, low, high));
                } else if (f.name == "zvpsDivC_64s_ISfs") {
                    stored.re =
                        store(scaledReciprocalProduct(static_cast<int64_t>(load<Wide>(x, left).re),
                                                      static_cast<int64_t>(load<Wide>(y, right).re), scale, low, high));
                } else {
                    const Complex<Wide> a = load<Wide>(x, left), b = load<Wide>(y, right);
                    switch (m.kind) {
                    case Kind::sum:
                        exact = {a.re + b.re, a.im + b.im};
                        break;
                    case Kind::difference:
                        exact = {a.re - b.re, a.im - b.im};
                        break;
                    case Kind::product:
                        exact = {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
                        break;
                    case Kind::absolute:
                        exact = {a.re < 0 ? -a.re : a.re, 0};
                        break;
                    case Kind::quotient:
                        denominator = b.re * b.re + b.im * b.im;
                        exact = {a.re * b.re + a.im * b.im, a.im * b.re - a.re * b.im};
                    }
                    if (m.accumulates) exact.re += load<Wide>(d, out).re;
                    if (isByZero) {
                        const auto substitute = [&](Wide v) { return store(v == 0 ? 0 : v < 0 ? low : high); };
                        stored = {substitute(a.re), substitute(a.im)};
                    } else {
                        stored = {store(scaled(exact.re, denominator, scale, mode, low, high)),
                                  store(scaled(exact.im, denominator, scale, mode, low, high))};
                    }
                }
            }
            std::memcpy(out, &stored, d.bytes());
        });
    }
    return result;
}

// ---- Sweeps ----

class Arithmetic : public ::testing::TestWithParam<std::string> {
  protected:
    ~Arithmetic() override { useLevel(levels().back()); }

    template <class Test>
    void forEach(Test test) {
        for (const Function& f : functions()) {
            if (f.family == "arithmetic" && f.base() == GetParam()) test(f);
        }
    }

    // Calls all levels on all elements and on two shorter pieces. False after a failure.
    bool isRight(const Function& f, const Operands& operands, Random& random) {
        const Expected wanted = expected(f, operands);
        const auto check = [&](size_t first, size_t count) {
            for (const Level level : levels()) {
                useLevel(level);
                const ZvpStatus status = stage.call(f, operands, first, count, {});
                bool warns = false;
                for (size_t i = 0; i < count; ++i)
                    warns = warns || wanted.zeroDivisors[first + i];
                std::string text = wanted.isApproximate ? quotientDifference(f, operands, wanted, first, count)
                                                        : differences(f, stage, wanted.outputs, first, count);
                if (status != (warns ? zvpStsDivByZero : zvpStsOk)) text += ", status " + std::to_string(status);
                if (text.empty()) continue;
                ADD_FAILURE() << f.name << " by " << levelName(level) << describeConstants(f, operands) << ", len "
                              << count << " from " << first << ": " << text;
                return false;
            }
            return true;
        };
        const size_t first = random.below(operands.count), second = random.below(operands.count);
        return check(0, operands.count) &&
               check(first, 1 + random.below(std::min<size_t>(130, operands.count - first))) &&
               check(second, 1 + random.below(std::min<size_t>(20, operands.count - second)));
    }

    Stage stage{65536 * 4};

  private:
    std::string quotientDifference(const Function& f, const Operands& operands, const Expected& wanted, size_t first,
                                   size_t count) {
        const Meaning m = meaningOf(f);
        const ElementType& d = *f.arguments[m.output].type;
        return withPartType(d, [&](auto part) -> std::string {
            using T = decltype(part);
            if constexpr (std::is_floating_point_v<T>) {
                for (size_t i = 0; i < count; ++i) {
                    const auto at = [&](size_t argument) {
                        const Bytes& v = operands.vectors[argument];
                        return load<T>(d, v.empty() ? operands.values[argument].bytes.data()
                                                    : &v[(first + i) * d.bytes()]);
                    };
                    const unsigned char* const actual = stage.vector(m.output) + i * d.bytes();
                    const unsigned char* const wantedElement = &wanted.outputs[m.output][(first + i) * d.bytes()];
                    const Complex<T> x = at(m.left), y = at(m.right), q = load<T>(d, actual);
                    if (wanted.zeroDivisors[first + i] ? difference(d, wantedElement, actual, 1).empty()
                                                       : isQuotient(q, x, y)) {
                        continue;
                    }
                    char text[300];
                    std::snprintf(text, sizeof text, "element %zu: (%.17g, %.17g) / (%.17g, %.17g) gave (%.17g, %.17g)",
                                  i, double{x.re}, double{x.im}, double{y.re}, double{y.im}, double{q.re},
                                  double{q.im});
                    return text;
                }
            }
            return stage.damage();
        });
    }

    static std::string describeConstants(const Function& f, const Operands& operands) {
        std::string text;
        for (size_t i = 0; i < f.arguments.size(); ++i) {
            const Argument& argument = f.arguments[i];
            if (argument.isVector() || argument.role == Role::length) continue;
            const Complex<double> value = load<double>(*argument.type, operands.values[i].bytes.data());
            text += ", " + argument.name + " " + std::to_string(value.re);
            if (argument.type->parts == 2) text += " " + std::to_string(value.im);
        }
        return text;
    }
};

// Dividends near the halves between two results, where the quotient's rounding is decided.
void placeNearTies(const Function& f, Operands& operands, int scaleFactor, Random& random) {
    const Meaning m = meaningOf(f);
    const ElementType &x = *f.arguments[m.left].type, &y = *f.arguments[m.right].type;
    if (m.kind != Kind::quotient || x.isFloat || x.partBytes == 8 || operands.vectors[m.left].empty()) return;
    for (size_t i = 0; i < operands.count; i += 2) {
        const Bytes& right = operands.vectors[m.right];
        const Wide divisor =
            load<Wide>(y, right.empty() ? operands.values[m.right].bytes.data() : &right[i * y.bytes()]).re;
        // (2 k + 1) / 2 * divisor * 2^scaleFactor, and its neighbours
        const int64_t k = static_cast<int64_t>(random()) >> (random.below(31) + 32);
        const int places = std::clamp(scaleFactor, -40, 40);
        const Wide unit = divisor * (Wide{1} << std::max(0, places));
        const Wide tie = (2 * Wide{k} + 1) * unit / 2 / (Wide{1} << std::max(0, -places));
        withPartType(x, [&](auto part) {
            using T = decltype(part);
            const Wide value = tie + static_cast<int>(random.below(3)) - 1;
            part = static_cast<T>(value);
            if (static_cast<Wide>(part) != value) return;
            std::memcpy(&operands.vectors[m.left][i * x.bytes()], &part, sizeof(part));
        });
    }
}

TEST_P(Arithmetic, RandomOperands) {
    std::vector<int> scaleFactors = {INT_MIN, INT_MIN + 1, -1000, -128, 127, 128, 1000, INT_MAX};
    for (int scaleFactor = -70; scaleFactor <= 70; ++scaleFactor)
        scaleFactors.push_back(scaleFactor);
    forEach([&](const Function& f) {
        Random random(f.name);
        for (const int scaleFactor : scaleFactors) {
            Operands operands = randomOperands(f, 300, random);
            operands.setScaleFactor(f, scaleFactor);
            placeNearTies(f, operands, scaleFactor, random);
            if (random.below(2) == 0) replaceZeros(f, operands);
            if (!isRight(f, operands, random)) return;
        }
    });
}

// 8-bit operands: all pairs. 16-bit vectors with a constant or alone: all elements.
TEST_P(Arithmetic, AllOperands) {
    forEach([&](const Function& f) {
        const Meaning m = meaningOf(f);
        const ElementType& x = *f.arguments[f.hasRole(Role::source) ? f.indexOf(Role::source) : m.output].type;
        const bool hasConstant = f.hasRole(Role::constant);
        const bool hasTwoVectors = m.left != m.right && !hasConstant;
        if (x.isFloat || x.parts == 2 || x.partBytes > 2 || (x.partBytes == 2 && hasTwoVectors)) return;
        Random random(f.name);
        Operands operands = randomOperands(f, x.partBytes == 1 && !hasTwoVectors ? 256 : 65536, random);
        for (size_t i = 0; i < f.arguments.size(); ++i) {
            if (operands.vectors[i].empty() || f.arguments[i].role == Role::destination) continue;
            const bool isSecond = hasTwoVectors && i == m.left;
            for (size_t k = 0; k < operands.count; ++k) {
                const auto value = static_cast<uint16_t>(isSecond ? k >> 8 : k);
                std::memcpy(&operands.vectors[i][k * x.bytes()], &value, x.bytes());
            }
        }
        std::vector<int> constants = {0};
        if (hasConstant && x.partBytes == 1) {
            for (int c = 1; c < 256; ++c)
                constants.push_back(c);
        } else if (hasConstant) {
            constants = {0, 1, 2, 3, 5, 7, 10, 641, 255, 256, 4097, 32767, 32768, 65521, 65535};
        }
        std::vector<int> scaleFactors = {-3, -1, 0, 1, 4, 12};
        if (x.partBytes == 1) {
            scaleFactors.clear();
            for (int s = -9; s <= 18; ++s)
                scaleFactors.push_back(s);
        }
        if (!f.hasRole(Role::scaleFactor)) scaleFactors = {0};
        for (const int scaleFactor : scaleFactors) {
            operands.setScaleFactor(f, scaleFactor);
            for (const int constant : constants) {
                if (hasConstant) operands.values[f.indexOf(Role::constant)].set(static_cast<uint16_t>(constant));
                if (constant == 0 && f.rejectsZeroConstant()) continue;
                for (int mode = 0; mode < (f.hasRole(Role::roundMode) ? 3 : 1); ++mode) {
                    if (f.hasRole(Role::roundMode)) operands.values[f.indexOf(Role::roundMode)].set(mode);
                    if (!isRight(f, operands, random)) return;
                }
            }
        }
    });
}

std::set<std::string> arithmeticBases() {
    std::set<std::string> result;
    for (const Function& f : functions()) {
        if (f.family == "arithmetic") result.insert(f.base());
    }
    return result;
}
INSTANTIATE_TEST_SUITE_P(, Arithmetic, ::testing::ValuesIn(arithmeticBases()),
                         [](const auto& info) { return info.param; });

// A negative length is no error to this one function.
TEST(DivC_64s, NegativeLength) {
    Zvp64s values[2] = {-5, 7};
    EXPECT_EQ(zvpsDivC_64s_ISfs(3, values, -1, 0), zvpStsOk);
    EXPECT_EQ(values[0], -5);
    EXPECT_EQ(zvpsDivC_64s_ISfs(0, values, INT_MIN, 0), zvpStsDivByZero);
    EXPECT_EQ(values[0], INT64_MIN);
    EXPECT_EQ(values[1], 7);
}

// Complex quotients whose intermediate values leave the range of the type though the quotient does not.
template <class T>
void expectQuotients(ZvpStatus (*div)(const Complex<T>*, const Complex<T>*, Complex<T>*, int)) {
    using Limits = std::numeric_limits<T>;
    const T parts[] = {0,
                       Limits::denorm_min(),
                       3 * Limits::denorm_min(),
                       Limits::min(),
                       Limits::min() * T{1.5},
                       std::sqrt(Limits::min()),
                       T{-0.75},
                       1,
                       std::sqrt(Limits::max()),
                       Limits::max() / 3,
                       Limits::max()};
    std::vector<Complex<T>> x, y;
    for (const T a : parts)
        for (const T b : parts)
            for (const T c : parts)
                for (const T d : parts) {
                    if (c == 0 && d == 0) continue;
                    x.push_back({a, b});
                    y.push_back({c, d});
                }
    std::vector<Complex<T>> q(x.size());
    for (const Level level : levels()) {
        useLevel(level);
        ASSERT_EQ(div(y.data(), x.data(), q.data(), static_cast<int>(x.size())), zvpStsOk);
        size_t wrong = 0;
        for (size_t i = 0; i < x.size(); ++i) {
            if (isQuotient(q[i], x[i], y[i])) continue;
            if (++wrong == 1) {
                ADD_FAILURE() << levelName(level) << ": (" << x[i].re << ", " << x[i].im << ") / (" << y[i].re << ", "
                              << y[i].im << ") gave (" << q[i].re << ", " << q[i].im << ")";
            }
        }
        EXPECT_EQ(wrong, 0u) << "of " << x.size();
    }
    useLevel(levels().back());
}

TEST(ComplexQuotients, ExtremeExponents) {
    expectQuotients<float>(
        reinterpret_cast<ZvpStatus (*)(const Complex<float>*, const Complex<float>*, Complex<float>*, int)>(
            reinterpret_cast<void (*)()>(zvpsDiv_32fc)));
    expectQuotients<double>(
        reinterpret_cast<ZvpStatus (*)(const Complex<double>*, const Complex<double>*, Complex<double>*, int)>(
            reinterpret_cast<void (*)()>(zvpsDiv_64fc)));
}

} // namespace
} // namespace zvps::test
