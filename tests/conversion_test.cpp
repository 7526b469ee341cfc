// The values of the conversions, against exact arithmetic in long double, which holds every number of every type.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <map>

namespace zvps::test {
namespace {

static_assert(std::numeric_limits<long double>::digits >= 64);

// ---- Elements by their codes ----

template <class T>
T load(const unsigned char* element) {
    T value;
    std::memcpy(&value, element, sizeof(value));
    return value;
}

long double valueOfHalf(unsigned bits) {
    const int exponent = bits >> 10 & 31;
    const int mantissa = bits & 1023;
    long double magnitude = exponent == 0 ? std::ldexp(mantissa, -24) : std::ldexp(1024 + mantissa, exponent - 25);
    if (exponent == 31) magnitude = mantissa == 0 ? HUGE_VAL : NAN;
    return std::copysign(magnitude, bits >> 15 ? -1.0L : 1.0L);
}

long double valueOf(const std::string& code, const unsigned char* element) {
    if (code == "8u") return load<uint8_t>(element);
    if (code == "8s") return load<int8_t>(element);
    if (code == "16u") return load<uint16_t>(element);
    if (code == "16s") return load<int16_t>(element);
    if (code == "24u") return element[0] + 256 * element[1] + 65536 * element[2];
    if (code == "24s") return element[0] + 256 * element[1] + 65536 * static_cast<int8_t>(element[2]);
    if (code == "32u") return load<uint32_t>(element);
    if (code == "32s") return load<int32_t>(element);
    if (code == "64s") return load<int64_t>(element);
    if (code == "16f") return valueOfHalf(load<uint16_t>(element));
    if (code == "32f") return load<float>(element);
    return load<double>(element);
}

bool isFloat(const std::string& code) {
    return code.back() == 'f';
}
int bitsOf(const std::string& code) {
    return std::stoi(code);
}
size_t bytesOf(const std::string& code) {
    return static_cast<size_t>(bitsOf(code)) / 8;
}

struct Limits {
    long double least, most;
};
Limits limitsOf(const std::string& code) {
    const long double half = std::ldexp(1.0L, bitsOf(code) - 1);
    return code.back() == 'u' ? Limits{0, 2 * half - 1} : Limits{-half, half - 1};
}

// Finite halves by rising magnitude, and where the next one would be.
unsigned halfOf(long double value, bool toNearest) {
    static const std::vector<long double> magnitudes = [] {
        std::vector<long double> all;
        for (unsigned bits = 0; bits < 0x7C00; ++bits)
            all.push_back(valueOfHalf(bits));
        all.push_back(65536);
        return all;
    }();
    const unsigned sign = std::signbit(value) ? 0x8000 : 0;
    const long double magnitude = std::fabs(value);
    if (std::isinf(value)) return sign | 0x7C00;
    auto below = static_cast<unsigned>(std::upper_bound(magnitudes.begin(), magnitudes.end(), magnitude) -
                                       magnitudes.begin() - 1);
    if (below == 0x7C00) return sign | (toNearest ? 0x7C00 : 0x7BFF);
    const long double down = magnitude - magnitudes[below];
    const long double up = magnitudes[below + 1] - magnitude;
    if (toNearest && (up < down || (up == down && below % 2 == 1))) ++below;
    return sign | below;
}

long double rounded(long double value, int mode) {
    if (mode == zvpRndNear) return std::rint(value);
    return mode == zvpRndZero ? std::trunc(value) : std::round(value);
}

// ---- What a function computes ----

struct Conversion {
    const Function* function;
    std::string from, to;
    bool scales, rounds;

    void store(const unsigned char* source, unsigned char* result, int mode, int64_t scaleFactor) const {
        const long double value = valueOf(from, source);
        if (to == "32f" || to == "64f") {
            const int64_t least = to == "32f" ? -112 : -1008, most = to == "32f" ? 126 : 1022;
            const int scale = static_cast<int>(std::clamp(scaleFactor, least, most));
            if (to == "32f") {
                const float stored = static_cast<float>(value) * std::ldexp(1.0f, -scale);
                std::memcpy(result, &stored, 4);
            } else {
                const double stored = static_cast<double>(value) * std::ldexp(1.0, -scale);
                std::memcpy(result, &stored, 8);
            }
        } else if (to == "16f") {
            unsigned stored = halfOf(value, mode == zvpRndNear);
            if (std::isnan(value)) {
                const auto bits = load<uint32_t>(source);
                stored = (bits >> 16 & 0x8000) | 0x7E00 | (bits >> 13 & 0x1FF);
            }
            std::memcpy(result, &stored, 2);
        } else {
            if (function->name.find("32s24s") != std::string::npos)
                scaleFactor = std::clamp<int64_t>(scaleFactor, -31, 31);
            // Beyond this every number is 0 or out of range.
            const int scale = static_cast<int>(std::clamp<int64_t>(scaleFactor, -4000, 4000));
            const Limits limits = limitsOf(to);
            const long double exact = std::ldexp(value, -scale);
            long double stored = 0;
            if (!std::isnan(exact))
                stored = std::clamp(rounded(exact, rounds ? mode : zvpRndNear), limits.least, limits.most);
            const uint64_t bits = stored < 0 ? -static_cast<uint64_t>(-stored) : static_cast<uint64_t>(stored);
            std::memcpy(result, &bits, bytesOf(to));
        }
    }
};

std::vector<Conversion> conversions() {
    std::vector<Conversion> result;
    for (const Function& f : functions()) {
        if (f.family != "convert") continue;
        // Convert_FROMTO and Convert_FROMTO_Sfs; a code is a width and a letter.
        const size_t from = f.name.find('_') + 1;
        const std::string codes = f.name.substr(from, f.name.find('_', from) - from);
        const size_t to = codes.find_first_of("usf") + 1;
        if (to == codes.size()) continue;
        result.push_back(
            {&f, codes.substr(0, to), codes.substr(to), f.hasRole(Role::scaleFactor), f.hasRole(Role::roundMode)});
    }
    return result;
}

// Numbers that lie on, beside or between those where the result changes.
Bytes critical(const Conversion& c, int64_t scaleFactor, Random& random) {
    constexpr size_t kCount = 3000;
    Bytes result(kCount * bytesOf(c.from));
    if (bitsOf(c.from) <= 16) {
        result.resize((size_t{1} << bitsOf(c.from)) * bytesOf(c.from));
        for (size_t i = 0; i < result.size() / bytesOf(c.from); ++i) {
            std::memcpy(&result[i * bytesOf(c.from)], &i, bytesOf(c.from));
        }
        return result;
    }
    const Argument& source = c.function->arguments[0];
    fillRandom(*source.type, result.data(), kCount, random);
    const int scale = static_cast<int>(std::clamp<int64_t>(scaleFactor, -4000, 4000));
    for (size_t i = 0; i < kCount; i += 2) {
        // A number of quarters, small or near a limit of the result.
        long double target = static_cast<long double>(random.below(40)) / 4 - 5;
        if (c.to == "16f") {
            const unsigned bits = static_cast<unsigned>(random.below(0x7C00));
            target = (valueOfHalf(bits) + (bits == 0x7BFF ? 65536 : valueOfHalf(bits + 1))) / 2;
            if (random.below(3) == 0) target = valueOfHalf(bits);
            if (random.below(2) == 0) target = -target;
        } else if (!isFloat(c.to) && random.below(3) != 0) {
            const Limits limits = limitsOf(c.to);
            if (random.below(2) == 0) {
                target += random.below(2) == 0 ? limits.least : limits.most;
            } else { // of any magnitude
                target += std::floor(
                    std::ldexp(limits.most, -static_cast<int>(random.below(static_cast<size_t>(bitsOf(c.to))))));
            }
        }
        const long double wanted = std::ldexp(target, scale);
        unsigned char* const element = &result[i * bytesOf(c.from)];
        const size_t beside = random.below(3);
        if (c.from == "32f") {
            float value = static_cast<float>(wanted);
            if (beside > 0) value = std::nextafter(value, beside == 1 ? HUGE_VALF : -HUGE_VALF);
            std::memcpy(element, &value, sizeof(value));
        } else if (c.from == "64f") {
            double value = static_cast<double>(wanted);
            if (beside > 0) value = std::nextafter(value, beside == 1 ? HUGE_VAL : -HUGE_VAL);
            std::memcpy(element, &value, sizeof(value));
        } else {
            const Limits limits = limitsOf(c.from);
            const long double value = wanted + (beside == 0 ? 0 : beside == 1 ? 1 : -1);
            if (!(value >= limits.least && value <= limits.most)) continue;
            const auto bits = value < 0 ? -static_cast<uint64_t>(-value) : static_cast<uint64_t>(value);
            std::memcpy(element, &bits, bytesOf(c.from));
        }
    }
    return result;
}

TEST(Conversion, Values) {
    std::vector<int> scaleFactors = {0,     1,     -1,    2,    3,     -3,    7,    -8,      10,     15,   16,   17,
                                     -14,   -16,   23,    24,   -23,   31,    32,   33,      -30,    -31,  -32,  -33,
                                     40,    -40,   63,    64,   65,    -63,   100,  -100,    112,    113,  -112, -113,
                                     125,   126,   127,   128,  130,   -125,  -126, -127,    149,    -149, -150, -180,
                                     200,   -200,  252,   -252, 253,   300,   -300, 1000,    1008,   1022, 1023, 1024,
                                     -1008, -1022, -1023, 1080, -1080, -1140, 2100, INT_MAX, INT_MIN};
    Stage stage(65536 * 8);
    size_t tested = 0;
    for (const Conversion& c : conversions()) {
        Random random(c.function->name);
        ++tested;
        for (const int scaleFactor : c.scales ? scaleFactors : std::vector<int>{0}) {
            Operands operands = randomOperands(*c.function, 1, random);
            operands.vectors[0] = critical(c, scaleFactor, random);
            operands.count = operands.vectors[0].size() / bytesOf(c.from);
            operands.vectors[1].resize(operands.count * bytesOf(c.to));
            operands.setScaleFactor(*c.function, scaleFactor);
            for (const int mode : {0, 1, 2, 7, -1}) {
                if (mode != 0 && !c.rounds) break;
                if (c.rounds && c.function->rejectsRoundMode(mode)) continue;
                if ((mode == 7 || mode == -1) && scaleFactor % 4 != 0) continue;
                if (c.rounds) operands.values[c.function->indexOf(Role::roundMode)].set(mode);
                std::vector<Bytes> wanted = operands.vectors;
                for (size_t i = 0; i < operands.count; ++i) {
                    c.store(&operands.vectors[0][i * bytesOf(c.from)], &wanted[1][i * bytesOf(c.to)], mode,
                            scaleFactor);
                }
                for (const Level level : levels()) {
                    useLevel(level);
                    ASSERT_EQ(stage.call(*c.function, operands, 0, operands.count, {}), zvpStsOk);
                    ASSERT_EQ(differences(*c.function, stage, wanted, 0, operands.count), "")
                        << c.function->name << " by " << levelName(level) << ", mode " << mode << ", scale factor "
                        << scaleFactor;
                    // In short vectors too.
                    const size_t first = random.below(operands.count - 70), count = 1 + random.below(70);
                    ASSERT_EQ(stage.call(*c.function, operands, first, count, {}), zvpStsOk);
                    ASSERT_EQ(differences(*c.function, stage, wanted, first, count), "")
                        << c.function->name << " by " << levelName(level) << ", mode " << mode << ", scale factor "
                        << scaleFactor << ", " << count << " elements";
                }
            }
        }
    }
    EXPECT_EQ(tested, 39u);
    useLevel(levels().back());
}

// A few by hand.
TEST(Conversion, Examples) {
    const Zvp32f halves[4] = {2.5f, 40000.0f, 0.49999997f, -8388607.5f};
    const struct {
        ZvpRoundMode mode;
        Zvp16s result[4];
    } cases[] = {{zvpRndNear, {2, 32767, 0, -32768}},
                 {zvpRndZero, {2, 32767, 0, -32768}},
                 {zvpRndFinancial, {3, 32767, 0, -32768}},
                 {7, {3, 32767, 0, -32768}}};
    for (const auto& c : cases) {
        Zvp16s result[4];
        EXPECT_EQ(zvpsConvert_32f16s_Sfs(halves, result, 4, c.mode, 0), zvpStsOk);
        EXPECT_TRUE(std::equal(result, result + 4, c.result)) << "mode " << c.mode;
    }
    const Zvp16s one = 1;
    Zvp32f scaled = 0;
    zvpsConvert_16s32f_Sfs(&one, &scaled, 1, 200);
    EXPECT_EQ(scaled, 0x1p-126f);
    zvpsConvert_16s32f_Sfs(&one, &scaled, 1, -200);
    EXPECT_EQ(scaled, 0x1p112f);
}

} // namespace
} // namespace zvps::test
