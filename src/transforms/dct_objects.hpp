// The DCT objects as entries see them.
#pragma once

#include "transforms/dct_plan.hpp"
#include "transforms/fft_objects.hpp"
#include "zvps/dct.h"
#include "zvps/dft.h"

namespace zvps {

#define ZVPS_DCT_TYPE(CODE, T, TAG, DIRECTION)                                                                         \
    template <>                                                                                                        \
    struct FftType<ZvpsDCT##CODE> {                                                                                    \
        using Header = DctSpec<T>;                                                                                     \
        static constexpr uint32_t kTag = TAG;                                                                          \
        static constexpr DctDirection kDirection = DIRECTION;                                                          \
        static constexpr bool kIsInteger = TAG <= 20;                                                                  \
    };
ZVPS_DCT_TYPE(FwdSpec_16s, Zvp32f, 19, kDctForward)
ZVPS_DCT_TYPE(InvSpec_16s, Zvp32f, 20, kDctInverse)
ZVPS_DCT_TYPE(FwdSpec_32f, Zvp32f, 21, kDctForward)
ZVPS_DCT_TYPE(InvSpec_32f, Zvp32f, 22, kDctInverse)
ZVPS_DCT_TYPE(FwdSpec_64f, Zvp64f, 23, kDctForward)
ZVPS_DCT_TYPE(InvSpec_64f, Zvp64f, 24, kDctInverse)
#undef ZVPS_DCT_TYPE

// The real transforms that longer DCTs are made of.
template <class T>
struct RealTransforms;
#define ZVPS_REAL_TRANSFORMS(TYPE)                                                                                     \
    template <>                                                                                                        \
    struct RealTransforms<Zvp##TYPE> {                                                                                 \
        using Fft = ZvpsFFTSpec_R_##TYPE;                                                                              \
        static constexpr auto& fftSizes = zvpsFFTGetSize_R_##TYPE;                                                     \
        static constexpr auto& fftInit = zvpsFFTInit_R_##TYPE;                                                         \
        static constexpr auto& fftForward = zvpsFFTFwd_RToCCS_##TYPE##_I;                                              \
        static constexpr auto& fftInverse = zvpsFFTInv_CCSToR_##TYPE##_I;                                              \
                                                                                                                       \
        using Dft = ZvpsDFTSpec_R_##TYPE;                                                                              \
        static constexpr auto& dftInitAlloc = zvpsDFTInitAlloc_R_##TYPE;                                               \
        static constexpr auto& dftFree = zvpsDFTFree_R_##TYPE;                                                         \
        static constexpr auto& dftBufSize = zvpsDFTGetBufSize_R_##TYPE;                                                \
        static constexpr auto& dftForward = zvpsDFTFwd_RToCCS_##TYPE;                                                  \
        static constexpr auto& dftInverse = zvpsDFTInv_CCSToR_##TYPE;                                                  \
    };
ZVPS_REAL_TRANSFORMS(32f)
ZVPS_REAL_TRANSFORMS(64f)
#undef ZVPS_REAL_TRANSFORMS

// The bytes of a spectrum in CCS layout with those that keep what follows aligned.
template <class T>
int64_t dctSpectrumBytes(int length) {
    return rounded((int64_t{length} + 2) * static_cast<int64_t>(sizeof(T)));
}

// The matrix of a transform of up to kMostStoredMatrix values, and one of up to kMostDctTable values to p.
template <class T>
const T* storedDctMatrix(DctDirection direction, size_t n);
template <class T>
void storeDctMatrix(DctDirection direction, size_t n, T* p);

} // namespace zvps
