/* Discrete Fourier transforms of any length L, complex and real.

   Forward: X[k] = sum over n of x[n] exp(-2 pi i n k / L). Inverse: x[n] = sum over k of X[k] exp(+2 pi i n k / L).
   Each is then multiplied by the factor that the transform object's flag names for its direction. Output is in natural
   order.

   Data layouts are those of zvps/fft.h: complex data interleaved or split, spectra of real data in Perm, Pack or CCS
   layout, for even and odd L. Any alignment that suits the type of the parts is fine. A destination is either the same
   array as its source or does not overlap it; in split transforms each pair of arrays for itself. A CCS array in place
   has room for 2 (L/2 + 1) reals, L/2 rounded down. Sources are not changed.

   Integer data are transformed in single precision, then multiplied by 2^-scaleFactor, rounded to nearest with ties to
   even, and saturated; every int is a valid scaleFactor.

   How long a transform takes depends on the factors of L. Powers of two are fast Fourier transforms; products of small
   primes take little longer for each point; lengths with a large prime factor are a convolution, by transforms of at
   least twice the length.

   Threads. A transform object is read only once it is built: any number of threads may share one, each with a buffer of
   its own (or none). Building and freeing are not synchronised. No function here starts threads. */
#ifndef ZVPS_DFT_H
#define ZVPS_DFT_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Transform objects: length, normalisation and tables of a transform. C for complex, R for real data; OutOrd is a
   complex transform that may leave its spectrum in an order of its own. */
typedef struct ZvpsDFTSpec_C_16s ZvpsDFTSpec_C_16s;
typedef struct ZvpsDFTSpec_C_16sc ZvpsDFTSpec_C_16sc;
typedef struct ZvpsDFTSpec_C_32f ZvpsDFTSpec_C_32f;
typedef struct ZvpsDFTSpec_C_32fc ZvpsDFTSpec_C_32fc;
typedef struct ZvpsDFTSpec_C_64f ZvpsDFTSpec_C_64f;
typedef struct ZvpsDFTSpec_C_64fc ZvpsDFTSpec_C_64fc;
typedef struct ZvpsDFTSpec_R_16s ZvpsDFTSpec_R_16s;
typedef struct ZvpsDFTSpec_R_32f ZvpsDFTSpec_R_32f;
typedef struct ZvpsDFTSpec_R_64f ZvpsDFTSpec_R_64f;
typedef struct ZvpsDFTOutOrdSpec_C_32fc ZvpsDFTOutOrdSpec_C_32fc;
typedef struct ZvpsDFTOutOrdSpec_C_64fc ZvpsDFTOutOrdSpec_C_64fc;

/* Builds a transform object of length len in memory from zvpsMalloc_8u. Any hint is accepted and changes nothing.

   zvpStsNullPtr: spec null; zvpStsBadSize: len below 1; zvpStsNoMemory; zvpStsBadFftFlag: flag not one of
   zvpFftScaleFwd, Inv, Sqrt and None; zvpStsBadFftOrder: a power of two above 2^27 (64f and 64fc: above 2^26);
   zvpStsBadSize: any other len above 2^27 - 1, or above 2^26 - 1 without small factors; zvpStsNoMemory: a buffer of
   2^31 bytes or more would be needed (64f and 64fc: from about 2^25 on). On an error nothing stays allocated and *spec
   is left alone. */
ZvpStatus zvpsDFTInitAlloc_C_16sc(ZvpsDFTSpec_C_16sc** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_C_16s(ZvpsDFTSpec_C_16s** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_C_32fc(ZvpsDFTSpec_C_32fc** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_C_32f(ZvpsDFTSpec_C_32f** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_C_64fc(ZvpsDFTSpec_C_64fc** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_C_64f(ZvpsDFTSpec_C_64f** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_R_16s(ZvpsDFTSpec_R_16s** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_R_32f(ZvpsDFTSpec_R_32f** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTInitAlloc_R_64f(ZvpsDFTSpec_R_64f** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTOutOrdInitAlloc_C_32fc(ZvpsDFTOutOrdSpec_C_32fc** spec, int len, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsDFTOutOrdInitAlloc_C_64fc(ZvpsDFTOutOrdSpec_C_64fc** spec, int len, int flag, ZvpHintAlgorithm hint);

/* Invalidates a transform object and releases its memory. zvpStsNullPtr; zvpStsContextMismatch for one of another type,
   or already freed. */
ZvpStatus zvpsDFTFree_C_16sc(ZvpsDFTSpec_C_16sc* spec);
ZvpStatus zvpsDFTFree_C_16s(ZvpsDFTSpec_C_16s* spec);
ZvpStatus zvpsDFTFree_C_32fc(ZvpsDFTSpec_C_32fc* spec);
ZvpStatus zvpsDFTFree_C_32f(ZvpsDFTSpec_C_32f* spec);
ZvpStatus zvpsDFTFree_C_64fc(ZvpsDFTSpec_C_64fc* spec);
ZvpStatus zvpsDFTFree_C_64f(ZvpsDFTSpec_C_64f* spec);
ZvpStatus zvpsDFTFree_R_16s(ZvpsDFTSpec_R_16s* spec);
ZvpStatus zvpsDFTFree_R_32f(ZvpsDFTSpec_R_32f* spec);
ZvpStatus zvpsDFTFree_R_64f(ZvpsDFTSpec_R_64f* spec);
ZvpStatus zvpsDFTOutOrdFree_C_32fc(ZvpsDFTOutOrdSpec_C_32fc* spec);
ZvpStatus zvpsDFTOutOrdFree_C_64fc(ZvpsDFTOutOrdSpec_C_64fc* spec);

/* The bytes that a transform needs to work in, at any address; 0 where it needs none. zvpStsNullPtr;
   zvpStsContextMismatch. */
ZvpStatus zvpsDFTGetBufSize_C_16sc(const ZvpsDFTSpec_C_16sc* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_C_16s(const ZvpsDFTSpec_C_16s* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_C_32fc(const ZvpsDFTSpec_C_32fc* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_C_32f(const ZvpsDFTSpec_C_32f* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_C_64fc(const ZvpsDFTSpec_C_64fc* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_C_64f(const ZvpsDFTSpec_C_64f* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_R_16s(const ZvpsDFTSpec_R_16s* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_R_32f(const ZvpsDFTSpec_R_32f* spec, int* size);
ZvpStatus zvpsDFTGetBufSize_R_64f(const ZvpsDFTSpec_R_64f* spec, int* size);
ZvpStatus zvpsDFTOutOrdGetBufSize_C_32fc(const ZvpsDFTOutOrdSpec_C_32fc* spec, int* size);
ZvpStatus zvpsDFTOutOrdGetBufSize_C_64fc(const ZvpsDFTOutOrdSpec_C_64fc* spec, int* size);

/* Complex transforms. A null buffer makes the call allocate what it needs and release it before it returns; where
   GetBufSize gives 0 the buffer is not looked at.

   zvpStsNullPtr: spec null; zvpStsContextMismatch: spec of another type; zvpStsNullPtr: data null; zvpStsNoMemory. */
ZvpStatus zvpsDFTFwd_CToC_16sc_Sfs(const Zvp16sc* src, Zvp16sc* dst, const ZvpsDFTSpec_C_16sc* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_CToC_16s_Sfs(const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe, Zvp16s* dstIm,
                                  const ZvpsDFTSpec_C_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_CToC_32fc(const Zvp32fc* src, Zvp32fc* dst, const ZvpsDFTSpec_C_32fc* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_CToC_32f(const Zvp32f* srcRe, const Zvp32f* srcIm, Zvp32f* dstRe, Zvp32f* dstIm,
                              const ZvpsDFTSpec_C_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_CToC_64fc(const Zvp64fc* src, Zvp64fc* dst, const ZvpsDFTSpec_C_64fc* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_CToC_64f(const Zvp64f* srcRe, const Zvp64f* srcIm, Zvp64f* dstRe, Zvp64f* dstIm,
                              const ZvpsDFTSpec_C_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CToC_16sc_Sfs(const Zvp16sc* src, Zvp16sc* dst, const ZvpsDFTSpec_C_16sc* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CToC_16s_Sfs(const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe, Zvp16s* dstIm,
                                  const ZvpsDFTSpec_C_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CToC_32fc(const Zvp32fc* src, Zvp32fc* dst, const ZvpsDFTSpec_C_32fc* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CToC_32f(const Zvp32f* srcRe, const Zvp32f* srcIm, Zvp32f* dstRe, Zvp32f* dstIm,
                              const ZvpsDFTSpec_C_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CToC_64fc(const Zvp64fc* src, Zvp64fc* dst, const ZvpsDFTSpec_C_64fc* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CToC_64f(const Zvp64f* srcRe, const Zvp64f* srcIm, Zvp64f* dstRe, Zvp64f* dstIm,
                              const ZvpsDFTSpec_C_64f* spec, Zvp8u* buffer);

/* Real transforms: L reals to a packed spectrum and back. In CCS layout the inverse takes no notice of the imaginary
   parts of X[0] and X[L/2]. Buffer and statuses as above. */
ZvpStatus zvpsDFTFwd_RToPerm_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToPerm_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToPerm_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_PermToR_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTInv_PermToR_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_PermToR_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToPack_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToPack_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToPack_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_PackToR_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTInv_PackToR_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_PackToR_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToCCS_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,
                                    Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToCCS_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTFwd_RToCCS_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CCSToR_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDFTSpec_R_16s* spec, int scaleFactor,
                                    Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CCSToR_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDFTInv_CCSToR_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDFTSpec_R_64f* spec, Zvp8u* buffer);

/* Complex transforms whose spectrum may be in any order, which the inverse accepts: for spectra that are multiplied
   and transformed back. It is the natural order. Buffer and statuses as above. */
ZvpStatus zvpsDFTOutOrdFwd_CToC_32fc(const Zvp32fc* src, Zvp32fc* dst, const ZvpsDFTOutOrdSpec_C_32fc* spec,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTOutOrdInv_CToC_32fc(const Zvp32fc* src, Zvp32fc* dst, const ZvpsDFTOutOrdSpec_C_32fc* spec,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTOutOrdFwd_CToC_64fc(const Zvp64fc* src, Zvp64fc* dst, const ZvpsDFTOutOrdSpec_C_64fc* spec,
                                     Zvp8u* buffer);
ZvpStatus zvpsDFTOutOrdInv_CToC_64fc(const Zvp64fc* src, Zvp64fc* dst, const ZvpsDFTOutOrdSpec_C_64fc* spec,
                                     Zvp8u* buffer);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
