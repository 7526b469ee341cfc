/* Reductions of a vector to a few numbers: sums, means, deviations, norms, dot products, extremes, logarithms, counts.

   Arguments. The sources stand before the length (elements; a complex pair counts as one), then the results, then a
   hint, bounds or the scale factor. Any alignment of the element type is fine; sources may be the same vector. A
   result must not lie in a source.

   Scaling (Sfs). The exact result times 2^-scaleFactor, rounded to nearest with ties to even, saturated to the
   result's type; any scale factor. Groups that round differently say so.

   Floating-point sums run in many partial sums, fused where the processor has the operation, and are added up in the
   end: the result depends on the elements and the length alone, not on addresses, and is the same with AVX2 and
   AVX-512.

   Extremes. A NaN never replaces another element, and as the first element it stays: the result is then that NaN,
   its index 0. Of equal elements, 0 and -0 among them, the first counts.

   Statuses. Null pointers (zvpStsNullPtr), then a length below 1 (zvpStsBadSize). Nothing is written on an error.
   SumLn alone warns; its result is written then.

   Threads. No state is kept; calls on different results may run at the same time. */
#ifndef ZVPS_STATISTICS_H
#define ZVPS_STATISTICS_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Sum of the elements. A complex sum is that of its parts. 16-bit and 32-bit integers: exact, then scaled. Single
   precision is summed in double and rounded once; the hint changes nothing. */
ZvpStatus zvpsSum_16s32s_Sfs(const Zvp16s* pSrc, int len, Zvp32s* pSum, int scaleFactor);
ZvpStatus zvpsSum_16s_Sfs(const Zvp16s* pSrc, int len, Zvp16s* pSum, int scaleFactor);
ZvpStatus zvpsSum_16sc32sc_Sfs(const Zvp16sc* pSrc, int len, Zvp32sc* pSum, int scaleFactor);
ZvpStatus zvpsSum_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pSum, int scaleFactor);
ZvpStatus zvpsSum_32f(const Zvp32f* pSrc, int len, Zvp32f* pSum, ZvpHintAlgorithm hint);
ZvpStatus zvpsSum_32fc(const Zvp32fc* pSrc, int len, Zvp32fc* pSum, ZvpHintAlgorithm hint);
ZvpStatus zvpsSum_32s_Sfs(const Zvp32s* pSrc, int len, Zvp32s* pSum, int scaleFactor);
ZvpStatus zvpsSum_64f(const Zvp64f* pSrc, int len, Zvp64f* pSum);
ZvpStatus zvpsSum_64fc(const Zvp64fc* pSrc, int len, Zvp64fc* pSum);

/* Sum / len. Floating point: summed in double, divided, and rounded to the result's type. Integers round twice: to an
   integer mean m, half to even on the magnitude, then m scaled by scaleFactor. Only for -31 <= scaleFactor < 0 and a
   sum that fits 32 bits, the sum is scaled up before it is divided and rounded. The hint changes nothing. */
ZvpStatus zvpsMean_16s_Sfs(const Zvp16s* pSrc, int len, Zvp16s* pMean, int scaleFactor);
ZvpStatus zvpsMean_16sc_Sfs(const Zvp16sc* pSrc, int len, Zvp16sc* pMean, int scaleFactor);
ZvpStatus zvpsMean_32f(const Zvp32f* pSrc, int len, Zvp32f* pMean, ZvpHintAlgorithm hint);
ZvpStatus zvpsMean_32fc(const Zvp32fc* pSrc, int len, Zvp32fc* pMean, ZvpHintAlgorithm hint);
ZvpStatus zvpsMean_32s_Sfs(const Zvp32s* pSrc, int len, Zvp32s* pMean, int scaleFactor);
ZvpStatus zvpsMean_64f(const Zvp64f* pSrc, int len, Zvp64f* pMean);
ZvpStatus zvpsMean_64fc(const Zvp64fc* pSrc, int len, Zvp64fc* pMean);

/* Standard deviation of a sample, sqrt((len S2 - S1^2) / (len (len - 1))) with S1 the sum of the elements and S2 that
   of their squares; a negative difference counts as 0. Single precision is computed in double. 16-bit integers: S1,
   S2 and their difference are exact, root and scaling in double, rounded to nearest with ties to even. A length
   below 2 gives zvpStsBadSize. */
ZvpStatus zvpsStdDev_16s32s_Sfs(const Zvp16s* pSrc, int len, Zvp32s* pStdDev, int scaleFactor);
ZvpStatus zvpsStdDev_16s_Sfs(const Zvp16s* pSrc, int len, Zvp16s* pStdDev, int scaleFactor);
ZvpStatus zvpsStdDev_32f(const Zvp32f* pSrc, int len, Zvp32f* pStdDev);
ZvpStatus zvpsStdDev_64f(const Zvp64f* pSrc, int len, Zvp64f* pStdDev);

/* Both from one pass: the mean S1 / len, and the standard deviation as above. The integer mean is S1 / len in double,
   scaled and rounded once, which can differ from Mean. A length below 2 gives zvpStsBadSize. */
ZvpStatus zvpsMeanStdDev_16s32s_Sfs(const Zvp16s* pSrc, int len, Zvp32s* pMean, Zvp32s* pStdDev, int scaleFactor);
ZvpStatus zvpsMeanStdDev_16s_Sfs(const Zvp16s* pSrc, int len, Zvp16s* pMean, Zvp16s* pStdDev, int scaleFactor);
ZvpStatus zvpsMeanStdDev_32f(const Zvp32f* pSrc, int len, Zvp32f* pMean, Zvp32f* pStdDev);
ZvpStatus zvpsMeanStdDev_64f(const Zvp64f* pSrc, int len, Zvp64f* pMean, Zvp64f* pStdDev);

/* Largest magnitude; a NaN is passed over. Complex elements: the modulus sqrt(re^2 + im^2), in double. Scale factors:
   for this norm, exceptionally, digits shifted out are cut off; more than 31 places down give 0, and more than 31
   places up count as 31. */
ZvpStatus zvpsNorm_Inf_16s32f(const Zvp16s* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_Inf_16s32s_Sfs(const Zvp16s* pSrc, int len, Zvp32s* pNorm, int scaleFactor);
ZvpStatus zvpsNorm_Inf_32f(const Zvp32f* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_Inf_32fc32f(const Zvp32fc* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_Inf_64f(const Zvp64f* pSrc, int len, Zvp64f* pNorm);
ZvpStatus zvpsNorm_Inf_64fc64f(const Zvp64fc* pSrc, int len, Zvp64f* pNorm);

/* Sum of the magnitudes, of complex elements the moduli. 16-bit integers: exact, then scaled, or converted to single
   precision. Floating point: summed in double; moduli in double. */
ZvpStatus zvpsNorm_L1_16s32f(const Zvp16s* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_L1_16s32s_Sfs(const Zvp16s* pSrc, int len, Zvp32s* pNorm, int scaleFactor);
ZvpStatus zvpsNorm_L1_16s64s_Sfs(const Zvp16s* pSrc, int len, Zvp64s* pNorm, int scaleFactor);
ZvpStatus zvpsNorm_L1_32f(const Zvp32f* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_L1_32fc64f(const Zvp32fc* pSrc, int len, Zvp64f* pNorm);
ZvpStatus zvpsNorm_L1_64f(const Zvp64f* pSrc, int len, Zvp64f* pNorm);
ZvpStatus zvpsNorm_L1_64fc64f(const Zvp64fc* pSrc, int len, Zvp64f* pNorm);

/* Root of the sum of the squares (L2), and the sum itself (L2Sqr). 16-bit integers: the sum is exact; L2Sqr is scaled,
   L2 is the root in double, converted to single precision, or multiplied by 2^-scaleFactor, saturated and,
   exceptionally, cut off to an integer; there the magnitude of the scale factor counts modulo 32. 32f: squared and
   summed in single precision, otherwise in double. */
ZvpStatus zvpsNorm_L2Sqr_16s64s_Sfs(const Zvp16s* pSrc, int len, Zvp64s* pNorm, int scaleFactor);
ZvpStatus zvpsNorm_L2_16s32f(const Zvp16s* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_L2_16s32s_Sfs(const Zvp16s* pSrc, int len, Zvp32s* pNorm, int scaleFactor);
ZvpStatus zvpsNorm_L2_32f(const Zvp32f* pSrc, int len, Zvp32f* pNorm);
ZvpStatus zvpsNorm_L2_32fc64f(const Zvp32fc* pSrc, int len, Zvp64f* pNorm);
ZvpStatus zvpsNorm_L2_64f(const Zvp64f* pSrc, int len, Zvp64f* pNorm);
ZvpStatus zvpsNorm_L2_64fc64f(const Zvp64fc* pSrc, int len, Zvp64f* pNorm);

/* Norms of the difference of two vectors, as above. 16-bit differences are exact. 32f: differences in single precision,
   as in 32fc32f; in 32fc64f they are taken in double. */
ZvpStatus zvpsNormDiff_Inf_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_Inf_16s32s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32s* pNorm,
                                      int scaleFactor);
ZvpStatus zvpsNormDiff_Inf_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_Inf_32fc32f(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_Inf_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_Inf_64fc64f(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_L1_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_L1_16s32s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32s* pNorm, int scaleFactor);
ZvpStatus zvpsNormDiff_L1_16s64s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp64s* pNorm, int scaleFactor);
ZvpStatus zvpsNormDiff_L1_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_L1_32fc64f(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_L1_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_L1_64fc64f(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_L2Sqr_16s64s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp64s* pNorm,
                                        int scaleFactor);
ZvpStatus zvpsNormDiff_L2_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_L2_16s32s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32s* pNorm, int scaleFactor);
ZvpStatus zvpsNormDiff_L2_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, int len, Zvp32f* pNorm);
ZvpStatus zvpsNormDiff_L2_32fc64f(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_L2_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, int len, Zvp64f* pNorm);
ZvpStatus zvpsNormDiff_L2_64fc64f(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, int len, Zvp64f* pNorm);

/* Sum of the products pSrc1[n] * pSrc2[n]; complex ones are not conjugated: (a.re b.re - a.im b.im, a.re b.im + a.im
   b.re). The types are those of the operands, then of the result, in which floating point is multiplied and summed.
   Integers are summed in 64 bits, exact unless the sum exceeds them, when it wraps around; then converted to single
   precision, or scaled, with a scale factor above 31 counting as 31. */
ZvpStatus zvpsDotProd_16s16sc32fc(const Zvp16s* pSrc1, const Zvp16sc* pSrc2, int len, Zvp32fc* pDp);
ZvpStatus zvpsDotProd_16s16sc32sc_Sfs(const Zvp16s* pSrc1, const Zvp16sc* pSrc2, int len, Zvp32sc* pDp,
                                      int scaleFactor);
ZvpStatus zvpsDotProd_16s16sc64sc(const Zvp16s* pSrc1, const Zvp16sc* pSrc2, int len, Zvp64sc* pDp);
ZvpStatus zvpsDotProd_16s16sc_Sfs(const Zvp16s* pSrc1, const Zvp16sc* pSrc2, int len, Zvp16sc* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32f* pDp);
ZvpStatus zvpsDotProd_16s32s32s_Sfs(const Zvp16s* pSrc1, const Zvp32s* pSrc2, int len, Zvp32s* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_16s32s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp32s* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_16s64s(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp64s* pDp);
ZvpStatus zvpsDotProd_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, int len, Zvp16s* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_16sc32fc(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, int len, Zvp32fc* pDp);
ZvpStatus zvpsDotProd_16sc32sc_Sfs(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, int len, Zvp32sc* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_16sc64sc(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, int len, Zvp64sc* pDp);
ZvpStatus zvpsDotProd_16sc_Sfs(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, int len, Zvp16sc* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, int len, Zvp32f* pDp);
ZvpStatus zvpsDotProd_32f32fc(const Zvp32f* pSrc1, const Zvp32fc* pSrc2, int len, Zvp32fc* pDp);
ZvpStatus zvpsDotProd_32f32fc64fc(const Zvp32f* pSrc1, const Zvp32fc* pSrc2, int len, Zvp64fc* pDp);
ZvpStatus zvpsDotProd_32f64f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, int len, Zvp64f* pDp);
ZvpStatus zvpsDotProd_32fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, int len, Zvp32fc* pDp);
ZvpStatus zvpsDotProd_32fc64fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, int len, Zvp64fc* pDp);
ZvpStatus zvpsDotProd_32s32sc_Sfs(const Zvp32s* pSrc1, const Zvp32sc* pSrc2, int len, Zvp32sc* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, int len, Zvp32s* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_32sc_Sfs(const Zvp32sc* pSrc1, const Zvp32sc* pSrc2, int len, Zvp32sc* pDp, int scaleFactor);
ZvpStatus zvpsDotProd_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, int len, Zvp64f* pDp);
ZvpStatus zvpsDotProd_64f64fc(const Zvp64f* pSrc1, const Zvp64fc* pSrc2, int len, Zvp64fc* pDp);
ZvpStatus zvpsDotProd_64fc(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, int len, Zvp64fc* pDp);

/* Smallest element, largest element, both. */
ZvpStatus zvpsMin_16s(const Zvp16s* pSrc, int len, Zvp16s* pMin);
ZvpStatus zvpsMin_32f(const Zvp32f* pSrc, int len, Zvp32f* pMin);
ZvpStatus zvpsMin_32s(const Zvp32s* pSrc, int len, Zvp32s* pMin);
ZvpStatus zvpsMin_64f(const Zvp64f* pSrc, int len, Zvp64f* pMin);
ZvpStatus zvpsMax_16s(const Zvp16s* pSrc, int len, Zvp16s* pMax);
ZvpStatus zvpsMax_32f(const Zvp32f* pSrc, int len, Zvp32f* pMax);
ZvpStatus zvpsMax_32s(const Zvp32s* pSrc, int len, Zvp32s* pMax);
ZvpStatus zvpsMax_64f(const Zvp64f* pSrc, int len, Zvp64f* pMax);
ZvpStatus zvpsMinMax_16s(const Zvp16s* pSrc, int len, Zvp16s* pMin, Zvp16s* pMax);
ZvpStatus zvpsMinMax_16u(const Zvp16u* pSrc, int len, Zvp16u* pMin, Zvp16u* pMax);
ZvpStatus zvpsMinMax_32f(const Zvp32f* pSrc, int len, Zvp32f* pMin, Zvp32f* pMax);
ZvpStatus zvpsMinMax_32s(const Zvp32s* pSrc, int len, Zvp32s* pMin, Zvp32s* pMax);
ZvpStatus zvpsMinMax_32u(const Zvp32u* pSrc, int len, Zvp32u* pMin, Zvp32u* pMax);
ZvpStatus zvpsMinMax_64f(const Zvp64f* pSrc, int len, Zvp64f* pMin, Zvp64f* pMax);
ZvpStatus zvpsMinMax_8u(const Zvp8u* pSrc, int len, Zvp8u* pMin, Zvp8u* pMax);

/* The same and the index of the first such element. In MinIndx and MaxIndx a null pIndx is no error, the index is not
   told then; MinMaxIndx takes no null pointer. */
ZvpStatus zvpsMinIndx_16s(const Zvp16s* pSrc, int len, Zvp16s* pMin, int* pIndx);
ZvpStatus zvpsMinIndx_32f(const Zvp32f* pSrc, int len, Zvp32f* pMin, int* pIndx);
ZvpStatus zvpsMinIndx_32s(const Zvp32s* pSrc, int len, Zvp32s* pMin, int* pIndx);
ZvpStatus zvpsMinIndx_64f(const Zvp64f* pSrc, int len, Zvp64f* pMin, int* pIndx);
ZvpStatus zvpsMaxIndx_16s(const Zvp16s* pSrc, int len, Zvp16s* pMax, int* pIndx);
ZvpStatus zvpsMaxIndx_32f(const Zvp32f* pSrc, int len, Zvp32f* pMax, int* pIndx);
ZvpStatus zvpsMaxIndx_32s(const Zvp32s* pSrc, int len, Zvp32s* pMax, int* pIndx);
ZvpStatus zvpsMaxIndx_64f(const Zvp64f* pSrc, int len, Zvp64f* pMax, int* pIndx);
ZvpStatus zvpsMinMaxIndx_16s(const Zvp16s* pSrc, int len, Zvp16s* pMin, int* pMinIndx, Zvp16s* pMax, int* pMaxIndx);
ZvpStatus zvpsMinMaxIndx_16u(const Zvp16u* pSrc, int len, Zvp16u* pMin, int* pMinIndx, Zvp16u* pMax, int* pMaxIndx);
ZvpStatus zvpsMinMaxIndx_32f(const Zvp32f* pSrc, int len, Zvp32f* pMin, int* pMinIndx, Zvp32f* pMax, int* pMaxIndx);
ZvpStatus zvpsMinMaxIndx_32s(const Zvp32s* pSrc, int len, Zvp32s* pMin, int* pMinIndx, Zvp32s* pMax, int* pMaxIndx);
ZvpStatus zvpsMinMaxIndx_32u(const Zvp32u* pSrc, int len, Zvp32u* pMin, int* pMinIndx, Zvp32u* pMax, int* pMaxIndx);
ZvpStatus zvpsMinMaxIndx_64f(const Zvp64f* pSrc, int len, Zvp64f* pMin, int* pMinIndx, Zvp64f* pMax, int* pMaxIndx);
ZvpStatus zvpsMinMaxIndx_8u(const Zvp8u* pSrc, int len, Zvp8u* pMin, int* pMinIndx, Zvp8u* pMax, int* pMaxIndx);

/* Smallest magnitude, largest magnitude, and the index of the first such element, which may be null. The magnitude of
   the least integer saturates: of -32768 it is 32767. */
ZvpStatus zvpsMinAbs_16s(const Zvp16s* pSrc, int len, Zvp16s* pMinAbs);
ZvpStatus zvpsMinAbs_32s(const Zvp32s* pSrc, int len, Zvp32s* pMinAbs);
ZvpStatus zvpsMinAbsIndx_16s(const Zvp16s* pSrc, int len, Zvp16s* pMinAbs, int* pIndx);
ZvpStatus zvpsMinAbsIndx_32s(const Zvp32s* pSrc, int len, Zvp32s* pMinAbs, int* pIndx);
ZvpStatus zvpsMaxAbs_16s(const Zvp16s* pSrc, int len, Zvp16s* pMaxAbs);
ZvpStatus zvpsMaxAbs_32s(const Zvp32s* pSrc, int len, Zvp32s* pMaxAbs);
ZvpStatus zvpsMaxAbsIndx_16s(const Zvp16s* pSrc, int len, Zvp16s* pMaxAbs, int* pIndx);
ZvpStatus zvpsMaxAbsIndx_32s(const Zvp32s* pSrc, int len, Zvp32s* pMaxAbs, int* pIndx);

/* pSrcDst[n] = pSrc[n] if that is smaller (MinEvery), or larger (MaxEvery), than pSrcDst[n]. A NaN in either leaves
   pSrcDst[n] as it is. Nothing is checked: a length of 0 does nothing, pointers are not compared with null. */
ZvpStatus zvpsMinEvery_16s_I(const Zvp16s* pSrc, Zvp16s* pSrcDst, Zvp32u len);
ZvpStatus zvpsMinEvery_16u_I(const Zvp16u* pSrc, Zvp16u* pSrcDst, Zvp32u len);
ZvpStatus zvpsMinEvery_32f_I(const Zvp32f* pSrc, Zvp32f* pSrcDst, Zvp32u len);
ZvpStatus zvpsMinEvery_32s_I(const Zvp32s* pSrc, Zvp32s* pSrcDst, Zvp32u len);
ZvpStatus zvpsMinEvery_64f_I(const Zvp64f* pSrc, Zvp64f* pSrcDst, Zvp32u len);
ZvpStatus zvpsMinEvery_8u_I(const Zvp8u* pSrc, Zvp8u* pSrcDst, Zvp32u len);
ZvpStatus zvpsMaxEvery_16s_I(const Zvp16s* pSrc, Zvp16s* pSrcDst, Zvp32u len);
ZvpStatus zvpsMaxEvery_16u_I(const Zvp16u* pSrc, Zvp16u* pSrcDst, Zvp32u len);
ZvpStatus zvpsMaxEvery_32f_I(const Zvp32f* pSrc, Zvp32f* pSrcDst, Zvp32u len);
ZvpStatus zvpsMaxEvery_32s_I(const Zvp32s* pSrc, Zvp32s* pSrcDst, Zvp32u len);
ZvpStatus zvpsMaxEvery_8u_I(const Zvp8u* pSrc, Zvp8u* pSrcDst, Zvp32u len);

/* Sum of the natural logarithms, computed as the logarithm of the product, which cannot overflow: double precision in
   all forms, rounded once to the result's type. The sum ends at the first element that is not positive and finite:
   zero, of either sign, gives +infinity and the warning zvpStsLnZeroArg; a negative element the NaN with the sign
   bit set and the warning zvpStsLnNegArg; +infinity gives +infinity and a NaN gives a NaN, both without a warning. */
ZvpStatus zvpsSumLn_16s32f(const Zvp16s* pSrc, int len, Zvp32f* pSum);
ZvpStatus zvpsSumLn_32f(const Zvp32f* pSrc, int len, Zvp32f* pSum);
ZvpStatus zvpsSumLn_32f64f(const Zvp32f* pSrc, int len, Zvp64f* pSum);
ZvpStatus zvpsSumLn_64f(const Zvp64f* pSrc, int len, Zvp64f* pSum);

/* Number of elements x with lowerBound < x < upperBound; none if lowerBound >= upperBound. */
ZvpStatus zvpsCountInRange_32s(const Zvp32s* pSrc, int len, int* pCounts, Zvp32s lowerBound, Zvp32s upperBound);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
