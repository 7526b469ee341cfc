// The FFT objects as entries see them: types, tags, headers, and the memory that transforms work in.
#pragma once

#include "core/level.hpp"
#include "transforms/fft.table.hpp"
#include "zvps/fft.h"
#include "zvps/memory.h"

namespace zvps {

// ---- Headers ----

// Of 32-bit integers; the object of the floating-point transform follows the header.
struct FftSpec32s {
    uint32_t tag;
    int32_t order;
    int32_t hint;
    int32_t workSize;
    int32_t isAllocated;
    const void* inner;
};
static_assert(offsetof(FftSpec32s, workSize) == 12 && offsetof(FftSpec32s, isAllocated) == 16);
static_assert(offsetof(FftSpec32s, inner) == 24 && sizeof(FftSpec32s) == 32);

// Of 16-bit integers; without an inner transform object the transform is done in integers.
struct FftSpec16s {
    uint32_t tag;
    int32_t order;
    int32_t scalesForward;
    int32_t scalesInverse;
    int32_t hint;
    int32_t workSize;
    int32_t isAllocated;
    int32_t halvings; // the normalisation factor is 2^(-halvings / 2)
    const void* inner;
};

// What an opaque type stands for.
template <class Opaque>
struct FftType;
#define ZVPS_FFT_TYPE(CODE, HEADER, TAG)                                                                               \
    template <>                                                                                                        \
    struct FftType<ZvpsFFTSpec_##CODE> {                                                                               \
        using Header = HEADER;                                                                                         \
        static constexpr uint32_t kTag = TAG;                                                                          \
        static constexpr bool kIsReal = #CODE[0] == 'R';                                                               \
    };
ZVPS_FFT_TYPE(C_16sc, FftSpec16s, 1)
ZVPS_FFT_TYPE(C_16s, FftSpec16s, 2)
ZVPS_FFT_TYPE(R_16s, FftSpec16s, 3)
ZVPS_FFT_TYPE(C_32fc, FftSpec<Zvp32f>, 4)
ZVPS_FFT_TYPE(C_32f, FftSpec<Zvp32f>, 5)
ZVPS_FFT_TYPE(R_32f, FftSpec<Zvp32f>, 6)
ZVPS_FFT_TYPE(C_64fc, FftSpec<Zvp64f>, 7)
ZVPS_FFT_TYPE(C_64f, FftSpec<Zvp64f>, 8)
ZVPS_FFT_TYPE(R_64f, FftSpec<Zvp64f>, 9)
ZVPS_FFT_TYPE(C_32sc, FftSpec32s, 0x434D414C)
ZVPS_FFT_TYPE(C_32s, FftSpec32s, 0x434D414D)
ZVPS_FFT_TYPE(R_32s, FftSpec32s, 0x434D414E)
ZVPS_FFT_TYPE(R_16s32s, FftSpec32s, 0x434D414F)
#undef ZVPS_FFT_TYPE

template <class Opaque>
using FftHeader = typename FftType<Opaque>::Header;

template <class Opaque>
const FftHeader<Opaque>* header(const Opaque* spec) {
    return reinterpret_cast<const FftHeader<Opaque>*>(spec);
}
template <class Opaque>
FftHeader<Opaque>* header(Opaque* spec) {
    return reinterpret_cast<FftHeader<Opaque>*>(spec);
}

// Checks the object, then the data.
template <class Opaque, class... Pointers>
ZvpStatus checkTransform(const Opaque* spec, Pointers... data) {
    if (spec == nullptr) return zvpStsNullPtr;
    if (header(spec)->tag != FftType<Opaque>::kTag) return zvpStsContextMismatch;
    if (((data == nullptr) || ...)) return zvpStsNullPtr;
    return zvpStsOk;
}

// ---- Kernels ----

template <class T>
const FftKernels<T>& fftKernels() {
    if constexpr (sizeof(T) == 4) {
        return *kernels().fft32f;
    } else {
        return *kernels().fft64f;
    }
}
template <class T>
const RealFftKernels<T>& realFftKernels() {
    if constexpr (sizeof(T) == 4) {
        return *kernels().realFft32f;
    } else {
        return *kernels().realFft64f;
    }
}

// ---- Normalisation ----

inline bool isFlag(int flag) {
    return flag == zvpFftScaleFwd || flag == zvpFftScaleInv || flag == zvpFftScaleSqrt || flag == zvpFftScaleNone;
}

template <class Header>
void storeScaling(Header& spec, int flag) {
    spec.scalesForward = flag == zvpFftScaleFwd || flag == zvpFftScaleSqrt;
    spec.scalesInverse = flag == zvpFftScaleInv || flag == zvpFftScaleSqrt;
}

// ---- Memory ----

inline constexpr int kFftAlignment = 32;

inline Zvp8u* alignedUp(Zvp8u* p, uintptr_t alignment = kFftAlignment) {
    return p + (0 - reinterpret_cast<uintptr_t>(p)) % alignment;
}

constexpr int64_t rounded(int64_t bytes) {
    return (bytes + kFftAlignment - 1) / kFftAlignment * kFftAlignment;
}

// Bytes beyond 0 with those for the alignment of their start.
constexpr int64_t withSlack(int64_t bytes) {
    return bytes > 0 ? bytes + kFftAlignment : 0;
}

// What GetSize reports.
struct FftSizes {
    int64_t spec;
    int64_t init;
    int64_t work;
};

// The caller's buffer from an aligned address on, or if there is none, memory until the end of the call.
class WorkArea {
  public:
    WorkArea(Zvp8u* buffer, int size)
        : owned_(buffer == nullptr ? zvpsMalloc_8u(size) : nullptr),
          bytes_(buffer == nullptr ? owned_ : alignedUp(buffer)) {}
    ~WorkArea() {
        if (owned_ != nullptr) zvpsFree(owned_);
    }
    WorkArea(const WorkArea&) = delete;
    WorkArea& operator=(const WorkArea&) = delete;

    explicit operator bool() const { return bytes_ != nullptr; }
    Zvp8u* bytes() const { return bytes_; }
    template <class T>
    T* as() const {
        return reinterpret_cast<T*>(bytes_);
    }

  private:
    Zvp8u* owned_;
    Zvp8u* bytes_;
};

// ---- Life cycle ----

// Lets init(built, specMem, initBuf) build an object in memory of the library; on an error nothing stays allocated.
template <class Opaque, class Init>
ZvpStatus buildInAllocated(Opaque** spec, int specSize, int initSize, Init init) {
    Zvp8u* const specMem = zvpsMalloc_8u(specSize);
    if (specMem == nullptr) return zvpStsNoMemory;
    Zvp8u* const initBuf = initSize > 0 ? zvpsMalloc_8u(initSize) : nullptr;
    Opaque* built = nullptr;
    const ZvpStatus status = initSize > 0 && initBuf == nullptr ? zvpStsNoMemory : init(&built, specMem, initBuf);
    zvpsFree(initBuf);
    if (status != zvpStsOk) {
        zvpsFree(specMem);
        return status;
    }
    header(built)->isAllocated = 1;
    *spec = built;
    return zvpStsOk;
}

// The recorded size of the buffer with room for its alignment.
template <class Opaque>
ZvpStatus getAlignedBufSize(const Opaque* spec, int* size) {
    if (spec == nullptr || size == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = checkTransform(spec)) return status;
    *size = static_cast<int>(withSlack(header(spec)->workSize));
    return zvpStsOk;
}

} // namespace zvps
