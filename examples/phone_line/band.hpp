// The band of a telephone, and the rate its network carries.
#pragma once

#include <memory>

#include "signal.hpp"

// A band-pass of 300 to 3400 Hz, the product of an ideal one with a Hamming window; then every n-th sample, where the
// rate is n times that of the network.
class TelephoneBand {
  public:
    static constexpr double kLowest = 300; // Hz, where half of the amplitude is left
    static constexpr double kHighest = 3400;
    static constexpr int kNetworkRate = 8000;

    // The rate must be at least that of the network.
    explicit TelephoneBand(int rate);

    // In blocks of 20 ms, as they would come from a microphone.
    Signal pass(const Signal& signal) const;

    // What is left of a tone's amplitude behind the filter, measured.
    double response(double frequency) const;

    int taps() const { return static_cast<int>(taps_.size()); }
    int every() const { return rate_ % kNetworkRate == 0 ? rate_ / kNetworkRate : 1; }

  private:
    using State = std::unique_ptr<ZvpsFIRState_32f, decltype(&zvpsFIRFree_32f)>;

    State filter() const;
    // Filters `block` in place and adds every n-th sample to `kept`; `next` is the index of the first one.
    void passBlock(State& filter, std::vector<Zvp32f>& block, size_t& next, size_t every,
                   std::vector<Zvp32f>& kept) const;

    int rate_;
    std::vector<Zvp32f> taps_;
};
