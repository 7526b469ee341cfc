/* Recursive (infinite impulse response) filters: of any order, and cascades of sections of second order (biquads).

   Any order N: A0 y[n] = sum over k <= N of Bk x[n-k] - sum over 1 <= k <= N of Ak y[n-k]. The taps are given as
   B0..BN, A0..AN. A cascade: numBq filters of second order, each the next one's input; six taps for each, B0 B1 B2 A0
   A1 A2.
   Taps are multiplied by 1/A0 once, in the type the filter computes in.

   The types of a name are those of the taps and of the data; where there is only one, both have it. A filter computes
   in its taps' type, but with integer taps (32s, 32sc) in double precision. Data of other types are converted to that
   type, filtered, and converted back. Functions that end in Sfs store the result times 2^-scaleFactor, rounded to
   nearest with ties to even, then saturated; every int is a valid scaleFactor; what they store never comes back into
   the filter. Functions that end in I work in place; pSrc and pDst of the others may be the same vector too, but must
   not overlap otherwise.

   A state holds the taps and the delay line, so that a signal may be filtered in blocks of any lengths and by single
   samples in any mixture: no cut changes a bit of the result. The delay line has N entries, of a cascade two for each
   section: those of transposed direct form 2,
       y = b0 x + d0;  dk = b(k+1) x - a(k+1) y + d(k+1) for k < N, with dN = 0.
   Cascades of real taps in long blocks compute stretches of samples side by side, from rest, and then add the responses
   to the states before them. Rounding differs from that of the recurrence, no more than between two orders of
   summation; strongly unstable sections are computed by the recurrence itself.

   Integer taps stand for their value times 2^-tapsFactor, B and A alike, which therefore cancels out; a negative
   tapsFactor is an error all the same. Functions on states of 32s_16s serve those of 32s_16s32f too, which differ in
   the taps they are given alone, and the other way round; so do those of 32sc_16sc and 32sc_16sc32fc.

   Thread safety: one call at a time on a state. Checks, in this order, before anything is written: null pointers give
   zvpStsNullPtr, a length below 1 zvpStsBadSize, a state of another kind zvpStsContextMismatch, an order or number of
   sections that is below 1 or whose state would not fit an int's bytes zvpStsBadIirOrder, a negative tapsFactor
   zvpStsBadTapsScale, an A0 of zero, or in a section a B0 of zero, zvpStsDivByZeroErr. Complex taps are zero when both
   parts are. InitAlloc gives zvpStsNoMemory where its allocation fails. */
#ifndef ZVPS_IIR_H
#define ZVPS_IIR_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* States, one type for each pair of types. */
typedef struct ZvpsIIRState_32f ZvpsIIRState_32f;
typedef struct ZvpsIIRState_32fc ZvpsIIRState_32fc;
typedef struct ZvpsIIRState_64f ZvpsIIRState_64f;
typedef struct ZvpsIIRState_64fc ZvpsIIRState_64fc;
typedef struct ZvpsIIRState32f_16s ZvpsIIRState32f_16s;
typedef struct ZvpsIIRState32fc_16sc ZvpsIIRState32fc_16sc;
typedef struct ZvpsIIRState32s_16s ZvpsIIRState32s_16s;
typedef struct ZvpsIIRState32sc_16sc ZvpsIIRState32sc_16sc;
typedef struct ZvpsIIRState64f_16s ZvpsIIRState64f_16s;
typedef struct ZvpsIIRState64f_32f ZvpsIIRState64f_32f;
typedef struct ZvpsIIRState64f_32s ZvpsIIRState64f_32s;
typedef struct ZvpsIIRState64fc_16sc ZvpsIIRState64fc_16sc;
typedef struct ZvpsIIRState64fc_32fc ZvpsIIRState64fc_32fc;
typedef struct ZvpsIIRState64fc_32sc ZvpsIIRState64fc_32sc;
typedef struct ZvpsIIRSparseState_32f ZvpsIIRSparseState_32f;

/* *pStateSize = the bytes that Init needs at pBuffer: for a filter of any order, then for a cascade. */
ZvpStatus zvpsIIRGetStateSize_32f(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize_32fc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize_64f(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize_64fc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32f_16s(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32fc_16sc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32s_16s(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32s_16s32f(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32sc_16sc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32sc_16sc32fc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64f_16s(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64f_32f(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64f_32s(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64fc_16sc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64fc_32fc(int order, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64fc_32sc(int order, int* pStateSize);

ZvpStatus zvpsIIRGetStateSize_BiQuad_32f(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize_BiQuad_32fc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize_BiQuad_64f(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize_BiQuad_64fc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32f_BiQuad_16s(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32fc_BiQuad_16sc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32s_BiQuad_16s(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32s_BiQuad_16s32f(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32sc_BiQuad_16sc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize32sc_BiQuad_16sc32fc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64f_BiQuad_16s(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64f_BiQuad_32f(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64f_BiQuad_32s(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64fc_BiQuad_16sc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64fc_BiQuad_32fc(int numBq, int* pStateSize);
ZvpStatus zvpsIIRGetStateSize64fc_BiQuad_32sc(int numBq, int* pStateSize);

/* Builds a state at pBuffer, which may start anywhere, and stores its address. pDlyLine is the delay line to start
   from; null stands for zeros. For a filter of any order, then for a cascade. */
ZvpStatus zvpsIIRInit_32f(ZvpsIIRState_32f** ppState, const Zvp32f* pTaps, int order, const Zvp32f* pDlyLine,
                          Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit_32fc(ZvpsIIRState_32fc** ppState, const Zvp32fc* pTaps, int order, const Zvp32fc* pDlyLine,
                           Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit_64f(ZvpsIIRState_64f** ppState, const Zvp64f* pTaps, int order, const Zvp64f* pDlyLine,
                          Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit_64fc(ZvpsIIRState_64fc** ppState, const Zvp64fc* pTaps, int order, const Zvp64fc* pDlyLine,
                           Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32f_16s(ZvpsIIRState32f_16s** ppState, const Zvp32f* pTaps, int order, const Zvp32f* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32fc_16sc(ZvpsIIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int order,
                               const Zvp32fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32s_16s(ZvpsIIRState32s_16s** ppState, const Zvp32s* pTaps, int order, int tapsFactor,
                             const Zvp32s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32s_16s32f(ZvpsIIRState32s_16s** ppState, const Zvp32f* pTaps, int order, const Zvp32s* pDlyLine,
                                Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32sc_16sc(ZvpsIIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int order, int tapsFactor,
                               const Zvp32sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32sc_16sc32fc(ZvpsIIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int order,
                                   const Zvp32sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64f_16s(ZvpsIIRState64f_16s** ppState, const Zvp64f* pTaps, int order, const Zvp64f* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64f_32f(ZvpsIIRState64f_32f** ppState, const Zvp64f* pTaps, int order, const Zvp64f* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64f_32s(ZvpsIIRState64f_32s** ppState, const Zvp64f* pTaps, int order, const Zvp64f* pDlyLine,
                             Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64fc_16sc(ZvpsIIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int order,
                               const Zvp64fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64fc_32fc(ZvpsIIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int order,
                               const Zvp64fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64fc_32sc(ZvpsIIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int order,
                               const Zvp64fc* pDlyLine, Zvp8u* pBuffer);

ZvpStatus zvpsIIRInit_BiQuad_32f(ZvpsIIRState_32f** ppState, const Zvp32f* pTaps, int numBq, const Zvp32f* pDlyLine,
                                 Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit_BiQuad_32fc(ZvpsIIRState_32fc** ppState, const Zvp32fc* pTaps, int numBq, const Zvp32fc* pDlyLine,
                                  Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit_BiQuad_64f(ZvpsIIRState_64f** ppState, const Zvp64f* pTaps, int numBq, const Zvp64f* pDlyLine,
                                 Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit_BiQuad_64fc(ZvpsIIRState_64fc** ppState, const Zvp64fc* pTaps, int numBq, const Zvp64fc* pDlyLine,
                                  Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32f_BiQuad_16s(ZvpsIIRState32f_16s** ppState, const Zvp32f* pTaps, int numBq,
                                    const Zvp32f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32fc_BiQuad_16sc(ZvpsIIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int numBq,
                                      const Zvp32fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32s_BiQuad_16s(ZvpsIIRState32s_16s** ppState, const Zvp32s* pTaps, int numBq, int tapsFactor,
                                    const Zvp32s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32s_BiQuad_16s32f(ZvpsIIRState32s_16s** ppState, const Zvp32f* pTaps, int numBq,
                                       const Zvp32s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32sc_BiQuad_16sc(ZvpsIIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int numBq, int tapsFactor,
                                      const Zvp32sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit32sc_BiQuad_16sc32fc(ZvpsIIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int numBq,
                                          const Zvp32sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64f_BiQuad_16s(ZvpsIIRState64f_16s** ppState, const Zvp64f* pTaps, int numBq,
                                    const Zvp64f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64f_BiQuad_32f(ZvpsIIRState64f_32f** ppState, const Zvp64f* pTaps, int numBq,
                                    const Zvp64f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64f_BiQuad_32s(ZvpsIIRState64f_32s** ppState, const Zvp64f* pTaps, int numBq,
                                    const Zvp64f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64fc_BiQuad_16sc(ZvpsIIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int numBq,
                                      const Zvp64fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64fc_BiQuad_32fc(ZvpsIIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int numBq,
                                      const Zvp64fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInit64fc_BiQuad_32sc(ZvpsIIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int numBq,
                                      const Zvp64fc* pDlyLine, Zvp8u* pBuffer);

/* The same in memory that the function allocates and Free releases. */
ZvpStatus zvpsIIRInitAlloc_32f(ZvpsIIRState_32f** ppState, const Zvp32f* pTaps, int order, const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc_32fc(ZvpsIIRState_32fc** ppState, const Zvp32fc* pTaps, int order, const Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc_64f(ZvpsIIRState_64f** ppState, const Zvp64f* pTaps, int order, const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc_64fc(ZvpsIIRState_64fc** ppState, const Zvp64fc* pTaps, int order, const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32f_16s(ZvpsIIRState32f_16s** ppState, const Zvp32f* pTaps, int order,
                                  const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32fc_16sc(ZvpsIIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int order,
                                    const Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32s_16s(ZvpsIIRState32s_16s** ppState, const Zvp32s* pTaps, int order, int tapsFactor,
                                  const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32s_16s32f(ZvpsIIRState32s_16s** ppState, const Zvp32f* pTaps, int order,
                                     const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32sc_16sc(ZvpsIIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int order, int tapsFactor,
                                    const Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32sc_16sc32fc(ZvpsIIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int order,
                                        const Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64f_16s(ZvpsIIRState64f_16s** ppState, const Zvp64f* pTaps, int order,
                                  const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64f_32f(ZvpsIIRState64f_32f** ppState, const Zvp64f* pTaps, int order,
                                  const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64f_32s(ZvpsIIRState64f_32s** ppState, const Zvp64f* pTaps, int order,
                                  const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64fc_16sc(ZvpsIIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int order,
                                    const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64fc_32fc(ZvpsIIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int order,
                                    const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64fc_32sc(ZvpsIIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int order,
                                    const Zvp64fc* pDlyLine);

ZvpStatus zvpsIIRInitAlloc_BiQuad_32f(ZvpsIIRState_32f** ppState, const Zvp32f* pTaps, int numBq,
                                      const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc_BiQuad_32fc(ZvpsIIRState_32fc** ppState, const Zvp32fc* pTaps, int numBq,
                                       const Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc_BiQuad_64f(ZvpsIIRState_64f** ppState, const Zvp64f* pTaps, int numBq,
                                      const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc_BiQuad_64fc(ZvpsIIRState_64fc** ppState, const Zvp64fc* pTaps, int numBq,
                                       const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32f_BiQuad_16s(ZvpsIIRState32f_16s** ppState, const Zvp32f* pTaps, int numBq,
                                         const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32fc_BiQuad_16sc(ZvpsIIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int numBq,
                                           const Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32s_BiQuad_16s(ZvpsIIRState32s_16s** ppState, const Zvp32s* pTaps, int numBq, int tapsFactor,
                                         const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32s_BiQuad_16s32f(ZvpsIIRState32s_16s** ppState, const Zvp32f* pTaps, int numBq,
                                            const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32sc_BiQuad_16sc(ZvpsIIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int numBq,
                                           int tapsFactor, const Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc32sc_BiQuad_16sc32fc(ZvpsIIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int numBq,
                                               const Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64f_BiQuad_16s(ZvpsIIRState64f_16s** ppState, const Zvp64f* pTaps, int numBq,
                                         const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64f_BiQuad_32f(ZvpsIIRState64f_32f** ppState, const Zvp64f* pTaps, int numBq,
                                         const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64f_BiQuad_32s(ZvpsIIRState64f_32s** ppState, const Zvp64f* pTaps, int numBq,
                                         const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64fc_BiQuad_16sc(ZvpsIIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int numBq,
                                           const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64fc_BiQuad_32fc(ZvpsIIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int numBq,
                                           const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRInitAlloc64fc_BiQuad_32sc(ZvpsIIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int numBq,
                                           const Zvp64fc* pDlyLine);

/* Ends a state's life, and releases it where InitAlloc built it. A state from Init is left to its owner with its tag
   cleared: a second Free gives zvpStsContextMismatch. */
ZvpStatus zvpsIIRFree_32f(ZvpsIIRState_32f* pState);
ZvpStatus zvpsIIRFree_32fc(ZvpsIIRState_32fc* pState);
ZvpStatus zvpsIIRFree_64f(ZvpsIIRState_64f* pState);
ZvpStatus zvpsIIRFree_64fc(ZvpsIIRState_64fc* pState);
ZvpStatus zvpsIIRFree32f_16s(ZvpsIIRState32f_16s* pState);
ZvpStatus zvpsIIRFree32fc_16sc(ZvpsIIRState32fc_16sc* pState);
ZvpStatus zvpsIIRFree32s_16s(ZvpsIIRState32s_16s* pState);
ZvpStatus zvpsIIRFree32s_16s32f(ZvpsIIRState32s_16s* pState);
ZvpStatus zvpsIIRFree32sc_16sc(ZvpsIIRState32sc_16sc* pState);
ZvpStatus zvpsIIRFree32sc_16sc32fc(ZvpsIIRState32sc_16sc* pState);
ZvpStatus zvpsIIRFree64f_16s(ZvpsIIRState64f_16s* pState);
ZvpStatus zvpsIIRFree64f_32f(ZvpsIIRState64f_32f* pState);
ZvpStatus zvpsIIRFree64f_32s(ZvpsIIRState64f_32s* pState);
ZvpStatus zvpsIIRFree64fc_16sc(ZvpsIIRState64fc_16sc* pState);
ZvpStatus zvpsIIRFree64fc_32fc(ZvpsIIRState64fc_32fc* pState);
ZvpStatus zvpsIIRFree64fc_32sc(ZvpsIIRState64fc_32sc* pState);

/* The delay line, out of the state and into it: order entries, or two for each section. Integer entries (32s, 32sc) are
   rounded to nearest with ties to even, saturated. For SetDlyLine null stands for zeros. The lines of direct form 1
   have four entries for each section and only come out, by GetDlyLine_32f or GetDlyLine64f_DF1_32s. */
ZvpStatus zvpsIIRGetDlyLine_32f(const ZvpsIIRState_32f* pState, Zvp32f* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine_32fc(const ZvpsIIRState_32fc* pState, Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine_64f(const ZvpsIIRState_64f* pState, Zvp64f* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine_64fc(const ZvpsIIRState_64fc* pState, Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine32f_16s(const ZvpsIIRState32f_16s* pState, Zvp32f* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine32fc_16sc(const ZvpsIIRState32fc_16sc* pState, Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine32s_16s(const ZvpsIIRState32s_16s* pState, Zvp32s* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine32s_16s32f(const ZvpsIIRState32s_16s* pState, Zvp32s* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine32sc_16sc(const ZvpsIIRState32sc_16sc* pState, Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine32sc_16sc32fc(const ZvpsIIRState32sc_16sc* pState, Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64f_16s(const ZvpsIIRState64f_16s* pState, Zvp64f* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64f_32f(const ZvpsIIRState64f_32f* pState, Zvp64f* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64f_32s(const ZvpsIIRState64f_32s* pState, Zvp64f* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64fc_16sc(const ZvpsIIRState64fc_16sc* pState, Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64fc_32fc(const ZvpsIIRState64fc_32fc* pState, Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64fc_32sc(const ZvpsIIRState64fc_32sc* pState, Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine_32f(ZvpsIIRState_32f* pState, const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine_32fc(ZvpsIIRState_32fc* pState, const Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine_64f(ZvpsIIRState_64f* pState, const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine_64fc(ZvpsIIRState_64fc* pState, const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine32f_16s(ZvpsIIRState32f_16s* pState, const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine32fc_16sc(ZvpsIIRState32fc_16sc* pState, const Zvp32fc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine32s_16s(ZvpsIIRState32s_16s* pState, const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine32s_16s32f(ZvpsIIRState32s_16s* pState, const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine32sc_16sc(ZvpsIIRState32sc_16sc* pState, const Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine32sc_16sc32fc(ZvpsIIRState32sc_16sc* pState, const Zvp32sc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine64f_16s(ZvpsIIRState64f_16s* pState, const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine64f_32f(ZvpsIIRState64f_32f* pState, const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine64f_32s(ZvpsIIRState64f_32s* pState, const Zvp64f* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine64fc_16sc(ZvpsIIRState64fc_16sc* pState, const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine64fc_32fc(ZvpsIIRState64fc_32fc* pState, const Zvp64fc* pDlyLine);
ZvpStatus zvpsIIRSetDlyLine64fc_32sc(ZvpsIIRState64fc_32sc* pState, const Zvp64fc* pDlyLine);

/* Replaces the taps, as many as there are, and keeps the delay line. Not in direct form 1. */
ZvpStatus zvpsIIRSetTaps_32f(const Zvp32f* pTaps, ZvpsIIRState_32f* pState);
ZvpStatus zvpsIIRSetTaps_32fc(const Zvp32fc* pTaps, ZvpsIIRState_32fc* pState);
ZvpStatus zvpsIIRSetTaps_64f(const Zvp64f* pTaps, ZvpsIIRState_64f* pState);
ZvpStatus zvpsIIRSetTaps_64fc(const Zvp64fc* pTaps, ZvpsIIRState_64fc* pState);
ZvpStatus zvpsIIRSetTaps32f_16s(const Zvp32f* pTaps, ZvpsIIRState32f_16s* pState);
ZvpStatus zvpsIIRSetTaps32fc_16sc(const Zvp32fc* pTaps, ZvpsIIRState32fc_16sc* pState);
ZvpStatus zvpsIIRSetTaps32s_16s(const Zvp32s* pTaps, ZvpsIIRState32s_16s* pState, int tapsFactor);
ZvpStatus zvpsIIRSetTaps32s_16s32f(const Zvp32f* pTaps, ZvpsIIRState32s_16s* pState);
ZvpStatus zvpsIIRSetTaps32sc_16sc(const Zvp32sc* pTaps, ZvpsIIRState32sc_16sc* pState, int tapsFactor);
ZvpStatus zvpsIIRSetTaps32sc_16sc32fc(const Zvp32fc* pTaps, ZvpsIIRState32sc_16sc* pState);
ZvpStatus zvpsIIRSetTaps64f_16s(const Zvp64f* pTaps, ZvpsIIRState64f_16s* pState);
ZvpStatus zvpsIIRSetTaps64f_32f(const Zvp64f* pTaps, ZvpsIIRState64f_32f* pState);
ZvpStatus zvpsIIRSetTaps64f_32s(const Zvp64f* pTaps, ZvpsIIRState64f_32s* pState);
ZvpStatus zvpsIIRSetTaps64fc_16sc(const Zvp64fc* pTaps, ZvpsIIRState64fc_16sc* pState);
ZvpStatus zvpsIIRSetTaps64fc_32fc(const Zvp64fc* pTaps, ZvpsIIRState64fc_32fc* pState);
ZvpStatus zvpsIIRSetTaps64fc_32sc(const Zvp64fc* pTaps, ZvpsIIRState64fc_32sc* pState);

/* Filters a block of len samples. */
ZvpStatus zvpsIIR_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, ZvpsIIRState_32f* pState);
ZvpStatus zvpsIIR_32f_I(Zvp32f* pSrcDst, int len, ZvpsIIRState_32f* pState);
ZvpStatus zvpsIIR_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, ZvpsIIRState_32fc* pState);
ZvpStatus zvpsIIR_32fc_I(Zvp32fc* pSrcDst, int len, ZvpsIIRState_32fc* pState);
ZvpStatus zvpsIIR_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, ZvpsIIRState_64f* pState);
ZvpStatus zvpsIIR_64f_I(Zvp64f* pSrcDst, int len, ZvpsIIRState_64f* pState);
ZvpStatus zvpsIIR_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, ZvpsIIRState_64fc* pState);
ZvpStatus zvpsIIR_64fc_I(Zvp64fc* pSrcDst, int len, ZvpsIIRState_64fc* pState);
ZvpStatus zvpsIIR32f_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int len, ZvpsIIRState32f_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR32f_16s_ISfs(Zvp16s* pSrcDst, int len, ZvpsIIRState32f_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR32fc_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, ZvpsIIRState32fc_16sc* pState,
                               int scaleFactor);
ZvpStatus zvpsIIR32fc_16sc_ISfs(Zvp16sc* pSrcDst, int len, ZvpsIIRState32fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIR32s_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int len, ZvpsIIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR32s_16s_ISfs(Zvp16s* pSrcDst, int len, ZvpsIIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR32s_16s32f_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int len, ZvpsIIRState32s_16s* pState,
                                int scaleFactor);
ZvpStatus zvpsIIR32s_16s32f_ISfs(Zvp16s* pSrcDst, int len, ZvpsIIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR32sc_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, ZvpsIIRState32sc_16sc* pState,
                               int scaleFactor);
ZvpStatus zvpsIIR32sc_16sc_ISfs(Zvp16sc* pSrcDst, int len, ZvpsIIRState32sc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIR32sc_16sc32fc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, ZvpsIIRState32sc_16sc* pState,
                                   int scaleFactor);
ZvpStatus zvpsIIR32sc_16sc32fc_ISfs(Zvp16sc* pSrcDst, int len, ZvpsIIRState32sc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIR64f_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int len, ZvpsIIRState64f_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR64f_16s_ISfs(Zvp16s* pSrcDst, int len, ZvpsIIRState64f_16s* pState, int scaleFactor);
ZvpStatus zvpsIIR64f_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, ZvpsIIRState64f_32f* pState);
ZvpStatus zvpsIIR64f_32f_I(Zvp32f* pSrcDst, int len, ZvpsIIRState64f_32f* pState);
ZvpStatus zvpsIIR64f_32s_Sfs(const Zvp32s* pSrc, Zvp32s* pDst, int len, ZvpsIIRState64f_32s* pState, int scaleFactor);
ZvpStatus zvpsIIR64f_32s_ISfs(Zvp32s* pSrcDst, int len, ZvpsIIRState64f_32s* pState, int scaleFactor);
ZvpStatus zvpsIIR64fc_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, ZvpsIIRState64fc_16sc* pState,
                               int scaleFactor);
ZvpStatus zvpsIIR64fc_16sc_ISfs(Zvp16sc* pSrcDst, int len, ZvpsIIRState64fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIR64fc_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, ZvpsIIRState64fc_32fc* pState);
ZvpStatus zvpsIIR64fc_32fc_I(Zvp32fc* pSrcDst, int len, ZvpsIIRState64fc_32fc* pState);
ZvpStatus zvpsIIR64fc_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc* pDst, int len, ZvpsIIRState64fc_32sc* pState,
                               int scaleFactor);
ZvpStatus zvpsIIR64fc_32sc_ISfs(Zvp32sc* pSrcDst, int len, ZvpsIIRState64fc_32sc* pState, int scaleFactor);

/* Filters a single sample, as a block of one. Not in direct form 1. */
ZvpStatus zvpsIIROne_32f(Zvp32f src, Zvp32f* pDstVal, ZvpsIIRState_32f* pState);
ZvpStatus zvpsIIROne_32fc(Zvp32fc src, Zvp32fc* pDstVal, ZvpsIIRState_32fc* pState);
ZvpStatus zvpsIIROne_64f(Zvp64f src, Zvp64f* pDstVal, ZvpsIIRState_64f* pState);
ZvpStatus zvpsIIROne_64fc(Zvp64fc src, Zvp64fc* pDstVal, ZvpsIIRState_64fc* pState);
ZvpStatus zvpsIIROne32f_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsIIRState32f_16s* pState, int scaleFactor);
ZvpStatus zvpsIIROne32fc_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsIIRState32fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIROne32s_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsIIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsIIROne32s_16s32f_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsIIRState32s_16s* pState, int scaleFactor);
ZvpStatus zvpsIIROne32sc_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsIIRState32sc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIROne32sc_16sc32fc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsIIRState32sc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIROne64f_16s_Sfs(Zvp16s src, Zvp16s* pDstVal, ZvpsIIRState64f_16s* pState, int scaleFactor);
ZvpStatus zvpsIIROne64f_32f(Zvp32f src, Zvp32f* pDstVal, ZvpsIIRState64f_32f* pState);
ZvpStatus zvpsIIROne64f_32s_Sfs(Zvp32s src, Zvp32s* pDstVal, ZvpsIIRState64f_32s* pState, int scaleFactor);
ZvpStatus zvpsIIROne64fc_16sc_Sfs(Zvp16sc src, Zvp16sc* pDstVal, ZvpsIIRState64fc_16sc* pState, int scaleFactor);
ZvpStatus zvpsIIROne64fc_32fc(Zvp32fc src, Zvp32fc* pDstVal, ZvpsIIRState64fc_32fc* pState);
ZvpStatus zvpsIIROne64fc_32sc_Sfs(Zvp32sc src, Zvp32sc* pDstVal, ZvpsIIRState64fc_32sc* pState, int scaleFactor);

/* Cascades in direct form 1, y = b0 x + b1 x1 + b2 x2 - a1 y1 - a2 y2. Their delay line has, in the data's type, the
   entries x[n-1], x[n-2], y[n-1], y[n-2] for each section. The filter itself keeps outputs unrounded. They are run and
   released by the functions for blocks and the Free of their types. */
ZvpStatus zvpsIIRGetStateSize_BiQuad_DF1_32f(int numBq, int* pStateSize);
ZvpStatus zvpsIIRInit_BiQuad_DF1_32f(ZvpsIIRState_32f** ppState, const Zvp32f* pTaps, int numBq, const Zvp32f* pDlyLine,
                                     Zvp8u* pBuffer);
ZvpStatus zvpsIIRInitAlloc_BiQuad_DF1_32f(ZvpsIIRState_32f** ppState, const Zvp32f* pTaps, int numBq,
                                          const Zvp32f* pDlyLine);
ZvpStatus zvpsIIRGetStateSize64f_BiQuad_DF1_32s(int numBq, int* pStateSize);
ZvpStatus zvpsIIRInit64f_BiQuad_DF1_32s(ZvpsIIRState64f_32s** ppState, const Zvp64f* pTaps, int numBq,
                                        const Zvp32s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRInitAlloc64f_BiQuad_DF1_32s(ZvpsIIRState64f_32s** ppState, const Zvp64f* pTaps, int numBq,
                                             const Zvp32s* pDlyLine);
ZvpStatus zvpsIIRGetDlyLine64f_DF1_32s(const ZvpsIIRState64f_32s* pState, Zvp32s* pDlyLine);

/* Several channels of len samples, each by a state of its own: ppSrc[i] to ppDst[i] by ppState[i], as the block
   functions do. After the checks of len, nChannels below 1 gives zvpStsBadIirParam; then null pointers and states of
   other kinds among the channels are looked for, before any is filtered. */
ZvpStatus zvpsIIR_32f_P(const Zvp32f** ppSrc, Zvp32f** ppDst, int len, int nChannels, ZvpsIIRState_32f** ppState);
ZvpStatus zvpsIIR64f_32s_PSfs(const Zvp32s** ppSrc, Zvp32s** ppDst, int len, int nChannels,
                              ZvpsIIRState64f_32s** ppState, int scaleFactor);
ZvpStatus zvpsIIR64f_32s_IPSfs(Zvp32s** ppSrcDst, int len, int nChannels, ZvpsIIRState64f_32s** ppState,
                               int scaleFactor);

/* Without a state, in 16-bit integers. Taps as above; the caller keeps the delay line, of order entries, or two for
   each section, all of them 0 at the start. Entries are in units of 1/A0, so that for A0 = 2^k they have k fraction
   bits: with v = B0 x + d0, the output is v / A0, rounded and saturated to 16 bits, and dk = B(k+1) x - A(k+1) v / A0 +
   d(k+1), rounded and saturated to 32 bits. All roundings are to nearest with ties to even, of exact sums. A section's
   16-bit output is the next one's input. */
ZvpStatus zvpsIIR_Direct_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, const Zvp16s* pTaps, int order,
                             Zvp32s* pDlyLine);
ZvpStatus zvpsIIR_Direct_16s_I(Zvp16s* pSrcDst, int len, const Zvp16s* pTaps, int order, Zvp32s* pDlyLine);
ZvpStatus zvpsIIROne_Direct_16s(Zvp16s src, Zvp16s* pDstVal, const Zvp16s* pTaps, int order, Zvp32s* pDlyLine);
ZvpStatus zvpsIIROne_Direct_16s_I(Zvp16s* pSrcDst, const Zvp16s* pTaps, int order, Zvp32s* pDlyLine);
ZvpStatus zvpsIIROne_BiQuadDirect_16s(Zvp16s src, Zvp16s* pDstVal, const Zvp16s* pTaps, int numBq, Zvp32s* pDlyLine);
ZvpStatus zvpsIIROne_BiQuadDirect_16s_I(Zvp16s* pSrcDst, const Zvp16s* pTaps, int numBq, Zvp32s* pDlyLine);

/* A filter with few taps other than zero: A0 y[n] = sum over k < numLenB of pTapsB[k] x[n - pPosB[k]] - sum over
   k < numLenA of pTapsA[k] y[n - pPosA[k]], without the A tap at position 0, which is A0; where there is none, A0 = 1.
   Positions increase strictly from 0 or more. The delay line starts with the last inputs, as many as the largest
   position of B, the most recent first, and goes on with the last outputs, as many as that of A; null stands for zeros.
   maxPosB and maxPosA are the largest positions or more. Counts below 1 (numLenA: below 0; then pTapsA and pPosA may be
   null) give zvpStsBadIirOrder, positions that are negative or do not increase zvpStsBadSparsePos. */
ZvpStatus zvpsIIRSparseGetStateSize_32f(int numLenB, int numLenA, int maxPosB, int maxPosA, int* pStateSize);
ZvpStatus zvpsIIRSparseInit_32f(ZvpsIIRSparseState_32f** ppState, const Zvp32f* pTapsB, const Zvp32s* pPosB,
                                int numLenB, const Zvp32f* pTapsA, const Zvp32s* pPosA, int numLenA,
                                const Zvp32f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsIIRSparse_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, ZvpsIIRSparseState_32f* pState);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
