// Functions on packed spectra against their definitions, at every length, layout, level and address.
#include "framework/arena.hpp"
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace zvps::test {
namespace {

enum class Layout { perm, pack, ccs };

// Where the parts of X[k], 0 <= k <= len / 2, lie among the reals; -1: nowhere.
struct Place {
    int re;
    int im;
};
Place placeOf(Layout layout, int k, int len) {
    if (layout == Layout::ccs) return {2 * k, 2 * k + 1};
    if (k == 0) return {0, -1};
    if (layout == Layout::pack || len % 2 != 0) return {2 * k - 1, 2 * k == len ? -1 : 2 * k};
    return 2 * k == len ? Place{1, -1} : Place{2 * k, 2 * k + 1};
}
size_t sizeOf(Layout layout, int len) {
    return static_cast<size_t>(layout == Layout::ccs ? 2 * (len / 2 + 1) : len);
}

std::vector<int> lengths() {
    std::vector<int> result;
    for (int len = 1; len <= 80; ++len)
        result.push_back(len);
    result.insert(result.end(), {127, 128, 511, 1000, 4099});
    return result;
}

template <class T>
std::vector<T> randomValues(size_t count, Random& random) {
    std::vector<T> values(count);
    for (T& v : values) {
        if constexpr (std::is_integral_v<T>) {
            v = random.below(4) == 0 ? (random.below(2) == 0 ? T{-32768} : T{32767}) : static_cast<T>(random());
        } else {
            v = static_cast<T>(static_cast<double>(random() >> 11) * 0x1p-52 - 1);
        }
    }
    return values;
}

// A vector in guarded memory. Equality of bits.
template <class T>
T* placed(Arena& arena, const std::vector<T>& values, size_t room, size_t gap) {
    T* const place = reinterpret_cast<T*>(arena.atEnd(room * sizeof(T), gap * sizeof(T)));
    std::copy(values.begin(), values.end(), place);
    return place;
}
template <class T>
::testing::AssertionResult isSame(const std::vector<T>& expected, const T* actual, const Arena& arena) {
    for (size_t i = 0; i < expected.size(); ++i) {
        if (std::memcmp(&expected[i], actual + i, sizeof(T)) != 0) {
            return ::testing::AssertionFailure() << "[" << i << "] " << actual[i] << ", not " << expected[i];
        }
    }
    return arena.isIntact() ? ::testing::AssertionSuccess() : ::testing::AssertionFailure() << "beside the vector";
}

// ---- Expansion ----

template <class T>
T negated(T v) {
    if constexpr (std::is_integral_v<T>) {
        return v == std::numeric_limits<T>::min() ? std::numeric_limits<T>::max() : static_cast<T>(-v);
    } else {
        return -v;
    }
}

template <class T, class Complex>
void checkExpansion(const char* name, Layout layout, ZvpStatus (*expand)(const T*, Complex*, int),
                    ZvpStatus (*expandInPlace)(Complex*, int)) {
    SCOPED_TRACE(name);
    Random random(name);
    Arena srcArena(1 << 16);
    Arena dstArena(1 << 17);
    for (const int len : lengths()) {
        SCOPED_TRACE(len);
        const std::vector<T> packed = randomValues<T>(sizeOf(layout, len), random);
        std::vector<T> expected(2 * static_cast<size_t>(len));
        for (int k = 0; k < len; ++k) {
            const Place place = placeOf(layout, std::min(k, len - k), len);
            const T im = place.im < 0 ? T{0} : packed[static_cast<size_t>(place.im)];
            expected[2 * static_cast<size_t>(k)] = packed[static_cast<size_t>(place.re)];
            expected[2 * static_cast<size_t>(k) + 1] = k > len - k ? negated(im) : im;
        }
        for (const Level level : levels()) {
            useLevel(level);
            const size_t gap = random.below(9);
            const T* const src = placed(srcArena, packed, packed.size(), random.below(9));
            T* const dst = placed<T>(dstArena, {}, expected.size(), gap);
            ASSERT_EQ(expand(src, reinterpret_cast<Complex*>(dst), len), zvpStsOk);
            ASSERT_TRUE(isSame(expected, dst, dstArena)) << levelName(level);
            ASSERT_TRUE(isSame(packed, src, srcArena)) << levelName(level) << ": source";
            // Of length 1, the imaginary part of CCS lies in the result's only element.
            T* const srcDst = placed(dstArena, packed, std::max(packed.size(), expected.size()), gap);
            ASSERT_EQ(expandInPlace(reinterpret_cast<Complex*>(srcDst), len), zvpStsOk);
            ASSERT_TRUE(isSame(expected, srcDst, dstArena)) << levelName(level) << " in place";
        }
    }
    Complex one;
    T packed[2];
    EXPECT_EQ(expand(nullptr, &one, 0), zvpStsNullPtr);
    EXPECT_EQ(expand(packed, nullptr, 0), zvpStsNullPtr);
    EXPECT_EQ(expand(packed, &one, 0), zvpStsBadSize);
    EXPECT_EQ(expandInPlace(nullptr, 0), zvpStsNullPtr);
    EXPECT_EQ(expandInPlace(&one, -1), zvpStsBadSize);
}

#define ZVPS_TEST_EXPANSION(NAME, LAYOUT, REAL, COMPLEX)                                                               \
    checkExpansion<Zvp##REAL>(#NAME "_" #COMPLEX, Layout::LAYOUT, NAME##_##COMPLEX, NAME##_##COMPLEX##_I)

TEST(Spectra, Expand) {
    ZVPS_TEST_EXPANSION(zvpsConjPerm, perm, 16s, 16sc);
    ZVPS_TEST_EXPANSION(zvpsConjPerm, perm, 32f, 32fc);
    ZVPS_TEST_EXPANSION(zvpsConjPerm, perm, 64f, 64fc);
    ZVPS_TEST_EXPANSION(zvpsConjPack, pack, 16s, 16sc);
    ZVPS_TEST_EXPANSION(zvpsConjPack, pack, 32f, 32fc);
    ZVPS_TEST_EXPANSION(zvpsConjPack, pack, 64f, 64fc);
    ZVPS_TEST_EXPANSION(zvpsConjCcs, ccs, 16s, 16sc);
    ZVPS_TEST_EXPANSION(zvpsConjCcs, ccs, 32f, 32fc);
    ZVPS_TEST_EXPANSION(zvpsConjCcs, ccs, 64f, 64fc);
}

// ---- Products ----

// x[k] * y[k], or times the conjugate of y[k].
template <class T, class Store>
std::vector<T> products(Layout layout, int len, const std::vector<T>& x, const std::vector<T>& y, bool conjugates,
                        Store store) {
    // Integers exactly; floats by single operations in their own precision.
    using Wide = std::conditional_t<std::is_integral_v<T>, int64_t, T>;
    std::vector<T> result(x.size());
    for (int k = 0; k <= len / 2; ++k) {
        const Place place = placeOf(layout, k, len);
        const auto re = static_cast<size_t>(place.re);
        const Wide a = x[re];
        const Wide c = y[re];
        if (place.im < 0) {
            result[re] = store(a * c);
            continue;
        }
        const auto im = static_cast<size_t>(place.im);
        const Wide b = x[im];
        const Wide d = conjugates ? -Wide{y[im]} : Wide{y[im]};
        result[re] = store(a * c - b * d);
        result[im] = store(a * d + b * c);
    }
    return result;
}

template <class T, class Store, class Multiply, class MultiplyInPlace>
void checkProducts(const char* name, Layout layout, bool conjugates, Store store, Multiply multiply,
                   MultiplyInPlace multiplyInPlace) {
    SCOPED_TRACE(name);
    Random random(name);
    Arena arenas[3] = {Arena(1 << 16), Arena(1 << 16), Arena(1 << 16)};
    for (const int len : lengths()) {
        SCOPED_TRACE(len);
        const auto count = static_cast<size_t>(len);
        const std::vector<T> x = randomValues<T>(count, random);
        const std::vector<T> y = randomValues<T>(count, random);
        const std::vector<T> expected = products(layout, len, x, y, conjugates, store);
        for (const Level level : levels()) {
            useLevel(level);
            const T* const src1 = placed(arenas[0], x, count, random.below(9));
            T* const src2 = placed(arenas[1], y, count, random.below(9));
            T* const dst = placed<T>(arenas[2], {}, count, random.below(9));
            if (!conjugates) {
                ASSERT_EQ(multiply(src1, src2, dst, len), zvpStsOk);
                ASSERT_TRUE(isSame(expected, dst, arenas[2])) << levelName(level);
                ASSERT_TRUE(isSame(y, src2, arenas[1])) << levelName(level) << ": source";
            }
            ASSERT_EQ(multiplyInPlace(src1, src2, len), zvpStsOk);
            ASSERT_TRUE(isSame(expected, src2, arenas[1])) << levelName(level) << " in place";
            ASSERT_TRUE(isSame(x, src1, arenas[0])) << levelName(level) << ": source";
        }
    }
    T one[1] = {};
    EXPECT_EQ(multiplyInPlace(nullptr, one, 0), zvpStsNullPtr);
    EXPECT_EQ(multiplyInPlace(one, nullptr, 0), zvpStsNullPtr);
    EXPECT_EQ(multiplyInPlace(one, one, 0), zvpStsBadSize);
    if (conjugates) return;
    EXPECT_EQ(multiply(one, one, nullptr, 1), zvpStsNullPtr);
    EXPECT_EQ(multiply(one, one, one, -1), zvpStsBadSize);
}

template <class T>
void checkFloatProducts(const char* name, Layout layout, ZvpStatus (*multiply)(const T*, const T*, T*, int),
                        ZvpStatus (*multiplyInPlace)(const T*, T*, int)) {
    const auto same = [](T v) { return v; };
    checkProducts<T>(name, layout, multiply == nullptr, same, multiply, multiplyInPlace);
}

void checkScaledProducts(const char* name, Layout layout,
                         ZvpStatus (*multiply)(const Zvp16s*, const Zvp16s*, Zvp16s*, int, int),
                         ZvpStatus (*multiplyInPlace)(const Zvp16s*, Zvp16s*, int, int)) {
    for (const int scaleFactor : {-16, -1, 0, 1, 15, 16, 30, 31, 32, 40}) {
        SCOPED_TRACE(scaleFactor);
        checkProducts<Zvp16s>(
            name, layout, false,
            [=](int64_t v) {
                const double scaled = std::nearbyint(std::ldexp(static_cast<double>(v), -scaleFactor));
                return static_cast<Zvp16s>(std::clamp(scaled, -32768.0, 32767.0));
            },
            [=](const Zvp16s* x, const Zvp16s* y, Zvp16s* dst, int len) {
                return multiply(x, y, dst, len, scaleFactor);
            },
            [=](const Zvp16s* x, Zvp16s* y, int len) { return multiplyInPlace(x, y, len, scaleFactor); });
    }
}

TEST(Spectra, Multiply) {
    checkFloatProducts("MulPerm_32f", Layout::perm, zvpsMulPerm_32f, zvpsMulPerm_32f_I);
    checkFloatProducts("MulPerm_64f", Layout::perm, zvpsMulPerm_64f, zvpsMulPerm_64f_I);
    checkFloatProducts("MulPack_32f", Layout::pack, zvpsMulPack_32f, zvpsMulPack_32f_I);
    checkFloatProducts("MulPack_64f", Layout::pack, zvpsMulPack_64f, zvpsMulPack_64f_I);
    checkFloatProducts<Zvp32f>("MulPackConj_32f", Layout::pack, nullptr, zvpsMulPackConj_32f_I);
    checkFloatProducts<Zvp64f>("MulPackConj_64f", Layout::pack, nullptr, zvpsMulPackConj_64f_I);
    checkScaledProducts("MulPerm_16s", Layout::perm, zvpsMulPerm_16s_Sfs, zvpsMulPerm_16s_ISfs);
    checkScaledProducts("MulPack_16s", Layout::pack, zvpsMulPack_16s_Sfs, zvpsMulPack_16s_ISfs);
}

TEST(Spectra, PowerHasNoImaginaryPart) {
    Random random("power");
    std::vector<Zvp32f> spectrum = randomValues<Zvp32f>(64, random);
    ASSERT_EQ(zvpsMulPackConj_32f_I(spectrum.data(), spectrum.data(), 64), zvpStsOk);
    for (size_t k = 2; k < 63; k += 2)
        EXPECT_EQ(spectrum[k], 0) << k;
}

} // namespace
} // namespace zvps::test
