/* Discrete cosine transforms of N values, for any N from 1 on, in orthonormal scaling.

   Forward: X[k] = c(k) sum over n of x[n] cos(pi (2 n + 1) k / 2N). Inverse: x[n] = sum over k of
   c(k) X[k] cos(pi (2 n + 1) k / 2N). Here c(0) = 1 / sqrt(N), and c(k) = sqrt(2 / N) for the other k. Each undoes the
   other.

   Any alignment that suits the type is fine. A destination is either the same array as its source or does not overlap
   it. A function ending in I or ISfs works in place and gives the same bits. Sources are not changed.

   16-bit data are transformed in single precision, then multiplied by 2^-scaleFactor, rounded to nearest with ties to
   even, and saturated; every int is a valid scaleFactor.

   Threads. A transform object is read only once it is built: any number of threads may share one, each with a buffer of
   its own (or none). Building and freeing are not synchronised. No function here starts threads. */
#ifndef ZVPS_DCT_H
#define ZVPS_DCT_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Transform objects: length, direction and tables of a transform. */
typedef struct ZvpsDCTFwdSpec_16s ZvpsDCTFwdSpec_16s;
typedef struct ZvpsDCTFwdSpec_32f ZvpsDCTFwdSpec_32f;
typedef struct ZvpsDCTFwdSpec_64f ZvpsDCTFwdSpec_64f;
typedef struct ZvpsDCTInvSpec_16s ZvpsDCTInvSpec_16s;
typedef struct ZvpsDCTInvSpec_32f ZvpsDCTInvSpec_32f;
typedef struct ZvpsDCTInvSpec_64f ZvpsDCTInvSpec_64f;

/* The bytes that Init needs for a transform object and for its own use meanwhile, and those that a transform needs to
   work in; 0 where it needs none. They hold for memory at any address.

   zvpStsBadSize: len below 1; zvpStsNullPtr: a null result; zvpStsBadSize: a len whose object would be too large;
   zvpStsNoMemory. Nothing is written on an error. */
ZvpStatus zvpsDCTFwdGetSize_16s(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize);
ZvpStatus zvpsDCTFwdGetSize_32f(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize);
ZvpStatus zvpsDCTFwdGetSize_64f(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize);
ZvpStatus zvpsDCTInvGetSize_16s(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize);
ZvpStatus zvpsDCTInvGetSize_32f(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize);
ZvpStatus zvpsDCTInvGetSize_64f(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize);

/* Builds a transform object in specMem and leaves its address, which is that of specMem rounded up to 32 bytes, in
   *spec. It points into itself and cannot be moved. initBuf is used during the call only, and may be null where
   GetSize gives 0. Objects of a len above 100 that is no power of two take further memory from zvpsMalloc_8u, which
   Free releases.

   zvpStsNullPtr: spec null; zvpStsBadSize: len below 1; zvpStsNullPtr: specMem null; zvpStsBadSize: any other len that
   GetSize rejects; zvpStsNullPtr: initBuf null where it is needed; zvpStsNoMemory. On an error *spec is left alone. */
ZvpStatus zvpsDCTFwdInit_16s(ZvpsDCTFwdSpec_16s** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);
ZvpStatus zvpsDCTFwdInit_32f(ZvpsDCTFwdSpec_32f** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);
ZvpStatus zvpsDCTFwdInit_64f(ZvpsDCTFwdSpec_64f** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);
ZvpStatus zvpsDCTInvInit_16s(ZvpsDCTInvSpec_16s** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);
ZvpStatus zvpsDCTInvInit_32f(ZvpsDCTInvSpec_32f** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);
ZvpStatus zvpsDCTInvInit_64f(ZvpsDCTInvSpec_64f** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);

/* Builds a transform object in memory from zvpsMalloc_8u. Statuses as GetSize and Init, and zvpStsNoMemory; on an error
   nothing stays allocated and *spec is left alone. */
ZvpStatus zvpsDCTFwdInitAlloc_16s(ZvpsDCTFwdSpec_16s** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsDCTFwdInitAlloc_32f(ZvpsDCTFwdSpec_32f** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsDCTFwdInitAlloc_64f(ZvpsDCTFwdSpec_64f** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsDCTInvInitAlloc_16s(ZvpsDCTInvSpec_16s** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsDCTInvInitAlloc_32f(ZvpsDCTInvSpec_32f** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsDCTInvInitAlloc_64f(ZvpsDCTInvSpec_64f** spec, int len, ZvpHintAlgorithm hint);

/* Invalidates a transform object, and releases what Init or InitAlloc took. zvpStsNullPtr; zvpStsContextMismatch for
   one of another type, or already freed. */
ZvpStatus zvpsDCTFwdFree_16s(ZvpsDCTFwdSpec_16s* spec);
ZvpStatus zvpsDCTFwdFree_32f(ZvpsDCTFwdSpec_32f* spec);
ZvpStatus zvpsDCTFwdFree_64f(ZvpsDCTFwdSpec_64f* spec);
ZvpStatus zvpsDCTInvFree_16s(ZvpsDCTInvSpec_16s* spec);
ZvpStatus zvpsDCTInvFree_32f(ZvpsDCTInvSpec_32f* spec);
ZvpStatus zvpsDCTInvFree_64f(ZvpsDCTInvSpec_64f* spec);

/* The size of the buffer that a transform works in, at any address; 0 if it needs none. zvpStsNullPtr for either
   pointer, zvpStsContextMismatch. */
ZvpStatus zvpsDCTFwdGetBufSize_16s(const ZvpsDCTFwdSpec_16s* spec, int* size);
ZvpStatus zvpsDCTFwdGetBufSize_32f(const ZvpsDCTFwdSpec_32f* spec, int* size);
ZvpStatus zvpsDCTFwdGetBufSize_64f(const ZvpsDCTFwdSpec_64f* spec, int* size);
ZvpStatus zvpsDCTInvGetBufSize_16s(const ZvpsDCTInvSpec_16s* spec, int* size);
ZvpStatus zvpsDCTInvGetBufSize_32f(const ZvpsDCTInvSpec_32f* spec, int* size);
ZvpStatus zvpsDCTInvGetBufSize_64f(const ZvpsDCTInvSpec_64f* spec, int* size);

/* The transforms. `buffer` has the size that GetBufSize reports; null lets the call allocate what it needs
   (zvpStsNoMemory).

   zvpStsNullPtr: spec null; zvpStsContextMismatch: spec of another type or freed; zvpStsNullPtr: a data pointer null.
   Nothing is written on an error. */
ZvpStatus zvpsDCTFwd_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDCTFwdSpec_16s* spec, int scaleFactor,
                             Zvp8u* buffer);
ZvpStatus zvpsDCTFwd_16s_ISfs(Zvp16s* srcDst, const ZvpsDCTFwdSpec_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsDCTFwd_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDCTFwdSpec_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTFwd_32f_I(Zvp32f* srcDst, const ZvpsDCTFwdSpec_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTFwd_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDCTFwdSpec_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTFwd_64f_I(Zvp64f* srcDst, const ZvpsDCTFwdSpec_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTInv_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const ZvpsDCTInvSpec_16s* spec, int scaleFactor,
                             Zvp8u* buffer);
ZvpStatus zvpsDCTInv_16s_ISfs(Zvp16s* srcDst, const ZvpsDCTInvSpec_16s* spec, int scaleFactor, Zvp8u* buffer);
ZvpStatus zvpsDCTInv_32f(const Zvp32f* src, Zvp32f* dst, const ZvpsDCTInvSpec_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTInv_32f_I(Zvp32f* srcDst, const ZvpsDCTInvSpec_32f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTInv_64f(const Zvp64f* src, Zvp64f* dst, const ZvpsDCTInvSpec_64f* spec, Zvp8u* buffer);
ZvpStatus zvpsDCTInv_64f_I(Zvp64f* srcDst, const ZvpsDCTInvSpec_64f* spec, Zvp8u* buffer);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
