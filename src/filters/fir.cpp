#include "zvps/fir.h"

#include "core/checks.hpp"
#include "filters/fir_multirate_run.hpp"
#include "filters/fir_run.hpp"

namespace zvps {
namespace {

// ---- Kinds of states ----

// How the functions of a name find their state behind the opaque type.
template <class Taps, class Data>
struct FirKind {
    using State = FirState<Taps>;

    static int size(int tapsLen, int threads) { return firStateSize<Taps>(tapsLen, threads, FirUse::lasting); }
    static State* build(uint32_t tag, int tapsLen, int threads, unsigned char* buffer) {
        return buildFirState<Taps>(tag, tapsLen, threads, FirUse::lasting, buffer);
    }
};
template <class Data>
struct IntegerFirKind {
    using State = FirIntegerState<Data>;

    static int size(int tapsLen, int) { return firIntegerStateSize<Data>(tapsLen); }
    static State* build(uint32_t tag, int tapsLen, int threads, unsigned char* buffer) {
        return buildFirIntegerState<Data>(tag, tapsLen, threads, buffer);
    }
};
template <>
struct FirKind<Zvp16s, Zvp16s> : IntegerFirKind<Zvp16s> {};
template <>
struct FirKind<Zvp32s, Zvp16s> : IntegerFirKind<Zvp16s> {};
template <>
struct FirKind<Zvp32sc, Zvp16sc> : IntegerFirKind<Zvp16sc> {};

template <class Kind, class Opaque>
auto& stateOf(Opaque* pState) {
    using State = typename Kind::State;
    if constexpr (std::is_const_v<Opaque>) {
        return *reinterpret_cast<const State*>(pState);
    } else {
        return *reinterpret_cast<State*>(pState);
    }
}

template <class Opaque>
uint32_t tagOf(const Opaque* pState) {
    return *reinterpret_cast<const uint32_t*>(pState);
}

// The states of a name: of one rate, also those of several rates, and all, with and without history.
template <class Taps, class Data>
bool isSingleRate(uint32_t tag) {
    return tag == kFirTag<Taps, Data>;
}
template <class Taps, class Data>
bool isFir(uint32_t tag) {
    return isSingleRate<Taps, Data>(tag) || tag == kFirMultirateTag<Taps, Data>;
}
template <class Taps, class Data>
bool isStream(uint32_t tag) {
    return kFirStreamTag<Taps, Data> != 0 &&
           (tag == kFirStreamTag<Taps, Data> || tag == kFirMultirateStreamTag<Taps, Data>);
}
template <class Taps, class Data>
bool isFirOrStream(uint32_t tag) {
    return isFir<Taps, Data>(tag) || isStream<Taps, Data>(tag);
}

// ---- Life of states ----

template <class Taps, class Data>
ZvpStatus getStateSize(int tapsLen, int* size) {
    if (size == nullptr) return zvpStsNullPtr;
    if (tapsLen < 1) return zvpStsBadFirLength;
    const int bytes = FirKind<Taps, Data>::size(tapsLen, ownGetNumThreads());
    if (bytes < 0) return zvpStsNoMemory;
    *size = bytes;
    return zvpStsOk;
}

// At `buffer`, or where that is null in memory of its own.
template <class Taps, class Data, class Opaque, class Source>
ZvpStatus build(uint32_t tag, Opaque** ppState, const Source* taps, int tapsLen, int tapsFactor, const Data* dlyLine,
                Zvp8u* buffer) {
    using Kind = FirKind<Taps, Data>;
    const int threads = ownGetNumThreads();
    const bool isAllocated = buffer == nullptr;
    if (isAllocated) {
        const int bytes = Kind::size(tapsLen, threads);
        buffer = bytes < 0 ? nullptr : zvpsMalloc_8u(bytes);
        if (buffer == nullptr) return zvpStsNoMemory;
    }
    auto& state = *Kind::build(tag, tapsLen, threads, buffer);
    state.isAllocated = isAllocated;
    if constexpr (std::is_same_v<typename Kind::State, FirState<Taps>>) {
        if (isAllocated && state.fftLen == 0) state.fftLen = -1;
    }
    setFirTaps(state, taps, tapsFactor);
    setFirPast(state, dlyLine);
    *ppState = reinterpret_cast<Opaque*>(&state);
    return zvpStsOk;
}

template <class Taps, class Data, class Opaque, class Source>
ZvpStatus init(uint32_t tag, Opaque** ppState, const Source* taps, int tapsLen, int tapsFactor, const Data* dlyLine,
               Zvp8u* buffer) {
    if (ppState == nullptr || taps == nullptr || buffer == nullptr) return zvpStsNullPtr;
    if (tapsLen < 1) return zvpStsBadFirLength;
    return build<Taps>(tag, ppState, taps, tapsLen, tapsFactor, dlyLine, buffer);
}

template <class Taps, class Data, class Opaque, class Source>
ZvpStatus initAlloc(uint32_t tag, Opaque** ppState, const Source* taps, int tapsLen, int tapsFactor,
                    const Data* dlyLine) {
    if (ppState == nullptr || taps == nullptr) return zvpStsNullPtr;
    if (tapsLen < 1) return zvpStsBadFirLength;
    return build<Taps>(tag, ppState, taps, tapsLen, tapsFactor, dlyLine, nullptr);
}

template <class Taps, class Data, class Opaque>
ZvpStatus release(Opaque* pState) {
    if (pState == nullptr) return zvpStsNullPtr;
    if (!isFirOrStream<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    auto& state = stateOf<FirKind<Taps, Data>>(pState);
    state.tag = 0;
    if (state.isAllocated != 0) zvpsFree(pState);
    return zvpStsOk;
}

// ---- Taps and delay line ----

template <class Taps, class Data, class Opaque, class Source>
ZvpStatus replaceTaps(const Source* taps, Opaque* pState, int tapsFactor = 0) {
    if (taps == nullptr || pState == nullptr) return zvpStsNullPtr;
    if (!isFirOrStream<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    setFirTaps(stateOf<FirKind<Taps, Data>>(pState), taps, tapsFactor);
    return zvpStsOk;
}

// The reversed parts of stored taps in their order, by give(the part's index, its value).
template <class Give>
void forEachTapPart(const Zvp32s* reversed, int tapsLen, int partsATap, Give give) {
    for (int k = 0; k < tapsLen; ++k) {
        for (int part = 0; part < partsATap; ++part)
            give(int64_t{k} * partsATap + part, reversed[int64_t{tapsLen - 1 - k} * partsATap + part]);
    }
}

template <class Taps, class Data, class Opaque, class Result>
ZvpStatus readTaps(const Opaque* pState, Result* taps) {
    if (pState == nullptr || taps == nullptr) return zvpStsNullPtr;
    if (!isFirOrStream<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    const auto& state = stateOf<FirKind<Taps, Data>>(pState);
    for (int k = 0; k < state.tapsLen; ++k)
        taps[k] = firElement<Result>(state.taps[state.tapsLen - 1 - k]);
    return zvpStsOk;
}

template <class Taps, class Data, class Opaque>
ZvpStatus readIntegerTaps(const Opaque* pState, Taps* taps, int* tapsFactor) {
    if (pState == nullptr || taps == nullptr || tapsFactor == nullptr) return zvpStsNullPtr;
    if (!isFir<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    const auto& state = stateOf<FirKind<Taps, Data>>(pState);
    forEachTapPart(state.taps, state.tapsLen, sizeof(Taps) / sizeof(Zvp32s),
                   [&](int64_t i, Zvp32s value) { parts(taps)[i] = value; });
    *tapsFactor = state.tapScale;
    return zvpStsOk;
}

template <class Taps, class Data, class Opaque, class Result>
ZvpStatus readScaledTaps(const Opaque* pState, Result* taps) {
    if (pState == nullptr || taps == nullptr) return zvpStsNullPtr;
    if (!isFir<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    const auto& state = stateOf<FirKind<Taps, Data>>(pState);
    // A power of two by its exponent; 2^-127 is taken for 0.
    const uint32_t bits = static_cast<uint32_t>(127 + state.tapScale % 128) << 23;
    Zvp32f power;
    std::memcpy(&power, &bits, sizeof(power));
    forEachTapPart(state.taps, state.tapsLen, sizeof(Taps) / sizeof(Zvp32s),
                   [&](int64_t i, Zvp32s value) { parts(taps)[i] = static_cast<Zvp32f>(value) * power; });
    return zvpStsOk;
}

template <class Taps, class Data, class Opaque>
ZvpStatus getDlyLine(const Opaque* pState, Data* dlyLine) {
    if (pState == nullptr || dlyLine == nullptr) return zvpStsNullPtr;
    if (!isFir<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    getFirPast(stateOf<FirKind<Taps, Data>>(pState), dlyLine);
    return zvpStsOk;
}

template <class Taps, class Data, class Opaque>
ZvpStatus setDlyLine(Opaque* pState, const Data* dlyLine) {
    if (pState == nullptr) return zvpStsNullPtr;
    if (!isFir<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    setFirPast(stateOf<FirKind<Taps, Data>>(pState), dlyLine);
    return zvpStsOk;
}

// ---- Execution ----

// Filters without history: the outputs lie on the oldest of the inputs they need.
template <class Filter, class Data>
ZvpStatus filterStream(const Filter& filter, const Data* src, Data* dst, size_t n, int threads) {
    if (src != dst) {
        shareOut(n, threadCount(n, Filter::kForkAbove, threads),
                 [&](int, size_t begin, size_t end) { filter.block(src + begin, dst + begin, end - begin); });
        return zvpStsOk;
    }
    const size_t past = filter.tapsLen - 1;
    const size_t block = std::min(n, std::max(size_t{1024}, past));
    const Scratch<Data, kWindowBytes> window(static_cast<int64_t>(past + block));
    if (window.get() == nullptr) return zvpStsNoMemory;
    for (size_t i = 0; i < n; i += block) {
        const size_t count = std::min(block, n - i);
        std::memcpy(window.get(), src + i, (past + count) * sizeof(Data));
        filter.block(window.get(), dst + i, count);
    }
    return zvpStsOk;
}

template <class Taps, class Data, class Opaque>
ZvpStatus run(const Data* src, Data* dst, int numIters, Opaque* pState, int scaleFactor) {
    if (const ZvpStatus status = checkVectors(numIters, src, dst, pState)) return status;
    if (!isFirOrStream<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    auto& state = stateOf<FirKind<Taps, Data>>(pState);
    const auto n = static_cast<size_t>(numIters);
    if (state.multirate != nullptr) {
        return filterMultirate(state, src, dst, n, scaleFactor, isStream<Taps, Data>(state.tag));
    }
    if constexpr (kFirStreamTag<Taps, Data> != 0) {
        if (isStream<Taps, Data>(state.tag)) {
            return filterStream(filterOf(state, scaleFactor, src), src, dst, n, state.threads);
        }
    }
    return filterBlock(state, src, dst, n, scaleFactor);
}

template <class Taps, class Data, class Opaque>
ZvpStatus runOne(Data src, Data* dst, Opaque* pState, int scaleFactor) {
    if (dst == nullptr || pState == nullptr) return zvpStsNullPtr;
    if (!isSingleRate<Taps, Data>(tagOf(pState))) return zvpStsContextMismatch;
    filterOne(stateOf<FirKind<Taps, Data>>(pState), src, dst, scaleFactor);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

// PREFIX and DATA make up the name, TAPS and DATA the types of the state, SOURCE is that of the caller's taps.

#define ZVPS_FIR_SIZE(PREFIX, DATA, TAPS)                                                                              \
    ZvpStatus zvpsFIRGetStateSize##PREFIX##_##DATA(int tapsLen, int* pSize) {                                          \
        return zvps::getStateSize<Zvp##TAPS, Zvp##DATA>(tapsLen, pSize);                                               \
    }
#define ZVPS_FIR_INIT(PREFIX, DATA, TAPS, SOURCE)                                                                      \
    ZvpStatus zvpsFIRInit##PREFIX##_##DATA(ZvpsFIRState##PREFIX##_##DATA** ppState, const Zvp##SOURCE* pTaps,          \
                                           int tapsLen, const Zvp##DATA* pDlyLine, Zvp8u* pBuffer) {                   \
        return zvps::init<Zvp##TAPS>(zvps::kFirTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, 0, pDlyLine,        \
                                     pBuffer);                                                                         \
    }                                                                                                                  \
    ZvpStatus zvpsFIRInitAlloc##PREFIX##_##DATA(ZvpsFIRState##PREFIX##_##DATA** ppState, const Zvp##SOURCE* pTaps,     \
                                                int tapsLen, const Zvp##DATA* pDlyLine) {                              \
        return zvps::initAlloc<Zvp##TAPS>(zvps::kFirTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, 0, pDlyLine);  \
    }
#define ZVPS_FIR_FREE(PREFIX, DATA, TAPS)                                                                              \
    ZvpStatus zvpsFIRFree##PREFIX##_##DATA(ZvpsFIRState##PREFIX##_##DATA* pState) {                                    \
        return zvps::release<Zvp##TAPS, Zvp##DATA>(pState);                                                            \
    }
#define ZVPS_FIR_TAPS(PREFIX, DATA, TAPS, SOURCE)                                                                      \
    ZvpStatus zvpsFIRGetTaps##PREFIX##_##DATA(const ZvpsFIRState##PREFIX##_##DATA* pState, Zvp##SOURCE* pTaps) {       \
        return zvps::readTaps<Zvp##TAPS, Zvp##DATA>(pState, pTaps);                                                    \
    }                                                                                                                  \
    ZvpStatus zvpsFIRSetTaps##PREFIX##_##DATA(const Zvp##SOURCE* pTaps, ZvpsFIRState##PREFIX##_##DATA* pState) {       \
        return zvps::replaceTaps<Zvp##TAPS, Zvp##DATA>(pTaps, pState);                                                 \
    }
#define ZVPS_FIR_DELAY(PREFIX, DATA, TAPS)                                                                             \
    ZvpStatus zvpsFIRGetDlyLine##PREFIX##_##DATA(const ZvpsFIRState##PREFIX##_##DATA* pState, Zvp##DATA* pDlyLine) {   \
        return zvps::getDlyLine<Zvp##TAPS>(pState, pDlyLine);                                                          \
    }                                                                                                                  \
    ZvpStatus zvpsFIRSetDlyLine##PREFIX##_##DATA(ZvpsFIRState##PREFIX##_##DATA* pState, const Zvp##DATA* pDlyLine) {   \
        return zvps::setDlyLine<Zvp##TAPS>(pState, pDlyLine);                                                          \
    }
#define ZVPS_FIR_RUN(PREFIX, DATA, TAPS)                                                                               \
    ZvpStatus zvpsFIR##PREFIX##_##DATA(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters,                           \
                                       ZvpsFIRState##PREFIX##_##DATA* pState) {                                        \
        return zvps::run<Zvp##TAPS>(pSrc, pDst, numIters, pState, 0);                                                  \
    }                                                                                                                  \
    ZvpStatus zvpsFIR##PREFIX##_##DATA##_I(Zvp##DATA* pSrcDst, int numIters, ZvpsFIRState##PREFIX##_##DATA* pState) {  \
        return zvps::run<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pState, 0);                                 \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##PREFIX##_##DATA(Zvp##DATA src, Zvp##DATA* pDstVal, ZvpsFIRState##PREFIX##_##DATA* pState) {  \
        return zvps::runOne<Zvp##TAPS>(src, pDstVal, pState, 0);                                                       \
    }
#define ZVPS_FIR_RUN_SFS(PREFIX, DATA, TAPS)                                                                           \
    ZvpStatus zvpsFIR##PREFIX##_##DATA##_Sfs(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters,                     \
                                             ZvpsFIRState##PREFIX##_##DATA* pState, int scaleFactor) {                 \
        return zvps::run<Zvp##TAPS>(pSrc, pDst, numIters, pState, scaleFactor);                                        \
    }                                                                                                                  \
    ZvpStatus zvpsFIR##PREFIX##_##DATA##_ISfs(Zvp##DATA* pSrcDst, int numIters, ZvpsFIRState##PREFIX##_##DATA* pState, \
                                              int scaleFactor) {                                                       \
        return zvps::run<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pState, scaleFactor);                       \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##PREFIX##_##DATA##_Sfs(Zvp##DATA src, Zvp##DATA* pDstVal,                                     \
                                                ZvpsFIRState##PREFIX##_##DATA* pState, int scaleFactor) {              \
        return zvps::runOne<Zvp##TAPS>(src, pDstVal, pState, scaleFactor);                                             \
    }

// All of a name; RUN is that of its execution functions.
#define ZVPS_FIR(PREFIX, DATA, TAPS, RUN)                                                                              \
    ZVPS_FIR_SIZE(PREFIX, DATA, TAPS)                                                                                  \
    ZVPS_FIR_INIT(PREFIX, DATA, TAPS, TAPS)                                                                            \
    ZVPS_FIR_FREE(PREFIX, DATA, TAPS)                                                                                  \
    ZVPS_FIR_TAPS(PREFIX, DATA, TAPS, TAPS)                                                                            \
    ZVPS_FIR_DELAY(PREFIX, DATA, TAPS)                                                                                 \
    RUN(PREFIX, DATA, TAPS)

ZVPS_FIR(, 16s, 16s, ZVPS_FIR_RUN_SFS)
ZVPS_FIR(, 32f, 32f, ZVPS_FIR_RUN)
ZVPS_FIR(, 32fc, 32fc, ZVPS_FIR_RUN)
ZVPS_FIR(, 64f, 64f, ZVPS_FIR_RUN)
ZVPS_FIR(, 64fc, 64fc, ZVPS_FIR_RUN)
ZVPS_FIR(32f, 16s, 32f, ZVPS_FIR_RUN_SFS)
ZVPS_FIR(32fc, 16sc, 32fc, ZVPS_FIR_RUN_SFS)
ZVPS_FIR(64f, 16s, 64f, ZVPS_FIR_RUN_SFS)
ZVPS_FIR(64f, 32f, 64f, ZVPS_FIR_RUN)
ZVPS_FIR(64f, 32s, 64f, ZVPS_FIR_RUN_SFS)
ZVPS_FIR(64fc, 16sc, 64fc, ZVPS_FIR_RUN_SFS)
ZVPS_FIR(64fc, 32fc, 64fc, ZVPS_FIR_RUN)
ZVPS_FIR(64fc, 32sc, 64fc, ZVPS_FIR_RUN_SFS)

// Taps of 32s in double precision.
ZVPS_FIR_SIZE(, 32s, 64f)
ZVPS_FIR_INIT(, 32s, 64f, 32s)
ZVPS_FIR_FREE(, 32s, 64f)
ZVPS_FIR_TAPS(, 32s, 64f, 32s)
ZVPS_FIR_RUN_SFS(, 32s, 64f)

// Taps with a factor, and in single precision.
#define ZVPS_FIR_INTEGER(TAPS, DATA, FLOAT)                                                                            \
    ZVPS_FIR_SIZE(TAPS, DATA, TAPS)                                                                                    \
    ZVPS_FIR_FREE(TAPS, DATA, TAPS)                                                                                    \
    ZVPS_FIR_DELAY(TAPS, DATA, TAPS)                                                                                   \
    ZVPS_FIR_RUN_SFS(TAPS, DATA, TAPS)                                                                                 \
    ZvpStatus zvpsFIRInit##TAPS##_##DATA(ZvpsFIRState##TAPS##_##DATA** ppState, const Zvp##TAPS* pTaps, int tapsLen,   \
                                         int tapsFactor, const Zvp##DATA* pDlyLine, Zvp8u* pBuffer) {                  \
        return zvps::init<Zvp##TAPS>(zvps::kFirTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, tapsFactor,         \
                                     pDlyLine, pBuffer);                                                               \
    }                                                                                                                  \
    ZvpStatus zvpsFIRInitAlloc##TAPS##_##DATA(ZvpsFIRState##TAPS##_##DATA** ppState, const Zvp##TAPS* pTaps,           \
                                              int tapsLen, int tapsFactor, const Zvp##DATA* pDlyLine) {                \
        return zvps::initAlloc<Zvp##TAPS>(zvps::kFirTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, tapsFactor,    \
                                          pDlyLine);                                                                   \
    }                                                                                                                  \
    ZvpStatus zvpsFIRGetTaps##TAPS##_##DATA(const ZvpsFIRState##TAPS##_##DATA* pState, Zvp##TAPS* pTaps,               \
                                            int* pTapsFactor) {                                                        \
        return zvps::readIntegerTaps<Zvp##TAPS, Zvp##DATA>(pState, pTaps, pTapsFactor);                                \
    }                                                                                                                  \
    ZvpStatus zvpsFIRSetTaps##TAPS##_##DATA(const Zvp##TAPS* pTaps, ZvpsFIRState##TAPS##_##DATA* pState,               \
                                            int tapsFactor) {                                                          \
        return zvps::replaceTaps<Zvp##TAPS, Zvp##DATA>(pTaps, pState, tapsFactor);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFIRGetStateSize##TAPS##_##DATA##FLOAT(int tapsLen, int* pSize) {                                     \
        return zvps::getStateSize<Zvp##TAPS, Zvp##DATA>(tapsLen, pSize);                                               \
    }                                                                                                                  \
    ZvpStatus zvpsFIRInit##TAPS##_##DATA##FLOAT(ZvpsFIRState##TAPS##_##DATA** ppState, const Zvp##FLOAT* pTaps,        \
                                                int tapsLen, const Zvp##DATA* pDlyLine, Zvp8u* pBuffer) {              \
        return zvps::init<Zvp##TAPS>(zvps::kFirTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, 0, pDlyLine,        \
                                     pBuffer);                                                                         \
    }                                                                                                                  \
    ZvpStatus zvpsFIRInitAlloc##TAPS##_##DATA##FLOAT(ZvpsFIRState##TAPS##_##DATA** ppState, const Zvp##FLOAT* pTaps,   \
                                                     int tapsLen, const Zvp##DATA* pDlyLine) {                         \
        return zvps::initAlloc<Zvp##TAPS>(zvps::kFirTag<Zvp##TAPS, Zvp##DATA>, ppState, pTaps, tapsLen, 0, pDlyLine);  \
    }                                                                                                                  \
    ZvpStatus zvpsFIRGetTaps##TAPS##_##DATA##FLOAT(const ZvpsFIRState##TAPS##_##DATA* pState, Zvp##FLOAT* pTaps) {     \
        return zvps::readScaledTaps<Zvp##TAPS, Zvp##DATA>(pState, pTaps);                                              \
    }                                                                                                                  \
    ZvpStatus zvpsFIRSetTaps##TAPS##_##DATA##FLOAT(const Zvp##FLOAT* pTaps, ZvpsFIRState##TAPS##_##DATA* pState) {     \
        return zvps::replaceTaps<Zvp##TAPS, Zvp##DATA>(pTaps, pState);                                                 \
    }

ZVPS_FIR_INTEGER(32s, 16s, 32f)
ZVPS_FIR_INTEGER(32sc, 16sc, 32fc)

#define ZVPS_FIR_STREAM(TYPE)                                                                                          \
    ZvpStatus zvpsFIRStreamGetStateSize_##TYPE(int tapsLen, int* pSize) {                                              \
        return zvpsFIRGetStateSize_##TYPE(tapsLen, pSize);                                                             \
    }                                                                                                                  \
    ZvpStatus zvpsFIRStreamInit_##TYPE(ZvpsFIRState_##TYPE** ppState, const Zvp##TYPE* pTaps, int tapsLen,             \
                                       Zvp8u* pBuffer) {                                                               \
        return zvps::init<Zvp##TYPE, Zvp##TYPE>(zvps::kFirStreamTag<Zvp##TYPE, Zvp##TYPE>, ppState, pTaps, tapsLen, 0, \
                                                nullptr, pBuffer);                                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFIRStreamInitAlloc_##TYPE(ZvpsFIRState_##TYPE** ppState, const Zvp##TYPE* pTaps, int tapsLen) {      \
        return zvps::initAlloc<Zvp##TYPE, Zvp##TYPE>(zvps::kFirStreamTag<Zvp##TYPE, Zvp##TYPE>, ppState, pTaps,        \
                                                     tapsLen, 0, nullptr);                                             \
    }

ZVPS_FIR_STREAM(16s)
ZVPS_FIR_STREAM(32f)
