/* Finite impulse response filters of one rate: y[n] = sum over k < tapsLen of h[k] * x[n - k].

   A state holds a copy of the taps h and the last tapsLen inputs, so that a signal may be filtered in blocks of any
   lengths and by single samples in any mixture. The two types of a name are those of the taps and of the data; where
   there is only one, both have it. Data of the other type are converted to that of the taps, filtered, and converted
   back. Functions that end in Sfs store the result times 2^-scaleFactor, rounded to nearest with ties to even, then
   saturated; every int is a valid scaleFactor. Those that end in I work in place; pSrc and pDst of the others may be
   the same vector too, but must not overlap otherwise.

   Integer taps. A state of 16s taps holds them as they are. 32s and 32sc taps stand for their value times
   2^tapsFactor; they are kept in 16 bits: while a part's magnitude exceeds 32766, all are shifted right by one and the
   effective tap scale, which starts from tapsFactor, grows by one. The float taps of 32s_16s32f and 32sc_16sc32fc are
   doubled while that keeps the largest below 32767.0, or halved while it exceeds 32767.0, then rounded half away from
   zero; the effective tap scale counts the halvings, or the doublings as negative. Sums of these states are exact, in
   64 bits, and rounded once, by scaleFactor minus the effective tap scale. States of _32s hold their taps in double
   precision and share all functions of execution with 64f_32s.

   How a block is filtered. States with at least 64 taps (32fc: 16, 64fc: 32) in floating point carry an FFT, and blocks
   of more than 511 samples (32fc, 64fc: 255) go through it by overlap-save where that takes less time than direct sums.
   All others are summed directly: an output of a direct block does not depend in a bit on how the signal is cut into
   blocks. Larger blocks are shared among threads, never more than ownGetNumThreads gave when the state was sized,
   without changing a bit of the result.

   Thread safety: one call at a time on a state. Checks, in this order, before anything is written: null pointers give
   zvpStsNullPtr, numIters below 1 zvpStsBadSize, tapsLen below 1 zvpStsBadFirLength, a state of another kind
   zvpStsContextMismatch. Functions that allocate give zvpStsNoMemory where that fails, or where a size does not fit an
   int. */
#ifndef ZVPS_FIR_H
#define ZVPS_FIR_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* States, one type for each pair of types. */
typedef struct ZvpsFIRState_16s ZvpsFIRState_16s;
typedef struct ZvpsFIRState_32s ZvpsFIRState_32s;
typedef struct ZvpsFIRState_32f ZvpsFIRState_32f;
typedef struct ZvpsFIRState_32fc ZvpsFIRState_32fc;
typedef struct ZvpsFIRState_64f ZvpsFIRState_64f;
typedef struct ZvpsFIRState_64fc ZvpsFIRState_64fc;
typedef struct ZvpsFIRState32f_16s ZvpsFIRState32f_16s;
typedef struct ZvpsFIRState32fc_16sc ZvpsFIRState32fc_16sc;
typedef struct ZvpsFIRState32s_16s ZvpsFIRState32s_16s;
typedef struct ZvpsFIRState32sc_16sc ZvpsFIRState32sc_16sc;
typedef struct ZvpsFIRState64f_16s ZvpsFIRState64f_16s;
typedef struct ZvpsFIRState64f_32s ZvpsFIRState64f_32s;
typedef struct ZvpsFIRState64f_32f ZvpsFIRState64f_32f;
typedef struct ZvpsFIRState64fc_16sc ZvpsFIRState64fc_16sc;
typedef struct ZvpsFIRState64fc_32sc ZvpsFIRState64fc_32sc;
typedef struct ZvpsFIRState64fc_32fc ZvpsFIRState64fc_32fc;
typedef struct ZvpsFIRSparseState_32f ZvpsFIRSparseState_32f;

/* *pSize = the bytes that Init needs at pBuffer. For as many threads as ownGetNumThreads gives; they must not become
   more before Init. */
ZvpStatus zvpsFIRGetStateSize_16s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize_32f(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize_32fc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize_64f(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize_64fc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize32f_16s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize32fc_16sc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize32s_16s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize32sc_16sc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize64f_16s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize64f_32f(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize64f_32s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize64fc_16sc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize64fc_32fc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize64fc_32sc(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize_32s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize32s_16s32f(int tapsLen, int* pSize);
ZvpStatus zvpsFIRGetStateSize32sc_16sc32fc(int tapsLen, int* pSize);

/* Builds a state at pBuffer, which may start anywhere, and stores its address. pDlyLine has the last tapsLen inputs,
   the most recent first (the oldest has no influence on the next output); null stands for zeros. */
ZvpStatus zvpsFIRInit_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, const Zvp16s* pDlyLine,
                          Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, const Zvp32f* pDlyLine,
                          Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit_32fc(ZvpsFIRState_32fc** ppState, const Zvp32fc* pTaps, int tapsLen, const Zvp32fc* pDlyLine,
                           Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit_64f(ZvpsFIRState_64f** ppState, const Zvp64f* pTaps, int tapsLen, const Zvp64f* pDlyLine,
                          Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit_64fc(ZvpsFIRState_64fc** ppState, const Zvp64fc* pTaps, int tapsLen, const Zvp64fc* pDlyLine,
                           Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit32f_16s(ZvpsFIRState32f_16s** ppState, const Zvp32f* pTaps, int tapsLen, const Zvp16s* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit32fc_16sc(ZvpsFIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen,
                               const Zvp16sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit32s_16s(ZvpsFIRState32s_16s** ppState, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                             const Zvp16s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit32sc_16sc(ZvpsFIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int tapsLen, int tapsFactor,
                               const Zvp16sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit64f_16s(ZvpsFIRState64f_16s** ppState, const Zvp64f* pTaps, int tapsLen, const Zvp16s* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit64f_32f(ZvpsFIRState64f_32f** ppState, const Zvp64f* pTaps, int tapsLen, const Zvp32f* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit64f_32s(ZvpsFIRState64f_32s** ppState, const Zvp64f* pTaps, int tapsLen, const Zvp32s* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit64fc_16sc(ZvpsFIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int tapsLen,
                               const Zvp16sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit64fc_32fc(ZvpsFIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int tapsLen,
                               const Zvp32fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit64fc_32sc(ZvpsFIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int tapsLen,
                               const Zvp32sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit_32s(ZvpsFIRState_32s** ppState, const Zvp32s* pTaps, int tapsLen, const Zvp32s* pDlyLine,
                          Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit32s_16s32f(ZvpsFIRState32s_16s** ppState, const Zvp32f* pTaps, int tapsLen, const Zvp16s* pDlyLine,
                                Zvp8u* pBuffer);
ZvpStatus zvpsFIRInit32sc_16sc32fc(ZvpsFIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen,
                                   const Zvp16sc* pDlyLine, Zvp8u* pBuffer);

/* The same in memory that the function allocates and Free releases. */
ZvpStatus zvpsFIRInitAlloc_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, const Zvp32f* pDlyLine);
ZvpStatus zvpsFIRInitAlloc_32fc(ZvpsFIRState_32fc** ppState, const Zvp32fc* pTaps, int tapsLen,
                                const Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc_64f(ZvpsFIRState_64f** ppState, const Zvp64f* pTaps, int tapsLen, const Zvp64f* pDlyLine);
ZvpStatus zvpsFIRInitAlloc_64fc(ZvpsFIRState_64fc** ppState, const Zvp64fc* pTaps, int tapsLen,
                                const Zvp64fc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc32f_16s(ZvpsFIRState32f_16s** ppState, const Zvp32f* pTaps, int tapsLen,
                                  const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc32fc_16sc(ZvpsFIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen,
                                    const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc32s_16s(ZvpsFIRState32s_16s** ppState, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                                  const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc32sc_16sc(ZvpsFIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int tapsLen, int tapsFactor,
                                    const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc64f_16s(ZvpsFIRState64f_16s** ppState, const Zvp64f* pTaps, int tapsLen,
                                  const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc64f_32f(ZvpsFIRState64f_32f** ppState, const Zvp64f* pTaps, int tapsLen,
                                  const Zvp32f* pDlyLine);
ZvpStatus zvpsFIRInitAlloc64f_32s(ZvpsFIRState64f_32s** ppState, const Zvp64f* pTaps, int tapsLen,
                                  const Zvp32s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc64fc_16sc(ZvpsFIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int tapsLen,
                                    const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc64fc_32fc(ZvpsFIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int tapsLen,
                                    const Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc64fc_32sc(ZvpsFIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int tapsLen,
                                    const Zvp32sc* pDlyLine);
ZvpStatus zvpsFIRInitAlloc_32s(ZvpsFIRState_32s** ppState, const Zvp32s* pTaps, int tapsLen, const Zvp32s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc32s_16s32f(ZvpsFIRState32s_16s** ppState, const Zvp32f* pTaps, int tapsLen,
                                     const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRInitAlloc32sc_16sc32fc(ZvpsFIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen,
                                        const Zvp16sc* pDlyLine);

/* Ends a state's life, and releases it where InitAlloc built it. A state from Init is left to its owner with its tag
   cleared: a second Free gives zvpStsContextMismatch. */
ZvpStatus zvpsFIRFree_16s(ZvpsFIRState_16s* pState);
ZvpStatus zvpsFIRFree_32f(ZvpsFIRState_32f* pState);
ZvpStatus zvpsFIRFree_32fc(ZvpsFIRState_32fc* pState);
ZvpStatus zvpsFIRFree_64f(ZvpsFIRState_64f* pState);
ZvpStatus zvpsFIRFree_64fc(ZvpsFIRState_64fc* pState);
ZvpStatus zvpsFIRFree32f_16s(ZvpsFIRState32f_16s* pState);
ZvpStatus zvpsFIRFree32fc_16sc(ZvpsFIRState32fc_16sc* pState);
ZvpStatus zvpsFIRFree32s_16s(ZvpsFIRState32s_16s* pState);
ZvpStatus zvpsFIRFree32sc_16sc(ZvpsFIRState32sc_16sc* pState);
ZvpStatus zvpsFIRFree64f_16s(ZvpsFIRState64f_16s* pState);
ZvpStatus zvpsFIRFree64f_32f(ZvpsFIRState64f_32f* pState);
ZvpStatus zvpsFIRFree64f_32s(ZvpsFIRState64f_32s* pState);
ZvpStatus zvpsFIRFree64fc_16sc(ZvpsFIRState64fc_16sc* pState);
ZvpStatus zvpsFIRFree64fc_32fc(ZvpsFIRState64fc_32fc* pState);
ZvpStatus zvpsFIRFree64fc_32sc(ZvpsFIRState64fc_32sc* pState);
ZvpStatus zvpsFIRFree_32s(ZvpsFIRState_32s* pState);

/* The taps in their order: of integer taps those kept, beside the effective tap scale; of 32s_16s32f and 32sc_16sc32fc
   the kept ones times 2^scale, the scale taken modulo 128. */
ZvpStatus zvpsFIRGetTaps_16s(const ZvpsFIRState_16s* pState, Zvp16s* pTaps);
ZvpStatus zvpsFIRGetTaps_32f(const ZvpsFIRState_32f* pState, Zvp32f* pTaps);
ZvpStatus zvpsFIRGetTaps_32fc(const ZvpsFIRState_32fc* pState, Zvp32fc* pTaps);
ZvpStatus zvpsFIRGetTaps_64f(const ZvpsFIRState_64f* pState, Zvp64f* pTaps);
ZvpStatus zvpsFIRGetTaps_64fc(const ZvpsFIRState_64fc* pState, Zvp64fc* pTaps);
ZvpStatus zvpsFIRGetTaps32f_16s(const ZvpsFIRState32f_16s* pState, Zvp32f* pTaps);
ZvpStatus zvpsFIRGetTaps32fc_16sc(const ZvpsFIRState32fc_16sc* pState, Zvp32fc* pTaps);
ZvpStatus zvpsFIRGetTaps32s_16s(const ZvpsFIRState32s_16s* pState, Zvp32s* pTaps, int* pTapsFactor);
ZvpStatus zvpsFIRGetTaps32sc_16sc(const ZvpsFIRState32sc_16sc* pState, Zvp32sc* pTaps, int* pTapsFactor);
ZvpStatus zvpsFIRGetTaps64f_16s(const ZvpsFIRState64f_16s* pState, Zvp64f* pTaps);
ZvpStatus zvpsFIRGetTaps64f_32f(const ZvpsFIRState64f_32f* pState, Zvp64f* pTaps);
ZvpStatus zvpsFIRGetTaps64f_32s(const ZvpsFIRState64f_32s* pState, Zvp64f* pTaps);
ZvpStatus zvpsFIRGetTaps64fc_16sc(const ZvpsFIRState64fc_16sc* pState, Zvp64fc* pTaps);
ZvpStatus zvpsFIRGetTaps64fc_32fc(const ZvpsFIRState64fc_32fc* pState, Zvp64fc* pTaps);
ZvpStatus zvpsFIRGetTaps64fc_32sc(const ZvpsFIRState64fc_32sc* pState, Zvp64fc* pTaps);
ZvpStatus zvpsFIRGetTaps_32s(const ZvpsFIRState_32s* pState, Zvp32s* pTaps);
ZvpStatus zvpsFIRGetTaps32s_16s32f(const ZvpsFIRState32s_16s* pState, Zvp32f* pTaps);
ZvpStatus zvpsFIRGetTaps32sc_16sc32fc(const ZvpsFIRState32sc_16sc* pState, Zvp32fc* pTaps);

/* Replaces the taps, as many as before; the past inputs stay. */
ZvpStatus zvpsFIRSetTaps_16s(const Zvp16s* pTaps, ZvpsFIRState_16s* pState);
ZvpStatus zvpsFIRSetTaps_32f(const Zvp32f* pTaps, ZvpsFIRState_32f* pState);
ZvpStatus zvpsFIRSetTaps_32fc(const Zvp32fc* pTaps, ZvpsFIRState_32fc* pState);
ZvpStatus zvpsFIRSetTaps_64f(const Zvp64f* pTaps, ZvpsFIRState_64f* pState);
ZvpStatus zvpsFIRSetTaps_64fc(const Zvp64fc* pTaps, ZvpsFIRState_64fc* pState);
ZvpStatus zvpsFIRSetTaps32f_16s(const Zvp32f* pTaps, ZvpsFIRState32f_16s* pState);
ZvpStatus zvpsFIRSetTaps32fc_16sc(const Zvp32fc* pTaps, ZvpsFIRState32fc_16sc* pState);
ZvpStatus zvpsFIRSetTaps32s_16s(const Zvp32s* pTaps, ZvpsFIRState32s_16s* pState, int tapsFactor);
ZvpStatus zvpsFIRSetTaps32sc_16sc(const Zvp32sc* pTaps, ZvpsFIRState32sc_16sc* pState, int tapsFactor);
ZvpStatus zvpsFIRSetTaps64f_16s(const Zvp64f* pTaps, ZvpsFIRState64f_16s* pState);
ZvpStatus zvpsFIRSetTaps64f_32f(const Zvp64f* pTaps, ZvpsFIRState64f_32f* pState);
ZvpStatus zvpsFIRSetTaps64f_32s(const Zvp64f* pTaps, ZvpsFIRState64f_32s* pState);
ZvpStatus zvpsFIRSetTaps64fc_16sc(const Zvp64fc* pTaps, ZvpsFIRState64fc_16sc* pState);
ZvpStatus zvpsFIRSetTaps64fc_32fc(const Zvp64fc* pTaps, ZvpsFIRState64fc_32fc* pState);
ZvpStatus zvpsFIRSetTaps64fc_32sc(const Zvp64fc* pTaps, ZvpsFIRState64fc_32sc* pState);
ZvpStatus zvpsFIRSetTaps_32s(const Zvp32s* pTaps, ZvpsFIRState_32s* pState);
ZvpStatus zvpsFIRSetTaps32s_16s32f(const Zvp32f* pTaps, ZvpsFIRState32s_16s* pState);
ZvpStatus zvpsFIRSetTaps32sc_16sc32fc(const Zvp32fc* pTaps, ZvpsFIRState32sc_16sc* pState);

/* The last tapsLen inputs, the most recent first. */
ZvpStatus zvpsFIRGetDlyLine_16s(const ZvpsFIRState_16s* pState, Zvp16s* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine_32f(const ZvpsFIRState_32f* pState, Zvp32f* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine_32fc(const ZvpsFIRState_32fc* pState, Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine_64f(const ZvpsFIRState_64f* pState, Zvp64f* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine_64fc(const ZvpsFIRState_64fc* pState, Zvp64fc* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine32f_16s(const ZvpsFIRState32f_16s* pState, Zvp16s* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine32fc_16sc(const ZvpsFIRState32fc_16sc* pState, Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine32s_16s(const ZvpsFIRState32s_16s* pState, Zvp16s* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine32sc_16sc(const ZvpsFIRState32sc_16sc* pState, Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine64f_16s(const ZvpsFIRState64f_16s* pState, Zvp16s* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine64f_32f(const ZvpsFIRState64f_32f* pState, Zvp32f* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine64f_32s(const ZvpsFIRState64f_32s* pState, Zvp32s* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine64fc_16sc(const ZvpsFIRState64fc_16sc* pState, Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine64fc_32fc(const ZvpsFIRState64fc_32fc* pState, Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRGetDlyLine64fc_32sc(const ZvpsFIRState64fc_32sc* pState, Zvp32sc* pDlyLine);

/* Replaces them; null stands for zeros. */
ZvpStatus zvpsFIRSetDlyLine_16s(ZvpsFIRState_16s* pState, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine_32f(ZvpsFIRState_32f* pState, const Zvp32f* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine_32fc(ZvpsFIRState_32fc* pState, const Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine_64f(ZvpsFIRState_64f* pState, const Zvp64f* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine_64fc(ZvpsFIRState_64fc* pState, const Zvp64fc* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine32f_16s(ZvpsFIRState32f_16s* pState, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine32fc_16sc(ZvpsFIRState32fc_16sc* pState, const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine32s_16s(ZvpsFIRState32s_16s* pState, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine32sc_16sc(ZvpsFIRState32sc_16sc* pState, const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine64f_16s(ZvpsFIRState64f_16s* pState, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine64f_32f(ZvpsFIRState64f_32f* pState, const Zvp32f* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine64f_32s(ZvpsFIRState64f_32s* pState, const Zvp32s* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine64fc_16sc(ZvpsFIRState64fc_16sc* pState, const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine64fc_32fc(ZvpsFIRState64fc_32fc* pState, const Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRSetDlyLine64fc_32sc(ZvpsFIRState64fc_32sc* pState, const Zvp32sc* pDlyLine);

/* Filters numIters samples. In place, blocks may need memory: zvpStsNoMemory leaves vector and state as they were. */
ZvpStatus zvpsFIR_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, ZvpsFIRState_32f* pState);
ZvpStatus zvpsFIR_32f_I(Zvp32f* pSrcDst, int numIters, ZvpsFIRState_32f* pState);
ZvpStatus zvpsFIR_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int numIters, ZvpsFIRState_32fc* pState);
ZvpStatus zvpsFIR_32fc_I(Zvp32fc* pSrcDst, int numIters, ZvpsFIRState_32fc* pState);
ZvpStatus zvpsFIR_64f(const Zvp64f* pSrc, Zvp64f* pDst, int numIters, ZvpsFIRState_64f* pState);
ZvpStatus zvpsFIR_64f_I(Zvp64f* pSrcDst, int numIters, ZvpsFIRState_64f* pState);
ZvpStatus zvpsFIR_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int numIters, ZvpsFIRState_64fc* pState);
ZvpStatus zvpsFIR_64fc_I(Zvp64fc* pSrcDst, int numIters, ZvpsFIRState_64fc* pState);
ZvpStatus zvpsFIR_32s_Sfs(const Zvp32s* pSrc, Zvp32s* pDst, int numIters, ZvpsFIRState_32s* pState, int scaleFactor);
ZvpStatus zvpsFIR_32s_ISfs(Zvp32s* pSrcDst, int numIters, ZvpsFIRState_32s* pState, int scaleFactor);
ZvpStatus zvpsFIR_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, ZvpsFIRState_16s* pState, int scaleFactor);
ZvpStatus zvpsFIR_16s_ISfs(Zvp16s* pSrcDst, int numIters, ZvpsFIRState_16s* pState, int scaleFactor);
ZvpStatus zvpsFIR32f_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, ZvpsFIRState32f_16s* pState,
                             int scaleFactor);
ZvpStatus zvpsFIR32f_16s_ISfs(Zvp16s* pSrcDst, int numIters, ZvpsFIRState32f_16s* pState, int scaleFactor);
ZvpStatus zvpsFIR32fc_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, ZvpsFIRState32fc_16sc* pState,
                               int scaleFactor);
ZvpStatus zvpsFIR32fc_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, ZvpsFIRState32fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsFIR32s_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, ZvpsFIRState32s_16s* pState,
                             int scaleFactor);
ZvpStatus zvpsFIR32s_16s_ISfs(Zvp16s* pSrcDst, int numIters, ZvpsFIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsFIR32sc_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, ZvpsFIRState32sc_16sc* pState,
                               int scaleFactor);
ZvpStatus zvpsFIR32sc_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, ZvpsFIRState32sc_16sc* pState, int scaleFactor);
ZvpStatus zvpsFIR64f_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, ZvpsFIRState64f_16s* pState,
                             int scaleFactor);
ZvpStatus zvpsFIR64f_16s_ISfs(Zvp16s* pSrcDst, int numIters, ZvpsFIRState64f_16s* pState, int scaleFactor);
ZvpStatus zvpsFIR64f_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, ZvpsFIRState64f_32f* pState);
ZvpStatus zvpsFIR64f_32f_I(Zvp32f* pSrcDst, int numIters, ZvpsFIRState64f_32f* pState);
ZvpStatus zvpsFIR64f_32s_Sfs(const Zvp32s* pSrc, Zvp32s* pDst, int numIters, ZvpsFIRState64f_32s* pState,
                             int scaleFactor);
ZvpStatus zvpsFIR64f_32s_ISfs(Zvp32s* pSrcDst, int numIters, ZvpsFIRState64f_32s* pState, int scaleFactor);
ZvpStatus zvpsFIR64fc_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, ZvpsFIRState64fc_16sc* pState,
                               int scaleFactor);
ZvpStatus zvpsFIR64fc_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, ZvpsFIRState64fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsFIR64fc_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int numIters, ZvpsFIRState64fc_32fc* pState);
ZvpStatus zvpsFIR64fc_32fc_I(Zvp32fc* pSrcDst, int numIters, ZvpsFIRState64fc_32fc* pState);
ZvpStatus zvpsFIR64fc_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc* pDst, int numIters, ZvpsFIRState64fc_32sc* pState,
                               int scaleFactor);
ZvpStatus zvpsFIR64fc_32sc_ISfs(Zvp32sc* pSrcDst, int numIters, ZvpsFIRState64fc_32sc* pState, int scaleFactor);

/* Filters one sample. The sums of floating-point data run in several chains, unlike those of blocks: they agree but for
   rounding. */
ZvpStatus zvpsFIROne_32f(Zvp32f src, Zvp32f* pDstVal, ZvpsFIRState_32f* pState);
ZvpStatus zvpsFIROne_32fc(Zvp32fc src, Zvp32fc* pDstVal, ZvpsFIRState_32fc* pState);
ZvpStatus zvpsFIROne_64f(Zvp64f src, Zvp64f* pDstVal, ZvpsFIRState_64f* pState);
ZvpStatus zvpsFIROne_64fc(Zvp64fc src, Zvp64fc* pDstVal, ZvpsFIRState_64fc* pState);
ZvpStatus zvpsFIROne_32s_Sfs(Zvp32s src, Zvp32s* pDstVal, ZvpsFIRState_32s* pState, int scaleFactor);
ZvpStatus zvpsFIROne_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsFIRState_16s* pState, int scaleFactor);
ZvpStatus zvpsFIROne32f_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsFIRState32f_16s* pState, int scaleFactor);
ZvpStatus zvpsFIROne32fc_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsFIRState32fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsFIROne32s_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsFIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsFIROne32sc_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsFIRState32sc_16sc* pState, int scaleFactor);
ZvpStatus zvpsFIROne64f_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsFIRState64f_16s* pState, int scaleFactor);
ZvpStatus zvpsFIROne64f_32f(Zvp32f src, Zvp32f* pDstVal, ZvpsFIRState64f_32f* pState);
ZvpStatus zvpsFIROne64f_32s_Sfs(Zvp32s src, Zvp32s* pDstVal, ZvpsFIRState64f_32s* pState, int scaleFactor);
ZvpStatus zvpsFIROne64fc_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsFIRState64fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsFIROne64fc_32fc(Zvp32fc src, Zvp32fc* pDstVal, ZvpsFIRState64fc_32fc* pState);
ZvpStatus zvpsFIROne64fc_32sc_Sfs(Zvp32sc src, Zvp32sc* pDstVal, ZvpsFIRState64fc_32sc* pState, int scaleFactor);

/* Filters without a state, by the caller's taps, in their order, and delay line.

   Taps in floating point: pDlyLine is a ring of 2 tapsLen elements. The tapsLen elements from *pDlyLineIndex on are the
   last inputs, the oldest first; the index, which is not checked, is where the next sample goes and lies below tapsLen.
   With fewer than 64 taps (32fc, 32fc_16sc: 16, 64fc and 64fc of other data: 32), blocks shorter than tapsLen advance
   the index by their length, modulo tapsLen; others leave the last tapsLen - 1 inputs at the ring's begin and the index
   behind them. With more taps the index stays; the call may allocate a state for its duration.

   Integer taps: pDlyLine + *pDlyLineIndex has the last tapsLen inputs, the most recent first. Afterwards they are at
   pDlyLine and the index is 0. An index outside 0 .. tapsLen - 1 gives zvpStsBadDelayIndex after all other checks. 16s
   taps are taken as they are, others reduced as a state's. */
ZvpStatus zvpsFIR_Direct_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, const Zvp32f* pTaps, int tapsLen,
                             Zvp32f* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_32f_I(Zvp32f* pSrcDst, int numIters, const Zvp32f* pTaps, int tapsLen, Zvp32f* pDlyLine,
                               int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int numIters, const Zvp32fc* pTaps, int tapsLen,
                              Zvp32fc* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_32fc_I(Zvp32fc* pSrcDst, int numIters, const Zvp32fc* pTaps, int tapsLen, Zvp32fc* pDlyLine,
                                int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_64f(const Zvp64f* pSrc, Zvp64f* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                             Zvp64f* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_64f_I(Zvp64f* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, Zvp64f* pDlyLine,
                               int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                              Zvp64fc* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_64fc_I(Zvp64fc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen, Zvp64fc* pDlyLine,
                                int* pDlyLineIndex);
ZvpStatus zvpsFIR_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp16s* pTaps, int tapsLen,
                                 Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp16s* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                  int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32f_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp32f* pTaps, int tapsLen,
                                    Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32f_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp32f* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                     int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32fc_Direct_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, const Zvp32fc* pTaps,
                                      int tapsLen, Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32fc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, const Zvp32fc* pTaps, int tapsLen,
                                       Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32s_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp32s* pTaps, int tapsLen,
                                    int tapsFactor, Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32s_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                                     Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR32sc_Direct_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, const Zvp32sc* pTaps,
                                      int tapsLen, int tapsFactor, Zvp16sc* pDlyLine, int* pDlyLineIndex,
                                      int scaleFactor);
ZvpStatus zvpsFIR32sc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, const Zvp32sc* pTaps, int tapsLen,
                                       int tapsFactor, Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64f_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                                    Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64f_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                     int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64f_Direct_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                                Zvp32f* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR64f_Direct_32f_I(Zvp32f* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, Zvp32f* pDlyLine,
                                  int* pDlyLineIndex);
ZvpStatus zvpsFIR64f_Direct_32s_Sfs(const Zvp32s* pSrc, Zvp32s* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                                    Zvp32s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64f_Direct_32s_ISfs(Zvp32s* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, Zvp32s* pDlyLine,
                                     int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64fc_Direct_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, const Zvp64fc* pTaps,
                                      int tapsLen, Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64fc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                       Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64fc_Direct_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                  Zvp32fc* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR64fc_Direct_32fc_I(Zvp32fc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                    Zvp32fc* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIR64fc_Direct_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc* pDst, int numIters, const Zvp64fc* pTaps,
                                      int tapsLen, Zvp32sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIR64fc_Direct_32sc_ISfs(Zvp32sc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                       Zvp32sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);

/* The same for one sample. Taps in floating point: the sample goes to pDlyLine[index] and pDlyLine[index + tapsLen],
   and the index advances by one, from tapsLen - 1 to 0. Integer taps: as a block of one sample. */
ZvpStatus zvpsFIROne_Direct_32f(Zvp32f src, Zvp32f* pDstVal, const Zvp32f* pTaps, int tapsLen, Zvp32f* pDlyLine,
                                int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_32f_I(Zvp32f* pSrcDst, const Zvp32f* pTaps, int tapsLen, Zvp32f* pDlyLine,
                                  int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_32fc(Zvp32fc src, Zvp32fc* pDstVal, const Zvp32fc* pTaps, int tapsLen, Zvp32fc* pDlyLine,
                                 int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_32fc_I(Zvp32fc* pSrcDst, const Zvp32fc* pTaps, int tapsLen, Zvp32fc* pDlyLine,
                                   int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_64f(Zvp64f src, Zvp64f* pDstVal, const Zvp64f* pTaps, int tapsLen, Zvp64f* pDlyLine,
                                int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_64f_I(Zvp64f* pSrcDst, const Zvp64f* pTaps, int tapsLen, Zvp64f* pDlyLine,
                                  int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_64fc(Zvp64fc src, Zvp64fc* pDstVal, const Zvp64fc* pTaps, int tapsLen, Zvp64fc* pDlyLine,
                                 int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_64fc_I(Zvp64fc* pSrcDst, const Zvp64fc* pTaps, int tapsLen, Zvp64fc* pDlyLine,
                                   int* pDlyLineIndex);
ZvpStatus zvpsFIROne_Direct_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, const Zvp16s* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                    int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne_Direct_16s_ISfs(Zvp16s* pSrcDst, const Zvp16s* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                     int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32f_Direct_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, const Zvp32f* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                       int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32f_Direct_16s_ISfs(Zvp16s* pSrcDst, const Zvp32f* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                        int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32fc_Direct_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, const Zvp32fc* pTaps, int tapsLen,
                                         Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32fc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, const Zvp32fc* pTaps, int tapsLen, Zvp16sc* pDlyLine,
                                          int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32s_Direct_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                                       Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32s_Direct_16s_ISfs(Zvp16s* pSrcDst, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                                        Zvp16s* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32sc_Direct_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, const Zvp32sc* pTaps, int tapsLen,
                                         int tapsFactor, Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne32sc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, const Zvp32sc* pTaps, int tapsLen, int tapsFactor,
                                          Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64f_Direct_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, const Zvp64f* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                       int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64f_Direct_16s_ISfs(Zvp16s* pSrcDst, const Zvp64f* pTaps, int tapsLen, Zvp16s* pDlyLine,
                                        int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64f_Direct_32f(Zvp32f src, Zvp32f* pDstVal, const Zvp64f* pTaps, int tapsLen, Zvp32f* pDlyLine,
                                   int* pDlyLineIndex);
ZvpStatus zvpsFIROne64f_Direct_32f_I(Zvp32f* pSrcDst, const Zvp64f* pTaps, int tapsLen, Zvp32f* pDlyLine,
                                     int* pDlyLineIndex);
ZvpStatus zvpsFIROne64f_Direct_32s_Sfs(Zvp32s src, Zvp32s* pDstVal, const Zvp64f* pTaps, int tapsLen, Zvp32s* pDlyLine,
                                       int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64f_Direct_32s_ISfs(Zvp32s* pSrcDst, const Zvp64f* pTaps, int tapsLen, Zvp32s* pDlyLine,
                                        int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64fc_Direct_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, const Zvp64fc* pTaps, int tapsLen,
                                         Zvp16sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64fc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, const Zvp64fc* pTaps, int tapsLen, Zvp16sc* pDlyLine,
                                          int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64fc_Direct_32fc(Zvp32fc src, Zvp32fc* pDstVal, const Zvp64fc* pTaps, int tapsLen,
                                     Zvp32fc* pDlyLine, int* pDlyLineIndex);
ZvpStatus zvpsFIROne64fc_Direct_32fc_I(Zvp32fc* pSrcDst, const Zvp64fc* pTaps, int tapsLen, Zvp32fc* pDlyLine,
                                       int* pDlyLineIndex);
ZvpStatus zvpsFIROne64fc_Direct_32sc_Sfs(Zvp32sc src, Zvp32sc* pDstVal, const Zvp64fc* pTaps, int tapsLen,
                                         Zvp32sc* pDlyLine, int* pDlyLineIndex, int scaleFactor);
ZvpStatus zvpsFIROne64fc_Direct_32sc_ISfs(Zvp32sc* pSrcDst, const Zvp64fc* pTaps, int tapsLen, Zvp32sc* pDlyLine,
                                          int* pDlyLineIndex, int scaleFactor);

/* States without history, run by the block functions of their type and released by its Free: the source has numIters +
   tapsLen - 1 samples, the first tapsLen - 1 of them the past. The state has no delay line: GetDlyLine and SetDlyLine
   give zvpStsContextMismatch. */
ZvpStatus zvpsFIRStreamGetStateSize_16s(int tapsLen, int* pSize);
ZvpStatus zvpsFIRStreamInit_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, Zvp8u* pBuffer);
ZvpStatus zvpsFIRStreamInitAlloc_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen);
ZvpStatus zvpsFIRStreamGetStateSize_32f(int tapsLen, int* pSize);
ZvpStatus zvpsFIRStreamInit_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, Zvp8u* pBuffer);
ZvpStatus zvpsFIRStreamInitAlloc_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen);

/* Taps of which most are zero: y[n] = sum over k < nzTapsLen of pNZTaps[k] * x[n - pNZTapPos[k]]. The positions grow
   strictly from 0 or more, or Init gives zvpStsBadSparsePos; `order` is the largest of them. pDlyLine has the last
   `order` inputs, the most recent first; null stands for zeros. nzTapsLen below 1 gives zvpStsBadFirLength. */
ZvpStatus zvpsFIRSparseGetStateSize_32f(int nzTapsLen, int order, int* pSize);
ZvpStatus zvpsFIRSparseInit_32f(ZvpsFIRSparseState_32f** ppState, const Zvp32f* pNZTaps, const Zvp32s* pNZTapPos,
                                int nzTapsLen, const Zvp32f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRSparse_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, ZvpsFIRSparseState_32f* pState);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
