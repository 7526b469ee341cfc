// Hilbert transforms against spectra of long doubles, the life cycle of their objects, and memory that runs out.
#include "framework/call.hpp"
#include "framework/memory.hpp"

#include <climits>
#include <cmath>

namespace zvps::test {
namespace {

using Real = long double;

// ---- The functions ----

struct Hilbert {
    const char* name;
    uint32_t tag;
    size_t srcBytes, dstBytes;
    ZvpStatus (*initAlloc)(void** spec, int len);
    ZvpStatus (*free)(void* spec);
    ZvpStatus (*call)(const void* src, void* dst, const void* spec, int scaleFactor);

    bool isInteger() const { return dstBytes == 4; }
    std::string at(int length) const { return std::string(name) + " " + std::to_string(length); }
};

template <class S, class D, class Spec>
ZvpStatus run(ZvpStatus (*f)(const S*, D*, const Spec*), const void* src, void* dst, const void* spec, int) {
    return f(static_cast<const S*>(src), static_cast<D*>(dst), static_cast<const Spec*>(spec));
}
template <class S, class D, class Spec>
ZvpStatus run(ZvpStatus (*f)(const S*, D*, const Spec*, int), const void* src, void* dst, const void* spec,
              int scaleFactor) {
    return f(static_cast<const S*>(src), static_cast<D*>(dst), static_cast<const Spec*>(spec), scaleFactor);
}

#define ZVPS_TEST_HILBERT(CODE, SFS, TAG, SRC, DST)                                                                    \
    {                                                                                                                  \
#CODE, TAG, sizeof(SRC), sizeof(DST),                                                                          \
            [](void** spec, int len) {                                                                                 \
                return zvpsHilbertInitAlloc_##CODE(reinterpret_cast<ZvpsHilbertSpec_##CODE**>(spec), len, 3);          \
            },                                                                                                         \
            [](void* spec) { return zvpsHilbertFree_##CODE(static_cast<ZvpsHilbertSpec_##CODE*>(spec)); },             \
            [](const void* src, void* dst, const void* spec, int scaleFactor) {                                        \
                return run(zvpsHilbert_##CODE##SFS, src, dst, spec, scaleFactor);                                      \
            },       \
    }

const Hilbert kHilberts[] = {
    ZVPS_TEST_HILBERT(32f32fc, , 0x434D4145, Zvp32f, Zvp32fc),
    ZVPS_TEST_HILBERT(16s32fc, , 0x434D4146, Zvp16s, Zvp32fc),
    ZVPS_TEST_HILBERT(16s16sc, _Sfs, 0x434D4147, Zvp16s, Zvp16sc),
};

// ---- Results ----

// The parts of the analytic signal: every frequency between 0 and L/2 turns a cosine into cosine and sine.
std::vector<Real> analytic(const std::vector<Real>& x) {
    const size_t n = x.size();
    std::vector<Real> cosines(n);
    std::vector<Real> sines(n);
    for (size_t i = 0; i < n; ++i) {
        cosines[i] = cosl(2 * acosl(-1) * static_cast<Real>(i) / static_cast<Real>(n));
        sines[i] = sinl(2 * acosl(-1) * static_cast<Real>(i) / static_cast<Real>(n));
    }
    std::vector<Real> result(2 * n);
    for (size_t i = 0; i < n; ++i)
        result[2 * i] = x[i];
    for (size_t k = 1; 2 * k < n; ++k) {
        Real re = 0;
        Real im = 0;
        for (size_t i = 0; i < n; ++i) {
            re += x[i] * cosines[i * k % n];
            im -= x[i] * sines[i * k % n];
        }
        for (size_t i = 0; i < n; ++i)
            result[2 * i + 1] += 2 / static_cast<Real>(n) * (re * sines[i * k % n] + im * cosines[i * k % n]);
    }
    return result;
}

TEST(Hilbert, ResultsAreExactToRounding) {
    allocationsLeft = -1;
    for (const Hilbert& f : kHilberts) {
        Random random(f.name);
        for (const int length :
             {1, 2, 3, 4, 5, 6, 7, 8, 15, 16, 17, 32, 50, 64, 67, 97, 100, 128, 150, 255, 512, 1000}) {
            const auto n = static_cast<size_t>(length);
            Bytes src(n * f.srcBytes);
            std::vector<Real> values(n);
            for (size_t i = 0; i < n; ++i) {
                const auto narrow = static_cast<Zvp16s>(random() >> 8);
                const auto wide = static_cast<Zvp32f>(narrow) / 3;
                values[i] = f.srcBytes == 2 ? static_cast<Real>(narrow) : static_cast<Real>(wide);
                std::memcpy(&src[i * f.srcBytes], f.srcBytes == 2 ? static_cast<const void*>(&narrow) : &wide,
                            f.srcBytes);
            }
            const std::vector<Real> exact = analytic(values);
            const int scaleFactor = f.isInteger() ? static_cast<int>(random.below(5)) - 1 : 0;
            void* spec = nullptr;
            ASSERT_EQ(f.initAlloc(&spec, length), zvpStsOk);
            for (const Level level : levels()) {
                useLevel(level);
                SCOPED_TRACE(f.at(length) + " " + levelName(level));
                Bytes dst(n * f.dstBytes + 1, 0x5a);
                ASSERT_EQ(f.call(src.data(), dst.data(), spec, scaleFactor), zvpStsOk);
                EXPECT_EQ(dst.back(), 0x5a);
                Real errors = 0;
                Real sum = 0;
                for (size_t i = 0; i < 2 * n; ++i) {
                    if (f.isInteger()) {
                        Zvp16s part;
                        std::memcpy(&part, &dst[i * sizeof(part)], sizeof(part));
                        const Real scaled = ldexpl(exact[i], -scaleFactor);
                        const Real bounded = std::min(std::max(scaled, -32768.0L), 32767.0L);
                        // Two samples are not transformed.
                        ASSERT_NEAR(part, static_cast<double>(bounded), length <= 2 ? 0.5 : 0.5 + 0.05) << i;
                        if (length <= 2 && scaled - floorl(scaled) == 0.5L) {
                            EXPECT_EQ(part % 2, 0) << i;
                        }
                    } else {
                        Zvp32f part;
                        std::memcpy(&part, &dst[i * sizeof(part)], sizeof(part));
                        if (length <= 2) {
                            ASSERT_EQ(static_cast<Real>(part), exact[i]) << i;
                        }
                        errors += powl(static_cast<Real>(part) - exact[i], 2);
                        sum += exact[i] * exact[i];
                    }
                }
                if (!f.isInteger()) {
                    // Two transforms.
                    EXPECT_LE(sqrtl(errors / sum), 0x1p-22L * sqrtl(1 + log2l(static_cast<Real>(n))));
                }
            }
            EXPECT_EQ(f.free(spec), zvpStsOk);
        }
    }
}

TEST(Hilbert, FarScaleFactors) {
    allocationsLeft = -1;
    for (const int length : {2, 4}) {
        const Zvp16s src[4] = {1, -1, 1, -1}; // the highest frequency stays real
        Zvp16sc dst[4];
        void* spec = nullptr;
        ASSERT_EQ(kHilberts[2].initAlloc(&spec, length), zvpStsOk);
        for (const int scaleFactor : {INT_MIN, -17, 17, INT_MAX}) {
            ASSERT_EQ(kHilberts[2].call(src, dst, spec, scaleFactor), zvpStsOk);
            EXPECT_EQ(dst[0].re, scaleFactor < 0 ? 32767 : 0) << scaleFactor;
            EXPECT_EQ(dst[1].re, scaleFactor < 0 ? -32768 : 0) << scaleFactor;
        }
        EXPECT_EQ(kHilberts[2].free(spec), zvpStsOk);
    }
}

// ---- Objects ----

TEST(Hilbert, ChecksInOrder) {
    allocationsLeft = -1;
    for (const Hilbert& f : kHilberts) {
        SCOPED_TRACE(f.name);
        Zvp32fc src[4] = {};
        Zvp32fc dst[4] = {};
        void* spec = src;
        EXPECT_EQ(f.initAlloc(nullptr, 0), zvpStsNullPtr);
        EXPECT_EQ(f.initAlloc(&spec, 0), zvpStsBadSize);
        EXPECT_EQ(spec, src);
        EXPECT_EQ(f.initAlloc(&spec, INT_MAX), zvpStsBadSize);
        EXPECT_EQ(spec, nullptr);
        ASSERT_EQ(f.initAlloc(&spec, 4), zvpStsOk);
        uint32_t fields[4];
        std::memcpy(fields, spec, sizeof(fields));
        EXPECT_TRUE(fields[0] == f.tag && fields[1] == 4 && fields[3] == 3);

        EXPECT_EQ(f.call(nullptr, dst, spec, 0), zvpStsNullPtr);
        EXPECT_EQ(f.call(src, nullptr, spec, 0), zvpStsNullPtr);
        EXPECT_EQ(f.call(src, dst, nullptr, 0), zvpStsNullPtr);
        EXPECT_EQ(f.free(nullptr), zvpStsNullPtr);
        for (const Hilbert& other : kHilberts) {
            if (other.tag == f.tag) continue;
            EXPECT_EQ(other.call(nullptr, dst, spec, 0), zvpStsNullPtr) << other.name;
            EXPECT_EQ(other.call(src, dst, spec, 0), zvpStsContextMismatch) << other.name;
            EXPECT_EQ(other.free(spec), zvpStsContextMismatch) << other.name;
        }
        EXPECT_EQ(f.free(spec), zvpStsOk);
        EXPECT_TRUE(blocks.empty());
    }
}

TEST(Hilbert, MemoryRunsOut) {
    for (const Hilbert& f : kHilberts) {
        for (const int length : {2, 6, 64, 150, 151}) {
            SCOPED_TRACE(f.at(length));
            void* spec = nullptr;
            ZvpStatus status = zvpStsNoMemory;
            int allowed = 0;
            for (; status != zvpStsOk; ++allowed) {
                allocationsLeft = allowed;
                status = f.initAlloc(&spec, length);
                ASSERT_TRUE(status == zvpStsOk || status == zvpStsNoMemory);
                EXPECT_EQ(status == zvpStsOk, spec != nullptr);
                EXPECT_EQ(blocks.empty(), status != zvpStsOk);
            }
            EXPECT_GT(allowed, 3);
            const size_t held = blocks.size();
            const Bytes src(static_cast<size_t>(length) * f.srcBytes, 1);
            Bytes dst(static_cast<size_t>(length) * f.dstBytes, 7);
            status = zvpStsNoMemory;
            for (allowed = 0; status != zvpStsOk; ++allowed) {
                allocationsLeft = allowed;
                status = f.call(src.data(), dst.data(), spec, 0);
                ASSERT_TRUE(status == zvpStsOk || status == zvpStsNoMemory);
                EXPECT_EQ(blocks.size(), held);
            }
            // One block at most.
            EXPECT_LE(allowed, length <= 2 ? 1 : 2);
            EXPECT_EQ(f.free(spec), zvpStsOk);
            EXPECT_TRUE(blocks.empty());
        }
    }
}

} // namespace
} // namespace zvps::test
