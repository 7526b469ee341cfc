// The telephone line, in 16-bit arithmetic as a line card would do it, and the same line in floating point.
#pragma once

#include "signal.hpp"

// An amplification as an integer and a scale factor, what 16-bit arithmetic multiplies by: mantissa * 2^-scale.
struct Gain {
    Zvp16s mantissa;
    int scale;

    static Gain fromDecibels(double decibels);
    double value() const;
};

struct LineSettings {
    double gain = 10;         // dB, of the receiver's amplifier
    double echo = -14;        // dB, of what comes back from the far end
    double echoDelay = 0.025; // seconds
};

class Line {
  public:
    // The signal must outlive the line.
    Line(const Signal& sent, const LineSettings& settings);

    // Sends the signal down the line; repeating it gives the same samples again.
    void run();

    // The signal in 16 bits, as it enters the line.
    const std::vector<Zvp16s>& digital() const { return digital_; }
    const std::vector<Zvp16s>& received() const { return received_; }
    Gain gain() const { return gain_; }
    Gain echo() const { return echo_; }

    // For each sample received, whether it met a limit of 16 bits on its way.
    std::vector<bool> clipped() const;

    // What a line with unlimited range and single-precision arithmetic delivers.
    Signal reference() const;

  private:
    int echoLength() const { return sent_.length() > delay_ ? sent_.length() - delay_ : 0; }

    const Signal& sent_;
    Gain gain_;
    Gain echo_;
    int delay_; // samples
    std::vector<Zvp16s> digital_, late_, mixed_, received_;
};

// How the network codes a sample in 8 bits.
struct Law {
    const char* name;
    ZvpStatus (*compress)(const Zvp16s*, Zvp8u*, int);
    ZvpStatus (*expand)(const Zvp8u*, Zvp16s*, int);
};
constexpr Law kMuLaw{"mu-law", zvpsLinToMuLaw_16s8u, zvpsMuLawToLin_8u16s};
constexpr Law kALaw{"A-law", zvpsLinToALaw_16s8u, zvpsALawToLin_8u16s};

// What is left of the samples after they were coded and decoded again.
std::vector<Zvp16s> companded(const std::vector<Zvp16s>& samples, const Law& law);

// The 16-bit samples as a signal of full scale 1.
Signal toSignal(const std::vector<Zvp16s>& samples, int rate);
