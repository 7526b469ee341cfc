#include "zvps/fft.h"

#include "bench.hpp"
#include "fftw.hpp"
#include "peers.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <memory>

// Rows FFT_<type><form>: transforms of LENGTH points against FFTW's plans from FFTW_MEASURE on the same arrays,
// unaligned ones one element off. Real spectra are in CCS layout, which is FFTW's. Counter `error`: the root of the
// mean square error over that of the result, against FFTW in long double, over as many vectors of data as make 2^16
// points. Rows machine/pass/LENGTH: a copy of that many bytes.
namespace bench {
namespace {

constexpr int kLeastOrder = 2;
constexpr int kMostOrder = 22;
constexpr int kErrorOrder = 16;

enum class Form { outOfPlace, inPlace, unaligned, inverse };
const std::map<Form, const char*> kForms = {
    {Form::outOfPlace, ""}, {Form::inPlace, "_I"}, {Form::unaligned, "@all"}, {Form::inverse, "_Inv"}};

// ---- Arrays ----

// Room for the longest transform twice, and for misaligned ones.
template <class T>
struct Arrays {
    T* src;
    T* dst;

    static const Arrays& get() {
        static const Arrays arrays;
        return arrays;
    }

  private:
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

    Operands(bool isReal, Form form) {
        const Arrays<T>& arrays = Arrays<T>::get();
        const size_t offset = form != Form::unaligned ? 0 : isReal ? 1 : 2;
        src = (form == Form::inPlace ? arrays.dst : arrays.src) + offset;
        dst = arrays.dst + offset;
    }

    void fill(Form form, size_t parts) const {
        std::fill_n(dst, parts, T{0});
        if (form == Form::inPlace) return;
        Values values;
        for (size_t i = 0; i < parts; ++i)
            src[i] = form == Form::inverse ? T{0} : values.operand<T>();
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

// Measured once; planning spoils the arrays.
template <class T>
const FftwPlan<T>& measuredPlan(bool isReal, Form form, int order) {
    static std::map<std::tuple<bool, Form, int>, FftwPlan<T>> plans;
    const auto place = std::make_tuple(isReal, form, order);
    auto plan = plans.find(place);
    if (plan == plans.end()) {
        const Operands<T> operands(isReal, form);
        plan =
            plans
                .emplace(place, FftwPlan<T>::dft(isReal, form == Form::inverse, 1 << order, operands.src, operands.dst))
                .first;
    }
    return plan->second;
}

// ---- Accuracy ----

// Measured once a name, on the same data for all peers.
template <class T, class Call>
double relativeError(const std::string& name, bool isReal, int order, const Operands<T>& operands, Call call) {
    static std::map<std::string, double> measured;
    const auto [entry, isNew] = measured.try_emplace(name, 0);
    if (!isNew) return entry->second;
    const size_t count = partsOf(isReal, order);
    std::vector<long double> src(count);
    std::vector<long double> exact(count);
    const auto plan = FftwPlan<long double>::dft(isReal, false, 1 << order, src.data(), exact.data(), FFTW_ESTIMATE);
    Values values;
    long double errors = 0;
    long double squares = 0;
    for (int vectors = order < kErrorOrder ? 1 << (kErrorOrder - order) : 1; vectors > 0; --vectors) {
        std::generate_n(operands.src, count, [&] { return values.operand<T>(); });
        std::copy_n(operands.src, count, src.begin());
        call(operands);
        plan();
        for (size_t i = 0; i < count; ++i) {
            const long double error = operands.dst[i] - exact[i];
            errors += error * error;
            squares += exact[i] * exact[i];
        }
    }
    return entry->second = static_cast<double>(std::sqrt(errors / squares));
}

// ---- Rows ----

template <class T, class Call>
void run(benchmark::State& state, const std::string& name, bool isReal, Form form, int order, Call call) {
    const Operands<T> operands(isReal, form);
    if (form == Form::outOfPlace) state.counters["error"] = relativeError(name, isReal, order, operands, call);
    operands.fill(form, partsOf(isReal, order));
    for (int i = 0; i != kWarmUpCalls; ++i)
        call(operands);
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
                const auto& plan = measuredPlan<T>(kIsReal, form, order);
                run<T>(state, fftw, kIsReal, form, order, [&](const Operands<T>&) { plan(); });
            });
        }
    }
}

// For each size of a transform's source from order 14 on.
void passes() {
    const Arrays<Zvp64f>& arrays = Arrays<Zvp64f>::get();
    for (size_t bytes = size_t{4} << 14; bytes <= size_t{16} << kMostOrder; bytes *= 2) {
        const std::string name = "machine/pass/" + std::to_string(bytes);
        benchmark::RegisterBenchmark(name.c_str(), [&arrays, bytes](benchmark::State& state) {
            for ([[maybe_unused]] auto _ : state) {
                plain::copy(reinterpret_cast<const float*>(arrays.src), reinterpret_cast<float*>(arrays.dst),
                            static_cast<int>(bytes / sizeof(float)));
                benchmark::ClobberMemory();
            }
            state.counters["traffic"] = 2;
            state.counters["bytes"] = static_cast<double>(2 * bytes);
        });
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
    passes();
    spectra();
    transforms<OursC_32fc>("C_32fc");
    transforms<OursR_32f>("R_32f");
    transforms<OursC_64fc>("C_64fc");
    transforms<OursR_64f>("R_64f");
}

} // namespace bench
