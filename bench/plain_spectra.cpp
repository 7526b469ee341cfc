#include "peers.hpp"

namespace plain {

template <class T>
void multiplyPacked(const T* __restrict a, const T* __restrict b, T* __restrict dst, int n) {
    dst[0] = a[0] * b[0];
    if (n % 2 == 0) dst[n - 1] = a[n - 1] * b[n - 1];
    for (int i = 1; i + 1 < n; i += 2) {
        const T re = a[i] * b[i] - a[i + 1] * b[i + 1];
        dst[i + 1] = a[i] * b[i + 1] + a[i + 1] * b[i];
        dst[i] = re;
    }
}

template <class T>
void expandPacked(const T* __restrict a, T* __restrict dst, int n) {
    dst[0] = a[0];
    dst[1] = 0;
    if (n % 2 == 0) {
        dst[n] = a[n - 1];
        dst[n + 1] = 0;
    }
    for (int k = 1; 2 * k < n; ++k) {
        dst[2 * k] = dst[2 * (n - k)] = a[2 * k - 1];
        dst[2 * k + 1] = a[2 * k];
        dst[2 * (n - k) + 1] = -a[2 * k];
    }
}

#define INSTANTIATE(T)                                                                                                 \
    template void multiplyPacked(const T*, const T*, T*, int);                                                         \
    template void expandPacked(const T*, T*, int);
INSTANTIATE(float)
INSTANTIATE(double)
#undef INSTANTIATE

} // namespace plain
