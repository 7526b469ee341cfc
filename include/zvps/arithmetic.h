/* Element-wise arithmetic: sums, differences, products, quotients of two vectors or of a vector and a constant.

   Arguments. Sources stand before the destination, then the length (elements; a complex pair counts as one), further
   parameters, scaleFactor last. Forms ending in I or ISfs work in place on pSrcDst. Any alignment of the element type
   is fine; the destination may be the same vector as any source, but must not overlap one in another way.

   Scaling. A form ending in Sfs stores the exact result times 2^-scaleFactor, rounded to nearest with ties to even,
   then saturated to the destination's range. Every int is a valid scaleFactor: positive ones divide, negative ones
   multiply. Integer forms without it store the exact result, saturated. The two parts of a complex result are rounded
   and saturated each by itself. Floating-point forms are the IEEE operations of the element type, each rounded by
   itself.

   Statuses. Null pointers in argument order (zvpStsNullPtr), then a length below 1 (zvpStsBadSize), then what the group
   names. Nothing is written on an error. zvpStsDivByZero is a warning: the whole vector is written first.

   Threads. No state is kept; calls on different destinations may run at the same time. */
#ifndef ZVPS_ARITHMETIC_H
#define ZVPS_ARITHMETIC_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Sum: pDst[n] = pSrc1[n] + pSrc2[n]; in place: pSrcDst[n] + pSrc[n]. Add_8u16u and Add_16s32f are exact. */
ZvpStatus zvpsAdd_8u_Sfs(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_8u_ISfs(const Zvp8u* pSrc, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_8u16u(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp16u* pDst, int len);
ZvpStatus zvpsAdd_16s(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len);
ZvpStatus zvpsAdd_16s_I(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len);
ZvpStatus zvpsAdd_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_16s_ISfs(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsAdd_16s32s_I(const Zvp16s* pSrc, Zvp32s* pSrcDst, int len);
ZvpStatus zvpsAdd_16u(const Zvp16u* pSrc1, const Zvp16u* pSrc2, Zvp16u* pDst, int len);
ZvpStatus zvpsAdd_16u_Sfs(const Zvp16u* pSrc1, const Zvp16u* pSrc2, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_16u_ISfs(const Zvp16u* pSrc, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_16sc_Sfs(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_16sc_ISfs(const Zvp16sc* pSrc, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_32u(const Zvp32u* pSrc1, const Zvp32u* pSrc2, Zvp32u* pDst, int len);
ZvpStatus zvpsAdd_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_32s_ISfs(const Zvp32s* pSrc, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_32sc_Sfs(const Zvp32sc* pSrc1, const Zvp32sc* pSrc2, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_32sc_ISfs(const Zvp32sc* pSrc, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsAdd_32f_I(const Zvp32f* pSrc, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsAdd_32fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, Zvp32fc* pDst, int len);
ZvpStatus zvpsAdd_32fc_I(const Zvp32fc* pSrc, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsAdd_64s_Sfs(const Zvp64s* pSrc1, const Zvp64s* pSrc2, Zvp64s* pDst, int len, int scaleFactor);
ZvpStatus zvpsAdd_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, Zvp64f* pDst, int len);
ZvpStatus zvpsAdd_64f_I(const Zvp64f* pSrc, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsAdd_64fc(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, Zvp64fc* pDst, int len);
ZvpStatus zvpsAdd_64fc_I(const Zvp64fc* pSrc, Zvp64fc* pSrcDst, int len);

/* Difference, the first vector subtracted from the second: pDst[n] = pSrc2[n] - pSrc1[n]; in place:
   pSrcDst[n] - pSrc[n]. Sub_16s32f is exact. */
ZvpStatus zvpsSub_8u_Sfs(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSub_8u_ISfs(const Zvp8u* pSrc, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSub_16s(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len);
ZvpStatus zvpsSub_16s_I(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len);
ZvpStatus zvpsSub_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSub_16s_ISfs(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSub_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsSub_16u_Sfs(const Zvp16u* pSrc1, const Zvp16u* pSrc2, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSub_16u_ISfs(const Zvp16u* pSrc, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSub_16sc_Sfs(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSub_16sc_ISfs(const Zvp16sc* pSrc, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSub_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSub_32s_ISfs(const Zvp32s* pSrc, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSub_32sc_Sfs(const Zvp32sc* pSrc1, const Zvp32sc* pSrc2, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSub_32sc_ISfs(const Zvp32sc* pSrc, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSub_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsSub_32f_I(const Zvp32f* pSrc, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsSub_32fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, Zvp32fc* pDst, int len);
ZvpStatus zvpsSub_32fc_I(const Zvp32fc* pSrc, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsSub_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, Zvp64f* pDst, int len);
ZvpStatus zvpsSub_64f_I(const Zvp64f* pSrc, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsSub_64fc(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, Zvp64fc* pDst, int len);
ZvpStatus zvpsSub_64fc_I(const Zvp64fc* pSrc, Zvp64fc* pSrcDst, int len);

/* Product: pDst[n] = pSrc1[n] * pSrc2[n]; in place: pSrcDst[n] * pSrc[n]. Complex: (ac - bd, ad + bc). Mul_8u16u is
   exact, Mul_16s32f rounds the exact product once, Mul_Low_32s_Sfs is Mul_32s_Sfs. */
ZvpStatus zvpsMul_8u_Sfs(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_8u_ISfs(const Zvp8u* pSrc, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_8u16u(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp16u* pDst, int len);
ZvpStatus zvpsMul_16s(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len);
ZvpStatus zvpsMul_16s_I(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len);
ZvpStatus zvpsMul_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16s_ISfs(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16s32f(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsMul_16s32s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16u_Sfs(const Zvp16u* pSrc1, const Zvp16u* pSrc2, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16u_ISfs(const Zvp16u* pSrc, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16u16s_Sfs(const Zvp16u* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16sc_Sfs(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_16sc_ISfs(const Zvp16sc* pSrc, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32s_ISfs(const Zvp32s* pSrc, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32s32sc_Sfs(const Zvp32s* pSrc1, const Zvp32sc* pSrc2, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32s32sc_ISfs(const Zvp32s* pSrc, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32sc_Sfs(const Zvp32sc* pSrc1, const Zvp32sc* pSrc2, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32sc_ISfs(const Zvp32sc* pSrc, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMul_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsMul_32f_I(const Zvp32f* pSrc, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsMul_32f32fc(const Zvp32f* pSrc1, const Zvp32fc* pSrc2, Zvp32fc* pDst, int len);
ZvpStatus zvpsMul_32f32fc_I(const Zvp32f* pSrc, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsMul_32fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, Zvp32fc* pDst, int len);
ZvpStatus zvpsMul_32fc_I(const Zvp32fc* pSrc, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsMul_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, Zvp64f* pDst, int len);
ZvpStatus zvpsMul_64f_I(const Zvp64f* pSrc, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsMul_64fc(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, Zvp64fc* pDst, int len);
ZvpStatus zvpsMul_64fc_I(const Zvp64fc* pSrc, Zvp64fc* pSrcDst, int len);
ZvpStatus zvpsMul_Low_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp32s* pDst, int len, int scaleFactor);

/* Quotient, the second vector divided by the first: pDst[n] = pSrc2[n] / pSrc1[n]; in place: pSrcDst[n] / pSrc[n].
   zvpStsDivByZero when any divisor was zero (a complex one: both parts). The element then is, for integers, 0 for the
   dividend 0 and otherwise the limit of the destination's type on the side of the dividend's sign, part by part; for
   floating point what IEEE division gives, part by part through the divisor's real part. Complex quotients are scaled:
   they overflow or underflow only where the result itself does. */
ZvpStatus zvpsDiv_8u_Sfs(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_8u_ISfs(const Zvp8u* pSrc, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_16s_ISfs(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_16u_Sfs(const Zvp16u* pSrc1, const Zvp16u* pSrc2, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_16u_ISfs(const Zvp16u* pSrc, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_16sc_Sfs(const Zvp16sc* pSrc1, const Zvp16sc* pSrc2, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_16sc_ISfs(const Zvp16sc* pSrc, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_32s_ISfs(const Zvp32s* pSrc, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_32s16s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsDiv_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, Zvp32f* pDst, int len);
ZvpStatus zvpsDiv_32f_I(const Zvp32f* pSrc, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsDiv_32fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, Zvp32fc* pDst, int len);
ZvpStatus zvpsDiv_32fc_I(const Zvp32fc* pSrc, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsDiv_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, Zvp64f* pDst, int len);
ZvpStatus zvpsDiv_64f_I(const Zvp64f* pSrc, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsDiv_64fc(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, Zvp64fc* pDst, int len);
ZvpStatus zvpsDiv_64fc_I(const Zvp64fc* pSrc, Zvp64fc* pSrcDst, int len);

/* Quotient rounded by rndMode (zvpRndZero, zvpRndNear, zvpRndFinancial), otherwise as Div. Any other mode gives
   zvpStsBadRoundMode. */
ZvpStatus zvpsDiv_Round_8u_Sfs(const Zvp8u* pSrc1, const Zvp8u* pSrc2, Zvp8u* pDst, int len, ZvpRoundMode rndMode,
                               int scaleFactor);
ZvpStatus zvpsDiv_Round_8u_ISfs(const Zvp8u* pSrc, Zvp8u* pSrcDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsDiv_Round_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pDst, int len, ZvpRoundMode rndMode,
                                int scaleFactor);
ZvpStatus zvpsDiv_Round_16s_ISfs(const Zvp16s* pSrc, Zvp16s* pSrcDst, int len, ZvpRoundMode rndMode, int scaleFactor);
ZvpStatus zvpsDiv_Round_16u_Sfs(const Zvp16u* pSrc1, const Zvp16u* pSrc2, Zvp16u* pDst, int len, ZvpRoundMode rndMode,
                                int scaleFactor);
ZvpStatus zvpsDiv_Round_16u_ISfs(const Zvp16u* pSrc, Zvp16u* pSrcDst, int len, ZvpRoundMode rndMode, int scaleFactor);

/* Sum with a constant: pDst[n] = pSrc[n] + val. */
ZvpStatus zvpsAddC_8u_Sfs(const Zvp8u* pSrc, Zvp8u val, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_8u_ISfs(Zvp8u val, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_16s_I(Zvp16s val, Zvp16s* pSrcDst, int len);
ZvpStatus zvpsAddC_16s_Sfs(const Zvp16s* pSrc, Zvp16s val, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_16s_ISfs(Zvp16s val, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_16u_Sfs(const Zvp16u* pSrc, Zvp16u val, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_16u_ISfs(Zvp16u val, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc val, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_16sc_ISfs(Zvp16sc val, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_32s_Sfs(const Zvp32s* pSrc, Zvp32s val, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_32s_ISfs(Zvp32s val, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc val, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_32sc_ISfs(Zvp32sc val, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddC_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsAddC_32f_I(Zvp32f val, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsAddC_32fc(const Zvp32fc* pSrc, Zvp32fc val, Zvp32fc* pDst, int len);
ZvpStatus zvpsAddC_32fc_I(Zvp32fc val, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsAddC_64f(const Zvp64f* pSrc, Zvp64f val, Zvp64f* pDst, int len);
ZvpStatus zvpsAddC_64f_I(Zvp64f val, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsAddC_64fc(const Zvp64fc* pSrc, Zvp64fc val, Zvp64fc* pDst, int len);
ZvpStatus zvpsAddC_64fc_I(Zvp64fc val, Zvp64fc* pSrcDst, int len);

/* Constant subtracted: pDst[n] = pSrc[n] - val. */
ZvpStatus zvpsSubC_8u_Sfs(const Zvp8u* pSrc, Zvp8u val, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_8u_ISfs(Zvp8u val, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_16s_I(Zvp16s val, Zvp16s* pSrcDst, int len);
ZvpStatus zvpsSubC_16s_Sfs(const Zvp16s* pSrc, Zvp16s val, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_16s_ISfs(Zvp16s val, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_16u_Sfs(const Zvp16u* pSrc, Zvp16u val, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_16u_ISfs(Zvp16u val, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc val, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_16sc_ISfs(Zvp16sc val, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_32s_Sfs(const Zvp32s* pSrc, Zvp32s val, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_32s_ISfs(Zvp32s val, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc val, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_32sc_ISfs(Zvp32sc val, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubC_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsSubC_32f_I(Zvp32f val, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsSubC_32fc(const Zvp32fc* pSrc, Zvp32fc val, Zvp32fc* pDst, int len);
ZvpStatus zvpsSubC_32fc_I(Zvp32fc val, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsSubC_64f(const Zvp64f* pSrc, Zvp64f val, Zvp64f* pDst, int len);
ZvpStatus zvpsSubC_64f_I(Zvp64f val, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsSubC_64fc(const Zvp64fc* pSrc, Zvp64fc val, Zvp64fc* pDst, int len);
ZvpStatus zvpsSubC_64fc_I(Zvp64fc val, Zvp64fc* pSrcDst, int len);

/* Subtracted from a constant: pDst[n] = val - pSrc[n]. */
ZvpStatus zvpsSubCRev_8u_Sfs(const Zvp8u* pSrc, Zvp8u val, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_8u_ISfs(Zvp8u val, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_16s_Sfs(const Zvp16s* pSrc, Zvp16s val, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_16s_ISfs(Zvp16s val, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_16u_Sfs(const Zvp16u* pSrc, Zvp16u val, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_16u_ISfs(Zvp16u val, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc val, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_16sc_ISfs(Zvp16sc val, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_32s_Sfs(const Zvp32s* pSrc, Zvp32s val, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_32s_ISfs(Zvp32s val, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc val, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_32sc_ISfs(Zvp32sc val, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSubCRev_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsSubCRev_32f_I(Zvp32f val, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsSubCRev_32fc(const Zvp32fc* pSrc, Zvp32fc val, Zvp32fc* pDst, int len);
ZvpStatus zvpsSubCRev_32fc_I(Zvp32fc val, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsSubCRev_64f(const Zvp64f* pSrc, Zvp64f val, Zvp64f* pDst, int len);
ZvpStatus zvpsSubCRev_64f_I(Zvp64f val, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsSubCRev_64fc(const Zvp64fc* pSrc, Zvp64fc val, Zvp64fc* pDst, int len);
ZvpStatus zvpsSubCRev_64fc_I(Zvp64fc val, Zvp64fc* pSrcDst, int len);

/* Product with a constant: pDst[n] = pSrc[n] * val. MulC_32f16s_Sfs and MulC_Low_32f16s round the exact product of the
   two floats once; NaN gives 0, infinities saturate. MulC_64f64s_ISfs takes val exactly as it stands; a NaN gives 0,
   an infinity saturates every element that is not 0. */
ZvpStatus zvpsMulC_8u_Sfs(const Zvp8u* pSrc, Zvp8u val, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_8u_ISfs(Zvp8u val, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_16s_I(Zvp16s val, Zvp16s* pSrcDst, int len);
ZvpStatus zvpsMulC_16s_Sfs(const Zvp16s* pSrc, Zvp16s val, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_16s_ISfs(Zvp16s val, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_16u_Sfs(const Zvp16u* pSrc, Zvp16u val, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_16u_ISfs(Zvp16u val, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc val, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_16sc_ISfs(Zvp16sc val, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_32s_Sfs(const Zvp32s* pSrc, Zvp32s val, Zvp32s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_32s_ISfs(Zvp32s val, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc val, Zvp32sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_32sc_ISfs(Zvp32sc val, Zvp32sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsMulC_32f_I(Zvp32f val, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsMulC_32f16s_Sfs(const Zvp32f* pSrc, Zvp32f val, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_32fc(const Zvp32fc* pSrc, Zvp32fc val, Zvp32fc* pDst, int len);
ZvpStatus zvpsMulC_32fc_I(Zvp32fc val, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsMulC_64f(const Zvp64f* pSrc, Zvp64f val, Zvp64f* pDst, int len);
ZvpStatus zvpsMulC_64f_I(Zvp64f val, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsMulC_64f64s_ISfs(Zvp64f val, Zvp64s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_64s_ISfs(Zvp64s val, Zvp64s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsMulC_64fc(const Zvp64fc* pSrc, Zvp64fc val, Zvp64fc* pDst, int len);
ZvpStatus zvpsMulC_64fc_I(Zvp64fc val, Zvp64fc* pSrcDst, int len);
ZvpStatus zvpsMulC_Low_32f16s(const Zvp32f* pSrc, Zvp32f val, Zvp16s* pDst, int len);

/* Quotient by a constant: pDst[n] = pSrc[n] / val, a division also in floating point. val = 0 (complex: both parts)
   gives zvpStsDivByZeroErr and writes nothing.
   DivC_64s_ISfs multiplies by a 63-bit fixed-point reciprocal, so its quotient may differ from the exact one in the
   last place of large results. val = 0 saturates every element by its sign, leaves zeros and returns zvpStsDivByZero. A
   length of 0 gives zvpStsBadSize; a negative length is not an error: val = 0 then treats the first element, any other
   val none. */
ZvpStatus zvpsDivC_8u_Sfs(const Zvp8u* pSrc, Zvp8u val, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_8u_ISfs(Zvp8u val, Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_16s_Sfs(const Zvp16s* pSrc, Zvp16s val, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_16s_ISfs(Zvp16s val, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_16u_Sfs(const Zvp16u* pSrc, Zvp16u val, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_16u_ISfs(Zvp16u val, Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc val, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_16sc_ISfs(Zvp16sc val, Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsDivC_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsDivC_32f_I(Zvp32f val, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsDivC_32fc(const Zvp32fc* pSrc, Zvp32fc val, Zvp32fc* pDst, int len);
ZvpStatus zvpsDivC_32fc_I(Zvp32fc val, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsDivC_64f(const Zvp64f* pSrc, Zvp64f val, Zvp64f* pDst, int len);
ZvpStatus zvpsDivC_64f_I(Zvp64f val, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsDivC_64fc(const Zvp64fc* pSrc, Zvp64fc val, Zvp64fc* pDst, int len);
ZvpStatus zvpsDivC_64fc_I(Zvp64fc val, Zvp64fc* pSrcDst, int len);
ZvpStatus zvpsDivC_64s_ISfs(Zvp64s val, Zvp64s* pSrcDst, int len, int scaleFactor);

/* Constant divided: pDst[n] = val / pSrc[n]; 16u rounds to nearest, ties to even. At a zero element: 65535 (0 when
   val is 0), or what IEEE division gives, and zvpStsDivByZero. */
ZvpStatus zvpsDivCRev_16u(const Zvp16u* pSrc, Zvp16u val, Zvp16u* pDst, int len);
ZvpStatus zvpsDivCRev_16u_I(Zvp16u val, Zvp16u* pSrcDst, int len);
ZvpStatus zvpsDivCRev_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsDivCRev_32f_I(Zvp32f val, Zvp32f* pSrcDst, int len);

/* Multiply and accumulate: pSrcDst[n] = pSrcDst[n] + pSrc1[n] * pSrc2[n], or + pSrc[n] * val. The integer forms scale
   the whole sum, once; the floating-point ones round the product, then the sum. */
ZvpStatus zvpsAddProduct_16s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddProduct_16s32s_Sfs(const Zvp16s* pSrc1, const Zvp16s* pSrc2, Zvp32s* pSrcDst, int len,
                                    int scaleFactor);
ZvpStatus zvpsAddProduct_32s_Sfs(const Zvp32s* pSrc1, const Zvp32s* pSrc2, Zvp32s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsAddProduct_32f(const Zvp32f* pSrc1, const Zvp32f* pSrc2, Zvp32f* pSrcDst, int len);
ZvpStatus zvpsAddProduct_32fc(const Zvp32fc* pSrc1, const Zvp32fc* pSrc2, Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsAddProduct_64f(const Zvp64f* pSrc1, const Zvp64f* pSrc2, Zvp64f* pSrcDst, int len);
ZvpStatus zvpsAddProduct_64fc(const Zvp64fc* pSrc1, const Zvp64fc* pSrc2, Zvp64fc* pSrcDst, int len);
ZvpStatus zvpsAddProductC_32f(const Zvp32f* pSrc, Zvp32f val, Zvp32f* pSrcDst, int len);

/* Square: pDst[n] = pSrc[n] * pSrc[n]; complex: the complex product of the element with itself. */
ZvpStatus zvpsSqr_8u_Sfs(const Zvp8u* pSrc, Zvp8u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_8u_ISfs(Zvp8u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_16s_ISfs(Zvp16s* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_16u_Sfs(const Zvp16u* pSrc, Zvp16u* pDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_16u_ISfs(Zvp16u* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_16sc_ISfs(Zvp16sc* pSrcDst, int len, int scaleFactor);
ZvpStatus zvpsSqr_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsSqr_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsSqr_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsSqr_32fc_I(Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsSqr_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsSqr_64f_I(Zvp64f* pSrcDst, int len);
ZvpStatus zvpsSqr_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);
ZvpStatus zvpsSqr_64fc_I(Zvp64fc* pSrcDst, int len);

/* Absolute value: pDst[n] = |pSrc[n]|; the most negative integer gives the most positive one. */
ZvpStatus zvpsAbs_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsAbs_16s_I(Zvp16s* pSrcDst, int len);
ZvpStatus zvpsAbs_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len);
ZvpStatus zvpsAbs_32s_I(Zvp32s* pSrcDst, int len);
ZvpStatus zvpsAbs_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsAbs_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsAbs_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsAbs_64f_I(Zvp64f* pSrcDst, int len);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
