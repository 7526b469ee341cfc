#include "signals.hpp"

#include <cmath>

namespace {
constexpr float kPi = 3.14159265F;

Zvp32f amplitude(double decibels) {
    return static_cast<Zvp32f>(std::pow(10.0, decibels / 20));
}

void add(const std::vector<Zvp32f>& samples, Signal& signal) {
    check(zvpsAdd_32f_I(samples.data(), signal.samples.data(), signal.length()));
}
} // namespace

void addTone(Signal& signal, const Tone& tone) {
    std::vector<Zvp32f> samples(signal.samples.size());
    // A sine: it starts at zero.
    Zvp32f phase = 1.5F * kPi;
    const auto frequency = static_cast<Zvp32f>(tone.frequency / signal.rate);
    check(zvpsTone_Direct_32f(samples.data(), signal.length(), amplitude(tone.level), frequency, &phase, 0));
    add(samples, signal);
}

void addSweep(Signal& signal, const Sweep& sweep) {
    std::vector<Zvp32f> samples(signal.samples.size());
    check(zvpsVectorJaehne_32f(samples.data(), signal.length(), amplitude(sweep.level)));
    add(samples, signal);
}

void addNoise(Signal& signal, const Noise& noise) {
    std::vector<Zvp32f> samples(signal.samples.size());
    const Zvp32f level = amplitude(noise.level);
    Zvp32u seed = noise.seed;
    if (noise.isGaussian) {
        check(zvpsRandGauss_Direct_32f(samples.data(), signal.length(), 0, level, &seed));
    } else {
        const Zvp32f bound = level * std::sqrt(3.0F);
        check(zvpsRandUniform_Direct_32f(samples.data(), signal.length(), -bound, bound, &seed));
    }
    add(samples, signal);
}
