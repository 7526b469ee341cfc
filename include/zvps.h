/* zvps: signal-processing primitives for 64-bit x86. This header takes in all families; each can be included alone. */
#ifndef ZVPS_H
#define ZVPS_H

#include "zvps/arithmetic.h"
#include "zvps/companding.h"
#include "zvps/convert.h"
#include "zvps/correlation.h"
#include "zvps/dct.h"
#include "zvps/dft.h"
#include "zvps/fft.h"
#include "zvps/fir.h"
#include "zvps/generators.h"
#include "zvps/firmr.h"
#include "zvps/goertzel.h"
#include "zvps/hilbert.h"
#include "zvps/iir.h"
#include "zvps/initialisation.h"
#include "zvps/memory.h"
#include "zvps/statistics.h"
#include "zvps/status.h"
#include "zvps/threshold.h"
#include "zvps/types.h"
#include "zvps/windows.h"

#endif
