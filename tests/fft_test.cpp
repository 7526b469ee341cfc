// The transforms against one of long doubles: accuracy, layouts, normalisation, rounding of integers. The same bits at
// every address, in place and by several threads on one transform object.
#include "framework/arena.hpp"
#include "framework/call.hpp"
#include "framework/fft.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <memory>
#include <thread>

namespace zvps::test {
namespace {

// ---- The oracle ----

struct Complex {
    Real re;
    Real im;
};

// Of n points in bit-reversed order; every `step`th twiddle is one of theirs.
void transformReversed(Complex* x, size_t n, const std::vector<Complex>& twiddles, size_t step) {
    if (n == 1) return;
    const size_t half = n / 2;
    transformReversed(x, half, twiddles, 2 * step);
    transformReversed(x + half, half, twiddles, 2 * step);
    for (size_t k = 0; k < half; ++k) {
        const Complex w = twiddles[k * step];
        Complex& a = x[k];
        Complex& b = x[k + half];
        const Complex turned = {b.re * w.re - b.im * w.im, b.re * w.im + b.im * w.re};
        b = {a.re - turned.re, a.im - turned.im};
        a = {a.re + turned.re, a.im + turned.im};
    }
}

// In place, unscaled.
void transformExactly(std::vector<Complex>& x, bool isForward) {
    const size_t n = x.size();
    for (size_t i = 0, j = 0; i < n; ++i) {
        if (i < j) std::swap(x[i], x[j]);
        size_t bit = n / 2;
        for (; bit > 0 && (j & bit) != 0; bit /= 2)
            j ^= bit;
        j |= bit;
    }
    std::vector<Complex> twiddles(n / 2);
    const Real step = (isForward ? -2 : 2) * acosl(-1) / static_cast<Real>(n);
    for (size_t k = 0; k < n / 2; ++k)
        twiddles[k] = {4 * k == n ? 0 : cosl(step * static_cast<Real>(k)), sinl(step * static_cast<Real>(k))};
    transformReversed(x.data(), n, twiddles, 1);
}

// Where real and imaginary part of X[k], 0 <= k <= N / 2, lie; -1: nowhere.
struct Place {
    ptrdiff_t re;
    ptrdiff_t im;
};
Place placeOf(Layout layout, size_t k, size_t n) {
    const auto pair = static_cast<ptrdiff_t>(2 * k);
    if (layout == Layout::ccs) return {pair, pair + 1};
    if (k == 0) return {0, -1};
    if (2 * k == n) return {layout == Layout::perm ? 1 : static_cast<ptrdiff_t>(n) - 1, -1};
    return layout == Layout::perm ? Place{pair, pair + 1} : Place{pair - 1, pair};
}

// The arrays' contents as points, and back; split arrays follow each other.
std::vector<Complex> pointsOf(const Transform& f, int order, const Reals& data) {
    const size_t n = size_t{1} << order;
    std::vector<Complex> x(n);
    for (size_t i = 0; i < n; ++i) {
        if (f.layout == Layout::interleaved) {
            x[i] = {data[2 * i], data[2 * i + 1]};
        } else if (f.layout == Layout::split) {
            x[i] = {data[i], data[n + i]};
        } else if (f.isForward) {
            x[i] = {data[i], 0};
        } else {
            const size_t k = std::min(i, n - i);
            const Place place = placeOf(f.layout, k, n);
            const bool isReal = k == 0 || 2 * k == n;
            const Real im = isReal ? 0 : data[static_cast<size_t>(place.im)];
            x[i] = {data[static_cast<size_t>(place.re)], i == k ? im : -im};
        }
    }
    return x;
}
Reals arraysOf(const Transform& f, int order, const std::vector<Complex>& x) {
    const size_t n = x.size();
    Reals data(f.resultCount(order) * (f.isSplit() ? 2 : 1));
    for (size_t i = 0; i < n; ++i) {
        if (f.layout == Layout::interleaved) {
            data[2 * i] = x[i].re;
            data[2 * i + 1] = x[i].im;
        } else if (f.layout == Layout::split) {
            data[i] = x[i].re;
            data[n + i] = x[i].im;
        } else if (!f.isForward) {
            data[i] = x[i].re;
        } else if (2 * i <= n && (i == 0 || i < n)) {
            const Place place = placeOf(f.layout, i, n);
            data[static_cast<size_t>(place.re)] = x[i].re;
            if (place.im >= 0) data[static_cast<size_t>(place.im)] = i == 0 || 2 * i == n ? 0 : x[i].im;
        }
    }
    return data;
}

// ---- Objects ----

class Spec {
  public:
    Spec(const SpecType& type, int order, int flag, int hint) : type_(type) {
        EXPECT_EQ(type.initAlloc(&spec_, order, flag, hint), zvpStsOk) << type.name << " " << order;
        int size = 0;
        EXPECT_EQ(type.getBufSize(spec_, &size), zvpStsOk);
        bufferSize = static_cast<size_t>(size);
    }
    ~Spec() { EXPECT_EQ(type_.free(spec_), zvpStsOk); }
    Spec(const Spec&) = delete;
    Spec& operator=(const Spec&) = delete;

    const void* get() const { return spec_; }
    size_t bufferSize;

  private:
    const SpecType& type_;
    void* spec_ = nullptr;
};

Real factorOf(bool isForward, int order, int flag) {
    if (flag == zvpFftScaleSqrt) return 1 / sqrtl(exp2l(order));
    return flag == (isForward ? zvpFftScaleFwd : zvpFftScaleInv) ? exp2l(-order) : 1;
}

// ---- Calls ----

// Memory for the calls of a transform of one order.
class Calls {
  public:
    Calls(const Transform& f, int order)
        : f_(f), arrays_(f.isSplit() ? 2 : 1), srcBytes_(f.sourceCount(order) * f.from->partBytes),
          dstBytes_(f.resultCount(order) * f.to->partBytes) {
        for (size_t i = 0; i < arrays_; ++i) {
            src_[i] = std::make_unique<Arena>(srcBytes_ + kMostGap);
            dst_[i] = std::make_unique<Arena>(std::max(srcBytes_, dstBytes_) + kMostGap);
        }
    }

    // The results. gap: elements between the arrays and the protected pages behind them, or before them; of the results
    // more of them.
    Bytes outOfPlace(const Spec& spec, const Bytes& data, int scaleFactor, size_t gap, bool atStart, size_t more = 0) {
        TransformCall call = {{}, {}, spec.get(), scaleFactor, buffer(spec, gap)};
        for (size_t i = 0; i < arrays_; ++i) {
            unsigned char* const src = place(*src_[i], srcBytes_, gap * f_.from->partBytes, atStart);
            std::copy_n(&data[i * srcBytes_], srcBytes_, src);
            call.src[i] = src;
            call.dst[i] = place(*dst_[i], dstBytes_, (gap + i + more) * f_.to->partBytes, atStart);
        }
        EXPECT_EQ(f_.call(call), zvpStsOk) << f_.name;
        for (size_t i = 0; i < arrays_; ++i)
            EXPECT_EQ(std::memcmp(call.src[i], &data[i * srcBytes_], srcBytes_), 0) << f_.name << ": source changed";
        return results(call);
    }

    // By the function for that, or of split arrays the first in place only.
    Bytes inPlace(const Spec& spec, const Bytes& data, int scaleFactor, size_t gap, bool partly) {
        TransformCall call = {{}, {}, spec.get(), scaleFactor, buffer(spec, gap)};
        for (size_t i = 0; i < arrays_; ++i) {
            const size_t bytes = std::max(srcBytes_, dstBytes_);
            unsigned char* const dst = place(*dst_[i], bytes, gap * f_.to->partBytes, false);
            unsigned char* const src = partly && i == 1 ? place(*src_[i], srcBytes_, 0, false) : dst;
            std::copy_n(&data[i * srcBytes_], srcBytes_, src);
            call.src[i] = src;
            call.dst[i] = dst;
        }
        EXPECT_EQ(partly ? f_.call(call) : f_.callInPlace(call), zvpStsOk) << f_.name;
        return results(call);
    }

  private:
    static constexpr size_t kMostGap = 128;

    static unsigned char* place(Arena& arena, size_t bytes, size_t gap, bool atStart) {
        return atStart ? arena.atStart(bytes, gap) : arena.atEnd(bytes, gap);
    }

    // Where no buffer is needed, an address that must not be used.
    Zvp8u* buffer(const Spec& spec, size_t gap) {
        if (!buffer_) buffer_ = std::make_unique<Arena>(spec.bufferSize + kMostGap);
        return buffer_->atEnd(spec.bufferSize, gap);
    }

    Bytes results(const TransformCall& call) {
        Bytes result;
        for (size_t i = 0; i < arrays_; ++i) {
            const auto* const dst = static_cast<const unsigned char*>(call.dst[i]);
            result.insert(result.end(), dst, dst + dstBytes_);
            EXPECT_TRUE(dst_[i]->isIntact()) << f_.name;
        }
        EXPECT_TRUE(buffer_->isIntact()) << f_.name << ": buffer";
        return result;
    }

    const Transform& f_;
    size_t arrays_;
    size_t srcBytes_;
    size_t dstBytes_;
    std::unique_ptr<Arena> src_[2];
    std::unique_ptr<Arena> dst_[2];
    std::unique_ptr<Arena> buffer_;
};

// ---- Comparison ----

Real sumOfSquares(const Reals& values) {
    Real sum = 0;
    for (const Real v : values)
        sum += v * v;
    return sum;
}

// The squared errors of float results, relative to the mean square: collected over several calls.
struct Errors {
    Real squares = 0;
    Real references = 0;

    void add(const Reals& expected, const Reals& actual) {
        for (size_t i = 0; i < expected.size(); ++i)
            squares += (actual[i] - expected[i]) * (actual[i] - expected[i]);
        references += sumOfSquares(expected);
    }
    double relative() const { return static_cast<double>(sqrtl(squares / references)); }
};

double epsilonOf(const ElementType& type) {
    return type.partBytes == 4 ? 0x1p-23 : 0x1p-52;
}

// Each result is an integer nearest to a value within `slack` of the exact one; ties go to even where slack is 0.
void expectRounded(const Transform& f, const Reals& expected, const Reals& actual, int scaleFactor, Real slack) {
    const Real most = exp2l(static_cast<Real>(8 * f.to->partBytes - 1)) - 1;
    const Real scale = exp2l(-static_cast<Real>(scaleFactor));
    for (size_t i = 0; i < expected.size(); ++i) {
        const Real low = std::clamp(nearbyintl((expected[i] - slack) * scale), -most - 1, most);
        const Real high = std::clamp(nearbyintl((expected[i] + slack) * scale), -most - 1, most);
        ASSERT_TRUE(low <= actual[i] && actual[i] <= high)
            << f.name << " [" << i << "]: " << actual[i] << ", exactly " << expected[i] * scale;
    }
}

// How far the floating-point transform behind that of integers may be from the exact one; 0: not at all.
Real slackOf(const Transform& f, int order, int flag, int hint, const Reals& expected) {
    const bool isNarrow = f.from->partBytes == 2 || f.to->partBytes == 2;
    if (isNarrow && !f.spec->isReal && (order == 0 || (order <= 3 && hint < 2))) {
        const bool isExact = order < 3 && (order % 2 == 0 || flag != zvpFftScaleSqrt);
        return isExact ? 0 : 0x1p-9L * factorOf(f.isForward, order, flag);
    }
    const Real eps = isNarrow ? 0x1p-23L : 0x1p-52L;
    Real largest = 1;
    for (const Real v : expected)
        largest = std::max(largest, fabsl(v));
    return largest * eps * (order + 2);
}

void check(const Transform& f, int order, int flag, int hint, Random& random) {
    const std::string name = std::string(f.name) + " order " + std::to_string(order) + " flag " + std::to_string(flag);
    SCOPED_TRACE(name);
    const Spec spec(*f.spec, order, flag, hint);
    Calls calls(f, order);
    std::vector<Errors> errors(levels().size());
    // Enough of small ones for a mean.
    const int repetitions = order < 9 && f.to->isFloat ? 1 << (9 - order) : 1;
    for (int r = 0; r < repetitions; ++r) {
        const size_t count = f.sourceCount(order) * (f.isSplit() ? 2 : 1);
        const Bytes data = randomData(*f.from, count, random);
        std::vector<Complex> x = pointsOf(f, order, loaded(*f.from, data));
        transformExactly(x, f.isForward);
        Reals expected = arraysOf(f, order, x);
        for (Real& v : expected)
            v *= factorOf(f.isForward, order, flag);
        const auto scaleFactor = static_cast<int>(random.below(20)) - 1;
        for (size_t level = 0; level < levels().size(); ++level) {
            useLevel(levels()[level]);
            const Bytes result = calls.outOfPlace(spec, data, scaleFactor, 0, false);
            const Reals actual = loaded(*f.to, result);
            if (f.to->isFloat) {
                errors[level].add(expected, actual);
                for (size_t i = 0; i < expected.size(); ++i)
                    ASSERT_TRUE(expected[i] != 0 || actual[i] == 0 || f.layout != Layout::ccs) << i;
            } else {
                expectRounded(f, expected, actual, scaleFactor, slackOf(f, order, flag, hint, expected));
            }
            if (r > 2) continue;
            // The same bits wherever the data lie.
            const auto gap = random.below(16) + 1;
            EXPECT_TRUE(result == calls.outOfPlace(spec, data, scaleFactor, gap, r == 1)) << levelName(levels()[level]);
            if (f.callInPlace) {
                EXPECT_TRUE(result == calls.inPlace(spec, data, scaleFactor, random.below(9), false));
                EXPECT_TRUE(!f.isSplit() || result == calls.inPlace(spec, data, scaleFactor, random.below(9), true));
            }
            if (f.to->isFloat) continue;
            for (const int far : {INT_MIN, -70, 70, INT_MAX}) {
                const Bytes limits = calls.outOfPlace(spec, data, far, 0, false);
                const Real slack = slackOf(f, order, flag, hint, expected);
                expectRounded(f, expected, loaded(*f.to, limits), std::clamp(far, -99, 99), slack);
            }
        }
    }
    if (!f.to->isFloat) return;
    for (size_t level = 0; level < levels().size(); ++level) {
        // A factor that is no power of two rounds like one pass more.
        const int roundings = order + (flag == zvpFftScaleSqrt && order % 2 != 0 ? 1 : 0);
        const double bound = 0.45 * epsilonOf(*f.to) * std::sqrt(roundings);
        EXPECT_LE(errors[level].relative(), bound) << levelName(levels()[level]);
    }
}

// ---- Tests ----

class FftOrder : public testing::TestWithParam<int> {};

// Every function by every flag while that is quick; then those of floats; then each kind in one direction, which
// changes from order to order.
TEST_P(FftOrder, IsExactToRounding) {
    constexpr int kFlags[] = {zvpFftScaleFwd, zvpFftScaleInv, zvpFftScaleSqrt, zvpFftScaleNone};
    const int order = GetParam();
    Random random("fft " + std::to_string(order));
    for (const Transform& f : kTransforms) {
        if (order > 13 && !f.to->isFloat) continue;
        const bool isEven = f.layout == Layout::interleaved || f.layout == Layout::pack;
        if (order > 16 && (f.layout == Layout::perm || f.isForward == (isEven == (order % 2 == 0)))) continue;
        if (order > 19 && f.to->partBytes == 8 && (order > 20 || f.spec->isReal)) continue;
        if (order > 20 && !isEven) continue;
        for (const int flag : kFlags) {
            // The factor joins where its transform ends, in the same way for all longer ones.
            if (order > 10 && flag != kFlags[order % 4]) continue;
            check(f, order, flag, order % 2 == 0 ? 0 : 2, random);
            if (order <= 3 && f.to->partBytes == 2) check(f, order, flag, order % 2 == 0 ? 2 : 1, random);
        }
    }
    useLevel(levels().back());
}
INSTANTIATE_TEST_SUITE_P(Orders, FftOrder, testing::Range(0, 23));

// Where arrays that do not start at a line of memory are read and written by whole lines: each distance from a line for
// source and result, and both ends beside protected pages.
TEST(Fft, SameBitsAtEachDistanceFromALine) {
    Random random("lines");
    for (int order = 9; order <= 17; ++order) {
        for (const Transform& f : kTransforms) {
            if (!f.to->isFloat || f.layout == Layout::perm) continue;
            const Spec spec(*f.spec, order, order % 2 == 0 ? zvpFftScaleNone : zvpFftScaleSqrt, 0);
            Calls calls(f, order);
            const Bytes data = randomData(*f.from, f.sourceCount(order) * (f.isSplit() ? 2 : 1), random);
            const size_t distances = 64 / f.to->partBytes;
            for (const Level level : levels()) {
                useLevel(level);
                const Bytes result = calls.outOfPlace(spec, data, 0, 0, false);
                for (size_t gap = 1; gap < distances; ++gap) {
                    // The result's distance is another one each time.
                    EXPECT_TRUE(result == calls.outOfPlace(spec, data, 0, gap, gap % 2 == 0, gap * 3 % distances))
                        << f.name << " order " << order << " gap " << gap << " " << levelName(level);
                }
            }
        }
    }
    useLevel(levels().back());
}

// Where the work buffer holds a small part of the data only. A few impulses: their spectrum is known.
TEST(Fft, VeryLong) {
    struct Impulse {
        size_t place;
        Zvp32fc value;
    };
    const int order = 23;
    const size_t n = size_t{1} << order;
    Random random("very long");
    std::vector<Impulse> impulses;
    for (const float re : {1.0F, -0.5F, 0.75F})
        impulses.push_back({random.below(n), {re, 0.25F - re}});
    const Spec spec(kSpecType<ZvpsFFTSpec_C_32fc>, order, zvpFftScaleNone, 0);
    const auto* const typed = static_cast<const ZvpsFFTSpec_C_32fc*>(spec.get());
    Arena buffer(spec.bufferSize);
    Zvp8u* const work = buffer.atEnd(spec.bufferSize);
    for (const Level level : levels()) {
        useLevel(level);
        std::vector<Zvp32fc> src(n);
        std::vector<Zvp32fc> dst(n);
        for (const Impulse& impulse : impulses)
            src[impulse.place] = impulse.value;
        ASSERT_EQ(zvpsFFTFwd_CToC_32fc(src.data(), dst.data(), typed, work), zvpStsOk);
        ASSERT_EQ(zvpsFFTFwd_CToC_32fc_I(src.data(), typed, work), zvpStsOk);
        EXPECT_EQ(std::memcmp(src.data(), dst.data(), n * sizeof(Zvp32fc)), 0) << levelName(level);
        EXPECT_TRUE(buffer.isIntact()) << levelName(level);
        for (size_t k = 0; k < n; k += 1 + random.below(500)) {
            Complex expected = {0, 0};
            for (const auto& [place, value] : impulses) {
                const Real angle = -2 * acosl(-1) * static_cast<Real>(place * k % n) / static_cast<Real>(n);
                expected.re += value.re * cosl(angle) - value.im * sinl(angle);
                expected.im += value.re * sinl(angle) + value.im * cosl(angle);
            }
            ASSERT_NEAR(dst[k].re, static_cast<double>(expected.re), 2e-6) << levelName(level) << " " << k;
            ASSERT_NEAR(dst[k].im, static_cast<double>(expected.im), 2e-6) << levelName(level) << " " << k;
        }
    }
    useLevel(levels().back());
}

// Where memory is touched line by line, whatever part of a line the data begin with.
TEST(Fft, LongOnesAnywhere) {
    Random random("anywhere");
    for (const Transform& f : kTransforms) {
        const bool isComplex = f.layout == Layout::interleaved;
        if (!f.to->isFloat || !(isComplex || f.layout == Layout::ccs)) continue;
        for (const int order : {18, 19, 20, 22}) {
            if (order > 18 && (f.to->partBytes == 8 || !isComplex || f.isForward == (order == 20))) continue;
            const Spec spec(*f.spec, order, zvpFftScaleNone, 0);
            Calls calls(f, order);
            const Bytes data = randomData(*f.from, f.sourceCount(order), random);
            const Bytes result = calls.outOfPlace(spec, data, 0, 0, false);
            for (const size_t gap : {1, 2, 7}) {
                for (const bool atStart : {false, true}) {
                    EXPECT_TRUE(result == calls.outOfPlace(spec, data, 0, gap, atStart))
                        << f.name << " " << order << " " << gap << " " << atStart;
                }
            }
        }
    }
}

// Ties, which random data seldom hit.
TEST(Fft, SmallIntegersRoundToEven) {
    const Spec spec(kSpecType<ZvpsFFTSpec_C_16sc>, 1, zvpFftScaleFwd, 0);
    const auto* const typed = static_cast<const ZvpsFFTSpec_C_16sc*>(spec.get());
    const Zvp16sc src[2] = {{2, -3}, {1, -2}};
    Zvp16sc dst[2];
    ASSERT_EQ(zvpsFFTFwd_CToC_16sc_Sfs(src, dst, typed, 0, nullptr), zvpStsOk); // 3/2, -5/2, 1/2, -1/2
    EXPECT_EQ(dst[0].re, 2);
    EXPECT_EQ(dst[0].im, -2);
    EXPECT_EQ(dst[1].re, 0);
    EXPECT_EQ(dst[1].im, 0);
}

TEST(Fft, ThreadsShareAnObject) {
    const int order = 12;
    for (const Transform& f : kTransforms) {
        if (f.layout == Layout::pack || f.layout == Layout::ccs) continue;
        const Spec spec(*f.spec, order, zvpFftScaleNone, 0);
        Random random("threads");
        const size_t arrays = f.isSplit() ? 2 : 1;
        const Bytes data = randomData(*f.from, f.sourceCount(order) * arrays, random);
        const size_t bytes = f.resultCount(order) * f.to->partBytes;
        std::vector<Bytes> results(4, Bytes(bytes * arrays));
        std::vector<std::thread> threads;
        for (Bytes& result : results) {
            threads.emplace_back([&] {
                const TransformCall call = {{data.data(), data.data() + data.size() / 2},
                                            {result.data(), result.data() + bytes * (arrays - 1)},
                                            spec.get(),
                                            9,
                                            nullptr};
                for (int i = 0; i < 3; ++i)
                    EXPECT_EQ(f.call(call), zvpStsOk);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        for (const Bytes& result : results)
            EXPECT_TRUE(result == results[0]) << f.name;
    }
}

} // namespace
} // namespace zvps::test
