#include "zvps/iir.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "filters/iir_state.hpp"
#include "zvps/convert.h"
#include "zvps/memory.h"

#include <algorithm>

namespace zvps {
namespace {

// ---- Conversion of data ----

void convert(const Zvp16s* src, Zvp32f* dst, int len, int) {
    zvpsConvert_16s32f(src, dst, len);
}
void convert(const Zvp16s* src, Zvp64f* dst, int len, int) {
    zvpsConvert_16s64f_Sfs(src, dst, len, 0);
}
void convert(const Zvp32s* src, Zvp64f* dst, int len, int) {
    zvpsConvert_32s64f(src, dst, len);
}
void convert(const Zvp32f* src, Zvp64f* dst, int len, int) {
    zvpsConvert_32f64f(src, dst, len);
}
void convert(const Zvp64f* src, Zvp32f* dst, int len, int) {
    zvpsConvert_64f32f(src, dst, len);
}
void convert(const Zvp32f* src, Zvp16s* dst, int len, int scaleFactor) {
    zvpsConvert_32f16s_Sfs(src, dst, len, zvpRndNear, scaleFactor);
}
void convert(const Zvp64f* src, Zvp16s* dst, int len, int scaleFactor) {
    zvpsConvert_64f16s_Sfs(src, dst, len, zvpRndNear, scaleFactor);
}
void convert(const Zvp64f* src, Zvp32s* dst, int len, int scaleFactor) {
    zvpsConvert_64f32s_Sfs(src, dst, len, zvpRndNear, scaleFactor);
}

template <class From, class To>
void convertElements(const From* src, To* dst, int len, int scaleFactor = 0) {
    if constexpr (std::is_same_v<From, To>) {
        std::copy_n(src, len, dst);
    } else {
        // Delay lines of two entries for each of many sections have more parts than an int counts.
        constexpr int kAtOnce = 1 << 20;
        constexpr int kParts = sizeof(From) / sizeof(Part<From>);
        for (int i = 0; i < len; i += kAtOnce)
            convert(parts(src + i), parts(dst + i), std::min(len - i, kAtOnce) * kParts, scaleFactor);
    }
}

// ---- Kinds of states ----

template <class Opaque>
bool isKind(const Opaque* state, IirKind kind) {
    const uint32_t tag = IirTraits<Opaque>::kTags[static_cast<int>(kind)];
    return tag != 0 && header(state)->tag == tag;
}
template <class Opaque>
bool isInForm2(const Opaque* state) {
    return isKind(state, IirKind::order) || isKind(state, IirKind::biquads);
}
template <class Opaque>
bool isRunnable(const Opaque* state) {
    return isInForm2(state) || isKind(state, IirKind::directForm1);
}

template <class Opaque, class... Pointers>
ZvpStatus checkForm2(const Opaque* state, Pointers... others) {
    if (state == nullptr || ((others == nullptr) || ...)) return zvpStsNullPtr;
    return isInForm2(state) ? zvpStsOk : zvpStsContextMismatch;
}

// ---- Life of a state ----

template <class Opaque>
ZvpStatus getStateSize(IirKind kind, int n, int* size) {
    if (size == nullptr) return zvpStsNullPtr;
    const int bytes = iirStateSize<Opaque>(kind, n);
    if (bytes == 0) return zvpStsBadIirOrder;
    *size = bytes;
    return zvpStsOk;
}

template <class Opaque, class Taps>
ZvpStatus checkTaps(IirKind kind, const Taps* taps, int n, int tapsFactor) {
    if (iirStateSize<Opaque>(kind, n) == 0) return zvpStsBadIirOrder;
    if (tapsFactor < 0) return zvpStsBadTapsScale;
    return hasZeroDivisor(kind, taps, n) ? zvpStsDivByZeroErr : zvpStsOk;
}

template <class Opaque, class Taps, class Delay>
Opaque* build(IirKind kind, const Taps* taps, int n, const Delay* dlyLine, Zvp8u* buffer) {
    using Element = typename IirTraits<Opaque>::Element;
    const int scratch = kIirIsMixed<Opaque> ? kIirScratch<Opaque> : 0;
    auto* const state =
        buildIirState<Element>(kind, IirTraits<Opaque>::kTags[static_cast<int>(kind)], n, scratch, buffer);
    if (dlyLine != nullptr) {
        convertElements(dlyLine, state->delay, kind == IirKind::directForm1 ? 2 * state->order : state->order);
    }
    setIirTaps(*state, kind, taps);
    return reinterpret_cast<Opaque*>(state);
}

template <class Opaque, class Taps, class Delay>
ZvpStatus init(IirKind kind, Opaque** result, const Taps* taps, int n, int tapsFactor, const Delay* dlyLine,
               Zvp8u* buffer) {
    if (result == nullptr || taps == nullptr || buffer == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = checkTaps<Opaque>(kind, taps, n, tapsFactor)) return status;
    *result = build<Opaque>(kind, taps, n, dlyLine, buffer);
    return zvpStsOk;
}

template <class Opaque, class Taps, class Delay>
ZvpStatus initAlloc(IirKind kind, Opaque** result, const Taps* taps, int n, int tapsFactor, const Delay* dlyLine) {
    if (result == nullptr || taps == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = checkTaps<Opaque>(kind, taps, n, tapsFactor)) return status;
    Zvp8u* const memory = zvpsMalloc_8u(iirStateSize<Opaque>(kind, n));
    if (memory == nullptr) return zvpStsNoMemory;
    Opaque* const state = build<Opaque>(kind, taps, n, dlyLine, memory);
    header(state)->allocated = memory;
    *result = state;
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus release(Opaque* state) {
    if (state == nullptr) return zvpStsNullPtr;
    if (!isRunnable(state)) return zvpStsContextMismatch;
    header(state)->tag = 0;
    if (header(state)->allocated != nullptr) zvpsFree(header(state)->allocated);
    return zvpStsOk;
}

template <class Opaque, class Taps>
ZvpStatus setTaps(const Taps* taps, Opaque* state, int tapsFactor) {
    if (const ZvpStatus status = checkForm2(state, taps)) return status;
    const IirKind kind = isKind(state, IirKind::order) ? IirKind::order : IirKind::biquads;
    const int n = kind == IirKind::order ? header(state)->order : header(state)->sections;
    if (const ZvpStatus status = checkTaps<Opaque>(kind, taps, n, tapsFactor)) return status;
    setIirTaps(*header(state), kind, taps);
    return zvpStsOk;
}

// ---- Delay lines ----

// By parts, so that an integer delay line is converted without memory of its own.
inline constexpr int kDelayAtOnce = 64;

template <class Opaque, class Delay>
ZvpStatus getForm2Delay(const Opaque* state, Delay* dlyLine) {
    if (const ZvpStatus status = checkForm2(state, dlyLine)) return status;
    const auto& from = *header(state);
    for (int i = 0; i < from.order; i += kDelayAtOnce) {
        typename IirTraits<Opaque>::Element delay[kDelayAtOnce];
        const int count = std::min(from.order - i, kDelayAtOnce);
        getIirDelay(from, i, count, delay);
        convertElements(delay, dlyLine + i, count);
    }
    return zvpStsOk;
}

template <class Opaque, class Delay>
ZvpStatus getForm1Delay(const Opaque* state, Delay* dlyLine) {
    if (state == nullptr || dlyLine == nullptr) return zvpStsNullPtr;
    if (!isKind(state, IirKind::directForm1)) return zvpStsContextMismatch;
    convertElements(header(state)->delay, dlyLine, 2 * header(state)->order);
    return zvpStsOk;
}

template <class Opaque, class Delay>
ZvpStatus setDelay(Opaque* state, const Delay* dlyLine) {
    if (const ZvpStatus status = checkForm2(state)) return status;
    auto& to = *header(state);
    clearIirDelay(to);
    if (dlyLine != nullptr) convertElements(dlyLine, to.delay, to.order);
    return zvpStsOk;
}

// ---- Filtering ----

template <class Element>
const auto& kernelsOf() {
    const RecursiveKernels& table = *kernels().recursive;
    if constexpr (std::is_same_v<Element, Zvp32f>) return table.iir_32f;
    if constexpr (std::is_same_v<Element, Zvp32fc>) return table.iir_32fc;
    if constexpr (std::is_same_v<Element, Zvp64f>) return table.iir_64f;
    if constexpr (std::is_same_v<Element, Zvp64fc>) return table.iir_64fc;
}

template <class Opaque, class Element>
void filterElements(const Element* src, Element* dst, int len, Opaque* opaque) {
    IirState<Element>& state = *header(opaque);
    const auto n = static_cast<size_t>(len);
    if (isKind(opaque, IirKind::order)) {
        kernelsOf<Element>().order(parts(src), parts(dst), n, state.filter);
    } else if (isKind(opaque, IirKind::biquads)) {
        kernelsOf<Element>().biquads(parts(src), parts(dst), n, state.biquads.cascade);
    } else {
        const auto sections = static_cast<size_t>(state.sections);
        if constexpr (std::is_same_v<Element, Zvp32f>) {
            kernels().recursive->directForm1_32f(src, dst, n, sections, state.taps, state.delay);
        } else if constexpr (std::is_same_v<Element, Zvp64f>) {
            kernels().recursive->directForm1_64f(src, dst, n, sections, state.taps, state.delay);
        }
    }
}

// Of arguments that are checked.
template <class Opaque, class Data>
void filter(const Data* src, Data* dst, int len, Opaque* state, int scaleFactor) {
    if constexpr (kIirIsMixed<Opaque>) {
        auto* const scratch = header(state)->scratch;
        for (int i = 0; i < len;) {
            const int count = std::min(len - i, kIirScratch<Opaque>);
            convertElements(src + i, scratch, count);
            filterElements(scratch, scratch, count, state);
            convertElements(scratch, dst + i, count, scaleFactor);
            i += count;
        }
    } else {
        filterElements(src, dst, len, state);
    }
}

template <class Opaque, class Data>
ZvpStatus filterBlock(const Data* src, Data* dst, int len, Opaque* state, int scaleFactor = 0) {
    if (const ZvpStatus status = checkVectors(len, src, dst, state)) return status;
    if (!isRunnable(state)) return zvpStsContextMismatch;
    filter(src, dst, len, state, scaleFactor);
    return zvpStsOk;
}

template <class Opaque, class Data>
ZvpStatus filterOne(Data src, Data* dst, Opaque* state, int scaleFactor = 0) {
    if (const ZvpStatus status = checkForm2(state, dst)) return status;
    filter(&src, dst, 1, state, scaleFactor);
    return zvpStsOk;
}

template <class Opaque, class Data>
ZvpStatus filterChannels(const Data* const* src, Data* const* dst, int len, int channels, Opaque* const* states,
                         int scaleFactor = 0) {
    if (const ZvpStatus status = checkVectors(len, src, dst, states)) return status;
    if (channels < 1) return zvpStsBadIirParam;
    for (int i = 0; i < channels; ++i) {
        if (src[i] == nullptr || dst[i] == nullptr || states[i] == nullptr) return zvpStsNullPtr;
    }
    if (!std::all_of(states, states + channels, isRunnable<Opaque>)) return zvpStsContextMismatch;
    for (int i = 0; i < channels; ++i)
        filter(src[i], dst[i], len, states[i], scaleFactor);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

// The names zvpsIIR<operation><PRE>_<POST>, or <PRE>_BiQuad_<POST> for cascades.
#define ZVPS_IIR_SIZE(NAME, STATE, KIND)                                                                               \
    ZvpStatus zvpsIIRGetStateSize##NAME(int n, int* pStateSize) {                                                      \
        return zvps::getStateSize<ZvpsIIRState##STATE>(zvps::IirKind::KIND, n, pStateSize);                            \
    }
#define ZVPS_IIR_INIT(NAME, STATE, KIND, TAPS, DELAY)                                                                  \
    ZvpStatus zvpsIIRInit##NAME(ZvpsIIRState##STATE** ppState, const Zvp##TAPS* pTaps, int n,                          \
                                const Zvp##DELAY* pDlyLine, Zvp8u* pBuffer) {                                          \
        return zvps::init(zvps::IirKind::KIND, ppState, pTaps, n, 0, pDlyLine, pBuffer);                               \
    }                                                                                                                  \
    ZvpStatus zvpsIIRInitAlloc##NAME(ZvpsIIRState##STATE** ppState, const Zvp##TAPS* pTaps, int n,                     \
                                     const Zvp##DELAY* pDlyLine) {                                                     \
        return zvps::initAlloc(zvps::IirKind::KIND, ppState, pTaps, n, 0, pDlyLine);                                   \
    }
#define ZVPS_IIR_INIT_INTEGER(NAME, STATE, KIND, TAPS)                                                                 \
    ZvpStatus zvpsIIRInit##NAME(ZvpsIIRState##STATE** ppState, const Zvp##TAPS* pTaps, int n, int tapsFactor,          \
                                const Zvp##TAPS* pDlyLine, Zvp8u* pBuffer) {                                           \
        return zvps::init(zvps::IirKind::KIND, ppState, pTaps, n, tapsFactor, pDlyLine, pBuffer);                      \
    }                                                                                                                  \
    ZvpStatus zvpsIIRInitAlloc##NAME(ZvpsIIRState##STATE** ppState, const Zvp##TAPS* pTaps, int n, int tapsFactor,     \
                                     const Zvp##TAPS* pDlyLine) {                                                      \
        return zvps::initAlloc(zvps::IirKind::KIND, ppState, pTaps, n, tapsFactor, pDlyLine);                          \
    }
#define ZVPS_IIR_TAPS(NAME, STATE, TAPS)                                                                               \
    ZvpStatus zvpsIIRSetTaps##NAME(const Zvp##TAPS* pTaps, ZvpsIIRState##STATE* pState) {                              \
        return zvps::setTaps(pTaps, pState, 0);                                                                        \
    }
#define ZVPS_IIR_TAPS_INTEGER(NAME, STATE, TAPS)                                                                       \
    ZvpStatus zvpsIIRSetTaps##NAME(const Zvp##TAPS* pTaps, ZvpsIIRState##STATE* pState, int tapsFactor) {              \
        return zvps::setTaps(pTaps, pState, tapsFactor);                                                               \
    }
#define ZVPS_IIR_STATE(NAME, STATE, DELAY)                                                                             \
    ZvpStatus zvpsIIRFree##NAME(ZvpsIIRState##STATE* pState) {                                                         \
        return zvps::release(pState);                                                                                  \
    }                                                                                                                  \
    ZvpStatus zvpsIIRSetDlyLine##NAME(ZvpsIIRState##STATE* pState, const Zvp##DELAY* pDlyLine) {                       \
        return zvps::setDelay(pState, pDlyLine);                                                                       \
    }
#define ZVPS_IIR_GET_DELAY(NAME, STATE, DELAY)                                                                         \
    ZvpStatus zvpsIIRGetDlyLine##NAME(const ZvpsIIRState##STATE* pState, Zvp##DELAY* pDlyLine) {                       \
        return zvps::getForm2Delay(pState, pDlyLine);                                                                  \
    }
#define ZVPS_IIR_RUN(NAME, STATE, DATA)                                                                                \
    ZvpStatus zvpsIIR##NAME(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int len, ZvpsIIRState##STATE* pState) {            \
        return zvps::filterBlock(pSrc, pDst, len, pState);                                                             \
    }                                                                                                                  \
    ZvpStatus zvpsIIR##NAME##_I(Zvp##DATA* pSrcDst, int len, ZvpsIIRState##STATE* pState) {                            \
        return zvps::filterBlock(pSrcDst, pSrcDst, len, pState);                                                       \
    }                                                                                                                  \
    ZvpStatus zvpsIIROne##NAME(Zvp##DATA src, Zvp##DATA* pDstVal, ZvpsIIRState##STATE* pState) {                       \
        return zvps::filterOne(src, pDstVal, pState);                                                                  \
    }
#define ZVPS_IIR_RUN_SFS(NAME, STATE, DATA)                                                                            \
    ZvpStatus zvpsIIR##NAME##_Sfs(const Zvp##DATA* pSrc, Zvp##DATA* pDst, int len, ZvpsIIRState##STATE* pState,        \
                                  int scaleFactor) {                                                                   \
        return zvps::filterBlock(pSrc, pDst, len, pState, scaleFactor);                                                \
    }                                                                                                                  \
    ZvpStatus zvpsIIR##NAME##_ISfs(Zvp##DATA* pSrcDst, int len, ZvpsIIRState##STATE* pState, int scaleFactor) {        \
        return zvps::filterBlock(pSrcDst, pSrcDst, len, pState, scaleFactor);                                          \
    }                                                                                                                  \
    ZvpStatus zvpsIIROne##NAME##_Sfs(Zvp##DATA src, Zvp##DATA* pDstVal, ZvpsIIRState##STATE* pState,                   \
                                     int scaleFactor) {                                                                \
        return zvps::filterOne(src, pDstVal, pState, scaleFactor);                                                     \
    }

#define ZVPS_IIR_FLOAT_TAPS(PRE, POST, STATE, TAPS, DELAY)                                                             \
    ZVPS_IIR_SIZE(PRE##_##POST, STATE, order)                                                                          \
    ZVPS_IIR_SIZE(PRE##_BiQuad_##POST, STATE, biquads)                                                                 \
    ZVPS_IIR_INIT(PRE##_##POST, STATE, order, TAPS, DELAY)                                                             \
    ZVPS_IIR_INIT(PRE##_BiQuad_##POST, STATE, biquads, TAPS, DELAY)                                                    \
    ZVPS_IIR_TAPS(PRE##_##POST, STATE, TAPS)                                                                           \
    ZVPS_IIR_STATE(PRE##_##POST, STATE, DELAY)
#define ZVPS_IIR_INTEGER_TAPS(PRE, POST, STATE, TAPS)                                                                  \
    ZVPS_IIR_SIZE(PRE##_##POST, STATE, order)                                                                          \
    ZVPS_IIR_SIZE(PRE##_BiQuad_##POST, STATE, biquads)                                                                 \
    ZVPS_IIR_INIT_INTEGER(PRE##_##POST, STATE, order, TAPS)                                                            \
    ZVPS_IIR_INIT_INTEGER(PRE##_BiQuad_##POST, STATE, biquads, TAPS)                                                   \
    ZVPS_IIR_TAPS_INTEGER(PRE##_##POST, STATE, TAPS)                                                                   \
    ZVPS_IIR_STATE(PRE##_##POST, STATE, TAPS)                                                                          \
    ZVPS_IIR_GET_DELAY(PRE##_##POST, STATE, TAPS)

#define ZVPS_IIR(TYPE)                                                                                                 \
    ZVPS_IIR_FLOAT_TAPS(, TYPE, _##TYPE, TYPE, TYPE)                                                                   \
    ZVPS_IIR_RUN(_##TYPE, _##TYPE, TYPE)
#define ZVPS_IIR_MIXED(TAPS, DATA)                                                                                     \
    ZVPS_IIR_FLOAT_TAPS(TAPS, DATA, TAPS##_##DATA, TAPS, TAPS)                                                         \
    ZVPS_IIR_GET_DELAY(TAPS##_##DATA, TAPS##_##DATA, TAPS)                                                             \
    ZVPS_IIR_RUN(TAPS##_##DATA, TAPS##_##DATA, DATA)
#define ZVPS_IIR_MIXED_SFS(TAPS, DATA)                                                                                 \
    ZVPS_IIR_FLOAT_TAPS(TAPS, DATA, TAPS##_##DATA, TAPS, TAPS)                                                         \
    ZVPS_IIR_GET_DELAY(TAPS##_##DATA, TAPS##_##DATA, TAPS)                                                             \
    ZVPS_IIR_RUN_SFS(TAPS##_##DATA, TAPS##_##DATA, DATA)
#define ZVPS_IIR_INTEGER(TAPS, DATA)                                                                                   \
    ZVPS_IIR_INTEGER_TAPS(TAPS, DATA, TAPS##_##DATA, TAPS)                                                             \
    ZVPS_IIR_RUN_SFS(TAPS##_##DATA, TAPS##_##DATA, DATA)
// Integer states with taps given in floating point.
#define ZVPS_IIR_INTEGER_OF_FLOAT(INTEGER, DATA, TAPS)                                                                 \
    ZVPS_IIR_FLOAT_TAPS(INTEGER, DATA##TAPS, INTEGER##_##DATA, TAPS, INTEGER)                                          \
    ZVPS_IIR_GET_DELAY(INTEGER##_##DATA##TAPS, INTEGER##_##DATA, INTEGER)                                              \
    ZVPS_IIR_RUN_SFS(INTEGER##_##DATA##TAPS, INTEGER##_##DATA, DATA)

ZVPS_IIR(32f)
ZVPS_IIR(32fc)
ZVPS_IIR(64f)
ZVPS_IIR(64fc)
ZVPS_IIR_GET_DELAY(_32fc, _32fc, 32fc)
ZVPS_IIR_GET_DELAY(_64f, _64f, 64f)
ZVPS_IIR_GET_DELAY(_64fc, _64fc, 64fc)
ZVPS_IIR_MIXED(64f, 32f)
ZVPS_IIR_MIXED(64fc, 32fc)
ZVPS_IIR_MIXED_SFS(32f, 16s)
ZVPS_IIR_MIXED_SFS(32fc, 16sc)
ZVPS_IIR_MIXED_SFS(64f, 16s)
ZVPS_IIR_MIXED_SFS(64f, 32s)
ZVPS_IIR_MIXED_SFS(64fc, 16sc)
ZVPS_IIR_MIXED_SFS(64fc, 32sc)
ZVPS_IIR_INTEGER(32s, 16s)
ZVPS_IIR_INTEGER(32sc, 16sc)
ZVPS_IIR_INTEGER_OF_FLOAT(32s, 16s, 32f)
ZVPS_IIR_INTEGER_OF_FLOAT(32sc, 16sc, 32fc)

ZVPS_IIR_SIZE(_BiQuad_DF1_32f, _32f, directForm1)
ZVPS_IIR_INIT(_BiQuad_DF1_32f, _32f, directForm1, 32f, 32f)
ZVPS_IIR_SIZE(64f_BiQuad_DF1_32s, 64f_32s, directForm1)
ZVPS_IIR_INIT(64f_BiQuad_DF1_32s, 64f_32s, directForm1, 64f, 32s)

ZvpStatus zvpsIIRGetDlyLine_32f(const ZvpsIIRState_32f* pState, Zvp32f* pDlyLine) {
    const ZvpStatus status = zvps::getForm1Delay(pState, pDlyLine);
    return status == zvpStsContextMismatch ? zvps::getForm2Delay(pState, pDlyLine) : status;
}
ZvpStatus zvpsIIRGetDlyLine64f_DF1_32s(const ZvpsIIRState64f_32s* pState, Zvp32s* pDlyLine) {
    return zvps::getForm1Delay(pState, pDlyLine);
}

ZvpStatus zvpsIIR_32f_P(const Zvp32f** ppSrc, Zvp32f** ppDst, int len, int nChannels, ZvpsIIRState_32f** ppState) {
    return zvps::filterChannels(ppSrc, ppDst, len, nChannels, ppState);
}
ZvpStatus zvpsIIR64f_32s_PSfs(const Zvp32s** ppSrc, Zvp32s** ppDst, int len, int nChannels,
                              ZvpsIIRState64f_32s** ppState, int scaleFactor) {
    return zvps::filterChannels(ppSrc, ppDst, len, nChannels, ppState, scaleFactor);
}
ZvpStatus zvpsIIR64f_32s_IPSfs(Zvp32s** ppSrcDst, int len, int nChannels, ZvpsIIRState64f_32s** ppState,
                               int scaleFactor) {
    return zvps::filterChannels(ppSrcDst, ppSrcDst, len, nChannels, ppState, scaleFactor);
}
