// Filters of few taps far apart.
#include "core/checks.hpp"
#include "filters/fir_run.hpp"

namespace zvps {
namespace {

constexpr uint32_t kSparseTag = firTag(35);
constexpr int64_t kBlock = 1024;

struct FirSparseState {
    uint32_t tag;
    int32_t tapsLen;
    int32_t order;
    Zvp32f* taps;
    Zvp32s* positions;
    Zvp32f* inputs; // the last `order` of them, the oldest first, and room for a block
};

int64_t sparseSize(int64_t tapsLen, int64_t order) {
    return 15 + static_cast<int64_t>(sizeof(FirSparseState)) + 8 * tapsLen + 4 * (order + kBlock);
}

} // namespace
} // namespace zvps

ZvpStatus zvpsFIRSparseGetStateSize_32f(int nzTapsLen, int order, int* pSize) {
    if (pSize == nullptr) return zvpStsNullPtr;
    if (nzTapsLen < 1) return zvpStsBadFirLength;
    if (order < 0) return zvpStsBadSparsePos;
    const int64_t bytes = zvps::sparseSize(nzTapsLen, order);
    if (bytes > std::numeric_limits<int>::max()) return zvpStsNoMemory;
    *pSize = static_cast<int>(bytes);
    return zvpStsOk;
}

ZvpStatus zvpsFIRSparseInit_32f(ZvpsFIRSparseState_32f** ppState, const Zvp32f* pNZTaps, const Zvp32s* pNZTapPos,
                                int nzTapsLen, const Zvp32f* pDlyLine, Zvp8u* pBuffer) {
    if (ppState == nullptr || pNZTaps == nullptr || pNZTapPos == nullptr || pBuffer == nullptr) return zvpStsNullPtr;
    if (nzTapsLen < 1) return zvpStsBadFirLength;
    for (int i = 0; i < nzTapsLen; ++i) {
        if (pNZTapPos[i] < 0 || (i > 0 && pNZTapPos[i] <= pNZTapPos[i - 1])) return zvpStsBadSparsePos;
    }
    const auto address = reinterpret_cast<uintptr_t>(pBuffer);
    auto& state = *reinterpret_cast<zvps::FirSparseState*>(pBuffer + (16 - address % 16) % 16);
    state.tag = zvps::kSparseTag;
    state.tapsLen = nzTapsLen;
    state.order = pNZTapPos[nzTapsLen - 1];
    state.taps = reinterpret_cast<Zvp32f*>(&state + 1);
    state.positions = reinterpret_cast<Zvp32s*>(state.taps + nzTapsLen);
    state.inputs = reinterpret_cast<Zvp32f*>(state.positions + nzTapsLen);
    std::copy_n(pNZTaps, nzTapsLen, state.taps);
    std::copy_n(pNZTapPos, nzTapsLen, state.positions);
    for (int i = 0; i < state.order; ++i)
        state.inputs[i] = pDlyLine == nullptr ? 0 : pDlyLine[state.order - 1 - i];
    *ppState = reinterpret_cast<ZvpsFIRSparseState_32f*>(&state);
    return zvpStsOk;
}

ZvpStatus zvpsFIRSparse_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, ZvpsFIRSparseState_32f* pState) {
    if (const ZvpStatus status = zvps::checkVectors(numIters, pSrc, pDst, pState)) return status;
    auto& state = *reinterpret_cast<zvps::FirSparseState*>(pState);
    if (state.tag != zvps::kSparseTag) return zvpStsContextMismatch;
    const auto past = static_cast<size_t>(state.order);
    const auto n = static_cast<size_t>(numIters);
    constexpr size_t kBlock = zvps::kBlock;
    for (size_t i = 0; i < n; i += kBlock) {
        const size_t count = std::min(kBlock, n - i);
        std::copy_n(pSrc + i, count, state.inputs + past);
        zvps::kernels().filters->sparse_32f(state.inputs + past, pDst + i, count, state.taps, state.positions,
                                            static_cast<size_t>(state.tapsLen));
        std::copy_n(state.inputs + count, past, state.inputs);
    }
    return zvpStsOk;
}
