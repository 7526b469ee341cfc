/* The Fourier transform of a vector at single frequencies, after Goertzel.

   *pVal = sum over n of pSrc[n] * exp(-2 pi i rFreq n), the first sample at phase 0. rFreq is in cycles a sample, in
   [0, 1). The Two forms compute pVal[0] at pRFreq[0] and pVal[1] at pRFreq[1], each as the form for one frequency does.

   All forms accumulate in double precision. A form ending in Sfs stores both parts times 2^-scaleFactor, rounded to
   nearest with ties to even, then saturated; every int is a valid scaleFactor.

   Null pointers give zvpStsNullPtr, then a length below 1 zvpStsBadSize, then a frequency outside [0, 1)
   zvpStsBadRelFreq; nothing is written on an error. Any alignment of the element type is fine. No state is kept. */
#ifndef ZVPS_GOERTZEL_H
#define ZVPS_GOERTZEL_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* One frequency. */
ZvpStatus zvpsGoertz_16s_Sfs(const Zvp16s* pSrc, int len, Zvp16sc* pVal, Zvp32f rFreq, int scaleFactor);
ZvpStatus zvpsGoertz_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, Zvp32f rFreq, int scaleFactor);
ZvpStatus zvpsGoertz_32f(const Zvp32f* pSrc, int len, Zvp32fc* pVal, Zvp32f rFreq);
ZvpStatus zvpsGoertz_32fc(const Zvp32fc* pSrc, int len, Zvp32fc* pVal, Zvp32f rFreq);
ZvpStatus zvpsGoertz_64f(const Zvp64f* pSrc, int len, Zvp64fc* pVal, Zvp64f rFreq);
ZvpStatus zvpsGoertz_64fc(const Zvp64fc* pSrc, int len, Zvp64fc* pVal, Zvp64f rFreq);

/* Two frequencies. */
ZvpStatus zvpsGoertzTwo_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, const Zvp32f* pRFreq, int scaleFactor);
ZvpStatus zvpsGoertzTwo_32f(const Zvp32f* pSrc, int len, Zvp32fc* pVal, const Zvp32f* pRFreq);
ZvpStatus zvpsGoertzTwo_32fc(const Zvp32fc* pSrc, int len, Zvp32fc* pVal, const Zvp32f* pRFreq);
ZvpStatus zvpsGoertzTwo_64f(const Zvp64f* pSrc, int len, Zvp64fc* pVal, const Zvp64f* pRFreq);
ZvpStatus zvpsGoertzTwo_64fc(const Zvp64fc* pSrc, int len, Zvp64fc* pVal, const Zvp64f* pRFreq);

/* Frequencies in Q15: 2^-15 cycles a sample. A negative one gives zvpStsBadRelFreq before all other checks; only a null
   pRFreqQ15 (zvpStsNullPtr) comes before that. */
ZvpStatus zvpsGoertzQ15_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, Zvp16s rFreqQ15, int scaleFactor);
ZvpStatus zvpsGoertzTwoQ15_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pVal, const Zvp16s* pRFreqQ15,
                                    int scaleFactor);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
