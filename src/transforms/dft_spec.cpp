// The life cycle of DFT objects.
#include "transforms/dft_objects.hpp"
#include "transforms/dft_plan.hpp"

#include <climits>
#include <cmath>
#include <cstring>
#include <initializer_list>

namespace zvps {
namespace {

constexpr int kLongest = (1 << 27) - 1;      // but powers of two
constexpr int kLongestChirp = (1 << 26) - 1; // without small factors
constexpr int kLongestDefinition = 50;       // by the definition
constexpr int kLargestRadix = 50;
constexpr int kLargestCofactor = 150; // of multiples of 4

// ---- Functions of the parts ----

ZvpStatus initFft(ZvpsFFTSpec_C_32fc** spec, int order, int flag, ZvpHintAlgorithm hint) {
    return zvpsFFTInitAlloc_C_32fc(spec, order, flag, hint);
}
ZvpStatus initFft(ZvpsFFTSpec_C_64fc** spec, int order, int flag, ZvpHintAlgorithm hint) {
    return zvpsFFTInitAlloc_C_64fc(spec, order, flag, hint);
}
ZvpStatus initFft(ZvpsFFTSpec_R_32f** spec, int order, int flag, ZvpHintAlgorithm hint) {
    return zvpsFFTInitAlloc_R_32f(spec, order, flag, hint);
}
ZvpStatus initFft(ZvpsFFTSpec_R_64f** spec, int order, int flag, ZvpHintAlgorithm hint) {
    return zvpsFFTInitAlloc_R_64f(spec, order, flag, hint);
}

// ---- Memory ----

template <class T>
T* allocate(int64_t count) {
    const int64_t doubles = (count * static_cast<int64_t>(sizeof(T)) + 7) / 8;
    return doubles > INT_MAX ? nullptr : reinterpret_cast<T*>(zvpsMalloc_64f(static_cast<int>(doubles)));
}

// Records what a transform works in, with the slack for alignment.
template <class Header>
ZvpStatus recordWork(Header& spec, int64_t bytes) {
    if (bytes > INT_MAX - kFftAlignment) return zvpStsNoMemory;
    spec.workSize = static_cast<int32_t>(bytes > 0 ? bytes + kFftAlignment : 0);
    return zvpStsOk;
}

// Releases what belongs to a transform object, not itself.
template <class T>
void releaseParts(DftSpec<T>& spec) {
    if (spec.fft != nullptr) zvpsFree(spec.fft);
    if (spec.tables != nullptr) zvpsFree(spec.tables);
    if (spec.inner != nullptr) {
        auto* const inner = static_cast<DftSpec<T>*>(spec.inner);
        releaseParts(*inner);
        zvpsFree(inner);
    }
}

// ---- Building ----

template <class T>
ZvpStatus buildComplex(DftSpec<T>& spec, int flag);

// A complex transform that another one works with.
template <class T>
ZvpStatus buildInner(DftSpec<T>& spec, int length) {
    auto* const inner = reinterpret_cast<DftSpec<T>*>(zvpsMalloc_8u(static_cast<int>(sizeof(DftSpec<T>))));
    if (inner == nullptr) return zvpStsNoMemory;
    *inner = {};
    spec.inner = inner;
    inner->tag = FftType<typename DftParts<T>::ComplexDft>::kTag;
    inner->length = length;
    inner->hint = spec.hint;
    return buildComplex(*inner, zvpFftScaleNone);
}

template <class Fft, class T>
ZvpStatus buildFft(DftSpec<T>& spec, int flag) {
    int order = 0;
    while (1 << order < spec.length)
        ++order;
    Fft* fft = nullptr;
    if (const ZvpStatus status = initFft(&fft, order, flag, spec.hint)) return status;
    spec.fft = fft;
    spec.isPowerOfTwo = 1;
    return recordWork(spec, header(fft)->workSize);
}

// Whether all factors are small; records them then.
template <class T>
bool factorise(DftSpec<T>& spec) {
    int rest = spec.length;
    int count = 0;
    const auto take = [&](int factor) {
        spec.factorList[count++] = factor;
        rest /= factor;
    };
    int fours = 0;
    for (; rest % 4 == 0; rest /= 4)
        ++fours;
    if (rest % 2 == 0) take(2);
    for (int i = 0; i < fours; ++i)
        spec.factorList[count++] = 4;
    if (rest >= 9) {
        for (int d = 3; d * d <= rest; d += 2) {
            if (d > kLargestRadix) return false;
            while (rest % d == 0)
                take(d);
        }
    }
    if (count == 0 || rest > (fours > 0 ? kLargestCofactor : kLargestRadix)) return false;
    if (rest > 1) spec.factorList[count++] = rest;
    spec.factors = count;
    spec.isMixedRadix = 1;
    return true;
}

template <class T>
ZvpStatus buildMixed(DftSpec<T>& spec) {
    planDft(static_cast<size_t>(spec.length), spec.plan);
    T* const tables = allocate<T>(static_cast<int64_t>(dftTableSize(spec.plan)));
    if (tables == nullptr) return zvpStsNoMemory;
    spec.tables = tables;
    buildDftTables(spec.plan, tables);
    return recordWork(spec, static_cast<int64_t>(dftWorkSize(spec.plan) * sizeof(T)));
}

template <class T>
ZvpStatus buildDefinition(DftSpec<T>& spec) {
    const auto length = static_cast<size_t>(spec.length);
    T* const tables = allocate<T>(static_cast<int64_t>(definitionTableSize<T>(length, kDftBlock<T>)));
    if (tables == nullptr) return zvpStsNoMemory;
    spec.tables = tables;
    spec.twiddles = tables;
    buildDefinitionTable(length, kDftBlock<T>, tables);
    return recordWork(spec, static_cast<int64_t>(2 * sizeof(T)) * spec.length);
}

// n^2 exceeds its turns long before 2^64.
template <class T>
void storeChirp(size_t length, T* chirp) {
    for (uint64_t n = 0; n < length; ++n)
        storeRoots(n * n, 0, 2 * length, chirp + 2 * n, 1);
}

template <class T>
ZvpStatus buildChirp(DftSpec<T>& spec) {
    int size = 1;
    while (size < 2 * spec.length - 1)
        size *= 2;
    if (const ZvpStatus status = buildInner(spec, size)) return status;
    const auto length = static_cast<size_t>(spec.length);
    const auto points = static_cast<size_t>(size);
    T* const chirp = allocate<T>(static_cast<int64_t>(2 * (length + points)));
    if (chirp == nullptr) return zvpStsNoMemory;
    spec.tables = chirp;
    spec.chirp = chirp;
    storeChirp(length, chirp);
    T* const spectrum = chirp + 2 * length;
    spec.chirpSpectrum = spectrum;
    std::memset(spectrum, 0, 2 * points * sizeof(T));
    for (size_t n = 0; n < length; ++n) {
        for (const size_t i : {n, (points - n) % points}) {
            spectrum[2 * i] = chirp[2 * n];
            spectrum[2 * i + 1] = -chirp[2 * n + 1];
        }
    }
    const auto& inner = *static_cast<const DftSpec<T>*>(spec.inner);
    const DftPoints<T> values = interleaved(spectrum);
    const ZvpStatus status = withWork(inner, nullptr, [&](T* work) {
        transformPoints<T>(inner, kFftForward, {values.re, values.im, values.step}, values, T{1} / static_cast<T>(size),
                           work);
    });
    if (status != zvpStsOk) return status;
    return recordWork(spec, static_cast<int64_t>(2 * points * sizeof(T)) + inner.workSize);
}

// The transform object of a length and a hint.
template <class T>
ZvpStatus buildComplex(DftSpec<T>& spec, int flag) {
    if (spec.length <= kFixedDft) return zvpStsOk;
    if (isPowerOfTwo(spec.length)) return buildFft<typename DftParts<T>::ComplexFft>(spec, flag);
    if (spec.length > kLongest) return zvpStsBadSize;
    if (factorise(spec)) return buildMixed(spec);
    if (spec.length <= kLongestDefinition) return buildDefinition(spec);
    if (spec.length <= kLongestChirp) return buildChirp(spec);
    return zvpStsBadSize;
}

// Even lengths by the complex transform of their pairs, odd ones by that of all samples.
template <class T>
ZvpStatus buildReal(DftSpec<T>& spec, int flag) {
    if (isPowerOfTwo(spec.length)) {
        return spec.length <= kFixedDft ? zvpStsOk : buildFft<typename DftParts<T>::RealFft>(spec, flag);
    }
    if (spec.length > kLongest) return zvpStsBadSize;
    if (spec.length > kFixedDft && !factorise(spec) && spec.length > kLongestChirp) return zvpStsBadSize;
    const bool isEven = spec.length % 2 == 0;
    if (const ZvpStatus status = buildInner(spec, isEven ? spec.length / 2 : spec.length)) return status;
    const int64_t innerWork = static_cast<const DftSpec<T>*>(spec.inner)->workSize;
    if (!isEven) {
        if (spec.length <= kFixedDft) return zvpStsOk;
        return recordWork(spec, 3 * static_cast<int64_t>(sizeof(T)) * (spec.length + 7) + innerWork);
    }
    const auto quarter = static_cast<size_t>(spec.length) / 4;
    T* const twiddles = allocate<T>(static_cast<int64_t>(2 * quarter));
    if (twiddles == nullptr) return zvpStsNoMemory;
    spec.tables = twiddles;
    spec.twiddles = twiddles;
    storeRoots(1, 1, static_cast<uint64_t>(spec.length), twiddles, quarter);
    spec.workSize = static_cast<int32_t>(innerWork);
    return zvpStsOk;
}

template <class T>
T normalisation(int length, int flag) {
    if (flag == zvpFftScaleNone) return 0;
    if (flag == zvpFftScaleSqrt) return static_cast<T>(1.0 / std::sqrt(static_cast<double>(length)));
    return T{1} / static_cast<T>(length);
}

// Of floating-point data.
template <class Opaque>
struct FloatDft {
    using Header = FftHeader<Opaque>;
    using T = decltype(Header::factor);

    static ZvpStatus build(Header& spec, int flag, ZvpHintAlgorithm hint) {
        if (!isFlag(flag)) return zvpStsBadFftFlag;
        spec.hint = hint;
        storeScaling(spec, flag);
        spec.factor = normalisation<T>(spec.length, flag);
        return FftType<Opaque>::kIsReal ? buildReal(spec, flag) : buildComplex(spec, flag);
    }
    static void release(Header& spec) { releaseParts(spec); }
};

// Of 16-bit integers, on one of singles.
template <class Inner>
struct IntegerDft {
    using Floats = FloatDft<Inner>;
    using Header = DftSpec16s;

    static ZvpStatus build(Header& spec, int flag, ZvpHintAlgorithm hint) {
        if (!isFlag(flag)) return zvpStsBadFftFlag;
        spec.flag = flag;
        using InnerHeader = FftHeader<Inner>;
        auto* const inner = reinterpret_cast<InnerHeader*>(zvpsMalloc_8u(static_cast<int>(sizeof(InnerHeader))));
        if (inner == nullptr) return zvpStsNoMemory;
        *inner = {};
        spec.inner = inner;
        inner->tag = FftType<Inner>::kTag;
        inner->length = spec.length;
        if (const ZvpStatus status = Floats::build(*inner, flag, hint)) return status;
        const int64_t count = FftType<Inner>::kIsReal ? spec.length + int64_t{2} : 2 * int64_t{spec.length};
        return recordWork(spec, count * static_cast<int64_t>(sizeof(Zvp32f)) + inner->workSize);
    }
    static void release(Header& spec) {
        if (spec.inner == nullptr) return;
        Floats::release(*static_cast<FftHeader<Inner>*>(spec.inner));
        zvpsFree(spec.inner);
    }
};

// ---- Operations ----

template <class Dft, class Opaque>
ZvpStatus initAlloc(Opaque** result, int length, int flag, ZvpHintAlgorithm hint) {
    using Header = FftHeader<Opaque>;
    if (result == nullptr) return zvpStsNullPtr;
    if (length < 1) return zvpStsBadSize;
    auto* const opaque = reinterpret_cast<Opaque*>(zvpsMalloc_8u(static_cast<int>(sizeof(Header))));
    if (opaque == nullptr) return zvpStsNoMemory;
    Header& spec = *header(opaque);
    spec = {};
    spec.tag = FftType<Opaque>::kTag;
    spec.length = length;
    const ZvpStatus status = Dft::build(spec, flag, hint);
    if (status != zvpStsOk) {
        Dft::release(spec);
        zvpsFree(opaque);
        return status;
    }
    *result = opaque;
    return zvpStsOk;
}

template <class Dft, class Opaque>
ZvpStatus freeSpec(Opaque* opaque) {
    if (const ZvpStatus status = checkTransform(opaque)) return status;
    Dft::release(*header(opaque));
    header(opaque)->tag = 0;
    zvpsFree(opaque);
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus getBufSize(const Opaque* spec, int* size) {
    if (spec == nullptr || size == nullptr) return zvpStsNullPtr;
    if (const ZvpStatus status = checkTransform(spec)) return status;
    *size = header(spec)->workSize;
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_DFT_SPEC(NAME, CODE, ...)                                                                                 \
    ZvpStatus zvps##NAME##InitAlloc_##CODE(Zvps##NAME##Spec_##CODE** spec, int len, int flag, ZvpHintAlgorithm hint) { \
        return zvps::initAlloc<zvps::__VA_ARGS__>(spec, len, flag, hint);                                              \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##Free_##CODE(Zvps##NAME##Spec_##CODE* spec) {                                                 \
        return zvps::freeSpec<zvps::__VA_ARGS__>(spec);                                                                \
    }                                                                                                                  \
    ZvpStatus zvps##NAME##GetBufSize_##CODE(const Zvps##NAME##Spec_##CODE* spec, int* size) {                          \
        return zvps::getBufSize(spec, size);                                                                           \
    }

ZVPS_DFT_SPEC(DFT, C_32fc, FloatDft<ZvpsDFTSpec_C_32fc>)
ZVPS_DFT_SPEC(DFT, C_32f, FloatDft<ZvpsDFTSpec_C_32f>)
ZVPS_DFT_SPEC(DFT, R_32f, FloatDft<ZvpsDFTSpec_R_32f>)
ZVPS_DFT_SPEC(DFT, C_64fc, FloatDft<ZvpsDFTSpec_C_64fc>)
ZVPS_DFT_SPEC(DFT, C_64f, FloatDft<ZvpsDFTSpec_C_64f>)
ZVPS_DFT_SPEC(DFT, R_64f, FloatDft<ZvpsDFTSpec_R_64f>)
ZVPS_DFT_SPEC(DFT, C_16sc, IntegerDft<ZvpsDFTSpec_C_32fc>)
ZVPS_DFT_SPEC(DFT, C_16s, IntegerDft<ZvpsDFTSpec_C_32f>)
ZVPS_DFT_SPEC(DFT, R_16s, IntegerDft<ZvpsDFTSpec_R_32f>)
ZVPS_DFT_SPEC(DFTOutOrd, C_32fc, FloatDft<ZvpsDFTOutOrdSpec_C_32fc>)
ZVPS_DFT_SPEC(DFTOutOrd, C_64fc, FloatDft<ZvpsDFTOutOrdSpec_C_64fc>)
