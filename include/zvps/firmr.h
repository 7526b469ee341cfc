/* Finite impulse response filters that change the rate: by upFactor / downFactor.

   Input n stands at position n * upFactor + upPhase of a signal that is zero elsewhere, z; that is filtered, and the
   outputs are the results at the positions downPhase + m * downFactor:

       y[m] = sum over k < tapsLen of h[k] * z[downPhase + m * downFactor - k]

   An iteration takes downFactor inputs and gives upFactor outputs. The states are those of zvps/fir.h: its block
   functions run them, where numIters counts iterations, and its GetTaps, SetTaps, GetDlyLine, SetDlyLine and Free take
   them; FIROne does not. A delay line has ceil(tapsLen / upFactor) inputs. Taps, data, scale factors and effective tap
   scales are as they are there, and sums of integer taps are as exact. With both factors 1, Init and InitAlloc build a
   state of one rate.

   Sums are direct, each product of a sample that is not zero once: an output does not depend in a bit on how the signal
   is cut into blocks. Larger blocks are shared among threads, without changing a bit of the result. pSrc and pDst may
   be the same vector, which holds the longer of inputs and outputs, but must not overlap otherwise; in place, the
   inputs are copied to memory of the function's own.

   Thread safety: one call at a time on a state. Checks, in this order, before anything is written: null pointers give
   zvpStsNullPtr, tapsLen below 1 zvpStsBadFirLength, a factor below 1 zvpStsBadMrFactor, a phase that is not from 0 to
   its factor - 1 zvpStsBadMrPhase. Functions that allocate give zvpStsNoMemory where that fails, or where a size does
   not fit an int. */
#ifndef ZVPS_FIRMR_H
#define ZVPS_FIRMR_H

#include "zvps/fir.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* *pSize = the bytes that Init needs at pBuffer. */
ZvpStatus zvpsFIRMRGetStateSize_32f(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize_32fc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize_64f(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize_64fc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize_16s(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize32f_16s(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize32fc_16sc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize32s_16s(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize32sc_16sc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize64f_16s(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize64f_32f(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize64f_32s(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize64fc_16sc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize64fc_32fc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize64fc_32sc(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize32s_16s32f(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRGetStateSize32sc_16sc32fc(int tapsLen, int upFactor, int downFactor, int* pSize);

/* Builds a state at pBuffer, which may start anywhere, and stores its address. pDlyLine has the last ceil(tapsLen /
   upFactor) inputs, the most recent first; null stands for zeros. */
ZvpStatus zvpsFIRMRInit_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor, int upPhase,
                            int downFactor, int downPhase, const Zvp32f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit_32fc(ZvpsFIRState_32fc** ppState, const Zvp32fc* pTaps, int tapsLen, int upFactor, int upPhase,
                             int downFactor, int downPhase, const Zvp32fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit_64f(ZvpsFIRState_64f** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor, int upPhase,
                            int downFactor, int downPhase, const Zvp64f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit_64fc(ZvpsFIRState_64fc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor, int upPhase,
                             int downFactor, int downPhase, const Zvp64fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, int upFactor, int upPhase,
                            int downFactor, int downPhase, const Zvp16s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit32f_16s(ZvpsFIRState32f_16s** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                               int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit32fc_16sc(ZvpsFIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp16sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit32s_16s(ZvpsFIRState32s_16s** ppState, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                               int upFactor, int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine,
                               Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit32sc_16sc(ZvpsFIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int tapsLen, int tapsFactor,
                                 int upFactor, int upPhase, int downFactor, int downPhase, const Zvp16sc* pDlyLine,
                                 Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit64f_16s(ZvpsFIRState64f_16s** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                               int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit64f_32f(ZvpsFIRState64f_32f** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                               int upPhase, int downFactor, int downPhase, const Zvp32f* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit64f_32s(ZvpsFIRState64f_32s** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                               int upPhase, int downFactor, int downPhase, const Zvp32s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit64fc_16sc(ZvpsFIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp16sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit64fc_32fc(ZvpsFIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp32fc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit64fc_32sc(ZvpsFIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp32sc* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit32s_16s32f(ZvpsFIRState32s_16s** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRInit32sc_16sc32fc(ZvpsFIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen, int upFactor,
                                     int upPhase, int downFactor, int downPhase, const Zvp16sc* pDlyLine,
                                     Zvp8u* pBuffer);

/* The same in memory that the function allocates and Free releases. */
ZvpStatus zvpsFIRMRInitAlloc_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp32f* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc_32fc(ZvpsFIRState_32fc** ppState, const Zvp32fc* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, const Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc_64f(ZvpsFIRState_64f** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp64f* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc_64fc(ZvpsFIRState_64fc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, const Zvp64fc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc32f_16s(ZvpsFIRState32f_16s** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc32fc_16sc(ZvpsFIRState32fc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen, int upFactor,
                                      int upPhase, int downFactor, int downPhase, const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc32s_16s(ZvpsFIRState32s_16s** ppState, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                                    int upFactor, int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc32sc_16sc(ZvpsFIRState32sc_16sc** ppState, const Zvp32sc* pTaps, int tapsLen,
                                      int tapsFactor, int upFactor, int upPhase, int downFactor, int downPhase,
                                      const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc64f_16s(ZvpsFIRState64f_16s** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc64f_32f(ZvpsFIRState64f_32f** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, const Zvp32f* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc64f_32s(ZvpsFIRState64f_32s** ppState, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, const Zvp32s* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc64fc_16sc(ZvpsFIRState64fc_16sc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                      int upPhase, int downFactor, int downPhase, const Zvp16sc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc64fc_32fc(ZvpsFIRState64fc_32fc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                      int upPhase, int downFactor, int downPhase, const Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc64fc_32sc(ZvpsFIRState64fc_32sc** ppState, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                      int upPhase, int downFactor, int downPhase, const Zvp32sc* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc32s_16s32f(ZvpsFIRState32s_16s** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                       int upPhase, int downFactor, int downPhase, const Zvp16s* pDlyLine);
ZvpStatus zvpsFIRMRInitAlloc32sc_16sc32fc(ZvpsFIRState32sc_16sc** ppState, const Zvp32fc* pTaps, int tapsLen,
                                          int upFactor, int upPhase, int downFactor, int downPhase,
                                          const Zvp16sc* pDlyLine);

/* Without a state. pDlyLine, of ceil(tapsLen / upFactor) inputs, the most recent first, is renewed. In place, pSrcDst
   holds the longer of the numIters * downFactor inputs and numIters * upFactor outputs. zvpStsBadSize comes before the
   statuses of the taps and factors. */
ZvpStatus zvpsFIRMR_Direct_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, const Zvp32f* pTaps, int tapsLen,
                               int upFactor, int upPhase, int downFactor, int downPhase, Zvp32f* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_32f_I(Zvp32f* pSrcDst, int numIters, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, Zvp32f* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int numIters, const Zvp32fc* pTaps, int tapsLen,
                                int upFactor, int upPhase, int downFactor, int downPhase, Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_32fc_I(Zvp32fc* pSrcDst, int numIters, const Zvp32fc* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_64f(const Zvp64f* pSrc, Zvp64f* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                               int upFactor, int upPhase, int downFactor, int downPhase, Zvp64f* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_64f_I(Zvp64f* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                 int upPhase, int downFactor, int downPhase, Zvp64f* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                int upFactor, int upPhase, int downFactor, int downPhase, Zvp64fc* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_64fc_I(Zvp64fc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, Zvp64fc* pDlyLine);
ZvpStatus zvpsFIRMR_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp16s* pTaps, int tapsLen,
                                   int upFactor, int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine,
                                   int scaleFactor);
ZvpStatus zvpsFIRMR_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp16s* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR32f_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp32f* pTaps, int tapsLen,
                                      int upFactor, int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine,
                                      int scaleFactor);
ZvpStatus zvpsFIRMR32f_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                       int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR32fc_Direct_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, const Zvp32fc* pTaps,
                                        int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase,
                                        Zvp16sc* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR32fc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, const Zvp32fc* pTaps, int tapsLen,
                                         int upFactor, int upPhase, int downFactor, int downPhase, Zvp16sc* pDlyLine,
                                         int scaleFactor);
ZvpStatus zvpsFIRMR32s_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp32s* pTaps, int tapsLen,
                                      int tapsFactor, int upFactor, int upPhase, int downFactor, int downPhase,
                                      Zvp16s* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR32s_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp32s* pTaps, int tapsLen, int tapsFactor,
                                       int upFactor, int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine,
                                       int scaleFactor);
ZvpStatus zvpsFIRMR32sc_Direct_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, const Zvp32sc* pTaps,
                                        int tapsLen, int tapsFactor, int upFactor, int upPhase, int downFactor,
                                        int downPhase, Zvp16sc* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR32sc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, const Zvp32sc* pTaps, int tapsLen,
                                         int tapsFactor, int upFactor, int upPhase, int downFactor, int downPhase,
                                         Zvp16sc* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR64f_Direct_16s_Sfs(const Zvp16s* pSrc, Zvp16s* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                                      int upFactor, int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine,
                                      int scaleFactor);
ZvpStatus zvpsFIRMR64f_Direct_16s_ISfs(Zvp16s* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                       int upPhase, int downFactor, int downPhase, Zvp16s* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR64f_Direct_32f(const Zvp32f* pSrc, Zvp32f* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                                  int upFactor, int upPhase, int downFactor, int downPhase, Zvp32f* pDlyLine);
ZvpStatus zvpsFIRMR64f_Direct_32f_I(Zvp32f* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                    int upPhase, int downFactor, int downPhase, Zvp32f* pDlyLine);
ZvpStatus zvpsFIRMR64f_Direct_32s_Sfs(const Zvp32s* pSrc, Zvp32s* pDst, int numIters, const Zvp64f* pTaps, int tapsLen,
                                      int upFactor, int upPhase, int downFactor, int downPhase, Zvp32s* pDlyLine,
                                      int scaleFactor);
ZvpStatus zvpsFIRMR64f_Direct_32s_ISfs(Zvp32s* pSrcDst, int numIters, const Zvp64f* pTaps, int tapsLen, int upFactor,
                                       int upPhase, int downFactor, int downPhase, Zvp32s* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR64fc_Direct_16sc_Sfs(const Zvp16sc* pSrc, Zvp16sc* pDst, int numIters, const Zvp64fc* pTaps,
                                        int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase,
                                        Zvp16sc* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR64fc_Direct_16sc_ISfs(Zvp16sc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                         int upFactor, int upPhase, int downFactor, int downPhase, Zvp16sc* pDlyLine,
                                         int scaleFactor);
ZvpStatus zvpsFIRMR64fc_Direct_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                    int upFactor, int upPhase, int downFactor, int downPhase, Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRMR64fc_Direct_32fc_I(Zvp32fc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen, int upFactor,
                                      int upPhase, int downFactor, int downPhase, Zvp32fc* pDlyLine);
ZvpStatus zvpsFIRMR64fc_Direct_32sc_Sfs(const Zvp32sc* pSrc, Zvp32sc* pDst, int numIters, const Zvp64fc* pTaps,
                                        int tapsLen, int upFactor, int upPhase, int downFactor, int downPhase,
                                        Zvp32sc* pDlyLine, int scaleFactor);
ZvpStatus zvpsFIRMR64fc_Direct_32sc_ISfs(Zvp32sc* pSrcDst, int numIters, const Zvp64fc* pTaps, int tapsLen,
                                         int upFactor, int upPhase, int downFactor, int downPhase, Zvp32sc* pDlyLine,
                                         int scaleFactor);

/* States without history, run by the block functions of their type and released by its Free: floor((tapsLen - 1 +
   upPhase) / upFactor) past samples precede the numIters * downFactor inputs in the source. GetDlyLine and SetDlyLine
   give zvpStsContextMismatch. */
ZvpStatus zvpsFIRMRStreamGetStateSize_16s(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRStreamInit_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRStreamInitAlloc_16s(ZvpsFIRState_16s** ppState, const Zvp16s* pTaps, int tapsLen, int upFactor,
                                       int upPhase, int downFactor, int downPhase);
ZvpStatus zvpsFIRMRStreamGetStateSize_32f(int tapsLen, int upFactor, int downFactor, int* pSize);
ZvpStatus zvpsFIRMRStreamInit_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                  int upPhase, int downFactor, int downPhase, Zvp8u* pBuffer);
ZvpStatus zvpsFIRMRStreamInitAlloc_32f(ZvpsFIRState_32f** ppState, const Zvp32f* pTaps, int tapsLen, int upFactor,
                                       int upPhase, int downFactor, int downPhase);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
