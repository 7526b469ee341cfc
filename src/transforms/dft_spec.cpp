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
    buildDefinitionTable(length, kDftBlock<T>, true, tables);
    return recordWork(spec, static_cast<int64_t>(2 * sizeof(T)) * spec.length);
}

// n^2 exceeds its turns long before 2^64.
template <class T>
void storeChirp(size_t length, T* chirp) {
    for (uint64_t n = 0; n < length; ++n)
        storeRoots(n * n, 0, 2 * length, chirp + 2 * n, 1);
}

// Transforms the sequence of a convolution and divides it by its length.
template <class T>
ZvpStatus transformKernel(DftSpec<T>& spec, T* sequence) {
    spec.kernelSpectrum = sequence;
    const auto& inner = *static_cast<const DftSpec<T>*>(spec.inner);
    const ZvpStatus status = withWork(inner, nullptr, [&](T* work) {
        transformPoints(inner, kFftForward, interleaved<const T>(sequence), interleaved(sequence),
                        T{1} / static_cast<T>(inner.length), work);
    });
    if (status != zvpStsOk) return status;
    return recordWork(spec, static_cast<int64_t>(2 * sizeof(T)) * inner.length + inner.workSize);
}

// What a complex transform takes, in nanoseconds, about.
template <class T>
double timeOf(int length) {
    if (!isPowerOfTwo(length)) {
        DftPlan<T> plan;
        return planDft(static_cast<size_t>(length), plan);
    }
    // As measured: the longer, the more of its passes leave the caches.
    const double order = std::log2(length);
    const double blocks = static_cast<double>(length) / static_cast<double>(kDftBlock<T>);
    return blocks * (4.2 + (order > 10 ? 0.85 * (order - 10) : 0) + (order > 16 ? 6 : 0));
}

// The fastest length of at least `least` points for a convolution.
template <class T>
int convolutionLength(int least) {
    int best = 0;
    double bestTime = 0;
    for (const int odd : {1, 3, 5, 7, 9, 15, 21, 25, 27, 35, 45, 63}) {
        int64_t length = 16 * odd;
        while (length < least)
            length *= 2;
        const double time = length > kLongest && odd > 1 ? HUGE_VAL : timeOf<T>(static_cast<int>(length));
        if (best != 0 && time >= bestTime) continue;
        best = static_cast<int>(length);
        bestTime = time;
    }
    return best;
}

template <class T>
ZvpStatus buildChirp(DftSpec<T>& spec) {
    const int size = convolutionLength<T>(2 * spec.length - 1);
    if (const ZvpStatus status = buildInner(spec, size)) return status;
    const auto length = static_cast<size_t>(spec.length);
    const auto points = static_cast<size_t>(size);
    T* const chirp = allocate<T>(static_cast<int64_t>(2 * (length + points)));
    if (chirp == nullptr) return zvpStsNoMemory;
    spec.tables = chirp;
    spec.chirp = chirp;
    storeChirp(length, chirp);
    T* const sequence = chirp + 2 * length;
    std::memset(sequence, 0, 2 * points * sizeof(T));
    for (size_t n = 0; n < length; ++n) {
        for (const size_t i : {n, (points - n) % points}) {
            sequence[2 * i] = chirp[2 * n];
            sequence[2 * i + 1] = -chirp[2 * n + 1];
        }
    }
    return transformKernel(spec, sequence);
}

bool isPrime(int n) {
    for (int d = 2; d * d <= n; ++d) {
        if (n % d == 0) return false;
    }
    return true;
}

uint64_t power(uint64_t base, int exponent, uint64_t modulus) {
    uint64_t result = 1;
    for (; exponent > 0; exponent /= 2, base = base * base % modulus) {
        if (exponent % 2 != 0) result = result * base % modulus;
    }
    return result;
}

uint64_t primitiveRoot(int prime) {
    const auto modulus = static_cast<uint64_t>(prime);
    for (uint64_t root = 2;; ++root) {
        bool isPrimitive = true;
        int rest = prime - 1;
        for (int d = 2; rest > 1; ++d) {
            if (d * d > rest) d = rest;
            if (rest % d != 0) continue;
            while (rest % d == 0)
                rest /= d;
            isPrimitive = isPrimitive && power(root, (prime - 1) / d, modulus) != 1;
        }
        if (isPrimitive) return root;
    }
}

// In the order of the powers of a primitive root, the transform of a prime length is a cyclic convolution but for point
// and value 0.
template <class T>
ZvpStatus buildPowers(DftSpec<T>& spec) {
    if (const ZvpStatus status = buildInner(spec, spec.length - 1)) return status;
    const auto points = static_cast<size_t>(spec.length - 1);
    const auto modulus = static_cast<uint64_t>(spec.length);
    T* const sequence = allocate<T>(static_cast<int64_t>(3 * points)); // a value of T has room for a power
    if (sequence == nullptr) return zvpStsNoMemory;
    spec.tables = sequence;
    auto* const powers = reinterpret_cast<int32_t*>(sequence + 2 * points);
    spec.powers = powers;
    const uint64_t root = primitiveRoot(spec.length);
    uint64_t index = 1;
    for (size_t q = 0; q < points; ++q, index = index * root % modulus) {
        powers[q] = static_cast<int32_t>(index);
        storeRoots(index, 0, modulus, sequence + 2 * ((points - q) % points), 1);
    }
    return transformKernel(spec, sequence);
}

// Whether that convolution is worth it.
template <class T>
bool prefersPowers(int length) {
    if (!isPrime(length)) return false;
    DftSpec<T> cyclic{};
    cyclic.length = length - 1;
    if (!isPowerOfTwo(length - 1) && !factorise(cyclic)) return false;
    return timeOf<T>(length - 1) < timeOf<T>(convolutionLength<T>(2 * length - 1));
}

// The transform object of a length and a hint.
template <class T>
ZvpStatus buildComplex(DftSpec<T>& spec, int flag) {
    if (spec.length <= kFixedDft) return zvpStsOk;
    if (isPowerOfTwo(spec.length)) return buildFft<typename DftParts<T>::ComplexFft>(spec, flag);
    if (spec.length > kLongest) return zvpStsBadSize;
    if (factorise(spec)) return buildMixed(spec);
    if (spec.length <= kLongestDefinition) return buildDefinition(spec);
    if (spec.length > kLongestChirp) return zvpStsBadSize;
    return prefersPowers<T>(spec.length) ? buildPowers(spec) : buildChirp(spec);
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
