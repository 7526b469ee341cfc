// The values and statuses of the thresholds, element by element.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace zvps::test {
namespace {

__extension__ using Wide = __int128;

template <class T>
struct Complex {
    T re, im;
};

// What a call was given besides its vectors, by the arguments' names.
template <class T>
struct Parameters {
    T level, value, levelLT, valueLT, levelGT, valueGT;
    Complex<T> complexValue;
    int relOp;
};

bool isBelow(const std::string& base, int relOp) {
    return base == "Threshold" ? relOp == 0 : base.find("LT") != std::string::npos;
}

// ---- Real elements: exact ----

template <class T>
T expectedReal(const std::string& base, T x, const Parameters<T>& p) {
    if (x != x) return x;
    if (base == "Threshold_LTValGTVal") return x < p.levelLT ? p.valueLT : x > p.levelGT ? p.valueGT : x;
    if (base == "Threshold_LTVal") return x < p.level ? p.value : x;
    if (base == "Threshold_GTVal") return x > p.level ? p.value : x;
    const long double magnitude = std::fabs(static_cast<long double>(x));
    // Only for the bases whose levels are not negative.
    const auto signedLevel = [&] { return static_cast<T>(x < 0 ? -p.level : p.level); };
    if (base == "Threshold_GTAbs") return magnitude > p.level ? signedLevel() : x;
    if (base == "Threshold_LTAbs") return magnitude < p.level ? signedLevel() : x;
    if (base == "Threshold_LTInv") return static_cast<T>(T{1} / (magnitude < p.level ? signedLevel() : x));
    return isBelow(base, p.relOp) ? (x < p.level ? p.level : x) : (x > p.level ? p.level : x);
}

// ---- Complex elements ----

// part * level / sqrt(square) to nearest, by comparing squares.
int16_t exactPart(int part, int level, int64_t square) {
    const Wide twice = Wide{2} * std::abs(part) * level;
    int64_t whole = std::max<int64_t>(
        0,
        static_cast<int64_t>(std::abs(part) * static_cast<double>(level) / std::sqrt(static_cast<double>(square))) - 2);
    while (Wide{2 * whole + 1} * (2 * whole + 1) * square < twice * twice)
        ++whole;
    return static_cast<int16_t>(part < 0 ? -whole : whole);
}

bool isExpected(const std::string& base, Complex<int16_t> x, Complex<int16_t> y, const Parameters<int16_t>& p) {
    const int64_t square = int64_t{x.re} * x.re + int64_t{x.im} * x.im;
    const int64_t limit = int64_t{p.level} * p.level;
    const bool below = isBelow(base, p.relOp);
    Complex<int16_t> wanted = x;
    if (below ? square < limit : square > limit) {
        if (base.find("Val") != std::string::npos) {
            wanted = p.complexValue;
        } else if (square == 0) {
            wanted = {p.level, 0};
        } else {
            wanted = {exactPart(x.re, p.level, square), exactPart(x.im, p.level, square)};
        }
    }
    return wanted.re == y.re && wanted.im == y.im;
}

template <class T>
bool isSame(Complex<T> a, Complex<T> b) {
    return (a.re == b.re || (a.re != a.re && b.re != b.re)) && (a.im == b.im || (a.im != a.im && b.im != b.im));
}

// Both parts near the expected ones, compared with the magnitude.
template <class T>
bool isNear(long double re, long double im, Complex<T> y) {
    using Limits = std::numeric_limits<T>;
    const long double magnitude = std::hypot(re, im);
    const long double bound =
        std::fmax(8 * Limits::epsilon() * magnitude, 2 * static_cast<long double>(Limits::denorm_min()));
    const auto near = [&](long double wanted, T part) {
        if (std::isinf(part))
            return std::fabs(wanted) + bound >= Limits::max() && std::signbit(wanted) == std::signbit(part);
        return std::fabs(wanted - part) <= bound;
    };
    return near(re, y.re) && near(im, y.im);
}

template <class T>
bool isExpected(const std::string& base, Complex<T> x, Complex<T> y, const Parameters<T>& p) {
    const bool below = isBelow(base, p.relOp);
    const bool limits = base == "Threshold" || base == "Threshold_LT" || base == "Threshold_GT";
    if (limits && !below && p.level == 0) return y.re == 0 && y.im == 0;
    if (x.re != x.re || x.im != x.im) return base == "Threshold_LTInv" ? y.re != y.re || y.im != y.im : isSame(x, y);
    long double re = x.re, im = x.im;
    const bool isInfinite = std::isinf(re) || std::isinf(im);
    if (isInfinite) {
        re = std::isinf(re) ? std::copysign(1.0L, re) : 0;
        im = std::isinf(im) ? std::copysign(1.0L, im) : 0;
    }
    const long double level = p.level;
    const long double magnitude = std::hypot(re, im);
    const long double compared = isInfinite ? static_cast<long double>(HUGE_VAL) : magnitude;
    const bool isZero = magnitude == 0;
    const bool replaces = below ? compared < level : compared > level;
    const bool isClose = std::fabs(compared - level) <= 4 * std::numeric_limits<T>::epsilon() * level;
    if (base == "Threshold_LTInv") {
        if (isZero) return level == 0 ? std::isinf(y.re) : isNear<T>(1 / level, 0, y);
        if (isInfinite) return y.re == 0 && y.im == 0;
        const long double divisor = replaces ? magnitude * level : magnitude * magnitude;
        return isNear<T>(re / divisor, -im / divisor, y);
    }
    if (limits) {
        if (level == 0) return isSame(x, y);
        if (isClose && isNear<T>(re, im, y)) return true;
        if (!replaces) return isSame(x, y);
        if (isZero) return y.re == p.level && y.im == 0;
        return std::isfinite(y.re) && std::isfinite(y.im) &&
               isNear<T>(re / magnitude * level, im / magnitude * level, y);
    }
    return (isClose && isSame(x, y)) || isSame(replaces ? p.complexValue : x, y) ||
           (isClose && isSame(p.complexValue, y));
}

// ---- Sweeps ----

template <class T>
void setParameters(const Function& f, Operands& operands, const Parameters<T>& p) {
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        const std::string& name = f.arguments[i].name;
        Value& value = operands.values[i];
        if (name == "level") value.set(p.level);
        if (name == "value" && f.arguments[i].type->parts == 1) value.set(p.value);
        if (name == "value" && f.arguments[i].type->parts == 2) value.set(p.complexValue);
        if (name == "levelLT") value.set(p.levelLT);
        if (name == "valueLT") value.set(p.valueLT);
        if (name == "levelGT") value.set(p.levelGT);
        if (name == "valueGT") value.set(p.valueGT);
        if (name == "relOp") value.set(p.relOp);
    }
}

// action(T{}) for the part types that thresholds have.
template <class Action>
void withThresholdType(const ElementType& type, Action action) {
    withPartType(type, [&](auto part) {
        if constexpr (std::is_signed_v<decltype(part)> && sizeof(part) > 1 &&
                      !std::is_same_v<decltype(part), int64_t>) {
            action(part);
        }
    });
}

template <class T>
T element(const unsigned char* vector, size_t i) {
    T result;
    std::memcpy(&result, vector + i * sizeof(T), sizeof(T));
    return result;
}

class Thresholds : public ::testing::Test {
  protected:
    ~Thresholds() override { useLevel(levels().back()); }

    // Calls all levels and compares each element. False after a failure.
    template <class T>
    bool isRight(const Function& f, const Operands& operands, const Parameters<T>& p) {
        const Bytes& source = operands.vectors[0];
        const size_t output = f.hasRole(Role::destination) ? f.indexOf(Role::destination) : f.indexOf(Role::inOut);
        for (const Level level : levels()) {
            useLevel(level);
            const ZvpStatus status = stage.call(f, operands, 0, operands.count, {});
            bool dividesByZero = false;
            std::string text = stage.damage();
            for (size_t i = 0; i < operands.count && text.empty(); ++i) {
                bool isFine = false;
                if (f.arguments[0].type->parts == 1) {
                    const T x = element<T>(source.data(), i), y = element<T>(stage.vector(output), i);
                    const T wanted = expectedReal(f.base(), x, p);
                    isFine = (wanted == y &&
                              std::signbit(static_cast<double>(wanted)) == std::signbit(static_cast<double>(y))) ||
                             (wanted != wanted && y != y);
                    dividesByZero = dividesByZero || (x == 0 && p.level == 0);
                } else {
                    const auto x = element<Complex<T>>(source.data(), i),
                               y = element<Complex<T>>(stage.vector(output), i);
                    isFine = isExpected(f.base(), x, y, p);
                    dividesByZero = dividesByZero || (x.re == 0 && x.im == 0 && p.level == 0);
                }
                if (!isFine) {
                    text = difference(*f.arguments[0].type, &source[i * f.arguments[0].type->bytes()],
                                      stage.vector(output) + i * f.arguments[0].type->bytes(), 1) +
                           " (from the source)";
                }
            }
            dividesByZero = dividesByZero && f.base() == "Threshold_LTInv";
            if (status != (dividesByZero ? zvpStsDivByZero : zvpStsOk)) text += ", status " + std::to_string(status);
            if (text.empty()) continue;
            ADD_FAILURE() << f.name << " by " << levelName(level) << ", level " << +p.level << ", relOp " << p.relOp
                          << ": " << text;
            return false;
        }
        return true;
    }

    Stage stage{4096 * 16};
};

// Elements of all magnitudes, many of them near the level.
template <class T>
void placeNearLevel(const ElementType& type, Operands& operands, T level, Random& random) {
    for (size_t i = 0; i < operands.count; i += 3) {
        unsigned char* const at = &operands.vectors[0][i * type.bytes()];
        if constexpr (std::is_floating_point_v<T>) {
            const double angle = static_cast<double>(random.below(4096)) / 600;
            const T magnitude =
                level * (1 + static_cast<T>(static_cast<int>(random.below(9)) - 4) * std::numeric_limits<T>::epsilon());
            const Complex<T> pair{magnitude * static_cast<T>(std::cos(angle)),
                                  magnitude * static_cast<T>(std::sin(angle))};
            const T real = random.below(2) == 0 ? magnitude : -magnitude;
            if (type.parts == 2) {
                std::memcpy(at, &pair, sizeof(pair));
            } else {
                std::memcpy(at, &real, sizeof(real));
            }
        } else {
            // Around the level and its negative, as integers wrap.
            const int64_t near = int64_t{level} + static_cast<int64_t>(random.below(3)) - 1;
            const T parts[2] = {static_cast<T>(random.below(2) == 0 ? -near : near), static_cast<T>(random.below(3))};
            std::memcpy(at, parts, type.bytes());
        }
    }
}

template <class T>
std::vector<T> levelsOf() {
    using Limits = std::numeric_limits<T>;
    if constexpr (std::is_floating_point_v<T>) {
        std::vector<T> result = {
            0, 1, 5, T(0.3), -2, Limits::max(), Limits::min(), Limits::denorm_min(), Limits::min() / 8};
        for (int exponent = 10; exponent < Limits::max_exponent; exponent += Limits::max_exponent / 12) {
            result.push_back(std::ldexp(T(1.7), exponent));
            result.push_back(std::ldexp(T(1.3), -exponent));
        }
        return result;
    } else {
        return {0, 1, 2, 5, 100, 181, 182, 23170, -1, -77, Limits::max(), Limits::max() - 1, Limits::min()};
    }
}

TEST_F(Thresholds, Values) {
    size_t tested = 0;
    for (const Function& f : functions()) {
        if (f.family != "threshold") continue;
        ++tested;
        Random random(f.name);
        const ElementType& type = *f.arguments[0].type;
        withThresholdType(type, [&](auto part) {
            using T = decltype(part);
            for (const T level : levelsOf<T>()) {
                if (level < 0 && f.rejectsNegativeLevel()) continue;
                Operands operands = randomOperands(f, 1000, random);
                placeNearLevel(type, operands, level, random);
                const T other = levelsOf<T>()[random.below(levelsOf<T>().size())];
                for (const int relOp : {0, 4}) {
                    const Parameters<T> p{level,     3,    std::min(level, other), 7, std::max(level, other), -9,
                                          {11, -12}, relOp};
                    setParameters(f, operands, p);
                    if (!isRight(f, operands, p)) return;
                }
            }
        });
    }
    EXPECT_EQ(tested, 96u);
}

// Magnitudes of 16-bit parts that come out as near to one half as any can: from the convergents of the ratio of the
// parts that would give it.
TEST_F(Thresholds, NearTies) {
    for (const char* name : {"zvpsThreshold_GT_16sc", "zvpsThreshold_LT_16sc_I"}) {
        for (const Function& f : functions()) {
            if (f.name != name) continue;
            Random random(f.name);
            for (int round = 0; round < 3000; ++round) {
                const int64_t level = 1 + static_cast<int64_t>(random.below(32767));
                const int64_t odd = 2 * static_cast<int64_t>(random.below(static_cast<size_t>(level))) + 1;
                long double rest =
                    std::sqrt(static_cast<long double>(4 * level * level - odd * odd)) / static_cast<long double>(odd);
                std::vector<Complex<int16_t>> elements;
                int64_t p0 = 0, q0 = 1, p1 = 1, q1 = 0; // q / p approaches the ratio
                for (int step = 0; step < 20; ++step) {
                    const auto whole = static_cast<int64_t>(rest);
                    const int64_t q = whole * q1 + q0, p = whole * p1 + p0;
                    std::swap(p0, p1), std::swap(q0, q1);
                    p1 = p, q1 = q;
                    if (p > 32767 || q > 32767 || rest == whole) break;
                    elements.push_back({static_cast<int16_t>(p), static_cast<int16_t>(-q)});
                    rest = 1 / (rest - static_cast<long double>(whole));
                }
                if (elements.empty()) continue;
                Operands operands = randomOperands(f, elements.size(), random);
                std::memcpy(operands.vectors[0].data(), elements.data(), operands.vectors[0].size());
                const Parameters<int16_t> p{static_cast<int16_t>(level), 0, 0, 0, 0, 0, {0, 0}, 0};
                setParameters(f, operands, p);
                if (!isRight(f, operands, p)) return;
            }
        }
    }
}

// Parameters are looked at after pointers and length, the level before the relation; nothing is written.
TEST_F(Thresholds, Errors) {
    for (const Function& f : functions()) {
        if (f.family != "threshold") continue;
        Random random(f.name);
        const ElementType& type = *f.arguments[0].type;
        withThresholdType(type, [&](auto part) {
            using T = decltype(part);
            Operands operands = randomOperands(f, 40, random);
            const auto expect = [&](const Parameters<T>& p, ZvpStatus wanted) {
                setParameters(f, operands, p);
                EXPECT_EQ(stage.call(f, operands, 0, 40, {}), wanted)
                    << f.name << ", level " << +p.level << ", relOp " << p.relOp;
                EXPECT_EQ(differences(f, stage, operands.vectors, 0, 40), "") << f.name;
                How how;
                how.length = 0;
                EXPECT_EQ(stage.call(f, operands, 0, 40, how), zvpStsBadSize) << f.name;
                how.nulls = 1;
                EXPECT_EQ(stage.call(f, operands, 0, 40, how), zvpStsNullPtr) << f.name;
            };
            if (f.rejectsNegativeLevel()) expect({-1, 0, 0, 0, 0, 0, {0, 0}, 1}, zvpStsBadThresholdLevel);
            if (f.base() == "Threshold") {
                for (const int relOp : {1, 2, 3, 5, -1})
                    expect({1, 0, 0, 0, 0, 0, {0, 0}, relOp}, zvpStsBadArg);
            }
            if (f.base() == "Threshold_LTValGTVal") expect({0, 0, 2, 0, 1, 0, {0, 0}, 0}, zvpStsBadThresholdOrder);
        });
    }
}

} // namespace
} // namespace zvps::test
