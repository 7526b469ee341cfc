#include "peers.hpp"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace plain {

// Tap by tap over blocks of outputs, which the compiler turns into vectors without leave to reorder sums.
template <class T>
void fir(const T* src, T* dst, int n, const T* taps, int tapsLen) {
    constexpr int kBlock = 256;
    T sums[kBlock];
    for (int i = 0; i < n; i += kBlock) {
        const int count = std::min(kBlock, n - i);
        std::fill_n(sums, count, T{});
        for (int k = 0; k < tapsLen; ++k) {
            const T tap = taps[k];
            const T* const x = src + i - k;
            for (int j = 0; j < count; ++j)
                sums[j] += tap * x[j];
        }
        std::copy_n(sums, count, dst + i);
    }
}
template void fir(const float* src, float* dst, int n, const float* taps, int tapsLen);
template void fir(const double* src, double* dst, int n, const double* taps, int tapsLen);

void fir(const Zvp32fc* src, Zvp32fc* dst, int n, const Zvp32fc* taps, int tapsLen) {
    constexpr int kBlock = 256;
    float re[kBlock], im[kBlock];
    for (int i = 0; i < n; i += kBlock) {
        const int count = std::min(kBlock, n - i);
        std::fill_n(re, count, 0.0F);
        std::fill_n(im, count, 0.0F);
        for (int k = 0; k < tapsLen; ++k) {
            const Zvp32fc tap = taps[k];
            const Zvp32fc* const x = src + i - k;
            for (int j = 0; j < count; ++j) {
                re[j] += tap.re * x[j].re - tap.im * x[j].im;
                im[j] += tap.re * x[j].im + tap.im * x[j].re;
            }
        }
        for (int j = 0; j < count; ++j)
            dst[i + j] = {re[j], im[j]};
    }
}

namespace {

template <class Sum, class Taps, class Store>
void fir16s(const Zvp16s* src, int n, const Taps* taps, int tapsLen, Store store) {
    constexpr int kBlock = 256;
    Sum sums[kBlock];
    for (int i = 0; i < n; i += kBlock) {
        const int count = std::min(kBlock, n - i);
        std::fill_n(sums, count, Sum{0});
        for (int k = 0; k < tapsLen; ++k) {
            const Taps tap = taps[k];
            const Zvp16s* const x = src + i - k;
            for (int j = 0; j < count; ++j)
                sums[j] += static_cast<Sum>(tap) * static_cast<Sum>(x[j]);
        }
        for (int j = 0; j < count; ++j)
            store(i + j, sums[j]);
    }
}

} // namespace

void fir(const Zvp16s* src, Zvp16s* dst, int n, const float* taps, int tapsLen) {
    fir16s<float>(src, n, taps, tapsLen, [dst](int i, float sum) {
        dst[i] = static_cast<Zvp16s>(std::clamp(__builtin_rintf(sum), -32768.0F, 32767.0F));
    });
}
// Exact in 64 bits, rounded to nearest; ties up.
template <class Taps>
void fir(const Zvp16s* src, Zvp16s* dst, int n, const Taps* taps, int tapsLen, int shift) {
    const int64_t half = int64_t{1} << (shift - 1);
    fir16s<int64_t>(src, n, taps, tapsLen, [=](int i, int64_t sum) {
        dst[i] = static_cast<Zvp16s>(std::clamp<int64_t>((sum + half) >> shift, -32768, 32767));
    });
}
template void fir(const Zvp16s* src, Zvp16s* dst, int n, const Zvp16s* taps, int tapsLen, int shift);
template void fir(const Zvp16s* src, Zvp16s* dst, int n, const Zvp32s* taps, int tapsLen, int shift);

// Output by output.
template <class T>
void polyphase(const T* src, T* dst, int n, const T* taps, int length, int up, int down, [[maybe_unused]] int shift) {
    const T* oldest = src - (length - 1);
    int phase = 0;
    for (int m = 0; m < n; ++m) {
        const T* const tap = taps + phase * length;
        if constexpr (std::is_same_v<T, Zvp32fc>) {
            T sum = {0, 0};
            for (int k = 0; k < length; ++k) {
                sum.re += tap[k].re * oldest[k].re - tap[k].im * oldest[k].im;
                sum.im += tap[k].re * oldest[k].im + tap[k].im * oldest[k].re;
            }
            dst[m] = sum;
        } else if constexpr (std::is_same_v<T, Zvp16s>) {
            int64_t sum = int64_t{1} << (shift - 1);
            for (int k = 0; k < length; ++k)
                sum += int64_t{tap[k]} * oldest[k];
            dst[m] = static_cast<T>(std::clamp<int64_t>(sum >> shift, -32768, 32767));
        } else {
            T sum = 0;
            for (int k = 0; k < length; ++k)
                sum += tap[k] * oldest[k];
            dst[m] = sum;
        }
        for (phase += down; phase >= up; phase -= up)
            ++oldest;
    }
}
template void polyphase(const float* src, float* dst, int n, const float* taps, int length, int up, int down, int);
template void polyphase(const double* src, double* dst, int n, const double* taps, int length, int up, int down, int);
template void polyphase(const Zvp32fc* src, Zvp32fc* dst, int n, const Zvp32fc* taps, int length, int up, int down,
                        int);
template void polyphase(const Zvp16s* src, Zvp16s* dst, int n, const Zvp16s* taps, int length, int up, int down,
                        int shift);

} // namespace plain
