/* Signals out of nothing: tones, triangle waves, random numbers, ramps and the test signal of Jaehne.

   Integer results are rounded to nearest with ties to even unless stated otherwise, and saturated. Random numbers,
   tones and triangles come from a state, which the functions advance, so that a signal may be generated in calls of any
   lengths: no cut changes a number. The Direct forms do without: they take the phase or the seed by pointer and leave
   there what the next call goes on with.

   States are initialised in memory of the size that GetSize or GetStateSize reports, aligned as malloc aligns it, or
   allocated by InitAlloc. Free ends a state's use, and releases the memory of one that InitAlloc made. One call at a
   time on a state; nothing else is shared.

   Unless stated otherwise null pointers give zvpStsNullPtr, then a length below 1 zvpStsBadSize, then parameters out of
   their range (NaN too) the status named with the family, then a state of another kind zvpStsContextMismatch; InitAlloc
   gives zvpStsNoMemory where its allocation fails. Nothing is written on an error. Any alignment of the element type is
   fine. */
#ifndef ZVPS_GENERATORS_H
#define ZVPS_GENERATORS_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

typedef struct ZvpsRandUniformState_8u ZvpsRandUniformState_8u;
typedef struct ZvpsRandUniformState_16s ZvpsRandUniformState_16s;
typedef struct ZvpsRandUniformState_32f ZvpsRandUniformState_32f;
typedef struct ZvpsRandGaussState_8u ZvpsRandGaussState_8u;
typedef struct ZvpsRandGaussState_16s ZvpsRandGaussState_16s;
typedef struct ZvpsRandGaussState_32f ZvpsRandGaussState_32f;
typedef struct ZvpsToneState_16s ZvpsToneState_16s;
typedef struct ZvpsTriangleState_16s ZvpsTriangleState_16s;

/* Uniform random numbers: r (high - low) 2^-32 + (low + high) / 2 in double precision, with r from a sequence of signed
   32-bit integers. r is the sum, modulo 2^32, of two words: of L = 69069 L + 1013904243, and of
       T(k) = T(k-2) - T(k-3) + W(k-1), W(k) = -1 if that is negative as a signed number and else 0;
       T(k) is then lowered by 18 if it is negative.
   From the seed s come L(0) = 1131199209, W(0) = -1, T(0) = s, T(-1) = 69069 s + 1013904243 and
   T(-2) = 69069 T(-1) + 1013904243. Equal seeds give equal sequences. Any bounds are accepted. */
ZvpStatus zvpsRandUniformInit_16s(ZvpsRandUniformState_16s* pState, Zvp16s low, Zvp16s high, Zvp32u seed);
ZvpStatus zvpsRandUniformInitAlloc_8u(ZvpsRandUniformState_8u** ppState, Zvp8u low, Zvp8u high, Zvp32u seed);
ZvpStatus zvpsRandUniformInitAlloc_16s(ZvpsRandUniformState_16s** ppState, Zvp16s low, Zvp16s high, Zvp32u seed);
ZvpStatus zvpsRandUniformInitAlloc_32f(ZvpsRandUniformState_32f** ppState, Zvp32f low, Zvp32f high, Zvp32u seed);
ZvpStatus zvpsRandUniformGetSize_16s(int* pSize);
ZvpStatus zvpsRandUniform_8u(Zvp8u* pDst, int len, ZvpsRandUniformState_8u* pState);
ZvpStatus zvpsRandUniform_16s(Zvp16s* pDst, int len, ZvpsRandUniformState_16s* pState);
ZvpStatus zvpsRandUniform_32f(Zvp32f* pDst, int len, ZvpsRandUniformState_32f* pState);
ZvpStatus zvpsRandUniformFree_8u(ZvpsRandUniformState_8u* pState);
ZvpStatus zvpsRandUniformFree_16s(ZvpsRandUniformState_16s* pState);
ZvpStatus zvpsRandUniformFree_32f(ZvpsRandUniformState_32f* pState);

/* The same numbers as a state initialised with *pSeed gives; *pSeed becomes the sequence's next r. */
ZvpStatus zvpsRandUniform_Direct_16s(Zvp16s* pDst, int len, Zvp16s low, Zvp16s high, Zvp32u* pSeed);
ZvpStatus zvpsRandUniform_Direct_32f(Zvp32f* pDst, int len, Zvp32f low, Zvp32f high, Zvp32u* pSeed);
ZvpStatus zvpsRandUniform_Direct_64f(Zvp64f* pDst, int len, Zvp64f low, Zvp64f high, Zvp32u* pSeed);

/* Normally distributed random numbers, by the polar method of Marsaglia: of successive pairs u, v = r 2^-31 those are
   taken with 0 < s = u^2 + v^2 < 1; they give two numbers, mean + stdDev * u f and mean + stdDev * v f, where
   f = sqrt(-2 ln(s) / s). Any parameters are accepted. */
ZvpStatus zvpsRandGaussInit_16s(ZvpsRandGaussState_16s* pState, Zvp16s mean, Zvp16s stdDev, Zvp32u seed);
ZvpStatus zvpsRandGaussInitAlloc_8u(ZvpsRandGaussState_8u** ppState, Zvp8u mean, Zvp8u stdDev, Zvp32u seed);
ZvpStatus zvpsRandGaussInitAlloc_16s(ZvpsRandGaussState_16s** ppState, Zvp16s mean, Zvp16s stdDev, Zvp32u seed);
ZvpStatus zvpsRandGaussInitAlloc_32f(ZvpsRandGaussState_32f** ppState, Zvp32f mean, Zvp32f stdDev, Zvp32u seed);
ZvpStatus zvpsRandGaussGetSize_16s(int* pSize);
ZvpStatus zvpsRandGauss_8u(Zvp8u* pDst, int len, ZvpsRandGaussState_8u* pState);
ZvpStatus zvpsRandGauss_16s(Zvp16s* pDst, int len, ZvpsRandGaussState_16s* pState);
ZvpStatus zvpsRandGauss_32f(Zvp32f* pDst, int len, ZvpsRandGaussState_32f* pState);
ZvpStatus zvpsRandGaussFree_8u(ZvpsRandGaussState_8u* pState);
ZvpStatus zvpsRandGaussFree_16s(ZvpsRandGaussState_16s* pState);
ZvpStatus zvpsRandGaussFree_32f(ZvpsRandGaussState_32f* pState);

/* The same numbers as a state initialised with *pSeed gives; *pSeed becomes the sequence's next r. The second number of
   a pair is lost where a call ends between the two. */
ZvpStatus zvpsRandGauss_Direct_16s(Zvp16s* pDst, int len, Zvp16s mean, Zvp16s stdDev, Zvp32u* pSeed);
ZvpStatus zvpsRandGauss_Direct_32f(Zvp32f* pDst, int len, Zvp32f mean, Zvp32f stdDev, Zvp32u* pSeed);
ZvpStatus zvpsRandGauss_Direct_64f(Zvp64f* pDst, int len, Zvp64f mean, Zvp64f stdDev, Zvp32u* pSeed);

/* Tones: magn cos(2 pi rFreq n + phase) for n = 0, 1, ... rFreq is in cycles a sample, the phase in radians; the Q15
   forms take both times 32768. magn must be positive (zvpStsBadToneMagn), rFreq in [0, 0.5), in Q15 0 to 16383
   (zvpStsBadToneFreq), the phase in [0, 2 pi), in Q15 0 to 205886 (zvpStsBadTonePhase). Rounding errors do not grow
   with n: they stay below 2.4e-7 magn in single precision, 1e-15 magn in double and, before rounding to integers, 1e-14
   magn. */
ZvpStatus zvpsToneInitQ15_16s(ZvpsToneState_16s* pState, Zvp16s magn, int rFreqQ15, int phaseQ15);
ZvpStatus zvpsToneInitAllocQ15_16s(ZvpsToneState_16s** ppState, Zvp16s magn, int rFreqQ15, int phaseQ15);
ZvpStatus zvpsToneGetStateSizeQ15_16s(int* pSize);
ZvpStatus zvpsToneQ15_16s(Zvp16s* pDst, int len, ZvpsToneState_16s* pState);
ZvpStatus zvpsToneFree(ZvpsToneState_16s* pState);

/* Parameters are checked after the length. *pPhase becomes the phase of the sample after the last; one that would be
   rounded to 2 pi, in Q15 beyond 205886, becomes 0. */
ZvpStatus zvpsToneQ15_Direct_16s(Zvp16s* pDst, int len, Zvp16s magn, int rFreqQ15, int* pPhaseQ15);

/* As above. Complex tones are magn (cos(...) + i sin(...)). Any hint is accepted; all give the same. */
ZvpStatus zvpsTone_Direct_16s(Zvp16s* pDst, int len, Zvp16s magn, Zvp32f rFreq, Zvp32f* pPhase, ZvpHintAlgorithm hint);
ZvpStatus zvpsTone_Direct_16sc(Zvp16sc* pDst, int len, Zvp16s magn, Zvp32f rFreq, Zvp32f* pPhase,
                               ZvpHintAlgorithm hint);
ZvpStatus zvpsTone_Direct_32f(Zvp32f* pDst, int len, Zvp32f magn, Zvp32f rFreq, Zvp32f* pPhase, ZvpHintAlgorithm hint);
ZvpStatus zvpsTone_Direct_32fc(Zvp32fc* pDst, int len, Zvp32f magn, Zvp32f rFreq, Zvp32f* pPhase,
                               ZvpHintAlgorithm hint);
ZvpStatus zvpsTone_Direct_64f(Zvp64f* pDst, int len, Zvp64f magn, Zvp64f rFreq, Zvp64f* pPhase, ZvpHintAlgorithm hint);
ZvpStatus zvpsTone_Direct_64fc(Zvp64fc* pDst, int len, Zvp64f magn, Zvp64f rFreq, Zvp64f* pPhase,
                               ZvpHintAlgorithm hint);

/* Triangle waves of period 1 / rFreq: at phase 0 the wave is at its trough, -magn, rises in a straight line to its
   peak, magn, at phase pi + asym, and falls in another to the trough at 2 pi. The Q15 forms take all but the magnitude
   times 32768. magn must be positive (zvpStsBadTriMagn), rFreq in [0, 0.5), in Q15 0 to 16383 (zvpStsBadTriFreq), the
   phase in [0, 2 pi), in Q15 0 to 205886 (zvpStsBadTriPhase), asym in [-pi, pi), in Q15 -102943 to 102943
   (zvpStsBadTriAsym); they are checked in that order. */
ZvpStatus zvpsTriangleInitQ15_16s(ZvpsTriangleState_16s* pState, Zvp16s magn, int rFreqQ15, int phaseQ15, int asymQ15);
ZvpStatus zvpsTriangleInitAllocQ15_16s(ZvpsTriangleState_16s** ppState, Zvp16s magn, int rFreqQ15, int phaseQ15,
                                       int asymQ15);
ZvpStatus zvpsTriangleGetStateSizeQ15_16s(int* pSize);
ZvpStatus zvpsTriangleQ15_16s(Zvp16s* pDst, int len, ZvpsTriangleState_16s* pState);
ZvpStatus zvpsTriangleFree(ZvpsTriangleState_16s* pState);

/* A null pPhase is found first, then parameters out of their ranges, then a null pDst, then the length. The Q15 form
   does what Triangle_Direct_16s does with the parameters divided by 32768. *pPhase becomes the phase of the sample
   after the last; one that would be rounded to 2 pi, in Q15 beyond 205886, becomes 0. */
ZvpStatus zvpsTriangleQ15_Direct_16s(Zvp16s* pDst, int len, Zvp16s magn, int rFreqQ15, int asymQ15, int* pPhaseQ15);

/* As above. The imaginary part is the real part at a phase 3 pi / 2 ahead. */
ZvpStatus zvpsTriangle_Direct_16s(Zvp16s* pDst, int len, Zvp16s magn, Zvp32f rFreq, Zvp32f asym, Zvp32f* pPhase);
ZvpStatus zvpsTriangle_Direct_16sc(Zvp16sc* pDst, int len, Zvp16s magn, Zvp32f rFreq, Zvp32f asym, Zvp32f* pPhase);
ZvpStatus zvpsTriangle_Direct_32f(Zvp32f* pDst, int len, Zvp32f magn, Zvp32f rFreq, Zvp32f asym, Zvp32f* pPhase);
ZvpStatus zvpsTriangle_Direct_32fc(Zvp32fc* pDst, int len, Zvp32f magn, Zvp32f rFreq, Zvp32f asym, Zvp32f* pPhase);
ZvpStatus zvpsTriangle_Direct_64f(Zvp64f* pDst, int len, Zvp64f magn, Zvp64f rFreq, Zvp64f asym, Zvp64f* pPhase);
ZvpStatus zvpsTriangle_Direct_64fc(Zvp64fc* pDst, int len, Zvp64f magn, Zvp64f rFreq, Zvp64f asym, Zvp64f* pPhase);

/* The test signal of Jaehne, a sine of rising frequency: magn sin((pi / 2) n^2 / len) for n = 0, 1, ..., len - 1. A
   negative magn gives zvpStsBadJaehneMagn. Unsigned elements are 0 where the sine is negative. */
ZvpStatus zvpsVectorJaehne_8u(Zvp8u* pDst, int len, Zvp8u magn);
ZvpStatus zvpsVectorJaehne_8s(Zvp8s* pDst, int len, Zvp8s magn);
ZvpStatus zvpsVectorJaehne_16u(Zvp16u* pDst, int len, Zvp16u magn);
ZvpStatus zvpsVectorJaehne_16s(Zvp16s* pDst, int len, Zvp16s magn);
ZvpStatus zvpsVectorJaehne_32u(Zvp32u* pDst, int len, Zvp32u magn);
ZvpStatus zvpsVectorJaehne_32s(Zvp32s* pDst, int len, Zvp32s magn);
ZvpStatus zvpsVectorJaehne_32f(Zvp32f* pDst, int len, Zvp32f magn);
ZvpStatus zvpsVectorJaehne_64f(Zvp64f* pDst, int len, Zvp64f magn);

/* offset + slope n for n = 0, 1, ..., computed in single precision. Integers are rounded to nearest with ties up. A NaN
   gives the integer 0. */
ZvpStatus zvpsVectorRamp_8u(Zvp8u* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_8s(Zvp8s* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_16u(Zvp16u* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_16s(Zvp16s* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_32u(Zvp32u* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_32s(Zvp32s* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_32f(Zvp32f* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorRamp_64f(Zvp64f* pDst, int len, Zvp32f offset, Zvp32f slope);

/* offset + slope n for n = 0, 1, ..., computed in double precision. A NaN gives the integer 0. */
ZvpStatus zvpsVectorSlope_8u(Zvp8u* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_8s(Zvp8s* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_16u(Zvp16u* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_16s(Zvp16s* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_32u(Zvp32u* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_32s(Zvp32s* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_32f(Zvp32f* pDst, int len, Zvp32f offset, Zvp32f slope);
ZvpStatus zvpsVectorSlope_64f(Zvp64f* pDst, int len, Zvp64f offset, Zvp64f slope);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
