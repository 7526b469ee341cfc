// Filters whose taps and delay line the caller keeps.
#include "core/checks.hpp"
#include "filters/fir_run.hpp"

namespace zvps {
namespace {

constexpr size_t kStateBytes = 16384;

// ---- Taps in floating point, a ring of inputs ----

// The ring after a block: `inputs` are the last tapsLen, the oldest first.
template <class Taps, class Data>
void renewRing(const Taps* inputs, size_t n, int tapsLen, bool isShort, Data* ring, int* index) {
    const auto put = [&](int i, const Taps& input) {
        const auto value = firElement<Data>(input);
        ring[i] = value;
        ring[i < tapsLen ? i + tapsLen : i - tapsLen] = value;
    };
    if (!isShort) {
        for (int i = 0; i < tapsLen; ++i)
            put(*index + i, inputs[i]);
    } else if (n < static_cast<size_t>(tapsLen)) {
        const auto count = static_cast<int>(n);
        for (int i = 0; i < count; ++i) {
            put(*index, inputs[tapsLen - count + i]);
            *index = *index + 1 == tapsLen ? 0 : *index + 1;
        }
    } else {
        for (int i = 0; i + 1 < tapsLen; ++i)
            put(i, inputs[i + 1]);
        *index = tapsLen - 1;
    }
}

template <class Taps, class Data>
ZvpStatus filterRing(const Data* src, Data* dst, int numIters, const Taps* taps, int tapsLen, Data* ring, int* index,
                     int scaleFactor = 0) {
    if (const ZvpStatus status = checkVectors(numIters, src, dst, taps, ring, index)) return status;
    if (tapsLen < 1) return zvpStsBadFirLength;
    const auto n = static_cast<size_t>(numIters);
    const int threads = ownGetNumThreads();
    const FirUse use = prefersFft<Taps>(tapsLen, n) ? FirUse::longBlock : FirUse::block;
    const int bytes = firStateSize<Taps>(tapsLen, threads, use);
    if (bytes < 0) return zvpStsNoMemory;
    const Scratch<unsigned char, kStateBytes> memory(bytes);
    if (memory.get() == nullptr) return zvpStsNoMemory;
    auto& state = *buildFirState<Taps>(kFirTag<Taps, Data>, tapsLen, threads, use, memory.get());
    setFirTaps(state, taps);
    const bool isShort = tapsLen < FirTraits<Taps>::kFftTaps;
    // Short blocks leave the past of an index of tapsLen - 1 at the ring's begin.
    const int oldest = isShort && *index == tapsLen - 1 ? -1 : *index;
    for (int i = 1; i < tapsLen; ++i)
        state.ring[i] = firElement<Taps>(ring[oldest + i]);
    if (const ZvpStatus status = filterBlock(state, src, dst, n, scaleFactor)) return status;
    renewRing(state.ring, n, tapsLen, isShort, ring, index);
    return zvpStsOk;
}

template <class Taps, class Data>
ZvpStatus filterRingOne(Data src, Data* dst, const Taps* taps, int tapsLen, Data* ring, int* index,
                        int scaleFactor = 0) {
    if (dst == nullptr || taps == nullptr || ring == nullptr || index == nullptr) return zvpStsNullPtr;
    if (tapsLen < 1) return zvpStsBadFirLength;
    using Filter = FloatFilter<Taps, Data>;
    const auto n = static_cast<size_t>(tapsLen);
    const Scratch<Taps, Filter::kStraight ? 64 : 4096> memory(Filter::kStraight ? 0 : tapsLen);
    if (memory.get() == nullptr) return zvpStsNoMemory;
    ring[*index] = ring[*index + tapsLen] = src;
    *index = *index + 1 == tapsLen ? 0 : *index + 1;
    const Taps* window;
    if constexpr (Filter::kStraight) {
        window = ring + *index;
    } else {
        loadElements(ring + *index, memory.get(), n);
        window = memory.get();
    }
    Taps result;
    firKernels<Taps>().oneBackwards(parts(window), parts(&result), parts(taps), n);
    *dst = Filter::converted(result, scaleFactor);
    return zvpStsOk;
}

template <class Taps, class Data>
ZvpStatus filterRingOneInPlace(Data* srcDst, const Taps* taps, int tapsLen, Data* ring, int* index,
                               int scaleFactor = 0) {
    if (srcDst == nullptr) return zvpStsNullPtr;
    return filterRingOne(*srcDst, srcDst, taps, tapsLen, ring, index, scaleFactor);
}

// ---- Integer taps, a delay line ----

template <class Taps, class Data>
ZvpStatus filterLine(const Data* src, Data* dst, int numIters, const Taps* taps, int tapsLen, int tapsFactor,
                     Data* dlyLine, int* index, int scaleFactor) {
    if (const ZvpStatus status = checkVectors(numIters, src, dst, taps, dlyLine, index)) return status;
    if (tapsLen < 1) return zvpStsBadFirLength;
    if (*index < 0 || *index >= tapsLen) return zvpStsBadDelayIndex;
    const int bytes = firIntegerStateSize<Data>(tapsLen);
    if (bytes < 0) return zvpStsNoMemory;
    const Scratch<unsigned char, kStateBytes> memory(bytes);
    if (memory.get() == nullptr) return zvpStsNoMemory;
    auto& state = *buildFirIntegerState<Data>(kFirTag<Zvp32s, Zvp16s>, tapsLen, ownGetNumThreads(), memory.get());
    setFirTaps(state, taps, tapsFactor);
    setFirPast(state, dlyLine + *index);
    if (const ZvpStatus status = filterBlock(state, src, dst, static_cast<size_t>(numIters), scaleFactor)) {
        return status;
    }
    *index = 0;
    getFirPast(state, dlyLine);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_FIR_DIRECT(PREFIX, TAPS, DATA)                                                                            \
    ZvpStatus zvpsFIR##PREFIX##_Direct_##DATA(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters,                    \
                                              const Zvp##TAPS* pTaps, int tapsLen, Zvp##DATA* pDlyLine,                \
                                              int* pDlyLineIndex) {                                                    \
        return zvps::filterRing(pSrc, pDst, numIters, pTaps, tapsLen, pDlyLine, pDlyLineIndex);                        \
    }                                                                                                                  \
    ZvpStatus zvpsFIR##PREFIX##_Direct_##DATA##_I(Zvp##DATA* pSrcDst, int numIters, const Zvp##TAPS* pTaps,            \
                                                  int tapsLen, Zvp##DATA* pDlyLine, int* pDlyLineIndex) {              \
        return zvps::filterRing<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, pDlyLine,            \
                                                      pDlyLineIndex);                                                  \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##PREFIX##_Direct_##DATA(Zvp##DATA src, Zvp##DATA* pDstVal, const Zvp##TAPS* pTaps,            \
                                                 int tapsLen, Zvp##DATA* pDlyLine, int* pDlyLineIndex) {               \
        return zvps::filterRingOne(src, pDstVal, pTaps, tapsLen, pDlyLine, pDlyLineIndex);                             \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##PREFIX##_Direct_##DATA##_I(Zvp##DATA* pSrcDst, const Zvp##TAPS* pTaps, int tapsLen,          \
                                                     Zvp##DATA* pDlyLine, int* pDlyLineIndex) {                        \
        return zvps::filterRingOneInPlace(pSrcDst, pTaps, tapsLen, pDlyLine, pDlyLineIndex);                           \
    }

ZVPS_FIR_DIRECT(, 32f, 32f)
ZVPS_FIR_DIRECT(, 32fc, 32fc)
ZVPS_FIR_DIRECT(, 64f, 64f)
ZVPS_FIR_DIRECT(, 64fc, 64fc)
ZVPS_FIR_DIRECT(64f, 64f, 32f)
ZVPS_FIR_DIRECT(64fc, 64fc, 32fc)

#define ZVPS_FIR_DIRECT_SFS(TAPS, DATA)                                                                                \
    ZvpStatus zvpsFIR##TAPS##_Direct_##DATA##_Sfs(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters,                \
                                                  const Zvp##TAPS* pTaps, int tapsLen, Zvp##DATA* pDlyLine,            \
                                                  int* pDlyLineIndex, int scaleFactor) {                               \
        return zvps::filterRing(pSrc, pDst, numIters, pTaps, tapsLen, pDlyLine, pDlyLineIndex, scaleFactor);           \
    }                                                                                                                  \
    ZvpStatus zvpsFIR##TAPS##_Direct_##DATA##_ISfs(Zvp##DATA* pSrcDst, int numIters, const Zvp##TAPS* pTaps,           \
                                                   int tapsLen, Zvp##DATA* pDlyLine, int* pDlyLineIndex,               \
                                                   int scaleFactor) {                                                  \
        return zvps::filterRing<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, pDlyLine,            \
                                                      pDlyLineIndex, scaleFactor);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##TAPS##_Direct_##DATA##_Sfs(Zvp##DATA src, Zvp##DATA* pDstVal, const Zvp##TAPS* pTaps,        \
                                                     int tapsLen, Zvp##DATA* pDlyLine, int* pDlyLineIndex,             \
                                                     int scaleFactor) {                                                \
        return zvps::filterRingOne(src, pDstVal, pTaps, tapsLen, pDlyLine, pDlyLineIndex, scaleFactor);                \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##TAPS##_Direct_##DATA##_ISfs(Zvp##DATA* pSrcDst, const Zvp##TAPS* pTaps, int tapsLen,         \
                                                      Zvp##DATA* pDlyLine, int* pDlyLineIndex, int scaleFactor) {      \
        return zvps::filterRingOneInPlace(pSrcDst, pTaps, tapsLen, pDlyLine, pDlyLineIndex, scaleFactor);              \
    }

ZVPS_FIR_DIRECT_SFS(32f, 16s)
ZVPS_FIR_DIRECT_SFS(32fc, 16sc)
ZVPS_FIR_DIRECT_SFS(64f, 16s)
ZVPS_FIR_DIRECT_SFS(64f, 32s)
ZVPS_FIR_DIRECT_SFS(64fc, 16sc)
ZVPS_FIR_DIRECT_SFS(64fc, 32sc)

// FACTOR_PARAMETER: of taps with a factor, its declaration and a comma. FACTOR: its value.
#define ZVPS_FIR_DIRECT_INTEGER(PREFIX, TAPS, DATA, FACTOR_PARAMETER, FACTOR)                                          \
    ZvpStatus zvpsFIR##PREFIX##_Direct_##DATA##_Sfs(                                                                   \
        const Zvp##DATA* pSrc, Zvp##DATA* pDst, int numIters, const Zvp##TAPS* pTaps, int tapsLen,                     \
        FACTOR_PARAMETER Zvp##DATA* pDlyLine, int* pDlyLineIndex, int scaleFactor) {                                   \
        return zvps::filterLine(pSrc, pDst, numIters, pTaps, tapsLen, FACTOR, pDlyLine, pDlyLineIndex, scaleFactor);   \
    }                                                                                                                  \
    ZvpStatus zvpsFIR##PREFIX##_Direct_##DATA##_ISfs(Zvp##DATA* pSrcDst, int numIters, const Zvp##TAPS* pTaps,         \
                                                     int tapsLen, FACTOR_PARAMETER Zvp##DATA* pDlyLine,                \
                                                     int* pDlyLineIndex, int scaleFactor) {                            \
        return zvps::filterLine<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, numIters, pTaps, tapsLen, FACTOR, pDlyLine,    \
                                                      pDlyLineIndex, scaleFactor);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##PREFIX##_Direct_##DATA##_Sfs(Zvp##DATA src, Zvp##DATA* pDstVal, const Zvp##TAPS* pTaps,      \
                                                       int tapsLen, FACTOR_PARAMETER Zvp##DATA* pDlyLine,              \
                                                       int* pDlyLineIndex, int scaleFactor) {                          \
        return zvps::filterLine<Zvp##TAPS, Zvp##DATA>(&src, pDstVal, 1, pTaps, tapsLen, FACTOR, pDlyLine,              \
                                                      pDlyLineIndex, scaleFactor);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFIROne##PREFIX##_Direct_##DATA##_ISfs(Zvp##DATA* pSrcDst, const Zvp##TAPS* pTaps, int tapsLen,       \
                                                        FACTOR_PARAMETER Zvp##DATA* pDlyLine, int* pDlyLineIndex,      \
                                                        int scaleFactor) {                                             \
        return zvps::filterLine<Zvp##TAPS, Zvp##DATA>(pSrcDst, pSrcDst, 1, pTaps, tapsLen, FACTOR, pDlyLine,           \
                                                      pDlyLineIndex, scaleFactor);                                     \
    }
#define ZVPS_TAPS_FACTOR int tapsFactor,

ZVPS_FIR_DIRECT_INTEGER(, 16s, 16s, , 0)
ZVPS_FIR_DIRECT_INTEGER(32s, 32s, 16s, ZVPS_TAPS_FACTOR, tapsFactor)
ZVPS_FIR_DIRECT_INTEGER(32sc, 32sc, 16sc, ZVPS_TAPS_FACTOR, tapsFactor)
