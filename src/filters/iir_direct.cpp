// Recursive filters in integers without a state, and those with few taps.
#include "core/checks.hpp"
#include "filters/iir_state.hpp"

#include <algorithm>
#include <climits>
#include <type_traits>

namespace zvps {
namespace {

// ---- 16 bits, without a state ----

// a / b to nearest, ties to even, limited to the range of T. |a| < 2^62, b of 16 bits.
template <class T>
T quotient(int64_t a, int64_t b) {
    if (b < 0) {
        a = -a;
        b = -b;
    }
    int64_t result = a / b;
    int64_t twice = 2 * (a % b);
    if (twice < 0) {
        twice += 2 * b;
        --result;
    }
    if (twice > b || (twice == b && result % 2 != 0)) ++result;
    using Limits = std::numeric_limits<T>;
    return static_cast<T>(std::clamp<int64_t>(result, Limits::min(), Limits::max()));
}

Zvp16s filterDirect(Zvp16s x, const Zvp16s* b, const Zvp16s* a, int order, Zvp32s* delay) {
    const int64_t v = int64_t{b[0]} * x + delay[0];
    for (int k = 1; k <= order; ++k) {
        const int64_t next = int64_t{b[k]} * x + (k < order ? delay[k] : 0);
        delay[k - 1] = quotient<Zvp32s>(next * a[0] - a[k] * v, a[0]);
    }
    return quotient<Zvp16s>(v, a[0]);
}

Zvp16s filterSections(Zvp16s x, const Zvp16s* taps, int sections, Zvp32s* delay) {
    for (int s = 0; s < sections; ++s)
        x = filterDirect(x, taps + 6 * int64_t{s}, taps + 6 * int64_t{s} + 3, 2, delay + 2 * int64_t{s});
    return x;
}

ZvpStatus direct(const Zvp16s* src, Zvp16s* dst, int len, const Zvp16s* taps, int order, Zvp32s* delay) {
    if (const ZvpStatus status = checkVectors(len, src, dst, taps, delay)) return status;
    if (order < 1 || order == INT_MAX) return zvpStsBadIirOrder;
    const Zvp16s* const a = taps + order + 1;
    if (a[0] == 0) return zvpStsDivByZeroErr;
    for (int i = 0; i < len; ++i)
        dst[i] = filterDirect(src[i], taps, a, order, delay);
    return zvpStsOk;
}

ZvpStatus directSections(const Zvp16s* src, Zvp16s* dst, const Zvp16s* taps, int sections, Zvp32s* delay) {
    if (src == nullptr || dst == nullptr || taps == nullptr || delay == nullptr) return zvpStsNullPtr;
    if (sections < 1) return zvpStsBadIirOrder;
    if (hasZeroDivisor(IirKind::biquads, taps, sections)) return zvpStsDivByZeroErr;
    *dst = filterSections(*src, taps, sections, delay);
    return zvpStsOk;
}

// ---- Few taps ----

// Inputs and outputs lie in rings, the newest element at `next` - 1.
struct SparseRing {
    Zvp32f* elements;
    int32_t length; // 0: none is needed
    int32_t next;

    Zvp32f back(int32_t position) const {
        const int32_t i = next - position;
        return elements[i < 0 ? i + length : i];
    }
    void push(Zvp32f v) {
        if (length == 0) return;
        elements[next] = v;
        next = next + 1 == length ? 0 : next + 1;
    }
};

struct SparseState {
    uint32_t tag;
    int32_t countB;
    int32_t countA; // without A0
    Zvp32f* tapsB;
    Zvp32f* tapsA;
    Zvp32s* positionsB;
    Zvp32s* positionsA;
    SparseRing inputs;
    SparseRing outputs;
};

SparseState* sparseHeader(ZvpsIIRSparseState_32f* state) {
    return reinterpret_cast<SparseState*>(state);
}

// 0 where an int does not hold it.
int sparseSize(int64_t lenB, int64_t lenA, int64_t maxPosB, int64_t maxPosA) {
    constexpr int64_t kTap = sizeof(Zvp32f) + sizeof(Zvp32s);
    const int64_t bytes =
        31 + int64_t{sizeof(SparseState)} + kTap * (lenB + lenA) + int64_t{sizeof(Zvp32f)} * (maxPosB + maxPosA);
    return bytes > INT_MAX ? 0 : static_cast<int>(bytes);
}

bool doIncrease(const Zvp32s* positions, int count) {
    for (int i = 0; i < count; ++i) {
        if (positions[i] < 0 || (i > 0 && positions[i] <= positions[i - 1])) return false;
    }
    return true;
}

// The past, newest first, into a ring from its start.
template <class Take>
SparseRing makeRing(Take take, int32_t length, const Zvp32f* past) {
    SparseRing ring = {take(Zvp32f{}, length), length, 0};
    for (int32_t i = 0; i < length; ++i)
        ring.elements[i] = past == nullptr ? 0 : past[length - 1 - i];
    return ring;
}

ZvpsIIRSparseState_32f* buildSparse(const Zvp32f* tapsB, const Zvp32s* posB, int lenB, const Zvp32f* tapsA,
                                    const Zvp32s* posA, int lenA, const Zvp32f* dlyLine, Zvp8u* buffer) {
    Zvp8u* memory = buffer + (0 - reinterpret_cast<uintptr_t>(buffer)) % 32;
    const auto take = [&memory](auto type, int64_t count) {
        auto* const part = reinterpret_cast<decltype(type)*>(memory);
        memory += count * static_cast<int64_t>(sizeof(type));
        return part;
    };
    auto& state = *take(SparseState{}, 1);
    const bool hasA0 = lenA > 0 && posA[0] == 0;
    const int first = hasA0 ? 1 : 0;
    const Zvp32f factor = hasA0 ? 1 / tapsA[0] : 1;
    state = {kIirSparseTag,
             lenB,
             lenA - first,
             take(Zvp32f{}, lenB),
             take(Zvp32f{}, lenA),
             take(Zvp32s{}, lenB),
             take(Zvp32s{}, lenA),
             {},
             {}};
    for (int i = 0; i < lenB; ++i) {
        state.tapsB[i] = tapsB[i] * factor;
        state.positionsB[i] = posB[i];
    }
    for (int i = 0; i < state.countA; ++i) {
        state.tapsA[i] = tapsA[first + i] * factor;
        state.positionsA[i] = posA[first + i];
    }
    const int32_t inputs = posB[lenB - 1];
    state.inputs = makeRing(take, inputs, dlyLine);
    state.outputs = makeRing(take, lenA > 0 ? posA[lenA - 1] : 0, dlyLine == nullptr ? nullptr : dlyLine + inputs);
    return reinterpret_cast<ZvpsIIRSparseState_32f*>(&state);
}

} // namespace
} // namespace zvps

ZvpStatus zvpsIIR_Direct_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, const Zvp16s* pTaps, int order,
                             Zvp32s* pDlyLine) {
    return zvps::direct(pSrc, pDst, len, pTaps, order, pDlyLine);
}
ZvpStatus zvpsIIR_Direct_16s_I(Zvp16s* pSrcDst, int len, const Zvp16s* pTaps, int order, Zvp32s* pDlyLine) {
    return zvps::direct(pSrcDst, pSrcDst, len, pTaps, order, pDlyLine);
}
ZvpStatus zvpsIIROne_Direct_16s(Zvp16s src, Zvp16s* pDstVal, const Zvp16s* pTaps, int order, Zvp32s* pDlyLine) {
    return zvps::direct(&src, pDstVal, 1, pTaps, order, pDlyLine);
}
ZvpStatus zvpsIIROne_Direct_16s_I(Zvp16s* pSrcDst, const Zvp16s* pTaps, int order, Zvp32s* pDlyLine) {
    return zvps::direct(pSrcDst, pSrcDst, 1, pTaps, order, pDlyLine);
}
ZvpStatus zvpsIIROne_BiQuadDirect_16s(Zvp16s src, Zvp16s* pDstVal, const Zvp16s* pTaps, int numBq, Zvp32s* pDlyLine) {
    return zvps::directSections(&src, pDstVal, pTaps, numBq, pDlyLine);
}
ZvpStatus zvpsIIROne_BiQuadDirect_16s_I(Zvp16s* pSrcDst, const Zvp16s* pTaps, int numBq, Zvp32s* pDlyLine) {
    return zvps::directSections(pSrcDst, pSrcDst, pTaps, numBq, pDlyLine);
}

ZvpStatus zvpsIIRSparseGetStateSize_32f(int numLenB, int numLenA, int maxPosB, int maxPosA, int* pStateSize) {
    if (pStateSize == nullptr) return zvpStsNullPtr;
    if (numLenB < 1 || numLenA < 0) return zvpStsBadIirOrder;
    if (maxPosB < 0 || maxPosA < 0) return zvpStsBadSparsePos;
    const int bytes = zvps::sparseSize(numLenB, numLenA, maxPosB, maxPosA);
    if (bytes == 0) return zvpStsBadIirOrder;
    *pStateSize = bytes;
    return zvpStsOk;
}

ZvpStatus zvpsIIRSparseInit_32f(ZvpsIIRSparseState_32f** ppState, const Zvp32f* pTapsB, const Zvp32s* pPosB,
                                int numLenB, const Zvp32f* pTapsA, const Zvp32s* pPosA, int numLenA,
                                const Zvp32f* pDlyLine, Zvp8u* pBuffer) {
    if (ppState == nullptr || pTapsB == nullptr || pPosB == nullptr || pBuffer == nullptr) return zvpStsNullPtr;
    if (numLenA > 0 && (pTapsA == nullptr || pPosA == nullptr)) return zvpStsNullPtr;
    if (numLenB < 1 || numLenA < 0) return zvpStsBadIirOrder;
    if (!zvps::doIncrease(pPosB, numLenB) || !zvps::doIncrease(pPosA, numLenA)) return zvpStsBadSparsePos;
    if (numLenA > 0 && pPosA[0] == 0 && pTapsA[0] == 0) return zvpStsDivByZeroErr;
    const int maxPosA = numLenA > 0 ? pPosA[numLenA - 1] : 0;
    if (zvps::sparseSize(numLenB, numLenA, pPosB[numLenB - 1], maxPosA) == 0) return zvpStsBadIirOrder;
    *ppState = zvps::buildSparse(pTapsB, pPosB, numLenB, pTapsA, pPosA, numLenA, pDlyLine, pBuffer);
    return zvpStsOk;
}

ZvpStatus zvpsIIRSparse_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, ZvpsIIRSparseState_32f* pState) {
    if (const ZvpStatus status = zvps::checkVectors(len, pSrc, pDst, pState)) return status;
    zvps::SparseState& state = *zvps::sparseHeader(pState);
    if (state.tag != zvps::kIirSparseTag) return zvpStsContextMismatch;
    for (int i = 0; i < len; ++i) {
        const Zvp32f x = pSrc[i];
        Zvp32f y = 0;
        for (int k = 0; k < state.countB; ++k) {
            const int32_t position = state.positionsB[k];
            y += state.tapsB[k] * (position == 0 ? x : state.inputs.back(position));
        }
        for (int k = 0; k < state.countA; ++k)
            y -= state.tapsA[k] * state.outputs.back(state.positionsA[k]);
        state.inputs.push(x);
        state.outputs.push(y);
        pDst[i] = y;
    }
    return zvpStsOk;
}
