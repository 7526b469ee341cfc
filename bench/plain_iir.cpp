#include "peers.hpp"

namespace plain {

template <class T>
void biquads(const T* a, T* dst, int n, const T* taps, int sections, T* delay) {
    for (int i = 0; i < n; ++i) {
        T v = a[i];
        for (int s = 0; s < sections; ++s) {
            const T* t = taps + 6 * s;
            T* d = delay + 2 * s;
            const T y = t[0] * v + d[0];
            d[0] = t[1] * v - t[4] * y + d[1];
            d[1] = t[2] * v - t[5] * y;
            v = y;
        }
        dst[i] = v;
    }
}
template void biquads(const float*, float*, int, const float*, int, float*);
template void biquads(const double*, double*, int, const double*, int, double*);

template <class T>
void biquad(const T* a, T* dst, int n, const T* taps, T* delay) {
    const T b0 = taps[0], b1 = taps[1], b2 = taps[2], a1 = taps[4], a2 = taps[5];
    T d0 = delay[0];
    T d1 = delay[1];
    for (int i = 0; i < n; ++i) {
        const T v = a[i];
        const T y = b0 * v + d0;
        d0 = b1 * v - a1 * y + d1;
        d1 = b2 * v - a2 * y;
        dst[i] = y;
    }
    delay[0] = d0;
    delay[1] = d1;
}
template void biquad(const float*, float*, int, const float*, float*);
template void biquad(const double*, double*, int, const double*, double*);

template <class T>
void recursive(const T* a, T* dst, int n, const T* taps, int order, T* delay) {
    for (int i = 0; i < n; ++i) {
        const T v = a[i];
        const T y = taps[0] * v + delay[0];
        for (int k = 0; k < order; ++k)
            delay[k] = taps[k + 1] * v - taps[order + 2 + k] * y + delay[k + 1];
        dst[i] = y;
    }
}
template void recursive(const float*, float*, int, const float*, int, float*);
template void recursive(const double*, double*, int, const double*, int, double*);

} // namespace plain
