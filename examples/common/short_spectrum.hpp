// The power spectrum of a short piece of a signal.
#pragma once

#include "signal.hpp"

struct Window {
    const char* name;
    void (*apply)(Zvp32f* samples, int length);
};
extern const std::vector<Window> kWindows;
// By its name; null if there is none of it.
const Window* findWindow(const std::string& name);

class ShortSpectrum {
  public:
    // Of pieces of 2^order samples.
    ShortSpectrum(int order, const Window& window);
    ~ShortSpectrum();
    ShortSpectrum(const ShortSpectrum&) = delete;
    ShortSpectrum& operator=(const ShortSpectrum&) = delete;

    int length() const { return static_cast<int>(piece_.size()); }
    // How many bins' worth of white noise a bin takes in.
    double noiseBandwidth() const { return noiseBandwidth_; }

    // The piece that begins at `begin`, with silence before and behind the signal. The power of bins 0 to length() / 2:
    // 1 for a sine of full scale at the bin's frequency, k / length() of the rate.
    const std::vector<Zvp32f>& measure(const Signal& signal, int begin);

  private:
    const Window& window_;
    double noiseBandwidth_;
    Zvp32f scale_;
    std::vector<Zvp32f> piece_;
    std::vector<Zvp32f> power_;
    ZvpsFFTSpec_R_32f* spec_ = nullptr;
    std::vector<Zvp8u> buffer_;
};
