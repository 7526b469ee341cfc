#include "zvps/firmr.h"

#include "bench.hpp"
#include "peers.hpp"

#include <complex>

// The header takes its complex type from <complex>.
#include <liquid/liquid.h>

#include <algorithm>

// Rows FIRMR_<types>:UP:DOWN:TAPS. LENGTH: of the inputs or the outputs, whichever are more.
namespace bench {
namespace {

struct Rate {
    int up, down;
};
constexpr Rate kRates[] = {{2, 1}, {3, 1},  {4, 1},  {8, 1}, {1, 2}, {1, 3},    {1, 4},
                           {1, 8}, {1, 32}, {32, 1}, {3, 2}, {2, 3}, {160, 147}};
constexpr int kTaps[] = {32, 64, 128, 256};
const Lengths kLengths = {256, 4096};
constexpr int kMost = 4096;
constexpr int kPast = 512; // more than any filter reads before its source
constexpr int kScale = 15;

// Enough iterations for n inputs or outputs.
int iterations(Rate rate, int n) {
    return std::max(1, n / std::max(rate.up, rate.down));
}

template <class T>
T* samples(bool isSource) {
    static std::vector<T> source(kPast + kMost), results(kPast + kMost);
    static const bool isFilled = [] {
        Values values;
        for (T& sample : source)
            sample = values.operand<T>();
        return true;
    }();
    (void)isFilled;
    return (isSource ? source.data() + kPast : results.data());
}

template <class T>
std::vector<T> randomTaps(int count) {
    std::vector<T> taps(static_cast<size_t>(count));
    Values values;
    for (T& tap : taps)
        tap = values.operand<T>();
    return taps;
}

template <class Data>
Row<Data> row(const char* name, Rate rate, int tapsLen) {
    return Row<Data>(std::string(name) + ':' + std::to_string(rate.up) + ':' + std::to_string(rate.down) + ':' +
                         std::to_string(tapsLen),
                     2, kLengths);
}

// build(state, taps, tapsLen, up, upPhase, down, downPhase, past), run(src, dst, n, state)
template <class Taps, class Data, class State, class Run>
auto ours(ZvpStatus (*build)(State**, const Taps*, int, int, int, int, int, const Data*), Rate rate, int tapsLen,
          Run run) {
    State* state = nullptr;
    if (build(&state, randomTaps<Taps>(tapsLen).data(), tapsLen, rate.up, 0, rate.down, 0, nullptr) != zvpStsOk) {
        throw std::bad_alloc();
    }
    return [=](const auto& v) { run(samples<Data>(true), samples<Data>(false), iterations(rate, v.n), state); };
}

template <class T>
auto plainCall(Rate rate, int tapsLen) {
    const int length = (tapsLen + rate.up - 1) / rate.up;
    const std::vector<T> taps = randomTaps<T>(tapsLen);
    std::vector<T> phases(static_cast<size_t>(length * rate.up));
    for (int k = 0; k < tapsLen; ++k)
        phases[static_cast<size_t>((k % rate.up + 1) * length - 1 - k / rate.up)] = taps[static_cast<size_t>(k)];
    return [=](const auto& v) {
        plain::polyphase(samples<T>(true), samples<T>(false), iterations(rate, v.n) * rate.up, phases.data(), length,
                         rate.up, rate.down, kScale);
    };
}

void single(Rate rate, int tapsLen) {
    Row<Zvp32f> r = row<Zvp32f>("FIRMR_32f", rate, tapsLen);
    r.with("ours", ours(zvpsFIRMRInitAlloc_32f, rate, tapsLen, zvpsFIR_32f));
    r.with("plain", plainCall<Zvp32f>(rate, tapsLen));
    std::vector<float> taps = randomTaps<float>(tapsLen);
    const auto length = static_cast<unsigned>(tapsLen);
    if (rate.up == 1) {
        const firdecim_rrrf filter = firdecim_rrrf_create(static_cast<unsigned>(rate.down), taps.data(), length);
        r.with("liquid", [=](const auto& v) {
            firdecim_rrrf_execute_block(filter, samples<float>(true), static_cast<unsigned>(iterations(rate, v.n)),
                                        samples<float>(false));
        });
    } else if (rate.down == 1) {
        const firinterp_rrrf filter = firinterp_rrrf_create(static_cast<unsigned>(rate.up), taps.data(), length);
        r.with("liquid", [=](const auto& v) {
            firinterp_rrrf_execute_block(filter, samples<float>(true), static_cast<unsigned>(iterations(rate, v.n)),
                                         samples<float>(false));
        });
    }
}

} // namespace

void registerMultirateFir() {
    for (const Rate rate : kRates) {
        for (const int tapsLen : kTaps)
            single(rate, tapsLen);
        constexpr int kLength = 64;
        row<Zvp32fc>("FIRMR_32fc", rate, kLength)
            .with("ours", ours(zvpsFIRMRInitAlloc_32fc, rate, kLength, zvpsFIR_32fc))
            .with("plain", plainCall<Zvp32fc>(rate, kLength));
        row<Zvp64f>("FIRMR_64f", rate, kLength)
            .with("ours", ours(zvpsFIRMRInitAlloc_64f, rate, kLength, zvpsFIR_64f))
            .with("plain", plainCall<Zvp64f>(rate, kLength));
        row<Zvp16s>("FIRMR_16s_Sfs", rate, kLength)
            .with("ours", ours(zvpsFIRMRInitAlloc_16s, rate, kLength,
                               [](const Zvp16s* src, Zvp16s* dst, int n, ZvpsFIRState_16s* state) {
                                   zvpsFIR_16s_Sfs(src, dst, n, state, kScale);
                               }))
            .with("plain", plainCall<Zvp16s>(rate, kLength));
    }
}

} // namespace bench
