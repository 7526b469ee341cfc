// The life cycle of FFT objects.
#include "transforms/fft_large_plan.hpp"
#include "transforms/fft_objects.hpp"
#include "transforms/fft_tables.hpp"
#include "transforms/sines.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

namespace zvps {
namespace {

constexpr int kMostOrder = 30; // that a call may name; the types have lower limits

constexpr int64_t pointsOf(int order) {
    return int64_t{1} << order;
}

// ---- Normalisation ----

double normalisation(int order, int flag) {
    if (flag == zvpFftScaleNone) return 0;
    const auto points = static_cast<double>(pointsOf(order));
    return 1.0 / (flag == zvpFftScaleSqrt ? std::sqrt(points) : points);
}

// ---- Sines ----

// The sines of a quarter of 2^kStoredOrder points, for the small orders.
constexpr int kStoredOrder = 10;

template <class T>
constexpr auto makeStoredSines() {
    constexpr int kQuarter = (1 << kStoredOrder) / 4;
    std::array<T, kQuarter + 1> sines{};
    for (int k = 0; k <= kQuarter / 2; ++k) {
        const SineCosine value = sineCosine(kTurn * k / (1 << kStoredOrder));
        sines[static_cast<size_t>(k)] = static_cast<T>(value.sine);
        sines[static_cast<size_t>(kQuarter - k)] = static_cast<T>(value.cosine);
    }
    return sines;
}
template <class T>
constexpr auto kStoredSines = makeStoredSines<T>();

// In extended precision, of an eighth of 2^kStoredOrder points.
constexpr auto makeCoarseSines() {
    std::array<SineCosine, (1 << kStoredOrder) / 8 + 1> sines{};
    for (size_t k = 0; k < sines.size(); ++k)
        sines[k] = sineCosine(kTurn * static_cast<long double>(k) / (1 << kStoredOrder));
    return sines;
}
constexpr auto kCoarseSines = makeCoarseSines();

// sines[k] = sin(2 pi k / 2^order) for k = 0..2^order / 4, correctly rounded: for singles products and sums in double
// precision are enough, as a comparison of all sines of all orders has shown.
template <class T>
void computeSines(int order, T* sines) {
    using Wide = std::conditional_t<sizeof(T) == 4, double, long double>;
    constexpr int kMostBlock = 6;
    const auto quarter = static_cast<size_t>(pointsOf(order)) / 4;
    const long double step = kTurn / static_cast<long double>(pointsOf(order));
    const bool areStored = order - kStoredOrder <= kMostBlock; // the sines that blocks begin with
    const size_t block = size_t{1} << (areStored ? order - kStoredOrder : kMostBlock);
    Wide sinesWithin[size_t{1} << kMostBlock];
    Wide cosinesWithin[size_t{1} << kMostBlock];
    for (size_t k = 0; k < block; ++k) {
        const SineCosine value = sineCosine(step * static_cast<long double>(k));
        sinesWithin[k] = static_cast<Wide>(value.sine);
        cosinesWithin[k] = static_cast<Wide>(value.cosine);
    }
    for (size_t begin = 0; begin <= quarter / 2; begin += block) {
        const SineCosine start =
            areStored ? kCoarseSines[begin / block] : sineCosine(step * static_cast<long double>(begin));
        const Wide sine = static_cast<Wide>(start.sine);
        const Wide cosine = static_cast<Wide>(start.cosine);
        for (size_t k = 0; k < block && begin + k <= quarter / 2; ++k) {
            sines[begin + k] = static_cast<T>(sine * cosinesWithin[k] + cosine * sinesWithin[k]);
            sines[quarter - begin - k] = static_cast<T>(cosine * cosinesWithin[k] - sine * sinesWithin[k]);
        }
    }
}

// ---- Sizes ----

// Bytes of a complex transform of 2^order points: its tables without the index words, and what it works in.
struct Room {
    int64_t tables;
    int64_t work;
};

// From this order on a transform is one of columns and one of rows.
constexpr int kLargeOrder = 18;

template <class T>
Room complexRoom(int order) {
    constexpr int64_t kPart = sizeof(T);
    constexpr int64_t kElement = 2 * kPart;
    constexpr bool kIsDouble = sizeof(T) == 8;
    if (order <= kFixedFftOrder) return {0, 0};
    const int64_t bytes = kElement * pointsOf(order);
    if (order < kLargeOrder) return {rounded(bytes + kElement), kIsDouble && order <= 12 ? 0 : bytes};

    const int columns = order <= 20 ? 4 : order == 21 ? 5 : 8;
    const int block = order <= 20 ? 10 : order == 21 ? 13 : 15;
    const Room rows = complexRoom<T>(order - columns);
    Room room = {rows.tables + bytes, std::max(rows.work, kElement * pointsOf(block))};
    if (order > kLargeOrder) room.work = std::max<int64_t>(room.work, 65536);
    // Room for all points and a block of columns, but in the last order, where those of integers would pass 2^31 bytes
    // with it.
    if (kIsDouble && order <= 25) room.work = kPart * static_cast<int64_t>(largeFftWork<T>(order));
    return room;
}

constexpr int64_t indexBytes(int order) {
    return rounded(4 * (pointsOf(order) / 4) + 4);
}

constexpr int64_t kHeaderBytes = 192; // of a floating-point transform object, alignment included

template <class T>
int64_t initSize(int order) {
    if (order <= kStoredOrder) return 0;
    constexpr int64_t kPart = sizeof(T);
    return withSlack(rounded(kPart * (pointsOf(order) / 4) + kPart));
}

// Transforms without tables.
constexpr FftSizes kFixedSizes = {168, 0, 0};

// A complex transform, or a real one of 2^order samples: the complex one of half the length with two tables of a
// quarter of the length.
template <class T, bool kIsReal>
FftSizes floatSizes(int order) {
    if constexpr (kIsReal) {
        constexpr int kLastFixed = sizeof(T) == 4 ? 4 : 5;
        if (order <= kLastFixed) return kFixedSizes;
        const int half = order - 1;
        const Room room = complexRoom<T>(half);
        const int64_t tables = room.tables + (half > kFixedFftOrder ? indexBytes(half) : 0);
        const int64_t combining = rounded(2 * static_cast<int64_t>(sizeof(T)) * (pointsOf(order) / 4));
        return {2 * combining + tables + kHeaderBytes, initSize<T>(order), withSlack(room.work)};
    } else {
        if (order <= kFixedFftOrder) return kFixedSizes;
        const Room room = complexRoom<T>(order);
        return {room.tables + indexBytes(order) + kHeaderBytes, initSize<T>(order), withSlack(room.work)};
    }
}

// The size that a transform object records.
int32_t recordedWork(const FftSizes& sizes) {
    return static_cast<int32_t>(sizes.work > 0 ? sizes.work - kFftAlignment : 0);
}

// Bytes of the numbers that integers are converted to: all points, or a spectrum in CCS layout.
template <class Inner>
int64_t convertedBytes(int order) {
    constexpr int64_t kPart = sizeof(FftHeader<Inner>::factor);
    return FftType<Inner>::kIsReal ? kPart * (pointsOf(order) + 2) : 2 * kPart * pointsOf(order);
}

// ---- Building ----

// A transform object of Opaque is what Specs::sizes() and Specs::init() make of it.

template <class Opaque>
struct FloatSpecs {
    using Header = FftHeader<Opaque>;
    using T = decltype(Header::factor);
    static constexpr int kLastOrder = sizeof(T) == 4 ? 27 : 26;

    static FftSizes sizes(int order, ZvpHintAlgorithm) { return floatSizes<T, FftType<Opaque>::kIsReal>(order); }

    static ZvpStatus init(Opaque** result, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf) {
        if (result == nullptr) return zvpStsNullPtr;
        if (order < 0 || order > kLastOrder) return zvpStsBadFftOrder;
        if (specMem == nullptr) return zvpStsNullPtr;
        auto* const opaque = reinterpret_cast<Opaque*>(alignedUp(specMem));
        Header& spec = *header(opaque);
        spec = {};
        spec.order = order;
        spec.hint = hint;
        if (!isFlag(flag)) return zvpStsBadFftFlag;
        storeScaling(spec, flag);
        spec.factor = static_cast<T>(normalisation(order, flag));
        spec.tag = FftType<Opaque>::kTag;
        spec.workSize = recordedWork(sizes(order, hint));
        if (order > kFixedFftOrder) {
            // The slack leaves room for whole lines of cache.
            Zvp8u* const area = alignedUp(reinterpret_cast<Zvp8u*>(&spec + 1), 64);
            spec.area = area;
            if (order <= kStoredOrder) {
                build(spec, area, kStoredSines<T>.data(), kStoredOrder);
            } else {
                if (initBuf == nullptr) return zvpStsNullPtr;
                T* const sines = reinterpret_cast<T*>(alignedUp(initBuf));
                computeSines(order, sines);
                build(spec, area, sines, order);
            }
        }
        *result = opaque;
        return zvpStsOk;
    }

  private:
    static void build(Header& spec, Zvp8u* area, const T* sines, int sinesOrder) {
        if constexpr (FftType<Opaque>::kIsReal) {
            buildRealFftTables(spec.order, spec, area, sines, sinesOrder);
        } else {
            buildFftTables(spec.order, spec, area, sines, sinesOrder);
        }
    }
};

// Builds the floating-point object that an integer one wraps, behind its header; if that fails, neither is valid.
template <class Inner, class Header>
ZvpStatus initInner(Header& spec, int headerBytes, int flag, ZvpHintAlgorithm hint, Zvp8u* initBuf) {
    Inner* inner = nullptr;
    Zvp8u* const place = reinterpret_cast<Zvp8u*>(&spec) + headerBytes;
    const ZvpStatus status = FloatSpecs<Inner>::init(&inner, spec.order, flag, hint, place, initBuf);
    spec.inner = inner;
    if (status != zvpStsOk) spec.tag = 0;
    return status;
}

// Of 32-bit integers, on an inner transform object.
template <class Opaque, class Inner>
struct WideSpecs {
    static constexpr int kLastOrder = FloatSpecs<Inner>::kLastOrder;

    static FftSizes sizes(int order, ZvpHintAlgorithm) {
        const FftSizes inner = FloatSpecs<Inner>::sizes(order, 0);
        return {inner.spec + 64, withSlack(inner.init), withSlack(inner.work + convertedBytes<Inner>(order))};
    }

    static ZvpStatus init(Opaque** result, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf) {
        if (result == nullptr) return zvpStsNullPtr;
        if (order < 0 || order > kMostOrder) return zvpStsBadFftOrder;
        if (specMem == nullptr) return zvpStsNullPtr;
        auto* const opaque = reinterpret_cast<Opaque*>(alignedUp(specMem));
        FftSpec32s& spec = *header(opaque);
        spec = {};
        spec.hint = hint;
        spec.tag = FftType<Opaque>::kTag;
        spec.order = order;
        if (const ZvpStatus status = initInner<Inner>(spec, sizeof(spec), flag, 0, initBuf)) return status;
        spec.workSize = recordedWork(sizes(order, hint));
        *result = opaque;
        return zvpStsOk;
    }
};

// Of 16-bit integers, on an inner transform object but for the smallest orders of complex data.
template <class Opaque, class Inner>
struct NarrowSpecs {
    static constexpr int kLastOrder = FloatSpecs<Inner>::kLastOrder;
    static constexpr int kHeader = 128;

    static FftSizes sizes(int order, ZvpHintAlgorithm hint) {
        if (isSinglePoint(order)) return {104, 0, 0};
        const int64_t points = pointsOf(order);
        const FftSizes inner = isInIntegers(order, hint) ? FftSizes{rounded(8 * points) + indexBytes(order),
                                                                    rounded(2 * (points / 4) + 2), 4 * points}
                                                         : FloatSpecs<Inner>::sizes(order, hint);
        const int64_t init = FftType<Inner>::kIsReal ? withSlack(inner.init) : inner.init + kFftAlignment;
        return {inner.spec + kHeader, init, withSlack(inner.work + convertedBytes<Inner>(order))};
    }

    static ZvpStatus init(Opaque** result, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf) {
        if (result == nullptr) return zvpStsNullPtr;
        if (order < 0 || order > kLastOrder) return zvpStsBadFftOrder;
        if (specMem == nullptr) return zvpStsNullPtr;
        auto* const opaque = reinterpret_cast<Opaque*>(alignedUp(specMem));
        FftSpec16s& spec = *header(opaque);
        spec = {};
        spec.order = order;
        spec.hint = hint;
        if (!isFlag(flag)) return zvpStsBadFftFlag;
        storeScaling(spec, flag);
        spec.halvings = flag == zvpFftScaleNone ? 0 : flag == zvpFftScaleSqrt ? order : 2 * order;
        spec.tag = FftType<Opaque>::kTag;
        spec.workSize = recordedWork(sizes(order, hint));
        if (!isSinglePoint(order) && !isInIntegers(order, hint)) {
            if (const ZvpStatus status = initInner<Inner>(spec, kHeader, flag, hint, initBuf)) return status;
        }
        *result = opaque;
        return zvpStsOk;
    }

  private:
    static bool isSinglePoint(int order) { return order == 0 && !FftType<Inner>::kIsReal; }
    static bool isInIntegers(int order, ZvpHintAlgorithm hint) {
        return order <= 3 && (hint == 0 || hint == 1) && !FftType<Inner>::kIsReal;
    }
};

// ---- Operations ----

template <class Specs>
ZvpStatus getSize(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize, int* workBufSize) {
    if (order < 0 || order > kMostOrder) return zvpStsBadFftOrder;
    if (specSize == nullptr || initBufSize == nullptr || workBufSize == nullptr) return zvpStsNullPtr;
    if (!isFlag(flag)) return zvpStsBadFftFlag;
    if (order > Specs::kLastOrder) return zvpStsBadFftOrder;
    const FftSizes sizes = Specs::sizes(order, hint);
    *specSize = static_cast<int>(sizes.spec);
    *initBufSize = static_cast<int>(sizes.init);
    *workBufSize = static_cast<int>(sizes.work);
    return zvpStsOk;
}

template <class Specs, class Opaque>
ZvpStatus initAlloc(Opaque** spec, int order, int flag, ZvpHintAlgorithm hint) {
    if (spec == nullptr) return zvpStsNullPtr;
    int specSize = 0;
    int initSize = 0;
    int workSize = 0;
    if (const ZvpStatus status = getSize<Specs>(order, flag, hint, &specSize, &initSize, &workSize)) return status;
    return buildInAllocated(spec, specSize, initSize, [=](Opaque** built, Zvp8u* specMem, Zvp8u* initBuf) {
        return Specs::init(built, order, flag, hint, specMem, initBuf);
    });
}

template <class Opaque>
ZvpStatus freeSpec(Opaque* spec) {
    if (const ZvpStatus status = checkTransform(spec)) return status;
    header(spec)->tag = 0;
    if (header(spec)->isAllocated == 1) zvpsFree(spec);
    return zvpStsOk;
}

} // namespace
} // namespace zvps

// ---- Entries ----

#define ZVPS_FFT_SPEC(CODE, ...)                                                                                       \
    ZvpStatus zvpsFFTGetSize_##CODE(int order, int flag, ZvpHintAlgorithm hint, int* specSize, int* initBufSize,       \
                                    int* workBufSize) {                                                                \
        return zvps::getSize<zvps::__VA_ARGS__>(order, flag, hint, specSize, initBufSize, workBufSize);                \
    }                                                                                                                  \
    ZvpStatus zvpsFFTInit_##CODE(ZvpsFFTSpec_##CODE** spec, int order, int flag, ZvpHintAlgorithm hint,                \
                                 Zvp8u* specMem, Zvp8u* initBuf) {                                                     \
        return zvps::__VA_ARGS__::init(spec, order, flag, hint, specMem, initBuf);                                     \
    }                                                                                                                  \
    ZvpStatus zvpsFFTInitAlloc_##CODE(ZvpsFFTSpec_##CODE** spec, int order, int flag, ZvpHintAlgorithm hint) {         \
        return zvps::initAlloc<zvps::__VA_ARGS__>(spec, order, flag, hint);                                            \
    }                                                                                                                  \
    ZvpStatus zvpsFFTFree_##CODE(ZvpsFFTSpec_##CODE* spec) {                                                           \
        return zvps::freeSpec(spec);                                                                                   \
    }                                                                                                                  \
    ZvpStatus zvpsFFTGetBufSize_##CODE(const ZvpsFFTSpec_##CODE* spec, int* size) {                                    \
        return zvps::getAlignedBufSize(spec, size);                                                                    \
    }

ZVPS_FFT_SPEC(C_32fc, FloatSpecs<ZvpsFFTSpec_C_32fc>)
ZVPS_FFT_SPEC(C_32f, FloatSpecs<ZvpsFFTSpec_C_32f>)
ZVPS_FFT_SPEC(R_32f, FloatSpecs<ZvpsFFTSpec_R_32f>)
ZVPS_FFT_SPEC(C_64fc, FloatSpecs<ZvpsFFTSpec_C_64fc>)
ZVPS_FFT_SPEC(C_64f, FloatSpecs<ZvpsFFTSpec_C_64f>)
ZVPS_FFT_SPEC(R_64f, FloatSpecs<ZvpsFFTSpec_R_64f>)
ZVPS_FFT_SPEC(C_32sc, WideSpecs<ZvpsFFTSpec_C_32sc, ZvpsFFTSpec_C_64fc>)
ZVPS_FFT_SPEC(C_32s, WideSpecs<ZvpsFFTSpec_C_32s, ZvpsFFTSpec_C_64f>)
ZVPS_FFT_SPEC(R_32s, WideSpecs<ZvpsFFTSpec_R_32s, ZvpsFFTSpec_R_64f>)
ZVPS_FFT_SPEC(R_16s32s, WideSpecs<ZvpsFFTSpec_R_16s32s, ZvpsFFTSpec_R_32f>)
ZVPS_FFT_SPEC(C_16sc, NarrowSpecs<ZvpsFFTSpec_C_16sc, ZvpsFFTSpec_C_32fc>)
ZVPS_FFT_SPEC(C_16s, NarrowSpecs<ZvpsFFTSpec_C_16s, ZvpsFFTSpec_C_32f>)
ZVPS_FFT_SPEC(R_16s, NarrowSpecs<ZvpsFFTSpec_R_16s, ZvpsFFTSpec_R_32f>)
