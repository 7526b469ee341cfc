// The Hilbert transforms: spectra without their negative frequencies.
#include "zvps/hilbert.h"
#include "transforms/fft_objects.hpp"
#include "zvps/arithmetic.h"
#include "zvps/convert.h"
#include "zvps/dft.h"
#include "zvps/initialisation.h"

#include <algorithm>
#include <limits>

namespace zvps {
namespace {

struct HilbertSpec {
    uint32_t tag;
    int32_t length;
    int32_t workSize; // the larger one of the two transforms'
    int32_t hint;
    ZvpsDFTSpec_C_32fc* complex;
    ZvpsDFTSpec_R_32f* real;
};

} // namespace

#define ZVPS_HILBERT_TYPE(CODE, TAG)                                                                                   \
    template <>                                                                                                        \
    struct FftType<ZvpsHilbertSpec_##CODE> {                                                                           \
        using Header = HilbertSpec;                                                                                    \
        static constexpr uint32_t kTag = TAG;                                                                          \
    };
ZVPS_HILBERT_TYPE(32f32fc, 0x434D4145)
ZVPS_HILBERT_TYPE(16s32fc, 0x434D4146)
ZVPS_HILBERT_TYPE(16s16sc, 0x434D4147)
#undef ZVPS_HILBERT_TYPE

namespace {

// ---- Life cycle ----

ZvpStatus buildTransforms(HilbertSpec& spec) {
    if (const ZvpStatus status = zvpsDFTInitAlloc_C_32fc(&spec.complex, spec.length, zvpFftScaleInv, spec.hint)) {
        return status;
    }
    ZvpStatus status = zvpsDFTInitAlloc_R_32f(&spec.real, spec.length, zvpFftScaleInv, spec.hint);
    if (status != zvpStsOk) {
        zvpsDFTFree_C_32fc(spec.complex);
        return status;
    }
    int forReal = 0;
    status = zvpsDFTGetBufSize_C_32fc(spec.complex, &spec.workSize);
    if (status == zvpStsOk) status = zvpsDFTGetBufSize_R_32f(spec.real, &forReal);
    if (status != zvpStsOk) {
        zvpsDFTFree_C_32fc(spec.complex);
        zvpsDFTFree_R_32f(spec.real);
        return status;
    }
    spec.workSize = std::max(spec.workSize, forReal);
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus initAlloc(Opaque** result, int len, ZvpHintAlgorithm hint) {
    if (result == nullptr) return zvpStsNullPtr;
    if (len < 1) return zvpStsBadSize;
    *result = nullptr;
    auto* const opaque = reinterpret_cast<Opaque*>(zvpsMalloc_8u(static_cast<int>(sizeof(HilbertSpec))));
    if (opaque == nullptr) return zvpStsNoMemory;
    *header(opaque) = {FftType<Opaque>::kTag, len, 0, hint, nullptr, nullptr};
    if (const ZvpStatus status = buildTransforms(*header(opaque))) {
        zvpsFree(opaque);
        return status;
    }
    *result = opaque;
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus freeSpec(Opaque* opaque) {
    if (const ZvpStatus status = checkTransform(opaque)) return status;
    HilbertSpec& spec = *header(opaque);
    if (const ZvpStatus status = zvpsDFTFree_C_32fc(spec.complex)) return status;
    if (const ZvpStatus status = zvpsDFTFree_R_32f(spec.real)) return status;
    spec.tag = 0;
    zvpsFree(opaque);
    return zvpStsOk;
}

// ---- Transforms ----

// Up to this length the imaginary parts are 0.
constexpr int kMostTrivial = 2;

// Doubles the positive frequencies and drops the negative ones; the bins 0 and L/2 are their own mirrors. The bins in
// CCS layout fill the first half of dst.
ZvpStatus analyticSignal(const Zvp32f* src, Zvp32fc* dst, const HilbertSpec& spec, Zvp8u* buffer) {
    const ZvpStatus status = zvpsDFTFwd_RToCCS_32f(src, reinterpret_cast<Zvp32f*>(dst), spec.real, buffer);
    if (status != zvpStsOk) return status;
    const int bins = (spec.length + 1) / 2 - 1;
    zvpsAdd_32fc_I(dst + 1, dst + 1, bins);
    zvpsZero_32fc(dst + spec.length / 2 + 1, bins);
    return zvpsDFTInv_CToC_32fc(dst, dst, spec.complex, buffer);
}

// run(buffer, numbers) with the transforms' buffer and room for so many numbers for each sample.
template <class Run>
ZvpStatus withBlock(const HilbertSpec& spec, int numbers, const Run& run) {
    const int64_t behind = rounded(spec.workSize);
    const int64_t bytes = behind + int64_t{spec.length} * numbers * static_cast<int64_t>(sizeof(Zvp32f));
    if (bytes == 0) return run(nullptr, nullptr);
    if (bytes > std::numeric_limits<int>::max()) return zvpStsNoMemory;
    const WorkArea work(nullptr, static_cast<int>(bytes));
    if (!work) return zvpStsNoMemory;
    return run(work.bytes(), reinterpret_cast<Zvp32f*>(work.bytes() + behind));
}

ZvpStatus hilbert(const Zvp32f* src, Zvp32fc* dst, const HilbertSpec& spec, int) {
    if (spec.length <= kMostTrivial) {
        for (int i = 0; i < spec.length; ++i)
            dst[i] = {src[i], 0};
        return zvpStsOk;
    }
    return withBlock(spec, 0, [&](Zvp8u* buffer, Zvp32f*) { return analyticSignal(src, dst, spec, buffer); });
}

ZvpStatus hilbert(const Zvp16s* src, Zvp32fc* dst, const HilbertSpec& spec, int) {
    if (spec.length <= kMostTrivial) {
        for (int i = 0; i < spec.length; ++i)
            dst[i] = {static_cast<Zvp32f>(src[i]), 0};
        return zvpStsOk;
    }
    return withBlock(spec, 1, [&](Zvp8u* buffer, Zvp32f* samples) {
        zvpsConvert_16s32f(src, samples, spec.length);
        return analyticSignal(samples, dst, spec, buffer);
    });
}

ZvpStatus hilbert(const Zvp16s* src, Zvp16sc* dst, const HilbertSpec& spec, int scaleFactor) {
    auto* const parts = reinterpret_cast<Zvp16s*>(dst);
    if (spec.length <= kMostTrivial) {
        Zvp32f values[2 * kMostTrivial] = {};
        for (int i = 0; i < spec.length; ++i)
            values[2 * i] = static_cast<Zvp32f>(src[i]);
        return zvpsConvert_32f16s_Sfs(values, parts, 2 * spec.length, zvpRndNear, scaleFactor);
    }
    return withBlock(spec, 3, [&](Zvp8u* buffer, Zvp32f* numbers) {
        auto* const signal = reinterpret_cast<Zvp32fc*>(numbers);
        Zvp32f* const samples = numbers + 2 * static_cast<size_t>(spec.length);
        zvpsConvert_16s32f(src, samples, spec.length);
        if (const ZvpStatus status = analyticSignal(samples, signal, spec, buffer)) return status;
        return zvpsConvert_32f16s_Sfs(numbers, parts, 2 * spec.length, zvpRndNear, scaleFactor);
    });
}

template <class Src, class Dst, class Opaque>
ZvpStatus run(const Src* src, Dst* dst, const Opaque* spec, int scaleFactor) {
    if (src == nullptr || dst == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = checkTransform(spec)) return status;
    return hilbert(src, dst, *header(spec), scaleFactor);
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_HILBERT_SPEC(CODE)                                                                                        \
    ZvpStatus zvpsHilbertInitAlloc_##CODE(ZvpsHilbertSpec_##CODE** spec, int len, ZvpHintAlgorithm hint) {             \
        return zvps::initAlloc(spec, len, hint);                                                                       \
    }                                                                                                                  \
    ZvpStatus zvpsHilbertFree_##CODE(ZvpsHilbertSpec_##CODE* spec) {                                                   \
        return zvps::freeSpec(spec);                                                                                   \
    }
ZVPS_HILBERT_SPEC(32f32fc)
ZVPS_HILBERT_SPEC(16s32fc)
ZVPS_HILBERT_SPEC(16s16sc)

ZvpStatus zvpsHilbert_32f32fc(const Zvp32f* src, Zvp32fc* dst, const ZvpsHilbertSpec_32f32fc* spec) {
    return zvps::run(src, dst, spec, 0);
}
ZvpStatus zvpsHilbert_16s32fc(const Zvp16s* src, Zvp32fc* dst, const ZvpsHilbertSpec_16s32fc* spec) {
    return zvps::run(src, dst, spec, 0);
}
ZvpStatus zvpsHilbert_16s16sc_Sfs(const Zvp16s* src, Zvp16sc* dst, const ZvpsHilbertSpec_16s16sc* spec,
                                  int scaleFactor) {
    return zvps::run(src, dst, spec, scaleFactor);
}
