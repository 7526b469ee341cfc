// Transforms of any length against one of long doubles: accuracy, layouts, normalisation, rounding of integers, the
// same bits at every address and in place. Their objects: methods by length, checks in their order, memory that runs
// out.
#include "framework/arena.hpp"
#include "framework/call.hpp"
#include "framework/fft.hpp"
#include "framework/memory.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <complex>
#include <memory>

namespace zvps::test {
namespace {

constexpr int kFlags[] = {zvpFftScaleFwd, zvpFftScaleInv, zvpFftScaleSqrt, zvpFftScaleNone};

// ---- The functions in tables ----

struct DftType {
    const char* name;
    uint32_t tag;
    bool isReal;
    const ElementType* part;
    ZvpStatus (*initAlloc)(void** spec, int length, int flag, ZvpHintAlgorithm hint);
    ZvpStatus (*free)(void* spec);
    ZvpStatus (*getBufSize)(const void* spec, int* size);

    bool isFloat() const { return part->isFloat; }
};

#define ZVPS_TEST_TYPE(NAME, CODE, PART, TAG)                                                                          \
    const DftType k##NAME##_##CODE = {                                                                                 \
        #NAME "_" #CODE,                                                                                               \
        TAG,                                                                                                           \
        #CODE[0] == 'R',                                                                                               \
        &kElement##PART,                                                                                               \
        [](void** spec, int length, int flag, ZvpHintAlgorithm hint) {                                                 \
            return zvps##NAME##InitAlloc_##CODE(reinterpret_cast<Zvps##NAME##Spec_##CODE**>(spec), length, flag,       \
                                                hint);                                                                 \
        },                                                                                                             \
        [](void* spec) { return zvps##NAME##Free_##CODE(static_cast<Zvps##NAME##Spec_##CODE*>(spec)); },               \
        [](const void* spec, int* size) {                                                                              \
            return zvps##NAME##GetBufSize_##CODE(static_cast<const Zvps##NAME##Spec_##CODE*>(spec), size);             \
        },                                                                                                             \
    };
ZVPS_TEST_TYPE(DFT, C_16sc, 16s, 0x0A)
ZVPS_TEST_TYPE(DFT, C_16s, 16s, 0x0B)
ZVPS_TEST_TYPE(DFT, R_16s, 16s, 0x0C)
ZVPS_TEST_TYPE(DFT, C_32fc, 32f, 0x0D)
ZVPS_TEST_TYPE(DFT, C_32f, 32f, 0x0E)
ZVPS_TEST_TYPE(DFT, R_32f, 32f, 0x0F)
ZVPS_TEST_TYPE(DFT, C_64fc, 64f, 0x10)
ZVPS_TEST_TYPE(DFT, C_64f, 64f, 0x11)
ZVPS_TEST_TYPE(DFT, R_64f, 64f, 0x12)
ZVPS_TEST_TYPE(DFTOutOrd, C_32fc, 32f, 0x434D414A)
ZVPS_TEST_TYPE(DFTOutOrd, C_64fc, 64f, 0x434D414B)
#undef ZVPS_TEST_TYPE

const DftType* const kTypes[] = {&kDFT_C_16sc, &kDFT_C_16s,        &kDFT_R_16s,       &kDFT_C_32fc,
                                 &kDFT_C_32f,  &kDFT_R_32f,        &kDFT_C_64fc,      &kDFT_C_64f,
                                 &kDFT_R_64f,  &kDFTOutOrd_C_32fc, &kDFTOutOrd_C_64fc};

struct Dft {
    const char* name;
    const DftType* type;
    Layout layout;
    bool isForward;
    ZvpStatus (*call)(const TransformCall& call);

    size_t arrays() const { return layout == Layout::split ? 2 : 1; }
    // The number of parts in each array.
    size_t count(size_t length, bool isSpectrum) const {
        if (layout == Layout::interleaved) return 2 * length;
        return layout == Layout::ccs && isSpectrum ? 2 * (length / 2 + 1) : length;
    }
};

#define ZVPS_TEST_DFT(NAME, TYPE, LAYOUT, IS_FORWARD)                                                                  \
    {                                                                                                                  \
#NAME, &k##TYPE, Layout::LAYOUT, IS_FORWARD, [](const TransformCall& c) { return run(NAME, c); },              \
    }
#define ZVPS_TEST_DFT_COMPLEX(PREFIX, CODE, LAYOUT, SFS)                                                               \
    ZVPS_TEST_DFT(zvps##PREFIX##Fwd_CToC_##CODE##SFS, PREFIX##_C_##CODE, LAYOUT, true),                                \
        ZVPS_TEST_DFT(zvps##PREFIX##Inv_CToC_##CODE##SFS, PREFIX##_C_##CODE, LAYOUT, false)
#define ZVPS_TEST_LAYOUT(LAYOUT, PACKED, CODE, SFS)                                                                    \
    ZVPS_TEST_DFT(zvpsDFTFwd_RTo##PACKED##_##CODE##SFS, DFT_R_##CODE, LAYOUT, true),                                   \
        ZVPS_TEST_DFT(zvpsDFTInv_##PACKED##ToR_##CODE##SFS, DFT_R_##CODE, LAYOUT, false)
#define ZVPS_TEST_DFT_REAL(CODE, SFS)                                                                                  \
    ZVPS_TEST_LAYOUT(perm, Perm, CODE, SFS), ZVPS_TEST_LAYOUT(pack, Pack, CODE, SFS),                                  \
        ZVPS_TEST_LAYOUT(ccs, CCS, CODE, SFS)
const Dft kDfts[] = {
    ZVPS_TEST_DFT_COMPLEX(DFT, 32fc, interleaved, ),
    ZVPS_TEST_DFT_COMPLEX(DFT, 64fc, interleaved, ),
    ZVPS_TEST_DFT_COMPLEX(DFT, 32f, split, ),
    ZVPS_TEST_DFT_COMPLEX(DFT, 64f, split, ),
    ZVPS_TEST_DFT_COMPLEX(DFT, 16sc, interleaved, _Sfs),
    ZVPS_TEST_DFT_COMPLEX(DFT, 16s, split, _Sfs),
    ZVPS_TEST_DFT_COMPLEX(DFTOutOrd, 32fc, interleaved, ),
    ZVPS_TEST_DFT_COMPLEX(DFTOutOrd, 64fc, interleaved, ),
    ZVPS_TEST_DFT_REAL(32f, ),
    ZVPS_TEST_DFT_REAL(64f, ),
    ZVPS_TEST_DFT_REAL(16s, _Sfs),
};

class Object {
  public:
    Object(const DftType& type, int length, int flag) : type_(type) {
        EXPECT_EQ(type.initAlloc(&spec_, length, flag, 0), zvpStsOk) << type.name << " " << length;
        int size = -1;
        EXPECT_EQ(type.getBufSize(spec_, &size), zvpStsOk);
        bufferSize = static_cast<size_t>(size);
    }
    ~Object() { EXPECT_EQ(type_.free(spec_), zvpStsOk); }
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    const void* get() const { return spec_; }
    template <class T>
    T fieldAt(size_t offset) const {
        T field;
        std::memcpy(&field, static_cast<const char*>(spec_) + offset, sizeof(T));
        return field;
    }
    size_t bufferSize;

  private:
    const DftType& type_;
    void* spec_ = nullptr;
};

// ---- The oracle ----

using Complex = std::complex<Real>;
using Points = std::vector<Complex>;

// By the smallest prime factor of the length.
Points exactly(const Points& x, bool isForward) {
    const size_t n = x.size();
    size_t p = 2;
    while (p < n && n % p != 0)
        p = p * p > n ? n : p + 1;
    if (n == 1) return x;
    std::vector<Points> parts(p);
    for (size_t i = 0; i < p; ++i) {
        for (size_t j = i; j < n; j += p)
            parts[i].push_back(x[j]);
        parts[i] = exactly(parts[i], isForward);
    }
    Points roots(n);
    for (size_t i = 0; i < n; ++i)
        roots[i] = std::polar(Real{1}, (isForward ? -2 : 2) * acosl(-1) * static_cast<Real>(i) / static_cast<Real>(n));
    Points result(n);
    for (size_t k = 0; k < n; ++k) {
        for (size_t i = 0; i < p; ++i)
            result[k] += parts[i][k % (n / p)] * roots[i * k % n];
    }
    return result;
}

// Where the parts of sample or value i lie in the arrays, split ones one after the other; -1: nowhere.
struct Place {
    ptrdiff_t re;
    ptrdiff_t im;
};
Place placeOf(const Dft& f, bool isSpectrum, size_t i, size_t n) {
    const auto at = static_cast<ptrdiff_t>(i);
    const auto length = static_cast<ptrdiff_t>(n);
    if (f.layout == Layout::interleaved) return {2 * at, 2 * at + 1};
    if (f.layout == Layout::split) return {at, length + at};
    if (!isSpectrum) return {at, -1};
    if (f.layout == Layout::ccs) return {2 * at, 2 * at + 1};
    if (i == 0) return {0, -1};
    if (2 * i == n) return {f.layout == Layout::perm ? 1 : length - 1, -1};
    return f.layout == Layout::perm && n % 2 == 0 ? Place{2 * at, 2 * at + 1} : Place{2 * at - 1, 2 * at};
}

Points pointsOf(const Dft& f, size_t n, const Reals& data) {
    Points x(n);
    const bool isPacked = f.type->isReal && !f.isForward;
    for (size_t i = 0; i < n; ++i) {
        const size_t k = isPacked ? std::min(i, n - i) : i;
        const Place place = placeOf(f, !f.isForward, k, n);
        const bool hasNoIm = place.im < 0 || (isPacked && (k == 0 || 2 * k == n));
        const Real im = hasNoIm ? 0 : data[static_cast<size_t>(place.im)];
        x[i] = {data[static_cast<size_t>(place.re)], k == i ? im : -im};
    }
    return x;
}
Reals arraysOf(const Dft& f, const Points& x, Real factor) {
    const size_t n = x.size();
    Reals data(f.arrays() * f.count(n, f.isForward));
    const bool isPacked = f.type->isReal && f.isForward;
    for (size_t i = 0; i < (isPacked ? n / 2 + 1 : n); ++i) {
        const Place place = placeOf(f, f.isForward, i, n);
        data[static_cast<size_t>(place.re)] = factor * x[i].real();
        if (place.im >= 0 && !(isPacked && (i == 0 || 2 * i == n))) {
            data[static_cast<size_t>(place.im)] = factor * x[i].imag();
        }
    }
    return data;
}

// ---- Calls ----

enum class Where { apart, inPlace, partlyInPlace };

// Calls the function on arrays beside protected pages, `gap` parts from them; returns the results.
class Caller {
  public:
    Caller(const Dft& f, size_t length)
        : f_(f), srcBytes_(f.count(length, !f.isForward) * f.type->part->partBytes),
          dstBytes_(f.count(length, f.isForward) * f.type->part->partBytes), room_(std::max(srcBytes_, dstBytes_)) {
        for (auto* arena : {&arenas_[0], &arenas_[1], &arenas_[2], &arenas_[3]})
            *arena = std::make_unique<Arena>(room_ + 256);
    }

    Bytes operator()(const Object& object, const Bytes& data, int scaleFactor, Where where, size_t gap, bool atStart) {
        Arena buffer(object.bufferSize + 64);
        TransformCall call = {{}, {}, object.get(), scaleFactor, buffer.atEnd(object.bufferSize, gap)};
        const auto place = [&](Arena& arena, size_t bytes) {
            const size_t distance = gap * f_.type->part->partBytes;
            return atStart ? arena.atStart(bytes, distance) : arena.atEnd(bytes, distance);
        };
        for (size_t i = 0; i < f_.arrays(); ++i) {
            const bool isInPlace = where == Where::inPlace || (where == Where::partlyInPlace && i == 0);
            unsigned char* const dst = place(*arenas_[i], isInPlace ? room_ : dstBytes_);
            unsigned char* const src = isInPlace ? dst : place(*arenas_[2 + i], srcBytes_);
            std::copy_n(&data[i * srcBytes_], srcBytes_, src);
            call.src[i] = src;
            call.dst[i] = dst;
        }
        EXPECT_EQ(f_.call(call), zvpStsOk) << f_.name;
        Bytes result;
        for (size_t i = 0; i < f_.arrays(); ++i) {
            const auto* const dst = static_cast<const unsigned char*>(call.dst[i]);
            result.insert(result.end(), dst, dst + dstBytes_);
            EXPECT_TRUE(arenas_[i]->isIntact()) << f_.name;
            EXPECT_TRUE(call.src[i] == call.dst[i] || std::memcmp(call.src[i], &data[i * srcBytes_], srcBytes_) == 0)
                << f_.name << ": source changed";
        }
        EXPECT_TRUE(buffer.isIntact()) << f_.name << ": buffer";
        return result;
    }

  private:
    const Dft& f_;
    size_t srcBytes_;
    size_t dstBytes_;
    size_t room_;
    std::unique_ptr<Arena> arenas_[4];
};

// ---- Results ----

Real factorOf(bool isForward, int length, int flag) {
    if (flag == zvpFftScaleSqrt) return 1 / sqrtl(length);
    return flag == (isForward ? zvpFftScaleFwd : zvpFftScaleInv) ? 1 / static_cast<Real>(length) : 1;
}

double relativeError(const Reals& expected, const Reals& actual) {
    Real errors = 0;
    Real values = 0;
    for (size_t i = 0; i < expected.size(); ++i) {
        errors += (actual[i] - expected[i]) * (actual[i] - expected[i]);
        values += expected[i] * expected[i];
    }
    return static_cast<double>(sqrtl(errors / values));
}

// Every result is a rounding of a value as near to the exact one as singles can be expected to be.
void expectRounded(const Reals& expected, const Reals& actual, int scaleFactor) {
    Real slack = 1;
    for (const Real v : expected)
        slack = std::max(slack, fabsl(v));
    slack *= 0x1p-20L;
    const Real scale = exp2l(-static_cast<Real>(scaleFactor));
    for (size_t i = 0; i < expected.size(); ++i) {
        const Real low = std::clamp<Real>(nearbyintl((expected[i] - slack) * scale), SHRT_MIN, SHRT_MAX);
        const Real high = std::clamp<Real>(nearbyintl((expected[i] + slack) * scale), SHRT_MIN, SHRT_MAX);
        ASSERT_TRUE(low <= actual[i] && actual[i] <= high) << i << ": " << actual[i] << ", " << expected[i] * scale;
    }
}

// Whether the passes of small radices do it all, whose bits are the same wherever there are fused operations.
bool hasSmallFactors(int length) {
    const bool isPowerOfTwo = (length & (length - 1)) == 0;
    for (const int p : {2, 3, 5, 7}) {
        while (length % p == 0)
            length /= p;
    }
    return length == 1 && !isPowerOfTwo;
}

void check(const Dft& f, int length, int flag, Random& random) {
    SCOPED_TRACE(std::string(f.name) + " length " + std::to_string(length) + " flag " + std::to_string(flag));
    const auto n = static_cast<size_t>(length);
    const Object object(*f.type, length, flag);
    Caller call(f, n);
    const Bytes data = randomData(*f.type->part, f.arrays() * f.count(n, !f.isForward), random);
    const Points exact = exactly(pointsOf(f, n, loaded(*f.type->part, data)), f.isForward);
    const Reals expected = arraysOf(f, exact, factorOf(f.isForward, length, flag));
    const double eps = f.type->part->partBytes == 4 ? 0x1p-23 : 0x1p-52;
    const auto scaleFactor = static_cast<int>(random.below(20)) - 1;
    Bytes fused;
    for (const Level level : levels()) {
        useLevel(level);
        const Bytes result = call(object, data, scaleFactor, Where::apart, 0, false);
        const Reals actual = loaded(*f.type->part, result);
        if (f.type->isFloat()) {
            EXPECT_LE(relativeError(expected, actual), eps * std::sqrt(std::log2(length) + 1)) << levelName(level);
            for (size_t i = 0; i < expected.size(); ++i)
                ASSERT_TRUE(expected[i] != 0 || actual[i] == 0 || f.layout != Layout::ccs) << i;
        } else {
            expectRounded(expected, actual, scaleFactor);
            for (const int far : {INT_MIN, -70, 70, INT_MAX}) {
                const Bytes limits = call(object, data, far, Where::apart, 0, false);
                expectRounded(expected, loaded(*f.type->part, limits), std::clamp(far, -99, 99));
            }
        }
        if (level == Level::v4 && hasSmallFactors(length)) {
            EXPECT_TRUE(result == fused);
        }
        fused = result;
        const size_t gap = random.below(16) + 1;
        EXPECT_TRUE(result == call(object, data, scaleFactor, Where::apart, gap, length % 2 == 0)) << levelName(level);
        EXPECT_TRUE(result == call(object, data, scaleFactor, Where::inPlace, gap, false)) << levelName(level);
        if (f.layout == Layout::split) {
            EXPECT_TRUE(result == call(object, data, scaleFactor, Where::partlyInPlace, gap, false));
        }
    }
    useLevel(levels().back());
}

class DftLength : public testing::TestWithParam<int> {};

TEST_P(DftLength, IsExactToRounding) {
    allocationsLeft = -1;
    const int length = GetParam();
    Random random("dft " + std::to_string(length));
    int index = length;
    for (const Dft& f : kDfts) {
        // Long ones take turns with their directions.
        if (length > 200 && f.isForward == (index % 2 == 0)) continue;
        check(f, length, kFlags[index++ % 4], random);
    }
}
INSTANTIATE_TEST_SUITE_P(Short, DftLength, testing::Range(1, 130));
// Factors of every radix, cofactors to the largest, lengths of both convolutions, powers of two.
INSTANTIATE_TEST_SUITE_P(Long, DftLength,
                         testing::Values(149, 151, 210, 241, 242, 243, 256, 257, 298, 343, 360, 509, 596, 604, 625,
                                         1000, 1009, 1155, 1331, 1920, 2048, 2187, 2197, 2310, 2401, 3125, 4093, 4900,
                                         9216, 15015, 23520));

// A few impulses, whose spectrum is known, where the oracle is slow.
TEST(Dft, VeryLong) {
    Random random("very long dft");
    for (const int length : {65537, 1 << 19, 3 * 5 * 7 * 11 * 13 * 17, 1000003}) {
        const auto n = static_cast<size_t>(length);
        const Object object(kDFT_C_32fc, length, zvpFftScaleNone);
        const auto* const spec = static_cast<const ZvpsDFTSpec_C_32fc*>(object.get());
        std::vector<std::pair<size_t, float>> impulses;
        for (const float value : {1.0F, -0.5F, 0.75F})
            impulses.emplace_back(random.below(n), value);
        for (const Level level : levels()) {
            useLevel(level);
            std::vector<Zvp32fc> x(n);
            for (const auto& [place, value] : impulses)
                x[place].re += value;
            ASSERT_EQ(zvpsDFTFwd_CToC_32fc(x.data(), x.data(), spec, nullptr), zvpStsOk);
            for (size_t k = 0; k < n; k += 1 + random.below(500)) {
                Complex expected = 0;
                for (const auto& [place, value] : impulses) {
                    const Real turns = static_cast<Real>(place * k % n) / static_cast<Real>(n);
                    expected += std::polar<Real>(1, -2 * acosl(-1) * turns) * static_cast<Real>(value);
                }
                ASSERT_NEAR(x[k].re, static_cast<double>(expected.real()), 3e-6) << length << " " << k;
                ASSERT_NEAR(x[k].im, static_cast<double>(expected.imag()), 3e-6) << length << " " << k;
            }
        }
    }
    useLevel(levels().back());
}

// ---- Objects ----

TEST(DftSpec, MethodsByLength) {
    struct Row {
        int length;
        int isPowerOfTwo;
        std::vector<int> factors;
        int buffer; // of singles; -1: any
    };
    const Row rows[] = {
        {1, 0, {}, 0},
        {15, 0, {}, 0},
        {16, 0, {}, 0},
        {17, 0, {}, 8 * 17 + 32},
        {24, 0, {2, 4, 3}, -1},
        {32, 1, {}, 0},
        {36, 0, {4, 3, 3}, -1},
        {47, 0, {}, 8 * 47 + 32},
        {50, 0, {2, 5, 5}, -1},
        {128, 1, {}, 8 * 128 + 32},
        {151, 0, {}, -1},
        {210, 0, {2, 3, 5, 7}, -1},
        {298, 0, {}, -1},
        {596, 0, {4, 149}, -1},
        {604, 0, {}, -1},
        {2209, 0, {47, 47}, -1},
        {2809, 0, {}, -1}, // 53^2
        {3072, 0, {4, 4, 4, 4, 4, 3}, -1},
    };
    allocationsLeft = -1;
    for (const Row& row : rows) {
        for (const DftType* type : {&kDFT_C_32fc, &kDFT_C_32f, &kDFT_R_32f, &kDFT_C_64fc, &kDFT_C_64f, &kDFT_R_64f}) {
            SCOPED_TRACE(std::string(type->name) + " " + std::to_string(row.length));
            const bool isDouble = type->part->partBytes == 8;
            const size_t base = isDouble ? 8 : 0; // what the wider fields move those behind them
            const Object object(*type, row.length, zvpFftScaleSqrt);
            EXPECT_EQ(object.fieldAt<uint32_t>(0), type->tag);
            EXPECT_EQ(object.fieldAt<int32_t>(4), row.length);
            EXPECT_EQ(object.fieldAt<int32_t>(8), 1);
            EXPECT_EQ(object.fieldAt<int32_t>(12), 1);
            const double factor = 1 / std::sqrt(row.length);
            if (isDouble) {
                EXPECT_EQ(object.fieldAt<double>(16), factor);
            } else {
                EXPECT_EQ(object.fieldAt<float>(16), static_cast<float>(factor));
            }
            EXPECT_EQ(object.fieldAt<int32_t>(isDouble ? 28 : 24), static_cast<int32_t>(object.bufferSize));
            EXPECT_EQ(object.fieldAt<int32_t>(isDouble ? 32 : 28), row.isPowerOfTwo);
            EXPECT_EQ(object.fieldAt<int32_t>(48 + base), row.factors.empty() ? 0 : 1);
            EXPECT_EQ(object.fieldAt<int32_t>(52 + base), static_cast<int32_t>(row.factors.size()));
            for (size_t i = 0; i < row.factors.size(); ++i)
                EXPECT_EQ(object.fieldAt<int32_t>(56 + base + 4 * i), row.factors[i]);
            if (row.length <= 16) {
                EXPECT_EQ(object.bufferSize, 0U);
            }
            if (row.buffer >= 0 && !type->isReal && !isDouble) {
                EXPECT_EQ(object.bufferSize, static_cast<size_t>(row.buffer));
            }
        }
    }
    EXPECT_TRUE(blocks.empty());
}

TEST(DftSpec, ChecksInOrder) {
    allocationsLeft = -1;
    constexpr int kWithoutPlan = (1 << 26) + 2; // 2 * 3 * 11 * 251 * 4051
    for (const DftType* type : kTypes) {
        SCOPED_TRACE(type->name);
        void* const untouched = &allocationsLeft;
        void* spec = untouched;
        EXPECT_EQ(type->initAlloc(nullptr, 0, 3, 0), zvpStsNullPtr);
        for (const int length : {0, -1, INT_MIN})
            EXPECT_EQ(type->initAlloc(&spec, length, 3, 0), zvpStsBadSize);
        for (const int length : {5, 30, 31, 64, 107, (1 << 27) + 1, 1 << 28}) {
            for (const int flag : {0, 3, 16, -1})
                EXPECT_EQ(type->initAlloc(&spec, length, flag, 0), zvpStsBadFftFlag) << length;
        }
        const int lastOrder = type->part->partBytes == 8 ? 26 : 27;
        EXPECT_EQ(type->initAlloc(&spec, 2 << lastOrder, 1, 0), zvpStsBadFftOrder);
        EXPECT_EQ(type->initAlloc(&spec, (1 << 27) + 1, 1, 0), zvpStsBadSize);
        EXPECT_EQ(type->initAlloc(&spec, INT_MAX, 1, 0), zvpStsBadSize);
        EXPECT_EQ(type->initAlloc(&spec, kWithoutPlan, 1, 0), zvpStsBadSize);
        EXPECT_EQ(spec, untouched);
        EXPECT_TRUE(blocks.empty());

        ASSERT_EQ(type->initAlloc(&spec, 30, 1, -7), zvpStsOk);
        int size = -1;
        EXPECT_EQ(type->free(nullptr), zvpStsNullPtr);
        EXPECT_EQ(type->getBufSize(nullptr, &size), zvpStsNullPtr);
        EXPECT_EQ(type->getBufSize(spec, nullptr), zvpStsNullPtr);
        for (const DftType* other : kTypes) {
            if (other == type) continue;
            EXPECT_EQ(other->getBufSize(spec, &size), zvpStsContextMismatch) << other->name;
            EXPECT_EQ(other->free(spec), zvpStsContextMismatch) << other->name;
        }
        EXPECT_EQ(size, -1);
        for (const Dft& f : kDfts) {
            const TransformCall nulls = {{}, {}, spec, 0, nullptr};
            EXPECT_EQ(f.call(nulls), f.type == type ? zvpStsNullPtr : zvpStsContextMismatch) << f.name;
        }
        EXPECT_EQ(type->free(spec), zvpStsOk);
        EXPECT_TRUE(blocks.empty());
    }
}

// A length of each method.
constexpr int kLengths[] = {1, 12, 15, 17, 30, 45, 64, 101, 107, 262};

// Whichever allocation fails, nothing is kept and nothing written.
TEST(DftSpec, MemoryRunsOut) {
    for (const DftType* type : kTypes) {
        for (const int length : kLengths) {
            SCOPED_TRACE(std::string(type->name) + " " + std::to_string(length));
            void* spec = nullptr;
            ZvpStatus status = zvpStsNoMemory;
            for (int allowed = 0; status != zvpStsOk; ++allowed) {
                allocationsLeft = allowed;
                status = type->initAlloc(&spec, length, zvpFftScaleInv, 0);
                ASSERT_TRUE(status == zvpStsOk || status == zvpStsNoMemory) << status;
                ASSERT_EQ(status == zvpStsOk, spec != nullptr);
                ASSERT_EQ(status == zvpStsOk, !blocks.empty());
            }
            EXPECT_EQ(type->free(spec), zvpStsOk);
            EXPECT_TRUE(blocks.empty());
        }
    }
}

TEST(DftSpec, TransformsAllocateWhatTheyLack) {
    for (const Dft& f : kDfts) {
        for (const int length : kLengths) {
            SCOPED_TRACE(std::string(f.name) + " " + std::to_string(length));
            allocationsLeft = -1;
            const Object object(*f.type, length, zvpFftScaleNone);
            const size_t kept = blocks.size();
            const Bytes src(16 * static_cast<size_t>(length + 2), 1);
            const Bytes untouched(src.size(), 7);
            Bytes dst = untouched;
            TransformCall call = {{src.data(), src.data() + src.size() / 2},
                                  {dst.data(), dst.data() + dst.size() / 2},
                                  object.get(),
                                  0,
                                  nullptr};
            allocationsLeft = 0;
            EXPECT_EQ(f.call(call), object.bufferSize > 0 ? zvpStsNoMemory : zvpStsOk);
            EXPECT_EQ(dst == untouched, object.bufferSize > 0);
            Bytes buffer(object.bufferSize + 1);
            call.buffer = buffer.data() + 1;
            EXPECT_EQ(f.call(call), zvpStsOk);
            allocationsLeft = 1;
            call.buffer = nullptr;
            EXPECT_EQ(f.call(call), zvpStsOk);
            EXPECT_EQ(blocks.size(), kept);
            for (size_t i = 0; i < f.arrays(); ++i) {
                TransformCall lacking = call;
                lacking.src[i] = nullptr;
                EXPECT_EQ(f.call(lacking), zvpStsNullPtr);
                lacking = call;
                lacking.dst[i] = nullptr;
                EXPECT_EQ(f.call(lacking), zvpStsNullPtr);
            }
            call.spec = nullptr;
            EXPECT_EQ(f.call(call), zvpStsNullPtr);
            allocationsLeft = -1;
        }
    }
}

} // namespace
} // namespace zvps::test
