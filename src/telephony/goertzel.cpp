#include "zvps/goertzel.h"

#include "core/checks.hpp"
#include "core/elements.hpp"
#include "core/level.hpp"
#include "telephony/goertzel.table.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace zvps {
namespace {

// exp(-2 pi i turns), exact at whole quarters.
Rotation rotation(double turns) {
    constexpr double kPi = 3.14159265358979323846;
    const double quarters = std::nearbyint(4 * turns);
    const double angle = 2 * kPi * (turns - quarters / 4);
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    switch (static_cast<int>(quarters) & 3) {
    case 0:
        return {c, -s};
    case 1:
        return {-s, -c};
    case 2:
        return {-c, s};
    default:
        return {s, c};
    }
}

Rotation squared(Rotation r) {
    return {r.re * r.re - r.im * r.im, 2 * r.re * r.im};
}

// Those that a transform of n elements takes.
GoertzelRotations rotations(double frequency, size_t n) {
    // Powers of two times the frequency are exact.
    const auto power = [&](int log2) {
        const double turns = std::ldexp(frequency, log2);
        return rotation(turns - std::floor(turns));
    };
    GoertzelRotations result{};
    result.joins[0] = power(0);
    for (int k = 1; k < kGoertzelChainsLog2; ++k)
        result.joins[k] = squared(result.joins[k - 1]);
    if (n > size_t{1} << kGoertzelChainsLog2) result.chain = power(kGoertzelChainsLog2);
    if (n > size_t{1} << kGoertzelBlockLog2) result.block = power(kGoertzelBlockLog2);
    return result;
}

template <class P>
P storedPart(double v, int scaleFactor) {
    if constexpr (std::is_integral_v<P>) {
        using Limits = std::numeric_limits<P>;
        // No sum is beyond 2^47 or, but for 0, below the normal numbers: more places change no result.
        const double scaled = std::nearbyint(std::ldexp(v, -std::clamp(scaleFactor, -1100, 1100)));
        return static_cast<P>(std::clamp<double>(scaled, Limits::min(), Limits::max()));
    } else {
        return static_cast<P>(v);
    }
}

template <class Frequency>
bool isRelativeFrequency(Frequency f) {
    return f >= 0 && f < 1;
}

// One transform for each of `count` frequencies.
template <class Kernel, class T, class Value, class Frequency>
ZvpStatus goertzel(Kernel kernel, const T* src, int len, Value* val, const Frequency* frequencies, int count,
                   int scaleFactor = 0) {
    if (const ZvpStatus status = checkVectors(len, src, val, frequencies)) return status;
    if (!std::all_of(frequencies, frequencies + count, isRelativeFrequency<Frequency>)) return zvpStsBadRelFreq;
    const auto n = static_cast<size_t>(len);
    GoertzelRotations each[2];
    std::transform(frequencies, frequencies + count, each, [n](Frequency f) { return rotations(f, n); });
    double values[4];
    kernel(parts(src), n, each, count, values);
    for (int i = 0; i < count; ++i) {
        using P = Part<Value>;
        val[i] = {storedPart<P>(values[2 * i], scaleFactor), storedPart<P>(values[2 * i + 1], scaleFactor)};
    }
    return zvpStsOk;
}

} // namespace
} // namespace zvps

#define ZVPS_GOERTZEL(TYPE, RESULT, FREQUENCY)                                                                         \
    ZvpStatus zvpsGoertz_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##RESULT* pVal, Zvp##FREQUENCY rFreq) {             \
        return zvps::goertzel(zvps::kernels().goertzel->goertzel_##TYPE, pSrc, len, pVal, &rFreq, 1);                  \
    }
#define ZVPS_GOERTZEL_TWO(TYPE, RESULT, FREQUENCY)                                                                     \
    ZvpStatus zvpsGoertzTwo_##TYPE(const Zvp##TYPE* pSrc, int len, Zvp##RESULT* pVal, const Zvp##FREQUENCY* pRFreq) {  \
        return zvps::goertzel(zvps::kernels().goertzel->goertzel_##TYPE, pSrc, len, pVal, pRFreq, 2);                  \
    }
#define ZVPS_GOERTZEL_SFS(TYPE)                                                                                        \
    ZvpStatus zvpsGoertz_##TYPE##_Sfs(const Zvp##TYPE* pSrc, int len, Zvp16sc* pVal, Zvp32f rFreq, int scaleFactor) {  \
        return zvps::goertzel(zvps::kernels().goertzel->goertzel_##TYPE, pSrc, len, pVal, &rFreq, 1, scaleFactor);     \
    }

ZVPS_GOERTZEL_SFS(16s)
ZVPS_GOERTZEL_SFS(16sc)
ZVPS_GOERTZEL(32f, 32fc, 32f)
ZVPS_GOERTZEL(32fc, 32fc, 32f)
ZVPS_GOERTZEL(64f, 64fc, 64f)
ZVPS_GOERTZEL(64fc, 64fc, 64f)
ZVPS_GOERTZEL_TWO(32f, 32fc, 32f)
ZVPS_GOERTZEL_TWO(32fc, 32fc, 32f)
ZVPS_GOERTZEL_TWO(64f, 64fc, 64f)
ZVPS_GOERTZEL_TWO(64fc, 64fc, 64f)

ZvpStatus zvpsGoertzTwo_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, const Zvp32f* pRFreq, int scaleFactor) {
    return zvps::goertzel(zvps::kernels().goertzel->goertzel_16sc, pSrc, len, pVal, pRFreq, 2, scaleFactor);
}

ZvpStatus zvpsGoertzQ15_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, Zvp16s rFreqQ15, int scaleFactor) {
    if (rFreqQ15 < 0) return zvpStsBadRelFreq;
    return zvpsGoertz_16sc_Sfs(pSrc, len, pVal, rFreqQ15 * 0x1p-15f, scaleFactor);
}

ZvpStatus zvpsGoertzTwoQ15_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, const Zvp16s* pRFreqQ15,
                                    int scaleFactor) {
    if (pRFreqQ15 == nullptr) return zvpStsNullPtr;
    if (pRFreqQ15[0] < 0 || pRFreqQ15[1] < 0) return zvpStsBadRelFreq;
    const Zvp32f frequencies[2] = {pRFreqQ15[0] * 0x1p-15f, pRFreqQ15[1] * 0x1p-15f};
    return zvpsGoertzTwo_16sc_Sfs(pSrc, len, pVal, frequencies, scaleFactor);
}
