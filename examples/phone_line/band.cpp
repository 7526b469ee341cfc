#include "band.hpp"

#include <algorithm>
#include <cmath>

#include "measure.hpp"

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kTransition = 200;   // Hz, from pass to stop
constexpr double kHammingWidth = 3.3; // transition of the window, in rates divided by taps
constexpr int kBlocksASecond = 50;

// The impulse response of an ideal low-pass, `place` samples from its centre.
double lowPass(double frequency, double rate, double place) {
    const double cycles = frequency / rate;
    return place == 0 ? 2 * cycles : std::sin(2 * kPi * cycles * place) / (kPi * place);
}
} // namespace

TelephoneBand::TelephoneBand(int rate) : rate_(rate) {
    if (rate < kNetworkRate) throw std::runtime_error("the telephone's band needs a rate of 8000 Hz or more");
    // An odd number: the delay is a whole number of samples.
    const int half = static_cast<int>(std::ceil(kHammingWidth * rate / kTransition / 2));
    for (int i = -half; i <= half; ++i)
        taps_.push_back(static_cast<Zvp32f>(lowPass(kHighest, rate, i) - lowPass(kLowest, rate, i)));
    check(zvpsWinHamming_32f_I(taps_.data(), taps()));
}

TelephoneBand::State TelephoneBand::filter() const {
    ZvpsFIRState_32f* state = nullptr;
    check(zvpsFIRInitAlloc_32f(&state, taps_.data(), taps(), nullptr));
    return {state, zvpsFIRFree_32f};
}

void TelephoneBand::passBlock(State& filter, std::vector<Zvp32f>& block, size_t& next, size_t every,
                              std::vector<Zvp32f>& kept) const {
    check(zvpsFIR_32f_I(block.data(), static_cast<int>(block.size()), filter.get()));
    for (; next < block.size(); next += every)
        kept.push_back(block[next]);
    next -= block.size();
}

Signal TelephoneBand::pass(const Signal& signal) const {
    State state = filter();
    Signal result{rate_ / every(), {}};
    const size_t length = signal.samples.size();
    const auto block = static_cast<size_t>(rate_ / kBlocksASecond);
    // The filter's delay is left out, so that the result stands where the signal does.
    size_t next = taps_.size() / 2;
    std::vector<Zvp32f> samples;
    for (size_t i = 0; i < length + taps_.size() / 2; i += block) {
        const size_t end = std::min(i + block, length + taps_.size() / 2);
        const auto at = [&](size_t index) { return signal.samples.begin() + static_cast<ptrdiff_t>(index); };
        samples.assign(at(std::min(i, length)), at(std::min(end, length)));
        samples.resize(end - i); // silence behind the end
        passBlock(state, samples, next, static_cast<size_t>(every()), result.samples);
    }
    return result;
}

double TelephoneBand::response(double frequency) const {
    State state = filter();
    Signal tone{rate_, {}};
    for (size_t i = 0; i < 2 * taps_.size() + static_cast<size_t>(rate_); ++i) {
        const double turns = std::fmod(frequency * static_cast<double>(i) / rate_, 1.0);
        tone.samples.push_back(static_cast<Zvp32f>(std::sin(2 * kPi * turns)));
    }
    Signal heard{rate_, {}};
    size_t next = taps_.size(); // settled
    passBlock(state, tone.samples, next, 1, heard.samples);
    return measureLevel(heard).rms * std::sqrt(2.0);
}
