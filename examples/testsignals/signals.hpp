// The signals that measurements of sound equipment are made with.
#pragma once

#include "signal.hpp"

struct Tone {
    double frequency; // in hertz
    double level;     // of its peaks, in decibels of full scale
};
struct Sweep {
    double level;
};
struct Noise {
    bool isGaussian;
    double level; // root mean square, in decibels of full scale
    Zvp32u seed;
};

void addTone(Signal& signal, const Tone& tone);

// A sine whose frequency rises evenly from 0 to half the rate over the whole signal.
void addSweep(Signal& signal, const Sweep& sweep);

void addNoise(Signal& signal, const Noise& noise);
