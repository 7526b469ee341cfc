// The peers that are compiled here. Operands stand in the order of the library's functions: subtract and divide take
// the right operand first.
#pragma once

#include "zvps/types.h"
#include <cstdint>

// Loops as a careful user writes them.
namespace plain {

template <class T>
void add(const T* a, const T* b, T* dst, int n);
template <class T>
void subtract(const T* a, const T* b, T* dst, int n);
template <class T>
void multiply(const T* a, const T* b, T* dst, int n);
template <class T>
void divide(const T* a, const T* b, T* dst, int n);
template <class T>
void addConstant(const T* a, T val, T* dst, int n);
template <class T>
void multiplyConstant(const T* a, T val, T* dst, int n);
template <class T>
void addProduct(const T* a, const T* b, T* dst, int n);
template <class T>
void absolute(const T* a, T* dst, int n);

// Integers: exact, scaled by 2^-scaleFactor, rounded half to even, saturated, for scale factors that the widened type
// holds.
template <class T>
void addScaled(const T* a, const T* b, T* dst, int n, int scaleFactor);
template <class T>
void subtractScaled(const T* a, const T* b, T* dst, int n, int scaleFactor);
template <class T>
void multiplyScaled(const T* a, const T* b, T* dst, int n, int scaleFactor);
template <class T>
void addConstantScaledInPlace(T val, T* dst, int n, int scaleFactor);
// Not vectorised; scale factors 0 to 15.
template <class T>
void divideScaled(const T* a, const T* b, T* dst, int n, int scaleFactor);
template <class T>
void divideConstantScaled(const T* a, T val, T* dst, int n, int scaleFactor);

// With the vector math library's cosine for each element; Kaiser with the series for each.
template <class T>
void hann(const T* a, T* dst, int n);
template <class T>
void hamming(const T* a, T* dst, int n);
template <class T>
void blackman(const T* a, T* dst, int n);
template <class T>
void kaiser(const T* a, T* dst, int n, float alpha);

// Generators: a cosine for each element, those of the vector math library where there is one.
template <class T>
void tone(T* dst, int n, T magnitude, T frequency, T phase);
void tone(Zvp16s* dst, int n, Zvp16s magnitude, float frequency, float phase);
void tone(Zvp32fc* dst, int n, float magnitude, float frequency, float phase);
template <class T>
void triangle(T* dst, int n, T magnitude, T frequency, T phase);
template <class T>
void jaehne(T* dst, int n, T magnitude);
template <class T>
void ramp(T* dst, int n, float offset, float slope);
template <class T>
void slope(T* dst, int n, float offset, float slope);
// The standard library's distributions over its Mersenne twister.
template <class T>
void uniform(T* dst, int n, double low, double high);
template <class T>
void gauss(T* dst, int n, double mean, double deviation);
// The library's uniform sequence, one number after the other.
template <class T>
void uniformSequence(T* dst, int n, double low, double high);

// Conversions: the values, rounded to nearest even and saturated, saturated, and half precision.
template <class S, class D>
void convert(const S* a, D* dst, int n);
template <class S, class D>
void convertRounded(const S* a, D* dst, int n, S factor);
template <class S, class D>
void convertSaturated(const S* a, D* dst, int n);
void fromHalf(const uint16_t* a, float* dst, int n);
void toHalf(const float* a, uint16_t* dst, int n);

void copy(const float* a, float* dst, int n);
void triad(const float* a, const float* b, float val, float* dst, int n);
// n fused multiply-adds of elements in registers, as fast as the core does them.
template <class T>
T multiplyAdds(const T* a, int n);

// Elements above the level, or of a magnitude above it, become the level.
template <class T, class Level>
void limitAbove(const T* a, Level level, T* dst, int n);

// G.711 and Goertzel.
template <class T>
void compressALaw(const T* a, Zvp8u* dst, int n);
template <class T>
void compressMuLaw(const T* a, Zvp8u* dst, int n);
template <class D>
void lookUp(const Zvp8u* a, const D* table, D* dst, int n);
// At `count` frequencies; real parts before imaginary ones.
template <int count, class T>
void goertzel(const T* a, int n, const double* frequencies, double* values);
// dst[i] = sum over k < tapsLen of taps[k] * src[i - k]
template <class T>
void fir(const T* src, T* dst, int n, const T* taps, int tapsLen);
void fir(const Zvp32fc* src, Zvp32fc* dst, int n, const Zvp32fc* taps, int tapsLen);
void fir(const Zvp16s* src, Zvp16s* dst, int n, const float* taps, int tapsLen);
template <class Taps>
void fir(const Zvp16s* src, Zvp16s* dst, int n, const Taps* taps, int tapsLen, int shift);
// n outputs; the taps of each of `up` phases, `length` of them, the last first.
template <class T>
void polyphase(const T* src, T* dst, int n, const T* taps, int length, int up, int down, int shift);


// Convolution, cross-correlation (of b with a, from lag 1 - taps on) and auto-correlation.
template <class T>
void convolve(const T* a, int n, const T* b, int taps, T* dst);
template <class T>
void crossCorrelate(const T* a, int n, const T* b, int taps, T* dst);
template <class T>
void autoCorrelate(const T* a, int n, T* dst, int lags);
void convolve(const Zvp16s* a, int n, const Zvp16s* b, int taps, Zvp16s* dst, int shift);
void autoCorrelate(const Zvp16s* a, int n, Zvp16s* dst, int lags, int shift);

// Of real spectra in Pack layout: the product, and the whole spectrum of n complex values.
template <class T>
void multiplyPacked(const T* a, const T* b, T* dst, int n);
template <class T>
void expandPacked(const T* a, T* dst, int n);

// Recursive filters with taps as the library takes them, A0 = 1.
template <class T>
void biquads(const T* a, T* dst, int n, const T* taps, int sections, T* delay);
template <class T>
void biquad(const T* a, T* dst, int n, const T* taps, T* delay);
template <class T>
void recursive(const T* a, T* dst, int n, const T* taps, int order, T* delay);

} // namespace plain

// Eigen's array expressions on maps of the vectors.
namespace eigen {

template <class T>
void add(const T* a, const T* b, T* dst, int n);
template <class T>
void subtract(const T* a, const T* b, T* dst, int n);
template <class T>
void multiply(const T* a, const T* b, T* dst, int n);
template <class T>
void divide(const T* a, const T* b, T* dst, int n);
template <class T>
void addConstant(const T* a, T val, T* dst, int n);
template <class T>
void multiplyConstant(const T* a, T val, T* dst, int n);
template <class T>
void addProduct(const T* a, const T* b, T* dst, int n);
template <class T>
void absolute(const T* a, T* dst, int n);
template <class T>
void autoCorrelate(const T* a, int n, T* dst, int lags);

// Conversions: the values, rounded to nearest even and saturated, saturated, and half precision.
template <class S, class D>
void convert(const S* a, D* dst, int n);
template <class S, class D>
void convertRounded(const S* a, D* dst, int n, S factor);
template <class S, class D>
void convertSaturated(const S* a, D* dst, int n);
void fromHalf(const uint16_t* a, float* dst, int n);
void toHalf(const float* a, uint16_t* dst, int n);

} // namespace eigen
