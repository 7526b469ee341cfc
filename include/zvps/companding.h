/* Companding of speech after G.711: A-law and mu-law codes to linear samples and back, and one code to the other.

   Codes are 8-bit values as transmitted: even bits inverted for A-law, all bits inverted for mu-law. Linear samples are
   left-justified 16-bit values (A-law magnitudes 8 to 32256, mu-law 0 to 32124); the 32f forms hold them times 2^-15.

   Null pointers give zvpStsNullPtr, then a length below 1 zvpStsBadSize; nothing is written on an error. Any alignment
   of the element type is fine. Vectors of one element size may be the same; vectors must not overlap in another way. No
   state is kept; calls on different destinations may run at the same time. */
#ifndef ZVPS_COMPANDING_H
#define ZVPS_COMPANDING_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Expansion: pDst[n] = the value of the code pSrc[n], exactly. */
ZvpStatus zvpsALawToLin_8u16s(const Zvp8u* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsALawToLin_8u32f(const Zvp8u* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsMuLawToLin_8u16s(const Zvp8u* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsMuLawToLin_8u32f(const Zvp8u* pSrc, Zvp32f* pDst, int len);

/* Compression: pDst[n] = the code of the interval that holds pSrc[n]. Mu-law magnitudes from 32636 on take the last
   one. The 32f forms first round pSrc[n] * 32768 to nearest, ties to even, and saturate it to 16 bits; a NaN counts
   as 0. */
ZvpStatus zvpsLinToALaw_16s8u(const Zvp16s* pSrc, Zvp8u* pDst, int len);
ZvpStatus zvpsLinToALaw_32f8u(const Zvp32f* pSrc, Zvp8u* pDst, int len);
ZvpStatus zvpsLinToMuLaw_16s8u(const Zvp16s* pSrc, Zvp8u* pDst, int len);
ZvpStatus zvpsLinToMuLaw_32f8u(const Zvp32f* pSrc, Zvp8u* pDst, int len);

/* One code to the other, by fixed tables; not every conversion is undone by the opposite one. */
ZvpStatus zvpsALawToMuLaw_8u(const Zvp8u* pSrc, Zvp8u* pDst, int len);
ZvpStatus zvpsMuLawToALaw_8u(const Zvp8u* pSrc, Zvp8u* pDst, int len);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
