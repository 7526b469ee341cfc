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

// clang-format off
const Zvp8u kMuLawOfALaw[256] = {
    42, 43, 40, 41, 46, 47, 44, 45, 34, 35, 32, 33, 38, 39, 36, 37,
    57, 58, 55, 56, 61, 62, 59, 60, 49, 50, 47, 48, 53, 54, 51, 52,
    10, 11, 8, 9, 14, 15, 12, 13, 2, 3, 0, 1, 6, 7, 4, 5,
    26, 27, 24, 25, 30, 31, 28, 29, 18, 19, 16, 17, 22, 23, 20, 21,
    98, 99, 96, 97, 102, 103, 100, 101, 93, 93, 92, 92, 95, 95, 94, 94,
    116, 118, 112, 114, 124, 126, 120, 122, 106, 107, 104, 105, 110, 111, 108, 109,
    72, 73, 70, 71, 76, 77, 74, 75, 64, 65, 63, 63, 68, 69, 66, 67,
    86, 87, 84, 85, 90, 91, 88, 89, 79, 79, 78, 78, 82, 83, 80, 81,
    170, 171, 168, 169, 174, 175, 172, 173, 162, 163, 160, 161, 166, 167, 164, 165,
    185, 186, 183, 184, 189, 190, 187, 188, 177, 178, 175, 176, 181, 182, 179, 180,
    138, 139, 136, 137, 142, 143, 140, 141, 130, 131, 128, 129, 134, 135, 132, 133,
    154, 155, 152, 153, 158, 159, 156, 157, 146, 147, 144, 145, 150, 151, 148, 149,
    226, 227, 224, 225, 230, 231, 228, 229, 221, 221, 220, 220, 223, 223, 222, 222,
    244, 246, 240, 242, 252, 254, 248, 250, 234, 235, 232, 233, 238, 239, 236, 237,
    200, 201, 198, 199, 204, 205, 202, 203, 192, 193, 191, 191, 196, 197, 194, 195,
    214, 215, 212, 213, 218, 219, 216, 217, 207, 207, 206, 206, 210, 211, 208, 209,
};

const Zvp8u kALawOfMuLaw[256] = {
    42, 43, 40, 41, 46, 47, 44, 45, 34, 35, 32, 33, 38, 39, 36, 37,
    58, 59, 56, 57, 62, 63, 60, 61, 50, 51, 48, 49, 54, 55, 52, 53,
    10, 11, 8, 9, 14, 15, 12, 13, 2, 3, 0, 1, 6, 7, 4, 26,
    27, 24, 25, 30, 31, 28, 29, 18, 19, 16, 17, 22, 23, 20, 21, 106,
    104, 105, 110, 111, 108, 109, 98, 99, 96, 97, 102, 103, 100, 101, 122, 120,
    126, 127, 124, 125, 114, 115, 112, 113, 118, 119, 116, 117, 75, 73, 79, 77,
    66, 67, 64, 65, 70, 71, 68, 69, 90, 91, 88, 89, 94, 95, 92, 93,
    82, 82, 83, 83, 80, 80, 81, 81, 86, 86, 87, 87, 84, 84, 85, 85,
    170, 171, 168, 169, 174, 175, 172, 173, 162, 163, 160, 161, 166, 167, 164, 165,
    186, 187, 184, 185, 190, 191, 188, 189, 178, 179, 176, 177, 182, 183, 180, 181,
    138, 139, 136, 137, 142, 143, 140, 141, 130, 131, 128, 129, 134, 135, 132, 154,
    155, 152, 153, 158, 159, 156, 157, 146, 147, 144, 145, 150, 151, 148, 149, 234,
    232, 233, 238, 239, 236, 237, 226, 227, 224, 225, 230, 231, 228, 229, 250, 248,
    254, 255, 252, 253, 242, 243, 240, 241, 246, 247, 244, 245, 203, 201, 207, 205,
    194, 195, 192, 193, 198, 199, 196, 197, 218, 219, 216, 217, 222, 223, 220, 221,
    210, 210, 211, 211, 208, 208, 209, 209, 214, 214, 215, 215, 212, 212, 213, 213,
};
// clang-format on

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
    EXPECT_CODES(ALawToMuLaw_8u, kMuLawOfALaw[code]);
    EXPECT_CODES(MuLawToALaw_8u, kALawOfMuLaw[code]);
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
