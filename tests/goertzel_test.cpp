// The transforms at single frequencies against direct sums in higher precision.
#include "framework/call.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>

#include <climits>
#include <cmath>

namespace zvps::test {
namespace {

// The end of a page before a protected one.
class GuardedEnd {
  public:
    explicit GuardedEnd(size_t bytes) : size_((bytes + kPage) / kPage * kPage + kPage) {
        void* block = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED) throw std::bad_alloc();
        begin_ = static_cast<unsigned char*>(block);
        if (mprotect(end(), kPage, PROT_NONE) != 0) throw std::bad_alloc();
    }
    ~GuardedEnd() { munmap(begin_, size_); }
    GuardedEnd(const GuardedEnd&) = delete;
    GuardedEnd& operator=(const GuardedEnd&) = delete;
    unsigned char* end() const { return begin_ + size_ - kPage; }

  private:
    static constexpr size_t kPage = 4096;
    size_t size_;
    unsigned char* begin_;
};

struct LongComplex {
    long double re = 0;
    long double im = 0;
    long double magnitudes = 0; // the sum of the elements', the scale of what rounding may cost
};

// The fraction of f * n, both parts of f by themselves so that the products are exact.
long double turns(double f, size_t n) {
    const double high = static_cast<float>(f);
    const long double low = static_cast<long double>(f) - high;
    const auto places = static_cast<long double>(n);
    const long double product = high * places;
    return product - std::floor(product) + low * places;
}

template <class T>
LongComplex direct(const std::vector<T>& x, double f) {
    constexpr long double kPi = 3.14159265358979323846264338327950288L;
    LongComplex sum;
    for (size_t n = 0; n < x.size(); ++n) {
        const long double angle = 2 * kPi * turns(f, n);
        const long double c = std::cos(angle);
        const long double s = -std::sin(angle);
        long double re, im = 0;
        if constexpr (std::is_arithmetic_v<T>) {
            re = x[n];
        } else {
            re = x[n].re;
            im = x[n].im;
        }
        sum.re += re * c - im * s;
        sum.im += re * s + im * c;
        sum.magnitudes += std::hypot(re, im);
    }
    return sum;
}

template <class T>
std::vector<T> signal(size_t length, Random& random) {
    std::vector<T> x(length);
    const auto part = [&](auto& value) {
        using Part = std::remove_reference_t<decltype(value)>;
        if constexpr (std::is_integral_v<Part>) {
            value = static_cast<Part>(random());
        } else {
            value = static_cast<Part>(static_cast<double>(static_cast<int64_t>(random())) * 0x1p-63);
        }
    };
    for (T& element : x) {
        if constexpr (std::is_arithmetic_v<T>) {
            part(element);
        } else {
            part(element.re);
            part(element.im);
        }
    }
    return x;
}

// One call for all forms: value[0] for one frequency or value[0] and value[1] for two.
template <class T, class Value, class Frequency>
struct Form {
    const char* name;
    ZvpStatus (*one)(const T*, int, Value*, Frequency, int);
    ZvpStatus (*two)(const T*, int, Value*, const Frequency*, int);
};
#define UNSCALED(TYPE, RESULT, FREQUENCY)                                                                                 \
    Form<Zvp##TYPE, Zvp##RESULT, Zvp##FREQUENCY> {                                                                        \
#TYPE,                                                                                                            \
            [](const Zvp##TYPE* x, int len, Zvp##RESULT* val, Zvp##FREQUENCY f,                                           \
               int) { return zvpsGoertz_##TYPE(x, len, val, f); },                                                        \
                                                                [](const Zvp##TYPE* x, int len, Zvp##RESULT* val,         \
                                                                   const Zvp##FREQUENCY* f,                               \
                                                                   int) { return zvpsGoertzTwo_##TYPE(x, len, val, f); }, \
    }

template <class Action>
void forEachForm(Action action) {
    action(Form<Zvp16s, Zvp16sc, Zvp32f>{"16s_Sfs", zvpsGoertz_16s_Sfs, nullptr});
    action(Form<Zvp16sc, Zvp16sc, Zvp32f>{"16sc_Sfs", zvpsGoertz_16sc_Sfs, zvpsGoertzTwo_16sc_Sfs});
    action(UNSCALED(32f, 32fc, 32f));
    action(UNSCALED(32fc, 32fc, 32f));
    action(UNSCALED(64f, 64fc, 64f));
    action(UNSCALED(64fc, 64fc, 64f));
}

template <class Part>
void expectPart(Part actual, long double expected, long double magnitudes, int scaleFactor, const std::string& where) {
    const long double bound = 48 * magnitudes * std::numeric_limits<double>::epsilon();
    if constexpr (std::is_integral_v<Part>) {
        const auto rounded = [&](long double value) {
            return std::fmin(32767.0L, std::fmax(-32768.0L, std::nearbyint(std::ldexp(value, -scaleFactor))));
        };
        EXPECT_GE(actual, rounded(expected - bound)) << where;
        EXPECT_LE(actual, rounded(expected + bound)) << where;
    } else {
        const long double last = std::abs(expected) * std::numeric_limits<Part>::epsilon();
        EXPECT_NEAR(static_cast<double>(actual - expected), 0, static_cast<double>(bound + last)) << where;
    }
}

template <class T, class Value, class Frequency>
void expectSums(const Form<T, Value, Frequency>& form) {
    Random random(form.name);
    std::vector<size_t> lengths = {127, 128, 129, 205, 1000, 4095, 4096, 4097, 8192, 10001, 100000};
    for (size_t length = 1; length <= 70; length += 3)
        lengths.push_back(length);
    const std::vector<double> frequencies = {0,   1e-9,       1e-4, 0.125,    1.0 / 3,         0.25,
                                             0.5, 0.5 - 1e-7, 0.75, 1.0 / 64, 0.984375 + 1e-6, 0.99999};
    for (const size_t length : lengths) {
        const auto x = signal<T>(length, random);
        GuardedEnd memory(length * sizeof(T) + 64);
        for (size_t k = length > 5000 ? random.below(6) : 0; k<frequencies.size(); k += length> 5000 ? 6 : 1) {
            const auto f = static_cast<Frequency>(frequencies[k]);
            const LongComplex expected = direct(x, f);
            // Fractions of the largest sum that a 16-bit result can hold, saturated ones too.
            const int scaleFactor = std::is_integral_v<decltype(Value::re)> ? static_cast<int>(random.below(12)) : 0;
            Value first{};
            for (const Level level : levels()) {
                const std::string where = std::string(form.name) + " by " + levelName(level) + ", len " +
                                          std::to_string(length) + ", f " + std::to_string(f) + ", scale factor " +
                                          std::to_string(scaleFactor);
                useLevel(level);
                for (const size_t offset : {0, 1, 5}) {
                    T* copy = reinterpret_cast<T*>(memory.end()) - length - offset % (64 / sizeof(T));
                    std::memcpy(copy, x.data(), length * sizeof(T));
                    Value value{};
                    ASSERT_EQ(form.one(copy, static_cast<int>(length), &value, f, scaleFactor), zvpStsOk);
                    if (level == levels().front() && offset == 0) first = value;
                    ASSERT_EQ(std::memcmp(&value, &first, sizeof(value)), 0) << where << ", offset " << offset;
                    if (form.two == nullptr) continue;
                    const Frequency both[] = {Frequency{0.25}, f};
                    Value values[2];
                    ASSERT_EQ(form.two(copy, static_cast<int>(length), values, both, scaleFactor), zvpStsOk);
                    ASSERT_EQ(std::memcmp(&values[1], &first, sizeof(value)), 0) << where << ", second of two";
                }
                expectPart(first.re, expected.re, expected.magnitudes, scaleFactor, where + ", re");
                expectPart(first.im, expected.im, expected.magnitudes, scaleFactor, where + ", im");
                if (testing::Test::HasFailure()) return;
            }
        }
    }
    useLevel(levels().back());
}

// Against the direct sum; the same bits on every level, at every address, alone and as one of two; no read beyond.
TEST(Goertzel, Sums) {
    forEachForm([](const auto& form) { expectSums(form); });
}

// A sum that is exact in double: what any scale factor makes of it.
TEST(Goertzel, ScaleFactors) {
    struct Case {
        Zvp16s x;
        int scaleFactor;
        Zvp16s expected;
    };
    const Case cases[] = {{5, 1, 2},        {7, 1, 4},         {-5, 1, -2},         {3, -2, 12},
                          {1, -15, 32767},  {-1, -15, -32768}, {-1, -16, -32768},   {0, INT_MIN, 0},
                          {9, INT_MAX, 0},  {1, 1, 0},         {1, INT_MIN, 32767}, {-1, INT_MIN, -32768},
                          {-32768, 15, -1}, {24, 4, 2},        {40, 4, 2}};
    for (const Case& c : cases) {
        const Zvp16s real[3] = {0, c.x, 0};
        const Zvp16sc complex[3] = {{0, 0}, {c.x, 0}, {0, 0}};
        Zvp16sc value{1, 1};
        EXPECT_EQ(zvpsGoertz_16s_Sfs(real, 3, &value, 0, c.scaleFactor), zvpStsOk);
        EXPECT_EQ(value.re, c.expected) << c.x << " by " << c.scaleFactor;
        EXPECT_EQ(value.im, 0);
        // Three quarters of a turn: the element turns to the imaginary axis.
        EXPECT_EQ(zvpsGoertzQ15_16sc_Sfs(complex, 3, &value, 3 << 13, c.scaleFactor), zvpStsOk);
        EXPECT_EQ(value.im, c.expected) << c.x << " by " << c.scaleFactor;
        EXPECT_EQ(value.re, 0);
    }
}

TEST(Goertzel, Q15) {
    Random random("Q15");
    const auto x = signal<Zvp16sc>(333, random);
    for (int step = 0; step < 32768; step += 151) {
        const Zvp16s q15[2] = {static_cast<Zvp16s>(step), static_cast<Zvp16s>(32767 - step)};
        const Zvp32f frequencies[2] = {static_cast<float>(q15[0]) / 32768, static_cast<float>(q15[1]) / 32768};
        Zvp16sc expected[2], values[2], one;
        ASSERT_EQ(zvpsGoertzTwo_16sc_Sfs(x.data(), 333, expected, frequencies, 6), zvpStsOk);
        ASSERT_EQ(zvpsGoertzTwoQ15_16sc_Sfs(x.data(), 333, values, q15, 6), zvpStsOk);
        ASSERT_EQ(zvpsGoertzQ15_16sc_Sfs(x.data(), 333, &one, q15[0], 6), zvpStsOk);
        EXPECT_EQ(std::memcmp(values, expected, sizeof(values)), 0) << step;
        EXPECT_EQ(std::memcmp(&one, expected, sizeof(one)), 0) << step;
    }
}

template <class T, class Value, class Frequency>
void expectErrors(const Form<T, Value, Frequency>& form) {
    const T x[4] = {};
    Value untouched;
    std::memset(&untouched, 0x5A, sizeof(untouched));
    Value val[2] = {untouched, untouched};
    for (const Frequency bad :
         {static_cast<Frequency>(-0.001), Frequency{1}, static_cast<Frequency>(-1e-30), Frequency{7},
          std::numeric_limits<Frequency>::infinity(), std::numeric_limits<Frequency>::quiet_NaN()}) {
        EXPECT_EQ(form.one(nullptr, 0, val, bad, 0), zvpStsNullPtr) << form.name;
        EXPECT_EQ(form.one(x, 0, nullptr, bad, 0), zvpStsNullPtr) << form.name;
        EXPECT_EQ(form.one(x, 0, val, bad, 0), zvpStsBadSize) << form.name;
        EXPECT_EQ(form.one(x, INT_MIN, val, bad, 0), zvpStsBadSize) << form.name;
        EXPECT_EQ(form.one(x, 4, val, bad, 0), zvpStsBadRelFreq) << form.name << " " << bad;
        if (form.two == nullptr) continue;
        for (const auto& both : {std::array<Frequency, 2>{bad, 0}, std::array<Frequency, 2>{0, bad}}) {
            EXPECT_EQ(form.two(nullptr, 0, val, both.data(), 0), zvpStsNullPtr) << form.name;
            EXPECT_EQ(form.two(x, 0, nullptr, both.data(), 0), zvpStsNullPtr) << form.name;
            EXPECT_EQ(form.two(x, 0, val, nullptr, 0), zvpStsNullPtr) << form.name;
            EXPECT_EQ(form.two(x, 0, val, both.data(), 0), zvpStsBadSize) << form.name;
            EXPECT_EQ(form.two(x, 4, val, both.data(), 0), zvpStsBadRelFreq) << form.name << " " << bad;
        }
    }
    for (const Value& v : val)
        EXPECT_EQ(std::memcmp(&v, &untouched, sizeof(v)), 0) << form.name;
}

TEST(Goertzel, Errors) {
    forEachForm([](const auto& form) { expectErrors(form); });

    const Zvp16sc x[4] = {};
    Zvp16sc val[2] = {{77, 77}, {77, 77}};
    EXPECT_EQ(zvpsGoertzQ15_16sc_Sfs(nullptr, 0, nullptr, -1, 0), zvpStsBadRelFreq);
    EXPECT_EQ(zvpsGoertzQ15_16sc_Sfs(nullptr, 0, val, 0, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsGoertzQ15_16sc_Sfs(x, 4, nullptr, 0, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsGoertzQ15_16sc_Sfs(x, 0, val, 0, 0), zvpStsBadSize);
    const Zvp16s good[2] = {0, 1}, firstBad[2] = {-1, 1}, secondBad[2] = {0, -32768};
    EXPECT_EQ(zvpsGoertzTwoQ15_16sc_Sfs(nullptr, 0, nullptr, nullptr, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsGoertzTwoQ15_16sc_Sfs(nullptr, 0, nullptr, firstBad, 0), zvpStsBadRelFreq);
    EXPECT_EQ(zvpsGoertzTwoQ15_16sc_Sfs(x, 0, val, secondBad, 0), zvpStsBadRelFreq);
    EXPECT_EQ(zvpsGoertzTwoQ15_16sc_Sfs(nullptr, 0, val, good, 0), zvpStsNullPtr);
    EXPECT_EQ(zvpsGoertzTwoQ15_16sc_Sfs(x, 0, val, good, 0), zvpStsBadSize);
    for (const Zvp16sc& v : val)
        EXPECT_EQ(v.re, 77);
}

} // namespace
} // namespace zvps::test
