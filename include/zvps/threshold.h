/* Thresholding: elements beyond a level are replaced.

   Arguments. The source, the destination, the length (elements; a complex pair counts as one), then the level or levels
   and values. Forms ending in I work in place on pSrcDst. Any alignment of the element type is fine; the destination
   may be the same vector as the source, but must not overlap it in another way.

   Complex vectors compare the magnitude of an element with the level, which is real and must not be negative; 16sc
   compares exactly. NaN elements, and complex ones with a NaN part, are returned unchanged.

   Statuses. Null pointers in argument order (zvpStsNullPtr), a length below 1 (zvpStsBadSize), then what the group
   names, levels in argument order. Nothing is written on an error.

   Threads. No state is kept; calls on different destinations may run at the same time. */
#ifndef ZVPS_THRESHOLD_H
#define ZVPS_THRESHOLD_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* relOp 0 (less than): elements below the level become the level. relOp 4 (greater than): elements above it do. Complex
   elements keep their phase and take the level as their magnitude, a zero becomes level + 0i; 16sc rounds the parts to
   nearest, ties to even, 32fc is good to a few units in the last place. A complex level of 0 with relOp 0 copies the
   source, with relOp 4 it sets the whole destination to zero.
   zvpStsBadThresholdLevel: the level of a complex form is negative. zvpStsBadArg: relOp is neither 0 nor 4. */
ZvpStatus zvpsThreshold_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level, int relOp);
ZvpStatus zvpsThreshold_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level, int relOp);
ZvpStatus zvpsThreshold_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp16s level, int relOp);
ZvpStatus zvpsThreshold_16sc_I(Zvp16sc* pSrcDst, int len, Zvp16s level, int relOp);
ZvpStatus zvpsThreshold_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level, int relOp);
ZvpStatus zvpsThreshold_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level, int relOp);
ZvpStatus zvpsThreshold_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f level, int relOp);
ZvpStatus zvpsThreshold_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f level, int relOp);
ZvpStatus zvpsThreshold_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level, int relOp);
ZvpStatus zvpsThreshold_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level, int relOp);
ZvpStatus zvpsThreshold_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f level, int relOp);
ZvpStatus zvpsThreshold_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f level, int relOp);

/* Threshold with relOp 0. */
ZvpStatus zvpsThreshold_LT_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_LT_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_LT_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_LT_16sc_I(Zvp16sc* pSrcDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_LT_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_LT_32s_I(Zvp32s* pSrcDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_LT_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LT_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LT_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LT_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LT_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LT_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LT_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LT_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f level);

/* Threshold with relOp 4. */
ZvpStatus zvpsThreshold_GT_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_GT_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_GT_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_GT_16sc_I(Zvp16sc* pSrcDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_GT_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_GT_32s_I(Zvp32s* pSrcDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_GT_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_GT_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_GT_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_GT_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_GT_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_GT_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_GT_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_GT_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f level);

/* Elements below the level become `value`. zvpStsBadThresholdLevel: the level of a complex form is negative. */
ZvpStatus zvpsThreshold_LTVal_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level, Zvp16s value);
ZvpStatus zvpsThreshold_LTVal_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level, Zvp16s value);
ZvpStatus zvpsThreshold_LTVal_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp16s level, Zvp16sc value);
ZvpStatus zvpsThreshold_LTVal_16sc_I(Zvp16sc* pSrcDst, int len, Zvp16s level, Zvp16sc value);
ZvpStatus zvpsThreshold_LTVal_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level, Zvp32f value);
ZvpStatus zvpsThreshold_LTVal_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level, Zvp32f value);
ZvpStatus zvpsThreshold_LTVal_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f level, Zvp32fc value);
ZvpStatus zvpsThreshold_LTVal_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f level, Zvp32fc value);
ZvpStatus zvpsThreshold_LTVal_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level, Zvp64f value);
ZvpStatus zvpsThreshold_LTVal_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level, Zvp64f value);
ZvpStatus zvpsThreshold_LTVal_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f level, Zvp64fc value);
ZvpStatus zvpsThreshold_LTVal_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f level, Zvp64fc value);

/* Elements above the level become `value`. zvpStsBadThresholdLevel: the level of a complex form is negative. */
ZvpStatus zvpsThreshold_GTVal_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level, Zvp16s value);
ZvpStatus zvpsThreshold_GTVal_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level, Zvp16s value);
ZvpStatus zvpsThreshold_GTVal_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp16s level, Zvp16sc value);
ZvpStatus zvpsThreshold_GTVal_16sc_I(Zvp16sc* pSrcDst, int len, Zvp16s level, Zvp16sc value);
ZvpStatus zvpsThreshold_GTVal_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level, Zvp32f value);
ZvpStatus zvpsThreshold_GTVal_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level, Zvp32f value);
ZvpStatus zvpsThreshold_GTVal_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f level, Zvp32fc value);
ZvpStatus zvpsThreshold_GTVal_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f level, Zvp32fc value);
ZvpStatus zvpsThreshold_GTVal_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level, Zvp64f value);
ZvpStatus zvpsThreshold_GTVal_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level, Zvp64f value);
ZvpStatus zvpsThreshold_GTVal_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f level, Zvp64fc value);
ZvpStatus zvpsThreshold_GTVal_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f level, Zvp64fc value);

/* Elements below levelLT become valueLT, elements above levelGT become valueGT. zvpStsBadThresholdOrder: levelGT is
   below levelLT. */
ZvpStatus zvpsThreshold_LTValGTVal_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s levelLT, Zvp16s valueLT,
                                       Zvp16s levelGT, Zvp16s valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_16s_I(Zvp16s* pSrcDst, int len, Zvp16s levelLT, Zvp16s valueLT, Zvp16s levelGT,
                                         Zvp16s valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len, Zvp32s levelLT, Zvp32s valueLT,
                                       Zvp32s levelGT, Zvp32s valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_32s_I(Zvp32s* pSrcDst, int len, Zvp32s levelLT, Zvp32s valueLT, Zvp32s levelGT,
                                         Zvp32s valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f levelLT, Zvp32f valueLT,
                                       Zvp32f levelGT, Zvp32f valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_32f_I(Zvp32f* pSrcDst, int len, Zvp32f levelLT, Zvp32f valueLT, Zvp32f levelGT,
                                         Zvp32f valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f levelLT, Zvp64f valueLT,
                                       Zvp64f levelGT, Zvp64f valueGT);
ZvpStatus zvpsThreshold_LTValGTVal_64f_I(Zvp64f* pSrcDst, int len, Zvp64f levelLT, Zvp64f valueLT, Zvp64f levelGT,
                                         Zvp64f valueGT);

/* Elements of a magnitude below the level take the level as their magnitude and keep their sign; 0 becomes +level.
   zvpStsBadThresholdLevel: the level is negative. */
ZvpStatus zvpsThreshold_LTAbs_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_LTAbs_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_LTAbs_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_LTAbs_32s_I(Zvp32s* pSrcDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_LTAbs_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LTAbs_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LTAbs_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LTAbs_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level);

/* Elements of a magnitude above the level take the level as their magnitude and keep their sign.
   zvpStsBadThresholdLevel: the level is negative. */
ZvpStatus zvpsThreshold_GTAbs_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_GTAbs_16s_I(Zvp16s* pSrcDst, int len, Zvp16s level);
ZvpStatus zvpsThreshold_GTAbs_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_GTAbs_32s_I(Zvp32s* pSrcDst, int len, Zvp32s level);
ZvpStatus zvpsThreshold_GTAbs_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_GTAbs_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_GTAbs_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_GTAbs_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level);

/* The reciprocal of each element, after elements of a magnitude below the level have been raised to that magnitude:
   real ones keep their sign, complex ones their phase, and 0 counts as +level.
   zvpStsBadThresholdLevel: the level is negative. zvpStsDivByZero (a warning; the whole vector is written): the level
   is 0 and an element is 0, which gives an infinity, in a complex element as its real part beside an imaginary part of
   0. */
ZvpStatus zvpsThreshold_LTInv_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LTInv_32f_I(Zvp32f* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LTInv_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LTInv_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f level);
ZvpStatus zvpsThreshold_LTInv_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LTInv_64f_I(Zvp64f* pSrcDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LTInv_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f level);
ZvpStatus zvpsThreshold_LTInv_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f level);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
