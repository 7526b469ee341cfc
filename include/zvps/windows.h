/* Windows: a vector multiplied by a symmetric window of its own length.

   Arguments. The source stands before the destination, then the length (elements; a complex pair counts as one, both
   its parts are multiplied by the same value), then the window's parameter. Forms ending in I or ISfs work in place on
   pSrcDst. Any alignment of the element type is fine; the destination may be the same vector as the source, but must
   not overlap it in another way.

   Values. w[n] = w[len-1-n], with theta = 2 pi / (len-1). They are computed in double precision and rounded once to the
   precision in which they are applied: that of floating-point data, single for 16-bit data, whose products are rounded
   to nearest with ties to even, then saturated; a product that is not a number gives 0.

   Cosines come from a recurrence, not from a cosine for each element. With h(k) = c cos(k theta), h(0) to h(3) follow
   from cos(theta), then h(k+2) = 2 cos(2 theta) h(k) - h(k-2). Its rounding errors grow about with the square of the
   length, from 3e-13 at 1024 elements to 8e-10 at 65536. Double-precision data get exactly this recurrence; in single
   precision the values of windows of 64 to 131072 elements may differ from it by a unit in the last place.

   The middle element of an odd length is copied, but Kaiser's multiplied by its value. At a length of 3 all windows
   with zero end points (Bartlett, Hann, Blackman) give {0, pSrc[1], 0}, whatever the other elements.

   Statuses. Null pointers (zvpStsNullPtr), then a length below the window's least (zvpStsBadSize), then what the group
   names. Nothing is written on an error.

   Threads. No state is kept; calls on different destinations may run at the same time. */
#ifndef ZVPS_WINDOWS_H
#define ZVPS_WINDOWS_H

#include "zvps/status.h"
#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* Triangle: w[n] = n * (2 / (len-1)) in the first half. len >= 3. */
ZvpStatus zvpsWinBartlett_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsWinBartlett_16s_I(Zvp16s* pSrcDst, int len);
ZvpStatus zvpsWinBartlett_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsWinBartlett_16sc_I(Zvp16sc* pSrcDst, int len);
ZvpStatus zvpsWinBartlett_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsWinBartlett_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsWinBartlett_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsWinBartlett_32fc_I(Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsWinBartlett_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsWinBartlett_64f_I(Zvp64f* pSrcDst, int len);
ZvpStatus zvpsWinBartlett_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);
ZvpStatus zvpsWinBartlett_64fc_I(Zvp64fc* pSrcDst, int len);

/* w[n] = 0.5 - 0.5 cos(n theta). len >= 3. */
ZvpStatus zvpsWinHann_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsWinHann_16s_I(Zvp16s* pSrcDst, int len);
ZvpStatus zvpsWinHann_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsWinHann_16sc_I(Zvp16sc* pSrcDst, int len);
ZvpStatus zvpsWinHann_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsWinHann_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsWinHann_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsWinHann_32fc_I(Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsWinHann_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsWinHann_64f_I(Zvp64f* pSrcDst, int len);
ZvpStatus zvpsWinHann_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);
ZvpStatus zvpsWinHann_64fc_I(Zvp64fc* pSrcDst, int len);

/* w[n] = 0.54 - 0.46 cos(n theta): 0.08 at the ends. len >= 3. */
ZvpStatus zvpsWinHamming_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsWinHamming_16s_I(Zvp16s* pSrcDst, int len);
ZvpStatus zvpsWinHamming_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsWinHamming_16sc_I(Zvp16sc* pSrcDst, int len);
ZvpStatus zvpsWinHamming_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsWinHamming_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsWinHamming_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsWinHamming_32fc_I(Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsWinHamming_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsWinHamming_64f_I(Zvp64f* pSrcDst, int len);
ZvpStatus zvpsWinHamming_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);
ZvpStatus zvpsWinHamming_64fc_I(Zvp64fc* pSrcDst, int len);

/* w[n] = (alpha + 1)/2 - 0.5 cos(n theta) - (alpha/2) cos(2 n theta), evaluated as (0.5 + alpha) - h - 4 alpha h^2 with
   h = 0.5 cos(n theta). len >= 3; any alpha. */
ZvpStatus zvpsWinBlackman_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_16s_I(Zvp16s* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_16sc_I(Zvp16sc* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_32f_I(Zvp32f* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinBlackman_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp64f alpha);
ZvpStatus zvpsWinBlackman_64f_I(Zvp64f* pSrcDst, int len, Zvp64f alpha);
ZvpStatus zvpsWinBlackman_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp64f alpha);
ZvpStatus zvpsWinBlackman_64fc_I(Zvp64fc* pSrcDst, int len, Zvp64f alpha);

/* Blackman with alpha = -0.16. len >= 3. */
ZvpStatus zvpsWinBlackmanStd_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsWinBlackmanStd_16s_I(Zvp16s* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanStd_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsWinBlackmanStd_16sc_I(Zvp16sc* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanStd_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsWinBlackmanStd_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanStd_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsWinBlackmanStd_32fc_I(Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanStd_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsWinBlackmanStd_64f_I(Zvp64f* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanStd_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);
ZvpStatus zvpsWinBlackmanStd_64fc_I(Zvp64fc* pSrcDst, int len);

/* Blackman with alpha = -(0.5 / cos(pi / (len-1)))^2, computed in double precision and rounded to the parameter's type.
   len >= 4; unlike everywhere else a bad length is found before a null pointer. */
ZvpStatus zvpsWinBlackmanOpt_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len);
ZvpStatus zvpsWinBlackmanOpt_16s_I(Zvp16s* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanOpt_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len);
ZvpStatus zvpsWinBlackmanOpt_16sc_I(Zvp16sc* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanOpt_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len);
ZvpStatus zvpsWinBlackmanOpt_32f_I(Zvp32f* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanOpt_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len);
ZvpStatus zvpsWinBlackmanOpt_32fc_I(Zvp32fc* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanOpt_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len);
ZvpStatus zvpsWinBlackmanOpt_64f_I(Zvp64f* pSrcDst, int len);
ZvpStatus zvpsWinBlackmanOpt_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len);
ZvpStatus zvpsWinBlackmanOpt_64fc_I(Zvp64fc* pSrcDst, int len);

/* w[n] = I0(alpha sqrt(n (len-1-n))) / I0(beta) with beta = |alpha * (len-1)| / 2, that product in single precision. I0
   is approximated by two polynomials, below 4 and above, with coefficients for the divisor that differ slightly from
   those for the dividend, so that the middle is not quite 1. A single element is copied. len >= 1; beta > 308 gives
   zvpStsBadKaiserAlpha. */
ZvpStatus zvpsWinKaiser_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_16s_I(Zvp16s* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_16sc_I(Zvp16sc* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_32f(const Zvp32f* pSrc, Zvp32f* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_32f_I(Zvp32f* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_32fc(const Zvp32fc* pSrc, Zvp32fc* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_32fc_I(Zvp32fc* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_64f(const Zvp64f* pSrc, Zvp64f* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_64f_I(Zvp64f* pSrcDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_64fc(const Zvp64fc* pSrc, Zvp64fc* pDst, int len, Zvp32f alpha);
ZvpStatus zvpsWinKaiser_64fc_I(Zvp64fc* pSrcDst, int len, Zvp32f alpha);

/* Blackman with alpha = alphaQ15 / 32768 and theta formed as 2 pi times 1/(len-1). len >= 3. ISfs multiplies the window
   by 2^-scaleFactor, any int, before it is applied; zeros stay 0. */
ZvpStatus zvpsWinBlackmanQ15_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, int alphaQ15);
ZvpStatus zvpsWinBlackmanQ15_16s_I(Zvp16s* pSrcDst, int len, int alphaQ15);
ZvpStatus zvpsWinBlackmanQ15_16s_ISfs(Zvp16s* pSrcDst, int len, int alphaQ15, int scaleFactor);
ZvpStatus zvpsWinBlackmanQ15_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, int alphaQ15);
ZvpStatus zvpsWinBlackmanQ15_16sc_I(Zvp16sc* pSrcDst, int len, int alphaQ15);

/* Kaiser with alpha = alphaQ15 / 32768. */
ZvpStatus zvpsWinKaiserQ15_16s(const Zvp16s* pSrc, Zvp16s* pDst, int len, int alphaQ15);
ZvpStatus zvpsWinKaiserQ15_16s_I(Zvp16s* pSrcDst, int len, int alphaQ15);
ZvpStatus zvpsWinKaiserQ15_16sc(const Zvp16sc* pSrc, Zvp16sc* pDst, int len, int alphaQ15);
ZvpStatus zvpsWinKaiserQ15_16sc_I(Zvp16sc* pSrcDst, int len, int alphaQ15);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
