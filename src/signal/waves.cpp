#include "zvps/generators.h"

#include "core/checks.hpp"
#include "core/elements.hpp"
#include "core/level.hpp"
#include "signal/generator_state.hpp"
#include "signal/waves.table.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>

namespace zvps {
namespace {

constexpr double kPi = 3.1415926535897932384626433832795;
constexpr double kTwoPi = 2 * kPi;
constexpr int kMostFrequencyQ15 = 16383;
constexpr int kMostPhaseQ15 = 205886;     // the largest below 2 pi
constexpr int kMostAsymmetryQ15 = 102943; // the largest below pi

double fromQ15(int value) {
    return value * 0x1p-15;
}

// ---- Phases ----

// A phase from 0 up to 2 pi in units of 2^-64 turns, rounded down.
uint64_t toTurns(double phase) {
    constexpr uint64_t kInverse = 0xa2f9836e4e441529; // 2^66 / (2 pi)
    uint64_t bits;
    std::memcpy(&bits, &phase, sizeof(bits));
    // phase = mantissa 2^(exponent - 1075)
    const uint64_t mantissa = (bits & 0x000fffffffffffff) | 0x0010000000000000;
    const uint64_t places = 1077 - (bits >> 52 & 0x7ff);
    return places > 127 ? 0 : static_cast<uint64_t>(TurnsInteger{mantissa} * kInverse >> places);
}

// For frequencies from 0 up to 1/2; exact but for those below 2^-75.
Oscillation oscillation(double frequency, double phase) {
    const double upper = frequency * 0x1p64;
    const auto high = static_cast<uint64_t>(upper);
    const auto low = static_cast<uint64_t>((upper - static_cast<double>(high)) * 0x1p64);
    return {toTurns(phase), {high, low}};
}

// A phase in radians as the type of the caller's holds it.
template <class Phase>
Phase radians(uint64_t turns) {
    constexpr uint64_t kTurn = 0xc90fdaa22168c235; // 2 pi 2^61
    const auto result = static_cast<Phase>(static_cast<uint64_t>(TurnsInteger{turns} * kTurn >> 64)) * Phase{0x1p-61};
    return result < kTwoPi ? result : Phase{0};
}
int radiansQ15(uint64_t turns) {
    const auto result = static_cast<int>(std::nearbyint(radians<double>(turns) * 0x1p15));
    return result <= kMostPhaseQ15 ? result : 0;
}

// ---- Checks ----

// All false for a NaN.
template <class T>
bool isFrequency(T frequency) {
    return frequency >= 0 && frequency < 0.5;
}
template <class T>
bool isPhase(T phase) {
    return phase >= 0 && phase < kTwoPi;
}
template <class T>
bool isAsymmetry(T asymmetry) {
    return asymmetry >= -kPi && asymmetry < kPi;
}

ZvpStatus checkToneQ15(int magnitude, int frequency, int phase) {
    if (magnitude < 1) return zvpStsBadToneMagn;
    if (frequency < 0 || frequency > kMostFrequencyQ15) return zvpStsBadToneFreq;
    return phase < 0 || phase > kMostPhaseQ15 ? zvpStsBadTonePhase : zvpStsOk;
}
ZvpStatus checkTriangleQ15(int magnitude, int frequency, int phase, int asymmetry) {
    if (magnitude < 1) return zvpStsBadTriMagn;
    if (frequency < 0 || frequency > kMostFrequencyQ15) return zvpStsBadTriFreq;
    if (phase < 0 || phase > kMostPhaseQ15) return zvpStsBadTriPhase;
    return asymmetry < -kMostAsymmetryQ15 || asymmetry > kMostAsymmetryQ15 ? zvpStsBadTriAsym : zvpStsOk;
}

// ---- Without a state ----

// Returns the phase after the last sample.
template <class T>
uint64_t runTone(T* dst, int len, double magnitude, double frequency, double phase) {
    const ToneSlots<T>& slots = kernels().waves->template tone<T>();
    const Oscillation wave = oscillation(frequency, phase);
    const auto n = static_cast<size_t>(len);
    typename ToneSlots<T>::Tables tables;
    slots.prepare(wave, magnitude, n, &tables);
    slots.run(dst, n, 0, wave, tables);
    return wave.phaseAt(n);
}

template <class T, class F, class Magnitude>
ZvpStatus toneDirect(T* dst, int len, Magnitude magnitude, F frequency, F* phase) {
    if (const ZvpStatus status = checkVectors(len, dst, phase)) return status;
    if (!(magnitude > 0)) return zvpStsBadToneMagn;
    if (!isFrequency(frequency)) return zvpStsBadToneFreq;
    if (!isPhase(*phase)) return zvpStsBadTonePhase;
    *phase = radians<F>(runTone(dst, len, magnitude, frequency, *phase));
    return zvpStsOk;
}

Triangle makeTriangle(double magnitude, double asymmetry, const Oscillation& wave, size_t parts) {
    constexpr double kResolution = 0x1p-52; // of phases: no peak is nearer to a trough
    constexpr uint64_t kHalfUnit = uint64_t{1} << 11;
    const double peak = std::clamp(0.5 + asymmetry / kTwoPi, kResolution, 1.0);
    Triangle triangle;
    triangle.magnitude = magnitude;
    // Lower by so little that no rounding takes the peak above the magnitude.
    constexpr double kLower = 1 - 0x1p-51;
    constexpr double kMost = std::numeric_limits<double>::max();
    triangle.up = std::min(2 * kLower / peak * magnitude, kMost);
    triangle.down = std::min(2 * kLower / std::max(0.5 - asymmetry / kTwoPi, kResolution) * magnitude, kMost);
    TurnsInteger phase = 0;
    for (size_t j = 0; j < kWaveBlock; j += parts) {
        const uint64_t turns = static_cast<uint64_t>(phase >> 64) + kHalfUnit;
        triangle.offsets[j] = turns;
        // The imaginary part.
        if (parts == 2) triangle.offsets[j + 1] = turns + (uint64_t{3} << 62);
        phase += integer(wave.frequency);
    }
    return triangle;
}

template <class T>
inline constexpr size_t kParts = sizeof(T) / sizeof(Part<T>);

// Returns the phase after the last sample in *end.
template <class T>
ZvpStatus runTriangle(T* dst, int len, double magnitude, double frequency, double asymmetry, double phase,
                      uint64_t* end) {
    if (!(magnitude > 0)) return zvpStsBadTriMagn;
    if (!isFrequency(frequency)) return zvpStsBadTriFreq;
    if (!isPhase(phase)) return zvpStsBadTriPhase;
    if (!isAsymmetry(asymmetry)) return zvpStsBadTriAsym;
    if (const ZvpStatus status = checkVectors(len, dst)) return status;
    const Oscillation wave = oscillation(frequency, phase);
    const auto n = static_cast<size_t>(len);
    *end = wave.phaseAt(n);
    return kernels().waves->template triangle<T>()(dst, n, 0, wave,
                                                   makeTriangle(magnitude, asymmetry, wave, kParts<T>));
}

template <class T, class F, class Magnitude>
ZvpStatus triangleDirect(T* dst, int len, Magnitude magnitude, F frequency, F asymmetry, F* phase) {
    if (phase == nullptr) return zvpStsNullPtr;
    uint64_t end;
    if (const ZvpStatus status = runTriangle(dst, len, magnitude, frequency, asymmetry, *phase, &end)) return status;
    *phase = radians<F>(end);
    return zvpStsOk;
}

// ---- States ----

// "xAMC" in memory.
constexpr uint32_t waveTag(char first) {
    return 0x434D4100U | static_cast<uint32_t>(first);
}

struct ToneState {
    uint32_t tag;
    double magnitude;
    double frequency;
    double phase;
    uint64_t produced; // samples so far
    Oscillation wave;
    ToneTables<double> tables;
    int32_t isAllocated;
};
static_assert(offsetof(ToneState, magnitude) == 8 && offsetof(ToneState, produced) == 32);

struct TriangleState {
    uint32_t tag;
    double magnitude;
    double frequency;
    double phase;
    double asymmetry;
    uint64_t produced;
    Oscillation wave;
    Triangle triangle;
    int32_t isAllocated;
};
static_assert(offsetof(TriangleState, asymmetry) == 32 && offsetof(TriangleState, produced) == 40);

} // namespace

template <>
struct StateOf<ZvpsToneState_16s> {
    using Type = ToneState;
    static constexpr uint32_t kTag = waveTag('H');
};
template <>
struct StateOf<ZvpsTriangleState_16s> {
    using Type = TriangleState;
    static constexpr uint32_t kTag = waveTag('I');
};

namespace {

auto buildTone(Zvp16s magnitude, int frequency, int phase) {
    return [=](ToneState* state) {
        *state = {};
        state->tag = waveTag('H');
        state->magnitude = magnitude;
        state->frequency = fromQ15(frequency);
        state->phase = fromQ15(phase);
        state->wave = oscillation(state->frequency, state->phase);
        kernels().waves->tone16s.prepare(state->wave, magnitude, SIZE_MAX, &state->tables);
    };
}

auto buildTriangle(Zvp16s magnitude, int frequency, int phase, int asymmetry) {
    return [=](TriangleState* state) {
        *state = {};
        state->tag = waveTag('I');
        state->magnitude = magnitude;
        state->frequency = fromQ15(frequency);
        state->phase = fromQ15(phase);
        state->asymmetry = fromQ15(asymmetry);
        state->wave = oscillation(state->frequency, state->phase);
        state->triangle = makeTriangle(magnitude, state->asymmetry, state->wave, 1);
    };
}

} // namespace
} // namespace zvps

// ---- Entries ----

ZvpStatus zvpsToneGetStateSizeQ15_16s(int* pSize) {
    return zvps::stateSize<ZvpsToneState_16s>(pSize);
}
ZvpStatus zvpsToneInitQ15_16s(ZvpsToneState_16s* pState, Zvp16s magn, int rFreqQ15, int phaseQ15) {
    if (pState == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = zvps::checkToneQ15(magn, rFreqQ15, phaseQ15)) return status;
    zvps::initState(pState, zvps::buildTone(magn, rFreqQ15, phaseQ15));
    return zvpStsOk;
}
ZvpStatus zvpsToneInitAllocQ15_16s(ZvpsToneState_16s** ppState, Zvp16s magn, int rFreqQ15, int phaseQ15) {
    if (ppState == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = zvps::checkToneQ15(magn, rFreqQ15, phaseQ15)) return status;
    return zvps::allocState(ppState, zvps::buildTone(magn, rFreqQ15, phaseQ15));
}
ZvpStatus zvpsToneFree(ZvpsToneState_16s* pState) {
    return zvps::freeState(pState);
}
ZvpStatus zvpsToneQ15_16s(Zvp16s* pDst, int len, ZvpsToneState_16s* pState) {
    if (const ZvpStatus status = zvps::checkRun(pDst, len, pState)) return status;
    zvps::ToneState& state = *zvps::header(pState);
    const uint64_t first = state.produced;
    state.produced += static_cast<uint64_t>(len);
    return zvps::kernels().waves->tone16s.run(pDst, static_cast<size_t>(len), first, state.wave, state.tables);
}
ZvpStatus zvpsToneQ15_Direct_16s(Zvp16s* pDst, int len, Zvp16s magn, int rFreqQ15, int* pPhaseQ15) {
    if (const ZvpStatus status = zvps::checkVectors(len, pDst, pPhaseQ15)) return status;
    if (const ZvpStatus status = zvps::checkToneQ15(magn, rFreqQ15, *pPhaseQ15)) return status;
    const uint64_t end = zvps::runTone(pDst, len, magn, zvps::fromQ15(rFreqQ15), zvps::fromQ15(*pPhaseQ15));
    *pPhaseQ15 = zvps::radiansQ15(end);
    return zvpStsOk;
}

ZvpStatus zvpsTriangleGetStateSizeQ15_16s(int* pSize) {
    return zvps::stateSize<ZvpsTriangleState_16s>(pSize);
}
ZvpStatus zvpsTriangleInitQ15_16s(ZvpsTriangleState_16s* pState, Zvp16s magn, int rFreqQ15, int phaseQ15, int asymQ15) {
    if (pState == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = zvps::checkTriangleQ15(magn, rFreqQ15, phaseQ15, asymQ15)) return status;
    zvps::initState(pState, zvps::buildTriangle(magn, rFreqQ15, phaseQ15, asymQ15));
    return zvpStsOk;
}
ZvpStatus zvpsTriangleInitAllocQ15_16s(ZvpsTriangleState_16s** ppState, Zvp16s magn, int rFreqQ15, int phaseQ15,
                                       int asymQ15) {
    if (ppState == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = zvps::checkTriangleQ15(magn, rFreqQ15, phaseQ15, asymQ15)) return status;
    return zvps::allocState(ppState, zvps::buildTriangle(magn, rFreqQ15, phaseQ15, asymQ15));
}
ZvpStatus zvpsTriangleFree(ZvpsTriangleState_16s* pState) {
    return zvps::freeState(pState);
}
ZvpStatus zvpsTriangleQ15_16s(Zvp16s* pDst, int len, ZvpsTriangleState_16s* pState) {
    if (const ZvpStatus status = zvps::checkRun(pDst, len, pState)) return status;
    zvps::TriangleState& state = *zvps::header(pState);
    const uint64_t first = state.produced;
    state.produced += static_cast<uint64_t>(len);
    return zvps::kernels().waves->triangle16s(pDst, static_cast<size_t>(len), first, state.wave, state.triangle);
}
ZvpStatus zvpsTriangleQ15_Direct_16s(Zvp16s* pDst, int len, Zvp16s magn, int rFreqQ15, int asymQ15, int* pPhaseQ15) {
    if (pPhaseQ15 == nullptr) return zvpStsNullPtr;
    uint64_t end;
    if (const ZvpStatus status = zvps::runTriangle(pDst, len, magn, zvps::fromQ15(rFreqQ15), zvps::fromQ15(asymQ15),
                                                   zvps::fromQ15(*pPhaseQ15), &end)) {
        return status;
    }
    *pPhaseQ15 = zvps::radiansQ15(end);
    return zvpStsOk;
}

#define ZVPS_WAVES(TYPE, MAGNITUDE, REAL)                                                                              \
    ZvpStatus zvpsTone_Direct_##TYPE(Zvp##TYPE* pDst, int len, MAGNITUDE magn, REAL rFreq, REAL* pPhase,               \
                                     ZvpHintAlgorithm) {                                                               \
        return zvps::toneDirect(pDst, len, magn, rFreq, pPhase);                                                       \
    }                                                                                                                  \
    ZvpStatus zvpsTriangle_Direct_##TYPE(Zvp##TYPE* pDst, int len, MAGNITUDE magn, REAL rFreq, REAL asym,              \
                                         REAL* pPhase) {                                                               \
        return zvps::triangleDirect(pDst, len, magn, rFreq, asym, pPhase);                                             \
    }

ZVPS_WAVES(16s, Zvp16s, Zvp32f)
ZVPS_WAVES(16sc, Zvp16s, Zvp32f)
ZVPS_WAVES(32f, Zvp32f, Zvp32f)
ZVPS_WAVES(32fc, Zvp32f, Zvp32f)
ZVPS_WAVES(64f, Zvp64f, Zvp64f)
ZVPS_WAVES(64fc, Zvp64f, Zvp64f)
