/* Conversion between element types: integers of 8 to 64 bits, packed 24-bit integers, half to double precision.

   Arguments. The source, the destination, the length in elements, then the rounding mode, then scaleFactor last. Any
   alignment of the element type is fine. The destination may be the same vector as the source where the elements of
   both have the same size; otherwise they must not overlap.

   24-bit elements are three bytes each, least significant first, two's complement when signed (24s); a vector of them
   is passed as a pointer to bytes, of any alignment, and nothing beyond its last byte is read or written.
   Half-precision elements (16f) are IEEE binary16 in 16-bit containers; subnormal ones are converted exactly in both
   directions.

   Scaling. A form ending in Sfs multiplies by 2^-scaleFactor: positive scale factors divide, negative ones multiply,
   and every int is valid.

   Statuses. Null pointers in argument order (zvpStsNullPtr), then a length below 1 (zvpStsBadSize), then what the group
   names. Nothing is written on an error.

   Threads. No state is kept; calls on different destinations may run at the same time. */
#ifndef ZVPS_CONVERT_H
#define ZVPS_CONVERT_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* The same value in another type. Exact, but for 32s32f, 64s64f and 64f32f, which round to nearest, ties to even
   (64f32f to infinity beyond the largest single). NaNs stay NaNs. */
ZvpStatus zvpsConvert_8s16s(const Zvp8s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsConvert_8s32f(const Zvp8s* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_8u32f(const Zvp8u* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_16s32f(const Zvp16s* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_16s32s(const Zvp16s* pSrc, Zvp32s* pDst, int len);
ZvpStatus zvpsConvert_16u32f(const Zvp16u* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_24s32f(const Zvp8u* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_24s32s(const Zvp8u* pSrc, Zvp32s* pDst, int len);
ZvpStatus zvpsConvert_24u32f(const Zvp8u* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_24u32u(const Zvp8u* pSrc, Zvp32u* pDst, int len);
ZvpStatus zvpsConvert_32s32f(const Zvp32s* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_32s64f(const Zvp32s* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsConvert_32f64f(const Zvp32f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsConvert_64f32f(const Zvp64f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsConvert_64s64f(const Zvp64s* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsConvert_16f32f(const Zvp16f* pSrc, Zvp32f* pDst, int len);

/* Integers to floating point, scaled: the value is converted (32s32f: to nearest, ties to even), then multiplied by
   2^-scaleFactor, with scaleFactor limited to -112..126 in single and to -1008..1022 in double precision. */
ZvpStatus zvpsConvert_16s32f_Sfs(const Zvp16s* pSrc, Zvp32f* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_16s64f_Sfs(const Zvp16s* pSrc, Zvp64f* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_32s32f_Sfs(const Zvp32s* pSrc, Zvp32f* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_32s64f_Sfs(const Zvp32s* pSrc, Zvp64f* pDst, int len, int scaleFactor);

/* Integers to narrower integers: the value times 2^-scaleFactor (Convert_32s16s: the value itself), rounded to nearest,
   ties to even, then saturated. 32s24s shifts by 31 places at most, either way. */
ZvpStatus zvpsConvert_32s16s(const Zvp32s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsConvert_16s8s_Sfs(const Zvp16s* pSrc, Zvp8s* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_32s16s_Sfs(const Zvp32s* pSrc, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_32s24s_Sfs(const Zvp32s* pSrc, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_32u24u_Sfs(const Zvp32u* pSrc, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsConvert_64s32s_Sfs(const Zvp64s* pSrc, Zvp32s* pDst, int len, int scaleFactor);

/* Floating point to integers: the exact value times 2^-scaleFactor, rounded once, then saturated. rndMode 0
   (zvpRndZero) rounds toward zero, 1 (zvpRndNear) to nearest with ties to even; every other value, not only 2
   (zvpRndFinancial), rounds to nearest with ties away from zero. Infinities saturate, a NaN gives 0. */
ZvpStatus zvpsConvert_32f8s_Sfs(const Zvp32f* pSrc, Zvp8s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_32f8u_Sfs(const Zvp32f* pSrc, Zvp8u* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_32f16s_Sfs(const Zvp32f* pSrc, Zvp16s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_32f16u_Sfs(const Zvp32f* pSrc, Zvp16u* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_32f24s_Sfs(const Zvp32f* pSrc, Zvp8u* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_32f24u_Sfs(const Zvp32f* pSrc, Zvp8u* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_32f32s_Sfs(const Zvp32f* pSrc, Zvp32s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_64f16s_Sfs(const Zvp64f* pSrc, Zvp16s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_64f32s_Sfs(const Zvp64f* pSrc, Zvp32s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_64f64s_Sfs(const Zvp64f* pSrc, Zvp64s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsConvert_16f16s_Sfs(const Zvp16f* pSrc, Zvp16s* pDst, int len, ZvpRoundMode rndMode, int scaleFactor);

/* To half precision. rndMode 1 (zvpRndNear) rounds to nearest with ties to even, to infinity from a magnitude of 65520
   up; 2 (zvpRndFinancial) gives zvpStsBadRoundMode; every other value truncates, finite values beyond the largest half
   to 65504 with their sign. NaNs stay NaNs. */
ZvpStatus zvpsConvert_16s16f(const Zvp16s* pSrc, Zvp16f* pDst, int len, ZvpRoundMode rndMode);
ZvpStatus zvpsConvert_32f16f(const Zvp32f* pSrc, Zvp16f* pDst, int len, ZvpRoundMode rndMode);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
