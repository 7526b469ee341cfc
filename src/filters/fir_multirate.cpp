#include "zvps/firmr.h"

#include "core/checks.hpp"
#include "filters/fir_multirate_run.hpp"

namespace zvps {
namespace {

template <class Taps, class Data>
using StateOf = std::conditional_t<std::is_integral_v<Part<Taps>>, FirIntegerState<Data>, FirState<Taps>>;

ZvpStatus check(int tapsLen, const MultirateFactors& factors) {
    if (tapsLen < 1) return zvpStsBadFirLength;
    if (factors.up < 1 || factors.down < 1) return zvpStsBadMrFactor;
    const auto isPhase = [](int phase, int factor) { return phase >= 0 && phase < factor; };
    if (!isPhase(factors.upPhase, factors.up) || !isPhase(factors.downPhase, factors.down)) return zvpStsBadMrPhase;
    return zvpStsOk;
}

bool isSingleRate(const MultirateFactors& factors) {
    return factors.up == 1 && factors.down == 1;
}

// single(size): of a state of one rate.
template <class State, class Single>
ZvpStatus getStateSize(int tapsLen, int up, int down, int* size, Single single) {
    if (size == nullptr) return zvpStsNullPtr;
    const MultirateFactors factors = {up, 0, down, 0};
    if (const ZvpStatus status = check(tapsLen, factors)) return status;
    if (isSingleRate(factors)) return single(size);
    const int bytes = multirateStateSize<State>(factors, tapsLen);
    if (bytes < 0) return zvpStsNoMemory;
    *size = bytes;
    return zvpStsOk;
}

template <class State, class Source>
State& build(uint32_t tag, const Source* taps, int tapsLen, int tapsFactor, const MultirateFactors& factors,
             Zvp8u* buffer) {
    auto& state = *buildMultirateState<State>(tag, factors, tapsLen, ownGetNumThreads(), buffer);
    setFirTaps(state, taps, tapsFactor);
    return state;
}

template <class State, class Opaque, class Source, class Data, class Single>
ZvpStatus init(uint32_t tag, Opaque** ppState, const Source* taps, int tapsLen, int tapsFactor,
               const MultirateFactors& factors, const Data* dlyLine, Zvp8u* buffer, Single single) {
    if (ppState == nullptr || taps == nullptr || buffer == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = check(tapsLen, factors)) return status;
    if (isSingleRate(factors)) return single();
    auto& state = build<State>(tag, taps, tapsLen, tapsFactor, factors, buffer);
    setFirPast(state, dlyLine);
    *ppState = reinterpret_cast<Opaque*>(&state);
    return zvpStsOk;
}

template <class State, class Opaque, class Source, class Data, class Single>
ZvpStatus initAlloc(uint32_t tag, Opaque** ppState, const Source* taps, int tapsLen, int tapsFactor,
                    const MultirateFactors& factors, const Data* dlyLine, Single single) {
    if (ppState == nullptr || taps == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = check(tapsLen, factors)) return status;
    if (isSingleRate(factors)) return single();
    const int bytes = multirateStateSize<State>(factors, tapsLen);
    Zvp8u* const memory = bytes < 0 ? nullptr : zvpsMalloc_8u(bytes);
    if (memory == nullptr) return zvpStsNoMemory;
    auto& state = build<State>(tag, taps, tapsLen, tapsFactor, factors, memory);
    setFirPast(state, dlyLine);
    state.isAllocated = 1;
    *ppState = reinterpret_cast<Opaque*>(&state);
    return zvpStsOk;
}

template <class Taps, class Data, class Source>
ZvpStatus filterDirect(const Data* src, Data* dst, int numIters, const Source* taps, int tapsLen, int tapsFactor,
                       const MultirateFactors& factors, Data* dlyLine, int scaleFactor) {
    if (const ZvpStatus status = checkVectors(numIters, src, dst, taps, dlyLine)) return status;
    if (const ZvpStatus status = check(tapsLen, factors)) return status;
    using State = StateOf<Taps, Data>;
    constexpr size_t kStateBytes = 16384;
    const int bytes = multirateStateSize<State>(factors, tapsLen);
    if (bytes < 0) return zvpStsNoMemory;
    const Scratch<Zvp8u, kStateBytes> memory(bytes);
    if (memory.get() == nullptr) return zvpStsNoMemory;
    auto& state = build<State>(kFirMultirateTag<Taps, Data>, taps, tapsLen, tapsFactor, factors, memory.get());
    setFirPast(state, dlyLine);
    if (const ZvpStatus status = filterMultirate(state, src, dst, static_cast<size_t>(numIters), scaleFactor, false)) {
        return status;
    }
    getFirPast(state, dlyLine);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_FACTORS int upFactor, int upPhase, int downFactor, int downPhase
#define ZVPS_FACTORS_GIVEN                                                                                             \
    zvps::MultirateFactors {                                                                                           \
        upFactor, upPhase, downFactor, downPhase                                                                       \
    }

// PREFIX, DATA and END make up the name, STATE and TAPS are the types of the state and its taps, SOURCE is that of the
// caller's taps. FACTOR_PARAMETER: of taps with a factor, its declaration and a comma. FACTOR: its value.
// FACTOR_PASSED: a comma and the value.
#define ZVPS_FIRMR(PREFIX, DATA, END, TAPS, SOURCE, FACTOR_PARAMETER, FACTOR, FACTOR_PASSED)                           \
    ZvpStatus zvpsFIRMRGetStateSize##PREFIX##_##DATA##END(int tapsLen, int upFactor, int downFactor, int* pSize) {     \
        return zvps::getStateSize<zvps::StateOf<Zvp##TAPS, Zvp##DATA>>(                                                \
            tapsLen, upFactor, downFactor, pSize,                                                                      \
            [=](int* size) { return zvpsFIRGetStateSize##PREFIX##_##DATA(tapsLen, size); });                           \
    }                                                                                                                  \
    ZvpStatus zvpsFIRMRInit##PREFIX##_##DATA##END(ZvpsFIRState##PREFIX##_##DATA** ppState, const Zvp##SOURCE* pTaps,   \
                                                  int tapsLen, FACTOR_PARAMETER ZVPS_FACTORS,                          \
                                                  const Zvp##DATA* pDlyLine, Zvp8u* pBuffer) {                         \
        return zvps::init<zvps::StateOf<Zvp##TAPS, Zvp##DATA>>(                                                        \
            zvps::kFirMultirateTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, FACTOR, ZVPS_FACTORS_GIVEN,         \
            pDlyLine, pBuffer, [=] {                                                                                   \
                return zvpsFIRInit##PREFIX##_##DATA##END(ppState, pTaps, tapsLen FACTOR_PASSED, pDlyLine, pBuffer);    \
            });                                                                                                        \
    }                                                                                                                  \
    ZvpStatus zvpsFIRMRInitAlloc##PREFIX##_##DATA##END(ZvpsFIRState##PREFIX##_##DATA** ppState,                        \
                                                       const Zvp##SOURCE* pTaps, int tapsLen,                          \
                                                       FACTOR_PARAMETER ZVPS_FACTORS, const Zvp##DATA* pDlyLine) {     \
        return zvps::initAlloc<zvps::StateOf<Zvp##TAPS, Zvp##DATA>>(                                                   \
            zvps::kFirMultirateTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, FACTOR, ZVPS_FACTORS_GIVEN,         \
            pDlyLine,                                                                                                  \
            [=] { return zvpsFIRInitAlloc##PREFIX##_##DATA##END(ppState, pTaps, tapsLen FACTOR_PASSED, pDlyLine); });  \
    }

#define ZVPS_FIRMR_DIRECT(PREFIX, DATA, TAPS)                                                                          \
    ZvpStatus zvpsFIRMR##PREFIX##_Direct_##DATA(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters,                  \
                                                const Zvp##TAPS* pTaps, int tapsLen, ZVPS_FACTORS,                     \
                                                Zvp##DATA* pDlyLine) {                                                 \
        return zvps::filterDirect<Zvp##TAPS>(pSrc, pDst, numIters, pTaps, tapsLen, 0, ZVPS_FACTORS_GIVEN, pDlyLine,    \
                                             0);                                                                       \
    }                                                                                                                  \
    ZvpStatus zvpsFIRMR##PREFIX##_Direct_##DATA##_I(Zvp##DATA* pSrcDst, int numIters, const Zvp##TAPS* pTaps,          \
                                                    int tapsLen, ZVPS_FACTORS, Zvp##DATA* pDlyLine) {                  \
        return zvps::filterDirect<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, 0,                 \
                                                        ZVPS_FACTORS_GIVEN, pDlyLine, 0);                              \
    }
#define ZVPS_FIRMR_DIRECT_SFS(PREFIX, DATA, TAPS, FACTOR_PARAMETER, FACTOR)                                            \
    ZvpStatus zvpsFIRMR##PREFIX##_Direct_##DATA##_Sfs(                                                                 \
        const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters, const Zvp##TAPS* pTaps, int tapsLen,                     \
        FACTOR_PARAMETER ZVPS_FACTORS, Zvp##DATA* pDlyLine, int scaleFactor) {                                         \
        return zvps::filterDirect<Zvp##TAPS>(pSrc, pDst, numIters, pTaps, tapsLen, FACTOR, ZVPS_FACTORS_GIVEN,         \
                                             pDlyLine, scaleFactor);                                                   \
    }                                                                                                                  \
    ZvpStatus zvpsFIRMR##PREFIX##_Direct_##DATA##_ISfs(Zvp##DATA* pSrcDst, int numIters, const Zvp##TAPS* pTaps,       \
                                                       int tapsLen, FACTOR_PARAMETER ZVPS_FACTORS,                     \
                                                       Zvp##DATA* pDlyLine, int scaleFactor) {                         \
        return zvps::filterDirect<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, FACTOR,            \
                                                        ZVPS_FACTORS_GIVEN, pDlyLine, scaleFactor);                    \
    }

#define ZVPS_FIRMR_FLOAT(PREFIX, DATA, TAPS)                                                                           \
    ZVPS_FIRMR(PREFIX, DATA, , TAPS, TAPS, , 0, )                                                                      \
    ZVPS_FIRMR_DIRECT(PREFIX, DATA, TAPS)
#define ZVPS_FIRMR_FLOAT_SFS(PREFIX, DATA, TAPS)                                                                       \
    ZVPS_FIRMR(PREFIX, DATA, , TAPS, TAPS, , 0, )                                                                      \
    ZVPS_FIRMR_DIRECT_SFS(PREFIX, DATA, TAPS, , 0)

ZVPS_FIRMR_FLOAT(, 32f, 32f)
ZVPS_FIRMR_FLOAT(, 32fc, 32fc)
ZVPS_FIRMR_FLOAT(, 64f, 64f)
ZVPS_FIRMR_FLOAT(, 64fc, 64fc)
ZVPS_FIRMR_FLOAT(64f, 32f, 64f)
ZVPS_FIRMR_FLOAT(64fc, 32fc, 64fc)
ZVPS_FIRMR_FLOAT_SFS(, 16s, 16s)
ZVPS_FIRMR_FLOAT_SFS(32f, 16s, 32f)
ZVPS_FIRMR_FLOAT_SFS(32fc, 16sc, 32fc)
ZVPS_FIRMR_FLOAT_SFS(64f, 16s, 64f)
ZVPS_FIRMR_FLOAT_SFS(64f, 32s, 64f)
ZVPS_FIRMR_FLOAT_SFS(64fc, 16sc, 64fc)
ZVPS_FIRMR_FLOAT_SFS(64fc, 32sc, 64fc)

#define ZVPS_TAPS_FACTOR int tapsFactor,
#define ZVPS_TAPS_FACTOR_PASSED , tapsFactor

// Taps with a factor, and in single precision.
#define ZVPS_FIRMR_INTEGER(TAPS, DATA, FLOAT)                                                                          \
    ZVPS_FIRMR(TAPS, DATA, , TAPS, TAPS, ZVPS_TAPS_FACTOR, tapsFactor, ZVPS_TAPS_FACTOR_PASSED)                        \
    ZVPS_FIRMR(TAPS, DATA, FLOAT, TAPS, FLOAT, , 0, )                                                                  \
    ZVPS_FIRMR_DIRECT_SFS(TAPS, DATA, TAPS, ZVPS_TAPS_FACTOR, tapsFactor)

ZVPS_FIRMR_INTEGER(32s, 16s, 32f)
ZVPS_FIRMR_INTEGER(32sc, 16sc, 32fc)

#define ZVPS_FIRMR_STREAM(TYPE)                                                                                        \
    ZvpStatus zvpsFIRMRStreamGetStateSize_##TYPE(int tapsLen, int upFactor, int downFactor, int* pSize) {              \
        return zvpsFIRMRGetStateSize_##TYPE(tapsLen, upFactor, downFactor, pSize);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFIRMRStreamInit_##TYPE(ZvpsFIRState_##TYPE** ppState, const Zvp##TYPE* pTaps, int tapsLen,           \
                                         ZVPS_FACTORS, Zvp8u* pBuffer) {                                               \
        const Zvp##TYPE* const noPast = nullptr;                                                                       \
        return zvps::init<zvps::StateOf<Zvp##TYPE, Zvp##TYPE>>(                                                        \
            zvps::kFirMultirateStreamTag<Zvp##TYPE, Zvp##TYPE>, ppState, pTaps, tapsLen, 0, ZVPS_FACTORS_GIVEN,        \
            noPast, pBuffer, [=] { return zvpsFIRStreamInit_##TYPE(ppState, pTaps, tapsLen, pBuffer); });              \
    }                                                                                                                  \
    ZvpStatus zvpsFIRMRStreamInitAlloc_##TYPE(ZvpsFIRState_##TYPE** ppState, const Zvp##TYPE* pTaps, int tapsLen,      \
                                              ZVPS_FACTORS) {                                                          \
        const Zvp##TYPE* const noPast = nullptr;                                                                       \
        return zvps::initAlloc<zvps::StateOf<Zvp##TYPE, Zvp##TYPE>>(                                                   \
            zvps::kFirMultirateStreamTag<Zvp##TYPE, Zvp##TYPE>, ppState, pTaps, tapsLen, 0, ZVPS_FACTORS_GIVEN,        \
            noPast, [=] { return zvpsFIRStreamInitAlloc_##TYPE(ppState, pTaps, tapsLen); });                           \
    }

ZVPS_FIRMR_STREAM(16s)
ZVPS_FIRMR_STREAM(32f)
