/* The analytic signal of L real samples, for any L from 1 on: dst[n] = src[n] + i h[n], with h the Hilbert transform of
   the samples taken as one period. Of their spectrum, the frequencies between 0 and L/2 are doubled, those beyond are
   dropped, and the bins 0 and L/2 are kept. With L of 1 or 2 the imaginary parts are 0 and the real parts exact.

   16-bit samples are transformed in single precision. Results of 16 bits are multiplied by 2^-scaleFactor, rounded to
   nearest with ties to even, and saturated; every int is a valid scaleFactor.

   Any alignment that suits the type is fine. Sources are not changed and do not overlap the destination.

   Threads. A transform object is read only once it is built: any number of threads may share one. Building and freeing
   are not synchronised. No function here starts threads. */
#ifndef ZVPS_HILBERT_H
#define ZVPS_HILBERT_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Transform objects: the length and the Fourier transforms of that length. */
typedef struct ZvpsHilbertSpec_32f32fc ZvpsHilbertSpec_32f32fc;
typedef struct ZvpsHilbertSpec_16s32fc ZvpsHilbertSpec_16s32fc;
typedef struct ZvpsHilbertSpec_16s16sc ZvpsHilbertSpec_16s16sc;

/* Builds a transform object in memory from zvpsMalloc_8u. zvpStsNullPtr; zvpStsBadSize: len below 1, and as
   zvpsDFTInitAlloc_C_32fc a len that is too large; zvpStsNoMemory. Once spec and len have been found valid, *spec is
   null on an error; nothing stays allocated. */
ZvpStatus zvpsHilbertInitAlloc_32f32fc(ZvpsHilbertSpec_32f32fc** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsHilbertInitAlloc_16s32fc(ZvpsHilbertSpec_16s32fc** spec, int len, ZvpHintAlgorithm hint);
ZvpStatus zvpsHilbertInitAlloc_16s16sc(ZvpsHilbertSpec_16s16sc** spec, int len, ZvpHintAlgorithm hint);

/* Invalidates a transform object and releases its memory. zvpStsNullPtr; zvpStsContextMismatch for one of another
   type. */
ZvpStatus zvpsHilbertFree_32f32fc(ZvpsHilbertSpec_32f32fc* spec);
ZvpStatus zvpsHilbertFree_16s32fc(ZvpsHilbertSpec_16s32fc* spec);
ZvpStatus zvpsHilbertFree_16s16sc(ZvpsHilbertSpec_16s16sc* spec);

/* The transforms, which take memory for the time of the call. zvpStsNullPtr for any pointer; zvpStsContextMismatch for
   an object of another type; zvpStsNoMemory. Nothing is written on an error. */
ZvpStatus zvpsHilbert_32f32fc(const Zvp32f* src, Zvp32fc* dst, const ZvpsHilbertSpec_32f32fc* spec);
ZvpStatus zvpsHilbert_16s32fc(const Zvp16s* src, Zvp32fc* dst, const ZvpsHilbertSpec_16s32fc* spec);
ZvpStatus zvpsHilbert_16s16sc_Sfs(const Zvp16s* src, Zvp16sc* dst, const ZvpsHilbertSpec_16s16sc* spec,
                                  int scaleFactor);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
