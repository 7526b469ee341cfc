/* Fast Fourier transforms of N = 2^order points, complex and real, and functions on packed real spectra.

   Forward: X[k] = sum over n of x[n] exp(-2 pi i n k / N). Inverse: x[n] = sum over k of X[k] exp(+2 pi i n k / N).
   Each is then multiplied by the factor that the transform object's flag names for its direction. Output is in natural
   order.

   Complex data are interleaved (32fc, 64fc, 16sc, 32sc) or split into one array for each part (32f, 64f, 16s, 32s).
   Any alignment that suits the type of the parts is fine. A destination is either the same array as its source or does
   not overlap it; in split transforms each pair of arrays for itself. A function ending in I or ISfs works in place and
   gives the same bits. Sources are not changed.

   Integer data are transformed in floating point, in single precision those of 16 bits and in double those of 32 bits,
   then multiplied by 2^-scaleFactor, rounded to nearest with ties to even, and saturated; every int is a valid
   scaleFactor. Complex data of 16 bits with orders 1 to 3 and hint 0 or 1 are transformed in integers.

   Packed spectra. Of the spectrum of N real samples, X[N - k] = conj(X[k]), only X[0] to X[N/2] are kept. X[0] is real,
   and X[N/2] too where N is even. With m = (N - 1) / 2 rounded down:
     Perm   N reals      even N: Re X[0], Re X[N/2], Re X[1], Im X[1], ..., Re X[m], Im X[m]
                         odd N:  Re X[0], Re X[1], Im X[1], ..., Re X[m], Im X[m]
     Pack   N reals      even N: Re X[0], Re X[1], Im X[1], ..., Re X[m], Im X[m], Re X[N/2]
                         odd N:  as Perm
     CCS    N/2 + 1 (rounded down) complex values X[0], X[1], ...; exact zeros as imaginary parts of X[0] and X[N/2]

   Threads. A transform object is read only once it is built: any number of threads may share one, each with a buffer of
   its own (or none). Building and freeing are not synchronised. No function here starts threads. */
#ifndef ZVPS_FFT_H
#define ZVPS_FFT_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Transform objects: order, normalisation and tables of a transform. C for complex, R for real data; 16s32s has 16-bit
   samples and a 32-bit spectrum. */
typedef struct ZvpsFFTSpec_C_16sc ZvpsFFTSpec_C_16sc;
typedef struct ZvpsFFTSpec_C_16s ZvpsFFTSpec_C_16s;
typedef struct ZvpsFFTSpec_C_32f ZvpsFFTSpec_C_32f;
typedef struct ZvpsFFTSpec_C_32fc ZvpsFFTSpec_C_32fc;
typedef struct ZvpsFFTSpec_C_32s ZvpsFFTSpec_C_32s;
typedef struct ZvpsFFTSpec_C_32sc ZvpsFFTSpec_C_32sc;
typedef struct ZvpsFFTSpec_C_64f ZvpsFFTSpec_C_64f;
typedef struct ZvpsFFTSpec_C_64fc ZvpsFFTSpec_C_64fc;
typedef struct ZvpsFFTSpec_R_16s ZvpsFFTSpec_R_16s;
typedef struct ZvpsFFTSpec_R_16s32s ZvpsFFTSpec_R_16s32s;
typedef struct ZvpsFFTSpec_R_32f ZvpsFFTSpec_R_32f;
typedef struct ZvpsFFTSpec_R_32s ZvpsFFTSpec_R_32s;
typedef struct ZvpsFFTSpec_R_64f ZvpsFFTSpec_R_64f;

/* The bytes that Init needs for a transform object and for its own use meanwhile, and those that a transform needs to
   work in; 0 where it needs none. They hold for memory at any address.

   zvpStsBadFftOrder: order outside 0 to 30; zvpStsNullPtr: a null result; zvpStsBadFftFlag: flag not one of
   zvpFftScaleFwd, Inv, Sqrt and None; zvpStsBadFftOrder: order above 27 in 32f, 32fc and all of 16 bits, above 26 in
   64f, 64fc, 32s and 32sc. Nothing is written on an error. */
ZvpStatus zvpsFFTGetSize_C_16sc(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                                int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_16s(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_32f(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_32fc(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                                int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_32s(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_32sc(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                                int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_64f(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_C_64fc(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                                int* workBufSize);
ZvpStatus zvpsFFTGetSize_R_16s(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_R_16s32s(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                                  int* workBufSize);
ZvpStatus zvpsFFTGetSize_R_32f(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_R_32s(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);
ZvpStatus zvpsFFTGetSize_R_64f(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,
                               int* workBufSize);

/* Builds a transform object in specMem and leaves its address, which is that of specMem rounded up to 32 bytes, in
   *spec. It points into itself and cannot be moved. initBuf is used during the call only, and may be null where
   GetSize gives 0 (16-bit data: below order 11).

   zvpStsNullPtr: spec null; zvpStsBadFftOrder: an order that GetSize rejects (32s, 32sc and 16s32s: outside 0 to 30);
   zvpStsNullPtr: specMem null; zvpStsBadFftOrder: any other order that GetSize rejects; zvpStsBadFftFlag;
   zvpStsNullPtr: initBuf null where it is needed. On an error *spec is left alone. */
ZvpStatus zvpsFFTInit_C_16sc(ZvpsFFTSpec_C_16sc** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                             Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_16s(ZvpsFFTSpec_C_16s** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_32f(ZvpsFFTSpec_C_32f** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_32fc(ZvpsFFTSpec_C_32fc** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                             Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_32s(ZvpsFFTSpec_C_32s** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_32sc(ZvpsFFTSpec_C_32sc** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                             Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_64f(ZvpsFFTSpec_C_64f** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_C_64fc(ZvpsFFTSpec_C_64fc** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                             Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_R_16s(ZvpsFFTSpec_R_16s** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_R_16s32s(ZvpsFFTSpec_R_16s32s** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                               Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_R_32f(ZvpsFFTSpec_R_32f** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_R_32s(ZvpsFFTSpec_R_32s** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);
ZvpStatus zvpsFFTInit_R_64f(ZvpsFFTSpec_R_64f** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem,
                            Zvp8u* initBuf);

/* Builds a transform object in memory from zvpsMalloc_8u. Statuses as GetSize and Init, and zvpStsNoMemory; on an error
   nothing stays allocated and *spec is left alone. */
ZvpStatus zvpsFFTInitAlloc_C_16sc(ZvpsFFTSpec_C_16sc** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_16s(ZvpsFFTSpec_C_16s** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_32f(ZvpsFFTSpec_C_32f** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_32fc(ZvpsFFTSpec_C_32fc** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_32s(ZvpsFFTSpec_C_32s** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_32sc(ZvpsFFTSpec_C_32sc** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_64f(ZvpsFFTSpec_C_64f** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_C_64fc(ZvpsFFTSpec_C_64fc** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_R_16s(ZvpsFFTSpec_R_16s** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_R_16s32s(ZvpsFFTSpec_R_16s32s** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_R_32f(ZvpsFFTSpec_R_32f** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_R_32s(ZvpsFFTSpec_R_32s** spec, int order, int flag, ZvpHintAlgorithm hint);
ZvpStatus zvpsFFTInitAlloc_R_64f(ZvpsFFTSpec_R_64f** spec, int order, int flag, ZvpHintAlgorithm hint);

/* Invalidates a transform object, and releases its memory if InitAlloc took it. zvpStsNullPtr; zvpStsContextMismatch
   for one of another type, or already freed. */
ZvpStatus zvpsFFTFree_C_16sc(ZvpsFFTSpec_C_16sc* spec);
ZvpStatus zvpsFFTFree_C_16s(ZvpsFFTSpec_C_16s* spec);
ZvpStatus zvpsFFTFree_C_32f(ZvpsFFTSpec_C_32f* spec);
ZvpStatus zvpsFFTFree_C_32fc(ZvpsFFTSpec_C_32fc* spec);
ZvpStatus zvpsFFTFree_C_32s(ZvpsFFTSpec_C_32s* spec);
ZvpStatus zvpsFFTFree_C_32sc(ZvpsFFTSpec_C_32sc* spec);
ZvpStatus zvpsFFTFree_C_64f(ZvpsFFTSpec_C_64f* spec);
ZvpStatus zvpsFFTFree_C_64fc(ZvpsFFTSpec_C_64fc* spec);
ZvpStatus zvpsFFTFree_R_16s(ZvpsFFTSpec_R_16s* spec);
ZvpStatus zvpsFFTFree_R_16s32s(ZvpsFFTSpec_R_16s32s* spec);
ZvpStatus zvpsFFTFree_R_32f(ZvpsFFTSpec_R_32f* spec);
ZvpStatus zvpsFFTFree_R_32s(ZvpsFFTSpec_R_32s* spec);
ZvpStatus zvpsFFTFree_R_64f(ZvpsFFTSpec_R_64f* spec);

/* The size of the buffer that a transform works in, at any address; 0 if it needs none. zvpStsNullPtr for either
   pointer, zvpStsContextMismatch. */
ZvpStatus zvpsFFTGetBufSize_C_16sc(const ZvpsFFTSpec_C_16sc* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_16s(const ZvpsFFTSpec_C_16s* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_32f(const ZvpsFFTSpec_C_32f* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_32fc(const ZvpsFFTSpec_C_32fc* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_32s(const ZvpsFFTSpec_C_32s* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_32sc(const ZvpsFFTSpec_C_32sc* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_64f(const ZvpsFFTSpec_C_64f* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_C_64fc(const ZvpsFFTSpec_C_64fc* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_R_16s(const ZvpsFFTSpec_R_16s* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_R_16s32s(const ZvpsFFTSpec_R_16s32s* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_R_32f(const ZvpsFFTSpec_R_32f* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_R_32s(const ZvpsFFTSpec_R_32s* spec, int* size);
ZvpStatus zvpsFFTGetBufSize_R_64f(const ZvpsFFTSpec_R_64f* spec, int* size);

/* The transforms. `buffer` has the size that GetBufSize reports; null lets the call allocate it (zvpStsNoMemory).
   Where that size is 0, the argument is not looked at.

   zvpStsNullPtr: spec null; zvpStsContextMismatch: spec of another type or freed; zvpStsNullPtr: a data pointer null.
   Nothing is written on an error. */

/* Complex data. */
ZvpStatus zvpsFFTFwd_CToC_32fc(const Zvp32fc* src, Zvp32fc* dst, const ZvpsFFTSpec_C_32fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32fc_I(Zvp32fc* srcDst, const ZvpsFFTSpec_C_32fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32fc(const Zvp32fc* src, Zvp32fc* dst, const ZvpsFFTSpec_C_32fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32fc_I(Zvp32fc* srcDst, const ZvpsFFTSpec_C_32fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_64fc(const Zvp64fc* src, Zvp64fc* dst, const ZvpsFFTSpec_C_64fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_64fc_I(Zvp64fc* srcDst, const ZvpsFFTSpec_C_64fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_64fc(const Zvp64fc* src, Zvp64fc* dst, const ZvpsFFTSpec_C_64fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_64fc_I(Zvp64fc* srcDst, const ZvpsFFTSpec_C_64fc* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32f(const Zvp32f* srcRe, const Zvp32f* srcIm, Zvp32f* dstRe, Zvp32f* dstIm,
                              const ZvpsFFTSpec_C_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32f_I(Zvp32f* srcDstRe, Zvp32f* srcDstIm, const ZvpsFFTSpec_C_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32f(const Zvp32f* srcRe, const Zvp32f* srcIm, Zvp32f* dstRe, Zvp32f* dstIm,
                              const ZvpsFFTSpec_C_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32f_I(Zvp32f* srcDstRe, Zvp32f* srcDstIm, const ZvpsFFTSpec_C_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_64f(const Zvp64f* srcRe, const Zvp64f* srcIm, Zvp64f* dstRe, Zvp64f* dstIm,
                              const ZvpsFFTSpec_C_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_64f_I(Zvp64f* srcDstRe, Zvp64f* srcDstIm, const ZvpsFFTSpec_C_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_64f(const Zvp64f* srcRe, const Zvp64f* srcIm, Zvp64f* dstRe, Zvp64f* dstIm,
                              const ZvpsFFTSpec_C_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_64f_I(Zvp64f* srcDstRe, Zvp64f* srcDstIm, const ZvpsFFTSpec_C_64f* spec, Zvp8u* buffer);

/* Complex integers. */
ZvpStatus zvpsFFTFwd_CToC_16sc_Sfs(const Zvp16sc* src, Zvp16sc* dst, const ZvpsFFTSpec_C_16sc* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_16sc_ISfs(Zvp16sc* srcDst, const ZvpsFFTSpec_C_16sc* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_16sc_Sfs(const Zvp16sc* src, Zvp16sc* dst, const ZvpsFFTSpec_C_16sc* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_16sc_ISfs(Zvp16sc* srcDst, const ZvpsFFTSpec_C_16sc* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_16s_Sfs(const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe, Zvp16s* dstIm,
                                  const ZvpsFFTSpec_C_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_16s_ISfs(Zvp16s* srcDstRe, Zvp16s* srcDstIm, const ZvpsFFTSpec_C_16s* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_16s_Sfs(const Zvp16s* srcRe, const Zvp16s* srcIm, Zvp16s* dstRe, Zvp16s* dstIm,
                                  const ZvpsFFTSpec_C_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_16s_ISfs(Zvp16s* srcDstRe, Zvp16s* srcDstIm, const ZvpsFFTSpec_C_16s* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32sc_Sfs(const Zvp32sc* src, Zvp32sc* dst, const ZvpsFFTSpec_C_32sc* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32sc_ISfs(Zvp32sc* srcDst, const ZvpsFFTSpec_C_32sc* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32sc_Sfs(const Zvp32sc* src, Zvp32sc* dst, const ZvpsFFTSpec_C_32sc* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32sc_ISfs(Zvp32sc* srcDst, const ZvpsFFTSpec_C_32sc* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32s_Sfs(const Zvp32s* srcRe, const Zvp32s* srcIm, Zvp32s* dstRe, Zvp32s* dstIm,
                                  const ZvpsFFTSpec_C_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_CToC_32s_ISfs(Zvp32s* srcDstRe, Zvp32s* srcDstIm, const ZvpsFFTSpec_C_32s* spec, int scaleFactor,
                                   Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32s_Sfs(const Zvp32s* srcRe, const Zvp32s* srcIm, Zvp32s* dstRe, Zvp32s* dstIm,
                                  const ZvpsFFTSpec_C_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CToC_32s_ISfs(Zvp32s* srcDstRe, Zvp32s* srcDstIm, const ZvpsFFTSpec_C_32s* spec, int scaleFactor,
                                   Zvp8u* buffer);

/* Real samples to a packed spectrum and back. In CCS layout the spectrum has 2 (N/2 + 1) reals, also in place. The
   inverse ignores the imaginary parts of X[0] and X[N/2]. */
ZvpStatus zvpsFFTFwd_RToPerm_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPerm_32f_I(Zvp32f* srcDst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_32f_I(Zvp32f* srcDst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_32f_I(Zvp32f* srcDst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_32f_I(Zvp32f* srcDst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_32f_I(Zvp32f* srcDst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_32f_I(Zvp32f* srcDst, const ZvpsFFTSpec_R_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPerm_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPerm_64f_I(Zvp64f* srcDst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_64f_I(Zvp64f* srcDst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_64f_I(Zvp64f* srcDst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_64f_I(Zvp64f* srcDst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_64f_I(Zvp64f* srcDst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_64f_I(Zvp64f* srcDst, const ZvpsFFTSpec_R_64f* spec, Zvp8u* buffer);

/* Real integers. */
ZvpStatus zvpsFFTFwd_RToPerm_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPerm_16s_ISfs(Zvp16s* srcDst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_16s_ISfs(Zvp16s* srcDst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_16s_ISfs(Zvp16s* srcDst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_16s_ISfs(Zvp16s* srcDst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor,
                                    Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_16s_ISfs(Zvp16s* srcDst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor,
                                    Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_16s_ISfs(Zvp16s* srcDst, const ZvpsFFTSpec_R_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPerm_32s_Sfs(const Zvp32s* src, Zvp32s* dst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPerm_32s_ISfs(Zvp32s* srcDst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_32s_Sfs(const Zvp32s* src, Zvp32s* dst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PermToR_32s_ISfs(Zvp32s* srcDst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_32s_Sfs(const Zvp32s* src, Zvp32s* dst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToPack_32s_ISfs(Zvp32s* srcDst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_32s_Sfs(const Zvp32s* src, Zvp32s* dst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor,
                                     Zvp8u* buffer);
ZvpStatus zvpsFFTInv_PackToR_32s_ISfs(Zvp32s* srcDst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_32s_Sfs(const Zvp32s* src, Zvp32s* dst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor,
                                    Zvp8u* buffer);
ZvpStatus zvpsFFTFwd_RToCCS_32s_ISfs(Zvp32s* srcDst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_32s_Sfs(const Zvp32s* src, Zvp32s* dst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor,
                                    Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_32s_ISfs(Zvp32s* srcDst, const ZvpsFFTSpec_R_32s* spec, int scaleFactor, Zvp8u* buffer);

/* 16-bit samples to a 32-bit spectrum and back. */
ZvpStatus zvpsFFTFwd_RToCCS_16s32s_Sfs(const Zvp16s* src, Zvp32s* dst, const ZvpsFFTSpec_R_16s32s* spec,
                                       int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsFFTInv_CCSToR_32s16s_Sfs(const Zvp32s* src, Zvp16s* dst, const ZvpsFFTSpec_R_16s32s* spec,
                                       int scaleFactor, Zvp8u* buffer);

/* Packed spectra, of any length: len is the number of real samples N. zvpStsNullPtr, then zvpStsBadSize for a len below
   1; nothing is written on an error. */

/* The whole spectrum of len complex values from a packed one; the mirrored half has its imaginary parts' signs
   flipped, where -32768 becomes 32767. In place, the packed spectrum lies at the start of srcDst. ConjCcs copies the
   imaginary parts of X[0] and X[N/2] as they are. */
ZvpStatus zvpsConjPerm_16sc(const Zvp16s* src, Zvp16sc* dst, int len);
ZvpStatus zvpsConjPerm_16sc_I(Zvp16sc* srcDst, int len);
ZvpStatus zvpsConjPerm_32fc(const Zvp32f* src, Zvp32fc* dst, int len);
ZvpStatus zvpsConjPerm_32fc_I(Zvp32fc* srcDst, int len);
ZvpStatus zvpsConjPerm_64fc(const Zvp64f* src, Zvp64fc* dst, int len);
ZvpStatus zvpsConjPerm_64fc_I(Zvp64fc* srcDst, int len);
ZvpStatus zvpsConjPack_16sc(const Zvp16s* src, Zvp16sc* dst, int len);
ZvpStatus zvpsConjPack_16sc_I(Zvp16sc* srcDst, int len);
ZvpStatus zvpsConjPack_32fc(const Zvp32f* src, Zvp32fc* dst, int len);
ZvpStatus zvpsConjPack_32fc_I(Zvp32fc* srcDst, int len);
ZvpStatus zvpsConjPack_64fc(const Zvp64f* src, Zvp64fc* dst, int len);
ZvpStatus zvpsConjPack_64fc_I(Zvp64fc* srcDst, int len);
ZvpStatus zvpsConjCcs_16sc(const Zvp16s* src, Zvp16sc* dst, int len);
ZvpStatus zvpsConjCcs_16sc_I(Zvp16sc* srcDst, int len);
ZvpStatus zvpsConjCcs_32fc(const Zvp32f* src, Zvp32fc* dst, int len);
ZvpStatus zvpsConjCcs_32fc_I(Zvp32fc* srcDst, int len);
ZvpStatus zvpsConjCcs_64fc(const Zvp64f* src, Zvp64fc* dst, int len);
ZvpStatus zvpsConjCcs_64fc_I(Zvp64fc* srcDst, int len);

/* Products of two spectra, element by element: src1[k] * src2[k], or src[k] * srcDst[k]. Each operation rounds by
   itself in floating point; 16-bit products are exact, multiplied by 2^-scaleFactor, rounded to nearest with ties to
   even, and saturated. dst may be the same vector as either source. */
ZvpStatus zvpsMulPerm_32f(const Zvp32f* src1, const Zvp32f* src2, Zvp32f* dst, int len);
ZvpStatus zvpsMulPerm_32f_I(const Zvp32f* src, Zvp32f* srcDst, int len);
ZvpStatus zvpsMulPerm_64f(const Zvp64f* src1, const Zvp64f* src2, Zvp64f* dst, int len);
ZvpStatus zvpsMulPerm_64f_I(const Zvp64f* src, Zvp64f* srcDst, int len);
ZvpStatus zvpsMulPerm_16s_Sfs(const Zvp16s* src1, const Zvp16s* src2, Zvp16s* dst, int len, int scaleFactor);
ZvpStatus zvpsMulPerm_16s_ISfs(const Zvp16s* src, Zvp16s* srcDst, int len, int scaleFactor);
ZvpStatus zvpsMulPack_32f(const Zvp32f* src1, const Zvp32f* src2, Zvp32f* dst, int len);
ZvpStatus zvpsMulPack_32f_I(const Zvp32f* src, Zvp32f* srcDst, int len);
ZvpStatus zvpsMulPack_64f(const Zvp64f* src1, const Zvp64f* src2, Zvp64f* dst, int len);
ZvpStatus zvpsMulPack_64f_I(const Zvp64f* src, Zvp64f* srcDst, int len);
ZvpStatus zvpsMulPack_16s_Sfs(const Zvp16s* src1, const Zvp16s* src2, Zvp16s* dst, int len, int scaleFactor);
ZvpStatus zvpsMulPack_16s_ISfs(const Zvp16s* src, Zvp16s* srcDst, int len, int scaleFactor);

/* src[k] * conj(srcDst[k]): the imaginary parts are exactly 0 where both spectra are the same. */
ZvpStatus zvpsMulPackConj_32f_I(const Zvp32f* src, Zvp32f* srcDst, int len);
ZvpStatus zvpsMulPackConj_64f_I(const Zvp64f* src, Zvp64f* srcDst, int len);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
