// FFTW's plans in its three precisions, as objects that are called.
#pragma once

#include <fftw3.h>

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>

namespace bench {

template <class T>
struct FftwApi;
#define BENCH_FFTW(TYPE, PREFIX)                                                                                       \
    template <>                                                                                                        \
    struct FftwApi<TYPE> {                                                                                             \
        using Plan = std::remove_pointer_t<PREFIX##_plan>;                                                             \
        using Complex = PREFIX##_complex;                                                                              \
        static constexpr auto kComplex = PREFIX##_plan_dft_1d;                                                         \
        static constexpr auto kRealForward = PREFIX##_plan_dft_r2c_1d;                                                 \
        static constexpr auto kRealInverse = PREFIX##_plan_dft_c2r_1d;                                                 \
        static constexpr auto kRealToReal = PREFIX##_plan_r2r_1d;                                                      \
        static constexpr auto kExecute = PREFIX##_execute;                                                             \
        static constexpr auto kMalloc = PREFIX##_malloc;                                                               \
        struct Delete {                                                                                                \
            void operator()(Plan* plan) const { PREFIX##_destroy_plan(plan); }                                         \
            void operator()(TYPE* memory) const { PREFIX##_free(memory); }                                             \
        };                                                                                                             \
    };
BENCH_FFTW(float, fftwf)
BENCH_FFTW(double, fftw)
BENCH_FFTW(long double, fftwl)
#undef BENCH_FFTW

// Planning spoils the arrays, but for FFTW_ESTIMATE. Complex values are pairs of T.
template <class T>
class FftwPlan {
    using Api = FftwApi<T>;

  public:
    // Transforms of n points; spectra of real data hold n / 2 + 1 values.
    static FftwPlan dft(bool isReal, bool isInverse, int n, T* src, T* dst, unsigned flags = FFTW_MEASURE) {
        auto* const from = reinterpret_cast<typename Api::Complex*>(src);
        auto* const to = reinterpret_cast<typename Api::Complex*>(dst);
        if (!isReal) return FftwPlan(Api::kComplex(n, from, to, isInverse ? FFTW_BACKWARD : FFTW_FORWARD, flags));
        return FftwPlan(isInverse ? Api::kRealInverse(n, from, dst, flags) : Api::kRealForward(n, src, to, flags));
    }
    static FftwPlan dct(bool isInverse, int n, T* src, T* dst, unsigned flags = FFTW_MEASURE) {
        return FftwPlan(Api::kRealToReal(n, src, dst, isInverse ? FFTW_REDFT01 : FFTW_REDFT10, flags));
    }

    void operator()() const { Api::kExecute(plan_.get()); }

  private:
    explicit FftwPlan(typename Api::Plan* plan) : plan_(plan) {}

    std::unique_ptr<typename Api::Plan, typename Api::Delete> plan_;
};

// Aligned as FFTW likes it.
template <class T>
using FftwArray = std::unique_ptr<T[], typename FftwApi<T>::Delete>;
template <class T>
FftwArray<T> fftwArray(size_t count) {
    return FftwArray<T>(static_cast<T*>(FftwApi<T>::kMalloc(count * sizeof(T))));
}

} // namespace bench
