#include "zvps/fir.h"

#include "bench.hpp"
#include "fftw.hpp"
#include "peers.hpp"

#include <complex>

// The header takes its complex type from <complex>.
#include <liquid/liquid.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>

// Rows FIR<types>:TAPS: a block of LENGTH samples through a filter of so many taps, a low-pass of a quarter of the
// band. One/...: the same by single samples.
namespace bench {
namespace {

const std::vector<int> kTaps = {8, 16, 32, 63, 64, 128, 256, 512, 1024, 2048};
const Lengths kLengths = {512, 4096, 65536};
constexpr int kMost = 1 << 20;

std::vector<double> lowPass(int tapsLen) {
    constexpr double kPi = 3.14159265358979323846;
    std::vector<double> taps(static_cast<size_t>(tapsLen));
    for (int i = 0; i < tapsLen; ++i) {
        const double x = i - 0.5 * (tapsLen - 1);
        const double window = 0.54 - 0.46 * std::cos(2 * kPi * (i + 0.5) / tapsLen);
        taps[static_cast<size_t>(i)] = window * (x == 0 ? 0.25 : std::sin(0.25 * kPi * x) / (kPi * x));
    }
    return taps;
}

// The taps in a type; those of integers as fractions of 2^15.
template <class T>
std::vector<T> tapsOf(int tapsLen) {
    const std::vector<double> taps = lowPass(tapsLen);
    std::vector<T> result;
    for (const double tap : taps) {
        if constexpr (std::is_integral_v<T>) {
            result.push_back(static_cast<T>(std::lrint(std::ldexp(tap, sizeof(T) == 2 ? 15 : 30))));
        } else if constexpr (std::is_floating_point_v<T>) {
            result.push_back(static_cast<T>(tap));
        } else {
            using Part = decltype(T::re);
            result.push_back({static_cast<Part>(tap), static_cast<Part>(-0.5 * tap)});
        }
    }
    return result;
}

// A signal and its results, as much before it as any filter reads.
template <class T>
struct Signal {
    std::vector<T> samples;
    std::vector<T> results;

    Signal() : samples(kMost + 4096), results(kMost + 4096) {
        Values values;
        for (T& sample : samples)
            sample = values.operand<T>();
    }
    const T* src() const { return samples.data() + 2064; }
    T* dst() { return results.data() + 16; }
};
template <class T>
Signal<T>& theSignal() {
    static Signal<T> signal;
    return signal;
}

// Overlap-save by FFTW, measured plans, transforms of at least four times the taps.
class FftwFilter {
  public:
    explicit FftwFilter(const std::vector<float>& taps) : past_(taps.size() - 1), length_(lengthFor(taps.size())) {
        std::fill_n(work(), length_, 0.0F);
        std::copy(taps.begin(), taps.end(), work());
        forward_();
        for (size_t i = 0; i < length_ + 2; ++i)
            spectrum_[i] = work_[i] / static_cast<float>(length_);
    }
    void filter(const float* src, float* dst, size_t n) {
        const size_t step = length_ - past_;
        for (size_t i = 0; i < n; i += step) {
            const size_t count = std::min(step, n - i);
            std::copy_n(src + i - past_, past_ + count, work());
            std::fill(work() + past_ + count, work() + length_, 0.0F);
            forward_();
            for (size_t k = 0; k < length_ + 2; k += 2) {
                const float re = work_[k], im = work_[k + 1];
                work_[k] = re * spectrum_[k] - im * spectrum_[k + 1];
                work_[k + 1] = re * spectrum_[k + 1] + im * spectrum_[k];
            }
            inverse_();
            std::copy_n(work() + past_, count, dst + i);
        }
    }

  private:
    static size_t lengthFor(size_t taps) {
        size_t length = 64;
        while (length < 4 * taps)
            length *= 2;
        return length;
    }
    FftwPlan<float> plan(bool isInverse) {
        return FftwPlan<float>::dft(true, isInverse, static_cast<int>(length_), work(), work());
    }
    float* work() const { return work_.get(); }

    size_t past_;
    size_t length_;
    FftwArray<float> work_ = fftwArray<float>(length_ + 2);
    FftwArray<float> spectrum_ = fftwArray<float>(length_ + 2);
    FftwPlan<float> forward_ = plan(false);
    FftwPlan<float> inverse_ = plan(true);
};

// ---- Rows ----

template <class Taps, class Data>
struct Ours {
    template <class State>
    using Builder = ZvpStatus (*)(State**, const Taps*, int, const Data*);

    // run(src, dst, n, state) on a state that lives as long as the program.
    template <class State, class Run>
    static auto call(Builder<State> build, int tapsLen, Run run) {
        State* state = nullptr;
        const std::vector<Taps> taps = tapsOf<Taps>(tapsLen);
        if (build(&state, taps.data(), tapsLen, nullptr) != zvpStsOk) throw std::bad_alloc();
        return [state, run](const auto& v) { run(theSignal<Data>().src(), theSignal<Data>().dst(), v.n, state); };
    }
};

template <class Data>
Row<Data> row(const char* name, int tapsLen, const Lengths& lengths = kLengths) {
    return Row<Data>(std::string(name) + ':' + std::to_string(tapsLen), 2, lengths);
}

template <class Taps, class Data, class... More>
auto plainCall(int tapsLen, More... more) {
    return [taps = tapsOf<Taps>(tapsLen), more...](const auto& v) {
        plain::fir(theSignal<Data>().src(), theSignal<Data>().dst(), v.n, taps.data(), static_cast<int>(taps.size()),
                   more...);
    };
}

void single(int tapsLen) {
    Row<Zvp32f> r = row<Zvp32f>("FIR_32f", tapsLen);
    r.with("ours", Ours<Zvp32f, Zvp32f>::call(zvpsFIRInitAlloc_32f, tapsLen, zvpsFIR_32f));
    r.with("plain", plainCall<Zvp32f, Zvp32f>(tapsLen));
    std::vector<float> taps = tapsOf<float>(tapsLen);
    const firfilt_rrrf filter = firfilt_rrrf_create(taps.data(), static_cast<unsigned>(tapsLen));
    r.with("liquid", [filter](const auto& v) {
        firfilt_rrrf_execute_block(filter, const_cast<float*>(theSignal<float>().src()), count(v),
                                   theSignal<float>().dst());
    });
    if (tapsLen < 64) return;
    const auto fftw = std::make_shared<FftwFilter>(taps);
    r.with("fftw", [fftw](const auto& v) {
        fftw->filter(theSignal<float>().src(), theSignal<float>().dst(), static_cast<size_t>(v.n));
    });
    constexpr unsigned kLeastBlock = 512;
    const unsigned block = std::max(kLeastBlock, static_cast<unsigned>(tapsLen));
    const fftfilt_rrrf fft = fftfilt_rrrf_create(taps.data(), static_cast<unsigned>(tapsLen), block);
    r.with("liquid_fft", [fft, block](const auto& v) {
        for (unsigned i = 0; i + block <= count(v) || i == 0; i += block) {
            fftfilt_rrrf_execute(fft, const_cast<float*>(theSignal<float>().src()) + i, theSignal<float>().dst() + i);
        }
    });
}

void complex(int tapsLen) {
    Row<Zvp32fc> r = row<Zvp32fc>("FIR_32fc", tapsLen);
    r.with("ours", Ours<Zvp32fc, Zvp32fc>::call(zvpsFIRInitAlloc_32fc, tapsLen, zvpsFIR_32fc));
    r.with("plain", plainCall<Zvp32fc, Zvp32fc>(tapsLen));
    using Complex = std::complex<float>;
    std::vector<Zvp32fc> taps = tapsOf<Zvp32fc>(tapsLen);
    const firfilt_cccf filter =
        firfilt_cccf_create(reinterpret_cast<Complex*>(taps.data()), static_cast<unsigned>(tapsLen));
    r.with("liquid", [filter](const auto& v) {
        auto& signal = theSignal<Zvp32fc>();
        firfilt_cccf_execute_block(filter, reinterpret_cast<Complex*>(const_cast<Zvp32fc*>(signal.src())), count(v),
                                   reinterpret_cast<Complex*>(signal.dst()));
    });
}

void integers(int tapsLen) {
    constexpr int kScale = 15;
    row<Zvp16s>("FIR_16s_Sfs", tapsLen)
        .with("ours", Ours<Zvp16s, Zvp16s>::call(zvpsFIRInitAlloc_16s, tapsLen,
                                                 [](const Zvp16s* src, Zvp16s* dst, int n, ZvpsFIRState_16s* state) {
                                                     zvpsFIR_16s_Sfs(src, dst, n, state, kScale);
                                                 }))
        .with("plain", plainCall<Zvp16s, Zvp16s>(tapsLen, kScale));
    row<Zvp16s>("FIR32s_16s_Sfs", tapsLen)
        .with("ours", Ours<Zvp32s, Zvp16s>::call<ZvpsFIRState32s_16s>(
                          [](ZvpsFIRState32s_16s** state, const Zvp32s* taps, int len, const Zvp16s* past) {
                              return zvpsFIRInitAlloc32s_16s(state, taps, len, -2 * kScale, past);
                          },
                          tapsLen,
                          [](const Zvp16s* src, Zvp16s* dst, int n, ZvpsFIRState32s_16s* state) {
                              zvpsFIR32s_16s_Sfs(src, dst, n, state, 0);
                          }))
        .with("plain", plainCall<Zvp32s, Zvp16s>(tapsLen, 2 * kScale));
    row<Zvp16s>("FIR32f_16s_Sfs", tapsLen)
        .with("ours", Ours<Zvp32f, Zvp16s>::call(zvpsFIRInitAlloc32f_16s, tapsLen,
                                                 [](const Zvp16s* src, Zvp16s* dst, int n, ZvpsFIRState32f_16s* state) {
                                                     zvpsFIR32f_16s_Sfs(src, dst, n, state, 0);
                                                 }))
        .with("plain", plainCall<Zvp32f, Zvp16s>(tapsLen));
}

void samples(int tapsLen) {
    Row<Zvp32f> r = row<Zvp32f>("FIROne_32f", tapsLen, {512});
    r.with("ours", Ours<Zvp32f, Zvp32f>::call(zvpsFIRInitAlloc_32f, tapsLen,
                                              [](const Zvp32f* src, Zvp32f* dst, int n, ZvpsFIRState_32f* state) {
                                                  for (int i = 0; i < n; ++i)
                                                      zvpsFIROne_32f(src[i], &dst[i], state);
                                              }));
    std::vector<float> taps = tapsOf<float>(tapsLen);
    const firfilt_rrrf filter = firfilt_rrrf_create(taps.data(), static_cast<unsigned>(tapsLen));
    r.with("liquid", [filter](const auto& v) {
        auto& signal = theSignal<float>();
        for (int i = 0; i < v.n; ++i) {
            firfilt_rrrf_push(filter, signal.src()[i]);
            firfilt_rrrf_execute(filter, &signal.dst()[i]);
        }
    });
}

} // namespace

void registerFir() {
    for (const int tapsLen : kTaps) {
        single(tapsLen);
        complex(tapsLen);
        row<Zvp64f>("FIR_64f", tapsLen)
            .with("ours", Ours<Zvp64f, Zvp64f>::call(zvpsFIRInitAlloc_64f, tapsLen, zvpsFIR_64f))
            .with("plain", plainCall<Zvp64f, Zvp64f>(tapsLen));
        integers(tapsLen);
    }
    for (const int tapsLen : {8, 32, 128})
        samples(tapsLen);
    // What threads gain.
    row<Zvp32f>("FIR_32f", 512, {kMost})
        .with("ours", Ours<Zvp32f, Zvp32f>::call(zvpsFIRInitAlloc_32f, 512, zvpsFIR_32f));
}

} // namespace bench
