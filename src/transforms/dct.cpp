// The DCTs.
#include "transforms/dct_objects.hpp"
#include "zvps/convert.h"

namespace zvps {
namespace {

template <class T>
const DctKernels<T>& dctKernels() {
    if constexpr (sizeof(T) == 4) {
        return *kernels().dct32f;
    } else {
        return *kernels().dct64f;
    }
}

template <class T>
bool needsWork(const DctSpec<T>& spec) {
    return spec.usesFft == 1 || spec.usesDft == 1;
}

// By way of an FFT or DFT object of the same length, from x or a spectrum to the other. The work area holds the
// spectrum, then what the inner transform works in.
template <class T>
[[gnu::noinline]] ZvpStatus throughDft(DctDirection direction, const T* src, T* dst, const DctSpec<T>& spec,
                                       Zvp8u* buffer) {
    using Transforms = RealTransforms<T>;
    const WorkArea work(buffer, spec.workSize);
    if (!work) return zvpStsNoMemory;
    const DctKernels<T>& table = dctKernels<T>();
    const auto n = static_cast<size_t>(spec.length);
    T* const spectrum = work.as<T>();
    Zvp8u* const inner = work.bytes() + dctSpectrumBytes<T>(spec.length);
    const auto transform = [&](auto& fft, auto& dft) {
        return spec.usesFft == 1
                   ? fft(spectrum, static_cast<const typename Transforms::Fft*>(spec.inner), inner)
                   : dft(spectrum, spectrum, static_cast<const typename Transforms::Dft*>(spec.inner), inner);
    };
    if (direction == kDctForward) {
        table.reorder[direction](src, spectrum, n);
        if (const ZvpStatus status = transform(Transforms::fftForward, Transforms::dftForward)) return status;
        table.turn[direction](spectrum, dst, n, spec.twiddles);
    } else {
        table.turn[direction](src, spectrum, n, spec.twiddles);
        if (const ZvpStatus status = transform(Transforms::fftInverse, Transforms::dftInverse)) return status;
        table.reorder[direction](spectrum, dst, n);
    }
    return zvpStsOk;
}

template <class T>
ZvpStatus run(DctDirection direction, const T* src, T* dst, const DctSpec<T>& spec, Zvp8u* buffer) {
    const DctKernels<T>& table = dctKernels<T>();
    const auto n = static_cast<size_t>(spec.length);
    if ((n & (n - 1)) == 0 && n <= kMostStoredMatrix) {
        table.fixed[direction][__builtin_ctzll(n)](src, dst, spec);
    } else if (spec.usesMatrix == 1) {
        table.matrix[direction](src, dst, spec);
    } else if (!needsWork(spec)) {
        table.composite[direction](src, dst, spec);
    } else {
        return throughDft(direction, src, dst, spec, buffer);
    }
    return zvpStsOk;
}

template <class Opaque, class T>
ZvpStatus dct(const T* src, T* dst, const Opaque* spec, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(spec, src, dst)) return status;
    return run(FftType<Opaque>::kDirection, src, dst, *header(spec), buffer);
}

// On converted values, which lie behind what their transform works in.
template <class Opaque>
ZvpStatus integerDct(const Zvp16s* src, Zvp16s* dst, const Opaque* opaque, int scaleFactor, Zvp8u* buffer) {
    if (const ZvpStatus status = checkTransform(opaque, src, dst)) return status;
    const DctSpec<Zvp32f>& spec = *header(opaque);
    const auto through = [&](Zvp32f* data, Zvp8u* inner) {
        zvpsConvert_16s32f(src, data, spec.length);
        const ZvpStatus status = run(FftType<Opaque>::kDirection, data, data, spec, inner);
        if (status == zvpStsOk) zvpsConvert_32f16s_Sfs(data, dst, spec.length, zvpRndNear, scaleFactor);
        return status;
    };
    if (needsWork(spec)) {
        const WorkArea work(buffer, spec.workSize);
        if (!work) return zvpStsNoMemory;
        const int64_t bytes = int64_t{spec.length} * int64_t{sizeof(Zvp32f)};
        return through(reinterpret_cast<Zvp32f*>(work.bytes() + (spec.workSize - bytes)), work.bytes());
    }
    Zvp32f data[kMostDctTable];
    return through(data, nullptr);
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_DCT(NAME, TYPE)                                                                                           \
    ZvpStatus zvps##NAME##_##TYPE(const Zvp##TYPE* src, Zvp##TYPE* dst, const Zvps##NAME##Spec_##TYPE* spec,           \
                                  Zvp8u* buffer) {                                                                     \
        return zvps::dct(src, dst, spec, buffer);                                                                      \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_##TYPE##_I(Zvp##TYPE* srcDst, const Zvps##NAME##Spec_##TYPE* spec, Zvp8u* buffer) {         \
        return zvps::dct(srcDst, srcDst, spec, buffer);                                                                \
    }
#define ZVPS_INTEGER_DCT(NAME)                                                                                         \
    ZvpStatus zvps##NAME##_16s_Sfs(const Zvp16s* src, Zvp16s* dst, const Zvps##NAME##Spec_16s* spec, int scaleFactor,  \
                                   Zvp8u* buffer) {                                                                    \
        return zvps::integerDct(src, dst, spec, scaleFactor, buffer);                                                  \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##_16s_ISfs(Zvp16s* srcDst, const Zvps##NAME##Spec_16s* spec, int scaleFactor,                 \
                                    Zvp8u* buffer) {                                                                   \
        return zvps::integerDct(srcDst, srcDst, spec, scaleFactor, buffer);                                            \
    }

ZVPS_DCT(DCTFwd, 32f)
ZVPS_DCT(DCTFwd, 64f)
ZVPS_DCT(DCTInv, 32f)
ZVPS_DCT(DCTInv, 64f)
ZVPS_INTEGER_DCT(DCTFwd)
ZVPS_INTEGER_DCT(DCTInv)
