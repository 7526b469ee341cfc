#include "peers.hpp"

#include "zvps/types.h"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace plain {

namespace {

int sample(Zvp16s v) {
    return v;
}
int sample(Zvp32f v) {
    return static_cast<int>(std::nearbyint(std::min(std::max(v * 32768.0f, -32768.0f), 32767.0f)));
}

} // namespace

// Without tables or branches, so that the compiler vectorises it: the segment counted by comparisons.
template <class T>
void compressALaw(const T* a, Zvp8u* dst, int n) {
    for (int i = 0; i < n; ++i) {
        const int v = sample(a[i]) >> 3;
        const int m = v ^ (v >> 31);
        const int segment = (m > 31) + (m > 63) + (m > 127) + (m > 255) + (m > 511) + (m > 1023) + (m > 2047);
        const int code = segment << 4 | (m >> std::max(segment, 1) & 15);
        dst[i] = static_cast<Zvp8u>(code ^ (v < 0 ? 0x55 : 0xD5));
    }
}
template void compressALaw(const Zvp16s*, Zvp8u*, int);
template void compressALaw(const Zvp32f*, Zvp8u*, int);

template <class T>
void compressMuLaw(const T* a, Zvp8u* dst, int n) {
    for (int i = 0; i < n; ++i) {
        const int x = sample(a[i]);
        const int m = std::min(((x ^ (x >> 31)) >> 2) + 33, 8191);
        const int segment = (m > 63) + (m > 127) + (m > 255) + (m > 511) + (m > 1023) + (m > 2047) + (m > 4095);
        const int code = segment << 4 | (m >> (segment + 1) & 15);
        dst[i] = static_cast<Zvp8u>(code ^ (x < 0 ? 0x7F : 0xFF));
    }
}
template void compressMuLaw(const Zvp16s*, Zvp8u*, int);
template void compressMuLaw(const Zvp32f*, Zvp8u*, int);

template <class D>
void lookUp(const Zvp8u* a, const D* table, D* dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = table[a[i]];
}
template void lookUp(const Zvp8u*, const Zvp8u*, Zvp8u*, int);
template void lookUp(const Zvp8u*, const Zvp16s*, Zvp16s*, int);
template void lookUp(const Zvp8u*, const Zvp32f*, Zvp32f*, int);

namespace {

template <class T>
double part(T v, int) {
    return static_cast<double>(v);
}
double part(Zvp32fc v, int p) {
    return static_cast<double>(p == 0 ? v.re : v.im);
}

} // namespace

// The recurrence of second order, in double.
template <int count, class T>
void goertzel(const T* a, int n, const double* frequencies, double* values) {
    constexpr int kParts = std::is_same_v<T, Zvp32fc> ? 2 : 1;
    constexpr double kTwoPi = 6.28318530717958647692;
    double factor[count];
    double last[count][2] = {};
    double before[count][2] = {};
    for (int f = 0; f < count; ++f)
        factor[f] = 2 * std::cos(kTwoPi * frequencies[f]);
    for (int i = 0; i < n; ++i) {
        for (int f = 0; f < count; ++f) {
            for (int p = 0; p < kParts; ++p) {
                const double now = part(a[i], p) + factor[f] * last[f][p] - before[f][p];
                before[f][p] = last[f][p];
                last[f][p] = now;
            }
        }
    }
    for (int f = 0; f < count; ++f) {
        const double c = std::cos(kTwoPi * frequencies[f]);
        const double s = std::sin(kTwoPi * frequencies[f]);
        values[2 * f] = last[f][0] * c - last[f][1] * s - before[f][0];
        values[2 * f + 1] = last[f][0] * s + last[f][1] * c - before[f][1];
    }
}
#define GOERTZEL(T)                                                                                                    \
    template void goertzel<1>(const T*, int, const double*, double*);                                                  \
    template void goertzel<2>(const T*, int, const double*, double*);
GOERTZEL(Zvp16s)
GOERTZEL(Zvp32f)
GOERTZEL(Zvp32fc)
GOERTZEL(Zvp64f)

} // namespace plain
