#include "peers.hpp"

#include <algorithm>
#include <cstdint>

// Element by element of one source over all results that it belongs to, which the compiler turns into vectors without
// leave to reorder sums.
namespace plain {
namespace {

template <class T>
void addProducts(const T* a, T factor, T* sums, int n) {
    for (int i = 0; i < n; ++i)
        sums[i] += factor * a[i];
}
void addProducts(const Zvp32fc* a, Zvp32fc factor, Zvp32fc* sums, int n) {
    for (int i = 0; i < n; ++i) {
        sums[i].re += factor.re * a[i].re - factor.im * a[i].im;
        sums[i].im += factor.re * a[i].im + factor.im * a[i].re;
    }
}
void addProducts(const Zvp16s* a, Zvp16s factor, int64_t* sums, int n) {
    for (int i = 0; i < n; ++i)
        sums[i] += int32_t{factor} * int32_t{a[i]};
}

template <class T>
T conjugate(T v) {
    return v;
}
Zvp32fc conjugate(Zvp32fc v) {
    return {v.re, -v.im};
}

template <class T, class Sum>
void addConvolution(const T* a, int n, const T* b, int taps, Sum* sums) {
    std::fill_n(sums, n + taps - 1, Sum{});
    for (int k = 0; k < taps; ++k)
        addProducts(a, b[k], sums + k, n);
}
template <class T, class Sum>
void addAutoCorrelation(const T* a, int n, Sum* sums, int lags) {
    std::fill_n(sums, lags, Sum{});
    for (int i = 0; i < n; ++i)
        addProducts(a + i, conjugate(a[i]), sums, std::min(lags, n - i));
}

// Rounded to nearest, ties up.
void store(const int64_t* sums, Zvp16s* dst, int n, int shift) {
    const int64_t half = int64_t{1} << (shift - 1);
    for (int i = 0; i < n; ++i)
        dst[i] = static_cast<Zvp16s>(std::clamp<int64_t>((sums[i] + half) >> shift, -32768, 32767));
}
constexpr int kMostSums = 1 << 16;

} // namespace

template <class T>
void convolve(const T* a, int n, const T* b, int taps, T* dst) {
    addConvolution(a, n, b, taps, dst);
}
template <class T>
void crossCorrelate(const T* a, int n, const T* b, int taps, T* dst) {
    std::fill_n(dst, n + taps - 1, T{});
    for (int k = 0; k < taps; ++k)
        addProducts(a, conjugate(b[k]), dst + (taps - 1 - k), n);
}
template <class T>
void autoCorrelate(const T* a, int n, T* dst, int lags) {
    addAutoCorrelation(a, n, dst, lags);
}

void convolve(const Zvp16s* a, int n, const Zvp16s* b, int taps, Zvp16s* dst, int shift) {
    static int64_t sums[kMostSums];
    addConvolution(a, n, b, taps, sums);
    store(sums, dst, n + taps - 1, shift);
}
void autoCorrelate(const Zvp16s* a, int n, Zvp16s* dst, int lags, int shift) {
    static int64_t sums[kMostSums];
    addAutoCorrelation(a, n, sums, lags);
    store(sums, dst, lags, shift);
}

#define PLAIN_CORRELATIONS(T)                                                                                          \
    template void convolve(const T*, int, const T*, int, T*);                                                          \
    template void crossCorrelate(const T*, int, const T*, int, T*);                                                    \
    template void autoCorrelate(const T*, int, T*, int);
PLAIN_CORRELATIONS(Zvp32f)
PLAIN_CORRELATIONS(Zvp64f)
PLAIN_CORRELATIONS(Zvp32fc)

} // namespace plain
