// DCTs against sums of long doubles, the life cycle of their objects, and memory that runs out.
#include "framework/arena.hpp"
#include "framework/call.hpp"
#include "framework/memory.hpp"

#include <climits>
#include <cmath>

namespace zvps::test {
namespace {

using Real = long double;

// ---- The functions ----

struct Dct {
    const char* name;
    bool isForward;
    char type; // 's' for 16s, 'f' for 32f, 'd' for 64f
    uint32_t tag;
    ZvpStatus (*getSize)(int len, ZvpHintAlgorithm hint, int* spec, int* init, int* work);
    ZvpStatus (*init)(void** spec, int len, Zvp8u* specMem, Zvp8u* initBuf);
    ZvpStatus (*initAlloc)(void** spec, int len);
    ZvpStatus (*free)(void* spec);
    ZvpStatus (*getBufSize)(const void* spec, int* size);
    ZvpStatus (*call)(const void* src, void* dst, const void* spec, int scaleFactor, Zvp8u* buffer);
    ZvpStatus (*callInPlace)(void* srcDst, const void* spec, int scaleFactor, Zvp8u* buffer);

    size_t bytes() const { return type == 's' ? 2 : type == 'f' ? 4 : 8; }
    Real epsilon() const { return type == 'd' ? 0x1p-52L : 0x1p-23L; }
    std::string at(int length) const { return std::string(name) + " " + std::to_string(length); }
};

constexpr int kHint = 5;

template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(const T*, T*, const Spec*, Zvp8u*), const void* src, void* dst, const void* spec, int,
              Zvp8u* buffer) {
    return f(static_cast<const T*>(src), static_cast<T*>(dst), static_cast<const Spec*>(spec), buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(const T*, T*, const Spec*, int, Zvp8u*), const void* src, void* dst, const void* spec,
              int scaleFactor, Zvp8u* buffer) {
    return f(static_cast<const T*>(src), static_cast<T*>(dst), static_cast<const Spec*>(spec), scaleFactor, buffer);
}
template <class T, class Spec>
ZvpStatus runInPlace(ZvpStatus (*f)(T*, const Spec*, Zvp8u*), void* srcDst, const void* spec, int, Zvp8u* buffer) {
    return f(static_cast<T*>(srcDst), static_cast<const Spec*>(spec), buffer);
}
template <class T, class Spec>
ZvpStatus runInPlace(ZvpStatus (*f)(T*, const Spec*, int, Zvp8u*), void* srcDst, const void* spec, int scaleFactor,
                     Zvp8u* buffer) {
    return f(static_cast<T*>(srcDst), static_cast<const Spec*>(spec), scaleFactor, buffer);
}

#define ZVPS_TEST_DCT(NAME, IS_FORWARD, TYPE, LETTER, TAG, SFS, ISFS)                                                  \
    {                                                                                                                  \
#NAME "_" #TYPE, IS_FORWARD, LETTER, TAG, zvps##NAME##GetSize_##TYPE,                                          \
            [](void** spec, int len, Zvp8u* specMem, Zvp8u* initBuf) {                                                 \
                return zvps##NAME##Init_##TYPE(reinterpret_cast<Zvps##NAME##Spec_##TYPE**>(spec), len, kHint, specMem, \
                                               initBuf);                                                               \
            },                                                                                                         \
            [](void** spec, int len) {                                                                                 \
                return zvps##NAME##InitAlloc_##TYPE(reinterpret_cast<Zvps##NAME##Spec_##TYPE**>(spec), len, kHint);    \
            },                                                                                                         \
            [](void* spec) { return zvps##NAME##Free_##TYPE(static_cast<Zvps##NAME##Spec_##TYPE*>(spec)); },           \
            [](const void* spec, int* size) {                                                                          \
                return zvps##NAME##GetBufSize_##TYPE(static_cast<const Zvps##NAME##Spec_##TYPE*>(spec), size);         \
            },                                                                                                         \
            [](const void* src, void* dst, const void* spec, int scaleFactor, Zvp8u* buffer) {                         \
                return run(zvps##NAME##_##TYPE##SFS, src, dst, spec, scaleFactor, buffer);                             \
            },                                                                                                         \
            [](void* srcDst, const void* spec, int scaleFactor, Zvp8u* buffer) {                                       \
                return runInPlace(zvps##NAME##_##TYPE##ISFS, srcDst, spec, scaleFactor, buffer);                       \
            },       \
    }

const Dct kDcts[] = {
    ZVPS_TEST_DCT(DCTFwd, true, 16s, 's', 19, _Sfs, _ISfs), ZVPS_TEST_DCT(DCTInv, false, 16s, 's', 20, _Sfs, _ISfs),
    ZVPS_TEST_DCT(DCTFwd, true, 32f, 'f', 21, , _I),        ZVPS_TEST_DCT(DCTInv, false, 32f, 'f', 22, , _I),
    ZVPS_TEST_DCT(DCTFwd, true, 64f, 'd', 23, , _I),        ZVPS_TEST_DCT(DCTInv, false, 64f, 'd', 24, , _I),
};

// ---- Data ----

Real valueAt(const Dct& f, const unsigned char* data, size_t i) {
    const auto get = [&](auto value) {
        std::memcpy(&value, data + i * sizeof(value), sizeof(value));
        return static_cast<Real>(value);
    };
    return f.type == 's' ? get(Zvp16s{}) : f.type == 'f' ? get(Zvp32f{}) : get(Zvp64f{});
}
void setValue(const Dct& f, unsigned char* data, size_t i, double value) {
    const auto set = [&](auto converted) { std::memcpy(data + i * sizeof(converted), &converted, sizeof(converted)); };
    if (f.type == 's') {
        set(static_cast<Zvp16s>(value * 32767));
    } else if (f.type == 'f') {
        set(static_cast<Zvp32f>(value));
    } else {
        set(value);
    }
}

std::vector<Real> exactDct(const Dct& f, const Bytes& src, size_t n) {
    std::vector<Real> cosines(4 * n);
    for (size_t i = 0; i < 4 * n; ++i)
        cosines[i] = cosl(2 * acosl(-1) * static_cast<Real>(i) / static_cast<Real>(4 * n));
    std::vector<Real> result(n);
    for (size_t i = 0; i < n; ++i) {
        for (size_t j = 0; j < n; ++j) {
            const size_t time = f.isForward ? j : i;
            const size_t frequency = f.isForward ? i : j;
            const Real factor = sqrtl((frequency == 0 ? 1 : 2) / static_cast<Real>(n));
            result[i] += factor * valueAt(f, src.data(), j) * cosines[(2 * time + 1) * frequency % (4 * n)];
        }
    }
    return result;
}

// Made by InitAlloc, which may build larger tables, or by Init in memory of its own.
struct Spec {
    const Dct& f;
    void* p = nullptr;
    int work = -1;
    Bytes memory;

    Spec(const Dct& dct, int length, bool isAllocated = true) : f(dct) {
        if (isAllocated) {
            EXPECT_EQ(f.initAlloc(&p, length), zvpStsOk) << f.at(length);
        } else {
            int size = 0;
            int initSize = 0;
            EXPECT_EQ(f.getSize(length, kHint, &size, &initSize, &work), zvpStsOk);
            memory.resize(static_cast<size_t>(size));
            Bytes scratch(static_cast<size_t>(initSize) + 1);
            EXPECT_EQ(f.init(&p, length, memory.data(), scratch.data()), zvpStsOk) << f.at(length);
        }
        EXPECT_EQ(f.getBufSize(p, &work), zvpStsOk);
    }
    ~Spec() { EXPECT_EQ(f.free(p), zvpStsOk); }
    Spec(const Spec&) = delete;
    Spec& operator=(const Spec&) = delete;
};

// ---- Results ----

// Every length of a method of its own or at its border, and some of the others.
std::vector<int> lengths() {
    std::vector<int> result;
    for (int n = 1; n <= 134; ++n)
        result.push_back(n);
    for (const int n : {243, 251, 256, 500, 512, 1021, 1024})
        result.push_back(n);
    return result;
}

// The result at a place before a protected page, in memory of exactly the sizes told, from a source at another one.
class Call {
  public:
    Call(const Dct& f, size_t bytes, int work)
        : f_(f), bytes_(bytes), work_(static_cast<size_t>(work)), src_(bytes + 64), dst_(bytes + 64),
          buffer_(work_ + 64) {}

    Bytes operator()(const Spec& spec, const Bytes& data, int scaleFactor, size_t gap, bool inPlace) {
        unsigned char* const src = src_.atEnd(bytes_, gap);
        unsigned char* const dst = dst_.atStart(bytes_, gap);
        unsigned char* const buffer = buffer_.atEnd(work_, gap % 31);
        std::memcpy(inPlace ? dst : src, data.data(), bytes_);
        EXPECT_EQ(inPlace ? f_.callInPlace(dst, spec.p, scaleFactor, buffer)
                          : f_.call(src, dst, spec.p, scaleFactor, buffer),
                  zvpStsOk);
        EXPECT_TRUE(dst_.isIntact() && buffer_.isIntact());
        if (!inPlace) {
            EXPECT_EQ(std::memcmp(src, data.data(), bytes_), 0);
        }
        return Bytes(dst, dst + bytes_);
    }

  private:
    const Dct& f_;
    size_t bytes_;
    size_t work_;
    Arena src_, dst_, buffer_;
};

TEST(Dct, ResultsAreExactToRounding) {
    allocationsLeft = -1;
    for (const Dct& f : kDcts) {
        Random random(f.name);
        for (const int length : lengths()) {
            const auto n = static_cast<size_t>(length);
            Bytes src(n * f.bytes());
            for (size_t i = 0; i < n; ++i)
                setValue(f, src.data(), i, static_cast<double>(random() >> 11) * 0x1p-52 - 1);
            const std::vector<Real> exact = exactDct(f, src, n);
            const int scaleFactor = f.type == 's' ? static_cast<int>(random.below(6)) : 0;
            const Spec allocated(f, length);
            const Spec placed(f, length, false);
            Call call(f, src.size(), placed.work);
            Bytes previous[2];
            for (size_t i = 0; i < 2 * levels().size(); ++i) {
                const Level level = levels()[i / 2];
                const Spec& spec = i % 2 == 0 ? allocated : placed;
                useLevel(level);
                const size_t gap = random.below(8) * f.bytes();
                const Bytes result = call(spec, src, scaleFactor, gap, false);
                Real errors = 0;
                Real values = 0;
                for (size_t k = 0; k < n; ++k) {
                    if (f.type == 's') {
                        const Real scaled = ldexpl(exact[k], -scaleFactor);
                        const Real bounded = std::min(std::max(scaled, -32768.0L), 32767.0L);
                        ASSERT_NEAR(static_cast<double>(valueAt(f, result.data(), k)), static_cast<double>(bounded),
                                    0.5 + 0.02)
                            << f.at(length) << " " << levelName(level) << " " << k;
                    } else {
                        errors += powl(valueAt(f, result.data(), k) - exact[k], 2);
                        values += exact[k] * exact[k];
                    }
                }
                const Real bound = 0.75L * f.epsilon() * sqrtl(1 + log2l(static_cast<Real>(n)));
                ASSERT_LE(errors, bound * bound * values) << f.at(length) << " " << levelName(level);

                ASSERT_EQ(call(spec, src, scaleFactor, 0, false), result) << f.at(length) << " elsewhere";
                ASSERT_EQ(call(spec, src, scaleFactor, gap, true), result) << f.at(length) << " in place";
                if (level == Level::v4) {
                    ASSERT_EQ(result, previous[i % 2]) << f.at(length);
                }
                previous[i % 2] = result;
            }
        }
    }
}

// Basis functions, which have known results at any length, and back.
TEST(Dct, LongTransforms) {
    allocationsLeft = -1;
    for (size_t i = 2; i < std::size(kDcts); i += 2) {
        const Dct& forward = kDcts[i];
        const Dct& inverse = kDcts[i + 1];
        for (const int length : {2048, 4096, 8192, 10007, 16384, 32768, 50000, 65536, 131072, 262144, 1 << 19}) {
            const auto n = static_cast<size_t>(length);
            const size_t time = n / 3;
            Bytes src(n * forward.bytes());
            Bytes dst = src;
            setValue(forward, src.data(), time, 1);
            const Spec there(forward, length);
            const Spec back(inverse, length);
            ASSERT_EQ(forward.call(src.data(), dst.data(), there.p, 0, nullptr), zvpStsOk);
            Real errors = 0;
            for (size_t k = 0; k < n; ++k) {
                const Real angle =
                    static_cast<Real>((2 * time + 1) * k % (4 * n)) * acosl(-1) / static_cast<Real>(2 * n);
                const Real exact = sqrtl((k == 0 ? 1 : 2) / static_cast<Real>(n)) * cosl(angle);
                errors += powl(valueAt(forward, dst.data(), k) - exact, 2);
            }
            const Real bound = 0.75L * forward.epsilon() * sqrtl(log2l(static_cast<Real>(n)));
            EXPECT_LE(sqrtl(errors), bound) << forward.at(length);
            ASSERT_EQ(inverse.callInPlace(dst.data(), back.p, 0, nullptr), zvpStsOk);
            errors = 0;
            for (size_t j = 0; j < n; ++j)
                errors += powl(valueAt(inverse, dst.data(), j) - (j == time ? 1 : 0), 2);
            EXPECT_LE(sqrtl(errors), 2 * bound) << inverse.at(length);
        }
    }
}

TEST(Dct, FarScaleFactorsOfIntegers) {
    allocationsLeft = -1;
    for (const Dct& f : {kDcts[0], kDcts[1]}) {
        for (const int length : {1, 8, 24, 60, 64, 150}) {
            const Spec spec(f, length);
            std::vector<Zvp16s> src(static_cast<size_t>(length), 0);
            std::vector<Zvp16s> dst(src.size());
            src[0] = -3;
            for (const int scaleFactor : {INT_MIN, -40, 40, INT_MAX}) {
                ASSERT_EQ(f.call(src.data(), dst.data(), spec.p, scaleFactor, nullptr), zvpStsOk);
                EXPECT_EQ(dst[0], scaleFactor < 0 ? -32768 : 0) << f.at(length) << " " << scaleFactor;
            }
        }
    }
}

// ---- Objects ----

template <class T>
T fieldAt(const void* spec, size_t offset) {
    T field;
    std::memcpy(&field, static_cast<const char*>(spec) + offset, sizeof(T));
    return field;
}

TEST(Dct, SizesAreThoseOfTheInterface) {
    struct Row {
        int length;
        int spec[2], work[2]; // singles, doubles
    };
    const Row rows[] = {
        {1, {160, 160}, {0, 0}},      {2, {160, 160}, {0, 0}},       {8, {160, 160}, {0, 0}},
        {3, {224, 256}, {44, 56}},    {7, {288, 384}, {60, 88}},     {16, {224, 288}, {96, 160}},
        {32, {288, 416}, {160, 288}}, {33, {704, 1216}, {164, 296}}, {100, {1760, 3360}, {432, 832}},
    };
    allocationsLeft = 0;
    for (const Dct& f : kDcts) {
        const size_t i = f.type == 'd' ? 1 : 0;
        for (const Row& row : rows) {
            int spec = -1;
            int init = -1;
            int work = -1;
            ASSERT_EQ(f.getSize(row.length, kHint, &spec, &init, &work), zvpStsOk) << f.at(row.length);
            EXPECT_EQ(spec, row.spec[i]) << f.at(row.length);
            EXPECT_EQ(init, 0) << f.at(row.length);
            EXPECT_EQ(work, row.work[i] + (f.type == 's' ? 4 * row.length : 0)) << f.at(row.length);
        }
    }
}

// Init at several addresses, in exactly the sizes that GetSize tells.
TEST(Dct, InitKeepsInsideItsSizes) {
    for (const Dct& f : kDcts) {
        for (const int length : {1, 4, 8, 13, 16, 32, 35, 64, 94, 97, 100, 101, 128, 512, 1024, 2048, 8192, 30000}) {
            SCOPED_TRACE(f.at(length));
            allocationsLeft = -1;
            int specSize = -1;
            int initSize = -1;
            int work = -1;
            ASSERT_EQ(f.getSize(length, kHint, &specSize, &initSize, &work), zvpStsOk);
            Arena specMem(static_cast<size_t>(specSize) + 64);
            Arena initBuf(static_cast<size_t>(initSize) + 64);
            for (const size_t gap : {0, 1, 13, 31}) {
                Zvp8u* const memory = specMem.atEnd(static_cast<size_t>(specSize), gap);
                Zvp8u* const scratch = initBuf.atEnd(static_cast<size_t>(initSize), gap);
                void* spec = nullptr;
                if (initSize > 0) {
                    EXPECT_EQ(f.init(&spec, length, memory, nullptr), zvpStsNullPtr);
                    EXPECT_EQ(spec, nullptr);
                }
                ASSERT_EQ(f.init(&spec, length, memory, initSize > 0 ? scratch : nullptr), zvpStsOk);
                EXPECT_TRUE(specMem.isIntact() && initBuf.isIntact());
                EXPECT_EQ(reinterpret_cast<uintptr_t>(spec), (reinterpret_cast<uintptr_t>(memory) + 31) / 32 * 32);

                EXPECT_EQ(fieldAt<uint32_t>(spec, 0), f.tag);
                EXPECT_EQ(fieldAt<int32_t>(spec, 4), length);
                EXPECT_EQ(fieldAt<int32_t>(spec, 8), kHint);
                EXPECT_EQ(fieldAt<int32_t>(spec, 16), 0);
                int bufSize = -1;
                EXPECT_EQ(f.getBufSize(spec, &bufSize), zvpStsOk);
                const int recorded = fieldAt<int32_t>(spec, 12);
                EXPECT_EQ(bufSize, recorded > 0 ? recorded + 32 : 0);
                if (length > 8) {
                    EXPECT_EQ(bufSize, work);
                }
                const bool isPowerOfTwo = (length & (length - 1)) == 0;
                const bool isFixed = isPowerOfTwo && length <= 8;
                const double factors[] = {isFixed ? 0 : 1 / std::sqrt(length),
                                          isFixed ? 0 : 1.414213562373095 / std::sqrt(length)};
                const int marks[] = {isFixed, isPowerOfTwo && !isFixed, isPowerOfTwo && length >= 64,
                                     !isPowerOfTwo && length > 100};
                const bool isDouble = f.type == 'd';
                for (size_t i = 0; i < 2; ++i) {
                    EXPECT_EQ(isDouble ? fieldAt<double>(spec, 24 + 8 * i) : fieldAt<float>(spec, 20 + 4 * i),
                              isDouble ? factors[i] : static_cast<float>(factors[i]));
                }
                for (size_t i = 0; i < 4; ++i)
                    EXPECT_EQ(fieldAt<int32_t>(spec, (isDouble ? 40 : 28) + 4 * i), marks[i]);

                EXPECT_EQ(f.free(spec), zvpStsOk);
                EXPECT_EQ(fieldAt<uint32_t>(spec, 0), 0U);
                EXPECT_EQ(f.free(spec), zvpStsContextMismatch);
                EXPECT_TRUE(blocks.empty());
            }
        }
    }
}

TEST(Dct, ChecksInOrder) {
    allocationsLeft = -1;
    for (const Dct& f : kDcts) {
        SCOPED_TRACE(f.name);
        int a = -1;
        int b = -1;
        int c = -1;
        EXPECT_EQ(f.getSize(0, 0, nullptr, &b, &c), zvpStsBadSize);
        EXPECT_EQ(f.getSize(-5, 0, &a, &b, &c), zvpStsBadSize);
        EXPECT_EQ(f.getSize(1 << 30, 0, nullptr, &b, &c), zvpStsNullPtr);
        EXPECT_EQ(f.getSize(9, 0, &a, nullptr, &c), zvpStsNullPtr);
        EXPECT_EQ(f.getSize(9, 0, &a, &b, nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.getSize(1 << 30, 0, &a, &b, &c), zvpStsBadSize);
        EXPECT_TRUE(a == -1 && b == -1 && c == -1);

        void* spec = &a;
        Zvp8u memory[512] = {};
        EXPECT_EQ(f.init(nullptr, 0, nullptr, nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.init(&spec, 0, nullptr, nullptr), zvpStsBadSize);
        EXPECT_EQ(f.init(&spec, 8, nullptr, nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.init(&spec, 1 << 30, memory, nullptr), zvpStsBadSize);
        EXPECT_EQ(f.initAlloc(nullptr, 0), zvpStsNullPtr);
        EXPECT_EQ(f.initAlloc(&spec, 0), zvpStsBadSize);
        EXPECT_EQ(f.initAlloc(&spec, 1 << 30), zvpStsBadSize);
        EXPECT_EQ(spec, &a);
        EXPECT_EQ(f.free(nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.getBufSize(nullptr, &a), zvpStsNullPtr);

        const Spec made(f, 8);
        EXPECT_EQ(f.getBufSize(made.p, nullptr), zvpStsNullPtr);
        EXPECT_EQ(fieldAt<int32_t>(made.p, 16), 1);
        const Zvp8u untouched[64] = {};
        Zvp8u data[64] = {};
        EXPECT_EQ(f.call(nullptr, data, nullptr, 0, nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.call(nullptr, data, made.p, 0, nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.call(data, nullptr, made.p, 0, nullptr), zvpStsNullPtr);
        EXPECT_EQ(f.callInPlace(nullptr, made.p, 0, nullptr), zvpStsNullPtr);
        for (const Dct& other : kDcts) {
            if (other.tag == f.tag) continue;
            EXPECT_EQ(other.call(nullptr, nullptr, made.p, 0, nullptr), zvpStsContextMismatch) << other.name;
            EXPECT_EQ(other.callInPlace(data, made.p, 0, nullptr), zvpStsContextMismatch) << other.name;
            EXPECT_EQ(other.getBufSize(made.p, &a), zvpStsContextMismatch) << other.name;
            EXPECT_EQ(other.free(made.p), zvpStsContextMismatch) << other.name;
        }
        EXPECT_EQ(std::memcmp(data, untouched, sizeof(data)), 0);
    }
    EXPECT_TRUE(blocks.empty());
}

// Whichever allocation fails, nothing is kept and nothing written.
TEST(Dct, MemoryRunsOut) {
    for (const Dct& f : kDcts) {
        for (const int length : {8, 35, 64, 2048, 150, 151}) {
            SCOPED_TRACE(f.at(length));
            void* spec = nullptr;
            ZvpStatus status = zvpStsNoMemory;
            for (int allowed = 0; status != zvpStsOk; ++allowed) {
                allocationsLeft = allowed;
                status = f.initAlloc(&spec, length);
                ASSERT_TRUE(status == zvpStsOk || status == zvpStsNoMemory);
                EXPECT_EQ(status == zvpStsOk, spec != nullptr);
                EXPECT_EQ(blocks.empty(), status != zvpStsOk);
            }
            const size_t held = blocks.size();
            const Bytes src(static_cast<size_t>(length) * f.bytes(), 1);
            const Bytes untouched(src.size(), 7);
            Bytes dst = untouched;
            status = zvpStsNoMemory;
            for (int allowed = 0; status != zvpStsOk; ++allowed) {
                EXPECT_EQ(dst, untouched);
                allocationsLeft = allowed;
                status = f.call(src.data(), dst.data(), spec, 0, nullptr);
                ASSERT_TRUE(status == zvpStsOk || status == zvpStsNoMemory);
                EXPECT_EQ(blocks.size(), held);
            }
            // With a buffer it needs none.
            int work = -1;
            ASSERT_EQ(f.getBufSize(spec, &work), zvpStsOk);
            Bytes buffer(static_cast<size_t>(work) + 1);
            allocationsLeft = 0;
            EXPECT_EQ(f.call(src.data(), dst.data(), spec, 0, buffer.data() + 1), zvpStsOk);
            EXPECT_EQ(f.free(spec), zvpStsOk);
            EXPECT_TRUE(blocks.empty());
        }
    }
}

} // namespace
} // namespace zvps::test
