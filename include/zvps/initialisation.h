/* Filling and copying vectors.

   Lengths count elements, complex pairs count as one. A null pointer gives zvpStsNullPtr, then a length below 1
   zvpStsBadSize; nothing is written on an error. Any alignment of the element type is fine. */
#ifndef ZVPS_INITIALISATION_H
#define ZVPS_INITIALISATION_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* pDst[n] = pSrc[n]. The vectors are the same or do not overlap. */
ZvpStatus zvpsCopy_8u(const Zvp8u* pSrc, Zvp8u* pDst, int len);
ZvpStatus zvpsCopy_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsCopy_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsCopy_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len);
ZvpStatus zvpsCopy_32sc(const Zvp32sc* pSrc, Zvp32sc* pDst, int len);
ZvpStatus zvpsCopy_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsCopy_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsCopy_64s(const Zvp64s* pSrc, Zvp64s* pDst, int len);
ZvpStatus zvpsCopy_64sc(const Zvp64sc* pSrc, Zvp64sc* pDst, int len);
ZvpStatus zvpsCopy_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsCopy_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);

/* pDst[n] = pSrc[n] as if through a temporary: the vectors may overlap in any way. */
ZvpStatus zvpsMove_8u(const Zvp8u* pSrc, Zvp8u* pDst, int len);
ZvpStatus zvpsMove_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsMove_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsMove_32s(const Zvp32s* pSrc, Zvp32s* pDst, int len);
ZvpStatus zvpsMove_32sc(const Zvp32sc* pSrc, Zvp32sc* pDst, int len);
ZvpStatus zvpsMove_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsMove_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsMove_64s(const Zvp64s* pSrc, Zvp64s* pDst, int len);
ZvpStatus zvpsMove_64sc(const Zvp64sc* pSrc, Zvp64sc* pDst, int len);
ZvpStatus zvpsMove_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsMove_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);

/* pDst[n] = val. */
ZvpStatus zvpsSet_8u(Zvp8u val, Zvp8u* pDst, int len);
ZvpStatus zvpsSet_16s(Zvp16s val, Zvp16s* pDst, int len);
ZvpStatus zvpsSet_16sc(Zvp16sc val, Zvp16sc* pDst, int len);
ZvpStatus zvpsSet_32s(Zvp32s val, Zvp32s* pDst, int len);
ZvpStatus zvpsSet_32sc(Zvp32sc val, Zvp32sc* pDst, int len);
ZvpStatus zvpsSet_32f(Zvp32f val, Zvp32f* pDst, int len);
ZvpStatus zvpsSet_32fc(Zvp32fc val, Zvp32fc* pDst, int len);
ZvpStatus zvpsSet_64s(Zvp64s val, Zvp64s* pDst, int len);
ZvpStatus zvpsSet_64sc(Zvp64sc val, Zvp64sc* pDst, int len);
ZvpStatus zvpsSet_64f(Zvp64f val, Zvp64f* pDst, int len);
ZvpStatus zvpsSet_64fc(Zvp64fc val, Zvp64fc* pDst, int len);

/* pDst[n] = 0 (positive zero in the floating-point types). */
ZvpStatus zvpsZero_8u(Zvp8u* pDst, int len);
ZvpStatus zvpsZero_16s(Zvp16s* pDst, int len);
ZvpStatus zvpsZero_16sc(Zvp16sc* pDst, int len);
ZvpStatus zvpsZero_32s(Zvp32s* pDst, int len);
ZvpStatus zvpsZero_32sc(Zvp32sc* pDst, int len);
ZvpStatus zvpsZero_32f(Zvp32f* pDst, int len);
ZvpStatus zvpsZero_32fc(Zvp32fc* pDst, int len);
ZvpStatus zvpsZero_64s(Zvp64s* pDst, int len);
ZvpStatus zvpsZero_64sc(Zvp64sc* pDst, int len);
ZvpStatus zvpsZero_64f(Zvp64f* pDst, int len);
ZvpStatus zvpsZero_64fc(Zvp64fc* pDst, int len);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
