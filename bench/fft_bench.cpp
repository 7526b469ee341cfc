#include "zvps/fft.h"

#include "bench.hpp"
#include "peers.hpp"

#include <fftw3.h>

#include <cmath>
#include <functional>
#include <map>
#include <memory>

// Rows FFT_<type><form>: transforms of LENGTH points against FFTW's plans from FFTW_MEASURE on the same arrays. Real
// spectra are in CCS layout, which is FFTW's. Counter `error`: the root of the mean square error over that of the
// result, against FFTW in long double.
namespace bench {
namespace {

constexpr int kLeastOrder = 2;
constexpr int kMostOrder = 22;

enum class Form { outOfPlace, inPlace, unaligned, inverse };
const std::map<Form, const char*> kForms = {
    {Form::outOfPlace, ""}, {Form::inPlace, "_I"}, {Form::unaligned, "@all"}, {Form::inverse, "_Inv"}};

// ---- Arrays ----

// Room for the longest transform twice, one element more for misaligned ones.
template <class T>
struct Arrays {
    T* src;
    T* dst;

    Arrays() {
        constexpr size_t kBytes = ((2 * sizeof(T)) << kMostOrder) + 4096;
        constexpr size_t kApart = 1088; // out of each other's cache sets
        auto* const block = static_cast<unsigned char*>(::operator new (2 * kBytes + kApart, std::align_val_t{4096}));
        src = reinterpret_cast<T*>(block);
        dst = reinterpret_cast<T*>(block + kBytes + kApart);
    }
};

// Those of one call. In place and for inverses, which may spoil their input, the data are zeros: transformed over and
// over, others would leave the numbers.
template <class T>
struct Operands {
    T* src;
    T* dst;

    Operands(Form form, size_t parts) {
        static const Arrays<T> arrays;
        const size_t offset = form == Form::unaligned ? 1 : 0;
        src = (form == Form::inPlace ? arrays.dst : arrays.src) + offset;
        dst = arrays.dst + offset;
        Values values;
        const bool isZero = form == Form::inPlace || form == Form::inverse;
        for (size_t i = 0; i < parts; ++i) {
            src[i] = isZero ? T{0} : values.operand<T>();
            if (src != dst) dst[i] = 0;
        }
    }
};

size_t partsOf(bool isReal, int order) {
    return isReal ? (size_t{1} << order) + 2 : size_t{2} << order;
}

// ---- The library ----

#define OURS(TYPE, PART, SPEC, FORWARD, INVERSE)                                                                       \
    struct Ours##SPEC {                                                                                                \
        using T = Zvp##PART;                                                                                           \
        static constexpr bool kIsReal = #SPEC[0] == 'R';                                                               \
                                                                                                                       \
        explicit Ours##SPEC(int order) {                                                                               \
            int size = 0;                                                                                              \
            if (zvpsFFTInitAlloc_##SPEC(&spec, order, zvpFftScaleNone, 0) != zvpStsOk) throw std::bad_alloc();         \
            zvpsFFTGetBufSize_##SPEC(spec, &size);                                                                     \
            buffer.resize(static_cast<size_t>(size));                                                                  \
        }                                                                                                              \
        ~Ours##SPEC() { zvpsFFTFree_##SPEC(spec); }                                                                    \
        Ours##SPEC(const Ours##SPEC&) = delete;                                                                        \
        Ours##SPEC& operator=(const Ours##SPEC&) = delete;                                                             \
                                                                                                                       \
        void forward(T* src, T* dst) {                                                                                 \
            FORWARD(reinterpret_cast<const Zvp##TYPE*>(src), reinterpret_cast<Zvp##TYPE*>(dst), spec, buffer.data());  \
        }                                                                                                              \
        void inverse(T* src, T* dst) {                                                                                 \
            INVERSE(reinterpret_cast<const Zvp##TYPE*>(src), reinterpret_cast<Zvp##TYPE*>(dst), spec, buffer.data());  \
        }                                                                                                              \
                                                                                                                       \
        ZvpsFFTSpec_##SPEC* spec = nullptr;                                                                            \
        std::vector<Zvp8u> buffer;                                                                                     \
    };
OURS(32fc, 32f, C_32fc, zvpsFFTFwd_CToC_32fc, zvpsFFTInv_CToC_32fc)
OURS(64fc, 64f, C_64fc, zvpsFFTFwd_CToC_64fc, zvpsFFTInv_CToC_64fc)
OURS(32f, 32f, R_32f, zvpsFFTFwd_RToCCS_32f, zvpsFFTInv_CCSToR_32f)
OURS(64f, 64f, R_64f, zvpsFFTFwd_RToCCS_64f, zvpsFFTInv_CCSToR_64f)

// ---- FFTW ----

template <class T>
struct Fftw;
#define FFTW(TYPE, PREFIX)                                                                                             \
    template <>                                                                                                        \
    struct Fftw<TYPE> {                                                                                                \
        using Plan = PREFIX##_plan;                                                                                    \
                                                                                                                       \
        static Plan plan(bool isReal, bool isInverse, int order, TYPE* src, TYPE* dst, unsigned flags) {               \
            const int n = 1 << order;                                                                                  \
            auto* const from = reinterpret_cast<PREFIX##_complex*>(src);                                               \
            auto* const to = reinterpret_cast<PREFIX##_complex*>(dst);                                                 \
            if (!isReal) return PREFIX##_plan_dft_1d(n, from, to, isInverse ? FFTW_BACKWARD : FFTW_FORWARD, flags);    \
            return isInverse ? PREFIX##_plan_dft_c2r_1d(n, from, dst, flags)                                           \
                             : PREFIX##_plan_dft_r2c_1d(n, src, to, flags);                                            \
        }                                                                                                              \
        static void execute(Plan plan) { PREFIX##_execute(plan); }                                                     \
        static void destroy(Plan plan) { PREFIX##_destroy_plan(plan); }                                                \
    };
FFTW(float, fftwf)
FFTW(double, fftw)
FFTW(long double, fftwl)
#undef FFTW

// Measured once; planning spoils the arrays.
template <class T>
typename Fftw<T>::Plan measuredPlan(bool isReal, Form form, int order) {
    static std::map<std::tuple<bool, Form, int>, typename Fftw<T>::Plan> plans;
    auto& plan = plans[{isReal, form, order}];
    if (plan == nullptr) {
        const Operands<T> operands(form, 0);
        plan = Fftw<T>::plan(isReal, form == Form::inverse, order, operands.src, operands.dst, FFTW_MEASURE);
    }
    return plan;
}

// ---- Accuracy ----

template <class T>
double relativeError(bool isReal, int order, const Operands<T>& operands) {
    const size_t count = partsOf(isReal, order);
    using Reference = std::vector<long double>;
    static std::map<std::pair<bool, int>, Reference> references;
    Reference& reference = references[{isReal, order}];
    if (reference.empty()) {
        Reference src(operands.src, operands.src + count);
        reference.resize(count);
        const auto plan = Fftw<long double>::plan(isReal, false, order, src.data(), reference.data(), FFTW_ESTIMATE);
        Fftw<long double>::execute(plan);
        Fftw<long double>::destroy(plan);
    }
    long double errors = 0;
    long double values = 0;
    for (size_t i = 0; i < count; ++i) {
        const long double error = operands.dst[i] - reference[i];
        errors += error * error;
        values += reference[i] * reference[i];
    }
    return static_cast<double>(std::sqrt(errors / values));
}

// ---- Rows ----

template <class T, class Call>
void run(benchmark::State& state, const std::string& name, bool isReal, Form form, int order, Call call) {
    const Operands<T> operands(form, partsOf(isReal, order));
    for (int i = 0; i != kWarmUpCalls; ++i)
        call(operands);
    if (form == Form::outOfPlace) {
        static std::map<std::string, double> errors;
        if (errors.find(name) == errors.end()) errors[name] = relativeError(isReal, order, operands);
        state.counters["error"] = errors[name];
    }
    for ([[maybe_unused]] auto _ : state) {
        call(operands);
        benchmark::ClobberMemory();
    }
    state.counters["traffic"] = 2;
    state.counters["bytes"] = static_cast<double>(2 * sizeof(T) * partsOf(isReal, order));
}

template <class Ours>
void transforms(const std::string& type) {
    using T = typename Ours::T;
    constexpr bool kIsReal = Ours::kIsReal;
    for (const auto& [form, suffix] : kForms) {
        for (int order = kLeastOrder; order <= kMostOrder; ++order) {
            const std::string row = "FFT_" + type + suffix;
            const std::string ours = row + "/ours/" + std::to_string(1 << order);
            const std::string fftw = row + "/fftw/" + std::to_string(1 << order);
            const bool isInverse = form == Form::inverse;
            benchmark::RegisterBenchmark(ours.c_str(), [ours, form = form, isInverse, order](benchmark::State& state) {
                Ours transform(order);
                run<T>(state, ours, kIsReal, form, order, [&](const Operands<T>& operands) {
                    isInverse ? transform.inverse(operands.src, operands.dst)
                              : transform.forward(operands.src, operands.dst);
                });
            });
            benchmark::RegisterBenchmark(fftw.c_str(), [fftw, form = form, order](benchmark::State& state) {
                const auto plan = measuredPlan<T>(kIsReal, form, order);
                run<T>(state, fftw, kIsReal, form, order, [&](const Operands<T>&) { Fftw<T>::execute(plan); });
            });
        }
    }
}

// The spectra of half as many samples as the vectors have elements, so that the expanded ones fit.
template <class T, class Complex>
void expansion(const char* row, ZvpStatus (*expand)(const T*, Complex*, int)) {
    Row<T>(row, 2, kInCache)
        .with("ours", [expand](const auto& v) { expand(v.a, reinterpret_cast<Complex*>(v.dst), v.n / 2); })
        .with("plain", BENCH_CALL(plain::expandPacked(v.a, v.dst, v.n / 2)));
}

void spectra() {
    Row<Zvp32f>("MulPack_32f", 3, kInCache)
        .with("ours", BENCH_CALL(zvpsMulPack_32f(v.a, v.b, v.dst, v.n)))
        .with("plain", BENCH_CALL(plain::multiplyPacked(v.a, v.b, v.dst, v.n)));
    Row<Zvp64f>("MulPack_64f", 3, kInCache)
        .with("ours", BENCH_CALL(zvpsMulPack_64f(v.a, v.b, v.dst, v.n)))
        .with("plain", BENCH_CALL(plain::multiplyPacked(v.a, v.b, v.dst, v.n)));
    expansion("ConjPack_32fc", zvpsConjPack_32fc);
    expansion("ConjPack_64fc", zvpsConjPack_64fc);
}

} // namespace

void registerFft() {
    spectra();
    transforms<OursC_32fc>("C_32fc");
    transforms<OursR_32f>("R_32f");
    transforms<OursC_64fc>("C_64fc");
    transforms<OursR_64f>("R_64f");
}

} // namespace bench
