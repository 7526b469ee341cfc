/* Correlation and convolution of finite vectors, whose elements beyond their ends count as zeros.

   From a length on, which differs by type, results come from Fourier transforms, shorter ones from direct sums; both
   have the precision of the element type, relative to the vectors' norms. Infinities and NaN may spread to results that
   they do not belong to. Results do not depend on the number of threads; Conv alone uses more than one.

   A form ending in Sfs stores the exact sum times 2^-scaleFactor, rounded to nearest with ties to even, then saturated;
   every int is a valid scaleFactor.

   Null pointers give zvpStsNullPtr, then a length below 1 zvpStsBadSize; nothing is written on these. Transforms take
   memory: where it has run out the functions give zvpStsNoMemory, where they would be longer than the library has them
   zvpStsBadFftOrder, and the destination may be partly written. The destination overlaps no source; the two sources may
   be the same. Any alignment of the element type is fine. No state is kept. */
#ifndef ZVPS_CORRELATION_H
#define ZVPS_CORRELATION_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Auto-correlation: dst[k] = sum over n of conj(src[n]) * src[n + k], k = 0..dstLen-1; zeros from k = srcLen on. */
ZvpStatus zvpsAutoCorr_16s_Sfs(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, int scaleFactor);
ZvpStatus zvpsAutoCorr_32f(const Zvp32f* src, int srcLen, Zvp32f* dst, int dstLen);
ZvpStatus zvpsAutoCorr_32fc(const Zvp32fc* src, int srcLen, Zvp32fc* dst, int dstLen);
ZvpStatus zvpsAutoCorr_64f(const Zvp64f* src, int srcLen, Zvp64f* dst, int dstLen);
ZvpStatus zvpsAutoCorr_64fc(const Zvp64fc* src, int srcLen, Zvp64fc* dst, int dstLen);

/* The biased estimate, which is the auto-correlation divided by srcLen. Floating point is multiplied by the rounded
   1 / srcLen; integers are rounded once, after division and scaling. */
ZvpStatus zvpsAutoCorr_NormA_16s_Sfs(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, int scaleFactor);
ZvpStatus zvpsAutoCorr_NormA_32f(const Zvp32f* src, int srcLen, Zvp32f* dst, int dstLen);
ZvpStatus zvpsAutoCorr_NormA_32fc(const Zvp32fc* src, int srcLen, Zvp32fc* dst, int dstLen);
ZvpStatus zvpsAutoCorr_NormA_64f(const Zvp64f* src, int srcLen, Zvp64f* dst, int dstLen);
ZvpStatus zvpsAutoCorr_NormA_64fc(const Zvp64fc* src, int srcLen, Zvp64fc* dst, int dstLen);

/* The unbiased estimate: dst[k] is divided by srcLen - k, k < srcLen. */
ZvpStatus zvpsAutoCorr_NormB_16s_Sfs(const Zvp16s* src, int srcLen, Zvp16s* dst, int dstLen, int scaleFactor);
ZvpStatus zvpsAutoCorr_NormB_32f(const Zvp32f* src, int srcLen, Zvp32f* dst, int dstLen);
ZvpStatus zvpsAutoCorr_NormB_32fc(const Zvp32fc* src, int srcLen, Zvp32fc* dst, int dstLen);
ZvpStatus zvpsAutoCorr_NormB_64f(const Zvp64f* src, int srcLen, Zvp64f* dst, int dstLen);
ZvpStatus zvpsAutoCorr_NormB_64fc(const Zvp64fc* src, int srcLen, Zvp64fc* dst, int dstLen);

/* Cross-correlation: dst[k] = sum over n of conj(src1[n]) * src2[n + lowLag + k], k = 0..dstLen-1; every int is a valid
   lowLag. 16s64s: the exact sums. */
ZvpStatus zvpsCrossCorr_16s_Sfs(const Zvp16s* src1, int src1Len, const Zvp16s* src2, int src2Len, Zvp16s* dst,
                                int dstLen, int lowLag, int scaleFactor);
ZvpStatus zvpsCrossCorr_16s64s(const Zvp16s* src1, int src1Len, const Zvp16s* src2, int src2Len, Zvp64s* dst,
                               int dstLen, int lowLag);
ZvpStatus zvpsCrossCorr_32f(const Zvp32f* src1, int src1Len, const Zvp32f* src2, int src2Len, Zvp32f* dst, int dstLen,
                            int lowLag);
ZvpStatus zvpsCrossCorr_32fc(const Zvp32fc* src1, int src1Len, const Zvp32fc* src2, int src2Len, Zvp32fc* dst,
                             int dstLen, int lowLag);
ZvpStatus zvpsCrossCorr_64f(const Zvp64f* src1, int src1Len, const Zvp64f* src2, int src2Len, Zvp64f* dst, int dstLen,
                            int lowLag);
ZvpStatus zvpsCrossCorr_64fc(const Zvp64fc* src1, int src1Len, const Zvp64fc* src2, int src2Len, Zvp64fc* dst,
                             int dstLen, int lowLag);

/* Convolution: dst[k] = sum over n of src1[n] * src2[k - n], k = 0..src1Len+src2Len-2. */
ZvpStatus zvpsConv_16s_Sfs(const Zvp16s* src1, int src1Len, const Zvp16s* src2, int src2Len, Zvp16s* dst,
                           int scaleFactor);
ZvpStatus zvpsConv_32f(const Zvp32f* src1, int src1Len, const Zvp32f* src2, int src2Len, Zvp32f* dst);
ZvpStatus zvpsConv_64f(const Zvp64f* src1, int src1Len, const Zvp64f* src2, int src2Len, Zvp64f* dst);

/* A part of the convolution: dst[k] = sum over n of src1[n] * src2[bias + k - n], k = 0..dstLen-1; zeros before the
   convolution's begin and behind its end. Every int is a valid bias. */
ZvpStatus zvpsConvBiased_32f(const Zvp32f* src1, int src1Len, const Zvp32f* src2, int src2Len, Zvp32f* dst, int dstLen,
                             int bias);

/* Cyclic convolution of vectors of N = 4 or 8 elements: dst[k] = sum over n of src1[n] * src2[(k - n) mod N]. */
ZvpStatus zvpsConvCyclic4x4_32f32fc(const Zvp32f* src1, const Zvp32fc* src2, Zvp32fc* dst);
ZvpStatus zvpsConvCyclic8x8_32f(const Zvp32f* src1, const Zvp32f* src2, Zvp32f* dst);
ZvpStatus zvpsConvCyclic8x8_16s_Sfs(const Zvp16s* src1, const Zvp16s* src2, Zvp16s* dst, int scaleFactor);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
