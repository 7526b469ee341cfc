// The life cycle of DCT objects.
#include "transforms/dct_objects.hpp"
#include "transforms/sines.hpp"

#include <cmath>
#include <limits>

namespace zvps {
namespace {

constexpr int64_t kHeaderBytes = 128;
constexpr int64_t kFixedSize = 160; // of an object without tables

constexpr bool isPowerOfTwo(int n) {
    return (n & (n - 1)) == 0;
}

int orderOf(int powerOfTwo) {
    return __builtin_ctz(static_cast<unsigned>(powerOfTwo));
}

// What a length is transformed by.
enum class Method { fixed, table, fft, dft };

Method methodOf(int length) {
    if (isPowerOfTwo(length)) return length <= 8 ? Method::fixed : length <= 32 ? Method::table : Method::fft;
    return length <= static_cast<int>(kMostDctTable) ? Method::table : Method::dft;
}

// ---- Tables ----

constexpr size_t tableValues(int length) {
    return isPowerOfTwo(length) ? static_cast<size_t>(length) : 4 * static_cast<size_t>(length);
}

// Of the DFT in two steps; the twiddles follow its table.
template <class T>
constexpr bool fitsTables() {
    for (int n = kMostStoredMatrix + 1; n <= static_cast<int>(kMostDctTable); ++n) {
        const auto size = static_cast<size_t>(n);
        if (!isPowerOfTwo(n) && dctTable(dctPlan<T>(size)).values() + 2 * dctBins(size) > tableValues(n)) return false;
    }
    return true;
}
static_assert(fitsTables<float>() && fitsTables<double>());

template <class T>
constexpr int64_t twiddleBytes(int length) {
    return rounded(2 * static_cast<int64_t>(dctBins(static_cast<size_t>(length)) * sizeof(T)));
}

// cosines[k] = factor * cos(step * k) and the sines likewise, for k < count and angles up to pi / 4. The products and
// sums are in extended precision.
template <class T>
void storeWave(long double step, long double factor, size_t count, T* cosines, T* sines) {
    constexpr size_t kBlock = 64;
    SineCosine within[kBlock];
    for (size_t k = 0; k < kBlock && k < count; ++k) {
        within[k] = sineCosine(step * static_cast<long double>(k));
    }
    SineCosine start{};
    for (size_t k = 0; k < count; ++k) {
        if (k % kBlock == 0) start = sineCosine(step * static_cast<long double>(k));
        const SineCosine& rest = within[k % kBlock];
        cosines[k] = static_cast<T>(factor * (start.cosine * rest.cosine - start.sine * rest.sine));
        sines[k] = static_cast<T>(factor * (start.sine * rest.cosine + start.cosine * rest.sine));
    }
}

// The inverse DFT adds every bin but the first and N/2 to its conjugate.
template <class T>
void storeTwiddles(DctDirection direction, int length, T* p) {
    const auto n = static_cast<long double>(length);
    const size_t bins = dctBins(static_cast<size_t>(length));
    const long double factor = std::sqrt((direction == kDctForward ? 2.0L : 0.5L) / n);
    storeWave(kTurn / (4 * n), factor, bins, p, p + bins);
    p[0] = static_cast<T>(1 / std::sqrt(n));
    if (length % 2 == 0) p[bins - 1] = static_cast<T>(1 / std::sqrt(n));
}

// p[i] = cos(2 pi i / n), then the sines.
template <class T>
void storeCircle(size_t n, T* p) {
    for (size_t i = 0; i < n; ++i) {
        const SineCosine value = sineCosineOf(i, n);
        p[i] = static_cast<T>(value.cosine);
        p[n + i] = static_cast<T>(value.sine);
    }
}

template <class T>
void buildComposite(DctDirection direction, DctSpec<T>& spec, T* p) {
    const auto n = static_cast<size_t>(spec.length);
    const DctPlan plan = dctPlan<T>(n);
    const DctTable table = dctTable(plan);
    spec.rows = static_cast<int32_t>(plan.rows);
    spec.columns = static_cast<int32_t>(plan.columns);
    spec.table = p;
    storeCircle(plan.rows, p);
    p += table.alongColumns;
    storeCircle(plan.columns, p);
    p += table.alongRows;
    T circle[2 * kMostDctTable];
    storeCircle(n, circle);
    for (size_t column = 1; column < plan.columns; ++column) {
        for (size_t part = 0; part < 2; ++part) {
            for (size_t k = 0; k <= plan.rows / 2; ++k) {
                *p++ = circle[part * n + column * k % n];
            }
        }
    }
    spec.twiddles = p;
    storeTwiddles(direction, spec.length, p);
}

// Whether a product with a matrix is faster than a DFT in two steps: as long as the matrix does not crowd the
// first-level cache, or the steps do not share the work.
template <class T>
bool isMatrixFaster(size_t n) {
    return dctMatrixValues<T>(n) * sizeof(T) <= 25600 || dctPlan<T>(n).columns <= 2;
}

// ---- Sizes ----

// As GetSize reports them; dftWork: the size of a DFT object's buffer. Integers need room for their conversion too, but
// in fixed transforms.
template <class Opaque>
ZvpStatus sizesOf(int length, ZvpHintAlgorithm hint, int dftWork, FftSizes& sizes) {
    using T = decltype(FftHeader<Opaque>::factor);
    constexpr int64_t kPart = sizeof(T);
    sizes = {kFixedSize, 0, 0};
    switch (methodOf(length)) {
    case Method::fixed:
        break;
    case Method::table:
        sizes.spec += rounded(kPart * static_cast<int64_t>(tableValues(length)));
        sizes.work = withSlack(kPart * length);
        break;
    case Method::fft: {
        int spec = 0;
        int init = 0;
        int work = 0;
        if (RealTransforms<T>::fftSizes(orderOf(length), zvpFftScaleNone, hint, &spec, &init, &work) != zvpStsOk) {
            return zvpStsBadSize;
        }
        sizes.spec += twiddleBytes<T>(length) + rounded(spec);
        sizes.init = withSlack(init);
        sizes.work = withSlack(dctSpectrumBytes<T>(length) + work);
        break;
    }
    case Method::dft:
        sizes.spec += twiddleBytes<T>(length);
        sizes.work = withSlack(dctSpectrumBytes<T>(length) + dftWork);
        break;
    }
    if (FftType<Opaque>::kIsInteger) sizes.work += kPart * length;
    constexpr int64_t kMost = std::numeric_limits<int>::max();
    return sizes.spec > kMost || sizes.init > kMost || sizes.work > kMost ? zvpStsBadSize : zvpStsOk;
}

// The size of the buffer that a DFT object works in, which it alone knows.
template <class T>
ZvpStatus dftWork(int length, ZvpHintAlgorithm hint, int* size) {
    using Transforms = RealTransforms<T>;
    typename Transforms::Dft* dft = nullptr;
    if (const ZvpStatus status = Transforms::dftInitAlloc(&dft, length, zvpFftScaleNone, hint)) return status;
    const ZvpStatus status = Transforms::dftBufSize(dft, size);
    Transforms::dftFree(dft);
    return status;
}

// ---- Operations ----

template <class Opaque>
ZvpStatus getSize(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize) {
    if (len < 1) return zvpStsBadSize;
    if (specSize == nullptr || initBufSize == nullptr || workBufSize == nullptr) return zvpStsNullPtr;
    int inner = 0;
    if (methodOf(len) == Method::dft) {
        if (const ZvpStatus status = dftWork<decltype(FftHeader<Opaque>::factor)>(len, hint, &inner)) return status;
    }
    FftSizes sizes{};
    if (const ZvpStatus status = sizesOf<Opaque>(len, hint, inner, sizes)) return status;
    *specSize = static_cast<int>(sizes.spec);
    *initBufSize = static_cast<int>(sizes.init);
    *workBufSize = static_cast<int>(sizes.work);
    return zvpStsOk;
}

// The tables and the inner transform object; `area` is where the object's tables start.
template <class T>
ZvpStatus build(DctSpec<T>& spec, DctDirection direction, Zvp8u* area, Zvp8u* initBuf, int* dftWork) {
    using Transforms = RealTransforms<T>;
    T* const tables = reinterpret_cast<T*>(area);
    if (spec.length <= static_cast<int>(kMostStoredMatrix)) {
        spec.usesMatrix = 1;
        spec.table = storedDctMatrix<T>(direction, static_cast<size_t>(spec.length));
        return zvpStsOk;
    }
    const Method method = methodOf(spec.length);
    if (method == Method::table) {
        buildComposite(direction, spec, tables);
        return zvpStsOk;
    }
    if (method == Method::fft) {
        typename Transforms::Fft* fft = nullptr;
        Zvp8u* const memory = area + twiddleBytes<T>(spec.length);
        if (const ZvpStatus status =
                Transforms::fftInit(&fft, orderOf(spec.length), zvpFftScaleNone, spec.hint, memory, initBuf)) {
            return status;
        }
        spec.usesFft = 1;
        spec.inner = fft;
    } else {
        typename Transforms::Dft* dft = nullptr;
        if (const ZvpStatus status = Transforms::dftInitAlloc(&dft, spec.length, zvpFftScaleNone, spec.hint)) {
            return status;
        }
        spec.usesDft = 1;
        spec.inner = dft;
        Transforms::dftBufSize(dft, dftWork);
    }
    spec.twiddles = tables;
    storeTwiddles(direction, spec.length, tables);
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus init(Opaque** result, int len, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf) {
    if (result == nullptr) return zvpStsNullPtr;
    if (len < 1) return zvpStsBadSize;
    if (specMem == nullptr) return zvpStsNullPtr;
    FftSizes sizes{};
    if (const ZvpStatus status = sizesOf<Opaque>(len, hint, 0, sizes)) return status;
    auto* const opaque = reinterpret_cast<Opaque*>(alignedUp(specMem));
    auto& spec = *header(opaque);
    using T = decltype(FftHeader<Opaque>::factor);
    spec = {};
    spec.length = len;
    spec.hint = hint;
    const Method method = methodOf(len);
    if (method == Method::fixed) {
        spec.isFixed = 1;
    } else {
        spec.firstFactor = static_cast<T>(1.0 / std::sqrt(static_cast<double>(len)));
        spec.factor = static_cast<T>(1.414213562373095 / std::sqrt(static_cast<double>(len)));
        spec.isPowerOfTwo = isPowerOfTwo(len) ? 1 : 0;
    }
    Zvp8u* const area = reinterpret_cast<Zvp8u*>(opaque) + kHeaderBytes;
    Zvp8u* const scratch = initBuf == nullptr ? nullptr : alignedUp(initBuf);
    int inner = 0;
    if (const ZvpStatus status = build(spec, FftType<Opaque>::kDirection, area, scratch, &inner)) return status;
    sizesOf<Opaque>(len, hint, inner, sizes);
    spec.workSize = static_cast<int32_t>(sizes.work > kFftAlignment ? sizes.work - kFftAlignment : 0);
    spec.tag = FftType<Opaque>::kTag;
    *result = opaque;
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus initAlloc(Opaque** spec, int len, ZvpHintAlgorithm hint) {
    if (spec == nullptr) return zvpStsNullPtr;
    if (len < 1) return zvpStsBadSize;
    FftSizes sizes{};
    if (const ZvpStatus status = sizesOf<Opaque>(len, hint, 0, sizes)) return status;
    using T = decltype(FftHeader<Opaque>::factor);
    const auto n = static_cast<size_t>(len);
    const bool hasMatrix = methodOf(len) == Method::table && n > kMostStoredMatrix && isMatrixFaster<T>(n);
    if (hasMatrix) sizes.spec = kHeaderBytes + 64 + static_cast<int64_t>(dctMatrixValues<T>(n) * sizeof(T));
    const auto specSize = static_cast<int>(sizes.spec);
    const auto initSize = static_cast<int>(sizes.init);
    const ZvpStatus status =
        buildInAllocated(spec, specSize, initSize, [=](Opaque** built, Zvp8u* specMem, Zvp8u* initBuf) {
            return init(built, len, hint, specMem, initBuf);
        });
    if (status == zvpStsOk && hasMatrix) {
        // In the place of the smaller tables.
        T* const matrix = reinterpret_cast<T*>(alignedUp(reinterpret_cast<Zvp8u*>(*spec) + kHeaderBytes, 64));
        storeDctMatrix(FftType<Opaque>::kDirection, n, matrix);
        header(*spec)->usesMatrix = 1;
        header(*spec)->table = matrix;
    }
    return status;
}

template <class Opaque>
ZvpStatus freeSpec(Opaque* opaque) {
    if (const ZvpStatus status = checkTransform(opaque)) return status;
    auto& spec = *header(opaque);
    using Transforms = RealTransforms<decltype(FftHeader<Opaque>::factor)>;
    spec.tag = 0;
    const ZvpStatus status =
        spec.usesDft == 1 ? Transforms::dftFree(static_cast<typename Transforms::Dft*>(spec.inner)) : zvpStsOk;
    if (spec.isAllocated == 1) zvpsFree(opaque);
    return status;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_DCT_SPEC(NAME, TYPE)                                                                                      \
    ZvpStatus zvps##NAME##GetSize_##TYPE(int len, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,              \
                                         int* workBufSize) {                                                           \
        return zvps::getSize<Zvps##NAME##Spec_##TYPE>(len, hint, specSize, initBufSize, workBufSize);                  \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##Init_##TYPE(Zvps##NAME##Spec_##TYPE** spec, int len, ZvpHintAlgorithm hint, Zvp8u* specMem,  \
                                      Zvp8u* initBuf) {                                                                \
        return zvps::init(spec, len, hint, specMem, initBuf);                                                          \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##InitAlloc_##TYPE(Zvps##NAME##Spec_##TYPE** spec, int len, ZvpHintAlgorithm hint) {           \
        return zvps::initAlloc(spec, len, hint);                                                                       \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##Free_##TYPE(Zvps##NAME##Spec_##TYPE* spec) {                                                 \
        return zvps::freeSpec(spec);                                                                                   \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##GetBufSize_##TYPE(const Zvps##NAME##Spec_##TYPE* spec, int* size) {                          \
        return zvps::getAlignedBufSize(spec, size);                                                                    \
    }

ZVPS_DCT_SPEC(DCTFwd, 16s)
ZVPS_DCT_SPEC(DCTFwd, 32f)
ZVPS_DCT_SPEC(DCTFwd, 64f)
ZVPS_DCT_SPEC(DCTInv, 16s)
ZVPS_DCT_SPEC(DCTInv, 32f)
ZVPS_DCT_SPEC(DCTInv, 64f)
