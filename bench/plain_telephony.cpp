#include "peers.hpp"

#include "zvps/types.h"

#include <algorithm>
#include <cmath>

namespace plain {

// Without tables or branches, so that the compiler vectorises it: the segment counted by comparisons.
void compressALaw(const Zvp16s* a, Zvp8u* dst, int n) {
    for (int i = 0; i < n; ++i) {
        const int v = a[i] >> 3;
        const int m = v ^ (v >> 31);
        const int segment = (m > 31) + (m > 63) + (m > 127) + (m > 255) + (m > 511) + (m > 1023) + (m > 2047);
        const int code = segment << 4 | (m >> std::max(segment, 1) & 15);
        dst[i] = static_cast<Zvp8u>(code ^ (v < 0 ? 0x55 : 0xD5));
    }
}

void compressMuLaw(const Zvp16s* a, Zvp8u* dst, int n) {
    for (int i = 0; i < n; ++i) {
        const int x = a[i];
        const int m = std::min(((x ^ (x >> 31)) >> 2) + 33, 8191);
        const int segment = (m > 63) + (m > 127) + (m > 255) + (m > 511) + (m > 1023) + (m > 2047) + (m > 4095);
        const int code = segment << 4 | (m >> (segment + 1) & 15);
        dst[i] = static_cast<Zvp8u>(code ^ (x < 0 ? 0x7F : 0xFF));
    }
}

template <class D>
void lookUp(const Zvp8u* a, const D* table, D* dst, int n) {
    for (int i = 0; i < n; ++i)
        dst[i] = table[a[i]];
}
template void lookUp(const Zvp8u*, const Zvp8u*, Zvp8u*, int);
template void lookUp(const Zvp8u*, const Zvp16s*, Zvp16s*, int);
template void lookUp(const Zvp8u*, const Zvp32f*, Zvp32f*, int);

// The recurrence of second order, in double.
template <class T>
void goertzel(const T* a, int n, double frequency, double* value) {
    const double angle = 2 * 3.14159265358979323846 * frequency;
    const double c = 2 * std::cos(angle);
    double last = 0;
    double before = 0;
    for (int i = 0; i < n; ++i) {
        const double now = static_cast<double>(a[i]) + c * last - before;
        before = last;
        last = now;
    }
    value[0] = last * std::cos(angle) - before;
    value[1] = last * std::sin(angle);
}
template void goertzel(const Zvp16s*, int, double, double*);
template void goertzel(const Zvp32f*, int, double, double*);
template void goertzel(const Zvp64f*, int, double, double*);

} // namespace plain
