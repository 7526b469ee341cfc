// Companding of every code and every sample, on every level. Where and how vectors are read and written is a matter of
// the laws.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

namespace zvps::test {
namespace {

int expandALaw(int code) {
    const int a = code ^ 0x55;
    const int step = (a & 0x0F) << 4;
    const int segment = (a & 0x70) >> 4;
    const int magnitude = segment == 0 ? step + 8 : (step + 0x108) << (segment - 1);
    return (a & 0x80) != 0 ? magnitude : -magnitude;
}

int expandMuLaw(int code) {
    const int u = ~code & 0xFF;
    const int magnitude = ((((u & 0x0F) << 3) + 0x84) << ((u & 0x70) >> 4)) - 0x84;
    return (u & 0x80) != 0 ? -magnitude : magnitude;
}

int compressALaw(int x) {
    const int v = x >> 3;
    const int m = v < 0 ? -v - 1 : v;
    int segment = 0;
    while (m > ((256 << segment) - 1) >> 3)
        ++segment;
    const int shift = segment == 0 ? 1 : segment;
    return (segment << 4 | (m >> shift & 0x0F)) ^ (v < 0 ? 0x55 : 0xD5);
}

int compressMuLaw(int x) {
    const int m = std::min(((x < 0 ? -x - 1 : x) >> 2) + 33, 8191);
    int k = 1;
    while (m >> 6 >> (k - 1) != 0)
        ++k;
    return (8 - k) << 4 | (15 - (m >> k & 0x0F)) | (x >= 0 ? 0x80 : 0);
}

// By way of the linear value, but for the codes that G.711 pairs with a neighbour.
int muLawOfALaw(int code) {
    return compressMuLaw(expandALaw(code)) + ((code & 0x70) == 0 ? 1 : 0);
}

int aLawOfMuLaw(int code) {
    const int place = code & 0x7F;
    const bool isNeighbour = (place >= 0x20 && place <= 0x2E) || place == 0x3F || place == 0x4E || place == 0x4F;
    const int uninverted = (compressALaw(expandMuLaw(place | 0x80)) ^ 0x55) & 0x7F;
    return ((code & 0x80) | (uninverted + (isNeighbour ? 1 : 0))) ^ 0x55;
}

template <class S, class D, class Expected>
void expectEach(const char* name, ZvpStatus (*function)(const S*, D*, int), const std::vector<S>& inputs,
                Expected expected) {
    for (const Level level : levels()) {
        useLevel(level);
        std::vector<D> outputs(inputs.size());
        ASSERT_EQ(function(inputs.data(), outputs.data(), static_cast<int>(inputs.size())), zvpStsOk);
        for (size_t i = 0; i < inputs.size(); ++i) {
            ASSERT_EQ(outputs[i], static_cast<D>(expected(inputs[i])))
                << name << " of " << +inputs[i] << " by " << levelName(level);
        }
    }
    useLevel(levels().back());
}

std::vector<Zvp8u> allCodes() {
    std::vector<Zvp8u> codes;
    for (int code = 0; code < 256; ++code)
        codes.push_back(static_cast<Zvp8u>(code));
    return codes;
}

TEST(Companding, EveryCode) {
    const auto codes = allCodes();
#define EXPECT_CODES(name, expected) expectEach(#name, zvps##name, codes, [](int code) { return expected; })
    EXPECT_CODES(ALawToLin_8u16s, expandALaw(code));
    EXPECT_CODES(MuLawToLin_8u16s, expandMuLaw(code));
    EXPECT_CODES(ALawToLin_8u32f, std::ldexp(static_cast<float>(expandALaw(code)), -15));
    EXPECT_CODES(MuLawToLin_8u32f, std::ldexp(static_cast<float>(expandMuLaw(code)), -15));
    EXPECT_CODES(ALawToMuLaw_8u, muLawOfALaw(code));
    EXPECT_CODES(MuLawToALaw_8u, aLawOfMuLaw(code));
#undef EXPECT_CODES
}

TEST(Companding, EverySample) {
    std::vector<Zvp16s> samples;
    for (int x = SHRT_MIN; x <= SHRT_MAX; ++x)
        samples.push_back(static_cast<Zvp16s>(x));
    expectEach("LinToALaw_16s8u", zvpsLinToALaw_16s8u, samples, compressALaw);
    expectEach("LinToMuLaw_16s8u", zvpsLinToMuLaw_16s8u, samples, compressMuLaw);
}

// Every quarter of a 16-bit step, so every tie; its neighbours; and what lies outside.
TEST(Companding, FloatSamples) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    std::vector<Zvp32f> samples = {kInfinity, -kInfinity, std::nanf(""), -std::nanf(""), 1e30f,     -1e30f, 3.4e38f,
                                   -3.4e38f,  1e-30f,     -1e-30f,       65536.0f,       -65536.0f, -0.0f};
    for (int quarters = -4 * 32770; quarters <= 4 * 32770; ++quarters) {
        const float x = static_cast<float>(quarters) / (4 * 32768);
        samples.insert(samples.end(), {x, std::nextafter(x, kInfinity), std::nextafter(x, -kInfinity)});
    }
    const auto to16 = [](float x) {
        return std::isnan(x) ? 0
                             : static_cast<int>(std::nearbyint(std::fmax(-32768.0, std::fmin(32767.0, x * 32768.0))));
    };
    expectEach("LinToALaw_32f8u", zvpsLinToALaw_32f8u, samples, [&](float x) { return compressALaw(to16(x)); });
    expectEach("LinToMuLaw_32f8u", zvpsLinToMuLaw_32f8u, samples, [&](float x) { return compressMuLaw(to16(x)); });
}

} // namespace
} // namespace zvps::test
