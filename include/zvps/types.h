/* Element types, complex pairs, rounding modes and the options of transforms. */
#ifndef ZVPS_TYPES_H
#define ZVPS_TYPES_H

#include <stdint.h>

/* Real element types. The code behind `Zvp` stands in the names of the functions that work on the type. */
typedef uint8_t Zvp8u;
typedef int8_t Zvp8s;
typedef uint16_t Zvp16u;
typedef int16_t Zvp16s;
typedef uint16_t Zvp16f; /* IEEE 754 binary16 in its 16-bit container */
typedef uint32_t Zvp32u;
typedef int32_t Zvp32s;
typedef float Zvp32f;
typedef uint64_t Zvp64u;
typedef int64_t Zvp64s;
typedef double Zvp64f;

/* Complex element types: the real part, directly followed by the imaginary part. */
typedef struct {
    Zvp8s re;
    Zvp8s im;
} Zvp8sc;

typedef struct {
    Zvp16s re;
    Zvp16s im;
} Zvp16sc;

typedef struct {
    Zvp32s re;
    Zvp32s im;
} Zvp32sc;

typedef struct {
    Zvp32f re;
    Zvp32f im;
} Zvp32fc;

typedef struct {
    Zvp64s re;
    Zvp64s im;
} Zvp64sc;

typedef struct {
    Zvp64f re;
    Zvp64f im;
} Zvp64fc;

/* How a result that lies between two integers is rounded. */
typedef int32_t ZvpRoundMode;
enum {
    zvpRndZero = 0,     /* toward zero */
    zvpRndNear = 1,     /* to nearest, ties to even */
    zvpRndFinancial = 2 /* to nearest, ties away from zero */
};

/* Which direction of a transform of N points multiplies its result by what. */
enum {
    zvpFftScaleFwd = 1,  /* forward: 1/N */
    zvpFftScaleInv = 2,  /* inverse: 1/N */
    zvpFftScaleSqrt = 4, /* both: 1/sqrt(N) */
    zvpFftScaleNone = 8  /* neither */
};

/* A choice between algorithms, where a function documents one; any value is accepted. */
typedef int32_t ZvpHintAlgorithm;

#endif
