// The DFT objects as entries see them, and the transforms that they are made of.
#pragma once

#include "transforms/dft.table.hpp"
#include "transforms/fft_objects.hpp"
#include "zvps/dft.h"

namespace zvps {

// Of 16-bit integers, on an inner transform object.
struct DftSpec16s {
    uint32_t tag;
    int32_t length;
    int32_t flag;
    int32_t workSize;
    void* inner;
};

#define ZVPS_DFT_TYPE(NAME, HEADER, TAG, IS_REAL)                                                                      \
    template <>                                                                                                        \
    struct FftType<Zvps##NAME> {                                                                                       \
        using Header = HEADER;                                                                                         \
        static constexpr uint32_t kTag = TAG;                                                                          \
        static constexpr bool kIsReal = IS_REAL;                                                                       \
    };
ZVPS_DFT_TYPE(DFTSpec_C_16sc, DftSpec16s, 0x0A, false)
ZVPS_DFT_TYPE(DFTSpec_C_16s, DftSpec16s, 0x0B, false)
ZVPS_DFT_TYPE(DFTSpec_R_16s, DftSpec16s, 0x0C, true)
ZVPS_DFT_TYPE(DFTSpec_C_32fc, DftSpec<Zvp32f>, 0x0D, false)
ZVPS_DFT_TYPE(DFTSpec_C_32f, DftSpec<Zvp32f>, 0x0E, false)
ZVPS_DFT_TYPE(DFTSpec_R_32f, DftSpec<Zvp32f>, 0x0F, true)
ZVPS_DFT_TYPE(DFTSpec_C_64fc, DftSpec<Zvp64f>, 0x10, false)
ZVPS_DFT_TYPE(DFTSpec_C_64f, DftSpec<Zvp64f>, 0x11, false)
ZVPS_DFT_TYPE(DFTSpec_R_64f, DftSpec<Zvp64f>, 0x12, true)
ZVPS_DFT_TYPE(DFTOutOrdSpec_C_32fc, DftSpec<Zvp32f>, 0x434D414A, false)
ZVPS_DFT_TYPE(DFTOutOrdSpec_C_64fc, DftSpec<Zvp64f>, 0x434D414B, false)
#undef ZVPS_DFT_TYPE

// What a transform object of T builds on.
template <class T>
struct DftParts;
template <>
struct DftParts<Zvp32f> {
    using Complex = Zvp32fc;
    using ComplexFft = ZvpsFFTSpec_C_32fc;
    using RealFft = ZvpsFFTSpec_R_32f;
    using ComplexDft = ZvpsDFTSpec_C_32fc;
};
template <>
struct DftParts<Zvp64f> {
    using Complex = Zvp64fc;
    using ComplexFft = ZvpsFFTSpec_C_64fc;
    using RealFft = ZvpsFFTSpec_R_64f;
    using ComplexDft = ZvpsDFTSpec_C_64fc;
};

constexpr bool isPowerOfTwo(int length) {
    return (length & (length - 1)) == 0;
}

template <class T>
DftPoints<T> interleaved(T* data) {
    return {data, data + 1, 2};
}

// The complex transform of a transform object, in `work`, which is aligned to 32 bytes.
template <class T>
void transformPoints(const DftSpec<T>& spec, FftDirection direction, DftPoints<const T> src, DftPoints<T> dst, T factor,
                     T* work);

// run(work area), with the buffer or memory for the time of the call.
template <class T, class Run>
ZvpStatus withWork(const DftSpec<T>& spec, Zvp8u* buffer, const Run& run) {
    if (spec.workSize == 0) {
        run(static_cast<T*>(nullptr));
        return zvpStsOk;
    }
    const WorkArea work(buffer, spec.workSize);
    if (!work) return zvpStsNoMemory;
    run(work.template as<T>());
    return zvpStsOk;
}

} // namespace zvps
